#include "Quor_2D.h"
#include "core/Dt2.h"
#include "tests/support/MeshCheck.h"
#include "tests/support/PointSets.h"

#include <cmath>
#include <limits>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

bool containsPoint(const Triangle2* pT, const Point2& p)
{
    for (int i = 0; i < 3; ++i)
        if (orientationSign(*pT->getCorner(i), *pT->getCorner((i + 1) % 3), p) < 0)
            return false;
    return true;
}

// Every query must get a triangle that contains it, or null when no triangle does.
void expectLocatesLikeBruteForce(Quor_2D& dt, const std::vector<Point2>& vQueries)
{
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    for (const Point2& p : vQueries) {
        const Triangle2* pFound = dt.locate(p);
        if (pFound) {
            EXPECT_TRUE(containsPoint(pFound, p)) << p;
            continue;
        }
        for (const Triangle2* pT : vTriangles)
            EXPECT_FALSE(containsPoint(pT, p)) << p;
    }
}

} // namespace

TEST(Locate, AgreesWithBruteForce)
{
    Quor_2D dt;
    dt.insert(uniformPoints(300, 5));
    expectLocatesLikeBruteForce(dt, uniformPoints(500, 6));
    Quor_2D grid;
    grid.insert(gridPoints(9, 9));
    std::vector<Point2> vQueries = gridPoints(23, 23, 0.5); // vertices, edges, hull, and points beyond
    for (const Point2& p : gridPoints(23, 23, 0.5))
        vQueries.emplace_back(std::nextafter(p.x(), -1.0), std::nextafter(p.y(), 100.0));
    expectLocatesLikeBruteForce(grid, vQueries);
}

TEST(Locate, FarQueriesAreExact)
{
    Quor_2D dt;
    dt.insert({{0.0, 0.0}, {1.0, 0.0}, {0.0, 1.0}, {1.0, 1.0}});
    expectLocatesLikeBruteForce(dt, extremePoints(2000, 7));
    constexpr double largest = std::numeric_limits<double>::max();
    for (const double x : {-largest, -1.0, 0.5, largest, std::numeric_limits<double>::infinity()})
        EXPECT_EQ(dt.locate(Point2(x, largest)), nullptr);
    EXPECT_EQ(dt.locate(Point2(std::nan(""), 0.5)), nullptr);
    // One triangle that spans nearly everything.
    Quor_2D wide;
    wide.insert({{-largest, -largest}, {largest, -largest}, {0.0, largest}});
    expectLocatesLikeBruteForce(wide, extremePoints(2000, 8));
}

TEST(Locate, TheHullBorderBelongsToTheMesh)
{
    Quor_2D dt;
    dt.insert({{0.0, 0.0}, {4.0, 0.0}, {4.0, 4.0}, {0.0, 4.0}});
    EXPECT_NE(dt.locate(Point2(1.0, 0.0)), nullptr);
    EXPECT_NE(dt.locate(Point2(4.0, 3.0)), nullptr);
    EXPECT_EQ(dt.locate(Point2(4.0, std::nextafter(4.0, 5.0))), nullptr);
    EXPECT_EQ(dt.locate(Point2(5.0, 0.0)), nullptr); // on the line of a hull edge
    const Triangle2* pT = dt.locate(Point2(4.0, 4.0));
    ASSERT_NE(pT, nullptr);
    EXPECT_TRUE(*pT->getCorner(0) == Point2(4.0, 4.0) || *pT->getCorner(1) == Point2(4.0, 4.0) ||
                *pT->getCorner(2) == Point2(4.0, 4.0));
}

TEST(Locate, WalkStatesSayWhereThePointIs)
{
    Dt2 dt(3);
    dt.insert({{0.0, 0.0}, {4.0, 0.0}, {0.0, 4.0}});
    const auto stateOf = [&dt](double x, double y) {
        const Point2 p(x, y);
        Triangle2* pT = dt.findStartTriangle(p, 0);
        const int state = dt.walkToTriangle(&p, pT);
        EXPECT_NE(pT, nullptr);
        return state;
    };
    EXPECT_EQ(stateOf(1.0, 1.0), Dt2::WALK_INSIDE);
    EXPECT_EQ(stateOf(0.0, -0.0), Dt2::WALK_ON_CORNER);
    for (const auto& place : {Point2(2.0, 0.0), Point2(3.0, -1.0), Point2(2.0, 2.0), Point2(-1.0, -1.0)}) {
        const int state = stateOf(place.x(), place.y());
        EXPECT_TRUE(state >= 0 && state <= 2) << place;
    }
}

// Two points inserted in turn far from each other, so that neither the last vertex nor the sorted entries are near.
TEST(Locate, UnsortedTailIsFound)
{
    Quor_2D dt;
    dt.insert(uniformPoints(2000, 11));
    Uniform u(12);
    std::vector<Point2> vQueries;
    for (int i = 0; i < 300; ++i) {
        const double side = i % 2 ? 2.0 : -2.0;
        vQueries.emplace_back(side + 0.1 * u(), u());
        dt.insert(vQueries.back());
    }
    expectLocatesLikeBruteForce(dt, vQueries);
    expectValid(dt);
}
