#include "benchmarks/Operations.h"

#include "benchmarks/Generate.h"
#include "benchmarks/QuietProgram.h"
#include "database/LogDatabase.h"
#include "platform/jet/Compact.h"
#include "platform/jet/Jet.h"
#include "platform/sql/Select.h"

#include <QFile>
#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace vardelin::bench {

namespace {

constexpr char16_t kLogs[] = u"Vardelins";
using Kind = Operation::Kind;

std::filesystem::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

std::unique_ptr<jet::File> openToRead(const QString &path)
{
    return jet::File::open(native(path), {.readOnly = true});
}

std::size_t columnOf(const jet::Table &table, std::u16string_view name)
{
    const auto column = table.findColumn(name);
    if (!column)
        throw std::runtime_error("a column is missing");
    return *column;
}

// ---- Reading

Check openLists(const QString &path, const QString &)
{
    QuietProgram program(path);
    OpenLogDatabase(program.global);
    std::int64_t rows = 0, characters = 0;
    for (std::size_t list = 0; list < 5; ++list) {
        for (const QString &entry : program.global.List1[list]) {
            ++rows;
            characters += entry.size();
        }
    }
    return {{"rows", rows}, {"chars", characters}};
}

// Every column of a row as a value that its type has in a program.
class LogReader
{
public:
    explicit LogReader(const jet::Table &logs) : m_logs(logs) {}

    void read(const jet::RowView &row)
    {
        for (std::size_t column = 0; column < m_logs.columns().size(); ++column)
            readColumn(row, column, m_logs.columns()[column].type);
    }
    std::int64_t characters() const { return m_characters; }
    std::int64_t fees() const { return m_fees; }

private:
    void readColumn(const jet::RowView &row, std::size_t column, jet::ColumnType type)
    {
        using enum jet::ColumnType;
        if (type == Text || type == Memo) {
            m_characters += std::ssize(row.text(column, m_text));
        } else if (!row.isNull(column)) {
            if (type == jet::ColumnType::Currency)
                m_fees += row.currency(column).tenThousandths;
            else
                m_numbers += row.number(column);
        }
    }

    const jet::Table &m_logs;
    jet::TextBuffer m_text;
    std::int64_t m_characters = 0, m_fees = 0;
    double m_numbers = 0; // so that they are decoded at all
};

Check scanAll(const QString &path, const QString &)
{
    const auto file = openToRead(path);
    const jet::Table &logs = file->table(kLogs);
    LogReader reader(logs);
    std::int64_t rows = 0;
    for (jet::Cursor cursor = logs.scan(); !cursor.atEnd(); cursor.next(), ++rows)
        reader.read(cursor.view());
    return {{"rows", rows}, {"chars", reader.characters()}, {"fee", reader.fees()}};
}

Check countClient(const QString &path, const QString &)
{
    const auto file = openToRead(path);
    const sql::Select select(*file, u"Select Count(*) From Vardelins Where Client = 'Hollister, Margaret'"_s);
    return {{"rows", toLong(select.rows().at(0).at(0))}};
}

std::int64_t lastNumber(const jet::File &file, const jet::Table &logs, const std::vector<jet::RowId> &places)
{
    const jet::ReadScope scope(file);
    return places.empty() ? 0 : logs.row(places.back()).longValue(columnOf(logs, u"Indexing Field"));
}

Check like(const QString &path, QStringView word)
{
    const auto file = openToRead(path);
    const sql::Select select(
        *file, u"Select * From Vardelins Where Vardelin Like '%%1%' Order By [Beginning Time]"_s.arg(word));
    const std::vector<jet::RowId> places = select.places();
    return {{"rows", std::ssize(places)}, {"last", lastNumber(*file, select.table(), places)}};
}

Check likeRare(const QString &path, const QString &)
{
    return like(path, kRareWord);
}

Check likeCommon(const QString &path, const QString &)
{
    return like(path, kCommonWord);
}

Check orderLast(const QString &path, const QString &)
{
    const auto file = openToRead(path);
    const sql::Select select(*file, u"Select * From Vardelins Order By [Beginning Time]"_s);
    const std::vector<jet::RowId> places = select.places();
    LogReader reader(select.table());
    {
        const jet::ReadScope scope(*file);
        if (!places.empty())
            reader.read(select.table().row(places.back()));
    }
    return {{"rows", std::ssize(places)},
            {"last", lastNumber(*file, select.table(), places)},
            {"chars", reader.characters()}};
}

// ---- Writing

void addLog(dao::Recordset &logs)
{
    const AddedLog &log = addedLog();
    logs.AddNew();
    logs.SetField(u"Client"_s, Value(log.client));
    logs.SetField(u"Project"_s, Value(log.project));
    logs.SetField(u"Employee"_s, Value(log.employee));
    logs.SetField(u"Rate"_s, Value(log.rate));
    logs.SetField(u"Vardelin"_s, Value(log.notes));
    logs.SetField(u"VardeGraphic"_s, Value(log.richNotes));
    logs.SetField(u"Log Summary"_s, Value(log.summary));
    logs.SetField(u"Beginning Time"_s, Value(DateSerial{log.begin}));
    logs.SetField(u"Ending Time"_s, Value(DateSerial{log.end}));
    logs.SetField(u"Duration"_s, Value(log.duration));
    logs.SetField(u"Fee"_s, Value(Currency{log.fee}));
    logs.Update();
}

// The way of the program's own commands.
Check insertLogs(const QString &path, int count, bool together)
{
    dao::DBEngine engine;
    const auto file = engine.OpenDatabase(path);
    const auto logs = file->OpenRecordset(u"Vardelins"_s);
    if (together)
        file->BeginTrans();
    for (int i = 0; i < count; ++i)
        addLog(*logs);
    if (together)
        file->CommitTrans();
    const std::int64_t rows = logs->RecordCount();
    logs->Close();
    file->Close();
    return {{"rows", rows}};
}

Check insertOne(const QString &path, const QString &)
{
    return insertLogs(path, 1, false);
}

Check insertEach(const QString &path, const QString &)
{
    return insertLogs(path, 1'000, false);
}

Check insertTogether(const QString &path, const QString &)
{
    return insertLogs(path, 10'000, true);
}

std::optional<jet::RowId> rowByNumber(const jet::Table &logs, std::int32_t number)
{
    const jet::Cell key = number;
    for (const jet::LogicalIndex &index : logs.indexes()) {
        if (!index.primary)
            continue;
        const std::vector<jet::RowId> found = logs.find(index, std::span(&key, 1));
        return found.empty() ? std::nullopt : std::optional(found.front());
    }
    throw std::runtime_error("the logs have no primary key");
}

// The first log from `number` downward.
std::pair<std::int32_t, jet::RowId> rowAtOrBelow(const jet::Table &logs, std::int32_t number)
{
    for (; number > 0; --number) {
        if (const auto row = rowByNumber(logs, number))
            return {number, *row};
    }
    throw std::runtime_error("there is no log");
}

Check updateMemo(const QString &path, const QString &)
{
    static int turn = 0;
    const auto file = jet::File::open(native(path));
    jet::Table &logs = file->table(kLogs);
    const auto [number, row] = rowAtOrBelow(logs, std::max(1, logs.lastAutoNumber() / 2));
    const jet::ColumnValue notes{columnOf(logs, u"Vardelin"), changedNotes(turn++).toStdU16String()};
    logs.update(row, std::span(&notes, 1));
    return {{"number", number}};
}

// The last one.
Check deleteRow(const QString &path, const QString &)
{
    const auto file = jet::File::open(native(path));
    jet::Table &logs = file->table(kLogs);
    logs.erase(rowAtOrBelow(logs, logs.lastAutoNumber()).second);
    return {{"rows", logs.rowCount()}};
}

// ---- New files

Check exportClient(const QString &path, const QString &out)
{
    const auto file = openToRead(path);
    const sql::Select select(*file, u"Select * From Vardelins Where Client = 'Hollister, Margaret'"_s);
    const std::vector<jet::RowId> places = select.places();
    const auto target = jet::File::create(native(out));
    jet::Scope writing(*target);
    jet::NewTable made{.name = kLogs, .columns = {}, .indexes = {}};
    for (const jet::Column &column : select.table().columns())
        made.columns.push_back({.name = column.name,
                                .type = column.type,
                                .size = column.type == jet::ColumnType::Text
                                            ? static_cast<std::uint16_t>(column.length / 2)
                                            : std::uint16_t{0},
                                .autoNumber = column.autoNumber,
                                .required = column.required,
                                .allowZeroLength = column.allowZeroLength,
                                .compress = column.compress});
    made.indexes.push_back({.name = u"PrimaryKey",
                            .columns = {{u"Indexing Field", false}},
                            .primary = true,
                            .unique = true,
                            .required = true});
    jet::Table &copy = target->createTable(made);
    const jet::ReadScope reading(*file);
    std::vector<jet::ColumnValue> values;
    for (const jet::RowId place : places) {
        const jet::RowView row = select.table().row(place);
        values.clear();
        for (std::size_t column = 0; column < made.columns.size(); ++column)
            values.emplace_back(column, row.cell(column));
        copy.insert(values);
    }
    const std::int64_t rows = copy.rowCount();
    writing.commit();
    return {{"rows", rows}};
}

Check compact(const QString &path, const QString &out)
{
    jet::compactFile(native(path), native(out));
    const auto file = openToRead(out);
    return {{"rows", file->table(kLogs).rowCount()}};
}

constexpr Operation kOperations[] = {
    {"open_lists", Kind::Reads, openLists},       {"scan_all", Kind::Reads, scanAll},
    {"count_client", Kind::Reads, countClient},   {"like_rare", Kind::Reads, likeRare},
    {"like_common", Kind::Reads, likeCommon},     {"order_last", Kind::Reads, orderLast},
    {"insert_one", Kind::Writes, insertOne},      {"insert_1k_each", Kind::Writes, insertEach},
    {"insert_10k", Kind::Writes, insertTogether}, {"update_memo", Kind::Writes, updateMemo},
    {"delete_row", Kind::Writes, deleteRow},      {"export_client", Kind::MakesFile, exportClient},
    {"compact", Kind::MakesFile, compact}};

} // namespace

std::span<const Operation> operations()
{
    return kOperations;
}

const Operation *findOperation(std::string_view name)
{
    const auto found = std::ranges::find(kOperations, name, &Operation::name);
    return found == std::end(kOperations) ? nullptr : &*found;
}

const AddedLog &addedLog()
{
    static const AddedLog log = [] {
        AddedLog made{.client = u"Hollister, Margaret"_s,
                      .project = u""_s,
                      .employee = u"Weaver, Anna"_s,
                      .rate = u"200"_s,
                      .notes =
                          u"Telephone conference with opposing counsel about the schedule. "_s.repeated(10),
                      .richNotes = {},
                      .summary = u"Telephone conference"_s};
        made.richNotes = u"{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Liberation Sans;}}\\pard\\f0\\fs24 "_s +
                         made.notes + u"\\par}"_s;
        return made;
    }();
    return log;
}

QString changedNotes(int turn)
{
    return u"Reviewed the responses to discovery and drafted a letter to the carrier. "_s.repeated(10) +
           QString::number(turn % 10);
}

} // namespace vardelin::bench
