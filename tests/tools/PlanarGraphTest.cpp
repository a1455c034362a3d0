#include "geometry/PlanarGraph.h"

#include "commands/SceneReport.h"
#include "geometry/ExactPredicates.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <set>

namespace quor2d_tool
{
namespace
{

Scene sceneOf(const std::vector<Coord>& vCoords, const std::vector<std::pair<int, int>>& vSegments)
{
    Scene scene;
    scene.points.vCoords = vCoords;
    for (auto [from, to] : vSegments)
        scene.vSegments.push_back({static_cast<std::uint32_t>(from), static_cast<std::uint32_t>(to), 0});
    return scene;
}

// Pairs of segments looked at one by one, without a tree.
void expectPlanar(const PlanarGraph& graph)
{
    auto at = [&](std::uint32_t v) { return graph.vCoords[v]; };
    for (std::size_t i = 0; i < graph.vSegments.size(); ++i) {
        const auto& s = graph.vSegments[i];
        for (std::uint32_t v = 0; v < graph.vCoords.size(); ++v)
            ASSERT_FALSE(v != s.from && v != s.to && orientation(at(s.from), at(s.to), at(v)) == 0 &&
                         inBoxOf(at(v), at(s.from), at(s.to)));
        for (std::size_t j = 0; j < i; ++j) {
            const auto& t = graph.vSegments[j];
            int a = orientation(at(s.from), at(s.to), at(t.from)), b = orientation(at(s.from), at(s.to), at(t.to));
            int c = orientation(at(t.from), at(t.to), at(s.from)), d = orientation(at(t.from), at(t.to), at(s.to));
            ASSERT_FALSE(a * b < 0 && c * d < 0) << i << " crosses " << j;
        }
    }
}

TEST(PlanarGraph, CrossingsTouchesAndOverlapsAreSplit)
{
    PlanarGraph cross = makePlanar(sceneOf({{0, 0}, {2, 2}, {0, 2}, {2, 0}}, {{0, 1}, {2, 3}}));
    EXPECT_EQ(cross.vSegments.size(), 4u);
    EXPECT_EQ(cross.numCrossings, 1u);
    EXPECT_TRUE(cross.vCoords.back() == (Coord{1, 1}));

    PlanarGraph lone = makePlanar(sceneOf({{0, 0}, {4, 4}, {1, 1}, {3, 3}, {1, 1}}, {{0, 1}}));
    EXPECT_EQ(lone.vSegments.size(), 3u);
    EXPECT_EQ(lone.vVertexOfPoint[4], lone.vVertexOfPoint[2]);

    PlanarGraph overlap = makePlanar(sceneOf({{0, 0}, {2, 0}, {1, 0}, {3, 0}}, {{0, 1}, {2, 3}, {1, 0}, {0, 0}}));
    ASSERT_EQ(overlap.vSegments.size(), 3u);
    std::size_t numSources = 0;
    for (const auto& s : overlap.vSegments)
        numSources += s.numSources;
    EXPECT_EQ(numSources, 2u + 3u + 1u) << "pieces know all lines they belong to";
}

// Faults: pairs missed by the tree; new contacts by rounded crossings left over.
TEST(PlanarGraph, RandomSegmentsBecomePlanar)
{
    std::mt19937 random(3);
    for (double unit : {1.0, 1e-3, 1e200, 1e-310}) {
        for (int grid : {4, 30, 1000000}) {
            std::uniform_int_distribution<int> pick(-grid, grid);
            std::vector<Coord> vCoords;
            std::vector<std::pair<int, int>> vSegments;
            for (int i = 0; i < 40; ++i) {
                vCoords.push_back({pick(random) * unit, pick(random) * unit});
                vCoords.push_back({pick(random) * unit, pick(random) * unit});
                vSegments.push_back({2 * i, 2 * i + 1});
            }
            expectPlanar(makePlanar(sceneOf(vCoords, vSegments)));
        }
    }
}

// Thirds are not doubles: lines that ought to meet in one point miss each other narrowly, and cross again and again
// where roundings follow each other. A ring that is cut in pieces must stay closed all the same.
TEST(PlanarGraph, NearlyCommonCrossingsKeepRingsClosed)
{
    std::mt19937 random(11);
    std::uniform_int_distribution<int> pick(0, 30);
    for (int round = 0; round < 150; ++round) {
        Scene scene;
        for (std::uint32_t polygon = 0; polygon < 3; ++polygon) {
            scene.addPolygon(1);
            for (int i = 0; i < 12; ++i)
                scene.vRingVertices.push_back(scene.addPoint(pick(random) / 3.0, pick(random) / 3.0));
            scene.addRing(false);
        }
        PlanarGraph graph = makePlanar(scene);
        if (round < 10)
            expectPlanar(graph);
        std::vector<std::array<int, 3>> vDegrees(graph.vCoords.size(), {0, 0, 0});
        for (const auto& s : graph.vSegments)
            for (std::uint32_t i = s.firstSource; i < s.firstSource + s.numSources; ++i) {
                ++vDegrees[s.from][graph.vSources[i]];
                ++vDegrees[s.to][graph.vSources[i]];
            }
        for (const auto& aDegrees : vDegrees)
            for (int degree : aDegrees)
                ASSERT_EQ(degree % 2, 0) << "round " << round;
    }
}

// Many lines nearly through one point: crossings fall on the same and on neighbouring doubles.
TEST(PlanarGraph, PencilsOfLinesEnd)
{
    std::vector<Coord> vCoords;
    std::vector<std::pair<int, int>> vSegments;
    for (int i = 0; i < 60; ++i) {
        double angle = 0.05 * i;
        Coord d{std::cos(angle), std::sin(angle)};
        vCoords.push_back({1e8 + d.x, 1e8 + d.y});
        vCoords.push_back({1e8 - d.x, 1e8 - d.y});
        vSegments.push_back({2 * i, 2 * i + 1});
    }
    expectPlanar(makePlanar(sceneOf(vCoords, vSegments)));
}

TEST(SceneReport, CountsContactsAndRings)
{
    Scene scene = sceneOf({{0, 0}, {4, 0}, {0, 4}, {0, 0}, {9, 9}, {9, 9}, {-1, 1}, {3, -1}, {2, 0}},
                          {{0, 1}, {1, 2}, {2, 3}, {4, 5}, {6, 7}, {1, 0}});
    SceneReport report = inspectScene(scene);
    EXPECT_EQ(report.numDuplicates, 2u);
    EXPECT_EQ(report.numNullSegments, 1u);
    EXPECT_EQ(report.numRepeatedSegments, 1u);
    EXPECT_EQ(report.numClosedLines, 1u);
    EXPECT_EQ(report.numCrossings, 2u);
    EXPECT_EQ(report.numTouches, 1u) << "a lone point on a segment";
}

TEST(ExactPredicates, NeighbouringDoublesAreTold)
{
    double up = std::nextafter(0.5, 1.0), down = std::nextafter(0.5, 0.0);
    EXPECT_EQ(orientation({12, 12}, {24, 24}, {0.5, 0.5}), 0);
    EXPECT_EQ(orientation({12, 12}, {24, 24}, {0.5, up}), 1);
    EXPECT_EQ(orientation({12, 12}, {24, 24}, {0.5, down}), -1);
    EXPECT_EQ(orientation({0, 0}, {1e308, 1e308}, {-1e308, -1e308}), 0);
    EXPECT_EQ(orientation({0, 0}, {5e-324, 0}, {0, 5e-324}), 1);
    EXPECT_EQ(inCircle({1e-320, 0}, {0, 1e-320}, {-1e-320, 0}, {0, -1e-320}), 0);
    EXPECT_EQ(inCircle({1, 0}, {0, 1}, {-1, 0}, {5e-324, 0}), 1);
    Coord third = lineCrossing({0, 0}, {1, 1}, {0, 2}, {4, -6}); // where x = 2 / 3: rounded up
    EXPECT_EQ(third.x, 2.0 / 3.0);
    EXPECT_EQ(third.y, 2.0 / 3.0);
    EXPECT_EQ(inCircle({1e200, 0}, {0, 1e200}, {-1e200, 0}, {0, -std::nextafter(1e200, 2e200)}), -1);
}

} // namespace
} // namespace quor2d_tool
