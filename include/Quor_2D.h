#pragma once

#include "AcceptExperimentalFeature.h"
#include "Bbox2.h"
#include "Circle2.h"
#include "Color.h"
#include "ConstraintGraph2.h"
#include "ConstraintInsertionStrategy.h"
#include "ConstraintSegment2.h"
#include "FileOutput.h"
#include "Label.h"
#include "Point2.h"
#include "Quor2DExport.h"
#include "Segment2.h"
#include "Timer.h"
#include "Triangle2.h"
#include "TriangleAroundVertexIterator.h"
#include "Vector2.h"
#include "Version.h"
#include "Visualizer2.h"
#include "Zone2.h"
#include "ZoneLocation.h"

#include <string>
#include <vector>

namespace ZELK_QUOR2D
{

class Dt2;

/// A two-dimensional Delaunay triangulation.
///
/// Coordinates are doubles of any finite magnitude; every topological decision is exact. Points with equal coordinates
/// are one vertex (-0.0 equals 0.0). While all points are collinear there are no triangles; from the first three that
/// are not, every point is part of the mesh.
///
/// Vertices and triangles belong to the triangulation and keep their addresses until it is destroyed. Problems are
/// reported on standard output and lead to a neutral result; nothing is thrown. One triangulation is for one thread at
/// a time, separate ones are independent.
class QUOR2D_API Quor_2D
{
public:
    // ---- lifecycle

    /// @param numExpectedVertices  sizes the first memory blocks; any number of points may follow
    explicit Quor_2D(unsigned int numExpectedVertices = 3);

    /// Releases every vertex and triangle.
    ~Quor_2D();

    Quor_2D(const Quor_2D&) = delete;
    Quor_2D& operator=(const Quor_2D&) = delete;

    /// A name for reports; empty at first.
    void setName(const std::string& name);
    std::string getName() const;

    /// For compatibility of the interface: changes nothing.
    void enableMultithreading();

    // ---- points

    /// Inserts one point (incremental insertion with edge flips, Lawson 1977). The vertex carries the point's custom
    /// index. Expected time: a walk of a few triangles plus a constant number of flips.
    ///
    /// @return the new vertex, or the one that stands at the same coordinates; null for a non-finite coordinate,
    ///         which is reported and changes nothing
    Point2* insert(const Point2& p);

    /// Inserts many points, ordered along a Hilbert curve: much faster than one by one, near-linear time. Points with
    /// a non-finite coordinate are left out and reported, once per call.
    void insert(const std::vector<Point2>& vInputPoints);

    /// @param vHandles  replaced: one vertex for each input point, in input order. Equal points get the same vertex,
    ///                  points left out get null
    void insert(const std::vector<Point2>& vInputPoints, std::vector<Point2*>& vHandles);

    /// @param numPoints     number of points; nothing happens for 0 or less
    /// @param aCoordinates  x0, y0, x1, y1, ...: 2 * numPoints doubles
    /// @param aHandles      null, or room for numPoints vertices, filled as above
    void insert(int numPoints, double* aCoordinates, Point2** aHandles);

    /// Removes a vertex and restores the empty circles around the hole by edge flips. Expected time: proportional to
    /// the number of triangles around the vertex.
    ///
    /// The vertex object keeps its coordinates and custom index but belongs to no triangulation any more: inserting
    /// the same coordinates again makes another vertex. Triangles around it are recycled, so fetch triangles again
    /// afterwards. When all remaining vertices are collinear there are no triangles; is2D() stays what it was, and
    /// the next vertex off that line makes triangles again.
    ///
    /// @param pVtx  a vertex of this triangulation that has triangles. Null, a removed vertex, a vertex of another
    ///              triangulation and one without triangles are reported, and nothing changes
    void remove(Point2* pVtx);

    /// Builds the mesh of an empty triangulation from triangles instead of by Delaunay insertion. They become triangles
    /// exactly as given, counterclockwise; the space around them, out to a frame of four more vertices at the corners
    /// of their doubled box, is filled with further triangles. Near-linear time for triangles that do not cross.
    ///
    /// Triangles of zero area are left out with a warning. Triangles that cross each other are divided and reported.
    /// A triangulation with vertices, a number of points that is no positive multiple of three, a non-finite
    /// coordinate, and input without any area are reported and change nothing.
    ///
    /// @param vPoints  three points for each triangle, in either order; equal points become one vertex
    void createArbitraryTriangles(const std::vector<Point2>& vPoints, const AcceptExperimentalFeature&);

    // ---- queries

    /// @return the triangle that contains p, border and corners included; null beyond the convex hull, for a
    ///         non-finite p, and while there are no triangles
    Triangle2* locate(const Point2& p);

    /// The number of vertices. After a single insertion of a point that was there already it counts one more until
    /// the next batch.
    unsigned int numberOfPoints() const;

    /// O(1).
    unsigned int numberOfTriangles() const;

    /// Appends every vertex once, in no particular order.
    void getVertexPointers(std::vector<Point2*>& vVertices) const;

    /// Appends every triangle.
    void getTrianglePointers(std::vector<Triangle2*>& vTriangles) const;

    /// True from the first triangle on.
    bool is2D() const;

    /// The box of the vertices; an invalid box when there are none.
    Bbox2 computeBoundingBox() const;

    /// @return a triangle that has both vertices as corners; null when they share no edge. Time: the smaller of the
    ///         two degrees
    Triangle2* getAdjacentTriangle(Point2* p0, Point2* p1) const;

    /// Checks the neighbour links of all triangles and, on request, that no circumcircle contains a corner across one
    /// of its triangle's edges. Reports on standard output: the first defect found, or that there is none. Linear time.
    ///
    /// @param bCheckEmptyCircle  whether to check the circles, too
    /// @param s                  a name of the caller's choice, shown in the reports
    /// @return whether there is no defect; true, with a warning, while there are no triangles
    bool checkValidity(bool bCheckEmptyCircle, const std::string& s) const;

    // ---- constraints

    /// Inserts the ends of the segments as points and makes one constraint graph of the segments. They become edges
    /// with the next applyConstraintsAndZones(). A segment requested before, in either direction, is shared, and keeps
    /// the strategy of the first request. Near-linear time.
    ///
    /// @return the graph, which belongs to the triangulation; null, with a warning, for an empty list. Segments whose
    ///         ends coincide, and segments with a non-finite coordinate, are reported and left out
    ConstraintGraph2* createConstraint(const std::vector<Segment2>& vSegments, ConstraintInsertionStrategy cis);

    /// Forces every constraint segment into the mesh. Afterwards each alive segment is an edge, but for those that were
    /// given up with a warning at the limit of double precision. Segments are split where vertices lie on them, where
    /// they cross (both, at the crossing point rounded to doubles) and, with CIS_CONFORMING_DELAUNAY, at midpoints
    /// (recovery by cavities, Anglada 1997). While the triangulation is not two-dimensional a warning is all that
    /// happens.
    ///
    /// Points inserted later leave the edges alone or split them.
    void applyConstraintsAndZones();

    /// Whether an alive constraint segment joins two vertices, in either order. O(1).
    bool isConstraint(Point2* p0, Point2* p1) const;

    /// Whether edge ith (0 to 2) of a triangle is a constraint.
    bool isConstraint(Triangle2* pT, int ith) const;

    // ---- zones

    /// Makes a zone of the whole triangulation (no graph, ZL_GLOBAL), or of one side of a closed polygon (ZL_INSIDE,
    /// ZL_OUTSIDE). The polygon must have been applied before the zone is asked for triangles.
    ///
    /// @param zoneLoc  a graph with any other location is reported and ends the process
    /// @return the zone, which belongs to the triangulation; null, with a report, while there are no triangles, for a
    ///         graph that is no closed polygon or belongs to another triangulation, and for a location without the
    ///         graph it needs
    Zone2* createZone(ConstraintGraph2* pConstraintGraph, ZoneLocation zoneLoc);

    /// Makes a zone of all that can be reached from a point without crossing a segment of the graphs, which may be
    /// open, or none. Null graphs are skipped.
    ///
    /// @param zoneLoc  ZL_GROW; anything else is reported, and the result is null
    /// @param startPoint  on a vertex or an edge it stands for one of the triangles there
    Zone2* createZone(const std::vector<ConstraintGraph2*>& vConstraintGraphs, ZoneLocation zoneLoc,
                      const Point2& startPoint);
    Zone2* createZone(ConstraintGraph2* pConstraintGraph, ZoneLocation zoneLoc, const Point2& startPoint);

    /// Ends a zone, but neither its graphs nor its input zones. An address that is no zone of this triangulation is
    /// reported.
    void deleteZone(Zone2* pZone);

    // ---- refinement

    /// Refines the triangles of a zone until they meet an angle bound and two length bounds.
    ///
    /// Inserts circumcentres, or splits a constraint segment at its midpoint where one is in the way (Ruppert 1995;
    /// Chew 1993). Input vertices are never moved or removed, and nothing changes beyond the zone and its border.
    /// Constraints are applied first. Triangle records may be reused, so fetch triangles again afterwards.
    ///
    /// @param pZone           zone of this triangulation, not owned
    /// @param minAngleDegree  lower bound on every angle, in degrees, at most 30; 0 or less for none
    /// @param minEdgeLength   coordinate units, negative counts as 0; a lower limit for splitting, not a promise
    /// @param maxEdgeLength   coordinate units, above 0; a longer edge makes its triangle a candidate
    /// @param bAllowConstraintSplitting  false keeps constraint segments whole
    ///
    /// On a null zone, an angle above 30 or an argument that makes no sense: one line on standard error, nothing
    /// changes. A zone that is not one of this triangulation is reported on standard output.
    /// Not improved: corners where two constraints meet below the angle bound, and triangles with an edge below a tenth
    /// of minEdgeLength. Ends for every input. Expected time: near-linear in the triangles made.
    void refine(Zone2* pZone, double minAngleDegree, double minEdgeLength, double maxEdgeLength,
                bool bAllowConstraintSplitting);

    /// Refines these triangles, and those that result from it, with fixed bounds: 5.732 degrees, edges not below 0.1.
    /// Pointers that are null or no triangle of this triangulation are left out.
    ///
    /// @param vTriangles  stays as it is; its triangles may be reused
    void refineSpecificTriangles(std::vector<Triangle2*>& vTriangles, bool bAllowConstraintSplitting);

    /// Experimental: why does this mesh miss the bounds here? Reports counts and worst cases of angles and edges over a
    /// zone, with the reason where one is known, and draws the zone on the page `name`.ps with the triangles that miss
    /// the bounds filled: red where refinement would help, yellow at sharp corners of constraints, orange where
    /// something else is in the way. The reasons count in what the zone was last refined with.
    ///
    /// @param minAngleDegree  the bound to measure against, in degrees
    /// @param maxEdgeLength   the bound to measure against, in coordinate units; infinite for none
    /// @param name            shown in the report, and the file name without its ending
    void checkZoneQuality(Zone2* pZone, double minAngleDegree, double maxEdgeLength, const std::string& name,
                          const AcceptExperimentalFeature&);

    // ---- output

    /// Draws the edges of the triangulation on a PostScript page, see Visualizer2. Without triangles that is reported,
    /// and the page is empty. A file that cannot be opened is not reported.
    void show(const std::string& filename) const;

    /// Writes the triangles as a Wavefront OBJ file, z = 0: vertices in the order in which the triangles meet them,
    /// faces counterclockwise and in the order of getTrianglePointers(). Near-linear time.
    ///
    /// Coordinates have six significant digits, so close vertices may coincide in the file. The tool quor2d
    /// writes formats with full precision.
    ///
    /// Without triangles that is reported, and nothing is written. A file that cannot be opened is not reported.
    void writeObj(const std::string& filename) const;

    /// Writes a directory with a web page that shows the mesh in a browser, from a server or opened from disk:
    /// index.html, the viewer's scripts jsc3d.js, jsc3d.ctm.js and jsc3d.touch.js, the mesh as 3d.obj, and the same
    /// text once more as the script 3d.obj.js, because pages opened from disk may not read other files.
    ///
    /// @param path  created, one level deep, if it does not exist; files of these names in it are overwritten. A
    ///              directory that cannot be created is reported, and nothing is written
    ///
    /// Without triangles that is reported, and the mesh is not written.
    void writeWebScene(const char* path) const;

protected:
    /// What the constructor does. Called again by a derived class it starts anew: all vertices, constraints and zones
    /// are gone.
    void initQuor(unsigned int numExpectedVertices);

private:
    Dt2* pDt2 = nullptr;
};

} // namespace ZELK_QUOR2D
