#include "commands/AttributeInterpolation.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace quor2d_tool
{

using ZELK_QUOR2D::Point2;
using ZELK_QUOR2D::Quor_2D;
using ZELK_QUOR2D::Triangle2;

namespace
{

// The vectors from a place to others, all times one power of two, so that no product of them overflows or vanishes.
template <std::size_t N>
std::array<Coord, N> scaledOffsets(const Coord& from, std::array<Coord, N> aTo)
{
    double largest = std::max(std::fabs(from.x), std::fabs(from.y)), longest = 0.0;
    for (const Coord& c : aTo)
        largest = std::max({largest, std::fabs(c.x), std::fabs(c.y)});
    const double shrink = largest > 0x1p1000 ? 0.5 : 1.0; // differences may overflow, too
    for (Coord& c : aTo) {
        c.x = shrink * c.x - shrink * from.x;
        c.y = shrink * c.y - shrink * from.y;
        longest = std::max({longest, std::fabs(c.x), std::fabs(c.y)});
    }
    const int exponent = longest > 0.0 ? std::ilogb(longest) : 0;
    for (Coord& c : aTo) {
        c.x = std::ldexp(c.x, -exponent);
        c.y = std::ldexp(c.y, -exponent);
    }
    return aTo;
}

} // namespace

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
    const Coord place{std::ldexp(vertex.x(), -scale), std::ldexp(vertex.y(), -scale)};
    const auto aOffsets = scaledOffsets<2>(graph.vCoords[from], {graph.vCoords[to], place});
    const Coord &whole = aOffsets[0], &part = aOffsets[1];
    const double squared = whole.x * whole.x + whole.y * whole.y;
    const double t = squared > 0 ? std::clamp((whole.x * part.x + whole.y * part.y) / squared, 0.0, 1.0) : 0.0;
    for (std::size_t k = 0; k < numColumns; ++k)
        vAttributes.push_back((1 - t) * value(graph.vPoints[from], k) + t * value(graph.vPoints[to], k));
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
    if (!pTriangle) {
        vAttributes.insert(vAttributes.end(), numColumns, 0.0);
        return;
    }
    std::array<Coord, 3> aCorners;
    std::array<std::uint32_t, 3> aPoints;
    for (int i = 0; i < 3; ++i) {
        const Point2* pCorner = pTriangle->getCorner(i);
        aCorners[static_cast<std::size_t>(i)] = {pCorner->x(), pCorner->y()};
        aPoints[static_cast<std::size_t>(i)] = static_cast<std::uint32_t>(pCorner->getCustomIndex());
    }
    aCorners = scaledOffsets<3>({vertex.x(), vertex.y()}, aCorners);
    std::array<double, 3> aWeights;
    for (std::size_t i = 0; i < 3; ++i) {
        const Coord &next = aCorners[(i + 1) % 3], &prev = aCorners[(i + 2) % 3];
        aWeights[i] = std::max(0.0, next.x * prev.y - next.y * prev.x);
    }
    double total = aWeights[0] + aWeights[1] + aWeights[2];
    if (!(total > 0))
        aWeights[0] = total = 1.0; // a flat triangle
    for (std::size_t k = 0; k < numColumns; ++k) {
        double sum = 0.0;
        for (std::size_t i = 0; i < 3; ++i)
            sum += aWeights[i] / total * value(aPoints[i], k);
        const auto limits = std::minmax({value(aPoints[0], k), value(aPoints[1], k), value(aPoints[2], k)});
        vAttributes.push_back(std::clamp(sum, limits.first, limits.second));
    }
}

} // namespace quor2d_tool
