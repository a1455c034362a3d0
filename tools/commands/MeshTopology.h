#pragma once

#include "Quor_2D.h"
#include "geometry/FlatMap.h"
#include "geometry/PlanarGraph.h"

#include <array>
#include <cstdint>
#include <vector>

namespace quor2d_tool
{

/// A triangulation of the library with numbers in the place of pointers, as it was when this was made.
class MeshTopology
{
public:
    static constexpr std::uint32_t kNone = FlatMap::kNone;

    struct Cell {
        std::array<std::uint32_t, 3> aCorners;
        std::array<std::uint32_t, 3> aNeighbors; ///< across edge i, which lies opposite corner i; or kNone
        std::array<std::uint32_t, 3> aSegments;  ///< the segment of the graph that edge i is a piece of; or kNone
    };

    /// Reads the triangulation. Vertices with a custom index keep it as their number, new ones get the next numbers,
    /// and with them a custom index. The constraint graph holds the segments of the planar graph; null for none.
    MeshTopology(const ZELK_QUOR2D::Quor_2D& triangulation, const PlanarGraph& graph,
                 const ZELK_QUOR2D::ConstraintGraph2* pConstraints);

    const std::vector<Cell>& cells() const { return vCells; }
    const std::vector<ZELK_QUOR2D::Point2*>& vertices() const { return vVertices; }

    /// The triangle's number, or kNone for null.
    std::uint32_t cellOf(const ZELK_QUOR2D::Triangle2* pTriangle) const
    {
        return pTriangle ? cellNumbers[reinterpret_cast<std::uintptr_t>(pTriangle)] : kNone;
    }

    static std::size_t next(std::size_t i) { return i == 2 ? 0 : i + 1; }
    static std::size_t prev(std::size_t i) { return i == 0 ? 2 : i - 1; }

private:
    void numberVertices(const ZELK_QUOR2D::Quor_2D& triangulation, std::size_t numKnown);
    FlatMap pieces(const PlanarGraph& graph, const ZELK_QUOR2D::ConstraintGraph2* pConstraints) const;

    std::vector<ZELK_QUOR2D::Triangle2*> vTriangles;
    std::vector<ZELK_QUOR2D::Point2*> vVertices;
    FlatMap cellNumbers;
    std::vector<Cell> vCells;
};

} // namespace quor2d_tool
