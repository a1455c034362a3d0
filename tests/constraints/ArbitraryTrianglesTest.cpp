#include "tests/constraints/Scene.h"

#include <algorithm>
#include <array>
#include <limits>
#include <set>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

using Corners = std::array<std::pair<double, double>, 3>; // smallest first, the rest in order

Corners makeCorners(const Point2& p0, const Point2& p1, const Point2& p2)
{
    Corners corners = {std::make_pair(p0.x(), p0.y()), std::make_pair(p1.x(), p1.y()), std::make_pair(p2.x(), p2.y())};
    std::rotate(corners.begin(), std::min_element(corners.begin(), corners.end()), corners.end());
    return corners;
}

std::set<Corners> trianglesOf(const Quor_2D& dt)
{
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    std::set<Corners> sCorners;
    for (const Triangle2* pT : vTriangles)
        sCorners.insert(makeCorners(*pT->getCorner(0), *pT->getCorner(1), *pT->getCorner(2)));
    return sCorners;
}

std::string create(Quor_2D& dt, const std::vector<Point2>& vPoints)
{
    CapturedOutput output;
    dt.createArbitraryTriangles(vPoints, AcceptExperimentalFeature());
    return output.stop();
}

std::string errorReport(const std::string& text)
{
    return "\n      [Quor2D-Message] Dt2::createArbitraryTriangles(..), ERROR: " + text + "\n\n";
}

} // namespace

TEST(ArbitraryTriangles, GivenTrianglesAreKeptThoughNotDelaunay)
{
    // The long diagonal of a flat quadrilateral, and a hole; some clockwise.
    const Point2 a(0, 0), b(10, 0), c(5, 1), d(5, -1), e(12, 4);
    const std::vector<Point2> vPoints = {a, b, c, a, b, d, b, e, c};
    Quor_2D dt;
    EXPECT_EQ(create(dt, vPoints), "");
    EXPECT_EQ(dt.numberOfPoints(), 9u);
    EXPECT_TRUE(dt.is2D());
    const std::set<Corners> sTriangles = trianglesOf(dt);
    EXPECT_EQ(sTriangles.count(makeCorners(a, b, c)), 1u);
    EXPECT_EQ(sTriangles.count(makeCorners(a, d, b)), 1u);
    EXPECT_EQ(sTriangles.count(makeCorners(b, e, c)), 1u);
    MeshCheckOptions options;
    options.bDelaunay = false;
    expectValid(dt, options);
    EXPECT_EQ(create(dt, vPoints), errorReport("This method requires an empty triangulation"));
    EXPECT_EQ(dt.numberOfPoints(), 9u);

    // The object's own box and keys are set: it can be used like any other.
    const Triangle2* const pT = dt.locate(Point2(5, 0.5));
    ASSERT_NE(pT, nullptr);
    EXPECT_EQ(makeCorners(*pT->getCorner(0), *pT->getCorner(1), *pT->getCorner(2)), makeCorners(a, b, c));
    EXPECT_EQ(dt.locate(Point2(1000, 0)), nullptr);
    dt.insert(uniformPoints(500, 61));
    dt.insert(Point2(5, 0));
    dt.insert(Point2(100, 100));
    expectValid(dt, options);
}

TEST(ArbitraryTriangles, MisuseChangesNothing)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    Quor_2D dt;
    for (const std::size_t n : {std::size_t(0), std::size_t(4), std::size_t(5)})
        EXPECT_EQ(create(dt, std::vector<Point2>(n, Point2(1, 2))), errorReport("3 points per triangle please!"));
    EXPECT_EQ(create(dt, {Point2(0, 0), Point2(1, 1), Point2(2, 2)}),
              errorReport("all triangles have zero area, nothing changed"));
    EXPECT_EQ(create(dt, {Point2(0, 0), Point2(1, 0), Point2(0, nan)}),
              errorReport("a point has a non-finite coordinate, nothing changed"));
    EXPECT_EQ(dt.numberOfPoints(), 0u);
    EXPECT_FALSE(dt.is2D());
}

TEST(ArbitraryTriangles, ZeroAreaAndCrossingTrianglesAreReported)
{
    Quor_2D dt;
    const std::string text = create(dt, {Point2(0, 0), Point2(4, 0), Point2(2, 4),  // crossed by the next one
                                         Point2(0, 3), Point2(2, -1), Point2(4, 3), //
                                         Point2(9, 0), Point2(9, 1), Point2(9, 7)});
    EXPECT_EQ(countOf(text, "WARNING: triangles of zero area have been left out: 1"), 1u);
    EXPECT_EQ(countOf(text, "WARNING: constraint segments cross, both are split"), 6u);
    EXPECT_EQ(countOf(text, "ERROR: triangles that others cross or reach into have been divided: 2"), 1u);
    MeshCheckOptions options;
    options.bDelaunay = false;
    expectValid(dt, options);
    EXPECT_EQ(dt.numberOfPoints(), 6u + 6u + 4u);
}

TEST(ArbitraryTriangles, WholeMeshesCanBeCopied)
{
    Quor_2D source;
    source.insert(uniformPoints(2000, 71));
    std::vector<Triangle2*> vTriangles;
    source.getTrianglePointers(vTriangles);
    std::vector<Point2> vPoints;
    for (const Triangle2* pT : vTriangles)
        for (int i = 0; i < 3; ++i)
            vPoints.push_back(*pT->getCorner(i));
    Quor_2D copy;
    EXPECT_EQ(create(copy, vPoints), "");
    const std::set<Corners> sSource = trianglesOf(source), sCopy = trianglesOf(copy);
    EXPECT_TRUE(std::includes(sCopy.begin(), sCopy.end(), sSource.begin(), sSource.end()));
    expectValid(copy, [] {
        MeshCheckOptions options;
        options.bDelaunay = false;
        return options;
    }());
}
