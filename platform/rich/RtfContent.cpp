#include "platform/rich/RtfContent.h"

#include <algorithm>

namespace vardelin {

namespace {

constexpr size_t kMostColumns = 63;
constexpr size_t kMostCells = 20000;
constexpr size_t kEmptyForOne = 8; // places in the grid for each cell that is really there

QString textOf(const RtfParagraph &paragraph)
{
    QString text;
    for (const RtfRun &run : paragraph.runs)
        text += run.text;
    text.replace(QChar::Nbsp, u' ');
    text.replace(QChar::LineSeparator, QLatin1String("\r\n"));
    return text;
}

} // namespace

QString cleanName(QString name, QChar end, qsizetype longest)
{
    const auto unfit = [end](QChar c) { return c == end || c.category() == QChar::Other_Control; };
    for (QChar &c : name) {
        if (unfit(c))
            c = u' ';
    }
    return name.simplified().left(longest).trimmed();
}

bool RtfTable::isSound() const
{
    const size_t grid = rows.size() * columns;
    return columns <= kMostColumns && grid <= kMostCells && grid <= cells * kEmptyForOne;
}

RtfTable tableFrom(const std::vector<RtfParagraph> &paragraphs, size_t first)
{
    RtfTable table;
    table.first = first;
    size_t cellStart = first;
    bool rowOpen = false;
    size_t at = first;
    for (; at < paragraphs.size() && paragraphs[at].inTable; ++at) {
        const bool lastOfAll = at + 1 == paragraphs.size() || !paragraphs[at + 1].inTable;
        if (!paragraphs[at].endsCell && !lastOfAll)
            continue;
        if (!rowOpen)
            table.rows.emplace_back();
        table.rows.back().push_back({cellStart, at + 1});
        table.columns = std::max(table.columns, table.rows.back().size());
        ++table.cells;
        cellStart = at + 1;
        rowOpen = !paragraphs[at].endsRow;
    }
    table.last = at;
    return table;
}

QString plainText(const RtfContent &content)
{
    // QTextDocument has a paragraph before and behind every table, be it empty.
    QStringList lines;
    const auto &paragraphs = content.paragraphs;
    size_t at = 0;
    while (at < paragraphs.size()) {
        if (!paragraphs[at].inTable) {
            lines += textOf(paragraphs[at++]);
            continue;
        }
        const RtfTable table = tableFrom(paragraphs, at);
        const bool real = table.isSound();
        if (real && at == 0)
            lines += QString();
        for (const auto &row : table.rows) {
            for (const RtfTable::Cell &cell : row) {
                for (size_t i = cell.first; i < cell.last; ++i)
                    lines += textOf(paragraphs[i]);
            }
            if (real)
                lines.resize(lines.size() + qsizetype(table.columns - row.size()));
        }
        at = table.last;
        if (real && at == paragraphs.size())
            lines += QString();
    }
    return lines.join(QLatin1String("\r\n"));
}

} // namespace vardelin
