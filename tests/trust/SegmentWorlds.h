#pragma once

#include "tests/support/ConstraintCheck.h"
#include "tests/trust/SmallWorlds.h"

namespace small_worlds
{

/// All 36 segments between two places of the lattice.
inline std::vector<Segment2> latticeSegments()
{
    const std::vector<Point2> vPlaces = latticeSubset((1u << kNumPlaces) - 1u);
    std::vector<Segment2> vSegments;
    for (std::size_t i = 0; i < vPlaces.size(); ++i)
        for (std::size_t j = i + 1; j < vPlaces.size(); ++j)
            vSegments.emplace_back(vPlaces[i], vPlaces[j]);
    return vSegments;
}

/// Requests the segments as graphs of their own, applies them, and looks at everything; applies them again, which must
/// neither change nor report anything; and inserts the points of the lattice one by one.
///
/// @param strategies   bit i is the strategy of segment i
/// @param firstPoints  the points that are there before, as a subset of the lattice
inline void applySegments(const std::vector<Segment2>& vSegments, unsigned int strategies, unsigned int firstPoints)
{
    CapturedOutput output;
    Quor_2D dt;
    dt.insert(latticeSubset(firstPoints));
    std::vector<ConstraintGraph2*> vGraphs;
    for (std::size_t i = 0; i < vSegments.size(); ++i)
        vGraphs.push_back(dt.createConstraint({vSegments[i]}, strategies >> i & 1u ? CIS_CONSTRAINED_DELAUNAY
                                                                                   : CIS_CONFORMING_DELAUNAY));
    dt.applyConstraintsAndZones();
    if (dt.numberOfTriangles() == 0)
        return;
    test::ConstraintCheckOptions options;
    options.maxDeviation = 1e-14; // crossings at thirds and fifths are rounded
    ASSERT_EQ(test::findConstraintDefect(dt, vGraphs, options), "");
    ASSERT_TRUE(dt.checkValidity(true, "segments"));
    ASSERT_EQ(output.take().find("giving up"), std::string::npos);

    const unsigned int numPoints = dt.numberOfPoints();
    dt.applyConstraintsAndZones();
    ASSERT_EQ(output.take(), "");
    ASSERT_EQ(dt.numberOfPoints(), numPoints);

    for (const Point2& p : latticeSubset((1u << kNumPlaces) - 1u))
        dt.insert(p);
    dt.applyConstraintsAndZones();
    ASSERT_EQ(test::findConstraintDefect(dt, vGraphs, options), "");
}

} // namespace small_worlds
