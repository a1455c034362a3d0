#pragma once

#include "Quor_2D.h"

#include <map>
#include <set>
#include <utility>
#include <vector>

namespace fuzz
{

/// What a triangulation must contain, kept beside it in the plainest way, and the comparison of both.
class MeshModel
{
public:
    explicit MeshModel(ZELK_QUOR2D::Quor_2D& triangulation) : dt(triangulation) {}

    /// Takes note of an insertion and compares its result.
    void noteInserted(const ZELK_QUOR2D::Point2& p, ZELK_QUOR2D::Point2* pHandle);

    /// Takes note of a removal that the triangulation has accepted.
    void noteRemoved(ZELK_QUOR2D::Point2* pVtx);

    /// Takes note of vertices that the library has made itself. It must not have removed any.
    void adoptVertices();

    void addGraph(ZELK_QUOR2D::ConstraintGraph2* pGraph);

    /// Refinement has been run, which keeps conforming edges that are not Delaunay any more.
    void noteRefined() { bRefined = true; }

    const std::vector<ZELK_QUOR2D::ConstraintGraph2*>& getGraphs() const { return vGraphs; }

    /// Whether nothing was requested since the last apply, and there always were triangles since.
    bool areConstraintsApplied() const { return bApplied && dt.numberOfTriangles() > 0; }

    /// All constraints have been applied. @param numGivenUp  how many pieces were given up with a warning
    void noteApplied(std::size_t numGivenUp);

    const std::vector<ZELK_QUOR2D::Point2*>& getHandles() const { return vHandles; }
    bool isLive(ZELK_QUOR2D::Point2* pVtx) const;

    /// Whether removal must accept the vertex: it is in a mesh and no end of a constraint segment.
    bool isRemovable(ZELK_QUOR2D::Point2* pVtx) const;
    std::size_t numberOfVertices() const { return mLive.size(); }

    /// The whole mesh, see tests/support/MeshCheck.h, that its vertices are those of the model, and the constraints as
    /// far as they have been applied.
    void checkMesh();

    /// That polygons are closed rings of constraints.
    void checkGraphs() const;

    void checkLocation(const ZELK_QUOR2D::Point2& p, ZELK_QUOR2D::Triangle2* pFound) const;
    void checkAdjacency(ZELK_QUOR2D::Point2* p0, ZELK_QUOR2D::Point2* p1, ZELK_QUOR2D::Triangle2* pFound) const;

    /// Both directions of the walk around a vertex against a search of all triangles.
    void checkStar(ZELK_QUOR2D::Point2* pVtx) const;

private:
    using Place = std::pair<double, double>;
    using Edge = std::pair<const ZELK_QUOR2D::Point2*, const ZELK_QUOR2D::Point2*>;

    void checkVertices() const;
    void checkUnappliedMesh() const;
    void checkConstraints() const;
    double largestCoordinate() const;

    ZELK_QUOR2D::Quor_2D& dt;
    std::map<Place, ZELK_QUOR2D::Point2*> mLive;
    std::set<ZELK_QUOR2D::Point2*> sRemoved;
    std::vector<ZELK_QUOR2D::Point2*> vHandles; // all that ever were, in the order of insertion
    std::vector<ZELK_QUOR2D::ConstraintGraph2*> vGraphs;
    bool bApplied = false;
    bool bRefined = false;
    bool bUntouched = false; // and the mesh has not been changed either
    std::size_t maxMissing = 0;
};

} // namespace fuzz
