#pragma once

#include "ConstraintSegment2.h"
#include "constraints/SegmentHash.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ZELK_QUOR2D
{

/// Constraint segments by their two ends; at most one segment for each pair.
///
/// A segment stands in one of a few slots that belong to its later vertex: the one with the higher address, since the
/// pool hands out ascending addresses. So both halves of a split stand side by side, and what is split in a row in a
/// row. What finds no slot there, as at a vertex where many segments end, goes into a hash.
class SegmentIndex
{
public:
    std::size_t size() const { return numNear + overflow.size(); }

    /// @return the segment between two vertices given in any order, or null
    ConstraintSegment2* find(const Point2* p0, const Point2* p1) const
    {
        if (vSlots.empty())
            return nullptr;
        orderByAddress(p0, p1);
        const std::size_t slot = findSlot(p0, p1);
        return slot != kNone ? vSlots[slot].pCSeg : overflow.find(p0, p1);
    }

    /// Fetches ahead what find() will look at first.
    void prefetchSlot(const Point2* p0, const Point2* p1) const
    {
        if (vSlots.empty())
            return;
        orderByAddress(p0, p1);
        const SegmentSlot* const pFirst = &vSlots[homeOf(p1)];
        prefetch(pFirst);
        prefetch(reinterpret_cast<const char*>(pFirst) + 64);
    }

    /// There must be no segment with these ends yet.
    void insert(ConstraintSegment2* pCSeg)
    {
        if (2 * (size() + 1) > vSlots.size())
            resize(vSlots.empty() ? 16 : 2 * vSlots.size());
        place(pCSeg);
    }

    /// Makes room for so many segments.
    void reserve(std::size_t numSegments)
    {
        std::size_t numSlots = 16;
        while (numSlots < 2 * (numSegments + 1))
            numSlots *= 2;
        if (numSlots > vSlots.size())
            resize(numSlots);
    }

    /// Takes this very segment out; another one with the same ends stays.
    void erase(const ConstraintSegment2* pCSeg)
    {
        if (vSlots.empty())
            return;
        const std::size_t slot = findSlot(pCSeg->getSrc(), pCSeg->getTrg());
        if (slot == kNone) {
            overflow.erase(pCSeg);
        } else if (vSlots[slot].pCSeg == pCSeg) {
            vSlots[slot] = SegmentSlot();
            --numNear;
        }
    }

    template <class Visitor>
    void forEach(Visitor visit) const
    {
        for (const SegmentSlot& slot : vSlots)
            if (slot.pCSeg)
                visit(slot.pCSeg);
        overflow.forEach(visit);
    }

private:
    static constexpr std::size_t kSlotsPerVertex = 2;
    static constexpr std::size_t kWindow = 4; // slots that a vertex may use, half of them its follower's
    static constexpr std::size_t kNone = ~std::size_t(0);

    std::size_t homeOf(const Point2* pLater) const
    {
        const std::size_t place = reinterpret_cast<std::uintptr_t>(pLater) / sizeof(Point2);
        return kSlotsPerVertex * place & (vSlots.size() - 1);
    }

    std::size_t findSlot(const Point2* p0, const Point2* p1) const
    {
        const std::size_t home = homeOf(p1), mask = vSlots.size() - 1;
        for (std::size_t i = home; i < home + kWindow; ++i)
            if (vSlots[i & mask].p1 == p1 && vSlots[i & mask].p0 == p0)
                return i & mask;
        return kNone;
    }

    void place(ConstraintSegment2* pCSeg)
    {
        const Point2 *const p0 = pCSeg->getSrc(), *const p1 = pCSeg->getTrg();
        const std::size_t home = homeOf(p1), mask = vSlots.size() - 1;
        for (std::size_t i = home; i < home + kWindow; ++i) {
            SegmentSlot& slot = vSlots[i & mask];
            if (slot.pCSeg)
                continue;
            slot = SegmentSlot{p0, p1, pCSeg};
            ++numNear;
            return;
        }
        overflow.insert(pCSeg);
    }

    void resize(std::size_t numSlots)
    {
        std::vector<SegmentSlot> vOld(numSlots);
        vOld.swap(vSlots);
        SegmentHash oldOverflow;
        std::swap(oldOverflow, overflow);
        numNear = 0;
        for (const SegmentSlot& slot : vOld)
            if (slot.pCSeg)
                place(slot.pCSeg);
        oldOverflow.forEach([this](ConstraintSegment2* pCSeg) { place(pCSeg); });
    }

    std::vector<SegmentSlot> vSlots; // a power of two, or empty
    std::size_t numNear = 0;         // slots in use
    SegmentHash overflow;
};

} // namespace ZELK_QUOR2D
