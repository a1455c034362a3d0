#include "tests/refine/RefineTestSupport.h"

#include <array>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

struct Result {
    Measures measures;
    bool bStable; // a repeated call adds nothing
};

Result refineSharp(Region& region, double angle)
{
    region.apply();
    region.dt.refine(region.pZone, angle, 0.0, kNoLimit, true);
    Result result{measure(region.dt, region.pZone, angle), false};
    const auto sPlaces = placesOf(region.dt);
    region.dt.refine(region.pZone, angle, 0.0, kNoLimit, true);
    result.bStable = placesOf(region.dt) == sPlaces;
    ConstraintCheckOptions options;
    options.maxDeviation = 1e-12;
    expectConstraintsHold(region.dt, region.vGraphs, options);
    return result;
}

Result refineWedge(double degrees, double length0, double length1, double angle)
{
    Region region(box(0, 0, 1, 1));
    region.addSegments(wedge(degrees, length0, length1));
    return refineSharp(region, angle);
}

// In sixths, so that crossings are rounded.
Result refineSixths(const std::vector<std::array<int, 4>>& vConstrained,
                    const std::vector<std::array<int, 4>>& vConforming)
{
    const auto segmentsOf = [](const std::vector<std::array<int, 4>>& vSixths) {
        std::vector<Segment2> vSegments;
        for (const std::array<int, 4>& s : vSixths)
            vSegments.emplace_back(Point2(s[0] / 6.0, s[1] / 6.0), Point2(s[2] / 6.0, s[3] / 6.0));
        return vSegments;
    };
    Region region(box(-1, -1, 1, 1));
    region.addSegments(segmentsOf(vConstrained));
    region.cis = CIS_CONFORMING_DELAUNAY;
    region.addSegments(segmentsOf(vConforming));
    return refineSharp(region, 27);
}

} // namespace

// Fault: pieces at the corner are halved in turn without end. By the letter of the passes a wedge of five degrees makes
// 20,000 points and more. Legs of one length, and of lengths that halving cannot make equal.
TEST(SharpCorner, WedgesEndWithFewTriangles)
{
    for (const double second : {0.8, 0.53, 0.31, 0.7999}) {
        EXPECT_TRUE(refineWedge(5, 0.8, second, 20).bStable);
        EXPECT_EQ(refineWedge(5, 0.8, second, 20).measures.numBelowBound, 0u) << second;
        EXPECT_LT(refineWedge(5, 0.8, second, 20).measures.numTriangles, 150u);
        EXPECT_LE(refineWedge(5, 0.8, second, 27).measures.numBelowBound, 4u);
        EXPECT_LT(refineWedge(5, 0.8, second, 27).measures.numTriangles, 400u);

        const Result needle = refineWedge(1, 0.8, second, 27);
        EXPECT_TRUE(needle.bStable);
        EXPECT_LE(needle.measures.numBelowBound, 12u);
        EXPECT_LT(needle.measures.numTriangles, 1500u);
    }
    for (const double degrees : {10.0, 20.0, 30.0, 45.0, 59.0}) {
        const Result result = refineWedge(degrees, 0.8, 0.53, 27);
        EXPECT_TRUE(result.bStable);
        EXPECT_EQ(result.measures.numBelowBound, 0u) << degrees;
        EXPECT_LT(result.measures.numTriangles, 150u);
    }
}

// In a thin triangle alone nothing has to be done, and nothing is.
TEST(SharpCorner, ASqueezedTriangleStaysWhole)
{
    Region region({Point2(0, 0), Point2(1, 0), Point2(0.7, 0.01)});
    EXPECT_EQ(refineSharp(region, 30).measures.numTriangles, 1u);
}

TEST(SharpCorner, ManyOfThemAtOneVertexAndAlongAStar)
{
    Region spokes(box(-1, -1, 1, 1));
    std::vector<Segment2> vSpokes;
    for (int i = 0; i < 24; ++i) {
        const double direction = 0.01 + i * 3.14159265358979323846 / 12, length = 0.4 + 0.07 * (i * 7 % 5);
        vSpokes.emplace_back(Point2(0, 0), Point2(length * std::cos(direction), length * std::sin(direction)));
    }
    spokes.addSegments(vSpokes);
    const Result atVertex = refineSharp(spokes, 27);
    EXPECT_TRUE(atVertex.bStable);
    EXPECT_EQ(atVertex.measures.numBelowBound, 0u);

    // Corners down to about one degree.
    Region star(starPolygon(500, 0.3, 42));
    const Result alongStar = refineSharp(star, 27);
    EXPECT_TRUE(alongStar.bStable);
    EXPECT_LE(alongStar.measures.numBelowBound, 3u);
    EXPECT_LT(alongStar.measures.numTriangles, 6000u);
}

// Fault: pieces that meet below 60 degrees were left whole though the bound was lower; a triangle of 19 degrees stayed
// in the first polygon.
TEST(SharpCorner, CornersAboveTheBoundAreNoExcuse)
{
    Region region({Point2(0.3827, 0.1782), Point2(0.0001, 0.1540), Point2(-0.7589, 0.0567), Point2(-1.1223, -1.4867),
                   Point2(0.4239, -0.8579)});
    EXPECT_GE(refineSharp(region, 27).measures.worstAngle, 27.0 - 1e-9);

    for (const double degrees : {27.0, 30.0, 33.0, 40.0, 50.0, 59.0})
        for (const double second : {0.8, 0.53, 0.31, 0.7}) {
            const Result result = refineWedge(degrees, 0.8, second, 27);
            EXPECT_TRUE(result.bStable);
            EXPECT_EQ(result.measures.numBelowBound, 0u) << degrees << ", " << second;
        }
}

// Fault: a circumcentre went in next to a constraint that was not split for it afterwards; the sliver had one
// degree, in a star of 2,000 corners 0.08, at an input corner of six.
TEST(SharpCorner, NoSliversAlongSpikes)
{
    Region star(starPolygon(200, 0.3, 352));
    const Result result = refineSharp(star, 30);
    EXPECT_TRUE(result.bStable);
    EXPECT_LE(result.measures.numBelowBound, 1u);
    EXPECT_GE(result.measures.worstAngle, 15.0);
}

// Fault: segments that coincide but for rounding enclose triangles that no edges longer than 1e-16 can mend; the mesh
// grew until memory was used up.
TEST(SharpCorner, BordersThatCoincideButForRounding)
{
    const Result result =
        refineSixths({{3, 0, -1, 4}, {3, 1, -4, 4}, {-1, 4, -4, -4}}, {{-1, 4, 1, 2}, {-4, 4, -2, -3}});
    EXPECT_TRUE(result.bStable);
    EXPECT_LT(result.measures.numTriangles, 2000u);
}

// Fault: a repeated call took the refined mesh for the input, went below the edges at which the first one had stopped,
// and added as many vertices again.
TEST(SharpCorner, ARepeatedCallStopsWhereTheFirstDid)
{
    EXPECT_TRUE(
        refineSixths({{0, 4, 4, 2}, {-1, 3, 1, -1}, {0, 1, -2, 3}}, {{4, 2, -2, -4}, {1, -1, 4, 0}, {-2, 3, -4, -1}})
            .bStable);
}

// Splitting is what makes pieces even, so without it, and below the minimum length, they stay as they are.
TEST(SharpCorner, PiecesAreNotMadeEvenAgainstTheBounds)
{
    Region whole(box(0, 0, 1, 1));
    whole.addSegments(wedge(5, 0.8, 0.53));
    whole.apply();
    const std::size_t numPieces = alivePieces(whole.vGraphs).size();
    whole.dt.refine(whole.pZone, 27.0, 0.0, kNoLimit, false);
    EXPECT_EQ(alivePieces(whole.vGraphs).size(), numPieces);

    Region coarse(box(0, 0, 1, 1));
    coarse.addSegments(wedge(5, 0.8, 0.53));
    coarse.apply();
    coarse.dt.refine(coarse.pZone, 27.0, 0.1, kNoLimit, true);
    EXPECT_GE(measure(coarse.dt, coarse.pZone, 27.0).shortestPiece, 0.1 * (1.0 - 1e-12)) << "but for rounding";
}
