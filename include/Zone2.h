#pragma once

#include "Quor2DExport.h"
#include "ZoneLocation.h"

#include <cstddef>
#include <vector>

namespace ZELK_QUOR2D
{

class ConstraintGraph2;
class Dt2;
class Triangle2;

/// A set of triangles of one triangulation, given by how to find them.
///
/// A zone stores no triangles: getTriangles() finds them in the triangulation as it is at that moment, so a zone stays
/// meaningful while points and constraints are added and while it is refined. Zones are made by Quor_2D::createZone()
/// and by the functions below, belong to their triangulation and live until Quor_2D::deleteZone() or its end. A zone
/// owns neither its constraint graphs nor its input zones, and both must outlive it.
class QUOR2D_API Zone2
{
public:
    // The constructors are for the triangulation, which keeps account of its zones.

    /// A zone without constraint graphs: ZL_GLOBAL, or one of the four results.
    Zone2(Dt2* pTriangulation, ZoneLocation location);

    /// ZL_INSIDE or ZL_OUTSIDE of a closed polygon. Anything else is reported and ends the process.
    Zone2(Dt2* pTriangulation, ZoneLocation location, ConstraintGraph2* pGraph);

    /// ZL_GROW from the start point (x, y), bounded by any number of graphs, closed or not.
    Zone2(Dt2* pTriangulation, const std::vector<ConstraintGraph2*>& vGraphs, ZoneLocation location, double x,
          double y);

    Zone2(const Zone2&) = delete;
    Zone2& operator=(const Zone2&) = delete;

    ZoneLocation getZoneLocation() const { return zoneLoc; }

    std::size_t numberOfConstraintGraphs() const { return vConstraintGraphs.size(); }

    /// Replaces the contents of the vector by the graphs that bound the zone.
    void getConstraintGraphs(std::vector<ConstraintGraph2*>& vGraphs) const;

    /// The only constraint graph; null when there is none, and null with a warning when there are several.
    ConstraintGraph2* getConstraintGraph() const;

    Dt2* getDelaunayTriangulation() const { return pDt; }

    /// Replaces the contents of the vector by the triangles of the zone, each once, in the order of their addresses.
    ///
    /// Edges of the zone's own graphs bound it, other constraints do not. The graphs must have been applied. While
    /// Quor_2D::is2D() is false this is reported, and so are a start point outside the convex hull and a polygon
    /// without any triangle on the wanted side; the vector is then empty.
    ///
    /// Time: linear in the triangles of the zone and the segments of its graphs, apart from sorting a zone that is a
    /// small part of the triangulation. A zone made of others evaluates each of them once.
    void getTriangles(std::vector<Triangle2*>& vTriangles) const;

private:
    friend class Dt2;
    friend class ZoneEvaluation;

    bool isResult() const { return zoneLoc >= ZL_RESULT_UNION && zoneLoc <= ZL_RESULT_SYM_DIFFERENCE; }
    void collectTriangles(std::vector<Triangle2*>& vTriangles) const;
    void collectSides(std::vector<Triangle2*>& vTriangles) const;

    Dt2* pDt;
    ZoneLocation zoneLoc;
    Zone2* pInputZone0 = nullptr; // of a result; null stands for the empty set
    Zone2* pInputZone1 = nullptr;
    std::vector<ConstraintGraph2*> vConstraintGraphs;
    double startX = 0.0;
    double startY = 0.0;
};

// Each of these makes a zone out of two zones of one triangulation, which must outlive the result. The result follows
// all changes of the triangulation. It belongs to the triangulation, like any other zone.
//
// Zones of different triangulations and null arguments are reported, and the result is null.

QUOR2D_API Zone2* zoneUnion(Zone2* pZone0, Zone2* pZone1);
QUOR2D_API Zone2* zoneIntersection(Zone2* pZone0, Zone2* pZone1);

/// What is in pZone0 and not in pZone1.
QUOR2D_API Zone2* zoneDifference(Zone2* pZone0, Zone2* pZone1);

/// What is in exactly one of the zones.
QUOR2D_API Zone2* zoneSymmetricDifference(Zone2* pZone0, Zone2* pZone1);

} // namespace ZELK_QUOR2D
