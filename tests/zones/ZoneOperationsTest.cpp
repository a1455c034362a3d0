#include "tests/zones/ZoneTestSupport.h"

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

class ZoneOperations : public testing::Test
{
protected:
    ZoneOperations()
    {
        dt.insert(uniformPoints(400, 4));
        dt.insert({Point2(-1, -1), Point2(2, -1), Point2(2, 2), Point2(-1, 2)});
        pA = dt.createZone(addRing(dt, a), ZL_INSIDE);
        ConstraintGraph2* pRingB = addRing(dt, b);
        pB = dt.createZone(pRingB, ZL_INSIDE);
        pOutsideB = dt.createZone(pRingB, ZL_OUTSIDE);
        pGlobal = dt.createZone(nullptr, ZL_GLOBAL);
        dt.applyConstraintsAndZones();
    }

    // Compares a zone with the same operation on the two squares.
    void expectSelected(const Zone2* pZone, const std::function<bool(bool bInA, bool bInB)>& condition)
    {
        EXPECT_EQ(trianglesOf(pZone),
                  select(dt, [&](const Point2& p) { return condition(isInside(a, p), isInside(b, p)); }));
    }

    Quor_2D dt;
    const Polygon a = box(0.1, 0.1, 0.6, 0.6); // the two overlap, so that their borders cross
    const Polygon b = box(0.4, 0.3, 0.9, 0.8);
    Zone2* pA;
    Zone2* pB;
    Zone2* pOutsideB;
    Zone2* pGlobal;
};

} // namespace

TEST_F(ZoneOperations, AreSetOperations)
{
    expectSelected(zoneUnion(pA, pB), [](bool inA, bool inB) { return inA || inB; });
    expectSelected(zoneIntersection(pA, pB), [](bool inA, bool inB) { return inA && inB; });
    expectSelected(zoneDifference(pA, pB), [](bool inA, bool inB) { return inA && !inB; });
    expectSelected(zoneSymmetricDifference(pA, pB), [](bool inA, bool inB) { return inA != inB; });
    EXPECT_EQ(trianglesOf(zoneUnion(pB, pOutsideB)), trianglesOf(pGlobal));
    EXPECT_EQ(zoneUnion(pA, pB)->getZoneLocation(), ZL_RESULT_UNION);
}

TEST_F(ZoneOperations, OfAZoneWithItself)
{
    EXPECT_EQ(trianglesOf(zoneUnion(pA, pA)), trianglesOf(pA));
    EXPECT_EQ(trianglesOf(zoneIntersection(pA, pA)), trianglesOf(pA));
    EXPECT_TRUE(trianglesOf(zoneDifference(pA, pA)).empty());
    EXPECT_TRUE(trianglesOf(zoneSymmetricDifference(pA, pA)).empty());
}

// Faults: a recursion as deep as the nesting, evaluation of shared operands once for each path to them, results that
// stay as they were.
TEST_F(ZoneOperations, NestDeeplyAndShareOperands)
{
    Zone2* pNested = zoneUnion(zoneDifference(pA, pB), zoneDifference(pB, pA));
    const auto differ = [](bool inA, bool inB) { return inA != inB; };
    expectSelected(pNested, differ);
    dt.insert(uniformPoints(100, 8));
    expectSelected(pNested, differ);

    Zone2* pDoubled = pNested;
    for (int i = 0; i < 100; ++i)
        pDoubled = zoneUnion(pDoubled, pDoubled);
    expectSelected(pDoubled, differ);

    Quor_2D small;
    small.insert(gridPoints(2, 2));
    Zone2* pAll = small.createZone(nullptr, ZL_GLOBAL);
    Zone2* pChain = pAll;
    for (int i = 0; i < 100000; ++i)
        pChain = zoneSymmetricDifference(pChain, pAll);
    EXPECT_EQ(trianglesOf(pChain), trianglesOf(pAll));
}

// Deliberate: three of the four report under the name of the first.
TEST_F(ZoneOperations, RefuseForeignAndNullZones)
{
    Quor_2D other;
    other.insert(gridPoints(2, 2));
    Zone2* pForeign = other.createZone(nullptr, ZL_GLOBAL);
    const std::string text = "The zones must belong to the same triangulation! Returning NULL";
    const auto expectRefused = [&](Zone2* (*operation)(Zone2*, Zone2*), const std::string& where) {
        EXPECT_EQ(outputOf([&] { EXPECT_EQ(operation(pA, pForeign), nullptr); }), message(where, "ERROR", text));
        EXPECT_NE(outputOf([&] { EXPECT_EQ(operation(pA, nullptr), nullptr); }).find(where + ", ERROR: "),
                  std::string::npos);
        EXPECT_NE(outputOf([&] { EXPECT_EQ(operation(nullptr, pA), nullptr); }), "");
    };
    expectRefused(zoneUnion, "Zone2::zoneUnion(...)");
    expectRefused(zoneIntersection, "zoneUnion(...)");
    expectRefused(zoneDifference, "zoneUnion(...)");
    expectRefused(zoneSymmetricDifference, "zoneUnion(...)");
}

// A result zone that was made without operands has the empty set for both.
TEST_F(ZoneOperations, AMissingOperandIsTheEmptySet)
{
    Zone2* pEmpty = dt.createZone(nullptr, ZL_RESULT_UNION);
    EXPECT_TRUE(trianglesOf(pEmpty).empty());
    EXPECT_EQ(trianglesOf(zoneUnion(pA, pEmpty)), trianglesOf(pA));
    EXPECT_EQ(trianglesOf(zoneDifference(pA, pEmpty)), trianglesOf(pA));
}
