// Changes of any file at all, sound or not: rows come and go, tables are made, scopes kept or undone, the
// file is compacted. Nothing but the engine's errors may come of it, and a file that was sound is sound
// afterwards.

#include "platform/jet/Check.h"
#include "platform/jet/Compact.h"
#include "platform/jet/Jet.h"
#include "tests/fuzz/PageMutator.h"
#include "tests/support/MemoryDisk.h"

#include <cstdlib>

namespace vardelin::jet::fuzz {
namespace {

constexpr const char *kFile = "changed.mdb", *kCompacted = "compacted.mdb";

// Bytes of the script, zeros behind its end.
class Script
{
public:
    explicit Script(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}
    bool atEnd() const { return m_bytes.empty(); }
    unsigned next()
    {
        if (m_bytes.empty())
            return 0;
        const unsigned byte = m_bytes.front();
        m_bytes = m_bytes.subspan(1);
        return byte;
    }

private:
    std::span<const std::uint8_t> m_bytes;
};

Cell valueFor(const Column &column, unsigned seed)
{
    constexpr std::size_t kLengths[] = {0, 1, 30, 90, 250, 2000, 4500, 9000};
    const std::size_t length = kLengths[seed % 8];
    const auto unit = static_cast<char16_t>(seed % 3 == 0 ? 0x442 : u'a' + seed % 20);
    if (seed % 11 == 0)
        return {};
    switch (column.type) {
    case ColumnType::Boolean:
        return seed % 2 == 0;
    case ColumnType::Byte:
        return static_cast<std::uint8_t>(seed);
    case ColumnType::Integer:
        return static_cast<std::int16_t>(seed);
    case ColumnType::Long:
        return static_cast<std::int32_t>(seed);
    case ColumnType::Currency:
        return Currency{static_cast<std::int64_t>(seed) * 100};
    case ColumnType::Single:
        return static_cast<float>(seed);
    case ColumnType::Double:
        return static_cast<double>(seed);
    case ColumnType::DateTime:
        return DateTime{static_cast<double>(seed)};
    case ColumnType::Text:
        return std::u16string(length % 256, unit);
    case ColumnType::Memo:
        return std::u16string(length, unit);
    case ColumnType::Binary:
    case ColumnType::Ole:
    case ColumnType::Big:
        return Bytes(length, static_cast<std::byte>(seed));
    case ColumnType::Guid:
        return Guid{};
    case ColumnType::Decimal:
        return Decimal{false, {0, 0, 0, seed}, column.scale};
    }
    return {};
}

class Play
{
public:
    Play(test::MemoryDisk &disk, Script script) : m_disk(disk), m_script(script) {}

    void run()
    {
        while (!m_script.atEnd()) {
            try {
                step();
            } catch (const Error &) {
            }
        }
        close();
    }

private:
    void close()
    {
        m_scope.reset();
        m_file.reset();
    }

    File &file()
    {
        if (!m_file)
            m_file = File::open(kFile, {}, m_disk);
        return *m_file;
    }

    Table &table()
    {
        const std::vector<std::u16string> names = file().tableNames();
        if (names.empty())
            throw Error(Code::TableNotFound);
        return file().table(names[m_script.next() % names.size()]);
    }

    std::vector<ColumnValue> values(const Table &table, unsigned one)
    {
        std::vector<ColumnValue> values;
        for (std::size_t i = 0; i < table.columns().size(); ++i) {
            if (!table.columns()[i].autoNumber && (one == 0 || one == i))
                values.emplace_back(i, valueFor(table.columns()[i], m_script.next()));
        }
        return values;
    }

    RowId someRow(const Table &table)
    {
        Cursor at = table.scan();
        for (unsigned skip = m_script.next() % 16; skip > 0 && !at.atEnd(); --skip)
            at.next();
        if (at.atEnd())
            throw Error(Code::NoCurrentRecord);
        return at.id();
    }

    void step()
    {
        switch (m_script.next() % 8) {
        case 0:
        case 1: {
            Table &into = table();
            into.insert(values(into, 0));
            return;
        }
        case 2: {
            Table &in = table();
            in.update(someRow(in), values(in, 1 + m_script.next() % 8));
            return;
        }
        case 3: {
            Table &from = table();
            from.erase(someRow(from));
            return;
        }
        case 4: {
            Table &from = table(); // all of it
            Scope scope(file());
            for (Cursor at = from.scan(); !at.atEnd(); at.next())
                from.erase(at.id());
            scope.commit();
            return;
        }
        case 5:
            file().createTable({u"Fresh",
                                {{u"Id", ColumnType::Long, 0, true}, {u"Note", ColumnType::Memo}},
                                {{u"Key", {{u"Id", false}}, true}}});
            return;
        case 6:
            if (m_scope && m_script.next() % 2 == 0)
                m_scope->commit();
            if (m_scope)
                m_scope.reset();
            else
                m_scope.emplace(file());
            return;
        default:
            close();
            if (m_disk.exists(kCompacted))
                m_disk.remove(kCompacted);
            compactFile(kFile, kCompacted, m_disk);
            m_compacted = true;
        }
    }

public:
    bool compacted() const { return m_compacted; }

private:
    test::MemoryDisk &m_disk;
    Script m_script;
    std::unique_ptr<File> m_file;
    std::optional<Scope> m_scope;
    bool m_compacted = false;
};

bool sound(test::MemoryDisk &disk, const char *name)
{
    try {
        return checkFile(name, disk).sound();
    } catch (const Error &) {
        return false;
    }
}

} // namespace
} // namespace vardelin::jet::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    using namespace vardelin::jet;
    fuzz::Input input = fuzz::split(data, size);
    test::MemoryDisk disk;
    disk.put(fuzz::kFile, std::move(input.pages));
    const bool wasSound = fuzz::sound(disk, fuzz::kFile);
    fuzz::Play play(disk, fuzz::Script(input.script));
    play.run();
    if (wasSound && !fuzz::sound(disk, fuzz::kFile))
        std::abort();
    if (wasSound && play.compacted() && disk.exists(fuzz::kCompacted) && !fuzz::sound(disk, fuzz::kCompacted))
        std::abort();
    return 0;
}
