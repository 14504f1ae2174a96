#include "platform/sql/EqualText.h"

#include "platform/sql/Operators.h"
#include "platform/sql/StoredText.h"

#include <algorithm>
#include <cstring>

namespace vardelin::sql {

namespace {

// Each of these has a weight of its own in the order of texts, but for the case. Others may have none, or
// share one.
char16_t plainOf(char16_t unit)
{
    if (unit >= u'A' && unit <= u'Z')
        return unit + (u'a' - u'A');
    return (unit >= u'a' && unit <= u'z') || (unit >= u'0' && unit <= u'9') ? unit : 0;
}

char16_t firstOf(std::span<const std::byte> stored)
{
    if (stored.size() < 2)
        return 0;
    if (isCompressed(stored))
        return stored.size() > 2 ? std::to_integer<char16_t>(stored[2]) : 0;
    return static_cast<char16_t>(std::to_integer<unsigned>(stored[0]) | std::to_integer<unsigned>(stored[1])
                                                                            << 8);
}

} // namespace

EqualText::EqualText(QString text)
    : m_text(std::move(text)), m_plain(static_cast<std::size_t>(m_text.size()) * 2),
      m_first(m_text.isEmpty() ? 0 : plainOf(m_text.front().unicode()))
{
    if (!m_plain.empty())
        std::memcpy(m_plain.data(), m_text.constData(), m_plain.size());
}

bool EqualText::matchesStored(std::span<const std::byte> stored, QString &room) const
{
    if (m_first != 0) {
        const char16_t first = plainOf(firstOf(stored));
        if (first != 0 && first != m_first)
            return false;
        if (std::ranges::equal(stored, m_plain))
            return true;
    }
    decodeStored(stored, room);
    return compareTexts(room, m_text) == 0;
}

} // namespace vardelin::sql
