#include "Quor_2D.h"
#include "tests/support/ConstraintCheck.h"
#include "tests/support/PointSets.h"

#include <algorithm>
#include <cmath>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

// Restoring circles after a removal must not flip a constrained edge away, nor may an insertion beside it.
TEST(ConstraintRemoval, EdgesStayWhileVerticesComeAndGo)
{
    for (std::uint64_t seed = 0; seed < 20; ++seed) {
        Uniform u(seed);
        Quor_2D dt;
        std::vector<Point2*> vHandles;
        dt.insert(uniformPoints(300, seed + 50), vHandles);
        std::vector<Segment2> vSegments;
        for (int i = 0; i < 10; ++i) // parallel, so that none cross
            vSegments.emplace_back(Point2(0.1 + 0.01 * u(), 0.08 * i), Point2(0.9 - 0.01 * u(), 0.08 * i + 0.05));
        const std::vector<ConstraintGraph2*> vGraphs{dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY)};
        dt.applyConstraintsAndZones();
        for (int step = 0; step < 400; ++step) {
            const std::size_t k = static_cast<std::size_t>(u.below(static_cast<int>(vHandles.size())));
            if (u() < 0.6 && vHandles.size() > 1) {
                dt.remove(vHandles[k]);
                vHandles.erase(vHandles.begin() + static_cast<std::ptrdiff_t>(k));
            } else {
                const double x = u();
                vHandles.push_back(dt.insert(Point2(x, u())));
            }
        }
        ConstraintCheckOptions options;
        options.maxDeviation = 1e-12;
        expectConstraintsHold(dt, vGraphs, options);
        CapturedOutput output;
        EXPECT_TRUE(dt.checkValidity(true, "removal"));
    }
}

TEST(ConstraintRemoval, EndpointsAreRefused)
{
    Quor_2D dt;
    dt.insert({{0.0, 0.0}, {4.0, 0.0}, {4.0, 4.0}, {0.0, 4.0}});
    std::vector<Segment2> vSegments{Segment2(Point2(1.0, 1.0), Point2(3.0, 1.0))};
    ConstraintGraph2* pGraph = dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY);
    std::vector<ConstraintSegment2*> vOriginal;
    pGraph->getOriginalConstraintSegments(vOriginal);
    for (const bool bApplied : {false, true}) {
        if (bApplied)
            dt.applyConstraintsAndZones();
        for (Point2* pVtx : {vOriginal[0]->getSrc(), vOriginal[0]->getTrg()}) {
            CapturedOutput output;
            dt.remove(pVtx);
            EXPECT_EQ(output.stop(), "\n      [Quor2D-Message] Dt2::remove(), WARNING: the vertex is an endpoint of a "
                                     "constraint segment, nothing to do\n\n");
        }
        EXPECT_EQ(dt.numberOfPoints(), 6u);
    }
    EXPECT_TRUE(dt.isConstraint(vOriginal[0]->getSrc(), vOriginal[0]->getTrg()));
}
