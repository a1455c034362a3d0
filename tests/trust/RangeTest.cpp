// One difficult cloud at every magnitude that doubles have. docs/robustness.md shows the table.
#include "tests/output/OutputTestSupport.h"
#include "tests/support/ConstraintCheck.h"
#include "tests/support/MeshCheck.h"
#include "tests/support/PointSets.h"
#include "tests/trust/MeshSet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

using namespace ZELK_QUOR2D;

namespace
{

// 292 points below 16: a grid, a circle, a line of slope 1/3 and a cluster of neighbouring doubles, all but for the
// grid degenerate only up to rounding.
std::vector<Point2> difficultCloud()
{
    std::vector<Point2> vPoints = test::gridPoints(10, 10);
    for (const Point2& p : test::circlePoints(96, 4.0))
        vPoints.emplace_back(p.x() + 4.5, p.y() + 4.5);
    for (int i = 0; i < 64; ++i)
        vPoints.emplace_back(i / 5.0, i / 15.0);
    const double x = 0.7, y = 11.3;
    for (int i = 0; i < 32; ++i)
        vPoints.emplace_back(x + (i % 8) * 0x1p-53, y + (i / 8) * 0x1p-49);
    return vPoints;
}

std::vector<Point2> scaled(const std::vector<Point2>& vPoints, int exponent)
{
    std::vector<Point2> vScaled;
    for (const Point2& p : vPoints)
        vScaled.emplace_back(std::ldexp(p.x(), exponent), std::ldexp(p.y(), exponent));
    return vScaled;
}

std::size_t numberOfPlaces(const std::vector<Point2>& vPoints)
{
    const std::set<Point2> sPlaces(vPoints.begin(), vPoints.end());
    return sPlaces.size();
}

// Batch, single points and removal of a half, all checked.
void expectValidInEveryWay(const std::vector<Point2>& vPoints)
{
    const std::size_t numPlaces = numberOfPlaces(vPoints);
    Quor_2D batch, single;
    batch.insert(vPoints);
    ASSERT_TRUE(test::isValidMesh(batch));
    EXPECT_EQ(batch.numberOfPoints(), numPlaces);
    std::vector<Point2*> vHandles;
    for (const Point2& p : vPoints)
        vHandles.push_back(single.insert(p));
    ASSERT_TRUE(test::isValidMesh(single));
    EXPECT_EQ(single.numberOfTriangles(), batch.numberOfTriangles());
    const std::set<Point2*> sHandles(vHandles.begin(), vHandles.end());
    EXPECT_EQ(sHandles.size(), numPlaces);
    bool bRemove = false;
    for (Point2* pVtx : sHandles)
        if ((bRemove = !bRemove) && single.numberOfTriangles() > 0)
            single.remove(pVtx);
    ASSERT_TRUE(test::isValidMesh(single));
    EXPECT_TRUE(single.checkValidity(true, "range"));
}

} // namespace

TEST(Range, CloudAtEveryScale)
{
    CapturedOutput output;
    const std::vector<Point2> vCloud = difficultCloud();
    ASSERT_EQ(vCloud.size(), 292U);
    for (int exponent = -1080; exponent <= 1020; exponent += exponent < -1000 || exponent > 1000 ? 4 : 50) {
        SCOPED_TRACE(exponent);
        expectValidInEveryWay(scaled(vCloud, exponent));
        if (HasFatalFailure())
            return;
    }
}

// As long as no bit is lost the mesh is the same at every scale, ties included.
TEST(Range, ScaledCloudGivesTheSameMesh)
{
    const std::vector<Point2> vCloud = difficultCloud();
    Quor_2D reference;
    reference.insert(vCloud);
    const test::MeshSet expected = test::meshSetOf(reference);
    for (int exponent : {-960, -700, -540, -400, -266, -210, -60, 1, 64, 200, 255, 340, 500, 511, 900, 1019}) {
        Quor_2D dt;
        dt.insert(scaled(vCloud, exponent));
        const auto unscaled = [exponent](const Point2& p) {
            return test::Place(std::ldexp(p.x(), -exponent), std::ldexp(p.y(), -exponent));
        };
        EXPECT_EQ(test::meshSetOf(dt, unscaled), expected) << exponent;
    }
}

// Faults: products of lengths that overflow or vanish and then let a vertex far off pass for one on a segment.
TEST(Range, SegmentsAtEveryScale)
{
    CapturedOutput output;
    const std::vector<Point2> vCloud = difficultCloud();
    for (int exponent = -1068; exponent <= 1020; exponent += std::abs(exponent - 508) < 8 ? 1 : 12)
        for (ConstraintInsertionStrategy cis : {CIS_CONSTRAINED_DELAUNAY, CIS_CONFORMING_DELAUNAY}) {
            Quor_2D dt;
            dt.insert(scaled(vCloud, exponent));
            const std::vector<Point2> vEnds = scaled({{0, 0}, {9, 0}, {9, 9}, {0, 9}, {0, 0.37}, {9, 7.13}}, exponent);
            std::vector<ConstraintGraph2*> vGraphs;
            for (std::size_t i : {0u, 1u, 2u, 4u})
                vGraphs.push_back(dt.createConstraint({Segment2(vEnds[i], vEnds[i + 1])}, cis));
            dt.applyConstraintsAndZones();
            test::ConstraintCheckOptions options;
            options.maxDeviation = std::max(std::ldexp(1e-14, exponent), 0x1p-1071);
            ASSERT_EQ(test::findConstraintDefect(dt, vGraphs, options), "") << exponent << " " << cis;
        }
}

// What rounding to the offset makes of the cloud: many duplicates and collinear points.
TEST(Range, CloudFarFromTheOrigin)
{
    CapturedOutput output;
    for (double offset : {1e6, 1e8, 1e10, 1e12, 1e14, 1e15, -1e15, 1e17, 1e300}) {
        std::vector<Point2> vMoved;
        for (const Point2& p : difficultCloud())
            vMoved.emplace_back(p.x() + offset, p.y() - offset);
        SCOPED_TRACE(offset);
        expectValidInEveryWay(vMoved);
    }
}

// All neighbours of a place, at magnitudes where the spacing of doubles is different on both sides.
TEST(Range, NeighbouringDoubles)
{
    CapturedOutput output;
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (double center : {0.0, 1.0, 1.0 / 3.0, 0x1p52, 1e15, 0x1p-1022, 0x1p1000}) {
        std::vector<double> vValues = {center};
        for (int i = 0; i < 4; ++i) {
            vValues.push_back(std::nextafter(vValues.back(), infinity));
            vValues.insert(vValues.begin(), std::nextafter(vValues.front(), -infinity));
        }
        std::vector<Point2> vPoints;
        for (double x : vValues)
            for (double y : vValues)
                vPoints.emplace_back(x, y);
        SCOPED_TRACE(center);
        expectValidInEveryWay(vPoints);
    }
}

TEST(Range, MixtureOfAllMagnitudes)
{
    CapturedOutput output;
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        std::vector<Point2> vPoints = test::extremePoints(60, seed);
        vPoints.emplace_back(std::numeric_limits<double>::max(), -std::numeric_limits<double>::max());
        vPoints.emplace_back(-std::numeric_limits<double>::max(), std::numeric_limits<double>::max());
        vPoints.emplace_back(std::numeric_limits<double>::denorm_min(), -0.0);
        SCOPED_TRACE(seed);
        expectValidInEveryWay(vPoints);
    }
}
