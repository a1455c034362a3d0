#include "Circle2.h"

#include <cmath>
#include <ostream>

namespace ZELK_QUOR2D
{

double Circle2::getRadius() const
{
    return std::sqrt(sqRadius);
}

std::ostream& operator<<(std::ostream& stream, const Circle2& circle)
{
    return stream << "Circle2: " << circle.getCenter() << ", r=" << circle.getRadius();
}

} // namespace ZELK_QUOR2D
