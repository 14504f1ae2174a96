#pragma once
// Reads RTF into paragraphs. The groups form an explicit stack, so nesting costs memory only, and that within
// a bound.

#include "platform/rich/RtfCodePage.h"
#include "platform/rich/RtfContent.h"
#include "platform/rich/RtfLexer.h"

#include <QColor>
#include <map>
#include <vector>

namespace vardelin {

class RtfReader
{
public:
    explicit RtfReader(QByteArrayView rtf);
    RtfContent read();

private:
    // Where the text of a group goes.
    enum class Destination {
        Body,
        Skip, // nowhere, and no control word counts
        PicturesOnly,
        Ansi, // like Skip, but {\*\ud ...} in it holds the same text for readers that know it
        Fonts,
        Colours,
        Generator,
        Picture,
        Object,      // an embedded one: nothing but its {\result ...} counts, the rest is kept as it stands
        Instruction, // of a field
        Bullets,     // {\*\pn ...}
        BulletText,
        Same, // as the group around it
    };
    struct State
    {
        QTextCharFormat character;
        QTextBlockFormat block;
        std::optional<RtfList> list;
        Destination destination = Destination::Body;
        bool ownsDestination = false; // the group in which the destination began
        bool inTable = false;
        int font = -1;
        int fallback = 1; // \uc: characters to pass over after \u
        int spacing = 0;  // \sl, twips
        QTextOption::TabType nextTab = QTextOption::LeftTab;
    };
    // The embedded object being read.
    struct Object
    {
        size_t depth = 0; // of its group; 0: none
        bool inResult = false;
        qsizetype from = 0; // where the piece begins that is to be kept
        QByteArray kept;
        size_t picture = 0; // index of the first one in its result
    };
    struct Font
    {
        QString name;
        int page = 0;
    };
    using Handler = void (RtfReader::*)(const RtfToken &);
    struct Tables;
    static const Tables &tables();
    static bool isCharacter(QByteArrayView word);

    State &state() { return m_states.back(); }
    void open();
    void close();
    void finish(Destination destination);
    void begin(Destination destination);

    void take(const RtfToken &token);
    bool passOver(const RtfToken &token);
    void word(const RtfToken &token);
    void objectWord(const RtfToken &token);
    void bodyWord(const RtfToken &token);
    void fontWord(const RtfToken &token);
    void colourWord(const RtfToken &token);
    void pictureWord(const RtfToken &token);
    void bulletWord(const RtfToken &token);
    void beginObject();
    void keepPieceOfObject();
    void finishObject();
    void addPicture(RtfPicture &&picture);
    void symbol(char symbol);

    void bytes(QByteArrayView bytes);
    void flush();
    int page() const;
    void text(const QString &text);
    void fontText(const QString &text);
    void colourText(QByteArrayView text);
    void bodyText(QString text);
    void append(const QString &text);
    void endParagraph(bool endsCell, bool endsRow);
    RtfContent finished();

    // Handlers of words, in RtfWords.cpp.
    void unicode(const RtfToken &token);
    void setPage(const RtfToken &token);
    void setDefaultFont(const RtfToken &token);
    void setFallback(const RtfToken &token);
    void setFont(const RtfToken &token);
    void setSize(const RtfToken &token);
    void setColour(const RtfToken &token);
    void setBackground(const RtfToken &token);
    void setParagraphBackground(const RtfToken &token);
    void setWeight(const RtfToken &token);
    void setItalic(const RtfToken &token);
    void setStrike(const RtfToken &token);
    void setUnderline(const RtfToken &token);
    void setCapitals(const RtfToken &token);
    void setRaised(const RtfToken &token);
    void setLowered(const RtfToken &token);
    void setBaseline(const RtfToken &token);
    void plain(const RtfToken &token);
    void paragraphDefaults(const RtfToken &token);
    void setAlignment(const RtfToken &token);
    void setIndent(const RtfToken &token);
    void setOwnIndent(const RtfToken &token);
    void setSpacing(const RtfToken &token);
    void setTab(const RtfToken &token);
    void setFlow(const RtfToken &token);
    void setInTable(const RtfToken &token);
    void endOfParagraph(const RtfToken &token);
    void endOfCell(const RtfToken &token);
    void endOfRow(const RtfToken &token);
    void endOfPage(const RtfToken &token);
    void beginField(const RtfToken &token);
    void beginResult();
    QBrush brush(int index) const;

    RtfLexer m_lexer;
    CodePages m_pages;
    RtfContent m_content;
    RtfParagraph m_paragraph;
    std::vector<State> m_states;
    qint64 m_beyond = 0;        // groups open beyond the bound of the stack
    bool m_optional = false;    // \* came, the next word names a destination that may be passed over
    bool m_groupStarts = false; // only at a group's start does a word name its destination
    int m_passOver = 0;         // characters still to pass over after \u
    bool m_ours = false;
    bool m_begun = false; // something came since the last paragraph's end
    QByteArray m_bytes;   // text not yet decoded
    int m_documentPage = 1252;
    int m_defaultFont = -1;
    std::map<int, Font> m_fonts;
    int m_currentFont = -1; // the entry of the font table being read
    std::vector<QColor> m_colours;
    QColor m_colour;
    RtfPicture m_picture;
    Object m_object;
    qsizetype m_tokenAt = 0, m_groupAt = 0; // where the current token and the last opened group begin
    QString m_instruction, m_link, m_generator, m_bulletText;
    RtfList m_bullets;
    bool m_bulletsFound = false;
};

} // namespace vardelin
