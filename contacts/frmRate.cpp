#include "contacts/frmRate.h"

#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

frmRate::frmRate(Global &global, QWidget *parent)
    : ListWindow(global,
                 {.name = u"frmRate"_s,
                  .caption = u"Rates List"_s,
                  .listCaption = u"Vardelin's List of Rates"_s,
                  .list = PickList::Rates,
                  .table = u"Rates"_s,
                  .lastColumn = u"Rates"_s,
                  .firstColumn = {},
                  .frameCaptions = {u"Add Rate Here"_s, QString()},
                  .textTips = {u"Enter rate here"_s, QString()},
                  .listTip = u"Use [Ctrl] to select multiple rates for deletion"_s,
                  .emptyMessage = u"You did not enter a rate."_s,
                  .printCaption = {}},
                 parent)
{
    Form_Load();
}

} // namespace vardelin
