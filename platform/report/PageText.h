#pragma once
// The words of pages: in reading order, between two places, and where they are found.

#include "platform/report/ReportPages.h"

#include <compare>
#include <functional>

namespace vardelin {

// Called now and then with what is done of how much; false ends the work.
using ReportProgress = std::function<bool(int done, int of)>;

// The lines of text that stand side by side, from left to right.
struct PageRow
{
    double top = 0, bottom = 0;
    std::vector<const ReportItem *> items; // of the page
};

// From top to bottom; lines are side by side where their bases are.
std::vector<PageRow> rowsOf(const ReportPage &page);

// A place between two characters: page from 1, line in reading order from 0, characters before it there.
struct TextPlace
{
    int page = 1, line = 0, offset = 0;
    auto operator<=>(const TextPlace &) const = default;
};
inline constexpr int kWhole = 1 << 30; // as a page, a line or an offset: the end of all

// Rows as lines, with a tab between what stands side by side; what a control wrapped is put together again.
// Lines end with LF.
QString textBetween(const std::vector<PageRow> &rows, int page, TextPlace from, TextPlace to);
// Over pages; nullopt where the progress said no.
std::optional<QString> textBetween(ReportPages &pages, TextPlace from, TextPlace to,
                                   const ReportProgress &progress);

// A find: pieces of lines, more than one where the text goes over the end of a line.
struct TextMatch
{
    struct Piece
    {
        int item = 0; // of the page's items
        int from = 0, length = 0;
    };
    int page = 1;
    std::vector<Piece> pieces;
};

// Without regard to case; also over the ends of lines that a control wrapped.
std::vector<TextMatch> findText(const ReportPage &page, const QString &text);

} // namespace vardelin
