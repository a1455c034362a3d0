#include "TriangleAroundVertexIterator.h"

#include "geometry/TriangleIndex.h"

#include <gtest/gtest.h>

#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

// Triangles around a hub, counterclockwise, each with the hub at another corner index.
//
//        r1
//       /|\                        An open fan has no triangle between the last rim point and the first.
//   r2 --hub-- r0
class Fan
{
public:
    Fan(int numTriangles, bool bClosed) : vRim(static_cast<std::size_t>(numTriangles + 1)), vTriangles(vRim.size() - 1)
    {
        for (int i = 0; i < numTriangles; ++i) {
            Point2* aCorners[3] = {&hub, rim(i), bClosed && i + 1 == numTriangles ? rim(0) : rim(i + 1)};
            const int shift = i % 3;
            triangle(i)->setProperties(aCorners[shift], aCorners[next(shift)], aCorners[prev(shift)]);
        }
        for (int i = 0; i + 1 < numTriangles + bClosed; ++i) {
            Triangle2 *pRight = triangle(i), *pLeft = triangle((i + 1) % numTriangles);
            pRight->setOppTriangle(next(pRight->getIntraTriangleIndex(&hub)), pLeft);
            pLeft->setOppTriangle(prev(pLeft->getIntraTriangleIndex(&hub)), pRight);
        }
    }
    Point2* rim(int i) { return &vRim[static_cast<std::size_t>(i)]; }
    Triangle2* triangle(int i) { return &vTriangles[static_cast<std::size_t>(i)]; }

    Point2 hub;

private:
    std::vector<Point2> vRim;
    std::vector<Triangle2> vTriangles;
};

TEST(TriangleAroundVertexIterator, CyclesAroundAnInteriorVertex)
{
    Fan fan(5, true);
    TriangleAroundVertexIterator it(&fan.hub, fan.triangle(2));
    for (int i = 0; i < 12; ++i, ++it)
        ASSERT_EQ(*it, fan.triangle((2 + i) % 5));
    TriangleAroundVertexIterator back(&fan.hub, fan.triangle(2));
    for (int i = 0; i < 12; ++i, --back)
        ASSERT_EQ(*back, fan.triangle((2 + 4 * i) % 5));
}

TEST(TriangleAroundVertexIterator, YieldsOneNullPerTurnAtAHullVertex)
{
    Fan fan(4, false);
    TriangleAroundVertexIterator it(&fan.hub, fan.triangle(1));
    for (Triangle2* pExpected : {fan.triangle(1), fan.triangle(2), fan.triangle(3), static_cast<Triangle2*>(nullptr),
                                 fan.triangle(0), fan.triangle(1)}) {
        ASSERT_EQ(*it, pExpected);
        ++it;
    }
    TriangleAroundVertexIterator back(&fan.hub, fan.triangle(1));
    for (Triangle2* pExpected : {fan.triangle(1), fan.triangle(0), static_cast<Triangle2*>(nullptr), fan.triangle(3),
                                 fan.triangle(2), fan.triangle(1)}) {
        ASSERT_EQ(*back, pExpected);
        --back;
    }
}

TEST(TriangleAroundVertexIterator, SingleTriangleAlternatesWithNull)
{
    Fan fan(1, false);
    TriangleAroundVertexIterator it(&fan.hub);
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(*it, fan.triangle(0));
        ASSERT_EQ(*++it, nullptr);
        ++it;
    }
    ASSERT_EQ(*--it, nullptr);
    ASSERT_EQ(*--it, fan.triangle(0));
}

TEST(TriangleAroundVertexIterator, ComparesVertexAndTriangleOnly)
{
    Fan fan(4, false);
    TriangleAroundVertexIterator came(&fan.hub, fan.triangle(0)), direct(&fan.hub, fan.triangle(1));
    ++came;
    EXPECT_TRUE(came == direct);
    EXPECT_TRUE(came != TriangleAroundVertexIterator(fan.rim(1), fan.triangle(1)));
    EXPECT_TRUE(came != TriangleAroundVertexIterator(&fan.hub, fan.triangle(2)));
    // An assigned iterator knows the way back from beyond the border.
    ++came, ++came, ++came;
    ASSERT_EQ(*came, nullptr);
    direct = came;
    EXPECT_EQ(*++direct, fan.triangle(0));
}

} // namespace
