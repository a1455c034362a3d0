#pragma once

#include "Quor2DExport.h"

#include <iosfwd>

namespace ZELK_QUOR2D
{

/// A direction in the plane.
class QUOR2D_API Vector2
{
public:
    Vector2() = default;
    Vector2(double x, double y) : coordX(x), coordY(y) {}

    double x() const { return coordX; }
    double y() const { return coordY; }

    double length() const;

    /// Dot product.
    double operator*(const Vector2& other) const { return coordX * other.coordX + coordY * other.coordY; }

private:
    double coordX = 0.0;
    double coordY = 0.0;
};

/// The vector of length one in the direction of `v`.
///
/// For a length of zero (or NaN) one warning line goes to standard output and (0, 0) is returned.
QUOR2D_API Vector2 normalize(const Vector2& v);

/// Writes "Vector2: x, y".
QUOR2D_API std::ostream& operator<<(std::ostream& stream, const Vector2& vector);

} // namespace ZELK_QUOR2D
