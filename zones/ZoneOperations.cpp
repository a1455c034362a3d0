// The boolean operations on zones.
#include "Zone2.h"

#include "core/Dt2.h"
#include "core/Guarded.h"
#include "output/Message.h"

namespace ZELK_QUOR2D
{

namespace
{

Zone2* createResultZone(Zone2* pZone0, Zone2* pZone1, ZoneLocation kind, const char* where)
{
    if (!pZone0 || !pZone1) {
        reportError(where, "A zone is NULL! Returning NULL");
        return nullptr;
    }
    if (pZone0->getDelaunayTriangulation() != pZone1->getDelaunayTriangulation()) {
        reportError(where, "The zones must belong to the same triangulation! Returning NULL");
        return nullptr;
    }
    return guarded([&] { return pZone0->getDelaunayTriangulation()->createResultZone(pZone0, pZone1, kind); });
}

} // namespace

Zone2* zoneUnion(Zone2* pZone0, Zone2* pZone1)
{
    return createResultZone(pZone0, pZone1, ZL_RESULT_UNION, "Zone2::zoneUnion(...)");
}

// Deliberate: the place of the other three names the first one, too.

Zone2* zoneIntersection(Zone2* pZone0, Zone2* pZone1)
{
    return createResultZone(pZone0, pZone1, ZL_RESULT_INTERSECTION, "zoneUnion(...)");
}

Zone2* zoneDifference(Zone2* pZone0, Zone2* pZone1)
{
    return createResultZone(pZone0, pZone1, ZL_RESULT_DIFFERENCE, "zoneUnion(...)");
}

Zone2* zoneSymmetricDifference(Zone2* pZone0, Zone2* pZone1)
{
    return createResultZone(pZone0, pZone1, ZL_RESULT_SYM_DIFFERENCE, "zoneUnion(...)");
}

} // namespace ZELK_QUOR2D
