#include "Vector2.h"

#include <cmath>
#include <iostream>

namespace ZELK_QUOR2D
{

double Vector2::length() const
{
    return std::sqrt(coordX * coordX + coordY * coordY);
}

Vector2 normalize(const Vector2& v)
{
    const double length = v.length();
    if (length > 0.0)
        return Vector2(v.x() / length, v.y() / length);
    std::cout << "warning: normalize(const Vector2& other), Null length vector!" << std::endl;
    return Vector2();
}

std::ostream& operator<<(std::ostream& stream, const Vector2& vector)
{
    return stream << "Vector2: " << vector.x() << ", " << vector.y();
}

} // namespace ZELK_QUOR2D
