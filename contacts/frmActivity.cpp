#include "contacts/frmActivity.h"

#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

QString gatheredActivities(const QStringList &selected)
{
    QString text;
    for (const QString &entry : selected)
        text.prepend(entry + u' ');
    return text + u' ';
}

frmActivity::frmActivity(Global &global, QWidget *parent)
    : ListWindow(global,
                 {.name = u"frmActivity"_s,
                  .caption = u" List"_s, // the empty word ahead of it is deliberate
                  .listCaption = u"Vardelin's List of Activities"_s,
                  .list = PickList::Activities,
                  .table = u"Activities"_s,
                  .lastColumn = u"Activities"_s,
                  .firstColumn = {},
                  .frameCaptions = {u"Add Activity Here"_s, QString()},
                  .textTips = {u"Enter activity here"_s, QString()},
                  .listTip = u"Use [Ctrl] to select multiple activities for deletion"_s,
                  .emptyMessage = u"You did not enter an activity."_s,
                  .returnCaption = u"&Return "_s,
                  .printCaption = u"&Print List"_s},
                 parent)
{
    resumeNext([this] { Form_Load(); }); // this window's load ends quietly on an error
    if (List1)
        connect(List1, &QListWidget::itemDoubleClicked, this,
                [this] { m_global.services.errors.run([this] { mnuDone_Click(); }); });
}

EntryWindow *frmActivity::caller() const
{
    const auto index = static_cast<std::size_t>(m_global.CurrentEntryTag.toInt() - 1);
    return index < m_global.EntryWindows.size() ? m_global.EntryWindows[index].data() : nullptr;
}

void frmActivity::insertSelected()
{
    QStringList selected;
    for (const int row : List1->selectedRows())
        selected += List1->item(row)->text();
    if (EntryWindow *window = caller()) {
        window->insertText(gatheredActivities(selected));
        window->focusSummary();
    }
}

bool frmActivity::listKeyPressed(int qtKey)
{
    if (qtKey == Qt::Key_Return || qtKey == Qt::Key_Enter) {
        insertSelected();
        accept();
        return true;
    }
    if (qtKey == Qt::Key_Escape) {
        reject();
        if (EntryWindow *window = caller())
            window->focusSummary();
        return true;
    }
    // Every key in the list leaves the caller's summary line as the field to go on with.
    if (EntryWindow *window = caller())
        window->focusSummary();
    return ListWindow::listKeyPressed(qtKey);
}

// As if Enter had been pressed in the list, and then the list as the table has it now.
void frmActivity::mnuDone_Click()
{
    insertSelected();
    fillList();
    ListWindow::mnuDone_Click();
}

void frmActivity::escapeInText()
{
    mnuReturn_Click();
}

} // namespace vardelin
