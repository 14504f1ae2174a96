#pragma once
// Writes a document as RTF.

#include <QByteArray>
#include <QColor>
#include <QStringList>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>
#include <set>
#include <vector>

namespace vardelin {

// Each paragraph opens with \pard\plain\fsN\f0, the document's own font; each stretch of text that differs is
// a group of its own. Our reader takes \f0 as "no font given", so that text keeps following the font of the
// field it is shown in.
class RtfWriter
{
public:
    explicit RtfWriter(const QTextDocument &document) : m_document(document) {}
    QByteArray write();

private:
    QByteArray header() const;
    void block(const QTextBlock &block);
    void paragraphFormat(const QTextBlockFormat &format, bool inList);
    void spacing(const QTextBlockFormat &format);
    void tabs(const QTextBlockFormat &format);
    void bullet(const QTextBlock &block);
    void fragment(const QTextFragment &fragment);
    void endRun();
    QByteArray characterWords(const QTextCharFormat &format);
    QByteArray fontWords(const QTextCharFormat &format);
    QByteArray underlineWord(const QTextCharFormat &format) const;

    QTextTable *tableAt(const QTextBlock &block) const; // the outermost
    bool endsCell(const QTextTable *table, const QTextBlock &block) const;
    void enterCell(const QTextTable *table, const QTextBlock &block);
    void leaveCell(const QTextTable *table, const QTextBlock &block);
    void nextCell();
    void rowStart(int columns);

    int fontNumber(const QString &family);
    int colourNumber(const QColor &colour);
    int defaultHalfPoints() const;

    const QTextDocument &m_document;
    QByteArray m_body;
    QStringList m_fonts; // \f1 and on
    std::vector<QRgb> m_colours;
    std::set<const QTextList *> m_startedLists;

    // Fragments that differ only in what RTF doesn't carry are one run.
    struct Run
    {
        QByteArray words;
        QString link, text;
    };
    Run m_run;

    const QTextTable *m_table = nullptr; // the one being written, and its next place
    int m_row = 0, m_column = 0;
};

// Text with everything outside plain ASCII escaped.
QByteArray escapedRtf(QStringView text);

} // namespace vardelin
