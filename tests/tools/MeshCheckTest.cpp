#include "commands/MeshCheck.h"
#include "commands/MeshStatistics.h"

#include <cmath>
#include <gtest/gtest.h>

namespace quor2d_tool
{
namespace
{

using Corners = std::array<std::uint32_t, 3>;

MeshData meshOf(std::vector<Coord> vCoords, std::vector<Corners> vTriangles)
{
    MeshData mesh;
    mesh.vertices.vCoords = std::move(vCoords);
    mesh.vTriangles = std::move(vTriangles);
    return mesh;
}

std::string defectOf(MeshData mesh)
{
    return checkMesh(mesh).defect;
}

const std::vector<Coord> kSquare = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};

TEST(MeshCheck, SoundMeshesAreValid)
{
    EXPECT_EQ(defectOf(meshOf(kSquare, {{0, 1, 2}, {0, 2, 3}})), "");
    EXPECT_EQ(defectOf(meshOf({{0, 0}, {1, 0}, {1, 1}, {2, 2}, {1, 2}}, {{0, 1, 2}, {2, 3, 4}})), "")
        << "touching fans";
    EXPECT_EQ(defectOf(meshOf({{5, 5}, {0, 0}, {1, 0}, {0, 1}}, {{1, 2, 3}})), "") << "a vertex without triangles";

    MeshData clockwise = meshOf(kSquare, {{0, 2, 1}, {0, 3, 2}});
    MeshCheckResult result = checkMesh(clockwise);
    EXPECT_TRUE(result.bClockwise);
    EXPECT_EQ(result.defect, "");
}

// A square ring around a hole, and a triangle in the hole: the covering test meets 1 left of the hole's corner and 0
// left of the island's.
TEST(MeshCheck, IslandsInHolesAreValid)
{
    std::vector<Coord> vCoords = {{0, 0}, {9, 0}, {9, 9}, {0, 9}, {2, 2}, {7, 2},
                                  {7, 7}, {2, 7}, {4, 4}, {5, 4}, {4, 5}};
    std::vector<Corners> vTriangles = {{0, 1, 5}, {0, 5, 4}, {1, 2, 6}, {1, 6, 5}, {2, 3, 7},
                                       {2, 7, 6}, {3, 0, 4}, {3, 4, 7}, {8, 9, 10}};
    EXPECT_EQ(defectOf(meshOf(vCoords, vTriangles)), "");
    vCoords[8] = {1, 0.5}; // the island reaches over the ring
    EXPECT_NE(defectOf(meshOf(vCoords, vTriangles)), "");
}

TEST(MeshCheck, DefectsAreNamed)
{
    EXPECT_EQ(defectOf(meshOf(kSquare, {})), "there are no triangles");
    EXPECT_EQ(defectOf(meshOf(kSquare, {{0, 1, 1}})), "triangle 0 (vertices 0, 1, 1) has a corner twice");
    EXPECT_EQ(defectOf(meshOf({{0, 0}, {1, 0}, {0, 1}, {-0.0, 1}}, {{0, 1, 2}, {0, 1, 3}})),
              "vertices 2 and 3 (-0 1) have the same coordinates");
    EXPECT_EQ(defectOf(meshOf({{0, 0}, {1, 1}, {2, 2}, {0, 1}}, {{0, 1, 3}, {0, 1, 2}})),
              "triangle 1 (vertices 0, 1, 2) has no area");
    EXPECT_EQ(defectOf(meshOf(kSquare, {{0, 1, 2}, {0, 3, 2}})),
              "triangle 1 (vertices 0, 3, 2) runs clockwise, others do not");
    EXPECT_EQ(defectOf(meshOf({{0, 0}, {1, 0}, {0, 1}, {1, 1}}, {{0, 1, 2}, {0, 1, 3}})),
              "edge 0-1 has triangles that overlap, one of them triangle 1 (vertices 0, 1, 3)");
    EXPECT_EQ(defectOf(meshOf({{0, 0}, {2, 0}, {1, 1}, {1, 0}, {1.5, -1}, {0.5, -1}}, {{0, 1, 2}, {3, 5, 4}})),
              "vertex 3 (1 0) lies on the edge 0-1");
    EXPECT_EQ(defectOf(meshOf({{0, 0}, {2, 0}, {1, 2}, {1, 1}, {3, 1}, {2, 3}}, {{0, 1, 2}, {3, 4, 5}})).substr(0, 6),
              "edges ");
    MeshData mesh = meshOf(kSquare, {{0, 1, 2}, {0, 2, 3}});
    mesh.vEdges.push_back({1, 3, 0, true});
    EXPECT_EQ(defectOf(mesh), "the constraint 1-3 is no edge of a triangle");
}

// Faults: overlap that no border edge crosses: a triangle within another, and a fan that winds round its centre twice.
TEST(MeshCheck, CoveringTwiceIsFound)
{
    EXPECT_EQ(defectOf(meshOf({{0, 0}, {9, 0}, {0, 9}, {1, 1}, {2, 1}, {1, 2}}, {{0, 1, 2}, {3, 4, 5}})),
              "triangles overlap around vertex 3 (1 1)");
    EXPECT_EQ(defectOf(meshOf({{0, 0}, {9, 0}, {0, 9}, {2, 1}, {1, 2}}, {{0, 1, 2}, {0, 3, 4}})),
              "triangles overlap at vertex 0 (0 0)");

    std::vector<Coord> vCoords = {{0, 0}};
    std::vector<Corners> vTriangles;
    constexpr std::uint32_t kNumSpokes = 10;
    for (std::uint32_t i = 0; i < kNumSpokes; ++i) {
        double angle = 4 * 3.14159265358979 * i / kNumSpokes; // twice round
        vCoords.push_back({std::cos(angle) * (1 + 0.01 * i), std::sin(angle) * (1 + 0.01 * i)});
        vTriangles.push_back({0, i + 1, i + 1 == kNumSpokes ? 1 : i + 2});
    }
    EXPECT_NE(defectOf(meshOf(vCoords, vTriangles)), "");
}

TEST(MeshCheck, EmptyCirclesAreExact)
{
    // On one circle, but the last point is moved by a unit in the last place: inside or outside.
    for (auto [y, numBad] : {std::make_pair(5.0, 0), {std::nextafter(5.0, 0.0), 1}, {std::nextafter(5.0, 9.0), 0}}) {
        MeshData mesh = meshOf({{-5, 0}, {0, -5}, {5, 0}, {0, y}}, {{0, 1, 2}, {0, 2, 3}});
        EXPECT_EQ(checkMesh(mesh).numNonDelaunay, static_cast<std::size_t>(numBad)) << y;
        mesh.vEdges.push_back({2, 0, 0, true});
        MeshCheckResult result = checkMesh(mesh);
        EXPECT_EQ(result.numNonDelaunay, 0u) << "constraints may be any";
        EXPECT_EQ(result.numConstraintsNotDelaunay, static_cast<std::size_t>(numBad));
    }
}

// Fault: squares that overflow, or vanish, in the measures.
TEST(MeshCheck, MeasuresHoldInAllMagnitudes)
{
    for (double unit : {1.0, 1e-160, 1e150, 5e-320}) {
        MeshData mesh = meshOf({{0, 0}, {4 * unit, 0}, {0, 4 * unit}}, {{0, 1, 2}});
        MeshCheckResult result = checkMesh(mesh);
        ASSERT_EQ(result.defect, "");
        MeshStatistics statistics = measureMesh(mesh, result.vEdges);
        EXPECT_NEAR(statistics.smallestAngle, 45.0, 0.1) << unit;
        EXPECT_NEAR(statistics.largestAngle, 90.0, 0.1) << unit;
        EXPECT_NEAR(statistics.lengths.low / unit, 4.0, 0.01) << unit;
    }
}

} // namespace
} // namespace quor2d_tool
