#pragma once

#include <cstddef>
#include <cstdint>

namespace ZELK_QUOR2D
{

/// Asks for a record that is going to be used, where the compiler offers that. Any address is allowed, null as well.
inline void prefetch(const void* p)
{
#if defined(__GNUC__)
    __builtin_prefetch(p);
#else
    static_cast<void>(p);
#endif
}

/// For a record that may reach into a second cache line. No test for null: it costs more than it saves.
template <class T>
inline void prefetchWhole(const T* p)
{
    prefetch(p);
    prefetch(reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(p) + sizeof(T) - 1));
}

/// For a record with its neighbours in an array, which may lie outside of all memory.
template <class T>
inline void prefetchAround(const T* p, std::size_t numBefore, std::size_t numAfter)
{
    constexpr std::size_t kCacheLine = 64;
    const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(p) - numBefore * sizeof(T);
    for (std::size_t offset = 0; offset < (numBefore + 1 + numAfter) * sizeof(T); offset += kCacheLine)
        prefetch(reinterpret_cast<const void*>(begin + offset));
}

} // namespace ZELK_QUOR2D
