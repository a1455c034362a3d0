#include "ConstraintSegment2.h"
#include "constraints/BesideTest.h"
#include "constraints/ConstraintMgr.h"
#include "constraints/SegmentTrace.h"
#include "core/Dt2.h"
#include "output/Message.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ZELK_QUOR2D
{

namespace
{

const char* const kConstrainedPlace = "Dt2::insertConstraintSegmentIgnoreDelaunay()";
const char* const kConformingPlace = "Dt2::insertConstraintSegmentKeepDelaunay()";

// A conforming segment that passes a vertex nearer than this, in units in the last place of the largest coordinate of
// all, is split there. To pass it for good, the pieces would have to become as short as that distance, which is about
// where halving ends; a pair of borders that almost coincide would be cut into billions of pieces before.
constexpr double kUnitsBesideConforming = 64.0;

// But not farther beside than this part of its length, so that the pieces keep its direction.
constexpr double kMostBesideConforming = 1.0 / 64.0;

double middleOf(double a, double b)
{
    const double sum = a + b;
    return std::isfinite(sum) ? sum * 0.5 : a * 0.5 + b * 0.5;
}

} // namespace

// ---- constrained

// Ends: every piece becomes an edge, is given up, or is split into shorter ones, see ConstraintMgr::apply().
void Dt2::insertConstraintSegmentIgnoreDelaunay(ConstraintSegment2* pCSeg)
{
    QUOR2D_ASSERT(pCSeg->getCIS() == CIS_CONSTRAINED_DELAUNAY, "pCSeg->getCIS()==CIS_CONSTRAINED_DELAUNAY");
    QUOR2D_ASSERT(pCSeg->isAlive(), "pCSeg->isAlive()");
    std::vector<ConstraintSegment2*>& vStack = constraintMgr().scratch.vPieces;
    vStack.assign(1, pCSeg);
    while (!vStack.empty()) {
        ConstraintSegment2* const pPiece = vStack.back();
        vStack.pop_back();
        if (!pPiece->isAlive()) {
            ConstraintSegment2 *pCSeg0 = nullptr, *pCSeg1 = nullptr;
            Point2* pSplit = nullptr;
            pPiece->getChildrenAndSplitPoint(pCSeg0, pCSeg1, pSplit);
            vStack.push_back(pCSeg1);
            vStack.push_back(pCSeg0);
        } else if (pPiece->getCIS() == CIS_CONSTRAINED_DELAUNAY) { // it may share a piece with a conforming segment
            insertPiece(pPiece);
        } else {
            constraintMgr().noteInDanger(pPiece);
        }
    }
}

// Makes a segment an edge, or splits what is in the way and puts it on the stack.
void Dt2::insertPiece(ConstraintSegment2* pCSeg)
{
    SegmentTrace& trace = constraintMgr().scratch.trace;
    std::vector<ConstraintSegment2*>& vStack = constraintMgr().scratch.vPieces;
    traceSegment(pCSeg->getSrc(), pCSeg->getTrg(), true, trace);
    switch (trace.end) {
    case TRACE_FREE:
        recoverEdge(trace);
        return;
    case TRACE_VERTEX:
        reportWarning(kConstrainedPlace, "pCSeg intersects an existing vertex");
        QUOR2D_ASSERT(trace.pVertex != pCSeg->getSrc(), "pSplit!=pCSeg->getSrc()");
        QUOR2D_ASSERT(trace.pVertex != pCSeg->getTrg(), "pSplit!=pCSeg->getTrg()");
        ++numConstraintChanges;
        pCSeg->split(trace.pVertex);
        vStack.push_back(pCSeg);
        return;
    case TRACE_CONSTRAINT:
        if (splitAtCrossing(pCSeg, trace.pConstraint, trace.pLast, kConstrainedPlace)) {
            vStack.push_back(trace.pConstraint);
            vStack.push_back(pCSeg);
        }
        return;
    default:
        return;
    }
}

// ---- conforming

// The tolerance below which a segment is not halved any more: ten units in the last place of the largest coordinate,
// that rounded up to a power of two.
double Dt2::conformingTolerance() const
{
    const double largest = std::min(predicates.maxAbsCoord, std::numeric_limits<double>::max());
    if (!(largest > 0.0))
        return 0.0;
    const int exponent = static_cast<int>(std::ceil(std::log(largest) / std::log(2.0)));
    return std::ldexp(std::numeric_limits<double>::epsilon(), exponent) * 10.0;
}

bool Dt2::isBelowTolerance(const Point2& src, const Point2& trg) const
{
    const double eps = conformingTolerance();
    return std::fabs(src.x() - trg.x()) < eps && std::fabs(src.y() - trg.y()) < eps;
}

// A vertex on the segment comes first wherever it is: the pieces of a segment halved before would pass beside it, at a
// distance that no halving makes good.
void Dt2::insertConstraintSegmentKeepDelaunay(ConstraintSegment2* pCSeg)
{
    QUOR2D_ASSERT(pCSeg->getCIS() == CIS_CONFORMING_DELAUNAY, "pCSeg->getCIS()==CIS_CONFORMING_DELAUNAY");
    QUOR2D_ASSERT(pCSeg->isAlive(), "pCSeg->isAlive()");
    Point2* const src = pCSeg->getSrc();
    Point2* const trg = pCSeg->getTrg();
    SegmentTrace& trace = constraintMgr().scratch.trace;
    traceSegment(src, trg, true, trace);
    if ((trace.end == TRACE_FREE || trace.end == TRACE_CONSTRAINT) && !isBelowTolerance(*src, *trg)) {
        if (Point2* const pNear = findVertexBeside(trace)) {
            trace.end = TRACE_VERTEX;
            trace.pVertex = pNear;
        }
    }
    switch (trace.end) {
    case TRACE_VERTEX:
        QUOR2D_ASSERT(trace.pVertex != src, "p!=pCSeg->getSrc()");
        QUOR2D_ASSERT(trace.pVertex != trg, "p!=pCSeg->getTrg()");
        ++numConstraintChanges;
        pCSeg->split(trace.pVertex);
        return;
    case TRACE_CONSTRAINT:
        splitAtCrossing(pCSeg, trace.pConstraint, trace.pLast, kConformingPlace);
        return;
    case TRACE_FREE:
        splitAtMidpoint(pCSeg, trace.vCrossed[trace.vCrossed.size() / 2]);
        return;
    default:
        return;
    }
}

// The first of the vertices of the crossed triangles that lie beside the segment by little more than rounding.
// Overlapping segments that have been split at different places leave such vertices.
Point2* Dt2::findVertexBeside(const SegmentTrace& trace) const
{
    const double largest = std::min(predicates.maxAbsCoord, std::numeric_limits<double>::max());
    const double length = std::max(std::fabs(trace.p1->x() - trace.p0->x()), std::fabs(trace.p1->y() - trace.p0->y()));
    const double least = std::min(kUnitsBesideConforming * std::numeric_limits<double>::epsilon() * largest,
                                  kMostBesideConforming * length);
    const BesideTest beside(*trace.p0, *trace.p1, kUnitsBesideConforming, least);
    Point2* pNearest = nullptr;
    for (const std::vector<SegmentTrace::ChainVertex>* pChain : {&trace.vLeft, &trace.vRight}) {
        const auto it =
            std::find_if(pChain->begin(), pChain->end(),
                         [&beside](const SegmentTrace::ChainVertex& vertex) { return beside.contains(*vertex.p); });
        if (it != pChain->end() && (!pNearest || beside.isBefore(*it->p, *pNearest)))
            pNearest = it->p;
    }
    return pNearest;
}

void Dt2::splitAtMidpoint(ConstraintSegment2* pCSeg, Triangle2* pStart)
{
    const Point2 &src = *pCSeg->getSrc(), &trg = *pCSeg->getTrg();
    if (isBelowTolerance(src, trg)) {
        giveUp(pCSeg, kConformingPlace);
        return;
    }
    const Point2 middle(middleOf(src.x(), trg.x()), middleOf(src.y(), trg.y()));
    if (middle == src || middle == trg) {
        giveUp(pCSeg, kConformingPlace);
        return;
    }
    Point2* const pSplitPoint = insertReleased(pCSeg, middle, pStart);
    QUOR2D_ASSERT(pSplitPoint != pCSeg->getSrc(), "pSplitPoint!=pCSeg->getSrc()");
    pCSeg->split(pSplitPoint);
}

} // namespace ZELK_QUOR2D
