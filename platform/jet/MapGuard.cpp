#include "platform/jet/MapGuard.h"

#include <csignal>
#include <mutex>
#include <sys/mman.h>
#include <unistd.h>

namespace vardelin::jet {

namespace {

// What the signal handler may look at: fixed places, lock-free numbers. A slot is free when `begin` is 0.
struct Slot
{
    std::atomic<std::uintptr_t> begin = 0;
    std::atomic<std::uintptr_t> end = 0;
    std::atomic<bool> lost = false;
};

constexpr std::size_t kSlots = 64; // files open at a time; more of them do without a map
std::array<Slot, kSlots> slots;
std::mutex slotsMutex;
struct sigaction previousAction;
std::uintptr_t machinePage = 4096;

void passOn(int signal, siginfo_t *info, void *context)
{
    if ((previousAction.sa_flags & SA_SIGINFO) != 0 && previousAction.sa_sigaction != nullptr) {
        previousAction.sa_sigaction(signal, info, context);
        return;
    }
    if (previousAction.sa_handler != SIG_DFL && previousAction.sa_handler != SIG_IGN) {
        previousAction.sa_handler(signal);
        return;
    }
    ::signal(signal,
             SIG_DFL); // the access is tried again when we return, and ends the program as it would have
}

void onBusError(int signal, siginfo_t *info, void *context)
{
    const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
    for (Slot &slot : slots) {
        const std::uintptr_t begin = slot.begin;
        if (begin == 0 || address < begin || address >= slot.end)
            continue;
        void *page = reinterpret_cast<void *>(address & ~(machinePage - 1));
        if (::mmap(page, machinePage, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0) ==
            MAP_FAILED)
            break;
        slot.lost = true;
        return;
    }
    passOn(signal, info, context);
}

void installHandler()
{
    machinePage = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    struct sigaction action = {};
    action.sa_sigaction = onBusError;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGBUS, &action, &previousAction);
}

} // namespace

GuardedMap::GuardedMap(int descriptor, std::size_t length)
{
    const std::lock_guard guard(slotsMutex);
    static std::once_flag installed;
    std::call_once(installed, installHandler);
    for (m_slot = 0; m_slot < kSlots && slots[m_slot].begin != 0; ++m_slot) {
    }
    if (m_slot == kSlots)
        return;
    void *memory = ::mmap(nullptr, length, PROT_READ, MAP_SHARED, descriptor, 0);
    if (memory == MAP_FAILED)
        return;
    m_data = static_cast<const std::byte *>(memory);
    m_length = length;
    Slot &slot = slots[m_slot];
    slot.lost = false;
    slot.end = reinterpret_cast<std::uintptr_t>(memory) + length;
    slot.begin = reinterpret_cast<std::uintptr_t>(memory);
}

GuardedMap::~GuardedMap()
{
    if (m_data == nullptr)
        return;
    const std::lock_guard guard(slotsMutex);
    slots[m_slot].begin = 0;
    ::munmap(const_cast<std::byte *>(m_data), m_length);
}

bool GuardedMap::intact() const
{
    return m_data == nullptr || !slots[m_slot].lost.load(std::memory_order_relaxed);
}

} // namespace vardelin::jet
