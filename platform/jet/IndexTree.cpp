#include "platform/jet/IndexTree.h"

#include "platform/jet/Error.h"
#include "platform/jet/IndexChange.h"
#include "platform/jet/IndexPage.h"

namespace vardelin::jet {

IndexTree::IndexTree(Pager &pager, PageNo table, PageNo root) : m_pager(pager), m_table(table), m_root(root)
{}

IndexTree::Cursor IndexTree::begin() const
{
    return seek({});
}

IndexTree::Cursor IndexTree::seek(std::string_view key) const
{
    const auto leaf = std::make_shared<std::optional<IndexPageView>>();
    const IndexPath path = descend(m_pager, m_table, m_root, {key, {}}, *leaf);
    Cursor cursor;
    cursor.m_pager = &m_pager;
    cursor.m_table = m_table;
    cursor.m_leaf = {leaf, &**leaf};
    cursor.m_entry = path.leaf().place;
    cursor.load();
    return cursor;
}

std::optional<RowId> IndexTree::find(std::string_view key) const
{
    std::optional<IndexPageView> leaf;
    const IndexPath path = descend(m_pager, m_table, m_root, {key, {}}, leaf);
    if (path.leaf().place < leaf->size()) {
        std::string store;
        const IndexPlace found = leaf->place(path.leaf().place, store);
        return found.key == key ? std::optional(found.row) : std::nullopt;
    }
    if (leaf->next() == 0)
        return {};
    const Cursor cursor = seek(key); // on a further leaf
    if (cursor.atEnd() || cursor.key() != key)
        return {};
    return cursor.row();
}

void IndexTree::Cursor::next()
{
    ++m_entry;
    load();
}

// Goes on to the next leaf while there is no such entry on this one.
void IndexTree::Cursor::load()
{
    while (m_entry >= m_leaf->size()) {
        const PageNo page = m_leaf->number(), next = m_leaf->next();
        if (next == 0) {
            m_leaf.reset();
            return;
        }
        if (++m_pagesSeen > m_pager->pageCount())
            m_pager->damaged("page " + std::to_string(page) + ": the leaves of the index run in a circle");
        m_leaf = std::make_shared<IndexPageView>(*m_pager, next, m_table);
        if (!m_leaf->leaf())
            m_pager->damaged("page " + std::to_string(page) + ": the next leaf of the index isn't a leaf");
        m_entry = 0;
    }
    std::string store;
    const IndexPlace place = m_leaf->place(m_entry, store);
    m_key.assign(place.key);
    m_row = place.row;
}

void IndexTree::insert(std::string_view key, RowId row, IndexPages &pages)
{
    if (key.size() > kLongestKey)
        throw Error(Code::RecordTooLarge, {}, "a key of " + std::to_string(key.size()) + " bytes");
    IndexChange(m_pager, m_table, m_root, pages).insert({key, row});
}

bool IndexTree::erase(std::string_view key, RowId row, IndexPages &pages)
{
    return IndexChange(m_pager, m_table, m_root, pages).erase({key, row});
}

void IndexTree::initRoot(std::byte *page, PageNo table)
{
    writeEmptyLeaf(page, table);
}

namespace {

// Parts entries, of leaves or of children, into pages as full as they get.
using Group = std::vector<IndexEntry>;

std::vector<Group> fillPages(std::vector<IndexEntry> entries, bool leaf)
{
    std::vector<Group> groups(1);
    std::size_t used = 0;
    for (IndexEntry &entry : entries) {
        const std::size_t size = entry.size(leaf);
        // In a node the last child becomes the tail, which takes no room.
        const bool fits = leaf ? used + size <= kIndexRoom : used <= kIndexRoom;
        if (!fits) {
            groups.emplace_back();
            used = 0;
        }
        used += size;
        groups.back().push_back(std::move(entry));
    }
    if (!leaf && groups.size() > 1 && groups.back().size() == 1) { // a node should have two children
        Group &full = groups[groups.size() - 2];
        groups.back().insert(groups.back().begin(), std::move(full.back()));
        full.pop_back();
    }
    return groups;
}

IndexPage pageOf(Group group, std::uint8_t level)
{
    IndexPage page{.leaf = level == 0, .level = level, .entries = std::move(group)};
    if (!page.leaf && page.entries.size() > 1) {
        page.tail = page.entries.back().child;
        page.entries.pop_back();
    }
    return page;
}

// Nodes were linked as if all had one parent; now that they have several, the links across go.
void partBrothers(Pager &pager, std::span<const Group> groups)
{
    for (const Group &group : groups) {
        setIndexPrevious(pager.change(group.front().child), 0);
        setIndexNext(pager.change(group.back().child), 0);
    }
}

std::vector<IndexEntry> copied(std::span<const std::pair<std::string, RowId>> entries)
{
    std::vector<IndexEntry> copies;
    copies.reserve(entries.size());
    for (const auto &[key, row] : entries) {
        if (key.size() > kLongestKey)
            throw Error(Code::RecordTooLarge, {}, "a key of " + std::to_string(key.size()) + " bytes");
        if (!copies.empty() && !(copies.back().place() < IndexPlace{key, row}))
            throw Error(Code::InvalidArgument, {}, "entries of an index that don't rise");
        copies.push_back({key, row, 0});
    }
    return copies;
}

} // namespace

void IndexTree::build(std::span<const std::pair<std::string, RowId>> entries, IndexPages &pages)
{
    std::vector<IndexEntry> below = copied(entries);
    for (std::uint8_t level = 0;; ++level) {
        std::vector<Group> groups = fillPages(std::move(below), level == 0);
        if (groups.size() == 1) {
            pageOf(std::move(groups.front()), level).write(m_pager.change(m_root), m_table);
            return;
        }
        if (level > 1)
            partBrothers(m_pager, groups);
        below.clear();
        for (const Group &group : groups)
            below.push_back({group.back().key, group.back().row, pages.allocate()});
        for (std::size_t i = 0; i < groups.size(); ++i) {
            IndexPage page = pageOf(std::move(groups[i]), level);
            page.previous = i == 0 ? 0 : below[i - 1].child;
            page.next = i + 1 == groups.size() ? 0 : below[i + 1].child;
            page.write(m_pager.change(below[i].child), m_table);
        }
    }
}

} // namespace vardelin::jet
