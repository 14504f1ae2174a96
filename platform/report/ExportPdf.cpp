#include "platform/report/ReportExport.h"

#include "platform/base/RunTimeError.h"
#include "platform/base/Twips.h"
#include "platform/report/PagePainter.h"
#include "platform/report/PdfFile.h"
#include "platform/report/PdfFont.h"
#include "platform/report/ReportFonts.h"

#include <QGlyphRun>
#include <QPageRanges>
#include <QPainter>
#include <QPrintEngine>
#include <QPrinter>
#include <QTextLayout>

#include <algorithm>
#include <numeric>

namespace vardelin {

namespace {

constexpr double kTwipsPerPoint = 20;
constexpr int kPrintingFailed = 482;
constexpr int kRuleTwips = 10;
constexpr int kShaped = 2048; // pixels: texts are shaped this large, so that nothing is rounded
constexpr double kUnbroken = 1e7;
constexpr char16_t kFirstShaped = 0x300; // from here on characters don't stand for themselves
constexpr double kThickening = 0.03;     // of the size: how thick the outlines of what isn't bold itself are

// Pages as content of a PDF, and the faces that they use. Lengths in the content are twips.
class PdfPages
{
public:
    explicit PdfPages(PdfFile &file) : m_file(file) {}

    void add(const ReportPage &page)
    {
        m_height = page.paper.height;
        m_texts.clear();
        m_rules.clear();
        m_font.clear();
        m_x = m_y = 0;
        for (const ReportItem &item : page.items) {
            if (item.isRule())
                addRule(item);
            else
                addText(item);
        }
        const QSizeF paper(page.paper.width, page.paper.height);
        m_file.addPage(paper / kTwipsPerPoint,
                       "0.05 0 0 0.05 0 0 cm\n" + m_rules + "BT\n" + m_texts + "ET\n");
    }
    // The dictionary of the pages' resources.
    QByteArray writeFonts()
    {
        QByteArray fonts;
        for (const auto &[asked, font] : m_faces)
            fonts += font->write(m_file);
        return "<</ProcSet[/PDF/Text]/Font<<" + fonts + ">>>>";
    }

private:
    using Face = std::pair<ReportFont, std::unique_ptr<PdfFont>>; // the size is of no account

    void addRule(const ReportItem &rule)
    {
        const bool across = rule.width >= rule.height;
        const double width = across ? rule.width : kRuleTwips, height = across ? kRuleTwips : rule.height;
        for (const double number : {rule.left, m_height - rule.top - height, width, height})
            m_rules += pdfNumber(number) + ' ';
        m_rules += "re f\n";
    }

    PdfFont &madeFont(const ReportFont &asked, const QRawFont &raw)
    {
        const QByteArray name = 'F' + QByteArray::number(static_cast<qulonglong>(m_faces.size() + 1));
        return *m_faces.emplace_back(asked, std::make_unique<PdfFont>(raw, name, asked.Bold)).second;
    }
    PdfFont &font(const ReportFont &asked)
    {
        for (const auto &[known, font] : m_faces)
            if (known.Bold == asked.Bold && known.Name == asked.Name)
                return *font;
        return madeFont(asked, QRawFont::fromFont(outlineFont(asked, kShaped)));
    }
    // Of a part of a text that another face than its own has the characters for.
    PdfFont &fontOf(const QRawFont &raw, bool bold)
    {
        for (const auto &[known, font] : m_faces)
            if (known.Bold == bold && font->face().familyName() == raw.familyName() &&
                font->face().styleName() == raw.styleName())
                return *font;
        return madeFont({u'\n' + raw.familyName() + raw.styleName(), 0, bold}, raw);
    }

    void moveTo(double x, double y)
    {
        const int toX = qRound(x), toY = qRound(y);
        m_texts += QByteArray::number(toX - m_x) + ' ' + QByteArray::number(toY - m_y) + " Td";
        m_x = toX;
        m_y = toY;
    }
    void setFont(const PdfFont &font, quint32 glyph, double size)
    {
        const QByteArray points = pdfNumber(size * kTwipsPerPoint);
        QByteArray words = '/' + font.nameFor(glyph) + ' ' + points + " Tf ";
        if (font.isThickened())
            words += pdfNumber(size * kTwipsPerPoint * kThickening) + " w 2 Tr ";
        else if (m_font.endsWith("2 Tr "))
            words += "0 Tr ";
        if (words != m_font)
            m_texts += words;
        m_font = words;
    }

    void addText(const ReportItem &item)
    {
        PdfFont &own = font(item.font);
        if (!own.isTrueType())
            return addShaped(item);
        m_glyphs.clear();
        for (const QChar letter : item.text) {
            const quint32 glyph = letter.unicode() < kFirstShaped ? own.glyphOf(letter) : 0;
            if (glyph == 0)
                return addShaped(item);
            own.append(m_glyphs, glyph);
        }
        setFont(own, 0, item.font.Size);
        moveTo(item.left, m_height - item.top - item.baseline);
        m_texts += '(' + m_glyphs + ")Tj\n";
    }

    // Glyph by glyph; under the text that they make together, where they can't tell it each for itself.
    void addShaped(const ReportItem &item)
    {
        QTextLayout layout(item.text, outlineFont(item.font, kShaped));
        layout.beginLayout();
        QTextLine line = layout.createLine();
        line.setLineWidth(kUnbroken);
        layout.endLayout();
        bool told = std::ranges::none_of(item.text, [](QChar letter) { return letter.isMark(); });
        for (const QGlyphRun &run : layout.glyphRuns()) {
            PdfFont &font = fontOf(run.rawFont(), item.font.Bold);
            for (const QChar letter : item.text)
                if (!letter.isSurrogate())
                    font.glyphOf(letter);
            for (const quint32 glyph : run.glyphIndexes())
                told = font.tells(glyph) && told;
        }
        if (!told)
            m_texts += "/Span<</ActualText" + pdfText(item.text) + ">>BDC\n";
        for (const QGlyphRun &run : layout.glyphRuns())
            addRun(run, item, line.ascent());
        if (!told)
            m_texts += "EMC\n";
    }
    void addRun(const QGlyphRun &run, const ReportItem &item, double base)
    {
        const double unit = item.font.Size * kTwipsPerPoint / kShaped;
        PdfFont &font = fontOf(run.rawFont(), item.font.Bold);
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> places = run.positions();
        std::vector<qsizetype> order(static_cast<std::size_t>(glyphs.size())); // from the left, as it is read
        std::iota(order.begin(), order.end(), 0);
        std::ranges::stable_sort(order, {}, [&](qsizetype i) { return places[i].x(); });
        for (const qsizetype i : order) {
            setFont(font, glyphs[i], item.font.Size);
            moveTo(item.left + places[i].x() * unit,
                   m_height - item.top - item.baseline - (places[i].y() - base) * unit);
            m_glyphs.clear();
            font.append(m_glyphs, glyphs[i]);
            m_texts += '(' + m_glyphs + ")Tj\n";
        }
    }

    PdfFile &m_file;
    std::vector<Face> m_faces;
    double m_height = 0;         // of the page
    QByteArray m_texts, m_rules; // its content
    QByteArray m_font;           // the words that set it
    int m_x = 0, m_y = 0;        // where the text before began
    QByteArray m_glyphs;         // of a text
};

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
    PdfFile file(device);
    PdfPages written(file);
    std::vector<PdfBookmark> marks;
    int lastRecord = -1;
    if (!forEachPage(pages, progress, [&](const ReportPage &page) {
            written.add(page);
            addBookmarks(page, pages.design().section(ReportSection::Kind::Detail), lastRecord, marks);
        }))
        return false;
    file.finish(written.writeFonts(), pages.design().Caption, marks);
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
