#include "refine/RefineCandidate.h"
#include "core/Dt2.h"
#include "tests/refine/RefineTestSupport.h"

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

// A mesh of few triangles, and the parameters to look at them with.
class Candidate : public testing::Test
{
protected:
    RefineCandidate at(const Point2& p) { return RefineCandidate(&dt, dt.locate(p)); }
    RefineParams params(double angle, double minEdge, double maxEdge)
    {
        RefineParams p(&dt, nullptr, angle, minEdge, maxEdge, true);
        p.edgeFloor = p.minEdgeLength;
        return p;
    }
    void constrain(const std::vector<Segment2>& vSegments)
    {
        dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY);
        dt.applyConstraintsAndZones();
    }

    Dt2 dt{0};
};

} // namespace

TEST_F(Candidate, StopsAtConstraintsAndAtTheHull)
{
    // The circumcentre (1, -3) of the lower triangle lies beyond its lower edge.
    dt.insert({Point2(0, 0), Point2(2, 0), Point2(1, 0.15), Point2(1, -10)});
    RefineCandidate free = at(Point2(1, 0.1));
    EXPECT_TRUE(free.needRefinement(params(20, 0, kNoLimit)));
    EXPECT_EQ(free.splitIndex, RefineCandidate::SPLIT_NONE);
    EXPECT_NE(free.pContainingT, free.pTriangle);

    constrain({Segment2(Point2(0, 0), Point2(2, 0))});
    RefineCandidate blocked = at(Point2(1, 0.1));
    EXPECT_TRUE(blocked.needRefinement(params(20, 1.0, kNoLimit)));
    EXPECT_EQ(blocked.pContainingT, blocked.pTriangle);
    EXPECT_EQ(*blocked.pTriangle->getCorner(blocked.splitIndex), Point2(1, 0.15));
    EXPECT_FALSE(at(Point2(1, 0.1)).needRefinement(params(20, 1.001, kNoLimit))) << "too short to be halved";

    // At the hull without a constraint there is nothing to split.
    Dt2 bare(0);
    bare.insert({Point2(0, 0), Point2(2, 0), Point2(1, 0.15)});
    RefineCandidate atHull(&bare, bare.locate(Point2(1, 0.1)));
    EXPECT_FALSE(atHull.needRefinement(params(20, 0, kNoLimit)));
    EXPECT_TRUE(atHull.needRefinement(params(20, 0, 0.5))) << "a long edge decides alone";
}

TEST_F(Candidate, ACircumcentreOnAConstraintIsBlockedByIt)
{
    dt.insert({Point2(0, 0), Point2(2, 0), Point2(0, 2)});
    constrain({Segment2(Point2(2, 0), Point2(0, 2))});
    RefineCandidate candidate = at(Point2(0.5, 0.5));
    EXPECT_TRUE(candidate.needRefinement(params(20, 0, 1)));
    EXPECT_EQ(*candidate.pTriangle->getCorner(candidate.splitIndex), Point2(0, 0));
}

// Constraints that meet below the bound exempt their triangle; the angle is computed with a short pi.
TEST_F(Candidate, InputAnglesBelowTheBoundAreExempt)
{
    dt.insert({Point2(0, 0), Point2(10, 0), Point2(10, 1), Point2(5, -50)});
    EXPECT_TRUE(at(Point2(9, 0.5)).missesBounds(params(20, 0, kNoLimit)));
    constrain({Segment2(Point2(0, 0), Point2(10, 0)), Segment2(Point2(0, 0), Point2(10, 1))});
    EXPECT_FALSE(at(Point2(9, 0.5)).missesBounds(params(20, 0, kNoLimit)));
    EXPECT_TRUE(at(Point2(9, 0.5)).missesBounds(params(20, 0, 5))) << "edges that are too long are not exempt";
}

// Fault: a centre that is no number, or far away, gets into comparisons and walks.
TEST_F(Candidate, WithoutAFiniteCentreIsNeverRefined)
{
    dt.insert({Point2(0, 0), Point2(1e300, 1), Point2(2e300, 2.5), Point2(0, 1e-300)});
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    for (Triangle2* pT : vTriangles) {
        RefineCandidate candidate(&dt, pT);
        EXPECT_TRUE(!candidate.bValid || std::isfinite(candidate.circumRadius));
        EXPECT_TRUE(candidate.bValid || !candidate.needRefinement(params(30, 0, 1)));
    }
}

// The quick test must never contradict the full one.
TEST_F(Candidate, ClearlyMeetingTheBoundsImpliesMeetingThem)
{
    dt.insert(uniformPoints(3000, 6));
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    std::size_t numClear = 0;
    for (const double angle : {0.0, 10.0, 20.0, 30.0})
        for (const double maxEdge : {kNoLimit, 0.05, 0.01}) {
            const RefineParams p = params(angle, 0, maxEdge);
            for (Triangle2* pT : vTriangles)
                if (QuickTest(*pT).clearlyMeets(p)) {
                    EXPECT_FALSE(RefineCandidate(&dt, pT).missesBounds(p));
                    ++numClear;
                }
        }
    EXPECT_GT(numClear, 10000u);
}
