// What a host application may have set up differently: rounding, flushed denormals, locale, stack size, closed standard
// output.
#include "tests/output/OutputTestSupport.h"
#include "tests/support/HostMode.h"
#include "tests/support/MeshCheck.h"
#include "tests/support/PointSets.h"
#include "tests/trust/MeshSet.h"

#include <gtest/gtest.h>

#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <locale>
#include <map>

using namespace ZELK_QUOR2D;

namespace
{

// Made once, in the standard mode.
const std::vector<Point2>& difficultPoints()
{
    static const std::vector<Point2> vAll = [] {
        std::vector<Point2> vPoints = test::gridPoints(12, 12, 0.1);
        for (const auto& vMore : {test::uniformPoints(300, 5), test::circlePoints(80), test::extremePoints(40, 6)})
            vPoints.insert(vPoints.end(), vMore.begin(), vMore.end());
        return vPoints;
    }();
    return vAll;
}

// Batch, singles, queries and removal.
void runEverything(Quor_2D& dt)
{
    const std::vector<Point2>& vPoints = difficultPoints();
    std::vector<Point2*> vHandles;
    dt.insert(std::vector<Point2>(vPoints.begin() + 100, vPoints.end()), vHandles);
    for (std::size_t i = 0; i < 100; ++i)
        vHandles.push_back(dt.insert(vPoints[i]));
    for (const Point2& p : vPoints)
        dt.locate(p);
    for (std::size_t i = 0; i < vHandles.size(); i += 4)
        if (vHandles[i]->getIncidentTriangle())
            dt.remove(vHandles[i]);
    dt.checkValidity(true, "host");
}

class DecimalComma : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

std::map<std::string, std::string> writeAll(const Quor_2D& dt)
{
    TemporaryDirectory directory;
    dt.show(directory.path("a.ps"));
    dt.writeObj(directory.path("a.obj"));
    dt.writeWebScene(directory.path("scene").c_str());
    std::map<std::string, std::string> mFiles;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(directory.path()))
        if (entry.is_regular_file()) {
            std::ifstream file(entry.path(), std::ios::binary);
            mFiles[entry.path().filename().string()].assign(std::istreambuf_iterator<char>(file), {});
        }
    // The page names the file it was written to.
    std::string& page = mFiles["a.ps"];
    for (std::size_t at; (at = page.find(directory.path())) != std::string::npos;)
        page.erase(at, directory.path().size());
    return mFiles;
}

} // namespace

TEST(HostEnvironment, MeshesDoNotDependOnTheFloatingPointMode)
{
    CapturedOutput output;
    std::srand(1);
    Quor_2D reference;
    runEverything(reference);
    test::expectValid(reference);
    const test::MeshSet expected = test::meshSetOf(reference);
    for (int rounding : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST})
        for (bool bFlush : {false, true}) {
            std::srand(1);
            Quor_2D dt;
            {
                const test::HostMode host(rounding, bFlush);
                runEverything(dt);
                EXPECT_TRUE(host.isUnchanged()) << rounding << bFlush;
            }
            EXPECT_TRUE(test::meshSetOf(dt) == expected) << rounding << bFlush;
        }
}

TEST(HostEnvironment, DenormalPlacesStayApartUnderDaz)
{
    Quor_2D dt;
    const test::HostMode host(FE_TONEAREST, true);
    const double tiny = 0x1p-1074;
    Point2* const pOrigin = dt.insert(Point2(0.0, 0.0));
    Point2* const pRight = dt.insert(Point2(tiny, 0.0));
    Point2* const pTop = dt.insert(Point2(0.0, tiny));
    EXPECT_NE(pOrigin, pRight);
    EXPECT_NE(pOrigin, pTop);
    EXPECT_EQ(dt.numberOfTriangles(), 1U);
    EXPECT_EQ(dt.insert(Point2(0.0, tiny)), pTop);
}

TEST(HostEnvironment, FilesDoNotDependOnTheLocale)
{
    CapturedOutput output;
    Quor_2D dt;
    dt.insert(test::uniformPoints(2000, 9));
    dt.insert(Point2(123456.0, 0.125));
    const auto expected = writeAll(dt);
    const std::locale saved = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
    const auto written = writeAll(dt);
    std::locale::global(saved);
    EXPECT_EQ(written.size(), expected.size());
    for (const auto& file : expected)
        EXPECT_TRUE(written.at(file.first) == file.second) << file.first;
}

TEST(HostEnvironment, ReportsDoNotDependOnTheLocale)
{
    CapturedOutput output;
    Quor_2D dt;
    const auto report = [&] {
        dt.checkValidity(true, "x");
        return output.take();
    };
    dt.insert(std::vector<Point2>(test::gridPoints(2000, 1)));
    const std::string expected = report();
    const std::locale savedGlobal = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
    EXPECT_EQ(report(), expected);
    std::locale::global(savedGlobal);
}

// 256 KiB, as threads of some hosts have. Sanitizers need more for themselves.
TEST(HostEnvironment, SmallStackSuffices)
{
    CapturedOutput output;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
    pthread_t thread;
    Quor_2D dt;
    const auto run = [](void* pDt) -> void* {
        Quor_2D& triangulation = *static_cast<Quor_2D*>(pDt);
        runEverything(triangulation);
        triangulation.insert(test::uniformPoints(100000, 10));
        triangulation.insert(test::gridPoints(100, 100));
        triangulation.show("/dev/null");
        triangulation.writeObj("/dev/null");
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &dt), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_TRUE(dt.checkValidity(true, "x"));
}

TEST(HostEnvironment, ClosedStandardOutputDoesNoHarm)
{
    const pid_t child = fork();
    if (child == 0) {
        close(STDOUT_FILENO);
        Quor_2D dt;
        runEverything(dt);
        dt.remove(nullptr);
        dt.insert(Point2(0.0 / 0.0, 1.0));
        _exit(dt.numberOfTriangles() > 0 ? 33 : 34);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 33) << status;
}
