#include "predicates/Expansion.h"
#include "predicates/PredicateTest.h"
#include "predicates/RoundingGuard.h"

#include <algorithm>
#include <initializer_list>

// The stages between the filters and rational arithmetic. Callers hold a RoundingGuard.

namespace ZELK_QUOR2D
{

namespace
{

constexpr double kUnitRoundoff = 1.1102230246251565e-16; // 2^-53

int orientationOf(double value)
{
    value = pinned(value); // computed before the caller's rounding mode returns
    return value > 0.0 ? ORI2_POSITIVE : value < 0.0 ? ORI2_NEGATIVE : ORI2_ZERO;
}

template <unsigned int N>
int orientationOf(const Expansion<N>& value)
{
    return value.size() == 0 ? ORI2_ZERO : orientationOf(value[value.size() - 1]);
}

/// A difference of points, exact.
struct Difference {
    Difference(const Point2& p, const Point2& q)
        : x(twoDiff(pinned(p.x()), pinned(q.x()))), y(twoDiff(pinned(p.y()), pinned(q.y())))
    {
    }
    bool isDouble() const { return x.low == 0.0 && y.low == 0.0; }
    double maxAbs() const { return std::max(std::fabs(x.high), std::fabs(y.high)); }

    TwoDoubles x;
    TwoDoubles y;
};

// A coordinate that is zero or has a magnitude from 2^-k to 2^k is a multiple of 2^(-k-52), and so are differences
// of such coordinates and their rounding errors. A product of n of them is a multiple of 2^(-n(k+52)) and below
// 2^(n(k+1)). With k = 450 for n = 2 and k = 210 for n = 4 the multiples are above the smallest denormal 2^-1074,
// and sums and splitting (27 bits) stay below 2^1024.
struct CoordinateRange {
    double smallest;
    double largest;
    bool holds(double coordinate) const
    {
        const double magnitude = std::fabs(coordinate);
        return magnitude <= largest && (magnitude >= smallest || magnitude == 0.0);
    }
    bool holds(std::initializer_list<const Point2*> points) const
    {
        for (const Point2* p : points)
            if (!holds(p->x()) || !holds(p->y()))
                return false;
        return true;
    }
};
constexpr CoordinateRange kOrientationRange = {0x1p-450, 0x1p450};
constexpr CoordinateRange kInCircleRange = {0x1p-210, 0x1p210};

// Scales the points by the power of two that brings the largest coordinate between 1 and 2, which changes no sign.
// False where that loses bits of another coordinate, or for coordinates that are not finite.
template <unsigned int N>
bool scaleToUnit(Point2 (&aPoints)[N])
{
    double largest = 0.0;
    for (const Point2& p : aPoints)
        largest = std::max({largest, std::fabs(p.x()), std::fabs(p.y())});
    if (!(largest > 0.0 && std::isfinite(largest)))
        return false;
    const int exponent = std::ilogb(largest);
    for (Point2& p : aPoints) {
        const Point2 scaled(std::ldexp(p.x(), -exponent), std::ldexp(p.y(), -exponent));
        if (Point2(std::ldexp(scaled.x(), exponent), std::ldexp(scaled.y(), exponent)) != p)
            return false;
        p = scaled;
    }
    return true;
}

// a.x * b.y - a.y * b.x, as a sum of eight products at most.
Expansion<16> minorExpansion(const Difference& a, const Difference& b)
{
    return Expansion<2>(a.x) * Expansion<2>(b.y) - Expansion<2>(a.y) * Expansion<2>(b.x);
}

Expansion<16> squaredLengthExpansion(const Difference& a)
{
    const Expansion<2> x(a.x), y(a.y);
    return x * x + y * y;
}

TwoDoubles minorEstimate(const Difference& a, const Difference& b)
{
    return subtract(multiply(a.x, b.y), multiply(a.y, b.x));
}

TwoDoubles squaredLengthEstimate(const Difference& a)
{
    return add(multiply(a.x, a.x), multiply(a.y, a.y));
}

double minorMagnitude(const Difference& a, const Difference& b)
{
    return std::fabs(a.x.high * b.y.high) + std::fabs(a.y.high * b.x.high);
}

double squaredLengthMagnitude(const Difference& a)
{
    return a.x.high * a.x.high + a.y.high * a.y.high;
}

// Whether the differences are integers below 2^25 in some common unit u. Then products are below 2^50 u^2, minors and
// squared lengths below 2^51 u^2, all exact doubles.
bool isOnCoarseGrid(const Difference& a, const Difference& b, const Difference& c)
{
    if (!(a.isDouble() && b.isDouble() && c.isDouble()))
        return false;
    const double largest = std::max({a.maxAbs(), b.maxAbs(), c.maxAbs()});
    if (!(largest > 1e-60 && largest < 1e60))
        return false;
    // Where adding and subtracting again gives back d, d is a multiple of the spacing u of the doubles just below
    // `shift`, and d/u <= largest / u = shift * 2^-29 / u < 2^54 * 2^-29.
    const double shift = largest * 536870912.0; // 2^29
    const auto isMultiple = [shift](double d) { return (shift + d) - shift == d; };
    return isMultiple(a.x.high) && isMultiple(a.y.high) && isMultiple(b.x.high) && isMultiple(b.y.high) &&
           isMultiple(c.x.high) && isMultiple(c.y.high);
}

// The determinant for differences on a coarse grid. A product of minor and squared length is an integer below 2^102;
// the errors of the sums and the low halves of the products are integers below 2^51 (in the unit u^4), so that the
// sum of these small parts is exact and the last addition rounds an exact value.
double coarseGridDeterminant(const Difference& a, const Difference& b, const Difference& c)
{
    const auto minor = [](const Difference& d, const Difference& e) {
        return d.x.high * e.y.high - d.y.high * e.x.high;
    };
    const TwoDoubles aTerm = twoProduct(minor(b, c), squaredLengthMagnitude(a));
    const TwoDoubles bTerm = twoProduct(minor(c, a), squaredLengthMagnitude(b));
    const TwoDoubles cTerm = twoProduct(minor(a, b), squaredLengthMagnitude(c));
    const TwoDoubles abSum = twoSum(aTerm.high, bTerm.high);
    const TwoDoubles abcSum = twoSum(abSum.high, cTerm.high);
    return abcSum.high + ((aTerm.low + bTerm.low) + (cTerm.low + abSum.low) + abcSum.low);
}

// In double-double arithmetic. With u = 2^-53 a minor is off by at most 7u^2 + 5u^2 = 12u^2 times its magnitude (the
// sum of absolute products), a squared length likewise, their product by 31u^2, and the sum of three by 45u^2 times
// the magnitude of the determinant. Computing that magnitude in doubles loses less than 1e-14 of it.
int estimateInCircle(const Difference& a, const Difference& b, const Difference& c)
{
    const TwoDoubles aTerm = multiply(minorEstimate(b, c), squaredLengthEstimate(a));
    const TwoDoubles bTerm = multiply(minorEstimate(c, a), squaredLengthEstimate(b));
    const TwoDoubles cTerm = multiply(minorEstimate(a, b), squaredLengthEstimate(c));
    const double det = add(add(aTerm, bTerm), cTerm).high;
    const double magnitude = minorMagnitude(b, c) * squaredLengthMagnitude(a) +
                             minorMagnitude(c, a) * squaredLengthMagnitude(b) +
                             minorMagnitude(a, b) * squaredLengthMagnitude(c);
    return std::fabs(det) > 64.0 * kUnitRoundoff * kUnitRoundoff * magnitude ? orientationOf(det)
                                                                             : PredicateTest::kUndecided;
}

// The largest sums have room for 1536 components: some 50 kilobytes of stack in all.
int exactInCircleByExpansions(const Difference& a, const Difference& b, const Difference& c)
{
    const auto aTerm = squaredLengthExpansion(a) * minorExpansion(b, c);
    const auto bTerm = squaredLengthExpansion(b) * minorExpansion(c, a);
    const auto cTerm = squaredLengthExpansion(c) * minorExpansion(a, b);
    return orientationOf((aTerm + bTerm) + cTerm);
}

} // namespace

int PredicateTest::expansionOrientation(const Point2& p1, const Point2& p2, const Point2& p3)
{
    if (!kOrientationRange.holds({&p1, &p2, &p3})) {
        Point2 aScaled[] = {p1, p2, p3};
        if (!scaleToUnit(aScaled) || !kOrientationRange.holds({&aScaled[0], &aScaled[1], &aScaled[2]}))
            return kUndecided;
        return expansionOrientation(aScaled[0], aScaled[1], aScaled[2]);
    }
    const Difference a(p1, p3), b(p2, p3);
    const TwoDoubles t1 = twoProduct(a.x.high, b.y.high), t2 = twoProduct(a.y.high, b.x.high);
    // Rounding is monotone: where the high parts differ, they compare like the exact products.
    if (a.isDouble() && b.isDouble())
        return t1.high != t2.high ? orientationOf(t1.high - t2.high) : orientationOf(t1.low - t2.low);

    // First-order correction (Shewchuk 1997). With u = 2^-53 and S = |t1| + |t2|: `head` is off by 2.1u |head| +
    // 2u^2 S; the four mixed products are below 2uS in total and off by 6u^2 S; the products of two tails, left out,
    // are below u^2 S; the last addition rounds by u |det|. As |head| < 1.1 |det| + 2.1uS, that is less than
    // 4u |det| + 14u^2 S in all.
    const double head = (t1.high - t2.high) + (t1.low - t2.low);
    const double correction = (a.x.high * b.y.low + a.x.low * b.y.high) - (a.y.high * b.x.low + a.y.low * b.x.high);
    const double det = head + correction;
    if (std::fabs(det) > 16.0 * kUnitRoundoff * kUnitRoundoff * (std::fabs(t1.high) + std::fabs(t2.high)))
        return orientationOf(det);
    return orientationOf(minorExpansion(a, b));
}

int PredicateTest::expansionInCircle(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q)
{
    const Difference a(p0, q), b(p1, q), c(p2, q);
    if (isOnCoarseGrid(a, b, c))
        return orientationOf(coarseGridDeterminant(a, b, c));
    if (!kInCircleRange.holds({&p0, &p1, &p2, &q})) {
        Point2 aScaled[] = {p0, p1, p2, q};
        if (!scaleToUnit(aScaled) || !kInCircleRange.holds({&aScaled[0], &aScaled[1], &aScaled[2], &aScaled[3]}))
            return kUndecided;
        return expansionInCircle(aScaled[0], aScaled[1], aScaled[2], aScaled[3]);
    }
    const int result = estimateInCircle(a, b, c);
    return result != kUndecided ? result : exactInCircleByExpansions(a, b, c);
}

} // namespace ZELK_QUOR2D
