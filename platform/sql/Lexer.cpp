#include "platform/sql/Lexer.h"

#include "platform/base/Dates.h"
#include "platform/base/RunTimeError.h"

#include <limits>

namespace vardelin::sql {

using namespace Qt::StringLiterals;

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool beginsName(QChar c)
{
    return c.isLetter() || c == u'_';
}

bool continuesName(QChar c)
{
    return beginsName(c) || isDigit(c) || c == u'$';
}

} // namespace

Token Lexer::next()
{
    Token token = std::move(m_token);
    m_previousEnd = token.end;
    read();
    return token;
}

bool Lexer::accept(QLatin1StringView word)
{
    if (!m_token.isWord(word) && !m_token.is(word))
        return false;
    next();
    return true;
}

void Lexer::rewind(qsizetype position)
{
    m_at = position;
    read();
}

void Lexer::read()
{
    while (m_at < m_text.size() && (m_text[m_at].isSpace() || m_text[m_at].isNull()))
        ++m_at;
    const bool afterName = m_token.isName() && m_token.end == m_at; // then a dot joins two names
    m_token = {};
    m_token.position = m_at;
    const QChar c = at(m_at);
    if (m_at == m_text.size())
        m_token.kind = TokenKind::End;
    else if (c == u'\'' || c == u'"')
        readText(c);
    else if (c == u'#')
        readDate();
    else if (c == u'[')
        readBracketed(u']');
    else if (c == u'`')
        readBracketed(u'`');
    else if (isDigit(c) || (c == u'.' && isDigit(at(m_at + 1)) && !afterName))
        readNumber();
    else if (beginsName(c))
        readName();
    else
        readSymbol();
    m_token.end = m_at;
}

void Lexer::readText(QChar quote)
{
    QString text;
    for (++m_at; m_at < m_text.size(); ++m_at) {
        if (m_text[m_at] == quote) {
            if (at(m_at + 1) != quote) {
                ++m_at;
                m_token.kind = TokenKind::Literal;
                m_token.value = Value(std::move(text));
                return;
            }
            ++m_at;
        }
        text += m_text[m_at];
    }
    m_token.kind = TokenKind::BadText;
}

void Lexer::readDate()
{
    const qsizetype close = m_text.indexOf(u'#', m_at + 1);
    m_token.kind = TokenKind::BadDate;
    if (close < 0) {
        m_at = m_text.size();
        return;
    }
    if (const auto date = dateFromText(QStringView(m_text).sliced(m_at + 1, close - m_at - 1))) {
        m_token.kind = TokenKind::Literal;
        m_token.value = Value(*date);
    }
    m_at = close + 1;
}

void Lexer::readBracketed(QChar close)
{
    const qsizetype end = m_text.indexOf(close, m_at + 1);
    if (end <= m_at + 1) {
        m_token.kind = TokenKind::BadName;
        m_at = end < 0 ? m_text.size() : end + 1;
        return;
    }
    m_token.kind = TokenKind::Bracketed;
    m_token.text = m_text.sliced(m_at + 1, end - m_at - 1).trimmed();
    m_at = end + 1;
}

// Whole numbers of 32 bits are Long, all else is Double.
void Lexer::readNumber()
{
    const qsizetype start = m_at;
    bool whole = true;
    while (isDigit(at(m_at)))
        ++m_at;
    if (at(m_at) == u'.') {
        whole = false;
        for (++m_at; isDigit(at(m_at));)
            ++m_at;
    }
    const bool hasSign = at(m_at + 1) == u'+' || at(m_at + 1) == u'-';
    if ((at(m_at) == u'e' || at(m_at) == u'E') && isDigit(at(m_at + (hasSign ? 2 : 1)))) {
        whole = false;
        for (m_at += hasSign ? 2 : 1; isDigit(at(m_at));)
            ++m_at;
    }
    double number = 0;
    try {
        number = toDouble(Value(m_text.sliced(start, m_at - start)));
    } catch (const RunTimeError &) { // too big
        m_token.kind = TokenKind::BadNumber;
        return;
    }
    m_token.kind = TokenKind::Literal;
    if (whole && number <= std::numeric_limits<std::int32_t>::max())
        m_token.value = Value(static_cast<std::int32_t>(number));
    else
        m_token.value = Value(number);
}

void Lexer::readName()
{
    const qsizetype start = m_at;
    while (continuesName(at(m_at)))
        ++m_at;
    m_token.kind = TokenKind::Name;
    m_token.text = m_text.sliced(start, m_at - start);
}

void Lexer::readSymbol()
{
    const QStringView two = QStringView(m_text).sliced(m_at, std::min<qsizetype>(2, m_text.size() - m_at));
    const bool isTwo = two == u"<>" || two == u"<=" || two == u">=";
    m_token.kind = TokenKind::Symbol;
    m_token.text = m_text.sliced(m_at, isTwo ? 2 : 1);
    m_at += isTwo ? 2 : 1;
}

} // namespace vardelin::sql
