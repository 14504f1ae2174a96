#include "platform/jet/Properties.h"

#include <algorithm>

namespace vardelin::jet {

namespace {

constexpr std::array kMagic{std::byte{'M'}, std::byte{'R'}, std::byte{'2'}, std::byte{0}};
constexpr std::uint16_t kNames = 0x80, kColumnChunk = 1;
constexpr std::u16string_view kRequired = u"Required", kAllowZeroLength = u"AllowZeroLength";

void applyValue(Column &column, std::u16string_view name, std::span<const std::byte> data)
{
    const bool on = std::any_of(data.begin(), data.end(), [](std::byte b) { return b != std::byte{0}; });
    if (name == kRequired)
        column.required = on;
    else if (name == kAllowZeroLength)
        column.allowZeroLength = on;
}

// The name of a column that isn't there; empty as a rule.
std::u16string applyColumn(Reader chunk, const std::vector<std::u16string> &names,
                           std::vector<Column> &columns)
{
    const auto headLength = chunk.number<std::uint32_t>();
    if (headLength < 6)
        chunk.place().damaged("properties of a column without a name");
    Reader head(chunk.take(headLength - 4), chunk.place(), "the name in a property");
    const std::u16string owner = head.name();
    const auto column =
        std::find_if(columns.begin(), columns.end(), [&](const Column &c) { return c.name == owner; });
    while (chunk.left() > 0 && column != columns.end()) {
        const auto length = chunk.number<std::uint16_t>();
        if (length < 8)
            chunk.place().damaged("a property that is too short");
        Reader value(chunk.take(length - 2U), chunk.place(), "a property");
        value.take(2);
        const auto name = value.number<std::uint16_t>();
        const auto data = value.take(value.number<std::uint16_t>());
        if (name < names.size())
            applyValue(*column, names[name], data);
    }
    return column == columns.end() ? owner : std::u16string();
}

void putChunk(Writer &out, std::uint16_t kind, Writer body)
{
    const Bytes bytes = body.take();
    out.number(static_cast<std::uint32_t>(bytes.size() + 6));
    out.number(kind);
    out.bytes(bytes);
}

void putFlag(Writer &out, std::uint16_t name, bool on)
{
    out.number(std::uint16_t{9});
    out.number(std::uint8_t{1});
    out.number(static_cast<std::uint8_t>(ColumnType::Boolean));
    out.number(name);
    out.number(std::uint16_t{1});
    out.number(static_cast<std::uint8_t>(on));
}

} // namespace

bool isPropertyBlob(std::span<const std::byte> blob)
{
    return blob.size() >= kMagic.size() && std::equal(kMagic.begin(), kMagic.end(), blob.begin());
}

std::vector<std::u16string> applyProperties(std::span<const std::byte> blob, Place place,
                                            std::vector<Column> &columns)
{
    std::vector<std::u16string> unknown;
    if (!isPropertyBlob(blob))
        return unknown;
    Reader reader(blob.subspan(kMagic.size()), place, "the properties");
    std::vector<std::u16string> names;
    while (reader.left() > 0) {
        const auto length = reader.number<std::uint32_t>();
        const auto kind = reader.number<std::uint16_t>();
        if (length < 6)
            place.damaged("properties of an impossible length");
        Reader chunk(reader.take(length - 6), place, "a list of properties");
        if (kind == kNames) {
            while (chunk.left() > 0)
                names.push_back(chunk.name());
        } else if (kind == kColumnChunk) {
            if (std::u16string owner = applyColumn(chunk, names, columns); !owner.empty())
                unknown.push_back(std::move(owner));
        }
    }
    return unknown;
}

Bytes propertiesOf(std::span<const Column> columns)
{
    Writer out;
    out.bytes(kMagic);
    Writer names;
    names.name(kRequired);
    names.name(kAllowZeroLength);
    putChunk(out, kNames, std::move(names));
    for (const Column &column : columns) {
        Writer body;
        body.number(static_cast<std::uint32_t>(6 + 2 * column.name.size()));
        body.name(column.name);
        putFlag(body, 0, column.required);
        if (column.type == ColumnType::Text || column.type == ColumnType::Memo)
            putFlag(body, 1, column.allowZeroLength);
        putChunk(out, kColumnChunk, std::move(body));
    }
    return out.take();
}

} // namespace vardelin::jet
