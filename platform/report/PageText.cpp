#include "platform/report/PageText.h"

#include "platform/report/Report.h"

#include <algorithm>
#include <cmath>

namespace vardelin {

namespace {

constexpr double kSameRow = 60; // twips between bases

double base(const ReportItem *item)
{
    return item->top + item->baseline;
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
            rows.push_back({item->top, {}});
            rowBase = base(item);
        }
        rows.back().top = std::min(rows.back().top, item->top);
        rows.back().items.push_back(item);
    }
    for (PageRow &row : rows)
        std::ranges::stable_sort(row.items, {}, &ReportItem::left);
    return rows;
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
