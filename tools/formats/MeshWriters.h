#pragma once

#include "formats/OutputFile.h"
#include "formats/Scene.h"

#include <string>

namespace quor2d_tool
{

/// Each writes a mesh in one format. Coordinates read back bit for bit, except from the drawings (.ps, .svg).

/// Vertices with height, constraint edges as lines, triangles in groups "region_<number>".
void writeObj(const MeshData& mesh, OutputFile& file);

/// The points: attributes, then the number in the input as one more attribute, then the marker. In .node and .edge a
/// part of the border without a marker of its own gets 1, as usual in these formats.
void writeNode(const MeshData& mesh, OutputFile& file);

/// The triangles with the number of their region.
void writeEle(const MeshData& mesh, OutputFile& file);

/// Every edge with its marker, 0 inside.
void writeEdge(const MeshData& mesh, OutputFile& file);

/// The constraint edges with their markers, for the points of the .node file.
void writePoly(const MeshData& mesh, OutputFile& file);

/// A polygon per triangle (properties triangle, region, name, vertices: numbers in the input or null), then a line per
/// constraint and border edge (marker, constraint, vertices).
void writeGeoJson(const MeshData& mesh, OutputFile& file);

/// An unstructured grid of triangles and lines: point data "input", "marker" and the attributes, cell data "region"
/// and "marker".
void writeVtu(const MeshData& mesh, OutputFile& file);

/// Gmsh 4.1 text: regions and markers are physical groups; a node's tag is the point's number in the input, counted
/// from 1.
void writeMsh(const MeshData& mesh, OutputFile& file);

/// Drawings on a page: regions coloured, constraints dark.
void writePostScript(const MeshData& mesh, OutputFile& file);
void writeSvg(const MeshData& mesh, OutputFile& file);

} // namespace quor2d_tool
