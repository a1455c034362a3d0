#include "ConstraintSegment2.h"
#include "constraints/BesideTest.h"
#include "constraints/ConstraintMgr.h"
#include "constraints/SegmentCrossing.h"
#include "core/Dt2.h"
#include "output/Message.h"

namespace ZELK_QUOR2D
{

namespace
{

// @return an end of `pOther` that lies beside `pCSeg` by no more than rounding, or null
Point2* findEndBeside(const ConstraintSegment2* pCSeg, const ConstraintSegment2* pOther)
{
    const BesideTest beside(*pCSeg->getSrc(), *pCSeg->getTrg(), BesideTest::kFewUnits);
    for (Point2* pEnd : {pOther->getSrc(), pOther->getTrg()})
        if (beside.contains(*pEnd))
            return pEnd;
    return nullptr;
}

} // namespace

// Splits two segments where they cross. A segment that ends there stays whole.
//
// Where an end of one segment lies beside the other by no more than rounding, it serves as the crossing. A new point
// would lie as near to both, and pieces almost parallel would cross again and again, a few units in the last place
// further on each time.
//
// @param pOther  is an edge of pStart
// @return whether at least one of them was split; if not, pCSeg has been given up
bool Dt2::splitAtCrossing(ConstraintSegment2* pCSeg, ConstraintSegment2* pOther, Triangle2* pStart, const char* where)
{
    reportWarning(where, "constraint segments cross, both are split");
    ++numConstraintChanges;
    Point2* pSplitThis = findEndBeside(pCSeg, pOther);
    Point2* pSplitOther = findEndBeside(pOther, pCSeg);
    if (!pSplitThis && !pSplitOther) {
        const Point2 place = crossingPoint(*pCSeg->getSrc(), *pCSeg->getTrg(), *pOther->getSrc(), *pOther->getTrg());
        pSplitThis = pSplitOther = insertReleased(pOther, place, pStart);
        if (pSplitThis == pCSeg->getSrc() || pSplitThis == pCSeg->getTrg())
            pSplitThis = nullptr;
        if (pSplitOther == pOther->getSrc() || pSplitOther == pOther->getTrg())
            pSplitOther = nullptr;
    }
    if (pSplitThis)
        pCSeg->split(pSplitThis);
    if (pSplitOther) {
        pOther->split(pSplitOther);
        constraintMgr().notePiecesInDanger(pOther);
        restoreUnlocked(pOther);
    }
    if (!pSplitThis && !pSplitOther)
        giveUp(pCSeg, where);
    return pSplitThis || pSplitOther;
}

Point2* Dt2::insertReleased(const ConstraintSegment2* pCSeg, const Point2& p, Triangle2* pStart)
{
    pReleasedSegment = pCSeg;
    Point2* const pVtx = insertAt(p, pStart);
    pReleasedSegment = nullptr;
    return pVtx;
}

// Inserts a point that lies in the box of the mesh. A vertex that stands there leaves no entry in the vault.
Point2* Dt2::insertAt(const Point2& p, Triangle2* pStart)
{
    Triangle2* pT = pStart;
    const int intState = walkToTriangle(&p, pT);
    if (intState == WALK_ON_CORNER) {
        for (int i = 0; i < 3; ++i)
            if (*pT->getCorner(i) == p)
                return pT->getCorner(i);
    }
    Point2* pVtx = newVertex(p.x(), p.y());
    insertVertex(&pVtx, pT, intState);
    pLastInserted = pVtx;
    ++numConstraintChanges;
    vertexVault.updateSortedIndex(true);
    return pVtx;
}

void Dt2::finishSplit(const ConstraintSegment2* pParentCSeg)
{
    restoreUnlocked(pParentCSeg);
    ConstraintSegment2 *pCSeg0 = nullptr, *pCSeg1 = nullptr;
    Point2* pSplit = nullptr;
    pParentCSeg->getChildrenAndSplitPoint(pCSeg0, pCSeg1, pSplit);
    for (ConstraintSegment2* pPiece : {pCSeg0, pCSeg1})
        if (pPiece->isAlive() && pPiece->getCIS() == CIS_CONSTRAINED_DELAUNAY)
            insertConstraintSegmentIgnoreDelaunay(pPiece);
}

// A split may leave edges that nothing keeps any more, and that need not be legal: that of the segment, where the
// vertex lies beside it, and those of pieces that are conforming segments from elsewhere.
void Dt2::restoreUnlocked(const ConstraintSegment2* pParentCSeg)
{
    restoreEdge(pParentCSeg->getSrc(), pParentCSeg->getTrg());
    ConstraintSegment2 *pCSeg0 = nullptr, *pCSeg1 = nullptr;
    Point2* pSplit = nullptr;
    pParentCSeg->getChildrenAndSplitPoint(pCSeg0, pCSeg1, pSplit);
    for (const ConstraintSegment2* pPiece : {pCSeg0, pCSeg1})
        if (!isLocked(pPiece))
            restoreEdge(pPiece->getSrc(), pPiece->getTrg());
}

void Dt2::restoreEdge(Point2* p0, Point2* p1)
{
    Triangle2* const pT = getAdjacentTriangle(p0, p1);
    if (!pT)
        return;
    std::vector<Triangle2*> vWork(1, pT);
    flipToMatchCDT(vWork);
}

void Dt2::giveUp(ConstraintSegment2* pCSeg, const char* where)
{
    reportWarning(
        where, "Double precision arithmetic does not allow to split a segment further, giving up. Incorrect result!");
    constraintMgr().giveUp(pCSeg);
}

} // namespace ZELK_QUOR2D
