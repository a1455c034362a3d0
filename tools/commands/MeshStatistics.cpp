#include "commands/MeshStatistics.h"

#include "formats/NumberText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <nlohmann/json.hpp>

namespace quor2d_tool
{
namespace
{

constexpr double kDegrees = 180.0 / 3.14159265358979323846;

// Collects a range; the measures are taken in a scale in which products neither overflow nor vanish.
class RangeCollector
{
public:
    void add(double value)
    {
        low = std::min(low, value);
        high = std::max(high, value);
        sum += value;
        ++count;
    }
    Range range(int exponent) const
    {
        if (count == 0)
            return {};
        return {std::ldexp(low, exponent), std::ldexp(sum / static_cast<double>(count), exponent),
                std::ldexp(high, exponent)};
    }
    double total(int exponent) const { return std::ldexp(sum, exponent); }

private:
    double low = std::numeric_limits<double>::infinity();
    double high = 0.0;
    double sum = 0.0;
    std::size_t count = 0;
};

class MeshMeasurement
{
public:
    explicit MeshMeasurement(const MeshData& rMesh) : mesh(rMesh) {}

    MeshStatistics measure(const std::vector<MeshEdge>& vEdges)
    {
        findBox();
        for (const auto& aCorners : mesh.vTriangles)
            measureTriangle(aCorners);
        RangeCollector lengths;
        for (const MeshEdge& edge : vEdges) {
            Coord v = difference(edge.from, edge.to);
            lengths.add(std::hypot(v.x, v.y));
            statistics.numBorderEdges += edge.bBorder;
            statistics.numConstraintEdges += edge.bConstraint;
        }
        statistics.numVertices = mesh.vertices.size();
        statistics.numTriangles = mesh.vTriangles.size();
        statistics.numEdges = vEdges.size();
        statistics.lengths = lengths.range(scale);
        statistics.areas = areas.range(2 * scale);
        statistics.totalArea = areas.total(2 * scale);
        countRegions();
        return statistics;
    }

private:
    void findBox()
    {
        const auto& vCoords = mesh.vertices.vCoords;
        if (vCoords.empty())
            return;
        Coord low = vCoords[0], high = vCoords[0];
        for (const Coord& c : vCoords) {
            low = {std::min(low.x, c.x), std::min(low.y, c.y)};
            high = {std::max(high.x, c.x), std::max(high.y, c.y)};
        }
        statistics.low = low;
        statistics.high = high;
        double extent = std::max(high.x / 2 - low.x / 2, high.y / 2 - low.y / 2);
        scale = extent > 0 ? std::ilogb(extent) : 0;
    }

    // From a to b, divided by the scale; in halves, so that nothing overflows on the way.
    Coord difference(std::uint32_t a, std::uint32_t b) const
    {
        const Coord& p = mesh.vertices.vCoords[a];
        const Coord& q = mesh.vertices.vCoords[b];
        bool bLarge = scale > 1000;
        if (bLarge)
            return {std::ldexp(q.x / 2 - p.x / 2, 1 - scale), std::ldexp(q.y / 2 - p.y / 2, 1 - scale)};
        return {std::ldexp(q.x - p.x, -scale), std::ldexp(q.y - p.y, -scale)};
    }

    void measureTriangle(const std::array<std::uint32_t, 3>& aCorners)
    {
        double smallest = 180.0;
        for (std::size_t i = 0; i < 3; ++i) {
            Coord u = difference(aCorners[i], aCorners[(i + 1) % 3]);
            Coord v = difference(aCorners[i], aCorners[(i + 2) % 3]);
            double cross = std::abs(u.x * v.y - u.y * v.x);
            double angle = std::atan2(cross, u.x * v.x + u.y * v.y) * kDegrees;
            smallest = std::min(smallest, angle);
            statistics.largestAngle = std::max(statistics.largestAngle, angle);
            if (i == 0)
                areas.add(cross / 2);
        }
        bool bFirst = statistics.numTriangles++ == 0;
        statistics.smallestAngle = bFirst ? smallest : std::min(statistics.smallestAngle, smallest);
        std::size_t bin = static_cast<std::size_t>(smallest / MeshStatistics::kBinWidth);
        ++statistics.aSmallestAngles[std::min(bin, MeshStatistics::kNumBins - 1)];
    }

    void countRegions()
    {
        std::vector<char> vMet(mesh.vRegions.size(), 0);
        for (std::uint32_t region : mesh.vTriangleRegions)
            vMet[region] = 1;
        for (std::size_t r = 1; r < vMet.size(); ++r)
            statistics.numRegions += vMet[r];
    }

    const MeshData& mesh;
    MeshStatistics statistics;
    RangeCollector areas;
    int scale = 0; // lengths are measured in units of 2 to this
};

std::string line(const char* pLabel, const std::string& text)
{
    char aLabel[16];
    std::snprintf(aLabel, sizeof aLabel, "%-10s", pLabel);
    return aLabel + text + '\n';
}

std::string shortNumber(double value)
{
    char aText[32];
    std::snprintf(aText, sizeof aText, "%.6g", value);
    return aText;
}

std::string rangeText(const Range& range)
{
    return shortNumber(range.low) + " to " + shortNumber(range.high) + ", mean " + shortNumber(range.mean);
}

std::string histogramText(const MeshStatistics& statistics)
{
    constexpr std::size_t kBarLength = 50;
    std::size_t highest = *std::max_element(statistics.aSmallestAngles.begin(), statistics.aSmallestAngles.end());
    std::string text = "smallest angle of each triangle, in degrees\n";
    for (std::size_t bin = 0; bin < MeshStatistics::kNumBins; ++bin) {
        std::size_t count = statistics.aSmallestAngles[bin];
        char aHead[64];
        std::snprintf(aHead, sizeof aHead, "%4.0f -%3.0f %10zu ", static_cast<double>(bin) * MeshStatistics::kBinWidth,
                      static_cast<double>(bin + 1) * MeshStatistics::kBinWidth, count);
        std::size_t length = highest == 0 ? 0 : (count * kBarLength + highest - 1) / highest;
        std::string row = aHead + std::string(length, '#');
        text += row.substr(0, row.find_last_not_of(' ') + 1) + '\n';
    }
    return text;
}

nlohmann::ordered_json rangeJson(const Range& range)
{
    return {{"min", range.low}, {"mean", range.mean}, {"max", range.high}};
}

} // namespace

MeshStatistics measureMesh(const MeshData& mesh, const std::vector<MeshEdge>& vEdges)
{
    return MeshMeasurement(mesh).measure(vEdges);
}

std::string boxText(const Coord& low, const Coord& high)
{
    return numberText(low.x) + " " + numberText(low.y) + " .. " + numberText(high.x) + " " + numberText(high.y);
}

std::string statisticsText(const MeshStatistics& statistics)
{
    std::string text = line("vertices", std::to_string(statistics.numVertices));
    text += line("triangles", std::to_string(statistics.numTriangles));
    text += line("edges", std::to_string(statistics.numEdges) + ", on the border " +
                              std::to_string(statistics.numBorderEdges) + ", constraints " +
                              std::to_string(statistics.numConstraintEdges));
    text += line("regions", std::to_string(statistics.numRegions));
    text += line("box", boxText(statistics.low, statistics.high));
    text += line("angles",
                 shortNumber(statistics.smallestAngle) + " to " + shortNumber(statistics.largestAngle) + " degrees");
    text += line("lengths", rangeText(statistics.lengths));
    text += line("areas", rangeText(statistics.areas) + ", total " + shortNumber(statistics.totalArea));
    return text + histogramText(statistics);
}

nlohmann::ordered_json statisticsJson(const MeshStatistics& statistics)
{
    return {{"vertices", statistics.numVertices},
            {"triangles", statistics.numTriangles},
            {"edges", statistics.numEdges},
            {"border_edges", statistics.numBorderEdges},
            {"constraint_edges", statistics.numConstraintEdges},
            {"regions", statistics.numRegions},
            {"box", {statistics.low.x, statistics.low.y, statistics.high.x, statistics.high.y}},
            {"min_angle", statistics.smallestAngle},
            {"max_angle", statistics.largestAngle},
            {"edge_length", rangeJson(statistics.lengths)},
            {"area", rangeJson(statistics.areas)},
            {"total_area", statistics.totalArea},
            {"smallest_angles", statistics.aSmallestAngles}};
}

} // namespace quor2d_tool
