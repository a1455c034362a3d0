#pragma once

#include "Quor_2D.h"
#include "benchmarks/Measure.h"

#include <memory>
#include <utility>

namespace bench
{

inline std::vector<ZELK_QUOR2D::Point2> toPoints(const std::vector<double>& vCoordinates)
{
    std::vector<ZELK_QUOR2D::Point2> vPoints;
    vPoints.reserve(vCoordinates.size() / 2);
    for (std::size_t i = 0; i + 1 < vCoordinates.size(); i += 2)
        vPoints.emplace_back(vCoordinates[i], vCoordinates[i + 1]);
    return vPoints;
}

/// Batch insertion into an empty triangulation, without a hint at the number of points. The result is the number of
/// triangles.
inline Cost measureBatchInsertion(const std::vector<double>& vCoordinates)
{
    return measure([&] { return toPoints(vCoordinates); },
                   [](const std::vector<ZELK_QUOR2D::Point2>& vPoints) {
                       auto pDt = std::make_unique<ZELK_QUOR2D::Quor_2D>();
                       pDt->insert(vPoints);
                       return pDt;
                   },
                   [](const std::unique_ptr<ZELK_QUOR2D::Quor_2D>& pDt) { return pDt->numberOfTriangles(); });
}

/// The same, with the vertex of every point handed out.
inline Cost measureBatchWithHandles(const std::vector<double>& vCoordinates)
{
    using Result = std::pair<std::unique_ptr<ZELK_QUOR2D::Quor_2D>, std::vector<ZELK_QUOR2D::Point2*>>;
    return measure([&] { return toPoints(vCoordinates); },
                   [](const std::vector<ZELK_QUOR2D::Point2>& vPoints) {
                       Result result;
                       result.first = std::make_unique<ZELK_QUOR2D::Quor_2D>();
                       result.first->insert(vPoints, result.second);
                       return result;
                   },
                   [](const Result& result) { return result.first->numberOfTriangles(); });
}

} // namespace bench
