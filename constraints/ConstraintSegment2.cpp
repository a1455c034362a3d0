#include "ConstraintSegment2.h"

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
#include <iostream>
#include <limits>
#include <utility>

namespace ZELK_QUOR2D
{

ConstraintSegment2::ConstraintSegment2(Point2* p0, Point2* p1, ConstraintInsertionStrategy strategy)
    : src(p0), trg(p1), cis(strategy), adjacentArea(std::numeric_limits<double>::max())
{
    QUOR2D_ASSERT(std::less<Point2*>()(p0, p1), "p0<p1");
}

ConstraintSegment2::~ConstraintSegment2() = default;

void ConstraintSegment2::addOwner(ConstraintGraph2* pGraph, bool bReverse)
{
    if (!pGraph || findOwner(pGraph))
        return;
    if (!sOwners) {
        sOwners = pGraph->pSoleOwner;
        bOwnersReverse = bReverse;
        return;
    }
    guarded([&] {
        OwnerList vOwners(*sOwners);
        const auto it = std::find_if(vOwners.begin(), vOwners.end(), [pGraph](const Owner& owner) {
            return std::less<const ConstraintGraph2*>()(pGraph, owner.pGraph);
        });
        vOwners.insert(it, Owner{pGraph, bReverse != bOwnersReverse});
        sOwners = std::make_shared<const OwnerList>(std::move(vOwners));
    });
}

const ConstraintSegment2::Owner* ConstraintSegment2::findOwner(const ConstraintGraph2* pGraph) const
{
    if (sOwners)
        for (const Owner& owner : *sOwners)
            if (owner.pGraph == pGraph)
                return &owner;
    return nullptr;
}

bool ConstraintSegment2::split(Point2* pSplit)
{
    QUOR2D_ASSERT(isAlive(), "isAlive()");
    QUOR2D_ASSERT(src != pSplit && trg != pSplit, "p0!=pSplit && p1!=pSplit");
    if (!isAlive() || !pSplit)
        return false;
    if (pSplit == src || pSplit == trg) {
        reportWarning("ConstraintSegment2::split", "Trying to split a Constraint segment at one of its endpoints");
        std::cout << "p0=" << static_cast<const void*>(src) << "\np1=" << static_cast<const void*>(trg)
                  << "\npSplit=" << static_cast<const void*>(pSplit) << std::endl;
        return false;
    }
    guarded([&] { makeChildren(pSplit); });
    return true;
}

void ConstraintSegment2::makeChildren(Point2* pSplit)
{
    const std::less<Point2*> before;
    const bool bReverse0 = !before(src, pSplit);
    const bool bReverse1 = before(trg, pSplit);
    ConstraintSegment2* const pCSeg0 = makeChild(src, pSplit, bReverse0);
    ConstraintSegment2* const pCSeg1 = makeChild(pSplit, trg, bReverse1);
    pChild0 = pCSeg0;
    pChild1 = pCSeg1;
    if (ConstraintMgr* const pRegistry = findManager())
        pRegistry->recordSplit(this, pCSeg0, pCSeg1);
}

// Two objects for one edge would each miss the splits of the other, so an alive segment that overlaps becomes the
// child. It keeps its own strategy, and its direction in graphs that contain it already.
ConstraintSegment2* ConstraintSegment2::makeChild(Point2* pFirst, Point2* pSecond, bool bReverse) const
{
    if (bReverse)
        std::swap(pFirst, pSecond);
    ConstraintMgr* const pRegistry = findManager();
    ConstraintSegment2* pChild = pRegistry ? pRegistry->findSegment(pFirst, pSecond) : nullptr;
    if (!pChild) {
        pChild = pRegistry ? pRegistry->newSegment(pFirst, pSecond, cis) : new ConstraintSegment2(pFirst, pSecond, cis);
        pChild->sOwners = sOwners;
        pChild->bOwnersReverse = bOwnersReverse != bReverse;
    } else if (sOwners) {
        for (const Owner& owner : *sOwners)
            pChild->addOwner(owner.pGraph, (owner.bReverse != bOwnersReverse) != bReverse);
    }
    return pChild;
}

ConstraintMgr* ConstraintSegment2::findManager() const
{
    if (pMgr || !sOwners)
        return pMgr;
    return &sOwners->front().pGraph->getDelaunayTriangulation()->constraintMgr();
}

bool ConstraintSegment2::splitAndRemovePrev(Point2* pSplit)
{
    if (!split(pSplit))
        return false;
    QUOR2D_ASSERT(sOwners, "!sOwners.empty()");
    if (!sOwners)
        return true;
    const double dx = pSplit->x() - src->x(), dy = pSplit->y() - src->y();
    guarded([&] {
        sOwners->front().pGraph->getDelaunayTriangulation()->removeSplitVerticesNear(pSplit, dx * dx + dy * dy);
    });
    return true;
}

// With a stack of its own: a segment through many vertices makes a tree as deep as they are many.
void ConstraintSegment2::getChildrenRec(std::vector<ConstraintSegment2*>& vChildSegments) const
{
    QUOR2D_ASSERT(!isAlive(), "vChildren.size()==2");
    if (isAlive())
        return;
    guarded([&] {
        std::vector<ConstraintSegment2*> vStack{pChild1, pChild0};
        while (!vStack.empty()) {
            ConstraintSegment2* const pCSeg = vStack.back();
            vStack.pop_back();
            if (pCSeg->isAlive()) {
                vChildSegments.push_back(pCSeg);
            } else {
                vStack.push_back(pCSeg->pChild1);
                vStack.push_back(pCSeg->pChild0);
            }
        }
    });
}

void ConstraintSegment2::getChildrenAndSplitPoint(ConstraintSegment2*& pCSeg0, ConstraintSegment2*& pCSeg1,
                                                  Point2*& pSplitPoint) const
{
    if (isAlive()) {
        reportWarning("ConstraintSegment2::getChildrenAndSplitPoint()", "*this is still alive!");
        return;
    }
    pCSeg0 = pChild0;
    pCSeg1 = pChild1;
    pSplitPoint = nullptr;
    for (Point2* pEnd : {pChild0->src, pChild0->trg})
        if (pEnd == pChild1->src || pEnd == pChild1->trg)
            pSplitPoint = pEnd;
    QUOR2D_ASSERT(pSplitPoint != nullptr, "pSplitPoint!=NULL");
}

bool ConstraintSegment2::operator<(const ConstraintSegment2& other) const
{
    const std::less<Point2*> before;
    return before(src, other.src) || (src == other.src && before(trg, other.trg));
}

std::ostream& operator<<(std::ostream& stream, const ConstraintSegment2& segment)
{
    return stream << "ConstraintSegment2: (" << static_cast<const void*>(segment.getSrc()) << ","
                  << static_cast<const void*>(segment.getTrg()) << ")";
}

} // namespace ZELK_QUOR2D
