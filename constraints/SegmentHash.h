#pragma once

#include "ConstraintSegment2.h"
#include "constraints/EdgeKey.h"
#include "core/Prefetch.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace ZELK_QUOR2D
{

struct SegmentSlot {
    const Point2* p0 = nullptr; // ascending addresses
    const Point2* p1 = nullptr;
    ConstraintSegment2* pCSeg = nullptr;
};

/// A flat hash of constraint segments by their two ends; at most one segment for each pair.
class SegmentHash
{
public:
    std::size_t size() const { return count; }

    /// @return the segment between two vertices given in any order, or null
    ConstraintSegment2* find(const Point2* p0, const Point2* p1) const
    {
        if (count == 0)
            return nullptr;
        orderByAddress(p0, p1);
        return vSlots[slotOf(p0, p1)].pCSeg;
    }

    /// Does nothing when there is a segment with these ends already.
    void insert(ConstraintSegment2* pCSeg)
    {
        if (2 * (count + 1) > vSlots.size())
            resize(vSlots.empty() ? 16 : 2 * vSlots.size());
        place(pCSeg);
    }

    /// Takes this very segment out; another one with the same ends stays.
    void erase(const ConstraintSegment2* pCSeg)
    {
        if (count == 0)
            return;
        std::size_t hole = slotOf(pCSeg->getSrc(), pCSeg->getTrg());
        if (vSlots[hole].pCSeg != pCSeg)
            return;
        // Moves back what would otherwise not be found beyond the hole. Ends: the table is at most half full.
        const std::size_t mask = vSlots.size() - 1;
        for (std::size_t i = (hole + 1) & mask; vSlots[i].pCSeg; i = (i + 1) & mask) {
            const std::size_t home = hashOfEdge(vSlots[i].p0, vSlots[i].p1) & mask;
            if (((i - home) & mask) >= ((i - hole) & mask)) {
                vSlots[hole] = vSlots[i];
                hole = i;
            }
        }
        vSlots[hole] = SegmentSlot();
        --count;
    }

    template <class Visitor>
    void forEach(Visitor visit) const
    {
        for (const SegmentSlot& slot : vSlots)
            if (slot.pCSeg)
                visit(slot.pCSeg);
    }

private:
    // Ends: the table is at most half full.
    std::size_t slotOf(const Point2* p0, const Point2* p1) const
    {
        const std::size_t mask = vSlots.size() - 1;
        std::size_t i = hashOfEdge(p0, p1) & mask;
        while (vSlots[i].pCSeg && (vSlots[i].p0 != p0 || vSlots[i].p1 != p1))
            i = (i + 1) & mask;
        return i;
    }

    void place(ConstraintSegment2* pCSeg)
    {
        SegmentSlot& slot = vSlots[slotOf(pCSeg->getSrc(), pCSeg->getTrg())];
        if (slot.pCSeg)
            return;
        slot = SegmentSlot{pCSeg->getSrc(), pCSeg->getTrg(), pCSeg};
        ++count;
    }

    void resize(std::size_t numSlots)
    {
        std::vector<SegmentSlot> vOld(numSlots);
        vOld.swap(vSlots);
        count = 0;
        for (const SegmentSlot& slot : vOld)
            if (slot.pCSeg)
                place(slot.pCSeg);
    }

    std::vector<SegmentSlot> vSlots; // a power of two, or empty
    std::size_t count = 0;
};

} // namespace ZELK_QUOR2D
