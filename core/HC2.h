#pragma once

#include "Point2.h"

#include <cstdint>

namespace ZELK_QUOR2D
{

/// Maps points to keys along a Hilbert curve over a box (Hilbert 1891), so that near keys mean near points.
///
/// Any double is a valid argument of getIndex(): what lies outside the box, and what is no number, gets the key of a
/// cell on the border. A side without extent counts as one cell.
class HC2
{
public:
    /// A curve over a box without extent: every key is 0.
    HC2() : HC2(0.0, 0.0, 0.0, 0.0, 30) {}

    /// @param numBits  length of a key, even, at most 32; anything else is reported and ends the process
    HC2(double minX, double minY, double maxX, double maxY, int numBits);

    std::uint32_t getIndex(double x, double y) const;
    std::uint32_t getIndex(const Point2& p) const { return getIndex(p.x(), p.y()); }

private:
    // One axis of the box. Extents near the limits of double are scaled by a power of two first, which is exact.
    struct Axis {
        void init(double min, double max, double gridSize);
        std::uint32_t cell(double value, double lastCell) const
        {
            const double position = (value * preScale - min) * scale;
            // The comparisons are written so that NaN becomes 0; the cast sees only [0, lastCell].
            if (!(position > 0.0))
                return 0;
            return static_cast<std::uint32_t>(position < lastCell ? position : lastCell);
        }

        double preScale = 1.0;
        double min = 0.0; // times preScale
        double scale = 0.0;
    };

    int numBits;
    std::uint64_t gridSize; // 2^(numBits/2) cells on each axis
    Axis axisX;
    Axis axisY;
};

} // namespace ZELK_QUOR2D
