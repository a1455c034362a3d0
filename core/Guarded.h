#pragma once

#include "predicates/RoundingGuard.h"

#include <cstdlib>
#include <iostream>
#include <new>

namespace ZELK_QUOR2D
{

/// Runs an operation at the border of the interface, across which nothing is thrown. Memory may run out in the middle
/// of a change, so there is no way back.
///
/// Everything runs in the standard floating-point mode: with denormals flushed to zero different vertices would compare
/// equal, and places that are computed would depend on the caller's rounding.
template <class Operation>
auto guarded(Operation operation) noexcept -> decltype(operation())
{
    const RoundingGuard standardMode;
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        std::cout << "SimplePool::alloc(..), ERROR: Out of memory, sorry" << std::endl;
        std::exit(1);
    }
}

} // namespace ZELK_QUOR2D
