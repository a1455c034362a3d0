// Are constraints forced in faster than by CGAL (Constrained_Delaunay_triangulation_2, Epick kernel, crossings
// allowed)? Both run in turn, each run in a process of its own. Usage: cgal_constraints [rounds]
#include "benchmarks/Comparison.h"
#include "benchmarks/ConstraintJobs.h"

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>

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

void compare(bench::Comparison& comparison, const char* title, double target, const bench::ConstraintJob& job)
{
    comparison.sameResult(
        title, target, job.numPoints(), [&] { return bench::measureConstraints(job); },
        [&] { return measureCgal(job); });
}

} // namespace

int main(int argc, char** argv)
{
    bench::Comparison comparison(argc, argv);
    compare(comparison, "constraints: polygon of 100k corners, 100k points inside", 0.85,
            bench::starPolygonJob(100000));
    compare(comparison, "constraints: 2,000 long segments among 200k points", 0.80,
            bench::longSegmentsJob(200000, 2000));
    return comparison.status();
}
