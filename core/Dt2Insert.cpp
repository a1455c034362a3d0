#include "core/Dt2.h"

#include "core/Prefetch.h"
#include "core/TriangleLinks.h"
#include "output/Message.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>

namespace ZELK_QUOR2D
{

namespace
{

// Ranges below this size are inserted in order, larger ones middle first.
constexpr std::size_t kLeafSize = 16;

// Places are noted of about one vertex out of so many in a batch.
constexpr std::size_t kNoteEvery = 256;

// A batch into a mesh of more vertices per new point than this is sparse.
constexpr std::size_t kSparseFactor = 64;

// A fan of more triangles than this makes its hull vertex one whose hull neighbours are remembered.
constexpr int kLongFan = 64;

struct VectorSource {
    const std::vector<Point2>& vPoints;
    const Point2& operator()(std::size_t i) const { return vPoints[i]; }
};

struct ArraySource {
    const double* aCoordinates;
    Point2 operator()(std::size_t i) const { return Point2(aCoordinates[2 * i], aCoordinates[2 * i + 1]); }
};

bool isFinite(const Point2& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

} // namespace

// ---- single points

Point2* Dt2::insert(const Point2& p)
{
    if (!isFinite(p)) {
        reportError("Dt2::insert(..)", "a point with a non-finite coordinate has been left out");
        return nullptr;
    }
    growBoxes(p);
    if (!hasTriangles())
        return collect(p);
    const std::uint32_t key = hilbertCurve.getIndex(p);
    Triangle2* pT = nullptr;
    const int intState = walkFromNear(p, key, pT);
    Point2* const pVtx = insertWalked(p, key, pT, intState);
    vertexVault.updateSortedIndex(true);
    return pVtx;
}

// @return the new vertex, or the one that stands there
Point2* Dt2::insertWalked(const Point2& p, std::uint32_t key, Triangle2* pT, int intState)
{
    if (intState == WALK_ON_CORNER) {
        Point2* pExisting = nullptr;
        for (int i = 0; i < 3; ++i)
            if (*pT->getCorner(i) == p)
                pExisting = pT->getCorner(i);
        vertexVault.addDuplicate(key, pExisting);
        pLastInserted = pExisting;
        return pExisting;
    }
    Point2* pVtx = vertexVault.makeVertex(p.x(), p.y(), p.getCustomIndex());
    vertexVault.add(key, pVtx);
    notePlace(pVtx);
    insertVertex(&pVtx, pT, intState);
    vertexVault.noteRecent(key, pVtx);
    pLastInserted = pVtx;
    return pVtx;
}

Point2* Dt2::newVertex(double x, double y)
{
    Point2* pVtx = vertexVault.makeVertex(x, y, -1);
    vertexVault.add(hilbertCurve.getIndex(x, y), pVtx);
    notePlace(pVtx);
    return pVtx;
}

// ---- batches

void Dt2::insert(const std::vector<Point2>& vInputPoints)
{
    insertBatch(vInputPoints.size(), VectorSource{vInputPoints}, nullptr);
}

void Dt2::insert(const std::vector<Point2>& vInputPoints, std::vector<Point2*>& vHandles)
{
    vHandles.assign(vInputPoints.size(), nullptr);
    QUOR2D_ASSERT(vInputPoints.size() == vHandles.size(), "vInputPoints.size()==vHandles.size()");
    insertBatch(vInputPoints.size(), VectorSource{vInputPoints}, vHandles.data());
}

void Dt2::insert(int numPoints, double* aCoordinates, Point2** aHandles)
{
    if (numPoints > 0 && aCoordinates)
        insertBatch(static_cast<std::size_t>(numPoints), ArraySource{aCoordinates}, aHandles);
}

template <class Source>
void Dt2::insertBatch(std::size_t numPoints, const Source& source, Point2** aHandles)
{
    if (numPoints == 0)
        return;
    const std::size_t numLeftOut = addToBoxes(numPoints, source);
    if (numLeftOut > 0)
        reportError("Dt2::insert(..)",
                    "points with a non-finite coordinate have been left out: " + std::to_string(numLeftOut));
    if (aHandles)
        std::fill_n(aHandles, numPoints, nullptr);
    if (numLeftOut == numPoints)
        return;
    if (!hasTriangles()) {
        insertBatchWhileCollecting(numPoints, source, aHandles);
        return;
    }
    insertBatchIntoMesh(numPoints, numLeftOut, source, aHandles);
}

template <class Source>
void Dt2::insertBatchIntoMesh(std::size_t numPoints, std::size_t numLeftOut, const Source& source, Point2** aHandles)
{
    const auto bSkip = [&](std::size_t i) { return numLeftOut > 0 && !isFinite(source(i)); };
    std::size_t firstFinite = 0;
    while (bSkip(firstFinite)) // ends: not all are left out
        ++firstFinite;
    const bool bSparse = (numPoints - numLeftOut) * kSparseFactor < vertexVault.vIdxVtxAct.size();
    // Looking for a triangle may rearrange the vault, so that must not happen while the batch is only half inserted.
    Triangle2* const pStart = bSparse ? nullptr : vertexVault.getCT(hilbertCurve.getIndex(source(firstFinite)));
    std::vector<std::uint32_t> vEntryOfInput;
    const std::size_t first = vertexVault.addPoints(numPoints, source, bSkip, aHandles ? &vEntryOfInput : nullptr);
    std::vector<VaultEntry> vTaken;
    if (bSparse) {
        vTaken = vertexVault.takeFrom(first);
        insertSparse(vTaken);
    } else {
        insertRange(first, vertexVault.vIdxVtxAct.size(), pStart);
    }
    const VaultEntry* const pEntries = bSparse ? vTaken.data() : &vertexVault[first];
    for (std::size_t i = 0; i < vEntryOfInput.size(); ++i)
        if (vEntryOfInput[i] != VertexVault::kNoEntry)
            aHandles[i] = pEntries[vEntryOfInput[i] - first].pVtx;
    pLastInserted = bSparse ? vTaken.back().pVtx : vertexVault.vIdxVtxAct.back().pVtx;
    vertexVault.finishBatch(bSparse ? vertexVault.vIdxVtxAct.size() : first);
}

// @return the number of points that have a non-finite coordinate
template <class Source>
std::size_t Dt2::addToBoxes(std::size_t numPoints, const Source& source)
{
    std::size_t numFinite = 0;
    double minX = 0.0, minY = 0.0, maxX = 0.0, maxY = 0.0;
    for (std::size_t i = 0; i < numPoints; ++i) {
        const auto& p = source(i);
        if (!isFinite(p))
            continue;
        if (numFinite++ == 0) {
            minX = maxX = p.x();
            minY = maxY = p.y();
        }
        minX = std::min(minX, p.x());
        maxX = std::max(maxX, p.x());
        minY = std::min(minY, p.y());
        maxY = std::max(maxY, p.y());
    }
    if (numFinite > 0) {
        bbox.add(Point2(minX, minY));
        bbox.add(Point2(maxX, maxY));
        rebuildOrderingIfLeft(Point2(minX, minY), Point2(maxX, maxY));
    }
    return numPoints - numFinite;
}

// While there are no triangles no point is entered twice, so the vertex of each input point is known at once and
// insertion meets no duplicates.
template <class Source>
void Dt2::insertBatchWhileCollecting(std::size_t numPoints, const Source& source, Point2** aHandles)
{
    startCollecting();
    const bool bEmpty = vertexVault.empty();
    const auto bSkip = [&](std::size_t i) {
        const auto& p = source(i);
        return !isFinite(p) || (!bEmpty && sCollected.find(p));
    };
    std::vector<std::uint32_t> vEntryOfInput;
    const std::size_t first = vertexVault.addPoints(numPoints, source, bSkip, aHandles ? &vEntryOfInput : nullptr);
    for (std::size_t i = 0; i < vEntryOfInput.size(); ++i)
        aHandles[i] =
            vEntryOfInput[i] != VertexVault::kNoEntry ? vertexVault[vEntryOfInput[i]].pVtx : sCollected.find(source(i));
    const std::size_t last = vertexVault.vIdxVtxAct.size();
    for (std::size_t i = first; i < last && !pOffLine; ++i)
        noteCollected(vertexVault[i].pVtx);
    if (pOffLine) {
        makeFullDimensional(bEmpty);
        return;
    }
    for (std::size_t i = first; i < last; ++i)
        sCollected.insert(vertexVault[i].pVtx);
}

// From one point of a small batch to the next it is farther than from the vertices that the vault knows.
void Dt2::insertSparse(std::vector<VaultEntry>& vBatch)
{
    for (VaultEntry& entry : vBatch) {
        Point2* const pNew = entry.pVtx;
        Triangle2* pT = nullptr;
        notePlace(pNew);
        const int intState = walkFromNear(*pNew, entry.key, pT);
        insertVertex(&entry.pVtx, pT, intState);
        if (entry.pVtx != pNew)
            vertexVault.markDuplicate(entry, pNew);
        vertexVault.vIdxVtxAct.push_back(entry);
        vertexVault.noteRecent(entry.key, entry.pVtx);
    }
}

// Middle first: consecutive insertions stay near each other, and points along a line are not inserted end to end.
void Dt2::insertRange(std::size_t first, std::size_t last, Triangle2* pStart)
{
    if (last - first < kLeafSize) {
        if (first % kNoteEvery < kLeafSize && first < last)
            notePlace(vertexVault[first].pVtx);
        Triangle2* pT = pStart;
        for (std::size_t i = first; i < last; ++i)
            pT = insertEntry(i, pT);
        return;
    }
    const std::size_t mid = first + (last - first) / 2;
    insertRange(first, mid, insertEntry(mid, pStart));
    Triangle2* pT = vertexVault[mid].pVtx->getIncidentTriangle();
    QUOR2D_ASSERT(pT != nullptr, "pT!=NULL");
    insertRange(mid + 1, last, pT);
}

// Of a vertex that is inserted next.
void Dt2::notePlace(const Point2* pVtx)
{
    trianglePlaces.note(vertexPool.indexOf(pVtx), trianglePool.numberOfElements());
}

Triangle2* Dt2::insertEntry(std::size_t index, Triangle2* pStart)
{
    VaultEntry& entry = vertexVault[index];
    Point2* const pNew = entry.pVtx;
    if (Triangle2* pT = pNew->getIncidentTriangle())
        return pT; // a corner of the very first triangle
    Triangle2* pT = insertIntoTriangle(&entry.pVtx, pStart);
    QUOR2D_ASSERT(pT != nullptr, "pT!=NULL");
    if (entry.pVtx != pNew)
        vertexVault.markDuplicate(entry, pNew);
    return pT;
}

// ---- one vertex

Triangle2* Dt2::insertIntoTriangle(Point2** pHandle, Triangle2* pStart)
{
    QUOR2D_ASSERT(pStart != nullptr, "pStart!=NULL");
    Triangle2* pT = pStart;
    const int intState = walkToTriangle(*pHandle, pT);
    return insertVertex(pHandle, pT, intState);
}

Triangle2* Dt2::insertVertex(Point2** pHandle, Triangle2* pT, int intState)
{
    switch (intState) {
    case WALK_INSIDE:
        return splitTriangle(*pHandle, pT);
    case WALK_ON_CORNER:
        for (int i = 0; i < 3; ++i) {
            if (*pT->getCorner(i) == **pHandle) {
                *pHandle = pT->getCorner(i);
                return pT;
            }
        }
        reportError("insertVertex()", "Proxy not found");
        std::exit(1);
    default:
        return insertOutsideHull(*pHandle, pT, intState);
    }
}

// One triangle becomes three. All of them have p at corner 0, so legalize() can start from them. A point on an edge
// makes one of them flat; p then lies strictly inside the circle of the neighbour across, and the first flip ends it.
//
//             c2
//            /|\                pT = (p, c0, c1), pT1 = (p, c1, c2), pT2 = (p, c2, c0)
//           / | \                                                                     .
//          /  p  \                                                                    .
//         / /   \ \                                                                   .
//       c0 ------- c1
Triangle2* Dt2::splitTriangle(Point2* pVtx, Triangle2* pT)
{
    Point2* const c0 = pT->getCorner(0);
    Point2* const c1 = pT->getCorner(1);
    Point2* const c2 = pT->getCorner(2);
    Triangle2* const n0 = pT->getOppositeTriangle(0);
    Triangle2* const n1 = pT->getOppositeTriangle(1);
    Triangle2* const n2 = pT->getOppositeTriangle(2);
    Triangle2* const pT1 = takeTriangle(pVtx, c1, c2);
    Triangle2* const pT2 = takeTriangle(pVtx, c2, c0);
    const auto relink = [pT](Triangle2* pOuter, Triangle2* pNew) {
        const int i = indexOf(pOuter, pT);
        prefetch(pOuter->getCorner(i));
        pOuter->setOppTriangle(i, pNew);
    };
    if (n0)
        relink(n0, pT1);
    if (n1)
        relink(n1, pT2);
    if (n2)
        prefetch(n2->getCorner(indexOf(n2, pT)));
    pT->setProperties(pVtx, c0, c1);
    setNeighbors(pT, n2, pT1, pT2);
    setNeighbors(pT1, n0, pT2, pT);
    setNeighbors(pT2, n1, pT, pT1);
    for (Triangle2* pNew : {pT, pT1, pT2})
        if (pNew->getOppositeTriangle(0))
            vFlipCurrent.push_back(pNew);
    legalize();
    return pVtx->getIncidentTriangle();
}

// Connects a vertex beyond hull edge ith of pT with every hull edge that it sees.
Triangle2* Dt2::insertOutsideHull(Point2* pVtx, Triangle2* pT, int ith)
{
    collectVisibleHullEdges(pVtx, pT, ith);
    updateHullNeighbors(pVtx);
    Triangle2* pPrevious = nullptr;
    for (const HullEdge& edge : vVisibleHullEdges) {
        Point2* const pA = edge.pT->getCorner(next(edge.ith));
        Point2* const pB = edge.pT->getCorner(prev(edge.ith));
        Triangle2* const pNew = takeTriangle(pVtx, pB, pA);
        setNeighbors(pNew, edge.pT, pPrevious, nullptr);
        edge.pT->setOppTriangle(edge.ith, pNew);
        if (pPrevious)
            pPrevious->setOppTriangle(2, pNew);
        pPrevious = pNew;
        vFlipCurrent.push_back(pNew);
    }
    QUOR2D_ASSERT(pPrevious != nullptr, "pT!=NULL");
    legalize();
    return pVtx->getIncidentTriangle();
}

// Fills vVisibleHullEdges, counterclockwise along the hull. Hull edges on whose line the vertex lies are left out,
// but for the first one.
void Dt2::collectVisibleHullEdges(const Point2* pVtx, Triangle2* pT, int ith)
{
    vVisibleHullEdges.assign(1, HullEdge{pT, ith});
    if (predicates.getOrientation2(pT, ith, pVtx) == ORI2_ZERO)
        return; // strictly inside this edge: no other hull edge can be seen
    // Both loops end at the latest where the vertex sees the hull from the other side.
    for (HullEdge edge{pT, ith}; findPrevVisibleHullEdge(pVtx, edge);)
        vVisibleHullEdges.push_back(edge);
    std::reverse(vVisibleHullEdges.begin(), vVisibleHullEdges.end());
    for (HullEdge edge{pT, ith}; findNextVisibleHullEdge(pVtx, edge);)
        vVisibleHullEdges.push_back(edge);
}

// Moves from a hull edge (a, b) to the hull edge (b, c).
// @return whether the vertex sees it; edge is unchanged otherwise
bool Dt2::findNextVisibleHullEdge(const Point2* pVtx, HullEdge& edge)
{
    Point2* const pB = edge.pT->getCorner(prev(edge.ith));
    Triangle2* pT = edge.pT;
    int ith = pT->getIntraTriangleIndex(pB);
    int turned = 0;
    // Clockwise around b; ends at the hull.
    while (Triangle2* pNext = pT->getOppositeTriangle(prev(ith))) {
        if (++turned == kLongFan) {
            const auto it = mLongFans.find(pB);
            if (it != mLongFans.end() && it->second.pNext &&
                predicates.getOrientation2(pB, it->second.pNext, pVtx) != ORI2_NEGATIVE)
                return false;
        }
        pT = pNext;
        ith = pT->getIntraTriangleIndex(pB);
    }
    if (turned >= kLongFan)
        mLongFans[pB].pNext = pT->getCorner(next(ith));
    if (predicates.getOrientation2(pT, prev(ith), pVtx) != ORI2_NEGATIVE)
        return false;
    edge = HullEdge{pT, prev(ith)};
    return true;
}

// Moves from a hull edge (a, b) to the hull edge (z, a). The mirror image of findNextVisibleHullEdge().
bool Dt2::findPrevVisibleHullEdge(const Point2* pVtx, HullEdge& edge)
{
    Point2* const pA = edge.pT->getCorner(next(edge.ith));
    Triangle2* pT = edge.pT;
    int ith = pT->getIntraTriangleIndex(pA);
    int turned = 0;
    while (Triangle2* pNext = pT->getOppositeTriangle(next(ith))) {
        if (++turned == kLongFan) {
            const auto it = mLongFans.find(pA);
            if (it != mLongFans.end() && it->second.pPrev &&
                predicates.getOrientation2(it->second.pPrev, pA, pVtx) != ORI2_NEGATIVE)
                return false;
        }
        pT = pNext;
        ith = pT->getIntraTriangleIndex(pA);
    }
    if (turned >= kLongFan)
        mLongFans[pA].pPrev = pT->getCorner(prev(ith));
    if (predicates.getOrientation2(pT, next(ith), pVtx) != ORI2_NEGATIVE)
        return false;
    edge = HullEdge{pT, next(ith)};
    return true;
}

// The vertex replaces everything between the ends of the visible hull edges.
void Dt2::updateHullNeighbors(Point2* pVtx)
{
    if (mLongFans.empty())
        return;
    for (std::size_t i = 1; i < vVisibleHullEdges.size(); ++i)
        mLongFans.erase(vVisibleHullEdges[i].pT->getCorner(next(vVisibleHullEdges[i].ith)));
    const HullEdge& firstEdge = vVisibleHullEdges.front();
    const HullEdge& lastEdge = vVisibleHullEdges.back();
    const auto itFirst = mLongFans.find(firstEdge.pT->getCorner(next(firstEdge.ith)));
    if (itFirst != mLongFans.end())
        itFirst->second.pNext = pVtx;
    const auto itLast = mLongFans.find(lastEdge.pT->getCorner(prev(lastEdge.ith)));
    if (itLast != mLongFans.end())
        itLast->second.pPrev = pVtx;
}

// ---- flips

// Restores the empty circles around the newest vertex p by edge flips (Lawson 1977), level by level.
// Invariant: every listed triangle has p at corner 0, so only its edge 0 can be illegal.
// Ends: each flip raises the degree of p, and p is joined to a vertex at most once.
template <bool bWithConstraints>
void Dt2::legalizeWith()
{
    while (!vFlipCurrent.empty()) {
        for (Triangle2* pT : vFlipCurrent) {
            Triangle2* pOpp = pT->getOppositeTriangle(0);
            if (!pOpp || !predicates.circleInc(pOpp, pT->getCorner(0)))
                continue;
            if (bWithConstraints && mayBeConstraint(pT, 0) && isKeptByConstraint(pT))
                continue;
            flipEdge(pT, 0);
            vFlipNext.push_back(pT);
            vFlipNext.push_back(pOpp);
        }
        vFlipCurrent.clear();
        vFlipCurrent.swap(vFlipNext);
    }
}

void Dt2::legalize()
{
    if (!bHasConstraints) {
        legalizeWith<false>();
        return;
    }
    if (vFlipCurrent.empty())
        return;
    Point2* const pVtx = vFlipCurrent.front()->getCorner(0);
    legalizeWith<true>();
    if (pSegmentUnderVertex)
        splitSegmentUnder(pVtx);
}

//        b                    b
//      / | \                /   \        pT = (p,a,b), pOpp across its edge a-b;
//     p T|O q    flip ->   p --- q       afterwards pT = (p,a,q) and pOpp = (p,q,b)
//      \ | /                \   /
//        a                    a
void Dt2::flipEdge(Triangle2* pT, int ith)
{
    Triangle2* const pOpp = pT->getOppositeTriangle(ith);
    const int j = indexOf(pOpp, pT);
    Point2* const p = pT->getCorner(ith);
    Point2* const a = pT->getCorner(next(ith));
    Point2* const b = pT->getCorner(prev(ith));
    Point2* const q = pOpp->getCorner(j);
    Triangle2* const pAcrossBP = pT->getOppositeTriangle(next(ith));
    Triangle2* const pAcrossPA = pT->getOppositeTriangle(prev(ith));
    Triangle2* const pAcrossAQ = pOpp->getOppositeTriangle(next(j));
    Triangle2* const pAcrossQB = pOpp->getOppositeTriangle(prev(j));
    prefetchWhole(pAcrossQB);
    if (pAcrossBP)
        pAcrossBP->setOppTriangle(indexOf(pAcrossBP, pT), pOpp);
    if (pAcrossAQ) {
        const int k = indexOf(pAcrossAQ, pOpp);
        prefetch(pAcrossAQ->getCorner(k));
        pAcrossAQ->setOppTriangle(k, pT);
    }
    setCorners(pT, p, a, q);
    setNeighbors(pT, pAcrossAQ, pOpp, pAcrossPA);
    setCorners(pOpp, p, q, b);
    setNeighbors(pOpp, pAcrossQB, pAcrossBP, pT);
    p->setIncidentTriangle(pT);
    a->setIncidentTriangle(pT);
    q->setIncidentTriangle(pT);
    b->setIncidentTriangle(pOpp);
}

Triangle2* Dt2::createTriangle(Point2* pA, Point2* pB, Point2* pC)
{
    if (predicates.getOrientation2(pA, pB, pC) == ORI2_NEGATIVE) {
        reportError("Dt2::createTriangle()", " ORI2_NEGATIVE ORIENTATION OF: ");
        std::cout << *pA << std::endl << *pB << std::endl << *pC << std::endl;
        std::exit(1);
    }
    return takeTriangle(pA, pB, pC);
}

} // namespace ZELK_QUOR2D
