#pragma once
// A file's pages as memory, without the danger that comes with it. When a mapped page can't be read (the
// stick is pulled, the network share goes, another program cuts the file off), the system sends SIGBUS, which
// ends the program and takes with it what the user has typed. The guard puts a page of zeros there instead
// and notes that the map has lost something.

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace vardelin::jet {

class GuardedMap
{
public:
    // `length` bytes of the opened file from its start, read-only and shared; they may reach beyond the
    // file's end, and pages come to life there as the file grows. data() is null if the system refuses.
    GuardedMap(int descriptor, std::size_t length);
    ~GuardedMap();
    GuardedMap(const GuardedMap &) = delete;
    GuardedMap &operator=(const GuardedMap &) = delete;

    const std::byte *data() const { return m_data; }
    bool intact() const;

private:
    const std::byte *m_data = nullptr;
    std::size_t m_length = 0;
    std::size_t m_slot = 0;
};

} // namespace vardelin::jet
