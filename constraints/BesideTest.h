#pragma once

#include "Point2.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ZELK_QUOR2D
{

/// Whether a point lies so near to a segment that the rounding of split points may have put it beside it.
///
/// Such a point is a valid place to split the segment: both pieces are shorter than the whole. In floating point;
/// nothing depends on the answer but where segments are split.
class BesideTest
{
public:
    /// Rounding puts a new point half a unit in the last place off in each coordinate; repeated splits add up a few.
    static constexpr double kFewUnits = 8.0;

    /// Where denormal numbers end there is no finer rounding.
    static constexpr double kLeastRounding = 2.0 * std::numeric_limits<double>::denorm_min();

    /// @param units  how far beside, in units in the last place of the larger end
    /// @param least  how far beside at least
    BesideTest(const Point2& source, const Point2& target, double units, double least = 0.0)
        : a(source), b(target), dx(b.x() - a.x()), dy(b.y() - a.y()), bSteep(std::fabs(dy) > std::fabs(dx)),
          rounding(units * 0x1p-52), leastRounding(std::max(least, kLeastRounding)),
          exponent(exponentOf(std::max(std::fabs(dx), std::fabs(dy)))), scaledDx(scaled(dx)), scaledDy(scaled(dy)),
          tolerance(scaled(roundingAt(std::max(std::fabs(a.x()), std::fabs(b.x())))) * std::fabs(scaledDy) +
                    scaled(roundingAt(std::max(std::fabs(a.y()), std::fabs(b.y())))) * std::fabs(scaledDx))
    {
    }

    bool contains(const Point2& p) const
    {
        const double distance = std::fabs(scaled(p.x() - a.x()) * scaledDy - scaled(p.y() - a.y()) * scaledDx);
        if (!(distance < tolerance)) // also when something overflows
            return false;
        return bSteep ? keepsShort(p.y(), a.y(), b.y(), p.x(), a.x(), b.x())
                      : keepsShort(p.x(), a.x(), b.x(), p.y(), a.y(), b.y());
    }

    /// Of two points that passed, whether p is the nearer one to the source.
    bool isBefore(const Point2& p, const Point2& q) const
    {
        return bSteep ? std::fabs(p.y() - a.y()) < std::fabs(q.y() - a.y())
                      : std::fabs(p.x() - a.x()) < std::fabs(q.x() - a.x());
    }

private:
    // The point lies along the longer side of the box, and at most a distance h beyond the shorter one.
    // With more than 4h to either end of the longer side L, the square of a piece is below L^2 + S^2:
    // (L-4h)^2 + (S+h)^2 = L^2 + S^2 - h(8L - 2S - 17h), and S <= L, 8h < L.
    bool keepsShort(double along, double a1, double b1, double across, double a2, double b2) const
    {
        const double low = std::min(a2, b2), high = std::max(a2, b2);
        const double h = std::max({0.0, across - high, low - across});
        const double toEnds = std::min(along - std::min(a1, b1), std::max(a1, b1) - along);
        return h <= roundingAt(std::fabs(across < low ? low : high)) && toEnds > 4.0 * h;
    }

    double roundingAt(double magnitude) const { return std::max(rounding * magnitude, leastRounding); }

    // Products of tiny differences would vanish and those of huge ones overflow: the longer side is made about one.
    static int exponentOf(double length) { return length > 0.0 && std::isfinite(length) ? std::ilogb(length) : 0; }
    double scaled(double value) const { return std::ldexp(value, -exponent); }

    const Point2& a;
    const Point2& b;
    double dx, dy;
    bool bSteep;
    double rounding;
    double leastRounding;
    int exponent;
    double scaledDx, scaledDy;
    double tolerance;
};

} // namespace ZELK_QUOR2D
