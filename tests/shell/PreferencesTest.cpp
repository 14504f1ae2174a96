// What the program remembers between runs: settings, and where the parent window stood.

#include "shell/Preferences.h"
#include "shell/state/FormPosition.h"
#include "tests/support/Fakes.h"
#include "tests/support/PrintQt.h"

#include <QScreen>
#include <QWidget>

using namespace Qt::StringLiterals;
using namespace vardelin;
using namespace vardelin::testing_support;

namespace {

constexpr QSize kScreen(19200, 12000); // twips of 1280 x 800

TEST(FormPosition, followsWhatWasStored)
{
    const FormPosition centred{4800, 3000, 9600, 6000};
    const std::vector<std::pair<QString, FormPosition>> cases{
        {QString(), centred},
        {u"   "_s, centred},
        {u"100, 200, 3000, 4000"_s, {100, 200, 3000, 4000}},
        {u" 100,200 , 3000,4000 "_s, {100, 200, 3000, 4000}},
        {u"0, 0, 19200, 12000"_s, {0, 0, 19200, 12000}},
        {u"0, 0, 19201, 12000"_s, centred},
        {u"0, 0, 19200, 12001"_s, centred},
        {u"12001, 0, 3000, 4000"_s, {6000, 0, 3000, 4000}}, // left against the height, crosswise
        {u"12000, 0, 3000, 4000"_s, {12000, 0, 3000, 4000}},
        {u"17000, 0, 3000, 4000"_s, {6000, 0, 3000, 4000}}};
    for (const auto &[stored, expected] : cases)
        EXPECT_EQ(positionFor(stored, kScreen), expected) << stored.toStdString();
    // A top that is off goes to half the width, which on this screen is too low for so high a form.
    EXPECT_EQ(positionFor(u"-15, 0, 3000, 4000"_s, kScreen), (FormPosition{6000, 0, 3000, 4000}));
    EXPECT_EQ(positionFor(u"0, -15, 3000, 2400"_s, kScreen), (FormPosition{0, 9600, 3000, 2400}));
    EXPECT_EQ(positionFor(u"0, -15, 3000, 2401"_s, kScreen), centred);
    for (const FormPosition &position : {centred, FormPosition{0, 0, 15, 30}})
        EXPECT_EQ(positionFor(positionText(position), kScreen), position);
    EXPECT_EQ(positionText(centred), u"4800, 3000, 9600, 6000"_s);
}

TEST(FormPosition, isKeptByARealWindow)
{
    MemorySettings settings;
    QWidget form;
    LoadFormPosition(form, u"frmMain"_s, settings);
    const QSize screen = form.screen()->geometry().size();
    EXPECT_EQ(form.size(), screen / 2);
    EXPECT_TRUE(settings.stored.isEmpty()) << "nothing is written at start-up";
    form.setGeometry(30, 40, 320, 200);
    SaveFormPosition(form, u"frmMain"_s, settings);
    EXPECT_EQ(settings.GetSetting(u"FormPosition"_s, u"frmMain"_s), u"450, 600, 4800, 3000"_s);
    QWidget again;
    LoadFormPosition(again, u"frmMain"_s, settings);
    EXPECT_EQ(again.geometry(), form.geometry());
}

TEST(Preferences, comeFromAnEmptyStoreAsDefaultsAndLeaveItEmpty)
{
    TestProgram program;
    Global &global = program.global;
    global.ClientCaption = global.DefaultPrintFont.name = u"overwritten"_s;
    program.services.appPath = u"/office"_s;
    EXPECT_TRUE(loadPreferences(global)) << "the tip is due";
    EXPECT_EQ(global.DatabaseFileName, u"/office/VARDELIN.MDB"_s);
    EXPECT_EQ(global.ClientCaption, u"Client"_s);
    EXPECT_EQ(global.EmployeeCaption, u"Employee (or user)"_s);
    EXPECT_EQ(global.ProjectCaption, u"Project"_s);
    EXPECT_EQ(global.SummaryCaption, u"Invoice summary line"_s);
    for (const FontSetting *font :
         {&global.DefaultDisplayFont, &global.DefaultEntryFont, &global.DefaultToDoFont})
        EXPECT_EQ(font->name, u"MS Sans Serif"_s);
    for (const FontSetting *font :
         {&global.DefaultFont, &global.DefaultLetterheadFont, &global.DefaultReportFont,
          &global.DefaultVardelinFont, &global.DefaultPrintFont}) {
        EXPECT_EQ(font->name, u"Times New Roman"_s);
        EXPECT_EQ(font->size, u"12"_s);
    }
    EXPECT_EQ(global.DefaultEmployee, QString());
    EXPECT_TRUE(global.List2.isEmpty());
    EXPECT_TRUE(program.settings.stored.isEmpty());
}

TEST(Preferences, areReadUnderTheirOwnSections)
{
    TestProgram program;
    Global &global = program.global;
    program.services.appPath = u"/office"_s;
    const auto store = [&](const QString &section, const QString &key, const QString &value) {
        program.settings.SaveSetting(section, key, value);
    };
    store(u"DefaultLogFile"_s, u"Default Log File"_s, QString()); // as an end behind a successful Open stores
    store(u"MostRecentDatabases"_s, u"First"_s, u"/1.mdb"_s);
    store(u"MostRecentDatabases"_s, u"Third"_s, u"/3.mdb"_s);
    store(u"MostRecentDatabases"_s, u"Sixth"_s, u"/6.mdb"_s);
    store(u"Preferences"_s, u"Show Tips at Startup"_s, u"1"_s);
    store(u"defaultToDoFontName"_s, u"Default To Do Font Name"_s,
          u"Arial"_s); // a small d, as one command spells it
    store(u"DefaultEntryFontSize"_s, u"Default Entry Font Size"_s, u"9.75"_s);
    store(u"DefaultEmployee"_s, u"Default Employee"_s, u"Baxter, Bo"_s);
    store(u"Frame2Caption"_s, u"Default Frame2 Caption"_s, QString());
    store(u"Frame5Caption"_s, u"Default Frame5 Caption"_s, u"Line"_s);
    EXPECT_FALSE(loadPreferences(global));
    EXPECT_EQ(global.DatabaseFileName, u"/office/VARDELIN.MDB"_s);
    EXPECT_EQ(global.List2, (QStringList{u"/1.mdb"_s, u"/3.mdb"_s, u"/6.mdb"_s}));
    EXPECT_EQ(global.DefaultToDoFont.name, u"Arial"_s);
    EXPECT_EQ(global.DefaultEntryFont.size, u"9.75"_s);
    EXPECT_EQ(global.DefaultEmployee, u"Baxter, Bo"_s);
    EXPECT_EQ(global.EmployeeCaption, QString()) << "empty is a caption, too";
    EXPECT_EQ(global.SummaryCaption, u"Line"_s);
}

} // namespace
