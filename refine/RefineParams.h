#pragma once

namespace ZELK_QUOR2D
{

class Dt2;
class Zone2;

/// What one call of refinement is asked to achieve.
struct RefineParams {
    /// For refine(). The angle is at most 30 degrees; 0 or less turns the angle bound off. A negative minimum length
    /// counts as 0, an infinite maximum means no limit.
    RefineParams(Dt2* pTriangulation, Zone2* pRefinedZone, double angleDegree, double minLength, double maxLength,
                 bool bSplitConstraints);

    /// For refineSpecificTriangles(), whose bounds are fixed.
    RefineParams(Dt2* pTriangulation, bool bSplitConstraints);

    Dt2* pDt;
    Zone2* pZone; // null for refineSpecificTriangles()
    double minAngleDegree;
    double minEdgeLength;
    double maxEdgeLength;
    bool bAllowConstraintSplitting;
    double sqMinEdgeLength;
    double sqMaxEdgeLength;    // infinite when the square overflows
    double maxRadiusEdgeRatio; // circumradius over shortest edge, as the angle bound asks
    double sharpCosine;        // of the angle below which constraints count as a sharp corner, see SharpCorner.h

    /// The smallest height of the triangles at the start; negative when it is not known yet.
    double startAltitude = -1.0;

    /// What Delaunay refinement does not undercut where the bounds can be met at all: at least minEdgeLength. Set when
    /// the triangles are known.
    double edgeFloor = 0.0;
};

} // namespace ZELK_QUOR2D
