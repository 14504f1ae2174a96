#include "todo/ToDoItemWindow.h"

#include "platform/base/Twips.h"
#include "platform/data/Dao.h"
#include "platform/ui/SharedKeys.h"
#include "shell/state/Global.h"
#include "todo/ToDoRows.h"
#include "todo/frmToDo.h"

#include <QFormLayout>
#include <QKeyEvent>
#include <QMenuBar>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

constexpr int kBeside = 200; // twips
constexpr int kPriorities = 5;
constexpr int kDefaultPriority = 3;

} // namespace

ToDoItemWindow::ToDoItemWindow(Global &global, frmToDo &list, const Design &design)
    : QDialog(&list), m_global(global), m_list(list), m_design(design), m_text(new QLineEdit),
      DTPicker1(new DateTimePicker), m_picker(new ListBox(this)), m_fields(new QFormLayout)
{
    setObjectName(design.name);
    setWindowTitle(design.caption);
    m_text->setObjectName(design.textName);
    m_text->setAccessibleName(u"Thing To Do"_s);
    m_text->setToolTip(u"F3 picks activities"_s);
    m_text->installEventFilter(this);
    DTPicker1->setObjectName(u"DTPicker1"_s);
    DTPicker1->setDisplayFormat(u"M/d/yyyy"_s);
    DTPicker1->setAccessibleName(u"Deadline Date"_s);
    m_picker->setObjectName(design.pickerName);
    m_picker->setAccessibleName(u"Activities"_s);
    m_picker->setSelectionMode(QAbstractItemView::MultiSelection);
    m_picker->hide();
    m_picker->installEventFilter(this);
}

QWidget *ToDoItemWindow::makePriorities()
{
    auto *Frame1 = new QGroupBox(u"Priority Level:"_s);
    Frame1->setObjectName(u"Frame1"_s);
    Frame1->setAutoFillBackground(true);
    Frame1->setPalette(QPalette(m_design.priorityColour)); // pale in a dark look too, so all in it is light
    auto *row = new QHBoxLayout(Frame1);
    for (int i = 1; i <= kPriorities; ++i) {
        auto *option = new QRadioButton(QString::number(i));
        option->setObjectName(u"Option1(%1)"_s.arg(i - 1));
        option->setAccessibleName(u"Priority %1"_s.arg(i));
        option->setChecked(i == kDefaultPriority);
        // Tab leads to the chosen one, from where the arrows choose; Qt sees to it from the first focus on.
        option->setFocusPolicy(option->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
        row->addWidget(option);
        Option1.push_back(option);
    }
    return Frame1;
}

void ToDoItemWindow::layOut(QLayout *lists, const std::vector<MenuEntry> &more)
{
    std::vector<MenuEntry> entries{{u"mnuReturn"_s, u"&Return"_s, {}, [this] { mnuReturn_Click(); }}};
    entries.insert(entries.end(), more.begin(), more.end());
    entries.push_back({u"mnuDone"_s, u"&Done"_s, {}, [this] { mnuDone_Click(); }});
    auto *bar = new QMenuBar;
    bar->addActions(makeBar(this, entries, m_global.services.errors));
    stepThroughSharedKeys(bar);

    auto *Toolbar1 = new QToolBar;
    Toolbar1->setObjectName(u"Toolbar1"_s);
    Toolbar1->setAccessibleName(m_design.caption);
    addButton(Toolbar1, u"Return"_s, u"Return"_s, m_global.services.errors, [this] { mnuReturn_Click(); });
    addButton(Toolbar1, u"Done"_s, u"Done"_s, m_global.services.errors, [this] { mnuDone_Click(); });

    m_fields->addRow(u"Thing To Do:"_s, m_text);
    m_fields->addRow(u"Deadline Date:"_s, DTPicker1);
    auto *body = new QVBoxLayout;
    body->setContentsMargins(12, 8, 12, 12);
    body->setSpacing(10);
    if (lists)
        body->addLayout(lists, 1);
    body->addLayout(m_fields);
    body->addWidget(makePriorities());
    if (!lists)
        body->addStretch(1);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->setMenuBar(bar);
    all->addWidget(Toolbar1);
    all->addLayout(body, 1);
    tabToButtonsLast(this);
}

void ToDoItemWindow::loadActivities()
{
    const auto database = m_global.services.engine.OpenDatabase(m_global.DatabaseFileName);
    const auto activities = database->OpenRecordset(u"Activities"_s);
    if (activities->EOF_())
        return;
    // The list of employees, not the one of activities: settled. It holds them until the lists are filled
    // anew.
    QStringList &hidden = m_global.List1[static_cast<std::size_t>(PickList::Employees)];
    hidden.clear();
    for (; !activities->EOF_(); activities->MoveNext())
        hidden += joinText(activities->Fields(u"Activities"_s));
    m_picker->addItems(hidden); // in the table's order
}

int ToDoItemWindow::selectedPriority() const
{
    for (std::size_t i = 0; i < Option1.size(); ++i) {
        if (Option1[i]->isChecked())
            return static_cast<int>(i) + 1;
    }
    return m_global.CurrentPriority;
}

void ToDoItemWindow::placeBeside()
{
    move(m_list.pos() + QPoint(toPixels(kBeside), toPixels(kBeside)));
}

void ToDoItemWindow::callPicker()
{
    m_picker->setGeometry(rect());
    m_picker->show();
    m_picker->raise();
    m_picker->setFocus(
        Qt::PopupFocusReason); // the text box keeps its selection, which the activities replace
}

// Esc inserts, too: settled.
bool ToDoItemWindow::pickerKey(int key)
{
    if (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Escape)
        return false;
    QStringList selected;
    for (const int row : m_picker->selectedRows())
        selected += m_picker->item(row)->text();
    m_text->insert(pickedActivities(selected, m_design.onlyFirst));
    m_picker->hide();
    m_text->setFocus();
    return true;
}

bool ToDoItemWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (watched == m_picker)
        return pickerKey(key) || QDialog::eventFilter(watched, event);
    bool handled = true;
    if (key == Qt::Key_Return || key == Qt::Key_Enter)
        m_global.services.errors.run([this] { mnuDone_Click(); });
    else if (key == Qt::Key_Escape)
        mnuReturn_Click();
    else if (key == Qt::Key_F3 && watched == m_text)
        callPicker();
    else
        handled = false;
    return handled || QDialog::eventFilter(watched, event);
}

void ToDoItemWindow::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    m_picker->setGeometry(rect());
}

// Enter is Done in the boxes of text alone; anywhere else in the window it does nothing.
void ToDoItemWindow::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->ignore();
    else
        QDialog::keyPressEvent(event);
}

} // namespace vardelin
