#include "platform/system/Settings.h"
#include "platform/base/RunTimeError.h"

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace vardelin;

namespace {

class SettingsTest : public testing::Test
{
protected:
    QTemporaryDir m_folder;
    QString m_path = m_folder.filePath(u"config/Vardelin/Vardelin.ini"_s);
    // A store made anew, as the next start of the program has it. What the class keeps in memory of a file is
    // checked against the file's time and size.
    QString stored(const QString &section, const QString &key, const QString &fallback = {}) const
    {
        return fileSettings(m_path)->GetSetting(section, key, fallback);
    }
};

TEST_F(SettingsTest, readingAnEmptyStoreGivesDefaultsAndWritesNothing)
{
    EXPECT_EQ(stored(u"DefaultFontSize"_s, u"Default Font Size"_s, u"12"_s), u"12"_s);
    EXPECT_FALSE(QFile::exists(m_path));
}

TEST_F(SettingsTest, sectionsAndKeysAreFoundInAnyCase)
{
    const auto settings = fileSettings(m_path);
    settings->SaveSetting(u"defaultToDoFontName"_s, u"Default To Do Font Name"_s, u"Arial"_s);
    EXPECT_EQ(stored(u"DefaultToDoFontName"_s, u"DEFAULT TO DO FONT NAME"_s), u"Arial"_s);
    settings->SaveSetting(u"DefaultToDoFontName"_s, u"default to do font name"_s, u"Times"_s);
    EXPECT_EQ(stored(u"defaultToDoFontName"_s, u"Default To Do Font Name"_s), u"Times"_s);
    EXPECT_EQ(QSettings(m_path, QSettings::IniFormat).allKeys().size(), 1) << "one setting, not two";

    MemorySettings memory;
    memory.SaveSetting(u"FormPosition"_s, u"frmMain"_s, u"1"_s);
    EXPECT_EQ(memory.GetSetting(u"formposition"_s, u"FRMMAIN"_s), u"1"_s);
}

TEST_F(SettingsTest, anyTextComesBackAsItWas)
{
    QString everyCharacter;
    for (char16_t c = 1; c < 0x250; ++c)
        everyCharacter += QChar(c);
    const QStringList texts{u""_s,
                            u" "_s,
                            u"  leading and trailing blanks\t "_s,
                            u"1440, 1440, 9000, 6000"_s,
                            u"50%, %20, %%"_s,
                            u"a \"quoted\" word; a semicolon = a sign # too"_s,
                            u"line one\r\nline two\nline three\r"_s,
                            u"@Invalid()"_s,
                            u"@ByteArray(x)"_s,
                            u"back\\slash\\n \\x41"_s,
                            u"[General]"_s,
                            u"Müller, Zoë \u4e2d\u6587 \U0001F600"_s,
                            QString(QChar(u'\0')) + u"after a null"_s,
                            u"true"_s,
                            u"007"_s,
                            QString(5000, u'x'),
                            everyCharacter};
    for (const QString &text : texts) {
        fileSettings(m_path)->SaveSetting(u"Frame1Caption"_s, u"Default Frame1 Caption"_s, text);
        fileSettings(m_path)->SaveSetting(u"Other"_s, u"Neighbour"_s, u"untouched"_s);
        EXPECT_EQ(stored(u"Frame1Caption"_s, u"Default Frame1 Caption"_s, u"(default)"_s), text)
            << text.toStdString();
        EXPECT_EQ(stored(u"Other"_s, u"Neighbour"_s), u"untouched"_s);
    }
    const QStringList names{u"General"_s, u"a/b"_s,   u"a\\b"_s, u"50% of it"_s,
                            u"[x]=y"_s,   u"Größe"_s, u"a"_s};
    for (const QString &name : names)
        fileSettings(m_path)->SaveSetting(name, name, name);
    for (const QString &name : names)
        EXPECT_EQ(stored(name, name), name) << name.toStdString();
}

TEST_F(SettingsTest, aFileEditedByHandIsRead)
{
    QDir().mkpath(QFileInfo(m_path).path());
    QFile file(m_path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[formposition]\nfrmmain=15, 30, 4500, 3000\n\nnonsense\n[unfinished\n");
    file.close();
    EXPECT_EQ(stored(u"FormPosition"_s, u"frmMain"_s), u"15, 30, 4500, 3000"_s);
    fileSettings(m_path)->SaveSetting(u"FormPosition"_s, u"frmToDo"_s, u"1"_s);
    EXPECT_EQ(stored(u"FormPosition"_s, u"frmMain"_s), u"15, 30, 4500, 3000"_s);
    EXPECT_EQ(stored(u"FormPosition"_s, u"frmToDo"_s), u"1"_s);
}

TEST_F(SettingsTest, aStoreThatCannotBeWrittenSaysSoAndKeepsWhatItHad)
{
    // A file stands where the folder would have to be, which stops root, too.
    QFile blocker(m_folder.filePath(u"blocked"_s));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    const auto settings = fileSettings(blocker.fileName() + u"/Vardelin.ini"_s);
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            settings->SaveSetting(u"Preferences"_s, u"Show Tips at Startup"_s, u"1"_s);
            ADD_FAILURE() << "said nothing";
        } catch (const RunTimeError &error) {
            EXPECT_EQ(error.number(), 75);
        }
    }
    EXPECT_EQ(settings->GetSetting(u"Preferences"_s, u"Show Tips at Startup"_s, u"0"_s), u"0"_s);
}

// The writing process is killed at moments that it can't know of; the file is whole each time.
TEST_F(SettingsTest, aKillInTheMiddleOfWritingLeavesAWholeFile)
{
    const QString filler(20'000, u'v');
    fileSettings(m_path)->SaveSetting(u"Preferences"_s, u"Before"_s, filler);
    for (int round = 0; round < 12; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            for (int i = 0;; ++i)
                fileSettings(m_path)->SaveSetting(u"Preferences"_s, u"Counter"_s,
                                                  QString::number(i) + filler);
        }
        usleep(static_cast<useconds_t>(4000 + 1700 * round));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const QSettings file(m_path, QSettings::IniFormat);
        EXPECT_EQ(file.status(), QSettings::NoError);
        EXPECT_EQ(file.value(u"Preferences/Before"_s).toString(), filler);
        const QString counter = file.value(u"Preferences/Counter"_s).toString();
        EXPECT_TRUE(counter.isEmpty() || counter.endsWith(filler));
    }
    fileSettings(m_path)->SaveSetting(u"Preferences"_s, u"After"_s, u"1"_s);
    EXPECT_EQ(stored(u"Preferences"_s, u"After"_s), u"1"_s) << "no lock is left behind";
}

TEST(UserSettings, lieUnderTheConfigurationFolder)
{
    userSettings()->SaveSetting(u"Preferences"_s, u"Time Allowance"_s, u"7"_s);
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    EXPECT_TRUE(QFile::exists(folder + u"/Vardelin/Vardelin.ini"_s));
    EXPECT_EQ(userSettings()->GetSetting(u"preferences"_s, u"time allowance"_s), u"7"_s);
}

} // namespace
