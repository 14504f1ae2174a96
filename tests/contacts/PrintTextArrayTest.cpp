// Printed lists, as pages of what stands where.
#include "contacts/PrintTextArray.h"
#include "tests/contacts/ListWindows.h"
#include "tests/support/Golden.h"

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

namespace {

void expectPages(const RecordingPrintDevice &paper, const QString &name)
{
    expectGolden(QStringLiteral(VARDELIN_ROOT "/tests/contacts/pages/") + name,
                 paper.lines().join(u'\n').toUtf8() + '\n');
}

} // namespace

struct PrintTextArrayTest : ListWindowsTest
{
    static PrintBlock block(const QString &text, const QString &tag = {})
    {
        return {.Text = text, .Tag = tag, .FontName = u"Liberation Serif"_s, .FontSize = u"12"_s};
    }
    // Blank lines enough that the next line begins as far above the bottom line as told, in lines.
    QString linesUpTo(double lines)
    {
        printer.SetScaleMode(PrintScale::Inches);
        printer.SetFontName(u"Liberation Serif"_s);
        printer.SetFontSize(12);
        const double height = printer.TextHeight({});
        paper.inches.setHeight(2 + height * (10 + lines));
        return u"\r\n"_s.repeated(10);
    }
    static QString longLine() { return u"word "_s.repeated(30); } // two printed lines
};

TEST_F(PrintTextArrayTest, SplitsWordsWithTheirBlanks)
{
    global.PrintWordRest = u"one  two three"_s;
    QStringList words;
    do {
        NextPrintWord(global);
        words += global.PrintWord;
    } while (!global.PrintWord.isEmpty());
    EXPECT_EQ(words, (QStringList{u"one "_s, u" "_s, u"two "_s, u"three"_s, QString()}));
}

TEST_F(PrintTextArrayTest, LaysOutBlocksLinesAndTags)
{
    const QString letters = u"W"_s.repeated(60);
    PrintTextArray(global, {block(u"Title"_s, u":>03"_s),
                            block(u"centred\r\nagain"_s, u":>01"_s),
                            block(u"from the middle"_s, u":>02"_s),
                            block({}),
                            block(u"unknown\r\n"_s, u":>77"_s),
                            block(u"first\r\n\r\nafter an empty line\r\n"_s),
                            block(longLine() + u"end"_s, u":>01"_s),
                            block(u"too "_s + letters + u" wide"_s),
                            {.Text = u"large"_s, .FontName = u"Liberation Sans"_s, .FontSize = u"20.5"_s}});
    EXPECT_EQ(paper.printed, 1);
    EXPECT_EQ(paper.pages, 1); // and so without a number
    expectPages(paper, u"blocks.txt"_s);
}

TEST_F(PrintTextArrayTest, PrintsNothingOfAnEmptyTextAndStillEnds)
{
    printer.Print(u"left open"_s);
    PrintTextArray(global, {block({})});
    EXPECT_EQ(paper.printed, 1);
    EXPECT_EQ(paper.texts(), QStringList{u"left open"_s});
    EXPECT_EQ(global.PrintTopMargin, 1);
    EXPECT_EQ(global.PrintRightMargin, 1);
}

// A last line needs room for its height, a wrapped one only a beginning above the bottom line less Spacing.
TEST_F(PrintTextArrayTest, TwoTestsBreakThePageAtDifferentPlaces)
{
    QString up = linesUpTo(0.5);
    PrintTextArray(global, {block(up + u"last"_s)});
    EXPECT_EQ(paper.pages, 2);
    EXPECT_EQ(paper.texts(2), (QStringList{u"last"_s, u"- 2 -"_s}));

    PrintTextArray(global, {block(up + longLine())});
    EXPECT_EQ(paper.pages, 2);
    EXPECT_EQ(paper.texts(1).filter(u"word"_s).size(), 1);
    EXPECT_EQ(paper.texts(2).filter(u"word"_s).size(), 1);
    EXPECT_DOUBLE_EQ(paper.pieces.back().y, paper.inches.height() - 1); // the number, on the bottom line
    EXPECT_NEAR(paper.pieces.back().x + paper.pieces.back().width / 2, 4.25, 0.001);

    PrintBlock spaced = block(up + longLine());
    spaced.Spacing = 0.25;
    PrintTextArray(global, {spaced});
    EXPECT_EQ(paper.texts(1).filter(u"word"_s).size(), 0);
    EXPECT_EQ(paper.texts(2).filter(u"word"_s).size(), 2);
}

TEST_F(PrintTextArrayTest, TellsEachFailureAndGoesOn)
{
    PrintBlock odd = block(u"printed"_s);
    odd.FontSize = u"large"_s;
    dialogs.expect(u"Type mismatch in PrintTextArray function"_s);
    PrintTextArray(global, {odd});
    EXPECT_EQ(paper.texts(), QStringList{u"printed"_s});

    paper.present = false;
    const QString none = descriptionOf(484) + u" in PrintTextArray function"_s;
    for (int line = 0; line < 3; ++line)
        dialogs.expect(none);
    PrintTextArray(global, {block(u"one\r\ntwo\r\n"_s + longLine())});
    EXPECT_TRUE(dialogs.done());
}

TEST_F(PrintTextArrayTest, WindowsPrintTheirLists)
{
    global.ClientCaption = u"Patient"_s;
    global.DefaultPrintFont = {u"Liberation Sans"_s, u"14"_s};
    for (int client = 1; client <= 70; ++client)
        add(u"Active Clients"_s,
            {{u"Client First Name"_s, u"Ann %1"_s.arg(client + 10)}, {u"Client Last Name"_s, u"Archer"_s}});
    choose(make<frmClient>().get(), u"mnuPrintList"_s);
    EXPECT_EQ(paper.pages, 2);
    expectPages(paper, u"clients.txt"_s);

    choose(make<frmProject>().get(), u"mnuPrintList"_s);
    EXPECT_EQ(paper.texts(), column(u"Projects"_s, u"Projects"_s)); // no title, one page, no number
    EXPECT_FALSE(make<frmRate>()->findChild<QAction *>(u"mnuPrintList"_s));
}

} // namespace vardelin::testing_support
