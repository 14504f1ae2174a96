#include "database/CreateDatabase.h"

#include "database/Schema.h"
#include "shell/state/Global.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

const QString kGeneralLocale = u";LANGID=0x0409;CP=1252;COUNTRY=0"_s;

void addSeedRows(dao::Database &database)
{
    for (const SeedRows &seed : seedRows()) {
        const auto rows = database.OpenRecordset(seed.table);
        for (const QString &text : seed.rows) {
            rows->AddNew();
            rows->SetField(seed.table, text);
            rows->Update();
        }
        rows->Close();
    }
}

} // namespace

void CreateDatabase(Global &global)
{
    global.LogDatabase.reset(); // a transfer may have left one behind
    const auto database =
        global.services.engine.Workspaces(0).CreateDatabase(global.DatabaseFileName, kGeneralLocale);
    if (!database) {
        global.services.dialogs.msgBox(
            {u"Could not create Vardelin database.  Please try again.  Error description: "_s});
        return;
    }
    database->BeginTrans();
    for (const dao::TableDef &table : schema())
        database->Append(table);
    addSeedRows(*database);
    database->CommitTrans();
    database->Close();
}

} // namespace vardelin
