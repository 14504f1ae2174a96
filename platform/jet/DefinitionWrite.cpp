#include "platform/jet/Definition.h"

#include <algorithm>

namespace vardelin::jet {

namespace {

constexpr std::size_t kPageHeader = 8;
constexpr std::uint32_t kConstant = 0x659;

void putColumn(Writer &out, const DraftColumn &draft)
{
    const Column &column = draft.column;
    const bool decimal = column.type == ColumnType::Decimal;
    out.number(static_cast<std::uint8_t>(column.type));
    out.number(kConstant);
    out.number(column.number);
    out.number(column.variableIndex);
    out.number(column.ordinal);
    out.number(decimal ? static_cast<std::uint16_t>(column.precision | column.scale << 8) : column.locale);
    out.number(static_cast<std::uint16_t>(column.orderVersion << 8));
    out.number(draft.flags);
    out.number(static_cast<std::uint8_t>(column.compress));
    out.number(std::uint32_t{0});
    out.number(column.fixedOffset);
    out.number(column.length);
}

void putPhysical(Writer &out, const DraftIndex &draft)
{
    out.number(std::uint32_t{0x783});
    for (std::size_t i = 0; i < 10; ++i) {
        const bool used = i < draft.index.columns.size();
        out.number(used ? draft.index.columns[i].column : std::uint16_t{0xFFFF});
        out.number(static_cast<std::uint8_t>(used && !draft.index.columns[i].descending));
    }
    out.number(pointerOf(draft.index.map));
    out.number(draft.index.root);
    out.number(std::uint32_t{0});
    out.number(draft.flags);
    out.zeros(5);
}

void putLogical(Writer &out, const LogicalIndex &index)
{
    out.number(kConstant);
    out.number(index.number);
    out.number(index.physical);
    out.number(std::uint8_t{0});
    out.number(std::uint32_t{0xFFFFFFFF});
    out.number(std::uint32_t{0});
    out.number(std::uint16_t{0x0404});
    out.number(static_cast<std::uint8_t>(index.primary));
    out.number(std::uint32_t{0});
}

void putHeader(Writer &out, const DefinitionDraft &draft)
{
    out.zeros(12); // page header and length, filled in at the end
    out.number(kConstant);
    out.zeros(8);
    out.number(std::uint8_t{1});
    out.zeros(15);
    out.number(static_cast<std::uint8_t>(draft.base ? 0x53 : 0x4E));
    out.number(draft.maxColumns);
    out.number(draft.variableColumns);
    out.number(static_cast<std::uint16_t>(draft.columns.size()));
    out.number(static_cast<std::uint32_t>(draft.logical.size()));
    out.number(static_cast<std::uint32_t>(draft.physical.size()));
    out.number(pointerOf(draft.owned));
    out.number(pointerOf(draft.freeSpace));
    out.zeros(12 * draft.physical.size());
}

} // namespace

void numberColumns(DefinitionDraft &draft)
{
    std::uint16_t number = 0, variable = 0, offset = 0;
    for (DraftColumn &next : draft.columns) {
        Column &column = next.column;
        column.number = number++;
        column.variableIndex = variable;
        column.fixed = (next.flags & kFixedColumn) != 0;
        if (!column.fixed) {
            ++variable;
        } else if (column.type != ColumnType::Boolean) {
            column.fixedOffset = offset;
            offset = static_cast<std::uint16_t>(offset + fixedSize(column.type));
        }
    }
    draft.maxColumns = number;
    draft.variableColumns = variable;
}

Bytes serialiseDefinition(const DefinitionDraft &draft)
{
    Writer out;
    putHeader(out, draft);
    for (const DraftColumn &column : draft.columns)
        putColumn(out, column);
    for (const DraftColumn &column : draft.columns)
        out.name(column.column.name);
    for (const DraftIndex &index : draft.physical)
        putPhysical(out, index);
    for (const LogicalIndex &index : draft.logical)
        putLogical(out, index);
    for (const LogicalIndex &index : draft.logical)
        out.name(index.name);
    for (const LongValueMaps &maps : draft.longValues) {
        out.number(maps.column);
        out.number(pointerOf(maps.owned));
        out.number(pointerOf(maps.freeSpace));
    }
    out.number(std::uint16_t{0xFFFF});
    store(out.at(8), static_cast<std::uint32_t>(out.size()));
    return out.take();
}

std::size_t pagesForDefinition(std::size_t bytes)
{
    if (bytes <= kPageSize)
        return 1;
    return 1 + (bytes - kPageSize + kPageSize - kPageHeader - 1) / (kPageSize - kPageHeader);
}

void writeDefinition(Pager &pager, std::span<const PageNo> pages, std::span<const std::byte> definition)
{
    for (std::size_t i = 0; i < pages.size(); ++i) {
        std::byte *page = pager.change(pages[i]);
        const std::size_t header = i == 0 ? 0 : kPageHeader;
        const std::size_t count = std::min(definition.size(), kPageSize - header);
        std::memset(page, 0, kPageSize);
        std::memcpy(page + header, definition.data(), count);
        definition = definition.subspan(count);
        const std::size_t used = header + count;
        page[0] = std::byte{2};
        page[1] = std::byte{1};
        store(page + 2, static_cast<std::uint16_t>(used + 8 < kPageSize ? kPageSize - used - 8 : 0));
        store(page + 4, i + 1 < pages.size() ? pages[i + 1] : PageNo{0});
    }
}

} // namespace vardelin::jet
