#include "constraints/ConstraintMgr.h"
#include "core/Dt2.h"
#include "output/Message.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <unordered_map>

namespace ZELK_QUOR2D
{

namespace
{

const char* const kPlace = "Dt2::createArbitraryTriangles(..)";

using Corners = std::array<Point2*, 3>; // counterclockwise, the one with the lowest address first

Corners makeCorners(Point2* p0, Point2* p1, Point2* p2)
{
    Corners corners{p0, p1, p2};
    std::rotate(corners.begin(), std::min_element(corners.begin(), corners.end(), std::less<Point2*>()), corners.end());
    return corners;
}

// The given triangles that have an area, three points each, counterclockwise.
std::vector<Point2> orientedTriangles(const std::vector<Point2>& vPoints, PredicateTest& predicates)
{
    std::vector<Point2> vOriented;
    vOriented.reserve(vPoints.size());
    for (std::size_t i = 0; i < vPoints.size(); i += 3) {
        const Orientation2 orientation = predicates.getOrientation2(&vPoints[i], &vPoints[i + 1], &vPoints[i + 2]);
        if (orientation == ORI2_ZERO)
            continue;
        vOriented.push_back(vPoints[i]);
        vOriented.push_back(vPoints[orientation == ORI2_POSITIVE ? i + 1 : i + 2]);
        vOriented.push_back(vPoints[orientation == ORI2_POSITIVE ? i + 2 : i + 1]);
    }
    return vOriented;
}

// The corners of the doubled box of the points, kept finite.
std::array<Point2, 4> frameCorners(const std::vector<Point2>& vPoints)
{
    const auto byX = std::minmax_element(vPoints.begin(), vPoints.end(),
                                         [](const Point2& p, const Point2& q) { return p.x() < q.x(); });
    const auto byY = std::minmax_element(vPoints.begin(), vPoints.end(),
                                         [](const Point2& p, const Point2& q) { return p.y() < q.y(); });
    Bbox2 box(nullptr);
    box.add(Point2(byX.first->x(), byY.first->y()));
    box.add(Point2(byX.second->x(), byY.second->y()));
    box.doubleTheBox();
    const auto finite = [](double value) {
        constexpr double largest = std::numeric_limits<double>::max();
        return std::clamp(value, -largest, largest);
    };
    const double minX = finite(box.get_minX()), minY = finite(box.get_minY());
    const double maxX = finite(box.get_maxX()), maxY = finite(box.get_maxY());
    return {Point2(minX, minY), Point2(maxX, minY), Point2(maxX, maxY), Point2(minX, maxY)};
}

} // namespace

// A second triangulation gets the edges of the triangles as constraints, and a frame around them; this one takes over
// its triangles.
void Dt2::createArbitraryTriangles(const std::vector<Point2>& vPoints)
{
    if (!vertexVault.empty()) {
        reportError(kPlace, "This method requires an empty triangulation");
        return;
    }
    if (vPoints.empty() || vPoints.size() % 3 != 0) {
        reportError(kPlace, "3 points per triangle please!");
        return;
    }
    for (const Point2& p : vPoints) {
        if (!std::isfinite(p.x()) || !std::isfinite(p.y())) {
            reportError(kPlace, "a point has a non-finite coordinate, nothing changed");
            return;
        }
    }
    const std::vector<Point2> vOriented = orientedTriangles(vPoints, predicates);
    if (vOriented.empty()) {
        reportError(kPlace, "all triangles have zero area, nothing changed");
        return;
    }
    if (vOriented.size() < vPoints.size())
        reportWarning(kPlace, "triangles of zero area have been left out: " +
                                  std::to_string((vPoints.size() - vOriented.size()) / 3));

    constexpr unsigned int kExpectedVertices = 1000;
    Dt2 auxiliary(kExpectedVertices);
    const std::array<Point2, 4> aFrame = frameCorners(vOriented);
    auxiliary.insert(std::vector<Point2>(aFrame.begin(), aFrame.end()));
    std::vector<Point2*> vHandles;
    auxiliary.insert(vOriented, vHandles);
    for (std::size_t i = 0; i < vHandles.size(); ++i) {
        Point2* const pNext = vHandles[i % 3 == 2 ? i - 2 : i + 1];
        auxiliary.constraintMgr().findOrCreateSegment(vHandles[i], pNext, CIS_CONSTRAINED_DELAUNAY);
    }
    auxiliary.applyConstraintsAndZones();
    reportMissingTriangles(auxiliary, vHandles);
    takeOver(auxiliary);
}

// Tells how many of the triangles, three vertices each, the triangulation does not have.
void Dt2::reportMissingTriangles(const Dt2& auxiliary, const std::vector<Point2*>& vHandles)
{
    std::vector<Corners> vLive;
    auxiliary.forEachTriangle([&vLive](Triangle2* pT) {
        vLive.push_back(makeCorners(pT->getCorner(0), pT->getCorner(1), pT->getCorner(2)));
    });
    const auto before = [](const Corners& a, const Corners& b) {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), std::less<Point2*>());
    };
    std::sort(vLive.begin(), vLive.end(), before);
    std::size_t numMissing = 0;
    for (std::size_t i = 0; i < vHandles.size(); i += 3)
        if (!std::binary_search(vLive.begin(), vLive.end(), makeCorners(vHandles[i], vHandles[i + 1], vHandles[i + 2]),
                                before))
            ++numMissing;
    if (numMissing > 0)
        reportError(kPlace,
                    "triangles that others cross or reach into have been divided: " + std::to_string(numMissing));
}

// Copies vertices and triangles into this triangulation, which has no vertex.
void Dt2::takeOver(const Dt2& other)
{
    stopCollecting();
    std::vector<Point2*> vOtherVertices;
    other.getVertexPointers(vOtherVertices);
    growBoxes(other.bbox.getMinPoint());
    growBoxes(other.bbox.getMaxPoint());
    std::unordered_map<const Point2*, Point2*> mPP;
    mPP.reserve(vOtherVertices.size());
    for (const Point2* pOther : vOtherVertices) {
        Point2* const pOwn = newVertex(pOther->x(), pOther->y());
        pOwn->setCustomIndex(pOther->getCustomIndex());
        mPP.emplace(pOther, pOwn);
    }
    std::unordered_map<const Triangle2*, Triangle2*> mTriangles;
    mTriangles.reserve(other.numLiveTriangles());
    other.forEachTriangle([&](const Triangle2* pOther) {
        mTriangles.emplace(pOther, createTriangle(mPP.at(pOther->getCorner(0)), mPP.at(pOther->getCorner(1)),
                                                  mPP.at(pOther->getCorner(2))));
    });
    for (const auto& [pOther, pOwn] : mTriangles)
        for (int i = 0; i < 3; ++i)
            if (const Triangle2* pNeighbor = pOther->getOppositeTriangle(i))
                pOwn->setOppTriangle(i, mTriangles.at(pNeighbor));
    fullDimensional = true;
    vertexVault.updateSortedIndex(false);
    pLastInserted = nullptr;
}

} // namespace ZELK_QUOR2D
