#include "core/VertexVault.h"

#include <algorithm>
#include <iostream>
#include <new>

namespace ZELK_QUOR2D
{

namespace
{

constexpr double kLazyFactor = 1.35;

// A batch is merged at once when it is at least this part of the sorted entries: each new point then pays for moving
// at most that many old entries.
constexpr std::size_t kBatchMergeFraction = 16;

bool keyLess(const VaultEntry& a, const VaultEntry& b)
{
    return a.key < b.key;
}

std::uint32_t keyDistance(std::uint32_t a, std::uint32_t b)
{
    return a > b ? a - b : b - a;
}

} // namespace

Point2* VertexVault::makeVertex(double x, double y, int customIndex)
{
    Point2* pVtx = new (vertexPool.alloc()) Point2(x, y);
    pVtx->setCustomIndex(customIndex);
    return pVtx;
}

void VertexVault::add(std::uint32_t key, Point2* pVtx)
{
    vIdxVtxAct.push_back(VaultEntry{key, true, false, pVtx});
}

void VertexVault::addDuplicate(std::uint32_t key, Point2* pVtx)
{
    vIdxVtxAct.push_back(VaultEntry{key, true, true, pVtx});
    ++pendingDuplicates;
}

void VertexVault::markDuplicate(VaultEntry& entry, Point2* pUnused)
{
    entry.duplicate = true;
    ++pendingDuplicates;
    if (pUnused)
        pUnused->marks |= VM_REMOVED;
}

void VertexVault::remove(Point2* pVtx)
{
    pVtx->setIncidentTriangle(nullptr);
    pVtx->marks |= VM_REMOVED;
    hiddenEntries += pendingDuplicates + 1;
    pendingDuplicates = 0;
}

std::vector<VaultEntry> VertexVault::takeFrom(std::size_t first)
{
    const auto begin = vIdxVtxAct.begin() + static_cast<std::ptrdiff_t>(first);
    std::vector<VaultEntry> vTaken(begin, vIdxVtxAct.end());
    vIdxVtxAct.erase(begin, vIdxVtxAct.end());
    return vTaken;
}

// Doubling on demand, exact for the first batch.
void VertexVault::reserveFor(std::size_t numNewEntries)
{
    const std::size_t needed = vIdxVtxAct.size() + numNewEntries;
    if (needed > vIdxVtxAct.capacity())
        vIdxVtxAct.reserve(vIdxVtxAct.empty() ? needed : std::max(needed, 2 * vIdxVtxAct.capacity()));
}

void VertexVault::compact()
{
    const auto begin = vIdxVtxAct.begin();
    const auto tail = begin + maxSortedIndex;
    const auto stale = [this](const VaultEntry& entry) { return isStale(entry); };
    const auto sortedEnd = std::remove_if(begin, tail, stale);
    const auto end = std::remove_if(tail, vIdxVtxAct.end(), stale);
    const auto newEnd = std::move(tail, end, sortedEnd);
    maxSortedIndex = static_cast<unsigned int>(sortedEnd - begin);
    vIdxVtxAct.erase(newEnd, vIdxVtxAct.end());
    pendingDuplicates = hiddenEntries = scannedEntries = 0;
}

// Stable, linear time.
void VertexVault::sortByKeyFrom(std::size_t first)
{
    const std::vector<VaultEntry> vOld(vIdxVtxAct.begin() + static_cast<std::ptrdiff_t>(first), vIdxVtxAct.end());
    CurveItems vItems(vOld.size());
    for (std::size_t i = 0; i < vOld.size(); ++i)
        vItems[i] = makeCurveItem(vOld[i].key, static_cast<std::uint32_t>(i));
    CurveItems vScratch;
    sortByKey(vItems.data(), vItems.size(), vScratch);
    for (std::size_t i = 0; i < vItems.size(); ++i)
        vIdxVtxAct[first + i] = vOld[positionOf(vItems[i])];
}

void VertexVault::updateSortedIndex(bool bLazy)
{
    if (bLazy && static_cast<double>(vIdxVtxAct.size()) <= kLazyFactor * static_cast<double>(maxSortedIndex))
        return;
    if (pendingDuplicates + hiddenEntries > 0)
        compact();
    const auto begin = vIdxVtxAct.begin();
    const auto tail = begin + maxSortedIndex;
    if (!std::is_sorted(tail, vIdxVtxAct.end(), keyLess))
        sortByKeyFrom(maxSortedIndex);
    std::inplace_merge(begin, tail, vIdxVtxAct.end(), keyLess);
    maxSortedIndex = static_cast<unsigned int>(vIdxVtxAct.size());
    cells.clear();
}

void VertexVault::fillCells()
{
    if (excessSteps > vIdxVtxAct.size())
        updateSortedIndex(false);
    excessSteps = 0;
    cells.fill(vIdxVtxAct, maxSortedIndex);
}

void VertexVault::finishBatch(std::size_t firstNew)
{
    hiddenEntries += pendingDuplicates;
    pendingDuplicates = 0;
    const std::size_t tail = vIdxVtxAct.size() - maxSortedIndex;
    if (tail * kBatchMergeFraction >= maxSortedIndex) {
        updateSortedIndex(false);
        return;
    }
    for (std::size_t i = firstNew; i < vIdxVtxAct.size(); ++i)
        noteRecent(vIdxVtxAct[i].key, vIdxVtxAct[i].pVtx);
}

void VertexVault::rekeyAll()
{
    compact();
    sortEntriesFrom(0);
    maxSortedIndex = static_cast<unsigned int>(vIdxVtxAct.size());
    cells.clear();
}

void VertexVault::sortEntriesFrom(std::size_t first)
{
    std::vector<VaultEntry> vOld(vIdxVtxAct.begin() + static_cast<std::ptrdiff_t>(first), vIdxVtxAct.end());
    CurveItems vItems(vOld.size());
    for (std::size_t i = 0; i < vOld.size(); ++i)
        vItems[i] = makeCurveItem(curve.getIndex(*vOld[i].pVtx), static_cast<std::uint32_t>(i));
    const auto pointAt = [&vOld](std::uint32_t position) -> const Point2& { return *vOld[position].pVtx; };
    CurveSorter<decltype(pointAt)>(pointAt).sort(vItems);
    for (std::size_t i = 0; i < vItems.size(); ++i) {
        VaultEntry& entry = vIdxVtxAct[first + i];
        entry = vOld[positionOf(vItems[i])];
        entry.key = keyOf(vItems[i]);
    }
    maxSortedIndex = static_cast<unsigned int>(std::min<std::size_t>(maxSortedIndex, first));
}

void VertexVault::getVertices(std::vector<Point2*>& vVertices) const
{
    vVertices.reserve(vVertices.size() + size());
    for (const VaultEntry& entry : vIdxVtxAct)
        if (!isStale(entry))
            vVertices.push_back(entry.pVtx);
}

// The entry of the sorted prefix, which must not be empty, whose key is nearest; ties go to the lower one.
std::size_t VertexVault::findNearestEntry(std::uint32_t key) const
{
    std::size_t lower = 0;
    std::size_t upper = maxSortedIndex - 1;
    while (upper - lower >= 2) {
        const std::size_t mid = lower + (upper - lower) / 2;
        if (key > vIdxVtxAct[mid].key)
            lower = mid;
        else
            upper = mid;
    }
    const std::uint32_t lowerKey = vIdxVtxAct[lower].key;
    const std::uint32_t upperKey = vIdxVtxAct[upper].key;
    if ((key < lowerKey || key > upperKey) && lower > 0 && upper + 1 < maxSortedIndex) {
        reportUnsorted(lower, upper, key);
        QUOR2D_ASSERT(false, "false");
    }
    return keyDistance(upperKey, key) < keyDistance(lowerKey, key) ? upper : lower;
}

// The first vertex with a triangle from `index` forward, else backward. Null when the prefix has none.
Triangle2* VertexVault::findTriangleNear(std::size_t index)
{
    for (std::size_t i = index; i < maxSortedIndex; ++i, ++scannedEntries)
        if (Triangle2* pT = vIdxVtxAct[i].pVtx->getIncidentTriangle())
            return pT;
    for (std::size_t i = index; i-- > 0; ++scannedEntries)
        if (Triangle2* pT = vIdxVtxAct[i].pVtx->getIncidentTriangle())
            return pT;
    return nullptr;
}

Triangle2* VertexVault::getCT(std::uint32_t key)
{
    // Long runs of removed vertices are paid for once: when look-ups have passed over as many of them as there are
    // entries, compacting costs no more than what was spent already.
    if (scannedEntries > vIdxVtxAct.size())
        compact();
    if (maxSortedIndex > 0)
        if (Triangle2* pT = findTriangleNear(findNearestEntry(key)))
            return pT;
    updateSortedIndex(false); // all vertices with triangles are in the tail
    if (maxSortedIndex > 0)
        if (Triangle2* pT = findTriangleNear(findNearestEntry(key)))
            return pT;
    std::cout << "Dt2::getCT() failed" << std::endl;
    QUOR2D_ASSERT(false, "false");
    return nullptr;
}

void VertexVault::reportUnsorted(std::size_t lower, std::size_t upper, std::uint32_t key) const
{
    std::cout << "BUG: maxSortedIndex=" << maxSortedIndex << "lower=" << lower << ", val=" << vIdxVtxAct[lower].key
              << "upper=" << upper << ", val=" << vIdxVtxAct[upper].key << "address=" << key << std::endl
              << "BUG" << std::endl;
}

} // namespace ZELK_QUOR2D
