#include "tests/fuzz/readers/ReadChecks.h"

#include "commands/MeshBuilder.h"
#include "commands/MeshCheck.h"
#include "formats/FileError.h"
#include "formats/MeshOutput.h"
#include "tests/fuzz/SilentOutput.h"
#include "tests/fuzz/Targets.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

namespace fuzz
{

using namespace quor2d_tool;

namespace
{

bool areFinite(const Coord& c)
{
    return std::isfinite(c.x) && std::isfinite(c.y);
}

void checkVertices(const VertexTable& vertices)
{
    const std::size_t numPoints = vertices.size();
    require(std::all_of(vertices.vCoords.begin(), vertices.vCoords.end(), areFinite), "a coordinate is not finite");
    require(vertices.vMarkers.empty() || vertices.vMarkers.size() == numPoints, "not one marker per point");
    const std::size_t numAttributes = vertices.vAttributeNames.size();
    require(vertices.vAttributes.size() == numAttributes * numPoints, "rows of attributes are not whole");
    for (double value : vertices.vAttributes)
        require(std::isfinite(value), "an attribute is not finite");
}

// Corners, the smallest one first, and the region.
struct RegionTriangle {
    std::array<std::pair<double, double>, 3> aCorners;
    double region;
    bool operator<(const RegionTriangle& t) const
    {
        return std::tie(aCorners, region) < std::tie(t.aCorners, t.region);
    }
    bool operator==(const RegionTriangle& t) const { return aCorners == t.aCorners && region == t.region; }
};

// In no order: some formats sort by region.
std::vector<RegionTriangle> trianglesOf(const MeshData& mesh)
{
    std::vector<RegionTriangle> vTriangles;
    for (std::size_t t = 0; t < mesh.vTriangles.size(); ++t) {
        RegionTriangle triangle{{}, mesh.vRegions.empty() ? 0.0 : mesh.vRegions[mesh.regionOf(t)].number};
        for (std::size_t i = 0; i < 3; ++i) {
            const Coord& c = mesh.vertices.vCoords[mesh.vTriangles[t][i]];
            triangle.aCorners[i] = {c.x, c.y};
        }
        auto& aCorners = triangle.aCorners;
        std::rotate(aCorners.begin(), std::min_element(aCorners.begin(), aCorners.end()), aCorners.end());
        vTriangles.push_back(triangle);
    }
    std::sort(vTriangles.begin(), vTriangles.end());
    return vTriangles;
}

} // namespace

void checkScene(const Scene& scene)
{
    const std::size_t numPoints = scene.points.size();
    require(numPoints > 0, "a scene without points");
    checkVertices(scene.points);
    for (const Scene::Segment& s : scene.vSegments)
        require(s.from < numPoints && s.to < numPoints, "a segment ends nowhere");
    for (std::uint32_t vertex : scene.vRingVertices)
        require(vertex < numPoints, "a corner of a ring is nowhere");
    std::size_t end = 0;
    for (const Scene::Ring& ring : scene.vRings) {
        require(ring.first == end && ring.count >= 3, "a ring is not a piece of the list");
        require(ring.polygon < scene.vPolygonFeatures.size(), "a ring without polygon");
        end = ring.first + ring.count;
    }
    require(end == scene.vRingVertices.size(), "corners outside rings");
    for (std::uint32_t feature : scene.vPolygonFeatures)
        require(feature > 0 && feature <= scene.vFeatureNames.size(), "a polygon without feature");
    require(scene.numClosingPoints <= numPoints, "more closing points than points");
    for (const Coord& c : scene.vHolePoints)
        require(areFinite(c), "a hole is not finite");
    for (const Scene::RegionPoint& region : scene.vRegionPoints)
        require(areFinite(region.at) && std::isfinite(region.number) && region.maxArea >= 0, "a region is not finite");
}

void checkMeshData(const MeshData& mesh)
{
    const std::size_t numVertices = mesh.vertices.size();
    require(numVertices > 0, "a mesh without vertices");
    checkVertices(mesh.vertices);
    require(mesh.vInputNumbers.empty() || mesh.vInputNumbers.size() == numVertices, "not one number per vertex");
    for (const auto& aCorners : mesh.vTriangles)
        for (std::uint32_t corner : aCorners)
            require(corner < numVertices, "a corner is nowhere");
    require(mesh.vTriangleRegions.empty() || mesh.vTriangleRegions.size() == mesh.vTriangles.size(),
            "not one region per triangle");
    for (std::uint32_t region : mesh.vTriangleRegions)
        require(region < mesh.vRegions.size(), "a region is nowhere");
    for (const MeshData::Region& region : mesh.vRegions)
        require(std::isfinite(region.number), "a region number is not finite");
    for (const MeshData::Edge& edge : mesh.vEdges)
        require(edge.from < numVertices && edge.to < numVertices, "an edge ends nowhere");
}

void checkRoundTrip(const MeshData& mesh, const FileBox& box)
{
    if (mesh.vTriangles.empty())
        return;
    const std::vector<RegionTriangle> vTriangles = trianglesOf(mesh);
    for (const char* pName : {"out.ele", "out.msh", "out.obj", "out.geojson"}) {
        const std::string path = box.path(pName);
        const Format format = formatByExtension(path)->format;
        std::vector<OutputTarget> vTargets = {{path, format}};
        if (format == Format::Ele)
            vTargets.push_back({box.path("out.node"), Format::Node});
        writeMesh(mesh, vTargets);
        const MeshData back = readMesh(path, format);
        checkMeshData(back);
        require(trianglesOf(back) == vTriangles, "triangles differ after a round trip");
    }
}

void checkTriangulation(const Scene& scene)
{
    constexpr std::size_t kMaxPoints = 60; // larger inputs only make the run slower
    if (scene.points.size() > kMaxPoints || scene.vSegments.size() + scene.vRingVertices.size() > kMaxPoints)
        return;
    SilentOutput silence;
    Arguments arguments;
    arguments.command = Command::Triangulate;
    arguments.bQuiet = true;
    for (Keep keep : {Keep::All, Keep::Inside}) {
        arguments.keep = keep;
        BuildNotes notes;
        MeshData mesh;
        try {
            mesh = buildMesh(scene, arguments, notes);
        } catch (const FileError&) {
            continue; // fewer than three points, all on a line, nothing inside
        }
        checkMeshData(mesh);
        MeshCheckResult result = checkMesh(mesh);
        require(result.defect.empty(), result.defect.c_str());
        require(result.delaunayDefect.empty(), result.delaunayDefect.c_str());
        require(!result.bClockwise, "a clockwise mesh");
    }
}

} // namespace fuzz
