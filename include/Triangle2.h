#pragma once

#include "Point2.h"
#include "Quor2DAssert.h"
#include "Quor2DExport.h"

#include <iosfwd>
#include <utility>

namespace ZELK_QUOR2D
{

/// A triangle of a triangulation: three corners in counterclockwise order and three neighbours.
///
/// Edge i lies opposite corner i and runs from corner i+1 to corner i+2 (modulo 3); neighbour i lies across edge i
/// and is null where that edge belongs to the convex hull.
///
///            corner 0
///    edge 2   /  \   edge 1
///            /    \                neighbour 0 lies below edge 0
///  corner 1 -------- corner 2
///            edge 0
///
/// Addresses stay valid until the triangulation is destroyed, but removal and refinement recycle triangles: fetch
/// them again after such a call.
class QUOR2D_API Triangle2
{
public:
    Triangle2() = default;

    /// Corner `ith`, 0 to 2.
    Point2* getCorner(int ith) const
    {
        QUOR2D_ASSERT(checkRange(ith), "checkRange(ith)");
        return aVertexPointer[ith];
    }

    /// The neighbour across edge `ith`, 0 to 2; null where the edge lies on the convex hull.
    Triangle2* getOppositeTriangle(int ith) const
    {
        QUOR2D_ASSERT(checkRange(ith), "checkRange(ith)");
        return aOppTriangles[ith];
    }

    /// For the triangulation only.
    void setOppTriangle(int ith, Triangle2* pTriangle)
    {
        QUOR2D_ASSERT(checkRange(ith), "checkRange(ith)");
        aOppTriangles[ith] = pTriangle;
    }

    /// For the triangulation only. The point's incident triangle stays what it was.
    void setVertexPointer(int ith, Point2* pVtx)
    {
        QUOR2D_ASSERT(checkRange(ith), "checkRange(ith)");
        aVertexPointer[ith] = pVtx;
    }

    /// For the triangulation only. Sets the corners, makes this triangle the incident triangle of each of them, and
    /// clears neighbours and mark.
    void setProperties(Point2* pI, Point2* pJ, Point2* pK)
    {
        QUOR2D_ASSERT(pI != nullptr && pJ != nullptr && pK != nullptr, "(pI!=NULL && pJ!=NULL && pK!=NULL)");
        aVertexPointer[0] = pI;
        aVertexPointer[1] = pJ;
        aVertexPointer[2] = pK;
        pI->setIncidentTriangle(this);
        pJ->setIncidentTriangle(this);
        pK->setIncidentTriangle(this);
        aOppTriangles[0] = aOppTriangles[1] = aOppTriangles[2] = nullptr;
        bState = false;
        marks = 0;
    }

    /// A mark that traversals of the triangulation set and clear.
    bool getState() const { return bState; }
    void setState(bool bNewState) { bState = bNewState; }

    /// The index of a corner, found by address. An address that is no corner is reported on standard output; the
    /// result is then 2.
    int getIntraTriangleIndex(const Point2* pVtx) const
    {
        for (int i = 0; i < 3; ++i)
            if (aVertexPointer[i] == pVtx)
                return i;
        return reportMissingCorner(pVtx);
    }

    /// The index of a neighbour, found by address. An address that is no neighbour is reported on standard output;
    /// the result is then 2.
    int getIntraTriangleIndex(const Triangle2* pTriangle) const
    {
        for (int i = 0; i < 3; ++i)
            if (aOppTriangles[i] == pTriangle)
                return i;
        return reportMissingNeighbor(pTriangle);
    }

    /// The area by Heron's formula from the side lengths. For a degenerate triangle rounding can make it NaN.
    double getArea() const;

    /// The mean of the corners.
    Point2 getBarycenter() const;

    /// The squared length of edge `ith`, 0 to 2.
    double getSquaredEdgeLength(int ith) const;

    /// The circumcentre, and whether it can be trusted as a finite point.
    ///
    /// The flag is false for collinear corners; the point then is a far one in the direction of the centre. It is
    /// also false for a nearly flat triangle (doubled area times two below 1e-10) whose centre lies on the inner side
    /// of its longest edge; the coordinates then are negated. Meshes with edges below 1e-5 should be scaled up.
    std::pair<Point2, bool> getDual() const;

private:
    friend class RefineZone;
    friend class ZoneFill;

    static bool checkRange(int ith) { return ith >= 0 && ith < 3; }
    int reportMissingCorner(const Point2* pVtx) const;
    int reportMissingNeighbor(const Triangle2* pTriangle) const;

    Point2* aVertexPointer[3] = {nullptr, nullptr, nullptr};
    Triangle2* aOppTriangles[3] = {nullptr, nullptr, nullptr};
    bool bState = false;
    unsigned char marks = 0; // fills what would be padding; see TriangleMark in core/TriangleMarks.h
};

/// Writes address, corners and neighbours over four lines, for debugging.
QUOR2D_API std::ostream& operator<<(std::ostream& stream, const Triangle2& triangle);

} // namespace ZELK_QUOR2D
