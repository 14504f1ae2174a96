#include "contacts/frmClient.h"

#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

frmClient::frmClient(Global &global, QWidget *parent)
    : ListWindow(global,
                 {.name = u"frmClient"_s,
                  .caption = global.ClientCaption + u" List"_s,
                  .listCaption = global.ClientCaption,
                  .list = PickList::Clients,
                  .table = u"Active Clients"_s,
                  .lastColumn = u"Client Last Name"_s,
                  .firstColumn = u"Client First Name"_s,
                  .frameCaptions = {u"Add first name here"_s, u"Add last name here"_s},
                  .textTips = {u"Press [Enter] when first and last names have been added"_s,
                               u"Press [Enter] when first and last names have been added"_s},
                  .listTip = u"Use [Ctrl] to select multiple clients for deletion"_s,
                  .emptyMessage = u"You forgot to enter a first name or last name, please try again."_s,
                  .deleteCaption = u"Delete selected "_s + global.ClientCaption,
                  .printCaption = u"&Print list"_s,
                  .printTitle = global.ClientCaption + u" List"_s,
                  .deleteKey = false},
                 parent)
{
    Form_Load();
}

} // namespace vardelin
