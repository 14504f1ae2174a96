// Saves on a real file, judged by reading it back and by other readers of the format.
#include "database/CreateDatabase.h"
#include "database/LogDatabase.h"
#include "tests/entry/EntryWindows.h"
#include "tests/support/Judges.h"

#include <QFile>
#include <QTemporaryDir>
#include <gmock/gmock.h>

using namespace Qt::StringLiterals;

namespace vardelin {

namespace {

struct SaveLogTest : testing_support::EntryWindowsTest
{
    SaveLogTest()
    {
        global.DatabaseFileName = folder.filePath(u"office.mdb"_s);
        CreateDatabase(global);
        OpenLogDatabase(global);
        global.DefaultEmployee = u"Roe, Jane"_s;
        window = parent.open();
    }

    void fill(const QString &client, const QString &rate, const QString &text)
    {
        combo(window, 1)->setText(client);
        combo(window, 4)->setText(rate);
        notes(window)->setText(text);
    }
    void save() { choose(window, u"mnuLogcompleted"); }

    std::vector<std::map<QString, Value>> logs()
    {
        std::vector<std::map<QString, Value>> rows;
        const auto database = engine.OpenDatabase(global.DatabaseFileName);
        const auto table = database->OpenRecordset(u"Vardelins"_s);
        for (; !table->EOF_(); table->MoveNext()) {
            auto &row = rows.emplace_back();
            for (const QString &name : table->FieldNames())
                row[name] = table->Fields(name);
        }
        return rows;
    }
    QByteArray bytes() const
    {
        QFile file(global.DatabaseFileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void judge() const { testing_support::expectSound(global.DatabaseFileName, VARDELIN_ROOT); }

    QTemporaryDir folder;
    frmEntryWithFrames *window = nullptr;
};

} // namespace

TEST_F(SaveLogTest, StoresEveryFieldAndStartsTheNextLog)
{
    fill(u" Last, First "_s, u"150 "_s, u" Long talk about the \u201Cfile\u201D \r\n"_s);
    combo(window, 2)->setText(u"Doe, John"_s);
    combo(window, 3)->setText(u"REVIEW CASES"_s);
    summary(window)->setText(u"  Conference  "_s);
    clock.forward(20 * 60);
    picker(window, 2)->setValue(clock.now());
    save();

    const auto rows = logs();
    ASSERT_EQ(rows.size(), 1u);
    auto row = rows[0];
    EXPECT_EQ(row[u"Indexing Field"_s], Value(std::int32_t(1)));
    EXPECT_EQ(row[u"Client"_s], Value(u"Last, First"_s));
    EXPECT_EQ(row[u"Employee"_s], Value(u"Doe, John"_s));
    EXPECT_EQ(row[u"Project"_s], Value(u"REVIEW CASES"_s));
    EXPECT_EQ(row[u"Rate"_s], Value(u"150"_s));
    EXPECT_EQ(row[u"Log Summary"_s], Value(u"Conference"_s));
    EXPECT_EQ(row[u"Vardelin"_s], Value(u"Long talk about the \u201Cfile\u201D \r\n"_s))
        << "blanks alone are trimmed";
    EXPECT_TRUE(toText(row[u"VardeGraphic"_s]).startsWith(u"{\\rtf"));
    EXPECT_EQ(dateText(toDate(row[u"Beginning Time"_s])), u"10/16/2026 9:00:00 AM"_s);
    EXPECT_EQ(dateText(toDate(row[u"Ending Time"_s])), u"10/16/2026 9:20:00 AM"_s);
    EXPECT_EQ(row[u"Duration"_s], Value(0.4f));
    EXPECT_EQ(row[u"Fee"_s], Value(Currency{600000}));
    EXPECT_EQ(global.CurrentRate, u"150"_s);
    EXPECT_EQ(global.CurrentDuration, u".4"_s);
    EXPECT_EQ(toDecimal(global.CurrentFee), Decimal(60));

    EXPECT_EQ(label(window, u"Label1"), u"Vardelin saved"_s);
    EXPECT_EQ(combo(window, 2)->Text(), u"Roe, Jane"_s)
        << "the default employee again, not the one of the log";
    for (const int number : {1, 3, 4})
        EXPECT_EQ(combo(window, number)->Text(), QString());
    EXPECT_EQ(notes(window)->Text() + summary(window)->text(), QString());
    EXPECT_EQ(picker(window, 1)->Value(), picker(window, 2)->Value());
    EXPECT_EQ(dateText(picker(window, 1)->Value()), u"10/16/2026 9:20:00 AM"_s);
    judge();
}

TEST_F(SaveLogTest, OtherProgramsReadTheLog)
{
    fill(u"O'Last, First"_s, u"99.99"_s, u"notes"_s);
    notes(window)->setFontWeight(QFont::Bold);
    notes(window)->insertPlainText(u"in bold "_s);
    save();
    judge();
    // The RTF has line ends of its own.
    const std::string exported =
        testing_support::exportedRows(global.DatabaseFileName, u"Vardelins"_s).join(u'\n').toStdString();
    EXPECT_THAT(exported, testing::HasSubstr("1,\"O'Last, First\","));
    EXPECT_THAT(exported, testing::HasSubstr("\"Roe, Jane\",\"99.99\",\"in bold notes\",\"{\\rtf"));
    EXPECT_THAT(exported, testing::HasSubstr("09:00:00\",0.1,9.9990"));
}

TEST_F(SaveLogTest, SmallestLogs)
{
    fill({}, {}, {});
    combo(window, 3)->setText(u"MARKETING"_s);
    combo(window, 2)->setText({});
    save();
    fill(u"Last, First"_s, {}, QString(150, u'n'));
    summary(window)->setText(u"   "_s);
    save();
    auto rows = logs();
    ASSERT_EQ(rows.size(), 2u);
    for (const QString &name : {u"Client"_s, u"Employee"_s, u"Rate"_s, u"Log Summary"_s, u"Vardelin"_s})
        EXPECT_EQ(rows[0][name], Value(QString())) << name.toStdString();
    EXPECT_EQ(rows[0][u"Duration"_s], Value(0.1f));
    EXPECT_EQ(rows[0][u"Fee"_s], Value(Currency{0}));
    EXPECT_EQ(rows[1][u"Log Summary"_s], Value(QString(100, u'n')));
    EXPECT_EQ(rows[1][u"Vardelin"_s], Value(QString(150, u'n')));
    judge();
}

TEST_F(SaveLogTest, NothingIsWrittenWithoutClientAndProject)
{
    const QByteArray before = bytes();
    fill(u"   "_s, u"150"_s, u"typed"_s);
    dialogs.expect(u"You did not enter a client or a project."_s);
    summary(window)->setFocus();
    save();
    EXPECT_EQ(bytes(), before);
    EXPECT_EQ(notes(window)->Text(), u"typed"_s);
    EXPECT_TRUE(combo(window, 1)->hasFocus() || combo(window, 1)->lineEdit()->hasFocus());
}

TEST_F(SaveLogTest, AFailingSaveLeavesFileAndWindowAsTheyWere)
{
    struct Row
    {
        const char *reason;
        std::function<void()> spoil;
        int number;
    };
    const Row rows[] = {
        {"a rate that is no number", [&] { combo(window, 4)->setText(u"abc"_s); }, 13},
        {"a rate too long", [&] { combo(window, 4)->setText(u"150.0000000"_s); }, 3163},
        {"a summary of 101 characters", [&] { summary(window)->setText(QString(101, u's')); }, 3163},
        {"a client longer than its column", [&] { combo(window, 1)->setText(QString(201, u'c')); }, 3163},
    };
    fill(u"Last, First"_s, u"150"_s, u"first"_s);
    save();
    const QByteArray before = bytes();
    for (const Row &row : rows) {
        fill(u"Last, First"_s, u"150"_s, u"typed and kept"_s);
        summary(window)->clear();
        row.spoil();
        const QString client = combo(window, 1)->Text(), rate = combo(window, 4)->Text(),
                      line = summary(window)->text();
        dialogs.expectBeginning(u"Run-time error '%1':\n\n"_s.arg(row.number));
        save();
        EXPECT_EQ(bytes(), before) << row.reason;
        EXPECT_EQ(notes(window)->Text(), u"typed and kept"_s) << row.reason;
        EXPECT_EQ(combo(window, 1)->Text(), client) << row.reason;
        EXPECT_EQ(combo(window, 4)->Text(), rate) << row.reason;
        EXPECT_EQ(summary(window)->text(), line) << row.reason;
    }
    EXPECT_EQ(ended, 0) << "the program goes on";

    fill(u"Last, First"_s, u"150"_s, u"typed and kept"_s);
    summary(window)->clear();
    QFile::remove(global.DatabaseFileName);
    dialogs.expectBeginning(u"Run-time error '"_s);
    save();
    EXPECT_FALSE(QFile::exists(global.DatabaseFileName));
    EXPECT_EQ(notes(window)->Text(), u"typed and kept"_s);
    EXPECT_EQ(ended, 0);
}

TEST_F(SaveLogTest, FollowsTheProgramsFileAndNotTheWindows)
{
    const QString windows = global.DatabaseFileName;
    global.DatabaseFileName = folder.filePath(u"other.mdb"_s);
    CreateDatabase(global);
    fill(u"Last, First"_s, u"150"_s, {});
    save();
    EXPECT_EQ(logs().size(), 1u);
    EXPECT_EQ(window->file(), windows);
    global.DatabaseFileName = windows;
    EXPECT_EQ(logs().size(), 0u);
}

TEST_F(SaveLogTest, ARecentFileOpensBesideWhatIsOpen)
{
    const QString first = global.DatabaseFileName;
    global.DatabaseFileName = folder.filePath(u"R&D.mdb"_s);
    CreateDatabase(global);
    const QString recent = global.DatabaseFileName;
    global.DatabaseFileName = first;
    global.List2 = {recent, folder.filePath(u"damaged.mdb"_s)};
    int displays = 0;
    global.DisplayWindows.emplace_back();
    global.openers.NewDisplayWindow = [&]() -> DisplayWindow * {
        ++displays;
        return nullptr;
    };
    frmEntryWithFrames *from = parent.open();
    choose(from, u"mnuFileName(0)");
    EXPECT_EQ(global.DatabaseFileName, recent);
    EXPECT_EQ(displays, 1);
    ASSERT_EQ(global.EntryWindows.size(), 3u);
    EXPECT_EQ(global.EntryWindows[2]->file(), recent);
    EXPECT_EQ(from->file(), first) << "what is open stays on its file";

    QFile damaged(folder.filePath(u"damaged.mdb"_s));
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("no database");
    damaged.close();
    dialogs.expectBeginning(u"Run-time error '"_s);
    choose(from, u"mnuFileName(1)");
    EXPECT_EQ(global.DatabaseFileName, recent) << "the next save mustn't go to a file that can't be read";
    EXPECT_EQ(global.List1[3].size(), 15) << "nor are the lists gone";
    EXPECT_EQ(displays, 1);
    EXPECT_EQ(ended, 0);
}

} // namespace vardelin
