#include "search/frmSearchList.h"

#include "search/SearchSql.h"
#include "shell/state/Global.h"

#include <QKeyEvent>
#include <QListWidget>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

// What the window picks, by the search's type.
struct Pick
{
    PickList list;
    QString Global::*target;
    QString Global::*word; // the user's own for it
};

std::optional<Pick> pickOf(int searchType)
{
    switch (searchType) {
    case SearchFor::AnotherClient:
        return Pick{PickList::Clients, &Global::SearchClient, &Global::ClientCaption};
    case SearchFor::Employee:
        return Pick{PickList::Employees, &Global::SearchEmployee, &Global::EmployeeCaption};
    case SearchFor::Project:
        return Pick{PickList::Projects, &Global::SearchProject, &Global::ProjectCaption};
    default:
        return {};
    }
}

} // namespace

frmSearchList::frmSearchList(Global &global, const QString &caption, QWidget *parent)
    : QDialog(parent), m_global(global), List1(new QListWidget(this))
{
    setObjectName(u"frmSearchList"_s);
    setWindowTitle(caption);
    List1->setObjectName(u"List1"_s);
    List1->setToolTip(u"Click on item you wish to select"_s);
    List1->setAccessibleName(caption);
    List1->setFrameShape(QFrame::NoFrame);
    List1->setUniformItemSizes(true);
    List1->installEventFilter(this);
    connect(List1, &QListWidget::itemClicked, this,
            [this] { m_global.services.errors.run([this] { List1_Click(); }); });
    Form_Load();
}

void frmSearchList::Form_Load()
{
    if (const QWidget *main = m_global.frmMain)
        setGeometry(main->geometry());
    const std::optional<Pick> pick = pickOf(m_global.SearchType);
    if (!pick)
        return;
    List1->setAccessibleDescription(m_global.*pick->word);
    QStringList entries = m_global.List1[static_cast<std::size_t>(pick->list)];
    entries.removeAll(QString());
    List1->addItems(entries);
    List1->setCurrentRow(0);
}

void frmSearchList::List1_Click()
{
    const QListWidgetItem *entry = List1->currentItem();
    const std::optional<Pick> pick = pickOf(m_global.SearchType);
    if (!entry || !pick)
        return;
    m_global.*pick->target = entry->text();
    accept();
}

void frmSearchList::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    List1->setGeometry(rect());
}

// Enter picks the entry that the arrows went to.
bool frmSearchList::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return QDialog::eventFilter(watched, event);
    m_global.services.errors.run([this] { List1_Click(); });
    return true;
}

} // namespace vardelin
