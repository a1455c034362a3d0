#include "refine/RefineZone.h"

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
    if (!(pT->marks & TM_IN_ZONE))
        vMarked.push_back(pT);
    if (!(pT->marks & TM_NEW))
        vNew.push_back(pT);
    pT->marks = TM_IN_ZONE | TM_NEW;
}

// A triangle may be listed more than once, or no longer be a member: it may have been recycled meanwhile.
void RefineZone::takeNew(std::vector<Triangle2*>& vTriangles)
{
    vTriangles.clear();
    for (Triangle2* pT : vNew) {
        if (!(pT->marks & TM_NEW))
            continue;
        pT->marks = TM_IN_ZONE;
        if (pT->getCorner(0))
            vTriangles.push_back(pT);
    }
    vNew.clear();
}

void RefineZone::clear()
{
    for (Triangle2* pT : vMarked)
        pT->marks = 0;
    vMarked.clear();
    vNew.clear();
    vOpen.clear();
}

} // namespace ZELK_QUOR2D
