#include "refine/SharpCorner.h"

#include "Triangle2.h"
#include "core/Dt2.h"
#include "core/IncidentTriangles.h"
#include "geometry/TriangleIndex.h"
#include "refine/RefineParams.h"
#include "refine/RefineZone.h"

#include <algorithm>
#include <cmath>

namespace ZELK_QUOR2D
{

namespace
{

// A piece is halved when it is this much longer than its neighbour; the two are then as near to each other in length as
// halving can bring them.
constexpr double kBalance = 1.4142135623730951;

// A next piece of half the length (more tells it from one of the same length) shows that the corner has been refined
// beyond the piece already. By measurement, at corners of 1 to 10 degrees: asking for a quarter gains no angles, asking
// for an eighth lets them go on without end at bounds of 27 and 30 degrees.
constexpr double kNextPiece = 0.75;

// Rounding moves split points this far, relatively, off the line of their constraint.
constexpr double kCollinear = 1e-9;

// As std::hypot(), which takes several times as long: its care is needed at the ends of the range only.
double lengthOf(double dx, double dy)
{
    const double squared = dx * dx + dy * dy;
    return squared > 1e-290 && squared < 1e290 ? std::sqrt(squared) : std::hypot(dx, dy);
}

double distance(const Point2* p, const Point2* q)
{
    return lengthOf(q->x() - p->x(), q->y() - p->y());
}

// A constraint piece as seen from the corner that it ends in, or any other edge there.
struct CornerPiece {
    CornerPiece(Point2* pFrom, Point2* pTo)
        : pCorner(pFrom), pEnd(pTo), dx(pTo->x() - pFrom->x()), dy(pTo->y() - pFrom->y()), length(lengthOf(dx, dy))
    {
    }

    Point2* pCorner;
    Point2* pEnd;
    double dx;
    double dy;
    double length;
};

double cosineBetween(const CornerPiece& a, const CornerPiece& b)
{
    return (a.dx * b.dx + a.dy * b.dy) / (a.length * b.length);
}

// The next constraint piece on one side of another.
struct Sibling {
    Point2* pEnd = nullptr;        // null: there is none
    const Triangle2* pT = nullptr; // beyond it, as seen from the other
};

// Turns around the corner from a piece to one side. @return the next constraint piece if it comes within a sharp angle
// and the zone lies between
//
// @param pT  the triangle at the piece on that side
Sibling findSibling(const RefineParams& params, const CornerPiece& piece, const Triangle2* pT, bool bCounterclockwise)
{
    // Ends: the angle grows with every turn.
    while (RefineZone::contains(pT)) {
        const int i = pT->getIntraTriangleIndex(piece.pCorner);
        Point2* const pEnd = pT->getCorner(bCounterclockwise ? prev(i) : next(i));
        const double dx = pEnd->x() - piece.pCorner->x(), dy = pEnd->y() - piece.pCorner->y();
        if (!(piece.dx * dx + piece.dy * dy > 0.0) ||
            !(cosineBetween(piece, CornerPiece(piece.pCorner, pEnd)) > params.sharpCosine))
            break;
        const int ith = bCounterclockwise ? next(i) : prev(i);
        if (params.pDt->isConstraintEdge(pT, ith))
            return Sibling{pEnd, pT->getOppositeTriangle(ith)};
        pT = pT->getOppositeTriangle(ith);
    }
    return Sibling();
}

// Whether a corner of the triangle, if there is one, is an end of some other constraint than the two pieces and what
// continues the sibling: the reason to split then lies there.
bool touchesOtherConstraint(const Triangle2* pTriangle, const CornerPiece& piece, const CornerPiece& sibling)
{
    if (!pTriangle)
        return false;
    for (int i = 0; i < 3; ++i) {
        const CornerPiece way{piece.pCorner, pTriangle->getCorner(i)};
        if (way.pEnd == piece.pCorner || way.pEnd == piece.pEnd || !Dt2::isConstraintVertex(way.pEnd))
            continue;
        const double t1 = way.dx * sibling.dy, t2 = way.dy * sibling.dx;
        if (std::fabs(t1 - t2) > kCollinear * (std::fabs(t1) + std::fabs(t2)))
            return true;
    }
    return false;
}

// The shortest constraint piece at the far end, apart from the piece itself.
double shortestNextPiece(const RefineParams& params, const CornerPiece& piece)
{
    double shortest = piece.length;
    for (IncidentTriangles around(piece.pEnd); !around.atEnd(); around.advance())
        for (const Point2* p : {around.nextCorner(), around.prevCorner()})
            if (p != piece.pCorner && params.pDt->isConstraint(piece.pEnd, p))
                shortest = std::min(shortest, distance(piece.pEnd, p));
    return shortest;
}

// The largest cosine between neighbours among the pieces that sharp angles join to this one, to one side.
double largestCosineBeside(const RefineParams& params, const CornerPiece& piece, const Triangle2* pT,
                           bool bCounterclockwise)
{
    double largest = -1.0;
    CornerPiece current = piece;
    // Ends: goes round the corner once.
    do {
        const Sibling sibling = findSibling(params, current, pT, bCounterclockwise);
        if (!sibling.pEnd)
            break;
        const CornerPiece following(piece.pCorner, sibling.pEnd);
        largest = std::max(largest, cosineBetween(current, following));
        current = following;
        pT = sibling.pT;
    } while (current.pEnd != piece.pEnd);
    return std::min(1.0, largest);
}

// What may make a split cut off the tip at one end of a piece: the triangles on both sides of it, and which of them is
// on the side of the triangle that asks for the split.
struct TipQuestion {
    const RefineParams& params;
    CornerPiece piece;
    const Triangle2* pAsking;
    const Triangle2* pBeyond;
    bool bAskingIsLeft;
};

// What is cut off one piece is sooner or later cut off all that sharp angles join to it. The shortest edge this makes
// is as long as the smallest of the angles lets it be.
bool makesShorterEdge(const TipQuestion& q, double shortest)
{
    const double cosine = std::max(largestCosineBeside(q.params, q.piece, q.pAsking, q.bAskingIsLeft),
                                   largestCosineBeside(q.params, q.piece, q.pBeyond, !q.bAskingIsLeft));
    return q.piece.length * std::sqrt(0.5 - 0.5 * cosine) < shortest;
}

bool cutsOffTip(const TipQuestion& q, const Triangle2* pTriangle, double shortest)
{
    const CornerPiece& piece = q.piece;
    const auto forbids = [&](Point2* pEnd) {
        if (!pEnd)
            return false;
        const CornerPiece sibling(piece.pCorner, pEnd);
        return piece.length < kBalance * sibling.length && makesShorterEdge(q, shortest) &&
               !touchesOtherConstraint(pTriangle, piece, sibling);
    };
    if (forbids(findSibling(q.params, piece, q.pAsking, q.bAskingIsLeft).pEnd))
        return true;
    return forbids(findSibling(q.params, piece, q.pBeyond, !q.bAskingIsLeft).pEnd) &&
           shortestNextPiece(q.params, piece) < kNextPiece * piece.length;
}

// Whether the edge across a corner makes an angle below the bound with the shorter piece, on its far side, for any
// lengths that halving the pieces can give. Lengths that are near to each other are best.
//
//                    t   B      a + b is the angle at A that the triangles beyond AB have to fill; b grows with t - s
//            ___---  /b
//    corner  a______/a+b
//               s   A
bool isUneven(const CornerPiece& a, const CornerPiece& b, double minAngleDegree)
{
    int exponent = 0;
    double ratio = std::frexp(a.length / b.length, &exponent);  // in [0.5, 1)
    ratio = ratio * kBalance < 1.0 ? 2.0 * ratio : 1.0 / ratio; // in [1, kBalance]
    const double cosine = std::min(1.0, cosineBetween(a, b));
    const double sine = std::sqrt(1.0 - cosine * cosine);
    const double angle = std::atan2(sine, cosine) + std::atan2(sine, ratio - cosine);
    return angle * (180.0 / 3.141592653589793) < minAngleDegree;
}

} // namespace

Point2* findSparedCorner(const RefineParams& params, const Triangle2* pT, int ith, const Triangle2* pTriangle,
                         double shortest)
{
    Point2 *const p0 = pT->getCorner(next(ith)), *const p1 = pT->getCorner(prev(ith));
    const Triangle2* const pOpp = pT->getOppositeTriangle(ith);
    if (cutsOffTip(TipQuestion{params, CornerPiece(p0, p1), pT, pOpp, true}, pTriangle, shortest))
        return p0;
    if (cutsOffTip(TipQuestion{params, CornerPiece(p1, p0), pT, pOpp, false}, pTriangle, shortest))
        return p1;
    return nullptr;
}

bool isSplitForOthersOnly(const RefineParams& params, const Triangle2* pT, int ith, double shortest)
{
    return findSparedCorner(params, pT, ith, nullptr, shortest);
}

void findUnevenPieces(const RefineParams& params, Point2* pCorner, std::vector<Point2*>& vEnds)
{
    vEnds.clear();
    bool bUneven = false;
    for (IncidentTriangles around(pCorner); !around.atEnd(); around.advance()) {
        if (!params.pDt->isConstraintEdge(around.triangle(), prev(around.apex())))
            continue;
        const CornerPiece piece(pCorner, around.nextCorner());
        const Sibling sibling = findSibling(params, piece, around.triangle(), true);
        if (!sibling.pEnd)
            continue;
        bUneven = bUneven || isUneven(piece, CornerPiece(pCorner, sibling.pEnd), params.minAngleDegree);
        for (Point2* pEnd : {piece.pEnd, sibling.pEnd})
            if (std::find(vEnds.begin(), vEnds.end(), pEnd) == vEnds.end())
                vEnds.push_back(pEnd);
    }
    if (!bUneven)
        vEnds.clear();
}

} // namespace ZELK_QUOR2D
