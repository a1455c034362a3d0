#include "tests/fuzz/PointChoice.h"

#include "tests/predicates/Inputs.h"
#include "tests/support/PointSets.h"

#include <cmath>
#include <iterator>
#include <limits>

namespace fuzz
{

using ZELK_QUOR2D::Point2;

namespace
{

constexpr std::size_t kMaxEarlier = 4096;

using Limits = std::numeric_limits<double>;
const double kExtremes[] = {0.0,
                            -0.0,
                            1.0,
                            -1.0,
                            Limits::denorm_min(),
                            -Limits::denorm_min(),
                            0x1p-1073,
                            0x1p-60,
                            0x1p-52,
                            0x1p60,
                            Limits::min(),
                            -Limits::min(),
                            1e-200,
                            1e-150,
                            -1e-150,
                            1e-100,
                            1e100,
                            1e150,
                            -1e150,
                            1e200,
                            -1e200,
                            1e300,
                            Limits::max(),
                            -Limits::max(),
                            1e6,
                            1e15,
                            1.0 / 3,
                            0.1,
                            1.0 + 0x1p-52,
                            1.0 - 0x1p-53,
                            0x1p1023,
                            -0x1p1023};

// Offsets on the circle of radius 65 about a lattice point.
const int kCircle[][2] = {{65, 0}, {63, 16}, {60, 25}, {56, 33}, {52, 39}, {39, 52}, {33, 56}, {25, 60}, {16, 63}};

double extreme(ByteReader& in)
{
    return kExtremes[in.below(static_cast<int>(std::size(kExtremes)))];
}

Point2 latticePoint(ByteReader& in)
{
    const int b = in.byte();
    return Point2(b & 15, b >> 4);
}

Point2 circlePoint(ByteReader& in)
{
    const int b = in.byte();
    const int* pOffset = kCircle[(b & 63) % static_cast<int>(std::size(kCircle))];
    return Point2(100 + ((b & 64) ? pOffset[0] : -pOffset[0]), 100 + ((b & 128) ? pOffset[1] : -pOffset[1]));
}

} // namespace

Point2 PointChoice::read(ByteReader& in)
{
    const Point2 p = choose(in);
    if (vEarlier.size() < kMaxEarlier && std::isfinite(p.x()) && std::isfinite(p.y()))
        vEarlier.push_back(p);
    return p;
}

Point2 PointChoice::earlier(ByteReader& in) const
{
    return vEarlier.empty() ? Point2(0.0, 0.0) : vEarlier[in.index(vEarlier.size())];
}

Point2 PointChoice::choose(ByteReader& in)
{
    switch (in.below(16)) {
    case 0:
    case 1:
        return latticePoint(in);
    case 2: { // beside the lattice
        const Point2 p = latticePoint(in);
        const int b = in.byte();
        return Point2(inputs::moveByUlps(p.x(), (b & 15) - 8), inputs::moveByUlps(p.y(), (b >> 4) - 8));
    }
    case 3: {
        const double x = extreme(in);
        return Point2(x, extreme(in));
    }
    case 4: {
        const double x = in.rawDouble();
        return Point2(x, in.rawDouble());
    }
    case 5:
        return earlier(in);
    case 6: { // a few units in the last place beside an earlier one
        const Point2 p = earlier(in);
        const int b = in.byte();
        return Point2(inputs::moveByUlps(p.x(), (b & 15) - 8), inputs::moveByUlps(p.y(), (b >> 4) - 8));
    }
    case 7: { // between two earlier ones
        const Point2 a = earlier(in), b = earlier(in);
        return Point2(a.x() * 0.5 + b.x() * 0.5, a.y() * 0.5 + b.y() * 0.5);
    }
    case 8: { // on the line through two earlier ones, but for rounding
        const Point2 a = earlier(in), b = earlier(in);
        const double t = in.byte() / 64.0 - 1.0;
        return Point2(a.x() + t * (b.x() - a.x()), a.y() + t * (b.y() - a.y()));
    }
    case 9: { // corner of a rectangle
        const Point2 a = earlier(in);
        return Point2(a.x(), earlier(in).y());
    }
    case 10: // a lattice of any scale
        return inputs::scaled(latticePoint(in), 8 * in.byte() - 1074);
    case 11: { // a lattice far from the origin
        const Point2 p = latticePoint(in);
        const double offset = std::ldexp(1.0, 20 + in.below(31));
        return Point2(offset + p.x() * 0.125, p.y() * 0.125 - offset);
    }
    case 12:
        return circlePoint(in);
    case 13: { // a mixture
        const double x = extreme(in);
        return Point2(x, earlier(in).y());
    }
    case 14: { // the mirror image of an earlier one
        const Point2 a = earlier(in);
        return Point2(-a.y(), a.x());
    }
    default: { // a fine lattice
        const double x = in.byte() / 256.0;
        return Point2(x, in.byte() / 256.0);
    }
    }
}

std::vector<Point2> PointChoice::readFamily(ByteReader& in)
{
    using namespace ZELK_QUOR2D::test;
    const int kind = in.below(6);
    const int n = 3 + in.below(160);
    const Point2 origin = read(in);
    const double scale = std::ldexp(1.0, in.below(32) - 16);
    std::vector<Point2> vPoints;
    if (kind == 0)
        vPoints = gridPoints(1 + n / 10, 10);
    else if (kind == 1)
        vPoints = gridPoints(n, 1);
    else if (kind == 2)
        vPoints = circlePoints(n, 1.0);
    else if (kind == 3)
        vPoints = uniformPoints(n, static_cast<std::uint64_t>(n));
    else // a parabola: with the point below it a long fan
        for (int i = 0; i < n; ++i)
            vPoints.emplace_back(i - n / 2, kind == 4 ? (i - n / 2) * (i - n / 2) : (i % 3) * 0x1p-40);
    for (Point2& p : vPoints)
        p = Point2(origin.x() + scale * p.x(), origin.y() + scale * p.y());
    return vPoints;
}

} // namespace fuzz
