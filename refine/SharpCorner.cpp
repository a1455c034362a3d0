#include "refine/SharpCorner.h"

#include "Triangle2.h"
#include "core/Dt2.h"
#include "core/IncidentTriangles.h"
#include "geometry/TriangleIndex.h"
#include "refine/RefineZone.h"

#include <algorithm>
#include <cmath>

namespace ZELK_QUOR2D
{

namespace
{

// Below 60 degrees the pieces at a corner encroach on each other.
constexpr double kSharpCosine = 0.5;

// A piece is halved when it is this much longer than its neighbour; the two are then as near to each other in length as
// halving can bring them.
constexpr double kBalance = 1.4142135623730951;

// A next piece of half the length (more tells it from one of the same length) shows that the corner has been refined
// beyond the piece already. By measurement, at corners of 1 to 10 degrees: asking for a quarter gains no angles, asking
// for an eighth lets them go on without end at bounds of 27 and 30 degrees.
constexpr double kNextPiece = 0.75;

// Rounding moves split points this far, relatively, off the line of their constraint.
constexpr double kCollinear = 1e-9;

double distance(const Point2* p, const Point2* q)
{
    return std::hypot(q->x() - p->x(), q->y() - p->y());
}

// A constraint piece as seen from the corner that it ends in.
struct CornerPiece {
    Point2* pCorner;
    Point2* pEnd;

    double length() const { return distance(pCorner, pEnd); }
    double dx() const { return pEnd->x() - pCorner->x(); }
    double dy() const { return pEnd->y() - pCorner->y(); }
};

double cosineBetween(const CornerPiece& a, const CornerPiece& b)
{
    return (a.dx() * b.dx() + a.dy() * b.dy()) / (a.length() * b.length());
}

// Turns around the corner from a piece to one side. @return the next constraint piece if it comes within a sharp angle
// and the zone lies between; else a piece without end
CornerPiece findSibling(const Dt2& dt, const CornerPiece& piece, bool bCounterclockwise)
{
    const Triangle2* pT = bCounterclockwise ? dt.findTriangleLeftOf(piece.pCorner, piece.pEnd)
                                            : dt.findTriangleLeftOf(piece.pEnd, piece.pCorner);
    // Ends: the angle grows with every turn.
    while (RefineZone::contains(pT)) {
        const int i = pT->getIntraTriangleIndex(piece.pCorner);
        const CornerPiece edge{piece.pCorner, pT->getCorner(bCounterclockwise ? prev(i) : next(i))};
        if (!(cosineBetween(piece, edge) > kSharpCosine))
            break;
        const int ith = bCounterclockwise ? next(i) : prev(i);
        if (dt.isConstraint(pT, ith))
            return edge;
        pT = pT->getOppositeTriangle(ith);
    }
    return CornerPiece{piece.pCorner, nullptr};
}

// Whether a corner of the triangle is an end of some other constraint than the two pieces and what continues the
// sibling: the reason to split then lies there.
bool touchesOtherConstraint(const Triangle2* pTriangle, const CornerPiece& piece, const CornerPiece& sibling)
{
    for (int i = 0; i < 3; ++i) {
        const CornerPiece way{piece.pCorner, pTriangle->getCorner(i)};
        if (way.pEnd == piece.pCorner || way.pEnd == piece.pEnd || !Dt2::isConstraintVertex(way.pEnd))
            continue;
        const double t1 = way.dx() * sibling.dy(), t2 = way.dy() * sibling.dx();
        if (std::fabs(t1 - t2) > kCollinear * (std::fabs(t1) + std::fabs(t2)))
            return true;
    }
    return false;
}

// The shortest constraint piece at the far end, apart from the piece itself.
double shortestNextPiece(const Dt2& dt, const CornerPiece& piece)
{
    double shortest = piece.length();
    for (IncidentTriangles around(piece.pEnd); !around.atEnd(); around.advance())
        for (const Point2* p : {around.nextCorner(), around.prevCorner()})
            if (p != piece.pCorner && dt.isConstraint(piece.pEnd, p))
                shortest = std::min(shortest, distance(piece.pEnd, p));
    return shortest;
}

// The largest cosine between neighbours among the pieces that sharp angles join to this one, to one side.
double largestCosineBeside(const Dt2& dt, const CornerPiece& piece, bool bCounterclockwise)
{
    double largest = -1.0;
    CornerPiece current = piece;
    // Ends: goes round the corner once.
    do {
        const CornerPiece sibling = findSibling(dt, current, bCounterclockwise);
        if (!sibling.pEnd)
            break;
        largest = std::max(largest, cosineBetween(current, sibling));
        current = sibling;
    } while (current.pEnd != piece.pEnd);
    return std::min(1.0, largest);
}

// What is cut off one piece is sooner or later cut off all that sharp angles join to it. The shortest edge this makes
// is as long as the smallest of the angles lets it be.
bool makesShorterEdge(const Dt2& dt, const CornerPiece& piece, double shortest)
{
    const double cosine = std::max(largestCosineBeside(dt, piece, true), largestCosineBeside(dt, piece, false));
    return piece.length() * std::sqrt(0.5 - 0.5 * cosine) < shortest;
}

bool cutsOffTip(const Dt2& dt, const CornerPiece& piece, bool bLeft, const Triangle2* pTriangle, double shortest)
{
    const double length = piece.length();
    const auto forbids = [&](const CornerPiece& sibling) {
        return sibling.pEnd && length < kBalance * sibling.length() && makesShorterEdge(dt, piece, shortest) &&
               !touchesOtherConstraint(pTriangle, piece, sibling);
    };
    if (forbids(findSibling(dt, piece, bLeft)))
        return true;
    return forbids(findSibling(dt, piece, !bLeft)) && shortestNextPiece(dt, piece) < kNextPiece * length;
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
    double ratio = std::frexp(a.length() / b.length(), &exponent); // in [0.5, 1)
    ratio = ratio * kBalance < 1.0 ? 2.0 * ratio : 1.0 / ratio;    // in [1, kBalance]
    const double cosine = std::min(1.0, cosineBetween(a, b));
    const double sine = std::sqrt(1.0 - cosine * cosine);
    const double angle = std::atan2(sine, cosine) + std::atan2(sine, ratio - cosine);
    return angle * (180.0 / 3.141592653589793) < minAngleDegree;
}

} // namespace

Point2* findSparedCorner(const Dt2& dt, Point2* p0, Point2* p1, const Triangle2* pTriangle, double shortest)
{
    if (cutsOffTip(dt, CornerPiece{p0, p1}, true, pTriangle, shortest))
        return p0;
    if (cutsOffTip(dt, CornerPiece{p1, p0}, false, pTriangle, shortest))
        return p1;
    return nullptr;
}

void findUnevenPieces(const Dt2& dt, Point2* pCorner, double minAngleDegree, std::vector<Point2*>& vEnds)
{
    vEnds.clear();
    bool bUneven = false;
    for (IncidentTriangles around(pCorner); !around.atEnd(); around.advance()) {
        const CornerPiece piece{pCorner, around.nextCorner()};
        if (!dt.isConstraint(around.triangle(), prev(around.apex())))
            continue;
        const CornerPiece sibling = findSibling(dt, piece, true);
        if (!sibling.pEnd)
            continue;
        bUneven = bUneven || isUneven(piece, sibling, minAngleDegree);
        for (Point2* pEnd : {piece.pEnd, sibling.pEnd})
            if (std::find(vEnds.begin(), vEnds.end(), pEnd) == vEnds.end())
                vEnds.push_back(pEnd);
    }
    if (!bUneven)
        vEnds.clear();
}

} // namespace ZELK_QUOR2D
