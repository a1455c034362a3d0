#pragma once

#include "Point2.h"
#include "tests/fuzz/ByteReader.h"

#include <vector>

namespace fuzz
{

/// Reads a point that is likely to be difficult: on a small lattice, a few units in the last place beside it, extreme,
/// any bits at all, or in a special position to the points that were read before.
class PointChoice
{
public:
    ZELK_QUOR2D::Point2 read(ByteReader& in);

    /// Reads many points from a few bytes: a grid, a line, a circle, a fan or a cluster.
    std::vector<ZELK_QUOR2D::Point2> readFamily(ByteReader& in);

private:
    ZELK_QUOR2D::Point2 choose(ByteReader& in);
    ZELK_QUOR2D::Point2 earlier(ByteReader& in) const;

    std::vector<ZELK_QUOR2D::Point2> vEarlier;
};

} // namespace fuzz
