#include "tests/fuzz/MeshModel.h"

#include "tests/fuzz/Targets.h"
#include "tests/support/ConstraintCheck.h"
#include "tests/support/MeshCheck.h"

#include <algorithm>
#include <cmath>

namespace fuzz
{

using namespace ZELK_QUOR2D;

namespace
{

bool contains(const Triangle2* pT, const Point2& p)
{
    for (int i = 0; i < 3; ++i)
        if (test::orientationSign(*pT->getCorner((i + 1) % 3), *pT->getCorner((i + 2) % 3), p) < 0)
            return false;
    return true;
}

bool hasCorner(const Triangle2* pT, const Point2* pVtx)
{
    return pT->getCorner(0) == pVtx || pT->getCorner(1) == pVtx || pT->getCorner(2) == pVtx;
}

// Turns until the start comes again, and never more often than there are triangles.
template <class Step>
std::size_t countTurns(Point2* pVtx, std::size_t limit, Step step)
{
    TriangleAroundVertexIterator it(pVtx);
    Triangle2* const pStart = *it;
    std::size_t numTriangles = 0;
    do {
        if (*it) {
            require(hasCorner(*it, pVtx), "the walk around a vertex meets a strange triangle");
            ++numTriangles;
        }
        step(it);
    } while (*it != pStart && numTriangles <= limit);
    return numTriangles;
}

} // namespace

void MeshModel::noteInserted(const Point2& p, Point2* pHandle)
{
    if (!std::isfinite(p.x()) || !std::isfinite(p.y())) {
        require(pHandle == nullptr, "a handle for a point that is not finite");
        return;
    }
    require(pHandle != nullptr, "no handle for an inserted point");
    require(*pHandle == p, "the handle has other coordinates than the point");
    bUntouched = false;
    const auto it = mLive.emplace(Place(p.x(), p.y()), pHandle);
    require(it.first->second == pHandle, "a second vertex at the same place");
    require(sRemoved.count(pHandle) == 0, "a removed vertex was used again");
    if (it.second)
        vHandles.push_back(pHandle);
}

void MeshModel::noteRemoved(Point2* pVtx)
{
    const auto it = mLive.find(Place(pVtx->x(), pVtx->y()));
    require(it != mLive.end() && it->second == pVtx, "removal has moved the vertex");
    require(pVtx->getIncidentTriangle() == nullptr, "a removed vertex has a triangle");
    mLive.erase(it);
    sRemoved.insert(pVtx);
    bUntouched = false;
    bApplied = bApplied && dt.numberOfTriangles() > 0;
}

void MeshModel::adoptVertices()
{
    std::vector<Point2*> vVertices;
    dt.getVertexPointers(vVertices);
    std::map<Place, Point2*> mNow;
    for (Point2* p : vVertices) {
        mNow.emplace(Place(p->x(), p->y()), p);
        const auto it = mLive.find(Place(p->x(), p->y()));
        if (it == mLive.end())
            vHandles.push_back(p);
        else
            require(it->second == p, "a vertex was exchanged for another one");
    }
    require(mNow.size() == vVertices.size(), "two vertices at the same place");
    for (const auto& entry : mLive)
        require(mNow.count(entry.first) > 0, "a vertex has disappeared");
    mLive = mNow;
}

bool MeshModel::isLive(Point2* pVtx) const
{
    const auto it = mLive.find(Place(pVtx->x(), pVtx->y()));
    return it != mLive.end() && it->second == pVtx;
}

bool MeshModel::isRemovable(Point2* pVtx) const
{
    if (!isLive(pVtx) || dt.numberOfTriangles() == 0)
        return false;
    for (ConstraintGraph2* pGraph : vGraphs) {
        std::vector<ConstraintSegment2*> vNodes;
        pGraph->getOriginalConstraintSegments(vNodes);
        while (!vNodes.empty()) { // ends: the split trees are finite
            ConstraintSegment2* const pCSeg = vNodes.back();
            vNodes.pop_back();
            if (pCSeg->getSrc() == pVtx || pCSeg->getTrg() == pVtx)
                return false;
            if (pCSeg->isAlive())
                continue;
            ConstraintSegment2 *pCSeg0 = nullptr, *pCSeg1 = nullptr;
            Point2* pSplit = nullptr;
            pCSeg->getChildrenAndSplitPoint(pCSeg0, pCSeg1, pSplit);
            vNodes.insert(vNodes.end(), {pCSeg0, pCSeg1});
        }
    }
    return true;
}

void MeshModel::addGraph(ConstraintGraph2* pGraph)
{
    vGraphs.push_back(pGraph);
    bApplied = bUntouched = false;
}

void MeshModel::noteApplied(std::size_t numGivenUp)
{
    bApplied = bUntouched = dt.numberOfTriangles() > 0;
    maxMissing = numGivenUp;
}

void MeshModel::checkMesh()
{
    if (dt.numberOfTriangles() == 0)
        bApplied = bUntouched = false;
    if (bApplied && !vGraphs.empty())
        checkConstraints();
    else
        checkUnappliedMesh();
    checkVertices();
}

void MeshModel::checkVertices() const
{
    std::vector<Point2*> vVertices;
    dt.getVertexPointers(vVertices);
    require(vVertices.size() == mLive.size(), "the number of vertices");
    for (Point2* p : vVertices)
        require(isLive(p), "a vertex that nobody has inserted");
}

// A constrained segment that happens to be an edge may be kept before it is applied.
void MeshModel::checkUnappliedMesh() const
{
    std::set<Edge> sConstrained;
    for (const ConstraintSegment2* pPiece : test::alivePieces(vGraphs))
        if (bRefined || pPiece->getCIS() == CIS_CONSTRAINED_DELAUNAY)
            sConstrained.emplace(pPiece->getSrc(), pPiece->getTrg());
    test::MeshCheckOptions options;
    options.isExemptEdge = [&](const Point2* p, const Point2* q) {
        return sConstrained.count(Edge(p, q)) > 0 || sConstrained.count(Edge(q, p)) > 0;
    };
    const ::testing::AssertionResult result = test::isValidMesh(dt, options);
    require(result, result.message());
}

// Conforming pieces may be lost when the mesh changes after they were applied, constrained ones not.
void MeshModel::checkConstraints() const
{
    test::ConstraintCheckOptions options;
    options.maxDeviation = 1e-9 * largestCoordinate();
    options.maxMissing = maxMissing;
    options.bRefined = bRefined;
    if (!bUntouched) {
        std::size_t numMissing = 0;
        for (const ConstraintSegment2* pPiece : test::alivePieces(vGraphs)) {
            options.maxMissing += pPiece->getCIS() == CIS_CONFORMING_DELAUNAY ? 1 : 0;
            if (pPiece->getCIS() == CIS_CONSTRAINED_DELAUNAY &&
                !dt.getAdjacentTriangle(pPiece->getSrc(), pPiece->getTrg()))
                ++numMissing;
        }
        require(numMissing <= maxMissing, "a constrained edge was lost");
    }
    const std::string defect = test::findConstraintDefect(dt, vGraphs, options);
    require(defect.empty(), defect.c_str());
}

double MeshModel::largestCoordinate() const
{
    double largest = 0.0;
    for (const auto& entry : mLive)
        largest = std::max({largest, std::fabs(entry.first.first), std::fabs(entry.first.second)});
    return largest;
}

void MeshModel::checkGraphs() const
{
    for (ConstraintGraph2* pGraph : vGraphs) {
        std::vector<Point2*> vRing;
        pGraph->getPolygonVertices(vRing);
        if (!pGraph->isPolygon())
            continue;
        require(vRing.size() >= 3, "a polygon of less than three vertices");
        for (std::size_t i = 0; i < vRing.size(); ++i)
            require(pGraph->isConstraint(vRing[i], vRing[(i + 1) % vRing.size()]), "a polygon with a gap");
        // More where the ring touches itself.
        require(vRing.size() >= test::alivePieces({pGraph}).size(), "a polygon without some of its pieces");
    }
}

void MeshModel::checkLocation(const Point2& p, Triangle2* pFound) const
{
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    if (pFound) {
        require(std::find(vTriangles.begin(), vTriangles.end(), pFound) != vTriangles.end(), "located a dead triangle");
        require(contains(pFound, p), "the located triangle does not contain the point");
    } else if (std::isfinite(p.x()) && std::isfinite(p.y())) {
        for (const Triangle2* pT : vTriangles)
            require(!contains(pT, p), "no triangle located, but there is one");
    }
}

void MeshModel::checkAdjacency(Point2* p0, Point2* p1, Triangle2* pFound) const
{
    if (pFound) {
        require(p0 != p1 && hasCorner(pFound, p0) && hasCorner(pFound, p1), "the adjacent triangle lacks a corner");
        return;
    }
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    for (const Triangle2* pT : vTriangles)
        require(p0 == p1 || !hasCorner(pT, p0) || !hasCorner(pT, p1), "no adjacent triangle found, but there is one");
}

void MeshModel::checkStar(Point2* pVtx) const
{
    if (!pVtx || !pVtx->getIncidentTriangle())
        return;
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    std::size_t degree = 0;
    for (const Triangle2* pT : vTriangles)
        degree += hasCorner(pT, pVtx) ? 1 : 0;
    const auto forward = [](TriangleAroundVertexIterator& it) { ++it; };
    const auto backward = [](TriangleAroundVertexIterator& it) { --it; };
    require(countTurns(pVtx, vTriangles.size(), forward) == degree, "the walk around a vertex");
    require(countTurns(pVtx, vTriangles.size(), backward) == degree, "the walk back around a vertex");
}

} // namespace fuzz
