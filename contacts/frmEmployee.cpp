#include "contacts/frmEmployee.h"

#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

frmEmployee::frmEmployee(Global &global, QWidget *parent)
    : ListWindow(global,
                 {.name = u"frmEmployee"_s,
                  .caption = global.EmployeeCaption + u" List"_s,
                  .listCaption = global.EmployeeCaption,
                  .list = PickList::Employees,
                  .table = u"Employees"_s,
                  .lastColumn = u"Employee Last Name"_s,
                  .firstColumn = u"Employee First Name"_s,
                  .frameCaptions = {u"Add first name here"_s, u"Add last name here"_s},
                  .textTips = {u"Enter employee's first name here"_s, u"Enter employee's last name here"_s},
                  .listTip = u"Use [Ctrl] to select multiple employees for deletion"_s,
                  .emptyMessage = u"You forgot to enter a first name or last name, please try again."_s,
                  .printCaption = u"&Print list"_s},
                 parent)
{
    Form_Load({{u"mnuDefaultEmployee"_s, u"&Select default employee"_s, {}, [this] {
                    mnuDefaultEmployee_Click();
                }}});
}

void frmEmployee::mnuDefaultEmployee_Click()
{
    const QListWidgetItem *entry = List1->currentItem();
    if (!entry || !entry->isSelected()) {
        m_global.services.dialogs.msgBox({u"Please select an employee and try again."_s});
        return;
    }
    m_global.DefaultEmployee = entry->text();
    m_global.services.settings.SaveSetting(u"DefaultEmployee"_s, u"Default Employee"_s, entry->text());
    m_global.services.dialogs.msgBox({entry->text() + u" selected as default employee."_s});
}

} // namespace vardelin
