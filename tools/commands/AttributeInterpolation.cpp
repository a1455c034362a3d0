#include "commands/AttributeInterpolation.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quor2d_tool
{

using ZELK_QUOR2D::Point2;
using ZELK_QUOR2D::Quor_2D;
using ZELK_QUOR2D::Triangle2;

AttributeInterpolation::AttributeInterpolation(const Scene& rScene, const PlanarGraph& rGraph, int rScale)
    : scene(rScene), graph(rGraph), scale(rScale), numColumns(rScene.points.vAttributeNames.size())
{
}

void AttributeInterpolation::append(std::vector<double>& vAttributes, const Point2& vertex, std::uint32_t point,
                                    std::uint32_t segment)
{
    if (numColumns == 0)
        return;
    if (point != PlanarGraph::kNewVertex) {
        for (std::size_t k = 0; k < numColumns; ++k)
            vAttributes.push_back(value(point, k));
    } else if (segment >= graph.vSegments.size() || !appendAlong(vAttributes, vertex, segment)) {
        appendWithin(vAttributes, vertex);
    }
}

bool AttributeInterpolation::appendAlong(std::vector<double>& vAttributes, const Point2& vertex,
                                         std::uint32_t segment) const
{
    std::uint32_t from = graph.vSegments[segment].from, to = graph.vSegments[segment].to;
    if (graph.vPoints[from] == PlanarGraph::kNewVertex || graph.vPoints[to] == PlanarGraph::kNewVertex)
        return false;
    const Coord& a = graph.vCoords[from];
    const Coord& b = graph.vCoords[to];
    double dx = b.x - a.x, dy = b.y - a.y;
    double x = std::ldexp(vertex.x(), -scale) - a.x, y = std::ldexp(vertex.y(), -scale) - a.y;
    double length = std::hypot(dx, dy);
    double part = std::clamp((dx / length * x + dy / length * y) / length, 0.0, 1.0);
    for (std::size_t k = 0; k < numColumns; ++k)
        vAttributes.push_back((1 - part) * value(graph.vPoints[from], k) + part * value(graph.vPoints[to], k));
    return true;
}

void AttributeInterpolation::buildBase()
{
    std::vector<Point2> vPoints;
    for (std::size_t v = 0; v < graph.vCoords.size(); ++v)
        if (graph.vPoints[v] != PlanarGraph::kNewVertex) {
            vPoints.push_back(Point2(std::ldexp(graph.vCoords[v].x, scale), std::ldexp(graph.vCoords[v].y, scale)));
            vPoints.back().setCustomIndex(static_cast<int>(graph.vPoints[v]));
        }
    pBase = std::make_unique<Quor_2D>(static_cast<unsigned int>(vPoints.size()));
    pBase->insert(vPoints);
}

void AttributeInterpolation::appendWithin(std::vector<double>& vAttributes, const Point2& vertex)
{
    if (!pBase)
        buildBase();
    const Triangle2* pTriangle = pBase->locate(vertex);
    std::array<double, 3> aWeights{0.0, 0.0, 0.0};
    double total = 0.0;
    for (int i = 0; i < 3 && pTriangle; ++i) {
        const Point2* pNext = pTriangle->getCorner(i == 2 ? 0 : i + 1);
        const Point2* pPrev = pTriangle->getCorner(i == 0 ? 2 : i - 1);
        double area = (pNext->x() - vertex.x()) * (pPrev->y() - vertex.y()) -
                      (pNext->y() - vertex.y()) * (pPrev->x() - vertex.x());
        aWeights[static_cast<std::size_t>(i)] = std::max(0.0, area);
        total += aWeights[static_cast<std::size_t>(i)];
    }
    for (std::size_t k = 0; k < numColumns; ++k) {
        double sum = 0.0;
        for (int i = 0; i < 3 && total > 0; ++i)
            sum += aWeights[static_cast<std::size_t>(i)] / total *
                   value(static_cast<std::uint32_t>(pTriangle->getCorner(i)->getCustomIndex()), k);
        vAttributes.push_back(sum);
    }
}

} // namespace quor2d_tool
