#include "TemporaryDirectoryTest.h"
#include "formats/FileError.h"
#include "formats/Formats.h"

#include <gtest/gtest.h>

namespace quor2d_tool
{
namespace
{

struct Fault {
    const char* pFile;
    const char* pContent;
    const char* pMessage; // behind the path
};

class ReaderTest : public TemporaryDirectoryTest
{
protected:
    Scene readText(const std::string& name, const std::string& content) const
    {
        return readScene(write(name, content), formatByExtension(name)->format);
    }

    // Scenes where the format has them, else meshes.
    std::string faultOf(const Fault& fault) const
    {
        std::string path = write(fault.pFile, fault.pContent);
        const FormatInfo& info = *formatByExtension(fault.pFile);
        try {
            if (info.bScene)
                readScene(path, info.format);
            else
                readMesh(path, info.format);
        } catch (const FileError& error) {
            std::string text = error.what();
            return text.compare(0, path.size(), path) == 0 ? text.substr(path.size()) : text;
        }
        return "no fault";
    }

    void expectFaults(std::initializer_list<Fault> faults) const
    {
        for (const Fault& fault : faults)
            EXPECT_EQ(faultOf(fault), fault.pMessage) << fault.pContent;
    }
};

std::string pointsOf(const Scene& scene)
{
    std::string text;
    for (const Coord& c : scene.points.vCoords)
        text += std::to_string(static_cast<int>(c.x)) + "," + std::to_string(static_cast<int>(c.y)) + " ";
    return text;
}

// Faults: separators mixed up, headers taken for data, comments not cut, columns by position despite names.
TEST_F(ReaderTest, PointTextsOfAllKindsAreRead)
{
    EXPECT_EQ(pointsOf(readText("a.xy", "1 2\n\n# note\n  3\t4 # here\r\n+5 6e0")), "1,2 3,4 5,6 ");
    EXPECT_EQ(pointsOf(readText("a.csv", "\xEF\xBB\xBFid,lat,lon\n7, 2, 1\n8,4,3\n")), "1,2 3,4 ");
    EXPECT_EQ(pointsOf(readText("a.csv", "name;X;Y\n\"a;b # c\";1;2\n\"\";\"3\";4\n")), "1,2 3,4 ");
    EXPECT_EQ(pointsOf(readText("a.txt", "easting\tnorthing\n1\t2\n")), "1,2 ");
    Scene scene = readText("a.xyz", "x y z\n1 2 3.5\n4 5 -1\n");
    EXPECT_EQ(scene.points.vAttributes, (std::vector<double>{3.5, -1}));
    EXPECT_TRUE(readText("a.csv", "1,2,three\n").points.vAttributes.empty());
}

TEST_F(ReaderTest, MalformedPointTextsAreNamed)
{
    expectFaults({
        {"a.xy", "", ": holds no points"},
        {"a.xy", "x y\n", ": holds no points"},
        {"a.xy", "1 2\n3\n", ":2: y is missing"},
        {"a.xy", "1 2\n3 nan\n", ":2: y 'nan' is not a finite number"},
        {"a.xy", "1 1e999\n", ":1: y '1e999' is not a finite number"},
        {"a.xy", "1 2\n\n3 4x\n", ":3: y '4x' is not a number"},
        {"a.csv", "x,y,z\n1,2,\n", ":2: height is missing"},
        {"a.csv", "1,2\n3,\n", ":2: y is missing"},
    });
}

// Fault: numbers beyond the range of doubles that are refused, or read as garbage, instead of zero.
TEST_F(ReaderTest, TinyNumbersBecomeDenormalOrZero)
{
    Scene scene = readText("a.xy", "1e-400 4.9406564584124654e-324\n");
    EXPECT_EQ(scene.points.vCoords[0].x, 0.0);
    EXPECT_EQ(scene.points.vCoords[0].y, std::numeric_limits<double>::denorm_min());
}

TEST_F(ReaderTest, PolyFilesAreRead)
{
    Scene scene = readText("a.poly", "# a square\n4 2 1 1\n1 0 0 7.5 3\n2 4 0 8 0\n3 4 4 0 0\n4 0 4 0 0\n"
                                     "2 1\n1 1 2 5\n2 2 3 -6\n1\n1 2 2\n1\n1 1 1 9 0.5\n");
    EXPECT_EQ(scene.firstNumber, 1);
    EXPECT_EQ(scene.points.vMarkers[0], 3);
    EXPECT_EQ(scene.points.vAttributes[1], 8.0);
    ASSERT_EQ(scene.vSegments.size(), 2u);
    EXPECT_EQ(scene.vSegments[1].from, 1u);
    EXPECT_EQ(scene.vSegments[1].marker, -6);
    EXPECT_EQ(scene.vHolePoints.size(), 1u);
    EXPECT_EQ(scene.vRegionPoints.at(0).number, 9.0);
    EXPECT_EQ(scene.vRegionPoints.at(0).maxArea, 0.5);

    write("b.node", "3 2 0 0\n0 0 0\n1 1 0\n2 0 1\n");
    EXPECT_EQ(readText("b.poly", "0 2 0 0\n1 0\n0 0 2\n0\n").vSegments.at(0).to, 2u);
}

TEST_F(ReaderTest, MalformedNodePolyAndEleFilesAreNamed)
{
    write("m.node", "3 2 0 0\n1 0 0\n2 1 0\n3 0 1\n");
    expectFaults({
        {"a.node", "", ": file ends where the number of points is expected"},
        {"a.node", "0 2 0 0\n", ": holds no points"},
        {"a.node", "3 2 0 0\n1 0 0\n2 1 0\n", ":3: file ends where a point is expected"},
        {"a.node", "1 2 0 0\n1 0 0\n2 1 0\n", ":3: unexpected '2' after the last list"},
        {"a.node", "2 3 0 0\n", ":1: only two-dimensional points can be read"},
        {"a.node", "99999999999999999999 2 0 0\n", ":1: the number of points '99999999999999999999' is too large"},
        {"a.node", "-1 2 0 0\n", ":1: the number of points -1 is outside 0 to 2147483647"},
        {"a.node", "2 2 0 0\n1 0 0\n3 1 0\n", ":3: number of the point 3 where 2 is expected"},
        {"a.node", "1 2 1 0\n1 0 0\n", ":2: attribute is missing"},
        {"a.node", "1 2 0 0\n1 0 inf\n", ":2: y 'inf' is not a finite number"},
        {"a.poly", "2 2 0 0\n1 0 0\n2 1 1\n1 0\n1 1 3\n", ":5: end point of the segment 3 is outside 1 to 2"},
        {"a.poly", "2 2 0 0\n1 0 0\n2 1 1\n2 0\n1 1 2\n", ":5: file ends where a segment is expected"},
        {"m.ele", "1 3 0\n1 1 2 4\n", ":2: corner 4 is outside 1 to 3"},
        {"m.ele", "1 6 0\n", ":1: only triangles of three corners can be read"},
        {"m.ele", "2 3 0\n1 1 2 3\n", ":2: file ends where a triangle is expected"},
    });
}

TEST_F(ReaderTest, GeoJsonOfAllKindsIsRead)
{
    Scene scene = readText("a.geojson", R"({"features":[
        {"geometry":{"coordinates":[[[0,0],[4,0],[0,4],[0,0]],[[1,1],[2,1],[1,2],[1,1]]],"type":"Polygon"},
         "type":"Feature","properties":{"other":{"name":"no"},"NAME":"Hal\u00e9"}},
        {"type":"Feature","id":12,"properties":null,"geometry":{"type":"GeometryCollection","geometries":[
            {"type":"Point","coordinates":[5,5,7]},{"type":"LineString","coordinates":[[1,0],[2,0],[3,0]]}]}},
        {"type":"Feature","properties":{},"geometry":null},
        {"type":"Feature","properties":{},"geometry":{"type":"MultiPolygon","coordinates":
            [[[[0,0],[1,0],[0,1],[0,0]]],[[[8,8],[9,8],[8,9],[8,8]]]]},"bbox":[0,0,[1]]}],
        "type":"FeatureCollection","crs":{"type":"name","properties":{"name":"x"}}})");
    EXPECT_EQ(scene.vFeatureNames, (std::vector<std::string>{"Hal\u00e9", "12", "", ""}));
    ASSERT_EQ(scene.vRings.size(), 4u);
    EXPECT_FALSE(scene.vRings[0].bHole);
    EXPECT_TRUE(scene.vRings[1].bHole);
    EXPECT_EQ(scene.vRings[1].count, 3u);
    EXPECT_EQ(scene.vPolygonFeatures, (std::vector<std::uint32_t>{1, 4, 4}));
    ASSERT_EQ(scene.vSegments.size(), 2u);
    EXPECT_EQ(scene.vSegments[0].marker, 2);
    EXPECT_EQ(scene.points.vAttributes[8], 7.0);
    EXPECT_EQ(readText("b.json", R"({"type":"MultiPoint","coordinates":[[1,2],[3,4]]})").points.size(), 2u);
}

TEST_F(ReaderTest, MalformedGeoJsonIsNamed)
{
    expectFaults({
        {"a.json", "{}", ":1: not GeoJSON: the outermost object has no \"type\""},
        {"a.json", "[1,2]", ": holds no geometry"},
        {"a.json", R"({"type":"FeatureCollection","features":[]})", ": holds no geometry"},
        {"a.json", R"({"type":"Point","coordinates":[1,null]})", ":1: coordinates hold null"},
        {"a.json", "{\"type\":\"Point\",\n\"coordinates\":[1]}", ":2: a position needs two numbers"},
        {"a.json", R"({"type":"Point","coordinates":[[1,2]]})",
         ":1: the coordinates of a Point are arrays nested 1 deep, not 2"},
        {"a.json", R"({"type":"MultiPoint","coordinates":[[1,2],[[3,4]]]})", ":1: coordinates are not nested evenly"},
        {"a.json", R"({"type":"Polygon","coordinates":[[[0,0],[1,0],[0,1]]]})",
         ":1: a ring needs four positions at least, the last one equal to the first"},
        {"a.json", R"({"type":"Polygon","coordinates":[[[0,0],[1,0],[0,1],[5,5]]]})",
         ":1: the ring is not closed: its last position differs from its first"},
        {"a.json", R"({"type":"Polygon"})", ":1: a geometry of the type 'Polygon' has no \"coordinates\""},
        {"a.json", R"({"type":"Circle","coordinates":[1,2]})", ":1: unknown type of geometry 'Circle'"},
        {"a.json", R"({"type":"Feature","geometry":{"coordinates":[1,2]}})", ":1: a geometry has no \"type\""},
    });
    for (const char* pBroken : {"", "{\"type\":\"Point\",\n\"coordinates\":[1,2", "{\"type\":\n\"Point\" 5}",
                                R"({"type":"Point","coordinates":[1,1e999]})", "\xff\xfe{"}) {
        std::string fault = faultOf({"a.json", pBroken, ""});
        EXPECT_EQ(fault[0], ':') << fault;
        EXPECT_EQ(fault.find("json.exception"), std::string::npos) << fault;
    }
}

TEST_F(ReaderTest, WktOfAllKindsIsRead)
{
    Scene scene = readText("a.wkt", "# comment\nSRID=4326;POINT Z (1 2 3)\nLINESTRING EMPTY;\n"
                                    "polygon ((0 0, 9 0,\n 0 9, 0 0), (1 1, 2 1, 1 2, 1 1))\nMULTIPOINT((1 1),(2 2))\n"
                                    "GEOMETRYCOLLECTION(POINTM(1 2 3),MULTILINESTRING((0 0,1 1),(2 2,3 3,4 4)))");
    EXPECT_EQ(scene.vFeatureNames.size(), 5u);
    EXPECT_EQ(scene.vRings.size(), 2u);
    EXPECT_EQ(scene.vPolygonFeatures, (std::vector<std::uint32_t>{3}));
    EXPECT_EQ(scene.vSegments.size(), 3u);
    EXPECT_EQ(scene.points.vAttributes[0], 3.0);
    EXPECT_EQ(scene.points.vAttributes[11], 0.0) << "a measure is no height";
    expectFaults({
        {"a.wkt", "\n\n", ": holds no geometry"},
        {"a.wkt", "POINT (1 2)\nPOINT (1)\n", ":2: a position needs two numbers"},
        {"a.wkt", "POINT (1 2, 3 4)", ":1: a POINT has one position"},
        {"a.wkt", "POINT (1 2", ":1: expected ')', found the end of the file"},
        {"a.wkt", "\nCIRCLE (1 2)", ":2: unknown geometry 'CIRCLE'"},
        {"a.wkt", "LINESTRING (1 2)", ":1: a line needs two points at least"},
        {"a.wkt", "POLYGON ((0 0, 1 0, 0 1, 0 2))",
         ":1: the ring is not closed: its last position differs from its first"},
        {"a.wkt", "POINT (1 2x)", ":1: coordinate '2x' is not a number"},
        {"a.wkt", "(1 2)", ":1: expected the name of a geometry, found '('"},
    });
}

TEST_F(ReaderTest, ObjFilesAreRead)
{
    Scene scene = readText("a.obj", "mtllib x\nv 0 0\nv 1 0 0\nv 0 1 2\nvt 0 0\ng a b\nf 1/1 2//3 -1\nl 1 2 3\n"
                                    "g c\nf 3 2 1\ng a\nf 1 2 3\n");
    EXPECT_EQ(scene.vPolygonFeatures, (std::vector<std::uint32_t>{1, 2, 1}));
    EXPECT_EQ(scene.vRingVertices, (std::vector<std::uint32_t>{0, 1, 2, 2, 1, 0, 0, 1, 2}));
    EXPECT_EQ(scene.vSegments.size(), 2u);
    EXPECT_EQ(scene.points.vAttributes, (std::vector<double>{0, 0, 2}));
    expectFaults({
        {"a.obj", "# nothing\n", ": holds no vertices"},
        {"a.obj", "v 0\n", ":1: y is missing"},
        {"a.obj", "v 0 0\nf 1 1 2\n", ":2: vertex number 2 where there are 1 vertices so far"},
        {"a.obj", "v 0 0\nl 1 99999999999999999999\n", ":2: vertex number '99999999999999999999' is too large"},
        {"a.obj", "v 0 0\nf 1 0 1\n", ":2: vertex number 0 where there are 1 vertices so far"},
        {"a.obj", "v 0 0\nf 1 1\n", ":2: a face needs three vertices at least"},
        {"a.obj", "0 0\n1 1\n", ":1: expected a keyword, found '0'"},
    });
}

TEST_F(ReaderTest, MalformedMshFilesAreNamed)
{
    const std::string head = "$MeshFormat\n4.1 0 8\n$EndMeshFormat\n";
    const std::string nodes = "$Nodes\n1 3 1 9\n2 1 0 3\n1\n5\n9\n0 0 0\n1 0 0\n0 1 0\n$EndNodes\n";
    auto element = [&](const std::string& text) {
        return head + nodes + "$Elements\n1 1 1 1\n2 1 " + text + "\n$EndElements\n";
    };
    EXPECT_EQ(readMesh(write("a.msh", element("2 1\n1 1 5 9")), Format::Msh).vTriangles.at(0)[2], 2u);
    expectFaults({
        {"a.msh", "", ": file ends where $MeshFormat is expected"},
        {"a.msh", "$MeshFormat\n2.2 0 8\n", ":2: version '2.2' of the format; only 4.1 can be read"},
        {"a.msh", "$MeshFormat\n4.1 1 8\n", ":2: binary .msh files cannot be read"},
        {"a.msh", head.c_str(), ": holds no nodes"},
        {"a.msh", (head + "$Nodes\n1 2 1 9\n2 1 0 1\n1\n0 0 0\n").c_str(), ":8: 1 nodes where 2 are announced"},
        {"a.msh", element("2 1\n1 1 5 7").c_str(), ":17: there is no node with the tag 7"},
        {"a.msh", element("3 1\n1 1 5 7 8").c_str(), ":17: elements of the type 3 where triangles are expected"},
        {"a.msh", element("2 2\n1 1 5 9").c_str(), ":18: tag of the element '$EndElements' is not a whole number"},
    });
}

TEST_F(ReaderTest, MissingFilesAndDirectoriesAreNamed)
{
    for (const FormatInfo& info : allFormats()) {
        if (!info.bScene)
            continue;
        EXPECT_THROW(readScene(pathOf("missing"), info.format), FileError);
        EXPECT_THROW(readScene(directory.path(), info.format), FileError);
    }
}

// Fault: text behind the end of a block of the buffer lost or doubled.
TEST_F(ReaderTest, FilesOfManyBlocksAreReadWhole)
{
    std::string text, wkt = "MULTIPOINT(";
    for (int i = 0; i < 300000; ++i) {
        text += std::to_string(i) + " " + std::to_string(-i) + "\n";
        wkt += (i ? "," : "") + std::to_string(i) + " " + std::to_string(-i);
    }
    for (const Scene& scene : {readText("a.xy", text), readText("a.wkt", wkt + ")")}) {
        ASSERT_EQ(scene.points.size(), 300000u);
        for (int i = 0; i < 300000; ++i)
            ASSERT_TRUE(scene.points.vCoords[static_cast<std::size_t>(i)] == (Coord{double(i), double(-i)})) << i;
    }
}

} // namespace
} // namespace quor2d_tool
