#include "tests/zones/ZoneTestSupport.h"

#include <limits>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

const char kNoSeed[] =
    "vWorkspace.empty() - one possible reason is that you have not called Quor_2D::applyConstraintsAndZones()";

Polygon comb(int numTeeth)
{
    Polygon polygon{Point2(0, 0), Point2(2 * numTeeth, 0)};
    for (int i = numTeeth; i > 0; --i) {
        polygon.emplace_back(2 * i, 5);
        polygon.emplace_back(2 * i - 1, 1);
    }
    polygon.emplace_back(0, 5);
    return polygon;
}

} // namespace

// Faults: leaks through the border, pockets between polygon and hull that get no seed (any odd or even number of
// vertices), other graphs that block.
TEST(Zone, InsideAndOutsideAreWhatAnOddNumberOfCrossingsSays)
{
    for (const Polygon& polygon : {starPolygon(7, 0.6, 1), starPolygon(60, 0.5, 2), starPolygon(301, 0.7, 3), comb(4)})
        for (const ConstraintInsertionStrategy cis : {CIS_CONSTRAINED_DELAUNAY, CIS_CONFORMING_DELAUNAY}) {
            Quor_2D dt;
            std::vector<Point2> vPoints;
            for (const Point2& p : uniformPoints(500, 9))
                vPoints.emplace_back(10 * p.x() - 3, 10 * p.y() - 3);
            dt.insert(vPoints);
            ConstraintGraph2* pGraph = addRing(dt, polygon, cis);
            addRing(dt, box(-0.3, -0.4, 0.3, 0.2)); // inside: does not bound the zone
            addRing(dt, box(-2.9, -2.9, -2, -2));   // outside: neither
            ASSERT_TRUE(pGraph->isPolygon());
            const Zone2* pInside = dt.createZone(pGraph, ZL_INSIDE);
            const Zone2* pOutside = dt.createZone(pGraph, ZL_OUTSIDE);
            dt.applyConstraintsAndZones();
            const auto inPolygon = [&](const Point2& p) { return isInside(polygon, p); };
            EXPECT_EQ(trianglesOf(pInside), select(dt, inPolygon));
            EXPECT_EQ(trianglesOf(pOutside), select(dt, [&](const Point2& p) { return !inPolygon(p); }));
        }
}

// Fault: a zone that remembers triangles, or marks left behind by an earlier call.
TEST(Zone, FollowsLaterInsertions)
{
    Quor_2D dt;
    const Polygon polygon = starPolygon(40, 0.4, 5);
    const Zone2* pInside = dt.createZone(addRing(dt, polygon), ZL_INSIDE);
    dt.applyConstraintsAndZones();
    const auto inPolygon = [&](const Point2& p) { return isInside(polygon, p); };
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(trianglesOf(pInside), select(dt, inPolygon));
        dt.insert(uniformPoints(50, 10 + static_cast<std::uint64_t>(round)));
        dt.applyConstraintsAndZones();
    }
    dt.insert(uniformPoints(2000, 99)); // now the zone is a small part of the mesh as well as a large one
    dt.insert(Point2(100, 100));
    EXPECT_EQ(trianglesOf(pInside), select(dt, inPolygon));
}

TEST(Zone, OutsideOfTheHullIsReportedAndEmpty)
{
    Quor_2D dt;
    ConstraintGraph2* pGraph = addRing(dt, box(0, 0, 1, 1));
    const Zone2* pInside = dt.createZone(pGraph, ZL_INSIDE);
    const Zone2* pOutside = dt.createZone(pGraph, ZL_OUTSIDE);
    dt.applyConstraintsAndZones();
    EXPECT_EQ(trianglesOf(pInside).size(), 2u);
    Triangles vTriangles(1, nullptr);
    EXPECT_EQ(outputOf([&] { pOutside->getTriangles(vTriangles); }),
              message("Zone2::getTriangles()", "ERROR", kNoSeed));
    EXPECT_TRUE(vTriangles.empty());
}

TEST(Zone, AskedBeforeConstraintsAreAppliedIsReported)
{
    Quor_2D dt;
    dt.insert(gridPoints(11, 11, 0.1)); // between the corners of the square
    const Zone2* pInside = dt.createZone(addRing(dt, box(0, 0, 1, 1)), ZL_INSIDE);
    Triangles vTriangles;
#ifdef NDEBUG
    EXPECT_EQ(outputOf([&] { pInside->getTriangles(vTriangles); }), message("Zone2::getTriangles()", "ERROR", kNoSeed));
#else
    EXPECT_DEATH(pInside->getTriangles(vTriangles), "!vWorkspace.empty\\(\\)");
#endif
}

TEST(Zone, GrowthStartsAnywhereInTheHullAndStopsAtItsOwnGraphsOnly)
{
    Quor_2D dt;
    dt.insert(gridPoints(11, 11, 0.1));
    ConstraintGraph2* pRing = addRing(dt, box(0.2, 0.2, 0.6, 0.6));
    std::vector<Segment2> vWall{Segment2(Point2(0.4, 0.2), Point2(0.4, 0.6))};
    ConstraintGraph2* pWall = dt.createConstraint(vWall, CIS_CONSTRAINED_DELAUNAY);
    dt.applyConstraintsAndZones();
    const auto inBox = [](double x0, double x1) {
        return [=](const Point2& p) { return p.x() > x0 && p.x() < x1 && p.y() > 0.2 && p.y() < 0.6; };
    };
    const auto all = [](const Point2&) { return true; };
    const auto grow = [&](const std::vector<ConstraintGraph2*>& vGraphs, const Point2& start) {
        return trianglesOf(dt.createZone(vGraphs, ZL_GROW, start));
    };
    const Point2 inLeft(0.25, 0.33);
    EXPECT_EQ(grow({pRing, nullptr, pWall}, inLeft), select(dt, inBox(0.2, 0.4)));
    EXPECT_EQ(grow({pRing}, inLeft), select(dt, inBox(0.2, 0.6)));
    EXPECT_EQ(trianglesOf(dt.createZone(pRing, ZL_GROW, inLeft)), select(dt, inBox(0.2, 0.6)));
    EXPECT_EQ(grow({pWall}, inLeft), select(dt, all));
    EXPECT_EQ(grow({nullptr}, inLeft), select(dt, all));
    EXPECT_EQ(trianglesOf(dt.createZone(static_cast<ConstraintGraph2*>(nullptr), ZL_GROW, inLeft)), select(dt, all));

    // On a vertex, on an edge, on a wall, on the border: one of the regions there.
    EXPECT_EQ(grow({pRing}, Point2(0.5, 0.5)), select(dt, inBox(0.2, 0.6)));
    EXPECT_EQ(grow({pRing}, Point2(0.5, 0.45)), select(dt, inBox(0.2, 0.6)));
    for (const Point2& start : {Point2(0.4, 0.3), Point2(0.4, 0.35)}) {
        const Triangles vRegion = grow({pRing, pWall}, start);
        EXPECT_TRUE(vRegion == select(dt, inBox(0.2, 0.4)) || vRegion == select(dt, inBox(0.4, 0.6)));
    }
    for (const Point2& start : {Point2(0, 0), Point2(0.05, 0), Point2(1, 0.5)})
        EXPECT_EQ(grow({}, start), select(dt, all));

    for (const Point2& start : {Point2(2, 2), Point2(std::numeric_limits<double>::quiet_NaN(), 0)}) {
        const Zone2* pZone = dt.createZone(std::vector<ConstraintGraph2*>(), ZL_GROW, start);
        EXPECT_EQ(outputOf([&] { EXPECT_TRUE(trianglesOf(pZone).empty()); }),
                  message("growZoneArea()", "WARNING",
                          "pVtx is outside the convex hull of the triangulation, no triangles returned"));
    }
}

TEST(Zone, RefusesWhatHasNoMeaning)
{
    Quor_2D dt, other;
    Zone2* pZone = nullptr;
    EXPECT_EQ(
        outputOf([&] { pZone = dt.createZone(nullptr, ZL_GLOBAL); }),
        message("Dt2::createZone", "WARNING", "called on a triangulation which has no triangles yet. Returning NULL"));
    EXPECT_EQ(pZone, nullptr);
    const Zone2* pEarly = dt.createZone(std::vector<ConstraintGraph2*>(), ZL_GROW, Point2(0, 0));
    ASSERT_NE(pEarly, nullptr);
    EXPECT_EQ(outputOf([&] { EXPECT_TRUE(trianglesOf(pEarly).empty()); }),
              message("Zone2::getTriangles()", "WARNING", "is2D() is false, nothing to return"));

    ConstraintGraph2* pRing = addRing(dt, box(0, 0, 1, 1));
    ConstraintGraph2* pForeign = addRing(other, box(0, 0, 1, 1));
    std::vector<Segment2> vOpen{Segment2(Point2(0, 0), Point2(1, 1))};
    ConstraintGraph2* pOpen = dt.createConstraint(vOpen, CIS_CONSTRAINED_DELAUNAY);
    const auto expectRefused = [&](const std::string& text, auto create) {
        EXPECT_EQ(outputOf([&] { EXPECT_EQ(create(), nullptr); }), text);
    };
    expectRefused(message("Dt2::createZone()", "WARNING", "This constraint is not a closed polyhedron, returning NULL"),
                  [&] { return dt.createZone(pOpen, ZL_INSIDE); });
    for (const ZoneLocation location : {ZL_INSIDE, ZL_OUTSIDE, ZL_GROW})
        expectRefused(message("Dt::createZone()", "ERROR",
                              "pConstraintGraph==NULL, but zoneLoc!=ZL_GLOBAL and zoneLoc!=ZL_RESULT. Returning NULL"),
                      [&] { return dt.createZone(nullptr, location); });
    expectRefused(message("Dt2::createZone()", "ERROR",
                          "This overloaded version of createZone accepts only ZL_GROW as zoneLocation. Returning NULL"),
                  [&] { return dt.createZone(std::vector<ConstraintGraph2*>(1, pRing), ZL_INSIDE, Point2(0, 0)); });
    const std::string foreign =
        message("Dt2::createZone()", "ERROR", "This constraint graph belongs to another triangulation. Returning NULL");
    expectRefused(foreign, [&] { return dt.createZone(pForeign, ZL_INSIDE); });
    expectRefused(foreign, [&] { return dt.createZone(pForeign, ZL_GROW, Point2(0, 0)); });
    EXPECT_EXIT(
        dt.createZone(pRing, ZL_GLOBAL), [](int status) { return status != 0; }, "");
}

TEST(Zone, KnowsItsGraphs)
{
    Quor_2D dt;
    ConstraintGraph2* pRing = addRing(dt, box(0, 0, 1, 1));
    const Zone2* pGlobal = dt.createZone(nullptr, ZL_GLOBAL);
    const Zone2* pInside = dt.createZone(pRing, ZL_INSIDE);
    const Zone2* pGrow = dt.createZone({pRing, pRing}, ZL_GROW, Point2(0.5, 0.5));
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(pGlobal->getConstraintGraph(), nullptr); }), "");
    EXPECT_EQ(pInside->getConstraintGraph(), pRing);
    EXPECT_EQ(outputOf([&] { EXPECT_EQ(pGrow->getConstraintGraph(), nullptr); }),
              message("Zone2::getConstraintGraph()", "WARNING",
                      "There is more than one constraint graph, you must use Zone2::getConstraintGraphs() instead. "
                      "Returning NULL"));
    std::vector<ConstraintGraph2*> vGraphs(5, nullptr);
    pGrow->getConstraintGraphs(vGraphs);
    EXPECT_EQ(vGraphs, (std::vector<ConstraintGraph2*>{pRing, pRing}));
    EXPECT_EQ(pGrow->numberOfConstraintGraphs(), 2u);
    EXPECT_EQ(pGrow->getZoneLocation(), ZL_GROW);
}

TEST(Zone, IsDeletedOnceAndByItsOwner)
{
    Quor_2D dt, other;
    dt.insert(gridPoints(3, 3));
    other.insert(gridPoints(3, 3));
    Zone2* pZone = dt.createZone(nullptr, ZL_GLOBAL);
    const std::string warning = message("Dt2::deleteZone(..)", "WARNING", "trying to delete a non-existing zone");
    EXPECT_EQ(outputOf([&] { other.deleteZone(pZone); }), warning);
    EXPECT_EQ(outputOf([&] { dt.deleteZone(pZone); }), "");
    EXPECT_EQ(outputOf([&] { dt.deleteZone(pZone); }), warning);
    EXPECT_EQ(outputOf([&] { dt.deleteZone(nullptr); }), warning);
}
