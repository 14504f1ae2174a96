#pragma once
// RTF as a row of tokens.

#include <QByteArrayView>

namespace vardelin {

struct RtfToken
{
    enum class Kind {
        End,
        Open,   // {
        Close,  // }
        Word,   // \name with or without a number
        Symbol, // \ and one character that is neither a letter nor one of the next kinds: symbol
        Byte,   // \'hh: parameter is the byte
        Binary, // \binN: text is the N bytes, or those that are there
        Text,   // text: characters as they stand, none of them a brace, backslash, line end or NUL
    };
    Kind kind = Kind::End;
    char symbol = 0;
    bool hasParameter = false;
    int parameter = 0;   // held within +-2,147,483,647
    QByteArrayView text; // the word's name, or the bytes; lies in the text given to the lexer

    // Of a word that switches something: \b and \b1 do, \b0 doesn't.
    bool isOn() const { return !hasParameter || parameter != 0; }
};

// Never fails: what isn't RTF comes as text, an unfinished escape at the end is dropped. A line end after a
// backslash is the symbol '\n'. The text must outlive the lexer and its tokens.
class RtfLexer
{
public:
    explicit RtfLexer(QByteArrayView text) : m_text(text) {}
    RtfToken next();
    qsizetype at() const { return m_at; } // where the next token begins

    QByteArrayView text() const { return m_text; }

private:
    bool atEnd() const { return m_at >= m_text.size(); }
    RtfToken escape();
    RtfToken word();
    RtfToken hexByte();
    void readParameter(RtfToken &token);
    RtfToken plain();

    QByteArrayView m_text;
    qsizetype m_at = 0;
};

} // namespace vardelin
