// Delaunay refinement (Ruppert 1995; Chew 1993; Shewchuk 2002): triangles that miss the bounds get their circumcentre
// as a new vertex, or, where a constraint is in the way, the constraint is split at its midpoint.
#include "core/Dt2.h"

#include "ConstraintSegment2.h"
#include "Zone2.h"
#include "core/IncidentTriangles.h"
#include "output/Message.h"
#include "refine/CandidateQueue.h"
#include "refine/RefineCandidate.h"
#include "refine/RefineParams.h"
#include "refine/RefineZone.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace ZELK_QUOR2D
{

namespace
{

constexpr int kMaxCycles = 100;
constexpr int kMaxIdleCycles = 2;

// All passes of one call together; runs that converge need up to 65.
constexpr std::size_t kMaxPasses = 1000;

// Where the bounds cannot be met refinement stops at edges of this part of the smallest altitude it began with.
constexpr double kFloorFraction = 0.01;

double smallestAltitude(const std::vector<Triangle2*>& vTriangles)
{
    double smallest = std::numeric_limits<double>::max();
    for (const Triangle2* pT : vTriangles)
        if (!isRoundingGap(*pT))
            smallest = std::min(smallest, heightOf(*pT));
    return smallest < std::numeric_limits<double>::max() ? smallest : 0.0;
}

void setEdgeFloor(RefineParams& params, const std::vector<Triangle2*>& vTriangles)
{
    if (params.startAltitude < 0.0)
        params.startAltitude = smallestAltitude(vTriangles);
    params.edgeFloor = std::max(params.minEdgeLength, kFloorFraction * params.startAltitude);
}

void reportEmptyZone()
{
    reportWarning("uniformRefinement(..)", "pZone is empty, invalid operation, return");
}

} // namespace

// ---- one call

void Dt2::refine(RefineParams* pRefineParams)
{
    if (!pRefineParams->pZone) {
        reportWarning("Dt2::refine(..)", "Zone==NULL, nothing to do");
        return;
    }
    QUOR2D_ASSERT(pRefineParams->minAngleDegree <= 30.0, "refineParams.minAngleDegree<=30.0");
    QUOR2D_ASSERT(pRefineParams->pZone != nullptr, "refineParams.pZone!=NULL");
    if (!hasZone(pRefineParams->pZone)) {
        reportWarning("Dt2::refine(..)", "the zone does not belong to this triangulation, nothing to do");
        return;
    }
    applyConstraintsAndZones();
    if (!fullDimensional || !hasTriangles()) {
        reportEmptyZone();
        return;
    }
    // The floor is that of the input. To measure it in a mesh that is refined already would make it lower each time.
    LastRefinement& last = mLastRefinements[pRefineParams->pZone];
    if (last.numVertices == vertexVault.size())
        pRefineParams->startAltitude = last.startAltitude;
    RefineZone zoneTriangles(*this, *pRefineParams);
    runRefinement(zoneTriangles, pRefineParams);
    vertexVault.updateSortedIndex(false);
    last = LastRefinement{pRefineParams->minEdgeLength, pRefineParams->bAllowConstraintSplitting,
                          pRefineParams->startAltitude, vertexVault.size()};
}

void Dt2::refineSpecificTriangles(const std::vector<Triangle2*>& vTriangles, bool bAllowConstraintSplitting)
{
    applyConstraintsAndZones();
    if (!fullDimensional || !hasTriangles())
        return;
    RefineParams params(this, bAllowConstraintSplitting);
    RefineZone zoneTriangles(*this, params);
    zoneTriangles.bGrows = true;
    std::vector<Triangle2*> vAlive;
    for (Triangle2* pT : vTriangles)
        if (pT && trianglePool.contains(pT) && pT->getCorner(0))
            vAlive.push_back(pT);
    zoneTriangles.assign(vAlive);
    setEdgeFloor(params, vAlive);
    const std::size_t firstNew = vertexVault.vIdxVtxAct.size();
    runRefinement(zoneTriangles, &params);
    vertexVault.finishBatch(firstNew);
}

// Ends: the passes are counted, and every pass works on a list made before it.
void Dt2::runRefinement(RefineZone& zoneTriangles, RefineParams* pRefineParams)
{
    pRefineZone = &zoneTriangles;
    bLockConformingEdges = true;
    std::vector<Triangle2*> vTriangles;
    int numIdle = 0;
    for (int cycle = 0; cycle < kMaxCycles && numIdle < kMaxIdleCycles; ++cycle) {
        if (!zoneTriangles.bGrows) {
            pRefineParams->pZone->getTriangles(vTriangles);
            if (vTriangles.empty()) {
                reportEmptyZone();
                break;
            }
            zoneTriangles.assign(vTriangles);
            if (cycle == 0)
                setEdgeFloor(*pRefineParams, vTriangles);
        }
        const bool bProductive = refineCycle(zoneTriangles, pRefineParams);
        // As long as every piece became an edge when its segment was split, all constraints are edges still, and the
        // next cycles would find what the last pass found.
        if (!zoneTriangles.bUncertain)
            break;
        zoneTriangles.bUncertain = false;
        applyConstraintsAndZones();
        numIdle = bProductive ? 0 : numIdle + 1;
    }
    bLockConformingEdges = false;
    pRefineZone = nullptr;
    for (Point2* pVtx : vSteinerVertices)
        pVtx->marks &= ~static_cast<unsigned int>(VM_REFINEMENT);
    vSteinerVertices.clear();
}

// Passes until one inserts nothing. @return whether any pass did
bool Dt2::refineCycle(RefineZone& zoneTriangles, const RefineParams* pRefineParams)
{
    bool bProductive = false;
    std::vector<OpenTriangle*> vCandidates;
    while (zoneTriangles.numPasses++ < kMaxPasses) {
        uniformRefinement(zoneTriangles, vCandidates);
        const std::size_t numInserted = refineTriangles(zoneTriangles, vCandidates, pRefineParams);
        if (!evenOutCorners(zoneTriangles, pRefineParams) && numInserted == 0 &&
            !splitIllegalPieces(zoneTriangles, pRefineParams))
            break;
        bProductive = true;
        if (zoneTriangles.bUncertain && !zoneTriangles.bGrows)
            break;
    }
    return bProductive;
}

// ---- a pass

// Triangles are tested when they enter the zone, so a pass begins with those that failed then, or were kept.
void Dt2::uniformRefinement(RefineZone& zoneTriangles, std::vector<OpenTriangle*>& vCandidates)
{
    zoneTriangles.takeOpen(vCandidates);
}

std::size_t Dt2::refineTriangles(RefineZone& zoneTriangles, const std::vector<OpenTriangle*>& vCandidates,
                                 const RefineParams* pRefineParams)
{
    std::size_t numInserted = 0;
    CandidateQueue queue(*this, vCandidates);
    while (OpenTriangle* const pOpen = queue.takeNext()) {
        OpenTriangle& open = *pOpen;
        if (!RefineZone::takeTurn(open))
            continue;
        RefineCandidate candidate(this, open.pTriangle);
        if (!candidate.missesBounds(*pRefineParams))
            continue;
        const bool bRefinable = candidate.isRefinable(*pRefineParams);
        open.pSparedCorner = candidate.pSparedCorner;
        if (bRefinable && refineCandidate(zoneTriangles, candidate, pRefineParams))
            ++numInserted;
        zoneTriangles.keepOpen(open);
    }
    return numInserted;
}

// @return whether a vertex was inserted
bool Dt2::refineCandidate(RefineZone& zoneTriangles, const RefineCandidate& candidate,
                          const RefineParams* pRefineParams)
{
    switch (candidate.splitIndex) {
    case RefineCandidate::SPLIT_NONE:
        return insertCircumcenter(zoneTriangles, candidate);
    case 0:
    case 1:
    case 2:
        return splitConstraint(zoneTriangles, candidate, pRefineParams);
    default:
        return false;
    }
}

bool Dt2::insertCircumcenter(RefineZone& zoneTriangles, const RefineCandidate& candidate)
{
    const Point2& center = candidate.steinerPoint;
    Point2* pVtx = newVertex(center.x(), center.y());
    pVtx->marks |= VM_REFINEMENT;
    vSteinerVertices.push_back(pVtx);
    insertVertex(&pVtx, candidate.pContainingT, WALK_INSIDE);
    for (IncidentTriangles around(pVtx); !around.atEnd(); around.advance())
        zoneTriangles.set(around.triangle(), true);
    return true;
}

} // namespace ZELK_QUOR2D
