// Lets every single allocation of a run fail, one run for each: the process must end with the documented text and exit
// status 1, whatever was being changed.
#include "Quor_2D.h"
#include "tests/output/OutputTestSupport.h"
#include "tests/support/PointSets.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>

namespace
{

bool bCounting = false;
long allocationsUntilFailure = 0; // the one that takes this to zero fails

bool isToFail()
{
    return bCounting && --allocationsUntilFailure == 0;
}

} // namespace

// The linker leads the malloc of the archive here (--wrap); that of other libraries stays what it is.
extern "C" {
void* __real_malloc(std::size_t numBytes);
int __real_posix_memalign(void** ppBlock, std::size_t alignment, std::size_t numBytes);
int __real_mprotect(void* pPages, std::size_t numBytes, int access);

void* __wrap_malloc(std::size_t numBytes)
{
    return isToFail() ? nullptr : __real_malloc(numBytes);
}
int __wrap_posix_memalign(void** ppBlock, std::size_t alignment, std::size_t numBytes)
{
    return isToFail() ? ENOMEM : __real_posix_memalign(ppBlock, alignment, numBytes);
}

// Backs reserved addresses by memory. What it has none for comes from malloc, which then has none either.
int __wrap_mprotect(void* pPages, std::size_t numBytes, int access)
{
    if (!isToFail())
        return __real_mprotect(pPages, numBytes, access);
    allocationsUntilFailure = 1;
    return -1;
}
}

void* operator new(std::size_t numBytes)
{
    void* const pBlock = isToFail() ? nullptr : __real_malloc(numBytes > 0 ? numBytes : 1);
    if (!pBlock)
        throw std::bad_alloc();
    return pBlock;
}
void operator delete(void* pBlock) noexcept
{
    std::free(pBlock);
}
void operator delete(void* pBlock, std::size_t) noexcept
{
    std::free(pBlock);
}

using namespace ZELK_QUOR2D;

namespace
{

struct Ending {
    bool bExited;
    int status;
    std::string output;
};

constexpr int kFinished = 77; // the run came to its end: fewer allocations than the number that was to fail
constexpr int kSurvived = 78; // one failed and was made up for, as in std::stable_sort

Ending runInChild(long failing, const std::function<void()>& run)
{
    int aPipe[2];
    if (pipe(aPipe) != 0)
        throw std::runtime_error("no pipe");
    std::cout.flush();
    const pid_t child = fork();
    if (child == 0) {
        dup2(aPipe[1], STDOUT_FILENO);
        close(aPipe[0]);
        close(aPipe[1]);
        allocationsUntilFailure = failing;
        bCounting = true;
        run();
        bCounting = false;
        std::cout.flush();
        _exit(allocationsUntilFailure > 0 ? kFinished : kSurvived);
    }
    close(aPipe[1]);
    std::string output;
    char aBuffer[4096];
    for (ssize_t n; (n = read(aPipe[0], aBuffer, sizeof aBuffer)) > 0;)
        output.append(aBuffer, static_cast<std::size_t>(n));
    close(aPipe[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return {WIFEXITED(status), WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status), output};
}

// @return how many allocations there were
long failEach(const std::function<void()>& run)
{
    const std::string text = "SimplePool::alloc(..), ERROR: Out of memory, sorry\n";
    for (long failing = 1;; ++failing) { // ends: a run has finitely many allocations
        const Ending ending = runInChild(failing, run);
        if (ending.bExited && ending.status == kFinished)
            return failing - 1;
        if (ending.bExited && ending.status == kSurvived)
            continue;
        EXPECT_TRUE(ending.bExited) << "signal " << ending.status << " at allocation " << failing;
        EXPECT_EQ(ending.status, 1) << "at allocation " << failing;
        const std::size_t length = std::min(ending.output.size(), text.size());
        EXPECT_EQ(ending.output.substr(ending.output.size() - length), text) << "at allocation " << failing;
        if (testing::Test::HasFailure())
            return failing;
    }
}

} // namespace

TEST(AllocationFailure, Construction)
{
    EXPECT_GT(failEach([] { Quor_2D dt(1000); }), 2);
}

TEST(AllocationFailure, BatchesAndSinglePoints)
{
    const std::vector<Point2> vPoints = test::uniformPoints(3000, 1);
    const std::vector<Point2> vGrid = test::gridPoints(30, 30, 1.0 / 29);
    const long count = failEach([&] {
        Quor_2D dt;
        dt.insert(Point2(0.25, 0.25));
        dt.insert(Point2(0.5, 0.25));
        dt.insert(vPoints);
        std::vector<Point2*> vHandles;
        dt.insert(vGrid, vHandles);
        for (int i = 0; i < 200; ++i)
            dt.insert(Point2(2.0 + i % 7, 2.0 + i));
    });
    EXPECT_GT(count, 30);
}

TEST(AllocationFailure, Removal)
{
    const std::vector<Point2> vPoints = test::uniformPoints(500, 2);
    const std::vector<Point2> vRing = test::circlePoints(100, 2.0);
    const long count = failEach([&] {
        Quor_2D dt(1000);
        std::vector<Point2*> vHandles;
        dt.insert(vRing);
        dt.insert(vPoints, vHandles);
        for (Point2* pVtx : vHandles)
            dt.remove(pVtx);
        Point2* const pHub = dt.insert(Point2(0.0, 0.0));
        dt.remove(pHub);
    });
    EXPECT_GT(count, 20);
}

TEST(AllocationFailure, QueriesAndOutput)
{
    TemporaryDirectory directory;
    const std::string scene = directory.path("scene");
    const std::string name = "a name too long for the buffer inside the string", file = "/dev/null";
    Quor_2D dt;
    dt.insert(test::uniformPoints(50, 3));
    const long count = failEach([&] {
        std::vector<Point2*> vVertices;
        std::vector<Triangle2*> vTriangles;
        dt.getVertexPointers(vVertices);
        dt.getTrianglePointers(vTriangles);
        dt.checkValidity(true, name);
        dt.setName(name);
        dt.computeBoundingBox();
        dt.show(file);
        dt.writeObj(file);
        dt.writeWebScene(scene.c_str());
    });
    EXPECT_GT(count, 10);
}

TEST(AllocationFailure, ConstraintsZonesAndRefinement)
{
    const std::vector<Point2> vPoints = test::uniformPoints(40, 4);
    const auto ring = [](const std::vector<Point2>& vCorners) {
        std::vector<Segment2> vSegments;
        for (std::size_t i = 0; i < vCorners.size(); ++i)
            vSegments.emplace_back(vCorners[i], vCorners[(i + 1) % vCorners.size()]);
        return vSegments;
    };
    const std::vector<Segment2> vOuter = ring({{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}});
    const std::vector<Segment2> vInner = ring({{0.2, 0.25}, {0.75, 0.3}, {0.5, 0.75}});
    const std::vector<Segment2> vCross = {Segment2({0.1, 0.1}, {0.9, 0.8}), Segment2({0.1, 0.9}, {0.9, 0.1})};
    const long count = failEach([&] {
        Quor_2D dt;
        dt.insert(vPoints);
        ConstraintGraph2* const pOuter = dt.createConstraint(vOuter, CIS_CONSTRAINED_DELAUNAY);
        ConstraintGraph2* const pInner = dt.createConstraint(vInner, CIS_CONFORMING_DELAUNAY);
        dt.createConstraint(vCross, CIS_CONSTRAINED_DELAUNAY);
        dt.applyConstraintsAndZones();
        Zone2* const pZone = zoneDifference(dt.createZone(pOuter, ZL_INSIDE), dt.createZone(pInner, ZL_INSIDE));
        dt.refine(pZone, 25.0, 0.01, 0.3, true);
        std::vector<Triangle2*> vTriangles;
        pZone->getTriangles(vTriangles);
        std::vector<Point2*> vVertices;
        pInner->getPolygonVertices(vVertices);
        dt.deleteZone(pZone);
    });
    EXPECT_GT(count, 200);
}
