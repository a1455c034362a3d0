#include "OutputTestSupport.h"
#include "Quor_2D.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iomanip>
#include <map>
#include <random>
#include <set>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

struct ObjMesh {
    std::vector<std::pair<double, double>> vVertices;
    std::vector<std::array<std::size_t, 3>> vFaces; // numbers from 1
};

// Reads an OBJ file as any other program would: by lines and blanks, without knowledge of the writer.
ObjMesh readObj(const std::string& filename)
{
    std::ifstream file(filename);
    file.imbue(std::locale::classic());
    ObjMesh mesh;
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream fields(line);
        fields.imbue(std::locale::classic());
        std::string kind;
        fields >> kind;
        if (kind == "v") {
            double x = NAN, y = NAN, z = NAN;
            EXPECT_TRUE(fields >> x >> y >> z) << line;
            EXPECT_EQ(z, 0.0) << line;
            mesh.vVertices.emplace_back(x, y);
        } else {
            std::array<std::size_t, 3> face{};
            EXPECT_TRUE(kind == "f" && fields >> face[0] >> face[1] >> face[2]) << line;
            mesh.vFaces.push_back(face);
        }
        EXPECT_TRUE((fields >> std::ws).eof()) << line;
    }
    return mesh;
}

void expectSixDigits(double read, double exact)
{
    EXPECT_LE(std::fabs(read - exact), 5.0001e-6 * std::fabs(exact));
}

// Face i is triangle i with its corners in order, and numbers stand for vertices one to one.
void expectSameMesh(const Quor_2D& quor, const ObjMesh& mesh)
{
    std::vector<Triangle2*> vTriangles;
    quor.getTrianglePointers(vTriangles);
    ASSERT_EQ(mesh.vFaces.size(), vTriangles.size());
    std::map<const Point2*, std::size_t> mNumbers;
    std::set<std::size_t> sNumbers;
    for (std::size_t t = 0; t < vTriangles.size(); ++t)
        for (int i = 0; i < 3; ++i) {
            const Point2* pVtx = vTriangles[t]->getCorner(i);
            const std::size_t number = mesh.vFaces[t][static_cast<std::size_t>(i)];
            EXPECT_EQ(mNumbers.emplace(pVtx, number).first->second, number);
            sNumbers.insert(number);
            ASSERT_TRUE(number >= 1 && number <= mesh.vVertices.size());
            expectSixDigits(mesh.vVertices[number - 1].first, pVtx->x());
            expectSixDigits(mesh.vVertices[number - 1].second, pVtx->y());
        }
    EXPECT_EQ(mNumbers.size(), mesh.vVertices.size());
    EXPECT_EQ(sNumbers.size(), mesh.vVertices.size());
}

std::vector<Point2> randomPoints(int number, double size)
{
    std::mt19937 random(11);
    std::uniform_real_distribution<double> coordinate(-size, size);
    std::vector<Point2> vPoints;
    for (int i = 0; i < number; ++i) {
        const double x = coordinate(random);
        vPoints.emplace_back(x, coordinate(random));
    }
    return vPoints;
}

class Dt2OutputTest : public ::testing::Test
{
protected:
    void insertCollinearPoints()
    {
        quor.insert(Point2(0, 0));
        quor.insert(Point2(1, 1));
        quor.insert(Point2(2, 2));
    }

    TemporaryDirectory directory;
    CapturedOutput output;
    Quor_2D quor;
};

} // namespace

TEST_F(Dt2OutputTest, ObjReadBackIsTheMesh)
{
    quor.insert(randomPoints(3000, 1.0));
    quor.insert(randomPoints(100, 1e-200));
    quor.insert(randomPoints(100, 1e6));
    quor.writeObj(directory.path("mesh.obj"));
    expectSameMesh(quor, readObj(directory.path("mesh.obj")));
    EXPECT_EQ(output.take(), "");
}

TEST_F(Dt2OutputTest, ObjTextFollowsNeitherLocaleNorStandardOutput)
{
    quor.insert(Point2(1234.5678, 0));
    quor.insert(Point2(5000, 0.5));
    quor.insert(Point2(1234.5678, 1e-7));
    CommaLocale comma;
    std::cout << std::fixed << std::setprecision(1);
    quor.writeObj(directory.path("mesh.obj"));

    std::istringstream lines(readFile(directory.path("mesh.obj")));
    std::multiset<std::string> sLines;
    for (std::string line; std::getline(lines, line);)
        sLines.insert(line);
    EXPECT_EQ(sLines, (std::multiset<std::string>{"f 1 2 3", "v 1234.57 0 0 ", "v 1234.57 1e-07 0 ", "v 5000 0.5 0 "}));
}

TEST_F(Dt2OutputTest, WithoutTrianglesObjIsReportedAndNothingWritten)
{
    insertCollinearPoints();
    std::ofstream(directory.path("old.obj")) << "old";
    quor.writeObj(directory.path("new.obj"));
    EXPECT_EQ(output.take(), "\n      [Quor2D-Message] Dt2::show(), ERROR: The triangulation is not full dimensional "
                             "yet, no visualization\n\n");
    quor.writeObj(directory.path("old.obj"));
    EXPECT_FALSE(std::filesystem::exists(directory.path("new.obj")));
    EXPECT_EQ(readFile(directory.path("old.obj")), "old");
}

// is2D() stays true then.
TEST_F(Dt2OutputTest, AMeshThatRemovalHasEmptiedIsReported)
{
    quor.insert(Point2(0, 0));
    quor.insert(Point2(1, 0));
    quor.remove(quor.insert(Point2(0, 1)));
    quor.writeObj(directory.path("mesh.obj"));
    EXPECT_NE(output.take().find("is not full dimensional yet, no visualization"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(directory.path("mesh.obj")));
    quor.show(directory.path("mesh.ps"));
    EXPECT_NE(output.take().find("The triangulation is not 2D, no visualization"), std::string::npos);
}

TEST_F(Dt2OutputTest, ShowDrawsEachEdgeOnce)
{
    quor.insert(randomPoints(500, 1.0));
    const std::string name = directory.path("mesh.ps");
    quor.show(name);
    EXPECT_EQ(output.take(), "Visualizer2:: Writing " + name + "\n");

    std::istringstream lines(readFile(name));
    std::string line;
    std::string from;
    std::set<std::pair<std::string, std::string>> sEdges;
    std::size_t numSegments = 0;
    std::size_t numColors = 0;
    while (std::getline(lines, line)) {
        numColors += line == "0\t0\t0\tsetrgbcolor";
        const std::size_t end = line.rfind('\t');
        if (end == std::string::npos)
            continue;
        const std::string point = line.substr(0, end);
        if (line.substr(end) == "\tmoveto")
            from = point;
        if (line.substr(end) == "\tlineto") {
            sEdges.insert(std::minmax(from, point));
            ++numSegments;
        }
    }
    EXPECT_EQ(numSegments, quor.numberOfPoints() + quor.numberOfTriangles() - 1); // Euler
    EXPECT_EQ(sEdges.size(), numSegments);
    EXPECT_EQ(numColors, 1u);
}

TEST_F(Dt2OutputTest, ShowDrawsConstraintEdgesOnceMoreInRed)
{
    std::vector<Segment2> vSegments{Segment2(Point2(0.0, 0.0), Point2(495.0, 495.0))};
    quor.insert({{0.0, 0.0}, {495.0, 0.0}, {495.0, 495.0}, {0.0, 495.0}});
    quor.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY);
    quor.applyConstraintsAndZones();
    const std::string name = directory.path("red.ps");
    quor.show(name);
    const std::string text = readFile(name);
    const std::size_t red = text.find("stroke\n1\t0\t0\tsetrgbcolor\n0.0001\tsetlinewidth\n");
    ASSERT_NE(red, std::string::npos);
    const std::string drawn = text.substr(red);
    EXPECT_TRUE(drawn.find("50\t200\tmoveto\n545\t695\tlineto\nstroke\nshowpage") != std::string::npos ||
                drawn.find("545\t695\tmoveto\n50\t200\tlineto\nstroke\nshowpage") != std::string::npos)
        << drawn;
}

TEST_F(Dt2OutputTest, ShowWithoutTrianglesIsReportedAndWritesAnEmptyPage)
{
    insertCollinearPoints();
    const std::string name = directory.path("mesh.ps");
    quor.show(name);
    EXPECT_EQ(output.take(),
              "Visualizer2:: Writing " + name +
                  "\n\n      [Quor2D-Message] Dt2::show(), ERROR: The triangulation is not 2D, no visualization\n\n");
    const std::string text = readFile(name);
    EXPECT_NE(text.find("(Zelk Quor 2D)"), std::string::npos);
    EXPECT_EQ(text.find("lineto"), std::string::npos);
    EXPECT_NE(text.find("\tshow\nstroke\nshowpage\n%%Trailer\n"), std::string::npos);
}

TEST_F(Dt2OutputTest, WebSceneHoldsPageScriptsAndTheMeshTwice)
{
    quor.insert(randomPoints(100, 1.0));
    const std::string scene = directory.path("scene") + "/";
    for (int i = 0; i < 2; ++i) { // into a new directory, over an old one
        quor.writeWebScene(scene.c_str());
        EXPECT_EQ(output.take(), "writeWebScene: Creating " + scene + "\n");
        std::set<std::string> sNames;
        for (const auto& entry : std::filesystem::directory_iterator(scene))
            sNames.insert(entry.path().filename().string());
        EXPECT_EQ(sNames, (std::set<std::string>{"3d.obj", "3d.obj.js", "index.html", "jsc3d.ctm.js", "jsc3d.js",
                                                 "jsc3d.touch.js"}));
        expectSameMesh(quor, readObj(scene + "3d.obj"));
        EXPECT_EQ(readFile(scene + "3d.obj.js"), "window.JSC3D_SCENE_TEXT = `" + readFile(scene + "3d.obj") + "`;\n");
        quor.insert(Point2(7, 7));
    }
    // What the page's script looks for.
    EXPECT_NE(readFile(scene + "jsc3d.js").find("JSC3D_SCENE_TEXT"), std::string::npos);
}

TEST_F(Dt2OutputTest, WebSceneReportsADirectoryThatCannotBeCreated)
{
    std::ofstream(directory.path("file")) << "kept";
    const std::string report = "\n      [Quor2D-Message] Dt2::writeWebScene(), WARNING: Can't create directory ";
    quor.insert(randomPoints(10, 1.0));
    for (const std::string& path : {directory.path("file"), directory.path("missing/scene"), std::string()}) {
        quor.writeWebScene(path.c_str());
        EXPECT_EQ(output.take(), report + path + "\n\n");
    }
    quor.writeWebScene(nullptr);
    EXPECT_EQ(output.take(), report + "\n\n");
    EXPECT_EQ(readFile(directory.path("file")), "kept");
}

TEST_F(Dt2OutputTest, WebSceneWithoutTrianglesHoldsThePageOnly)
{
    const std::string scene = directory.path("scene");
    insertCollinearPoints();
    quor.writeWebScene(scene.c_str());
    EXPECT_EQ(output.take(), "writeWebScene: Creating " + scene +
                                 "\n\n      [Quor2D-Message] Dt2::show(), ERROR: The triangulation is not full "
                                 "dimensional yet, no visualization\n\n");
    EXPECT_TRUE(std::filesystem::exists(scene + "/index.html"));
    EXPECT_FALSE(std::filesystem::exists(scene + "/3d.obj"));
    EXPECT_FALSE(std::filesystem::exists(scene + "/3d.obj.js"));
}

TEST_F(Dt2OutputTest, UnwritableFilesAreNotReported)
{
    quor.insert(randomPoints(10, 1.0));
    quor.writeObj(directory.path("missing/mesh.obj"));
    quor.writeObj("");
    EXPECT_EQ(output.take(), "");
}
