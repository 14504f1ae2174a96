#include "platform/report/ReportExport.h"

#include "platform/base/RunTimeError.h"
#include "platform/base/Twips.h"
#include "platform/report/PagePainter.h"
#include "platform/report/PdfPages.h"

#include <QPageRanges>
#include <QPainter>
#include <QPrintEngine>
#include <QPrinter>

#include <algorithm>

namespace vardelin {

namespace {

constexpr double kTwipsPerPoint = 20;
constexpr int kPrintingFailed = 482;

// The bookmarks that a page adds: where its records begin.
void addBookmarks(const ReportPage &page, const ReportSection *detail, int &lastRecord, QString &lastTitle,
                  PdfPages &file)
{
    for (const ReportItem &item : page.items) {
        if (item.isRule() || item.record <= lastRecord ||
            detail->controls[static_cast<std::size_t>(item.control)].kind != ReportControl::Kind::Text)
            continue;
        lastRecord = item.record;
        if (lastTitle != item.text)
            file.addBookmark(item.text, page.number, item.top);
        lastTitle = item.text;
    }
}

// The pages that a printer is asked for.
std::vector<int> pagesFor(const QPrinter &printer, int count)
{
    const QPageRanges ranges =
        printer.printRange() == QPrinter::PageRange ? printer.pageRanges() : QPageRanges();
    std::vector<int> numbers;
    for (int number = 1; number <= count; ++number)
        if (ranges.isEmpty() || ranges.contains(number))
            numbers.push_back(number);
    if (printer.pageOrder() == QPrinter::LastPageFirst)
        std::ranges::reverse(numbers);
    return numbers;
}

// Qt's print dialog also hands a list of pages on to CUPS, which would pick anew among those that are left.
void keepRangeFromCups(QPrinter &printer)
{
    constexpr auto cupsOptions = QPrintEngine::PrintEnginePropertyKey(0xfe00); // names and values by turns
    QStringList options = printer.printEngine()->property(cupsOptions).toStringList();
    const qsizetype at = options.indexOf(QStringLiteral("page-ranges"));
    if (at < 0 || at + 1 >= options.size())
        return;
    options.remove(at, 2);
    printer.printEngine()->setProperty(cupsOptions, options);
}

} // namespace

bool writePdf(ReportPages &pages, QIODevice &device, const ReportProgress &progress)
{
    PdfPages file(device, pages.design().Caption);
    QString lastTitle;
    int lastRecord = -1;
    if (!forEachPage(pages, progress, [&](const ReportPage &page) {
            file.add(page);
            addBookmarks(page, pages.design().section(ReportSection::Kind::Detail), lastRecord, lastTitle,
                         file);
        }))
        return false;
    file.finish();
    return true;
}

Paper paperOf(const QPrinter &printer)
{
    const QSizeF points = printer.pageLayout().fullRectPoints().size();
    return {qRound(points.width() * kTwipsPerPoint), qRound(points.height() * kTwipsPerPoint)};
}

bool printReport(ReportPages &pages, QPrinter &printer, const ReportProgress &progress)
{
    printer.setDocName(pages.design().Caption);
    printer.setFullPage(true);
    const std::vector<int> numbers = pagesFor(printer, pages.count());
    keepRangeFromCups(printer);
    const int copies = printer.supportsMultipleCopies() ? 1 : printer.copyCount();
    QPainter painter;
    if (numbers.empty() || !painter.begin(&printer))
        throw RunTimeError(kPrintingFailed);
    PagePainter drawn(static_cast<double>(printer.resolution()) / kTwipsPerInch);
    const int pageCount = static_cast<int>(numbers.size()), all = copies * pageCount;
    for (int i = 0; i < all; ++i) {
        if (i > 0 && !printer.newPage())
            throw RunTimeError(kPrintingFailed);
        drawn.paint(painter, pages.page(numbers[static_cast<std::size_t>(i % pageCount)]));
        if (!progress(i + 1, all)) {
            printer.abort();
            return false;
        }
    }
    if (!painter.end())
        throw RunTimeError(kPrintingFailed);
    return true;
}

} // namespace vardelin
