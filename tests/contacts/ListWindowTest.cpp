#include "tests/contacts/ListWindows.h"

#include <QElapsedTimer>
#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

// What differs from window to window.
struct Design
{
    QString form, caption, listFrame, listCaption, table, lastColumn, firstColumn;
    QStringList textFrames, textTips;
    QString listTip;
    QStringList menus;
    QString emptyMessage;
    PickList list;
    bool deleteKey;
    std::unique_ptr<QDialog> (ListWindowsTest::*make)();
    bool twoNames() const { return !firstColumn.isEmpty(); }
};

struct ListWindowTest : ListWindowsTest
{
    ListWindowTest()
    {
        global.ClientCaption = u"Patient"_s;
        global.EmployeeCaption = u"Doctor"_s;
        global.ProjectCaption = u"Case"_s;
    }
    static std::vector<Design> designs()
    {
        const QString forgot = u"You forgot to enter a first name or last name, please try again."_s;
        const QString enter = u"Press [Enter] when first and last names have been added"_s;
        const QStringList names{u"Add first name here"_s, u"Add last name here"_s};
        const auto tip = [](const QString &what) {
            return u"Use [Ctrl] to select multiple %1 for deletion"_s.arg(what);
        };
        return {{u"frmClient"_s,
                 u"Patient List"_s,
                 u"Frame3"_s,
                 u"Patient"_s,
                 u"Active Clients"_s,
                 u"Client Last Name"_s,
                 u"Client First Name"_s,
                 names,
                 {enter, enter},
                 tip(u"clients"_s),
                 {u"mnuReturn=&Return"_s, u"mnuAdd=&Add"_s, u"mnuDelete=Delete selected Patient"_s,
                  u"mnuPrintList=&Print list"_s, u"mnuDone=&Done"_s},
                 forgot,
                 PickList::Clients,
                 false,
                 &ListWindowsTest::make<frmClient>},
                {u"frmEmployee"_s,
                 u"Doctor List"_s,
                 u"Frame3"_s,
                 u"Doctor"_s,
                 u"Employees"_s,
                 u"Employee Last Name"_s,
                 u"Employee First Name"_s,
                 names,
                 {u"Enter employee's first name here"_s, u"Enter employee's last name here"_s},
                 tip(u"employees"_s),
                 {u"mnuReturn=&Return"_s, u"mnuAdd=&Add"_s, u"mnuDelete=&Delete"_s,
                  u"mnuDefaultEmployee=&Select default employee"_s, u"mnuPrintList=&Print list"_s,
                  u"mnuDone=&Done"_s},
                 forgot,
                 PickList::Employees,
                 true,
                 &ListWindowsTest::make<frmEmployee>},
                {u"frmProject"_s,
                 u"Case List"_s,
                 u"Frame2"_s,
                 u"Case"_s,
                 u"Projects"_s,
                 u"Projects"_s,
                 QString(),
                 {u"Add Project Here"_s},
                 {u"Enter client's first name here"_s},
                 tip(u"projects"_s),
                 {u"mnuReturn=&Return"_s, u"mnuAdd=&Add"_s, u"mnuDelete=&Delete"_s,
                  u"mnuPrintList=&Print List"_s, u"mnuDone=&Done"_s},
                 u"You did not enter a Case."_s,
                 PickList::Projects,
                 true,
                 &ListWindowsTest::make<frmProject>},
                {u"frmRate"_s,
                 u"Rates List"_s,
                 u"Frame2"_s,
                 u"Vardelin's List of Rates"_s,
                 u"Rates"_s,
                 u"Rates"_s,
                 QString(),
                 {u"Add Rate Here"_s},
                 {u"Enter rate here"_s},
                 tip(u"rates"_s),
                 {u"mnuReturn=&Return"_s, u"mnuAdd=&Add"_s, u"mnuDelete=&Delete"_s, u"mnuDone=&Done"_s},
                 u"You did not enter a rate."_s,
                 PickList::Rates,
                 true,
                 &ListWindowsTest::make<frmRate>},
                {u"frmActivity"_s,
                 u" List"_s,
                 u"Frame2"_s,
                 u"Vardelin's List of Activities"_s,
                 u"Activities"_s,
                 u"Activities"_s,
                 QString(),
                 {u"Add Activity Here"_s},
                 {u"Enter activity here"_s},
                 tip(u"activities"_s),
                 {u"mnuReturn=&Return "_s, u"mnuAdd=&Add"_s, u"mnuDelete=&Delete"_s,
                  u"mnuPrintList=&Print List"_s, u"mnuDone=&Done"_s},
                 u"You did not enter an activity."_s,
                 PickList::Activities,
                 true,
                 &ListWindowsTest::make<frmActivity>}};
    }
    // Types what a window adds from, and presses Enter in the last field.
    static void enter(const QDialog *form, const Design &design, const QString &last, const QString &first)
    {
        if (design.twoNames())
            typeOver(text(form, 1), first);
        QLineEdit *field = text(form, design.twoNames() ? 2 : 1);
        typeOver(field, last);
        QTest::keyClick(field, Qt::Key_Return);
    }
    static QString entry(const Design &design, const QString &last, const QString &first)
    {
        return design.twoNames() ? last + u", "_s + first : last;
    }
    QStringList stored(const Design &design) { return column(design.table, design.lastColumn); }
};

TEST_F(ListWindowTest, LookLikeTheirDesign)
{
    for (const Design &design : designs()) {
        SCOPED_TRACE(design.form.toStdString());
        const auto form = (this->*design.make)();
        EXPECT_EQ(form->objectName(), design.form);
        EXPECT_EQ(form->windowTitle(), design.caption);
        EXPECT_EQ(control<QGroupBox>(form.get(), design.listFrame)->title(), design.listCaption);
        for (int i = 0; i < design.textFrames.size(); ++i) {
            EXPECT_EQ(control<QGroupBox>(form.get(), u"Frame%1"_s.arg(i + 1))->title(), design.textFrames[i]);
            EXPECT_EQ(text(form.get(), i + 1)->toolTip(), design.textTips[i]);
        }
        EXPECT_EQ(list(form.get())->toolTip(), design.listTip);
        QStringList menus;
        for (const QAction *action : form->findChild<QMenuBar *>()->actions())
            menus += action->objectName() + u'=' + action->text();
        EXPECT_EQ(menus, design.menus);
        EXPECT_TRUE(text(form.get(), 1)->hasFocus());
    }
}

TEST_F(ListWindowTest, EnterAddsToTableAndListAtOnce)
{
    for (const Design &design : designs()) {
        SCOPED_TRACE(design.form.toStdString());
        const auto form = (this->*design.make)();
        const QStringList before = stored(design);
        enter(form.get(), design, u"Zoë"_s, u"Ann"_s);
        EXPECT_EQ(stored(design), before + QStringList{u"Zoë"_s});
        EXPECT_TRUE(list(form.get())->entries().contains(entry(design, u"Zoë"_s, u"Ann"_s)));
        EXPECT_EQ(text(form.get(), 1)->text(), QString());
        EXPECT_TRUE(text(form.get(), 1)->hasFocus());
        EXPECT_TRUE(form->isVisible());

        // The table gets the trimmed text; the list of two names the text as it stands.
        enter(form.get(), design, u" Young"_s, u"Bo  "_s);
        EXPECT_EQ(stored(design).last(), u"Young"_s);
        const QString untrimmed = design.twoNames() ? u" Young, Bo  "_s : u"Young"_s;
        EXPECT_TRUE(list(form.get())->entries().contains(untrimmed));

        dialogs.expect(design.emptyMessage);
        enter(form.get(), design, u"   "_s, u"Cole"_s);
        EXPECT_TRUE(text(form.get(), 1)->hasFocus());
        if (design.twoNames()) {
            EXPECT_EQ(text(form.get(), 1)->text() + text(form.get(), 2)->text(), QString());
            dialogs.expect(design.emptyMessage);
            enter(form.get(), design, u"Dee"_s, QString());
            QTest::keyClick(text(form.get(), 1), Qt::Key_Return);
            QTest::keyClick(text(form.get(), 1), Qt::Key_Escape);
            EXPECT_TRUE(form->isVisible()) << "the first name's field knows neither key";
        }
        EXPECT_EQ(stored(design).size(), before.size() + 2);
        const QStringList listed = list(form.get())->entries();
        EXPECT_TRUE(std::is_sorted(listed.begin(), listed.end(), listLess));
    }
}

TEST_F(ListWindowTest, OnlyProjectsRefuseTheCommaOfNames)
{
    for (const Design &design : designs()) {
        SCOPED_TRACE(design.form.toStdString());
        const auto form = (this->*design.make)();
        const qsizetype before = stored(design).size();
        if (design.list == PickList::Projects)
            dialogs.expect(
                u"Do not use a comma followed by a space when entering a Case.  This is reserved for the "
                u"format of a Patient.  Please try again."_s);
        enter(form.get(), design, u"A, B"_s, u"C"_s);
        EXPECT_EQ(stored(design).size(), before + (design.list == PickList::Projects ? 0 : 1));
        // A name with a comma of its own splits wrongly, so its row isn't found.
        select(form.get(), {entry(design, u"A, B"_s, u"C"_s)});
        choose(form.get(), u"mnuDelete"_s);
        EXPECT_EQ(stored(design).size(), before + (design.twoNames() ? 1 : 0));
        EXPECT_FALSE(list(form.get())->entries().contains(entry(design, u"A, B"_s, u"C"_s)));
    }
}

TEST_F(ListWindowTest, DeleteTakesAllThatAreSelectedWithoutAQuestion)
{
    for (const Design &design : designs()) {
        SCOPED_TRACE(design.form.toStdString());
        const auto form = (this->*design.make)();
        choose(form.get(), u"mnuDelete"_s); // nothing selected: nothing happens
        for (const char16_t *name : {u"Q1", u"Q2", u"Q3", u"Q4"})
            enter(form.get(), design, QString::fromUtf16(name), u"Ann"_s);
        enter(form.get(), design, u"Q5 "_s, u"Ann"_s);
        const QStringList before = stored(design);
        select(form.get(), {entry(design, u"Q2"_s, u"Ann"_s), entry(design, u"Q4"_s, u"Ann"_s)});
        list(form.get())->setFocus();
        QTest::keyClick(list(form.get()), Qt::Key_Delete);
        EXPECT_EQ(before.size() - stored(design).size(), design.deleteKey ? 2 : 0);
        choose(form.get(), u"mnuDelete"_s);
        EXPECT_EQ(stored(design).filter(u"Q"_s), (QStringList{u"Q1"_s, u"Q3"_s, u"Q5"_s}));
        EXPECT_FALSE(list(form.get())->entries().contains(entry(design, u"Q2"_s, u"Ann"_s)));
        // Listed untrimmed, the entry has no row: it goes from the list alone.
        select(form.get(), {entry(design, design.twoNames() ? u"Q5 "_s : u"Q5"_s, u"Ann"_s)});
        choose(form.get(), u"mnuDelete"_s);
        EXPECT_EQ(stored(design).contains(u"Q5"_s), design.twoNames());
        EXPECT_EQ(list(form.get())->entries().filter(u"Q5"_s), QStringList());
        EXPECT_EQ(exportedRows(global.DatabaseFileName, design.table).size(), stored(design).size());
    }
    EXPECT_EQ(global.ClientLastName, u"Q5 "_s);
}

// Delete and Done begin with the same letter: Alt+D alone must not take an employee away.
TEST_F(ListWindowTest, TheKeyOfDeleteAndDoneOnlyStepsBetweenThem)
{
    add(u"Employees"_s, {{u"Employee Last Name"_s, u"Roe"_s}, {u"Employee First Name"_s, u"Jane"_s}});
    const auto form = make<frmEmployee>();
    select(form.get(), {u"Roe, Jane"_s});
    list(form.get())->setFocus();
    const QStringList before = column(u"Employees"_s, u"Employee Last Name"_s);
    QTest::keyClick(list(form.get()), Qt::Key_D, Qt::AltModifier);
    const auto *bar = form->findChild<QMenuBar *>();
    ASSERT_NE(bar->activeAction(), nullptr);
    EXPECT_EQ(bar->activeAction()->objectName(), u"mnuDelete"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_TRUE(list(form.get())->hasFocus());
    for (int press = 0; press < 2; ++press)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_D, Qt::AltModifier);
    EXPECT_EQ(bar->activeAction()->objectName(), u"mnuDone"_s);
    EXPECT_EQ(column(u"Employees"_s, u"Employee Last Name"_s), before);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(column(u"Employees"_s, u"Employee Last Name"_s), before);
}

TEST_F(ListWindowTest, OfTwoEqualRowsOneStays)
{
    for (const Design &design : designs()) {
        SCOPED_TRACE(design.form.toStdString());
        if (design.list == PickList::Clients)
            continue; // its key allows no second one: see below
        const auto form = (this->*design.make)();
        enter(form.get(), design, u"Twin"_s, u"Ann"_s);
        enter(form.get(), design, u"Twin"_s, u"Ann"_s);
        list(form.get())->clearSelection();
        list(form.get())
            ->setCurrentRow(
                static_cast<int>(list(form.get())->entries().indexOf(entry(design, u"Twin"_s, u"Ann"_s))),
                QItemSelectionModel::ClearAndSelect);
        choose(form.get(), u"mnuDelete"_s);
        EXPECT_EQ(stored(design).count(u"Twin"_s), 1);
        EXPECT_EQ(list(form.get())->entries().count(entry(design, u"Twin"_s, u"Ann"_s)), 1);
    }
}

TEST_F(ListWindowTest, TheSameClientTwiceIsTheEnginesErrorAndTheEnd)
{
    const Design design = designs().front();
    const auto form = make<frmClient>();
    enter(form.get(), design, u"Archer"_s, u"Ann"_s);
    dialogs.expectBeginning(u"Run-time error '3022':\n\nThe changes you requested to the table"_s);
    enter(form.get(), design, u"Archer"_s, u"Ann"_s);
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(stored(design), QStringList{u"Archer"_s});
}

TEST_F(ListWindowTest, DoneRefillsTheCacheAndTheCallerAndReturnDoesNot)
{
    for (const Design &design : designs()) {
        SCOPED_TRACE(design.form.toStdString());
        QStringList &cache = global.List1[static_cast<std::size_t>(design.list)];
        cache = {u"as it was"_s};
        call().refilled.clear();
        auto form = (this->*design.make)();
        enter(form.get(), design, u"Zzz"_s, u"Ann"_s);
        choose(form.get(), u"mnuReturn"_s);
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(cache, QStringList{u"as it was"_s});
        EXPECT_TRUE(caller.refilled.empty());

        form = (this->*design.make)();
        const QStringList entries = list(form.get())->entries();
        EXPECT_EQ(entries.last(), entry(design, u"Zzz"_s, u"Ann"_s)) << "the table had it at once";
        // Esc in the field that Enter adds from is Done, but in the list of activities, where it is Return.
        QTest::keyClick(text(form.get(), design.twoNames() ? 2 : 1), Qt::Key_Escape);
        EXPECT_FALSE(form->isVisible());
        EXPECT_EQ(caller.refilled.empty(), design.list == PickList::Activities);
        form = (this->*design.make)();
        choose(form.get(), u"mnuDone"_s);
        EXPECT_EQ(cache, entries);
        EXPECT_EQ(caller.refilled.back(), (std::pair{design.list, entries}));

        global.EntryWindowActive = false; // called from a Display window
        cache.clear();
        caller.refilled.clear();
        form = (this->*design.make)();
        choose(form.get(), u"mnuDone"_s);
        EXPECT_EQ(cache, entries);
        EXPECT_TRUE(caller.refilled.empty());
    }
}

TEST_F(ListWindowTest, DoneMakesTheCallerAgainIfItWasClosed)
{
    call();
    global.EntryWindows = {nullptr};
    int made = -1;
    global.openers.makeEntryWindow = [&](int index) {
        made = index;
        return &caller;
    };
    const auto form = make<frmRate>();
    choose(form.get(), u"mnuDone"_s);
    EXPECT_EQ(made, 0);
    EXPECT_EQ(caller.refilled.size(), 1u);
}

TEST_F(ListWindowTest, DefaultEmployeeIsTheSelectedOne)
{
    add(u"Employees"_s, {{u"Employee Last Name"_s, u"Baxter"_s}, {u"Employee First Name"_s, u"Bo"_s}});
    const auto form = make<frmEmployee>();
    dialogs.expect(u"Please select an employee and try again."_s);
    choose(form.get(), u"mnuDefaultEmployee"_s);
    EXPECT_EQ(global.DefaultEmployee, QString());
    EXPECT_TRUE(settings.stored.isEmpty());
    list(form.get())->setFocus();
    QTest::keyClick(list(form.get()), Qt::Key_Down); // selects the only one
    dialogs.expect(u"Baxter, Bo selected as default employee."_s);
    choose(form.get(), u"mnuDefaultEmployee"_s);
    EXPECT_EQ(global.DefaultEmployee, u"Baxter, Bo"_s);
    EXPECT_EQ(settings.GetSetting(u"DefaultEmployee"_s, u"Default Employee"_s), u"Baxter, Bo"_s);
}

TEST_F(ListWindowTest, StandsExactlyOverTheMainWindow)
{
    QWidget main;
    main.setGeometry(50, 60, 500, 400);
    main.show();
    global.frmMain = &main;
    EXPECT_EQ(make<frmProject>()->geometry(), main.geometry());
    global.frmMain = nullptr;
}

TEST_F(ListWindowTest, FiveThousandEntriesOpenAndGoAtOnce)
{
    {
        const auto database = engine.OpenDatabase(global.DatabaseFileName);
        const auto rows = database->OpenRecordset(u"Projects"_s);
        database->BeginTrans();
        for (int i = 0; i < 5000; ++i) {
            rows->AddNew();
            rows->SetField(u"Projects"_s, u"Matter %1"_s.arg(i * 7919 % 5000));
            rows->Update();
        }
        database->CommitTrans();
    }
    QElapsedTimer timer;
    timer.start();
    const auto form = make<frmProject>();
    list(form.get())->selectAll();
    const qint64 opened = timer.restart();
    choose(form.get(), u"mnuDelete"_s);
    const qint64 deleted = timer.elapsed();
    printf("5,000 entries: opened and selected in %lld ms, deleted in %lld ms\n", opened, deleted);
    EXPECT_LT(opened, 5000); // a machine under load and with sanitizers; a walk for each entry takes minutes
    EXPECT_LT(deleted, 20000);
    EXPECT_EQ(column(u"Projects"_s, u"Projects"_s), QStringList());
    EXPECT_EQ(list(form.get())->count(), 0);
}

} // namespace vardelin::testing_support
