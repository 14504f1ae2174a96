#include "billing/frmLetterhead.h"
#include "tests/support/Judges.h"
#include "tests/support/OfficeProgram.h"

#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

struct LetterheadTest : testing::Test, OfficeProgram
{
    ~LetterheadTest() override { expectSound(global.DatabaseFileName, VARDELIN_ROOT); }

    std::unique_ptr<frmLetterhead> open()
    {
        auto form = std::make_unique<frmLetterhead>(global);
        form->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
        return form;
    }
    static QPlainTextEdit *text(const QWidget *form) { return control<QPlainTextEdit>(form, u"Text1"_s); }
    QStringList headers() { return column(u"Invoices"_s, u"Invoice Header"_s); }
};

TEST_F(LetterheadTest, DoneMakesTheRowAndThenChangesIt)
{
    {
        const auto form = open();
        EXPECT_EQ(form->windowTitle(), u"Create a letterhead for your invoices"_s);
        EXPECT_EQ(text(form.get())->toPlainText(), QString());
        EXPECT_EQ(text(form.get())->toolTip(),
                  u"Use this area to create your letterhead for your invoices"_s);
        QStringList menus;
        for (const QAction *action : form->findChild<QMenuBar *>()->actions())
            menus += action->objectName() + u'=' + action->text();
        EXPECT_EQ(menus, (QStringList{u"mnuReturn=&Return"_s, u"mnuFont=&Font"_s, u"mnuHelp=&Help"_s,
                                      u"mnuDone=&Done"_s}));
        QTest::keyClicks(text(form.get()), u"Dewey & Howe"_s);
        QTest::keyClick(text(form.get()), Qt::Key_Return);
        QTest::keyClicks(text(form.get()), u"1 Main Street"_s);
        choose(form.get(), u"mnuDone"_s);
        EXPECT_FALSE(form->isVisible());
    }
    EXPECT_EQ(headers(), QStringList{u"Dewey & Howe\r\n1 Main Street"_s});
    EXPECT_EQ(exportedRows(global.DatabaseFileName, u"Invoices"_s).join(u'\n').remove(u'\r'),
              u"\"Dewey & Howe\n1 Main Street\""_s);
    {
        const auto form = open();
        EXPECT_EQ(text(form.get())->toPlainText(), u"Dewey & Howe\n1 Main Street"_s);
        text(form.get())->clear();
        choose(form.get(), u"mnuDone"_s);
    }
    EXPECT_EQ(headers(), QStringList{QString()}); // one row still, and it holds an empty text
    const QString foreign = u"Dewey\u00a0& Howe\r1 Main Street\n"_s;
    engine.OpenDatabase(global.DatabaseFileName)->OpenRecordset(u"Invoices"_s)->Delete();
    add(u"Invoices"_s, {{u"Invoice Header"_s, foreign}});
    choose(open().get(), u"mnuDone"_s);
    EXPECT_EQ(headers(), QStringList{foreign}) << "nothing typed, nothing changed";
    {
        const auto form = open();
        QTest::keyClicks(text(form.get()), u"T"_s);
        choose(form.get(), u"mnuDone"_s);
    }
    EXPECT_EQ(headers(), QStringList{u"TDewey\u00a0& Howe\r\n1 Main Street\r\n"_s});
}

TEST_F(LetterheadTest, ReturnDropsWhatWasTypedAndEscStays)
{
    const auto form = open();
    QTest::keyClicks(text(form.get()), u"never"_s);
    QTest::keyClick(text(form.get()), Qt::Key_Escape);
    EXPECT_TRUE(form->isVisible());
    choose(form.get(), u"mnuReturn"_s);
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(headers(), QStringList());
}

TEST_F(LetterheadTest, FontIsSharedAndKept)
{
    const auto form = open();
    EXPECT_EQ(text(form.get())->font().family(), u"Times New Roman"_s);
    dialogs.expectCancel();
    dialogs.expect(u"Cancel selected by user"_s);
    choose(form.get(), u"mnuFont"_s);
    EXPECT_TRUE(dialogs.lastChoice.CancelError);
    EXPECT_TRUE(settings.stored.isEmpty());

    dialogs.expectChoice({.FontName = u"Liberation Sans"_s, .FontSize = u"16"_s});
    choose(form.get(), u"mnuFont"_s);
    EXPECT_EQ(global.DefaultLetterheadFont.name, u"Liberation Sans"_s);
    EXPECT_EQ(settings.GetSetting(u"DefaultLetterheadFontName"_s, u"Default Letterhead Font Name"_s),
              u"Liberation Sans"_s);
    EXPECT_EQ(settings.GetSetting(u"DefaultLetterheadFontSize"_s, u"Default Letterhead Font Size"_s),
              u"16"_s);
    EXPECT_EQ(text(form.get())->font().family(), u"Liberation Sans"_s);
    EXPECT_DOUBLE_EQ(text(form.get())->font().pointSizeF(), 16);

    // A failure passes for a Cancel.
    dialogs.expectChoice({.FontName = u"Liberation Sans"_s, .FontSize = u"large"_s});
    dialogs.expect(u"Cancel selected by user"_s);
    choose(form.get(), u"mnuFont"_s);
}

TEST_F(LetterheadTest, ARowWithoutATextStopsTheLoad)
{
    add(u"Invoices"_s, {{u"Invoice Header"_s, NullValue()}});
    try {
        frmLetterhead form(global);
        ADD_FAILURE() << "it opened";
    } catch (const RunTimeError &error) {
        EXPECT_EQ(error.number(), RunTime::InvalidUseOfNull);
    }
}

} // namespace vardelin::testing_support
