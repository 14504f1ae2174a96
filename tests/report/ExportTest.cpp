#include "Reports.h"

#include "platform/base/RunTimeError.h"
#include "platform/report/PagePainter.h"
#include "platform/report/ReportExport.h"
#include "tests/support/Judges.h"

#include <QBuffer>
#include <QImage>
#include <QPageRanges>
#include <QPainter>
#include <QPrinter>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {
namespace {

bool goOn(int, int)
{
    return true;
}

constexpr double kPoint = 0.5; // that places may differ by
struct Word
{
    QString text;
    double top, left, right; // points
    bool operator<(const Word &other) const
    {
        return std::tie(text, top, left) < std::tie(other.text, other.top, other.left);
    }
};

// Forty short notes, one of them over more than a page.
std::vector<std::pair<QString, QString>> fortyNotes()
{
    std::vector<std::pair<QString, QString>> rows;
    for (int i = 1; i <= 40; ++i)
        rows.emplace_back(u"Ærø & Søn %1"_s.arg(i), u"He said: \"%1, <b>2\"\rthat is all"_s.arg(i));
    rows[19].second = QString(3000, u'w').replace(7, 1, u" "_s);
    return rows;
}

ReportDesign wideNames()
{
    ReportDesign design = noteDesign();
    design.Sections(u"Section1"_s).Controls(u"Text1"_s).box.width = 2300;
    return design;
}

// Pixels with ink where the other picture has none within a pixel.
int strayInk(const QImage &image, const QImage &other)
{
    int stray = 0;
    for (int y = 1; y < image.height() - 1; ++y)
        for (int x = 1; x < image.width() - 1; ++x) {
            bool near = qGray(image.pixel(x, y)) > 96;
            for (int i = 0; i < 9 && !near; ++i)
                near = qGray(other.pixel(x + i % 3 - 1, y + i / 3 - 1)) < 224;
            stray += !near;
        }
    return stray;
}

class ExportTest : public testing::Test
{
protected:
    QByteArray written(ReportWriter writer)
    {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        EXPECT_TRUE(writer(pages, buffer, goOn));
        return buffer.data();
    }
    QString path(const QString &name) const { return folder.filePath(name); }
    void expectScriptsIn(const QString &fontName);

    QTemporaryDir folder;
    const ReportDesign design = wideNames();
    const FaceMeasurer measurer;
    const ListedRecords records = notes(fortyNotes());
    ReportPages pages{design, records, measurer};
};

// The words of the file and their places, by another program's reading, are those of the pages.
TEST_F(ExportTest, PdfHasTheWordsOfThePagesInTheirPlaces)
{
    if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
        GTEST_SKIP() << "pdftotext (poppler-utils) is not installed: the PDF was not read back";
    const QString pdf = path(u"notes.pdf"_s);
    ASSERT_TRUE(exportReport(pages, pdf, writePdf, goOn));
    const QString read = outputOf(u"pdftotext"_s, {u"-bbox"_s, pdf, u"-"_s});
    static const QRegularExpression word(
        u"<word xMin=\"([^\"]+)\" yMin=\"([^\"]+)\" xMax=\"([^\"]+)\" yMax=\"[^\"]+\">([^<]*)</word>"_s);
    const QStringList sheets = read.split(u"<page "_s).mid(1);
    ASSERT_EQ(sheets.size(), pages.count());
    ASSERT_GT(pages.count(), 3);
    int compared = 0;
    for (int number = 1; number <= pages.count(); ++number) {
        EXPECT_TRUE(sheets[number - 1].startsWith(u"width=\"612.000000\" height=\"792.000000\""_s));
        std::vector<Word> there, expected;
        for (auto found = word.globalMatch(sheets[number - 1]); found.hasNext();) {
            const auto match = found.next();
            QString text = match.captured(4);
            text.replace(u"&lt;"_s, u"<"_s).replace(u"&gt;"_s, u">"_s).replace(u"&quot;"_s, u"\""_s);
            there.push_back({text.replace(u"&amp;"_s, u"&"_s), match.captured(2).toDouble(),
                             match.captured(1).toDouble(), match.captured(3).toDouble()});
        }
        for (const ReportItem &item : pages.page(number).items) {
            qsizetype from = 0;
            for (const QString &part : item.text.split(u' ')) {
                const double left = item.left + measurer.width(item.font, QStringView(item.text).left(from));
                if (!part.isEmpty())
                    expected.push_back(
                        {part, item.top / 20, left / 20, (left + measurer.width(item.font, part)) / 20});
                from += part.size() + 1;
            }
        }
        std::sort(there.begin(), there.end());
        std::sort(expected.begin(), expected.end());
        ASSERT_EQ(there.size(), expected.size()) << number;
        for (std::size_t i = 0; i < there.size(); ++i, ++compared) {
            EXPECT_EQ(there[i].text, expected[i].text);
            EXPECT_NEAR(there[i].top, expected[i].top, kPoint) << there[i].text.toStdString();
            EXPECT_NEAR(there[i].left, expected[i].left, kPoint) << there[i].text.toStdString();
            EXPECT_NEAR(there[i].right, expected[i].right, kPoint) << there[i].text.toStdString();
        }
    }
    EXPECT_GT(compared, 400);

    EXPECT_TRUE(outputOf(u"pdfinfo"_s, {pdf}).contains(QRegularExpression(u"Title: +All notes\n"_s)));
    const QString outline =
        outputOf(u"pdftohtml"_s, {u"-xml"_s, u"-i"_s, u"-stdout"_s, pdf}).section(u"<outline>"_s, 1);
    EXPECT_EQ(outline.count(u"<item "_s), 40) << outline.toStdString();
    EXPECT_TRUE(outline.contains(u"<item page=\"1\">Ærø &amp; Søn 1</item>"_s)) << outline.toStdString();
    EXPECT_TRUE(outline.contains(u"<item page=\"%1\">Ærø &amp; Søn 40</item>"_s.arg(pages.count())));
}

// Scripts that are shaped or come from other faces.
void ExportTest::expectScriptsIn(const QString &fontName)
{
    const QStringList texts{u"Юлия, Анна"_s,       u"Ελένη (α) \\ β"_s, u"naïve (a\\b) façade"_s,
                            u"e\u0301a\u0301"_s,   u"見積書"_s,         u"שלום"_s,
                            u"č\u030d žluťoučký"_s};
    std::vector<std::pair<QString, QString>> rows;
    for (const QString &text : texts)
        rows.emplace_back(u"-"_s, text);
    const ListedRecords scripts = notes(rows);
    ReportDesign set = design;
    set.Sections(u"Section1"_s).setFont(fontName, 10);
    ReportPages sheets(set, scripts, measurer);
    const QString pdf = path(u"scripts.pdf"_s);
    ASSERT_TRUE(exportReport(sheets, pdf, writePdf, goOn));
    const QString read = outputOf(u"pdftotext"_s, {pdf, u"-"_s});
    for (const QString &text : texts)
        EXPECT_TRUE(read.contains(text)) << text.toStdString() << " in " << read.toStdString();
    for (const QString &line : outputOf(u"pdffonts"_s, {pdf}).split(u'\n', Qt::SkipEmptyParts).mid(2))
        EXPECT_TRUE(line.contains(QRegularExpression(u" yes yes yes "_s))) << line.toStdString();

    // As the window draws it: what either has ink for, the other has within a pixel.
    outputOf(u"pdftoppm"_s, {u"-r"_s, u"72"_s, u"-gray"_s, u"-singlefile"_s, pdf, path(u"page"_s)});
    const QImage there = QImage(path(u"page.pgm"_s)).convertToFormat(QImage::Format_Grayscale8);
    QImage here(612, 792, QImage::Format_Grayscale8);
    here.fill(Qt::white);
    QPainter painter(&here);
    PagePainter(0.05).paint(painter, sheets.page(1));
    painter.end();
    ASSERT_EQ(there.size(), here.size());
    EXPECT_LE(strayInk(here, there), 3);
    EXPECT_LE(strayInk(there, here), 3);
}

// A face of the one kind of outlines, and one of another where it is installed.
TEST_F(ExportTest, PdfKeepsTheTextAndTheLookOfEveryScript)
{
    if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
        GTEST_SKIP() << "pdftotext (poppler-utils) is not installed: the PDF was not read back";
    expectScriptsIn(u"Arial"_s);
    expectScriptsIn(u"URW Bookman"_s);
}

// Codes that are no characters, halves of pairs and control characters cost nobody the file.
TEST_F(ExportTest, PdfTakesTextsThatAreNone)
{
    if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
        GTEST_SKIP() << "pdftotext (poppler-utils) is not installed: the PDF was not read back";
    QString odd = u"ahead \uFDD0\uFFFE\x01\u0007 "_s + QChar(u'\0') + QChar(0xD800) + u" behind"_s;
    const ListedRecords strange = notes({{odd, odd}, {u"next"_s, u"note"_s}});
    ReportDesign titled = design;
    titled.Caption = odd;
    ReportPages sheets(titled, strange, measurer);
    const QString pdf = path(u"odd.pdf"_s);
    ASSERT_TRUE(exportReport(sheets, pdf, writePdf, goOn));
    const QString read = outputOf(u"pdftotext"_s, {pdf, u"-"_s});
    for (const QString &text : {u"ahead"_s, u"behind"_s, u"next"_s})
        EXPECT_TRUE(read.contains(text)) << read.toStdString();
}

TEST_F(ExportTest, TextWebPageAndTable)
{
    const QString text = QString::fromUtf8(written(writeText));
    EXPECT_TRUE(text.startsWith(u"Notes\n\nName\n"_s)) << text.left(80).toStdString();
    EXPECT_TRUE(
        text.contains(u"Ærø & Søn 7         He said: \"7, <b>2\"\n                    that is all\n"_s))
        << text.left(400).toStdString();
    EXPECT_EQ(text.count(u'\f'), pages.count());
    EXPECT_TRUE(text.contains(u"60.0 hours\n"_s));

    const QString html = QString::fromUtf8(written(writeHtml));
    EXPECT_TRUE(html.contains(u"<title>All notes</title>"_s));
    EXPECT_TRUE(html.contains(u">He said: &quot;7, &lt;b&gt;2&quot;\nthat is all</p>"_s));
    EXPECT_EQ(html.count(u"<section class=\"page\""_s), pages.count());
    EXPECT_FALSE(html.contains(QRegularExpression(u"(src|href|url)"_s)));

    const QByteArray bytes = written(writeCsv);
    EXPECT_TRUE(bytes.startsWith("\xEF\xBB\xBF"));
    const QString table = QString::fromUtf8(bytes); // without the mark
    EXPECT_TRUE(table.startsWith(u"Name,Note,Hours\r\n"_s +
                                 u"Ærø & Søn 1,\"He said: \"\"1, <b>2\"\"\rthat is all\",1.5\r\n"_s))
        << table.left(100).toStdString();
    EXPECT_EQ(table.count(u"\r\n"_s), 41);
}

TEST_F(ExportTest, CancelAndFailureLeaveTheOldFile)
{
    const QString file = path(u"old.txt"_s);
    const auto content = [&] {
        QFile old(file);
        return old.open(QIODevice::ReadOnly) ? old.readAll() : QByteArray();
    };
    QFile old(file);
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    for (const ReportWriter writer : {writePdf, writeHtml, writeText, writeCsv}) {
        EXPECT_FALSE(
            exportReport(pages, file, writer, [](int done, int of) { return done < std::min(2, of); }));
        EXPECT_EQ(content(), "old");
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 1);
    EXPECT_THROW(exportReport(pages, path(u"no/where.txt"_s), writeText, goOn), RunTimeError);
    QFile full(u"/dev/full"_s);
    ASSERT_TRUE(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    EXPECT_THROW(writeText(pages, full, goOn), RunTimeError);
}

TEST_F(ExportTest, PrintsTheRangeOnThePrintersPaper)
{
    if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
        GTEST_SKIP() << "pdftotext (poppler-utils) is not installed: the print was not read back";
    const QString pdf = path(u"print.pdf"_s);
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(pdf);
    printer.setPageSize(QPageSize(QPageSize::A4));
    printer.setFromTo(2, 3);
    printer.setPrintRange(QPrinter::PageRange);
    ReportPages onA4(design, records, measurer, paperOf(printer));
    EXPECT_EQ(onA4.paper(), (Paper{11900, 16840})); // whole points
    ASSERT_TRUE(printReport(onA4, printer, goOn));
    const QString read = outputOf(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s});
    EXPECT_TRUE(read.contains(u"Page 2 of %1"_s.arg(onA4.count())));
    EXPECT_TRUE(read.contains(u"Page 3 of %1"_s.arg(onA4.count())));
    EXPECT_EQ(read.count(u"Page "_s), 2);

    printer.setPageRanges(QPageRanges::fromString(u"1,3"_s));
    printer.setPageOrder(QPrinter::LastPageFirst);
    ASSERT_TRUE(printReport(onA4, printer, goOn));
    const QString picked = outputOf(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s});
    EXPECT_EQ(picked.count(u"Page "_s), 2);
    EXPECT_LT(picked.indexOf(u"Page 3 of"_s), picked.indexOf(u"Page 1 of"_s));
}

} // namespace
} // namespace vardelin::testing_support
