#include "tests/contacts/ListWindows.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

struct ActivityTest : ListWindowsTest
{
    const QStringList two{u"Attend"_s, u"Legal research"_s};
};

TEST_F(ActivityTest, EnterInTheListInsertsTheLastOneFirst)
{
    EXPECT_EQ(gatheredActivities({u"A"_s, u"B"_s}), u"B A  "_s);
    EXPECT_EQ(gatheredActivities({}), u" "_s);
    call();
    const auto form = make<frmActivity>();
    select(form.get(), two);
    list(form.get())->setFocus();
    QTest::keyClick(list(form.get()), Qt::Key_Return);
    EXPECT_EQ(caller.inserted, QStringList{u"Legal research Attend  "_s});
    EXPECT_GE(caller.focused, 1);
    EXPECT_FALSE(form->isVisible());
    EXPECT_TRUE(caller.refilled.empty()) << "that was no Done";
}

TEST_F(ActivityTest, EscapeAndOtherKeysInsertNothing)
{
    call();
    auto form = make<frmActivity>();
    select(form.get(), two);
    list(form.get())->setFocus();
    QTest::keyClick(list(form.get()), Qt::Key_Down);
    EXPECT_EQ(caller.focused, 1);
    EXPECT_TRUE(form->isVisible());
    QTest::keyClick(list(form.get()), Qt::Key_Escape);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(caller.focused, 2);
    EXPECT_TRUE(caller.inserted.isEmpty());
}

TEST_F(ActivityTest, DoubleClickAndDoneInsertAndRefill)
{
    call();
    auto form = make<frmActivity>();
    const QStringList entries = list(form.get())->entries();
    EXPECT_EQ(entries.size(), 15);
    const QRect third = list(form.get())->visualItemRect(list(form.get())->item(2));
    QTest::mouseClick(list(form.get())->viewport(), Qt::LeftButton, {}, third.center());
    QTest::mouseDClick(list(form.get())->viewport(), Qt::LeftButton, {}, third.center());
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(caller.inserted, QStringList{entries[2] + u"  "_s});
    ASSERT_EQ(caller.refilled.size(), 1u);
    EXPECT_EQ(caller.refilled.front().second, entries);

    form = make<frmActivity>();
    add(u"Activities"_s, {{u"Activities"_s, u"Aaa, added elsewhere"_s}});
    choose(form.get(), u"mnuDone"_s);
    EXPECT_EQ(caller.inserted.last(), u" "_s) << "nothing selected: the blank alone";
    EXPECT_EQ(caller.refilled.back().second.first(), u"Aaa, added elsewhere"_s) << "as the table has it now";
}

TEST_F(ActivityTest, AFailingLoadIsQuiet)
{
    const QString good = global.DatabaseFileName;
    global.DatabaseFileName = folder.filePath(u"none.mdb"_s);
    const auto form = make<frmActivity>();
    typeOver(text(form.get(), 1), u"Attend"_s);
    dialogs.expect(standardMessage(RunTimeError(RunTime::ObjectNotSet)));
    QTest::keyClick(text(form.get(), 1), Qt::Key_Return);
    choose(form.get(), u"mnuReturn"_s);
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(QFile::exists(global.DatabaseFileName));
    global.DatabaseFileName = good;
}

} // namespace vardelin::testing_support
