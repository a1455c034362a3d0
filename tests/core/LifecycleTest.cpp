#include "Quor_2D.h"
#include "tests/support/MeshCheck.h"
#include "tests/support/PointSets.h"

#include <type_traits>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

static_assert(!std::is_copy_constructible<Quor_2D>::value && !std::is_copy_assignable<Quor_2D>::value,
              "a triangulation owns its mesh");

TEST(Lifecycle, NewObjectIsEmpty)
{
    Quor_2D dt;
    EXPECT_EQ(dt.numberOfPoints(), 0u);
    EXPECT_EQ(dt.numberOfTriangles(), 0u);
    EXPECT_FALSE(dt.is2D());
    EXPECT_EQ(dt.locate(Point2(0.0, 0.0)), nullptr);
    EXPECT_FALSE(dt.computeBoundingBox().isValid());
    EXPECT_EQ(dt.getName(), "");
    dt.setName("lake");
    dt.setName(dt.getName());
    EXPECT_EQ(dt.getName(), "lake");
    EXPECT_EQ(dt.getAdjacentTriangle(nullptr, nullptr), nullptr);
}

TEST(Lifecycle, AnyCapacityHintWorks)
{
    for (const unsigned int hint : {0u, 1u, 1000u, 5000000u, 4294967295u}) {
        Quor_2D dt(hint);
        dt.enableMultithreading();
        dt.insert(gridPoints(5, 5));
        EXPECT_EQ(dt.numberOfTriangles(), 32u);
        expectValid(dt);
    }
}

TEST(Lifecycle, QueriesAppendAndAdjacencyFollowsTheMesh)
{
    Quor_2D dt;
    dt.insert({{0.0, 0.0}, {4.0, 0.0}, {5.0, 4.0}, {0.0, 3.0}});
    std::vector<Triangle2*> vTriangles(1, nullptr);
    dt.getTrianglePointers(vTriangles);
    EXPECT_EQ(vTriangles.size(), 1u + dt.numberOfTriangles());
    std::vector<Point2*> vVertices(1, nullptr);
    dt.getVertexPointers(vVertices);
    ASSERT_EQ(vVertices.size(), 5u);
    int numEdges = 0;
    for (std::size_t i = 1; i < 5; ++i)
        for (std::size_t j = 1; j < i; ++j)
            if (const Triangle2* pT = dt.getAdjacentTriangle(vVertices[i], vVertices[j])) {
                ++numEdges;
                EXPECT_NE(pT->getIntraTriangleIndex(vVertices[i]), pT->getIntraTriangleIndex(vVertices[j]));
            }
    EXPECT_EQ(numEdges, 5);
    Point2 stranger(0.0, 0.0);
    EXPECT_EQ(dt.getAdjacentTriangle(&stranger, vVertices[1]), nullptr);
}
