// Any file at all: reading, checking and salvaging give rows or an error. What was salvaged is sound.

#include "platform/jet/Check.h"
#include "platform/jet/Jet.h"
#include "platform/jet/Salvage.h"
#include "tests/fuzz/PageMutator.h"
#include "tests/support/MemoryDisk.h"

#include <cstdlib>

namespace vardelin::jet::fuzz {
namespace {

constexpr const char *kFile = "read.mdb", *kSalvaged = "salvaged.mdb";

template <class Action>
bool done(Action action)
{
    try {
        action();
        return true;
    } catch (const Error &) {
        return false;
    }
}

void readTable(Table &table)
{
    done([&] {
        Bytes store;
        for (Cursor at = table.scan(); !at.atEnd(); at.next()) {
            for (std::size_t i = 0; i < table.columns().size(); ++i) {
                done([&] { at.view().cell(i); });
                const ColumnType type = table.columns()[i].type;
                if (type == ColumnType::Memo || type == ColumnType::Text)
                    done([&] { at.view().isNull(i) || at.view().storedText(i, store).has_value(); });
            }
        }
    });
    for (const LogicalIndex &index : table.indexes()) {
        done([&] {
            for (const RowId row : table.inOrder(index))
                done([&] { table.exists(row); });
        });
        const Cell null;
        done([&] { table.find(index, {&null, 1}); });
    }
}

void readAll(test::MemoryDisk &disk)
{
    done([&] {
        const auto file = File::open(kFile, {.readOnly = true}, disk);
        for (const std::u16string &name : file->tableNames())
            done([&] { readTable(file->table(name)); });
    });
}

void salvage(test::MemoryDisk &disk)
{
    if (done([&] { salvageFile(kFile, kSalvaged, disk); }) && !checkFile(kSalvaged, disk).clean())
        std::abort();
}

} // namespace
} // namespace vardelin::jet::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace vardelin::jet;
    fuzz::Input input = fuzz::split(data, size);
    test::MemoryDisk disk;
    disk.put(fuzz::kFile, std::move(input.pages));
    fuzz::readAll(disk);
    fuzz::done([&] { checkFile(fuzz::kFile, disk); });
    fuzz::salvage(disk);
    return 0;
}
