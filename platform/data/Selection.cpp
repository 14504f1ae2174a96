#include "platform/data/Selection.h"

#include <algorithm>

namespace vardelin::data {

using namespace Qt::StringLiterals;

const Field *Selection::find(const QString &name) const
{
    const auto known = std::ranges::find_if(
        fields, [&](const Field &f) { return f.name.compare(name, Qt::CaseInsensitive) == 0; });
    return known == fields.end() ? nullptr : &*known;
}

const Field &Selection::field(const QString &name) const
{
    const Field *known = find(name);
    if (!known)
        fail(Number::ItemNotFound);
    return *known;
}

void Selection::erase(std::size_t row)
{
    places.erase(places.begin() + static_cast<std::ptrdiff_t>(row));
}

namespace {

bool isStatement(const QString &source)
{
    const QString text = source.trimmed();
    return text.startsWith("select"_L1, Qt::CaseInsensitive) && text.size() > 6 &&
           (text[6].isSpace() || text[6] == u'[');
}

QString tableName(const QString &source)
{
    const QString name = source.trimmed();
    return name.startsWith(u'[') && name.endsWith(u']') ? name.sliced(1, name.size() - 2) : name;
}

RowPlace placeOf(const jet::RowView &row, std::optional<std::size_t> numberColumn)
{
    return {row.id(), numberColumn && !row.isNull(*numberColumn) ? row.longValue(*numberColumn) : 0};
}

Selection wholeTable(jet::File &file, const QString &name)
{
    Selection selection;
    const jet::ReadScope scope(file);
    selection.table = &file.table(toU16(name));
    selection.numberColumn = autoNumberColumn(*selection.table);
    const auto &columns = selection.table->columns();
    for (std::size_t i = 0; i < columns.size(); ++i)
        selection.fields.push_back({toQString(columns[i].name), i});
    for (jet::Cursor row = selection.table->scan(); !row.atEnd(); row.next())
        selection.places.push_back(placeOf(row.view(), selection.numberColumn));
    return selection;
}

} // namespace

Selection select(jet::File &file, const QString &source)
{
    if (isStatement(source))
        return statementRows(file, source);
    return wholeTable(file, tableName(source));
}

} // namespace vardelin::data
