// A file with one wrong byte gives rows or an error, never a crash, a hang or a report of the sanitizers.

#include "platform/jet/Compact.h"
#include "tests/jet/RowFixtures.h"
#include "tests/support/MemoryDisk.h"

namespace vardelin::jet::test {
namespace {

constexpr const char *kName = "damaged.mdb";

Bytes smallFile(MemoryDisk &disk)
{
    const auto file = File::create(kName, disk);
    Table &table = file->createTable(
        {u"Small",
         {autoNumberColumn(u"Id"), textColumn(u"Name", 20), plainColumn(u"Note", ColumnType::Memo),
          plainColumn(u"Flag", ColumnType::Boolean)},
         {{u"PrimaryKey", {{u"Id", false}}, true}, {u"ByName", {{u"Name", false}}}}});
    for (const std::size_t units : {0U, 20U, 500U, 2000U})
        insertRow(table, {{}, std::u16string(units % 17, u'n'), std::u16string(units, u'x'), units > 0});
    table.erase(table.scan().id());
    return disk.content(kName);
}

// Reads all and writes a little; errors are what is to be expected.
void tryAll(MemoryDisk &disk)
{
    try {
        const auto file = File::open(kName, {}, disk);
        for (const std::u16string &name : file->tableNames()) {
            try {
                rowsOf(file->table(name));
            } catch (const Error &) {
            }
        }
        Scope scope(*file); // never committed
        Table &table = file->table(u"Small");
        const RowId id = insertRow(table, {{}, std::u16string(u"new"), std::u16string(5000, u'y'), true});
        updateCell(table, id, 2, std::u16string(u"short"));
        for (Cursor at = table.scan(); !at.atEnd(); at.next())
            table.erase(at.id());
    } catch (const Error &error) {
        EXPECT_TRUE(error.code() != Code::Damaged || !error.reason().empty());
    }
}

// The new file can be opened, or isn't there.
void tryCompacting(MemoryDisk &disk)
{
    constexpr const char *kTarget = "compacted.mdb";
    try {
        compactFile(kName, kTarget, disk);
    } catch (const Error &) {
        EXPECT_FALSE(disk.exists(kTarget));
        return;
    }
    EXPECT_NO_THROW(File::open(kTarget, {}, disk)->tableNames());
    disk.remove(kTarget);
}

TEST(DamagedPages, OneWrongByteAnywhere)
{
    MemoryDisk disk;
    const Bytes good = smallFile(disk);
    const PageNo pages = static_cast<PageNo>(good.size() / kPageSize);
    std::size_t tried = 0;
    for (std::size_t at = 0; at < good.size(); ++at) {
        const PageNo page = static_cast<PageNo>(at / kPageSize);
        // Runs of zeros that nothing reads would only cost time.
        const bool quiet = good[at] == std::byte{0} && at % 127 != 0;
        if (quiet || page >= pages)
            continue;
        Bytes bad = good;
        bad[at] ^= static_cast<std::byte>(1U << (at % 8));
        if (at % 3 == 0)
            bad[at] = ~good[at];
        disk.put(kName, std::move(bad));
        if (tried % 8 == 0)
            tryCompacting(disk);
        tryAll(disk);
        ++tried;
    }
    EXPECT_GT(tried, 2000U);
}

} // namespace
} // namespace vardelin::jet::test
