#include "Reports.h"

#include "database/CreateDatabase.h"
#include "platform/report/PageText.h"
#include "tests/support/OfficeProgram.h"

#include <limits>
#include <random>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {
namespace {

constexpr int kTop = 1440, kBottom = 15840 - 1440 - 400; // of what stands between margin and page footer

QStringList wordsOf(const ReportPage &page)
{
    QStringList words;
    for (const PageRow &row : rowsOf(page))
        for (const ReportItem *item : row.items)
            words += item->text;
    return words;
}

const ReportItem *itemOf(const ReportPage &page, const QString &text)
{
    for (const ReportItem &item : page.items)
        if (item.text == text)
            return &item;
    ADD_FAILURE() << text.toStdString() << " is not on the page";
    static const ReportItem none;
    return &none;
}

class LayoutTest : public testing::Test
{
protected:
    std::vector<ReportPage> lay(const std::vector<std::pair<QString, QString>> &rows)
    {
        return layoutReport(design, notes(rows), measurer);
    }
    SquareMeasurer measurer;
    ReportDesign design = noteDesign();
};

TEST_F(LayoutTest, BreaksLinesAtBlanksAndLineEnds)
{
    const struct
    {
        QString text;
        QStringList lines; // of ten characters
    } rows[] = {
        {u"one two three"_s, {u"one two"_s, u"three"_s}},
        {u"0123456789 abc"_s, {u"0123456789"_s, u"abc"_s}},
        {u"0123456789abc de"_s, {u"0123456789"_s, u"abc de"_s}},
        {u"ab   \r\n\rcd\nef\r\n"_s, {u"ab   "_s, {}, u"cd"_s, u"ef"_s}},
        {u"  in\tout-of-pocket"_s, {u"  in"_s, u"out-of-"_s, u"pocket"_s}},
        {u"\r"_s, {{}}},
        {{}, {}},
    };
    for (const auto &row : rows) {
        QStringList lines;
        for (const TextLine &line : breakLines(row.text, kTen, 1000, measurer))
            lines += line.text;
        EXPECT_EQ(lines, row.lines) << row.text.toStdString();
    }
}

TEST_F(LayoutTest, WhatGrowsPushesDownWhatStandsBelow)
{
    design.Sections(u"Section4"_s).Controls(u"Label1"_s).Caption = u"Law office\r\nMain street\r\n\r\n"_s;
    const auto pages = lay({{u"Able"_s, u"short"_s}, {u"Baker"_s, QString(90, u'x')}, {u"Cole"_s, {}}});
    ASSERT_EQ(pages.size(), 1u);
    EXPECT_EQ(wordsOf(pages[0]),
              (QStringList{u"Law office"_s, u"Main street"_s, u"Name"_s, u"Able"_s, u"short"_s, u"1.5"_s,
                           u"Baker"_s, QString(40, u'x'), QString(40, u'x'), QString(10, u'x'), u"1.5"_s,
                           u"Cole"_s, u"1.5"_s, u"4.5 hours"_s, u"Page 1 of 1"_s}));
    const double header = kTop + 600 + 3 * 240 - 300, detail = header + 400;
    EXPECT_EQ(itemOf(pages[0], u"Name"_s)->top, header);
    EXPECT_EQ(itemOf(pages[0], u"Able"_s)->top, detail);
    EXPECT_EQ(itemOf(pages[0], u"short"_s)->left, 1440 + 2400);
    EXPECT_EQ(itemOf(pages[0], u"Baker"_s)->top, detail + 800);
    EXPECT_EQ(itemOf(pages[0], u"Cole"_s)->top, detail + 2 * 800 + 2 * 240);
    EXPECT_EQ(itemOf(pages[0], u"4.5 hours"_s)->top, detail + 3 * 800 + 2 * 240 + 100);
    const ReportItem *number = itemOf(pages[0], u"Page 1 of 1"_s);
    EXPECT_EQ(number->top, kBottom + 100);
    EXPECT_EQ(number->left, 1440 + (9360 - 1100) / 2);
}

TEST_F(LayoutTest, ABoxThatDoesNotGrowShowsWhatItHolds)
{
    design.Sections(u"Section1"_s).setFont(u"Times New Roman"_s, 12);
    design.sections[1].controls[0].box = {8000, 0, 1360, 240};
    const auto pages = lay({{u"sixteen letters!"_s, {}}, // 20 x 120 in 2,000
                            {u"more than it can be set in"_s, {}}});
    const ReportItem *set = itemOf(pages[0], u"sixteen letters!"_s),
                     *cut = itemOf(pages[0], u"more than it ca…"_s);
    EXPECT_EQ(set->font.Size, 12);
    EXPECT_EQ(cut->font.Size, 12);
    EXPECT_EQ(cut->top - set->top,
              800 + 2 * 48); // one line is 48 higher than its box, and so is the one below
    design.sections[2].controls[0].box.width = 1440;
    const auto narrow = lay({{u"sixteen letters!"_s, {}}});
    EXPECT_EQ(itemOf(narrow[0], u"sixteen letters!"_s)->font.Size, 9);
    EXPECT_EQ(itemOf(narrow[0], u"sixteen letters!"_s)->font.Name, u"Times New Roman"_s);
    const ReportBox left = design.sections[2].controls[0].box;
    design.sections[2].controls[1].box.left = left.left + left.width;
    const auto beside = lay({{u"sixteen letters!"_s, u"next"_s}});
    EXPECT_EQ(itemOf(beside[0], u"sixteen letters!"_s)->font.Size, 12 * 1380.0 / 1920)
        << "it doesn't run into the next box";

    // A number keeps its digits: in a smaller size, and beyond its box in the end.
    ReportControl &hours = design.sections[2].controls[2];
    hours.DataFormat = u"0.0000"_s; // 1.5000: 6 x 120
    for (const auto &[width, size] : {std::pair{360, 6.0}, std::pair{100, 12 * 0.4}}) {
        hours.box.width = width;
        EXPECT_EQ(itemOf(lay({{u"a"_s, {}}})[0], u"1.5000"_s)->font.Size, size);
    }
}

TEST_F(LayoutTest, KeepsRecordsTogetherAndLetsLongOnesFlow)
{
    std::vector<std::pair<QString, QString>> rows;
    for (int i = 1; i <= 30; ++i)
        rows.emplace_back(u"client %1"_s.arg(i), u"first\rsecond\rthird"_s);
    QStringList longNote;
    for (int i = 1; i <= 120; ++i)
        longNote += u"line %1"_s.arg(i);
    rows.emplace_back(u"long"_s, longNote.join(u"\r\n"_s));
    rows.emplace_back(u"last"_s, u"end"_s);
    const auto pages = lay(rows);
    ASSERT_EQ(pages.size(), 6u);
    // 1,280 each in 11,560, and 600 less on the first page.
    EXPECT_EQ(itemOf(pages[0], u"client 9"_s)->top, kTop + 600 + 400 + 8 * 1280);
    EXPECT_EQ(itemOf(pages[1], u"client 10"_s)->top, kTop + 400);
    EXPECT_EQ(itemOf(pages[2], u"client 19"_s)->top, kTop + 400);
    QStringList notesFound;
    for (const ReportPage &page : pages) {
        EXPECT_EQ(wordsOf(page).last(), u"Page %1 of 6"_s.arg(page.number));
        for (const QString &word : wordsOf(page))
            if (word.startsWith(u"line "))
                notesFound += word;
    }
    EXPECT_EQ(notesFound, longNote);
    EXPECT_EQ(itemOf(pages[4], u"line %1"_s.arg(notesFound.indexOf(wordsOf(pages[4])[1]) + 1))->top,
              kTop + 400);
    EXPECT_EQ(itemOf(pages[5], u"48.0 hours"_s)->section, ReportSection::Kind::ReportFooter);
}

// Whatever the records: each line stands once, in order, whole, between the margins and clear of the others.
TEST_F(LayoutTest, NothingIsCutLostOrDoubled)
{
    std::mt19937 random(1);
    for (int round = 0; round < 40; ++round) {
        std::vector<std::pair<QString, QString>> rows;
        QStringList expected;
        for (int record = 0, count = static_cast<int>(random() % 12); record < count; ++record) {
            QStringList lines;
            for (int line = 0, all = static_cast<int>(random() % (random() % 5 ? 12 : 150)); line < all;
                 ++line)
                lines += u"%1/%2"_s.arg(record).arg(line);
            rows.emplace_back(QString(), lines.join(u'\r'));
            expected += lines;
        }
        design.sections[2].KeepTogether = round % 2;
        design.sections[0].Height = round % 3 ? 600 : 13000;
        QStringList found;
        for (const ReportPage &page : lay(rows)) {
            std::map<int, double> bottoms;
            for (const ReportItem &item : page.items) {
                if (item.section != ReportSection::Kind::Detail)
                    continue;
                if (item.text.contains(u'/'))
                    found += item.text;
                EXPECT_GE(item.top, kTop);
                EXPECT_LE(item.bottom(), kBottom);
                EXPECT_GE(item.top, bottoms[item.left == 3840 ? 1 : 0]);
                bottoms[item.left == 3840 ? 1 : 0] = item.bottom();
            }
        }
        EXPECT_EQ(found, expected) << round;
    }
}

TEST_F(LayoutTest, TotalsAndPageCodes)
{
    EXPECT_EQ(withPageCodes(u"Page %p of %p"_s, 2, 7), u"Page 2 of 7"_s);
    EXPECT_EQ(withPageCodes(u"%p/%P, 5%"_s, 2, 0), u"2/…, 5%"_s);
    const auto total = [&](std::vector<std::vector<Value>> rows) {
        const ListedRecords records({u"Name"_s, u"Note"_s, u"Hours"_s}, std::move(rows));
        QString text;
        const auto pages = layoutReport(design, records, measurer);
        for (const ReportItem &item : pages.back().items)
            if (item.section == ReportSection::Kind::ReportFooter)
                text += item.text;
        return text;
    };
    const Value none = NullValue{}, text(u"a"_s);
    EXPECT_EQ(total({}), QString());
    EXPECT_EQ(total({{text, text, none}, {text, text, none}}), QString());
    EXPECT_EQ(total({{text, text, Value(1234.5f)}, {text, text, none}, {text, text, Value(0.1f)}}),
              u"1,234.6 hours"_s);
    EXPECT_EQ(total({{text, text, Value(Currency{922337203685477})},
                     {text, text, Value(u" 0.25 "_s)},
                     {text, text, text}}),
              u"92,233,720,368.8 hours"_s);
    // What a column of another program may hold: beyond all exact numbers, or no number.
    const float none32 = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(total({{text, text, Value(1e30f)},
                     {text, text, Value(none32)},
                     {text, text, Value(-1e30f)},
                     {text, text, Value(std::numeric_limits<float>::infinity())},
                     {text, text, Value(2.5f)}}),
              u"2.5 hours"_s);
}

TEST_F(LayoutTest, ReadsARecordSetWithoutMovingIt)
{
    OfficeProgram office;
    for (const auto &name : {u"Able"_s, u"Baker"_s, u"Cole"_s})
        office.add(u"Vardelins"_s, {{u"Client"_s, Value(name)},
                                    {u"Vardelin"_s, Value(u"note of "_s + name)},
                                    {u"Duration"_s, Value(0.5f)}});
    ado::Connection connection;
    connection.Open(ado::connectionText(office.global.DatabaseFileName));
    ado::Recordset rows;
    rows.Open(u"SELECT * FROM Vardelins ORDER BY Client DESC"_s, connection);
    rows.MoveNext();
    rows.SetField(u"Client"_s, Value(u"typed"_s));
    for (ReportControl &control : design.Sections(u"Section1"_s).controls)
        control.DataField.replace(u"Name"_s, u"client"_s)
            .replace(u"Note"_s, u"Vardelin"_s)
            .replace(u"Hours"_s, u"Duration"_s);
    design.Sections(u"Section5"_s).Controls(u"Function1"_s).DataField = u"Duration"_s;
    DataReport report(design);
    report.bindTo(rows);
    EXPECT_EQ(textOf(report),
              u"Notes\nName\nCole\tnote of Cole\n0.5\nBaker\tnote of Baker\n0.5\nAble\tnote of Able\n"
              "0.5\n1.5 hours\nPage 1 of 1\n\f"_s);
    EXPECT_EQ(rows.AbsolutePosition(), 2);
    EXPECT_EQ(rows.Fields(u"Client"_s), Value(u"typed"_s));

    // A record that another program deleted meanwhile is left out.
    const auto database = office.engine.OpenDatabase(office.global.DatabaseFileName);
    const auto table = database->OpenRecordset(u"Vardelins"_s);
    table->Delete();
    EXPECT_EQ(
        textOf(report),
        u"Notes\nName\nCole\tnote of Cole\n0.5\nBaker\tnote of Baker\n0.5\n1.0 hours\nPage 1 of 1\n\f"_s);

    design.Sections(u"Section5"_s).Controls(u"Function1"_s).DataField = u"Hours"_s;
    DataReport wrong(design);
    wrong.setDataSource(&rows);
    EXPECT_THROW(wrong.Refresh(), RunTimeError);
    wrong.setDataSource(nullptr);
    EXPECT_EQ(textOf(wrong), u"Notes\nName\nPage 1 of 1\n\f"_s);
}

} // namespace
} // namespace vardelin::testing_support
