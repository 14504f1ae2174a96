#include "platform/rich/RtfLexer.h"

#include <QtGlobal>
#include <algorithm>
#include <limits>

namespace vardelin {

namespace {

constexpr qsizetype kLongestWord = 32;

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isSkipped(char c)
{
    return c == '\r' || c == '\n' || c == '\0';
}

int hexDigit(char c)
{
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

RtfToken RtfLexer::next()
{
    while (!atEnd() && isSkipped(m_text[m_at]))
        ++m_at;
    if (atEnd())
        return {};
    RtfToken token;
    switch (m_text[m_at]) {
    case '{':
        token.kind = RtfToken::Kind::Open;
        break;
    case '}':
        token.kind = RtfToken::Kind::Close;
        break;
    case '\\':
        return escape();
    default:
        return plain();
    }
    ++m_at;
    return token;
}

RtfToken RtfLexer::plain()
{
    const qsizetype start = m_at;
    const auto ends = [](char c) { return c == '{' || c == '}' || c == '\\' || isSkipped(c); };
    while (!atEnd() && !ends(m_text[m_at]))
        ++m_at;
    RtfToken token;
    token.kind = RtfToken::Kind::Text;
    token.text = m_text.sliced(start, m_at - start);
    return token;
}

RtfToken RtfLexer::escape()
{
    ++m_at;
    if (atEnd())
        return {};
    const char c = m_text[m_at];
    if (isLetter(c))
        return word();
    ++m_at;
    if (c == '\'')
        return hexByte();
    if (c == '\r' && !atEnd() && m_text[m_at] == '\n')
        ++m_at;
    RtfToken token;
    token.kind = RtfToken::Kind::Symbol;
    token.symbol = c == '\r' ? '\n' : c;
    return token;
}

RtfToken RtfLexer::hexByte()
{
    RtfToken token;
    token.kind = RtfToken::Kind::Byte;
    const int high = atEnd() ? -1 : hexDigit(m_text[m_at]);
    const int low = m_at + 1 < m_text.size() ? hexDigit(m_text[m_at + 1]) : -1;
    if (high < 0 || low < 0) {
        // Not an escape after all; the apostrophe comes through as the text it probably was.
        token.parameter = '\'';
        return token;
    }
    m_at += 2;
    token.parameter = high * 16 + low;
    return token;
}

RtfToken RtfLexer::word()
{
    const qsizetype start = m_at;
    while (!atEnd() && isLetter(m_text[m_at]) && m_at - start < kLongestWord)
        ++m_at;
    RtfToken token;
    token.kind = RtfToken::Kind::Word;
    token.text = m_text.sliced(start, m_at - start);
    readParameter(token);
    if (!atEnd() && m_text[m_at] == ' ')
        ++m_at;
    if (token.text == "bin") {
        const qsizetype length = std::clamp<qsizetype>(token.parameter, 0, m_text.size() - m_at);
        token.kind = RtfToken::Kind::Binary;
        token.text = m_text.sliced(m_at, length);
        m_at += length;
    }
    return token;
}

void RtfLexer::readParameter(RtfToken &token)
{
    const bool negative = m_at + 1 < m_text.size() && m_text[m_at] == '-' && isDigit(m_text[m_at + 1]);
    if (negative)
        ++m_at;
    qint64 value = 0;
    while (!atEnd() && isDigit(m_text[m_at])) {
        token.hasParameter = true;
        value = std::min<qint64>(value * 10 + (m_text[m_at] - '0'), std::numeric_limits<int>::max());
        ++m_at;
    }
    token.parameter = int(negative ? -value : value);
}

} // namespace vardelin
