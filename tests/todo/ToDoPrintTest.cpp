// The printed To Do list, as what stands where.

#include "tests/support/Golden.h"
#include "tests/support/Judges.h"
#include "tests/support/OfficeProgram.h"
#include "todo/PrintToDo.h"
#include "todo/frmToDo.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

const PrintedPiece &piece(const TestProgram &program, const QString &text, int page = 1)
{
    static const PrintedPiece none;
    for (const PrintedPiece &one : program.paper.pieces) {
        if (one.text == text && one.page == page)
            return one;
    }
    ADD_FAILURE() << "not printed: " << text.toStdString();
    return none;
}

ToDoRow row(const QString &who, const QString &what)
{
    return {u"3"_s, who, what, u"10/5/2026"_s, u"10/15/2026"_s};
}

TEST(PrintToDo, setsFiveColumnsAndShrinksWhatIsTooLong)
{
    TestProgram program;
    printToDo(program.global, {});
    EXPECT_EQ(program.paper.printed, 0) << "an empty list prints nothing";
    const QString longName = u"Castellano-Abernathy, Margaret Ruth"_s, endless = u"word "_s.repeated(400);
    printToDo(program.global, {row(u"Farrow, Edith"_s, u"call"_s), row(longName, endless)});
    EXPECT_EQ(program.paper.printed, 1);
    const std::array lefts{0.6, 1.0, 2.7, 5.94, 6.72};
    for (std::size_t i = 0; i < kToDoColumns; ++i) {
        EXPECT_NEAR(piece(program, kToDoHeadings[i]).x, lefts[i], 0.01);
        EXPECT_NEAR(piece(program, kToDoHeadings[i]).y, 1.0, 0.01);
    }
    const PrintedPiece &name = piece(program, u"Farrow, Edith"_s), &shrunk = piece(program, longName);
    EXPECT_NEAR(name.y, 1.4, 0.01);
    EXPECT_NEAR(piece(program, u"call"_s).x, 2.7, 0.01);
    EXPECT_EQ(name.points, 12);
    EXPECT_LT(shrunk.points, 12);
    EXPECT_LE(shrunk.width, 1.5);
    EXPECT_NEAR(shrunk.y + shrunk.height / 2, 1.4 + 1.5 * name.height, 0.02) << "in the middle of its row";
    EXPECT_EQ(piece(program, endless).points, Printer::kSmallestFontSize) << "the shrinking ends there";
    EXPECT_EQ(program.paper.texts().filter(u"- "_s), QStringList()) << "a page that isn't full has no number";
}

TEST(PrintToDo, numbersThePagesThatItCloses)
{
    TestProgram program;
    std::vector<ToDoRow> rows;
    for (int i = 1; i <= 100; ++i)
        rows.push_back(row(u"client %1"_s.arg(i), u"thing"_s));
    printToDo(program.global, rows);
    EXPECT_GT(program.paper.pages, 2);
    for (int page = 1; page <= program.paper.pages; ++page) {
        EXPECT_NEAR(piece(program, u"Priority"_s, page).y, 1.0, 0.01);
        const QString number = u"- %1 -"_s.arg(page);
        EXPECT_EQ(program.paper.texts(page).contains(number), page < program.paper.pages);
        if (page == program.paper.pages)
            break;
        const PrintedPiece &foot = piece(program, number, page);
        EXPECT_NEAR(foot.x + foot.width / 2, program.paper.inches.width() / 2, 0.02);
        EXPECT_NEAR(foot.y, program.paper.inches.height() - 1, 0.01);
    }
    for (int i = 1; i <= 100; ++i)
        EXPECT_EQ(program.paper.texts().count(u"client %1"_s.arg(i)), 1);
}

TEST(PrintToDo, setsItsPagesAsTheyWereLookedOver)
{
    TestProgram program;
    program.global.DefaultPrintFont.name = u"Liberation Serif"_s;
    program.paper.inches = {8.5, 3};
    printToDo(program.global,
              {row(u"Farrow, Edith"_s, u"call"_s), row(u"Farrow-Jelinek, Edithe"_s, u"just over"_s),
               row(u"Will"_s, u"read the file "_s.repeated(5)), row({}, {}), row(u"Lease"_s, u"draft"_s)});
    expectGolden(QStringLiteral(VARDELIN_ROOT "/tests/todo/pages/list.txt"),
                 program.paper.lines().join(u'\n').toUtf8() + '\n');
}

// Whoever reads the PDF finds the same as the eye on the paper.
TEST(PrintToDo, isReadFromARealPdf)
{
    OfficeProgram program;
    const QString path = program.folder.filePath(u"list.pdf"_s);
    const auto device = pdfPrintDevice(path);
    Printer printer(*device);
    Services services{program.dialogs, program.clock, program.settings, program.engine,
                      program.errors,  printer,       QString()};
    Global global{services};
    global.DefaultPrintFont = {u"Times New Roman"_s, u"12"_s};
    std::vector<ToDoRow> rows;
    for (int i = 1; i <= 100; ++i)
        rows.push_back(
            row(u"Farrow-Castellano, Margaret %1"_s.arg(i), u"thing%1 "_s.arg(i) + u"word "_s.repeated(i)));
    printToDo(global, rows);

    struct Word
    {
        int page;
        double x, y, height; // points
        QString text;
    };
    std::vector<Word> words;
    int pages = 0;
    static const QRegularExpression tag(
        u"<page |<word xMin=\"([\\d.]+)\" yMin=\"([\\d.]+)\" xMax=\"[\\d.]+\" yMax=\"([\\d.]+)\">([^<]*)"_s);
    for (const auto &match : tag.globalMatch(outputOf(u"pdftotext"_s, {u"-bbox"_s, path, u"-"_s}))) {
        if (match.captured(4).isEmpty())
            ++pages;
        else
            words.push_back({pages, match.captured(1).toDouble(), match.captured(2).toDouble(),
                             match.captured(3).toDouble() - match.captured(2).toDouble(), match.captured(4)});
    }
    const auto find = [&](const QString &text, int page) {
        const auto found = std::ranges::find_if(
            words, [&](const Word &word) { return word.text == text && (page == 0 || word.page == page); });
        return found == words.end() ? nullptr : &*found;
    };
    ASSERT_EQ(pages, 3) << "pdftotext (poppler-utils) is wanted";
    for (int page = 1; page <= pages; ++page) {
        const Word *heading = find(u"Deadline"_s, page);
        ASSERT_TRUE(heading);
        EXPECT_NEAR(heading->x, 6.72 * 72, 1);
        EXPECT_NEAR(heading->y, 72, 3);
        EXPECT_EQ(find(u"-"_s, page) != nullptr, page < pages) << "a number where the page was closed";
    }
    for (int i = 1; i <= 100; ++i)
        ASSERT_TRUE(find(u"thing%1"_s.arg(i), 0)) << i;
    EXPECT_LT(find(u"thing100"_s, 0)->height, find(u"thing1"_s, 0)->height / 3) << "the endless one is small";
    EXPECT_NEAR(find(u"thing100"_s, 0)->y + find(u"thing100"_s, 0)->height / 2,
                find(u"100"_s, 0)->y + find(u"100"_s, 0)->height / 2, 3)
        << "and in the middle of its row";
}

TEST(PrintToDo, saysNothingWithoutAPrinter)
{
    OfficeProgram program;
    program.add(u"Things To Do"_s, {{u"TTD Priority"_s, u"3"_s}, {u"TTD Project"_s, u"Will"_s}});
    program.paper.present = false;
    frmToDo form(program.global);
    choose(&form, u"mnuPrint"_s);
    EXPECT_EQ(program.ended, 0);
    program.paper.present = true;
    choose(&form, u"mnuPrint"_s);
    EXPECT_EQ(program.paper.printed, 1);
    EXPECT_EQ(program.paper.texts().filter(u"Will"_s).size(), 1);
}

} // namespace
