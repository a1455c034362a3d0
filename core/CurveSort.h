#pragma once

#include "core/HC2.h"
#include "core/PageAllocator.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace ZELK_QUOR2D
{

/// One point while points are put in curve order: its key in the upper half, its position in the lower half.
using CurveItem = std::uint64_t;
using CurveItems = std::vector<CurveItem, PageAllocator<CurveItem>>;

inline CurveItem makeCurveItem(std::uint32_t key, std::uint32_t position)
{
    return (static_cast<CurveItem>(key) << 32) | position;
}
inline std::uint32_t keyOf(CurveItem item)
{
    return static_cast<std::uint32_t>(item >> 32);
}
inline std::uint32_t positionOf(CurveItem item)
{
    return static_cast<std::uint32_t>(item);
}

/// Sorts by key, then by position. Radix sort from 1024 items on; linear time.
inline void sortByKey(CurveItem* pFirst, std::size_t count, CurveItems& vScratch)
{
    constexpr std::size_t kRadixFrom = 1024;
    constexpr int kDigitBits = 11; // three passes cover 32 bits
    constexpr std::uint32_t kDigits = 1u << kDigitBits;
    if (count < kRadixFrom) {
        std::sort(pFirst, pFirst + count);
        return;
    }
    vScratch.resize(std::max(vScratch.size(), count));
    std::vector<std::size_t> vStart(3 * kDigits, 0);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t key = keyOf(pFirst[i]);
        for (std::uint32_t pass = 0; pass < 3; ++pass)
            ++vStart[pass * kDigits + ((key >> (kDigitBits * pass)) & (kDigits - 1))];
    }
    CurveItem* pFrom = pFirst;
    CurveItem* pTo = vScratch.data();
    for (std::uint32_t pass = 0; pass < 3; ++pass) {
        std::size_t* const pStart = vStart.data() + pass * kDigits;
        std::size_t sum = 0;
        for (std::uint32_t digit = 0; digit < kDigits; ++digit)
            sum += std::exchange(pStart[digit], sum);
        for (std::size_t i = 0; i < count; ++i)
            pTo[pStart[(keyOf(pFrom[i]) >> (kDigitBits * pass)) & (kDigits - 1)]++] = pFrom[i];
        std::swap(pFrom, pTo);
    }
    std::copy(pFrom, pFrom + count, pFirst); // an odd number of passes ends in the scratch buffer
}

/// Puts points in curve order, and points that share a key in the order of finer curves.
///
/// One far outlier, or one dense cluster, gives most points the same key. Such a run gets a curve of its own over its
/// own box, again and again until every run is short. Points with equal coordinates end up side by side, the one with
/// the lowest position first.
///
/// @tparam PointAt  callable: position -> const Point2& or a pair-like value with x() and y()
template <class PointAt>
class CurveSorter
{
public:
    explicit CurveSorter(PointAt accessor) : pointAt(accessor) {}

    void sort(CurveItems& vItems)
    {
        sortByKey(vItems.data(), vItems.size(), vScratch);
        for (std::size_t first = 0; first < vItems.size();) {
            const std::uint32_t key = keyOf(vItems[first]);
            std::size_t last = first + 1;
            while (last < vItems.size() && keyOf(vItems[last]) == key)
                ++last;
            if (last - first > 1)
                refineRun(vItems, first, last, key);
            first = last;
        }
    }

private:
    using Run = std::pair<std::size_t, std::size_t>;
    static constexpr std::size_t kShortRun = 24;

    void refineRun(CurveItems& vItems, std::size_t first, std::size_t last, std::uint32_t key)
    {
        vRuns.assign(1, Run(first, last));
        // Ends: a run that is pushed is shorter than the one it came from, since the extreme points of a box without
        // zero extent fall into different cells.
        while (!vRuns.empty()) {
            const Run run = vRuns.back();
            vRuns.pop_back();
            if (run.second - run.first <= kShortRun || !splitByOwnCurve(vItems, run))
                sortByCoordinates(vItems, run);
        }
        for (std::size_t i = first; i < last; ++i)
            vItems[i] = makeCurveItem(key, positionOf(vItems[i]));
    }

    // Re-keys a run over its own box and queues the runs of equal keys. @return false when that separates nothing
    bool splitByOwnCurve(CurveItems& vItems, const Run& run)
    {
        double minX, minY, maxX, maxY;
        boxOf(vItems, run, minX, minY, maxX, maxY);
        const HC2 curve(minX, minY, maxX, maxY, 30);
        for (std::size_t i = run.first; i < run.second; ++i) {
            const std::uint32_t position = positionOf(vItems[i]);
            const auto& p = pointAt(position);
            vItems[i] = makeCurveItem(curve.getIndex(p.x(), p.y()), position);
        }
        sortByKey(vItems.data() + run.first, run.second - run.first, vScratch);
        if (keyOf(vItems[run.first]) == keyOf(vItems[run.second - 1]))
            return false;
        for (std::size_t first = run.first; first < run.second;) {
            std::size_t last = first + 1;
            while (last < run.second && keyOf(vItems[last]) == keyOf(vItems[first]))
                ++last;
            if (last - first > 1)
                vRuns.emplace_back(first, last);
            first = last;
        }
        return true;
    }

    void boxOf(const CurveItems& vItems, const Run& run, double& minX, double& minY, double& maxX, double& maxY) const
    {
        const auto& p0 = pointAt(positionOf(vItems[run.first]));
        minX = maxX = p0.x();
        minY = maxY = p0.y();
        for (std::size_t i = run.first + 1; i < run.second; ++i) {
            const auto& p = pointAt(positionOf(vItems[i]));
            minX = std::min(minX, p.x());
            maxX = std::max(maxX, p.x());
            minY = std::min(minY, p.y());
            maxY = std::max(maxY, p.y());
        }
    }

    void sortByCoordinates(CurveItems& vItems, const Run& run) const
    {
        const auto begin = vItems.begin();
        std::sort(begin + static_cast<std::ptrdiff_t>(run.first), begin + static_cast<std::ptrdiff_t>(run.second),
                  [this](CurveItem a, CurveItem b) {
                      const auto& p = pointAt(positionOf(a));
                      const auto& q = pointAt(positionOf(b));
                      if (p.x() != q.x())
                          return p.x() < q.x();
                      if (p.y() != q.y())
                          return p.y() < q.y();
                      return positionOf(a) < positionOf(b);
                  });
    }

    PointAt pointAt;
    CurveItems vScratch;
    std::vector<Run> vRuns;
};

} // namespace ZELK_QUOR2D
