#include "Point2.h"

#include <limits>
#include <ostream>

namespace ZELK_QUOR2D
{

static_assert(sizeof(void*) != 8 || sizeof(Point2) == 32, "two vertices fit a cache line of 64 bytes");

Point2::Point2() : Point2(std::numeric_limits<double>::lowest(), std::numeric_limits<double>::lowest()) {}

std::ostream& operator<<(std::ostream& stream, const Point2& point)
{
    return stream << "Point2 (" << static_cast<const void*>(&point) << "," << point.getCustomIndex()
                  << "): " << point.x() << ", " << point.y();
}

} // namespace ZELK_QUOR2D
