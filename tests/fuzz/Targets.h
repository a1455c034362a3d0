#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>

namespace fuzz
{

/// A promise of the library that did not hold. Thrown by the targets, never by the library.
struct Violation : std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline void require(bool bHolds, const char* text)
{
    if (!bHolds)
        throw Violation(text);
}

/// Compares all tests and stages of the predicates with rational arithmetic: a byte for the floating-point mode, then
/// four points, bit by bit.
void runPredicates(const std::uint8_t* pData, std::size_t numBytes);

/// Runs a program of operations on one triangulation, next to a simple model of it, and checks the mesh on the way.
void runMeshProgram(const std::uint8_t* pData, std::size_t numBytes);

} // namespace fuzz
