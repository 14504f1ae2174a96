#include "platform/ui/MaskEdBox.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

const QString kPhone = u"(###) ###-####"_s;

struct MaskTest : testing::Test
{
    MaskTest()
    {
        box.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&box));
        box.setFocus();
    }
    void paste(const QString &text)
    {
        QApplication::clipboard()->setText(text);
        QTest::keySequence(&box, QKeySequence::Paste);
    }

    MaskEdBox box{kPhone};
};

TEST_F(MaskTest, storedNumbersShowAndStayAsTheyAre)
{
    struct Case
    {
        const char16_t *mask, *stored, *shown;
    };
    const Case cases[]{{u"(###) ###-####", u"2125551234", u"(212) 555-1234"},
                       {u"(###) ###-####", u"(212) 555-1234", u"(212) 555-1234"},
                       {u"(###) ###-####", u"", u"(___) ___-____"},
                       {u"(###) ###-####", u"(___) ___-____", u"(___) ___-____"},
                       {u"(###) ###-####", u"212555", u"(212) 555-____"},
                       {u"(###) ###-####", u"(212) 555-____", u"(212) 555-____"},
                       {u"(###) ###-####", u"(212) 5", u"(212) 5__-____"},
                       {u"(###) ###-####", u"(___) 555-1234", u"(___) 555-1234"},
                       {u"(###) ###-####", u"212-555-1234 ext. 7", u"212-555-1234 ext. 7"},
                       {u"(###) ###-####", u"12125551234", u"12125551234"},
                       {u"#####-####", u"49783", u"49783-____"},
                       {u"#####-####", u"497831234", u"49783-1234"},
                       {u"#####-####", u"49783-1234", u"49783-1234"},
                       {u"#####-####", u"K1A 0B1", u"K1A 0B1"}};
    for (const Case &one : cases) {
        MaskEdBox field(QString::fromUtf16(one.mask));
        field.setText(QString::fromUtf16(one.stored));
        EXPECT_EQ(field.text(), QString::fromUtf16(one.shown));
        EXPECT_EQ(field.Text(), QString::fromUtf16(one.stored)) << "showing changes nothing";
    }
}

TEST_F(MaskTest, typedDigitsAreStoredWithoutSigns)
{
    QTest::keyClicks(&box, u"212555"_s);
    EXPECT_EQ(box.text(), u"(212) 555-____"_s);
    EXPECT_EQ(box.Text(), u"212555"_s) << "half a number is its digits";
    QTest::keyClicks(&box, u"-1234"_s);
    EXPECT_EQ(box.Text(), u"2125551234"_s) << "a sign that is typed at its place is no mistake";
    QTest::keyClicks(&box, u"5x"_s);
    EXPECT_EQ(box.Text(), u"2125551234"_s) << "neither one more digit nor a letter changes it";
    QTest::keyClick(&box, Qt::Key_Home);
    QTest::keyClick(&box, Qt::Key_Delete);
    EXPECT_EQ(box.text(), u"(125) 551-234_"_s);
    QTest::keyClicks(&box, u"2"_s);
    EXPECT_EQ(box.text(), u"(212) 555-1234"_s) << "between digits it goes in";
    for (int i = 0; i < 10; ++i) {
        QTest::keyClick(&box, Qt::Key_End);
        QTest::keyClick(&box, Qt::Key_Backspace);
        EXPECT_EQ(box.Text(), u"2125551234"_s.left(9 - i));
    }
    box.setText(u"(212) 555-1234"_s);
    QTest::keyClick(&box, Qt::Key_End);
    QTest::keyClick(&box, Qt::Key_Backspace);
    EXPECT_EQ(box.Text(), u"212555123"_s);
    QTest::keyClicks(&box, u"4"_s);
    EXPECT_EQ(box.Text(), u"(212) 555-1234"_s) << "the number that is stored, as it is stored";
}

TEST_F(MaskTest, pastesWholeOrNotAtAll)
{
    for (const QString &number :
         {u"2125551234"_s, u"(212) 555-1234"_s, u"212.555.1234"_s, u" 212-555-1234 "_s}) {
        box.setText({});
        paste(number);
        EXPECT_EQ(box.Text(), u"2125551234"_s) << number.toStdString();
    }
    box.selectAll();
    paste(u"+44 20 7946 0958"_s);
    EXPECT_EQ(box.Text(), u"2125551234"_s) << "too long: not cut, not taken";
    box.selectAll();
    paste(u"555-1234 ext. 7"_s);
    EXPECT_EQ(box.Text(), u"2125551234"_s);
    box.selectAll();
    QTest::keyClicks(&box, u"9"_s);
    EXPECT_EQ(box.text(), u"(9__) ___-____"_s);
}

TEST_F(MaskTest, undoesAndRedoes)
{
    box.setText(u"(212) 555-1234"_s);
    box.selectAll();
    QTest::keyClicks(&box, u"90"_s);
    for (const char16_t *digits : {u"9", u"(212) 555-1234", u"(212) 555-1234"}) {
        QTest::keySequence(&box, QKeySequence::Undo);
        EXPECT_EQ(box.Text(), QString::fromUtf16(digits));
    }
    QTest::keySequence(&box, QKeySequence::Redo);
    QTest::keySequence(&box, QKeySequence::Redo);
    EXPECT_EQ(box.Text(), u"90"_s);
}

TEST_F(MaskTest, textThatFitsNoMaskIsEditedFreelyUntilItIsEmptied)
{
    box.setText(u"555-1234 ext. 7"_s);
    QTest::keyClick(&box, Qt::Key_End);
    QTest::keyClicks(&box, u"8 (home)"_s);
    EXPECT_EQ(box.Text(), u"555-1234 ext. 78 (home)"_s);
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Delete);
    EXPECT_EQ(box.text(), u"(___) ___-____"_s);
    EXPECT_EQ(box.Text(), QString());
    QTest::keyClicks(&box, u"2125551234"_s);
    EXPECT_EQ(box.text(), u"(212) 555-1234"_s);
}

TEST_F(MaskTest, aClickOnTheEmptyPlacesGoesToTheFirstOfThem)
{
    box.resize(300, 30);
    QTest::mouseClick(&box, Qt::LeftButton, {}, box.rect().center());
    EXPECT_EQ(box.cursorPosition(), 1);
    QTest::keyClicks(&box, u"212"_s);
    EXPECT_EQ(box.cursorPosition(), 6) << "behind the signs";
}

} // namespace
