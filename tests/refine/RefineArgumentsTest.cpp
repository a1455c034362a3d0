#include "core/Dt2.h"
#include "refine/RefineParams.h"
#include "tests/refine/RefineTestSupport.h"

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

template <class Operation>
std::string errorsOf(Operation operation)
{
    testing::internal::CaptureStderr();
    operation();
    return testing::internal::GetCapturedStderr();
}

} // namespace

TEST(RefineArguments, SenselessOnesAreRefusedInOrder)
{
    Region region(box(0, 0, 1, 1));
    region.apply();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto refine = [&](Zone2* pZone, double angle, double minEdge, double maxEdge) {
        const std::string text = errorsOf([&] { region.dt.refine(pZone, angle, minEdge, maxEdge, true); });
        EXPECT_EQ(region.dt.numberOfPoints(), 4u);
        return text;
    };
    const std::string prefix = "\nWarning: Quor_2D::refine(..)";
    EXPECT_EQ(refine(nullptr, 31.0, 0, 1), prefix + " has been called with pZone==NULL\n\n");
    EXPECT_EQ(refine(region.pZone, 30.000001, 0, nan), prefix + ", minAngleDegree can't be >30\n\n");
    for (const auto& [angle, minEdge, maxEdge] :
         {std::array<double, 3>{nan, 0, 1}, {20, nan, 1}, {20, 0, nan}, {20, 0, 0}, {20, 0, -1}}) {
        const std::string text = refine(region.pZone, angle, minEdge, maxEdge);
        EXPECT_EQ(text.find(prefix), 0u);
        EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 3);
    }
    EXPECT_EQ(refine(region.pZone, 30.0, 0, 2), "");
    EXPECT_EQ(errorsOf([&] { region.dt.refine(region.pZone, 30.0, -5, 0.3, true); }), "");
    EXPECT_GT(region.dt.numberOfPoints(), 16u);
}

TEST(RefineArguments, OnlyZonesOfTheTriangulationAreRefined)
{
    Region region(box(0, 0, 1, 1)), other(box(0, 0, 1, 1));
    region.apply();
    other.apply();
    Zone2* pDeleted = region.dt.createZone(nullptr, ZL_GLOBAL);
    region.dt.deleteZone(pDeleted);
    for (Zone2* pZone : {pDeleted, other.pZone})
        EXPECT_EQ(
            outputOf([&] { region.dt.refine(pZone, 20, 0, 0.1, true); }),
            message("Dt2::refine(..)", "WARNING", "the zone does not belong to this triangulation, nothing to do"));
    EXPECT_EQ(region.dt.numberOfPoints(), 4u);

    Dt2 dt(0);
    RefineParams params(&dt, nullptr, 20, 0, 1, true);
    EXPECT_EQ(outputOf([&] { dt.refine(&params); }),
              message("Dt2::refine(..)", "WARNING", "Zone==NULL, nothing to do"));
}

TEST(RefineArguments, EmptyZonesAndMissingTrianglesAreReportedOnce)
{
    Region region(box(0, 0, 1, 1));
    region.apply();
    Zone2* pEmpty = zoneDifference(region.pZone, region.pZone);
    EXPECT_EQ(outputOf([&] { region.dt.refine(pEmpty, 20, 0, 0.1, true); }),
              message("uniformRefinement(..)", "WARNING", "pZone is empty, invalid operation, return"));

    Quor_2D line;
    line.insert({Point2(0, 0), Point2(1, 1)});
    Zone2* pZone = line.createZone(std::vector<ConstraintGraph2*>(), ZL_GROW, Point2(0, 0));
    const std::string text = message("Dt2::applyConstraintsAndZones()", "WARNING",
                                     "The triangulation is not full dimensional yet. Nothing to do");
    EXPECT_EQ(outputOf([&] { line.refine(pZone, 20, 0, 0.1, true); }),
              text + message("uniformRefinement(..)", "WARNING", "pZone is empty, invalid operation, return"));
    std::vector<Triangle2*> vNone;
    EXPECT_EQ(outputOf([&] { line.refineSpecificTriangles(vNone, true); }), text);
}

TEST(RefineArguments, BecomeTheParametersOfTheRun)
{
    Dt2 dt(0);
    const RefineParams at30(&dt, nullptr, 30, 0.5, 2, true);
    EXPECT_NEAR(at30.maxRadiusEdgeRatio, 1.0, 1e-15);
    EXPECT_EQ(at30.sqMinEdgeLength, 0.25);
    EXPECT_EQ(at30.sqMaxEdgeLength, 4.0);
    const RefineParams at20(&dt, nullptr, 20, -1, 1e200, true);
    EXPECT_NEAR(at20.maxRadiusEdgeRatio, 1.4619022000815438, 1e-15);
    EXPECT_EQ(at20.minEdgeLength, 0.0);
    EXPECT_EQ(at20.sqMaxEdgeLength, kNoLimit);
    EXPECT_EQ(RefineParams(&dt, nullptr, 0, 0, 1, true).maxRadiusEdgeRatio, kNoLimit);
    EXPECT_EQ(RefineParams(&dt, nullptr, -3, 0, 1, true).maxRadiusEdgeRatio, kNoLimit);

    const RefineParams specific(&dt, false);
    EXPECT_NEAR(specific.maxRadiusEdgeRatio, 5.006233857799208, 1e-14);
    EXPECT_EQ(specific.minAngleDegree, 5.732);
    EXPECT_EQ(specific.sqMinEdgeLength, 0.01);
    EXPECT_EQ(specific.sqMaxEdgeLength, kNoLimit);
    EXPECT_FALSE(specific.bAllowConstraintSplitting);
}
