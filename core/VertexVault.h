#pragma once

#include "Point2.h"
#include "Triangle2.h"
#include "core/CurveSort.h"
#include "core/HC2.h"
#include "core/Prefetch.h"
#include "core/SimplePool.h"
#include "core/VertexCells.h"
#include "core/VertexMarks.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

namespace ZELK_QUOR2D
{

/// One vertex of the vault, or a repeated insertion of one.
struct VaultEntry {
    std::uint32_t key; ///< Hilbert key of the vertex
    bool active;       ///< true for every entry created by insertion
    bool duplicate;    ///< names a vertex that has an entry already; dropped at the next compaction
    Point2* pVtx;
};

/// Stores the vertices of a triangulation with their Hilbert keys, and finds a triangle near a key.
///
/// The first `maxSortedIndex` entries are sorted by key. What comes after them is merged in from time to time, so
/// that single insertions cost no sorting.
class VertexVault
{
public:
    VertexVault(const HC2& hilbertCurve, SimplePool<Point2>& pool) : curve(hilbertCurve), vertexPool(pool) {}
    VertexVault(const VertexVault&) = delete;
    VertexVault& operator=(const VertexVault&) = delete;

    bool empty() const { return size() == 0; }

    /// The number of entries, pending duplicates included. @see removed()
    std::size_t size() const { return vIdxVtxAct.size() - hiddenEntries; }

    VaultEntry& operator[](std::size_t i) { return vIdxVtxAct[i]; }
    const VaultEntry& operator[](std::size_t i) const { return vIdxVtxAct[i]; }

    /// A vertex from the pool, without triangle and without entry.
    Point2* makeVertex(double x, double y, int customIndex);

    /// Appends one entry without sorting.
    void add(std::uint32_t key, Point2* pVtx);

    /// Appends an entry for a vertex that has one already.
    void addDuplicate(std::uint32_t key, Point2* pVtx);

    /// Batch add: makes one vertex for each distinct point of a batch, in curve order, and appends their entries in
    /// that order. Non-finite points get no vertex.
    ///
    /// @param numPoints        number of input points
    /// @param source           source(i) is input point i, as a const Point2& or a Point2
    /// @param bSkip            bSkip(i) leaves input point i out
    /// @param pEntryOfInput    if not null, replaced: the index of the entry of each input point, or kNoEntry; equal
    ///                         points share the entry of the first of them
    /// @return the index of the first new entry
    template <class Source, class Skip>
    std::size_t addPoints(std::size_t numPoints, const Source& source, const Skip& bSkip,
                          std::vector<std::uint32_t>* pEntryOfInput);
    static constexpr std::uint32_t kNoEntry = 0xFFFFFFFFu;

    /// Marks an entry made by add() or addPoints() as a repetition of another vertex's place.
    void markDuplicate(VaultEntry& entry, Point2* pUnused);

    /// Takes the newest entries out again, from `first` on.
    std::vector<VaultEntry> takeFrom(std::size_t first);

    /// Takes a vertex out. O(1): its entries disappear at the next compaction, but are not counted from now on.
    void remove(Point2* pVtx);

    /// An incident triangle of the vertex whose key is nearest, or of one near it. Never null while the triangulation
    /// has triangles. May drop and move entries.
    Triangle2* getCT(std::uint32_t key);

    /// A vertex of the mesh near a point, or null. O(1), and unlike getCT() it knows the unsorted tail. The first call
    /// after sorting takes O(n). May drop and move entries.
    ///
    /// @param key  of the point
    Point2* findRecent(std::uint32_t key, const Point2& p)
    {
        if (cells.empty() || excessSteps > vIdxVtxAct.size())
            fillCells();
        return cells.find(key, p);
    }

    /// Makes a vertex of the mesh the one that findRecent() gives for points near its own place.
    void noteRecent(std::uint32_t key, Point2* pVtx) { noteRecent(key, *pVtx, pVtx); }

    /// The same for points near p.
    void noteRecent(std::uint32_t key, const Point2& p, Point2* pVtx)
    {
        if (!cells.empty())
            cells.note(key, p, pVtx);
    }

    /// Long walks from where findRecent() sent them are paid for once: when they have gone as many steps too many as
    /// there are entries, looking at all vertices again costs no more than what was spent already.
    void noteLongWalk(std::size_t steps) { excessSteps += steps; }

    /// Merges the unsorted tail and drops duplicate and removed entries.
    ///
    /// @param bLazy  do it only when the entries have grown beyond 1.35 times maxSortedIndex
    void updateSortedIndex(bool bLazy);

    /// Does what a batch needs: drops its duplicates from the count, and merges when the tail is worth it.
    ///
    /// @param firstNew  the first entry of the batch
    void finishBatch(std::size_t firstNew);

    /// Drops duplicate and removed entries; the order of the others stays. O(n).
    void compact();

    /// Computes all keys again after the curve changed, and sorts.
    void rekeyAll();

    /// Sorts the entries from `first` on along the curve, keys computed again.
    void sortEntriesFrom(std::size_t first);

    /// Appends every vertex once.
    void getVertices(std::vector<Point2*>& vVertices) const;

    std::vector<VaultEntry> vIdxVtxAct;
    unsigned int maxSortedIndex = 0;
    bool bFullDimensional = false;

private:
    std::size_t findNearestEntry(std::uint32_t key) const;
    Triangle2* findTriangleNear(std::size_t index);
    void reportUnsorted(std::size_t lower, std::size_t upper, std::uint32_t key) const;
    void reserveFor(std::size_t numNewEntries);
    void sortByKeyFrom(std::size_t first);
    void fillCells();
    bool isStale(const VaultEntry& entry) const { return entry.duplicate || (entry.pVtx->marks & VM_REMOVED); }

    const HC2& curve;
    SimplePool<Point2>& vertexPool;
    std::size_t pendingDuplicates = 0; // duplicate entries that size() still counts
    std::size_t hiddenEntries = 0;     // stale entries that size() no longer counts
    std::size_t scannedEntries = 0;    // stale entries passed over by look-ups since the last compaction
    std::size_t excessSteps = 0;       // of long walks, since the cells were filled
    VertexCells cells;                 // filled on demand
};

template <class Source, class Skip>
std::size_t VertexVault::addPoints(std::size_t numPoints, const Source& source, const Skip& bSkip,
                                   std::vector<std::uint32_t>* pEntryOfInput)
{
    CurveItems vItems;
    vItems.reserve(numPoints);
    for (std::size_t i = 0; i < numPoints; ++i)
        if (!bSkip(i))
            vItems.push_back(makeCurveItem(curve.getIndex(source(i)), static_cast<std::uint32_t>(i)));
    CurveSorter<const Source&>(source).sort(vItems);

    const std::size_t firstNew = vIdxVtxAct.size();
    reserveFor(vItems.size());
    if (pEntryOfInput)
        pEntryOfInput->assign(numPoints, kNoEntry);
    constexpr std::size_t kAhead = 12; // the input is read all over the place
    for (std::size_t i = 0; i < vItems.size(); ++i) {
        if constexpr (std::is_reference<decltype(source(i))>::value)
            if (i + kAhead < vItems.size())
                prefetch(&source(positionOf(vItems[i + kAhead])));
        const std::uint32_t position = positionOf(vItems[i]);
        const auto& p = source(position);
        // Equal points stand side by side, the earliest one first: it becomes the vertex.
        const bool bRepeated = i > 0 && keyOf(vItems[i]) == keyOf(vItems[i - 1]) && *vIdxVtxAct.back().pVtx == p;
        if (!bRepeated)
            add(keyOf(vItems[i]), makeVertex(p.x(), p.y(), p.getCustomIndex()));
        if (pEntryOfInput)
            (*pEntryOfInput)[position] = static_cast<std::uint32_t>(vIdxVtxAct.size() - 1);
    }
    return firstNew;
}

} // namespace ZELK_QUOR2D
