// Is refinement faster than CGAL's (Delaunay_mesher_2, Delaunay_mesh_size_criteria_2, Epick kernel), and how many
// triangles do both make for the same bounds? Both run in turn, each run in a process of its own.
// Usage: cgal_refine [rounds]
#include "benchmarks/RefineJobs.h"

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Delaunay_mesh_face_base_2.h>
#include <CGAL/Delaunay_mesh_size_criteria_2.h>
#include <CGAL/Delaunay_mesh_vertex_base_2.h>
#include <CGAL/Delaunay_mesher_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/version.h>

#include <limits>

namespace
{

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Structure = CGAL::Triangulation_data_structure_2<CGAL::Delaunay_mesh_vertex_base_2<Kernel>,
                                                       CGAL::Delaunay_mesh_face_base_2<Kernel>>;
using CgalTriangulation = CGAL::Constrained_Delaunay_triangulation_2<Kernel, Structure>;
using Criteria = CGAL::Delaunay_mesh_size_criteria_2<CgalTriangulation>;

bench::Cost measureCgal(const bench::RefineJob& job)
{
    return bench::measure(
        [&job] {
            auto pDt = std::make_unique<CgalTriangulation>();
            for (std::size_t i = 0; i < job.vOutline.size(); ++i) {
                const auto &a = job.vOutline[i], &b = job.vOutline[(i + 1) % job.vOutline.size()];
                pDt->insert_constraint({a.first, a.second}, {b.first, b.second});
            }
            return pDt;
        },
        [&job](const std::unique_ptr<CgalTriangulation>& pDt) {
            const double sine = std::sin(job.angleDegree * 3.14159265358979323846 / 180);
            // An angle bound is a bound of sin(angle)^2 there; an edge length of 0 means no limit.
            const double maxEdge = job.maxEdge < std::numeric_limits<double>::infinity() ? job.maxEdge : 0;
            CGAL::refine_Delaunay_mesh_2(*pDt, Criteria(sine * sine, maxEdge));
            return pDt.get();
        },
        [](const CgalTriangulation* pDt) {
            std::size_t count = 0;
            for (auto face = pDt->finite_faces_begin(); face != pDt->finite_faces_end(); ++face)
                count += face->is_in_domain() ? 1 : 0;
            return count;
        });
}

void compare(const char* title, int rounds, const bench::RefineJob& job)
{
    bench::Series ours;
    bench::Series cgal;
    for (int round = 0; round < rounds; ++round) {
        ours.add(bench::measureRefinement(job));
        cgal.add(measureCgal(job));
    }
    const double perMillion = ours.seconds() / ours.lastResult() * 1e6;
    const double cgalPerMillion = cgal.seconds() / cgal.lastResult() * 1e6;
    std::printf("%-28s %4.0f  %8g  %8.0f  %8.0f  %6.2f  %8.3f s  %8.3f s  %6.3f  %6.3f\n", title, job.angleDegree,
                job.maxEdge, ours.lastResult(), cgal.lastResult(), ours.lastResult() / cgal.lastResult(), perMillion,
                cgalPerMillion, perMillion / cgalPerMillion, ours.seconds() / cgal.seconds());
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    std::printf("Refinement, medians of %d rounds; CGAL %s. Seconds per million triangles made.\n", rounds,
                CGAL_VERSION_STR);
    std::printf("%-28s %4s  %8s  %8s  %8s  %6s  %10s  %10s  %6s  %6s\n", "region", "deg", "edges to", "Quor2D", "CGAL",
                "ratio", "Quor2D s/M", "CGAL s/M", "per M", "total");
    for (const double angle : {20.0, 27.0, 30.0}) {
        compare("unit square", rounds, {bench::unitSquare(), angle, 0.0032});
        compare("star polygon, 200 corners", rounds, {bench::starPolygon(200), angle, 0.006});
        compare("star polygon, 2000 corners", rounds, {bench::starPolygon(2000), angle, 0.0065});
        compare("the same without edge bound", rounds,
                {bench::starPolygon(2000), angle, std::numeric_limits<double>::infinity()});
    }
    return EXIT_SUCCESS;
}
