#pragma once

#include "Point2.h"
#include "Triangle2.h"
#include "geometry/TriangleIndex.h"

#include <gmp.h>

#include <cmath>

namespace ZELK_QUOR2D
{

/// Result of an orientation or in-circle test.
enum Orientation2 {
    ORI2_ZERO = 0,     ///< collinear; on the circle
    ORI2_POSITIVE = 1, ///< counterclockwise turn; inside the circle
    ORI2_NEGATIVE = 2  ///< clockwise turn; outside the circle
};

/// Orientation and in-circle tests that are exact for all finite doubles, in every rounding mode of the caller.
///
/// Each test is a cascade of stages, from a floating-point filter with an error bound to rational arithmetic. Not
/// thread-safe: the rationals are scratch numbers of the instance.
class PredicateTest
{
public:
    /// Answer of a stage that could not decide; otherwise a stage answers an Orientation2.
    static constexpr int kUndecided = -1;

    PredicateTest();
    ~PredicateTest();
    PredicateTest(const PredicateTest&) = delete;
    PredicateTest& operator=(const PredicateTest&) = delete;

    /// Derives `staticBound` from the largest coordinate magnitude.
    void setStaticBound(double maxAbsCoordinate);

    /// The turn p1 -> p2 -> p3.
    Orientation2 getOrientation2(const Point2* p1, const Point2* p2, const Point2* p3)
    {
        const int result = filterOrientation(*p1, *p2, *p3);
        return result != kUndecided ? static_cast<Orientation2>(result) : orientationBeyondFilter(*p1, *p2, *p3);
    }

    /// On which side of edge `ith` of a triangle `q` lies; positive is the side of the triangle.
    Orientation2 getOrientation2(const Triangle2* pT, int ith, const Point2* q)
    {
        return getOrientation2(pT->getCorner(next(ith)), pT->getCorner(prev(ith)), q);
    }

    /// Whether `q` lies strictly inside the circumcircle of a counterclockwise triangle.
    ///
    /// Deliberate: where `q` and the corners are the corners of an axis-parallel rectangle the answer is true.
    bool circleInc(const Triangle2* pT, const Point2* q)
    {
        const Point2 &p0 = *pT->getCorner(0), &p1 = *pT->getCorner(1), &p2 = *pT->getCorner(2);
        const int result = filterInCircle(p0, p1, p2, *q);
        return (result != kUndecided ? result : inCircleBeyondFilter(p0, p1, p2, *q)) == ORI2_POSITIVE;
    }

    /// The side of the circumcircle on which `q` lies, with the same rule for rectangles.
    int circleIncSide(const Triangle2* pT, const Point2* q)
    {
        const Point2 &p0 = *pT->getCorner(0), &p1 = *pT->getCorner(1), &p2 = *pT->getCorner(2);
        const int result = filterInCircle(p0, p1, p2, *q);
        return result != kUndecided ? result : inCircleBeyondFilter(p0, p1, p2, *q);
    }

    /// The plain exact in-circle sign, without the rule for rectangles.
    Orientation2 inCircleSign(const Point2* p0, const Point2* p1, const Point2* p2, const Point2* q)
    {
        const int result = filterInCircle(*p0, *p1, *p2, *q);
        return result != kUndecided ? static_cast<Orientation2>(result) : inCircleSignBeyondFilter(*p0, *p1, *p2, *q);
    }

    /// Prints what the stages of the orientation test say.
    void debug(const Point2* p1, const Point2* p2, const Point2* p3);

    /// The orientation without an instance: no set-up unless all stages before rational arithmetic fail.
    static Orientation2 orientation(const Point2& p1, const Point2& p2, const Point2& p3)
    {
        const int result = filterOrientation(p1, p2, p3);
        return result != kUndecided ? static_cast<Orientation2>(result) : orientationWithoutInstance(p1, p2, p3);
    }

    // The stages, in the order in which they are asked. Each answers an Orientation2 or kUndecided; the rational ones
    // always decide and answer ORI2_ZERO for coordinates that are not finite. The expansion stages need the caller to
    // hold a RoundingGuard.
    static int filterOrientation(const Point2& p1, const Point2& p2, const Point2& p3);
    static int expansionOrientation(const Point2& p1, const Point2& p2, const Point2& p3);
    static int intervalOrientation(const Point2& p1, const Point2& p2, const Point2& p3);
    Orientation2 exactOrientation(const Point2& p1, const Point2& p2, const Point2& p3);

    static int filterInCircle(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q);
    static int fineFilterInCircle(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q);
    static int expansionInCircle(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q);
    Orientation2 exactInCircle(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q);

    /// Bounds of the orientation determinant by directed rounding, as the interval stage uses them.
    static double lowerBound(const Point2& p1, const Point2& p2, const Point2& p3);
    static double upperBound(const Point2& p1, const Point2& p2, const Point2& p3);

    int state = 0;
    mpq_t aQ[48]; // scratch: the exact orientation uses the last twelve, the exact in-circle test the others
    double staticBound = 0.0;
    double negStaticBound = 0.0;
    double maxAbsCoord = 0.0;

private:
    static int adaptiveOrientation(const Point2& p1, const Point2& p2, const Point2& p3);
    static Orientation2 orientationWithoutInstance(const Point2& p1, const Point2& p2, const Point2& p3);
    Orientation2 orientationBeyondFilter(const Point2& p1, const Point2& p2, const Point2& p3);
    Orientation2 inCircleBeyondFilter(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q);
    Orientation2 inCircleSignBeyondFilter(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q);
};

// The filters run in whatever floating-point mode the caller is in. Let v = 2^-52, the relative error of one operation
// in any rounding mode, and F = 7e-308, three times the smallest normal number: the absolute error of one operation
// (its two operands included) where denormals are flushed to zero.

// Orientation. Each product is off by 3v relative to itself (two subtractions, one multiplication), so that det has the
// right sign where |det| > 3.0001v S, S = |t1| + |t2|; det, S and the bound round by another 4v. 3v = 6.66e-16, which
// leaves 3.3e-17 S to cover flushed differences (F times the other factor each, F R in all) and flushed products (2F).
// S > 1e-289 (1 + R) makes this fifty times more than needed. Overflow leads to comparisons of inf with inf or NaN,
// which are false.
//
// This test holds at every magnitude, and where all points lie within `maxAbsCoord` it decides whatever the static
// bound could decide apart from the largest triangles.
inline int PredicateTest::filterOrientation(const Point2& p1, const Point2& p2, const Point2& p3)
{
    const double dx1 = p1.x() - p3.x(), dy1 = p1.y() - p3.y();
    const double dx2 = p2.x() - p3.x(), dy2 = p2.y() - p3.y();
    const double t1 = dx1 * dy2, t2 = dy1 * dx2;
    const double det = t1 - t2;
    const double sum = std::fabs(t1) + std::fabs(t2);
    const double range = (std::fabs(dx1) + std::fabs(dy1)) + (std::fabs(dx2) + std::fabs(dy2));
    const double bound = 7e-16 * sum;
    if (sum > 1e-289 * (1.0 + range)) {
        if (det > bound)
            return ORI2_POSITIVE;
        if (det < -bound)
            return ORI2_NEGATIVE;
    }
    return kUndecided;
}

// In-circle. A minor is off by 4v relative to its sum of absolute products (two subtractions, multiplication, one
// subtraction), a squared length by 4v, their product by 9v, the sum of three by 11v relative to the permanent (the
// determinant of absolute products).
//
// With a, b, c for the lengths of the three vectors, each sum of absolute products is at most the product of two
// lengths (Cauchy), so that the permanent is at most abc(a + b + c) <= ((a + b + c) / 3)^3 (a + b + c), and that is at
// most m^2 / 3, m = a^2 + b^2 + c^2: the bound needs no absolute values, and triangles of an ordinary shape lose
// little by it. The factor 1.2e-15 is 16v / 3; computing m and the bound loses less than 15v of themselves. That leaves
// a quarter of the bound, more than 2e-200, for flushed operations: with squared lengths below 1e60 a flushed
// difference costs F 1e90 and a flushed product F 1e60 a few dozen times at most. The same limit keeps inf and NaN out.
inline int PredicateTest::filterInCircle(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q)
{
    const double ax = p0.x() - q.x(), ay = p0.y() - q.y();
    const double bx = p1.x() - q.x(), by = p1.y() - q.y();
    const double cx = p2.x() - q.x(), cy = p2.y() - q.y();
    const double a2 = ax * ax + ay * ay, b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
    const double det = (cx * ay - cy * ax) * b2 + (cy * bx - cx * by) * a2 + (by * ax - bx * ay) * c2;
    const double m = a2 + b2 + c2;
    const double bound = 1.2e-15 * m * m;
    if (m > 1e-92 && m < 1e60) {
        if (det > bound)
            return ORI2_POSITIVE;
        if (det < -bound)
            return ORI2_NEGATIVE;
    }
    return fineFilterInCircle(p0, p1, p2, q);
}

} // namespace ZELK_QUOR2D
