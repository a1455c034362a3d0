#include "ConstraintGraph2.h"
#include "ConstraintSegment2.h"
#include "Segment2.h"
#include "constraints/ConstraintMgr.h"
#include "core/Dt2.h"
#include "core/IncidentTriangles.h"
#include "output/Message.h"

#include <algorithm>

namespace ZELK_QUOR2D
{

// ---- requests

ConstraintGraph2* Dt2::createConstraint(const std::vector<Segment2>& vSegments, ConstraintInsertionStrategy cis)
{
    if (vSegments.empty()) {
        reportWarning("Dt2::createConstraint(..)", "vSegments is empty, returning NULL");
        return nullptr;
    }
    return constraintMgr().createConstraint(vSegments, cis);
}

// Removal may have left collinear vertices without triangles.
void Dt2::applyConstraintsAndZones()
{
    if (!fullDimensional || !hasTriangles()) {
        reportWarning("Dt2::applyConstraintsAndZones()",
                      "The triangulation is not full dimensional yet. Nothing to do");
        return;
    }
    if (bHasConstraints)
        constraintMgr().apply();
}

// ---- queries

ConstraintSegment2* Dt2::findConstraintSegment(const Point2* p0, const Point2* p1) const
{
    return pConstraintMgr ? pConstraintMgr->findSegment(p0, p1) : nullptr;
}

void Dt2::prefetchConstraintSlots(const Triangle2* pT) const
{
    for (int i = 0; i < 3; ++i)
        if (pConstraintMgr && mayBeConstraint(pT, i))
            pConstraintMgr->prefetchSegment(pT->getCorner(next(i)), pT->getCorner(prev(i)));
}

bool Dt2::isConstraint(const Point2* p0, const Point2* p1) const
{
    return findConstraintSegment(p0, p1) != nullptr;
}

bool Dt2::isConstraint(const Triangle2* pT, int ith) const
{
    QUOR2D_ASSERT(ith >= 0 && ith < 3, "num>=0 && num<3");
    if (!pT || ith < 0 || ith > 2 || !bHasConstraints || !pT->getCorner(0))
        return false;
    return mayBeConstraint(pT, ith) && isConstraint(pT->getCorner(next(ith)), pT->getCorner(prev(ith)));
}

// ---- the manager

ConstraintMgr& Dt2::constraintMgr()
{
    if (!pConstraintMgr)
        pConstraintMgr = new ConstraintMgr(this);
    return *pConstraintMgr;
}

void Dt2::destroyConstraints()
{
    delete pConstraintMgr;
    pConstraintMgr = nullptr;
}

// ---- edges that stay

bool Dt2::isLockedSegment(const Triangle2* pT, int ith) const
{
    ConstraintSegment2* const pCSeg = findConstraintSegment(pT->getCorner(next(ith)), pT->getCorner(prev(ith)));
    if (!pCSeg)
        return false;
    if (isLocked(pCSeg))
        return true;
    pConstraintMgr->noteInDanger(pCSeg);
    return false;
}

bool Dt2::isLocked(const ConstraintSegment2* pCSeg) const
{
    return pCSeg != pReleasedSegment && (bLockConformingEdges || pCSeg->getCIS() == CIS_CONSTRAINED_DELAUNAY);
}

// Whether a constraint forbids to flip edge 0 of a triangle that has the newest vertex at corner 0. A vertex on the
// edge itself makes the triangle flat: this must be flipped away, and the segment splits there.
bool Dt2::isKeptByConstraint(const Triangle2* pT)
{
    ConstraintSegment2* const pCSeg = findConstraintSegment(pT->getCorner(1), pT->getCorner(2));
    if (!pCSeg || pCSeg == pReleasedSegment)
        return false;
    if (predicates.getOrientation2(pT->getCorner(0), pT->getCorner(1), pT->getCorner(2)) == ORI2_ZERO) {
        pSegmentUnderVertex = pCSeg;
        return false;
    }
    if (isLocked(pCSeg))
        return true;
    pConstraintMgr->noteInDanger(pCSeg);
    return false;
}

void Dt2::splitSegmentUnder(Point2* pVtx)
{
    ConstraintSegment2* const pCSeg = pSegmentUnderVertex;
    pSegmentUnderVertex = nullptr;
    if (!pCSeg->split(pVtx))
        return;
    pConstraintMgr->notePiecesInDanger(pCSeg);
    restoreUnlocked(pCSeg);
}

} // namespace ZELK_QUOR2D
