#include "TemporaryDirectoryTest.h"
#include "formats/FileError.h"
#include "formats/MeshOutput.h"
#include "formats/OutputFile.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace quor2d_tool
{
namespace
{

class WriterTest : public TemporaryDirectoryTest
{
};

std::uint64_t bitsOf(double value)
{
    std::uint64_t result;
    std::memcpy(&result, &value, sizeof result);
    return result;
}

// A strip of triangles whose coordinates are any finite doubles; whether it is a mesh is of no matter here.
MeshData anyMesh()
{
    MeshData mesh;
    std::mt19937_64 random(7);
    for (double value : {0.0, -0.0, 4.9e-324, -2.2250738585072014e-308, 1.7976931348623157e308, 0.1, 1e21, 123456789.0})
        mesh.vertices.vCoords.push_back({value, 0.5 + static_cast<double>(mesh.vertices.size())});
    while (mesh.vertices.size() < 200) {
        std::uint64_t aBits[2] = {random(), random()};
        Coord c;
        std::memcpy(&c.x, &aBits[0], sizeof c.x);
        std::memcpy(&c.y, &aBits[1], sizeof c.y);
        if (std::isfinite(c.x) && std::isfinite(c.y))
            mesh.vertices.vCoords.push_back(c);
    }
    std::vector<double> vNumbers;
    const double aNumbers[] = {0, 3, -2, 2.5, 100000};
    for (std::uint32_t i = 2; i < 200; ++i) {
        mesh.vTriangles.push_back({i - 2, i - 1, i});
        vNumbers.push_back(aNumbers[i * 5 / 200]);
        mesh.vInputNumbers.push_back(i % 3 == 0 ? MeshData::kNewVertex : i - 2);
    }
    mesh.vInputNumbers.resize(200, MeshData::kNewVertex);
    setTriangleRegions(mesh, vNumbers);
    for (std::uint32_t i = 1; i < 200; ++i)
        mesh.vEdges.push_back({i - 1, i, static_cast<int>(i % 4), true});
    return mesh;
}

std::string cornersText(const MeshData& mesh, std::initializer_list<std::uint32_t> corners)
{
    std::string text;
    for (std::uint32_t corner : corners) {
        const Coord& c = mesh.vertices.vCoords[corner];
        text += std::to_string(bitsOf(c.x)) + " " + std::to_string(bitsOf(c.y)) + " ";
    }
    return text;
}

// The triangles by the bits of their corners with their regions, and the edges with their markers, in any order.
std::vector<std::string> contentOf(const MeshData& mesh, bool bMarkers)
{
    std::vector<std::string> vContent;
    for (std::size_t t = 0; t < mesh.vTriangles.size(); ++t) {
        const auto& a = mesh.vTriangles[t];
        vContent.push_back(cornersText(mesh, {a[0], a[1], a[2]}) +
                           std::to_string(mesh.vRegions[mesh.regionOf(t)].number));
    }
    for (const MeshData::Edge& edge : mesh.vEdges)
        vContent.push_back(cornersText(mesh, {edge.from, edge.to}) + std::to_string(bMarkers ? edge.marker : 0));
    std::sort(vContent.begin(), vContent.end());
    return vContent;
}

// Faults: digits lost, the sign of zero lost, regions or markers mixed up.
TEST_F(WriterTest, MeshesReadBackBitForBit)
{
    MeshData mesh = anyMesh();
    for (const char* pName : {"a.obj", "a.poly", "a.geojson", "a.msh"}) {
        Format format = formatByExtension(pName)->format;
        writeMesh(mesh, {{pathOf(pName), format}});
        MeshData back = readMesh(pathOf(pName), format == Format::Poly ? Format::Ele : format);
        bool bMarkers = format != Format::Obj;
        EXPECT_EQ(contentOf(back, bMarkers), contentOf(mesh, bMarkers)) << pName;
    }
}

TEST_F(WriterTest, NumbersOfTheInputAreKept)
{
    MeshData mesh = anyMesh();
    writeMesh(mesh, {{pathOf("a.node"), Format::Node}, {pathOf("a.msh"), Format::Msh}});
    MeshData back = readMesh(pathOf("a.node"), Format::Node);
    MeshData msh = readMesh(pathOf("a.msh"), Format::Msh);
    for (std::size_t v = 0; v < 200; ++v) {
        EXPECT_EQ(back.vertices.vAttributes[v], static_cast<double>(mesh.vInputNumbers[v]));
        bool bNew = mesh.vInputNumbers[v] == MeshData::kNewVertex;
        EXPECT_TRUE(bNew || msh.vInputNumbers[v] == mesh.vInputNumbers[v] + 1) << "node tags count from 1";
    }
}

TEST_F(WriterTest, NamesAreEscaped)
{
    MeshData mesh = anyMesh();
    mesh.vRegions[1].name = "say \"<&\n\xff";
    mesh.vertices.vAttributeNames = {"<depth>"};
    mesh.vertices.vAttributes.assign(200, 1.0);
    for (const FormatInfo& info : allFormats())
        if (info.bOutput && info.format != Format::WebScene)
            writeMesh(mesh, {{pathOf(std::string("n.") + info.pName), info.format}});
    EXPECT_NO_THROW(readMesh(pathOf("n.geojson"), Format::GeoJson));
    EXPECT_NO_THROW(readMesh(pathOf("n.msh"), Format::Msh));
    EXPECT_NE(read("n.vtu").find("&lt;depth>"), std::string::npos);
}

// Fault: a file left half written, or an old one lost, when one of several outputs fails.
TEST_F(WriterTest, FailedOutputsLeaveEverythingAsItWas)
{
    write("old.obj", "old");
    std::size_t numBefore = numFiles();
    EXPECT_THROW(
        writeMesh(anyMesh(),
                  {{pathOf("old.obj"), Format::Obj}, {pathOf("new/"), Format::WebScene}, {"/dev/full", Format::Vtu}}),
        FileError);
    EXPECT_EQ(read("old.obj"), "old");
    EXPECT_EQ(numFiles(), numBefore);
    EXPECT_THROW(checkTargets({{pathOf("missing/a.obj"), Format::Obj}}), FileError);
    EXPECT_THROW(checkTargets({{directory.path(), Format::Obj}}), FileError);
    EXPECT_THROW(checkTargets({{pathOf("old.obj/"), Format::WebScene}}), FileError);
}

TEST_F(WriterTest, ReplacedFilesKeepPermissionsAndLinks)
{
    write("real.obj", "old");
    chmod(pathOf("real.obj").c_str(), 0640);
    ASSERT_EQ(symlink("real.obj", pathOf("link.obj").c_str()), 0);
    writeMesh(anyMesh(), {{pathOf("link.obj"), Format::Obj}});
    struct stat status;
    ASSERT_EQ(lstat(pathOf("link.obj").c_str(), &status), 0);
    EXPECT_TRUE(S_ISLNK(status.st_mode));
    ASSERT_EQ(stat(pathOf("real.obj").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640u);
    EXPECT_GT(read("real.obj").size(), 1000u);
}

TEST_F(WriterTest, WebScenesAreCompleteInNewAndOldDirectories)
{
    write("note", "mine");
    std::string scene = pathOf("scene");
    for (int round = 0; round < 2; ++round) {
        writeMesh(anyMesh(), {{scene + "/", Format::WebScene}});
        for (const char* pName : {"index.html", "jsc3d.js", "jsc3d.ctm.js", "jsc3d.touch.js", "3d.obj", "3d.obj.js"})
            EXPECT_GT(read(std::string("scene/") + pName).size(), 1000u) << pName;
        EXPECT_EQ(numFiles(), 2u);
    }
    writeMesh(anyMesh(), {{directory.path(), Format::WebScene}});
    EXPECT_EQ(read("note"), "mine");
}

} // namespace
} // namespace quor2d_tool
