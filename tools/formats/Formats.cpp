#include "formats/Formats.h"

#include "formats/FileError.h"
#include "formats/GeoJsonReader.h"
#include "formats/MshReader.h"
#include "formats/NodePolyReader.h"
#include "formats/ObjReader.h"
#include "formats/PointTextReader.h"
#include "formats/WktReader.h"

#include <algorithm>
#include <cctype>

namespace quor2d_tool
{
namespace
{

Scene readSceneUnnamed(const std::string& path, Format format)
{
    switch (format) {
    case Format::Points:
        return readPointText(path);
    case Format::Node:
        return readNode(path);
    case Format::Poly:
        return readPoly(path);
    case Format::GeoJson:
        return readGeoJsonScene(path);
    case Format::Wkt:
        return readWkt(path);
    case Format::Obj:
        return readObjScene(path);
    default:
        throw FileError(path, std::string("no points or polygons can be read from ") + formatInfo(format).pName);
    }
}

MeshData readMeshUnnamed(const std::string& path, Format format)
{
    switch (format) {
    case Format::Node:
    case Format::Ele:
        return readNodeEle(path);
    case Format::GeoJson:
        return readGeoJsonMesh(path);
    case Format::Obj:
        return readObjMesh(path);
    case Format::Msh:
        return readMsh(path);
    default:
        throw FileError(path, std::string("no mesh can be read from ") + formatInfo(format).pName);
    }
}

} // namespace

const std::vector<FormatInfo>& allFormats()
{
    static const std::vector<FormatInfo> vFormats = {
        {Format::Points, "points", ".xy .xyz .csv .txt ", true, false, false,
         "one point a line: x, y and perhaps a height, between commas, semicolons, tabs or blanks; header lines and"
         " comments (#, %) may be there"},
        {Format::Node, "node", ".node ", true, true, true,
         "points with attributes and markers; as output together with the .ele file"},
        {Format::Poly, "poly", ".poly ", true, false, true,
         "points, segments with markers, holes and regions; as output the constraint edges beside .node and .ele"},
        {Format::Ele, "ele", ".ele ", false, true, true, "triangles with regions, beside the .node file"},
        {Format::Edge, "edge", ".edge ", false, false, true, "all edges with markers, beside .node and .ele"},
        {Format::GeoJson, "geojson", ".geojson .json ", true, true, true,
         "all geometries; in a polygon the first ring is the border, the others are holes"},
        {Format::Wkt, "wkt", ".wkt ", true, false, false, "well-known text, any number of geometries"},
        {Format::Obj, "obj", ".obj ", true, true, true, "Wavefront OBJ: vertices, lines, faces"},
        {Format::Msh, "msh", ".msh ", false, true, true, "Gmsh 4.1 text; regions and markers are physical groups"},
        {Format::Vtu, "vtu", ".vtu ", false, false, true, "VTK unstructured grid with region, marker and input number"},
        {Format::PostScript, "ps", ".ps .eps ", false, false, true, "a drawing"},
        {Format::Svg, "svg", ".svg ", false, false, true, "a drawing"},
        {Format::WebScene, "web", "/ ", false, false, true,
         "a directory (a name that ends in '/', or one that exists) with a page that shows the mesh in a browser"},
    };
    return vFormats;
}

const FormatInfo* formatByName(std::string_view name)
{
    for (const FormatInfo& info : allFormats())
        if (name == info.pName)
            return &info;
    return nullptr;
}

const FormatInfo* formatByExtension(const std::string& path)
{
    if (!path.empty() && path.back() == '/')
        return formatByName("web");
    std::size_t slash = path.rfind('/');
    std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash))
        return nullptr;
    std::string extension = path.substr(dot) + ' ';
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (const FormatInfo& info : allFormats())
        if (std::string_view(info.pExtensions).find(extension) != std::string_view::npos)
            return &info;
    return nullptr;
}

const FormatInfo& formatInfo(Format format)
{
    return *std::find_if(allFormats().begin(), allFormats().end(),
                         [format](const FormatInfo& info) { return info.format == format; });
}

Scene readScene(const std::string& path, Format format)
{
    Scene scene = readSceneUnnamed(path, format);
    scene.name = path == "-" ? "standard input" : path;
    if (scene.points.size() > kMaxCount)
        throw FileError(scene.name, "has more than " + std::to_string(kMaxCount) + " points");
    return scene;
}

MeshData readMesh(const std::string& path, Format format)
{
    MeshData mesh = readMeshUnnamed(path, format);
    mesh.name = path == "-" ? "standard input" : path;
    return mesh;
}

} // namespace quor2d_tool
