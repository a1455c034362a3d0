#pragma once

#include "Quor_2D.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace ZELK_QUOR2D
{

class Dt2;

namespace test
{

/// What a mesh is expected to be.
struct MeshCheckOptions {
    /// Whether every circumcircle is empty of the corners across the triangle's edges.
    bool bDelaunay = true;

    /// Names the edges that are exempt from this, such as constraints; it may be asked with the ends in either order.
    std::function<bool(const Point2*, const Point2*)> isExemptEdge;
};

/// A brute-force check that shares no decision with the library: its arithmetic is its own.
///
/// Looks for: corners that are no live vertices; triangles that are not strictly counterclockwise; neighbours that are
/// dead or do not link back across the same edge; a vertex without incident triangle, or with one that it is no corner
/// of; two vertices at one place; a border that is not exactly the convex hull, collinear border vertices included; a
/// count of triangles other than 2n - h - 2; a circumcircle that is not empty. Without triangles: all vertices are
/// collinear and know no triangle. O(n log n).
///
/// @return a description of the first defect; empty for a valid mesh
std::string findMeshDefect(const std::vector<Triangle2*>& vTriangles, const std::vector<Point2*>& vVertices,
                           const MeshCheckOptions& options = MeshCheckOptions());

/// For EXPECT_TRUE and ASSERT_TRUE.
::testing::AssertionResult isValidMesh(const Quor_2D& dt, const MeshCheckOptions& options = MeshCheckOptions());
::testing::AssertionResult isValidMesh(const Dt2& dt, const MeshCheckOptions& options = MeshCheckOptions());

/// Adds a failure to the running test when the mesh has a defect.
void expectValid(const Quor_2D& dt, const MeshCheckOptions& options = MeshCheckOptions());
void expectValid(const Dt2& dt, const MeshCheckOptions& options = MeshCheckOptions());

/// Exact signs: +1 counterclockwise (q strictly inside the counterclockwise circle), 0, -1.
int orientationSign(const Point2& a, const Point2& b, const Point2& c);
int inCircleSign(const Point2& a, const Point2& b, const Point2& c, const Point2& q);

} // namespace test
} // namespace ZELK_QUOR2D
