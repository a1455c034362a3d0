#include "zones/ZoneFill.h"

#include "ConstraintGraph2.h"
#include "Triangle2.h"
#include "core/Dt2.h"
#include "geometry/TriangleIndex.h"

#include <algorithm>
#include <functional>

namespace ZELK_QUOR2D
{

namespace
{

// A zone that is at least this part of the triangulation is put in order by a look at all triangles.
constexpr std::size_t kSweepFraction = 16;

} // namespace

ZoneFill::ZoneFill(const Dt2& triangulation, const std::vector<ConstraintGraph2*>& vGraphs) : dt(triangulation)
{
    std::vector<ConstraintSegment2*> vAlive;
    for (const ConstraintGraph2* pGraph : vGraphs) {
        if (!pGraph)
            continue;
        pGraph->getAliveSegments(vAlive);
        for (ConstraintSegment2* pCSeg : vAlive)
            boundary.insert(pCSeg);
    }
}

void ZoneFill::addSeed(Triangle2* pT)
{
    if (!pT || pT->getState())
        return;
    pT->setState(true);
    vFound.push_back(pT);
    vWorkspace.push_back(pT);
}

// Ends: a triangle enters the work list once.
void ZoneFill::spread()
{
    while (!vWorkspace.empty()) {
        Triangle2* const pCurrentT = vWorkspace.back();
        vWorkspace.pop_back();
        QUOR2D_ASSERT(pCurrentT != nullptr, "pCurrentT!=NULL");
        for (int i = 0; i < 3; ++i) {
            Triangle2* const pOpp = pCurrentT->getOppositeTriangle(i);
            if (pOpp && !pOpp->getState() &&
                !boundary.find(pCurrentT->getCorner(next(i)), pCurrentT->getCorner(prev(i))))
                addSeed(pOpp);
        }
    }
}

void ZoneFill::deliver(std::vector<Triangle2*>& vTriangles)
{
    spread();
    vTriangles.clear();
    if (vFound.size() >= dt.numLiveTriangles() / kSweepFraction) {
        vTriangles.reserve(vFound.size());
        dt.forEachTriangleByAddress([&vTriangles](Triangle2* pT) {
            if (!pT->getState())
                return;
            pT->setState(false);
            vTriangles.push_back(pT);
        });
    } else {
        for (Triangle2* pT : vFound)
            pT->setState(false);
        vTriangles.swap(vFound);
        std::sort(vTriangles.begin(), vTriangles.end(), std::less<Triangle2*>());
    }
    vFound.clear();
}

} // namespace ZELK_QUOR2D
