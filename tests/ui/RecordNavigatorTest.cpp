#include "platform/ui/RecordNavigator.h"
#include "platform/data/Dao.h"
#include "tests/support/ScriptedDialogs.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

struct Navigator : testing::Test
{
    Navigator()
    {
        const QString path = folder.filePath(u"office.mdb"_s);
        const auto database =
            engine.Workspaces(0).CreateDatabase(path, u";LANGID=0x0409;CP=1252;COUNTRY=0"_s);
        database->Append({.Name = u"Rates"_s,
                          .Fields = {{.Name = u"Rates"_s, .Type = dao::dbText, .Size = 3}},
                          .Indexes = {}});
        const auto rows = database->OpenRecordset(u"Rates"_s);
        for (const char16_t *rate : {u"50", u"75", u"100"}) {
            rows->AddNew();
            rows->SetField(u"Rates"_s, QString::fromUtf16(rate));
            rows->Update();
        }
        control.ConnectionString = ado::connectionText(path);
        control.RecordSource = u"Rates"_s;
        control.bind({u"Rates"_s, [this](const QString &text) { field.setText(text); },
                      [this] { return field.text(); }});
        window.setLayout(new QVBoxLayout);
        window.layout()->addWidget(&field);
        window.layout()->addWidget(&bar);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void refresh()
    {
        control.Refresh();
        bar.refreshButtons();
    }
    // Which of First, Previous, Next and Last are on.
    QString on() const
    {
        QString letters;
        for (const QToolButton *button : {bar.first, bar.previous, bar.next, bar.last})
            letters += button->isEnabled() ? button->objectName().front() : u'-';
        return letters;
    }

    QTemporaryDir folder;
    dao::DBEngine engine;
    Adodc control;
    ScriptedDialogs dialogs;
    ErrorFrame errors{dialogs, [] { ADD_FAILURE() << "a move is no reason to end the program"; }};
    QWidget window;
    QLineEdit field;
    RecordNavigator bar{control, dialogs, errors};
};

TEST_F(Navigator, ButtonsAreOnWhereTheyLeadSomewhere)
{
    EXPECT_EQ(on(), u"----"_s) << "not open";
    refresh();
    EXPECT_EQ(on(), u"--NL"_s);
    QTest::mouseClick(bar.next, Qt::LeftButton);
    EXPECT_EQ(on(), u"FPNL"_s);
    EXPECT_EQ(field.text(), u"75"_s);
    QTest::mouseClick(bar.last, Qt::LeftButton);
    EXPECT_EQ(on(), u"FP--"_s);
    QTest::mouseClick(bar.previous, Qt::LeftButton);
    QTest::mouseClick(bar.first, Qt::LeftButton);
    EXPECT_EQ(field.text(), u"50"_s);
    control.RecordSource = u"Select * from Rates where Rates = '75'"_s;
    refresh();
    EXPECT_EQ(on(), u"----"_s) << "the only one";
    control.RecordSource = u"Select * from Rates where Rates = '1'"_s;
    refresh();
    EXPECT_EQ(on(), u"----"_s) << "none";
}

TEST_F(Navigator, WorksFromTheKeyboardAndPassesTheFocusOnAtTheEnds)
{
    refresh();
    bar.next->setFocus();
    QTest::keyClick(bar.next, Qt::Key_Space);
    EXPECT_TRUE(bar.next->hasFocus());
    QTest::keyClick(bar.next, Qt::Key_Space);
    EXPECT_EQ(field.text(), u"100"_s);
    EXPECT_TRUE(bar.previous->hasFocus()) << "the way back stays under the finger";
    bar.first->setFocus();
    QTest::keyClick(bar.first, Qt::Key_Space);
    EXPECT_TRUE(bar.last->hasFocus());
    field.setFocus();
    QTest::mouseClick(bar.last, Qt::LeftButton);
    EXPECT_TRUE(field.hasFocus()) << "a click leaves the focus where one types";
}

TEST_F(Navigator, MakesRoomForItsCaptionInTheUsersFont)
{
    const auto *caption = bar.findChild<QLabel *>();
    const auto squeeze = [this] {
        window.resize(1, 1);
        QCoreApplication::processEvents();
    };
    bar.setCaption(u"1999 of 20000"_s);
    squeeze();
    const int narrow = caption->width();
    EXPECT_GE(narrow, caption->fontMetrics().horizontalAdvance(caption->text()));
    bar.setCaption(u"9 of 10"_s);
    squeeze();
    EXPECT_EQ(caption->width(), narrow) << "the buttons stay where they are";
    QFont large = bar.font();
    large.setPointSizeF(2 * large.pointSizeF());
    bar.setCaption(u"99 of 2000"_s);
    bar.setFont(large);
    squeeze();
    EXPECT_GE(caption->width(), caption->fontMetrics().horizontalAdvance(caption->text()));
}

TEST_F(Navigator, ShowsWhatAMoveRunsInto)
{
    refresh();
    field.setText(u"1000"_s);
    dialogs.expect({.prompt = descriptionOf(3163), .icon = Icon::Exclamation});
    QTest::mouseClick(bar.next, Qt::LeftButton);
    EXPECT_EQ(field.text(), u"1000"_s) << "what was typed stays, and the record with it";
    EXPECT_EQ(on(), u"--NL"_s);
    field.setText(u"60"_s);
    QTest::mouseClick(bar.next, Qt::LeftButton);
    EXPECT_EQ(field.text(), u"75"_s);
}

} // namespace
