#include "core/Dt2.h"
#include "tests/constraints/Scene.h"

#include <algorithm>
#include <limits>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

const char* const kVertexOnSegment = "pCSeg intersects an existing vertex";
const char* const kCrossing = "constraint segments cross, both are split";
const char* const kGivenUp = "Double precision arithmetic does not allow to split a segment further, giving up. "
                             "Incorrect result!";
constexpr ConstraintInsertionStrategy kStrategies[] = {CIS_CONFORMING_DELAUNAY, CIS_CONSTRAINED_DELAUNAY};

std::vector<Segment2> randomSegments(int n, std::uint64_t seed)
{
    Uniform u(seed);
    std::vector<Segment2> vSegments;
    for (int i = 0; i < n; ++i) {
        const double x0 = u(), y0 = u(), x1 = u();
        vSegments.emplace_back(Point2(x0, y0), Point2(x1, u()));
    }
    return vSegments;
}

std::vector<Segment2> gridSegments(int n, int size, Uniform& u)
{
    std::vector<Segment2> vSegments;
    while (static_cast<int>(vSegments.size()) < n) {
        const int x0 = u.below(size), y0 = u.below(size), x1 = u.below(size), y1 = u.below(size);
        if (x0 != x1 || y0 != y1)
            vSegments.emplace_back(Point2(x0, y0), Point2(x1, y1));
    }
    return vSegments;
}

} // namespace

// ---- one segment

TEST(ConstraintApply, EdgeThatExistsIsLeftAlone)
{
    for (const auto cis : kStrategies) {
        Scene scene;
        scene.dt.insert(squareCorners(0, 0, 1));
        scene.add({Segment2(Point2(0, 0), Point2(1, 0))}, cis);
        EXPECT_EQ(scene.applyAndCheck(0.0), "");
        EXPECT_EQ(scene.dt.numberOfPoints(), 4u);
        EXPECT_EQ(alivePieces(scene.vGraphs).size(), 1u);
    }
}

// Every vertex on the segment splits it, those beyond the first triangle as well.
TEST(ConstraintApply, CollinearVerticesSplitTheSegment)
{
    for (const int n : {1, 2, 7}) {
        Scene scene;
        scene.dt.insert({Point2(0, 5), Point2(n, -5), Point2(1, 3), Point2(2, -2)});
        for (int i = 1; i <= n; ++i)
            scene.dt.insert(Point2(i, 0));
        scene.add({Segment2(Point2(0, 0), Point2(n + 1, 0))}, CIS_CONSTRAINED_DELAUNAY);
        const std::string text = scene.applyAndCheck(0.0);
        EXPECT_EQ(
            countOf(text, std::string("Dt2::insertConstraintSegmentIgnoreDelaunay(), WARNING: ") + kVertexOnSegment),
            static_cast<std::size_t>(n));
        EXPECT_EQ(alivePieces(scene.vGraphs).size(), static_cast<std::size_t>(n) + 1);
    }
}

TEST(ConstraintApply, ManyCollinearVerticesNeedNoDeepStack)
{
    constexpr int n = 50000;
    Scene scene;
    std::vector<Point2> vPoints = gridPoints(n, 1);
    vPoints.emplace_back(0, 5);
    vPoints.emplace_back(n - 1, -5);
    scene.dt.insert(vPoints);
    scene.add({Segment2(Point2(0, 0), Point2(n - 1, 0))}, CIS_CONSTRAINED_DELAUNAY);
    CapturedOutput output;
    scene.dt.applyConstraintsAndZones();
    EXPECT_EQ(countOf(output.stop(), kVertexOnSegment), static_cast<std::size_t>(n) - 2);
    EXPECT_EQ(alivePieces(scene.vGraphs).size(), static_cast<std::size_t>(n) - 1);
}

TEST(ConstraintApply, ConformingSegmentGainsMidpointsAndTheMeshStaysDelaunay)
{
    Scene scene;
    std::vector<Point2> vPoints;
    for (int i = 0; i < 20; ++i)
        vPoints.emplace_back(i, i % 2 ? 0.3 : -0.3);
    scene.dt.insert(vPoints);
    scene.add({Segment2(Point2(-1, 0), Point2(20, 0))}, CIS_CONFORMING_DELAUNAY);
    EXPECT_EQ(scene.applyAndCheck(0.0), "");
    expectValid(scene.dt); // no edge is exempt
    EXPECT_GT(alivePieces(scene.vGraphs).size(), 20u);
    EXPECT_NE(scene.vertexAt(9.5, 0), nullptr);
}

TEST(ConstraintApply, ConformingSegmentBelowTheToleranceIsGivenUp)
{
    Scene scene;
    const double tiny = 0x1p-49;
    scene.dt.insert({Point2(0, 0), Point2(4, 0), Point2(4, 4), Point2(0, 4)});
    scene.dt.insert({Point2(1 + tiny / 2, 1 + tiny / 8), Point2(1 + tiny / 2, 1 - tiny / 8)});
    scene.add({Segment2(Point2(1, 1), Point2(1 + tiny, 1))}, CIS_CONFORMING_DELAUNAY);
    const unsigned int numPoints = scene.dt.numberOfPoints();
    CapturedOutput output;
    scene.dt.applyConstraintsAndZones();
    EXPECT_EQ(output.stop(),
              std::string("\n      [Quor2D-Message] Dt2::insertConstraintSegmentKeepDelaunay(), WARNING: ") + kGivenUp +
                  "\n\n");
    EXPECT_EQ(scene.dt.numberOfPoints(), numPoints);
    scene.check(0.0, 1);
}

// The blocking vertices lie within rounding of the segment, but not on it: below the tolerance they are no split
// points.
TEST(ConstraintApply, BelowTheToleranceNearbyVerticesDoNotSplit)
{
    Scene scene;
    const double ulp = 0x1p-53; // at 0.5
    scene.dt.insert({Point2(0, 0), Point2(1, 0), Point2(1, 1), Point2(0, 1)});
    scene.dt.insert({Point2(0.5 + 9 * ulp, 0.5 + 2 * ulp), Point2(0.5 + 9 * ulp, 0.5 - 2 * ulp)});
    scene.add({Segment2(Point2(0.5, 0.5), Point2(0.5 + 18 * ulp, 0.5))}, CIS_CONFORMING_DELAUNAY);
    CapturedOutput output;
    scene.dt.applyConstraintsAndZones();
    EXPECT_EQ(countOf(output.stop(), kGivenUp), 1u);
    EXPECT_EQ(alivePieces(scene.vGraphs).size(), 1u);
}

// Exponents out of range must not reach an integer conversion, nor sums infinity.
TEST(ConstraintApply, ExtremeMagnitudes)
{
    const double aScale[] = {5e-324 * 64, 1e-310, 1e-160, 1e150, 1e300, std::numeric_limits<double>::max() / 64};
    for (const double scale : aScale) {
        for (const auto cis : kStrategies) {
            Scene scene;
            scene.dt.insert(gridPoints(8, 8, scale));
            scene.add({Segment2(Point2(0, 0), Point2(7 * scale, 3 * scale)),
                       Segment2(Point2(0, 7 * scale), Point2(6 * scale, scale))},
                      cis);
            scene.applyAndCheck(std::max(scale * 0x1p-8, 1e-323));
        }
    }
    for (int seed = 0; seed < 20; ++seed) {
        Scene scene;
        const std::vector<Point2> vPoints = extremePoints(30, static_cast<std::uint64_t>(seed));
        scene.dt.insert(vPoints);
        scene.add(chain({vPoints.begin(), vPoints.begin() + 12}, false), CIS_CONSTRAINED_DELAUNAY);
        scene.applyAndCheck(1e295);
    }
}

// The fault: halving until the pieces are as short as the gap between the borders, billions of them, where a vertex
// beside the segment was judged by the last digits of coordinates near zero, or by products that underflow.
TEST(ConstraintApply, ConformingBordersThatAlmostCoincide)
{
    for (const double scale : {1.0, 1e-300, 1e-310, 1e300}) {
        Scene scene;
        const auto at = [scale](double x, double y) { return Point2(scale * x, scale * y); };
        scene.dt.insert({at(0.3, 1), at(-0.7, 1), at(0.1, -1), at(0, 2)});
        scene.add({Segment2(at(-2, 0), at(1, 2e-16)), Segment2(at(-1, 3e-16), at(2, 1e-16))}, CIS_CONFORMING_DELAUNAY);
        scene.add(square(-0.5 * scale, -0.25 * scale, scale * 1.000000000000001), CIS_CONFORMING_DELAUNAY);
        scene.add(square(-0.5 * scale, -0.25 * scale, scale), CIS_CONFORMING_DELAUNAY);
        scene.applyAndCheck(1e-12 * scale);
        EXPECT_LT(scene.dt.numberOfPoints(), 300u);
    }
}

// ---- several segments

TEST(ConstraintApply, OverlappingSquares)
{
    for (const auto cis : kStrategies) {
        Scene scene;
        scene.add(square(0, 0, 2), cis);
        scene.add(square(1, 1, 2), cis);
        const std::string text = scene.applyAndCheck(0.0);
        EXPECT_EQ(countOf(text, kCrossing), 2u);
        EXPECT_EQ(countOf(text, kVertexOnSegment) + countOf(text, kGivenUp), 0u);
        EXPECT_NE(scene.vertexAt(1, 2), nullptr);
        EXPECT_NE(scene.vertexAt(2, 1), nullptr);
    }
}

TEST(ConstraintApply, CrossingAtARoundedPoint)
{
    for (const auto cis : kStrategies) {
        Scene scene;
        scene.dt.insert(uniformPoints(40, 5));
        scene.add({Segment2(Point2(0, 0), Point2(1, 1.0 / 3.0))}, cis);
        scene.applyAndCheck();
        scene.add({Segment2(Point2(0, 1), Point2(1, 0.1))}, cis);
        EXPECT_GE(countOf(scene.applyAndCheck(), kCrossing), 1u);
    }
}

// Edges of another triangulation do not cross. Nothing is to be said about them, and no constrained one is split.
TEST(ConstraintApply, RandomSegmentsThatDoNotCross)
{
    for (const auto cis : kStrategies) {
        for (std::uint64_t seed = 0; seed < 6; ++seed) {
            Quor_2D other;
            other.insert(uniformPoints(cis == CIS_CONSTRAINED_DELAUNAY ? 400 : 60, seed));
            std::vector<Triangle2*> vTriangles;
            other.getTrianglePointers(vTriangles);
            std::vector<Segment2> vSegments;
            for (std::size_t i = 0; i < vTriangles.size(); i += 2)
                vSegments.emplace_back(*vTriangles[i]->getCorner(1), *vTriangles[i]->getCorner(2));
            Scene scene;
            scene.dt.insert(uniformPoints(600, seed + 1000));
            ConstraintGraph2* const pGraph = scene.add(vSegments, cis);
            EXPECT_EQ(scene.applyAndCheck(), "");
            std::vector<ConstraintSegment2*> vOriginal;
            pGraph->getOriginalConstraintSegments(vOriginal);
            for (const ConstraintSegment2* pCSeg : vOriginal)
                EXPECT_TRUE(cis == CIS_CONFORMING_DELAUNAY || pCSeg->isAlive());
            if (HasFailure())
                FAIL() << "seed " << seed << ", strategy " << cis;
        }
    }
}

// The midpoint of the second segment knocks an edge of the first one out after that was finished.
TEST(ConstraintApply, FinishedConformingSegmentIsVisitedAgain)
{
    Scene scene;
    for (const Point2& p : {Point2(0, 6), Point2(7, 4), Point2(3, 7), Point2(1, 7), Point2(0, 4), Point2(8, 5)})
        scene.dt.insert(p);
    scene.add({Segment2(Point2(3, 7), Point2(0, 6)), Segment2(Point2(8, 5), Point2(0, 4))}, CIS_CONFORMING_DELAUNAY);
    EXPECT_EQ(scene.applyAndCheck(0.0), "");
    expectValid(scene.dt);
}

TEST(ConstraintApply, RandomCrossingSegments)
{
    for (const int numPoints : {0, 1000}) {
        Scene scene;
        scene.dt.insert(uniformPoints(numPoints, 11));
        scene.add(randomSegments(300, 12), CIS_CONSTRAINED_DELAUNAY);
        scene.applyAndCheck();
    }
    for (int seed = 0; seed < 30; ++seed) {
        Scene scene;
        scene.dt.insert(uniformPoints(7 * seed, static_cast<std::uint64_t>(seed)));
        scene.add(randomSegments(5 + seed, static_cast<std::uint64_t>(seed) + 100), CIS_CONSTRAINED_DELAUNAY);
        scene.applyAndCheck();
        if (HasFailure())
            FAIL() << "seed " << seed;
    }
}

TEST(ConstraintApply, IntegerGridsWithOverlapsAndMixedStrategies)
{
    for (int seed = 0; seed < 60; ++seed) {
        Uniform u(static_cast<std::uint64_t>(seed));
        Scene scene;
        const int size = 4 + seed % 9;
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < 10; ++i)
                scene.dt.insert(Point2(u.below(size), u.below(size)));
            scene.add(gridSegments(1 + u.below(5), size, u), kStrategies[u.below(2)]);
            scene.add(gridSegments(1 + u.below(5), size, u), kStrategies[u.below(2)]);
            scene.applyAndCheck();
        }
        if (HasFailure())
            FAIL() << "seed " << seed;
    }
}

// Pieces a few units in the last place apart must neither cross for ever nor be halved for ever.
TEST(ConstraintApply, AlmostCoincidentSegments)
{
    for (int seed = 0; seed < 40; ++seed) {
        Uniform u(static_cast<std::uint64_t>(seed));
        const auto clusterPoint = [&u] {
            double x = 1 + 0.37 * u.below(3), y = 1 + 0.73 * u.below(3);
            for (int i = u.below(5); i > 0; --i)
                x = std::nextafter(x, 9);
            for (int i = u.below(5); i > 0; --i)
                y = std::nextafter(y, 9);
            return Point2(x, y);
        };
        Scene scene;
        scene.dt.insert({Point2(0, 0), Point2(5, 0), Point2(0, 5)});
        std::vector<Segment2> vSegments;
        for (int i = 0; i < 12; ++i) {
            const Point2 p = clusterPoint(), q = clusterPoint();
            if (p != q)
                vSegments.emplace_back(p, q);
        }
        scene.add(vSegments, CIS_CONSTRAINED_DELAUNAY);
        scene.applyAndCheck();
        if (HasFailure())
            FAIL() << "seed " << seed;
    }
}

// Cocircular corners: both diagonals of a rectangle count as illegal under the rule that insertion uses.
// Rounded crossings make a piece of a constrained segment coincide with a conforming one: nothing keeps its edge any
// more, and it must be Delaunay as all conforming edges.
TEST(ConstraintApply, ConformingPiecesOfConstrainedSegments)
{
    Scene scene;
    const double x3 = 0.1 * 3; // not 0.3
    for (const Point2& p : {Point2(x3, 0.1), Point2(0.2, 0.4)})
        scene.dt.insert(p);
    scene.add({Segment2(Point2(0.2, 0.4), Point2(0.1, 0.1))}, CIS_CONFORMING_DELAUNAY);
    scene.add({Segment2(Point2(0, 0.4), Point2(x3, 0.1))}, CIS_CONSTRAINED_DELAUNAY);
    scene.add({Segment2(Point2(0, 0.4), Point2(0.2, 0.2)), Segment2(Point2(x3, 0.2), Point2(0.1, x3)),
               Segment2(Point2(0.1, 0), Point2(0.2, x3))},
              CIS_CONFORMING_DELAUNAY);
    scene.applyAndCheck();
}

TEST(ConstraintApply, GridDiagonals)
{
    Scene scene;
    scene.dt.insert(gridPoints(20, 20));
    std::vector<Segment2> vSegments;
    for (int i = 0; i < 19; ++i) {
        vSegments.emplace_back(Point2(i, 19 - i), Point2(i + 1, 18 - i));
        vSegments.emplace_back(Point2(i, (7 * i) % 19), Point2(i + 1, (7 * i) % 19 + 1));
    }
    scene.add(vSegments, CIS_CONSTRAINED_DELAUNAY);
    scene.applyAndCheck(0.0);
}

TEST(ConstraintApply, RingsOfTenThousandVertices)
{
    for (const auto cis : kStrategies) {
        Scene scene;
        std::vector<Point2> vPoints = uniformPoints(5000, 21);
        for (Point2& p : vPoints)
            p = Point2(p.x() - 0.5, p.y() - 0.5);
        scene.dt.insert(vPoints);
        ConstraintGraph2* const pGraph =
            scene.add(chain(starRing(10000, cis == CIS_CONFORMING_DELAUNAY ? 1e-4 : 0.3, 22), true), cis);
        EXPECT_TRUE(pGraph->isPolygon());
        scene.applyAndCheck();
        std::vector<Point2*> vVertices;
        pGraph->getPolygonVertices(vVertices);
        EXPECT_EQ(vVertices.size(), alivePieces(scene.vGraphs).size());
    }
}

// Before the first triangle exists, and with a hub whose star every segment would have to search.
TEST(ConstraintApply, SpokesOfAHub)
{
    Scene scene;
    std::vector<Segment2> vSegments;
    for (const Point2& p : circlePoints(3000))
        vSegments.emplace_back(Point2(0, 0), p);
    scene.add(vSegments, CIS_CONSTRAINED_DELAUNAY);
    EXPECT_EQ(scene.applyAndCheck(0.0), "");

    Scene crossed; // points around the hub that all spokes have to pass
    crossed.dt.insert(uniformPoints(3000, 23));
    crossed.add(vSegments, CIS_CONSTRAINED_DELAUNAY);
    EXPECT_EQ(crossed.applyAndCheck(), "");
}

// ---- edges stay

TEST(ConstraintApply, PointsInsertedLaterLeaveConstrainedEdges)
{
    Scene scene;
    scene.add(chain(starRing(200, 0.3, 31), true), CIS_CONSTRAINED_DELAUNAY);
    scene.add(square(-0.4, -0.4, 0.8), CIS_CONSTRAINED_DELAUNAY);
    scene.applyAndCheck();
    std::vector<Point2> vPoints = uniformPoints(3000, 32);
    for (Point2& p : vPoints)
        p = Point2(3.0 * p.x() - 1.5, 3.0 * p.y() - 1.5);
    scene.dt.insert(vPoints);
    scene.check();
    for (const Point2& p : uniformPoints(500, 33)) {
        scene.dt.insert(Point2(p.x() - 0.5, p.y() - 0.5));
        scene.dt.insert(Point2(-0.4 + 0.8 * p.x(), -0.4)); // on the inner square
    }
    scene.check();
    EXPECT_EQ(scene.applyAndCheck(), "");
}

TEST(ConstraintApply, PointOnAnEdgeSplitsItsSegmentAtOnce)
{
    for (const auto cis : kStrategies) {
        Scene scene;
        scene.add(square(0, 0, 8), cis); // hull edges
        scene.add({Segment2(Point2(2, 2), Point2(6, 2))}, cis);
        scene.applyAndCheck(0.0);
        scene.dt.insert({Point2(3, 0), Point2(3, 2), Point2(8, 5)});
        scene.dt.insert(Point2(5, 2));
        scene.check(0.0);
        EXPECT_EQ(alivePieces(scene.vGraphs).size(), 4u + 2u + 1u + 2u);
    }
}

// An ulp beside the edge is not on it: the sliver stays.
TEST(ConstraintApply, PointBesideAnEdgeLeavesIt)
{
    Scene scene;
    scene.add(square(0, 0, 8), CIS_CONSTRAINED_DELAUNAY);
    scene.add({Segment2(Point2(1, 1), Point2(7, 4))}, CIS_CONSTRAINED_DELAUNAY);
    scene.applyAndCheck(0.0);
    Uniform u(41);
    for (int i = 0; i < 200; ++i) {
        const double t = u();
        const double y = 1 + 3 * t;
        scene.dt.insert(Point2(1 + 6 * t, std::nextafter(y, u() < 0.5 ? 0 : 9)));
    }
    scene.check(0.0);
}

// Inside refinement edges of either strategy stay; outside of it only constrained ones do.
TEST(ConstraintApply, LockedConformingEdges)
{
    for (const bool bLock : {false, true}) {
        Dt2 dt(3);
        dt.insert({Point2(0, 0), Point2(8, 0), Point2(8, 8), Point2(0, 8)});
        dt.createConstraint({Segment2(Point2(2, 4), Point2(6, 4))}, CIS_CONFORMING_DELAUNAY);
        dt.applyConstraintsAndZones();
        std::vector<Point2*> vEnds;
        dt.insert({Point2(2, 4), Point2(6, 4)}, vEnds);
        dt.bLockConformingEdges = bLock;
        dt.insert(Point2(4, 4.5));
        dt.insert(Point2(4, 3.5));
        Triangle2* const pT = dt.getAdjacentTriangle(vEnds[0], vEnds[1]);
        EXPECT_EQ(pT != nullptr, bLock);
        if (pT) {
            const int ith = 3 - pT->getIntraTriangleIndex(vEnds[0]) - pT->getIntraTriangleIndex(vEnds[1]);
            EXPECT_TRUE(dt.isLockedEdge(pT, ith));
            dt.bLockConformingEdges = false;
            EXPECT_FALSE(dt.isLockedEdge(pT, ith));
        }
        EXPECT_TRUE(Dt2::isConstraintVertex(vEnds[0]));
        dt.applyConstraintsAndZones();
        EXPECT_NE(dt.getAdjacentTriangle(vEnds[0], bLock ? vEnds[1] : dt.insert(Point2(4, 4))), nullptr);
        if (!bLock)
            expectValid(dt);
    }
}

// What refinement does: the rounded midpoint of an edge lies beside it, and both pieces must be edges afterwards.
TEST(ConstraintApply, SplitAtARoundedMidpoint)
{
    Uniform u(51);
    for (int i = 0; i < 200; ++i) {
        Dt2 dt(3);
        dt.insert(uniformPoints(30, static_cast<std::uint64_t>(i)));
        const double x0 = u(), y0 = u(), x1 = u();
        const Segment2 segment(Point2(x0, y0), Point2(x1, u()));
        ConstraintGraph2* const pGraph = dt.createConstraint({segment}, CIS_CONSTRAINED_DELAUNAY);
        dt.applyConstraintsAndZones();
        for (int round = 0; round < 4; ++round) {
            for (ConstraintSegment2* pCSeg : alivePieces({pGraph})) {
                const Point2 middle((pCSeg->getSrc()->x() + pCSeg->getTrg()->x()) * 0.5,
                                    (pCSeg->getSrc()->y() + pCSeg->getTrg()->y()) * 0.5);
                Point2* const pSplit = dt.insertReleased(pCSeg, middle, pCSeg->getSrc()->getIncidentTriangle());
                ASSERT_TRUE(pCSeg->splitAndRemovePrev(pSplit));
                dt.finishSplit(pCSeg);
            }
            for (ConstraintSegment2* pCSeg : alivePieces({pGraph}))
                ASSERT_NE(dt.getAdjacentTriangle(pCSeg->getSrc(), pCSeg->getTrg()), nullptr);
        }
        MeshCheckOptions options;
        options.isExemptEdge = [&dt](const Point2* p, const Point2* q) { return dt.isConstraint(p, q); };
        ASSERT_TRUE(isValidMesh(dt, options));
    }
}

// ---- the internal operation

TEST(ConstraintApply, TreatConstraintZone)
{
    Dt2 dt(3);
    std::vector<Point2*> v;
    dt.insert({Point2(0, 0), Point2(4, 0), Point2(2, 1), Point2(2, -1), Point2(3, 0)}, v);
    {
        CapturedOutput output;
        EXPECT_EQ(dt.treatConstraintZone(v[0], v[0]), nullptr);
        EXPECT_EQ(output.stop(), "\n      [Quor2D-Message] Dt2::treatConstraintZone(), WARNING: Degenerate segment, "
                                 "nothing to do\n\n");
    }
    EXPECT_EQ(dt.treatConstraintZone(v[0], v[1]), v[4]);
    EXPECT_EQ(dt.treatConstraintZone(v[0], v[4]), nullptr);
    EXPECT_NE(dt.getAdjacentTriangle(v[0], v[4]), nullptr);
    EXPECT_EQ(dt.treatConstraintZone(v[2], v[3]), nullptr);
    EXPECT_NE(dt.getAdjacentTriangle(v[2], v[3]), nullptr);
}

// At a hub the segment is looked for from its other end, too, where another vertex comes first.
TEST(ConstraintApply, TreatConstraintZoneFindsTheVertexNearestToTheFirstEnd)
{
    Dt2 dt(3);
    std::vector<Point2> vPoints{Point2(0, 0), Point2(10, 0), Point2(1, 0), Point2(5, 0), Point2(9, 0)};
    for (int i = 0; i < 40; ++i)
        vPoints.emplace_back(std::cos(0.08 + 0.157 * i), std::sin(0.08 + 0.157 * i));
    std::vector<Point2*> v;
    dt.insert(vPoints, v);
    EXPECT_EQ(dt.treatConstraintZone(v[0], v[1]), v[2]);
    EXPECT_EQ(dt.treatConstraintZone(v[1], v[0]), v[4]);
}
