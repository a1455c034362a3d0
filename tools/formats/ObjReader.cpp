#include "formats/ObjReader.h"

#include "formats/FileError.h"
#include "formats/LineReader.h"
#include "formats/NumberText.h"

#include <unordered_map>

namespace quor2d_tool
{
namespace
{

// Reads the file once; what becomes of a face is up to the derived reader.
class ObjReader
{
public:
    explicit ObjReader(const std::string& path) : lines(path) {}
    virtual ~ObjReader() = default;

protected:
    void readAll();

    virtual void addFace(const std::vector<std::uint32_t>& vCorners, std::uint32_t feature) = 0;
    virtual std::uint32_t numPoints() const = 0;
    virtual void addPoint(double x, double y, double z) = 0;
    virtual void addSegment(std::uint32_t from, std::uint32_t to) = 0;

    LineReader lines;
    std::vector<std::string> vGroupNames; // of feature 1, 2, ...

private:
    void readVertex();
    void readCorners();
    void readLine();
    void readFace();
    void chooseGroup();

    std::vector<std::uint32_t> vCorners;
    std::unordered_map<std::string, std::uint32_t> mGroups;
    std::uint32_t currentFeature = 0;
};

void ObjReader::readAll()
{
    while (lines.nextFilled('#')) { // ends with the input
        if (lines.text().back() == '\\')
            lines.fail("lines continued by a backslash cannot be read");
        std::string_view keyword = lines.field();
        if (keyword == "v")
            readVertex();
        else if (keyword == "l")
            readLine();
        else if (keyword == "f")
            readFace();
        else if (keyword == "g" || keyword == "o")
            chooseGroup();
        else if (looksLikeNumber(keyword))
            lines.fail("expected a keyword, found " + inQuotes(keyword));
        // texture coordinates, normals, materials and the like say nothing about the plane
    }
    if (numPoints() == 0)
        throw FileError(lines.name(), "holds no vertices");
}

void ObjReader::readVertex()
{
    double x = lines.number("x");
    double y = lines.number("y");
    addPoint(x, y, lines.hasField() ? lines.number("z") : 0.0);
}

// Corner references such as 7, 7/2, 7/2/5 and 7//5; negative ones count back from the newest vertex.
void ObjReader::readCorners()
{
    vCorners.clear();
    while (lines.hasField()) { // every turn takes a field
        std::string_view text = lines.field();
        std::string_view number = text.substr(0, text.find('/'));
        std::int64_t index = 0;
        if (const char* pProblem = parseInteger(number, index))
            lines.fail("vertex number " + inQuotes(text) + " " + pProblem);
        std::int64_t count = numPoints();
        if (index == 0 || index > count || index < -count)
            lines.fail("vertex number " + std::to_string(index) + " where there are " + std::to_string(count) +
                       " vertices so far");
        vCorners.push_back(static_cast<std::uint32_t>(index > 0 ? index - 1 : count + index));
    }
}

void ObjReader::readLine()
{
    readCorners();
    if (vCorners.size() < 2)
        lines.fail("a line needs two vertices at least");
    for (std::size_t i = 1; i < vCorners.size(); ++i)
        addSegment(vCorners[i - 1], vCorners[i]);
}

void ObjReader::readFace()
{
    readCorners();
    if (vCorners.size() < 3)
        lines.fail("a face needs three vertices at least");
    if (currentFeature == 0)
        chooseGroup(); // faces before the first group make a feature without a name
    addFace(vCorners, currentFeature);
}

void ObjReader::chooseGroup()
{
    std::string groupName(lines.field());
    auto [q_it, bNew] = mGroups.emplace(groupName, static_cast<std::uint32_t>(vGroupNames.size() + 1));
    if (bNew)
        vGroupNames.push_back(groupName);
    currentFeature = q_it->second;
}

class ObjSceneReader : public ObjReader
{
public:
    using ObjReader::ObjReader;

    Scene read()
    {
        readAll();
        scene.vFeatureNames = vGroupNames;
        scene.firstNumber = 1;
        return std::move(scene);
    }

private:
    void addFace(const std::vector<std::uint32_t>& vFaceCorners, std::uint32_t feature) override
    {
        scene.addPolygon(feature);
        scene.vRingVertices.insert(scene.vRingVertices.end(), vFaceCorners.begin(), vFaceCorners.end());
        scene.addRing(false);
    }
    std::uint32_t numPoints() const override { return static_cast<std::uint32_t>(scene.points.size()); }
    void addPoint(double x, double y, double z) override
    {
        std::uint32_t point = scene.addPoint(x, y);
        if (z != 0.0)
            setHeight(scene.points, point, z);
    }
    void addSegment(std::uint32_t from, std::uint32_t to) override { scene.vSegments.push_back({from, to, 0}); }

    Scene scene;
};

class ObjMeshReader : public ObjReader
{
public:
    using ObjReader::ObjReader;

    MeshData read()
    {
        readAll();
        mesh.firstNumber = 1;
        std::vector<double> vNumbers;
        for (std::uint32_t feature : vTriangleFeatures)
            vNumbers.push_back(regionNumber(feature));
        setTriangleRegions(mesh, vNumbers);
        return std::move(mesh);
    }

private:
    // Groups "region_7" are ours; others are numbered as they come, and faces outside any group are in no region.
    double regionNumber(std::uint32_t feature) const
    {
        const std::string& groupName = vGroupNames[feature - 1];
        const std::string prefix = kObjRegionPrefix;
        double number = 0.0;
        if (groupName.compare(0, prefix.size(), prefix) == 0 && !parseNumber(groupName.substr(prefix.size()), number))
            return number;
        return groupName.empty() ? 0.0 : feature;
    }

    void addFace(const std::vector<std::uint32_t>& vFaceCorners, std::uint32_t feature) override
    {
        if (vFaceCorners.size() != 3)
            lines.fail("a face with " + std::to_string(vFaceCorners.size()) + " corners where a triangle is expected");
        mesh.vTriangles.push_back({vFaceCorners[0], vFaceCorners[1], vFaceCorners[2]});
        vTriangleFeatures.push_back(feature);
    }
    std::uint32_t numPoints() const override { return static_cast<std::uint32_t>(mesh.vertices.size()); }
    void addPoint(double x, double y, double z) override
    {
        mesh.vertices.vCoords.push_back({x, y});
        if (z != 0.0 || !mesh.vertices.vAttributes.empty())
            setHeight(mesh.vertices, mesh.vertices.size() - 1, z);
    }
    void addSegment(std::uint32_t from, std::uint32_t to) override { mesh.vEdges.push_back({from, to, 0, true}); }

    MeshData mesh;
    std::vector<std::uint32_t> vTriangleFeatures;
};

} // namespace

Scene readObjScene(const std::string& path)
{
    return ObjSceneReader(path).read();
}

MeshData readObjMesh(const std::string& path)
{
    return ObjMeshReader(path).read();
}

} // namespace quor2d_tool
