#pragma once

#include "Quor_2D.h"
#include "tests/output/OutputTestSupport.h"
#include "tests/support/MeshCheck.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

// A 3 x 3 lattice holds most of what is degenerate: collinear triples, squares, duplicates on edges. It is small enough
// to try everything.
namespace small_worlds
{

using namespace ZELK_QUOR2D;

constexpr int kNumPlaces = 9;

/// The points of a lattice whose number is set in `subset`; `bend` in units in the last place moves the middle one.
inline std::vector<Point2> latticeSubset(unsigned int subset, double spacing = 1.0, double origin = 0.0, int bend = 0)
{
    std::vector<Point2> vPoints;
    for (int i = 0; i < kNumPlaces; ++i) {
        if (!(subset >> i & 1u))
            continue;
        double x = origin + spacing * (i % 3);
        for (int k = 0; i == 4 && k < std::abs(bend); ++k)
            x = std::nextafter(x, bend * std::numeric_limits<double>::infinity());
        vPoints.emplace_back(x, origin + spacing * (i / 3));
    }
    return vPoints;
}

/// Inserts the points one by one, then removes them from the first on, and looks at every mesh on the way.
inline void insertAndRemove(const std::vector<Point2>& vPoints)
{
    Quor_2D dt;
    std::vector<Point2*> vHandles;
    for (const Point2& p : vPoints) {
        vHandles.push_back(dt.insert(p));
        ASSERT_TRUE(test::isValidMesh(dt));
    }
    for (std::size_t i = 0; i < vPoints.size(); ++i) {
        ASSERT_EQ(*vHandles[i], vPoints[i]);
        ASSERT_EQ(dt.insert(vPoints[i]), vHandles[i]);
    }
    for (Point2* pVtx : vHandles) {
        if (dt.numberOfTriangles() == 0)
            break;
        dt.remove(pVtx);
        ASSERT_TRUE(test::isValidMesh(dt));
    }
}

} // namespace small_worlds
