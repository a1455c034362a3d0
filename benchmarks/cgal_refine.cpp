// Is refinement faster than CGAL's (Delaunay_mesher_2, Delaunay_mesh_size_criteria_2, Epick kernel), and how many
// triangles do both make for the same bounds? Both run in turn, each run in a process of its own.
// Usage: cgal_refine [rounds]
#include "benchmarks/Comparison.h"
#include "benchmarks/RefineJobs.h"

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Delaunay_mesh_face_base_2.h>
#include <CGAL/Delaunay_mesh_size_criteria_2.h>
#include <CGAL/Delaunay_mesh_vertex_base_2.h>
#include <CGAL/Delaunay_mesher_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>

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

void compare(bench::Comparison& comparison, const std::string& region, const bench::RefineJob& job)
{
    comparison.perTriangle(
        "refinement: " + region + ", " + std::to_string(static_cast<int>(job.angleDegree)) + " degrees", 0.20,
        [&] { return bench::measureRefinement(job); }, [&] { return measureCgal(job); });
}

} // namespace

int main(int argc, char** argv)
{
    bench::Comparison comparison(argc, argv);
    const auto vStar = bench::starPolygon(2000);
    for (const double angle : {20.0, 27.0, 30.0}) {
        compare(comparison, "unit square", {bench::unitSquare(), angle, 0.0032});
        compare(comparison, "star of 2,000 corners", {vStar, angle, 0.0065});
        compare(comparison, "the star without edge bound", {vStar, angle, std::numeric_limits<double>::infinity()});
    }
    return comparison.status();
}
