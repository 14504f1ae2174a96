// Real processes on a real file: one that is killed in the middle of its work, and two that write at once.

#include "tests/jet/Processes.h"
#include "tests/jet/RowFixtures.h"

#include <chrono>
#include <map>
#include <random>
#include <thread>

namespace vardelin::jet::test {
namespace {

using namespace std::string_literals;
using Clock = std::chrono::steady_clock;

void makeLedger(const std::filesystem::path &path)
{
    const auto file = File::create(path);
    for (const char16_t *name : {u"Logs", u"Copies"}) {
        file->createTable({name,
                           {autoNumberColumn(u"Id"), plainColumn(u"Number", ColumnType::Long),
                            textColumn(u"Client", 100), plainColumn(u"Notes", ColumnType::Memo)},
                           {{u"PrimaryKey", {{u"Id", false}}, true}, {u"ByClient", {{u"Client", false}}}}});
    }
}

std::u16string noteOf(std::int32_t number)
{
    return std::u16string(static_cast<std::size_t>(number * 37 % 6000),
                          static_cast<char16_t>(u'a' + number % 26));
}

Row rowOf(std::int32_t number)
{
    return {{}, number, u"Client "s + toUtf16(std::to_string(number % 17)), noteOf(number)};
}

// One command over both tables: a row in each, an older one changed, an older one deleted.
void write(File &file, std::int32_t number)
{
    Scope scope(file);
    for (const char16_t *name : {u"Logs", u"Copies"}) {
        Table &table = file.table(name);
        insertRow(table, rowOf(number));
        std::vector<RowId> rows;
        for (Cursor at = table.scan(); !at.atEnd(); at.next())
            rows.push_back(at.id());
        if (rows.size() > 30)
            table.erase(rows[static_cast<std::size_t>(number) % 20]);
        updateCell(table, rows.back(), 2,
                   u"Client "s + std::u16string(static_cast<std::size_t>(number % 90), u'x'));
    }
    scope.commit();
}

// The numbers in a table, each row's note checked.
std::vector<std::int32_t> numbersIn(const Table &table)
{
    std::vector<std::int32_t> numbers;
    for (Cursor at = table.scan(); !at.atEnd(); at.next()) {
        numbers.push_back(at.view().longValue(1));
        EXPECT_EQ(at.view().text(3), noteOf(numbers.back()));
    }
    return numbers;
}

// VARDELIN_KILLS sets the number of rounds.
TEST(Processes, AKilledCommandIsThereOrNotAtAll)
{
    const int rounds = countFrom("VARDELIN_KILLS", 25);
    const TemporaryFolder folder;
    const auto path = folder / "ledger.mdb";
    makeLedger(path);
    std::mt19937 random(static_cast<unsigned>(::getpid()));
    std::int32_t last = 0;
    int undone = 0;
    for (int round = 0; round < rounds; ++round) {
        Pipe reports;
        Child writer([&] {
            for (std::int32_t next = last + 1;; ++next) {
                write(*File::open(path), next); // as the program does: opened for the command
                reports.send(next);
            }
        });
        reports.closeWriting();
        std::this_thread::sleep_for(std::chrono::microseconds(2000 + random() % 60000));
        writer.kill();
        const std::int32_t reported = reports.last(last);
        undone += std::filesystem::exists(folder / "ledger.mdb-journal");

        const auto file = File::open(path);
        const auto logs = numbersIn(file->table(u"Logs"));
        ASSERT_EQ(logs, numbersIn(file->table(u"Copies"))) << "round " << round;
        const std::int32_t found = logs.empty() ? 0 : logs.back();
        ASSERT_TRUE(found == reported || found == reported + 1)
            << found << " found, " << reported << " reported";
        ASSERT_TRUE(checkFile(path).clean()) << "round " << round;
        ASSERT_EQ(folder.fileCount(), 1U);
        last = found;
        if (round % 100 == 99)
            expectSound(path, "a file whose writers were killed");
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
    std::printf("%d rounds, %d with a journal left, %d commands\n", rounds, undone, last);
    expectSound(path, "a file whose writers were killed");
}

// VARDELIN_SECONDS sets how long.
TEST(Processes, TwoProgramsWriteAtOnce)
{
    const std::chrono::seconds length(countFrom("VARDELIN_SECONDS", 3));
    const TemporaryFolder folder;
    const auto path = folder / "ledger.mdb";
    makeLedger(path);
    Pipe reports[2];
    const auto work = [&](int which) {
        const auto end = Clock::now() + length;
        std::int32_t number = which;
        for (; Clock::now() < end; number += 2) {
            for (bool done = false; !done;) {
                try {
                    write(*File::open(path), number);
                    done = true;
                } catch (const Error &error) {
                    if (error.code() != Code::Locked)
                        throw;
                }
            }
        }
        reports[which].send(number - 2);
    };
    Child one([&] { work(0); }), two([&] { work(1); });
    int looks = 0;
    for (const auto end = Clock::now() + length; Clock::now() < end; ++looks) {
        const auto file = File::open(path, {.readOnly = true});
        const ReadScope scope(*file); // both tables at one moment
        ASSERT_EQ(numbersIn(file->table(u"Logs")), numbersIn(file->table(u"Copies")));
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_EQ(one.wait(), 0);
    EXPECT_EQ(two.wait(), 0);
    const std::int32_t commands =
        reports[0].receive<std::int32_t>() / 2 + 1 + (reports[1].receive<std::int32_t>() - 1) / 2 + 1;
    const auto file = File::open(path);
    EXPECT_EQ(file->table(u"Logs").lastAutoNumber(), commands) << "no insert is missing";
    EXPECT_EQ(file->table(u"Logs").rowCount(), static_cast<std::uint32_t>(std::min(commands, 30)));
    EXPECT_EQ(numbersIn(file->table(u"Logs")), numbersIn(file->table(u"Copies")));
    std::printf("%d commands, looked at %d times\n", commands, looks);
    expectSound(path, "a file of two writers");
}

} // namespace
} // namespace vardelin::jet::test
