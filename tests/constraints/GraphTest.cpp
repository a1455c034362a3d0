#include "constraints/EdgeKey.h"
#include "core/Dt2.h"
#include "tests/constraints/Scene.h"

#include <algorithm>
#include <deque>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

std::vector<Point2> polygonOf(const ConstraintGraph2* pGraph)
{
    std::vector<Point2*> vVertices(3, nullptr); // its contents are to be replaced
    pGraph->getPolygonVertices(vVertices);
    std::vector<Point2> vPoints;
    for (const Point2* p : vVertices)
        vPoints.push_back(*p);
    return vPoints;
}

std::vector<Segment2> reversed(std::vector<Segment2> vSegments)
{
    for (Segment2& segment : vSegments)
        segment.swapSrcTrg();
    std::reverse(vSegments.begin(), vSegments.end());
    return vSegments;
}

bool isPolygon(const std::vector<Segment2>& vSegments)
{
    Quor_2D dt;
    return dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY)->isPolygon();
}

} // namespace

TEST(ConstraintGraph, PolygonRunsCounterclockwiseFromItsLowestLeftmostVertex)
{
    const std::vector<Point2> vExpected = squareCorners(0, 0, 4);
    for (std::size_t start = 0; start < 4; ++start) {
        std::vector<Point2> vCorners = vExpected;
        std::rotate(vCorners.begin(), vCorners.begin() + static_cast<std::ptrdiff_t>(start), vCorners.end());
        for (const auto& vSegments : {chain(vCorners, true), reversed(chain(vCorners, true))}) {
            Quor_2D dt;
            const ConstraintGraph2* const pGraph = dt.createConstraint(vSegments, CIS_CONFORMING_DELAUNAY);
            EXPECT_TRUE(pGraph->isPolygon());
            EXPECT_EQ(polygonOf(pGraph), vExpected);
            EXPECT_EQ(pGraph->getInsertionStrategy(), CIS_CONFORMING_DELAUNAY);
        }
    }
    // The order and the directions of the input do not matter.
    std::vector<Segment2> vShuffled = square(0, 0, 4);
    std::swap(vShuffled[0], vShuffled[2]);
    vShuffled[1].swapSrcTrg();
    Quor_2D dt;
    EXPECT_EQ(polygonOf(dt.createConstraint(vShuffled, CIS_CONSTRAINED_DELAUNAY)), vExpected);
}

TEST(ConstraintGraph, WhatIsNoPolygon)
{
    const Point2 a(0, 0), b(4, 0), c(4, 4), d(9, 9), up(0, 1), higher(0, 2);
    EXPECT_FALSE(isPolygon({Segment2(a, b), Segment2(b, a)}));
    EXPECT_FALSE(isPolygon(chain({a, b, c, d}, false)));
    EXPECT_FALSE(isPolygon({Segment2(a, b), Segment2(b, c), Segment2(c, a), Segment2(c, d)})); // at a corner
    EXPECT_FALSE(isPolygon({Segment2(a, b), Segment2(b, c), Segment2(c, a), Segment2(d, Point2(9, 5))}));
    EXPECT_FALSE(isPolygon({Segment2(a, up), Segment2(up, higher), Segment2(higher, a)}));
    EXPECT_FALSE(isPolygon({Segment2(a, higher), Segment2(a, up), Segment2(up, b), Segment2(b, higher)}));
    std::vector<Segment2> vTwoRings = square(0, 0, 1), vSecond = square(2, 0, 1);
    vTwoRings.insert(vTwoRings.end(), vSecond.begin(), vSecond.end());
    EXPECT_FALSE(isPolygon(vTwoRings));
    EXPECT_FALSE(isPolygon({Segment2(a, b), Segment2(b, c), Segment2(c, a), Segment2(a, b)}));

    const std::vector<Segment2> vInput = {Segment2(c, d), Segment2(b, a), Segment2(b, c), Segment2(a, c)};
    Quor_2D dt;
    const ConstraintGraph2* const pGraph = dt.createConstraint(vInput, CIS_CONSTRAINED_DELAUNAY);
    std::vector<ConstraintSegment2*> vOriginal(7, nullptr);
    pGraph->getOriginalConstraintSegments(vOriginal);
    ASSERT_EQ(vOriginal.size(), vInput.size());
    for (std::size_t i = 0; i < vInput.size(); ++i) {
        const Point2 src = vInput[i].getSrc(), trg = vInput[i].getTrg();
        EXPECT_TRUE((*vOriginal[i]->getSrc() == src && *vOriginal[i]->getTrg() == trg) ||
                    (*vOriginal[i]->getSrc() == trg && *vOriginal[i]->getTrg() == src));
        EXPECT_FALSE(pGraph->isReverse(vOriginal[i]));
    }
    EXPECT_EQ(polygonOf(pGraph).size(), vInput.size()); // an open chain has no order to assert
}

// The flags of pieces must be combined with the direction of their parent, at every level.
TEST(ConstraintGraph, SplitPointsStandInOrder)
{
    const std::vector<Point2> vCorners = squareCorners(0, 0, 8);
    for (const auto& vSegments : {chain(vCorners, true), reversed(chain(vCorners, true))}) {
        Quor_2D dt;
        ConstraintGraph2* const pGraph = dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY);
        dt.applyConstraintsAndZones();
        // Points on the edges split them at once; each place is reached by another sequence of halvings.
        std::vector<Point2> vExpected;
        for (int side = 0; side < 4; ++side) {
            const Point2 &p = vCorners[static_cast<std::size_t>(side)],
                         &q = vCorners[static_cast<std::size_t>((side + 1) % 4)];
            for (const int eighth : {5, 2, 7, 1, 3, 6})
                dt.insert(Point2(p.x() + (q.x() - p.x()) * eighth / 8, p.y() + (q.y() - p.y()) * eighth / 8));
            for (const int eighth : {0, 1, 2, 3, 5, 6, 7})
                vExpected.emplace_back(p.x() + (q.x() - p.x()) * eighth / 8, p.y() + (q.y() - p.y()) * eighth / 8);
        }
        EXPECT_EQ(polygonOf(pGraph), vExpected);
        EXPECT_TRUE(pGraph->isPolygon());

        std::vector<ConstraintSegment2*> vOriginal;
        pGraph->getOriginalConstraintSegments(vOriginal);
        ASSERT_EQ(vOriginal.size(), 4u);
        for (ConstraintSegment2* pCSeg : vOriginal) {
            EXPECT_FALSE(pCSeg->isAlive());
            EXPECT_FALSE(pGraph->isConstraint(pCSeg->getSrc(), pCSeg->getTrg()));
            for (ConstraintSegment2* pLeaf : leavesOf(pCSeg))
                EXPECT_TRUE(pGraph->isConstraint(pLeaf->getTrg(), pLeaf->getSrc()));
        }
        EXPECT_FALSE(pGraph->isConstraint(nullptr, vOriginal[0]->getSrc()));
        EXPECT_FALSE(pGraph->isConstraint(vOriginal[0]->getSrc(), vOriginal[0]->getSrc()));

        std::vector<ConstraintSegment2*> vAlive;
        pGraph->getAliveSegments(vAlive);
        std::vector<Point2*> vVertices;
        pGraph->getPolygonVertices(vVertices);
        ASSERT_EQ(vAlive.size(), vVertices.size());
        for (std::size_t i = 0; i < vAlive.size(); ++i) {
            const bool bReverse = pGraph->isReverse(vAlive[i]);
            EXPECT_EQ(bReverse ? vAlive[i]->getTrg() : vAlive[i]->getSrc(), vVertices[i]);
            EXPECT_EQ(bReverse ? vAlive[i]->getSrc() : vAlive[i]->getTrg(), vVertices[(i + 1) % vVertices.size()]);
        }
    }
}

// The manager learns of such segments only when they are split.
TEST(ConstraintGraph, KnowsSegmentsThatACallerMade)
{
    Dt2 dt(3);
    std::vector<Point2*> v;
    dt.insert(squareCorners(0, 0, 4), v);
    std::deque<ConstraintSegment2> segments;
    std::vector<ConstraintSegment2*> vSegments;
    for (std::size_t i = 0; i < 4; ++i) {
        Point2 *p0 = v[i], *p1 = v[(i + 1) % 4];
        orderByAddress(p0, p1);
        vSegments.push_back(&segments.emplace_back(p0, p1, CIS_CONSTRAINED_DELAUNAY));
    }
    const ConstraintGraph2 graph(&dt, vSegments, CIS_CONSTRAINED_DELAUNAY);
    EXPECT_EQ(polygonOf(&graph), squareCorners(0, 0, 4));
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_TRUE(graph.isConstraint(v[i], v[(i + 1) % 4]) && graph.isConstraint(v[(i + 1) % 4], v[i]));
    EXPECT_FALSE(graph.isConstraint(v[0], v[2]));
    EXPECT_FALSE(graph.isConstraint(v[0], nullptr));

    Point2* const pSplit = dt.insert(Point2(2, 0));
    EXPECT_TRUE(vSegments[0]->split(pSplit));
    EXPECT_FALSE(graph.isConstraint(v[0], v[1]));
    EXPECT_TRUE(graph.isConstraint(v[0], pSplit) && graph.isConstraint(pSplit, v[1]));
}
