#include "benchmarks/Sqlite.h"

#include "benchmarks/Generate.h"
#include "platform/jet/Jet.h"

#include <QFile>
#include <memory>
#include <sqlite3.h>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace vardelin::bench {

namespace {

constexpr char kAllLogs[] = "select * from Vardelins";
constexpr char kInsertLog[] =
    "insert into Vardelins (Client, Project, Employee, Rate, Vardelin, VardeGraphic, \"Log Summary\", "
    "\"Beginning Time\", \"Ending Time\", Duration, Fee) values (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)";

class Base
{
public:
    explicit Base(const QString &path)
    {
        check(sqlite3_open(QFile::encodeName(path).constData(), &m_base), SQLITE_OK);
    }
    ~Base() { sqlite3_close(m_base); }
    Base(const Base &) = delete;
    Base &operator=(const Base &) = delete;

    void check(int result, int wanted) const
    {
        if (result != wanted)
            throw std::runtime_error(std::string("sqlite: ") + sqlite3_errmsg(m_base));
    }
    void run(const char *sql) const
    {
        check(sqlite3_exec(m_base, sql, nullptr, nullptr, nullptr), SQLITE_OK);
    }
    sqlite3 *get() const { return m_base; }

private:
    sqlite3 *m_base = nullptr;
};

class Statement
{
public:
    Statement(const Base &base, const char *sql) : m_base(base)
    {
        base.check(sqlite3_prepare_v2(base.get(), sql, -1, &m_statement, nullptr), SQLITE_OK);
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    bool step()
    {
        const int result = sqlite3_step(m_statement);
        if (result != SQLITE_ROW)
            m_base.check(result, SQLITE_DONE);
        return result == SQLITE_ROW;
    }
    void runOnce()
    {
        m_base.check(sqlite3_step(m_statement), SQLITE_DONE);
        sqlite3_reset(m_statement);
    }
    void bind(int place, QStringView text) const
    {
        const QByteArray bytes = text.toUtf8();
        sqlite3_bind_text(m_statement, place, bytes.constData(), static_cast<int>(bytes.size()),
                          SQLITE_TRANSIENT);
    }
    void bind(int place, double number) const { sqlite3_bind_double(m_statement, place, number); }
    void bind(int place, std::int64_t number) const { sqlite3_bind_int64(m_statement, place, number); }
    void bindNull(int place) const { sqlite3_bind_null(m_statement, place); }
    std::int64_t whole(int column) const { return sqlite3_column_int64(m_statement, column); }
    double number(int column) const { return sqlite3_column_double(m_statement, column); }
    std::int64_t characters(int column) const // the generated texts are ASCII
    {
        return sqlite3_column_text(m_statement, column) ? sqlite3_column_bytes(m_statement, column) : 0;
    }

private:
    const Base &m_base;
    sqlite3_stmt *m_statement = nullptr;
};

// ---- The copy

std::string inQuotes(std::u16string_view name)
{
    return '"' + QString::fromUtf16(name.data(), static_cast<qsizetype>(name.size())).toStdString() + '"';
}

const char *typeName(const jet::Column &column)
{
    switch (column.type) {
    case jet::ColumnType::Text:
    case jet::ColumnType::Memo:
        return "text";
    case jet::ColumnType::Currency: // in ten-thousandths
    case jet::ColumnType::Long:
        return "integer";
    default:
        return "real";
    }
}

void createTable(const Base &base, const jet::Table &table)
{
    std::string sql;
    for (const jet::Column &column : table.columns()) {
        sql += (sql.empty() ? "" : ", ") + inQuotes(column.name) + ' ' + typeName(column);
        sql += column.autoNumber ? " primary key" : "";
    }
    base.run(("create table " + inQuotes(table.name()) + " (" + sql + ")").c_str());
}

void copyRows(const Base &base, const jet::Table &table)
{
    std::string places = "?";
    for (std::size_t i = 1; i < table.columns().size(); ++i)
        places += ", ?";
    Statement insert(base, ("insert into " + inQuotes(table.name()) + " values (" + places + ")").c_str());
    for (jet::Cursor cursor = table.scan(); !cursor.atEnd(); cursor.next()) {
        for (std::size_t i = 0; i < table.columns().size(); ++i) {
            const int place = static_cast<int>(i) + 1;
            const jet::ColumnType type = table.columns()[i].type;
            const jet::RowView &row = cursor.view();
            if (row.isNull(i))
                insert.bindNull(place);
            else if (type == jet::ColumnType::Text || type == jet::ColumnType::Memo)
                insert.bind(place, row.text(i));
            else if (type == jet::ColumnType::Currency)
                insert.bind(place, row.currency(i).tenThousandths);
            else if (type == jet::ColumnType::Long)
                insert.bind(place, std::int64_t{row.longValue(i)});
            else
                insert.bind(place, row.number(i));
        }
        insert.runOnce();
    }
}

// ---- Reading

struct Totals
{
    std::int64_t rows = 0, characters = 0, fees = 0;
    double numbers = 0;

    // A row of "select * from Vardelins".
    void add(const Statement &row)
    {
        ++rows;
        numbers += static_cast<double>(row.whole(0));
        for (int column = 1; column <= 7; ++column)
            characters += row.characters(column);
        for (int column = 8; column <= 10; ++column)
            numbers += row.number(column);
        fees += row.whole(11);
    }
};

Check openLists(const Base &base)
{
    Totals totals;
    Statement clients(base, "select \"Client Last Name\", \"Client First Name\" from \"Active Clients\"");
    for (; clients.step(); ++totals.rows)
        totals.characters += clients.characters(0) + 2 + clients.characters(1);
    Statement employees(base, "select \"Employee Last Name\", \"Employee First Name\" from Employees");
    for (; employees.step(); ++totals.rows)
        totals.characters += employees.characters(0) + 2 + employees.characters(1);
    for (const char *sql :
         {"select Projects from Projects", "select Rates from Rates", "select Activities from Activities"}) {
        Statement list(base, sql);
        for (; list.step(); ++totals.rows)
            totals.characters += list.characters(0);
    }
    return {{"rows", totals.rows}, {"chars", totals.characters}};
}

Check scanAll(const Base &base)
{
    Totals totals;
    for (Statement logs(base, kAllLogs); logs.step();)
        totals.add(logs);
    return {{"rows", totals.rows}, {"chars", totals.characters}, {"fee", totals.fees}};
}

Check countClient(const Base &base)
{
    Statement count(base, "select count(*) from Vardelins where Client = 'Hollister, Margaret'");
    count.step();
    return {{"rows", count.whole(0)}};
}

// The numbers of the rows in the order asked for; the last record whole if that is wanted.
Check ordered(const Base &base, const char *sql, bool fetchLast)
{
    std::vector<std::int64_t> places;
    for (Statement logs(base, sql); logs.step();)
        places.push_back(logs.whole(0));
    const std::int64_t last = places.empty() ? 0 : places.back();
    Check check{{"rows", std::ssize(places)}, {"last", last}};
    if (!fetchLast)
        return check;
    Totals totals;
    Statement record(base, "select * from Vardelins where \"Indexing Field\" = ?");
    record.bind(1, last);
    if (record.step())
        totals.add(record);
    check.emplace_back("chars", totals.characters);
    return check;
}

Check like(const Base &base, const char *pattern)
{
    const std::string sql = std::string("select \"Indexing Field\" from Vardelins where Vardelin like '") +
                            pattern + "' order by \"Beginning Time\"";
    return ordered(base, sql.c_str(), false);
}

// ---- Writing

void bindLog(const Statement &insert)
{
    const AddedLog &log = addedLog();
    int place = 0;
    for (const QString *text :
         {&log.client, &log.project, &log.employee, &log.rate, &log.notes, &log.richNotes, &log.summary})
        insert.bind(++place, *text);
    for (const double number : {log.begin, log.end, log.duration})
        insert.bind(++place, number);
    insert.bind(++place, log.fee);
}

std::int64_t rowCount(const Base &base)
{
    // Jet tells the number of rows from the table's head; SQLite would count. The highest number serves here.
    Statement last(base, "select max(\"Indexing Field\") from Vardelins");
    last.step();
    return last.whole(0);
}

Check insertLogs(const Base &base, int count, bool together)
{
    Statement insert(base, kInsertLog);
    if (together)
        base.run("begin");
    for (int i = 0; i < count; ++i) {
        bindLog(insert);
        insert.runOnce();
    }
    if (together)
        base.run("commit");
    return {{"rows", rowCount(base)}};
}

Check updateMemo(const Base &base)
{
    const std::int64_t number = std::max<std::int64_t>(1, rowCount(base) / 2);
    Statement update(base, "update Vardelins set Vardelin = ? where \"Indexing Field\" = ?");
    static int turn = 0;
    update.bind(1, changedNotes(turn++));
    update.bind(2, number);
    update.runOnce();
    return {{"number", number}};
}

Check deleteRow(const Base &base)
{
    base.run(
        "delete from Vardelins where \"Indexing Field\" = (select max(\"Indexing Field\") from Vardelins)");
    return {{"rows", rowCount(base)}};
}

// ---- New files

Check exportLogs(const QString &file, const QString &out, const std::string &condition)
{
    const Base base(out);
    base.run(("attach '" + QFile::encodeName(file).toStdString() + "' as source").c_str());
    base.run("begin");
    base.run("create table Vardelins (\"Indexing Field\" integer primary key, Client text, Project text, "
             "Employee text, Rate text, Vardelin text, VardeGraphic text, \"Log Summary\" text, "
             "\"Beginning Time\" real, \"Ending Time\" real, Duration real, Fee integer)");
    Statement copy(base, ("insert into main.Vardelins select * from source.Vardelins " + condition).c_str());
    copy.runOnce();
    const std::int64_t rows = sqlite3_changes(base.get());
    base.run("commit");
    return {{"rows", rows}};
}

Check vacuum(const QString &file, const QString &out)
{
    {
        const Base base(file);
        base.run(("vacuum into '" + QFile::encodeName(out).toStdString() + "'").c_str());
    }
    return {{"rows", rowCount(Base(out))}};
}

} // namespace

void copyToSqlite(const QString &mdb, const QString &sqlite)
{
    const auto file = jet::File::open(QFile::encodeName(mdb).toStdString(), {.readOnly = true});
    const Base base(sqlite);
    base.run("begin");
    for (const std::u16string &name : file->tableNames()) {
        createTable(base, file->table(name));
        copyRows(base, file->table(name));
    }
    base.run("commit");
}

Check runInSqlite(std::string_view operation, const QString &file, const QString &out)
{
    if (operation == "export_client")
        return exportLogs(file, out, "where Client = 'Hollister, Margaret'");
    if (operation == "export_all")
        return exportLogs(file, out, {});
    if (operation == "compact")
        return vacuum(file, out);
    const Base base(file);
    if (operation == "open_lists")
        return openLists(base);
    if (operation == "scan_all")
        return scanAll(base);
    if (operation == "count_client")
        return countClient(base);
    if (operation == "like_rare")
        return like(base, "%ESTOPPEL%");
    if (operation == "like_common")
        return like(base, "%SUBPOENA%");
    if (operation == "order_last")
        return ordered(base, "select \"Indexing Field\" from Vardelins order by \"Beginning Time\"", true);
    if (operation == "insert_one")
        return insertLogs(base, 1, false);
    if (operation == "insert_1k_each")
        return insertLogs(base, 1'000, false);
    if (operation == "insert_10k")
        return insertLogs(base, 10'000, true);
    if (operation == "update_memo")
        return updateMemo(base);
    if (operation == "delete_row")
        return deleteRow(base);
    throw std::runtime_error("an operation that SQLite isn't asked for");
}

} // namespace vardelin::bench
