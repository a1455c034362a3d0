#pragma once

#include "Quor_2D.h"
#include "tests/support/ConstraintCheck.h"
#include "tests/support/PointSets.h"

#include <cmath>
#include <string>
#include <vector>

namespace ZELK_QUOR2D
{
namespace test
{

inline std::vector<Segment2> chain(const std::vector<Point2>& vPoints, bool bClosed)
{
    std::vector<Segment2> vSegments;
    for (std::size_t i = 1; i < vPoints.size(); ++i)
        vSegments.emplace_back(vPoints[i - 1], vPoints[i]);
    if (bClosed)
        vSegments.emplace_back(vPoints.back(), vPoints.front());
    return vSegments;
}

inline std::vector<Point2> squareCorners(double x, double y, double size)
{
    return {Point2(x, y), Point2(x + size, y), Point2(x + size, y + size), Point2(x, y + size)};
}

inline std::vector<Segment2> square(double x, double y, double size)
{
    return chain(squareCorners(x, y, size), true);
}

/// A ring without self-crossings around the origin, counterclockwise.
inline std::vector<Point2> starRing(int n, double spread, std::uint64_t seed)
{
    Uniform u(seed);
    std::vector<Point2> vPoints;
    for (int i = 0; i < n; ++i) {
        const double angle = 2.0 * 3.14159265358979323846 * i / n, radius = 1.0 + spread * (2.0 * u() - 1.0);
        vPoints.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
    }
    return vPoints;
}

/// A triangulation with its graphs.
class Scene
{
public:
    ConstraintGraph2* add(const std::vector<Segment2>& vSegments, ConstraintInsertionStrategy cis)
    {
        vGraphs.push_back(dt.createConstraint(vSegments, cis));
        return vGraphs.back();
    }

    /// Applies and checks. Where nothing had to be given up, applying again must change nothing and print nothing.
    ///
    /// @return what the first application printed
    std::string applyAndCheck(double maxDeviation = 1e-12)
    {
        CapturedOutput output;
        dt.applyConstraintsAndZones();
        const std::string text = output.stop();
        const std::size_t numGivenUp = countOf(text, "giving up. Incorrect result!");
        check(maxDeviation, numGivenUp);
        if (numGivenUp == 0) {
            const unsigned int numPoints = dt.numberOfPoints();
            CapturedOutput again;
            dt.applyConstraintsAndZones();
            EXPECT_EQ(again.stop(), "");
            EXPECT_EQ(dt.numberOfPoints(), numPoints);
        }
        EXPECT_EQ(countOf(text, "BUG") + countOf(text, "Non convex") + countOf(text, "ERROR"), 0u) << text;
        return text;
    }

    void check(double maxDeviation = 1e-12, std::size_t maxMissing = 0)
    {
        ConstraintCheckOptions options;
        options.maxDeviation = maxDeviation;
        options.maxMissing = maxMissing;
        expectConstraintsHold(dt, vGraphs, options);
    }

    Point2* vertexAt(double x, double y) const
    {
        std::vector<Point2*> vVertices;
        dt.getVertexPointers(vVertices);
        for (Point2* p : vVertices)
            if (*p == Point2(x, y))
                return p;
        return nullptr;
    }

    Quor_2D dt;
    std::vector<ConstraintGraph2*> vGraphs;
};

} // namespace test
} // namespace ZELK_QUOR2D
