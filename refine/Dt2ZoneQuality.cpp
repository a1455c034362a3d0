// The part of the triangulation that explains how good the triangles of a zone are.
#include "core/Dt2.h"

#include "Zone2.h"
#include "output/Message.h"
#include "refine/RefineParams.h"
#include "refine/RefineZone.h"
#include "refine/ZoneQuality.h"

namespace ZELK_QUOR2D
{

void Dt2::checkZoneQuality(Zone2* pZone, double minAngleDegree, double maxEdgeLength, const std::string& zoneName)
{
    if (!pZone || !hasZone(pZone)) {
        reportWarning("Quor_2D::checkZoneQuality()", "the zone does not belong to this triangulation, nothing to do");
        return;
    }
    std::vector<Triangle2*> vTriangles;
    pZone->getTriangles(vTriangles);
    if (vTriangles.empty()) {
        reportWarning("Quor_2D::checkZoneQuality()", "the zone is empty, nothing to do");
        return;
    }
    const auto it = mLastRefinements.find(pZone);
    const bool bRefined = it != mLastRefinements.end();
    RefineParams params(this, pZone, minAngleDegree, bRefined ? it->second.minEdgeLength : 0.0, maxEdgeLength,
                        !bRefined || it->second.bAllowConstraintSplitting);
    params.edgeFloor = params.minEdgeLength;
    RefineZone zoneTriangles(*this, params);
    zoneTriangles.assign(vTriangles);
    ZoneQuality quality(*this, params);
    quality.measure(vTriangles);
    quality.report(zoneName);
    quality.draw(zoneName);
}

} // namespace ZELK_QUOR2D
