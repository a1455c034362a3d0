#pragma once

#include "Triangle2.h"
#include "core/TriangleMarks.h"
#include "refine/RefineCandidate.h"

#include <cstddef>
#include <unordered_set>
#include <vector>

namespace ZELK_QUOR2D
{

class ConstraintSegment2;

/// The triangles under refinement, kept up to date while the mesh changes, and which of them are new.
///
/// Membership is a mark in the triangle (TM_IN_ZONE); a triangle record that is recycled loses its marks.
class RefineZone
{
public:
    RefineZone() = default;
    ~RefineZone() { clear(); }
    RefineZone(const RefineZone&) = delete;
    RefineZone& operator=(const RefineZone&) = delete;

    /// Exactly these triangles, all of them new.
    void assign(const std::vector<Triangle2*>& vTriangles);

    static bool contains(const Triangle2* pT) { return pT && (pT->marks & TM_IN_ZONE); }
    static bool isNew(const Triangle2* pT) { return pT->marks & TM_NEW; }

    /// Takes a triangle in, or out. It counts as new, even if it was a member before.
    void set(Triangle2* pT, bool bMember);

    /// Replaces the contents of the vector by the triangles that are new since the last call, each once.
    void takeNew(std::vector<Triangle2*>& vTriangles);

    void clear();

    bool bGrows = false;     ///< the zone is a list of triangles that takes in whatever refinement makes
    bool bUncertain = false; ///< the mesh has changed in a way that was not followed: the zone must be found again
    std::vector<RefineCandidate> vOpen; ///< of all triangles that miss the bounds and are not new
    std::unordered_set<const ConstraintSegment2*> sUnsplittable; ///< at the limit of double precision
    std::size_t numPasses = 0;

private:
    std::vector<Triangle2*> vNew;    // holds every triangle with TM_NEW, perhaps others
    std::vector<Triangle2*> vMarked; // the same for TM_IN_ZONE
};

} // namespace ZELK_QUOR2D
