#include "platform/data/DaoState.h"
#include "platform/jet/Compact.h"

#include <QFile>
#include <algorithm>
#include <utility>

namespace vardelin::dao {

using data::fail;
using namespace Qt::StringLiterals;
namespace Number = data::Number;

Database::Database(std::unique_ptr<State> state) : m_state(std::move(state)) {}

Database::~Database()
{
    if (m_state)
        m_state->opened->close();
}

Database::State &Database::state() const
{
    if (!m_state)
        fail(Number::ObjectClosed);
    return *m_state;
}

void Database::Close()
{
    state().opened->close();
    m_state.reset();
}

QString Database::Name() const
{
    return state().opened->path();
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString &table)
{
    auto recordset = std::make_unique<Recordset::State>(state().opened, table);
    return std::unique_ptr<Recordset>(new Recordset(std::move(recordset)));
}

// ---- transactions

void Database::BeginTrans()
{
    state().opened->begin();
}

void Database::CommitTrans()
{
    state().opened->commit();
}

void Database::Rollback()
{
    state().opened->rollback();
}

struct ReadTogether::State
{
    std::shared_ptr<data::OpenedFile> opened;
    data::OpenedFile::ReadTogether reading;
};

ReadTogether::ReadTogether(Database &database)
{
    const auto &opened = database.state().opened;
    m_state = engineCall([&] {
        return std::unique_ptr<State>(new State{opened, data::OpenedFile::ReadTogether(*opened)});
    });
}

ReadTogether::~ReadTogether() = default;

// ---- definitions

namespace {

struct TypePair
{
    FieldType field;
    jet::ColumnType column;
};

constexpr TypePair kTypes[] = {
    {dbBoolean, jet::ColumnType::Boolean},   {dbByte, jet::ColumnType::Byte},
    {dbInteger, jet::ColumnType::Integer},   {dbLong, jet::ColumnType::Long},
    {dbCurrency, jet::ColumnType::Currency}, {dbSingle, jet::ColumnType::Single},
    {dbDouble, jet::ColumnType::Double},     {dbDate, jet::ColumnType::DateTime},
    {dbText, jet::ColumnType::Text},         {dbLongBinary, jet::ColumnType::Ole},
    {dbMemo, jet::ColumnType::Memo},
};

constexpr int kLongestText = 255;

jet::ColumnType columnTypeOf(FieldType type)
{
    const auto *pair = std::ranges::find(kTypes, type, &TypePair::field);
    if (pair == std::end(kTypes))
        fail(Number::InvalidArgument);
    return pair->column;
}

// Types that have no number of their own here keep the file's.
FieldType fieldTypeOf(jet::ColumnType type)
{
    const auto *pair = std::ranges::find(kTypes, type, &TypePair::column);
    return pair == std::end(kTypes) ? static_cast<FieldType>(type) : pair->field;
}

jet::NewColumn newColumn(const FieldDef &field)
{
    jet::NewColumn column;
    column.name = toU16(field.Name);
    column.type = columnTypeOf(field.Type);
    if (field.Type == dbText) {
        if (field.Size < 0 || field.Size > kLongestText)
            fail(Number::InvalidArgument);
        column.size = static_cast<std::uint16_t>(field.Size == 0 ? kLongestText : field.Size);
    }
    column.autoNumber = (field.Attributes & dbAutoIncrField) != 0;
    column.required = field.Required;
    column.allowZeroLength = field.AllowZeroLength;
    return column;
}

jet::NewIndex newIndex(const IndexDef &index)
{
    jet::NewIndex made;
    made.name = toU16(index.Name);
    for (const QString &field : index.Fields)
        made.columns.emplace_back(toU16(field), false);
    made.primary = index.Primary;
    made.unique = index.Unique || index.Primary; // a primary key is unique without being told so
    made.required = index.Required || index.Primary;
    made.ignoreNulls = index.IgnoreNulls;
    return made;
}

FieldDef fieldDef(const jet::Column &column)
{
    FieldDef field;
    field.Name = toQString(column.name);
    field.Type = fieldTypeOf(column.type);
    field.Size = column.type == jet::ColumnType::Text ? column.length / 2 : column.length;
    field.Attributes = column.autoNumber ? dbAutoIncrField : 0;
    field.Required = column.required;
    field.AllowZeroLength = (field.Type == dbText || field.Type == dbMemo) && column.allowZeroLength;
    return field;
}

QString nameByNumber(const jet::Table &table, std::uint16_t number)
{
    const auto column = std::ranges::find(table.columns(), number, &jet::Column::number);
    return column == table.columns().end() ? QString() : toQString(column->name);
}

IndexDef indexDef(const jet::Table &table, const jet::LogicalIndex &index)
{
    const jet::PhysicalIndex &physical = table.physicalIndex(index);
    IndexDef made;
    made.Name = toQString(index.name);
    for (const jet::IndexColumn &column : physical.columns)
        made.Fields.append(nameByNumber(table, column.column));
    made.Primary = index.primary;
    made.Unique = physical.unique;
    made.Required = physical.required;
    made.IgnoreNulls = physical.ignoreNulls;
    return made;
}

TableDef tableDef(const jet::Table &table)
{
    TableDef made;
    made.Name = toQString(table.name());
    for (const jet::Column &column : table.columns())
        made.Fields.push_back(fieldDef(column));
    for (const jet::LogicalIndex &index : table.indexes())
        made.Indexes.push_back(indexDef(table, index));
    return made;
}

} // namespace

std::vector<TableDef> Database::TableDefs() const
{
    jet::File &file = state().opened->file();
    return engineCall([&] {
        std::vector<TableDef> made;
        for (const std::u16string &name : file.tableNames())
            made.push_back(tableDef(file.table(name)));
        return made;
    });
}

void Database::Append(const TableDef &table)
{
    jet::NewTable made;
    made.name = toU16(table.Name);
    for (const FieldDef &field : table.Fields)
        made.columns.push_back(newColumn(field));
    for (const IndexDef &index : table.Indexes)
        made.indexes.push_back(newIndex(index));
    jet::File &file = state().opened->file();
    engineCall([&] { file.createTable(made); });
}

// ---- workspace and engine

std::unique_ptr<Database> Workspace::CreateDatabase(const QString &path, const QString &locale)
{
    if (locale.compare(u";LANGID=0x0409;CP=1252;COUNTRY=0"_s, Qt::CaseInsensitive) != 0)
        fail(Number::InvalidArgument);
    auto state = std::make_unique<Database::State>();
    state->opened = data::OpenedFile::create(path);
    return std::unique_ptr<Database>(new Database(std::move(state)));
}

std::unique_ptr<Database> Workspace::OpenDatabase(const QString &path, bool exclusive, bool readOnly)
{
    auto state = std::make_unique<Database::State>();
    state->opened = data::OpenedFile::open(path, {.readOnly = readOnly, .exclusive = exclusive});
    return std::unique_ptr<Database>(new Database(std::move(state)));
}

Workspace &DBEngine::Workspaces(int index)
{
    if (index != 0)
        fail(Number::ItemNotFound);
    return m_workspace;
}

std::unique_ptr<Database> DBEngine::OpenDatabase(const QString &path)
{
    return m_workspace.OpenDatabase(path);
}

void DBEngine::CompactDatabase(const QString &from, const QString &to)
{
    const auto native = [](const QString &path) {
        return std::filesystem::path(QFile::encodeName(path).toStdString());
    };
    engineCall([&] { jet::compactFile(native(from), native(to)); });
}

} // namespace vardelin::dao
