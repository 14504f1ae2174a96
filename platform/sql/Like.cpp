#include "platform/sql/Like.h"

#include "platform/base/RunTimeError.h"
#include "platform/sql/StoredText.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <optional>

namespace vardelin::sql {

namespace {

constexpr int kInvalidPattern = 93;

// One entry for each UTF-16 unit, made once.
const char16_t *foldTable()
{
    static const std::unique_ptr<char16_t[]> table = [] {
        auto folds = std::make_unique<char16_t[]>(0x10000);
        for (char32_t c = 0; c < 0x10000; ++c)
            folds[c] = QChar(static_cast<char16_t>(c)).toCaseFolded().unicode();
        return folds;
    }();
    return table.get();
}

// By folded unit: the bits in which the units differ that fold to it.
const char16_t *differenceTable()
{
    static const std::unique_ptr<char16_t[]> table = [] {
        auto differences = std::make_unique<char16_t[]>(0x10000);
        for (std::size_t c = 0; c < 0x10000; ++c) {
            const char16_t folded = foldTable()[c];
            differences[folded] = static_cast<char16_t>(differences[folded] | (folded ^ c));
        }
        return differences;
    }();
    return table.get();
}

// The bit by which a folded unit's other case differs, or no bit; nullopt if it takes more than one.
std::optional<char16_t> caseBit(char16_t folded)
{
    const std::uint16_t difference = differenceTable()[folded];
    return std::popcount(difference) <= 1 ? std::optional<char16_t>(difference) : std::nullopt;
}

char16_t fold(QChar c)
{
    return foldTable()[c.unicode()];
}

} // namespace

QString folded(QStringView text)
{
    QString result(text.size(), Qt::Uninitialized);
    std::ranges::transform(text, result.begin(), [](QChar c) { return QChar(fold(c)); });
    return result;
}

LikePattern::LikePattern(QStringView pattern)
{
    for (qsizetype at = 0; at < pattern.size(); ++at) {
        const QChar c = pattern[at];
        if (c == u'[') {
            at = readBrackets(pattern, at + 1);
            continue;
        }
        Element element;
        element.character = fold(c);
        if (c == u'%')
            element.kind = Kind::AnyText;
        else if (c == u'_')
            element.kind = Kind::AnyCharacter;
        if (element.kind != Kind::AnyText || m_elements.empty() || m_elements.back().kind != Kind::AnyText)
            m_elements.push_back(std::move(element));
    }
    findShape();
}

// From behind the opening bracket; gives the place of the closing one. [] stands for no character.
qsizetype LikePattern::readBrackets(QStringView pattern, qsizetype at)
{
    const qsizetype close = pattern.indexOf(u']', at);
    if (close < 0)
        throw RunTimeError(kInvalidPattern);
    Element element;
    element.kind = Kind::OneOf;
    if (at < close && pattern[at] == u'!') {
        element.negated = true;
        ++at;
    }
    while (at < close) {
        Range range{fold(pattern[at]), fold(pattern[at])};
        if (at + 2 < close && pattern[at + 1] == u'-') {
            range.last = fold(pattern[at + 2]);
            at += 2;
        }
        if (range.last < range.first)
            throw RunTimeError(kInvalidPattern);
        element.ranges.push_back(range);
        ++at;
    }
    if (element.negated && element.ranges.empty()) {
        element.negated = false;
        element.ranges.push_back({u'!', u'!'});
    }
    if (element.ranges.size() == 1 && !element.negated && element.ranges[0].first == element.ranges[0].last) {
        element.kind = Kind::Character;
        element.character = element.ranges[0].first;
    }
    if (element.kind == Kind::Character || !element.ranges.empty())
        m_elements.push_back(std::move(element));
    return close;
}

void LikePattern::findShape()
{
    const auto isText = [](const Element &e) { return e.kind == Kind::AnyText; };
    const std::size_t size = m_elements.size();
    const bool open = size >= 1 && isText(m_elements.front()) && isText(m_elements.back());
    if (open && size <= 2) {
        m_shape = Shape::Anything;
        return;
    }
    const std::span<const Element> inner =
        open ? std::span(m_elements).subspan(1, size - 2) : std::span(m_elements);
    if (!std::ranges::all_of(inner, [](const Element &e) { return e.kind == Kind::Character; }))
        return;
    m_shape = open ? Shape::Contains : Shape::Plain;
    for (const Element &element : inner)
        m_needle += element.character;
    chooseMarks();
}

// The seldomest characters tell most. A character whose forms differ by more than one bit tells nothing here.
void LikePattern::chooseMarks()
{
    constexpr std::u16string_view kOften = u" etaoinsrhldcumfpgwybvkxjqz";
    std::array<std::size_t, 2> best{};
    for (std::size_t i = 0; i < m_needle.size(); ++i) {
        const char16_t c = m_needle[i];
        const auto bit = caseBit(c);
        if (!bit)
            continue;
        const std::size_t rarity = std::min(kOften.find(c), kOften.size()) + 1;
        const std::size_t which = best[0] <= best[1] ? 0 : 1;
        if (rarity <= best[which])
            continue;
        best[which] = rarity;
        m_marks[which] = {i, *bit, static_cast<char16_t>(c | *bit)};
    }
}

namespace {

template <class Unit>
char16_t unitAt(const std::byte *text, std::size_t at)
{
    Unit unit;
    std::memcpy(&unit, text + at * sizeof(Unit), sizeof unit);
    return unit;
}

constexpr std::size_t kBlock = 64; // units that are sieved together

} // namespace

// Whether both marks are where they must be for the needle to begin among the first units of `text`. Without
// branches, so that the compiler takes many units at a time.
template <class Unit>
bool LikePattern::mayBegin(const std::byte *text) const
{
    const auto [first, second] = m_marks;
    const auto c1 = static_cast<Unit>(first.character), c2 = static_cast<Unit>(second.character);
    const auto i1 = static_cast<Unit>(first.ignored), i2 = static_cast<Unit>(second.ignored);
    const std::byte *const at1 = text + first.place * sizeof(Unit), *const at2 =
                                                                        text + second.place * sizeof(Unit);
    Unit met = 0;
    for (std::size_t i = 0; i < kBlock; ++i) {
        Unit u1, u2;
        std::memcpy(&u1, at1 + i * sizeof(Unit), sizeof u1);
        std::memcpy(&u2, at2 + i * sizeof(Unit), sizeof u2);
        const auto differs = static_cast<Unit>(((u1 | i1) ^ c1) | ((u2 | i2) ^ c2));
        met = static_cast<Unit>(met | static_cast<Unit>(differs == 0 ? 1 : 0));
    }
    return met != 0;
}

// Whether both marks are where they must be for the needle to begin with the first unit of `text`.
template <class Unit>
bool LikePattern::marked(const std::byte *text) const
{
    return std::ranges::all_of(m_marks, [text](const Mark &mark) {
        return static_cast<Unit>(unitAt<Unit>(text, mark.place) | mark.ignored) ==
               static_cast<Unit>(mark.character);
    });
}

template <class Unit>
bool LikePattern::liesAt(const std::byte *text) const
{
    const char16_t *const folds = foldTable();
    for (std::size_t i = 0; i < m_needle.size(); ++i) {
        if (folds[unitAt<Unit>(text, i)] != m_needle[i])
            return false;
    }
    return true;
}

// text: units in the order of the machine, wherever they lie.
template <class Unit>
bool LikePattern::containedIn(const std::byte *text, std::size_t units) const
{
    if (m_needle.size() > units)
        return false;
    const std::size_t places = units - m_needle.size() + 1;
    const std::size_t reach = kBlock + std::max(m_marks[0].place, m_marks[1].place);
    for (std::size_t block = 0; block < places; block += kBlock) {
        // The last block lies over the one before it, so that it is whole.
        const std::size_t from = units < reach ? block : std::min(block, units - reach);
        if (units >= reach && !mayBegin<Unit>(text + from * sizeof(Unit)))
            continue;
        for (std::size_t at = block; at < std::min(places, block + kBlock); ++at) {
            const std::byte *const here = text + at * sizeof(Unit);
            if (marked<Unit>(here) && liesAt<Unit>(here))
                return true;
        }
    }
    return false;
}

bool LikePattern::matchesOne(const Element &element, char16_t c) const
{
    switch (element.kind) {
    case Kind::Character:
        return element.character == c;
    case Kind::OneOf:
        return element.negated != std::ranges::any_of(element.ranges, [c](Range range) {
                   return range.first <= c && c <= range.last;
               });
    default:
        return true;
    }
}

// Each % first takes nothing, and one character more whenever what follows it fails; only the last % met can
// ever need more.
bool LikePattern::matchesGeneral(QStringView text) const
{
    std::size_t element = 0, retryElement = 0;
    qsizetype at = 0, retryAt = -1;
    while (at < text.size()) {
        if (element < m_elements.size() && m_elements[element].kind == Kind::AnyText) {
            retryElement = ++element;
            retryAt = at;
        } else if (element < m_elements.size() && matchesOne(m_elements[element], fold(text[at]))) {
            ++element;
            ++at;
        } else if (retryAt >= 0) {
            element = retryElement;
            at = ++retryAt;
        } else {
            return false;
        }
    }
    while (element < m_elements.size() && m_elements[element].kind == Kind::AnyText)
        ++element;
    return element == m_elements.size();
}

bool LikePattern::matches(QStringView text) const
{
    switch (m_shape) {
    case Shape::Anything:
        return true;
    case Shape::Plain:
        return static_cast<std::size_t>(text.size()) == m_needle.size() &&
               std::equal(text.begin(), text.end(), m_needle.begin(),
                          [](QChar c, char16_t n) { return fold(c) == n; });
    case Shape::Contains:
        return containedIn<char16_t>(reinterpret_cast<const std::byte *>(text.utf16()),
                                     static_cast<std::size_t>(text.size()));
    case Shape::General:
        break;
    }
    return matchesGeneral(text);
}

bool LikePattern::matchesStored(std::span<const std::byte> stored) const
{
    if (m_shape == Shape::Anything)
        return true;
    if (m_shape == Shape::Contains && isNarrow(stored))
        return containedIn<std::uint8_t>(stored.data() + 2, stored.size() - 2);
    if (m_shape == Shape::Contains && !isCompressed(stored) && std::endian::native == std::endian::little)
        return containedIn<char16_t>(stored.data(), stored.size() / 2);
    return matches(decodeStored(stored));
}

} // namespace vardelin::sql
