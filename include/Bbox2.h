#pragma once

#include "Point2.h"
#include "Quor2DExport.h"

#include <vector>

namespace ZELK_QUOR2D
{

class PredicateTest;

/// An axis-parallel bounding box.
///
/// An empty box has the largest finite double as its minimum and, deliberately, the smallest positive normal double
/// as its maximum; add(double*, int) starts from these values.
class QUOR2D_API Bbox2
{
public:
    using PointIterator = std::vector<Point2>::const_iterator;

    /// An empty box. A triangulation's own box passes its predicates, which learn the coordinate range from
    /// doubleTheBox(); other boxes pass nothing.
    explicit Bbox2(PredicateTest* pPredicates = nullptr);
    Bbox2(PointIterator first, PointIterator last, PredicateTest* pPredicates = nullptr);

    /// Enlarges the box to hold `p`. @return true when the box changed
    bool add(const Point2& p);

    /// Enlarges the box to hold a range of points; an empty range changes nothing.
    /// @return true when the box was empty or changed
    bool add(PointIterator first, PointIterator last);

    /// Enlarges the box to hold `num`/2 points given as x0, y0, x1, y1, ...
    ///
    /// Deliberate: an empty box is merged from its start values, so a box made this way from points whose x (or y)
    /// are all negative keeps 2.2250738585072014e-308 as its maximum x (or y).
    ///
    /// @param coords  alternating coordinates
    /// @param num     number of doubles, twice the number of points
    /// @return true when a corner changed
    bool add(double* coords, int num);

    /// Merges `other` into this box, in place, and returns a copy of the result.
    Bbox2 operator+(const Bbox2& other);

    /// Keeps the centre and doubles the extent in both directions; tells the predicates, if there are any, the
    /// largest coordinate magnitude of the new box.
    void doubleTheBox();

    /// False for a box that holds nothing.
    bool isValid() const;

    Point2 getMinPoint() const { return Point2(minX, minY); }
    Point2 getMaxPoint() const { return Point2(maxX, maxY); }
    double getMinCoord() const { return minX < minY ? minX : minY; }
    double getMaxCoord() const { return maxX > maxY ? maxX : maxY; }
    double getRangeX() const { return maxX - minX; }
    double getRangeY() const { return maxY - minY; }
    double getMaxRange() const { return getRangeX() > getRangeY() ? getRangeX() : getRangeY(); }
    double get_minX() const { return minX; }
    double get_minY() const { return minY; }
    double get_maxX() const { return maxX; }
    double get_maxY() const { return maxY; }

protected:
    bool treatPointForValidBox(const Point2& p);
    void treatPointForInvalidBox(const Point2& p);

private:
    double minX;
    double minY;
    double maxX;
    double maxY;
    bool bValid = false;
    PredicateTest* pPredicates; // not owned, may be null
};

} // namespace ZELK_QUOR2D
