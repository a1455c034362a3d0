// Is batch insertion faster than CGAL's range insertion (Delaunay_triangulation_2, Epick kernel), on easy and on
// awkward input? And what do handles cost? Usage: cgal_insert [rounds]
#include "benchmarks/Comparison.h"
#include "benchmarks/PointInputs.h"
#include "benchmarks/QuorInsert.h"

#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>

namespace
{

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using CgalPoint = Kernel::Point_2;
using CgalTriangulation = CGAL::Delaunay_triangulation_2<Kernel>;

bench::Cost measureCgal(const std::vector<double>& vCoordinates)
{
    return bench::measure(
        [&] {
            std::vector<CgalPoint> vPoints;
            vPoints.reserve(vCoordinates.size() / 2);
            for (std::size_t i = 0; i + 1 < vCoordinates.size(); i += 2)
                vPoints.emplace_back(vCoordinates[i], vCoordinates[i + 1]);
            return vPoints;
        },
        [](const std::vector<CgalPoint>& vPoints) {
            auto pDt = std::make_unique<CgalTriangulation>();
            pDt->insert(vPoints.begin(), vPoints.end());
            return pDt;
        },
        [](const std::unique_ptr<CgalTriangulation>& pDt) { return pDt->number_of_faces(); });
}

void compare(bench::Comparison& comparison, const char* job, double target, const std::vector<double>& vCoordinates)
{
    comparison.sameResult(
        job, target, vCoordinates.size() / 2, [&] { return bench::measureBatchInsertion(vCoordinates); },
        [&] { return measureCgal(vCoordinates); });
}

} // namespace

int main(int argc, char** argv)
{
    bench::Comparison comparison(argc, argv);
    const std::vector<double> vUniform = bench::uniformCoordinates(1000000);
    compare(comparison, "batch: uniform, 1M", 0.55, vUniform);
    compare(comparison, "batch: uniform, 4M", 0.55, bench::uniformCoordinates(4000000));
    compare(comparison, "batch: grid, 1000 × 1000", 0.62, bench::gridCoordinates(1000));
    compare(comparison, "batch: 1000 clusters of 1000", 0.60, bench::clusterCoordinates(1000, 1000, 1e-3));
    compare(comparison, "batch: dense cluster, 1M", 0.70, bench::denseClusterCoordinates(1000000));
    compare(comparison, "batch: circle, 100k", 1.1, bench::circleCoordinates(100000));
    compare(comparison, "batch: parabola, 100k", 2.0, bench::parabolaCoordinates(100000));
    comparison.sameResult(
        "batch with handles, against without: uniform, 1M", 1.15, 1000000,
        [&] { return bench::measureBatchWithHandles(vUniform); },
        [&] { return bench::measureBatchInsertion(vUniform); });
    return comparison.status();
}
