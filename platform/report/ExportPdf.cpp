#include "platform/report/ReportExport.h"

#include "platform/base/RunTimeError.h"
#include "platform/base/Twips.h"
#include "platform/report/PagePainter.h"
#include "platform/report/PdfBookmarks.h"

#include <QPainter>
#include <QPdfWriter>
#include <QPrinter>
#include <QTemporaryFile>

namespace vardelin {

namespace {

constexpr double kTwipsPerPoint = 20;
constexpr int kPrintingFailed = 482;
constexpr int kDiskFull = 61;
constexpr qint64 kCopied = 1 << 20; // bytes at a time

// The bookmarks that a page adds: where its records begin.
void addBookmarks(const ReportPage &page, const ReportSection *detail, int &lastRecord,
                  std::vector<PdfBookmark> &marks)
{
    for (const ReportItem &item : page.items) {
        if (item.isRule() || item.record <= lastRecord ||
            detail->controls[static_cast<std::size_t>(item.control)].kind != ReportControl::Kind::Text)
            continue;
        lastRecord = item.record;
        if (marks.empty() || marks.back().title != item.text)
            marks.push_back({item.text, page.number, (page.paper.height - item.top) / kTwipsPerPoint});
    }
}

void copyAll(QIODevice &from, QIODevice &to)
{
    from.seek(0);
    while (!from.atEnd()) {
        const QByteArray bytes = from.read(kCopied);
        if (to.write(bytes) != bytes.size())
            throw RunTimeError(kDiskFull);
    }
}

// The pages on a PDF; false where the progress said no.
bool paintPdf(ReportPages &pages, QIODevice &file, std::vector<PdfBookmark> &marks,
              const ReportProgress &progress)
{
    QPdfWriter writer(&file);
    writer.setTitle(pages.design().Caption);
    writer.setCreator(QStringLiteral("Vardelin"));
    writer.setResolution(kTwipsPerInch);
    writer.setPageSize(QPageSize(QSizeF(pages.paper().width, pages.paper().height) / kTwipsPerPoint,
                                 QPageSize::Point, {}, QPageSize::ExactMatch));
    writer.setPageMargins({});
    QPainter painter;
    if (!painter.begin(&writer))
        throw RunTimeError(RunTime::PathFileAccess);
    PagePainter drawn(1);
    int lastRecord = -1;
    if (!forEachPage(pages, progress, [&](const ReportPage &page) {
            if (page.number > 1 && !writer.newPage())
                throw RunTimeError(kDiskFull);
            drawn.paint(painter, page);
            addBookmarks(page, pages.design().section(ReportSection::Kind::Detail), lastRecord, marks);
        }))
        return false;
    return painter.end();
}

} // namespace

bool writePdf(ReportPages &pages, QIODevice &device, const ReportProgress &progress)
{
    QTemporaryFile file; // the outline is put behind what stands in it
    if (!file.open())
        throw RunTimeError(RunTime::PathFileAccess);
    std::vector<PdfBookmark> marks;
    if (!paintPdf(pages, file, marks, progress))
        return false;
    if (file.error() != QFileDevice::NoError || !file.open())
        throw RunTimeError(kDiskFull);
    const QByteArray outline = bookmarkUpdate(file, marks);
    copyAll(file, device);
    if (device.write(outline) != outline.size())
        throw RunTimeError(kDiskFull);
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
    const bool ranged = printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0;
    const int first = ranged ? printer.fromPage() : 1;
    const int last = ranged ? std::min(printer.toPage(), pages.count()) : pages.count();
    const bool backwards = printer.pageOrder() == QPrinter::LastPageFirst;
    const int copies = printer.supportsMultipleCopies() ? 1 : printer.copyCount();
    QPainter painter;
    if (last < first || !painter.begin(&printer))
        throw RunTimeError(kPrintingFailed);
    PagePainter drawn(static_cast<double>(printer.resolution()) / kTwipsPerInch);
    const int pageCount = last - first + 1, all = copies * pageCount;
    for (int i = 0; i < all; ++i) {
        const int place = i % pageCount;
        if (i > 0 && !printer.newPage())
            throw RunTimeError(kPrintingFailed);
        drawn.paint(painter, pages.page(backwards ? last - place : first + place));
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
