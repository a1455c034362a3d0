#include "formats/NodePolyReader.h"

#include "formats/FileError.h"
#include "formats/LineReader.h"

#include <algorithm>
#include <climits>
#include <sys/stat.h>

namespace quor2d_tool
{
namespace
{

constexpr std::int64_t kHighestCount = static_cast<std::int64_t>(kMaxCount);
constexpr std::int64_t kHighestAttributeCount = 1000;

bool fileExists(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0;
}

// One file of the family: lists of numbered lines, each list under a header with its count.
class NodePolyFile
{
public:
    explicit NodePolyFile(const std::string& path) : lines(path) {}

    // Appends the points of the list to the table; false where the list is empty.
    bool readPoints(VertexTable& vertices);

    void readSegments(std::vector<Scene::Segment>& vSegments, std::size_t numPoints);
    void readHoles(std::vector<Coord>& vHolePoints);
    void readRegions(std::vector<Scene::RegionPoint>& vRegionPoints);
    void readTriangles(MeshData& mesh);
    void expectEnd();

    std::int64_t firstNumber() const { return base; }
    void setFirstNumber(std::int64_t first) { base = first; }

private:
    void nextLine(const char* what);
    std::size_t readCount(const char* what);
    void expectNumber(const char* what, std::int64_t expected);
    std::uint32_t pointIndex(const char* what, std::size_t numPoints);
    int marker();

    LineReader lines;
    std::int64_t base = 0;
};

void NodePolyFile::nextLine(const char* what)
{
    if (!lines.nextFilled('#'))
        lines.fail(std::string("file ends where ") + what + " is expected");
}

std::size_t NodePolyFile::readCount(const char* what)
{
    nextLine(what);
    return static_cast<std::size_t>(lines.integer(what, 0, kHighestCount));
}

void NodePolyFile::expectNumber(const char* what, std::int64_t expected)
{
    std::int64_t number = lines.integer(what);
    if (number != expected)
        lines.fail(std::string(what) + " " + std::to_string(number) + " where " + std::to_string(expected) +
                   " is expected");
}

std::uint32_t NodePolyFile::pointIndex(const char* what, std::size_t numPoints)
{
    if (numPoints == 0)
        lines.fail("there are no points to refer to");
    return static_cast<std::uint32_t>(lines.integer(what, base, base + static_cast<std::int64_t>(numPoints) - 1) -
                                      base);
}

int NodePolyFile::marker()
{
    return static_cast<int>(lines.integer("marker", INT_MIN, INT_MAX));
}

bool NodePolyFile::readPoints(VertexTable& vertices)
{
    std::size_t numPoints = readCount("the number of points");
    if (lines.hasField() && lines.integer("the dimension") != 2)
        lines.fail("only two-dimensional points can be read");
    std::size_t numAttributes =
        lines.hasField()
            ? static_cast<std::size_t>(lines.integer("the number of attributes", 0, kHighestAttributeCount))
            : 0;
    bool bMarkers = lines.hasField() && lines.integer("the number of markers", 0, 1) == 1;
    lines.expectLineEnd();
    for (std::size_t i = 0; i < numAttributes; ++i)
        vertices.vAttributeNames.push_back("attribute" + std::to_string(i + 1));
    for (std::size_t i = 0; i < numPoints; ++i) {
        nextLine("a point");
        if (i == 0)
            base = lines.integer("number of the first point", 0, 1);
        else
            expectNumber("number of the point", base + static_cast<std::int64_t>(i));
        double x = lines.number("x");
        vertices.vCoords.push_back({x, lines.number("y")});
        for (std::size_t k = 0; k < numAttributes; ++k)
            vertices.vAttributes.push_back(lines.number("attribute"));
        if (bMarkers)
            vertices.vMarkers.push_back(marker());
        lines.expectLineEnd();
    }
    return numPoints > 0;
}

void NodePolyFile::readSegments(std::vector<Scene::Segment>& vSegments, std::size_t numPoints)
{
    std::size_t numSegments = readCount("the number of segments");
    bool bMarkers = lines.hasField() && lines.integer("the number of markers", 0, 1) == 1;
    lines.expectLineEnd();
    for (std::size_t i = 0; i < numSegments; ++i) {
        nextLine("a segment");
        expectNumber("number of the segment", base + static_cast<std::int64_t>(i));
        Scene::Segment segment;
        segment.from = pointIndex("end point of the segment", numPoints);
        segment.to = pointIndex("end point of the segment", numPoints);
        if (bMarkers)
            segment.marker = marker();
        lines.expectLineEnd();
        vSegments.push_back(segment);
    }
}

void NodePolyFile::readHoles(std::vector<Coord>& vHolePoints)
{
    std::size_t numHoles = readCount("the number of holes");
    lines.expectLineEnd();
    for (std::size_t i = 0; i < numHoles; ++i) {
        nextLine("a hole");
        lines.integer("number of the hole");
        double x = lines.number("x");
        vHolePoints.push_back({x, lines.number("y")});
        lines.expectLineEnd();
    }
}

void NodePolyFile::readRegions(std::vector<Scene::RegionPoint>& vRegionPoints)
{
    if (!lines.nextFilled('#'))
        return; // the list is optional
    std::int64_t numRegions = lines.integer("the number of regions", 0, kHighestCount);
    lines.expectLineEnd();
    for (std::int64_t i = 0; i < numRegions; ++i) {
        nextLine("a region");
        lines.integer("number of the region");
        Scene::RegionPoint region;
        region.at.x = lines.number("x");
        region.at.y = lines.number("y");
        region.number = lines.number("attribute of the region");
        if (lines.hasField())
            region.maxArea = std::max(0.0, lines.number("area of the region")); // negative: no bound
        lines.expectLineEnd();
        vRegionPoints.push_back(region);
    }
}

void NodePolyFile::readTriangles(MeshData& mesh)
{
    std::size_t numTriangles = readCount("the number of triangles");
    if (lines.hasField() && lines.integer("the number of corners") != 3)
        lines.fail("only triangles of three corners can be read");
    std::size_t numAttributes =
        lines.hasField()
            ? static_cast<std::size_t>(lines.integer("the number of attributes", 0, kHighestAttributeCount))
            : 0;
    lines.expectLineEnd();
    std::vector<double> vNumbers;
    for (std::size_t i = 0; i < numTriangles; ++i) {
        nextLine("a triangle");
        expectNumber("number of the triangle", base + static_cast<std::int64_t>(i));
        std::array<std::uint32_t, 3> aCorners;
        for (std::uint32_t& corner : aCorners)
            corner = pointIndex("corner", mesh.vertices.size());
        mesh.vTriangles.push_back(aCorners);
        for (std::size_t k = 0; k < numAttributes; ++k) {
            double value = lines.number("attribute");
            if (k == 0)
                vNumbers.push_back(value);
        }
        lines.expectLineEnd();
    }
    setTriangleRegions(mesh, vNumbers);
}

void NodePolyFile::expectEnd()
{
    if (lines.nextFilled('#'))
        lines.fail("unexpected " + inQuotes(lines.field()) + " after the last list");
}

// A .poly file with points of its own is the input of some mesh, not a part of this one.
void readMeshSegments(const std::string& path, MeshData& mesh)
{
    NodePolyFile file(path);
    VertexTable ownPoints;
    if (file.readPoints(ownPoints))
        return;
    std::vector<Scene::Segment> vSegments;
    file.setFirstNumber(mesh.firstNumber);
    file.readSegments(vSegments, mesh.vertices.size());
    for (const Scene::Segment& segment : vSegments)
        mesh.vEdges.push_back({segment.from, segment.to, segment.marker, true});
}

} // namespace

std::string basePath(const std::string& path)
{
    std::size_t dot = path.rfind('.');
    std::size_t slash = path.rfind('/');
    bool bExtension = dot != std::string::npos && (slash == std::string::npos || dot > slash + 1) && dot > 0;
    return bExtension ? path.substr(0, dot) : path;
}

Scene readNode(const std::string& path)
{
    Scene scene;
    NodePolyFile file(path);
    if (!file.readPoints(scene.points))
        throw FileError(path, "holds no points");
    file.expectEnd();
    scene.firstNumber = file.firstNumber();
    return scene;
}

Scene readPoly(const std::string& path)
{
    Scene scene;
    NodePolyFile file(path);
    if (!file.readPoints(scene.points)) {
        if (path == "-")
            throw FileError("standard input", "the list of points is empty, and there is no .node file beside it");
        scene = readNode(basePath(path) + ".node");
        file.setFirstNumber(scene.firstNumber);
    }
    scene.firstNumber = file.firstNumber();
    file.readSegments(scene.vSegments, scene.points.size());
    file.readHoles(scene.vHolePoints);
    file.readRegions(scene.vRegionPoints);
    file.expectEnd();
    return scene;
}

MeshData readNodeEle(const std::string& path)
{
    MeshData mesh;
    std::string base = basePath(path);
    Scene scene = readNode(base + ".node");
    mesh.vertices = std::move(scene.points);
    mesh.firstNumber = scene.firstNumber;

    NodePolyFile triangles(base + ".ele");
    triangles.setFirstNumber(scene.firstNumber);
    triangles.readTriangles(mesh);
    triangles.expectEnd();

    if (fileExists(base + ".poly"))
        readMeshSegments(base + ".poly", mesh);
    return mesh;
}

} // namespace quor2d_tool
