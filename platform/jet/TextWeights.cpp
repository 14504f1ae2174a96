#include "platform/jet/TextWeights.h"

#include "platform/jet/TextWeightRuns.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace vardelin::jet {

namespace {

// Ligatures, which don't fit in a run: more than two inline bytes or more than one extra byte.
struct Ligature
{
    char16_t unit;
    std::uint8_t inlineLength, extraLength;
    std::uint32_t inlineBytes;
    std::uint16_t extraBytes;
};

constexpr Ligature kLigatures[] = {
    {0x01C4, 2, 2, 0x4F78, 0x0214}, {0x01C5, 2, 2, 0x4F78, 0x0214}, {0x01C6, 2, 2, 0x4F78, 0x0214},
    {0x01E2, 2, 2, 0x4A51, 0x1717}, {0x01E3, 2, 2, 0x4A51, 0x1717}, {0x01FC, 2, 2, 0x4A51, 0x0E0E},
    {0x01FD, 2, 2, 0x4A51, 0x0E0E}, {0x05F0, 4, 0, 0x79997999, 0},  {0x05F1, 4, 0, 0x7999799D, 0},
    {0x05F2, 4, 0, 0x799D799D, 0},  {0xFB03, 3, 0, 0x535359, 0},    {0xFB04, 3, 0, 0x53535E, 0},
    {0xFB05, 3, 0, 0x6C066D, 0},
};

using Kind = TextWeight::Kind;

constexpr bool isSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDFFF;
}

// Halves of characters beyond U+FFFF have computed weights.
constexpr TextWeight surrogateWeight(char16_t unit)
{
    std::uint32_t shift = 10238;
    if (unit >= 0xDC00) {
        const std::uint32_t place = unit - 0xDC00u;
        shift = place < 8 ? 9992 : place < 262 ? 9990 : place < 516 ? 9988 : place < 770 ? 9986 : 9984;
    }
    return {.kind = Kind::Accent,
            .inlineLength = 2,
            .extraLength = 1,
            .inlineBytes = unit - shift,
            .extraBytes = 0x3F};
}

constexpr TextWeight weightInRun(std::uint64_t run, std::uint32_t place)
{
    const auto kindDigit = static_cast<std::uint32_t>(run >> 36 & 0xF);
    const auto rawStep = static_cast<std::int32_t>(run >> 24 & 0xFFF);
    const std::int32_t step = rawStep < 0x800 ? rawStep : rawStep - 0x1000;
    const std::uint32_t steps = kindDigit & 1 ? place / 2 : place;
    const auto value = static_cast<std::uint32_t>(static_cast<std::int32_t>(run >> 8 & 0xFFFF) +
                                                  step * static_cast<std::int32_t>(steps));
    TextWeight weight{.kind = static_cast<Kind>(kindDigit >> 1)};
    if (weight.kind == Kind::Punct || weight.kind == Kind::Mark) {
        weight.code = static_cast<std::uint8_t>(value);
        return weight;
    }
    weight.inlineBytes = value;
    weight.inlineLength = value > 0xFF ? 2 : 1;
    weight.extraBytes = static_cast<std::uint16_t>(run & 0xFF);
    weight.extraLength = weight.extraBytes != 0 ? 1 : 0;
    return weight;
}

constexpr TextWeight searchRuns(char16_t unit)
{
    const auto next = std::upper_bound(std::begin(kRuns), std::end(kRuns), unit,
                                       [](char16_t sought, std::uint64_t run) { return sought < run >> 48; });
    if (next == std::begin(kRuns))
        return {};
    const std::uint64_t run = *std::prev(next);
    const auto place = static_cast<std::uint32_t>(unit - (run >> 48));
    return place < (run >> 40 & 0xFF) ? weightInRun(run, place) : TextWeight{};
}

constexpr std::array<TextWeight, 256> latinTable()
{
    std::array<TextWeight, 256> table;
    for (char16_t unit = 0; unit < 256; ++unit)
        table[unit] = searchRuns(unit);
    return table;
}

constexpr std::array<TextWeight, 256> kLatin = latinTable();

constexpr std::array<std::uint8_t, 256> plainBytes()
{
    std::array<std::uint8_t, 256> bytes{};
    for (std::size_t unit = 0; unit < bytes.size(); ++unit)
        if (kLatin[unit].kind == Kind::Plain && kLatin[unit].inlineLength == 1)
            bytes[unit] = static_cast<std::uint8_t>(kLatin[unit].inlineBytes);
    return bytes;
}

constexpr std::array<std::uint8_t, 256> kPlainBytes = plainBytes();

} // namespace

const std::array<std::uint8_t, 256> &plainLatinBytes()
{
    return kPlainBytes;
}

TextWeight textWeight(char16_t unit)
{
    if (unit < 256)
        return kLatin[unit];
    if (isSurrogate(unit))
        return surrogateWeight(unit);
    for (const Ligature &ligature : kLigatures)
        if (ligature.unit == unit)
            return {.kind = ligature.extraLength ? Kind::Accent : Kind::Plain,
                    .inlineLength = ligature.inlineLength,
                    .extraLength = ligature.extraLength,
                    .inlineBytes = ligature.inlineBytes,
                    .extraBytes = ligature.extraBytes};
    return searchRuns(unit);
}

} // namespace vardelin::jet
