#include "tests/fuzz/MeshProgram.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace fuzz
{

using namespace ZELK_QUOR2D;

namespace
{

constexpr std::size_t kMaxZones = 24;
constexpr int kMaxRefinements = 3; // each makes up to some thousand triangles
constexpr unsigned int kMaxRefinedPoints = 150;

// A triangle on a border or constraint edge a million times as long as it is high. Where such edges may be split, good
// angles take so many triangles, and no lower length stops it.
bool isStrip(const Quor_2D& dt, Triangle2* pT)
{
    constexpr double kLongest = 1e6;
    const Point2 &a = *pT->getCorner(0), &b = *pT->getCorner(1), &c = *pT->getCorner(2);
    const double twiceArea = (b.x() - a.x()) * (c.y() - a.y()) - (b.y() - a.y()) * (c.x() - a.x());
    for (int i = 0; i < 3; ++i) {
        const Point2 &from = *pT->getCorner((i + 1) % 3), &to = *pT->getCorner((i + 2) % 3);
        const double length = std::hypot(to.x() - from.x(), to.y() - from.y());
        const bool bBorder = !pT->getOppositeTriangle(i) || dt.isConstraint(pT, i);
        if (bBorder && !(length <= kLongest * (twiceArea / length)))
            return true;
    }
    return false;
}

} // namespace

ZoneModel* MeshProgram::someZone()
{
    return vZones.empty() ? nullptr : &vZones[in.index(vZones.size())];
}

ConstraintGraph2* MeshProgram::someGraph()
{
    const auto& vGraphs = model.getGraphs();
    return vGraphs.empty() ? nullptr : vGraphs[in.index(vGraphs.size())];
}

void MeshProgram::keepZone(Zone2* pZone, const ZoneModel& zone)
{
    if (!pZone)
        return;
    vZones.push_back(zone);
    vZones.back().pZone = pZone;
}

// A graph with a location that needs none ends the process, on purpose.
void MeshProgram::createZone()
{
    if (vZones.size() >= kMaxZones)
        return;
    const int kind = in.below(3);
    ZoneModel zone(nullptr);
    zone.pGraph = kind == 0 ? nullptr : someGraph();
    const ZoneLocation location = kind == 0 ? ZL_GLOBAL : kind == 1 ? ZL_INSIDE : ZL_OUTSIDE;
    Zone2* const pZone = call([&] { return dt.createZone(zone.pGraph, location); });
    const bool bExpected = dt.numberOfTriangles() > 0 && (kind == 0 || (zone.pGraph && zone.pGraph->isPolygon()));
    require((pZone != nullptr) == bExpected, "a zone was made, or not made, against the rules");
    keepZone(pZone, zone);
}

void MeshProgram::createGrownZone()
{
    ZoneModel zone(nullptr);
    zone.pGraph = someGraph();
    zone.startPoint = points.read(in);
    if (vZones.size() < kMaxZones)
        keepZone(call([&] { return dt.createZone(zone.pGraph, ZL_GROW, zone.startPoint); }), zone);
}

void MeshProgram::combineZones()
{
    const int operation = in.below(4);
    ZoneModel* const p0 = someZone();
    ZoneModel* const p1 = someZone();
    if (!p0 || vZones.size() >= kMaxZones)
        return;
    using Combine = Zone2* (*)(Zone2*, Zone2*);
    static const Combine aCombine[] = {zoneUnion, zoneIntersection, zoneDifference, zoneSymmetricDifference};
    ZoneModel zone(nullptr);
    zone.pInput0 = p0->pZone;
    zone.pInput1 = p1->pZone;
    Zone2* const pZone = call([&] { return aCombine[operation](zone.pInput0, zone.pInput1); });
    require((pZone != nullptr) == (dt.numberOfTriangles() > 0), "a zone of two others");
    keepZone(pZone, zone);
}

// Inputs of other zones stay: they must outlive these.
void MeshProgram::deleteZone()
{
    ZoneModel* const pZone = someZone();
    if (!pZone)
        return;
    Zone2* const pLibraryZone = pZone->pZone;
    for (const ZoneModel& zone : vZones)
        if (zone.pInput0 == pLibraryZone || zone.pInput1 == pLibraryZone)
            return;
    vZones.erase(vZones.begin() + (pZone - vZones.data()));
    call([&] { dt.deleteZone(pLibraryZone); });
}

bool MeshProgram::isReady(const ZoneModel& zone) const
{
    if (!model.areConstraintsApplied())
        return false;
    for (const Zone2* pInput : {zone.pInput0, zone.pInput1})
        for (const ZoneModel& other : vZones)
            if (other.pZone == pInput && !isReady(other))
                return false;
    return zone.isReady(dt);
}

void MeshProgram::checkZones() const
{
    for (const ZoneModel& zone : vZones)
        if (isReady(zone))
            zone.check(dt);
}

// Bounds relative to the size of the mesh, so that the number of triangles stays small.
void MeshProgram::refine()
{
    const ZoneModel* const pZone = someZone();
    const double minAngle = in.below(33) - 1.0;
    const int divisor = in.below(10), halvings = in.below(20);
    const bool bAllowSplitting = in.below(2) == 1;
    if (!pZone || !isReady(*pZone) || numRefinements >= kMaxRefinements || dt.numberOfPoints() > kMaxRefinedPoints)
        return;
    ++numRefinements;
    const double extent = std::min(dt.computeBoundingBox().getMaxRange(), std::numeric_limits<double>::max());
    const double maxEdge = divisor == 0 ? std::numeric_limits<double>::infinity() : extent / divisor;
    const double minEdge = halvings == 0 ? 0.0 : std::ldexp(extent, -halvings);
    if (bTrace)
        std::fprintf(stderr, "zone %d, angle %g, edges %g to %g: ", pZone->pZone->getZoneLocation(), minAngle, minEdge,
                     maxEdge);
    trace("refine", {});
    call([&] { dt.refine(pZone->pZone, minAngle, minEdge, maxEdge, bAllowSplitting); });
    noteRefined(minAngle <= 30.0 && maxEdge > 0.0);
}

void MeshProgram::refineTriangles()
{
    const std::size_t stride = 1 + in.index(9);
    const bool bAllowSplitting = in.below(2) == 1;
    if (numRefinements >= kMaxRefinements || dt.numberOfPoints() > kMaxRefinedPoints)
        return;
    std::vector<Triangle2*> vAll, vTriangles;
    dt.getTrianglePointers(vAll);
    if (bAllowSplitting && std::any_of(vAll.begin(), vAll.end(), [this](Triangle2* pT) { return isStrip(dt, pT); }))
        return;
    ++numRefinements;
    for (std::size_t i = 0; i < vAll.size(); i += stride)
        vTriangles.insert(vTriangles.end(), {vAll[i], nullptr, vAll[i]});
    trace("refine triangles", {});
    call([&] { dt.refineSpecificTriangles(vTriangles, bAllowSplitting); });
    noteRefined(true);
}

void MeshProgram::noteRefined(bool bDone)
{
    trace("refined", {});
    model.adoptVertices();
    model.noteRefined();
    if (bDone)
        model.noteApplied(silence.count("giving up. Incorrect result!"));
}

} // namespace fuzz
