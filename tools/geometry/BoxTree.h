#pragma once

#include "formats/Scene.h"

#include <cstdint>
#include <vector>

namespace quor2d_tool
{

/// An octagon with sides along the axes and the diagonals that holds a segment. The diagonals keep apart what runs
/// slantwise side by side, such as hatching, where boxes would all overlap.
struct Bounds {
    double aLow[4];  ///< least x, y, x + y, x - y
    double aHigh[4]; ///< greatest ones

    static Bounds ofSegment(const Coord& a, const Coord& b);
    void add(const Bounds& other);

    bool overlaps(const Bounds& other) const
    {
        for (int i = 0; i < 4; ++i)
            if (aHigh[i] < other.aLow[i] || other.aHigh[i] < aLow[i])
                return false;
        return true;
    }
};

/// A static tree of bounds, packed along a Hilbert curve of their centres (Kamel and Faloutsos 1993).
///
/// Building takes O(n log n); a query takes O(log n + hits) for segments that are short against their distances. Many
/// long segments side by side at a slope other than 0, 45 or 90 degrees cost more.
class BoxTree
{
public:
    explicit BoxTree(const std::vector<Bounds>& vItems);

    /// Calls visit(item) for every item whose bounds overlap the given ones, in no particular order.
    template <class Visit>
    void query(const Bounds& bounds, Visit visit) const
    {
        if (vLevels.empty())
            return;
        for (std::uint32_t node = 0; node < vLevels.back().size(); ++node)
            queryNode(vLevels.size() - 1, node, bounds, visit);
    }

private:
    static constexpr std::size_t kFanOut = 8;

    // Recursion is as deep as the tree: log8 of the number of items.
    template <class Visit>
    void queryNode(std::size_t level, std::size_t node, const Bounds& bounds, Visit& visit) const
    {
        if (!vLevels[level][node].overlaps(bounds))
            return;
        if (level == 0) {
            visit(vOrder[node]);
            return;
        }
        std::size_t end = std::min((node + 1) * kFanOut, vLevels[level - 1].size());
        for (std::size_t child = node * kFanOut; child < end; ++child)
            queryNode(level - 1, child, bounds, visit);
    }

    std::vector<std::uint32_t> vOrder;        // items along the curve
    std::vector<std::vector<Bounds>> vLevels; // the items' bounds in that order, then those of groups of them, ...
};

} // namespace quor2d_tool
