#pragma once
// A sound file with a bit of everything, and the means to hurt it in one place.

#include "platform/jet/Definition.h"
#include "platform/jet/IndexPage.h"
#include "platform/jet/Jet.h"
#include "platform/jet/LongValue.h"
#include "platform/jet/UsageMap.h"
#include "tests/jet/PagerFixtures.h"
#include "tests/support/MemoryDisk.h"

#include <algorithm>
#include <stdexcept>

namespace vardelin::jet::test {

// A file with a bit of everything: long values of each kind, moved and deleted rows, an index with nodes, a
// descending one.
inline Bytes makeFile()
{
    TemporaryFolder folder;
    const std::filesystem::path path = folder / "all.mdb";
    {
        const auto file = File::create(path);
        Table &table = file->createTable({u"Notes",
                                          {{u"Id", ColumnType::Long, 0, true, false, false, false},
                                           {u"Name", ColumnType::Text, 200, false, true, false, true},
                                           {u"Note", ColumnType::Memo, 0, false, false, true, false},
                                           {u"Due", ColumnType::DateTime, 0, false, false, false, false},
                                           {u"Done", ColumnType::Boolean, 0, false, false, false, false}},
                                          {{u"ByName", {{u"Name", true}}, false},
                                           {u"PrimaryKey", {{u"Id", false}}, true, true, true, false}}});
        Scope scope(*file);
        std::vector<RowId> rows;
        for (int i = 0; i < 600; ++i) {
            const std::size_t length = i % 50 == 0 ? 9000 : i % 5 == 0 ? 300 : 10;
            const ColumnValue values[] = {
                {1, std::u16string(u"Name ") + std::u16string(static_cast<std::size_t>(i % 40), u'n')},
                {2, std::u16string(length, u'т')},
                {4, i % 2 == 0}};
            rows.push_back(table.insert(values));
        }
        for (std::size_t i = 0; i < rows.size(); i += 7) {
            const ColumnValue longer{1, std::u16string(190, u'z')};
            table.update(rows[i], {&longer, 1});
        }
        for (std::size_t i = 3; i < rows.size(); i += 11)
            table.erase(rows[i]);
        scope.commit();
    }
    return readFile(path);
}

inline const Bytes &soundFile()
{
    static const Bytes file = makeFile();
    return file;
}

// The sound file, opened up to be hurt.
class Patient
{
public:
    Patient() : bytes(soundFile())
    {
        m_disk.put("sound.mdb", bytes);
        m_pager = Pager::open(m_disk, "sound.mdb", Pager::Access::Read);
        m_section.emplace(*m_pager);
        PageNo page = 6;
        while (at(page) != std::byte{2})
            ++page;
        definition = parseDefinition(*m_pager, readDefinition(*m_pager, page));
        definition.name = u"Notes";
    }

    Pager &pager() { return *m_pager; }
    std::byte &at(PageNo page, std::size_t offset = 0) { return bytes[page * kPageSize + offset]; }
    template <class T>
    T get(PageNo page, std::size_t offset)
    {
        return load<T>(&at(page, offset));
    }
    template <class T>
    void add(PageNo page, std::size_t offset, T value)
    {
        store(&at(page, offset), static_cast<T>(get<T>(page, offset) + value));
    }
    void flip(PageNo page, std::size_t offset, unsigned bits = 0xFF)
    {
        at(page, offset) ^= static_cast<std::byte>(bits);
    }

    // Where a row's bytes begin.
    std::size_t rowAt(RowId row) { return DataPage(*m_pager, row.page).slot(row.row).begin; }
    PageNo firstPage(RowId map) { return UsageMap(*m_pager, map).next(0); }
    // The first row whose slot has these flags.
    RowId rowWith(std::uint16_t flags)
    {
        const UsageMap owned(*m_pager, definition.owned);
        for (PageNo page = owned.next(0); page != kNoPage; page = owned.next(page + 1)) {
            const DataPage view(*m_pager, page);
            for (std::size_t i = 0; i < view.slots(); ++i) {
                if (view.slot(i).flags == flags)
                    return {page, static_cast<std::uint8_t>(i)};
            }
        }
        ADD_FAILURE() << "no row with flags " << flags;
        return {};
    }
    const PhysicalIndex &index(const char16_t *name)
    {
        for (const LogicalIndex &logical : definition.logical) {
            if (logical.name == name)
                return definition.physical[logical.physical];
        }
        throw std::logic_error("no such index");
    }
    PageNo leafOf(const PhysicalIndex &tree)
    {
        const IndexPageView root(*m_pager, tree.root, definition.page());
        return root.leaf() ? tree.root : root.child(0);
    }
    const LongValueMaps &notes() { return definition.longValues.front(); }
    // The free page map's bit for a page.
    void flipFree(PageNo page) { flip(1, rowAt({1, 0}) + 5 + page / 8, 1U << (page % 8)); }
    std::size_t find(std::u16string_view text, PageNo from) // of a text in UTF-16LE: its offset in the file
    {
        const auto raw = std::as_bytes(std::span(text));
        const auto found = std::search(bytes.begin() + from * kPageSize, bytes.end(), raw.begin(), raw.end());
        return static_cast<std::size_t>(found - bytes.begin());
    }

    Bytes bytes;
    TableDefinition definition;

private:
    MemoryDisk m_disk;
    std::unique_ptr<Pager> m_pager;
    std::optional<ReadSection> m_section;
};

} // namespace vardelin::jet::test
