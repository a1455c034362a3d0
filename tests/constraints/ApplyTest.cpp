#include "Quor_2D.h"
#include "tests/support/ConstraintCheck.h"
#include "tests/support/PointSets.h"

#include <algorithm>
#include <cmath>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

const char* const kVertexOnSegment = "pCSeg intersects an existing vertex";
const char* const kCrossing = "constraint segments cross, both are split";
const char* const kGivenUp = "giving up. Incorrect result!";

std::vector<Segment2> chain(const std::vector<Point2>& vPoints, bool bClosed)
{
    std::vector<Segment2> vSegments;
    for (std::size_t i = 1; i < vPoints.size(); ++i)
        vSegments.emplace_back(vPoints[i - 1], vPoints[i]);
    if (bClosed)
        vSegments.emplace_back(vPoints.back(), vPoints.front());
    return vSegments;
}

std::vector<Segment2> square(double x, double y, double size)
{
    return chain({Point2(x, y), Point2(x + size, y), Point2(x + size, y + size), Point2(x, y + size)}, true);
}

class Scene
{
public:
    ConstraintGraph2* add(const std::vector<Segment2>& vSegments, ConstraintInsertionStrategy cis)
    {
        vGraphs.push_back(dt.createConstraint(vSegments, cis));
        return vGraphs.back();
    }

    // Applies; applying again must change nothing and print nothing.
    std::string applyAndCheck(double maxDeviation = 1e-12, std::size_t maxMissing = 0)
    {
        CapturedOutput output;
        dt.applyConstraintsAndZones();
        const std::string text = output.stop();
        ConstraintCheckOptions options;
        options.maxDeviation = maxDeviation;
        options.maxMissing = maxMissing;
        expectConstraintsHold(dt, vGraphs, options);
        if (maxMissing == 0) {
            const unsigned int numPoints = dt.numberOfPoints();
            CapturedOutput again;
            dt.applyConstraintsAndZones();
            EXPECT_EQ(again.stop(), "");
            EXPECT_EQ(dt.numberOfPoints(), numPoints);
        }
        EXPECT_EQ(countOf(text, "BUG"), 0u) << text;
        EXPECT_EQ(countOf(text, "Non convex"), 0u) << text;
        return text;
    }

    void check(double maxDeviation = 1e-12)
    {
        ConstraintCheckOptions options;
        options.maxDeviation = maxDeviation;
        expectConstraintsHold(dt, vGraphs, options);
    }

    Quor_2D dt;
    std::vector<ConstraintGraph2*> vGraphs;
};

} // namespace

TEST(ConstraintApply, RandomCrossingSegments)
{
    for (int seed = 0; seed < 40; ++seed) {
        Uniform u(static_cast<std::uint64_t>(seed));
        Scene scene;
        scene.dt.insert(uniformPoints(u.below(200), static_cast<std::uint64_t>(seed) + 1000));
        std::vector<Segment2> vSegments;
        const int n = 1 + u.below(40);
        for (int i = 0; i < n; ++i) {
            const double x = u(), y = u(), x1 = u();
            vSegments.emplace_back(Point2(x, y), Point2(x1, u()));
        }
        scene.add(vSegments, CIS_CONSTRAINED_DELAUNAY);
        scene.applyAndCheck();
        if (::testing::Test::HasFailure())
            FAIL() << "seed " << seed;
    }
}

TEST(ConstraintApply, RandomMixed)
{
    for (int seed = 0; seed < 40; ++seed) {
        Uniform u(static_cast<std::uint64_t>(seed));
        Scene scene;
        scene.dt.insert(uniformPoints(u.below(100), static_cast<std::uint64_t>(seed) + 1000));
        for (int k = 0; k < 6; ++k) {
            std::vector<Segment2> vSegments;
            const int n = 1 + u.below(5);
            for (int i = 0; i < n; ++i) {
                const double x = u.below(20), y = u.below(20), x1 = u.below(20);
                vSegments.emplace_back(Point2(x, y), Point2(x1, u.below(20)));
            }
            CapturedOutput output;
            scene.add(vSegments, k % 2 ? CIS_CONSTRAINED_DELAUNAY : CIS_CONFORMING_DELAUNAY);
        }
        if (scene.dt.is2D())
            scene.applyAndCheck();
        if (::testing::Test::HasFailure())
            FAIL() << "seed " << seed;
    }
}

TEST(ConstraintApply, OverlappingSquares)
{
    Scene scene;
    scene.add(square(0, 0, 2), CIS_CONSTRAINED_DELAUNAY);
    scene.add(square(1, 1, 2), CIS_CONSTRAINED_DELAUNAY);
    const std::string text = scene.applyAndCheck(0.0);
    EXPECT_EQ(countOf(text, kCrossing), 2u);
    EXPECT_EQ(countOf(text, kVertexOnSegment) + countOf(text, kGivenUp), 0u);
}
