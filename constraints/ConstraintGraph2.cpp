#include "ConstraintGraph2.h"

#include "Point2.h"
#include "Quor2DAssert.h"
#include "constraints/ConstraintMgr.h"
#include "constraints/EdgeKey.h"
#include "core/Dt2.h"
#include "core/Prefetch.h"
#include "output/Message.h"

#include <algorithm>
#include <functional>

namespace ZELK_QUOR2D
{

namespace
{

// The segments at each vertex, in the order of the list at each of them.
class Incidences
{
public:
    explicit Incidences(const std::vector<ConstraintSegment2*>& vSegments)
    {
        vEntries.reserve(2 * vSegments.size());
        for (ConstraintSegment2* pCSeg : vSegments) {
            vEntries.push_back({pCSeg->getSrc(), pCSeg});
            vEntries.push_back({pCSeg->getTrg(), pCSeg});
        }
        std::stable_sort(vEntries.begin(), vEntries.end(), Before());
    }

    // @return the first of exactly two entries, else null
    const std::pair<Point2*, ConstraintSegment2*>* findPair(Point2* p) const
    {
        const auto range = std::equal_range(vEntries.begin(), vEntries.end(), Entry(p, nullptr), Before());
        return range.second - range.first == 2 ? &*range.first : nullptr;
    }

private:
    using Entry = std::pair<Point2*, ConstraintSegment2*>;
    struct Before {
        bool operator()(const Entry& a, const Entry& b) const { return std::less<Point2*>()(a.first, b.first); }
    };
    std::vector<Entry> vEntries;
};

Point2* otherEnd(const ConstraintSegment2* pCSeg, const Point2* pEnd)
{
    return pCSeg->getSrc() == pEnd ? pCSeg->getTrg() : pCSeg->getSrc();
}

Point2* findLowestLeftmost(const std::vector<ConstraintSegment2*>& vSegments)
{
    Point2* pStart = vSegments.front()->getSrc();
    for (const ConstraintSegment2* pCSeg : vSegments)
        for (Point2* p : {pCSeg->getSrc(), pCSeg->getTrg()})
            if (*p < *pStart)
                pStart = p;
    return pStart;
}

} // namespace

ConstraintGraph2::ConstraintGraph2(Dt2* pTriangulation, const std::vector<ConstraintSegment2*>& vSegments,
                                   ConstraintInsertionStrategy strategy)
    : pDt2(pTriangulation), pPredicates(&pTriangulation->predicates), cis(strategy)
{
    std::vector<ConstraintSegment2*> vWorking;
    vWorking.reserve(vSegments.size());
    for (ConstraintSegment2* pCSeg : vSegments) {
        if (!pCSeg)
            continue;
        if (pCSeg->getSrc() == pCSeg->getTrg())
            reportWarning("ConstraintGraph2::ConstraintGraph2()", "Ignoring a degenerate constraint segment");
        else
            vWorking.push_back(pCSeg);
    }
    vCSegments.reserve(vWorking.size());
    growIndex(vWorking.size());
    bIsPolygon = checkAndSortPolygon(vWorking);
    if (bIsPolygon)
        return;
    vCSegments.clear();
    vReverse.clear();
    std::fill(vCSegReverse.begin(), vCSegReverse.end(), DirectedSegment());
    numIndexed = 0;
    for (ConstraintSegment2* pCSeg : vWorking)
        append(pCSeg, false);
}

ConstraintGraph2::~ConstraintGraph2() = default;

// Walks from the lowest leftmost vertex, whose corner is convex, counterclockwise from segment to segment.
bool ConstraintGraph2::checkAndSortPolygon(const std::vector<ConstraintSegment2*>& vSegments)
{
    if (vSegments.size() < 3)
        return false;
    const Incidences incidences(vSegments);
    Point2* const pStart = findLowestLeftmost(vSegments);
    const auto* pAtStart = incidences.findPair(pStart);
    if (!pAtStart)
        return false;
    ConstraintSegment2* pCSeg = pAtStart[0].second;
    Point2* const pCandidate0 = otherEnd(pAtStart[0].second, pStart);
    Point2* const pCandidate1 = otherEnd(pAtStart[1].second, pStart);
    QUOR2D_ASSERT(pCandidate0 != pStart, "pCandidate0!=pStart");
    QUOR2D_ASSERT(pCandidate1 != pStart, "pCandidate1!=pStart");
    const Orientation2 orientation = pPredicates->getOrientation2(pStart, pCandidate0, pCandidate1);
    if (orientation == ORI2_ZERO)
        return false;
    if (orientation == ORI2_NEGATIVE)
        pCSeg = pAtStart[1].second;

    Point2* pConnector = pStart;
    // Ends: every vertex on the way has two segments, so the way cannot come to one of them again but to the start.
    do {
        append(pCSeg, pCSeg->getTrg() == pConnector);
        pConnector = otherEnd(pCSeg, pConnector);
        if (pConnector == pStart)
            break;
        const auto* pIncident = incidences.findPair(pConnector);
        if (!pIncident)
            return false;
        const bool bFirstIsWalked = pIncident[0].second == pCSeg;
        if (bFirstIsWalked == (pIncident[1].second == pCSeg)) {
            reportWarning("ConstraintGraph2::checkAndSortPolygon()", "Impossible case3!");
            QUOR2D_ASSERT(false, "false");
            return false;
        }
        ConstraintSegment2* const pNext = pIncident[bFirstIsWalked ? 1 : 0].second;
        if (pNext->getSrc() == pNext->getTrg()) {
            reportWarning("ConstraintGraph2::checkAndSortPolygon()",
                          vReverse.back() ? "Impossible case2!" : "Impossible case1!");
            QUOR2D_ASSERT(false, "false");
            return false;
        }
        pCSeg = pNext;
    } while (vCSegments.size() < vSegments.size());
    return pConnector == pStart && vCSegments.size() == vSegments.size();
}

void ConstraintGraph2::append(ConstraintSegment2* pCSeg, bool bReverse)
{
    vCSegments.push_back(pCSeg);
    vReverse.push_back(bReverse);
    enter(pCSeg, bReverse);
}

// A segment that the graph holds already keeps its direction. One with the same ends that was split gives way.
void ConstraintGraph2::enter(ConstraintSegment2* pCSeg, bool bReverse)
{
    if (2 * (numIndexed + 1) > vCSegReverse.size())
        growIndex(2 * numIndexed + 1);
    DirectedSegment& entry = vCSegReverse[slotOf(pCSeg->getSrc(), pCSeg->getTrg())];
    if (entry.pCSeg == pCSeg)
        return;
    if (!entry.pCSeg)
        ++numIndexed;
    entry = DirectedSegment{pCSeg->getSrc(), pCSeg->getTrg(), pCSeg, bReverse};
}

// The entry of the segment with these ends, or the free one where it belongs. Ends: at most half of them are used.
std::size_t ConstraintGraph2::slotOf(const Point2* p0, const Point2* p1) const
{
    const std::size_t mask = vCSegReverse.size() - 1;
    std::size_t i = hashOfEdge(p0, p1) & mask;
    while (vCSegReverse[i].pCSeg && (vCSegReverse[i].p0 != p0 || vCSegReverse[i].p1 != p1))
        i = (i + 1) & mask;
    return i;
}

void ConstraintGraph2::prefetchSlot(const Point2* p0, const Point2* p1) const
{
    orderByAddress(p0, p1);
    prefetch(&vCSegReverse[hashOfEdge(p0, p1) & (vCSegReverse.size() - 1)]);
}

void ConstraintGraph2::growIndex(std::size_t numSegments)
{
    std::size_t size = 16;
    while (size < 2 * numSegments)
        size *= 2;
    std::vector<DirectedSegment> vOld(size);
    vOld.swap(vCSegReverse);
    for (const DirectedSegment& entry : vOld)
        if (entry.pCSeg)
            vCSegReverse[slotOf(entry.p0, entry.p1)] = entry;
}

void ConstraintGraph2::getOriginalConstraintSegments(std::vector<ConstraintSegment2*>& vSegments) const
{
    vSegments = vCSegments;
}

bool ConstraintGraph2::isConstraint(Point2* p0, Point2* p1) const
{
    if (!p0 || !p1)
        return false;
    orderByAddress(p0, p1);
    const DirectedSegment& entry = vCSegReverse[slotOf(p0, p1)];
    return entry.pCSeg && entry.pCSeg->isAlive();
}

bool ConstraintGraph2::isReverse(const ConstraintSegment2* pCSeg) const
{
    const DirectedSegment& entry = vCSegReverse[slotOf(pCSeg->getSrc(), pCSeg->getTrg())];
    QUOR2D_ASSERT(entry.pCSeg != nullptr, "q_it!=mCSegReverse.end()");
    return entry.bReverse;
}

void ConstraintGraph2::notifySplit(ConstraintSegment2* pCSeg, bool bReverse0, bool bReverse1,
                                   ConstraintSegment2* pCSeg0, ConstraintSegment2* pCSeg1)
{
    QUOR2D_ASSERT(!pCSeg->isAlive(), "!pCSeg->isAlive()");
    const bool bReverse = isReverse(pCSeg);
    enter(pCSeg0, bReverse != bReverse0);
    enter(pCSeg1, bReverse != bReverse1);
    pDt2->constraintMgr().recordSplit(pCSeg, pCSeg0, pCSeg1);
}

// Calls visit(piece, first vertex of the piece in the direction of the graph) in the order of the graph. The direction
// of a piece follows from where the walk stands: a piece that overlapping segments share may be passed both ways.
template <class Visitor>
void ConstraintGraph2::forEachAliveSegment(Visitor visit) const
{
    std::vector<std::pair<ConstraintSegment2*, Point2*>> vStack;
    for (std::size_t i = 0; i < vCSegments.size(); ++i) {
        vStack.emplace_back(vCSegments[i], vReverse[i] ? vCSegments[i]->getTrg() : vCSegments[i]->getSrc());
        while (!vStack.empty()) {
            const auto [pCSeg, pFirst] = vStack.back();
            vStack.pop_back();
            if (pCSeg->isAlive()) {
                visit(pCSeg, pFirst);
                continue;
            }
            ConstraintSegment2 *pCSeg0 = nullptr, *pCSeg1 = nullptr;
            Point2* pSplitPoint = nullptr;
            pCSeg->getChildrenAndSplitPoint(pCSeg0, pCSeg1, pSplitPoint);
            if (pFirst != pCSeg->getSrc())
                std::swap(pCSeg0, pCSeg1);
            vStack.emplace_back(pCSeg1, pSplitPoint);
            vStack.emplace_back(pCSeg0, pFirst);
        }
    }
}

void ConstraintGraph2::getAliveSegments(std::vector<ConstraintSegment2*>& vAliveCSeg) const
{
    vAliveCSeg.clear();
    forEachAliveSegment([&vAliveCSeg](ConstraintSegment2* pCSeg, Point2*) { vAliveCSeg.push_back(pCSeg); });
}

void ConstraintGraph2::getPolygonVertices(std::vector<Point2*>& vVertices) const
{
    vVertices.clear();
    forEachAliveSegment([&vVertices](ConstraintSegment2*, Point2* pFirst) { vVertices.push_back(pFirst); });
}

} // namespace ZELK_QUOR2D
