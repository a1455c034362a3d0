#include "refine/RefineZone.h"

#include "core/Dt2.h"

#include <algorithm>
#include <cstring>

namespace ZELK_QUOR2D
{

void RefineZone::assign(const std::vector<Triangle2*>& vTriangles)
{
    clear();
    for (Triangle2* pT : vTriangles)
        set(pT, true);
}

void RefineZone::set(Triangle2* pT, bool bMember)
{
    if (!bMember) {
        pT->marks = 0;
        return;
    }
    if (!(pT->marks & TM_NEW))
        vNew.push_back(pT);
    pT->marks = TM_IN_ZONE | TM_NEW;
}

void RefineZone::takeNew(std::vector<Triangle2*>& vTriangles)
{
    vTriangles.clear();
    vTriangles.swap(vNew);
}

bool RefineZone::endNew(Triangle2* pT)
{
    if (!(pT->marks & TM_NEW))
        return false;
    pT->marks = TM_IN_ZONE;
    return pT->getCorner(0) != nullptr;
}

void RefineZone::dropChanged()
{
    vOpen.erase(std::remove_if(vOpen.begin(), vOpen.end(),
                               [](const RefineCandidate& candidate) {
                                   return candidate.isTriangleStale() || !contains(candidate.pTriangle) ||
                                          isNew(candidate.pTriangle);
                               }),
                vOpen.end());
}

void RefineZone::reserveOpen(std::size_t numMore)
{
    const std::size_t needed = vOpen.size() + numMore;
    if (needed > vOpen.capacity())
        vOpen.reserve(std::max(needed, 2 * vOpen.capacity()));
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
    dt.forEachTriangle([](Triangle2* pT) { pT->marks = 0; });
    vNew.clear();
    vOpen.clear();
}

} // namespace ZELK_QUOR2D
