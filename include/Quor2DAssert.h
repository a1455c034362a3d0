#pragma once

#include <cstdio>
#include <cstdlib>

namespace ZELK_QUOR2D
{

/// Writes the documented text of a broken precondition to standard error and aborts.
[[noreturn]] inline void assertionFailed(const char* text, const char* file, int line)
{
    std::fprintf(stderr, "%s:%d: Assertion `%s' failed.\n", file, line, text);
    std::abort();
}

} // namespace ZELK_QUOR2D

/// Debug assertion. The condition and its documented text are separate arguments, so that reformatting the code
/// cannot alter the text. Release builds (NDEBUG) do not evaluate the condition.
#ifdef NDEBUG
#define QUOR2D_ASSERT(condition, text) static_cast<void>(0)
#else
#define QUOR2D_ASSERT(condition, text)                                                                                 \
    ((condition) ? static_cast<void>(0) : ::ZELK_QUOR2D::assertionFailed(text, __FILE__, __LINE__))
#endif
