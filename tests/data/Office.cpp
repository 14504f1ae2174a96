#include "Office.h"

#include "tests/support/Judges.h"

#include <iostream>

void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

namespace vardelin {

using namespace Qt::StringLiterals;

const char *const kLocale = ";LANGID=0x0409;CP=1252;COUNTRY=0";

void PrintTo(const Value &value, std::ostream *out)
{
    *out << '(' << value.variant().index() << ") " << joinText(value).toStdString();
}

namespace {

dao::FieldDef field(const QString &name, dao::FieldType type, int size = 0, int attributes = 0)
{
    return {.Name = name,
            .Type = type,
            .Size = size,
            .Attributes = attributes,
            .Required = false,
            .AllowZeroLength = type == dao::dbText || type == dao::dbMemo};
}

dao::TableDef clientTable()
{
    dao::TableDef table;
    table.Name = u"Active Clients"_s;
    table.Fields = {field(u"Client First Name"_s, dao::dbText, 100),
                    field(u"Client Last Name"_s, dao::dbText, 100), field(u"Retainer Date"_s, dao::dbDate)};
    table.Indexes = {{.Name = u"PrimaryKey"_s,
                      .Fields = {u"Client Last Name"_s, u"Client First Name"_s},
                      .Primary = true,
                      .Unique = false,
                      .Required = true,
                      .IgnoreNulls = false}};
    return table;
}

} // namespace

dao::TableDef logTable()
{
    dao::TableDef table;
    table.Name = u"Vardelins"_s;
    table.Fields = {field(u"Indexing Field"_s, dao::dbLong, 0, dao::dbAutoIncrField),
                    field(u"Client"_s, dao::dbText, 200),
                    field(u"Rate"_s, dao::dbText, 10),
                    field(u"Vardelin"_s, dao::dbMemo),
                    field(u"Beginning Time"_s, dao::dbDate),
                    field(u"Duration"_s, dao::dbSingle),
                    field(u"Fee"_s, dao::dbCurrency, 10)};
    table.Indexes = {{.Name = u"PrimaryKey"_s,
                      .Fields = {u"Indexing Field"_s},
                      .Primary = true,
                      .Unique = false,
                      .Required = true,
                      .IgnoreNulls = false}};
    return table;
}

void createOffice(const QString &path)
{
    dao::DBEngine engine;
    const auto database = engine.Workspaces(0).CreateDatabase(path, QString::fromLatin1(kLocale));
    database->Append(logTable());
    database->Append(clientTable());
    database->Append({.Name = u"Rates"_s, .Fields = {field(u"Rates"_s, dao::dbText, 10)}, .Indexes = {}});
}

Office::Office() : path(pathOf(u"office.mdb"_s))
{
    createOffice(path);
}

void Office::add(const QString &table, const std::vector<std::pair<QString, Value>> &values)
{
    const auto database = open();
    const auto rows = database->OpenRecordset(table);
    rows->AddNew();
    for (const auto &[name, value] : values)
        rows->SetField(name, value);
    rows->Update();
}

void Office::addLogs(int first, int last)
{
    const auto database = open();
    const auto rows = database->OpenRecordset(u"Vardelins"_s);
    for (int i = first; i <= last; ++i) {
        rows->AddNew();
        rows->SetField(u"Client"_s, u"Client %1"_s.arg(i));
        rows->SetField(u"Duration"_s, static_cast<float>(i) / 10);
        rows->SetField(u"Beginning Time"_s, DateSerial{45000.0 + i});
        rows->Update();
    }
}

QStringList Office::column(const QString &table, const QString &column)
{
    QStringList texts;
    const auto database = open();
    for (const auto rows = database->OpenRecordset(table); !rows->EOF_(); rows->MoveNext())
        texts.append(joinText(rows->Fields(column)));
    return texts;
}

QStringList Office::exported(const QString &table) const
{
    return testing_support::outputOf(u"mdb-export"_s, {u"-H"_s, u"-Q"_s, path, table})
        .split(u'\n', Qt::SkipEmptyParts);
}

void Office::expectSound() const
{
    testing_support::expectSound(path, VARDELIN_ROOT);
}

} // namespace vardelin
