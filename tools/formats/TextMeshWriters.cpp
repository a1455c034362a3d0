#include "formats/MeshEdges.h"
#include "formats/MeshWriters.h"
#include "formats/NumberText.h"
#include "formats/ObjReader.h"

#include <algorithm>
#include <cmath>

namespace quor2d_tool
{
namespace
{

constexpr std::string_view kCreator = "# Written by quor2d\n";

// The height of vertex i, or zero.
class Heights
{
public:
    explicit Heights(const VertexTable& rVertices) : vertices(rVertices)
    {
        const auto& vNames = vertices.vAttributeNames;
        column = static_cast<std::size_t>(std::find(vNames.begin(), vNames.end(), kHeightName) - vNames.begin());
    }
    double operator[](std::size_t i) const
    {
        std::size_t numColumns = vertices.vAttributeNames.size();
        return column < numColumns ? vertices.vAttributes[i * numColumns + column] : 0.0;
    }

private:
    const VertexTable& vertices;
    std::size_t column;
};

int borderMarker(int marker, bool bBorder)
{
    return marker == 0 && bBorder ? 1 : marker;
}

} // namespace

void writeObj(const MeshData& mesh, OutputFile& file)
{
    file << kCreator;
    Heights heights(mesh.vertices);
    for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
        const Coord& c = mesh.vertices.vCoords[i];
        file << "v " << c.x << ' ' << c.y << ' ' << heights[i] << '\n';
    }
    for (const MeshData::Edge& edge : mesh.vEdges)
        if (edge.bConstraint)
            file << "l " << edge.from + 1 << ' ' << edge.to + 1 << '\n';
    bool bGroups = mesh.vRegions.size() > 1;
    std::uint32_t region = static_cast<std::uint32_t>(mesh.vRegions.size());
    for (std::size_t t = 0; t < mesh.vTriangles.size(); ++t) {
        if (bGroups && mesh.regionOf(t) != region) {
            region = mesh.regionOf(t);
            file << "g " << kObjRegionPrefix << plainNumberText(mesh.vRegions[region].number) << '\n';
        }
        const auto& aCorners = mesh.vTriangles[t];
        file << "f " << aCorners[0] + 1 << ' ' << aCorners[1] + 1 << ' ' << aCorners[2] + 1 << '\n';
    }
}

void writeNode(const MeshData& mesh, OutputFile& file)
{
    const VertexTable& vertices = mesh.vertices;
    std::size_t numColumns = vertices.vAttributeNames.size();
    bool bNumbers = !mesh.vInputNumbers.empty();
    std::vector<char> vOnBorder(vertices.size(), 0);
    for (const auto& edge : collectMeshEdges(mesh))
        if (edge.bBorder)
            vOnBorder[edge.from] = vOnBorder[edge.to] = 1;

    file << kCreator;
    if (bNumbers)
        file << "# The last attribute is the number of the point in the input, -1 for a new one\n";
    file << vertices.size() << " 2 " << numColumns + (bNumbers ? 1 : 0) << " 1\n";
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        file << i << ' ' << vertices.vCoords[i].x << ' ' << vertices.vCoords[i].y;
        for (std::size_t k = 0; k < numColumns; ++k)
            file << ' ' << vertices.vAttributes[i * numColumns + k];
        if (bNumbers)
            file << ' ' << mesh.vInputNumbers[i];
        int marker = vertices.vMarkers.empty() ? 0 : vertices.vMarkers[i];
        file << ' ' << borderMarker(marker, vOnBorder[i] != 0) << '\n';
    }
}

void writeEle(const MeshData& mesh, OutputFile& file)
{
    bool bRegions = mesh.vRegions.size() > 1;
    file << kCreator << mesh.vTriangles.size() << " 3 " << (bRegions ? 1 : 0) << '\n';
    for (std::size_t t = 0; t < mesh.vTriangles.size(); ++t) {
        const auto& aCorners = mesh.vTriangles[t];
        file << t << ' ' << aCorners[0] << ' ' << aCorners[1] << ' ' << aCorners[2];
        if (bRegions)
            file << ' ' << plainNumberText(mesh.vRegions[mesh.regionOf(t)].number);
        file << '\n';
    }
}

void writeEdge(const MeshData& mesh, OutputFile& file)
{
    std::vector<MeshEdge> vEdges = collectMeshEdges(mesh);
    file << kCreator << vEdges.size() << " 1\n";
    for (std::size_t i = 0; i < vEdges.size(); ++i)
        file << i << ' ' << vEdges[i].from << ' ' << vEdges[i].to << ' '
             << borderMarker(vEdges[i].marker, vEdges[i].bBorder) << '\n';
}

void writePoly(const MeshData& mesh, OutputFile& file)
{
    std::size_t numConstraints = static_cast<std::size_t>(std::count_if(
        mesh.vEdges.begin(), mesh.vEdges.end(), [](const MeshData::Edge& edge) { return edge.bConstraint; }));
    file << kCreator << "# The points are in the .node file\n0 2 0 1\n" << numConstraints << " 1\n";
    std::size_t number = 0;
    for (const MeshData::Edge& edge : mesh.vEdges)
        if (edge.bConstraint)
            file << number++ << ' ' << edge.from << ' ' << edge.to << ' ' << edge.marker << '\n';
    file << "0\n";
}

} // namespace quor2d_tool
