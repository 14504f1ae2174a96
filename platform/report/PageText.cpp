#include "platform/report/PageText.h"

#include "platform/report/Report.h"

#include <algorithm>

namespace vardelin {

namespace {

constexpr double kSameRow = 60; // twips between bases

double base(const ReportItem *item)
{
    return item->top + item->baseline;
}

bool sameText(const ReportItem &item, const ReportItem &other)
{
    return item.section == other.section && item.record == other.record && item.control == other.control;
}

// What stands between two rows of a text.
QString rowEnd(const PageRow &row, const PageRow &next)
{
    const ReportItem &last = *row.items.back(), &first = *next.items.front();
    if (last.end == LineEnd::Hard || !sameText(last, first))
        return QStringLiteral("\n");
    return last.end == LineEnd::AtBlank ? QStringLiteral(" ") : QString();
}

// A control's lines on a page as one text, and where each begins in it.
struct JoinedText
{
    QString text;
    std::vector<std::pair<qsizetype, int>> starts; // place in the text, item of the page
};

std::vector<JoinedText> joinedTexts(const ReportPage &page)
{
    std::vector<JoinedText> texts;
    const ReportItem *before = nullptr;
    for (std::size_t i = 0; i < page.items.size(); ++i) {
        const ReportItem &item = page.items[i];
        if (item.isRule())
            continue;
        if (!before || !sameText(*before, item))
            texts.emplace_back();
        else if (before->end != LineEnd::InWord)
            texts.back().text += before->end == LineEnd::Hard ? u'\n' : u' ';
        texts.back().starts.emplace_back(texts.back().text.size(), static_cast<int>(i));
        texts.back().text += item.text;
        before = &item;
    }
    return texts;
}

TextMatch matchAt(const ReportPage &page, const JoinedText &joined, qsizetype from, qsizetype length)
{
    TextMatch match;
    match.page = page.number;
    for (const auto &[start, item] : joined.starts) {
        const qsizetype end = start + page.items[static_cast<std::size_t>(item)].text.size();
        const qsizetype first = std::max(start, from), last = std::min(end, from + length);
        if (first < last)
            match.pieces.push_back({item, static_cast<int>(first - start), static_cast<int>(last - first)});
    }
    return match;
}

} // namespace

std::vector<PageRow> rowsOf(const ReportPage &page)
{
    std::vector<const ReportItem *> lines;
    for (const ReportItem &item : page.items)
        if (!item.isRule())
            lines.push_back(&item);
    std::ranges::stable_sort(lines, {}, base);
    std::vector<PageRow> rows;
    double rowBase = 0;
    for (const ReportItem *item : lines) {
        if (rows.empty() || base(item) - rowBase > kSameRow) {
            rows.push_back({item->top, item->bottom(), {}});
            rowBase = base(item);
        }
        rows.back().top = std::min(rows.back().top, item->top);
        rows.back().bottom = std::max(rows.back().bottom, item->bottom());
        rows.back().items.push_back(item);
    }
    for (PageRow &row : rows)
        std::ranges::stable_sort(row.items, {}, &ReportItem::left);
    return rows;
}

QString textBetween(const std::vector<PageRow> &rows, int page, TextPlace from, TextPlace to)
{
    QString text;
    const PageRow *before = nullptr;
    int line = 0;
    for (const PageRow &row : rows) {
        bool begun = false;
        for (const ReportItem *item : row.items) {
            const TextPlace start{page, line, 0}, end{page, line, static_cast<int>(item->text.size())};
            ++line;
            if (to <= start || end <= from)
                continue;
            if (begun)
                text += u'\t';
            else if (before)
                text += rowEnd(*before, row);
            begun = true;
            const qsizetype first = from > start ? from.offset : 0;
            text += item->text.mid(first, (to < end ? to.offset : item->text.size()) - first);
        }
        if (begun)
            before = &row;
    }
    return text;
}

std::optional<QString> textBetween(ReportPages &pages, TextPlace from, TextPlace to,
                                   const ReportProgress &progress)
{
    QString text;
    for (int number = from.page; number <= to.page; ++number) {
        while (pages.found() < number && pages.findNext())
            ;
        if (number > pages.found())
            break;
        const ReportPage page = pages.page(number);
        const QString part = textBetween(rowsOf(page), number, from, to);
        if (!text.isEmpty() && !part.isEmpty())
            text += u'\n';
        text += part;
        if (!progress(number, std::min(to.page, pages.found())))
            return std::nullopt;
    }
    return text;
}

std::vector<TextMatch> findText(const ReportPage &page, const QString &text)
{
    std::vector<TextMatch> matches;
    if (text.isEmpty())
        return matches;
    for (const JoinedText &joined : joinedTexts(page))
        for (qsizetype at = 0; (at = joined.text.indexOf(text, at, Qt::CaseInsensitive)) >= 0;
             at += text.size())
            matches.push_back(matchAt(page, joined, at, text.size()));
    return matches;
}

QString textOf(const DataReport &report)
{
    const FaceMeasurer measurer;
    QString text;
    for (const ReportPage &page : layoutReport(report.design(), report.records(), measurer)) {
        for (const PageRow &row : rowsOf(page)) {
            QStringList parts;
            for (const ReportItem *item : row.items)
                parts += item->text;
            text += parts.join(u'\t') + u'\n';
        }
        text += u'\f';
    }
    return text;
}

} // namespace vardelin
