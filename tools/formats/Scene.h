#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace quor2d_tool
{

struct Coord {
    double x = 0.0;
    double y = 0.0;
};

inline bool operator==(const Coord& a, const Coord& b)
{
    return a.x == b.x && a.y == b.y;
}

/// Points with a row of attributes and a marker each, as far as the input has them.
struct VertexTable {
    std::vector<Coord> vCoords;
    std::vector<std::string> vAttributeNames;
    std::vector<double> vAttributes; ///< one row of vAttributeNames.size() values per point
    std::vector<int> vMarkers;       ///< empty, or one per point

    std::size_t size() const { return vCoords.size(); }
};

/// The attribute that heights are kept under.
inline constexpr const char* kHeightName = "z";

/// Gives a height to point `i`, the last one so far; the first height of a table makes a column of zeros for the
/// points before.
void setHeight(VertexTable& vertices, std::size_t i, double z);

/// Points, lines and polygons as read from a file, neither cleaned nor checked against each other.
///
/// A polygon is an outer ring and holes; rings are closed, the first vertex is not repeated. Polygons of one feature
/// make one region. Numbers of features count from 1 in file order.
struct Scene {
    static constexpr std::uint32_t kNoFeature = 0;

    struct Segment {
        std::uint32_t from = 0;
        std::uint32_t to = 0;
        int marker = 0;
    };
    struct Ring {
        std::size_t first = 0; ///< in vRingVertices
        std::size_t count = 0;
        std::uint32_t polygon = 0;
        bool bHole = false;
    };
    struct RegionPoint {
        Coord at;
        double number = 0.0;
        double maxArea = 0.0; ///< 0 where none is given
    };

    std::string name;
    VertexTable points;
    std::int64_t firstNumber = 0;     ///< the number that the input gives to point 0
    std::size_t numClosingPoints = 0; ///< points that only repeat the first one of a ring
    std::vector<Segment> vSegments;
    std::vector<std::uint32_t> vRingVertices;
    std::vector<Ring> vRings;                    ///< a polygon's outer ring comes first, then its holes
    std::vector<std::uint32_t> vPolygonFeatures; ///< the feature number of each polygon
    std::vector<std::string> vFeatureNames;      ///< of feature 1, 2, ...; empty where the input has none
    std::vector<Coord> vHolePoints;
    std::vector<RegionPoint> vRegionPoints;

    /// Appends a point.
    std::uint32_t addPoint(double x, double y);

    /// Appends a polygon without rings, or a ring to the last polygon; the ring takes the vertices appended to
    /// vRingVertices since the ring before.
    void addPolygon(std::uint32_t feature) { vPolygonFeatures.push_back(feature); }
    void addRing(bool bHole);
};

/// A triangle mesh as written to and read from files.
struct MeshData {
    static constexpr std::int64_t kNewVertex = -1;

    struct Region {
        double number = 0.0;
        std::string name;
    };
    struct Edge {
        std::uint32_t from = 0;
        std::uint32_t to = 0;
        int marker = 0;
        bool bConstraint = false; ///< false for a piece of the border that no segment asked for
    };

    std::string name;
    VertexTable vertices;
    std::vector<std::int64_t> vInputNumbers; ///< per vertex the number in the input, or kNewVertex; or empty
    std::int64_t firstNumber = 0;            ///< the smallest input number
    std::vector<std::array<std::uint32_t, 3>> vTriangles;
    std::vector<std::uint32_t> vTriangleRegions; ///< per triangle an index into vRegions; or empty
    std::vector<Region> vRegions;                ///< region 0 has the number 0: no region
    std::vector<Edge> vEdges;                    ///< constraint edges and the border, each once

    std::uint32_t regionOf(std::size_t triangle) const
    {
        return vTriangleRegions.empty() ? 0 : vTriangleRegions[triangle];
    }
};

/// Makes the regions of a mesh from one region number per triangle; nothing where there are no numbers.
void setTriangleRegions(MeshData& mesh, const std::vector<double>& vNumbers);

/// Counts stay below this, so that numbers of points fit the library's custom index.
inline constexpr std::size_t kMaxCount = 2147483647;

} // namespace quor2d_tool
