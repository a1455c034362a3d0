#include "geometry/BoxTree.h"

#include <algorithm>
#include <cmath>

namespace quor2d_tool
{
namespace
{

constexpr std::uint32_t kGridSize = 1u << 16;

// The position of a cell along the Hilbert curve of the grid.
std::uint32_t hilbertKey(std::uint32_t x, std::uint32_t y)
{
    std::uint32_t key = 0;
    for (std::uint32_t s = kGridSize / 2; s > 0; s /= 2) {
        std::uint32_t rx = (x & s) != 0, ry = (y & s) != 0;
        key += s * s * ((3 * rx) ^ ry);
        if (ry == 0) {
            if (rx == 1) {
                x = kGridSize - 1 - x;
                y = kGridSize - 1 - y;
            }
            std::swap(x, y);
        }
    }
    return key;
}

// Where a value lies between two others, as a cell of the grid. Halves keep the extent finite.
std::uint32_t cellOf(double value, double low, double high)
{
    double extent = high / 2 - low / 2;
    double part = extent > 0 ? (value / 2 - low / 2) / extent : 0.0;
    return static_cast<std::uint32_t>(std::clamp(part, 0.0, 1.0) * (kGridSize - 1));
}

// A rounded sum or difference, made a lower or an upper bound of the true one.
double below(double value)
{
    return std::nextafter(value, -HUGE_VAL);
}
double above(double value)
{
    return std::nextafter(value, HUGE_VAL);
}

} // namespace

Bounds Bounds::ofSegment(const Coord& a, const Coord& b)
{
    return {{std::min(a.x, b.x), std::min(a.y, b.y), below(std::min(a.x + a.y, b.x + b.y)),
             below(std::min(a.x - a.y, b.x - b.y))},
            {std::max(a.x, b.x), std::max(a.y, b.y), above(std::max(a.x + a.y, b.x + b.y)),
             above(std::max(a.x - a.y, b.x - b.y))}};
}

void Bounds::add(const Bounds& other)
{
    for (int i = 0; i < 4; ++i) {
        aLow[i] = std::min(aLow[i], other.aLow[i]);
        aHigh[i] = std::max(aHigh[i], other.aHigh[i]);
    }
}

BoxTree::BoxTree(const std::vector<Bounds>& vItems)
{
    if (vItems.empty())
        return;
    Bounds all = vItems.front();
    for (const Bounds& item : vItems)
        all.add(item);
    std::vector<std::uint64_t> vKeys; // key and item in one, to sort them fast
    vKeys.reserve(vItems.size());
    for (std::size_t i = 0; i < vItems.size(); ++i) {
        const Bounds& item = vItems[i];
        std::uint32_t x = cellOf(item.aLow[0] / 2 + item.aHigh[0] / 2, all.aLow[0], all.aHigh[0]);
        std::uint32_t y = cellOf(item.aLow[1] / 2 + item.aHigh[1] / 2, all.aLow[1], all.aHigh[1]);
        vKeys.push_back((std::uint64_t(hilbertKey(x, y)) << 32) | i);
    }
    std::sort(vKeys.begin(), vKeys.end());

    vLevels.emplace_back();
    for (std::uint64_t key : vKeys) {
        vOrder.push_back(static_cast<std::uint32_t>(key));
        vLevels[0].push_back(vItems[vOrder.back()]);
    }
    while (vLevels.back().size() > kFanOut) { // each level has an eighth of the size of the one before
        const std::vector<Bounds>& vBelow = vLevels.back();
        std::vector<Bounds> vLevel;
        for (std::size_t i = 0; i < vBelow.size(); ++i) {
            if (i % kFanOut == 0)
                vLevel.push_back(vBelow[i]);
            else
                vLevel.back().add(vBelow[i]);
        }
        vLevels.push_back(std::move(vLevel));
    }
}

} // namespace quor2d_tool
