#include "contacts/ClientWindow.h"

#include "database/Names.h"
#include "platform/base/Twips.h"
#include "platform/data/RecordPlace.h"
#include "shell/state/Global.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMenuBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kLeastWidth = 6750, kLeastHeight = 3600; // twips; of the window's inside

} // namespace

ClientWindow::ClientWindow(Global &global, const QString &name, const QString &caption, QWidget *parent)
    : QDialog(parent), m_global(global)
{
    setObjectName(name);
    setWindowTitle(caption);
}

ClientWindow::~ClientWindow() = default;

QString ClientWindow::noRecords()
{
    return u"No records have been entered.  Use the Entry form to enter data."_s;
}

void ClientWindow::layOut(const Design &design)
{
    m_select = design.select;
    m_lastName = design.lastName;
    m_firstName = design.firstName;
    ErrorFrame &errors = m_global.services.errors;
    auto *bar = new QMenuBar;
    bar->addActions(makeBar(this, design.menu, errors));
    TabStrip1 = new TabStrip(design.tabs);
    TabStrip1->setObjectName(u"TabStrip1"_s);
    TabStrip1->setAccessibleName(u"Parts of the client's record"_s);
    TabStrip1->Click = [this](int index) {
        m_global.services.errors.run([this, index] { TabStrip1_Click(index); });
    };
    m_pane = new FramePane(design.fields, Adodc1);
    m_body = new QScrollArea;
    m_body->setFrameShape(QFrame::NoFrame);
    m_body->setWidgetResizable(true);
    m_body->setFocusPolicy(Qt::NoFocus);
    m_body->setWidget(m_pane);
    HScroll1 = new RecordScrollBar;
    HScroll1->setObjectName(u"HScroll1"_s);
    HScroll1->setAccessibleName(u"Position in the records"_s);
    HScroll1->Change = [this] { m_global.services.errors.run([this] { HScroll1_Change(); }); };
    m_navigator = new RecordNavigator(Adodc1, m_global.services.dialogs, errors);
    m_navigator->setObjectName(u"Adodc1"_s);
    m_navigator->setCaption(design.navigator);
    Adodc1.MoveComplete = [this](MoveReason reason) {
        m_navigator->refreshButtons();
        Adodc1_MoveComplete(reason);
    };
    m_all = new QVBoxLayout(this);
    m_all->setMenuBar(bar);
    const int margin = toPixels(50); // beside what has none of its own
    const auto beside = [&](QWidget *widget) {
        auto *row = new QHBoxLayout;
        row->setContentsMargins(margin, 0, margin, 0);
        row->addWidget(widget);
        m_all->addLayout(row);
    };
    m_all->setContentsMargins(0, 0, 0, 0);
    m_all->setSpacing(0);
    beside(TabStrip1);
    m_all->addWidget(m_body, 1);
    beside(HScroll1);
    beside(m_navigator);
    setMinimumSize(toPixels(kLeastWidth), toPixels(kLeastHeight));
}

QSize ClientWindow::sizeHint() const
{
    const int bars = TabStrip1->sizeHint().height() + HScroll1->sizeHint().height() +
                     m_navigator->sizeHint().height() + m_all->menuBar()->sizeHint().height();
    return m_pane->sizeHint() + QSize(0, bars);
}

void ClientWindow::openRecords()
{
    Adodc1.ConnectionString = ado::connectionText(m_global.DatabaseFileName, u"Admin"_s);
    Adodc1.RecordSource = m_select;
    Adodc1.Refresh();
}

void ClientWindow::refresh()
{
    try {
        openRecords();
    } catch (const RunTimeError &error) {
        Adodc1.onError(error);
    }
}

QAction *ClientWindow::command(const QString &name) const
{
    return findChild<QAction *>(name);
}

void ClientWindow::setScrollVisible(bool visible)
{
    TabStrip1->setVisible(visible);
    HScroll1->setVisible(visible);
    m_navigator->setVisible(visible);
}

// Also at the ends, where a move of the control led: it beeps and goes back to the record.
void ClientWindow::showMove()
{
    try {
        const ado::Recordset &records = Adodc1.Recordset();
        if (records.BOF() && records.EOF_()) {
            m_global.services.dialogs.msgBox({noRecords()});
            return;
        }
        if (records.BOF() || records.EOF_()) {
            const bool first = records.BOF();
            QApplication::beep();
            if (first)
                Adodc1.MoveFirst();
            else
                Adodc1.MoveLast();
        }
        m_global.SearchClient =
            joinName(joinText(records.Fields(m_lastName)), joinText(records.Fields(m_firstName)));
        TabStrip1->setTabCaption(1, m_global.SearchClient);
        HScroll1->showPlace(records.AbsolutePosition(), records.RecordCount());
    } catch (const RunTimeError &error) {
        const int position = Adodc1.isOpen() ? Adodc1.Recordset().AbsolutePosition() : -1;
        m_global.services.dialogs.msgBox({u"Error in contact database module: "_s + error.description() +
                                          u"  record position is: "_s + QString::number(position)});
    }
}

void ClientWindow::HScroll1_Change()
{
    resumeNext([this] {
        const ado::Recordset &records = Adodc1.Recordset();
        const int count = records.RecordCount();
        if (count == 0)
            return;
        if (const auto position = sliderPosition(HScroll1->value(), HScroll1->maximum(), count))
            Adodc1.SetAbsolutePosition(*position);
        else if (!records.BOF())
            Adodc1.SetAbsolutePosition(1);
    });
}

bool ClientWindow::moveAwayAndBack()
{
    const ado::Recordset &records = Adodc1.Recordset();
    if (records.AbsolutePosition() == records.RecordCount() || records.EOF_())
        return Adodc1.MovePrevious() && Adodc1.MoveNext();
    return Adodc1.MoveNext() && Adodc1.MovePrevious();
}

void ClientWindow::TabStrip1_Click(int index)
{
    m_pane->showTab(index);
}

void ClientWindow::focusFirst(const QString &field)
{
    m_pane->field(field)->setFocus();
    m_body->verticalScrollBar()->setValue(0); // where the focus went while frames were hidden
}

// Enter and Esc must not end the window, as they end a dialog: what was typed would be lost.
void ClientWindow::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Escape)
        QDialog::keyPressEvent(event);
}

} // namespace vardelin
