#include "platform/sql/Select.h"

#include "platform/sql/Binder.h"
#include "platform/sql/Cells.h"
#include "platform/sql/Groups.h"
#include "platform/sql/IndexChoice.h"
#include "platform/sql/Lexer.h"
#include "platform/sql/Operators.h"
#include "platform/sql/SortKey.h"
#include "platform/sql/SqlError.h"
#include "platform/sql/TableRow.h"

#include <algorithm>

namespace vardelin::sql {

using namespace Qt::StringLiterals;

namespace {

struct BoundColumn
{
    ResultColumn column;
    Program program; // of a computed one
};

struct BoundOrder
{
    Program program;
    bool descending = false;
};

// A row that has no columns: what a statement without From computes with.
class NoRow final : public Row
{
public:
    Value value(std::size_t) const override { return Value(NullValue()); }
};

// Runs `call` with the engine's errors as RunTimeErrors, and values that don't go together as the provider
// words it.
template <class Call>
decltype(auto) guarded(Call &&call)
{
    try {
        return engineCall(std::forward<Call>(call));
    } catch (const Error &) {
        throw;
    } catch (const RunTimeError &error) {
        if (error.number() == RunTime::TypeMismatch)
            failTypeMismatch(-1);
        throw;
    }
}

// A source that isn't a statement names a table; the whole text counts, whatever is in it.
QString bareTableName(const QString &text)
{
    const QString name = text.trimmed();
    if (name.size() > 2 && name.startsWith(u'[') && name.indexOf(u']') == name.size() - 1)
        return name.sliced(1, name.size() - 2).trimmed();
    return name;
}

bool isOneName(const QString &text)
{
    Lexer lexer(text);
    return lexer.next().isName() && lexer.peek().kind == TokenKind::End;
}

SelectSyntax syntaxOf(jet::File &file, const QString &text)
{
    const QString name = bareTableName(text);
    if (name.isEmpty())
        throw Error(Number::NoCommandText, u"Command text was not set for the command object."_s);
    const bool isTable = file.hasTable(toU16(name));
    if (!isTable && !isOneName(text))
        return parseSelect(text);
    if (!isTable && name.compare("select"_L1, Qt::CaseInsensitive) == 0)
        return parseSelect(text);
    SelectSyntax select;
    select.items.emplace_back();
    select.table = name;
    return select;
}

bool callsAggregate(const SelectSyntax &select)
{
    return std::ranges::any_of(select.tree.nodes, [](const Node &node) {
        return node.kind == NodeKind::Call && Binder::findAggregate(node.name);
    });
}

} // namespace

struct Select::Prepared
{
    Prepared(jet::File &ofFile, const QString &text, const Clock *ofClock);

    void bind(SelectSyntax &select);
    void bindItem(const Item &item, const SelectSyntax &select, Binder &binder);
    void bindStar(const Item &item, const SelectSyntax &select);
    void bindOrder(const SelectSyntax &select, Binder &binder);
    Program bindResult(const Expression &expression, Binder &binder) const;
    const Program *ordinal(const Node &node);

    template <class Visitor>
    void forEachRow(Visitor &&visit) const;
    std::vector<std::vector<Value>> groupRows() const;
    std::vector<Value> computed(const Row &row, Evaluator &evaluator) const;
    std::string sortKey(const Row &row, Evaluator &evaluator) const;
    Value value(std::size_t column, const Row &row, Evaluator &evaluator) const;

    jet::File &file;
    SystemClock systemClock;
    const Clock &clock;
    jet::Table *table = nullptr;
    bool grouped = false;
    std::vector<BoundColumn> columns;
    std::vector<ResultColumn> resultColumns;
    std::optional<Program> where, having;
    std::vector<Program> keys;
    std::vector<Aggregate> aggregates;
    std::vector<BoundOrder> order;
    std::optional<IndexChoice> index;
};

Select::Prepared::Prepared(jet::File &ofFile, const QString &text, const Clock *ofClock)
    : file(ofFile), clock(ofClock ? *ofClock : systemClock)
{
    SelectSyntax select = syntaxOf(file, text);
    if (!select.table.isEmpty()) {
        if (!file.hasTable(toU16(select.table)))
            failTableNotFound(select.table, select.tablePosition);
        table = &file.table(toU16(select.table));
    }
    bind(select);
}

void Select::Prepared::bind(SelectSyntax &select)
{
    grouped = !select.groupBy.empty() || select.having || callsAggregate(select);
    Binder binder(select,
                  table ? std::span<const jet::Column>(table->columns()) : std::span<const jet::Column>());
    if (select.where) {
        index = table ? chooseIndex(select, *table, binder) : std::nullopt;
        select.where->root = mergeLikes(select.tree, select.where->root);
        where = binder.bindCriteria(*select.where);
    }
    for (const Expression &key : select.groupBy)
        keys.push_back(binder.bindRow(key));
    for (const Item &item : select.items)
        item.expression ? bindItem(item, select, binder) : bindStar(item, select);
    if (select.having)
        having = binder.bindGroup(*select.having);
    bindOrder(select, binder);
    aggregates = binder.aggregates();
    for (const BoundColumn &column : columns)
        resultColumns.push_back(column.column);
}

Program Select::Prepared::bindResult(const Expression &expression, Binder &binder) const
{
    return grouped ? binder.bindGroup(expression) : binder.bindRow(expression);
}

void Select::Prepared::bindStar(const Item &item, const SelectSyntax &select)
{
    const bool known = item.table.isEmpty() || item.table.compare(select.table, Qt::CaseInsensitive) == 0 ||
                       item.table.compare(select.tableAlias, Qt::CaseInsensitive) == 0;
    if (!table || !known)
        failMissingParameter(-1);
    if (grouped)
        fail(u"Cannot group on fields selected with '*'."_s, -1);
    for (std::size_t i = 0; i < table->columns().size(); ++i)
        columns.push_back({{toQString(table->columns()[i].name), i}, {}});
}

void Select::Prepared::bindItem(const Item &item, const SelectSyntax &select, Binder &binder)
{
    BoundColumn column;
    column.program = bindResult(*item.expression, binder);
    const Node &root = select.tree.nodes[item.expression->root];
    if (root.kind == NodeKind::Column) {
        const std::size_t source = binder.findColumn(root);
        column.column.name = toQString(table->columns()[source].name);
        if (!grouped)
            column.column.source = source;
    } else {
        column.column.name = u"Expr%1"_s.arg(1000 + columns.size());
    }
    if (!item.alias.isEmpty())
        column.column.name = item.alias;
    columns.push_back(std::move(column));
}

// A whole number in Order By is the place of a result column, from 1.
const Program *Select::Prepared::ordinal(const Node &node)
{
    const auto *number = std::get_if<std::int32_t>(&node.literal.variant());
    if (node.kind != NodeKind::Literal || !number)
        return nullptr;
    if (*number < 1 || static_cast<std::size_t>(*number) > columns.size())
        failMissingParameter(node.position);
    BoundColumn &column = columns[static_cast<std::size_t>(*number) - 1];
    if (column.program.steps.empty())
        column.program.steps.push_back(
            {Step::Column, {}, false, static_cast<std::uint32_t>(*column.column.source), 0});
    return &column.program;
}

void Select::Prepared::bindOrder(const SelectSyntax &select, Binder &binder)
{
    for (const OrderItem &item : select.orderBy) {
        const Program *column = ordinal(select.tree.nodes[item.expression.root]);
        order.push_back({column ? *column : bindResult(item.expression, binder), item.descending});
    }
}

// Those that Where lets through, in table order. visit(view, row): valid during the call.
template <class Visitor>
void Select::Prepared::forEachRow(Visitor &&visit) const
{
    Evaluator evaluator(clock);
    const auto test = [&](const jet::RowView &view) {
        const TableRow row(*table, view);
        if (!where || holds(evaluator.evaluate(*where, row)))
            visit(view, row);
    };
    if (!index) {
        for (jet::Cursor cursor = table->scan(); !cursor.atEnd(); cursor.next())
            test(cursor.view());
        return;
    }
    const jet::ReadScope scope(file);
    std::vector<jet::RowId> places = table->find(*index->index, std::span(&index->key, 1));
    std::ranges::sort(places);
    for (const jet::RowId place : places)
        test(table->row(place));
}

std::string Select::Prepared::sortKey(const Row &row, Evaluator &evaluator) const
{
    std::string key;
    for (const BoundOrder &item : order)
        appendSortKey(key, evaluator.evaluate(item.program, row), item.descending);
    return key;
}

Value Select::Prepared::value(std::size_t column, const Row &row, Evaluator &evaluator) const
{
    const BoundColumn &bound = columns.at(column);
    return bound.column.source ? row.value(*bound.column.source) : evaluator.evaluate(bound.program, row);
}

std::vector<Value> Select::Prepared::computed(const Row &row, Evaluator &evaluator) const
{
    std::vector<Value> values;
    values.reserve(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
        values.push_back(value(i, row, evaluator));
    return values;
}

std::vector<std::vector<Value>> Select::Prepared::groupRows() const
{
    Evaluator evaluator(clock);
    Groups groups(keys, aggregates);
    if (table)
        forEachRow([&](const jet::RowView &, const Row &row) { groups.add(row, evaluator); });
    else
        groups.add(NoRow(), evaluator);
    std::vector<std::pair<std::string, std::vector<Value>>> keyed;
    for (const GroupRow &row : groups.rows()) {
        if (!having || holds(evaluator.evaluate(*having, row)))
            keyed.emplace_back(sortKey(row, evaluator), computed(row, evaluator));
    }
    std::ranges::stable_sort(keyed, {}, [](const auto &row) -> const std::string & { return row.first; });
    std::vector<std::vector<Value>> rows;
    for (auto &row : keyed)
        rows.push_back(std::move(row.second));
    return rows;
}

Select::Select(jet::File &file, const QString &text, const Clock *clock)
    : m_prepared(guarded([&] { return std::make_unique<Prepared>(file, text, clock); }))
{}

Select::Select(Select &&) noexcept = default;
Select &Select::operator=(Select &&) noexcept = default;
Select::~Select() = default;

const std::vector<ResultColumn> &Select::columns() const
{
    return m_prepared->resultColumns;
}

std::optional<std::size_t> Select::findColumn(QStringView name) const
{
    const auto &all = m_prepared->resultColumns;
    const auto found = std::ranges::find_if(
        all, [name](const ResultColumn &c) { return name.compare(c.name, Qt::CaseInsensitive) == 0; });
    return found == all.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - all.begin()));
}

bool Select::hasPlaces() const
{
    return m_prepared->table && !m_prepared->grouped;
}

jet::Table &Select::table() const
{
    return *m_prepared->table;
}

std::vector<MarkedPlace> Select::places(const std::function<std::int32_t(const jet::RowView &)> &mark) const
{
    return guarded([&] {
        if (m_prepared->order.empty()) {
            std::vector<MarkedPlace> places;
            m_prepared->forEachRow([&](const jet::RowView &view, const Row &) {
                places.push_back({view.id(), mark(view)});
            });
            return places;
        }
        KeyedPlaces keyed;
        Evaluator evaluator(m_prepared->clock);
        m_prepared->forEachRow([&](const jet::RowView &view, const Row &row) {
            keyed.add({view.id(), mark(view)}, m_prepared->sortKey(row, evaluator));
        });
        return keyed.sorted();
    });
}

std::vector<jet::RowId> Select::places() const
{
    const std::vector<MarkedPlace> marked = places([](const jet::RowView &) { return 0; });
    std::vector<jet::RowId> rows;
    rows.reserve(marked.size());
    for (const MarkedPlace &place : marked)
        rows.push_back(place.row);
    return rows;
}

Value Select::value(std::size_t column, const jet::RowView &row) const
{
    return guarded([&] {
        Evaluator evaluator(m_prepared->clock);
        return m_prepared->value(column, TableRow(*m_prepared->table, row), evaluator);
    });
}

std::vector<std::vector<Value>> Select::rows() const
{
    return guarded([this] {
        Evaluator evaluator(m_prepared->clock);
        if (m_prepared->grouped)
            return m_prepared->groupRows();
        std::vector<std::vector<Value>> rows;
        if (!m_prepared->table) {
            rows.push_back(m_prepared->computed(NoRow(), evaluator));
            return rows;
        }
        const jet::ReadScope scope(m_prepared->file);
        for (const jet::RowId place : places()) {
            const jet::RowView view = m_prepared->table->row(place);
            rows.push_back(m_prepared->computed(TableRow(*m_prepared->table, view), evaluator));
        }
        return rows;
    });
}

} // namespace vardelin::sql
