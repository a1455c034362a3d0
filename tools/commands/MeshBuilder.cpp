#include "commands/MeshBuilder.h"

#include "ConstraintGraph2.h"
#include "Quor_2D.h"
#include "Zone2.h"
#include "commands/AttributeInterpolation.h"
#include "commands/FaceClassifier.h"
#include "commands/MeshTopology.h"
#include "commands/Progress.h"
#include "formats/FileError.h"
#include "geometry/ExactPredicates.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

namespace quor2d_tool
{
namespace
{

using ZELK_QUOR2D::ConstraintGraph2;
using ZELK_QUOR2D::ConstraintInsertionStrategy;
using ZELK_QUOR2D::Point2;
using ZELK_QUOR2D::Quor_2D;
using ZELK_QUOR2D::Segment2;
using ZELK_QUOR2D::Zone2;

constexpr std::uint32_t kNone = MeshTopology::kNone;

// The library's refinement takes triangles of an absolute size below 1e-10 for flat: the scene is brought to this
// extent, a power of two, by a power of two, which changes no digit.
constexpr int kRefineExponent = 30;

// Refinement for quality stops at this part of the extent, unless told otherwise.
constexpr double kDefaultMinEdge = 1e-5;

class MeshBuilder
{
public:
    MeshBuilder(const Scene& rScene, const Arguments& rArguments, BuildNotes& rNotes)
        : scene(rScene), arguments(rArguments), notes(rNotes), pProgress(newStep("triangulating")),
          graph(makePlanar(rScene)), triangulation(static_cast<unsigned int>(graph.vCoords.size()))
    {
    }

    MeshData build()
    {
        notes.numDuplicates = scene.points.size() - scene.numClosingPoints + graph.numCrossings - graph.vCoords.size();
        notes.numCrossings = graph.numCrossings;
        chooseScale();
        triangulate();
        classify();
        if (arguments.command == Command::Mesh) {
            pProgress.reset();
            pProgress = newStep("refining");
            refine();
            classify();
        }
        return extract();
    }

private:
    std::unique_ptr<Progress> newStep(const char* pName) const
    {
        return std::make_unique<Progress>(pName, arguments.bQuiet);
    }

    // ---- triangulation

    void chooseScale()
    {
        if (arguments.command != Command::Mesh || graph.vCoords.empty())
            return;
        Coord low = graph.vCoords[0], high = low;
        for (const Coord& c : graph.vCoords) {
            low = {std::min(low.x, c.x), std::min(low.y, c.y)};
            high = {std::max(high.x, c.x), std::max(high.y, c.y)};
        }
        double halfExtent = std::max(high.x / 2 - low.x / 2, high.y / 2 - low.y / 2);
        extent = 2 * halfExtent;
        scale = halfExtent > 0 ? kRefineExponent - std::ilogb(halfExtent) : 0;
        for (const Coord& c : graph.vCoords)
            if (unscaled(scaled(c.x)) != c.x || unscaled(scaled(c.y)) != c.y) {
                scale = 0;
                return;
            }
    }
    double scaled(double value) const { return std::ldexp(value, scale); }
    double unscaled(double value) const { return std::ldexp(value, -scale); }
    Point2 scaledPoint(const Coord& c) const { return Point2(scaled(c.x), scaled(c.y)); }
    Point2 vertexPoint(std::uint32_t vertex) const
    {
        Point2 p = scaledPoint(graph.vCoords[vertex]);
        p.setCustomIndex(static_cast<int>(vertex));
        return p;
    }

    ConstraintInsertionStrategy strategy() const
    {
        return arguments.strategy == Strategy::Conforming ? ZELK_QUOR2D::CIS_CONFORMING_DELAUNAY
                                                          : ZELK_QUOR2D::CIS_CONSTRAINED_DELAUNAY;
    }

    void triangulate()
    {
        std::vector<Point2> vPoints;
        vPoints.reserve(graph.vCoords.size());
        for (std::uint32_t v = 0; v < graph.vCoords.size(); ++v)
            vPoints.push_back(vertexPoint(v));
        triangulation.insert(vPoints);
        if (!triangulation.is2D())
            throw FileError(scene.name, graph.vCoords.size() < 3 ? "fewer than three different points: no triangles"
                                                                 : "all points lie on one line: no triangles");
        std::vector<Segment2> vSegments;
        vSegments.reserve(graph.vSegments.size());
        for (const PlanarGraph::Segment& s : graph.vSegments)
            vSegments.push_back(Segment2(vertexPoint(s.from), vertexPoint(s.to)));
        if (!vSegments.empty()) {
            pConstraints = triangulation.createConstraint(vSegments, strategy());
            triangulation.applyConstraintsAndZones();
        }
    }

    // ---- which triangles

    void classify()
    {
        pTopology = std::make_unique<MeshTopology>(triangulation, graph, pConstraints);
        std::vector<SeedTriangle> vSeeds;
        for (const Coord& hole : scene.vHolePoints)
            vSeeds.push_back({cellAt(hole), true, 0.0});
        for (const Scene::RegionPoint& region : scene.vRegionPoints)
            vSeeds.push_back({cellAt(region.at), false, region.number});
        classification = classifyFaces(scene, graph, *pTopology, vSeeds);
        vKept.assign(classification.vInside.size(), 1);
        if (arguments.keep != Keep::All)
            for (std::size_t t = 0; t < vKept.size(); ++t)
                vKept[t] = (classification.vInside[t] != 0) == (arguments.keep == Keep::Inside);
        if (std::find(vKept.begin(), vKept.end(), char(1)) == vKept.end())
            throw FileError(scene.name, arguments.keep == Keep::Inside
                                            ? "nothing lies inside; '--keep all' takes the whole convex hull"
                                            : "nothing lies outside");
    }

    std::uint32_t cellAt(const Coord& c) { return pTopology->cellOf(triangulation.locate(scaledPoint(c))); }

    // ---- refinement

    void refine()
    {
        Zone2* pZone = keptZone();
        if (!pZone)
            return;
        double minEdge = scaled(arguments.minEdge > 0 ? arguments.minEdge : extent * kDefaultMinEdge);
        double maxEdge = arguments.maxEdge > 0 ? scaled(arguments.maxEdge) : std::numeric_limits<double>::max();
        std::vector<Scene::RegionPoint> vBounded = regionsWithAreaBound();
        triangulation.refine(pZone, arguments.minAngle, minEdge, maxEdge, arguments.bSplit);
        for (const Scene::RegionPoint& region : vBounded)
            refineRegion(region, minEdge, maxEdge);
    }

    std::vector<Scene::RegionPoint> regionsWithAreaBound()
    {
        std::vector<Scene::RegionPoint> vBounded;
        for (const Scene::RegionPoint& region : scene.vRegionPoints) {
            std::uint32_t cell = cellAt(region.at);
            if (region.maxArea > 0 && cell != kNone && vKept[cell])
                vBounded.push_back(region);
        }
        return vBounded;
    }

    // No triangle is larger than the equilateral one with its longest edge: a bound on areas is one on lengths.
    void refineRegion(const Scene::RegionPoint& region, double minEdge, double maxEdge)
    {
        double longest = scaled(std::sqrt(region.maxArea) * std::sqrt(4 / std::sqrt(3.0)));
        std::vector<ConstraintGraph2*> vGraphs(1, pConstraints); // null is no border
        Zone2* pZone = triangulation.createZone(vGraphs, ZELK_QUOR2D::ZL_GROW, scaledPoint(region.at));
        triangulation.refine(pZone, arguments.minAngle, std::min(minEdge, longest), std::min(maxEdge, longest),
                             arguments.bSplit);
    }

    // The kept triangles as a zone: everything, or what can be reached from a point in each connected part of them
    // without crossing the outline. Null where no part has such a point.
    Zone2* keptZone()
    {
        if (std::find(vKept.begin(), vKept.end(), char(0)) == vKept.end())
            return triangulation.createZone(nullptr, ZELK_QUOR2D::ZL_GLOBAL);
        std::vector<Segment2> vOutline = outline();
        if (vOutline.empty())
            return nullptr;
        std::vector<ConstraintGraph2*> vGraphs = {triangulation.createConstraint(vOutline, strategy())};
        std::vector<Zone2*> vZones;
        for (const Coord& start : startPoints())
            vZones.push_back(triangulation.createZone(vGraphs, ZELK_QUOR2D::ZL_GROW, Point2(start.x, start.y)));
        while (vZones.size() > 1) { // each round halves their number: a balanced tree
            std::vector<Zone2*> vUnions;
            for (std::size_t i = 0; i + 1 < vZones.size(); i += 2)
                vUnions.push_back(ZELK_QUOR2D::zoneUnion(vZones[i], vZones[i + 1]));
            if (vZones.size() % 2 == 1)
                vUnions.push_back(vZones.back());
            vZones.swap(vUnions);
        }
        return vZones.empty() ? nullptr : vZones.front();
    }

    // The edges between kept triangles and others; all of them are segments.
    std::vector<Segment2> outline() const
    {
        std::vector<Segment2> vOutline;
        const auto& vCells = pTopology->cells();
        for (std::size_t t = 0; t < vCells.size(); ++t)
            for (std::size_t i = 0; i < 3 && vKept[t]; ++i) {
                std::uint32_t neighbor = vCells[t].aNeighbors[i];
                if (neighbor != kNone && !vKept[neighbor])
                    vOutline.push_back(Segment2(*pTopology->vertices()[vCells[t].aCorners[MeshTopology::next(i)]],
                                                *pTopology->vertices()[vCells[t].aCorners[MeshTopology::prev(i)]]));
            }
        return vOutline;
    }

    Coord corner(std::uint32_t cell, std::size_t i) const
    {
        const Point2* pVertex = pTopology->vertices()[pTopology->cells()[cell].aCorners[i]];
        return {pVertex->x(), pVertex->y()};
    }

    // A point strictly inside a triangle of each connected part of the kept triangles.
    std::vector<Coord> startPoints()
    {
        const auto& vCells = pTopology->cells();
        std::vector<Coord> vStarts;
        std::vector<char> vVisited(vCells.size(), 0);
        std::vector<std::uint32_t> vPart;
        for (std::uint32_t start = 0; start < vCells.size(); ++start) {
            if (!vKept[start] || vVisited[start])
                continue;
            vPart.assign(1, start);
            vVisited[start] = 1;
            for (std::size_t k = 0; k < vPart.size(); ++k) // ends: a triangle is listed once
                for (std::uint32_t neighbor : vCells[vPart[k]].aNeighbors)
                    if (neighbor != kNone && vKept[neighbor] && !vVisited[neighbor]) {
                        vVisited[neighbor] = 1;
                        vPart.push_back(neighbor);
                    }
            Coord point;
            if (findInnerPoint(vPart, point))
                vStarts.push_back(point);
            else
                ++notes.numUnrefined;
        }
        return vStarts;
    }

    // The barycentre of the largest triangle, or of another one where rounding moved that one out.
    bool findInnerPoint(std::vector<std::uint32_t>& vPart, Coord& point) const
    {
        auto area = [this](std::uint32_t cell) {
            Coord a = corner(cell, 0), b = corner(cell, 1), c = corner(cell, 2);
            return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        };
        std::iter_swap(vPart.begin(),
                       std::max_element(vPart.begin(), vPart.end(), [&](auto a, auto b) { return area(a) < area(b); }));
        for (std::uint32_t cell : vPart) {
            Coord a = corner(cell, 0), b = corner(cell, 1), c = corner(cell, 2);
            point = {a.x / 3 + b.x / 3 + c.x / 3, a.y / 3 + b.y / 3 + c.y / 3};
            if (orientation(a, b, point) > 0 && orientation(b, c, point) > 0 && orientation(c, a, point) > 0)
                return true;
        }
        return false;
    }

    // ---- the mesh

    MeshData extract()
    {
        MeshData mesh;
        mesh.name = scene.name;
        mesh.firstNumber = scene.firstNumber;
        vNumbers.assign(pTopology->vertices().size(), kNone);
        extractTriangles(mesh);
        extractVertices(mesh);
        extractEdges(mesh);
        return mesh;
    }

    void extractTriangles(MeshData& mesh)
    {
        const auto& vCells = pTopology->cells();
        std::vector<char> vUsed(vNumbers.size(), 0);
        std::vector<double> vRegions;
        for (std::size_t t = 0; t < vCells.size(); ++t) {
            if (!vKept[t])
                continue;
            mesh.vTriangles.push_back(vCells[t].aCorners);
            vRegions.push_back(classification.vRegion[t]);
            for (std::uint32_t vertex : vCells[t].aCorners)
                vUsed[vertex] = 1;
        }
        std::uint32_t number = 0;
        for (std::size_t v = 0; v < vUsed.size(); ++v)
            if (vUsed[v])
                vNumbers[v] = number++;
        for (auto& aCorners : mesh.vTriangles)
            for (std::uint32_t& vertex : aCorners)
                vertex = vNumbers[vertex];
        setTriangleRegions(mesh, vRegions);
        if (scene.vPolygonFeatures.empty())
            return;
        for (MeshData::Region& region : mesh.vRegions)
            if (region.number >= 1 && region.number <= static_cast<double>(scene.vFeatureNames.size()))
                region.name = scene.vFeatureNames[static_cast<std::size_t>(region.number) - 1];
    }

    // The point of the input at a vertex, or kNewVertex.
    std::uint32_t pointOf(std::size_t vertex) const
    {
        return vertex < graph.vPoints.size() ? graph.vPoints[vertex] : PlanarGraph::kNewVertex;
    }

    void extractVertices(MeshData& mesh)
    {
        std::vector<std::uint32_t> vSegmentOfVertex = segmentsOfVertices();
        bool bMarkers = !scene.points.vMarkers.empty();
        AttributeInterpolation attributes(scene, graph, scale);
        mesh.vertices.vAttributeNames = scene.points.vAttributeNames;
        for (std::size_t v = 0; v < vNumbers.size(); ++v) {
            if (vNumbers[v] == kNone)
                continue;
            const Point2* pVertex = pTopology->vertices()[v];
            bool bOld = v < graph.vCoords.size();
            Coord c = bOld ? graph.vCoords[v] : Coord{unscaled(pVertex->x()), unscaled(pVertex->y())};
            std::uint32_t point = pointOf(v);
            bool bNew = point == PlanarGraph::kNewVertex;
            notes.numNewVertices += bNew;
            mesh.vertices.vCoords.push_back(c);
            mesh.vInputNumbers.push_back(bNew ? MeshData::kNewVertex : scene.firstNumber + std::int64_t(point));
            if (bMarkers)
                mesh.vertices.vMarkers.push_back(bNew ? markerOf(vSegmentOfVertex[v]) : scene.points.vMarkers[point]);
            attributes.append(mesh.vertices.vAttributes, *pVertex, point, vSegmentOfVertex[v]);
        }
    }

    // A segment through each vertex, or kNone.
    std::vector<std::uint32_t> segmentsOfVertices() const
    {
        std::vector<std::uint32_t> vSegmentOfVertex(vNumbers.size(), kNone);
        for (const MeshTopology::Cell& cell : pTopology->cells())
            for (std::size_t i = 0; i < 3; ++i)
                if (cell.aSegments[i] != kNone)
                    vSegmentOfVertex[cell.aCorners[MeshTopology::next(i)]] =
                        vSegmentOfVertex[cell.aCorners[MeshTopology::prev(i)]] = cell.aSegments[i];
        return vSegmentOfVertex;
    }

    // The first marker other than 0 of the lines and rings that a segment belongs to; a ring's is its feature.
    int markerOf(std::uint32_t segment) const
    {
        if (segment == kNone)
            return 0;
        const PlanarGraph::Segment& s = graph.vSegments[segment];
        std::size_t numRings = scene.vRings.size();
        for (std::uint32_t i = 0; i < s.numSources; ++i) {
            std::uint32_t source = graph.vSources[s.firstSource + i];
            int marker = source < numRings ? static_cast<int>(scene.vPolygonFeatures[scene.vRings[source].polygon])
                                           : scene.vSegments[source - numRings].marker;
            if (marker != 0)
                return marker;
        }
        return 0;
    }

    // Segments and the border, each from one kept triangle: the one with the lower number, or the only one.
    void extractEdges(MeshData& mesh) const
    {
        const auto& vCells = pTopology->cells();
        for (std::uint32_t t = 0; t < vCells.size(); ++t)
            for (std::size_t i = 0; i < 3 && vKept[t]; ++i) {
                std::uint32_t neighbor = vCells[t].aNeighbors[i];
                bool bBorder = neighbor == kNone || !vKept[neighbor];
                std::uint32_t segment = vCells[t].aSegments[i];
                if (bBorder || (segment != kNone && t < neighbor))
                    mesh.vEdges.push_back({vNumbers[vCells[t].aCorners[MeshTopology::next(i)]],
                                           vNumbers[vCells[t].aCorners[MeshTopology::prev(i)]], markerOf(segment),
                                           segment != kNone});
            }
    }

    const Scene& scene;
    const Arguments& arguments;
    BuildNotes& notes;
    std::unique_ptr<Progress> pProgress;
    PlanarGraph graph;
    Quor_2D triangulation;
    int scale = 0;       // coordinates are multiplied by 2 to this
    double extent = 0.0; // of the input
    ConstraintGraph2* pConstraints = nullptr;
    std::unique_ptr<MeshTopology> pTopology;
    Classification classification;
    std::vector<char> vKept;
    std::vector<std::uint32_t> vNumbers; // per vertex its number in the mesh, or kNone
};

} // namespace

MeshData buildMesh(const Scene& scene, const Arguments& arguments, BuildNotes& notes)
{
    auto start = std::chrono::steady_clock::now();
    MeshData mesh = MeshBuilder(scene, arguments, notes).build();
    notes.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return mesh;
}

} // namespace quor2d_tool
