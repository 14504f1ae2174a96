// Changes to stored logs.

#include "tests/display/DisplayWindows.h"

using namespace Qt::StringLiterals;

namespace vardelin::testing_support {

struct DisplayEditTest : DisplayWindowsTest
{
    ~DisplayEditTest() override { expectSound(global.DatabaseFileName, VARDELIN_ROOT); }

    void expectDeletion(Answer answer)
    {
        dialogs.expect({.prompt = u"Are you sure?"_s,
                        .title = u"Delete This Record"_s,
                        .buttons = Buttons::YesNo,
                        .defaultButton = 2},
                       answer);
    }
    QStringList clients() { return column(u"Vardelins"_s, u"Client"_s); }
};

TEST_F(DisplayEditTest, SaveChangesStoresWhatWasTypedAndStaysAtTheRecord)
{
    for (int count = 1; count <= 3; ++count) {
        addLog(count);
        for (int log = 1; log <= count; ++log) {
            const auto window = open();
            window->control().SetAbsolutePosition(log);
            const QString rate = u"%1.50"_s.arg(100 * count + log);
            typeOver(field(window.get(), 4), rate);
            choose(window.get(), u"Toolbar1.Save"_s);
            EXPECT_EQ(stored(u"Rate"_s, log), rate) << count << " records";
            EXPECT_EQ(field(window.get(), 4)->text(), rate);
            EXPECT_EQ(field(window.get(), 1)->text(), u"Archer, Ann %1"_s.arg(log));
            EXPECT_EQ(stored(u"Fee"_s, log), QString::number(10 * log)) << "the fee is not worked out again";
        }
    }
}

TEST_F(DisplayEditTest, EveryFieldIsStoredAsTyped)
{
    addLog(1);
    const auto window = open();
    const std::vector<std::pair<int, QString>> typed{{1, u"O'Hara & Söhne, \"Ann\""_s},
                                                     {2, u"Cole, Dee"_s},
                                                     {3, QString()},
                                                     {4, u"1234567890"_s},
                                                     {5, u"Letter"_s},
                                                     {6, u"1234.5678"_s},
                                                     {7, u"2/28/2027 11:59:59 PM"_s},
                                                     {8, u"2.5"_s},
                                                     {9, u"3/1/2027"_s}};
    for (const auto &[number, text] : typed)
        typeOver(field(window.get(), number), text);
    QTest::keyClicks(notes(window.get(), 2), u"More. "_s);
    choose(window.get(), u"mnuSaveChanges"_s);
    const auto again = open();
    for (const auto &[number, text] : typed)
        EXPECT_EQ(field(again.get(), number)->text(), text) << number;
    EXPECT_EQ(stored(u"Vardelin"_s, 1), u"More. Notes 1"_s);
    const QString row = exportedRows(global.DatabaseFileName, u"Vardelins"_s).join(u'\n');
    for (const QString &part : {u"Söhne"_s, u"2027-02-28 23:59:59"_s, u"2027-03-01"_s, u"1234.5678"_s})
        EXPECT_TRUE(row.contains(part)) << row.toStdString();
}

TEST_F(DisplayEditTest, WhatTheEngineRefusesIsSaidAndStaysInTheField)
{
    addLogs(2);
    const auto window = open();
    const std::vector<std::tuple<int, QString, int>> refused{{4, u"12345678901"_s, 3163},
                                                             {8, u"abc"_s, 3421},
                                                             {7, u"31 Nonsense 2026"_s, 3421},
                                                             {6, u"much"_s, 3421}};
    const QStringList before = exportedRows(global.DatabaseFileName, u"Vardelins"_s);
    const std::vector<std::function<void()>> ways{
        [&] { choose(window.get(), u"mnuSaveChanges"_s); }, [&] { press(window.get(), u"First"_s); },
        [&] { releaseSlider(window.get(), 50); },
        [&] { QTest::keyClick(slider(window.get()), Qt::Key_Left); }};
    for (const auto &[number, text, error] : refused) {
        const QString good = field(window.get(), number)->text();
        typeOver(field(window.get(), 5), u"typed with it"_s);
        typeOver(field(window.get(), number), text);
        for (const auto &leave : ways) {
            dialogs.expect(descriptionOf(error));
            leave();
            EXPECT_TRUE(dialogs.done());
            EXPECT_EQ(field(window.get(), number)->text(), text);
            EXPECT_EQ(field(window.get(), 5)->text(), u"typed with it"_s);
            EXPECT_EQ(field(window.get(), 1)->text(), u"Archer, Ann 2"_s) << "the record stays";
            EXPECT_EQ(slider(window.get())->value(), 100) << "and the slider with it";
            EXPECT_EQ(exportedRows(global.DatabaseFileName, u"Vardelins"_s), before);
        }
        typeOver(field(window.get(), number), good);
    }
    choose(window.get(), u"mnuSaveChanges"_s);
    EXPECT_EQ(stored(u"Log Summary"_s, 2), u"typed with it"_s);
}

TEST_F(DisplayEditTest, MovingOnStoresAndClosingDrops)
{
    addLogs(3);
    auto window = open();
    typeOver(field(window.get(), 3), u"by the navigator"_s);
    press(window.get(), u"Previous"_s);
    EXPECT_EQ(stored(u"Project"_s, 3), u"by the navigator"_s);
    typeOver(field(window.get(), 3), u"by the slider"_s);
    releaseSlider(window.get(), 100);
    EXPECT_EQ(stored(u"Project"_s, 2), u"by the slider"_s);
    typeOver(field(window.get(), 3), u"never"_s);
    window.reset();
    EXPECT_EQ(stored(u"Project"_s, 3), u"by the navigator"_s);
}

TEST_F(DisplayEditTest, StoredNotesKeepEveryByteUnlessTheyAreEdited)
{
    addLogs(2);
    {
        const auto database = engine.OpenDatabase(global.DatabaseFileName);
        const auto rows = database->OpenRecordset(u"Vardelins"_s);
        rows->MoveLast();
        rows->Edit();
        rows->SetField(u"Vardelin"_s, u"a\nb\r\nc\rd\tend \n"_s);
        rows->Update();
    }
    const auto window = open();
    for (const char16_t *view : {u"mnuGraphics", u"mnuText"}) {
        choose(window.get(), QString::fromUtf16(view));
        typeOver(field(window.get(), 5), QString::fromUtf16(view));
        press(window.get(), u"First"_s);
        press(window.get(), u"Last"_s);
        EXPECT_EQ(stored(u"Log Summary"_s, 2), QString::fromUtf16(view));
        EXPECT_EQ(stored(u"VardeGraphic"_s, 2), rtf(2));
        EXPECT_EQ(stored(u"Vardelin"_s, 2), u"a\nb\r\nc\rd\tend \n"_s);
    }
    choose(window.get(), u"mnuGraphics"_s);
    QTest::keyClicks(notes(window.get(), 1), u"New "_s);
    choose(window.get(), u"mnuText"_s); // out of sight, but typed
    choose(window.get(), u"mnuSaveChanges"_s);
    EXPECT_TRUE(stored(u"VardeGraphic"_s, 2).startsWith(u"{\\rtf"_s));
    EXPECT_EQ(stored(u"Vardelin"_s, 2), u"a\nb\r\nc\rd\tend \n"_s) << "the two views are two columns";
    choose(window.get(), u"mnuGraphics"_s);
    EXPECT_EQ(notes(window.get(), 1)->Text().trimmed(), u"New Rich notes 2"_s);

    choose(window.get(), u"mnuText"_s);
    notes(window.get(), 2)->insertPlainText(u"\u00a7\u00a012 "_s); // a sign, a hard blank
    choose(window.get(), u"mnuSaveChanges"_s);
    QTest::keyClicks(notes(window.get(), 2), u"See "_s);
    choose(window.get(), u"mnuSaveChanges"_s);
    EXPECT_EQ(stored(u"Vardelin"_s, 2), u"See \u00a7\u00a012 a\r\nb\r\nc\r\nd\tend \r\n"_s);
}

TEST_F(DisplayEditTest, DeleteAsksAndGoesOnAtTheLast)
{
    addLogs(3);
    const auto window = open();
    press(window.get(), u"First"_s);
    expectDeletion(Answer::No);
    choose(window.get(), u"mnuDeleteLog"_s);
    EXPECT_TRUE(field(window.get(), 2)->hasFocus());
    EXPECT_EQ(clients().size(), 3);
    const Value end = global.RangeEnd;
    expectDeletion(Answer::Yes);
    choose(window.get(), u"mnuDeleteLog"_s);
    EXPECT_EQ(clients(), (QStringList{u"Archer, Ann 2"_s, u"Archer, Ann 3"_s}));
    EXPECT_EQ(field(window.get(), 1)->text(), u"Archer, Ann 3"_s) << "the last, not the neighbour";
    EXPECT_TRUE(field(window.get(), 2)->hasFocus());
    EXPECT_EQ(global.RangeEnd, end);
    expectDeletion(Answer::Yes);
    choose(window.get(), u"mnuDeleteLog"_s);
    expectDeletion(Answer::Yes);
    choose(window.get(), u"mnuDeleteLog"_s);
    EXPECT_EQ(clients(), QStringList());
    EXPECT_EQ(fields(window.get()).join(QString()), QString());
    expectDeletion(Answer::Yes);
    dialogs.expect({.prompt = u"There are no records to delete."_s, .title = u"Delete This Record"_s});
    choose(window.get(), u"mnuDeleteLog"_s);
}

TEST_F(DisplayEditTest, TwoWindowsOnOneFileDontHearOfEachOther)
{
    addLogs(3);
    const auto first = open();
    const auto second = open();
    typeOver(field(first.get(), 3), u"Changed"_s);
    choose(first.get(), u"mnuSaveChanges"_s);
    EXPECT_EQ(field(second.get(), 3)->text(), u"Estate"_s);
    press(first.get(), u"Previous"_s);
    expectDeletion(Answer::Yes);
    choose(first.get(), u"mnuDeleteLog"_s);

    // The second one meets the place of the deleted record, says so and goes on.
    dialogs.expect(descriptionOf(3167));
    press(second.get(), u"Previous"_s);
    EXPECT_EQ(fields(second.get()).join(QString()), QString());
    expectDeletion(Answer::Yes);
    dialogs.expect(descriptionOf(3167));
    choose(second.get(), u"mnuDeleteLog"_s);
    press(second.get(), u"First"_s);
    EXPECT_EQ(field(second.get(), 1)->text(), u"Archer, Ann 1"_s);

    // A record that goes while one types into it: told, and the typing stays.
    press(first.get(), u"First"_s);
    expectDeletion(Answer::Yes);
    choose(first.get(), u"mnuDeleteLog"_s);
    typeOver(field(second.get(), 3), u"Too late"_s);
    dialogs.expect(descriptionOf(3167));
    choose(second.get(), u"mnuSaveChanges"_s);
    EXPECT_EQ(field(second.get(), 3)->text(), u"Too late"_s);
    EXPECT_EQ(clients(), QStringList{u"Archer, Ann 3"_s});
    EXPECT_EQ(stored(u"Project"_s, 1), u"Changed"_s);
}

} // namespace vardelin::testing_support
