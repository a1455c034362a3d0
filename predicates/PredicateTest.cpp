#include "predicates/PredicateTest.h"

#include "Quor2DAssert.h"
#include "output/Message.h"
#include "predicates/RoundingGuard.h"

#include <iostream>
#include <limits>

namespace ZELK_QUOR2D
{

namespace
{

constexpr int kFirstOrientationScratch = 36;

Orientation2 orientationOf(int sign)
{
    return sign > 0 ? ORI2_POSITIVE : sign < 0 ? ORI2_NEGATIVE : ORI2_ZERO;
}

bool isFinite(const Point2& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

// Whether q and the corners are the corners of an axis-parallel rectangle: exactly one corner shares the x of q, the
// other two share theirs, and the same holds for y.
bool isAxisRectangle(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q)
{
    const auto formPairs = [](double c0, double c1, double c2, double cq) {
        return (c0 == cq && c1 != cq && c1 == c2) || (c1 == cq && c2 != cq && c2 == c0) ||
               (c2 == cq && c0 != cq && c0 == c1);
    };
    return formPairs(p0.x(), p1.x(), p2.x(), q.x()) && formPairs(p0.y(), p1.y(), p2.y(), q.y());
}

// True when the product (a - b) * (c - d) is negative, which comparisons tell beforehand.
bool isProductNegative(double a, double b, double c, double d)
{
    return (b > a) != (d > c);
}

// (a - b) * (c - d), in magnitude never above the true value.
double inwardProduct(RoundingGuard& guard, double a, double b, double c, double d)
{
    guard.roundTowardZero();
    return pinned((pinned(a) - pinned(b)) * (pinned(c) - pinned(d)));
}

// (a - b) * (c - d), in magnitude never below the true value.
double outwardProduct(RoundingGuard& guard, double a, double b, double c, double d)
{
    guard.roundUpward();
    const double first = c > d ? pinned(c) - pinned(d) : pinned(d) - pinned(c);
    const double second = a > b ? pinned(a) - pinned(b) : pinned(b) - pinned(a);
    const double magnitude = pinned(first * second);
    return isProductNegative(a, b, c, d) ? -magnitude : magnitude;
}

} // namespace

PredicateTest::PredicateTest()
{
    for (mpq_t& q : aQ)
        mpq_init(q);
}

PredicateTest::~PredicateTest()
{
    for (mpq_t& q : aQ)
        mpq_clear(q);
}

void PredicateTest::setStaticBound(double maxAbsCoordinate)
{
    staticBound = 12.0 * std::numeric_limits<double>::epsilon() * (maxAbsCoordinate * maxAbsCoordinate);
    negStaticBound = -staticBound;
    maxAbsCoord = std::fabs(maxAbsCoordinate);
}

// The interval stage stands behind the expansions: it costs up to six changes of the rounding mode, more than exact
// evaluation by expansions does, and is left the inputs outside their range.
int PredicateTest::adaptiveOrientation(const Point2& p1, const Point2& p2, const Point2& p3)
{
    RoundingGuard guard;
    if ((p1.x() == p2.x() && p2.x() == p3.x()) || (p1.y() == p2.y() && p2.y() == p3.y()))
        return ORI2_ZERO;
    const int result = expansionOrientation(p1, p2, p3);
    return result != kUndecided ? result : intervalOrientation(p1, p2, p3);
}

Orientation2 PredicateTest::orientationBeyondFilter(const Point2& p1, const Point2& p2, const Point2& p3)
{
    const int result = adaptiveOrientation(p1, p2, p3);
    return result != kUndecided ? static_cast<Orientation2>(result) : exactOrientation(p1, p2, p3);
}

Orientation2 PredicateTest::orientationWithoutInstance(const Point2& p1, const Point2& p2, const Point2& p3)
{
    const int result = adaptiveOrientation(p1, p2, p3);
    return result != kUndecided ? static_cast<Orientation2>(result) : PredicateTest().exactOrientation(p1, p2, p3);
}

int PredicateTest::intervalOrientation(const Point2& p1, const Point2& p2, const Point2& p3)
{
    if (!isFinite(p1) || !isFinite(p2) || !isFinite(p3))
        return kUndecided;
    if (upperBound(p1, p2, p3) < 0.0)
        return ORI2_NEGATIVE;
    if (lowerBound(p1, p2, p3) > 0.0)
        return ORI2_POSITIVE;
    return kUndecided;
}

double PredicateTest::lowerBound(const Point2& p1, const Point2& p2, const Point2& p3)
{
    RoundingGuard guard;
    const double t1 = isProductNegative(p1.x(), p3.x(), p2.y(), p3.y())
                          ? outwardProduct(guard, p1.x(), p3.x(), p2.y(), p3.y())
                          : inwardProduct(guard, p1.x(), p3.x(), p2.y(), p3.y());
    const double t2 = isProductNegative(p1.y(), p3.y(), p2.x(), p3.x())
                          ? inwardProduct(guard, p1.y(), p3.y(), p2.x(), p3.x())
                          : outwardProduct(guard, p1.y(), p3.y(), p2.x(), p3.x());
    guard.roundDownward();
    return pinned(pinned(t1) - pinned(t2));
}

double PredicateTest::upperBound(const Point2& p1, const Point2& p2, const Point2& p3)
{
    RoundingGuard guard;
    const double t1 = isProductNegative(p1.x(), p3.x(), p2.y(), p3.y())
                          ? inwardProduct(guard, p1.x(), p3.x(), p2.y(), p3.y())
                          : outwardProduct(guard, p1.x(), p3.x(), p2.y(), p3.y());
    const double t2 = isProductNegative(p1.y(), p3.y(), p2.x(), p3.x())
                          ? outwardProduct(guard, p1.y(), p3.y(), p2.x(), p3.x())
                          : inwardProduct(guard, p1.y(), p3.y(), p2.x(), p3.x());
    guard.roundUpward();
    return pinned(pinned(t1) - pinned(t2));
}

Orientation2 PredicateTest::exactOrientation(const Point2& p1, const Point2& p2, const Point2& p3)
{
    if (!isFinite(p1) || !isFinite(p2) || !isFinite(p3))
        return ORI2_ZERO; // mpq_set_d would raise SIGFPE
    RoundingGuard guard;  // under DAZ mpq_set_d takes denormals for zero
    mpq_t* q = aQ + kFirstOrientationScratch;
    mpq_set_d(q[0], p1.x());
    mpq_set_d(q[1], p1.y());
    mpq_set_d(q[2], p2.x());
    mpq_set_d(q[3], p2.y());
    mpq_set_d(q[4], p3.x());
    mpq_set_d(q[5], p3.y());
    mpq_sub(q[6], q[0], q[4]);
    mpq_sub(q[7], q[3], q[5]);
    mpq_sub(q[8], q[1], q[5]);
    mpq_sub(q[9], q[2], q[4]);
    mpq_mul(q[10], q[6], q[7]);
    mpq_mul(q[11], q[8], q[9]);
    return orientationOf(mpq_cmp(q[10], q[11]));
}

// The same with the permanent itself for a bound, with the factor 15v: that decides more of the flat triangles.
int PredicateTest::fineFilterInCircle(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q)
{
    const double ax = p0.x() - q.x(), ay = p0.y() - q.y();
    const double bx = p1.x() - q.x(), by = p1.y() - q.y();
    const double cx = p2.x() - q.x(), cy = p2.y() - q.y();
    const double a2 = ax * ax + ay * ay, b2 = bx * bx + by * by, c2 = cx * cx + cy * cy;
    const double cxay = cx * ay, cyax = cy * ax, cybx = cy * bx, cxby = cx * by, byax = by * ax, bxay = bx * ay;
    const double det = (cxay - cyax) * b2 + (cybx - cxby) * a2 + (byax - bxay) * c2;
    const double permanent = (std::fabs(cyax) + std::fabs(cxay)) * b2 + (std::fabs(cxby) + std::fabs(cybx)) * a2 +
                             (std::fabs(bxay) + std::fabs(byax)) * c2;
    const double bound = permanent * 3.33e-15;
    if (bound > 1e-200 && a2 + b2 + c2 < 1e60) {
        if (det > bound)
            return ORI2_POSITIVE;
        if (det < -bound)
            return ORI2_NEGATIVE;
    }
    return kUndecided;
}

Orientation2 PredicateTest::inCircleBeyondFilter(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q)
{
    RoundingGuard guard; // before the comparisons too: under DAZ all denormals are equal
    if (isAxisRectangle(p0, p1, p2, q) && isFinite(p0) && isFinite(p1) && isFinite(p2) && isFinite(q))
        return ORI2_POSITIVE;
    return inCircleSignBeyondFilter(p0, p1, p2, q);
}

Orientation2 PredicateTest::inCircleSignBeyondFilter(const Point2& p0, const Point2& p1, const Point2& p2,
                                                     const Point2& q)
{
    RoundingGuard guard;
    const int result = expansionInCircle(p0, p1, p2, q);
    return result != kUndecided ? static_cast<Orientation2>(result) : exactInCircle(p0, p1, p2, q);
}

Orientation2 PredicateTest::exactInCircle(const Point2& p0, const Point2& p1, const Point2& p2, const Point2& q)
{
    if (!isFinite(p0) || !isFinite(p1) || !isFinite(p2) || !isFinite(q))
        return ORI2_ZERO; // mpq_set_d would raise SIGFPE
    RoundingGuard guard;  // under DAZ mpq_set_d takes denormals for zero
    const Point2* aPoints[3] = {&p0, &p1, &p2};
    mpq_t* pX = aQ; // differences to q
    mpq_t* pY = aQ + 3;
    mpq_t* pSq = aQ + 6; // squared lengths
    mpq_t &qx = aQ[9], &qy = aQ[10], &r = aQ[11], &s = aQ[12], &sum = aQ[13];
    mpq_set_d(qx, q.x());
    mpq_set_d(qy, q.y());
    for (int i = 0; i < 3; ++i) {
        mpq_set_d(r, aPoints[i]->x());
        mpq_set_d(s, aPoints[i]->y());
        mpq_sub(pX[i], r, qx);
        mpq_sub(pY[i], s, qy);
        mpq_mul(r, pX[i], pX[i]);
        mpq_mul(s, pY[i], pY[i]);
        mpq_add(pSq[i], r, s);
    }
    mpq_set_d(sum, 0.0);
    for (int i = 0; i < 3; ++i) {
        const int j = next(i), k = prev(i);
        mpq_mul(r, pX[j], pY[k]);
        mpq_mul(s, pY[j], pX[k]);
        mpq_sub(r, r, s);
        mpq_mul(r, r, pSq[i]);
        mpq_add(sum, sum, r);
    }
    const int intResult = mpq_sgn(sum);
    if (intResult > 0)
        return ORI2_POSITIVE;
    if (intResult < 0)
        return ORI2_NEGATIVE;
    QUOR2D_ASSERT(intResult == 0, "intResult==0");
    return ORI2_ZERO;
}

void PredicateTest::debug(const Point2* p1, const Point2* p2, const Point2* p3)
{
    const double det = (p1->x() - p3->x()) * (p2->y() - p3->y()) - (p1->y() - p3->y()) * (p2->x() - p3->x());
    const char* const pSimple = det < negStaticBound ? "negative" : det > staticBound ? "positive" : "'no idea'";
    const Orientation2 exact = exactOrientation(*p1, *p2, *p3);
    const char* const pExact = exact == ORI2_NEGATIVE ? "NEGATIVE" : exact == ORI2_POSITIVE ? "POSITIVE" : "ZERO";

    printTitle("PredicateTest::debug()");
    std::cout << *p1 << std::endl << *p2 << std::endl << *p3 << std::endl;
    std::cout << "STATIC BOUND=" << negStaticBound << " resp. " << staticBound << std::endl;
    std::cout << "simple result=" << det << std::endl;
    std::cout << "simple test says " << pSimple << std::endl;
    std::cout << std::endl << std::endl;
    std::cout << "Result of dynamic ub: " << upperBound(*p1, *p2, *p3) << std::endl;
    std::cout << "Result of dynamic lb: " << lowerBound(*p1, *p2, *p3) << std::endl;
    std::cout << std::endl << std::endl;
    std::cout << "exact test says " << pExact << std::endl;
}

} // namespace ZELK_QUOR2D
