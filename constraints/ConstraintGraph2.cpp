#include "ConstraintGraph2.h"

#include "Point2.h"
#include "Quor2DAssert.h"
#include "constraints/ConstraintMgr.h"
#include "constraints/EdgeKey.h"
#include "core/Dt2.h"
#include "core/Guarded.h"
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
    : pDt2(pTriangulation), pPredicates(&pTriangulation->predicates), cis(strategy),
      pSoleOwner(std::make_shared<const ConstraintSegment2::OwnerList>(1, ConstraintSegment2::Owner{this, false}))
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
    bIsPolygon = checkAndSortPolygon(vWorking);
    if (!bIsPolygon) {
        vCSegments = vWorking;
        vReverse.assign(vWorking.size(), false);
    }
    for (std::size_t i = 0; i < vCSegments.size(); ++i) {
        vCSegments[i]->addOwner(this, vReverse[i]);
        if (!vCSegments[i]->pMgr)
            vUnregistered.push_back(vCSegments[i]);
    }
    std::sort(vUnregistered.begin(), vUnregistered.end(), isBefore);
}

bool ConstraintGraph2::isBefore(const ConstraintSegment2* pA, const ConstraintSegment2* pB)
{
    return *pA < *pB;
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
}

void ConstraintGraph2::getOriginalConstraintSegments(std::vector<ConstraintSegment2*>& vSegments) const
{
    guarded([&] { vSegments = vCSegments; });
}

bool ConstraintGraph2::isConstraint(Point2* p0, Point2* p1) const
{
    const ConstraintSegment2* const pCSeg = pDt2->findConstraintSegment(p0, p1);
    return (pCSeg && pCSeg->findOwner(this)) || (!vUnregistered.empty() && isUnregisteredConstraint(p0, p1));
}

bool ConstraintGraph2::isUnregisteredConstraint(Point2* p0, Point2* p1) const
{
    if (!p0 || !p1 || p0 == p1)
        return false;
    orderByAddress(p0, p1);
    const ConstraintSegment2 key(p0, p1, cis);
    const auto range = std::equal_range(vUnregistered.begin(), vUnregistered.end(), &key, isBefore);
    return std::any_of(range.first, range.second, [](const ConstraintSegment2* pCSeg) { return pCSeg->isAlive(); });
}

bool ConstraintGraph2::isReverse(const ConstraintSegment2* pCSeg) const
{
    const ConstraintSegment2::Owner* const pOwner = pCSeg->findOwner(this);
    QUOR2D_ASSERT(pOwner, "q_it!=mCSegReverse.end()");
    return pOwner && pOwner->bReverse != pCSeg->bOwnersReverse;
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
    guarded([&] {
        forEachAliveSegment([&vAliveCSeg](ConstraintSegment2* pCSeg, Point2*) { vAliveCSeg.push_back(pCSeg); });
    });
}

void ConstraintGraph2::getPolygonVertices(std::vector<Point2*>& vVertices) const
{
    vVertices.clear();
    guarded([&] {
        forEachAliveSegment([&vVertices](ConstraintSegment2*, Point2* pFirst) { vVertices.push_back(pFirst); });
    });
}

} // namespace ZELK_QUOR2D
