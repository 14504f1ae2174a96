// The tip of the day and the introduction.

#include "shell/Tips.h"
#include "shell/frmIntroduction.h"
#include "shell/frmTip.h"
#include "tests/support/OfficeProgram.h"

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

void writeTips(const QTemporaryDir &folder, const QByteArray &text)
{
    QFile file(folder.filePath(u"TIPOFDAY.TXT"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(text);
}

TEST(Tips, areTheLinesOfAFileAndChosenWithoutMemory)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"TIPOFDAY.TXT"_s);
    EXPECT_EQ(loadTips(path), std::nullopt);
    EXPECT_EQ(loadTips(QString()), std::nullopt);
    writeTips(folder, "");
    EXPECT_EQ(loadTips(path), QStringList());
    writeTips(folder, "one\r\n\n\xC3\xBC"
                      "ber\n\xFC"
                      "ber \x93old\x94\nlast");
    EXPECT_EQ(loadTips(path), (QStringList{u"one"_s, QString(), u"über"_s, u"über “old”"_s, u"last"_s}))
        << "empty lines count";
    EXPECT_EQ(nextTip(0.0, 4), 1);
    EXPECT_EQ(nextTip(0.2499, 4), 1);
    EXPECT_EQ(nextTip(0.25, 4), 2);
    EXPECT_EQ(nextTip(0.9999999, 4), 4);
    EXPECT_EQ(nextTip(0.5, 0), 0);
}

TEST(frmTip, showsTipsAndKeepsItsBoxForTheNextStart)
{
    OfficeProgram program;
    writeTips(program.folder, "only tip & more\n");
    program.settings.SaveSetting(u"Preferences"_s, u"Show Tips at Startup"_s, u"1"_s);
    frmTip form(program.global);
    form.show();
    const auto *text = control<QLabel>(&form, u"lblTipText"_s);
    EXPECT_EQ(text->text(), u"only tip & more"_s);
    QTest::mouseClick(control<QPushButton>(&form, u"cmdNextTip"_s), Qt::LeftButton);
    EXPECT_EQ(text->text(), u"only tip & more"_s) << "the same one again";
    auto *box = control<QCheckBox>(&form, u"chkLoadTipsAtStartup"_s);
    EXPECT_FALSE(box->isChecked()) << "it always starts cleared";
    box->setChecked(true);
    box->setChecked(false);
    EXPECT_EQ(program.settings.GetSetting(u"Preferences"_s, u"Show Tips at Startup"_s), u"1"_s);
    QTest::mouseClick(control<QPushButton>(&form, u"cmdOK"_s), Qt::LeftButton);
    EXPECT_EQ(program.settings.GetSetting(u"Preferences"_s, u"Show Tips at Startup"_s), u"0"_s);

    frmTip again(program.global);
    again.show();
    control<QCheckBox>(&again, u"chkLoadTipsAtStartup"_s)->setChecked(true);
    again.close(); // by the frame of the window
    EXPECT_EQ(program.settings.GetSetting(u"Preferences"_s, u"Show Tips at Startup"_s), u"1"_s);
}

TEST(frmTip, saysWhatToDoWithoutAFileAndNothingWithoutTips)
{
    OfficeProgram program;
    EXPECT_EQ(
        frmTip(program.global).findChild<QLabel *>(u"lblTipText"_s)->text(),
        u"That the TIPOFDAY.TXT file was not found? \n\nCreate a text file named TIPOFDAY.TXT using NotePad "
        u"with 1 tip per line. Then place it in the same directory as the application. "_s);
    writeTips(program.folder, "");
    frmTip form(program.global);
    QTest::mouseClick(control<QPushButton>(&form, u"cmdNextTip"_s), Qt::LeftButton);
    EXPECT_EQ(control<QLabel>(&form, u"lblTipText"_s)->text(), QString());
}

TEST(frmIntroduction, tellsWhatIsMissingAndNotesTheChoice)
{
    const QString noClients =
        u"No clients have been entered yet.  If you want to add a client before proceeding to "
        u"a Data entry window, click on the Add Client menu option above."_s;
    const QString noEmployees =
        u"No employees (or anyone else using this program) have been entered yet.  If you "
        u"want to add your name to the employee list, click on the Add Employee menu option "
        u"above."_s;
    const QString go =
        u"Click on the Go to Data entry window menu option above if you do not wish to add anyone at this time."_s;
    const QString welcome = u"Welcome to Vardelin."_s;
    for (const bool clients : {true, false}) {
        for (const bool employees : {true, false}) {
            OfficeProgram program;
            program.global.NoClients = clients;
            program.global.NoEmployees = employees;
            frmIntroduction form(program.global);
            form.show();
            EXPECT_EQ(form.windowTitle(), u"Welcome to Vardelin"_s);
            QStringList parts = control<QLabel>(&form, u"Label1"_s)->text().split(u'\n', Qt::SkipEmptyParts);
            QStringList expected{welcome};
            if (clients)
                expected += noClients;
            if (employees)
                expected += noEmployees;
            EXPECT_EQ(parts, expected + QStringList{go});
            EXPECT_EQ(control<QAction>(&form, u"mnuAddClient"_s)->isEnabled(), clients);
            EXPECT_EQ(control<QAction>(&form, u"mnuAddEmployee"_s)->isEnabled(), employees);
            choose(&form, clients ? u"mnuAddClient"_s : employees ? u"mnuAddEmployee"_s : u"mnuDataEntry"_s);
            EXPECT_FALSE(form.isVisible());
            EXPECT_EQ(program.global.SearchClient, clients ? u"YES"_s : QString());
            EXPECT_EQ(program.global.SearchEmployee, !clients && employees ? u"YES"_s : QString());
        }
    }
}

} // namespace
