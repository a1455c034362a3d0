#include "predicates/PredicateTest.h"

#include "tests/predicates/Inputs.h"
#include "tests/predicates/Rational.h"

#include "predicates/RoundingGuard.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

using namespace ZELK_QUOR2D;

namespace
{

struct Corners {
    Corners(const Point2& a, const Point2& b, const Point2& c) : aPoints{a, b, c}
    {
        triangle.setProperties(&aPoints[0], &aPoints[1], &aPoints[2]);
    }
    Point2 aPoints[3];
    Triangle2 triangle;
};

void expectSign(PredicateTest& predicates, const Point2& a, const Point2& b, const Point2& c, const Point2& d,
                int expected)
{
    EXPECT_EQ(predicates.inCircleSign(&a, &b, &c, &d), expected);
    RoundingGuard guard;
    for (int stage : {PredicateTest::filterInCircle(a, b, c, d), PredicateTest::expansionInCircle(a, b, c, d)})
        EXPECT_TRUE(stage == expected || stage == PredicateTest::kUndecided);
    EXPECT_EQ(predicates.exactInCircle(a, b, c, d), expected);
}

// The rule as it is told: one corner with the x of q, one with the y of q, and the remaining values equal in pairs.
bool isRectangle(const Corners& corners, const Point2& q)
{
    std::multiset<double> sOtherX, sOtherY;
    for (const Point2& p : corners.aPoints) {
        if (p.x() != q.x())
            sOtherX.insert(p.x());
        if (p.y() != q.y())
            sOtherY.insert(p.y());
    }
    return sOtherX.size() == 2 && sOtherY.size() == 2 && *sOtherX.begin() == *sOtherX.rbegin() &&
           *sOtherY.begin() == *sOtherY.rbegin();
}

TEST(InCircle, EveryStageAndArgumentOrderAgreesWithRationals)
{
    PredicateTest predicates;
    for (const inputs::Family& family : inputs::kFamilies) {
        inputs::Random random(13);
        for (int i = 0; i < family.numCases; ++i) {
            const inputs::Points p = family.pMake(random);
            const int expected = oracle::inCircle(p[0], p[1], p[2], p[3]);
            // Each of the four as the query, both ways round. Turning four points by one is an odd permutation.
            for (std::size_t q = 0; q < 4; ++q) {
                const Point2 &a = p[(q + 1) % 4], &b = p[(q + 2) % 4], &c = p[(q + 3) % 4];
                const int sign = q % 2 ? expected : oracle::opposite(expected);
                expectSign(predicates, a, b, c, p[q], sign);
                expectSign(predicates, c, b, a, p[q], oracle::opposite(sign));
            }
            if (testing::Test::HasFailure())
                FAIL() << family.pName << " case " << i << ": " << p[0] << " " << p[1] << " " << p[2] << " " << p[3];
        }
    }
}

TEST(InCircle, RectangleRuleOnAllQuadruplesOfALattice)
{
    PredicateTest predicates;
    int numRectangles = 0;
    for (int code = 0; code < 6561; ++code) {
        const auto latticePoint = [](int index) { return Point2(index % 3, index / 3); };
        Corners corners(latticePoint(code % 9), latticePoint(code / 9 % 9), latticePoint(code / 81 % 9));
        const Point2 q = latticePoint(code / 729);
        const int sign = oracle::inCircle(corners.aPoints[0], corners.aPoints[1], corners.aPoints[2], q);
        const bool bRectangle = isRectangle(corners, q);
        numRectangles += bRectangle;
        const int expected = bRectangle ? int{ORI2_POSITIVE} : sign;
        ASSERT_EQ(predicates.circleIncSide(&corners.triangle, &q), expected) << code;
        ASSERT_EQ(predicates.circleInc(&corners.triangle, &q), expected == ORI2_POSITIVE) << code;
        ASSERT_EQ(predicates.inCircleSign(&corners.aPoints[0], &corners.aPoints[1], &corners.aPoints[2], &q), sign);
    }
    EXPECT_GT(numRectangles, 9 * 24 - 1); // 9 rectangles in 24 orders, and those with a corner twice
}

TEST(InCircle, CocircularWithAndWithoutRectangle)
{
    PredicateTest predicates;
    Corners square(Point2(0.0, 0.0), Point2(1.0, 0.0), Point2(0.0, 1.0));
    const Point2 fourth(1.0, 1.0);
    EXPECT_TRUE(predicates.circleInc(&square.triangle, &fourth));
    EXPECT_EQ(predicates.circleIncSide(&square.triangle, &fourth), ORI2_POSITIVE);
    EXPECT_EQ(predicates.inCircleSign(&square.aPoints[0], &square.aPoints[1], &square.aPoints[2], &fourth), ORI2_ZERO);

    Corners other(Point2(0.0, 0.0), Point2(4.0, 0.0), Point2(0.0, 2.0));
    const Point2 onCircle(3.0, 3.0);
    EXPECT_FALSE(predicates.circleInc(&other.triangle, &onCircle));
    EXPECT_EQ(predicates.circleIncSide(&other.triangle, &onCircle), ORI2_ZERO);
}

// Products of such differences are denormal or zero; an unguarded filter certifies noise.
TEST(InCircle, MagnitudesWhereTheFilterUnderflows)
{
    PredicateTest predicates;
    inputs::Random random(17);
    for (int exponent = -290; exponent <= -240; ++exponent)
        for (int i = 0; i < 20; ++i) {
            inputs::Points p = inputs::nearlyCocircular(random);
            for (Point2& point : p)
                point = inputs::scaled(point, exponent);
            ASSERT_EQ(predicates.inCircleSign(&p[0], &p[1], &p[2], &p[3]), oracle::inCircle(p[0], p[1], p[2], p[3]))
                << exponent;
        }
}

// Which stage answers is a matter of speed: rational arithmetic costs a hundred times a filter.
TEST(InCircle, StagesDecideWhereTheyShould)
{
    RoundingGuard guard;
    const Point2 a(0.0, 0.0), b(1.0, 0.0), c(0.0, 1.0), inside(0.5, 0.6), fourth(1.0, 1.0);
    EXPECT_EQ(PredicateTest::filterInCircle(a, b, c, inside), ORI2_POSITIVE);
    EXPECT_EQ(PredicateTest::filterInCircle(a, b, c, fourth), PredicateTest::kUndecided);
    EXPECT_EQ(PredicateTest::expansionInCircle(a, b, c, fourth), ORI2_ZERO);
    // Differences with more bits than a coarse grid has, and differences that are no doubles.
    inputs::Random random(19);
    for (int i = 0; i < 100; ++i) {
        const inputs::Points p = i % 2 ? inputs::cocircular(random, 1048577.0) : inputs::symmetricTrapezoid(random);
        EXPECT_EQ(PredicateTest::expansionInCircle(p[0], p[1], p[2], p[3]), oracle::inCircle(p[0], p[1], p[2], p[3]));
    }
    const Point2 tiny(1e-300, 0.0), huge(1e300, 1.0);
    EXPECT_EQ(PredicateTest::expansionInCircle(tiny, huge, c, fourth), PredicateTest::kUndecided);
}

TEST(InCircle, NonFiniteInputIsNotInside)
{
    const double kInf = std::numeric_limits<double>::infinity();
    PredicateTest predicates;
    for (double bad : {kInf, -kInf, std::numeric_limits<double>::quiet_NaN()})
        for (int i = 0; i < 8; ++i) {
            double aCoords[8] = {0.0, 0.0, 1.0, 0.0, 0.0, 1.0, 0.2, 0.2};
            aCoords[i] = bad;
            Corners corners(Point2(aCoords[0], aCoords[1]), Point2(aCoords[2], aCoords[3]),
                            Point2(aCoords[4], aCoords[5]));
            const Point2 q(aCoords[6], aCoords[7]);
            EXPECT_FALSE(predicates.circleInc(&corners.triangle, &q));
            EXPECT_EQ(predicates.circleIncSide(&corners.triangle, &q), ORI2_ZERO);
        }
    // A "rectangle" that reaches infinity.
    Corners corners(Point2(0.0, 0.0), Point2(kInf, 0.0), Point2(0.0, 1.0));
    const Point2 q(kInf, 1.0);
    EXPECT_FALSE(predicates.circleInc(&corners.triangle, &q));
}

// Scratch numbers belong to the instance.
TEST(InCircle, InstancesDoNotDisturbEachOther)
{
    PredicateTest first;
    const Point2 tiny(1e-300, 0.0), huge(1e300, 1.0), c(0.0, 1.0), d(1.0, 1.0);
    const Orientation2 before = first.exactInCircle(tiny, huge, c, d);
    PredicateTest second;
    second.setStaticBound(5.0);
    second.exactInCircle(d, c, huge, tiny);
    EXPECT_EQ(first.staticBound, 0.0);
    EXPECT_EQ(first.exactInCircle(tiny, huge, c, d), before);
}

} // namespace
