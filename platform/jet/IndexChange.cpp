#include "platform/jet/IndexChange.h"

#include <algorithm>

namespace vardelin::jet {

namespace {

std::string pageName(PageNo page)
{
    return "page " + std::to_string(page) + ": ";
}

// Halves the entries by their bytes until each part fits on a page.
void halve(Pager &pager, PageNo from, const IndexPage &page, std::span<const IndexEntry> entries,
           std::vector<std::size_t> &sizes)
{
    if (entriesFit(entries, page.leaf, page.hadPrefix))
        return sizes.push_back(entries.size());
    if (entries.size() < 2)
        pager.damaged(pageName(from) + "an entry of the index is too long");
    std::size_t bytes = 0;
    for (const IndexEntry &entry : entries)
        bytes += entry.size(page.leaf);
    std::size_t lower = 0;
    for (std::size_t taken = 0; lower + 1 < entries.size() && (lower == 0 || 2 * taken < bytes); ++lower)
        taken += entries[lower].size(page.leaf);
    halve(pager, from, page, entries.first(lower), sizes);
    halve(pager, from, page, entries.subspan(lower), sizes);
}

// Parts a page that is too full; the last part keeps its place. For keys that rise all but the newest entry
// go to a page of their own, so that leaves fill up.
std::vector<IndexPage> parted(Pager &pager, PageNo from, IndexPage &page, bool rising)
{
    std::vector<std::size_t> sizes;
    const auto old = std::span(page.entries).first(page.entries.size() - 1);
    if (rising && entriesFit(old, page.leaf, page.hadPrefix))
        sizes = {old.size(), 1};
    else
        halve(pager, from, page, page.entries, sizes);
    std::vector<IndexPage> parts;
    auto entry = std::make_move_iterator(page.entries.begin());
    for (const std::size_t size : sizes) {
        const auto end = entry + static_cast<std::ptrdiff_t>(size);
        parts.push_back(
            {.leaf = page.leaf, .level = page.level, .hadPrefix = page.hadPrefix, .entries = {entry, end}});
        entry = end;
    }
    parts.back().tail = page.tail;
    return parts;
}

} // namespace

bool IndexPath::contains(PageNo page) const
{
    return std::any_of(m_steps.begin(), m_steps.begin() + static_cast<std::ptrdiff_t>(m_size),
                       [page](const IndexStep &step) { return step.page == page; });
}

void IndexPath::pushFront(const IndexStep &step)
{
    std::copy_backward(m_steps.begin(), m_steps.begin() + static_cast<std::ptrdiff_t>(m_size),
                       m_steps.begin() + static_cast<std::ptrdiff_t>(m_size) + 1);
    m_steps[0] = step;
    ++m_size;
}

bool IndexPath::onlyTails() const
{
    return std::all_of(m_steps.begin(), m_steps.begin() + static_cast<std::ptrdiff_t>(m_size) - 1,
                       [](const IndexStep &step) { return step.tail; });
}

IndexPath descend(Pager &pager, PageNo table, PageNo root, const IndexPlace &sought,
                  std::optional<IndexPageView> &leaf)
{
    IndexPath path;
    for (PageNo page = root;;) {
        if (path.full() || path.contains(page))
            pager.damaged(pageName(page) + "the tree of the index leads back to itself or is too deep");
        const IndexPageView &view = leaf.emplace(pager, page, table);
        std::size_t place = view.lowerBound(sought);
        if (view.leaf()) {
            path.push({page, place, false});
            return path;
        }
        if (view.childCount() == 0)
            pager.damaged(pageName(page) + "a node of the index has no children");
        place = std::min(place, view.childCount() - 1);
        path.push({page, place, place == view.size()});
        page = view.child(place);
    }
}

void IndexChange::insert(const IndexPlace &entry)
{
    std::optional<IndexPageView> leafView;
    IndexPath path = descend(m_pager, m_table, m_root, entry, leafView);
    const auto [leaf, at, tail] = path.leaf();
    const IndexPageView &view = *leafView;
    const bool greatest = at == view.size(), copied = !path.onlyTails();
    std::string store;
    if (!greatest && view.place(at, store) == entry)
        m_pager.damaged(pageName(leaf) + "the index has an entry for this row already");
    if (view.canInsert(entry.key)) {
        view.insertInPlace(m_pager.change(leaf), at, entry.key, entry.row);
    } else {
        IndexPage page = view.takeApart();
        page.entries.insert(page.entries.begin() + static_cast<std::ptrdiff_t>(at),
                            {std::string(entry.key), entry.row, 0});
        this->store(path, path.depth() - 1, page, greatest && page.next == 0 && page.entries.size() > 1);
    }
    if (greatest && copied)
        correctCopies({std::string(entry.key), entry.row});
}

bool IndexChange::erase(const IndexPlace &entry)
{
    std::optional<IndexPageView> leafView;
    IndexPath path = descend(m_pager, m_table, m_root, entry, leafView);
    const auto [leaf, at, tail] = path.leaf();
    const IndexPageView &view = *leafView;
    std::string store;
    if (at == view.size() || view.place(at, store) != entry)
        return false;
    if (view.size() == 1 && path.depth() > 1) {
        removePage(path, path.depth() - 1);
        return true;
    }
    std::optional<Owned> newGreatest;
    if (at > 0 && at + 1 == view.size() && !path.onlyTails()) {
        const IndexPlace before = view.place(at - 1, store);
        newGreatest = Owned{std::string(before.key), before.row};
    }
    if (view.prefixLength() == 0) {
        view.eraseInPlace(m_pager.change(leaf), at);
    } else {
        IndexPage page = view.takeApart();
        page.entries.erase(page.entries.begin() + static_cast<std::ptrdiff_t>(at));
        this->store(path, path.depth() - 1, page, false);
    }
    if (newGreatest)
        correctCopies(*newGreatest);
    return true;
}

void IndexChange::store(IndexPath &path, std::size_t depth, IndexPage &page, bool rising)
{
    if (!page.leaf)
        tidyNode(page);
    // What entries share is read from the first and the last of them.
    if (!std::ranges::is_sorted(page.entries, {}, &IndexEntry::key))
        m_pager.damaged(pageName(path[depth].page) + "the entries of the index are out of order");
    if (page.fits())
        return page.write(m_pager.change(path[depth].page), m_table);
    if (depth == 0) {
        growRoot(path, page);
        depth = 1;
    }
    split(path, depth, page, rising);
}

// A node has a tail if it has more than one child, and an entry if it has only one.
void IndexChange::tidyNode(IndexPage &node) const
{
    if (node.tail == 0 && node.entries.size() > 1) {
        node.tail = node.entries.back().child;
        node.entries.pop_back();
    } else if (node.entries.empty() && node.tail != 0) {
        if (const auto greatest = greatestBelow(node.tail))
            node.entries.push_back({greatest->key, greatest->row, std::exchange(node.tail, 0)});
    }
}

// The root's content goes to a page of its own (which split() writes), and the root becomes the node above
// it.
void IndexChange::growRoot(IndexPath &path, const IndexPage &root)
{
    if (path.full())
        m_pager.damaged(pageName(m_root) + "the tree of the index is too deep");
    const PageNo moved = m_pages.allocate();
    IndexPage node{
        .leaf = false, .level = static_cast<std::uint8_t>(root.level + 1), .tail = moved, .entries = {}};
    node.write(m_pager.change(m_root), m_table);
    path[0].page = moved;
    path.pushFront({m_root, 0, true});
}

void IndexChange::split(IndexPath &path, std::size_t depth, IndexPage &page, bool rising)
{
    const PageNo own = path[depth].page;
    std::vector<IndexPage> parts = parted(m_pager, own, page, rising);
    IndexPage parent = read(path[depth - 1].page);
    std::size_t at = path[depth - 1].place;
    std::vector<PageNo> numbers;
    for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
        numbers.push_back(m_pages.allocate());
        const IndexEntry &last = parts[i].entries.back();
        parent.entries.insert(parent.entries.begin() + static_cast<std::ptrdiff_t>(at++),
                              {last.key, last.row, numbers.back()});
        if (!page.leaf)
            parts[i].tail = last.child;
        if (!page.leaf && parts[i].entries.size() > 1)
            parts[i].entries.pop_back();
        else
            parts[i].tail = 0;
    }
    numbers.push_back(own);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        parts[i].previous = i == 0 ? page.previous : numbers[i - 1];
        parts[i].next = i + 1 == parts.size() ? page.next : numbers[i + 1];
        parts[i].write(m_pager.change(numbers[i]), m_table);
        if (i > 0 && page.level > 1)
            unlinkChildren(parts[i - 1], parts[i]);
    }
    link(page.previous, numbers.front(), own, 0, page.leaf);
    store(path, depth - 1, parent, false);
}

// Nodes are linked to their brothers only; a split makes brothers strangers.
void IndexChange::unlinkChildren(const IndexPage &left, const IndexPage &right)
{
    const PageNo last = left.child(left.childCount() - 1), first = right.child(0);
    const IndexPageView lastView(m_pager, last, m_table), firstView(m_pager, first, m_table);
    if (lastView.leaf() || firstView.leaf())
        return;
    setIndexNext(m_pager.change(last), 0);
    setIndexPrevious(m_pager.change(first), 0);
}

void IndexChange::removePage(IndexPath &path, std::size_t depth)
{
    const PageNo own = path[depth].page, above = path[depth - 1].page;
    const IndexPage page = read(own);
    link(page.previous, page.next, own, own, page.leaf);
    m_pages.release(own);

    IndexPage parent = read(above);
    const std::size_t at = path[depth - 1].place;
    const bool wasLast = at + 1 == parent.childCount();
    if (at < parent.entries.size())
        parent.entries.erase(parent.entries.begin() + static_cast<std::ptrdiff_t>(at));
    else
        parent.tail = 0;
    if (parent.childCount() == 0) {
        if (depth > 1)
            return removePage(path, depth - 1);
        return writeEmptyLeaf(m_pager.change(m_root), m_table);
    }
    store(path, depth - 1, parent, false);
    if (!wasLast || depth == 1)
        return;
    if (const auto greatest = greatestBelow(above))
        correctCopies(*greatest);
}

// Makes two pages neighbours (0: none), which led to other pages until now. Links of leaves must be right;
// those of nodes are changed where they are, for other programs don't keep them.
void IndexChange::link(PageNo left, PageNo right, PageNo leftLedTo, PageNo rightLedTo, bool leaf)
{
    if (left != 0) {
        const IndexPageView view(m_pager, left, m_table);
        if (view.leaf() == leaf && view.next() == leftLedTo)
            setIndexNext(m_pager.change(left), right);
        else if (leaf)
            m_pager.damaged(pageName(left) + "this leaf of the index doesn't lead to its neighbour");
    }
    if (right != 0 && rightLedTo != 0) {
        const IndexPageView view(m_pager, right, m_table);
        if (view.leaf() == leaf && view.previous() == rightLedTo)
            setIndexPrevious(m_pager.change(right), left);
        else if (leaf)
            m_pager.damaged(pageName(right) + "this leaf of the index doesn't lead to its neighbour");
    }
}

// The greatest entry of a leaf has changed: so must the copies of it above. Each correction may split nodes,
// so the way is sought anew until nothing is left to correct.
void IndexChange::correctCopies(const Owned &greatest)
{
    for (std::size_t i = 0; i <= IndexPath::kDeepest; ++i) {
        IndexPath path = pathTo(greatest);
        const auto depth = copyToCorrect(path, greatest);
        if (!depth)
            return;
        IndexPage node = read(path[*depth].page);
        IndexEntry &copy = node.entries[path[*depth].place];
        copy.key = greatest.key;
        copy.row = greatest.row;
        store(path, *depth, node, false);
    }
    m_pager.damaged(pageName(m_root) + "the entries of the nodes of the index can't be set right");
}

std::optional<std::size_t> IndexChange::copyToCorrect(const IndexPath &path, const IndexPlace &greatest) const
{
    std::string store;
    for (std::size_t depth = path.depth() - 1; depth-- > 0;) {
        const IndexStep &step = path[depth];
        if (step.tail)
            continue;
        const IndexPageView view(m_pager, step.page, m_table);
        if (view.place(step.place, store) != greatest)
            return depth;
        if (step.place + 1 < view.childCount())
            return {};
    }
    return {};
}

// None if there is nothing but empty leaves.
std::optional<IndexChange::Owned> IndexChange::greatestBelow(PageNo page) const
{
    for (std::size_t depth = 0; depth < IndexPath::kDeepest; ++depth) {
        const IndexPageView view(m_pager, page, m_table);
        if (view.leaf()) {
            if (view.size() == 0)
                return {};
            std::string store;
            const IndexPlace last = view.place(view.size() - 1, store);
            return Owned{std::string(last.key), last.row};
        }
        if (view.childCount() == 0)
            break;
        page = view.child(view.childCount() - 1);
    }
    m_pager.damaged(pageName(page) + "a node of the index has no end");
}

} // namespace vardelin::jet
