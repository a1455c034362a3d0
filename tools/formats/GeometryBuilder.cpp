#include "formats/GeometryBuilder.h"

namespace quor2d_tool
{

const char* GeometryBuilder::addLine(std::uint32_t first, std::uint32_t last, std::uint32_t feature)
{
    if (last == first)
        return "a line needs two points at least";
    for (std::uint32_t i = first; i < last; ++i)
        scene.vSegments.push_back({i, i + 1, static_cast<int>(feature)});
    return nullptr;
}

void GeometryBuilder::beginPolygon(std::uint32_t feature)
{
    scene.addPolygon(feature);
    bOuter = true;
}

const char* GeometryBuilder::addRing(std::uint32_t first, std::uint32_t last)
{
    if (last - first < 3)
        return "a ring needs four positions at least, the last one equal to the first";
    if (!(scene.points.vCoords[first] == scene.points.vCoords[last]))
        return "the ring is not closed: its last position differs from its first";
    for (std::uint32_t i = first; i < last; ++i)
        scene.vRingVertices.push_back(i);
    scene.addRing(!bOuter);
    ++scene.numClosingPoints;
    bOuter = false;
    return nullptr;
}

} // namespace quor2d_tool
