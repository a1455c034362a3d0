#pragma once

#include "Point2.h"
#include "Quor2DExport.h"

#include <iosfwd>

namespace ZELK_QUOR2D
{

/// A circle, stored by its centre and its *squared* radius.
class QUOR2D_API Circle2
{
public:
    Circle2(const Point2& c, double squaredRadius) : center(c), sqRadius(squaredRadius) {}
    Circle2(double x, double y, double squaredRadius) : center(x, y), sqRadius(squaredRadius) {}

    Point2 getCenter() const { return center; }
    double getRadius() const;
    double getSqRadius() const { return sqRadius; }

private:
    Point2 center;
    double sqRadius;
};

/// Writes "Circle2: centre, r=radius".
QUOR2D_API std::ostream& operator<<(std::ostream& stream, const Circle2& circle);

} // namespace ZELK_QUOR2D
