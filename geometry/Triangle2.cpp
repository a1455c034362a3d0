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

// Below this a triangle counts as nearly flat; compared with four times its area.
constexpr double kFlatBound = 1e-10;

double distance(const Point2& p, const Point2& q)
{
    const double dx = q.x() - p.x(), dy = q.y() - p.y();
    return std::sqrt(dx * dx + dy * dy);
}

// The circumcentre relative to a corner as the quotient (nx/d, ny/d), from the vectors to the other two corners.
struct CenterQuotient {
    CenterQuotient(double x1, double y1, double x2, double y2)
    {
        const double n1 = x1 * x1 + y1 * y1, n2 = x2 * x2 + y2 * y2;
        nx = y2 * n1 - y1 * n2;
        ny = x1 * n2 - x2 * n1;
        d = 2.0 * (x1 * y2 - x2 * y1);
    }
    double nx;
    double ny;
    double d;
};

bool isFinite(const Point2& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

double maxAbs(double x1, double y1, double x2, double y2)
{
    return std::max({std::fabs(x1), std::fabs(y1), std::fabs(x2), std::fabs(y2)});
}

int exponentOf(double value)
{
    int exponent = 0;
    std::frexp(value, &exponent);
    return exponent;
}

// a*b - c*d with an error of two units in the last place (Kahan).
double differenceOfProducts(double a, double b, double c, double d)
{
    const double cd = c * d;
    return std::fma(a, b, -cd) + std::fma(-c, d, cd);
}

// A point of huge magnitude in the direction (nx, ny); the origin for no direction.
Point2 farPoint(double nx, double ny)
{
    const double largest = std::max(std::fabs(nx), std::fabs(ny));
    if (largest == 0.0)
        return Point2(0.0, 0.0);
    const int shift = std::numeric_limits<double>::max_exponent - exponentOf(largest) - 1;
    return Point2(std::ldexp(nx, shift), std::ldexp(ny, shift));
}

// The dual point of corners without a finite centre. Differences that could overflow are halved, then all are brought
// near 1, so that the numerators neither overflow nor vanish.
Point2 farDual(const Point2& p0, const Point2& p1, const Point2& p2)
{
    const double largest = std::max(maxAbs(p1.x(), p1.y(), p2.x(), p2.y()), maxAbs(p0.x(), p0.y(), 0.0, 0.0));
    const double scale = largest > 1.0 ? 0.5 : 1.0;
    double x1 = scale * p1.x() - scale * p0.x(), y1 = scale * p1.y() - scale * p0.y();
    double x2 = scale * p2.x() - scale * p0.x(), y2 = scale * p2.y() - scale * p0.y();
    const int shift = -exponentOf(maxAbs(x1, y1, x2, y2));
    for (double* pValue : {&x1, &y1, &x2, &y2})
        *pValue = std::ldexp(*pValue, shift);
    const CenterQuotient quotient(x1, y1, x2, y2);
    if (quotient.nx != 0.0 || quotient.ny != 0.0)
        return farPoint(quotient.nx, quotient.ny);
    // Two corners coincide, or nearly so: at right angles to the longer edge.
    return std::fabs(x1) + std::fabs(y1) > std::fabs(x2) + std::fabs(y2) ? farPoint(-y1, x1) : farPoint(-y2, x2);
}

// The index of the longest edge, the largest one among equals.
int longestEdge(const Triangle2& triangle)
{
    int longest = 0;
    for (int i = 1; i < 3; ++i)
        if (triangle.getSquaredEdgeLength(i) >= triangle.getSquaredEdgeLength(longest))
            longest = i;
    return longest;
}

// The circumcentre of a triangle that is flat, nearly flat or out of range.
std::pair<Point2, bool> flatDual(const Triangle2& triangle)
{
    const Point2 &p0 = *triangle.getCorner(0), &p1 = *triangle.getCorner(1), &p2 = *triangle.getCorner(2);
    if (PredicateTest::orientation(p0, p1, p2) == ORI2_ZERO)
        return {farDual(p0, p1, p2), false};

    // Small differences are brought near 1 first, lest the numerators vanish; d by the plain formula could be nothing
    // but rounding error.
    const double x1 = p1.x() - p0.x(), y1 = p1.y() - p0.y();
    const double x2 = p2.x() - p0.x(), y2 = p2.y() - p0.y();
    const int exponent = std::min(0, exponentOf(maxAbs(x1, y1, x2, y2)));
    const double sx1 = std::ldexp(x1, -exponent), sy1 = std::ldexp(y1, -exponent);
    const double sx2 = std::ldexp(x2, -exponent), sy2 = std::ldexp(y2, -exponent);
    CenterQuotient quotient(sx1, sy1, sx2, sy2);
    quotient.d = 2.0 * differenceOfProducts(sx1, sy2, sx2, sy1);
    const Point2 center(p0.x() + std::ldexp(quotient.nx / quotient.d, exponent),
                        p0.y() + std::ldexp(quotient.ny / quotient.d, exponent));
    if (!isFinite(center))
        return {farDual(p0, p1, p2), false};
    if (std::fabs(std::ldexp(quotient.d, 2 * exponent)) >= kFlatBound)
        return {center, true};

    const int longest = longestEdge(triangle);
    const Point2 &src = *triangle.getCorner(next(longest)), &trg = *triangle.getCorner(prev(longest));
    if (PredicateTest::orientation(src, trg, center) == ORI2_POSITIVE)
        return {Point2(-center.x(), -center.y()), false}; // Deliberate: marks a centre that cannot be trusted.
    return {center, true};
}

} // namespace

int Triangle2::reportMissingCorner(const Point2* pVtx) const
{
    std::cout << "BUG: Triangle2::getIntraTriangleIndex failed for" << std::endl;
    if (pVtx)
        std::cout << *pVtx;
    std::cout << std::endl;
    std::cout << *this << std::endl;
    QUOR2D_ASSERT(false, "false");
    return 2;
}

int Triangle2::reportMissingNeighbor(const Triangle2* pTriangle) const
{
    std::cout << "Triangle2::getIntraTriangleIndex, pTriangle is not a neighbor of the current triangle" << std::endl;
    std::cout << "Current triangle: " << *this << std::endl;
    std::cout << "pTriangle: ";
    if (pTriangle)
        std::cout << *pTriangle;
    std::cout << std::endl;
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
    // Relative to a corner: sums of absolute coordinates would lose the triangle far from the origin.
    const Point2 &p0 = *aVertexPointer[0], &p1 = *aVertexPointer[1], &p2 = *aVertexPointer[2];
    const CenterQuotient quotient(p1.x() - p0.x(), p1.y() - p0.y(), p2.x() - p0.x(), p2.y() - p0.y());
    const Point2 center(p0.x() + quotient.nx / quotient.d, p0.y() + quotient.ny / quotient.d);
    const bool bCertain = PredicateTest::filterOrientation(p0, p1, p2) != PredicateTest::kUndecided;
    if (bCertain && std::fabs(quotient.d) >= kFlatBound && isFinite(center))
        return {center, true};
    return flatDual(*this);
}

std::ostream& operator<<(std::ostream& stream, const Triangle2& triangle)
{
    stream << "Triangle(" << static_cast<const void*>(&triangle) << "):" << std::endl;
    for (int i = 0; i < 3; ++i) {
        stream << i << ": ";
        if (const Point2* pCorner = triangle.getCorner(i))
            stream << *pCorner;
        stream << "\t oppTriangle: " << static_cast<const void*>(triangle.getOppositeTriangle(i)) << std::endl;
    }
    return stream;
}

} // namespace ZELK_QUOR2D
