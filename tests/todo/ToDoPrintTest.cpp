// The printed To Do list, as what stands where.

#include "tests/support/OfficeProgram.h"
#include "todo/PrintToDo.h"

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

} // namespace
