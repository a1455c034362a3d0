#pragma once

#include <cstddef>
#include <new>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace ZELK_QUOR2D
{

/// For large arrays that live for a moment: they go back to the system when they are freed. On the heap they could
/// leave a gap of their size below what was allocated later.
template <class T>
class PageAllocator
{
public:
    using value_type = T;

    PageAllocator() = default;
    template <class U>
    PageAllocator(const PageAllocator<U>&)
    {
    }

    T* allocate(std::size_t count)
    {
        if (!isLarge(count))
            return static_cast<T*>(::operator new(count * sizeof(T)));
#if defined(__linux__)
        if (count > static_cast<std::size_t>(-1) / sizeof(T))
            throw std::bad_array_new_length();
        void* const p = mmap(nullptr, count * sizeof(T), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (p == MAP_FAILED)
            throw std::bad_alloc();
        return static_cast<T*>(p);
#else
        throw std::bad_alloc(); // nothing is large here
#endif
    }

    void deallocate(T* p, std::size_t count)
    {
        if (!isLarge(count)) {
            ::operator delete(p);
            return;
        }
#if defined(__linux__)
        munmap(p, count * sizeof(T));
#endif
    }

    bool operator==(const PageAllocator&) const
    {
        return true;
    }
    bool operator!=(const PageAllocator&) const
    {
        return false;
    }

private:
    static bool isLarge(std::size_t count)
    {
#if defined(__linux__)
        constexpr std::size_t kLargeBytes = std::size_t(1) << 20;
        return count >= kLargeBytes / sizeof(T);
#else
        static_cast<void>(count);
        return false;
#endif
    }
};

} // namespace ZELK_QUOR2D
