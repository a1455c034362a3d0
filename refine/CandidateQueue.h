#pragma once

#include "core/Dt2.h"
#include "core/Prefetch.h"
#include "geometry/TriangleIndex.h"
#include "refine/RefineZone.h"

#include <array>
#include <cstddef>
#include <vector>

namespace ZELK_QUOR2D
{

/// Hands out candidates in their order, but for those that are stale, and fetches ahead what they will touch.
///
/// Refinement goes to and fro in the mesh. Candidates become stale in long runs, which take no time; so the distance of
/// fetching ahead is counted in candidates that are not.
class CandidateQueue
{
public:
    CandidateQueue(const Dt2& triangulation, const std::vector<OpenTriangle*>& vAll)
        : dt(triangulation), vCandidates(vAll)
    {
    }

    /// @return the next candidate, which may have become stale in the meantime; null at the end
    OpenTriangle* takeNext()
    {
        fill();
        if (head == tail)
            return nullptr;
        if (tail - head > kNear)
            prefetchFlips(*at(head + kNear));
        if (tail - head > kNearest)
            prefetchSegments(*at(head + kNearest));
        return at(head++);
    }

private:
    static constexpr std::size_t kSize = 16; // a power of two
    static constexpr std::size_t kNear = 8;
    static constexpr std::size_t kNearest = 4;
    static constexpr std::size_t kDistance = 16;

    OpenTriangle*& at(std::size_t i) { return aQueue[i % kSize]; }

    // What is stale is left out for good: a triangle that comes back was set, and is listed for the next pass.
    void fill()
    {
        for (; tail - head < kSize && scanned < vCandidates.size(); ++scanned) {
            if (scanned + 2 * kDistance < vCandidates.size())
                prefetchWhole(vCandidates[scanned + 2 * kDistance]);
            if (scanned + kDistance < vCandidates.size())
                prefetchWhole(vCandidates[scanned + kDistance]->pTriangle);
            OpenTriangle* const pOpen = vCandidates[scanned];
            if (pOpen->isStale())
                continue;
            prefetchLinks(pOpen->pTriangle);
            at(tail++) = pOpen;
        }
    }

    static void prefetchLinks(const Triangle2* pT)
    {
        for (int i = 0; i < 3; ++i) {
            prefetch(pT->getCorner(i));
            prefetchWhole(pT->getOppositeTriangle(i));
        }
    }

    // What the first flips around the circumcentre touch, which mostly lies in the triangle or next to it.
    void prefetchFlips(const OpenTriangle& open) const
    {
        if (open.isStale())
            return;
        dt.prefetchConstraintSlots(open.pTriangle);
        for (int i = 0; i < 3; ++i)
            if (const Triangle2* const pOpp = open.pTriangle->getOppositeTriangle(i))
                prefetchLinks(pOpp);
    }

    // One of them may be in the way.
    void prefetchSegments(const OpenTriangle& open) const
    {
        if (open.isStale())
            return;
        for (int i = 0; i < 3; ++i)
            prefetchWhole(
                dt.findConstraintSegment(open.pTriangle->getCorner(next(i)), open.pTriangle->getCorner(prev(i))));
    }

    const Dt2& dt;
    const std::vector<OpenTriangle*>& vCandidates;
    std::array<OpenTriangle*, kSize> aQueue;
    std::size_t head = 0; // the entries of the queue are counted on, not wrapped round
    std::size_t tail = 0;
    std::size_t scanned = 0; // of vCandidates
};

} // namespace ZELK_QUOR2D
