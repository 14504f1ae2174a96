#include "contacts/frmProject.h"

#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

frmProject::frmProject(Global &global, QWidget *parent)
    : ListWindow(global,
                 {.name = u"frmProject"_s,
                  .caption = global.ProjectCaption + u" List"_s,
                  .listCaption = global.ProjectCaption,
                  .list = PickList::Projects,
                  .table = u"Projects"_s,
                  .lastColumn = u"Projects"_s,
                  .firstColumn = {},
                  .frameCaptions = {u"Add Project Here"_s, QString()},
                  .textTips = {u"Enter client's first name here"_s, QString()}, // left as it has always stood
                  .listTip = u"Use [Ctrl] to select multiple projects for deletion"_s,
                  .emptyMessage = u"You did not enter a "_s + global.ProjectCaption + u"."_s,
                  .printCaption = u"&Print List"_s},
                 parent)
{
    Form_Load();
}

bool frmProject::refuses(const QString &text)
{
    if (!text.contains(", "_L1))
        return false;
    m_global.services.dialogs.msgBox(
        {u"Do not use a comma followed by a space when entering a "_s + m_global.ProjectCaption +
         u".  This is reserved for the format of a "_s + m_global.ClientCaption + u".  Please try again."_s});
    return true;
}

} // namespace vardelin
