#pragma once

#include <cstdint>
#include <vector>

namespace ZELK_QUOR2D
{

class Point2;
class TextWriter;
class Triangle2;

/// Triangles as the text of a Wavefront OBJ file with z = 0.
///
/// Vertices are numbered from 1 in the order in which the corners 0, 1, 2 of the triangles meet them first; faces
/// follow the order of the triangles.
class ObjText
{
public:
    /// Numbers the corners of the triangles, which must stay unchanged as long as the text is written.
    explicit ObjText(const std::vector<Triangle2*>& vTriangles);

    void write(TextWriter& writer) const;

private:
    std::vector<const Point2*> vVertices;      // number - 1 -> vertex
    std::vector<std::uint32_t> vCornerNumbers; // three per triangle
};

} // namespace ZELK_QUOR2D
