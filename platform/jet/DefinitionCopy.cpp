#include "platform/jet/DefinitionCopy.h"

#include <algorithm>

namespace vardelin::jet {

namespace {

constexpr std::size_t kHeader = 63, kCounts = 12, kDescriptor = 25, kPhysical = 52, kLogical = 28,
                      kLongValue = 10;
constexpr std::size_t kMaxColumnsAt = 41, kVariableAt = 43, kOwnedAt = 55, kFreeSpaceAt = 59;
constexpr std::size_t kNumberAt = 5, kVariableIndexAt = 7, kFlagsAt = 15, kFixedOffsetAt = 21, kLengthAt = 23;
constexpr std::uint16_t kNoColumn = 0xFFFF;

Bytes taken(Reader &reader, std::size_t count)
{
    const auto raw = reader.take(count);
    return {raw.begin(), raw.end()};
}

std::vector<Bytes> list(Reader &reader, std::size_t items, std::size_t size)
{
    std::vector<Bytes> all;
    for (std::size_t i = 0; i < items; ++i)
        all.push_back(taken(reader, size));
    return all;
}

std::vector<Bytes> names(Reader &reader, std::size_t items)
{
    std::vector<Bytes> all;
    for (std::size_t i = 0; i < items; ++i) {
        Writer name;
        name.name(reader.name());
        all.push_back(name.take());
    }
    return all;
}

std::uint16_t numberOf(const Bytes &descriptor)
{
    return load<std::uint16_t>(descriptor.data() + kNumberAt);
}

std::uint16_t fixedWidth(const Bytes &descriptor)
{
    const auto type = static_cast<ColumnType>(load<std::uint8_t>(descriptor.data()));
    if (type == ColumnType::Boolean)
        return 0;
    const auto width = static_cast<std::uint16_t>(fixedSize(type));
    return width != 0 ? width : load<std::uint16_t>(descriptor.data() + kLengthAt);
}

} // namespace

DefinitionCopy::DefinitionCopy(const Pager &pager, const DefinitionBytes &source)
    : m_pager(pager), m_page(source.pages.front())
{
    Reader reader(source.bytes, Place{pager, m_page}, "the definition");
    read(reader);
    renumber();
}

void DefinitionCopy::read(Reader &reader)
{
    m_header = taken(reader, kHeader);
    std::fill(m_header.begin() + 25, m_header.begin() + 40,
              std::byte{0}); // means nothing, and may be garbage
    const std::size_t columns = load<std::uint16_t>(m_header.data() + 45);
    const std::size_t logical = load<std::uint32_t>(m_header.data() + 47);
    const std::size_t physical = load<std::uint32_t>(m_header.data() + 51);
    m_counts = list(reader, physical, kCounts);
    m_columns = list(reader, columns, kDescriptor);
    m_names = names(reader, columns);
    m_physical = list(reader, physical, kPhysical);
    m_logical = list(reader, logical, kLogical);
    m_logicalNames = names(reader, logical);
    while (true) {
        Bytes maps(kLongValue);
        const auto column = reader.number<std::uint16_t>();
        if (column == kNoColumn)
            break;
        reader.take(kLongValue - 2);
        store(maps.data(), column);
        m_longValues.push_back(std::move(maps));
    }
}

void DefinitionCopy::renumber()
{
    std::vector<Bytes *> created;
    for (Bytes &column : m_columns)
        created.push_back(&column);
    std::sort(created.begin(), created.end(),
              [](const Bytes *a, const Bytes *b) { return numberOf(*a) < numberOf(*b); });
    std::map<std::uint16_t, std::uint16_t> numbers;
    std::uint16_t number = 0, variable = 0, offset = 0;
    for (Bytes *column : created) {
        std::byte *raw = column->data();
        const bool fixed = (load<std::uint8_t>(raw + kFlagsAt) & kFixedColumn) != 0;
        numbers[numberOf(*column)] = number;
        store(raw + kNumberAt, number++);
        store(raw + kVariableIndexAt, variable);
        variable = static_cast<std::uint16_t>(variable + (fixed ? 0 : 1));
        const std::uint16_t width = fixed ? fixedWidth(*column) : std::uint16_t{0};
        store(raw + kFixedOffsetAt, width != 0 ? offset : std::uint16_t{0});
        offset = static_cast<std::uint16_t>(offset + width);
    }
    store(m_header.data() + kMaxColumnsAt, number);
    store(m_header.data() + kVariableAt, variable);
    for (Bytes &index : m_physical) {
        for (std::size_t i = 4; i < 34; i += 3) {
            const auto column = load<std::uint16_t>(index.data() + i);
            if (column != kNoColumn)
                store(index.data() + i, numbers.at(column));
        }
    }
    // The maps of a column that was dropped may still be listed.
    std::erase_if(m_longValues,
                  [&](const Bytes &m) { return !numbers.contains(load<std::uint16_t>(m.data())); });
    for (Bytes &maps : m_longValues)
        store(maps.data(), numbers.at(load<std::uint16_t>(maps.data())));
}

std::size_t DefinitionCopy::pageCount() const
{
    return pagesForDefinition(bytes().size());
}

void DefinitionCopy::setMaps(RowId owned, RowId freeSpace)
{
    storeRowId(m_header.data() + kOwnedAt, owned);
    storeRowId(m_header.data() + kFreeSpaceAt, freeSpace);
}

void DefinitionCopy::setIndex(std::size_t physical, RowId map, PageNo root)
{
    storeRowId(m_physical[physical].data() + 34, map);
    store(m_physical[physical].data() + 38, root);
}

void DefinitionCopy::setLongValue(std::size_t place, RowId owned, RowId freeSpace)
{
    std::vector<Bytes *> byNumber;
    for (Bytes &maps : m_longValues)
        byNumber.push_back(&maps);
    std::sort(byNumber.begin(), byNumber.end(), [](const Bytes *a, const Bytes *b) {
        return load<std::uint16_t>(a->data()) < load<std::uint16_t>(b->data());
    });
    storeRowId(byNumber[place]->data() + 2, owned);
    storeRowId(byNumber[place]->data() + 6, freeSpace);
}

void DefinitionCopy::setTables(const std::map<PageNo, PageNo> &pages)
{
    for (Bytes &index : m_logical) {
        if (load<std::uint32_t>(index.data() + 13) == 0xFFFFFFFF || load<PageNo>(index.data() + 17) == 0)
            continue;
        const auto found = pages.find(load<PageNo>(index.data() + 17));
        if (found == pages.end())
            Place{m_pager, m_page}.damaged("a relationship with a table that isn't there");
        store(index.data() + 17, found->second);
    }
}

void DefinitionCopy::setCounts(std::uint32_t rows, std::int32_t autoNumber,
                               std::span<const std::uint32_t> distinct)
{
    store(m_header.data() + kRowCountAt, rows);
    store(m_header.data() + kAutoNumberAt, autoNumber);
    for (std::size_t i = 0; i < m_counts.size(); ++i) {
        store(m_counts[i].data(), rows);
        store(m_counts[i].data() + 4, distinct[i]);
    }
}

Bytes DefinitionCopy::bytes() const
{
    Writer out;
    out.bytes(m_header);
    for (const auto *part :
         {&m_counts, &m_columns, &m_names, &m_physical, &m_logical, &m_logicalNames, &m_longValues}) {
        for (const Bytes &item : *part)
            out.bytes(item);
    }
    out.number(kNoColumn);
    store(out.at(8), static_cast<std::uint32_t>(out.size()));
    return out.take();
}

} // namespace vardelin::jet
