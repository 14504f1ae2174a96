#include "platform/jet/IndexTree.h"

#include "platform/jet/Bytes.h"
#include "platform/jet/Error.h"
#include "platform/jet/TextOrder.h"
#include "tests/jet/TreeWalk.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <random>

namespace vardelin::jet {
namespace {

constexpr PageNo kTable = 17;

class IndexTreeTest : public testing::Test
{
protected:
    IndexTreeTest()
    {
        root = pages.allocate();
        IndexTree::initRoot(pager.change(root), kTable);
    }

    void insert(const std::string &key, RowId row)
    {
        pager.beginWrite();
        tree().insert(key, row, pages);
        model.emplace(key, row);
    }

    bool erase(const std::string &key, RowId row)
    {
        pager.beginWrite();
        model.erase({key, row});
        return tree().erase(key, row, pages);
    }

    // The tree holds what the model holds, breaks no invariant, and owns the pages it uses and no others.
    int expectSound(const std::string &when)
    {
        SCOPED_TRACE(when);
        const TreeWalk walk(pager, kTable, root);
        EXPECT_TRUE(std::equal(walk.entries.begin(), walk.entries.end(), model.begin(), model.end()));
        EXPECT_EQ(walk.pages, pages.used);
        return walk.levels;
    }

    // An entry of the model near a key.
    std::set<std::pair<std::string, RowId>>::iterator near(const std::string &key)
    {
        const auto found = model.lower_bound({key, {}});
        return found == model.end() ? model.begin() : found;
    }

    IndexTree tree() { return IndexTree(pager, kTable, root); }
    std::size_t pick(std::size_t below)
    {
        return std::uniform_int_distribution<std::size_t>(0, below - 1)(random);
    }
    RowId anyRow() { return {static_cast<PageNo>(pick(1u << 24)), static_cast<std::uint8_t>(pick(256))}; }

    MemoryPager pager;
    MemoryPages pages{pager};
    PageNo root = 0;
    std::set<std::pair<std::string, RowId>> model;
    std::mt19937 random{4096};
};

std::string longKey(std::int32_t value, bool descending = false)
{
    const PhysicalIndex index{.columns = {{0, descending}}, .map = {}};
    const ColumnType type = ColumnType::Long;
    const Cell cell = value;
    return indexKey(index, std::span(&type, 1), std::span(&cell, 1));
}

TEST_F(IndexTreeTest, RisingKeysFillTheirLeaves)
{
    for (int i = 1; i <= 5000; ++i)
        insert(longKey(i), {static_cast<PageNo>(100 + i / 50), static_cast<std::uint8_t>(i % 50)});
    EXPECT_EQ(expectSound("rising"), 2);
    EXPECT_LE(pages.used.size(), 5000u / 401 + 3) << "leaves of 401 entries, the last one and the root";
}

TEST_F(IndexTreeTest, RandomKeysOfManyShapes)
{
    using Maker = std::function<std::string()>;
    const auto wide = [this] {
        return "\x7F" + textKey(std::u16string(pick(250), u'm') + static_cast<char16_t>(u'a' + pick(26)));
    };
    const struct
    {
        const char *name;
        Maker make;
        int steps;
        int levels;
    } kShapes[] = {
        {"few entries", [this] { return longKey(static_cast<std::int32_t>(pick(1000))); }, 300, 1},
        {"longs", [this] { return longKey(static_cast<std::int32_t>(random())); }, 3000, 2},
        {"longs descending", [this] { return longKey(static_cast<std::int32_t>(random()), true); }, 3000, 2},
        {"many rows of few keys", [this] { return longKey(static_cast<std::int32_t>(pick(7))); }, 3000, 2},
        {"wide texts", wide, 3000, 3},
        {"the widest keys",
         [this] { return std::string(1500 + pick(300), static_cast<char>('a' + pick(26))); }, 300, 4},
    };
    for (const auto &shape : kShapes) {
        SCOPED_TRACE(shape.name);
        int deepest = 0;
        for (int step = 0; step < shape.steps; ++step) {
            const bool grow = pick(10) < (step < shape.steps / 2 ? 8u : 4u);
            if (grow || model.empty()) {
                insert(shape.make(), anyRow());
            } else {
                const auto [key, row] = *near(shape.make());
                ASSERT_TRUE(erase(key, row));
            }
            if (step % 211 == 0 || step == shape.steps / 2)
                deepest = std::max(deepest, expectSound("step " + std::to_string(step)));
            ASSERT_FALSE(HasFailure());
        }
        EXPECT_GE(deepest, shape.levels);
        while (!model.empty()) { // from the greatest, from the smallest, and anywhere
            const auto [key, row] = pick(3) == 0   ? *model.begin()
                                    : pick(2) == 0 ? *std::prev(model.end())
                                                   : *near(shape.make());
            ASSERT_TRUE(erase(key, row));
            if (model.size() % 173 == 0)
                expectSound(std::to_string(model.size()) + " left");
            ASSERT_FALSE(HasFailure());
        }
        EXPECT_EQ(expectSound("empty"), 1);
        EXPECT_EQ(pages.used.size(), 1u) << "an empty tree is its root";
    }
}

TEST_F(IndexTreeTest, FindsAndWalks)
{
    for (int i = 0; i < 2000; ++i)
        insert(longKey(static_cast<std::int32_t>(pick(500)) * 2), anyRow());
    for (std::int32_t value = -1; value < 1001; ++value) {
        const std::string key = longKey(value);
        const auto expected = model.lower_bound({key, {}});
        const IndexTree::Cursor cursor = tree().seek(key);
        ASSERT_EQ(cursor.atEnd(), expected == model.end());
        const bool exact = expected != model.end() && expected->first == key;
        ASSERT_EQ(tree().find(key), exact ? std::optional(expected->second) : std::nullopt);
        ASSERT_TRUE(cursor.atEnd() || (cursor.key() == expected->first && cursor.row() == expected->second));
    }
    auto expected = model.begin();
    for (IndexTree::Cursor cursor = tree().begin(); !cursor.atEnd(); cursor.next(), ++expected)
        ASSERT_TRUE(cursor.key() == expected->first && cursor.row() == expected->second);
    EXPECT_EQ(expected, model.end());
    EXPECT_FALSE(erase(longKey(1), {1, 1})) << "a key that isn't there";
    EXPECT_FALSE(tree().erase(model.begin()->first, {0xFFFFFF, 255}, pages)) << "a row that isn't there";
}

TEST_F(IndexTreeTest, BuildsFromSortedEntriesAndGoesOnFromThere)
{
    for (const std::size_t count : {0u, 1u, 401u, 402u, 5000u, 120000u}) {
        model.clear();
        while (model.size() < count)
            model.emplace(longKey(static_cast<std::int32_t>(random())), anyRow());
        MemoryPages fresh(pager);
        std::swap(pages.used, fresh.used);
        pages.used.insert(root);
        IndexTree::initRoot(pager.change(root), kTable);
        tree().build(TreeEntries(model.begin(), model.end()), pages);
        EXPECT_EQ(expectSound("built of " + std::to_string(count)), count <= 401         ? 1
                                                                    : count <= 401 * 278 ? 2
                                                                                         : 3);
        for (int i = 0; i < 500; ++i) {
            insert(longKey(static_cast<std::int32_t>(random())), anyRow());
            const auto [key, row] = *near(longKey(static_cast<std::int32_t>(random())));
            ASSERT_TRUE(erase(key, row));
        }
        expectSound("changed after " + std::to_string(count));
    }
    const TreeEntries falling = {{"b", {1, 1}}, {"a", {1, 1}}};
    EXPECT_THROW(tree().build(falling, pages), Error);
}

TEST_F(IndexTreeTest, PagesWithACommonPrefixStayReadableThroughChanges)
{
    // As another program leaves it: one leaf of entries that fit only without their common start.
    const std::string start(400, 'k');
    IndexPage page{.hadPrefix = true, .entries = {}};
    for (std::uint32_t i = 0; i < 520; ++i) {
        const auto row = RowId{i + 1, 0};
        const std::string key = start + static_cast<char>('a' + i / 26) + static_cast<char>('a' + i % 26);
        page.entries.push_back({key, row, 0});
        model.emplace(key, row);
    }
    ASSERT_TRUE(page.fits());
    page.write(pager.change(root), kTable);
    EXPECT_EQ(expectSound("as left"), 1);

    // What first and last share isn't shared by the others if the last is damaged: nothing is written then.
    const auto damaged = pager.clone();
    std::byte *const bytes = damaged->change(root);
    std::byte *const last =
        bytes + kIndexEntries + kIndexRoom - load<std::uint16_t>(bytes + 2) - kRowBytes - 2;
    ASSERT_EQ(*last, std::byte{'t'});
    *last = std::byte{'a'};
    MemoryPages own(*damaged);
    EXPECT_THROW(IndexTree(*damaged, kTable, root).erase(page.entries[99].key, page.entries[99].row, own),
                 Error);

    for (int i = 0; i < 400; ++i) {
        const std::string key = start + static_cast<char>('a' + pick(20)) + static_cast<char>('a' + pick(26));
        insert(key, anyRow());
        if (i % 2) {
            const auto [gone, row] = *near(key.substr(0, 401));
            ASSERT_TRUE(erase(gone, row));
        }
        if (i % 20 == 0)
            expectSound("change " + std::to_string(i));
    }
    EXPECT_GE(expectSound("changed"), 2);
    insert("a key without that start", {1, 1}); // whole entries need dozens of pages at once
    expectSound("prefix lost");
}

TEST_F(IndexTreeTest, NodesOfOtherProgramsMayOnlyBoundTheirChildren)
{
    for (int i = 0; i < 4000; ++i)
        insert(longKey(i * 2), {9, static_cast<std::uint8_t>(i % 200)});
    IndexPage node = IndexPageView(pager, root, kTable).takeApart();
    for (IndexEntry &entry : node.entries)
        entry.row = {0xFFFFFF, 255}; // above the child's greatest, below the next child's first
    node.write(pager.change(root), kTable);
    for (int i = 0; i < 4000; ++i) {
        ASSERT_EQ(tree().find(longKey(i * 2)).has_value(),
                  model.contains({longKey(i * 2), {9, static_cast<std::uint8_t>(i % 200)}}));
        if (i % 3 == 0) {
            ASSERT_TRUE(erase(longKey(i * 2), {9, static_cast<std::uint8_t>(i % 200)}));
        }
        if (i % 7 == 0)
            insert(longKey(i * 2 + 1), {10, 1});
    }
    auto expected = model.begin();
    for (IndexTree::Cursor cursor = tree().begin(); !cursor.atEnd(); cursor.next(), ++expected)
        ASSERT_TRUE(cursor.key() == expected->first && cursor.row() == expected->second);
    EXPECT_EQ(expected, model.end());
}

TEST_F(IndexTreeTest, RefusesWhatHasNoPlace)
{
    insert("key", {1, 1});
    EXPECT_THROW(tree().insert("key", {1, 1}, pages), Error) << "the same entry twice";
    EXPECT_THROW(tree().insert(std::string(1900, 'x'), {1, 2}, pages), Error)
        << "no two such keys fit on a page";
    EXPECT_EQ(model.size(), 1u);
    expectSound("after refusals");
}

// Whatever a page of the tree holds, an operation ends soon, and either does something or says what page is
// at fault.
TEST_F(IndexTreeTest, DamagedPagesGiveAnErrorThatNamesThem)
{
    for (int i = 0; i < 1500; ++i)
        insert(std::string(60 + pick(200), static_cast<char>('a' + pick(26))), anyRow());
    ASSERT_GE(expectSound("before"), 3);
    const std::vector<PageNo> numbers(pages.used.begin(), pages.used.end());
    int errors = 0, quiet = 0;
    const auto began = std::chrono::steady_clock::now();
    for (int round = 0; round < 1500; ++round) {
        const auto damaged = pager.clone();
        for (std::size_t flips = 1 + pick(3); flips > 0; --flips) {
            const std::size_t at = pick(2) ? pick(30) : pick(2) ? 27 + pick(453) : pick(kPageSize);
            damaged->change(numbers[pick(numbers.size())])[at] ^= static_cast<std::byte>(1 + pick(255));
        }
        MemoryPages own(*damaged);
        IndexTree hurt(*damaged, kTable, root);
        const auto tries = {
            std::function<void()>([&] {
                for (IndexTree::Cursor cursor = hurt.begin(); !cursor.atEnd();)
                    cursor.next();
            }),
            std::function<void()>([&] { hurt.find(std::string(100, 'q')); }),
            std::function<void()>([&] {
                for (int i = 0; i < 40; ++i)
                    hurt.insert(std::string(60 + pick(200), static_cast<char>('a' + pick(26))), anyRow(),
                                own);
            }),
            std::function<void()>([&] {
                for (auto entry = model.lower_bound({std::string(1, static_cast<char>('a' + pick(26))), {}});
                     entry != model.end() && pick(40); ++entry)
                    hurt.erase(entry->first, entry->second, own);
            }),
        };
        for (const auto &attempt : tries) {
            damaged->beginWrite();
            try {
                attempt();
                ++quiet;
            } catch (const Error &error) {
                ++errors;
                ASSERT_EQ(error.code(), Code::Damaged) << error.reason();
                ASSERT_NE(error.reason().find("page "), std::string::npos) << error.reason();
            }
        }
    }
    const auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - began).count();
    EXPECT_GT(errors, 100);
    EXPECT_GT(quiet, 100);
    EXPECT_LT(seconds, 40) << "a walk went on without end";
}

} // namespace
} // namespace vardelin::jet
