#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ZELK_QUOR2D
{

/// Which triangles were handed out by their pool while a vertex was inserted: a guess where those around it lie.
///
/// A vertex inside the hull takes two triangles more than the one before it in its pool, at the hull it is any number.
/// So what is kept is by how much the number of triangles differs from twice that of vertices, once for each cell: a
/// run of vertices, long enough that the whole table stays in a cache.
class TrianglePlaces
{
public:
    /// The vertex, given by its place in the pool, is inserted now. The latest note about a cell counts.
    void note(std::size_t vertex, std::size_t numTriangles)
    {
        const std::size_t cell = vertex / kCellSize;
        if (cell >= vDrifts.size())
            vDrifts.resize(cell + 1, 0);
        vDrifts[cell] = static_cast<std::int32_t>(numTriangles - 2 * vertex);
    }

    /// @return a place in the pool of triangles, perhaps past its end
    std::size_t guess(std::size_t vertex) const
    {
        const std::size_t cell = vertex / kCellSize;
        const std::ptrdiff_t drift = cell < vDrifts.size() ? vDrifts[cell] : 0;
        return 2 * vertex + static_cast<std::size_t>(drift); // a negative sum wraps
    }

private:
    static constexpr std::size_t kCellSize = 4096;

    std::vector<std::int32_t> vDrifts; // a drift too large for it gives wrong guesses
};

} // namespace ZELK_QUOR2D
