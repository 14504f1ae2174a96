#pragma once
// What the tests of the pager share: small files whose every byte is known, and a folder of their own on the
// machine's disk.

#include "platform/jet/Error.h"
#include "platform/jet/Pager.h"

#include <array>
#include <atomic>
#include <cstring>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace vardelin::jet::test {

// A page of generation `generation`: no two of its 512-byte pieces are alike, nor those of another page or
// generation.
inline void fillPage(std::byte *page, PageNo number, std::uint32_t generation)
{
    for (std::uint32_t i = 0; i < kPageSize; i += 8) {
        const std::uint64_t word = (std::uint64_t{number} << 40) ^ (std::uint64_t{generation} << 16) ^ i;
        std::memcpy(page + i, &word, sizeof word);
    }
}

inline Bytes pagesOf(PageNo count, std::uint32_t generation)
{
    Bytes bytes(count * kPageSize);
    for (PageNo page = 0; page < count; ++page)
        fillPage(&bytes[page * kPageSize], page, generation);
    return bytes;
}

// Reads the whole file through a pager of its own.
inline Bytes readAll(Disk &disk, const std::filesystem::path &path)
{
    const auto pager = Pager::open(disk, path, Pager::Access::Read);
    const ReadSection section(*pager);
    Bytes bytes;
    for (PageNo page = 0; page < pager->pageCount(); ++page)
        bytes.insert(bytes.end(), pager->page(page), pager->page(page) + kPageSize);
    return bytes;
}

// Several pages changed, two more added: one commit of the ordinary kind.
inline void changeTo(Pager &pager, std::uint32_t generation, PageNo appended = 2)
{
    WriteSection section(pager);
    for (const PageNo page : {PageNo{1}, PageNo{3}, PageNo{4}})
        fillPage(pager.change(page), page, generation);
    for (PageNo i = 0; i < appended; ++i) {
        const PageNo page = pager.append();
        fillPage(pager.change(page), page, generation);
    }
    section.commit();
}

// What changeTo() makes of `before`.
inline Bytes changedTo(Bytes before, std::uint32_t generation, PageNo appended = 2)
{
    const auto count = static_cast<PageNo>(before.size() / kPageSize);
    before.resize((count + appended) * kPageSize);
    for (const PageNo page : {PageNo{1}, PageNo{3}, PageNo{4}})
        fillPage(&before[page * kPageSize], page, generation);
    for (PageNo page = count; page < count + appended; ++page)
        fillPage(&before[page * kPageSize], page, generation);
    return before;
}

// The code of the error that `action` throws; none if it throws none.
inline std::optional<Code> codeOf(const std::function<void()> &action)
{
    try {
        action();
        return std::nullopt;
    } catch (const Error &error) {
        return error.code();
    }
}

class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        static std::atomic<int> count = 0;
        m_path = std::filesystem::temp_directory_path() /
                 ("vardelin-jet-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
        std::filesystem::create_directories(m_path);
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    std::filesystem::path operator/(const char *name) const { return m_path / name; }
    std::size_t fileCount() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_path), {}));
    }

private:
    std::filesystem::path m_path;
};

inline void writeFile(const std::filesystem::path &path, const Bytes &bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

inline Bytes readFile(const std::filesystem::path &path)
{
    std::ifstream in(path, std::ios::binary);
    Bytes bytes(static_cast<std::size_t>(std::filesystem::file_size(path)));
    in.read(reinterpret_cast<char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

} // namespace vardelin::jet::test
