#include "constraints/SegmentTrace.h"
#include "core/Dt2.h"
#include "core/IncidentTriangles.h"

namespace ZELK_QUOR2D
{

namespace
{

// The first end is looked at alone for so many triangles: enough for almost every vertex.
constexpr int kStepsAtFirstEnd = 16;

} // namespace

// Looks where the segment p0-p1 runs through the mesh. Changes nothing.
void Dt2::traceSegment(Point2* p0, Point2* p1, bool bStopAtConstraints, SegmentTrace& trace)
{
    trace.end = TRACE_UNDECIDED;
    trace.vCrossed.clear();
    trace.vLeft.clear();
    trace.vRight.clear();
    findTraceStart(p0, p1, trace);
    if (trace.end == TRACE_UNDECIDED)
        followSegment(bStopAtConstraints, trace);
    QUOR2D_ASSERT(trace.end != TRACE_LOST, "trace.end!=TRACE_LOST");
}

// Finds the edge, or a neighbour on the segment, or the first triangle that the segment crosses: pFirst. The two fans
// are searched in turn, for one of the ends may be a hub of thousands of triangles.
void Dt2::findTraceStart(Point2* p0, Point2* p1, SegmentTrace& trace)
{
    IncidentTriangles around0(p0);
    IncidentTriangles around1(p1);
    trace.pFirst = nullptr;
    for (int step = 0; !around0.atEnd(); ++step) {
        examineFan(around0, p0, p1, trace);
        if (trace.end != TRACE_UNDECIDED || trace.pFirst)
            return;
        around0.advance();
        if (step < kStepsAtFirstEnd || around1.atEnd())
            continue;
        examineFan(around1, p1, p0, trace);
        if (trace.end != TRACE_UNDECIDED || trace.pFirst)
            return;
        around1.advance();
    }
    trace.end = TRACE_LOST;
}

//            b
//          / |           the segment leaves the triangle (pFrom, a, b) between a, on its right, and b
//    pFrom --+--- pTo
//          \ |
//            a
void Dt2::examineFan(const IncidentTriangles& around, Point2* pFrom, Point2* pTo, SegmentTrace& trace)
{
    if (around.hasCorner(pTo)) {
        trace.end = TRACE_EDGE;
        return;
    }
    Point2* const pA = around.nextCorner();
    Point2* const pB = around.prevCorner();
    const Orientation2 orientationA = predicates.getOrientation2(pFrom, pTo, pA);
    if (orientationA == ORI2_POSITIVE)
        return;
    const Orientation2 orientationB = predicates.getOrientation2(pFrom, pTo, pB);
    QUOR2D_ASSERT(!(orientationA == ORI2_ZERO && orientationB == ORI2_ZERO), "!(ori1==ORI2_ZERO && ori2==ORI2_ZERO)");
    if (orientationA == ORI2_ZERO && orientationB == ORI2_POSITIVE) {
        trace.end = TRACE_VERTEX;
        trace.pVertex = pA;
    } else if (orientationA == ORI2_NEGATIVE && orientationB == ORI2_ZERO) {
        trace.end = TRACE_VERTEX;
        trace.pVertex = pB;
    } else if (orientationA == ORI2_NEGATIVE && orientationB == ORI2_POSITIVE) {
        trace.pFirst = around.triangle();
        trace.p0 = pFrom;
        trace.p1 = pTo;
    }
}

// From pFirst across one edge after the other to the other end. Ends: a straight line meets no triangle twice.
void Dt2::followSegment(bool bStopAtConstraints, SegmentTrace& trace)
{
    Triangle2* pT = trace.pFirst;
    int ith = pT->getIntraTriangleIndex(trace.p0); // the edge that the segment leaves pT by
    Point2* pRight = pT->getCorner(next(ith));
    Point2* pLeft = pT->getCorner(prev(ith));
    trace.vRight.push_back({trace.p0, nullptr});
    trace.vLeft.push_back({trace.p0, nullptr});
    trace.vRight.push_back({pRight, pT->getOppositeTriangle(prev(ith))});
    trace.vLeft.push_back({pLeft, pT->getOppositeTriangle(next(ith))});
    trace.vCrossed.push_back(pT);
    for (;;) {
        if (bStopAtConstraints && mayBeConstraint(pT, ith)) {
            trace.pConstraint = findConstraintSegment(pRight, pLeft);
            if (trace.pConstraint) {
                trace.pLast = pT;
                trace.end = TRACE_CONSTRAINT;
                return;
            }
        }
        Triangle2* const pNextT = pT->getOppositeTriangle(ith);
        QUOR2D_ASSERT(pNextT != nullptr, "pNextT!=NULL");
        if (!pNextT) {
            trace.end = TRACE_LOST;
            return;
        }
        const int apex = pNextT->getIntraTriangleIndex(pT); // counterclockwise: the apex, pLeft, pRight
        Point2* const pApex = pNextT->getCorner(apex);
        Triangle2* const pBesideLeft = pNextT->getOppositeTriangle(prev(apex));
        Triangle2* const pBesideRight = pNextT->getOppositeTriangle(next(apex));
        trace.vCrossed.push_back(pNextT);
        pT = pNextT;
        if (pApex == trace.p1) {
            trace.vLeft.push_back({pApex, pBesideLeft});
            trace.vRight.push_back({pApex, pBesideRight});
            trace.end = TRACE_FREE;
            return;
        }
        switch (predicates.getOrientation2(trace.p0, trace.p1, pApex)) {
        case ORI2_ZERO:
            trace.pVertex = pApex;
            trace.end = TRACE_VERTEX;
            return;
        case ORI2_POSITIVE:
            trace.vLeft.push_back({pApex, pBesideLeft});
            pLeft = pApex;
            ith = next(apex);
            break;
        case ORI2_NEGATIVE:
            trace.vRight.push_back({pApex, pBesideRight});
            pRight = pApex;
            ith = prev(apex);
            break;
        }
    }
}

} // namespace ZELK_QUOR2D
