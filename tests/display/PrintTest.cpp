// A log on paper: its text, the two views, and rich text as real PDF.
#include "display/PrintRichText.h"
#include "display/PrintedLog.h"
#include "platform/print/PrintDevice.h"
#include "tests/display/DisplayWindows.h"

#include <QBuffer>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

namespace {

constexpr double kHundredth = 0.01;

QString pictureRtf(int goalTwips)
{
    QImage image(40, 40, QImage::Format_RGB32);
    image.fill(Qt::darkGreen);
    QByteArray png;
    QBuffer buffer(&png);
    image.save(&buffer, "PNG");
    return u"{\\pict\\pngblip\\picw40\\pich40\\picwgoal%1\\pichgoal%1 %2}"_s.arg(goalTwips).arg(
        QString::fromLatin1(png.toHex()));
}

// Everything that was printed stands within an inch of the paper's edges.
void expectMargins(const RecordingPrintDevice &paper)
{
    for (const PrintedPiece &piece : paper.pieces) {
        if (piece.text.trimmed().isEmpty() && piece.kind == PrintedPiece::Kind::Text)
            continue; // a blank at a line's end may stand in the margin
        EXPECT_GE(piece.x, 1 - kHundredth) << piece.text.toStdString();
        EXPECT_GE(piece.y, 1 - kHundredth) << piece.text.toStdString();
        EXPECT_LE(piece.y + piece.height, paper.inches.height() - 1 + kHundredth) << piece.text.toStdString();
    }
}

} // namespace

TEST(PrintedLog, LabelsWhatIsThere)
{
    const DateSerial begin{46311.375}, end{46311.625};
    PrintedLog log{.client = u"Archer, Ann"_s,
                   .project = u"Estate"_s,
                   .employee = u"Baxter, Bo"_s,
                   .rate = u"100"_s,
                   .summary = u"Call"_s,
                   .notes = u"One\r\nTwo"_s,
                   .begin = begin,
                   .end = end,
                   .duration = 6.5F,
                   .shownProject = u"Estate, as shown"_s};
    EXPECT_EQ(printedText(log), u"Client: Archer, Ann     Project: Estate, as shown     \r\n"
                                u"Employee (or user): Baxter, Bo     Rate: 100     \r\n"
                                u"Summary of Vardelin: Call\r\n"
                                u"Beginning: 10/16/2026 9:00:00 AM     Ending: 10/16/2026 3:00:00 PM     "
                                u"Duration: 6.5\r\n"
                                u"Vardelin Notes: \r\n"
                                u"One\r\nTwo"_s);

    log = {.client = NullValue(),
           .project = QString(),
           .employee = QString(),
           .rate = NullValue(),
           .summary = QString(),
           .notes = NullValue(),
           .begin = begin,
           .end = end,
           .duration = 0.0F,
           .shownProject = u"of no account"_s};
    const QString bare =
        u"\r\nEmployee (or user):      \r\n"
        u"Beginning: 10/16/2026 9:00:00 AM     Ending: 10/16/2026 3:00:00 PM     Duration: 0\r\n"
        u"Vardelin Notes: \r\n"_s;
    EXPECT_EQ(printedText(log), bare);

    log.notes = QString(32767 - bare.size(), u'x');
    EXPECT_EQ(printedText(log).size(), 32767);
    log.notes = QString(32768 - bare.size(), u'x');
    EXPECT_THROW(printedText(log), RunTimeError);
}

struct PrintTest : DisplayWindowsTest
{
    // A log with other notes than addLog() gives.
    void addLog(const QString &notes, const QString &graphic)
    {
        add(u"Vardelins"_s, {{u"Client"_s, u"Archer, Ann"_s},
                             {u"Vardelin"_s, notes},
                             {u"VardeGraphic"_s, graphic},
                             {u"Beginning Time"_s, DateSerial{46311.375}},
                             {u"Ending Time"_s, DateSerial{46311.5}},
                             {u"Duration"_s, 3.0F}});
    }
};

TEST_F(PrintTest, TextViewPrintsLabelsAndNotesWithinTheMargins)
{
    QString lines;
    for (int line = 1; line <= 80; ++line)
        lines +=
            u"Line %1 of notes that go on and on until they no longer fit on one line of paper.\r\n"_s.arg(
                line);
    addLog(lines, {});
    global.DefaultDisplayFont = {u"Liberation Serif"_s, u"15"_s};
    const auto window = open();
    const QString shown = notes(window.get(), 2)->Text();
    choose(window.get(), u"Toolbar1.Print"_s);
    EXPECT_EQ(paper.printed, 1);
    EXPECT_GT(paper.pages, 2);
    EXPECT_EQ(paper.texts(1).first(), u"Client: Archer, Ann     "_s);
    EXPECT_EQ(paper.texts(paper.pages).join(QString()).right(6), u"paper."_s);
    EXPECT_EQ(paper.texts().join(QString()).count(u"Line "_s), 80); // none twice
    EXPECT_EQ(paper.pieces.front().font, u"Liberation Serif"_s);
    EXPECT_DOUBLE_EQ(paper.pieces.front().points, 15);
    expectMargins(paper);
    for (int page = 1; page <= paper.pages; ++page) {
        const auto first = std::ranges::find(paper.pieces, page, &PrintedPiece::page);
        EXPECT_NEAR(first->x, 1, kHundredth) << page;
        EXPECT_NEAR(first->y, 1, kHundredth) << page;
    }
    EXPECT_EQ(notes(window.get(), 2)->Text(), shown); // the box keeps its text
}

TEST_F(PrintTest, GraphicsViewPrintsTheRichNotesAsTheyStand)
{
    addLog(u"plain"_s, u"{\\rtf1{\\fonttbl{\\f0 Arial;}}\\fs40 Large {\\b bold}\\par "_s + pictureRtf(1440) +
                           u"\\par "_s + pictureRtf(20000) + u"}"_s);
    const auto window = open();
    choose(window.get(), u"mnuGraphics"_s);
    choose(window.get(), u"mnuPrintVardelin"_s);
    EXPECT_EQ(paper.texts().join(QString()).trimmed(), u"Large bold"_s);
    EXPECT_DOUBLE_EQ(paper.pieces.front().points, 20);
    expectMargins(paper);
    std::vector<PrintedPiece> pictures;
    std::ranges::copy_if(paper.pieces, std::back_inserter(pictures),
                         [](const PrintedPiece &piece) { return piece.kind == PrintedPiece::Kind::Picture; });
    ASSERT_EQ(pictures.size(), 2u);
    EXPECT_NEAR(pictures[0].width, 1, kHundredth);
    EXPECT_NEAR(pictures[1].width, 6.5, kHundredth); // what the margins leave
    EXPECT_NEAR(pictures[1].height, 6.5, kHundredth);

    addLog({}, {});
    const auto empty = open();
    choose(empty.get(), u"mnuGraphics"_s);
    choose(empty.get(), u"mnuPrintVardelin"_s);
    EXPECT_EQ(paper.printed, 2);
    EXPECT_EQ(paper.pages, 1);
    EXPECT_EQ(paper.texts(), QStringList());
}

TEST_F(PrintTest, SaysThatThereIsNoRecordAndNothingElse)
{
    const auto none = open();
    dialogs.expect(u"No current record found in the Vardelin Display window to print."_s);
    choose(none.get(), u"mnuPrintVardelin"_s);
    EXPECT_EQ(paper.printed, 0);

    addLog(QString(32000, u'x'), {});
    addLog(QString(33000, u'x'), {});
    const auto window = open();
    choose(window.get(), u"mnuPrintVardelin"_s); // too long: nothing is said
    EXPECT_EQ(paper.printed, 0);
    window->control().MovePrevious();
    paper.present = false;
    choose(window.get(), u"mnuPrintVardelin"_s);
    paper.present = true;
    choose(window.get(), u"mnuPrintVardelin"_s);
    EXPECT_EQ(paper.printed, 1);
}

TEST_F(PrintTest, RichTextIsReadBackFromRealPdf)
{
    QStringList words;
    for (int word = 1; word <= 1500; ++word)
        words += u"word%1"_s.arg(word);
    NotesEdit rich;
    rich.setTextRTF(u"{\\rtf1{\\fonttbl{\\f0 Liberation Serif;}}\\f0\\fs24 "_s + words.join(u' ') +
                    u"\\par "_s + pictureRtf(2880) + u"\\par end}"_s);
    const QString file = folder.filePath(u"rich.pdf"_s);
    const auto pdf = pdfPrintDevice(file);
    Printer real(*pdf);
    PrintRichText(real, *rich.document(), 1440, 2160, 2880, 1440);

    EXPECT_TRUE(outputOf(u"pdftotext"_s, {file, u"-"_s}).simplified() == words.join(u' ') + u" end"_s);
    EXPECT_EQ(outputOf(u"pdfimages"_s, {u"-list"_s, file}).count(u"image"_s), 1);
    static const QRegularExpression box(
        u"<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\" xMax=\"([\\d.]+)\" yMax=\"([\\d.]+)\">"_s);
    double left = 1e9, top = 1e9, right = 0, bottom = 0;
    for (const auto &match : box.globalMatch(outputOf(u"pdftotext"_s, {u"-bbox"_s, file, u"-"_s}))) {
        left = std::min(left, match.captured(1).toDouble() / 72);
        top = std::min(top, match.captured(2).toDouble() / 72);
        right = std::max(right, match.captured(3).toDouble() / 72);
        bottom = std::max(bottom, match.captured(4).toDouble() / 72);
    }
    EXPECT_NEAR(left, 1, kHundredth);
    EXPECT_NEAR(top, 1.5, kHundredth);
    EXPECT_LE(right, 6.5 + kHundredth);
    EXPECT_GT(right, 6);
    EXPECT_LE(bottom, 10 + kHundredth);
    EXPECT_GT(bottom, 9.5);
}

} // namespace vardelin::testing_support
