#include "platform/ui/Controls.h"
#include "platform/base/RunTimeError.h"

#include <QAccessible>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

QStringList numbered(int count)
{
    QStringList entries;
    for (int i = count; i > 0; --i)
        entries += u"Client %1, Anna"_s.arg(i, 5, 10, QChar(u'0'));
    return entries;
}

void turnWheel(QWidget *widget)
{
    const QPointF at(widget->rect().center());
    QWheelEvent event(at, widget->mapToGlobal(at), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

TEST(SortedLists, orderIsWithoutRegardToCaseAndKeepsAccentsByTheirLetters)
{
    ListBox list;
    for (const auto &name :
         {u"miller, Bo"_s, u"Zorn, A"_s, u"Émile, X"_s, u"MILLER, Al"_s, u"Ford, C"_s, u"miller"_s})
        list.addEntry(name);
    const QStringList expected{u"Émile, X"_s,   u"Ford, C"_s,    u"miller"_s,
                               u"MILLER, Al"_s, u"miller, Bo"_s, u"Zorn, A"_s};
    EXPECT_EQ(list.entries(), expected);
    list.addEntry(u"FORD, c"_s);
    EXPECT_EQ(list.entries().mid(1, 2), (QStringList{u"Ford, C"_s, u"FORD, c"_s}))
        << "equal ones as they came";
    SortedCombo combo;
    combo.setEntries({u"b"_s, u"C"_s, u"a"_s});
    EXPECT_EQ(combo.entries(), (QStringList{u"a"_s, u"b"_s, u"C"_s}));
    EXPECT_EQ(combo.itemText(1), u"b"_s);
}

TEST(SortedLists, thousandsFillAndGoAndTheRestStaysInOrder)
{
    const QStringList entries = numbered(5000);
    ListBox list;
    for (const QString &entry : entries)
        list.addEntry(entry);
    QStringList ascending = entries;
    std::reverse(ascending.begin(), ascending.end());
    EXPECT_EQ(list.entries(), ascending);

    for (int row = 0; row < list.count(); row += 2)
        list.item(row)->setSelected(true);
    const QList<int> doomed = list.selectedRows();
    ASSERT_EQ(doomed.size(), 2500);
    EXPECT_TRUE(std::is_sorted(doomed.begin(), doomed.end()));
    list.removeRows(doomed);
    ASSERT_EQ(list.count(), 2500);
    EXPECT_EQ(list.item(0)->text(), ascending[1]);
    EXPECT_EQ(list.item(2499)->text(), ascending[4999]);
    list.removeRows({2499, 0, 0});
    EXPECT_EQ(list.count(), 2498);
    EXPECT_EQ(list.item(0)->text(), ascending[3]);
    list.setEntries({});
    EXPECT_EQ(list.count(), 0);
}

TEST(SortedCombo, takesFreeTextAndCompletesNothing)
{
    SortedCombo combo;
    combo.setEntries({u"Miller, Ann"_s, u"Moore, Bob"_s});
    combo.show();
    combo.setFocus();
    QTest::keyClicks(combo.lineEdit(), u"mill"_s);
    EXPECT_EQ(combo.Text(), u"mill"_s);
    QTest::keyClick(combo.lineEdit(), Qt::Key_Return);
    EXPECT_EQ(combo.Text(), u"mill"_s);
    EXPECT_EQ(combo.count(), 2) << "what is typed doesn't enter the list";
    QTest::keyClick(combo.lineEdit(), Qt::Key_Down);
    EXPECT_EQ(combo.Text(), u"Miller, Ann"_s);
    combo.setText(u"half typed"_s);
    turnWheel(&combo);
    EXPECT_EQ(combo.Text(), u"half typed"_s) << "the wheel replaces nothing";
    combo.setEntries({u"Zorn, Al"_s});
    EXPECT_EQ(combo.Text(), u"half typed"_s) << "a refilled list leaves the field";
    EXPECT_EQ(combo.entries(), QStringList{u"Zorn, Al"_s});
}

TEST(SortedCombo, saysItsCaptionWhereTheFocusIs)
{
    SortedCombo combo;
    combo.setAccessibleCaption(u"Patient"_s);
    const auto *field = QAccessible::queryAccessibleInterface(combo.lineEdit());
    ASSERT_TRUE(field);
    EXPECT_EQ(field->text(QAccessible::Name), u"Patient"_s);
}

TEST(ListBox, keysReachTheHandlerAheadOfTheList)
{
    ListBox list;
    list.setEntries(numbered(3));
    list.setCurrentRow(0);
    QList<int> keys;
    int rowThen = -1;
    list.keyPressed = [&](int key) {
        keys += key;
        rowThen = list.currentRow();
    };
    list.show();
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(keys, QList<int>{Qt::Key_Down});
    EXPECT_EQ(rowThen, 0);
    EXPECT_EQ(list.currentRow(), 1);

    auto *closing = new ListBox;
    closing->keyPressed = [closing](int) { delete closing; }; // the window goes with Enter
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(closing, &enter);
}

// The bar stands between the fields, and yet Tab goes from field to field, then to the bar's buttons.
TEST(ToolButtons, areReachedWithTabAfterTheFieldsAndTakeNoFocusByClick)
{
    QWidget form;
    auto *layout = new QVBoxLayout(&form);
    QLineEdit field, other;
    QToolBar bar;
    bar.setObjectName(u"Toolbar2"_s);
    layout->addWidget(&field);
    layout->addWidget(&bar);
    layout->addWidget(&other);
    int pressed = 0;
    QAction *action =
        addButton(&bar, u"Small Caps"_s, u"Change caption for this field"_s, [&] { ++pressed; });
    tabToButtonsLast(&form);
    form.show();
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));

    auto *button = qobject_cast<QToolButton *>(bar.widgetForAction(action));
    ASSERT_TRUE(button);
    EXPECT_EQ(action->objectName(), u"Toolbar2.Small Caps"_s);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name),
              u"Change caption for this field"_s);
    field.setFocus();
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(pressed, 1);
    EXPECT_TRUE(field.hasFocus());
    QTest::keyClick(&field, Qt::Key_Tab);
    EXPECT_TRUE(other.hasFocus());
    QTest::keyClick(&other, Qt::Key_Tab);
    EXPECT_TRUE(button->hasFocus());
    QTest::keyClick(button, Qt::Key_Space);
    EXPECT_EQ(pressed, 2);
}

TEST(FormFont, takesTheSizeAsTextAndRefusesWhatIsNone)
{
    EXPECT_EQ(formFont(u"Arial"_s, u"8.25"_s).pointSizeF(), 8.25);
    EXPECT_EQ(formFont(u"Arial"_s, u"12"_s).family(), u"Arial"_s);
    const auto numberOf = [](const QString &size) {
        try {
            formFont(u"Arial"_s, size);
        } catch (const RunTimeError &error) {
            return error.number();
        }
        return 0;
    };
    EXPECT_EQ(numberOf(u"large"_s), 13);
    EXPECT_EQ(numberOf(u""_s), 13);
    EXPECT_EQ(numberOf(u"0"_s), 380);
    EXPECT_EQ(numberOf(u"-3"_s), 380);
}

} // namespace
