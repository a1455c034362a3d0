#include "predicates/RoundingGuard.h"

#include "tests/predicates/Inputs.h"
#include "tests/predicates/Rational.h"
#include "tests/support/HostMode.h"

#include "predicates/PredicateTest.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <vector>

using namespace ZELK_QUOR2D;
using test::HostMode;

namespace
{

const int kModes[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};

struct Case {
    inputs::Points points;
    int turn;
    int side;
};

std::vector<Case> makeCases()
{
    std::vector<Case> vCases;
    for (const inputs::Family& family : inputs::kFamilies) {
        inputs::Random random(23);
        for (int i = 0; i < family.numCases / 2; ++i) {
            const inputs::Points p = family.pMake(random);
            vCases.push_back({p, oracle::orientation(p[0], p[1], p[2]), oracle::inCircle(p[0], p[1], p[2], p[3])});
        }
    }
    return vCases;
}

TEST(RoundingMode, AnswersAndModeSurviveEveryHostMode)
{
    const std::vector<Case> vCases = makeCases();
    PredicateTest predicates;
    for (int mode : kModes)
        for (bool bFlush : {false, true}) {
            int numWrongTurns = 0, numWrongSides = 0, numWrongExact = 0, numModesLost = 0;
            for (const Case& test : vCases) {
                const inputs::Points& p = test.points;
                HostMode host(mode, bFlush);
                numWrongTurns += predicates.getOrientation2(&p[0], &p[1], &p[2]) != test.turn;
                numModesLost += !host.isUnchanged();
                numWrongTurns += PredicateTest::orientation(p[0], p[1], p[2]) != test.turn;
                numModesLost += !host.isUnchanged();
                numWrongSides += predicates.inCircleSign(&p[0], &p[1], &p[2], &p[3]) != test.side;
                numModesLost += !host.isUnchanged();
                numWrongExact += predicates.exactOrientation(p[0], p[1], p[2]) != test.turn;
                numWrongExact += predicates.exactInCircle(p[0], p[1], p[2], p[3]) != test.side;
                const int interval = PredicateTest::intervalOrientation(p[0], p[1], p[2]);
                numWrongExact += interval != test.turn && interval != PredicateTest::kUndecided;
                numModesLost += !host.isUnchanged();
            }
            EXPECT_EQ(numWrongTurns, 0) << mode << bFlush;
            EXPECT_EQ(numWrongSides, 0) << mode << bFlush;
            EXPECT_EQ(numWrongExact, 0) << mode << bFlush;
            EXPECT_EQ(numModesLost, 0) << mode << bFlush;
        }
}

// A flushed difference times a large one: a filter that only looks at the sum of products certifies the wrong sign.
TEST(RoundingMode, FlushedDifferenceWithALargePartner)
{
    const Point2 a(2e-308 * 0.5, -1e-150), b(-1e140, 1e300), c(0.0, 0.0);
    PredicateTest predicates;
    const int expected = oracle::orientation(a, b, c);
    HostMode host(FE_TONEAREST, true);
    const int answer = predicates.getOrientation2(&a, &b, &c);
    EXPECT_EQ(answer, expected);
    EXPECT_TRUE(host.isUnchanged());
}

// Denormals all compare equal under DAZ, which would make this a rectangle.
TEST(RoundingMode, RectangleRuleSeesDenormals)
{
    Point2 a(0.0, 0.0), b(1.0, 0x1p-1074), c(1.0, 1.0);
    const Point2 q(0.0, 1.0);
    Triangle2 triangle;
    triangle.setProperties(&a, &b, &c);
    const int expected = oracle::inCircle(a, b, c, q);
    ASSERT_NE(expected, ORI2_ZERO);
    PredicateTest predicates;
    HostMode host(FE_TONEAREST, true);
    EXPECT_EQ(predicates.circleIncSide(&triangle, &q), expected);
}

TEST(RoundingMode, GuardSetsNearestAndRestores)
{
    volatile double one = 1.0, tiny = 0x1p-60, smallest = 0x1p-1022;
    for (int mode : kModes)
        for (bool bFlush : {false, true}) {
            HostMode host(mode, bFlush);
            {
                RoundingGuard guard;
                EXPECT_EQ(one + tiny, 1.0);
                EXPECT_EQ(one - tiny, 1.0);
                EXPECT_GT(smallest / 2.0, 0.0);
                guard.roundUpward();
                EXPECT_GT(one + tiny, 1.0);
                guard.roundDownward();
                EXPECT_LT(one - tiny, 1.0);
                EXPECT_EQ(-(-one - tiny), 1.0 + 0x1p-52);
                guard.roundTowardZero();
                EXPECT_EQ(-(-one - tiny), 1.0);
                guard.roundToNearest();
                EXPECT_EQ(one - tiny, 1.0);
            }
            EXPECT_TRUE(host.isUnchanged());
        }
}

} // namespace
