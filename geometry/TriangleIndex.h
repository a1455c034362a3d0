#pragma once

namespace ZELK_QUOR2D
{

/// The corner (or edge) after `i`, counterclockwise.
constexpr int next(int i)
{
    return i == 2 ? 0 : i + 1;
}

/// The corner (or edge) before `i`.
constexpr int prev(int i)
{
    return i == 0 ? 2 : i - 1;
}

} // namespace ZELK_QUOR2D
