#include "refine/RefineZone.h"

#include "core/Dt2.h"
#include "core/Prefetch.h"
#include "refine/RefineCandidate.h"

#include <algorithm>
#include <cstring>

namespace ZELK_QUOR2D
{

namespace
{

constexpr std::size_t kPrefetchDistance = 8;

// For the test of a triangle.
void prefetchTriangles(const std::vector<Triangle2*>& vTriangles, std::size_t i)
{
    if (i + 2 * kPrefetchDistance < vTriangles.size())
        prefetchWhole(vTriangles[i + 2 * kPrefetchDistance]);
    if (i + kPrefetchDistance < vTriangles.size())
        for (int ith = 0; ith < 3; ++ith)
            prefetch(vTriangles[i + kPrefetchDistance]->getCorner(ith));
}

} // namespace

void RefineZone::assign(const std::vector<Triangle2*>& vTriangles)
{
    clear();
    for (std::size_t i = 0; i < vTriangles.size(); ++i) {
        prefetchTriangles(vTriangles, i);
        set(vTriangles[i], true);
    }
}

void RefineZone::set(Triangle2* pT, bool bMember)
{
    if (!bMember) {
        pT->marks = 0;
        return;
    }
    if (bGrows && !contains(pT))
        vMarked.push_back(pT);
    const QuickTest test(*pT);
    if (test.clearlyMeets(params)) {
        pT->marks = TM_IN_ZONE;
        return;
    }
    pT->marks = TM_IN_ZONE | TM_OPEN;
    vNew.push_back(OpenTriangle{pT, {pT->getCorner(0), pT->getCorner(1), pT->getCorner(2)}, test.circumRadius()});
}

bool RefineZone::takeTurn(const OpenTriangle& open)
{
    if (open.isStale() || !(open.pTriangle->marks & TM_OPEN))
        return false;
    open.pTriangle->marks = TM_IN_ZONE;
    return true;
}

void RefineZone::takeOpen(std::vector<OpenTriangle*>& vCandidates)
{
    vOpen.clear();
    vOpen.swap(vNew);
    listKept();
    vOrder.clear();
    for (std::size_t i = 0; i < vOpen.size(); ++i)
        addToOrder(i);
    sortOrder();
    vCandidates.clear();
    for (const CurveItem item : vOrder)
        vCandidates.push_back(&vOpen[positionOf(item)]);
}

// A triangle that was set again is listed already.
void RefineZone::listKept()
{
    for (const OpenTriangle& open : vKept) {
        if (open.isStale() || open.pTriangle->marks != TM_IN_ZONE)
            continue;
        open.pTriangle->marks = TM_IN_ZONE | TM_OPEN;
        vOpen.push_back(open);
    }
    vKept.clear();
}

// The upper halves of positive numbers, read as integers, are in the order of the numbers.
void RefineZone::addToOrder(std::size_t place)
{
    std::uint64_t bits = 0;
    std::memcpy(&bits, &vOpen[place].circumRadius, sizeof bits);
    vOrder.push_back(makeCurveItem(~static_cast<std::uint32_t>(bits >> 32), static_cast<std::uint32_t>(place)));
}

void RefineZone::sortOrder()
{
    sortByKey(vOrder.data(), vOrder.size(), vScratch);
    const auto isLarger = [this](CurveItem a, CurveItem b) {
        return vOpen[positionOf(a)].circumRadius > vOpen[positionOf(b)].circumRadius;
    };
    for (auto first = vOrder.begin(); first != vOrder.end();) {
        auto last = first + 1;
        while (last != vOrder.end() && keyOf(*last) == keyOf(*first))
            ++last;
        if (!std::is_sorted(first, last, isLarger))
            std::sort(first, last, isLarger);
        first = last;
    }
}

void RefineZone::clear()
{
    const auto unmark = [](Triangle2* pT) { pT->marks = 0; };
    if (bGrows)
        std::for_each(vMarked.begin(), vMarked.end(), unmark);
    else
        dt.forEachTriangle(unmark);
    vMarked.clear();
    vNew.clear();
    vKept.clear();
}

} // namespace ZELK_QUOR2D
