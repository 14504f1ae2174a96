// The contact database, its report, and the closing of cases, on a real file.

#include "tests/contacts/ClientWindows.h"
#include "contacts/ActiveClientsReport.h"
#include "platform/base/Dates.h"
#include "platform/report/ReportExport.h"
#include "platform/ui/MaskEdBox.h"

#include <QPlainTextEdit>
#include <QPrinter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

TEST_F(ClientWindowsTest, OpensOnTheLastOfTheAlphabetAndShowsEveryField)
{
    addThree();
    global.CurrentSQL = u"kept"_s;
    const auto form = make<frmActiveClients>();
    EXPECT_EQ(form->windowTitle(), u"Contact Database"_s);
    EXPECT_EQ(tab(form.get()), u"Young, Al"_s);
    EXPECT_EQ(global.SearchClient, u"Young, Al"_s);
    EXPECT_EQ(global.CurrentSQL, u"kept"_s);
    EXPECT_EQ(shown(form.get(), u"MaskEdBox1(1)"_s), u"(517) 555-0001"_s);
    navigate(form.get(), u"First"_s);
    EXPECT_EQ(tab(form.get()), u"Ash, Bo"_s);
    EXPECT_EQ(shown(form.get(), u"MaskEdBox1(1)"_s), u"(517) 555-0002"_s);

    const std::array focused{u"Text1(0)", u"Text2(0)", u"Text3", u"Text4", u"Text5(0)"};
    auto *tabs = control<TabStrip>(form.get(), u"TabStrip1"_s);
    form->resize(form->minimumSize());
    for (int i = 4; i >= 0; --i) {
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(i).center());
        EXPECT_EQ(QApplication::focusWidget()->objectName(), QString::fromUtf16(focused.at(std::size_t(i))));
        QCoreApplication::processEvents();
        EXPECT_FALSE(QApplication::focusWidget()->visibleRegion().isEmpty()) << i;
        for (const QGroupBox *frame : form->findChildren<QGroupBox *>())
            EXPECT_EQ(frame->isVisible(), frame->objectName()[5] == QChar(u'1' + i)) << i;
    }
    const QStringList columns =
        engine.OpenDatabase(global.DatabaseFileName)->OpenRecordset(u"Active Clients"_s)->FieldNames();
    EXPECT_EQ(form->findChildren<QGroupBox *>().size(), columns.size() - 2)
        << "a frame for each but the names";
}

TEST_F(ClientWindowsTest, ALongHistoryIsBrokenIntoLinesWithoutABarToTheSide)
{
    addClient(u"Roe"_s, u"Jane"_s,
              {{u"History"_s, u"Born in Escanaba; worked at the mill. "_s.repeated(80)}});
    const auto form = make<frmActiveClients>();
    auto *tabs = control<TabStrip>(form.get(), u"TabStrip1"_s);
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(3).center());
    QCoreApplication::processEvents();
    const auto *history = control<QPlainTextEdit>(form.get(), u"Text4"_s);
    EXPECT_TRUE(history->verticalScrollBar()->isVisible());
    EXPECT_FALSE(history->horizontalScrollBar()->isVisible());
}

TEST_F(ClientWindowsTest, ShowingWritesNothingAndReturnDropsWhatNoMoveCommitted)
{
    addThree();
    const QStringList before = exportedRows(global.DatabaseFileName, u"Active Clients"_s);
    auto form = make<frmActiveClients>();
    for (const char16_t *button : {u"First", u"Next", u"Next", u"Previous", u"Last"})
        navigate(form.get(), QString::fromUtf16(button));
    dialogs.expect(updated, Answer::Yes, Buttons::YesNo);
    choose(form.get(), u"mnuSave"_s);
    typeOver(control<QLineEdit>(form.get(), u"Text1(3)"_s), u"Lansing"_s);
    choose(form.get(), u"mnuReturn"_s);
    EXPECT_FALSE(form->isVisible());
    form.reset();
    EXPECT_EQ(exportedRows(global.DatabaseFileName, u"Active Clients"_s), before) << "no date, no digit";
}

TEST_F(ClientWindowsTest, SaveAndMovesCommitEveryKindOfField)
{
    addThree();
    const auto form = make<frmActiveClients>();
    typeOver(control<QLineEdit>(form.get(), u"Text1(3)"_s), u"Łódź"_s);
    control<QLineEdit>(form.get(), u"MaskEdBox1(0)"_s)->setFocus();
    QTest::keyClicks(QApplication::focusWidget(), u"49783-12"_s);
    control<QPlainTextEdit>(form.get(), u"Text3"_s)->insertPlainText(u"Call\u00a01\nWrite"_s);
    QTest::keyClick(control<QWidget>(form.get(), u"DTPicker1"_s)->focusProxy(), Qt::Key_Space);
    dialogs.expect(updated, Answer::Yes, Buttons::YesNo);
    choose(form.get(), u"mnuSave"_s);
    EXPECT_EQ(tab(form.get()), u"Young, Al"_s) << "back on the last row";
    const QString row = exportedRows(global.DatabaseFileName, u"Active Clients"_s).join(u'\n');
    for (const QString &text : {u"Łódź"_s, u"\"4978312\""_s, u"2026-10-16"_s, u"\"(517) 555-0001\""_s,
                                u"\"5175550002\""_s, u"Call\u00a01\r\nWrite"_s})
        EXPECT_TRUE(row.contains(text)) << text.toStdString() << " in " << row.toStdString();
    if (const auto read = readByNpm(global.DatabaseFileName, u"Active Clients"_s, VARDELIN_ROOT)) {
        ASSERT_EQ(read->size(), 3);
        const QJsonObject al = read->at(1);
        for (const auto &[name, text] : {std::pair{u"City"_s, u"Łódź"_s},
                                         {u"Zip Code"_s, u"4978312"_s},
                                         {u"Work Telephone"_s, u"(517) 555-0001"_s},
                                         {u"Retainer Date"_s, u"2026-10-16 00:00:00"_s},
                                         {u"Things To Do"_s, u"Call\u00a01\r\nWrite"_s}})
            EXPECT_EQ(al.value(u"Active Client "_s + name).toString(), text) << name.toStdString();
        EXPECT_TRUE(al.value(u"Active Client State"_s).isNull()) << "never touched";
    }

    typeOver(control<QLineEdit>(form.get(), u"Text1(4)"_s), QString(60, u'x'));
    dialogs.expect(u"Error in data control Adodc1: "_s + descriptionOf(3163) +
                   u" for Active Clients table."_s);
    choose(form.get(), u"mnuSave"_s);
    EXPECT_EQ(shown(form.get(), u"Text1(4)"_s), QString(60, u'x')) << "what was typed stays";
    typeOver(control<QLineEdit>(form.get(), u"Text1(4)"_s), u"MI"_s);
    dialogs.expect(updated, Answer::No, Buttons::YesNo);
    choose(form.get(), u"mnuSave"_s);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(column(u"Active Clients"_s, u"Active Client State"_s),
              (QStringList{QString(), u"MI"_s, QString()}));
}

TEST_F(ClientWindowsTest, TheScrollBarLeavesTheTabBehindUntilTheNextMove)
{
    addThree();
    const auto form = make<frmActiveClients>();
    auto *bar = control<QScrollBar>(form.get(), u"HScroll1"_s);
    EXPECT_EQ(bar->value(), bar->maximum());
    bar->setValue(0);
    EXPECT_EQ(shown(form.get(), u"MaskEdBox1(1)"_s), u"(517) 555-0002"_s) << "the first row";
    EXPECT_EQ(tab(form.get()), u"Young, Al"_s);
    EXPECT_EQ(global.SearchClient, u"Young, Al"_s);
    bar->setValue(bar->maximum() * 3 / 5);
    EXPECT_EQ(bar->value(), bar->maximum() * 3 / 5) << "not pushed to a record's place";
    navigate(form.get(), u"Next"_s);
    EXPECT_EQ(tab(form.get()), u"Young, Al"_s);
    navigate(form.get(), u"Previous"_s);
    EXPECT_EQ(tab(form.get()), u"Roe, Jane"_s);
    bar->setValue(bar->maximum());
    EXPECT_EQ(shown(form.get(), u"MaskEdBox1(1)"_s), u"(517) 555-0001"_s);
}

TEST_F(ClientWindowsTest, WithoutClientsOnlyReturnIsLeft)
{
    dialogs.expect(nothing);
    const auto form = make<frmActiveClients>();
    EXPECT_FALSE(control<QAction>(form.get(), u"mnuSave"_s)->isEnabled());
    EXPECT_FALSE(control<QAction>(form.get(), u"mnuReport"_s)->isEnabled());
    for (const QLineEdit *field : form->findChildren<QLineEdit *>())
        EXPECT_TRUE(digitsOf(u"(###) ###-####"_s, field->text()).value_or(QString()).isEmpty())
            << field->objectName().toStdString();
    EXPECT_EQ(tab(form.get()), QString());
}

TEST_F(ClientWindowsTest, OneClientIsSavedInPlaceAndTheCaptionFollowsTheWidth)
{
    addClient(u"Roe"_s, u"Jane"_s);
    const auto form = make<frmActiveClients>();
    typeOver(control<QLineEdit>(form.get(), u"Text1(0)"_s), u"1 Main"_s);
    dialogs.expect(updated, Answer::Yes, Buttons::YesNo);
    choose(form.get(), u"mnuSave"_s);
    EXPECT_EQ(tab(form.get()), u"Roe, Jane"_s);
    EXPECT_EQ(column(u"Active Clients"_s, u"Active Client First Address"_s), QStringList{u"1 Main"_s});
    const auto *frame = control<QGroupBox>(form.get(), u"Frame1(9)"_s);
    const int edges = form->frameGeometry().width() - form->width();
    form->resize(466 - edges, 500); // 6990 twips over all
    EXPECT_EQ(frame->title(), u"Alt Telephone"_s);
    form->resize(467 - edges, 500); // 7005
    EXPECT_EQ(frame->title(), u"Alternative Telephone"_s);
    const int inside = control<QScrollArea>(form.get(), QString())->viewport()->width();
    EXPECT_EQ(frame->width(), (inside - 6) / 4) << "a quarter of what lies between the margins";
    EXPECT_EQ(control<QGroupBox>(form.get(), u"Frame1(3)"_s)->width(), (inside - 12) / 3);
    EXPECT_GE(frame->geometry().top(), 4 * 41) << "the fifth row";
}

TEST_F(ClientWindowsTest, TheReportPutsItsBlocksSideBySide)
{
    addClient(u"Roe"_s, u"Jane"_s,
              {{u"First Address"_s, u"1 Main"_s},
               {u"City"_s, u"Lansing"_s},
               {u"State"_s, u"MI"_s},
               {u"Zip Code"_s, u"48933"_s},
               {u"Home Telephone"_s, u"5175550001"_s},
               {u"Work Telephone"_s, u"(517) 555-0002"_s},
               {u"Email Address"_s, u"jane@example.org"_s},
               {u"Retainer Date"_s, serialOf({2003, 1, 5})},
               {u"Referrer"_s, u"Bo Ash"_s},
               {u"Defendant"_s, u"Doe"_s},
               {u"Things To Do"_s, u"Call\rWrite"_s}});
    addClient(u"Ash"_s, u"Bo"_s, {{u"City"_s, u"Flint"_s}, {u"Zip Code"_s, u"48501"_s}});
    global.CurrentSQL = u"kept"_s;
    const auto form = make<frmActiveClients>();
    choose(form.get(), u"mnuReport"_s);
    EXPECT_EQ(global.CurrentSQL, u"kept"_s);
    for (const char16_t *text :
         {u"Vardelin Active Clients Report", u"Client Information", u"Priority Things To Do", u"Jane Roe",
          u"Lansing, MI  48933", u"Home: (517) 555-0001", u"Work: (517) 555-0002", u"Email: jane@example.org",
          u"Retainer Date: January 5, 2003", u"Referrer: Bo Ash", u"Defendant: Doe", u"Call", u"Write"})
        EXPECT_TRUE(printed.contains(QString::fromUtf16(text)))
            << QString::fromUtf16(text).toStdString() << "\n"
            << printed.toStdString();
    EXPECT_FALSE(printed.contains(u"Flint"_s)) << "no state: no city, no zip code";
    EXPECT_FALSE(printed.contains(u'\r'));
    EXPECT_LT(printed.indexOf(u"Bo Ash"_s), printed.indexOf(u"Jane Roe"_s));
    EXPECT_TRUE(printed.contains(u"Jane Roe\tRetainer"_s)) << "the same line: " << printed.toStdString();

    ado::Connection connection;
    connection.Open(ado::connectionText(global.DatabaseFileName));
    ado::Recordset records;
    records.Open(activeClientsStatement(), connection);
    EXPECT_EQ(joinText(records.Fields(u"Client"_s)), u"Bo Ash"_s);
    EXPECT_EQ(joinText(records.Fields(u"CaseInfo"_s)) + joinText(records.Fields(u"Defendant"_s)) +
                  joinText(records.Fields(u"Things To Do"_s)),
              QString());
    records.MoveNext();
    EXPECT_TRUE(joinText(records.Fields(u"Client"_s)).endsWith(u"\rEmail: jane@example.org\r\r"_s));
    EXPECT_EQ(joinText(records.Fields(u"Defendant"_s)), u"\rDefendant: Doe"_s) << "begins a line lower";
}

// As it comes out of a printer: read back by another program.
TEST_F(ClientWindowsTest, ThePrintedReportKeepsAClientOnOnePageAndLosesNoLine)
{
    if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
        GTEST_SKIP() << "pdftotext (poppler-utils) is not installed: the print was not read back";
    constexpr int kClients = 9, kLong = 4, kLongLines = 90;
    const auto lines = [](int client, const char16_t *kind, int count) {
        QString text;
        for (int i = 1; i <= count; ++i)
            text += u"%1%2-%3 of the matter\r\n"_s.arg(QString::fromUtf16(kind)).arg(client).arg(i);
        return text;
    };
    const auto toDo = [](int client) { return client == kLong ? kLongLines : 5 + 2 * client; };
    for (int client = 1; client <= kClients; ++client)
        addClient(u"Last%1"_s.arg(client), u"First%1"_s.arg(client),
                  {{u"Retainer Terms"_s, lines(client, u"Terms", 12 - client)},
                   {u"Opposing Attorney"_s, u"Counsel%1"_s.arg(client)},
                   {u"Things To Do"_s, lines(client, u"Do", toDo(client))}});
    const QString pdf = folder.filePath(u"clients.pdf"_s);
    global.openers.showReport = [&](DataReport &report) {
        QPrinter toFile(QPrinter::HighResolution);
        toFile.setOutputFormat(QPrinter::PdfFormat);
        toFile.setOutputFileName(pdf);
        const FaceMeasurer measurer;
        ReportPages pages(report.design(), report.records(), measurer, paperOf(toFile));
        ASSERT_TRUE(printReport(pages, toFile, [](int, int) { return true; }));
    };
    choose(make<frmActiveClients>().get(), u"mnuReport"_s);
    QStringList pages = outputOf(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s}).split(u'\f');
    EXPECT_EQ(pages.takeLast(), QString());
    ASSERT_GT(pages.size(), 3);
    const auto pageOf = [&](const QString &text) {
        int found = -1;
        for (int page = 0; page < pages.size(); ++page) {
            if (!pages[page].contains(text + u' '))
                continue;
            EXPECT_EQ(found, -1) << text.toStdString() << " is there twice";
            found = page;
        }
        EXPECT_GE(found, 0) << text.toStdString() << " is lost";
        return found;
    };
    for (int page = 0; page < pages.size(); ++page) {
        EXPECT_EQ(pages[page].contains(u"Vardelin Active Clients Report"_s), page == 0);
        EXPECT_EQ(pages[page].count(u"Priority Things To Do"_s), 1);
    }
    for (int client = 1; client <= kClients; ++client) {
        int last = pageOf(u"Last%1"_s.arg(client));
        for (int i = 1; i <= toDo(client); ++i) {
            const int page = pageOf(u"Do%1-%2"_s.arg(client).arg(i));
            EXPECT_TRUE(page == last || (client == kLong && page == last + 1)) << client << ' ' << i;
            last = page;
        }
    }
    EXPECT_EQ(pageOf(u"Do%1-%2"_s.arg(kLong).arg(kLongLines)), pageOf(u"Last%1"_s.arg(kLong)) + 1);
}

TEST_F(ClientWindowsTest, ADeactivationMovesTheRowItsListEntryAndThePickLists)
{
    addThree();
    addClient(u"Stone"_s, u"Mo"_s,
              {{u"City"_s, u"Lansing"_s},
               {u"Cell Telephone"_s, u"1"_s},
               {u"Claim Type"_s, u"Injury"_s},
               {u"Retainer Date"_s, serialOf({2003, 1, 5})}});
    add(u"Things To Do"_s, {{u"ThingToDo"_s, u"Call"_s}, {u"TTD Client Last Name"_s, u"Stone"_s}});
    call();
    const auto form = make<frmInactiveClients>();
    EXPECT_EQ(form->windowTitle(), u"Inactive Clients"_s);
    EXPECT_EQ(control<QAction>(form.get(), u"mnuDisplayInactiveClients"_s)->text(),
              u"Display inactive Clients"_s);
    EXPECT_FALSE(control<QAction>(form.get(), u"mnuDeactivateClient"_s)->isEnabled());
    expectQuestion(u"Mo Stone"_s, Answer::No);
    clickOn(form.get(), u"Stone, Mo"_s);
    EXPECT_EQ(column(u"Active Clients"_s, u"Client Last Name"_s).size(), 4);
    EXPECT_TRUE(caller.refilled.empty());

    expectQuestion(u"Mo Stone"_s, Answer::Yes);
    answerDay(u"mnuReturn"_s);
    clickOn(form.get(), u"Stone, Mo"_s);
    const QStringList left{u"Ash, Bo"_s, u"Roe, Jane"_s, u"Young, Al"_s};
    EXPECT_EQ(list(form.get())->entries(), left);
    EXPECT_EQ(control<ListBox>(form.get(), u"List2"_s)->entries(), QStringList{u"Stone, Mo"_s});
    EXPECT_EQ(global.List1[0], left);
    ASSERT_EQ(caller.refilled.size(), 1u);
    EXPECT_EQ(caller.refilled.front(), std::pair(PickList::Clients, left));
    EXPECT_EQ(exportedRows(global.DatabaseFileName, u"Inactive Clients"_s),
              QStringList{u"\"Mo\",\"Stone\",,,,\"Lansing\",,,,,,\"2003-01-05 00:00:00\",,,\"Injury\","_s})
        << "left with Return before any other: no day";
    EXPECT_FALSE(column(u"Active Clients"_s, u"Client Last Name"_s).contains(u"Stone"_s));
    EXPECT_EQ(column(u"Things To Do"_s, u"ThingToDo"_s), QStringList{u"Call"_s});

    for (const auto &[menu, last, first] :
         {std::tuple{u"mnuDone"_s, u"Ash"_s, u"Bo"_s}, {u"mnuReturn"_s, u"Roe"_s, u"Jane"_s}}) {
        expectQuestion(first + u' ' + last, Answer::Yes);
        answerDay(menu);
        clickOn(form.get(), joinName(last, first));
    }
    EXPECT_EQ(column(u"Inactive Clients"_s, u"Inactive Client Case Closed Date"_s),
              (QStringList{QString(), u"10/16/2026"_s, u"10/16/2026"_s}))
        << "the second one with Done, the third with that day";
}

TEST_F(ClientWindowsTest, AnEntryWithoutItsRowMovesInTheListsAlone)
{
    addThree();
    call();
    const auto form = make<frmInactiveClients>();
    {
        const auto database = engine.OpenDatabase(global.DatabaseFileName);
        const auto rows = database->OpenRecordset(u"Active Clients"_s);
        rows->MoveFirst();
        rows->Delete();
    }
    expectQuestion(u"Jane Roe"_s, Answer::Yes);
    answerDay(u"mnuDone"_s);
    clickOn(form.get(), u"Roe, Jane"_s);
    EXPECT_EQ(control<ListBox>(form.get(), u"List2"_s)->entries(), QStringList{u"Roe, Jane"_s});
    EXPECT_EQ(column(u"Inactive Clients"_s, u"Inactive Client Last Name"_s), QStringList());
}

TEST_F(ClientWindowsTest, TheDisplayViewShowsAndSavesClosedCases)
{
    for (const char16_t *last : {u"Roe", u"Ash"})
        add(u"Inactive Clients"_s, {{u"Inactive Client Last Name"_s, QString::fromUtf16(last)},
                                    {u"Inactive Client First Name"_s, u"Jo"_s}});
    const auto form = make<frmInactiveClients>();
    choose(form.get(), u"mnuDisplayInactiveClients"_s);
    EXPECT_FALSE(list(form.get())->isVisible());
    EXPECT_EQ(tab(form.get()), u"Roe, Jo"_s);
    auto *bar = control<QScrollBar>(form.get(), u"HScroll1"_s);
    bar->setValue(0);
    EXPECT_EQ(tab(form.get()), u"Ash, Jo"_s) << "here the scroll bar's moves count, too";
    typeOver(control<QLineEdit>(form.get(), u"Text1(3)"_s), u"Flint"_s);
    dialogs.expect(u"Database updated. Continue with Inactive Clients window?"_s, Answer::No, Buttons::YesNo);
    choose(form.get(), u"mnuSave"_s);
    EXPECT_TRUE(list(form.get())->isVisible());
    EXPECT_FALSE(control<QAction>(form.get(), u"mnuSave"_s)->isEnabled());
    EXPECT_EQ(column(u"Inactive Clients"_s, u"Inactive Client City"_s), (QStringList{QString(), u"Flint"_s}));
    EXPECT_EQ(column(u"Inactive Clients"_s, u"Inactive Client Case Closed Date"_s),
              (QStringList{QString(), QString()}))
        << "shown, not written";
}

TEST_F(ClientWindowsTest, WithoutClosedCasesTheDisplayViewLeavesOnlyReturn)
{
    const auto form = make<frmInactiveClients>();
    dialogs.expect(nothing);
    choose(form.get(), u"mnuSave"_s); // which is on until the views change
    dialogs.expect(nothing);
    choose(form.get(), u"mnuDisplayInactiveClients"_s);
    for (const char16_t *name : {u"mnuSave", u"mnuDeactivateClient", u"mnuDisplayInactiveClients"})
        EXPECT_FALSE(control<QAction>(form.get(), QString::fromUtf16(name))->isEnabled());
    choose(form.get(), u"mnuReturn"_s);
    EXPECT_FALSE(form->isVisible());
}

TEST_F(ClientWindowsTest, ARecordThatIsGoneIsToldAndPassed)
{
    addThree();
    const auto form = make<frmActiveClients>();
    {
        const auto database = engine.OpenDatabase(global.DatabaseFileName);
        database->OpenRecordset(u"Active Clients"_s)->Delete(); // Roe, the second by name
    }
    dialogs.expect(u"Error in contact database module: Record is deleted.  record position is: 2"_s);
    dialogs.expect(u"Error in data control Adodc1: Record is deleted. for Active Clients table."_s);
    navigate(form.get(), u"Previous"_s);
    navigate(form.get(), u"Previous"_s);
    EXPECT_EQ(tab(form.get()), u"Ash, Bo"_s);
}

TEST_F(ClientWindowsTest, AFileThatIsGoneIsToldAsTheDataControlsError)
{
    const auto form = make<frmInactiveClients>();
    const QString file = global.DatabaseFileName, aside = file + u".aside"_s;
    ASSERT_TRUE(QFile::rename(file, aside));
    dialogs.expectBeginning(u"Error in data control module.Could not find file"_s);
    choose(form.get(), u"mnuDisplayInactiveClients"_s);
    EXPECT_EQ(ended, 0);
    EXPECT_FALSE(control<QAction>(form.get(), u"mnuSave"_s)->isEnabled());
    dialogs.expectBeginning(u"Error in data control Adodc1: Could not find file"_s);
    const auto other = make<frmActiveClients>();
    EXPECT_FALSE(control<QAction>(other.get(), u"mnuReport"_s)->isEnabled());
    ASSERT_TRUE(QFile::rename(aside, file));
}

} // namespace vardelin::testing_support
