#include "constraints/ConstraintMgr.h"
#include "core/Dt2.h"
#include "output/Message.h"

#include <algorithm>

namespace ZELK_QUOR2D
{

// Passes over the segments that are not known to be edges. A pass may knock out an edge that an earlier one made, so
// at the end all alive segments are looked at again.
//
// Ends: a piece that is visited becomes an edge, is given up, or is split. Every split replaces a segment by two that
// are shorter: the split point is none of its ends and lies in its box, or hardly beyond (see BesideTest). There are
// finitely many lengths between doubles. A constrained edge stays until it is split; a conforming one that is knocked
// out is split at its next visit.
void ConstraintMgr::apply()
{
    sGivenUp.clear();
    std::vector<ConstraintSegment2*> vWork, vNext;
    collectWork(vWork);
    const std::size_t numChangesBefore = pDt2->numConstraintChanges;
    const std::size_t numSplitsBefore = numSplits;
    while (!vWork.empty()) {
        for (ConstraintSegment2* pCSeg : vWork)
            insertPending(pCSeg, vNext);
        vWork.swap(vNext);
        vNext.clear();
        // An edge goes only where the mesh has changed, and one that is constrained only through a split.
        if (vWork.empty() && pDt2->numConstraintChanges != numChangesBefore &&
            (bHasConforming || numSplits != numSplitsBefore))
            collectMissing(vWork);
    }
    sGivenUp.clear();
}

// All alive segments, in the order of the addresses of their ends.
void ConstraintMgr::collectWork(std::vector<ConstraintSegment2*>& vWork) const
{
    std::vector<ConstraintSegment2*> vLive;
    getLiveSegments(vLive);
    for (ConstraintSegment2* pCSeg : vLive) {
        if (pCSeg->isAlive()) {
            vWork.push_back(pCSeg);
            continue;
        }
        reportError("ConstraintMgr::apply()", " BUG");
        QUOR2D_ASSERT(pCSeg->isAlive(), "pCSeg->isAlive()");
        pCSeg->getChildrenRec(vWork);
    }
}

// All alive segments that could be edges and are not.
void ConstraintMgr::collectMissing(std::vector<ConstraintSegment2*>& vWork) const
{
    segmentIndex.forEach([&](ConstraintSegment2* pCSeg) {
        if (isInsertable(pCSeg) && !pDt2->getAdjacentTriangle(pCSeg->getSrc(), pCSeg->getTrg()))
            vWork.push_back(pCSeg);
    });
    sortByEnds(vWork);
}

bool ConstraintMgr::isInsertable(const ConstraintSegment2* pCSeg) const
{
    return pCSeg->getSrc()->getIncidentTriangle() && pCSeg->getTrg()->getIncidentTriangle() &&
           (sGivenUp.empty() || sGivenUp.count(pCSeg) == 0);
}

void ConstraintMgr::insertPending(ConstraintSegment2* pCSeg, std::vector<ConstraintSegment2*>& vNext)
{
    if (!pCSeg->isAlive()) { // split meanwhile, where another segment crossed it or a vertex came to lie on it
        pCSeg->getChildrenRec(vNext);
        return;
    }
    if (!isInsertable(pCSeg))
        return;
    switch (pCSeg->getCIS()) {
    case CIS_CONFORMING_DELAUNAY:
        pDt2->insertConstraintSegmentKeepDelaunay(pCSeg);
        break;
    case CIS_CONSTRAINED_DELAUNAY:
        pDt2->insertConstraintSegmentIgnoreDelaunay(pCSeg);
        break;
    default:
        reportError("ConstraintMgr::apply()", "Unknown CIS");
        QUOR2D_ASSERT(false, "false");
        giveUp(pCSeg);
    }
    if (!pCSeg->isAlive())
        pCSeg->getChildrenRec(vNext);
}

} // namespace ZELK_QUOR2D
