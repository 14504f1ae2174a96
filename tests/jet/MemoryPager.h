#pragma once
// A Pager over pages in memory. A page that is changed for the first time in a section moves, and its old
// bytes are freed, so that the sanitizer finds whoever looks at them still.

#include "platform/jet/IndexTree.h"

#include <array>
#include <cstring>
#include <fstream>
#include <set>
#include <string>

namespace vardelin::jet {

class MemoryPager : public Pager
{
public:
    MemoryPager() { append(); } // page 0 is never part of a tree

    static std::unique_ptr<MemoryPager> load(const std::filesystem::path &path)
    {
        auto pager = std::make_unique<MemoryPager>();
        pager->m_pages.clear();
        std::ifstream in(path, std::ios::binary);
        for (Bytes raw(kPageSize); in.read(reinterpret_cast<char *>(raw.data()), kPageSize);)
            std::memcpy(pager->change(pager->append()), raw.data(), kPageSize);
        pager->beginWrite();
        return pager;
    }

    std::unique_ptr<MemoryPager> clone() const
    {
        auto copy = std::make_unique<MemoryPager>();
        copy->m_pages.clear();
        for (const auto &page : m_pages)
            copy->m_pages.push_back({std::make_unique<Raw>(*page.raw), false});
        return copy;
    }

    const std::filesystem::path &path() const override { return m_path; }
    bool canWrite() const override { return true; }
    void beginRead() override {}
    void endRead() override {}
    void beginWrite() override
    {
        for (auto &page : m_pages)
            page.changed = false;
    }
    void commit() override {}
    void rollback() override {}
    std::uint64_t version() const override { return 0; }
    PageNo pageCount() const override { return static_cast<PageNo>(m_pages.size()); }
    const std::byte *page(PageNo number) override
    {
        if (number >= m_pages.size())
            damaged("page " + std::to_string(number) + ": beyond the end of the file");
        return m_pages[number].raw->data();
    }
    std::byte *change(PageNo number) override
    {
        page(number);
        auto &page = m_pages[number];
        if (!page.changed)
            page.raw = std::make_unique<Raw>(*page.raw);
        page.changed = true;
        return page.raw->data();
    }
    PageNo append() override
    {
        m_pages.push_back({std::make_unique<Raw>(), true});
        return pageCount() - 1;
    }

private:
    using Raw = std::array<std::byte, kPageSize>;
    struct Page
    {
        std::unique_ptr<Raw> raw;
        bool changed = false;
    };
    std::vector<Page> m_pages;
    std::filesystem::path m_path = "memory.mdb";
};

// Pages for one tree; knows which of them are in use.
class MemoryPages : public IndexPages
{
public:
    explicit MemoryPages(MemoryPager &pager) : m_pager(pager) {}
    PageNo allocate() override
    {
        PageNo page = 0;
        if (m_free.empty()) {
            page = m_pager.append();
        } else {
            page = *m_free.begin();
            m_free.erase(page);
            std::memset(m_pager.change(page), 0, kPageSize);
        }
        used.insert(page);
        return page;
    }
    void release(PageNo page) override
    {
        used.erase(page);
        m_free.insert(page);
    }
    std::set<PageNo> used;

private:
    MemoryPager &m_pager;
    std::set<PageNo> m_free;
};

} // namespace vardelin::jet
