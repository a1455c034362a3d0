#include "constraints/ConstraintMgr.h"
#include "constraints/EdgeKey.h"
#include "constraints/SegmentTrace.h"
#include "core/Dt2.h"
#include "output/Message.h"

#include <algorithm>
#include <cstdlib>

namespace ZELK_QUOR2D
{

// Fills the hole that the triangles crossed by a segment leave, on either side of it (Anglada 1997; the scan is that
// of Toussaint and Avis 1982 for polygons that can be seen from one of their edges).
//
// A chain may run along an edge and back again, where both triangles beside that edge are crossed; such a dangling
// edge has no triangle beyond it that stays. Crossed triangles carry the mark bState, and keep their corners and
// neighbours until the hole is filled.
class Dt2::CavityFiller
{
public:
    CavityFiller(Dt2& triangulation, ConstraintScratch& scratch)
        : dt(triangulation), vNew(scratch.vNew), vStack(scratch.vEars)
    {
        vNew.clear();
    }

    // Triangulates what lies between the segment and a chain. Every vertex of the chain sees the segment along the
    // crossed edge that ends there. So wherever three vertices in a row turn towards the segment, the middle one is an
    // ear, and cutting it off leaves a chain of the same kind. Linear: each test pushes a vertex or cuts an ear.
    //
    // @param convex  the turn of an ear: negative for the left chain, positive for the right one
    // @return the triangle at the segment
    Triangle2* fillSide(const std::vector<SegmentTrace::ChainVertex>& vChain, Orientation2 convex)
    {
        QUOR2D_ASSERT(vChain.size() > 1, "lPolygon.size()>1");
        vStack.clear();
        for (SegmentTrace::ChainVertex vertex : vChain) {
            while (vStack.size() >= 2) {
                const SegmentTrace::ChainVertex ear = vStack.back();
                Point2* const pBefore = vStack[vStack.size() - 2].p;
                if (dt.predicates.getOrientation2(pBefore, ear.p, vertex.p) != convex)
                    break;
                vertex.pOuter = cutEar(pBefore, ear, vertex, convex);
                vStack.pop_back();
            }
            vStack.push_back(vertex);
        }
        if (vStack.size() != 2) {
            reportError("Dt2::treatConstraintZone()", "a cavity could not be triangulated");
            std::exit(1);
        }
        return vStack.back().pOuter;
    }

    void linkAcrossSegment(Triangle2* pLeft, Triangle2* pRight, const Point2* p0, const Point2* p1)
    {
        link(pLeft, 3 - pLeft->getIntraTriangleIndex(p0) - pLeft->getIntraTriangleIndex(p1), pRight);
    }

    void linkDanglingEdges()
    {
        std::sort(vDangling.begin(), vDangling.end(), [](const DanglingSide& a, const DanglingSide& b) {
            const std::less<const Point2*> before;
            return before(a.p0, b.p0) || (a.p0 == b.p0 && before(a.p1, b.p1));
        });
        QUOR2D_ASSERT(vDangling.size() % 2 == 0, "vDangling.size()%2==0");
        for (std::size_t i = 0; i + 1 < vDangling.size(); i += 2)
            link(vDangling[i].pT, vDangling[i].ith, vDangling[i + 1].pT);
    }

private:
    struct DanglingSide {
        const Point2* p0; // ascending addresses
        const Point2* p1;
        Triangle2* pT;
        int ith;
    };

    Triangle2* cutEar(Point2* pBefore, const SegmentTrace::ChainVertex& ear, const SegmentTrace::ChainVertex& after,
                      Orientation2 convex)
    {
        const bool bRight = convex == ORI2_POSITIVE;
        Triangle2* const pT =
            bRight ? dt.takeTriangle(pBefore, ear.p, after.p) : dt.takeTriangle(pBefore, after.p, ear.p);
        linkOuter(pT, 0, after.pOuter);
        linkOuter(pT, bRight ? 2 : 1, ear.pOuter);
        vNew.push_back(pT);
        return pT;
    }

    void linkOuter(Triangle2* pT, int ith, Triangle2* pOuter)
    {
        if (!pOuter)
            return;
        if (!pOuter->getState()) {
            link(pT, ith, pOuter);
            return;
        }
        const Point2* p0 = pT->getCorner(next(ith));
        const Point2* p1 = pT->getCorner(prev(ith));
        orderByAddress(p0, p1);
        vDangling.push_back({p0, p1, pT, ith});
    }

    // Finds the place in the neighbour by corners: its links still name crossed triangles.
    void link(Triangle2* pT, int ith, Triangle2* pOther)
    {
        pT->setOppTriangle(ith, pOther);
        pOther->setOppTriangle(prev(pOther->getIntraTriangleIndex(pT->getCorner(prev(ith)))), pT);
    }

    Dt2& dt;
    std::vector<Triangle2*>& vNew;
    std::vector<SegmentTrace::ChainVertex>& vStack; // pOuter lies beyond the edge from the entry below
    std::vector<DanglingSide> vDangling;
};

// Replaces the triangles that a segment crosses by others that have it as an edge.
void Dt2::recoverEdge(const SegmentTrace& trace)
{
    ++numConstraintChanges;
    for (Triangle2* pT : trace.vCrossed)
        pT->setState(true);
    ConstraintScratch& scratch = constraintMgr().scratch;
    CavityFiller filler(*this, scratch);
    Triangle2* const pLeft = filler.fillSide(trace.vLeft, ORI2_NEGATIVE);
    Triangle2* const pRight = filler.fillSide(trace.vRight, ORI2_POSITIVE);
    filler.linkAcrossSegment(pLeft, pRight, trace.p0, trace.p1);
    filler.linkDanglingEdges();
    for (Triangle2* pT : trace.vCrossed) {
        pT->setState(false);
        discardTriangle(pT);
    }
    flipToMatchCDT(scratch.vNew, trace.p0, trace.p1);
}

Point2* Dt2::treatConstraintZone(Point2* p0, Point2* p1)
{
    if (p0 == p1) {
        reportWarning("Dt2::treatConstraintZone()", "Degenerate segment, nothing to do");
        return nullptr;
    }
    SegmentTrace trace;
    traceSegment(p0, p1, false, trace);
    // The trace may have come from p1. Ends: every vertex lies nearer to p0 than the one before.
    Point2* pFirst = nullptr;
    while (trace.end == TRACE_VERTEX) {
        pFirst = trace.pVertex;
        traceSegment(p0, pFirst, false, trace);
    }
    if (pFirst)
        return pFirst;
    if (trace.end == TRACE_FREE)
        recoverEdge(trace);
    return nullptr;
}

// ---- restoring empty circles

// Flips at most one edge, and lists the two triangles.
template <class IsKept>
void Dt2::flipIllegalEdge(Triangle2* pT, std::vector<Triangle2*>& vChanged, const IsKept& isKept)
{
    for (int i = 0; i < 3; ++i) {
        Triangle2* const pOpp = pT->getOppositeTriangle(i);
        if (!pOpp)
            continue;
        const Point2* const pApex = pOpp->getCorner(pOpp->getIntraTriangleIndex(pT));
        const Orientation2 side = predicates.inCircleSign(pT->getCorner(0), pT->getCorner(1), pT->getCorner(2), pApex);
        if (side != ORI2_POSITIVE || isKept(pT, i))
            continue;
        if (predicates.getOrientation2(pT->getCorner(i), pT->getCorner(next(i)), pApex) != ORI2_POSITIVE ||
            predicates.getOrientation2(pT->getCorner(i), pApex, pT->getCorner(prev(i))) != ORI2_POSITIVE) {
            reportWarning("flipToMatchCDT", "Non convex flip avoided");
            continue;
        }
        flipEdge(pT, i);
        vChanged.push_back(pT);
        vChanged.push_back(pOpp);
        return;
    }
}

// Flips in passes (Lawson 1977). Decides by the plain in-circle sign: under the rule for axis-parallel rectangles both
// diagonals of such a rectangle would count as illegal. Ends: each flip makes the surface of the lifted triangles
// lower, and there are finitely many triangulations.
void Dt2::flipToMatchCDT(std::vector<Triangle2*>& vWork, const Point2* pKeep0, const Point2* pKeep1)
{
    const auto isKept = [&](const Triangle2* pT, int ith) {
        const Point2 *p = pT->getCorner(next(ith)), *q = pT->getCorner(prev(ith));
        return (p == pKeep0 && q == pKeep1) || (p == pKeep1 && q == pKeep0) || isLockedEdge(pT, ith);
    };
    std::vector<Triangle2*>& vChanged = constraintMgr().scratch.vChanged;
    vChanged.clear();
    while (!vWork.empty()) {
        for (Triangle2* pT : vWork)
            flipIllegalEdge(pT, vChanged, isKept);
        vWork.swap(vChanged);
        vChanged.clear();
    }
}

} // namespace ZELK_QUOR2D
