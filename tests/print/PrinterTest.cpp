// Pages as the commands print them: on a printer that notes down, and as real PDF read back by poppler's
// tools.
#include "platform/print/Printer.h"
#include "tests/support/Judges.h"
#include "tests/support/PrintQt.h"
#include "tests/support/RecordingPrintDevice.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace vardelin;
using namespace vardelin::testing_support;
using namespace Qt::StringLiterals;

namespace {

int numberOf(const std::function<void()> &statement)
{
    try {
        statement();
    } catch (const RunTimeError &error) {
        return error.number();
    }
    return 0;
}

void useInches(Printer &printer)
{
    printer.SetScaleMode(PrintScale::Inches);
    printer.SetFontName(u"Liberation Serif"_s);
    printer.SetFontSize(12);
}

} // namespace

TEST(Printer, KeepsItsPlaceInEitherScale)
{
    RecordingPrintDevice paper;
    Printer printer(paper);
    useInches(printer);
    EXPECT_DOUBLE_EQ(printer.ScaleWidth(), 8.5);
    EXPECT_DOUBLE_EQ(printer.Width(), 12240);
    EXPECT_DOUBLE_EQ(printer.Height(), 15840);

    printer.SetCurrentX(2);
    printer.SetCurrentY(1.5);
    printer.SetScaleMode(PrintScale::Twips);
    EXPECT_DOUBLE_EQ(printer.CurrentX(), 2880);
    EXPECT_DOUBLE_EQ(printer.ScaleHeight(), 15840);
    const double line = printer.TextHeight(u"x"_s);
    EXPECT_NEAR(line, 12 * 20 * 1.107, 1); // ascent and descent of the face
    EXPECT_DOUBLE_EQ(printer.TextHeight(u"x\r\ny\rz"_s), 3 * line);
    EXPECT_DOUBLE_EQ(printer.TextWidth(u"wide line\r\nx"_s), printer.TextWidth(u"wide line"_s));
    EXPECT_DOUBLE_EQ(printer.TextHeight({}), line);

    printer.Print(u"first\r\nsecond"_s);
    EXPECT_DOUBLE_EQ(printer.CurrentX(), 0);
    EXPECT_DOUBLE_EQ(printer.CurrentY(), 1.5 * 1440 + 2 * line);
    printer.Line(1440, 2880, 2880, 2880);
    EXPECT_DOUBLE_EQ(printer.CurrentX(), 2880);
    printer.EndDoc();
    EXPECT_EQ(paper.lines(), (QStringList{u"1  2.00  1.50 Liberation Serif 12: first"_s,
                                          u"1  2.00  1.68 Liberation Serif 12: second"_s,
                                          u"1  1.00  2.00 line, 1.00 x 0.00"_s}));
}

TEST(Printer, ShrinksNoFurtherThanTheSmallestSize)
{
    RecordingPrintDevice paper;
    Printer printer(paper);
    printer.SetFontSize(-3);
    EXPECT_DOUBLE_EQ(printer.FontSize(), Printer::kSmallestFontSize);
    EXPECT_GT(printer.TextWidth(u"x"_s), 0);
    EXPECT_EQ(numberOf([&] { printer.SetFontSize(1e9); }), 380);
    EXPECT_EQ(numberOf([&] { printer.SetFontSize(qQNaN()); }), 380);
    EXPECT_DOUBLE_EQ(printer.FontSize(), Printer::kSmallestFontSize);
}

TEST(Printer, CountsPagesAndPrintsNoneThatIsOnlyBegun)
{
    RecordingPrintDevice paper;
    Printer printer(paper);
    printer.EndDoc();
    EXPECT_EQ(paper.printed, 0); // nothing was printed

    printer.Print(u"one"_s);
    printer.NewPage();
    printer.NewPage();
    EXPECT_EQ(printer.Page(), 3);
    EXPECT_DOUBLE_EQ(printer.CurrentY(), 0);
    printer.Print(u"three"_s);
    printer.NewPage();
    printer.EndDoc();
    EXPECT_EQ(paper.pages, 3);
    EXPECT_EQ(paper.texts(3), QStringList{u"three"_s});
    EXPECT_EQ(printer.Page(), 1);

    printer.Print(u"dropped"_s);
    printer.KillDoc();
    printer.EndDoc();
    EXPECT_EQ(paper.printed, 1);
    EXPECT_EQ(paper.dropped, 1);
}

TEST(Printer, SaysThatThereIsNone)
{
    RecordingPrintDevice paper;
    paper.present = false;
    Printer printer(paper);
    EXPECT_EQ(numberOf([&] { printer.Print(u"x"_s); }), 484);
    EXPECT_EQ(numberOf([&] { printer.ScaleWidth(); }), 484);
    EXPECT_EQ(numberOf([&] { printer.EndDoc(); }), 0);
    paper.present = true;
    printer.Print(u"found again"_s);
    printer.EndDoc();
    EXPECT_EQ(paper.printed, 1);
}

// What a page's words are and where they stand, in inches, as poppler reads it.
TEST(Printer, WritesPdfWithItsTextInPlace)
{
    QTemporaryDir folder;
    const QString file = folder.filePath(u"page.pdf"_s);
    const auto pdf = pdfPrintDevice(file);
    Printer printer(*pdf);
    useInches(printer);
    printer.SetCurrentX(1);
    printer.SetCurrentY(2);
    const double width = printer.TextWidth(u"Zażółć"_s);
    printer.Print(u"Zażółć"_s);
    printer.NewPage();
    printer.SetFontSize(24);
    printer.SetCurrentX(6.5);
    printer.SetCurrentY(10);
    printer.Print(u"last"_s);
    printer.EndDoc();

    const QString boxes = outputOf(u"pdftotext"_s, {u"-bbox"_s, file, u"-"_s});
    static const QRegularExpression word(
        u"<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\" xMax=\"([\\d.]+)\" yMax=\"([\\d.]+)\">(.*)</word>"_s);
    auto found = word.globalMatch(boxes);
    ASSERT_TRUE(found.hasNext()) << boxes.toStdString();
    auto first = found.next();
    EXPECT_EQ(first.captured(5), u"Zażółć"_s);
    EXPECT_NEAR(first.captured(1).toDouble() / 72, 1, 0.01);
    EXPECT_NEAR(first.captured(2).toDouble() / 72, 2, 0.01);
    EXPECT_NEAR((first.captured(3).toDouble() - first.captured(1).toDouble()) / 72, width, 0.01);
    ASSERT_TRUE(found.hasNext()) << boxes.toStdString();
    first = found.next();
    EXPECT_EQ(first.captured(5), u"last"_s);
    EXPECT_NEAR(first.captured(1).toDouble() / 72, 6.5, 0.01);
    EXPECT_NEAR(first.captured(2).toDouble() / 72, 10, 0.02);
    EXPECT_EQ(boxes.count(u"<page width=\"612"_s), 2) << boxes.toStdString();

    printer.Print(u"never seen"_s);
    printer.KillDoc();
    EXPECT_FALSE(QFileInfo::exists(file));
}
