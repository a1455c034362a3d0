#include "Triangle2.h"

#include "geometry/TriangleIndex.h"
#include "predicates/PredicateTest.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <limits>

namespace ZELK_QUOR2D
{

static_assert(sizeof(void*) != 8 || sizeof(Triangle2) == 56, "the mesh holds two triangles per vertex");

namespace
{

// Below this the doubled area times two is called nearly flat.
constexpr double kFlatBound = 1e-10;

double distance(const Point2& p, const Point2& q)
{
    const double dx = q.x() - p.x(), dy = q.y() - p.y();
    return std::sqrt(dx * dx + dy * dy);
}

// A point of huge magnitude in the direction (nx, ny).
Point2 farPoint(double nx, double ny)
{
    int expX = 0, expY = 0;
    std::frexp(nx, &expX);
    std::frexp(ny, &expY);
    int expMax = std::numeric_limits<int>::min();
    if (nx != 0.0)
        expMax = expX;
    if (ny != 0.0)
        expMax = std::max(expMax, expY);
    if (nx == 0.0 && ny == 0.0)
        return Point2(0.0, 0.0);
    const int shift = std::numeric_limits<double>::max_exponent - expMax - 1;
    return Point2(std::ldexp(nx, shift), std::ldexp(ny, shift));
}

} // namespace

int Triangle2::reportMissingCorner(const Point2* pVtx) const
{
    std::cout << "BUG: Triangle2::getIntraTriangleIndex failed for" << std::endl;
    std::cout << *pVtx << std::endl;
    std::cout << *this << std::endl;
    QUOR2D_ASSERT(false, "false");
    return 2;
}

int Triangle2::reportMissingNeighbor(const Triangle2* pTriangle) const
{
    std::cout << "Triangle2::getIntraTriangleIndex, pTriangle is not a neighbor of the current triangle" << std::endl;
    std::cout << "Current triangle: " << *this << std::endl;
    std::cout << "pTriangle: " << *pTriangle << std::endl;
    QUOR2D_ASSERT(false, "false");
    return 2;
}

double Triangle2::getArea() const
{
    const double a = distance(*aVertexPointer[0], *aVertexPointer[1]);
    const double b = distance(*aVertexPointer[1], *aVertexPointer[2]);
    const double c = distance(*aVertexPointer[2], *aVertexPointer[0]);
    const double s = (a + b + c) / 2.0;
    return std::sqrt((s - a) * s * (s - b) * (s - c));
}

Point2 Triangle2::getBarycenter() const
{
    return Point2((aVertexPointer[0]->x() + aVertexPointer[1]->x() + aVertexPointer[2]->x()) / 3.0,
                  (aVertexPointer[0]->y() + aVertexPointer[1]->y() + aVertexPointer[2]->y()) / 3.0);
}

double Triangle2::getSquaredEdgeLength(int ith) const
{
    QUOR2D_ASSERT(ith >= 0 && ith < 3, "num>=0 && num<3");
    const Point2& src = *aVertexPointer[next(ith)];
    const Point2& trg = *aVertexPointer[prev(ith)];
    const double dx = trg.x() - src.x(), dy = trg.y() - src.y();
    return dx * dx + dy * dy;
}

std::pair<Point2, bool> Triangle2::getDual() const
{
    const Point2 &p0 = *aVertexPointer[0], &p1 = *aVertexPointer[1], &p2 = *aVertexPointer[2];
    const double x1 = p1.x() - p0.x(), y1 = p1.y() - p0.y();
    const double x2 = p2.x() - p0.x(), y2 = p2.y() - p0.y();
    const double n1 = x1 * x1 + y1 * y1, n2 = x2 * x2 + y2 * y2;
    const double d = 2.0 * (x1 * y2 - x2 * y1);
    const double nx = y2 * n1 - y1 * n2, ny = x1 * n2 - x2 * n1;
    if (PredicateTest::orientation(p0, p1, p2) == ORI2_ZERO)
        return {farPoint(nx, ny), false};
    const Point2 center(p0.x() + nx / d, p0.y() + ny / d);
    if (!std::isfinite(center.x()) || !std::isfinite(center.y()))
        return {farPoint(nx, ny), false};
    if (std::fabs(d) >= kFlatBound)
        return {center, true};
    int longest = 0;
    for (int i = 1; i < 3; ++i)
        if (getSquaredEdgeLength(i) >= getSquaredEdgeLength(longest))
            longest = i;
    if (PredicateTest::orientation(*aVertexPointer[next(longest)], *aVertexPointer[prev(longest)], center) ==
        ORI2_POSITIVE)
        return {Point2(-center.x(), -center.y()), false};
    return {center, true};
}

std::ostream& operator<<(std::ostream& stream, const Triangle2& triangle)
{
    stream << "Triangle(" << static_cast<const void*>(&triangle) << "):" << std::endl;
    for (int i = 0; i < 3; ++i)
        stream << i << ": " << *triangle.getCorner(i)
               << "\t oppTriangle: " << static_cast<const void*>(triangle.getOppositeTriangle(i)) << std::endl;
    return stream;
}

} // namespace ZELK_QUOR2D
