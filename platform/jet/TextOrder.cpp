// A key is: primary part, 01, extra part [, 01 01, kana part, punctuation part], 00.
//
// The primary part holds the inline bytes of the units. The extra part has one byte for each letter with
// marks, and 02 for each letter without that stands ahead of one with. The punctuation part has a record of
// four bytes for each apostrophe, hyphen and control character: its position, 06, its code.
#include "platform/jet/TextOrder.h"

#include "platform/jet/TextWeights.h"

#include <algorithm>
#include <utility>

namespace vardelin::jet {

namespace {

using Kind = TextWeight::Kind;

std::u16string_view withoutTrailingBlanks(std::u16string_view text)
{
    const std::size_t last = text.find_last_not_of(u' ');
    return text.substr(0, last == std::u16string_view::npos ? 0 : last + 1);
}

char toChar(std::uint32_t value)
{
    return static_cast<char>(static_cast<std::uint8_t>(value));
}

void appendBigEndian(std::string &to, std::uint32_t value, std::size_t length)
{
    while (length-- > 0)
        to.push_back(toChar(value >> (8 * length)));
}

class KeyMaker
{
public:
    void add(const TextWeight &weight)
    {
        const std::size_t here = m_at;
        if (weight.inlineLength != 0) {
            appendBigEndian(m_primary, weight.inlineBytes, weight.inlineLength);
            ++m_at;
        }
        if (weight.extraLength != 0)
            addExtra(weight, here);
        else if (weight.kind == Kind::Mark)
            addMark(weight.code, here);
        else if (weight.kind == Kind::Punct)
            addPunct(weight.code, here);
        if (weight.kind == Kind::KanaTwo || weight.kind == Kind::KanaThree)
            m_kana.push_back(weight.kind == Kind::KanaTwo ? '\2' : '\3');
    }

    std::string finish()
    {
        while (!m_extra.empty() && static_cast<std::uint8_t>(m_extra.back()) <= 2)
            m_extra.pop_back();
        std::string key = std::move(m_primary);
        key.push_back('\1');
        key += m_extra;
        if (!m_punct.empty() || !m_kana.empty())
            key += "\1\1";
        if (!m_kana.empty())
            appendKana(key);
        if (!m_punct.empty())
            (key += '\1') += m_punct;
        key.push_back('\0');
        return key;
    }

private:
    void padExtra(std::size_t here)
    {
        if (m_covered >= here)
            return;
        m_extra.append(here - m_covered, '\2');
        m_covered = here;
    }

    void addExtra(const TextWeight &weight, std::size_t here)
    {
        padExtra(here);
        appendBigEndian(m_extra, weight.extraBytes, weight.extraLength);
        ++m_covered;
    }

    void addMark(std::uint8_t code, std::size_t here)
    {
        padExtra(here);
        if (!m_extra.empty()) {
            m_extra.back() = toChar(static_cast<std::uint8_t>(m_extra.back()) + std::uint32_t{code});
            return;
        }
        m_extra.push_back(toChar(code));
        m_loose = 1;
    }

    void addPunct(std::uint8_t code, std::size_t here)
    {
        const bool extraBegun = !m_extra.empty() || m_covered != 0;
        const std::size_t position = extraBegun ? m_extra.size() + (here - m_covered) - m_loose : here;
        appendBigEndian(m_punct, static_cast<std::uint32_t>(7 + 4 * position) | 0x8000u, 2);
        m_punct.push_back('\6');
        m_punct.push_back(toChar(code));
    }

    void appendKana(std::string &key)
    {
        while (!m_kana.empty() && m_kana.back() == '\3')
            m_kana.pop_back();
        for (std::size_t i = 0; i < m_kana.size(); i += 3) {
            std::uint32_t packed = 0x80;
            for (std::size_t k = 0; k < 3 && i + k < m_kana.size(); ++k)
                packed |= static_cast<std::uint32_t>(m_kana[i + k]) << (4 - 2 * k);
            key.push_back(toChar(packed));
        }
        key += "\xFF\x02\x80\xFF\x80";
        if (!m_punct.empty())
            key.push_back('\xFF');
    }

    std::string m_primary, m_extra, m_punct, m_kana;
    std::size_t m_at = 0;      // units that gave inline bytes so far
    std::size_t m_covered = 0; // how many of them m_extra accounts for
    std::size_t m_loose = 0;   // 1 if m_extra begins with a mark that stands on no letter
};

// The bytes of a text's primary part and the 01 behind it, one after the other, without making them.
class PrimaryBytes
{
public:
    explicit PrimaryBytes(std::u16string_view text) : m_text(text) {}

    // The next byte; -1 behind the end.
    int next()
    {
        while (m_left == 0) {
            if (m_at == m_text.size())
                return std::exchange(m_ended, true) ? -1 : 1;
            const TextWeight weight = textWeight(m_text[m_at++]);
            m_left = weight.inlineLength;
            m_bytes = weight.inlineBytes;
            m_plain = m_plain && (weight.kind == Kind::Plain || weight.kind == Kind::Skip);
        }
        --m_left;
        return static_cast<int>(m_bytes >> (8 * m_left) & 0xFF);
    }

    bool allPlain() const { return m_plain; } // nothing met that adds to the parts behind the primary one

private:
    std::u16string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_left = 0;
    std::uint32_t m_bytes = 0;
    bool m_plain = true;
    bool m_ended = false;
};

// How many units at the start of both texts are alike and of one plain byte each, or differ but weigh the
// same. Where they weigh unlike, `order` tells it.
std::size_t skipPlainStart(std::u16string_view left, std::u16string_view right, int &order)
{
    const auto &plain = plainLatinBytes();
    const std::size_t common = std::min(left.size(), right.size());
    std::size_t i = 0;
    for (; i < common && (left[i] | right[i]) <= 0xFF; ++i) {
        const std::uint8_t l = plain[left[i]], r = plain[right[i]];
        if (l == 0 || r == 0)
            break;
        if (l != r) {
            order = l < r ? -1 : 1;
            break;
        }
    }
    return i;
}

} // namespace

std::string textKey(std::u16string_view text, std::size_t maxUnits)
{
    KeyMaker maker;
    for (const char16_t unit : withoutTrailingBlanks(text.substr(0, maxUnits)))
        maker.add(textWeight(unit));
    return maker.finish();
}

int compareText(std::u16string_view left, std::u16string_view right)
{
    left = withoutTrailingBlanks(left);
    right = withoutTrailingBlanks(right);
    int order = 0;
    const std::size_t start = skipPlainStart(left, right, order);
    if (order != 0)
        return order;
    PrimaryBytes leftBytes(left.substr(start)), rightBytes(right.substr(start));
    for (;;) {
        const int l = leftBytes.next(), r = rightBytes.next();
        if (l != r && l >= 0 && r >= 0)
            return l < r ? -1 : 1;
        if (l < 0 && r < 0)
            break;
        if (l < 0 || r < 0) // an inline byte of one met the 01 of the other; only whole keys can tell
            return textKey(left, left.size()).compare(textKey(right, right.size())) < 0 ? -1 : 1;
    }
    if ((leftBytes.allPlain() && rightBytes.allPlain()) || left == right)
        return 0;
    const int byKeys = textKey(left, left.size()).compare(textKey(right, right.size()));
    return byKeys < 0 ? -1 : byKeys > 0 ? 1 : 0;
}

} // namespace vardelin::jet
