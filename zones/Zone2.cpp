#include "Zone2.h"

#include "ConstraintGraph2.h"
#include "Point2.h"
#include "Triangle2.h"
#include "core/Dt2.h"
#include "core/Guarded.h"
#include "output/Message.h"
#include "zones/ZoneEvaluation.h"
#include "zones/ZoneFill.h"

#include <cstdlib>
#include <iostream>

namespace ZELK_QUOR2D
{

Zone2::Zone2(Dt2* pTriangulation, ZoneLocation location) : pDt(pTriangulation), zoneLoc(location)
{
    QUOR2D_ASSERT(zoneLoc == ZL_GLOBAL || isResult(),
                  "zoneLoc==ZL_GLOBAL || zoneLoc==ZL_RESULT_UNION || zoneLoc==ZL_RESULT_INTERSECTION || "
                  "zoneLoc==ZL_RESULT_DIFFERENCE || zoneLoc==ZL_RESULT_SYM_DIFFERENCE");
}

Zone2::Zone2(Dt2* pTriangulation, ZoneLocation location, ConstraintGraph2* pGraph)
    : pDt(pTriangulation), zoneLoc(location), vConstraintGraphs(1, pGraph)
{
    const bool bSide = zoneLoc == ZL_INSIDE || zoneLoc == ZL_OUTSIDE;
    if (bSide && pGraph && pGraph->isPolygon())
        return;
    if (bSide) {
        reportError("Zone2::Zone2(..)", "The ConstraintGraph does not describe a closed polygon!");
    } else {
        std::cout << "zoneLoc=" << static_cast<int>(zoneLoc) << std::endl;
        reportError("Zone2::Zone2(..)",
                    "If a ConstraintGraph is given, the ZoneLocation can only be ZL_INSIDE or ZL_OUTSIDE!");
    }
    QUOR2D_ASSERT(false, "false");
    std::exit(1);
}

Zone2::Zone2(Dt2* pTriangulation, const std::vector<ConstraintGraph2*>& vGraphs, ZoneLocation location, double x,
             double y)
    : pDt(pTriangulation), zoneLoc(location), vConstraintGraphs(vGraphs), startX(x), startY(y)
{
    QUOR2D_ASSERT(zoneLoc == ZL_GROW, "zoneLoc==ZL_GROW");
}

ConstraintGraph2* Zone2::getConstraintGraph() const
{
    if (vConstraintGraphs.size() > 1) {
        reportWarning("Zone2::getConstraintGraph()",
                      "There is more than one constraint graph, you must use Zone2::getConstraintGraphs() instead. "
                      "Returning NULL");
        return nullptr;
    }
    return vConstraintGraphs.empty() ? nullptr : vConstraintGraphs.front();
}

void Zone2::getConstraintGraphs(std::vector<ConstraintGraph2*>& vGraphs) const
{
    guarded([&] { vGraphs = vConstraintGraphs; });
}

void Zone2::getTriangles(std::vector<Triangle2*>& vTriangles) const
{
    vTriangles.clear();
    if (!pDt->is2D()) {
        reportWarning("Zone2::getTriangles()", "is2D() is false, nothing to return");
        return;
    }
    guarded([&] {
        if (isResult())
            ZoneEvaluation(this).deliver(vTriangles);
        else
            collectTriangles(vTriangles);
    });
}

// For every kind but the results. The vector is empty.
void Zone2::collectTriangles(std::vector<Triangle2*>& vTriangles) const
{
    switch (zoneLoc) {
    case ZL_GLOBAL:
        vTriangles.reserve(pDt->numLiveTriangles());
        pDt->forEachTriangleByAddress([&vTriangles](Triangle2* pT) { vTriangles.push_back(pT); });
        return;
    case ZL_INSIDE:
    case ZL_OUTSIDE:
        collectSides(vTriangles);
        return;
    case ZL_GROW:
        pDt->growZoneArea(Point2(startX, startY), vConstraintGraphs, vTriangles);
        return;
    default:
        reportError("Zone2::getTriangles", "Unexpected value");
        std::exit(1);
    }
}

// Every segment of the polygon gives a seed: the outside has a part for each pocket between polygon and hull, and
// other constraints may divide the inside, though they do not bound it.
void Zone2::collectSides(std::vector<Triangle2*>& vTriangles) const
{
    QUOR2D_ASSERT(vConstraintGraphs.size() == 1, "vConstraintGraphs.size()==1");
    std::vector<Point2*> vPolygon;
    vConstraintGraphs.front()->getPolygonVertices(vPolygon);
    ZoneFill fill(*pDt);
    bool bApplied = false; // some segment is an edge of the mesh
    for (std::size_t i = 0; i < vPolygon.size(); ++i) {
        const Point2* const p0 = vPolygon[i];
        const Point2* const p1 = vPolygon[i + 1 < vPolygon.size() ? i + 1 : 0];
        Triangle2* const pSeed = zoneLoc == ZL_INSIDE ? fill.addBorder(p0, p1) : fill.addBorder(p1, p0);
        bApplied = bApplied || pSeed || pDt->findTriangleLeftOf(p0, p1);
        fill.addSeed(pSeed);
    }
    if (!fill.hasSeeds()) {
        reportError("Zone2::getTriangles()", "vWorkspace.empty() - one possible reason is that you have not called "
                                             "Quor_2D::applyConstraintsAndZones()");
        // Nothing lies outside of a polygon that is the hull: that is no fault.
        QUOR2D_ASSERT(bApplied, "!vWorkspace.empty()");
    }
    fill.deliver(vTriangles);
}

} // namespace ZELK_QUOR2D
