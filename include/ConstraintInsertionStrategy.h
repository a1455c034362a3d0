#pragma once

namespace ZELK_QUOR2D
{

/// How a constraint segment is forced into the triangulation.
enum ConstraintInsertionStrategy {
    /// New vertices split the segment until all pieces are Delaunay edges; the mesh stays Delaunay.
    CIS_CONFORMING_DELAUNAY = 0,
    /// The segment becomes an edge, split only at vertices that lie on it and where it crosses another segment; the
    /// triangles beside it need not be Delaunay (constrained Delaunay, Chew 1989).
    CIS_CONSTRAINED_DELAUNAY = 1
};

} // namespace ZELK_QUOR2D
