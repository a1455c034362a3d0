#pragma once

#include "Quor_2D.h"
#include "tests/support/PointSets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace ZELK_QUOR2D
{
namespace test
{

using Polygon = std::vector<Point2>;
using Triangles = std::vector<Triangle2*>;

inline std::vector<Segment2> closedRing(const Polygon& polygon)
{
    std::vector<Segment2> vSegments;
    for (std::size_t i = 0; i < polygon.size(); ++i)
        vSegments.emplace_back(polygon[i], polygon[(i + 1) % polygon.size()]);
    return vSegments;
}

inline ConstraintGraph2* addRing(Quor_2D& dt, const Polygon& polygon,
                                 ConstraintInsertionStrategy cis = CIS_CONSTRAINED_DELAUNAY)
{
    std::vector<Segment2> vSegments = closedRing(polygon);
    return dt.createConstraint(vSegments, cis);
}

inline Polygon box(double x0, double y0, double x1, double y1)
{
    return {Point2(x0, y0), Point2(x1, y0), Point2(x1, y1), Point2(x0, y1)};
}

/// A star-shaped polygon round the origin with radii between 1 - depth and 1 + depth.
inline Polygon starPolygon(int n, double depth, std::uint64_t seed)
{
    Uniform u(seed);
    Polygon polygon;
    for (const Point2& p : circlePoints(n)) {
        const double radius = 1.0 + depth * u.in(-1.0, 1.0);
        polygon.emplace_back(radius * p.x(), radius * p.y());
    }
    return polygon;
}

/// Whether a ray from p crosses the polygon an odd number of times. For points that are not near the border.
inline bool isInside(const Polygon& polygon, const Point2& p)
{
    bool bInside = false;
    for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
        const Point2 &a = polygon[i], &b = polygon[j];
        if ((a.y() > p.y()) != (b.y() > p.y()) && p.x() < (b.x() - a.x()) * (p.y() - a.y()) / (b.y() - a.y()) + a.x())
            bInside = !bInside;
    }
    return bInside;
}

/// The triangles of the mesh whose barycentre satisfies a condition, in the order of their addresses.
inline Triangles select(const Quor_2D& dt, const std::function<bool(const Point2&)>& condition)
{
    Triangles vAll, vSelected;
    dt.getTrianglePointers(vAll);
    for (Triangle2* pT : vAll)
        if (condition(pT->getBarycenter()))
            vSelected.push_back(pT);
    std::sort(vSelected.begin(), vSelected.end(), std::less<Triangle2*>());
    return vSelected;
}

inline Triangles trianglesOf(const Zone2* pZone)
{
    Triangles vTriangles(3, nullptr); // must be replaced
    pZone->getTriangles(vTriangles);
    return vTriangles;
}

template <class Operation>
std::string outputOf(Operation operation)
{
    testing::internal::CaptureStdout();
    operation();
    return testing::internal::GetCapturedStdout();
}

inline std::string message(const std::string& where, const std::string& level, const std::string& text)
{
    return "\n      [Quor2D-Message] " + where + ", " + level + ": " + text + "\n\n";
}

} // namespace test
} // namespace ZELK_QUOR2D
