#include "predicates/PredicateTest.h"

#include "tests/predicates/Inputs.h"
#include "tests/predicates/Rational.h"

#include "predicates/RoundingGuard.h"

#include <gtest/gtest.h>

#include <iostream>
#include <limits>
#include <sstream>

using namespace ZELK_QUOR2D;

namespace
{

const double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::numeric_limits<double>::quiet_NaN();

void expectTurn(PredicateTest& predicates, const Point2& a, const Point2& b, const Point2& c, int expected)
{
    EXPECT_EQ(predicates.getOrientation2(&a, &b, &c), expected) << a << "\n" << b << "\n" << c;
    EXPECT_EQ(PredicateTest::orientation(a, b, c), expected);
    RoundingGuard guard;
    for (int stage : {PredicateTest::filterOrientation(a, b, c), PredicateTest::expansionOrientation(a, b, c),
                      PredicateTest::intervalOrientation(a, b, c)})
        EXPECT_TRUE(stage == expected || stage == PredicateTest::kUndecided) << a << "\n" << b << "\n" << c;
    EXPECT_EQ(predicates.exactOrientation(a, b, c), expected);
}

std::ostringstream fullPrecision()
{
    std::ostringstream stream;
    stream.precision(17);
    return stream;
}

TEST(Orientation, EveryStageAndArgumentOrderAgreesWithRationals)
{
    PredicateTest predicates;
    for (const inputs::Family& family : inputs::kFamilies) {
        inputs::Random random(7);
        for (int i = 0; i < family.numCases; ++i) {
            const inputs::Points p = family.pMake(random);
            const int expected = oracle::orientation(p[0], p[1], p[2]);
            const int reversed = oracle::opposite(expected);
            expectTurn(predicates, p[0], p[1], p[2], expected);
            expectTurn(predicates, p[1], p[2], p[0], expected);
            expectTurn(predicates, p[2], p[0], p[1], expected);
            expectTurn(predicates, p[1], p[0], p[2], reversed);
            expectTurn(predicates, p[0], p[2], p[1], reversed);
            expectTurn(predicates, p[2], p[1], p[0], reversed);
            if (testing::Test::HasFailure()) {
                auto stream = fullPrecision();
                stream << family.pName << " case " << i << ": " << p[0] << " " << p[1] << " " << p[2];
                FAIL() << stream.str();
            }
        }
    }
}

// The classic picture: one point on a raster of single ulps against a line whose naive determinant is noise there.
TEST(Orientation, UlpRasterAroundALine)
{
    PredicateTest predicates;
    predicates.setStaticBound(24.0);
    const Point2 b(12.0, 12.0), c(24.0, 24.0);
    for (int i = 0; i < 32; ++i)
        for (int j = 0; j < 32; ++j) {
            const Point2 a(0.5 + i * 0x1p-53, 0.5 + j * 0x1p-53);
            EXPECT_EQ(predicates.getOrientation2(&a, &b, &c), oracle::orientation(a, b, c));
        }
    const Point2 a(0.5, 0.5), above(24.0, 24.0 + 0x1p-48);
    ASSERT_EQ((a.x() - above.x()) * (b.y() - above.y()) - (a.y() - above.y()) * (b.x() - above.x()), 0.0);
    EXPECT_EQ(predicates.getOrientation2(&a, &b, &above), ORI2_POSITIVE);
}

// A static bound taken for granted would answer for points it was not made for.
TEST(Orientation, IndependentOfTheStaticBound)
{
    const Point2 a(0.5, 0.5), b(12.0, 12.0), c(24.0, 24.0 + 0x1p-48);
    const Point2 far1(0.1, 0.1), far2(1e17, 1e17), far3(3e17, 3e17);
    for (double m : {0.0, 1e-300, 1.0, 1e200}) {
        PredicateTest predicates;
        predicates.setStaticBound(m);
        EXPECT_EQ(predicates.getOrientation2(&a, &b, &c), ORI2_POSITIVE);
        EXPECT_EQ(predicates.getOrientation2(&far1, &far2, &far3), oracle::orientation(far1, far2, far3));
    }
}

TEST(Orientation, StaticBoundKeepsItsFactor)
{
    PredicateTest predicates;
    EXPECT_EQ(predicates.state, 0);
    EXPECT_EQ(predicates.staticBound, 0.0);
    EXPECT_EQ(predicates.negStaticBound, 0.0);
    predicates.setStaticBound(1.0);
    EXPECT_EQ(predicates.staticBound, 2.6645352591003757e-15);
    predicates.setStaticBound(-3.0);
    EXPECT_EQ(predicates.staticBound, 9.0 * 2.6645352591003757e-15);
    EXPECT_EQ(predicates.negStaticBound, -predicates.staticBound);
    EXPECT_EQ(predicates.maxAbsCoord, 3.0);
}

TEST(Orientation, EdgeFormTakesTheEdgeOppositeTheCorner)
{
    PredicateTest predicates;
    Point2 a(0.0, 0.0), b(1.0, 0.0), c(0.0, 1.0);
    Triangle2 triangle;
    triangle.setProperties(&a, &b, &c);
    const Point2 beyondEdge0(1.0, 1.0), beyondEdge1(-1.0, 0.5), beyondEdge2(0.5, -1.0), onEdge0(0.5, 0.5);
    const int aExpected[3][3] = {{ORI2_NEGATIVE, ORI2_POSITIVE, ORI2_POSITIVE},
                                 {ORI2_POSITIVE, ORI2_NEGATIVE, ORI2_POSITIVE},
                                 {ORI2_POSITIVE, ORI2_POSITIVE, ORI2_NEGATIVE}};
    const Point2* aQueries[3] = {&beyondEdge0, &beyondEdge1, &beyondEdge2};
    for (int i = 0; i < 3; ++i)
        for (int edge = 0; edge < 3; ++edge)
            EXPECT_EQ(predicates.getOrientation2(&triangle, edge, aQueries[i]), aExpected[i][edge]);
    EXPECT_EQ(predicates.getOrientation2(&triangle, 0, &onEdge0), ORI2_ZERO);
}

// Which stage answers is a matter of speed: rational arithmetic costs a hundred times a filter.
TEST(Orientation, StagesDecideWhereTheyShould)
{
    RoundingGuard guard;
    const Point2 origin(0.0, 0.0), right(1.0, 0.0), up(0.0, 1.0);
    EXPECT_EQ(PredicateTest::filterOrientation(origin, right, up), ORI2_POSITIVE);
    const Point2 utm1(448262.1, 5411932.7), utm2(448262.2, 5411932.7), utm3(448262.1, 5411932.9);
    EXPECT_EQ(PredicateTest::filterOrientation(utm1, utm2, utm3), ORI2_POSITIVE);

    const Point2 p1(0.1, 0.1), p2(0.2, 0.2), p3(0.3, 0.3);
    EXPECT_EQ(PredicateTest::filterOrientation(p1, p2, p3), PredicateTest::kUndecided);
    EXPECT_EQ(PredicateTest::intervalOrientation(p1, p2, p3), PredicateTest::kUndecided);
    EXPECT_EQ(PredicateTest::expansionOrientation(p1, p2, p3), ORI2_ZERO);

    // One magnitude, however small or large, can be scaled into the range of expansions; very different ones cannot.
    const Point2 tiny1(0x1p-1074, 0x1p-1074), tiny2(0x1p-1073, 0x1p-1073), tiny3(0x1p-1070, 0x1p-1070);
    EXPECT_EQ(PredicateTest::filterOrientation(tiny1, tiny2, tiny3), PredicateTest::kUndecided);
    EXPECT_EQ(PredicateTest::expansionOrientation(tiny1, tiny2, tiny3), ORI2_ZERO);
    const Point2 mixed1(1e-200, 1e-300), mixed2(1e300, 2e-300), mixed3(-1e300, 1e-300);
    EXPECT_EQ(PredicateTest::expansionOrientation(mixed1, mixed2, mixed3), PredicateTest::kUndecided);
    EXPECT_EQ(PredicateTest::intervalOrientation(mixed1, mixed2, mixed3), oracle::orientation(mixed1, mixed2, mixed3));
}

TEST(Orientation, BoundsEncloseTheDeterminant)
{
    int numSharp = 0;
    for (const inputs::Family& family : inputs::kFamilies) {
        inputs::Random random(11);
        for (int i = 0; i < family.numCases; ++i) {
            const inputs::Points p = family.pMake(random);
            const double lower = PredicateTest::lowerBound(p[0], p[1], p[2]);
            const double upper = PredicateTest::upperBound(p[0], p[1], p[2]);
            const oracle::Rational det = oracle::orientationDeterminant(p[0], p[1], p[2]);
            EXPECT_TRUE(!std::isfinite(lower) || oracle::Rational(lower) <= det) << family.pName << " " << i;
            EXPECT_TRUE(!std::isfinite(upper) || det <= oracle::Rational(upper)) << family.pName << " " << i;
            numSharp += upper > lower && upper - lower <= 1e-15 * (std::fabs(upper) + std::fabs(lower));
        }
    }
    EXPECT_GT(numSharp, 1000); // bounds that were always infinite, or never rounded apart, would be none
    const Point2 a(0.0, 0.0), b(3.0, 0.0), c(0.0, 7.0);
    EXPECT_EQ(PredicateTest::lowerBound(a, b, c), 21.0);
    EXPECT_EQ(PredicateTest::upperBound(a, b, c), 21.0);
}

TEST(Orientation, NonFiniteInputAnswersZero)
{
    PredicateTest predicates;
    for (double bad : {kInf, -kInf, kNaN})
        for (int i = 0; i < 6; ++i) {
            double aCoords[6] = {0.0, 0.0, 1.0, 0.0, 0.0, 1.0};
            aCoords[i] = bad;
            const Point2 a(aCoords[0], aCoords[1]), b(aCoords[2], aCoords[3]), c(aCoords[4], aCoords[5]);
            EXPECT_EQ(predicates.getOrientation2(&a, &b, &c), ORI2_ZERO);
            EXPECT_EQ(predicates.exactOrientation(a, b, c), ORI2_ZERO);
        }
}

TEST(Orientation, DebugPrintsEveryStage)
{
    PredicateTest predicates;
    predicates.setStaticBound(32.0);
    const Point2 a(0.5, 0.5), b(12.0, 12.0), c(24.0, 24.0 + 0x1p-48);
    std::ostringstream captured, expected;
    std::streambuf* pOld = std::cout.rdbuf(captured.rdbuf());
    predicates.debug(&a, &b, &c);
    std::cout.rdbuf(pOld);

    const std::string stars(71, '*');
    expected << "\n\n"
             << stars << "\n"
             << stars << "\n               PredicateTest::debug()\n"
             << stars << "\n"
             << stars << "\n\n\n"
             << a << "\n"
             << b << "\n"
             << c << "\n"
             << "STATIC BOUND=-2.72848e-12 resp. 2.72848e-12\nsimple result=0\nsimple test says 'no idea'\n\n\n"
             << "Result of dynamic ub: " << PredicateTest::upperBound(a, b, c) << "\n"
             << "Result of dynamic lb: " << PredicateTest::lowerBound(a, b, c) << "\n\n\nexact test says POSITIVE\n";
    EXPECT_EQ(captured.str(), expected.str());
}

} // namespace
