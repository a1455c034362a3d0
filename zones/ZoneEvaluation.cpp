#include "zones/ZoneEvaluation.h"

#include "Zone2.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace ZELK_QUOR2D
{

ZoneEvaluation::ZoneEvaluation(const Zone2* pResultZone) : pRoot(pResultZone)
{
    countUses();
}

void ZoneEvaluation::countUses()
{
    ++mNodes[pRoot].numUses;
    vPending.assign(1, pRoot);
    // Ends: a zone is listed only when it is met for the first time.
    while (!vPending.empty()) {
        const Zone2* const pZone = vPending.back();
        vPending.pop_back();
        for (const Zone2* pInput : {pZone->pInputZone0, pZone->pInputZone1})
            if (pInput && ++mNodes[pInput].numUses == 1)
                vPending.push_back(pInput);
    }
}

void ZoneEvaluation::deliver(std::vector<Triangle2*>& vTriangles)
{
    vPending.assign(1, pRoot);
    // Ends: a zone stays on top only until its inputs are evaluated, and leaves the stack evaluated.
    while (!vPending.empty()) {
        const Zone2* const pZone = vPending.back();
        if (mNodes[pZone].bEvaluated) {
            vPending.pop_back();
        } else if (findInputs(pZone)) {
            vPending.pop_back();
            evaluate(pZone);
        }
    }
    vTriangles.swap(mNodes[pRoot].vTriangles);
}

// Lists the inputs that have not been evaluated. @return whether there are none
bool ZoneEvaluation::findInputs(const Zone2* pZone)
{
    bool bReady = true;
    for (const Zone2* pInput : {pZone->pInputZone0, pZone->pInputZone1}) {
        if (!pInput || mNodes[pInput].bEvaluated)
            continue;
        vPending.push_back(pInput);
        bReady = false;
    }
    return bReady;
}

void ZoneEvaluation::evaluate(const Zone2* pZone)
{
    Triangles vResult;
    if (pZone->isResult()) {
        combine(pZone, vResult);
        release(pZone->pInputZone0);
        release(pZone->pInputZone1);
    } else {
        pZone->collectTriangles(vResult);
    }
    Node& node = mNodes[pZone];
    node.vTriangles = std::move(vResult);
    node.bEvaluated = true;
}

void ZoneEvaluation::combine(const Zone2* pZone, Triangles& vResult)
{
    const Triangles& v0 = trianglesOf(pZone->pInputZone0);
    const Triangles& v1 = trianglesOf(pZone->pInputZone1);
    const std::less<Triangle2*> before;
    const auto out = std::back_inserter(vResult);
    switch (pZone->zoneLoc) {
    case ZL_RESULT_UNION:
        vResult.reserve(std::max(v0.size(), v1.size()));
        std::set_union(v0.begin(), v0.end(), v1.begin(), v1.end(), out, before);
        break;
    case ZL_RESULT_INTERSECTION:
        std::set_intersection(v0.begin(), v0.end(), v1.begin(), v1.end(), out, before);
        break;
    case ZL_RESULT_DIFFERENCE:
        std::set_difference(v0.begin(), v0.end(), v1.begin(), v1.end(), out, before);
        break;
    default:
        std::set_symmetric_difference(v0.begin(), v0.end(), v1.begin(), v1.end(), out, before);
        break;
    }
}

const ZoneEvaluation::Triangles& ZoneEvaluation::trianglesOf(const Zone2* pZone) const
{
    static const Triangles vNone;
    return pZone ? mNodes.find(pZone)->second.vTriangles : vNone;
}

void ZoneEvaluation::release(const Zone2* pZone)
{
    if (!pZone)
        return;
    Node& node = mNodes[pZone];
    if (--node.numUses == 0)
        Triangles().swap(node.vTriangles);
}

} // namespace ZELK_QUOR2D
