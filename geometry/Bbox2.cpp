#include "Bbox2.h"

#include "predicates/PredicateTest.h"

#include <cmath>
#include <limits>

namespace ZELK_QUOR2D
{

namespace
{

constexpr double kEmptyMin = std::numeric_limits<double>::max();
constexpr double kEmptyMax = std::numeric_limits<double>::min();

// Enlarges [low, high]. An ordinary interval is left by at most one of its ends.
bool extend(double value, double& low, double& high)
{
    if (low > value) {
        low = value;
        return true;
    }
    if (value > high) {
        high = value;
        return true;
    }
    return false;
}

} // namespace

Bbox2::Bbox2(PredicateTest* pPredicateTest)
    : minX(kEmptyMin), minY(kEmptyMin), maxX(kEmptyMax), maxY(kEmptyMax), pPredicates(pPredicateTest)
{
}

Bbox2::Bbox2(PointIterator first, PointIterator last, PredicateTest* pPredicateTest) : Bbox2(pPredicateTest)
{
    add(first, last);
}

bool Bbox2::treatPointForValidBox(const Point2& p)
{
    const bool bChangedX = extend(p.x(), minX, maxX);
    const bool bChangedY = extend(p.y(), minY, maxY);
    return bChangedX || bChangedY;
}

void Bbox2::treatPointForInvalidBox(const Point2& p)
{
    minX = maxX = p.x();
    minY = maxY = p.y();
    bValid = true;
}

bool Bbox2::add(const Point2& p)
{
    if (bValid)
        return treatPointForValidBox(p);
    treatPointForInvalidBox(p);
    return true;
}

bool Bbox2::add(PointIterator first, PointIterator last)
{
    if (first == last)
        return false;
    bool bChanged = false;
    for (; first != last; ++first)
        bChanged |= add(*first);
    return bChanged;
}

bool Bbox2::add(double* coords, int num)
{
    if (num < 2)
        return false;
    bool bChanged = false;
    // The sentinel values of an empty box can be left at both ends by one point.
    for (double *pLow = &minX, *pHigh = &maxX, *pCoord = coords; pCoord != coords + 2;
         pLow = &minY, pHigh = &maxY, ++pCoord) {
        if (*pLow > *pCoord) {
            *pLow = *pCoord;
            bChanged = true;
        }
        if (*pCoord > *pHigh) {
            *pHigh = *pCoord;
            bChanged = true;
        }
    }
    for (int i = 2; i + 1 < num; i += 2)
        bChanged |= treatPointForValidBox(Point2(coords[i], coords[i + 1]));
    bValid = true;
    return bChanged;
}

Bbox2 Bbox2::operator+(const Bbox2& other)
{
    if (other.minX < minX)
        minX = other.minX;
    if (other.minY < minY)
        minY = other.minY;
    if (other.maxX > maxX)
        maxX = other.maxX;
    if (other.maxY > maxY)
        maxY = other.maxY;
    bValid = bValid || other.bValid;
    return *this;
}

void Bbox2::doubleTheBox()
{
    const double dx = (maxX - minX) * 0.5;
    const double dy = (maxY - minY) * 0.5;
    minX -= dx;
    maxX += dx;
    minY -= dy;
    maxY += dy;
    double largest = std::fabs(minX);
    if (maxX > largest)
        largest = maxX;
    if (std::fabs(minY) > largest)
        largest = std::fabs(minY);
    if (maxY > largest)
        largest = maxY;
    if (pPredicates)
        pPredicates->setStaticBound(largest);
}

bool Bbox2::isValid() const
{
    return minX < kEmptyMin;
}

} // namespace ZELK_QUOR2D
