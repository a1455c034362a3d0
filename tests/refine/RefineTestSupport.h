#pragma once

#include "tests/support/ConstraintCheck.h"
#include "tests/zones/ZoneTestSupport.h"

#include <cmath>
#include <limits>
#include <set>

namespace ZELK_QUOR2D
{
namespace test
{

constexpr double kNoLimit = std::numeric_limits<double>::infinity();

/// The angle at corner i, in degrees.
inline double angleAt(const Triangle2& triangle, int i)
{
    const Point2 &p = *triangle.getCorner(i), &a = *triangle.getCorner((i + 1) % 3),
                 &b = *triangle.getCorner((i + 2) % 3);
    const double ax = a.x() - p.x(), ay = a.y() - p.y(), bx = b.x() - p.x(), by = b.y() - p.y();
    return std::atan2(std::fabs(ax * by - ay * bx), ax * bx + ay * by) * 180.0 / 3.14159265358979323846;
}

/// What a mesh is like, measured without the library.
struct Measures {
    std::size_t numTriangles = 0;
    std::size_t numBelowBound = 0; ///< triangles below the angle bound, but for those with an input angle below it
    double worstAngle = 180.0;     ///< of these triangles and all better ones
    double longestEdge = 0.0;
    double shortestPiece = kNoLimit; ///< of a constraint
    long double area = 0.0L;
};

inline Measures measure(const Quor_2D& dt, const Zone2* pZone, double boundDegree)
{
    Measures measures;
    for (const Triangle2* pT : trianglesOf(pZone)) {
        bool aConstraint[3];
        double aAngle[3];
        for (int i = 0; i < 3; ++i) {
            const Point2 *p = pT->getCorner(i), *a = pT->getCorner((i + 1) % 3), *b = pT->getCorner((i + 2) % 3);
            const double edge = std::hypot(a->x() - b->x(), a->y() - b->y());
            aConstraint[i] = dt.isConstraint(const_cast<Point2*>(a), const_cast<Point2*>(b));
            aAngle[i] = angleAt(*pT, i);
            measures.longestEdge = std::max(measures.longestEdge, edge);
            if (aConstraint[i])
                measures.shortestPiece = std::min(measures.shortestPiece, edge);
            measures.area += static_cast<long double>(p->x()) * (a->y() - b->y()) / 2;
        }
        bool bInputAngle = false;
        for (int i = 0; i < 3; ++i)
            bInputAngle =
                bInputAngle || (aAngle[i] < boundDegree && aConstraint[(i + 1) % 3] && aConstraint[(i + 2) % 3]);
        const double smallest = std::min({aAngle[0], aAngle[1], aAngle[2]});
        if (!bInputAngle) {
            measures.worstAngle = std::min(measures.worstAngle, smallest);
            measures.numBelowBound += smallest < boundDegree - 1e-9 ? 1 : 0;
        }
        ++measures.numTriangles;
    }
    return measures;
}

/// A triangulation with constraints and a zone to refine.
class Region
{
public:
    explicit Region(const Polygon& outline, ConstraintInsertionStrategy strategy = CIS_CONSTRAINED_DELAUNAY)
        : cis(strategy)
    {
        pZone = dt.createZone(addRing(outline), ZL_INSIDE);
    }

    ConstraintGraph2* addRing(const Polygon& polygon)
    {
        vGraphs.push_back(test::addRing(dt, polygon, cis));
        return vGraphs.back();
    }

    void addSegments(std::vector<Segment2> vSegments) { vGraphs.push_back(dt.createConstraint(vSegments, cis)); }

    void cutOut(const Polygon& hole) { pZone = zoneDifference(pZone, dt.createZone(addRing(hole), ZL_INSIDE)); }

    void apply() { dt.applyConstraintsAndZones(); }

    Quor_2D dt;
    std::vector<ConstraintGraph2*> vGraphs;
    Zone2* pZone = nullptr;
    ConstraintInsertionStrategy cis;
};

/// Two legs from (0.1, 0.3) in a unit square, one of them horizontal.
inline std::vector<Segment2> wedge(double angleDegree, double length0, double length1)
{
    const Point2 corner(0.1, 0.3);
    const double angle = angleDegree * 3.14159265358979323846 / 180.0;
    return {Segment2(corner, Point2(0.1 + length0, 0.3)),
            Segment2(corner, Point2(0.1 + length1 * std::cos(angle), 0.3 + length1 * std::sin(angle)))};
}

inline std::set<std::pair<double, double>> placesOf(const Quor_2D& dt)
{
    std::vector<Point2*> vVertices;
    dt.getVertexPointers(vVertices);
    std::set<std::pair<double, double>> sPlaces;
    for (const Point2* p : vVertices)
        sPlaces.emplace(p->x(), p->y());
    return sPlaces;
}

} // namespace test
} // namespace ZELK_QUOR2D
