#include "database/Schema.h"

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

using dao::FieldDef;
using dao::IndexDef;
using dao::TableDef;

FieldDef text(const QString &name, int characters)
{
    return {.Name = name, .Type = dao::dbText, .Size = characters, .AllowZeroLength = true};
}

FieldDef memo(const QString &name)
{
    return {.Name = name, .Type = dao::dbMemo, .AllowZeroLength = true};
}

FieldDef date(const QString &name)
{
    return {.Name = name, .Type = dao::dbDate};
}

// The size declares nothing: a currency column has a width of its own.
FieldDef currency(const QString &name)
{
    return {.Name = name, .Type = dao::dbCurrency, .Size = 10};
}

IndexDef primaryKey(const QStringList &fields)
{
    return {.Name = u"PrimaryKey"_s, .Fields = fields, .Primary = true, .Unique = true, .Required = true};
}

TableDef list(const QString &name, int characters)
{
    return {.Name = name, .Fields = {text(name, characters)}, .Indexes = {}};
}

TableDef logs()
{
    return {.Name = u"Vardelins"_s,
            .Fields = {{.Name = u"Indexing Field"_s, .Type = dao::dbLong, .Attributes = dao::dbAutoIncrField},
                       text(u"Client"_s, 200),
                       text(u"Project"_s, 100),
                       text(u"Employee"_s, 200),
                       text(u"Rate"_s, 10),
                       memo(u"Vardelin"_s),
                       memo(u"VardeGraphic"_s),
                       text(u"Log Summary"_s, 100),
                       date(u"Beginning Time"_s),
                       date(u"Ending Time"_s),
                       {.Name = u"Duration"_s, .Type = dao::dbSingle},
                       currency(u"Fee"_s)},
            .Indexes = {primaryKey({u"Indexing Field"_s})}};
}

TableDef activeClients()
{
    return {
        .Name = u"Active Clients"_s,
        .Fields =
            {text(u"Client First Name"_s, 100),           text(u"Client Last Name"_s, 100),
             text(u"Active Client First Address"_s, 100), text(u"Active Client Second Address"_s, 100),
             text(u"Active Client Third Address"_s, 100), text(u"Active Client City"_s, 100),
             text(u"Active Client State"_s, 50),          text(u"Active Client Zip Code"_s, 10),
             text(u"Active Client Home Telephone"_s, 30), text(u"Active Client Work Telephone"_s, 30),
             text(u"Active Client Cell Telephone"_s, 30), text(u"Active Client Alternative Telephone"_s, 30),
             text(u"Active Client Email Address"_s, 100), memo(u"Active Client Notes"_s),
             date(u"Active Client Retainer Date"_s),      memo(u"Active Client Retainer Terms"_s),
             text(u"Active Client Referrer"_s, 200),      text(u"Active Client Claim Type"_s, 200),
             text(u"Active Client Forum"_s, 100),         text(u"Active Client Claim Number"_s, 50),
             text(u"Active Client Defendant"_s, 200),     text(u"Active Client Opposing Attorney"_s, 200),
             text(u"Active Client OPA Telephone"_s, 30),  memo(u"Active Client History"_s),
             memo(u"Active Client Things To Do"_s),       memo(u"Active Client Re Line"_s),
             memo(u"Active Client Greeting"_s),           memo(u"Active Client Closing"_s)},
        .Indexes = {primaryKey({u"Client Last Name"_s, u"Client First Name"_s})}};
}

TableDef inactiveClients()
{
    return {.Name = u"Inactive Clients"_s,
            .Fields = {text(u"Inactive Client First Name"_s, 100), text(u"Inactive Client Last Name"_s, 100),
                       text(u"Inactive Client First Address"_s, 100),
                       text(u"Inactive Client Second Address"_s, 100),
                       text(u"Inactive Client Third Address"_s, 100), text(u"Inactive Client City"_s, 100),
                       text(u"Inactive Client State"_s, 50), text(u"Inactive Client Zip Code"_s, 10),
                       text(u"Inactive Client Home Telephone"_s, 30),
                       text(u"Inactive Client Work Telephone"_s, 30),
                       text(u"Inactive Client Email Address"_s, 100),
                       date(u"Inactive Client Retainer Date"_s), memo(u"Inactive Client Retainer Terms"_s),
                       text(u"Inactive Client Referrer"_s, 200), text(u"Inactive Client Claim Type"_s, 200),
                       date(u"Inactive Client Case Closed Date"_s)},
            .Indexes = {}};
}

TableDef employees()
{
    return {.Name = u"Employees"_s,
            .Fields = {text(u"Employee First Name"_s, 100), text(u"Employee Last Name"_s, 100)},
            .Indexes = {}};
}

TableDef thingsToDo()
{
    return {.Name = u"Things To Do"_s,
            .Fields = {text(u"ThingToDo"_s, 100), text(u"TTD Client First Name"_s, 100),
                       text(u"TTD Client Last Name"_s, 100), text(u"TTD Project"_s, 100),
                       text(u"TTD Priority"_s, 100), date(u"Thing To Do Start Date"_s),
                       date(u"Thing To Do Deadline"_s)},
            .Indexes = {}};
}

TableDef disbursements()
{
    return {.Name = u"Disbursements"_s,
            .Fields = {memo(u"Disbursement Description"_s), text(u"Disbursement Client First Name"_s, 100),
                       text(u"Disbursement Client Last Name"_s, 100), date(u"Disbursement Date"_s),
                       currency(u"Disbursement Amount"_s), text(u"Disbursement Payee"_s, 100)},
            .Indexes = {}};
}

// Twelve characters for the description, unlike its twin's memo: settled, files rely on it.
TableDef payments()
{
    return {.Name = u"Payments"_s,
            .Fields = {text(u"Payment Description"_s, 12), text(u"Payment Client First Name"_s, 100),
                       text(u"Payment Client Last Name"_s, 100), date(u"Payment Date"_s),
                       currency(u"Payment Amount"_s)},
            .Indexes = {}};
}

// Keeps no invoices but the letterhead.
TableDef invoices()
{
    return {.Name = u"Invoices"_s, .Fields = {memo(u"Invoice Header"_s)}, .Indexes = {}};
}

QStringList seedRates()
{
    QStringList rates{u"0"_s};
    for (int rate = 50; rate <= 375; rate += 25)
        rates += QString::number(rate);
    return rates;
}

} // namespace

const std::vector<dao::TableDef> &schema()
{
    static const std::vector<TableDef> tables{logs(),
                                              activeClients(),
                                              inactiveClients(),
                                              employees(),
                                              list(u"Activities"_s, 100),
                                              list(u"Projects"_s, 100),
                                              list(u"Rates"_s, 10),
                                              thingsToDo(),
                                              disbursements(),
                                              payments(),
                                              invoices()};
    return tables;
}

const std::vector<SeedRows> &seedRows()
{
    static const std::vector<SeedRows> rows{
        {u"Activities"_s,
         {u"Telephone conference with"_s, u"Attempted telephone conference with"_s,
          u"Conference in office with"_s, u"Consultation in office with"_s, u"Review file"_s, u"Attend"_s,
          u"Court appearance re"_s, u"Legal research"_s, u"Preparation for"_s, u"Prepare and send letter"_s,
          u"Review letter from"_s, u"Take deposition of"_s, u"Analysis and evaluation of"_s,
          u"Factual investigation re"_s, u"Document inspection"_s}},
        {u"Projects"_s,
         {u"ADMINISTRATION"_s, u"CONTINUING EDUCATION"_s, u"MARKETING"_s, u"MONTHLY STATEMENTS"_s,
          u"PAY BILLS"_s, u"REVIEW CASES"_s}},
        {u"Rates"_s, seedRates()}};
    return rows;
}

const QStringList &validationSources()
{
    static const QStringList sources{
        u"[Active Clients]"_s, u"[Inactive Clients]"_s, u"Vardelins"_s, u"Employees"_s,
        u"Activities"_s,       u"Projects"_s,           u"Rates"_s,     u"[Things To Do]"_s,
        u"Disbursements"_s,    u"Payments"_s,           u"Invoices"_s};
    return sources;
}

} // namespace vardelin
