#include "platform/sql/Like.h"

#include "platform/base/RunTimeError.h"
#include "platform/sql/StoredText.h"

#include <algorithm>
#include <memory>

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
    m_shift.fill(m_needle.size());
    for (std::size_t i = 0; i + 1 < m_needle.size(); ++i)
        m_shift[m_needle[i] & 0xFF] = m_needle.size() - 1 - i;
    for (std::size_t byte = 0; byte < m_byteStep.size() && !m_needle.empty(); ++byte) {
        const char16_t c = foldTable()[byte];
        m_byteStep[byte] = c == m_needle.back() ? 0 : m_shift[c & 0xFF];
    }
}

// The needle ends behind text[end - 1]: are the characters ahead of it the needle's?
template <class Unit>
bool LikePattern::endsAt(const Unit *text, std::size_t end) const
{
    const char16_t *const folds = foldTable();
    const std::size_t length = m_needle.size();
    for (std::size_t i = 1; i <= length; ++i) {
        if (folds[static_cast<std::size_t>(text[end - i])] != m_needle[length - i])
            return false;
    }
    return true;
}

// Looks at every character that the needle's end may lie on, and goes on by how far that character lies from
// the end in the needle.
bool LikePattern::containedIn(std::span<const char16_t> text) const
{
    const char16_t *const folds = foldTable();
    for (std::size_t end = m_needle.size(); end <= text.size();) {
        const char16_t last = folds[text[end - 1]];
        if (last == m_needle.back() && endsAt(text.data(), end))
            return true;
        end += m_shift[last & 0xFF];
    }
    return false;
}

// The same with the step of each byte known, none where the needle may end: one look-up a step.
bool LikePattern::containedIn(std::span<const std::byte> text) const
{
    for (std::size_t end = m_needle.size(); end <= text.size();) {
        if (const std::size_t step = m_byteStep[std::to_integer<std::size_t>(text[end - 1])]; step != 0) {
            end += step;
            continue;
        }
        if (endsAt(text.data(), end))
            return true;
        end += m_shift[m_needle.back() & 0xFF];
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
        return containedIn(std::span(text.utf16(), static_cast<std::size_t>(text.size())));
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
        return containedIn(stored.subspan(2));
    return matches(decodeStored(stored));
}

} // namespace vardelin::sql
