#include "platform/rich/RtfBuilder.h"

#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <algorithm>

namespace vardelin {

namespace {

constexpr double kIndentWidth = 40; // pixels; QTextDocument's own

// A first line may hang out to the left of its paragraph, but not out of sight.
QTextBlockFormat kept(QTextBlockFormat format)
{
    const double room = format.leftMargin() + format.indent() * kIndentWidth;
    if (format.textIndent() < -room)
        format.setTextIndent(-room);
    return format;
}

QTextTableFormat tableFormat()
{
    QTextTableFormat format;
    format.setBorder(1);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderCollapse(true);
    format.setCellPadding(3);
    format.setCellSpacing(0);
    format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
    return format;
}

} // namespace

RtfBuilder::RtfBuilder(QTextDocument &document) : m_document(document), m_pictures(document) {}

void RtfBuilder::build(const RtfContent &content)
{
    m_content = &content;
    QTextCursor cursor(&m_document);
    bool reuse = true; // the empty block of a new document, and the one behind a table
    cursor.beginEditBlock();
    for (size_t at = 0; at < content.paragraphs.size();) {
        const RtfParagraph &next = content.paragraphs[at];
        const RtfTable found = next.inTable ? tableFrom(content.paragraphs, at) : RtfTable{};
        if (next.inTable && found.isSound()) {
            table(found);
            at = found.last;
            cursor.movePosition(QTextCursor::End);
            reuse = true;
            continue;
        }
        for (const size_t last = next.inTable ? found.last : at + 1; at < last; ++at) {
            paragraph(content.paragraphs[at], cursor, reuse);
            reuse = false;
        }
    }
    cursor.endEditBlock();
}

void RtfBuilder::paragraph(const RtfParagraph &paragraph, QTextCursor &cursor, bool reuseBlock)
{
    // Only an empty paragraph shows the format of its end.
    const QTextCharFormat end = paragraph.runs.empty() ? paragraph.endFormat : QTextCharFormat();
    const QTextBlockFormat format = kept(paragraph.format);
    if (reuseBlock) {
        cursor.setBlockFormat(format);
        cursor.mergeBlockCharFormat(end); // in a table it holds the cell's own properties
    } else {
        cursor.insertBlock(format, end);
    }
    if (paragraph.list)
        joinList(*paragraph.list, cursor);
    for (const RtfRun &run : paragraph.runs) {
        if (run.picture < 0) {
            cursor.insertText(run.text, run.format);
            continue;
        }
        cursor.insertImage(m_pictures.add(m_content->pictures[size_t(run.picture)]));
    }
}

void RtfBuilder::joinList(const RtfList &list, QTextCursor &cursor)
{
    QTextList *&current = m_lists[{int(list.style), list.indent}];
    if (current && !list.starts) {
        current->add(cursor.block());
        return;
    }
    QTextListFormat format;
    format.setStyle(list.style);
    format.setIndent(list.indent);
    current = cursor.createList(format);
}

void RtfBuilder::table(const RtfTable &table)
{
    QTextCursor end(&m_document);
    end.movePosition(QTextCursor::End);
    QTextTable *made = end.insertTable(int(table.rows.size()), int(table.columns), tableFormat());
    for (size_t row = 0; row < table.rows.size(); ++row) {
        for (size_t column = 0; column < table.rows[row].size(); ++column) {
            const RtfTable::Cell &cell = table.rows[row][column];
            QTextCursor cursor = made->cellAt(int(row), int(column)).firstCursorPosition();
            for (size_t i = cell.first; i < cell.last; ++i)
                paragraph(m_content->paragraphs[i], cursor, i == cell.first);
        }
    }
}

} // namespace vardelin
