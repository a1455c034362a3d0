#pragma once

namespace ZELK_QUOR2D
{

/// Asks for a record that is going to be used, where the compiler offers that. Null is allowed.
inline void prefetch(const void* p)
{
#if defined(__GNUC__)
    __builtin_prefetch(p);
#else
    static_cast<void>(p);
#endif
}

} // namespace ZELK_QUOR2D
