// Are constraints forced in faster than by CGAL (Constrained_Delaunay_triangulation_2, Epick kernel, crossings
// allowed)? Both run in turn, each run in a process of its own. Usage: cgal_constraints [rounds]
#include "benchmarks/ConstraintJobs.h"

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/version.h>

namespace
{

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using CgalPoint = Kernel::Point_2;
using CgalTriangulation = CGAL::Constrained_Delaunay_triangulation_2<Kernel, CGAL::Default, CGAL::Exact_predicates_tag>;

bench::Cost measureCgal(const bench::ConstraintJob& job)
{
    struct Input {
        std::vector<CgalPoint> vPoints;
        std::vector<CgalPoint> vEnds;
        std::vector<std::pair<std::size_t, std::size_t>> vSegments;
    };
    return bench::measure(
        [&job] {
            Input input;
            for (std::size_t i = 0; i < job.vCoordinates.size(); i += 2)
                input.vPoints.emplace_back(job.vCoordinates[i], job.vCoordinates[i + 1]);
            for (std::size_t i = 0; i < job.vSegmentEnds.size(); i += 2)
                input.vEnds.emplace_back(job.vSegmentEnds[i], job.vSegmentEnds[i + 1]);
            for (std::size_t i = 0; i < input.vEnds.size(); i += 2)
                input.vSegments.emplace_back(i, i + 1);
            return input;
        },
        [](const Input& input) {
            auto pDt = std::make_unique<CgalTriangulation>();
            pDt->insert(input.vPoints.begin(), input.vPoints.end());
            pDt->insert_constraints(input.vEnds.begin(), input.vEnds.end(), input.vSegments.begin(),
                                    input.vSegments.end());
            return pDt;
        },
        [](const std::unique_ptr<CgalTriangulation>& pDt) { return pDt->number_of_faces(); });
}

bool compare(const char* title, int rounds, const bench::ConstraintJob& job)
{
    bench::Series ours;
    bench::Series cgal;
    for (int round = 0; round < rounds; ++round) {
        ours.add(bench::measureConstraints(job));
        cgal.add(measureCgal(job));
    }
    std::printf("%-20s  %8.3f s  %8.3f s  %6.3f\n", title, ours.seconds(), cgal.seconds(),
                ours.seconds() / cgal.seconds());
    const bool bSame = ours.lastResult() == cgal.lastResult();
    if (!bSame)
        std::printf("the numbers of triangles differ: %.0f and %.0f\n", ours.lastResult(), cgal.lastResult());
    return bSame;
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    std::printf("Constraints, medians of %d rounds; CGAL %s\n", rounds, CGAL_VERSION_STR);
    std::printf("%-20s  %10s  %10s  %6s\n", "", "Quor2D", "CGAL", "ratio");
    bool bSame = compare("star polygon", rounds, bench::starPolygonJob(100000));
    bSame = compare("long segments", rounds, bench::longSegmentsJob(200000, 2000)) && bSame;
    return bSame ? EXIT_SUCCESS : EXIT_FAILURE;
}
