#include "display/PrintRichText.h"

#include "platform/base/Twips.h"
#include "platform/print/Printer.h"
#include "platform/ui/BusyPointer.h"
#include "platform/ui/PictureObject.h"
#include "platform/ui/WordWrap.h"

#include <QAbstractTextDocumentLayout>
#include <QImage>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <vector>

namespace vardelin {

namespace {

constexpr int kPixelsPerInch = kTwipsPerInch / kTwipsPerPixel;
constexpr double kMetresPerInch = 0.0254;
constexpr qreal kHairBreadth = 0.1; // pixels

// A screen of 96 dots an inch, whatever the real one has: the unit of lengths in rich text.
QImage standardScreen()
{
    QImage screen(1, 1, QImage::Format_Mono);
    screen.setDotsPerMeterX(qRound(kPixelsPerInch / kMetresPerInch));
    screen.setDotsPerMeterY(qRound(kPixelsPerInch / kMetresPerInch));
    return screen;
}

struct Page
{
    qreal from = 0; // where the document's drawing begins
    QTextLine line; // to be drawn by itself above that
    QPointF linePosition;
};

// Qt draws one line of a paragraph more than it is asked for, above the rest; on paper the clipping hides it,
// but in a PDF its text would be there twice. So a page that goes on with a paragraph is asked for from just
// below that one's next line, and where it is the last one, and the paragraph would be passed over, it is
// drawn by itself.
void passOverLinesAbove(std::vector<Page> &pages, const QTextDocument &document, const QTextBlock &block)
{
    const QTextLayout &lines = *block.layout();
    const qreal height = document.pageSize().height();
    std::size_t last = pages.size();
    for (int i = 0; i < lines.lineCount(); ++i) {
        const QTextLine line = lines.lineAt(i);
        const QRectF place = line.rect().translated(lines.position());
        const auto page = std::size_t(std::max(place.center().y(), 0.0) / height);
        if (page > last && page < pages.size()) {
            pages[page].from = place.bottom() + kHairBreadth;
            if (i == lines.lineCount() - 1) {
                pages[page].line = line;
                pages[page].linePosition = lines.position();
            }
        }
        last = page;
    }
}

std::vector<Page> pagesOf(const QTextDocument &document)
{
    std::vector<Page> pages(std::size_t(document.pageCount())); // one at least
    for (std::size_t page = 0; page < pages.size(); ++page)
        pages[page].from = qreal(page) * document.pageSize().height();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        if (QTextCursor(block).currentFrame() == document.rootFrame())
            passOverLinesAbove(pages, document, block);
    return pages;
}

void drawPage(QPainter &painter, const QTextDocument &document, std::size_t number, const Page &page,
              QPointF corner)
{
    const QSizeF size = document.pageSize();
    const QRectF shown(0, qreal(number) * size.height(), size.width(), size.height());
    QAbstractTextDocumentLayout::PaintContext context;
    context.clip = shown;
    context.clip.setTop(page.from);
    context.clip.setBottom(shown.bottom() - 1);          // short of the next page's first line
    context.palette.setColor(QPalette::Text, Qt::black); // not the desktop's, which may be white
    painter.save();
    painter.translate(corner);
    painter.scale(kTwipsPerPixel, kTwipsPerPixel);
    painter.translate(0, -shown.top());
    painter.setClipRect(shown);
    painter.setPen(Qt::black);
    if (page.line.isValid())
        page.line.draw(&painter, page.linePosition);
    document.documentLayout()->draw(&painter, context);
    painter.restore();
}

} // namespace

void PrintRichText(Printer &printer, const QTextDocument &text, int left, int top, int right, int bottom)
{
    const BusyPointer busy;
    printer.SetScaleMode(PrintScale::Twips);
    const QSizeF room(printer.Width() - left - right, printer.Height() - top - bottom);

    const std::unique_ptr<QTextDocument> document(text.clone());
    QTextOption option = document->defaultTextOption();
    option.setWrapMode(wrapModeFor(*document));
    document->setDefaultTextOption(option);
    document->setUseDesignMetrics(true);
    document->setDocumentMargin(0);
    PictureObject::install(*document);
    QImage screen = standardScreen();
    document->documentLayout()->setPaintDevice(&screen);
    document->setPageSize(room / kTwipsPerPixel);

    try {
        const std::vector<Page> pages = pagesOf(*document);
        for (std::size_t number = 0; number < pages.size(); ++number) {
            if (number > 0)
                printer.NewPage();
            drawPage(printer.hDC(), *document, number, pages[number], QPointF(left, top));
        }
        printer.EndDoc();
    } catch (...) {
        printer.KillDoc();
        throw;
    }
}

} // namespace vardelin
