// A million operations on one triangulation, and ten million points in one.
#include "tests/output/OutputTestSupport.h"
#include "tests/support/ConstraintCheck.h"
#include "tests/support/MeshCheck.h"
#include "tests/support/PointSets.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

using namespace ZELK_QUOR2D;

namespace
{

// Bytes of memory that the process holds now.
double residentBytes()
{
    std::ifstream file("/proc/self/statm");
    double size = 0, resident = 0;
    file >> size >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double cpuSeconds()
{
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec) + 1e-6 * static_cast<double>(usage.ru_utime.tv_usec);
}

// Vertices come and go at 3000 places, some of them on a ring of constraints and on a grid.
class EnduranceRun
{
public:
    EnduranceRun()
    {
        vPlaces = test::uniformPoints(2000, 1);
        const std::vector<Point2> vGrid = test::gridPoints(31, 31, 1.0 / 32);
        vPlaces.insert(vPlaces.end(), vGrid.begin(), vGrid.end());
        vHandles.resize(vPlaces.size());
        dt.insert({Point2(-1, -1), Point2(2, -1), Point2(2, 2), Point2(-1, 2)});
        const Point2 a(-0.5, -0.5), b(1.5, -0.5), c(1.5, 1.5), d(-0.5, 1.5);
        vGraphs = {dt.createConstraint({Segment2(a, b), Segment2(b, c), Segment2(c, d), Segment2(d, a)},
                                       CIS_CONSTRAINED_DELAUNAY),
                   dt.createConstraint({Segment2(Point2(0.1, 0.6), Point2(0.9, 0.4))}, CIS_CONFORMING_DELAUNAY)};
        dt.applyConstraintsAndZones();
        pZone = dt.createZone(vGraphs[0], ZL_INSIDE);
    }

    void step()
    {
        const std::size_t i = static_cast<std::size_t>(u.below(static_cast<int>(vPlaces.size())));
        const int kind = u.below(1000);
        if (kind < 420) {
            ++numInserts;
            vHandles[i] = dt.insert(vPlaces[i]);
        } else if (kind < 800) {
            if (vHandles[i] && vHandles[i]->getIncidentTriangle())
                dt.remove(vHandles[i]);
        } else if (kind < 990) {
            dt.locate(Point2(u.in(-1.5, 2.5), u.in(-1.5, 2.5)));
        } else if (kind < 998) {
            std::vector<Point2> vBatch(vPlaces.begin() + static_cast<std::ptrdiff_t>(i / 2),
                                       vPlaces.begin() + static_cast<std::ptrdiff_t>(i / 2 + 20));
            numInserts += vBatch.size();
            dt.insert(vBatch);
        } else if (kind < 999) {
            dt.applyConstraintsAndZones();
        } else {
            pZone->getTriangles(vTriangles);
        }
    }

    Quor_2D dt;
    std::vector<ConstraintGraph2*> vGraphs;
    std::size_t numInserts = 0;

private:
    test::Uniform u{17};
    std::vector<Point2> vPlaces;
    std::vector<Point2*> vHandles;
    std::vector<Triangle2*> vTriangles;
    Zone2* pZone = nullptr;
};

} // namespace

// Faults: triangle records, index entries or scratch lists that pile up; damage that shows after long use only.
TEST(Endurance, MillionMixedOperations)
{
    CapturedOutput output;
    EnduranceRun run;
    constexpr int kNumSteps = 1000000, kWarmUp = 200000;
    double bytesBefore = 0;
    std::size_t insertsBefore = 0;
    for (int i = 0; i < kNumSteps; ++i) {
        if (i == kWarmUp) {
            bytesBefore = residentBytes();
            insertsBefore = run.numInserts;
        }
        run.step();
        if (i % 1000 == 0)
            output.take();
    }
    const double growth = residentBytes() - bytesBefore;
    const double perInsert = growth / static_cast<double>(run.numInserts - insertsBefore);
    std::fprintf(stderr, "%u points, %zu insertions, %.1f MB more, %.1f bytes per insertion\n", run.dt.numberOfPoints(),
                 run.numInserts, growth / 1e6, perInsert);
    // A vertex record, never used again so that handles stay valid, and its places in the index.
    EXPECT_LT(perInsert, 100.0);
    run.dt.applyConstraintsAndZones();
    EXPECT_TRUE(run.dt.checkValidity(false, "endurance"));
    test::ConstraintCheckOptions options;
    options.maxDeviation = 1e-12;
    EXPECT_EQ(test::findConstraintDefect(run.dt, run.vGraphs, options), "");
}

// Faults: counters of 32 bits, quadratic steps, blocks past the reserved addresses.
TEST(Endurance, TenMillionPoints)
{
    CapturedOutput output;
    constexpr int kNumPoints = 10000000;
    Quor_2D dt;
    const std::vector<Point2> vPoints = test::uniformPoints(kNumPoints, 3);
    const double bytesBefore = residentBytes(), secondsBefore = cpuSeconds();
    dt.insert(vPoints);
    std::fprintf(stderr, "%.1f s, %.0f MB\n", cpuSeconds() - secondsBefore, (residentBytes() - bytesBefore) / 1e6);
    EXPECT_EQ(dt.numberOfPoints(), static_cast<unsigned int>(kNumPoints));
    EXPECT_GT(dt.numberOfTriangles(), 19990000U);
    EXPECT_TRUE(dt.checkValidity(true, "ten million"));
}
