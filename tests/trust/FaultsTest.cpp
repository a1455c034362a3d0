// Disks that are full or read-only, stacks that are small, trees that are deep.
#include "tests/output/OutputTestSupport.h"
#include "tests/support/ConstraintCheck.h"
#include "tests/support/PointSets.h"
#include "tests/trust/MeshSet.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <functional>

using namespace ZELK_QUOR2D;

namespace
{

// 256 KiB, as threads of some hosts have. Sanitizers need more for themselves, and this still shows deep recursion.
void runOnSmallStack(const std::function<void()>& run)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    const auto start = [](void* pRun) -> void* {
        (*static_cast<const std::function<void()>*>(pRun))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, const_cast<std::function<void()>*>(&run)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::vector<Segment2> square(double size)
{
    const Point2 a(0, 0), b(size, 0), c(size, size), d(0, size);
    return {Segment2(a, b), Segment2(b, c), Segment2(c, d), Segment2(d, a)};
}

} // namespace

// Faults: a missing check that ends in a signal or in an exception; a mesh changed by drawing it.
TEST(Faults, FullAndUnwritableDisks)
{
    CapturedOutput output;
    const TemporaryDirectory directory;
    Quor_2D dt;
    dt.insert(test::uniformPoints(20000, 1)); // more than any buffer
    dt.createConstraint(square(1.0), CIS_CONSTRAINED_DELAUNAY);
    dt.applyConstraintsAndZones();
    const test::MeshSet before = test::meshSetOf(dt);

    const std::string scene = directory.path("scene");
    ASSERT_TRUE(createDirectory(scene.c_str()));
    for (const char* pName : {"index.html", "jsc3d.js", "jsc3d.ctm.js", "jsc3d.touch.js", "3d.obj"})
        std::filesystem::create_symlink("/dev/full", scene + "/" + pName);
    const std::string missing = directory.path("missing") + "/file";
    for (const std::string& file : {std::string("/dev/full"), missing, directory.path(), std::string()}) {
        dt.show(file);
        dt.writeObj(file);
        dt.writeWebScene(file.c_str());
    }
    dt.writeWebScene(scene.c_str());
    fileReplicate("index.html", scene.c_str());
    fileReplicate("index.html", missing.c_str());
    EXPECT_FALSE(createDirectory((missing + "/below").c_str()));

    Visualizer2 page("/dev/full"); // the caller can ask the stream
    for (int i = 0; i < 20000; ++i)
        page.addObject(Point2(i, i % 7), Color(0, 0, 0, 1, false));
    page.writeFile();
    EXPECT_FALSE(page.good());
    EXPECT_TRUE(test::meshSetOf(dt) == before);
    EXPECT_TRUE(dt.checkValidity(true, "disks"));
}

// Fault: recursion along the pieces of a segment, or along the vertices on it.
TEST(Faults, ManyVerticesOnOneSegmentOnASmallStack)
{
    CapturedOutput output;
    for (ConstraintInsertionStrategy cis : {CIS_CONSTRAINED_DELAUNAY, CIS_CONFORMING_DELAUNAY})
        runOnSmallStack([cis] {
            constexpr int kNumOnSegment = 100000;
            Quor_2D dt;
            std::vector<Point2> vPoints = test::gridPoints(kNumOnSegment, 1);
            vPoints.emplace_back(0.5 * kNumOnSegment, 1000.0);
            vPoints.emplace_back(0.5 * kNumOnSegment, -1000.0);
            dt.insert(vPoints);
            ConstraintGraph2* const pGraph =
                dt.createConstraint({Segment2(Point2(0, 0), Point2(kNumOnSegment - 1, 0))}, cis);
            dt.applyConstraintsAndZones();
            std::vector<ConstraintSegment2*> vAlive;
            pGraph->getAliveSegments(vAlive);
            EXPECT_EQ(vAlive.size(), static_cast<std::size_t>(kNumOnSegment - 1));
            std::vector<Triangle2*> vTriangles;
            dt.createZone(nullptr, ZL_GLOBAL)->getTriangles(vTriangles);
            dt.createZone(pGraph, ZL_GROW, Point2(0.5 * kNumOnSegment, 1.0))->getTriangles(vTriangles);
            EXPECT_EQ(vTriangles.size(), static_cast<std::size_t>(kNumOnSegment - 1));
            EXPECT_TRUE(dt.checkValidity(false, "segment"));
        });
}

// Fault: recursion over a split tree as deep as there are vertices: each lies on the last piece of the piece before.
TEST(Faults, DeepSplitTreeOnASmallStack)
{
    CapturedOutput output;
    runOnSmallStack([] {
        constexpr int kDepth = 3000;
        Quor_2D dt;
        dt.insert({Point2(0, -1), Point2(0, 1)});
        ConstraintGraph2* const pGraph =
            dt.createConstraint({Segment2(Point2(0, 0), Point2(kDepth, 0))}, CIS_CONSTRAINED_DELAUNAY);
        dt.applyConstraintsAndZones();
        for (int i = 1; i < kDepth; ++i)
            dt.insert(Point2(i, 0));
        dt.applyConstraintsAndZones();
        std::vector<ConstraintSegment2*> vAlive;
        pGraph->getAliveSegments(vAlive);
        EXPECT_EQ(vAlive.size(), static_cast<std::size_t>(kDepth));
        Zone2* const pZone = dt.createZone(nullptr, ZL_GLOBAL);
        dt.refine(pZone, 20.0, 0.5, 1e300, true);
        EXPECT_TRUE(dt.checkValidity(false, "tree"));
    });
}

// Fault: recursion over the tree of zones, or a zone evaluated once for every way to it.
TEST(Faults, DeepZoneTreeOnASmallStack)
{
    CapturedOutput output;
    runOnSmallStack([] {
        Quor_2D dt;
        dt.insert(test::uniformPoints(50, 2));
        ConstraintGraph2* const pGraph = dt.createConstraint(square(0.5), CIS_CONSTRAINED_DELAUNAY);
        dt.applyConstraintsAndZones();
        Zone2* const pInside = dt.createZone(pGraph, ZL_INSIDE);
        Zone2* pZone = pInside;
        for (int i = 0; i < 5000; ++i)
            pZone = i % 2 == 0 ? zoneUnion(pZone, pInside) : zoneIntersection(pZone, pZone);
        std::vector<Triangle2*> vTriangles, vExpected;
        pZone->getTriangles(vTriangles);
        pInside->getTriangles(vExpected);
        EXPECT_EQ(vTriangles, vExpected);
    });
}
