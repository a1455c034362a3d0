// The part of the triangulation that makes, keeps and grows zones.
#include "core/Dt2.h"

#include "ConstraintGraph2.h"
#include "Zone2.h"
#include "output/Message.h"
#include "zones/ZoneFill.h"

namespace ZELK_QUOR2D
{

Zone2* Dt2::createZone(ConstraintGraph2* pConstraintGraph, ZoneLocation zoneLoc)
{
    if (!hasTriangles()) {
        reportWarning("Dt2::createZone", "called on a triangulation which has no triangles yet. Returning NULL");
        return nullptr;
    }
    if (pConstraintGraph) {
        if (!pConstraintGraph->isPolygon()) {
            reportWarning("Dt2::createZone()", "This constraint is not a closed polyhedron, returning NULL");
            return nullptr;
        }
        if (isForeign(pConstraintGraph))
            return nullptr;
        return keepZone(new Zone2(this, zoneLoc, pConstraintGraph));
    }
    if (zoneLoc != ZL_GLOBAL && (zoneLoc < ZL_RESULT_UNION || zoneLoc > ZL_RESULT_SYM_DIFFERENCE)) {
        // Deliberate: the place differs from the others.
        reportError("Dt::createZone()",
                    "pConstraintGraph==NULL, but zoneLoc!=ZL_GLOBAL and zoneLoc!=ZL_RESULT. Returning NULL");
        return nullptr;
    }
    return keepZone(new Zone2(this, zoneLoc));
}

Zone2* Dt2::createZone(ConstraintGraph2* pConstraintGraph, ZoneLocation zoneLoc, const Point2& startPoint)
{
    return createZone(std::vector<ConstraintGraph2*>(1, pConstraintGraph), zoneLoc, startPoint);
}

Zone2* Dt2::createZone(const std::vector<ConstraintGraph2*>& vConstraintGraphs, ZoneLocation zoneLoc,
                       const Point2& startPoint)
{
    if (zoneLoc != ZL_GROW) {
        reportError("Dt2::createZone()",
                    "This overloaded version of createZone accepts only ZL_GROW as zoneLocation. Returning NULL");
        return nullptr;
    }
    for (const ConstraintGraph2* pGraph : vConstraintGraphs)
        if (pGraph && isForeign(pGraph))
            return nullptr;
    return keepZone(new Zone2(this, vConstraintGraphs, zoneLoc, startPoint.x(), startPoint.y()));
}

Zone2* Dt2::createResultZone(Zone2* pZone0, Zone2* pZone1, ZoneLocation kind)
{
    Zone2* const pZone = createZone(nullptr, kind);
    if (pZone) {
        pZone->pInputZone0 = pZone0;
        pZone->pInputZone1 = pZone1;
    }
    return pZone;
}

Zone2* Dt2::keepZone(Zone2* pZone)
{
    sZones.insert(pZone);
    return pZone;
}

bool Dt2::isForeign(const ConstraintGraph2* pGraph) const
{
    if (pGraph->getDelaunayTriangulation() == this)
        return false;
    reportError("Dt2::createZone()", "This constraint graph belongs to another triangulation. Returning NULL");
    return true;
}

// The pointer is only compared: it may belong to a zone that is gone.
void Dt2::deleteZone(Zone2* pZone)
{
    if (sZones.erase(pZone) == 0) {
        reportWarning("Dt2::deleteZone(..)", "trying to delete a non-existing zone");
        return;
    }
    mLastRefinements.erase(pZone);
    delete pZone;
}

void Dt2::deleteZones()
{
    for (Zone2* pZone : sZones)
        delete pZone;
    sZones.clear();
}

void Dt2::growZoneArea(const Point2& startPoint, const std::vector<ConstraintGraph2*>& vConstraintGraphs,
                       std::vector<Triangle2*>& vTriangles)
{
    vTriangles.clear();
    if (!hasTriangles())
        return;
    Triangle2* const pStart = locate(startPoint);
    if (!pStart) {
        reportWarning("growZoneArea()", "pVtx is outside the convex hull of the triangulation, no triangles returned");
        return;
    }
    ZoneFill fill(*this);
    for (const ConstraintGraph2* pGraph : vConstraintGraphs)
        if (pGraph)
            fill.addBorders(*pGraph);
    fill.addSeed(pStart);
    fill.deliver(vTriangles);
}

} // namespace ZELK_QUOR2D
