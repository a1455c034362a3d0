#pragma once

#include "Quor2DExport.h"

#include <iosfwd>

namespace ZELK_QUOR2D
{

class Triangle2;

/// A point in the plane, and the vertex record of a triangulation.
///
/// A triangulation stores its vertices as Point2 objects and hands out `Point2*`; such an address stays valid until
/// the triangulation is destroyed. Copies are detached: they keep the coordinates and the custom index but never know
/// a triangle.
class QUOR2D_API Point2
{
public:
    /// An unset point: both coordinates are the lowest finite double, the custom index is -1.
    Point2();

    Point2(double x, double y) : coordX(x), coordY(y) {}

    /// Copies coordinates and custom index. The copy has no incident triangle.
    Point2(const Point2& other) : coordX(other.coordX), coordY(other.coordY), customIndex(other.customIndex) {}

    /// Copies coordinates and custom index; the incident triangle of the assigned object stays what it was.
    Point2& operator=(const Point2& other)
    {
        coordX = other.coordX;
        coordY = other.coordY;
        customIndex = other.customIndex;
        return *this;
    }

    ~Point2() = default;

    double x() const { return coordX; }
    double y() const { return coordY; }
    void xy(double& x, double& y) const
    {
        x = coordX;
        y = coordY;
    }

    /// The caller's own number for this point; -1 when unset. The library only carries it along.
    int getCustomIndex() const { return customIndex; }
    void setCustomIndex(int index) { customIndex = index; }

    /// One triangle that has this vertex as a corner; null for a detached point and for a vertex without triangles.
    Triangle2* getIncidentTriangle() const { return pAssociatedTriangle; }

    /// For the triangulation only: callers must not redirect the vertices of a triangulation.
    void setIncidentTriangle(Triangle2* pTriangle) { pAssociatedTriangle = pTriangle; }

    /// Compares coordinates exactly (so -0.0 equals 0.0); index and triangle take no part.
    bool operator==(const Point2& other) const { return coordX == other.coordX && coordY == other.coordY; }
    bool operator!=(const Point2& other) const { return !(*this == other); }

    /// Lexicographic order on (x, y).
    bool operator<(const Point2& other) const
    {
        return coordX < other.coordX || (coordX == other.coordX && coordY < other.coordY);
    }

private:
    friend class ConstraintMgr;
    friend class Dt2;
    friend class VertexVault;

    double coordX;
    double coordY;
    Triangle2* pAssociatedTriangle = nullptr;
    int customIndex = -1;
    // Fills what would be padding. Bits that the triangulation keeps about its vertex, see core/VertexMarks.h;
    // never copied.
    unsigned int marks = 0;
};

/// Writes "Point2 (address,custom index): x, y". The address is that of the object being written.
QUOR2D_API std::ostream& operator<<(std::ostream& stream, const Point2& point);

} // namespace ZELK_QUOR2D
