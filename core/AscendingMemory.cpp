#include "core/AscendingMemory.h"

#include <cstdlib>

#if defined(__linux__)
#include <algorithm>
#include <mutex>
#include <sys/mman.h>
#endif

// The address sanitizer looks after heap memory only.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUOR2D_ADDRESS_SANITIZER
#endif
#endif
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(QUOR2D_ADDRESS_SANITIZER)
#define QUOR2D_RESERVES
#endif

namespace ZELK_QUOR2D
{

namespace
{

// Large blocks are aligned to huge pages, so that a kernel that hands them out by itself can use them from the first
// byte. They are not asked for (MADV_HUGEPAGE): that gained three percent of batch insertion where the kernel had
// cleared memory at hand, and cost more than the whole insertion where a virtual machine had to get it from its host.
constexpr std::size_t kHugePage = std::size_t(1) << 21;

constexpr std::size_t roundUp(std::size_t number, std::size_t multiple)
{
    return (number + multiple - 1) / multiple * multiple;
}

void* allocateAnywhere(std::size_t numBytes)
{
#if defined(__linux__)
    if (numBytes >= 2 * kHugePage) {
        void* pBlock = nullptr;
        return posix_memalign(&pBlock, kHugePage, numBytes) == 0 ? pBlock : nullptr;
    }
#endif
    return std::malloc(numBytes);
}

#if defined(QUOR2D_RESERVES)

// A process has a limited number of mappings (65530 by default), and a reservation takes up to four.
constexpr int kMaxReservations = 2048;

// Small triangulations come and go: some reservations are kept for the next ones, with their first pages.
constexpr std::size_t kMaxKept = 16;
constexpr std::size_t kKeptBytes = std::size_t(1) << 20;

constexpr std::size_t kCommitStep = std::size_t(1) << 16; // a multiple of every page size

struct Reservation {
    char* p = nullptr;
    std::size_t numBytes = 0;
    std::size_t numCommitted = 0;
};

std::mutex mutex; // guards the rest
int numReservations = 0;
Reservation aKept[kMaxKept];
std::size_t numKept = 0;

// A reservation of that size: a kept one, or a new one, or none.
Reservation obtain(std::size_t numBytes)
{
    const std::lock_guard<std::mutex> lock(mutex);
    for (std::size_t i = numKept; i-- > 0;)
        if (aKept[i].numBytes == numBytes) {
            std::swap(aKept[i], aKept[--numKept]);
            return aKept[numKept];
        }
    if (numReservations >= kMaxReservations)
        return {};
    void* const p = mmap(nullptr, numBytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (p == MAP_FAILED)
        return {};
    ++numReservations;
    return {static_cast<char*>(p), numBytes, 0};
}

void giveBack(const Reservation& reservation)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (numKept < kMaxKept && reservation.numCommitted <= kKeptBytes) {
        aKept[numKept++] = reservation;
        return;
    }
    munmap(reservation.p, reservation.numBytes);
    --numReservations;
}

#endif

} // namespace

AscendingMemory::~AscendingMemory()
{
    for (void* pBlock : vOthers)
        std::free(pBlock);
#if defined(QUOR2D_RESERVES)
    if (pReservation)
        giveBack({pReservation, numReserved, numCommitted});
#endif
}

void* AscendingMemory::allocate(std::size_t numBytes)
{
    if (!bTried)
        reserve();
    bTried = true;
    if (pReservation && numBytes <= numReserved - numTaken)
        if (void* const pBlock = takeReserved(numBytes))
            return pBlock;
    void* const pBlock = allocateAnywhere(numBytes);
    if (pBlock)
        vOthers.push_back(pBlock);
    return pBlock;
}

#if defined(QUOR2D_RESERVES)
void AscendingMemory::reserve()
{
    const Reservation reservation = obtain(numReserved);
    pReservation = reservation.p;
    numCommitted = reservation.numCommitted;
}

void* AscendingMemory::takeReserved(std::size_t numBytes)
{
    const std::size_t address = reinterpret_cast<std::size_t>(pReservation);
    const std::size_t alignment = numBytes >= 2 * kHugePage ? kHugePage : alignof(std::max_align_t);
    const std::size_t begin = roundUp(address + numTaken, alignment) - address, end = begin + numBytes;
    if (end > numReserved)
        return nullptr;
    if (end > numCommitted) {
        const std::size_t newCommitted = std::min(roundUp(end, kCommitStep), numReserved);
        if (mprotect(pReservation + numCommitted, newCommitted - numCommitted, PROT_READ | PROT_WRITE) != 0)
            return nullptr;
        numCommitted = newCommitted;
    }
    numTaken = end;
    return pReservation + begin;
}
#else
void AscendingMemory::reserve() {}

void* AscendingMemory::takeReserved(std::size_t)
{
    return nullptr;
}
#endif

} // namespace ZELK_QUOR2D
