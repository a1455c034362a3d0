#pragma once

#include "Quor_2D.h"
#include "benchmarks/Measure.h"

#include <cmath>
#include <memory>
#include <utility>

namespace bench
{

/// A region to refine: a closed polygon, and the bounds.
struct RefineJob {
    std::vector<std::pair<double, double>> vOutline;
    double angleDegree;
    double maxEdge;
};

inline std::vector<std::pair<double, double>> unitSquare()
{
    return {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
}

/// n corners around the origin, radii 1 + 0.3 * (2u - 1): every second corner or so is a spike of about a degree.
inline std::vector<std::pair<double, double>> starPolygon(std::size_t n)
{
    std::mt19937_64 random(42);
    std::vector<std::pair<double, double>> vOutline;
    for (std::size_t i = 0; i < n; ++i) {
        const double angle = 2 * 3.14159265358979323846 * static_cast<double>(i) / static_cast<double>(n);
        const double radius = 1 + 0.3 * (2 * (static_cast<double>(random() >> 11) * 0x1p-53) - 1);
        vOutline.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
    }
    return vOutline;
}

struct QuorRegion {
    std::unique_ptr<ZELK_QUOR2D::Quor_2D> pDt;
    ZELK_QUOR2D::Zone2* pZone;
};

inline QuorRegion makeRegion(const RefineJob& job)
{
    using namespace ZELK_QUOR2D;
    std::vector<Segment2> vSegments;
    for (std::size_t i = 0; i < job.vOutline.size(); ++i) {
        const auto &a = job.vOutline[i], &b = job.vOutline[(i + 1) % job.vOutline.size()];
        vSegments.emplace_back(Point2(a.first, a.second), Point2(b.first, b.second));
    }
    QuorRegion region{std::make_unique<Quor_2D>(), nullptr};
    ConstraintGraph2* const pGraph = region.pDt->createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY);
    region.pDt->applyConstraintsAndZones();
    region.pZone = region.pDt->createZone(pGraph, ZL_INSIDE);
    return region;
}

/// Refinement alone. The result is the number of triangles in the region.
inline Cost measureRefinement(const RefineJob& job)
{
    using namespace ZELK_QUOR2D;
    return measure([&job] { return makeRegion(job); },
                   [&job](const QuorRegion& region) {
                       region.pDt->refine(region.pZone, job.angleDegree, 0, job.maxEdge, true);
                       return region.pZone;
                   },
                   [](const Zone2* pZone) {
                       std::vector<Triangle2*> vTriangles;
                       pZone->getTriangles(vTriangles);
                       return vTriangles.size();
                   });
}

} // namespace bench
