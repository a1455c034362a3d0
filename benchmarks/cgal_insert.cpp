// Is batch insertion of uniform points faster than CGAL's range insertion (Delaunay_triangulation_2, Epick kernel)?
// Both run in turn, each run in a process of its own. Usage: cgal_insert [rounds [points...]]
#include "benchmarks/QuorInsert.h"

#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/version.h>

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

bool compare(std::size_t numPoints, int rounds)
{
    const std::vector<double> vCoordinates = bench::uniformCoordinates(numPoints);
    bench::Series ours;
    bench::Series cgal;
    for (int round = 0; round < rounds; ++round) {
        ours.add(bench::measureBatchInsertion(vCoordinates));
        cgal.add(measureCgal(vCoordinates));
    }
    const auto n = static_cast<double>(numPoints);
    std::printf("%10zu  %8.3f s  %8.3f s  %6.3f  %10.1f  %10.1f\n", numPoints, ours.seconds(), cgal.seconds(),
                ours.seconds() / cgal.seconds(), ours.bytes() / n, cgal.bytes() / n);
    const bool bSame = ours.lastResult() == cgal.lastResult();
    if (!bSame)
        std::printf("the numbers of triangles differ: %.0f and %.0f\n", ours.lastResult(), cgal.lastResult());
    return bSame;
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    std::vector<std::size_t> vSizes;
    for (int i = 2; i < argc; ++i)
        vSizes.push_back(std::strtoull(argv[i], nullptr, 10));
    if (vSizes.empty())
        vSizes = {1000000, 4000000};

    std::printf("Batch insertion of uniform points, medians of %d rounds; CGAL %s; peak bytes per point\n", rounds,
                CGAL_VERSION_STR);
    std::printf("%10s  %10s  %10s  %6s  %10s  %10s\n", "points", "Quor2D", "CGAL", "ratio", "Quor2D B/pt", "CGAL B/pt");
    bool bSame = true;
    for (const std::size_t numPoints : vSizes)
        bSame = compare(numPoints, rounds) && bSame;
    return bSame ? EXIT_SUCCESS : EXIT_FAILURE;
}
