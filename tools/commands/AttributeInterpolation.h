#pragma once

#include "Quor_2D.h"
#include "formats/Scene.h"
#include "geometry/PlanarGraph.h"

#include <memory>
#include <vector>

namespace quor2d_tool
{

/// Attributes for the vertices of a mesh: those of the input's points as they are, those of new vertices between them,
/// linear along segments and over the Delaunay triangles of the input's points.
class AttributeInterpolation
{
public:
    /// @param rScale  the power of two by which vertices are larger than points of the scene
    AttributeInterpolation(const Scene& rScene, const PlanarGraph& rGraph, int rScale);

    /// Appends the row of a vertex.
    ///
    /// @param point    the input's point there, or PlanarGraph::kNewVertex
    /// @param segment  a segment of the graph through the vertex, or all bits set
    void append(std::vector<double>& vAttributes, const ZELK_QUOR2D::Point2& vertex, std::uint32_t point,
                std::uint32_t segment);

private:
    void buildBase();
    bool appendAlong(std::vector<double>& vAttributes, const ZELK_QUOR2D::Point2& vertex, std::uint32_t segment) const;
    void appendWithin(std::vector<double>& vAttributes, const ZELK_QUOR2D::Point2& vertex);
    double value(std::uint32_t point, std::size_t column) const
    {
        return scene.points.vAttributes[point * numColumns + column];
    }

    const Scene& scene;
    const PlanarGraph& graph;
    int scale;
    std::size_t numColumns;
    std::unique_ptr<ZELK_QUOR2D::Quor_2D> pBase; // the points of the input; made when first asked for
};

} // namespace quor2d_tool
