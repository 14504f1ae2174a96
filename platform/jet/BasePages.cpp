#include "platform/jet/BasePages.h"

#include "platform/jet/Error.h"

#include <cstring>

namespace vardelin::jet {

namespace {
constexpr std::size_t kCachedPages = 4096; // 16 MiB kept from one section to the next
}

void BasePages::refresh(PageNo pageCount, bool changed)
{
    if (changed || m_cache.size() > kCachedPages)
        m_cache.clear();
    grow(pageCount);
}

void BasePages::grow(PageNo pageCount)
{
    m_map = m_file.map(std::uint64_t{pageCount} * kPageSize);
}

const std::byte *BasePages::page(PageNo number)
{
    if (!m_map.empty()) {
        if (!m_file.mapIntact())
            throw Error(Code::IoError, {}, "mapped page");
        return m_map.data() + std::size_t{number} * kPageSize;
    }
    std::unique_ptr<Page> &page = m_cache[number];
    if (!page) {
        auto fresh = std::make_unique<Page>();
        m_file.read(std::uint64_t{number} * kPageSize, *fresh);
        page = std::move(fresh);
    }
    return page->data();
}

void BasePages::written(PageNo number, const std::byte *bytes)
{
    if (const auto found = m_cache.find(number); found != m_cache.end() && found->second)
        std::memcpy(found->second->data(), bytes, kPageSize);
}

} // namespace vardelin::jet
