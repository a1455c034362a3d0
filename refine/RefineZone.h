#pragma once

#include "Triangle2.h"
#include "core/CurveSort.h"
#include "core/TriangleMarks.h"
#include "refine/RefineParams.h"

#include <array>
#include <cstddef>
#include <unordered_set>
#include <vector>

namespace ZELK_QUOR2D
{

class ConstraintSegment2;
class Dt2;

/// A triangle that seems to miss the bounds. What is to be done about it turns out when its turn comes: half of the
/// triangles have changed by then.
struct OpenTriangle {
    Triangle2* pTriangle;
    std::array<Point2*, 3> corners;
    double circumRadius;             ///< but for rounding
    Point2* pSparedCorner = nullptr; ///< the sharp corner for whose sake nothing was done at the last turn

    /// Whether the triangle has changed, or is gone, since. A triangle that is gone has no corners.
    bool isStale() const
    {
        return pTriangle->getCorner(0) != corners[0] || pTriangle->getCorner(1) != corners[1] ||
               pTriangle->getCorner(2) != corners[2];
    }
};

/// The triangles under refinement, kept up to date while the mesh changes, and which of them are open.
///
/// Membership is a mark in the triangle (TM_IN_ZONE); a triangle record that is recycled loses its marks.
class RefineZone
{
public:
    RefineZone(const Dt2& triangulation, const RefineParams& refineParams) : dt(triangulation), params(refineParams) {}
    ~RefineZone() { clear(); }
    RefineZone(const RefineZone&) = delete;
    RefineZone& operator=(const RefineZone&) = delete;

    /// Exactly these triangles, tested anew. Time: that of a look at all triangles of the triangulation, or of a zone
    /// that grows, at these and the members before.
    void assign(const std::vector<Triangle2*>& vTriangles);

    static bool contains(const Triangle2* pT) { return pT && (pT->marks & TM_IN_ZONE); }

    /// Takes a triangle in, or out. A member is tested against the bounds now, while it lies in the cache.
    void set(Triangle2* pT, bool bMember);

    /// Replaces the contents of the vector by the open triangles, the largest circumradius first. Some have changed
    /// since they were listed, and some may be listed more than once; takeTurn() tells.
    void takeOpen(std::vector<OpenTriangle*>& vCandidates);

    /// @return whether the triangle is as it was listed, and has had no turn yet
    static bool takeTurn(const OpenTriangle& open);

    /// Lists a triangle for the next turn as well, if it has not changed.
    void keepOpen(const OpenTriangle& open)
    {
        if (!open.isStale())
            vKept.push_back(open);
    }

    /// The triangles that had a turn and are still there.
    const std::vector<OpenTriangle>& keptOpen() const { return vKept; }

    void clear();

    bool bGrows = false;     ///< the zone is a list of triangles that takes in whatever refinement makes
    bool bUncertain = false; ///< the mesh has changed in a way that was not followed: the zone must be found again
    std::unordered_set<const ConstraintSegment2*> sUnsplittable; ///< at the limit of double precision
    std::size_t numPasses = 0;

private:
    void listKept();
    void addToOrder(std::size_t place);
    void sortOrder();

    const Dt2& dt;
    const RefineParams& params;
    std::vector<OpenTriangle> vNew;  // every triangle with TM_OPEN that has not been taken
    std::vector<OpenTriangle> vOpen; // those taken last
    std::vector<OpenTriangle> vKept;
    std::vector<Triangle2*> vMarked; // in a zone that grows: all that may carry marks; few of many perhaps
    CurveItems vOrder;               // of vOpen
    CurveItems vScratch;
};

} // namespace ZELK_QUOR2D
