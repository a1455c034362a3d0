#pragma once

#include "tests/support/PointSets.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace differential
{

using ZELK_QUOR2D::Point2;

struct Cloud {
    std::string name;
    std::vector<Point2> vPoints;
    bool bTies; ///< four points may lie on a circle
};

inline Cloud jitteredLattice(int side, std::uint64_t seed)
{
    ZELK_QUOR2D::test::Uniform u(seed);
    Cloud cloud{"jittered lattice", {}, false};
    for (int j = 0; j < side; ++j)
        for (int i = 0; i < side; ++i) {
            const double x = i + u.in(-1e-7, 1e-7);
            cloud.vPoints.emplace_back(x, j + u.in(-1e-7, 1e-7));
        }
    return cloud;
}

/// Clusters whose widths span ten orders of magnitude.
inline Cloud clusters(int numClusters, int pointsEach, std::uint64_t seed)
{
    ZELK_QUOR2D::test::Uniform u(seed);
    Cloud cloud{"clusters", {}, false};
    for (int c = 0; c < numClusters; ++c) {
        const double x = u.in(-100, 100), y = u.in(-100, 100), width = std::pow(10.0, u.in(-10, 1));
        for (int i = 0; i < pointsEach; ++i) {
            const double dx = width * (u() + u() + u() - 1.5);
            cloud.vPoints.emplace_back(x + dx, y + width * (u() + u() + u() - 1.5));
        }
    }
    return cloud;
}

/// One country per file, in decimal degrees: ties and duplicates occur.
inline std::vector<Cloud> realClouds()
{
    std::vector<Cloud> vClouds;
    for (const auto& entry : std::filesystem::directory_iterator(QUOR2D_EXAMPLE_DATA)) {
        if (entry.path().extension() != ".txt")
            continue;
        Cloud cloud{entry.path().stem().string(), {}, true};
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            std::istringstream fields(line);
            double x, y;
            if (fields >> x >> y)
                cloud.vPoints.emplace_back(x, y);
        }
        vClouds.push_back(cloud);
    }
    return vClouds;
}

inline std::vector<Cloud> allClouds()
{
    std::vector<Cloud> vClouds = realClouds();
    vClouds.push_back({"uniform", ZELK_QUOR2D::test::uniformPoints(20000, 1), false});
    vClouds.push_back(jitteredLattice(120, 2));
    vClouds.push_back(clusters(40, 400, 3));
    vClouds.push_back({"grid", ZELK_QUOR2D::test::gridPoints(40, 40), true});
    vClouds.push_back({"near circle", ZELK_QUOR2D::test::circlePoints(2000), false});
    return vClouds;
}

} // namespace differential
