// The entry point of libFuzzer. QUOR2D_FUZZ_TARGET is a function that QUOR2D_FUZZ_HEADER declares.
#include QUOR2D_FUZZ_HEADER
#include "tests/fuzz/Targets.h"

#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t numBytes)
{
    try {
        fuzz::QUOR2D_FUZZ_TARGET(pData, numBytes);
    } catch (const fuzz::Violation& violation) {
        std::fprintf(stderr, "violation: %s\n", violation.what());
        std::abort();
    }
    return 0;
}
