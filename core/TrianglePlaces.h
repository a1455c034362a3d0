#pragma once

#include <cstddef>
#include <vector>

namespace ZELK_QUOR2D
{

/// Which triangles were handed out by their pool while a vertex was inserted: a guess where those around it lie.
///
/// The place of one vertex of each cell is known, cells being runs of vertices in the order of their pool. A vertex
/// inside the hull takes two triangles more than the one before.
class TrianglePlaces
{
public:
    /// The vertex, given by its place in the pool, is inserted now. The latest note about a cell counts.
    void note(std::size_t vertex, std::size_t numTriangles)
    {
        const std::size_t cell = vertex / kCellSize;
        while (vPlaces.size() <= cell) // ends: grows by one each time
            vPlaces.push_back(2 * kCellSize * vPlaces.size());
        vPlaces[cell] = numTriangles - 2 * (vertex % kCellSize); // may be negative and wrap; guess() wraps back
    }

    /// @return a place in the pool of triangles, perhaps past its end
    std::size_t guess(std::size_t vertex) const
    {
        const std::size_t cell = vertex / kCellSize;
        return cell < vPlaces.size() ? vPlaces[cell] + 2 * (vertex % kCellSize) : 2 * vertex;
    }

private:
    static constexpr std::size_t kCellSize = 256;

    std::vector<std::size_t> vPlaces; // for the first vertex of each cell
};

} // namespace ZELK_QUOR2D
