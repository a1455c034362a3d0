#include "Quor_2D.h"
#include "tests/support/MeshCheck.h"
#include "tests/support/PointSets.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>
#include <utility>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

std::size_t countDistinct(const std::vector<Point2>& vPoints)
{
    std::vector<Point2> vSorted = vPoints;
    std::sort(vSorted.begin(), vSorted.end());
    return static_cast<std::size_t>(std::unique(vSorted.begin(), vSorted.end()) - vSorted.begin());
}

// Inserts one by one, as a batch, as two batches and as singles followed by a batch; checks each mesh.
void expectValidHoweverInserted(const std::vector<Point2>& vPoints)
{
    const std::size_t numDistinct = countDistinct(vPoints);
    const auto half = vPoints.begin() + static_cast<std::ptrdiff_t>(vPoints.size() / 2);
    {
        Quor_2D dt;
        for (const Point2& p : vPoints)
            ASSERT_EQ(*dt.insert(p), p);
        expectValid(dt);
        std::vector<Point2*> vVertices;
        dt.getVertexPointers(vVertices);
        EXPECT_EQ(vVertices.size(), numDistinct);
    }
    {
        Quor_2D dt(static_cast<unsigned int>(vPoints.size()));
        dt.insert(vPoints);
        expectValid(dt);
        EXPECT_EQ(dt.numberOfPoints(), numDistinct);
    }
    {
        Quor_2D dt;
        dt.insert(std::vector<Point2>(vPoints.begin(), half));
        dt.insert(std::vector<Point2>(half, vPoints.end()));
        expectValid(dt);
        EXPECT_EQ(dt.numberOfPoints(), numDistinct);
    }
    {
        Quor_2D dt;
        for (auto it = vPoints.begin(); it != half; ++it)
            dt.insert(*it);
        std::vector<Point2*> vHandles;
        dt.insert(vPoints, vHandles);
        expectValid(dt);
        EXPECT_EQ(dt.numberOfPoints(), numDistinct);
        for (std::size_t i = 0; i < vPoints.size(); ++i)
            EXPECT_EQ(*vHandles[i], vPoints[i]);
    }
}

} // namespace

TEST(Insert, RandomAndStructuredSetsAreDelaunay)
{
    expectValidHoweverInserted(uniformPoints(2000, 1));
    expectValidHoweverInserted(gridPoints(31, 29));
    expectValidHoweverInserted(gridPoints(17, 40, 0.1));
    expectValidHoweverInserted(circlePoints(500));
    expectValidHoweverInserted(circlePoints(64, 1e9));
}

TEST(Insert, ClustersDuplicatesAndOutliers)
{
    Uniform u(2);
    std::vector<Point2> vPoints;
    for (int i = 0; i < 3000; ++i) {
        const double cx = u.below(5), cy = u.below(5);
        vPoints.emplace_back(cx + 1e-9 * u.below(20), cy + 1e-9 * u.below(20));
    }
    expectValidHoweverInserted(vPoints);
    vPoints = uniformPoints(800, 3);
    vPoints.emplace_back(1e15, -1e14);
    vPoints.insert(vPoints.end(), vPoints.begin(), vPoints.begin() + 300);
    expectValidHoweverInserted(vPoints);
}

TEST(Insert, EveryMagnitudeAndOneUlpApart)
{
    expectValidHoweverInserted(extremePoints(300, 4));
    for (const double center : {1.0, 1e-300, 1e300, 5e-324}) {
        std::vector<Point2> vPoints;
        double y = center;
        for (int j = 0; j < 8; ++j, y = std::nextafter(y, 2 * center)) {
            double x = center;
            for (int i = 0; i < 8; ++i, x = std::nextafter(x, 2 * center))
                vPoints.emplace_back(x, y);
        }
        expectValidHoweverInserted(vPoints);
    }
    constexpr double largest = std::numeric_limits<double>::max();
    expectValidHoweverInserted({{-largest, -largest},
                                {largest, -largest},
                                {largest, largest},
                                {-largest, largest},
                                {0.0, 0.0},
                                {5e-324, 0.0},
                                {-largest, 0.0},
                                {1.0, largest}});
}

TEST(Insert, NearlyCollinearRuns)
{
    std::vector<Point2> vPoints;
    for (int i = 0; i < 200; ++i)
        vPoints.emplace_back(0.1 * i, 0.3 * i); // rounding puts these beside one line
    expectValidHoweverInserted(vPoints);
    for (int i = 0; i < 50; ++i)
        vPoints.emplace_back(i, i % 3);
    expectValidHoweverInserted(vPoints);
}

TEST(Insert, DuplicatesKeepTheHandleBeforeAndAfterTheFirstTriangle)
{
    Quor_2D dt;
    Point2 a(0.0, 1.0);
    a.setCustomIndex(7);
    Point2* pA = dt.insert(a);
    EXPECT_EQ(dt.insert(Point2(-0.0, 1.0)), pA);
    EXPECT_EQ(dt.numberOfPoints(), 1u);
    Point2* pB = dt.insert(Point2(1.0, 1.0));
    std::vector<Point2*> vHandles;
    dt.insert({{2.0, 1.0}, {1.0, 1.0}, {0.0, 1.0}, {2.0, 1.0}}, vHandles);
    EXPECT_EQ(vHandles[1], pB);
    EXPECT_EQ(vHandles[2], pA);
    EXPECT_EQ(vHandles[0], vHandles[3]);
    EXPECT_EQ(dt.numberOfPoints(), 3u);
    EXPECT_FALSE(dt.is2D());
    Point2* pC = dt.insert(Point2(0.5, 2.0));
    EXPECT_TRUE(dt.is2D());
    const unsigned int numTriangles = dt.numberOfTriangles();
    EXPECT_EQ(dt.insert(Point2(0.5, 2.0)), pC);
    EXPECT_EQ(dt.insert(Point2(-0.0, 1.0)), pA);
    dt.insert({{0.0, 1.0}, {0.5, 2.0}}, vHandles);
    EXPECT_EQ(vHandles[0], pA);
    EXPECT_EQ(vHandles[1], pC);
    EXPECT_EQ(dt.numberOfTriangles(), numTriangles);
    EXPECT_EQ(pA->getCustomIndex(), 7);
    expectValid(dt);
}

TEST(Insert, TheEarliestOfEqualPointsOfABatchBecomesTheVertex)
{
    std::vector<Point2> vPoints;
    for (int i = 0; i < 300; ++i) {
        vPoints.emplace_back(i % 7, i % 5);
        vPoints.back().setCustomIndex(i);
    }
    Quor_2D dt;
    std::vector<Point2*> vHandles;
    dt.insert(vPoints, vHandles);
    EXPECT_EQ(dt.numberOfPoints(), 35u);
    for (int i = 0; i < 300; ++i) {
        EXPECT_EQ(vHandles[static_cast<std::size_t>(i)]->getCustomIndex(), i % 35);
    }
}

TEST(Insert, CollinearPointsWaitForOneOffTheLine)
{
    for (const bool bSingly : {false, true}) {
        Quor_2D dt;
        std::vector<Point2> vPoints;
        for (int i = 0; i < 1000; ++i)
            vPoints.emplace_back((i * 37) % 1000, 5.0);
        std::vector<Point2*> vHandles(vPoints.size());
        if (bSingly)
            std::transform(vPoints.begin(), vPoints.end(), vHandles.begin(),
                           [&](const Point2& p) { return dt.insert(p); });
        else
            dt.insert(vPoints, vHandles);
        EXPECT_FALSE(dt.is2D());
        EXPECT_EQ(dt.numberOfTriangles(), 0u);
        EXPECT_EQ(dt.locate(Point2(3.0, 5.0)), nullptr);
        dt.insert(Point2(400.0, -1.0));
        EXPECT_TRUE(dt.is2D());
        EXPECT_EQ(dt.numberOfTriangles(), 999u);
        expectValid(dt);
        for (std::size_t i = 0; i < vPoints.size(); ++i)
            EXPECT_EQ(*vHandles[i], vPoints[i]);
    }
}

// A fan at a hull vertex, its far ends extended in turn: hull neighbours come from the cache of long fans.
TEST(Insert, LongFanAtAHullVertexGrowsAtBothEnds)
{
    Quor_2D dt;
    dt.insert(Point2(0.0, 1e6));
    for (int i = 0; i < 400; ++i)
        dt.insert(Point2(i % 2 ? i : -i, 0.0));
    expectValid(dt);
    dt.insert(Point2(0.0, 2e6)); // swallows the apex
    for (int i = 400; i < 600; ++i)
        dt.insert(Point2(i % 2 ? i : -i, 0.0));
    dt.insert(Point2(-1e7, -1e7));
    dt.insert(Point2(700.0, 0.0));
    expectValid(dt);
}

TEST(Insert, PointsOnEdges)
{
    Quor_2D dt;
    dt.insert({{0.0, 0.0}, {4.0, 0.0}, {4.0, 4.0}, {0.0, 4.0}});
    EXPECT_EQ(dt.numberOfTriangles(), 2u);
    dt.insert(Point2(2.0, 2.0)); // on the diagonal
    EXPECT_EQ(dt.numberOfTriangles(), 4u);
    dt.insert(Point2(2.0, 0.0)); // on the hull
    EXPECT_EQ(dt.numberOfTriangles(), 5u);
    dt.insert(Point2(8.0, 0.0)); // on the line of hull edges, beyond their ends
    expectValid(dt);
}

TEST(Insert, PointBeyondTheHullLeavesCollinearHullEdgesAlone)
{
    Quor_2D dt;
    dt.insert({{0.0, 0.0}, {1.0, 0.0}, {2.0, 0.0}, {1.0, -1.0}});
    Point2* pFar = dt.insert(Point2(5.0, 0.0));
    EXPECT_EQ(dt.getAdjacentTriangle(pFar, dt.insert(Point2(0.0, 0.0))), nullptr);
    EXPECT_EQ(dt.getAdjacentTriangle(pFar, dt.insert(Point2(1.0, 0.0))), nullptr);
    EXPECT_NE(dt.getAdjacentTriangle(pFar, dt.insert(Point2(2.0, 0.0))), nullptr);
    expectValid(dt);
}

TEST(Insert, ArrayOfCoordinates)
{
    double aCoordinates[] = {-3.0, -4.0, -1.0, -4.0, -2.0, -1.0, -3.0, -4.0};
    Point2* aHandles[4] = {};
    Quor_2D dt;
    dt.insert(0, aCoordinates, aHandles);
    dt.insert(-1, aCoordinates, aHandles);
    EXPECT_EQ(dt.numberOfPoints(), 0u);
    dt.insert(4, aCoordinates, aHandles);
    EXPECT_EQ(dt.numberOfPoints(), 3u);
    EXPECT_EQ(aHandles[0], aHandles[3]);
    EXPECT_EQ(*aHandles[2], Point2(-2.0, -1.0));
    EXPECT_EQ(aHandles[2]->getCustomIndex(), -1);
    dt.insert(4, aCoordinates, nullptr);
    EXPECT_EQ(dt.numberOfPoints(), 3u);
    EXPECT_EQ(dt.computeBoundingBox().get_maxX(), -1.0);
    expectValid(dt);
}

TEST(Insert, NonFinitePointsAreLeftOutAndReportedOnce)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::nan("");
    Quor_2D dt;
    testing::internal::CaptureStdout();
    EXPECT_EQ(dt.insert(Point2(nan, 0.0)), nullptr);
    EXPECT_EQ(
        testing::internal::GetCapturedStdout(),
        "\n      [Quor2D-Message] Dt2::insert(..), ERROR: a point with a non-finite coordinate has been left out\n\n");
    EXPECT_EQ(dt.numberOfPoints(), 0u);
    std::vector<Point2*> vHandles;
    testing::internal::CaptureStdout();
    dt.insert({{0.0, 0.0}, {infinity, 0.0}, {1.0, 0.0}, {0.0, nan}, {0.0, 1.0}}, vHandles);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n      [Quor2D-Message] Dt2::insert(..), ERROR: points with a "
                                                      "non-finite coordinate have been left out: 2\n\n");
    EXPECT_EQ(vHandles[1], nullptr);
    EXPECT_EQ(vHandles[3], nullptr);
    EXPECT_EQ(dt.numberOfTriangles(), 1u);
    testing::internal::CaptureStdout();
    dt.insert({{-infinity, 0.0}}, vHandles);
    EXPECT_FALSE(testing::internal::GetCapturedStdout().empty());
    EXPECT_EQ(vHandles, std::vector<Point2*>{nullptr});
    expectValid(dt);
}

TEST(Insert, OrdinaryUsePrintsNothing)
{
    testing::internal::CaptureStdout();
    Quor_2D dt;
    dt.insert(std::vector<Point2>());
    dt.insert(gridPoints(20, 20));
    for (const Point2& p : gridPoints(20, 20, 0.7)) {
        dt.insert(p);
        dt.locate(Point2(p.y() * 3.0, p.x()));
    }
    dt.insert(std::vector<Point2>());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Insert, TrianglesAreTheSameForAnyOrder)
{
    using Corners = std::vector<std::pair<double, double>>;
    const auto meshOf = [](const std::vector<Point2>& vPoints) {
        Quor_2D dt;
        dt.insert(vPoints);
        std::vector<Triangle2*> vTriangles;
        dt.getTrianglePointers(vTriangles);
        std::set<Corners> sMesh;
        for (const Triangle2* pT : vTriangles) {
            Corners corners;
            for (int i = 0; i < 3; ++i)
                corners.emplace_back(pT->getCorner(i)->x(), pT->getCorner(i)->y());
            std::sort(corners.begin(), corners.end());
            sMesh.insert(corners);
        }
        return sMesh;
    };
    std::vector<Point2> vPoints = uniformPoints(500, 9);
    const auto sMesh = meshOf(vPoints);
    std::reverse(vPoints.begin(), vPoints.end());
    EXPECT_EQ(meshOf(vPoints), sMesh);
    std::sort(vPoints.begin(), vPoints.end());
    EXPECT_EQ(meshOf(vPoints), sMesh);
}
