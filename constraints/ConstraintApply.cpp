#include "constraints/ConstraintMgr.h"
#include "core/Dt2.h"
#include "output/Message.h"

#include <algorithm>
#include <utility>

namespace ZELK_QUOR2D
{

// Passes over the segments that are not known to be edges. A pass may knock out an edge that an earlier one made:
// those that are known to be in danger are looked at again first, and at the end all alive segments are.
//
// Ends: a piece that is visited becomes an edge, is given up, or is split. Every split replaces a segment by two that
// are shorter: the split point is none of its ends and lies in its box, or hardly beyond (see BesideTest). There are
// finitely many lengths between doubles. A constrained edge stays until it is split; a conforming one that is knocked
// out is split at its next visit.
void ConstraintMgr::apply()
{
    sGivenUp.clear();
    vInDanger.clear();
    bApplying = true;
    std::vector<ConstraintSegment2*> vWork, vNext;
    collectWork(vWork);
    const std::size_t numChangesBefore = pDt2->numConstraintChanges;
    const std::size_t numSplitsBefore = numSplits;
    while (!vWork.empty()) {
        for (ConstraintSegment2* pCSeg : vWork)
            insertPending(pCSeg, vNext);
        vWork.swap(vNext);
        vNext.clear();
        if (vWork.empty())
            collectMissingOf(std::exchange(vInDanger, {}), vWork);
        // An edge goes only where the mesh has changed, and one that is constrained only through a split.
        if (vWork.empty() && pDt2->numConstraintChanges != numChangesBefore &&
            (bHasConforming || numSplits != numSplitsBefore))
            collectMissingOf(collectAlive(), vWork);
    }
    bApplying = false;
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

std::vector<ConstraintSegment2*> ConstraintMgr::collectAlive()
{
    std::vector<ConstraintSegment2*> vAlive;
    for (Node& node : nodes)
        if (node.segment.isAlive())
            vAlive.push_back(&node.segment);
    return vAlive;
}

// The alive ones among these segments that could be edges and are not.
void ConstraintMgr::collectMissingOf(const std::vector<ConstraintSegment2*>& vList,
                                     std::vector<ConstraintSegment2*>& vWork) const
{
    for (ConstraintSegment2* pCSeg : vList)
        if (pCSeg->isAlive() && isInsertable(pCSeg) && !pDt2->getAdjacentTriangle(pCSeg->getSrc(), pCSeg->getTrg()))
            vWork.push_back(pCSeg);
    sortByEnds(vWork);
    vWork.erase(std::unique(vWork.begin(), vWork.end()), vWork.end());
}

void ConstraintMgr::notePiecesInDanger(const ConstraintSegment2* pParentCSeg)
{
    ConstraintSegment2 *pCSeg0 = nullptr, *pCSeg1 = nullptr;
    Point2* pSplit = nullptr;
    pParentCSeg->getChildrenAndSplitPoint(pCSeg0, pCSeg1, pSplit);
    noteInDanger(pCSeg0);
    noteInDanger(pCSeg1);
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
