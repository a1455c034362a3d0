#pragma once

#include "Point2.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>

// Point sets that bring the predicates into difficulties. Every maker fills four points.

namespace inputs
{

using ZELK_QUOR2D::Point2;
using Points = std::array<Point2, 4>;
using Random = std::mt19937_64;

inline int below(Random& random, int bound)
{
    return static_cast<int>(random() % static_cast<unsigned int>(bound));
}

inline double unit(Random& random)
{
    return static_cast<double>(random() >> 11) * 0x1p-53;
}

inline double moveByUlps(double value, int ulps)
{
    for (; ulps > 0; --ulps)
        value = std::nextafter(value, std::numeric_limits<double>::infinity());
    for (; ulps < 0; ++ulps)
        value = std::nextafter(value, -std::numeric_limits<double>::infinity());
    return value;
}

inline Point2 scaled(const Point2& p, int exponent)
{
    return Point2(std::ldexp(p.x(), exponent), std::ldexp(p.y(), exponent));
}

inline void disturbOne(Random& random, Points& points)
{
    Point2& p = points[random() % 4];
    p = Point2(moveByUlps(p.x(), below(random, 3) - 1), moveByUlps(p.y(), below(random, 3) - 1));
}

inline Points uniform(Random& random)
{
    Points points;
    for (Point2& p : points)
        p = Point2(unit(random), unit(random));
    return points;
}

inline Points smallGrid(Random& random)
{
    Points points;
    for (Point2& p : points)
        p = Point2(below(random, 4), below(random, 4));
    return points;
}

/// Points of a line through rounding, two of them near the first by a few units in the last place.
inline Points nearlyCollinear(Random& random)
{
    const double x = unit(random) * 20.0 - 10.0, y = unit(random) * 20.0 - 10.0;
    const double dx = unit(random), dy = unit(random);
    Points points;
    for (Point2& p : points) {
        const double t = below(random, 2) ? below(random, 10) : 10.0 * unit(random);
        p = Point2(x + t * dx, y + t * dy);
    }
    disturbOne(random, points);
    return points;
}

/// Exactly cocircular before scaling and rounding: radius 65 about a lattice point.
inline Points cocircular(Random& random, double scale)
{
    static const int aOffsets[][2] = {{65, 0}, {63, 16}, {60, 25}, {56, 33}, {52, 39}, {39, 52}, {33, 56}, {25, 60}};
    const int centerX = below(random, 2000) - 1000, centerY = below(random, 2000) - 1000;
    Points points;
    for (Point2& p : points) {
        const int* pOffset = aOffsets[random() % 8];
        const int signX = below(random, 2) ? 1 : -1, signY = below(random, 2) ? 1 : -1;
        p = Point2((centerX + signX * pOffset[0]) * scale, (centerY + signY * pOffset[1]) * scale);
    }
    return points;
}

inline Points nearlyCocircular(Random& random)
{
    static const double aScales[] = {1.0, 0.1, 1e-3, 1048577.0, 1e9};
    Points points = cocircular(random, aScales[random() % 5]);
    disturbOne(random, points);
    return points;
}

/// Exactly cocircular, with differences that are no doubles.
inline Points symmetricTrapezoid(Random& random)
{
    const double x1 = unit(random), y1 = unit(random);
    // Another point of the same circle about the origin: the mirror image at the diagonal.
    Points points = {Point2(-x1, -y1), Point2(y1, -x1), Point2(x1, y1), Point2(-y1, x1)};
    if (below(random, 2))
        disturbOne(random, points);
    return points;
}

inline Points farFromOrigin(Random& random)
{
    static const double aOffsets[] = {4e6, 1e10, 1e15};
    const double offset = aOffsets[random() % 3];
    Points points = smallGrid(random);
    for (Point2& p : points)
        p = Point2(offset + p.x() * 0.5, p.y() - offset);
    return points;
}

/// Coordinates with few bits at very different magnitudes, so that exact sums have gaps.
inline Points mixedMagnitudes(Random& random)
{
    static const double aValues[] = {0.0, 1.0, 3.0, 1e20, 1e-20, 0x1p60, 0x1p-60, 1.0 + 0x1p-52, 1e100, 1e-100};
    Points points;
    for (Point2& p : points) {
        const auto pick = [&] { return (below(random, 2) ? 1.0 : -1.0) * aValues[random() % 10]; };
        const double x = pick() + pick(), y = pick() + pick();
        p = Point2(x, y);
    }
    return points;
}

/// A line that passes the origin closely, and a point very near both: the differences to it are no doubles, and their
/// tails decide in the last bits.
inline Points decidedByTails(Random& random)
{
    const double slope = 1 + 2 * below(random, 8), t = std::ldexp(unit(random), -53 - below(random, 10));
    const double k = 1 + below(random, 9), m = 1 + below(random, 9);
    const Point2 a(k, slope * k), b(-m, moveByUlps(-slope * m, below(random, 3) - 1));
    const double heightAtOrigin = k * (b.y() + slope * m) / (k + m);
    return {a, b, Point2(t, moveByUlps(heightAtOrigin + slope * t, below(random, 3) - 1)), Point2(unit(random), -t)};
}

inline double finiteFromBits(Random& random)
{
    for (;;) { // ends: one pattern in 2048 is not finite
        const std::uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value))
            return value;
    }
}

inline Points rawBits(Random& random)
{
    Points points;
    for (Point2& p : points) {
        const double x = finiteFromBits(random), y = finiteFromBits(random);
        p = Point2(x, y);
    }
    // Two equal coordinates now and then, or hardly anything is degenerate.
    if (below(random, 2))
        points[1] = Point2(points[0].x(), points[1].y());
    return points;
}

/// Denormal and small values, mixed with a few large ones.
inline Points denormal(Random& random)
{
    Points points;
    for (Point2& p : points) {
        const auto pick = [&] {
            const double tiny = std::ldexp(below(random, 9) - 4, below(random, 3) ? -1074 : -1022);
            return below(random, 8) ? tiny : std::ldexp(below(random, 9) - 4, below(random, 2) ? 900 : -200);
        };
        const double x = pick(), y = pick();
        p = Point2(x, y);
    }
    return points;
}

/// A hard case of ordinary size, scaled by any power of two that keeps it finite.
inline Points anyScale(Random& random)
{
    Points points = below(random, 2) ? nearlyCocircular(random) : nearlyCollinear(random);
    static const int aExponents[] = {-1074, -1060, -1000, -700, -530, -500, -350, -266, -255, -210, 160, 340, 500, 900};
    const int exponent = aExponents[random() % 14];
    for (Point2& p : points)
        p = scaled(p, exponent);
    return points;
}

struct Family {
    const char* pName;
    Points (*pMake)(Random&);
    int numCases;
};

inline Points exactlyCocircular(Random& random)
{
    return cocircular(random, 1.0);
}

inline constexpr Family kFamilies[] = {{"uniform", uniform, 300},
                                       {"smallGrid", smallGrid, 1000},
                                       {"nearlyCollinear", nearlyCollinear, 1000},
                                       {"exactlyCocircular", exactlyCocircular, 300},
                                       {"nearlyCocircular", nearlyCocircular, 1000},
                                       {"symmetricTrapezoid", symmetricTrapezoid, 300},
                                       {"farFromOrigin", farFromOrigin, 500},
                                       {"mixedMagnitudes", mixedMagnitudes, 1000},
                                       {"decidedByTails", decidedByTails, 1000},
                                       {"rawBits", rawBits, 300},
                                       {"denormal", denormal, 1000},
                                       {"anyScale", anyScale, 1500}};

} // namespace inputs
