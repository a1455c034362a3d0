#include "formats/MeshWriters.h"
#include "formats/NumberText.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

namespace quor2d_tool
{
namespace
{

// A JSON text for a name of any bytes.
std::string jsonText(const std::string& text)
{
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

class GeoJsonWriter
{
public:
    GeoJsonWriter(const MeshData& rMesh, OutputFile& rFile) : mesh(rMesh), file(rFile)
    {
        for (const MeshData::Region& region : mesh.vRegions)
            vRegionTexts.push_back(plainNumberText(region.number) +
                                   (region.name.empty() ? "" : ",\"name\":" + jsonText(region.name)));
        const auto& vColumns = mesh.vertices.vAttributeNames;
        heightColumn =
            static_cast<std::size_t>(std::find(vColumns.begin(), vColumns.end(), kHeightName) - vColumns.begin());
    }

    void write()
    {
        file << "{\"type\":\"FeatureCollection\",\"features\":[";
        for (std::size_t t = 0; t < mesh.vTriangles.size(); ++t) {
            beginFeature();
            writeTriangle(t);
        }
        for (const MeshData::Edge& edge : mesh.vEdges) {
            beginFeature();
            writeEdge(edge);
        }
        file << "\n]}\n";
    }

private:
    void beginFeature()
    {
        file << (bFirst ? "\n" : ",\n") << "{\"type\":\"Feature\",\"properties\":{";
        bFirst = false;
    }

    void writeTriangle(std::size_t t)
    {
        const auto& aCorners = mesh.vTriangles[t];
        file << "\"triangle\":" << t;
        if (!mesh.vRegions.empty())
            file << ",\"region\":" << vRegionTexts[mesh.regionOf(t)];
        writeNumbers(aCorners.data(), 3);
        file << "},\"geometry\":{\"type\":\"Polygon\",\"coordinates\":[[";
        for (std::uint32_t corner : aCorners) {
            writePosition(corner);
            file << ',';
        }
        writePosition(aCorners[0]);
        file << "]]}}";
    }

    void writeEdge(const MeshData::Edge& edge)
    {
        const std::uint32_t aEnds[] = {edge.from, edge.to};
        file << "\"marker\":" << edge.marker << ",\"constraint\":" << (edge.bConstraint ? "true" : "false");
        writeNumbers(aEnds, 2);
        file << "},\"geometry\":{\"type\":\"LineString\",\"coordinates\":[";
        writePosition(edge.from);
        file << ',';
        writePosition(edge.to);
        file << "]}}";
    }

    void writeNumbers(const std::uint32_t* pVertices, std::size_t count)
    {
        if (mesh.vInputNumbers.empty())
            return;
        file << ",\"vertices\":[";
        for (std::size_t i = 0; i < count; ++i) {
            std::int64_t number = mesh.vInputNumbers[pVertices[i]];
            if (i > 0)
                file << ',';
            if (number == MeshData::kNewVertex)
                file << "null";
            else
                file << number;
        }
        file << ']';
    }

    void writePosition(std::uint32_t vertex)
    {
        const Coord& c = mesh.vertices.vCoords[vertex];
        std::size_t numColumns = mesh.vertices.vAttributeNames.size();
        file << '[';
        writeNumber(c.x);
        file << ',';
        writeNumber(c.y);
        if (heightColumn < numColumns) {
            file << ',';
            writeNumber(mesh.vertices.vAttributes[vertex * numColumns + heightColumn]);
        }
        file << ']';
    }

    // Many readers take "-0" for a whole number and lose its sign.
    void writeNumber(double value)
    {
        if (value == 0.0 && std::signbit(value))
            file << "-0.0";
        else
            file << value;
    }

    const MeshData& mesh;
    OutputFile& file;
    std::vector<std::string> vRegionTexts;
    std::size_t heightColumn = 0;
    bool bFirst = true;
};

} // namespace

void writeGeoJson(const MeshData& mesh, OutputFile& file)
{
    GeoJsonWriter(mesh, file).write();
}

} // namespace quor2d_tool
