#pragma once

#include "formats/MeshEdges.h"
#include "formats/Scene.h"

#include <array>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

namespace quor2d_tool
{

/// Smallest, mean and largest of some values.
struct Range {
    double low = 0.0;
    double mean = 0.0;
    double high = 0.0;
};

/// Counts and measures of a mesh. Angles in degrees, everything else in units of the coordinates.
struct MeshStatistics {
    static constexpr std::size_t kNumBins = 12;
    static constexpr double kBinWidth = 60.0 / kNumBins; // no triangle has a smallest angle above 60

    std::size_t numVertices = 0;
    std::size_t numTriangles = 0;
    std::size_t numEdges = 0;
    std::size_t numBorderEdges = 0;
    std::size_t numConstraintEdges = 0;
    std::size_t numRegions = 0;
    Coord low;
    Coord high;
    double smallestAngle = 0.0;
    double largestAngle = 0.0;
    Range lengths;
    Range areas;
    double totalArea = 0.0;
    std::array<std::size_t, kNumBins> aSmallestAngles{}; ///< how many triangles have their smallest angle in a bin
};

/// @param vEdges  as collectMeshEdges gives them
MeshStatistics measureMesh(const MeshData& mesh, const std::vector<MeshEdge>& vEdges);

std::string statisticsText(const MeshStatistics& statistics);
nlohmann::ordered_json statisticsJson(const MeshStatistics& statistics);

/// "low.x low.y .. high.x high.y"
std::string boxText(const Coord& low, const Coord& high);

} // namespace quor2d_tool
