#pragma once
// The words of a statement, one after the other.

#include "platform/base/Value.h"

namespace vardelin::sql {

enum class TokenKind { End, Name, Bracketed, Literal, Symbol, BadText, BadDate, BadNumber, BadName };

struct Token
{
    TokenKind kind = TokenKind::End;
    QString text; // of a name without its brackets; of a symbol itself
    Value value;  // of a literal
    qsizetype position = 0, end = 0;

    bool is(QLatin1StringView symbol) const { return kind == TokenKind::Symbol && text == symbol; }
    // A bare name is a keyword where one may stand; a bracketed one never is.
    bool isWord(QLatin1StringView word) const
    {
        return kind == TokenKind::Name && text.compare(word, Qt::CaseInsensitive) == 0;
    }
    bool isName() const { return kind == TokenKind::Name || kind == TokenKind::Bracketed; }
};

// Reads no further than it is asked to, so that the first error in the text is the one that is told.
class Lexer
{
public:
    explicit Lexer(const QString &text) : m_text(text) { read(); }
    const Token &peek() const { return m_token; }
    Token next();
    bool accept(QLatin1StringView word); // takes a keyword or a symbol
    const QString &text() const { return m_text; }
    qsizetype previousEnd() const { return m_previousEnd; } // of the last token that was taken
    // For a second look at the text from a place on.
    void rewind(qsizetype position);

private:
    QChar at(qsizetype place) const { return place < m_text.size() ? m_text[place] : QChar(); }
    void read();
    void readText(QChar quote);
    void readDate();
    void readBracketed(QChar close);
    void readNumber();
    void readName();
    void readSymbol();

    QString m_text;
    qsizetype m_at = 0;
    qsizetype m_previousEnd = 0;
    Token m_token;
};

} // namespace vardelin::sql
