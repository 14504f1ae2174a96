#pragma once
// The words of a page in reading order.

#include "platform/report/ReportPages.h"

namespace vardelin {

// The lines of text that stand side by side, from left to right.
struct PageRow
{
    double top = 0;
    std::vector<const ReportItem *> items; // of the page
};

// From top to bottom; lines are side by side where their bases are.
std::vector<PageRow> rowsOf(const ReportPage &page);

} // namespace vardelin
