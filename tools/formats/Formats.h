#pragma once

#include "formats/Scene.h"

#include <string>
#include <string_view>
#include <vector>

namespace quor2d_tool
{

enum class Format { Points, Node, Poly, Ele, Edge, GeoJson, Wkt, Obj, Msh, Vtu, PostScript, Svg, WebScene };

/// What the tool and its manual know of a format.
struct FormatInfo {
    Format format;
    const char* pName;       ///< as given to --input-format and --format
    const char* pExtensions; ///< each with its point and a blank behind it
    bool bScene;             ///< points, lines and polygons can be read from it
    bool bMesh;              ///< a mesh can be read from it
    bool bOutput;            ///< a mesh can be written to it
    const char* pDescription;
};

const std::vector<FormatInfo>& allFormats();

/// @return null where there is no such format
const FormatInfo* formatByName(std::string_view name);
const FormatInfo* formatByExtension(const std::string& path);

/// The format with that tag.
const FormatInfo& formatInfo(Format format);

/// Reads points, lines and polygons; "-" is standard input. Throws FileError.
Scene readScene(const std::string& path, Format format);

/// Reads a mesh. Throws FileError.
MeshData readMesh(const std::string& path, Format format);

} // namespace quor2d_tool
