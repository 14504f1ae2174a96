// Searches and reports from the commands of real windows to the records that are shown.
#include "tests/search/SearchProgram.h"

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

struct SearchTest : SearchProgram
{
    SearchTest() : display(global.openers.NewDisplayWindow()) {}

    // What a search must leave as it found it.
    void mark()
    {
        global.CurrentSQL = u"kept"_s;
        global.RangeStart = u"start kept"_s;
        global.RangeEnd = u"end kept"_s;
    }
    void expectKept()
    {
        EXPECT_EQ(global.CurrentSQL, u"kept"_s);
        EXPECT_EQ(global.RangeStart, Value(u"start kept"_s));
        EXPECT_EQ(global.RangeEnd, Value(u"end kept"_s));
    }
    // The run time's message, after which the program ends.
    template <class Command>
    void expectEnd(Command command, const QString &message = u"Run-time error '-21472179"_s)
    {
        office.dialogs.expectBeginning(message);
        command();
        EXPECT_EQ(office.ended, 1);
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    }
    EntryWindow *entry(const QString &client, const QString &project)
    {
        EntryWindow *window = global.openers.NewEntryWindow();
        control<SortedCombo>(window, u"Combo1"_s)->setText(client);
        control<SortedCombo>(window, u"Combo3"_s)->setText(project);
        return window;
    }

    const QPointer<DisplayWindow> display; // on all logs, at the last one, which is O'Neil's
    const QString select = u"SELECT * FROM Vardelins "_s;
    const QString byTime = u" ORDER BY [Beginning Time]"_s;
    const QString oneil = u"WHERE Client Like 'O''Neil, Pat' "_s;
};

TEST_F(SearchTest, EachTypeOpensAWindowOnItsLogs)
{
    const QString clients = u"Client Like 'O''Neil, Pat'  OR Client Like ''  OR Client Like 'Archer, Ann' "_s;
    struct Row
    {
        int type;
        QString caption, entry, fragment;
        int count;
        QString lastNotes;
    };
    const Row rows[] = {
        {0, {}, {}, oneil, 2, u"Letter"_s},
        {1, u"Select a client"_s, u"Archer, Ann"_s, u"WHERE Client Like 'Archer, Ann' "_s, 2,
         u"Lease and 50% rule"_s},
        {2, {}, {}, u"WHERE ("_s + clients, 4, u"Letter"_s},
        {3, u"Select an employee"_s, u"Cole, Cy"_s, u"WHERE Employee Like 'Cole, Cy' "_s, 2,
         u"Call about estoppel"_s},
        {4, u"Select a project"_s, u"R&D"_s, u"WHERE Project Like 'R&D' "_s, 2, u"Lease and 50% rule"_s},
        {5, {}, u"estoppel"_s, u"WHERE Vardelin Like '%estoppel%' "_s, 2, u"Call about estoppel"_s},
        {5, {}, {}, u"WHERE Vardelin Like '%%' "_s, 5, u"Letter"_s}, // left with Cancel
    };
    for (const Row &row : rows) {
        if (!row.caption.isEmpty())
            expectPick(row.caption, row.entry);
        if (row.type == 5)
            expectText(row.entry);
        global.CurrentDisplayTag = u"1"_s;
        mark();
        const std::size_t windows = global.DisplayWindows.size();
        searchFrom(display, row.type, 0);
        expectKept();
        ASSERT_EQ(global.DisplayWindows.size(), windows + 1);
        const QString expected =
            row.type == 2 ? select + u" WHERE ("_s + clients + u")  ORDER BY Client, [Beginning Time]"_s
                          : select + row.fragment + byTime;
        EXPECT_EQ(statement(newest()), expected);
        EXPECT_EQ(fragment(newest()), row.fragment);
        EXPECT_EQ(global.SQLFilter, row.fragment);
        EXPECT_EQ(newest()->recordCount(), row.count);
        EXPECT_EQ(control<NotesEdit>(newest(), u"RichTextBox2"_s)->Text(), row.lastNotes);
        EXPECT_EQ(office.activeChild(), newest());
        EXPECT_EQ(global.CurrentDisplayTag, newest()->Tag);
    }
    EXPECT_EQ(fragment(display), QString()) << "the window searched from keeps its selection";
    EXPECT_EQ(display->recordCount(), 5);
    EXPECT_EQ(global.SQLSelect, select);
    EXPECT_EQ(global.SearchText, QString());
    EXPECT_EQ(global.SearchEmployee, u"Cole, Cy"_s);
}

TEST_F(SearchTest, TimeFramesAreMeasuredFromThisMoment)
{
    const QString ends[] = {u"9/15/2026 9:00:00 AM"_s, u"4/16/2026 9:00:00 AM"_s, u"10/15/2025 9:00:00 AM"_s};
    const int counts[] = {1, 3, 4};
    for (int frame = 1; frame <= 3; ++frame) {
        global.CurrentDisplayTag = u"1"_s;
        expectText({});
        mark();
        searchFrom(display, 5, frame);
        expectKept();
        EXPECT_EQ(statement(newest()), select + u"WHERE Vardelin Like '%%' AND [Beginning Time] BETWEEN #"_s +
                                           ends[frame - 1] + u"# AND #10/16/2026 9:00:00 AM# "_s + byTime);
        EXPECT_EQ(fragment(newest()), u"WHERE Vardelin Like '%%' "_s) << "the range is for one search only";
        EXPECT_EQ(newest()->recordCount(), counts[frame - 1]) << frame;
    }
    // The customized one: from the window, or, where that is left by Return, as the range stood.
    for (const bool goOn : {true, false}) {
        global.CurrentDisplayTag = u"1"_s;
        global.RangeStart = DateSerial{office.clock.moment.days - 250};
        global.RangeEnd = DateSerial{office.clock.moment.days - 150};
        expectText({});
        script.expect(u"frmSearchDatePicker"_s,
                      [goOn](QWidget *form) { choose(form, goOn ? u"mnuContinue"_s : u"mnuReturn"_s); });
        searchFrom(display, 5, 4);
        EXPECT_EQ(newest()->recordCount(), goOn ? 3 : 1);
        EXPECT_EQ(global.RangeEnd, Value(DateSerial{office.clock.moment.days - 150}));
    }
}

TEST_F(SearchTest, NarrowsASelectionAndKeepsDoubledApostrophes)
{
    searchFrom(display, 0, 0);
    DisplayWindow *first = newest();
    EXPECT_EQ(global.SearchClient, u"O''Neil, Pat"_s);
    expectText(u"estoppel"_s);
    searchFrom(first, 5, 0);
    EXPECT_EQ(statement(newest()), select + oneil + u" AND Vardelin Like '%estoppel%' "_s + byTime);
    EXPECT_EQ(newest()->recordCount(), 1);
    EXPECT_EQ(fragment(first), oneil);

    // A list that is left without a choice searches for what the search before left, and doubles it again.
    global.SearchClient = u"O''Neil, Pat"_s;
    global.SearchType = 1;
    global.CurrentDisplayTag = display->Tag;
    expectPick(u"Select a client"_s, {});
    office.dialogs.expect(u"No such records were found."_s);
    SearchRoutine(global, 1, 0, true);
    EXPECT_EQ(global.SearchClient, u"O''''Neil, Pat"_s);
    EXPECT_EQ(newest()->recordCount(), 0);
    EXPECT_EQ(office.activeChild(), newest()) << "the empty window stays";
}

TEST_F(SearchTest, DataEntryWindowWithNamesSearchesAtOnce)
{
    EntryWindow *window = entry(u"Archer, Ann"_s, u"R&D"_s);
    choose(window, u"Toolbar1.Find"_s);
    EXPECT_FALSE(search());
    const QString archer = u"WHERE Client Like 'Archer, Ann' "_s;
    EXPECT_EQ(statement(newest()), select + archer + byTime);
    EXPECT_EQ(fragment(newest()), archer);
    EXPECT_EQ(fragment(window), archer) << "it adds up there";
    EXPECT_EQ(office.activeChild(), newest());
    choose(window, u"mnuSearch"_s);
    EXPECT_EQ(statement(newest()), select + archer + u" AND Client Like 'Archer, Ann' "_s + byTime);

    window = entry({}, u"R&D"_s);
    choose(window, u"mnuSearch"_s);
    EXPECT_EQ(statement(newest()), select + u"WHERE Project Like 'R&D' "_s + byTime);
    EXPECT_EQ(newest()->recordCount(), 2);
    expectEnd([&] { choose(window, u"mnuSearch"_s); });
    EXPECT_EQ(global.CurrentSQL,
              select + u"WHERE Project Like 'R&D'  AND WHERE Project Like 'R&D' "_s + byTime)
        << "a failure leaves what it changed";
}

TEST_F(SearchTest, DataEntryWindowWithoutNamesAsks)
{
    EntryWindow *window = entry({}, {});
    global.SearchClient = u"stale"_s;
    choose(window, u"mnuSearch"_s);
    ASSERT_TRUE(search());
    EXPECT_FALSE(control<QAction>(search(), u"mnuReport"_s)->isEnabled());
    EXPECT_FALSE(option(search(), 1, 0)->isEnabled());
    EXPECT_TRUE(option(search(), 1, 1)->isChecked());
    expectPick(u"Select a client"_s, u"O'Neil, Pat"_s);
    choose(search(), u"mnuContinue"_s);
    EXPECT_EQ(statement(newest()), select + oneil + byTime);
    EXPECT_EQ(fragment(window), oneil);
    expectText(u"letter"_s);
    searchFrom(window, 5, 1);
    EXPECT_EQ(newest()->recordCount(), 1);
    EXPECT_EQ(fragment(window), oneil + u" AND Vardelin Like '%letter%' "_s);
    EXPECT_EQ(fragment(newest()), fragment(window));
}

TEST_F(SearchTest, AllActiveClientsCantFollowANarrowerSearch)
{
    searchFrom(display, 0, 0);
    expectEnd([&] { searchFrom(newest(), 2, 0); });
    EXPECT_TRUE(global.CurrentSQL.startsWith(select + u" WHERE (lient Like"_s));
}

TEST_F(SearchTest, NothingCanNarrowAllActiveClients)
{
    searchFrom(display, 2, 0);
    expectEnd([&] { searchFrom(newest(), 0, 0); });
}

TEST_F(SearchTest, AllActiveClientsNeedsOne)
{
    global.List1[0].clear();
    expectEnd([&] { searchFrom(display, 2, 0); }, u"Run-time error '5'"_s);
}

TEST_F(SearchTest, SearchesTheFileOfTheWindow)
{
    const QString file = global.DatabaseFileName;
    global.DatabaseFileName = folder.filePath(u"other.mdb"_s);
    CreateDatabase(global);
    DisplayWindow *other = global.openers.NewDisplayWindow();
    expectText({});
    office.dialogs.expect(u"No such records were found."_s);
    searchFrom(other, 5, 0);
    EXPECT_EQ(newest()->file(), folder.filePath(u"other.mdb"_s));
    expectText({});
    searchFrom(display, 5, 0);
    EXPECT_EQ(newest()->file(), file);
    EXPECT_EQ(newest()->recordCount(), 5);
}

TEST_F(SearchTest, MakesTheWindowAnewThatWasClosedMeanwhile)
{
    choose(display, u"mnuSearch"_s);
    display->parentWidget()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_FALSE(display);
    choose(search(), u"mnuContinue"_s);
    ASSERT_TRUE(global.DisplayWindows[0]);
    EXPECT_EQ(global.DisplayWindows[0]->Caption(), u"Display form 1"_s);
    EXPECT_EQ(statement(newest()), select + oneil + byTime);
}

TEST_F(SearchTest, ReportCommandGoesByClientThenProject)
{
    choose(display, u"mnuSearch"_s);
    const auto *command = control<QAction>(search(), u"mnuReport"_s);
    EXPECT_TRUE(command->isEnabled());
    EXPECT_EQ(command->text(), u"   Report all Vardelins for O'Neil, Pat"_s);
    option(search(), 1, 5)->click(); // the buttons don't count
    mark();
    choose(search(), u"mnuReport"_s);
    expectKept();
    EXPECT_EQ(reportedLogs, 2);
    EXPECT_TRUE(reported.startsWith(u"Vardelin Report\n"_s)) << reported.toStdString();
    EXPECT_TRUE(reported.contains(u"Call about estoppel"_s));
    EXPECT_TRUE(reported.contains(u"Total time spent:\t1,000.2 hours"_s)) << reported.toStdString();
    EXPECT_FALSE(search());
    EXPECT_EQ(global.SearchClient, u"O''Neil, Pat"_s);

    global.SearchClient.clear();
    static_cast<frmDisplay *>(display.data())->control().SetAbsolutePosition(2); // a project alone
    choose(display, u"mnuSearch"_s);
    EXPECT_EQ(control<QAction>(search(), u"mnuReport"_s)->text(), u"   Report all Vardelins for R&&D"_s);
    choose(search(), u"mnuReport"_s);
    EXPECT_EQ(reportedLogs, 2);
    EXPECT_TRUE(reported.contains(u"2.5 hours"_s));
    choose(display, u"mnuReport"_s);
    EXPECT_EQ(reportedLogs, 5) << "what the window shows";
    EXPECT_EQ(display->recordCount(), 5);
    EXPECT_EQ(static_cast<frmDisplay *>(display.data())->control().Recordset().AbsolutePosition(), 2);
}

TEST_F(SearchTest, ReportsByTypeAndTimeFrame)
{
    const auto report = [this](int type, int frame) {
        global.SearchType = static_cast<std::int16_t>(type);
        reportedLogs = -1;
        ReportRoutine(global, type, frame);
        return reportedLogs;
    };
    expectPick(u"Select Client"_s, u"Archer, Ann"_s);
    EXPECT_EQ(report(1, 3), 1);
    expectPick(u"Select Employee"_s, u"Baxter, Bo"_s);
    EXPECT_EQ(report(3, 2), 1);
    expectPick(u"Select Project"_s, u"R&D"_s);
    EXPECT_EQ(report(4, 1), 0);
    EXPECT_TRUE(reported.simplified().startsWith(
        u"Sorry, no records were found meeting your search criteria. Closing this report window will return you to your Vardelin display window."_s))
        << reported.toStdString();
    EXPECT_FALSE(reported.contains(u"hours"_s)) << "no durations have no sum";
    expectText(u"50%"_s);
    script.expect(u"frmSearchDatePicker"_s, [](QWidget *form) { choose(form, u"mnuContinue"_s); });
    EXPECT_EQ(report(5, 4), 1);
    EXPECT_TRUE(reported.startsWith(u"Vardelin Report\n"_s)) << "the title was of one report only";
    expectText(u"'"_s); // goes in as typed
    EXPECT_THROW(report(5, 0), RunTimeError);
    EXPECT_THROW(report(2, 0), RunTimeError) << "a type that has no statement";
    EXPECT_EQ(reportedLogs, -1);
}

} // namespace vardelin::testing_support
