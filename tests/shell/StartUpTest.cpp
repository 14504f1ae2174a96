// The whole program from an empty folder to its end, and started again.

#include "tests/shell/Running.h"
#include "tests/support/Judges.h"

#include "platform/ui/Controls.h"
#include "platform/ui/NotesEdit.h"

#include <QCheckBox>
#include <QFile>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

namespace {

void closeForm(QWidget *form)
{
    form->close();
}

const QStringList kOwnCommands{u"&Display"_s, u"&Enter data"_s};

} // namespace

TEST(StartUp, anEmptyFolderBecomesAnOfficeAndStaysOne)
{
    const QTemporaryDir folder;
    QHash<QString, QString> stored;
    const QString file = folder.filePath(u"VARDELIN.MDB"_s);
    const QRect place(40, 50, 620, 480);
    {
        Running office(folder.path());
        ModalScript modal;
        modal.expect(u"frmTip"_s, [](QWidget *form) {
            control<QCheckBox>(form, u"chkLoadTipsAtStartup"_s)->setChecked(true);
            control<QPushButton>(form, u"cmdOK"_s)->click();
        });
        modal.expect(u"frmIntroduction"_s, [](QWidget *form) { choose(form, u"mnuAddClient"_s); });
        modal.expect(u"frmClient"_s, [](QWidget *form) {
            typeOver(control<QLineEdit>(form, u"Text1"_s), u"Ann"_s);
            typeOver(control<QLineEdit>(form, u"Text2"_s), u"Archer"_s);
            QTest::keyClick(control<QLineEdit>(form, u"Text2"_s), Qt::Key_Return);
            QTest::keyClick(control<QLineEdit>(form, u"Text2"_s), Qt::Key_Escape);
        });
        office.main.Load();
        EXPECT_EQ(office.main.size(), office.main.screen()->geometry().size() / 2);
        EXPECT_EQ(office.children(), (QStringList{u"Display form 1"_s, u"Data entry form 1"_s}));
        QWidget *entry = office.activeChild();
        ASSERT_EQ(entry->windowTitle(), u"Data entry form 1"_s) << "the Data entry window stands on top";
        EXPECT_EQ(control<QLabel>(entry, u"Label3"_s)->text(), office.global.CurrentSQL);
        EXPECT_EQ(control<SortedCombo>(entry, u"Combo1"_s)->entries(), QStringList{u"Archer, Ann"_s});

        control<SortedCombo>(entry, u"Combo1"_s)->setText(u"Archer, Ann"_s);
        typeOver(control<SortedCombo>(entry, u"Combo4"_s)->lineEdit(), u"150"_s);
        typeOver(control<QLineEdit>(entry, u"Text1"_s), u"Call"_s);
        QTest::keyClicks(control<NotesEdit>(entry, u"RichTextBox1"_s), u"Notes of the call"_s);
        choose(entry, u"mnuLogcompleted"_s);
        choose(entry, u"mnuEnterDisplay"_s);
        QWidget *display = office.activeChild();
        EXPECT_EQ(display->windowTitle(), u"Display form 2"_s);
        EXPECT_EQ(control<QLineEdit>(display, u"Text1"_s)->text(), u"Archer, Ann"_s);
        EXPECT_EQ(control<QLineEdit>(display, u"Text6"_s)->text(), u"15"_s);
        EXPECT_EQ(control<NotesEdit>(display, u"RichTextBox2"_s)->Text(), u"Notes of the call"_s);
        office.main.setGeometry(place);
        choose(display, u"mnuExit"_s);
        EXPECT_FALSE(office.main.isVisible());
        stored = office.settings.stored;
    }
    EXPECT_EQ(exportedRows(file, u"Vardelins"_s).filter(u"Archer, Ann"_s).size(), 1);
    EXPECT_TRUE(exportedRows(file, u"Vardelins"_s).join(QString()).contains(u"\"Notes of the call\""_s));
    EXPECT_TRUE(exportedRows(file, u"Active Clients"_s).value(0).startsWith(u"\"Ann\",\"Archer\""_s));
    expectSound(file, VARDELIN_ROOT);

    Running office(u"/another/folder"_s);
    office.settings.stored = stored;
    ModalScript modal;
    modal.expect(u"frmIntroduction"_s, [](QWidget *form) {
        EXPECT_FALSE(control<QAction>(form, u"mnuAddClient"_s)->isEnabled());
        choose(form, u"mnuDataEntry"_s);
    });
    office.main.Load();
    EXPECT_EQ(office.main.geometry(), place);
    EXPECT_EQ(office.global.DatabaseFileName, file);
    const QWidget *display = office.global.DisplayWindows.at(0);
    EXPECT_EQ(control<QLineEdit>(display, u"Text5"_s)->text(), u"Call"_s);
    office.main.close();
}

TEST(StartUp, withClientsAndEmployeesGoesStraightToTheWindows)
{
    const QTemporaryDir folder;
    Running office(folder.path());
    office.global.DatabaseFileName = folder.filePath(u"VARDELIN.MDB"_s);
    CreateDatabase(office.global);
    {
        const auto database = office.engine.OpenDatabase(office.global.DatabaseFileName);
        for (const auto &[table, prefix] :
             {std::pair{u"Active Clients"_s, u"Client "_s}, std::pair{u"Employees"_s, u"Employee "_s}}) {
            const auto rows = database->OpenRecordset(table);
            rows->AddNew();
            rows->SetField(prefix + u"Last Name"_s, u"Archer"_s);
            rows->SetField(prefix + u"First Name"_s, u"Ann"_s);
            rows->Update();
        }
    }
    office.settings.SaveSetting(u"Preferences"_s, u"Show Tips at Startup"_s, u"1"_s);
    ModalScript none;
    office.main.Load();
    EXPECT_EQ(office.children().size(), 2);
    office.main.close();
    EXPECT_FALSE(office.main.isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(office.global.Forms.Count(), 1) << "every child is unloaded";
}

TEST(StartUp, aMissingFileIsMadeUnderItsOwnName)
{
    const QTemporaryDir folder;
    Running office(folder.path());
    const QString gone = folder.filePath(u"moved away.mdb"_s);
    office.settings.SaveSetting(u"DefaultLogFile"_s, u"Default Log File"_s, gone);
    ModalScript modal;
    modal.expect(u"frmTip"_s, closeForm);
    modal.expect(u"frmIntroduction"_s, closeForm);
    office.main.Load();
    EXPECT_TRUE(QFile::exists(gone));
    EXPECT_FALSE(QFile::exists(folder.filePath(u"VARDELIN.MDB"_s)));
    office.main.close();
}

TEST(StartUp, aFailureIsToldAndLeavesTheParentWithItsOwnCommands)
{
    const QTemporaryDir folder;
    const QString garbage = folder.filePath(u"garbage.mdb"_s);
    QFile file(garbage);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(20000, 'x'));
    file.close();
    const QString nowhere = folder.filePath(u"no folder/office.mdb"_s);
    for (const auto &[path, said] :
         {std::pair(garbage, u"Unrecognized database format '"_s + garbage + u"'."_s),
          std::pair(nowhere, u'\'' + nowhere + u"' is not a valid path."_s)}) {
        Running office(folder.path());
        office.settings.SaveSetting(u"DefaultLogFile"_s, u"Default Log File"_s, path);
        office.dialogs.expectBeginning(u"Error in main form: "_s + said);
        office.main.Load();
        EXPECT_TRUE(office.main.isVisible());
        EXPECT_TRUE(office.children().isEmpty());
        EXPECT_EQ(office.bar(), kOwnCommands);
        EXPECT_EQ(office.ended, 0);
        choose(&office.main, u"mnuMDisplay"_s);
        EXPECT_EQ(office.children(), QStringList{u"Display form 1"_s}) << "usable through its two commands";
        office.main.close();
        EXPECT_EQ(office.settings.GetSetting(u"DefaultLogFile"_s, u"Default Log File"_s), path);
    }
    EXPECT_EQ(QFile(garbage).size(), 20000) << "nothing was written into it";
}

TEST(StartUp, aProgramEndedFromAListWindowOpensNothingMore)
{
    const QTemporaryDir folder;
    Running office(folder.path());
    office.settings.SaveSetting(u"Preferences"_s, u"Show Tips at Startup"_s, u"1"_s);
    ModalScript modal;
    modal.expect(u"frmIntroduction"_s, [&](QWidget *form) {
        office.global.openers.ExitProgram();
        form->close();
    });
    office.main.Load();
    EXPECT_TRUE(office.children().isEmpty());
    EXPECT_FALSE(office.main.isVisible());
    EXPECT_TRUE(office.settings.stored.contains(u"formposition/frmmain"_s));
}

} // namespace vardelin::testing_support
