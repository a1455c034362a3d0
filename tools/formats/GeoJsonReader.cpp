#include "formats/GeoJsonReader.h"

#include "formats/ByteSource.h"
#include "formats/CoordIndex.h"
#include "formats/FileError.h"
#include "formats/GeometryBuilder.h"
#include "formats/NumberText.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cmath>
#include <iterator>
#include <nlohmann/json.hpp>

namespace quor2d_tool
{
namespace
{

using nlohmann::json;

// Feeds the parser from the source block by block.
class SourceIterator
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = char;

    SourceIterator() = default;
    explicit SourceIterator(ByteSource& source) : pSource(&source) {}

    char operator*() const { return static_cast<char>(pSource->peek()); }
    SourceIterator& operator++()
    {
        pSource->get();
        return *this;
    }
    SourceIterator operator++(int)
    {
        SourceIterator before = *this;
        pSource->get();
        return before;
    }
    // Only the comparison with the end is ever made.
    bool operator!=(const SourceIterator& other) const { return !(*this == other); }
    bool operator==(const SourceIterator&) const { return pSource->peek() == ByteSource::kEnd; }

private:
    ByteSource* pSource = nullptr;
};

// What a reader learns of each feature, beside its geometry.
struct FeatureData {
    std::string name;
    std::string id;
    double region = 0.0;
    int marker = 0;
    bool bConstraint = true;
};

// The events of the parser, sorted by where in the document they come from.
//
// The members of an object come in any order, so "coordinates" are gathered first and understood when the geometry
// ends and its type is known.
class GeoJsonHandler : public json::json_sax_t
{
public:
    GeoJsonHandler(ByteSource& rSource, Scene& rScene) : source(rSource), scene(rScene), builder(rScene) {}

    bool null() override { return value("null"); }
    bool boolean(bool bTrue) override;
    bool number_integer(number_integer_t number) override { return numberValue(static_cast<double>(number)); }
    bool number_unsigned(number_unsigned_t number) override { return numberValue(static_cast<double>(number)); }
    bool number_float(number_float_t number, const string_t&) override { return numberValue(number); }
    bool string(string_t& text) override;
    bool binary(binary_t&) override { return value("binary data"); }
    bool start_object(std::size_t) override;
    bool key(string_t& text) override;
    bool end_object() override;
    bool start_array(std::size_t) override;
    bool end_array() override;
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& problem) override;

    const std::vector<FeatureData>& features() const { return vFeatures; }

private:
    enum class Role { Top, Feature, Geometry, Properties, Foreign };
    struct Frame {
        Role role = Role::Foreign;
        std::string key;  // the member being read
        std::string type; // the value of the member "type"
        bool bGeometry = false;
        bool bFeature = false; // has opened a feature of its own
    };
    enum class Array { Coordinates, Features, Geometries, Foreign };

    bool value(const char* what);
    bool numberValue(double number);
    void addPosition();
    Role roleOfNewObject() const;
    void openFeature(Frame& frame);
    void endGeometry(const Frame& frame);
    void endTop(const Frame& frame);
    void addGeometry(const std::string& type);
    void addPolygons();
    void check(const char* pProblem) const
    {
        if (pProblem)
            source.fail(pProblem);
    }

    ByteSource& source;
    Scene& scene;
    GeometryBuilder builder;
    std::vector<FeatureData> vFeatures;
    std::vector<Frame> vFrames;
    std::vector<Array> vArrays; // the open arrays; marks of objects are frames

    // The coordinates being read: how deep the arrays are nested, where the lists of positions end, and where the
    // lists of these lists end.
    static constexpr int kUnknownDepth = -1;
    int depth = 0;
    int positionDepth = kUnknownDepth;
    std::vector<double> vNumbers;
    std::uint32_t firstPoint = 0;
    std::vector<std::uint32_t> vListEnds;
    std::vector<std::size_t> vGroupEnds;
    bool bInCoordinates = false;
};

bool GeoJsonHandler::value(const char* what)
{
    if (bInCoordinates)
        source.fail(std::string("coordinates hold ") + what);
    return true;
}

bool GeoJsonHandler::boolean(bool bTrue)
{
    value("a truth value");
    if (!vFrames.empty() && vFrames.back().role == Role::Properties && vFrames.back().key == "constraint")
        vFeatures.back().bConstraint = bTrue;
    return true;
}

bool GeoJsonHandler::numberValue(double number)
{
    if (bInCoordinates) {
        if (positionDepth == kUnknownDepth)
            positionDepth = depth;
        if (depth != positionDepth)
            source.fail("coordinates are not nested evenly");
        vNumbers.push_back(number);
        return true;
    }
    if (vFrames.empty() || vFeatures.empty())
        return true;
    const Frame& frame = vFrames.back();
    FeatureData& feature = vFeatures.back();
    if (frame.role == Role::Properties && vArrays.empty() == false && vArrays.back() == Array::Foreign)
        return true;
    if (frame.role == Role::Properties && frame.key == "region")
        feature.region = number;
    else if (frame.role == Role::Properties && frame.key == "marker" && std::abs(number) <= INT_MAX)
        feature.marker = static_cast<int>(number);
    else if (frame.role != Role::Foreign && frame.role != Role::Geometry && frame.key == "id")
        feature.id = numberText(number);
    return true;
}

bool GeoJsonHandler::string(string_t& text)
{
    value("text");
    if (vFrames.empty())
        return true;
    Frame& frame = vFrames.back();
    if (frame.key == "type" && frame.role != Role::Properties)
        frame.type = text;
    if (vFeatures.empty())
        return true;
    std::string lower = frame.key;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (frame.role == Role::Properties && lower == "name")
        vFeatures.back().name = text;
    else if ((frame.role == Role::Feature || frame.role == Role::Top) && frame.key == "id")
        vFeatures.back().id = text;
    return true;
}

GeoJsonHandler::Role GeoJsonHandler::roleOfNewObject() const
{
    if (vFrames.empty())
        return vArrays.empty() ? Role::Top : Role::Foreign;
    const Frame& parent = vFrames.back();
    if (parent.role == Role::Foreign || parent.role == Role::Properties)
        return Role::Foreign;
    if (parent.key == "features" && !vArrays.empty() && vArrays.back() == Array::Features)
        return Role::Feature;
    if (parent.key == "geometries" && !vArrays.empty() && vArrays.back() == Array::Geometries)
        return Role::Geometry;
    if (parent.key == "geometry")
        return Role::Geometry;
    return parent.key == "properties" ? Role::Properties : Role::Foreign;
}

bool GeoJsonHandler::start_object(std::size_t)
{
    value("an object");
    Frame frame;
    frame.role = roleOfNewObject();
    if (frame.role == Role::Feature)
        openFeature(frame);
    vFrames.push_back(frame);
    return true;
}

void GeoJsonHandler::openFeature(Frame& frame)
{
    if (!frame.bFeature || vFeatures.empty())
        vFeatures.emplace_back();
    frame.bFeature = true;
}

bool GeoJsonHandler::key(string_t& text)
{
    Frame& frame = vFrames.back();
    frame.key = text;
    if (frame.role == Role::Top && text == "features" && scene.points.size() == 0)
        vFeatures.clear(); // a collection may carry an id or properties of its own
    // Whatever stands at the top is one feature, unless it is a collection of features.
    if (frame.role == Role::Top &&
        (text == "geometry" || text == "geometries" || text == "coordinates" || text == "properties" || text == "id"))
        openFeature(frame);
    return true;
}

bool GeoJsonHandler::end_object()
{
    Frame frame = vFrames.back();
    vFrames.pop_back();
    if (frame.role == Role::Geometry)
        endGeometry(frame);
    if (frame.role == Role::Feature && frame.type != "Feature")
        source.fail("a member of \"features\" is not of the type Feature");
    if (frame.role == Role::Top)
        endTop(frame);
    return true;
}

void GeoJsonHandler::endTop(const Frame& frame)
{
    if (frame.type.empty())
        source.fail("not GeoJSON: the outermost object has no \"type\"");
    if (frame.type != "FeatureCollection" && frame.type != "Feature")
        endGeometry(frame);
}

bool GeoJsonHandler::start_array(std::size_t)
{
    Array kind = Array::Foreign;
    if (!vFrames.empty()) {
        Frame& frame = vFrames.back();
        bool bGeometryLike = frame.role == Role::Geometry || frame.role == Role::Top;
        if (bInCoordinates || (frame.key == "coordinates" && bGeometryLike))
            kind = Array::Coordinates;
        else if (frame.key == "features" && frame.role == Role::Top)
            kind = Array::Features;
        else if (frame.key == "geometries" && bGeometryLike)
            kind = Array::Geometries;
    }
    vArrays.push_back(kind);
    if (kind != Array::Coordinates)
        return true;
    if (!bInCoordinates) {
        bInCoordinates = true;
        vFrames.back().bGeometry = true;
        depth = 0;
        positionDepth = kUnknownDepth;
        firstPoint = static_cast<std::uint32_t>(scene.points.size());
        vListEnds.clear();
        vGroupEnds.clear();
    }
    ++depth;
    vNumbers.clear();
    if (positionDepth != kUnknownDepth && depth > positionDepth)
        source.fail("coordinates are not nested evenly");
    return true;
}

bool GeoJsonHandler::end_array()
{
    Array kind = vArrays.back();
    vArrays.pop_back();
    if (kind != Array::Coordinates)
        return true;
    if (depth == positionDepth)
        addPosition();
    else if (depth == positionDepth - 1)
        vListEnds.push_back(static_cast<std::uint32_t>(scene.points.size()));
    else if (depth == positionDepth - 2)
        vGroupEnds.push_back(vListEnds.size());
    --depth;
    bInCoordinates = depth > 0;
    return true;
}

void GeoJsonHandler::addPosition()
{
    if (vNumbers.size() < 2)
        source.fail("a position needs two numbers");
    std::uint32_t point = scene.addPoint(vNumbers[0], vNumbers[1]);
    if (vNumbers.size() > 2)
        setHeight(scene.points, point, vNumbers[2]);
    vNumbers.clear();
}

void GeoJsonHandler::endGeometry(const Frame& frame)
{
    if (frame.type.empty())
        source.fail("a geometry has no \"type\"");
    if (frame.type == "GeometryCollection")
        return;
    if (!frame.bGeometry)
        source.fail("a geometry of the type " + inQuotes(frame.type) + " has no \"coordinates\"");
    addGeometry(frame.type);
}

void GeoJsonHandler::addGeometry(const std::string& type)
{
    static const struct {
        const char* pName;
        int depth;
    } aTypes[] = {{"Point", 1},           {"MultiPoint", 2}, {"LineString", 2},
                  {"MultiLineString", 3}, {"Polygon", 3},    {"MultiPolygon", 4}};
    auto q_it = std::find_if(std::begin(aTypes), std::end(aTypes), [&](const auto& t) { return type == t.pName; });
    if (q_it == std::end(aTypes))
        source.fail("unknown type of geometry " + inQuotes(type));
    if (positionDepth == kUnknownDepth)
        return; // empty coordinates
    if (positionDepth != q_it->depth)
        source.fail("the coordinates of a " + type + " are arrays nested " + std::to_string(q_it->depth) +
                    " deep, not " + std::to_string(positionDepth));
    std::uint32_t feature = static_cast<std::uint32_t>(vFeatures.size());
    if (type == "Polygon" || type == "MultiPolygon") {
        if (type == "Polygon")
            vGroupEnds.assign(1, vListEnds.size());
        addPolygons();
    } else if (type == "LineString" || type == "MultiLineString") {
        std::uint32_t first = firstPoint;
        for (std::uint32_t end : vListEnds) {
            check(end == first ? "a line needs two points at least" : builder.addLine(first, end - 1, feature));
            first = end;
        }
    }
}

void GeoJsonHandler::addPolygons()
{
    std::uint32_t first = firstPoint;
    std::size_t list = 0;
    for (std::size_t groupEnd : vGroupEnds) {
        builder.beginPolygon(static_cast<std::uint32_t>(vFeatures.size()));
        for (; list < groupEnd; ++list) {
            check(vListEnds[list] == first ? "a ring is empty" : builder.addRing(first, vListEnds[list] - 1));
            first = vListEnds[list];
        }
    }
}

bool GeoJsonHandler::parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& problem)
{
    // "[json.exception...] parse error at line 3, column 4: reason": the place is ours to give.
    std::string text = problem.what();
    text.erase(0, text.find("] ") + 2);
    if (text.compare(0, 14, "parse error at") == 0)
        text.erase(0, text.find(": ") + 2);
    for (char& c : text)
        if ((c >= 0 && c < ' ') || c == 127)
            c = ' ';
    source.fail(text);
}

std::vector<FeatureData> readFeatures(const std::string& path, Scene& scene)
{
    ByteSource source(path);
    GeoJsonHandler handler(source, scene);
    json::sax_parse(SourceIterator(source), SourceIterator(), &handler);
    if (scene.points.size() == 0)
        throw FileError(source.name(), "holds no geometry");
    return handler.features();
}

} // namespace

Scene readGeoJsonScene(const std::string& path)
{
    Scene scene;
    for (const FeatureData& feature : readFeatures(path, scene))
        scene.vFeatureNames.push_back(feature.name.empty() ? feature.id : feature.name);
    return scene;
}

MeshData readGeoJsonMesh(const std::string& path)
{
    Scene scene;
    std::vector<FeatureData> vFeatures = readFeatures(path, scene);
    CoordIndex index(scene.points.size());
    std::vector<std::uint32_t> vVertexOfPoint;
    MeshData mesh;
    for (const Coord& c : scene.points.vCoords) {
        vVertexOfPoint.push_back(index.insert(c));
        if (vVertexOfPoint.back() == mesh.vertices.size())
            mesh.vertices.vCoords.push_back(c);
    }
    std::vector<double> vNumbers;
    for (const Scene::Ring& ring : scene.vRings) {
        double number = vFeatures[scene.vPolygonFeatures[ring.polygon] - 1].region;
        if (ring.count != 3 || ring.bHole)
            throw FileError(path, "a polygon of feature " + std::to_string(scene.vPolygonFeatures[ring.polygon]) +
                                      " is not a triangle");
        const std::uint32_t* pRing = &scene.vRingVertices[ring.first];
        mesh.vTriangles.push_back({vVertexOfPoint[pRing[0]], vVertexOfPoint[pRing[1]], vVertexOfPoint[pRing[2]]});
        vNumbers.push_back(number);
    }
    setTriangleRegions(mesh, vNumbers);
    for (const Scene::Segment& segment : scene.vSegments) {
        const FeatureData& feature = vFeatures[static_cast<std::size_t>(segment.marker) - 1];
        mesh.vEdges.push_back(
            {vVertexOfPoint[segment.from], vVertexOfPoint[segment.to], feature.marker, feature.bConstraint});
    }
    return mesh;
}

} // namespace quor2d_tool
