#pragma once
// What an RTF text holds, between reading it and building a document: paragraphs of runs, each with Qt's own
// formats.

#include "platform/rich/RtfPicture.h"

#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextListFormat>
#include <optional>
#include <vector>

namespace vardelin {

struct RtfRun
{
    QString text; // free of paragraph ends and of the characters QTextDocument keeps for itself
    QTextCharFormat format;
    int picture = -1; // index in RtfContent::pictures; the text is empty then
};

struct RtfList
{
    QTextListFormat::Style style = QTextListFormat::ListDisc;
    int indent = 1;      // levels, as QTextListFormat counts them
    bool starts = false; // begins a list even if one of the same kind stands before it
};

struct RtfParagraph
{
    std::vector<RtfRun> runs;
    QTextBlockFormat format;
    QTextCharFormat endFormat; // of the paragraph's end, in which typing goes on when the paragraph is empty
    std::optional<RtfList> list;
    bool inTable = false;
    bool endsCell = false, endsRow = false; // only in a table
};

struct RtfContent
{
    std::vector<RtfParagraph> paragraphs;
    std::vector<RtfPicture> pictures;
};

// A table among the paragraphs, from first up to and without last: the paragraphs of each cell of each row.
struct RtfTable
{
    struct Cell
    {
        size_t first = 0, last = 0;
    };
    size_t first = 0, last = 0;
    std::vector<std::vector<Cell>> rows;
    size_t columns = 0;
    size_t cells = 0;

    // False for a shape that would cost far more than the text it holds; its paragraphs are then shown one
    // below the other.
    bool isSound() const;
};

// A font's name, or a link's address, as RTF can carry it: on one line, without the sign that ends it, of
// bounded length.
QString cleanName(QString name, QChar end, qsizetype longest);
constexpr qsizetype kLongestFontName = 100;
constexpr qsizetype kLongestLink = 4000;

// The table that begins with the paragraph at first, which must be in one.
RtfTable tableFrom(const std::vector<RtfParagraph> &paragraphs, size_t first);

// The text that a document built from the content has, as plainText() gives it.
QString plainText(const RtfContent &content);

} // namespace vardelin
