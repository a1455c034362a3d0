#include "constraints/ConstraintMgr.h"
#include "core/Dt2.h"
#include "tests/constraints/Scene.h"
#include "tests/support/TemporaryDirectory.h"

#include <limits>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

ConstraintSegment2* onlySegmentOf(const ConstraintGraph2* pGraph)
{
    std::vector<ConstraintSegment2*> vSegments;
    pGraph->getOriginalConstraintSegments(vSegments);
    return vSegments.size() == 1 ? vSegments[0] : nullptr;
}

std::string report(const std::string& text)
{
    return "\n      [Quor2D-Message] " + text + "\n\n";
}

} // namespace

TEST(ConstraintMgr, SameSegmentIsSharedWhateverItsDirectionAndStrategy)
{
    Quor_2D dt;
    const Point2 a(0, 0), b(1, 0);
    ConstraintSegment2* const pCSeg = onlySegmentOf(dt.createConstraint({Segment2(a, b)}, CIS_CONSTRAINED_DELAUNAY));
    ASSERT_NE(pCSeg, nullptr);
    EXPECT_EQ(pCSeg->getNumberOfOwners(), 1u);
    EXPECT_EQ(onlySegmentOf(dt.createConstraint({Segment2(b, a)}, CIS_CONFORMING_DELAUNAY)), pCSeg);
    EXPECT_EQ(pCSeg->getNumberOfOwners(), 2u);
    EXPECT_EQ(pCSeg->getCIS(), CIS_CONSTRAINED_DELAUNAY);
    dt.createConstraint({Segment2(a, b), Segment2(b, a)}, CIS_CONFORMING_DELAUNAY);
    EXPECT_EQ(pCSeg->getNumberOfOwners(), 3u);
    EXPECT_EQ(dt.numberOfPoints(), 2u);
}

TEST(ConstraintMgr, MisuseIsReported)
{
    Quor_2D dt;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    {
        CapturedOutput output;
        EXPECT_EQ(dt.createConstraint({}, CIS_CONSTRAINED_DELAUNAY), nullptr);
        EXPECT_EQ(output.stop(),
                  report("Quor_2D::createConstraint(), WARNING: You have not supplied any segments. Returning NULL!"));
    }
    {
        CapturedOutput output;
        dt.applyConstraintsAndZones();
        EXPECT_EQ(output.stop(), report("Quor2D::applyConstraintsAndZones(), WARNING: The triangulation is not 2D yet, "
                                        "can't apply the constraints"));
    }
    {
        CapturedOutput output;
        ConstraintGraph2* const pGraph = dt.createConstraint(
            {Segment2(Point2(1, 1), Point2(1, 1)), Segment2(Point2(nan, 0), Point2(5, 5))}, CIS_CONSTRAINED_DELAUNAY);
        const std::string text = output.stop();
        EXPECT_EQ(countOf(text, "ConstraingMgr::createConstraint, WARNING: Identical source and endpoint, a constraint "
                                "segment has been skipped (Point2 ("),
                  1u);
        EXPECT_EQ(countOf(text, "ERROR: a constraint segment with a non-finite coordinate has been skipped"), 1u);
        ASSERT_NE(pGraph, nullptr); // empty, and never a polygon
        EXPECT_FALSE(pGraph->isPolygon());
        std::vector<Point2*> vVertices;
        pGraph->getPolygonVertices(vVertices);
        EXPECT_TRUE(vVertices.empty());
        EXPECT_EQ(dt.numberOfPoints(), 1u);
    }
    EXPECT_FALSE(dt.isConstraint(nullptr, nullptr));
    EXPECT_FALSE(dt.isConstraint(static_cast<Triangle2*>(nullptr), 0));
    Dt2 core(3);
    CapturedOutput output;
    EXPECT_EQ(core.createConstraint({}, CIS_CONSTRAINED_DELAUNAY), nullptr);
    core.applyConstraintsAndZones();
    EXPECT_EQ(output.stop(),
              report("Dt2::createConstraint(..), WARNING: vSegments is empty, returning NULL") +
                  report("Dt2::applyConstraintsAndZones(), WARNING: The triangulation is not full dimensional yet. "
                         "Nothing to do"));
}

TEST(ConstraintMgr, QueriesKnowPendingSegmentsAndEdges)
{
    Scene scene;
    scene.dt.insert(uniformPoints(50, 3));
    const Point2 a(0.0, 0.5), b(1.0, 0.5);
    scene.add({Segment2(a, b)}, CIS_CONSTRAINED_DELAUNAY);
    Point2* const pA = scene.vertexAt(0.0, 0.5);
    Point2* const pB = scene.vertexAt(1.0, 0.5);
    EXPECT_TRUE(scene.dt.isConstraint(pB, pA));
    EXPECT_EQ(scene.dt.getAdjacentTriangle(pA, pB), nullptr);
    scene.applyAndCheck(0.0);
    Triangle2* const pT = scene.dt.getAdjacentTriangle(pA, pB);
    ASSERT_NE(pT, nullptr);
    int numConstraints = 0;
    for (int i = 0; i < 3; ++i)
        numConstraints += scene.dt.isConstraint(pT, i);
    EXPECT_EQ(numConstraints, 1);
    EXPECT_FALSE(scene.dt.isConstraint(pA, pA));
}

// Two objects for one edge would each miss the splits of the other.
TEST(ConstraintMgr, OverlapIsOneObject)
{
    for (const auto cis : {CIS_CONSTRAINED_DELAUNAY, CIS_CONFORMING_DELAUNAY}) {
        Scene scene;
        scene.dt.insert({Point2(0, 9), Point2(5, -9)});
        scene.add({Segment2(Point2(0, 0), Point2(2, 0))}, cis);
        scene.add({Segment2(Point2(3, 0), Point2(1, 0))}, cis);
        scene.applyAndCheck(0.0);
        Point2* const p1 = scene.vertexAt(1, 0);
        Point2* const p2 = scene.vertexAt(2, 0);
        EXPECT_TRUE(scene.vGraphs[0]->isConstraint(p1, p2));
        EXPECT_TRUE(scene.vGraphs[1]->isConstraint(p1, p2));
        Point2* const pMiddle = scene.dt.insert(Point2(1.5, 0));
        for (const ConstraintGraph2* pGraph : scene.vGraphs) {
            EXPECT_FALSE(pGraph->isConstraint(p1, p2));
            EXPECT_TRUE(pGraph->isConstraint(p1, pMiddle) && pGraph->isConstraint(pMiddle, p2));
        }
        for (ConstraintSegment2* pPiece : alivePieces(scene.vGraphs))
            EXPECT_EQ(pPiece->getNumberOfOwners(),
                      pPiece->getSrc() == pMiddle || pPiece->getTrg() == pMiddle ? 2u : 1u);
        scene.applyAndCheck(0.0);
    }
}

TEST(ConstraintMgr, SegmentAndPartsOfItInOneGraph)
{
    Scene scene;
    scene.dt.insert({Point2(0, 9), Point2(5, -9)});
    const Point2 a(0, 0), b(2, 0), c(4, 0), d(4, 4);
    scene.add({Segment2(a, c), Segment2(c, b), Segment2(b, d), Segment2(d, a), Segment2(a, b)},
              CIS_CONSTRAINED_DELAUNAY);
    scene.add({Segment2(a, c)}, CIS_CONFORMING_DELAUNAY);
    scene.applyAndCheck(0.0);
    EXPECT_EQ(alivePieces(scene.vGraphs).size(), 4u);
    // A ring that runs along an edge and back is a polygon by its connections.
    Scene spike;
    ConstraintGraph2* const pSpike = spike.add(chain({a, c, b, d}, true), CIS_CONSTRAINED_DELAUNAY);
    EXPECT_TRUE(pSpike->isPolygon());
    spike.applyAndCheck(0.0);
    std::vector<Point2*> vVertices;
    pSpike->getPolygonVertices(vVertices);
    std::vector<Point2> vPoints;
    for (const Point2* p : vVertices)
        vPoints.push_back(*p);
    EXPECT_EQ(vPoints, (std::vector<Point2>{a, b, c, b, d}));
}

TEST(ConstraintMgr, SplitSegmentCanBeRequestedAgain)
{
    Scene scene;
    scene.dt.insert({Point2(0, 9), Point2(5, -9), Point2(1, 0)});
    const std::vector<Segment2> vSegments = {Segment2(Point2(0, 0), Point2(2, 0))};
    for (int i = 0; i < 3; ++i) {
        scene.add(vSegments, CIS_CONSTRAINED_DELAUNAY);
        scene.applyAndCheck(0.0);
    }
    const std::vector<ConstraintSegment2*> vPieces = alivePieces(scene.vGraphs);
    ASSERT_EQ(vPieces.size(), 2u);
    EXPECT_EQ(vPieces[0]->getNumberOfOwners(), 3u);
    EXPECT_EQ(vPieces[1]->getNumberOfOwners(), 3u);
}

TEST(ConstraintMgr, WritesPiecesThatCanBeReadBack)
{
    Dt2 dt(3);
    const double x = 1.0 / 3.0;
    dt.insert(Point2(0.1, 5));
    dt.createConstraint({Segment2(Point2(0, 0), Point2(x, 0))}, CIS_CONSTRAINED_DELAUNAY);
    dt.insert(Point2(0.1, 0));
    dt.applyConstraintsAndZones();
    const TemporaryDirectory directory;
    const std::string prefix = directory.path("pieces");
    CapturedOutput output;
    dt.constraintMgr().writeConstraints(prefix, 7);
    EXPECT_EQ(output.stop(),
              "\n      ConstraintMgr::writeConstraints(), INFO: writes 2 child segments to " + prefix + "_c7.con\n\n");
    std::ifstream file(prefix + "_c7.con");
    double sum = 0.0;
    int numLines = 0;
    for (double x0, y0, x1, y1; file >> x0 >> y0 >> x1 >> y1; ++numLines)
        sum += x0 == x || x1 == x ? 1.0 : 0.0;
    EXPECT_EQ(numLines, 2);
    EXPECT_EQ(sum, 1.0);
}
