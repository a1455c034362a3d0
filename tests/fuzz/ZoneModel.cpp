#include "tests/fuzz/ZoneModel.h"

#include "tests/fuzz/Targets.h"
#include "tests/support/MeshCheck.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <set>

namespace fuzz
{

using namespace ZELK_QUOR2D;

namespace
{

using TriangleSet = std::set<Triangle2*, std::less<Triangle2*>>;

// The triangle that has the directed edge in its own counterclockwise order.
Triangle2* findLeftOf(const ZoneModel::Triangles& vAll, const Point2* p0, const Point2* p1)
{
    for (Triangle2* pT : vAll)
        for (int i = 0; i < 3; ++i)
            if (pT->getCorner(i) == p0 && pT->getCorner((i + 1) % 3) == p1)
                return pT;
    return nullptr;
}

void fill(Triangle2* pSeed, ConstraintGraph2* pGraph, TriangleSet& sFilled)
{
    std::vector<Triangle2*> vOpen(1, pSeed);
    while (!vOpen.empty()) { // ends: every triangle is entered once
        Triangle2* const pT = vOpen.back();
        vOpen.pop_back();
        if (!pT || !sFilled.insert(pT).second)
            continue;
        for (int i = 0; i < 3; ++i)
            if (!pGraph || !pGraph->isConstraint(pT->getCorner((i + 1) % 3), pT->getCorner((i + 2) % 3)))
                vOpen.push_back(pT->getOppositeTriangle(i));
    }
}

bool isSame(const ZoneModel::Triangles& vFound, const TriangleSet& sExpected)
{
    return std::equal(vFound.begin(), vFound.end(), sExpected.begin(), sExpected.end());
}

bool contains(const Triangle2* pT, const Point2& p)
{
    for (int i = 0; i < 3; ++i)
        if (test::orientationSign(*pT->getCorner((i + 1) % 3), *pT->getCorner((i + 2) % 3), p) < 0)
            return false;
    return true;
}

} // namespace

ZoneModel::Triangles ZoneModel::trianglesOf(const Zone2* pLibraryZone)
{
    Triangles vTriangles(2, nullptr); // must be replaced
    pLibraryZone->getTriangles(vTriangles);
    return vTriangles;
}

bool ZoneModel::isReady(const Quor_2D& dt) const
{
    if (dt.numberOfTriangles() == 0)
        return false;
    const ZoneLocation location = pZone->getZoneLocation();
    if (location != ZL_INSIDE && location != ZL_OUTSIDE)
        return true;
    std::vector<Point2*> vRing;
    pGraph->getPolygonVertices(vRing);
    for (std::size_t i = 0; i < vRing.size(); ++i)
        if (dt.getAdjacentTriangle(vRing[i], vRing[(i + 1) % vRing.size()]))
            return true;
    return false;
}

void ZoneModel::check(const Quor_2D& dt) const
{
    Triangles vAll;
    dt.getTrianglePointers(vAll);
    const Triangles vFound = trianglesOf(pZone);
    switch (pZone->getZoneLocation()) {
    case ZL_GLOBAL:
        require(isSame(vFound, TriangleSet(vAll.begin(), vAll.end())), "the global zone is not everything");
        return;
    case ZL_INSIDE:
    case ZL_OUTSIDE:
        checkSide(vFound, vAll);
        return;
    case ZL_GROW:
        checkGrown(vFound, vAll);
        return;
    default:
        checkResult(vFound);
    }
}

void ZoneModel::checkSide(const Triangles& vFound, const Triangles& vAll) const
{
    std::vector<Point2*> vRing;
    pGraph->getPolygonVertices(vRing);
    TriangleSet sExpected;
    for (std::size_t i = 0; i < vRing.size(); ++i) {
        const Point2* const p0 = vRing[i];
        const Point2* const p1 = vRing[(i + 1) % vRing.size()];
        fill(pZone->getZoneLocation() == ZL_INSIDE ? findLeftOf(vAll, p0, p1) : findLeftOf(vAll, p1, p0), pGraph,
             sExpected);
    }
    require(isSame(vFound, sExpected), "the wrong side of a polygon");
}

// On an edge or a vertex the start stands for any of the triangles there.
void ZoneModel::checkGrown(const Triangles& vFound, const Triangles& vAll) const
{
    bool bSame = false, bInHull = false;
    for (Triangle2* pT : vAll) {
        if (!contains(pT, startPoint))
            continue;
        bInHull = true;
        TriangleSet sExpected;
        fill(pT, pGraph, sExpected);
        bSame = bSame || isSame(vFound, sExpected);
    }
    require(bInHull ? bSame : vFound.empty(), "a grown zone");
}

void ZoneModel::checkResult(const Triangles& vFound) const
{
    const Triangles v0 = trianglesOf(pInput0), v1 = trianglesOf(pInput1);
    Triangles vExpected;
    const auto into = std::back_inserter(vExpected);
    const std::less<Triangle2*> before;
    const auto begin0 = v0.begin(), end0 = v0.end(), begin1 = v1.begin(), end1 = v1.end();
    switch (pZone->getZoneLocation()) {
    case ZL_RESULT_UNION:
        std::set_union(begin0, end0, begin1, end1, into, before);
        break;
    case ZL_RESULT_INTERSECTION:
        std::set_intersection(begin0, end0, begin1, end1, into, before);
        break;
    case ZL_RESULT_DIFFERENCE:
        std::set_difference(begin0, end0, begin1, end1, into, before);
        break;
    default:
        std::set_symmetric_difference(begin0, end0, begin1, end1, into, before);
    }
    require(vFound == vExpected, "a zone made of two others");
}

} // namespace fuzz
