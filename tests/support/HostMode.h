#pragma once

#include "predicates/RoundingGuard.h"

#include <cfenv>

#ifdef QUOR2D_HAS_MXCSR
#include <xmmintrin.h>
#endif

namespace ZELK_QUOR2D
{
namespace test
{

/// A floating-point mode as a host application may have set it, for the time of its scope.
class HostMode
{
public:
    /// @param rounding  FE_TONEAREST, FE_UPWARD, FE_DOWNWARD or FE_TOWARDZERO
    /// @param bFlush    whether denormals are flushed to zero, as results and as operands
    explicit HostMode(int rounding, bool bFlush = false)
    {
        std::fegetenv(&saved);
        std::fesetround(rounding);
#ifdef QUOR2D_HAS_MXCSR
        if (bFlush)
            _mm_setcsr(_mm_getcsr() | 0x8040u);
#else
        static_cast<void>(bFlush);
#endif
        before = control();
    }
    ~HostMode()
    {
        std::fesetenv(&saved);
    }
    HostMode(const HostMode&) = delete;
    HostMode& operator=(const HostMode&) = delete;

    /// False when somebody has changed the mode since.
    bool isUnchanged() const
    {
        return control() == before;
    }

private:
    static unsigned int control()
    {
#ifdef QUOR2D_HAS_MXCSR
        return _mm_getcsr() & ~0x3fu;
#else
        return static_cast<unsigned int>(std::fegetround());
#endif
    }
    std::fenv_t saved;
    unsigned int before = 0;
};

} // namespace test
} // namespace ZELK_QUOR2D
