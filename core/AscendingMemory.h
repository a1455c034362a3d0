#pragma once

#include <cstddef>
#include <vector>

namespace ZELK_QUOR2D
{

/// Memory for the blocks of a pool, each at a higher address than the ones before, so that orders by address follow the
/// order of making and do not depend on what else is in the process.
///
/// On Linux the blocks lie in a stretch of the address space that is reserved first and backed by memory block by
/// block. Where none can be reserved, in the 2048 reservations of a process, or past the end of one, blocks lie
/// anywhere.
class AscendingMemory
{
public:
    /// @param numBytes  of address space to reserve at the first allocation
    explicit AscendingMemory(std::size_t numBytes) : numReserved(numBytes) {}
    ~AscendingMemory();
    AscendingMemory(const AscendingMemory&) = delete;
    AscendingMemory& operator=(const AscendingMemory&) = delete;

    /// @return a block aligned for any type, or null where there is no memory
    void* allocate(std::size_t numBytes);

private:
    void reserve();
    void* takeReserved(std::size_t numBytes);

    std::size_t numReserved;
    char* pReservation = nullptr;
    std::size_t numTaken = 0;     // of the reservation
    std::size_t numCommitted = 0; // of it, that can be read and written
    bool bTried = false;
    std::vector<void*> vOthers; // from the heap
};

} // namespace ZELK_QUOR2D
