#pragma once
// The pages of a file as they stand on the disk: mapped where the disk can, otherwise read and kept.

#include "platform/jet/Disk.h"

#include <array>
#include <memory>
#include <span>
#include <unordered_map>

namespace vardelin::jet {

class BasePages
{
public:
    explicit BasePages(DiskFile &file) : m_file(file) {}

    // Before the first page of an outermost section. changed: somebody may have written to the file since the
    // last one. Pages got earlier are no longer valid.
    void refresh(PageNo pageCount, bool changed);
    const std::byte *page(PageNo number); // below the page count; valid until the next refresh(). IoError
    // Whole pages from `first` on, copied and not kept. IoError
    void passing(PageNo first, std::span<std::byte> room)
    {
        m_file.read(std::uint64_t{first} * kPageSize, room);
    }
    // A commit has written this page; what page() gave shows it.
    void written(PageNo number, const std::byte *bytes);
    void grow(PageNo pageCount); // after a commit; pages got earlier stay valid
    bool intact() const { return m_file.mapIntact(); }

private:
    using Page = std::array<std::byte, kPageSize>;
    DiskFile &m_file;
    std::span<const std::byte> m_map;
    std::unordered_map<PageNo, std::unique_ptr<Page>> m_cache; // only where there is no map
};

} // namespace vardelin::jet
