#include "formats/Scene.h"

#include <algorithm>

namespace quor2d_tool
{

void setHeight(VertexTable& vertices, std::size_t i, double z)
{
    if (vertices.vAttributeNames.empty())
        vertices.vAttributeNames.push_back(kHeightName);
    vertices.vAttributes.resize(vertices.size(), 0.0);
    vertices.vAttributes[i] = z;
}

std::uint32_t Scene::addPoint(double x, double y)
{
    points.vCoords.push_back({x, y});
    if (!points.vAttributeNames.empty())
        points.vAttributes.resize(points.size() * points.vAttributeNames.size(), 0.0);
    return static_cast<std::uint32_t>(points.size() - 1);
}

void Scene::addRing(bool bHole)
{
    std::size_t first = vRings.empty() ? 0 : vRings.back().first + vRings.back().count;
    vRings.push_back(
        {first, vRingVertices.size() - first, static_cast<std::uint32_t>(vPolygonFeatures.size() - 1), bHole});
}

void setTriangleRegions(MeshData& mesh, const std::vector<double>& vNumbers)
{
    if (vNumbers.empty())
        return;
    std::vector<double> vDistinct = vNumbers;
    std::sort(vDistinct.begin(), vDistinct.end());
    vDistinct.erase(std::unique(vDistinct.begin(), vDistinct.end()), vDistinct.end());
    vDistinct.erase(std::remove(vDistinct.begin(), vDistinct.end(), 0.0), vDistinct.end());
    mesh.vRegions.assign(1, {});
    for (double number : vDistinct)
        mesh.vRegions.push_back({number, {}});
    mesh.vTriangleRegions.clear();
    for (double number : vNumbers) {
        auto q_it = std::lower_bound(vDistinct.begin(), vDistinct.end(), number);
        mesh.vTriangleRegions.push_back(number == 0.0 ? 0 : static_cast<std::uint32_t>(q_it - vDistinct.begin() + 1));
    }
}

} // namespace quor2d_tool
