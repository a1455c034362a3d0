#pragma once

#include "Quor_2D.h"
#include "benchmarks/Measure.h"

#include <cmath>
#include <memory>
#include <utility>

namespace bench
{

/// Points to insert and, by the coordinates of their ends, the segments to force in.
struct ConstraintJob {
    std::vector<double> vCoordinates; // x0, y0, x1, y1, ...
    std::vector<double> vSegmentEnds; // four numbers for each segment
    std::size_t numPoints() const { return vCoordinates.size() / 2; }
    std::size_t numSegments() const { return vSegmentEnds.size() / 4; }
};

/// A star-shaped polygon of n vertices with radii between 0.7 and 1.3, and n points inside.
inline ConstraintJob starPolygonJob(std::size_t n)
{
    const double pi = 3.14159265358979323846;
    const std::vector<double> vRandom = uniformCoordinates(2 * n);
    ConstraintJob job;
    for (std::size_t i = 0; i < n; ++i) {
        const double radius = 0.69 * std::sqrt(vRandom[2 * i]), angle = 2.0 * pi * vRandom[2 * i + 1];
        job.vCoordinates.insert(job.vCoordinates.end(), {radius * std::cos(angle), radius * std::sin(angle)});
    }
    const auto addVertex = [&](std::size_t i) {
        const double radius = 1.0 + 0.3 * (2.0 * vRandom[2 * n + i] - 1.0);
        const double angle = 2.0 * pi * static_cast<double>(i) / static_cast<double>(n);
        job.vSegmentEnds.insert(job.vSegmentEnds.end(), {radius * std::cos(angle), radius * std::sin(angle)});
    };
    for (std::size_t i = 0; i < n; ++i) {
        addVertex(i);
        addVertex((i + 1) % n);
    }
    return job;
}

/// Uniform points, and nearly horizontal segments across all of them that do not cross.
inline ConstraintJob longSegmentsJob(std::size_t numPoints, std::size_t numSegments)
{
    ConstraintJob job;
    job.vCoordinates = uniformCoordinates(numPoints + numSegments);
    const auto height = [&](std::size_t i, double u) {
        return (static_cast<double>(i) + 0.25 + 0.5 * u) / static_cast<double>(numSegments);
    };
    for (std::size_t i = 0; i < numSegments; ++i) {
        const double u0 = job.vCoordinates[2 * (numPoints + i)], u1 = job.vCoordinates[2 * (numPoints + i) + 1];
        job.vSegmentEnds.insert(job.vSegmentEnds.end(), {0.0, height(i, u0), 1.0, height(i, u1)});
    }
    job.vCoordinates.resize(2 * numPoints);
    return job;
}

/// The points in one batch, all segments in one graph, applied. The result is the number of triangles.
inline Cost measureConstraints(const ConstraintJob& job)
{
    using namespace ZELK_QUOR2D;
    using Input = std::pair<std::vector<Point2>, std::vector<Segment2>>;
    return measure(
        [&job] {
            Input input;
            for (std::size_t i = 0; i < job.vCoordinates.size(); i += 2)
                input.first.emplace_back(job.vCoordinates[i], job.vCoordinates[i + 1]);
            for (std::size_t i = 0; i < job.vSegmentEnds.size(); i += 4)
                input.second.emplace_back(Point2(job.vSegmentEnds[i], job.vSegmentEnds[i + 1]),
                                          Point2(job.vSegmentEnds[i + 2], job.vSegmentEnds[i + 3]));
            return input;
        },
        [](const Input& input) {
            auto pDt = std::make_unique<Quor_2D>();
            pDt->insert(input.first);
            pDt->createConstraint(input.second, CIS_CONSTRAINED_DELAUNAY);
            pDt->applyConstraintsAndZones();
            return pDt;
        },
        [](const std::unique_ptr<Quor_2D>& pDt) { return pDt->numberOfTriangles(); });
}

} // namespace bench
