#include "zones/ZoneFill.h"

#include "ConstraintGraph2.h"
#include "ConstraintSegment2.h"
#include "Triangle2.h"
#include "core/Dt2.h"
#include "core/Prefetch.h"
#include "core/TriangleMarks.h"
#include "geometry/TriangleIndex.h"

#include <algorithm>
#include <functional>

namespace ZELK_QUOR2D
{

namespace
{

// A zone that is at least this part of the triangulation is put in order by a look at all triangles.
constexpr std::size_t kSweepFraction = 16;

constexpr std::size_t kPrefetchDistance = 8;

} // namespace

ZoneFill::~ZoneFill()
{
    clearBorders();
}

Triangle2* ZoneFill::addBorder(const Point2* p0, const Point2* p1)
{
    Triangle2* const pT = dt.findTriangleLeftOf(p0, p1);
    if (!pT)
        return nullptr;
    pT->marks = static_cast<unsigned char>(pT->marks | TM_BORDER << prev(pT->getIntraTriangleIndex(p0)));
    vAtBorder.push_back(pT);
    return pT;
}

void ZoneFill::addBorders(const ConstraintGraph2& graph)
{
    std::vector<ConstraintSegment2*> vAlive;
    graph.getAliveSegments(vAlive);
    for (const ConstraintSegment2* pCSeg : vAlive) {
        addBorder(pCSeg->getSrc(), pCSeg->getTrg());
        addBorder(pCSeg->getTrg(), pCSeg->getSrc());
    }
}

void ZoneFill::clearBorders()
{
    constexpr unsigned int kAllEdges = TM_BORDER | TM_BORDER << 1 | TM_BORDER << 2;
    for (Triangle2* pT : vAtBorder)
        pT->marks = static_cast<unsigned char>(pT->marks & ~kAllEdges);
    vAtBorder.clear();
}

void ZoneFill::addSeed(Triangle2* pT)
{
    if (!pT || pT->getState())
        return;
    pT->setState(true);
    vFound.push_back(pT);
}

// In the order of finding, so that what is looked at so many turns later can be fetched ahead. Ends: a triangle is
// found once.
void ZoneFill::spread()
{
    for (std::size_t k = 0; k < vFound.size(); ++k) {
        if (k + kPrefetchDistance < vFound.size())
            for (int i = 0; i < 3; ++i)
                prefetchWhole(vFound[k + kPrefetchDistance]->getOppositeTriangle(i));
        const Triangle2* const pCurrentT = vFound[k];
        QUOR2D_ASSERT(pCurrentT != nullptr, "pCurrentT!=NULL");
        for (int i = 0; i < 3; ++i) {
            Triangle2* const pOpp = pCurrentT->getOppositeTriangle(i);
            if (pOpp && !(pCurrentT->marks & TM_BORDER << i))
                addSeed(pOpp);
        }
    }
}

void ZoneFill::deliver(std::vector<Triangle2*>& vTriangles)
{
    spread();
    clearBorders();
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
