#include "formats/MeshWriters.h"
#include "formats/NumberText.h"

#include <cmath>

namespace quor2d_tool
{
namespace
{

constexpr int kVtkLine = 3;
constexpr int kVtkTriangle = 5;

std::string xmlText(const std::string& text)
{
    std::string result;
    for (char c : text) {
        if (c == '<')
            result += "&lt;";
        else if (c == '&')
            result += "&amp;";
        else if (c == '"')
            result += "&quot;";
        else
            result += c >= 0 && c < ' ' ? ' ' : c;
    }
    return result;
}

class VtuWriter
{
public:
    VtuWriter(const MeshData& rMesh, OutputFile& rFile) : mesh(rMesh), file(rFile) {}

    void write()
    {
        file << "<?xml version=\"1.0\"?>\n"
                "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\""
                " header_type=\"UInt64\">\n<UnstructuredGrid>\n<Piece NumberOfPoints=\""
             << mesh.vertices.size() << "\" NumberOfCells=\"" << mesh.vTriangles.size() + mesh.vEdges.size() << "\">\n";
        writePointData();
        writeCellData();
        writePoints();
        writeCells();
        file << "</Piece>\n</UnstructuredGrid>\n</VTKFile>\n";
    }

private:
    void beginArray(std::string_view type, const std::string& name, int numComponents = 1)
    {
        file << "<DataArray type=\"" << type << "\" Name=\"" << xmlText(name) << "\" NumberOfComponents=\""
             << numComponents << "\" format=\"ascii\">\n";
    }
    void endArray() { file << "</DataArray>\n"; }

    void writePointData()
    {
        const VertexTable& vertices = mesh.vertices;
        file << "<PointData>\n";
        if (!mesh.vInputNumbers.empty()) {
            beginArray("Int64", "input");
            for (std::int64_t number : mesh.vInputNumbers)
                file << number << '\n';
            endArray();
        }
        if (!vertices.vMarkers.empty()) {
            beginArray("Int32", "marker");
            for (int marker : vertices.vMarkers)
                file << marker << '\n';
            endArray();
        }
        std::size_t numColumns = vertices.vAttributeNames.size();
        for (std::size_t k = 0; k < numColumns; ++k) {
            beginArray("Float64", vertices.vAttributeNames[k]);
            for (std::size_t i = 0; i < vertices.size(); ++i)
                file << vertices.vAttributes[i * numColumns + k] << '\n';
            endArray();
        }
        file << "</PointData>\n";
    }

    // Lines have region 0, triangles have marker 0.
    void writeCellData()
    {
        bool bWhole = true;
        for (const MeshData::Region& region : mesh.vRegions)
            bWhole &= std::abs(region.number) < 2147483648.0 && region.number == std::floor(region.number);
        file << "<CellData>\n";
        beginArray(bWhole ? "Int32" : "Float64", "region");
        for (std::size_t t = 0; t < mesh.vTriangles.size(); ++t)
            file << (mesh.vRegions.empty() ? "0" : plainNumberText(mesh.vRegions[mesh.regionOf(t)].number)) << '\n';
        for (std::size_t i = 0; i < mesh.vEdges.size(); ++i)
            file << "0\n";
        endArray();
        beginArray("Int32", "marker");
        for (std::size_t t = 0; t < mesh.vTriangles.size(); ++t)
            file << "0\n";
        for (const MeshData::Edge& edge : mesh.vEdges)
            file << edge.marker << '\n';
        endArray();
        beginArray("UInt8", "constraint");
        for (std::size_t t = 0; t < mesh.vTriangles.size(); ++t)
            file << "0\n";
        for (const MeshData::Edge& edge : mesh.vEdges)
            file << (edge.bConstraint ? "1\n" : "0\n");
        endArray();
        file << "</CellData>\n";
    }

    void writePoints()
    {
        file << "<Points>\n";
        beginArray("Float64", "Points", 3);
        for (const Coord& c : mesh.vertices.vCoords)
            file << c.x << ' ' << c.y << " 0\n";
        endArray();
        file << "</Points>\n";
    }

    void writeCells()
    {
        file << "<Cells>\n";
        beginArray("Int64", "connectivity");
        for (const auto& aCorners : mesh.vTriangles)
            file << aCorners[0] << ' ' << aCorners[1] << ' ' << aCorners[2] << '\n';
        for (const MeshData::Edge& edge : mesh.vEdges)
            file << edge.from << ' ' << edge.to << '\n';
        endArray();
        beginArray("Int64", "offsets");
        std::size_t offset = 0;
        for (std::size_t t = 0; t < mesh.vTriangles.size(); ++t)
            file << (offset += 3) << '\n';
        for (std::size_t i = 0; i < mesh.vEdges.size(); ++i)
            file << (offset += 2) << '\n';
        endArray();
        beginArray("UInt8", "types");
        for (std::size_t t = 0; t < mesh.vTriangles.size(); ++t)
            file << kVtkTriangle << '\n';
        for (std::size_t i = 0; i < mesh.vEdges.size(); ++i)
            file << kVtkLine << '\n';
        endArray();
        file << "</Cells>\n";
    }

    const MeshData& mesh;
    OutputFile& file;
};

} // namespace

void writeVtu(const MeshData& mesh, OutputFile& file)
{
    VtuWriter(mesh, file).write();
}

} // namespace quor2d_tool
