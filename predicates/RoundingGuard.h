#pragma once

#if defined(__GNUC__) && defined(__x86_64__)
#define QUOR2D_HAS_MXCSR 1
#else
#include <cfenv>
#endif

namespace ZELK_QUOR2D
{

#ifdef QUOR2D_HAS_MXCSR

/// Returns `value`, computed before whatever follows and not known to the compiler beforehand.
///
/// Compilers move arithmetic across a change of the rounding mode, even under -frounding-math. Operands that pass
/// through here after the change, and results that pass through here before the next one, keep it in place.
inline double pinned(double value)
{
    __asm__ volatile("" : "+x"(value));
    return value;
}

/// Gives its scope the standard floating-point environment (round to nearest, gradual underflow, no traps) and
/// returns to the caller's environment on destruction, whatever that was.
///
/// Through MXCSR a change costs a few nanoseconds; the calls of <cfenv> cost ten times that.
class RoundingGuard
{
public:
    RoundingGuard() : saved(read())
    {
        if ((saved & ~kStickyFlags) != kStandard)
            write(kStandard);
        else
            current = saved;
    }
    ~RoundingGuard()
    {
        if (current != saved)
            write(saved);
    }
    RoundingGuard(const RoundingGuard&) = delete;
    RoundingGuard& operator=(const RoundingGuard&) = delete;

    void roundToNearest() { write(kStandard); }
    void roundDownward() { write(kStandard | 0x2000u); }
    void roundUpward() { write(kStandard | 0x4000u); }
    void roundTowardZero() { write(kStandard | 0x6000u); }

private:
    static constexpr unsigned int kStickyFlags = 0x3f;
    static constexpr unsigned int kStandard = 0x1f80; // all exceptions masked; FTZ, DAZ and rounding control clear

    static unsigned int read()
    {
        unsigned int value;
        __asm__ volatile("stmxcsr %0" : "=m"(value) : : "memory");
        return value;
    }
    void write(unsigned int value)
    {
        __asm__ volatile("ldmxcsr %0" : : "m"(value) : "memory");
        current = value;
    }

    const unsigned int saved;
    unsigned int current = kStandard;
};

#else

inline double pinned(double value)
{
    volatile double held = value;
    return held;
}

class RoundingGuard
{
public:
    RoundingGuard()
    {
        std::fegetenv(&saved);
        std::fesetenv(FE_DFL_ENV);
    }
    ~RoundingGuard() { std::fesetenv(&saved); }
    RoundingGuard(const RoundingGuard&) = delete;
    RoundingGuard& operator=(const RoundingGuard&) = delete;

    void roundToNearest() { std::fesetround(FE_TONEAREST); }
    void roundDownward() { std::fesetround(FE_DOWNWARD); }
    void roundUpward() { std::fesetround(FE_UPWARD); }
    void roundTowardZero() { std::fesetround(FE_TOWARDZERO); }

private:
    std::fenv_t saved;
};

#endif

} // namespace ZELK_QUOR2D
