#pragma once

#include "Triangle2.h"
#include "core/CurveSort.h"
#include "core/TriangleMarks.h"
#include "refine/RefineCandidate.h"

#include <cstddef>
#include <unordered_set>
#include <vector>

namespace ZELK_QUOR2D
{

class ConstraintSegment2;
class Dt2;

/// The triangles under refinement, kept up to date while the mesh changes, and which of them are new.
///
/// Membership is a mark in the triangle (TM_IN_ZONE); a triangle record that is recycled loses its marks.
class RefineZone
{
public:
    explicit RefineZone(const Dt2& triangulation) : dt(triangulation) {}
    ~RefineZone() { clear(); }
    RefineZone(const RefineZone&) = delete;
    RefineZone& operator=(const RefineZone&) = delete;

    /// Exactly these triangles, all of them new. Time: that of a look at all triangles of the triangulation.
    void assign(const std::vector<Triangle2*>& vTriangles);

    static bool contains(const Triangle2* pT) { return pT && (pT->marks & TM_IN_ZONE); }
    static bool isNew(const Triangle2* pT) { return pT->marks & TM_NEW; }

    /// Takes a triangle in, or out. It counts as new, even if it was a member before.
    void set(Triangle2* pT, bool bMember);

    /// Replaces the contents of the vector by all triangles that became new since the last call. Some of them may be
    /// listed more than once, or be gone; endNew() tells.
    void takeNew(std::vector<Triangle2*>& vTriangles);

    /// @return whether the triangle is alive and was new until now
    static bool endNew(Triangle2* pT);

    /// Takes candidates out of vOpen whose triangles have changed.
    void dropChanged();

    /// Makes room in vOpen. To grow step by step would move the candidates several times.
    void reserveOpen(std::size_t numMore);

    /// Enters a candidate of vOpen in vOrder.
    void addToOrder(std::size_t place);

    /// Puts vOrder in order: largest circumradius first.
    void sortOrder();

    void clear();

    bool bGrows = false;     ///< the zone is a list of triangles that takes in whatever refinement makes
    bool bUncertain = false; ///< the mesh has changed in a way that was not followed: the zone must be found again
    std::vector<RefineCandidate> vOpen; ///< of all triangles that miss the bounds and are not new
    CurveItems vOrder;                  ///< those of them to be refined, see addToOrder()
    std::unordered_set<const ConstraintSegment2*> sUnsplittable; ///< at the limit of double precision
    std::vector<Triangle2*> vTested;                             ///< scratch
    std::size_t numPasses = 0;

private:
    const Dt2& dt;
    std::vector<Triangle2*> vNew; // holds every triangle with TM_NEW, perhaps others
    CurveItems vScratch;
};

} // namespace ZELK_QUOR2D
