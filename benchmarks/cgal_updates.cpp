// Are points located, inserted one by one and removed faster than by CGAL (Delaunay_triangulation_2, with
// Triangulation_hierarchy_2 for location and insertion, Epick kernel)? Usage: cgal_updates [rounds]
#include "benchmarks/Comparison.h"
#include "benchmarks/QuorInsert.h"

#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Triangulation_hierarchy_2.h>
#include <CGAL/Triangulation_hierarchy_vertex_base_2.h>

namespace
{

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using CgalPoint = Kernel::Point_2;
using CgalFlat = CGAL::Delaunay_triangulation_2<Kernel>;
using CgalStructure = CGAL::Triangulation_data_structure_2<
    CGAL::Triangulation_hierarchy_vertex_base_2<CGAL::Triangulation_vertex_base_2<Kernel>>>;
using CgalHierarchy = CGAL::Triangulation_hierarchy_2<CGAL::Delaunay_triangulation_2<Kernel, CgalStructure>>;
using ZELK_QUOR2D::Point2;
using ZELK_QUOR2D::Quor_2D;

std::vector<CgalPoint> toCgalPoints(const std::vector<double>& vCoordinates)
{
    std::vector<CgalPoint> vPoints;
    for (std::size_t i = 0; i + 1 < vCoordinates.size(); i += 2)
        vPoints.emplace_back(vCoordinates[i], vCoordinates[i + 1]);
    return vPoints;
}

// Other points than those of the triangulation.
std::vector<double> queryCoordinates(std::size_t n)
{
    std::mt19937_64 random(4711);
    std::vector<double> vCoordinates(2 * n);
    for (double& c : vCoordinates)
        c = static_cast<double>(random() >> 11) * 0x1p-53;
    return vCoordinates;
}

// A triangulation, and what is asked of it.
template <class Triangulation, class Question>
struct Prepared {
    std::shared_ptr<Triangulation> pDt;
    std::vector<Question> vQuestions;
};

void compareLocation(bench::Comparison& comparison, const std::vector<double>& vCoordinates,
                     const std::vector<double>& vQueries)
{
    const auto ours = [&] {
        using Input = Prepared<Quor_2D, Point2>;
        return bench::measure(
            [&] {
                Input input{std::make_shared<Quor_2D>(), bench::toPoints(vQueries)};
                input.pDt->insert(bench::toPoints(vCoordinates));
                return input;
            },
            [](const Input& input) {
                std::size_t numInside = 0;
                for (const Point2& p : input.vQuestions)
                    numInside += input.pDt->locate(p) ? 1 : 0;
                return numInside;
            },
            [](std::size_t numInside) { return numInside; });
    };
    const auto theirs = [&] {
        using Input = Prepared<CgalHierarchy, CgalPoint>;
        return bench::measure(
            [&] {
                Input input{std::make_shared<CgalHierarchy>(), toCgalPoints(vQueries)};
                const std::vector<CgalPoint> vPoints = toCgalPoints(vCoordinates);
                input.pDt->insert(vPoints.begin(), vPoints.end());
                return input;
            },
            [](const Input& input) {
                std::size_t numInside = 0;
                for (const CgalPoint& p : input.vQuestions)
                    numInside += input.pDt->is_infinite(input.pDt->locate(p)) ? 0 : 1;
                return numInside;
            },
            [](std::size_t numInside) { return numInside; });
    };
    comparison.sameResult("location: 1M queries in uniform 1M", 0.60, vQueries.size() / 2, ours, theirs);
}

void compareInsertion(bench::Comparison& comparison, const std::vector<double>& vCoordinates)
{
    const auto ours = [&] {
        return bench::measure([&] { return bench::toPoints(vCoordinates); },
                              [](const std::vector<Point2>& vPoints) {
                                  auto pDt = std::make_shared<Quor_2D>();
                                  for (const Point2& p : vPoints)
                                      pDt->insert(p);
                                  return pDt;
                              },
                              [](const std::shared_ptr<Quor_2D>& pDt) { return pDt->numberOfTriangles(); });
    };
    const auto theirs = [&] {
        return bench::measure([&] { return toCgalPoints(vCoordinates); },
                              [](const std::vector<CgalPoint>& vPoints) {
                                  auto pDt = std::make_shared<CgalHierarchy>();
                                  for (const CgalPoint& p : vPoints)
                                      pDt->insert(p);
                                  return pDt;
                              },
                              [](const std::shared_ptr<CgalHierarchy>& pDt) { return pDt->number_of_faces(); });
    };
    comparison.sameResult("one by one: uniform, 1M", 0.50, vCoordinates.size() / 2, ours, theirs);
}

// The same places in both: the vertices of a tenth of the input, in random order.
void compareRemoval(bench::Comparison& comparison, const std::vector<double>& vCoordinates)
{
    std::vector<std::size_t> vChosen(vCoordinates.size() / 2);
    for (std::size_t i = 0; i < vChosen.size(); ++i)
        vChosen[i] = i;
    std::shuffle(vChosen.begin(), vChosen.end(), std::mt19937_64(7));
    vChosen.resize(vChosen.size() / 10);
    const auto ours = [&] {
        using Input = Prepared<Quor_2D, Point2*>;
        return bench::measure(
            [&] {
                Input input{std::make_shared<Quor_2D>(), {}};
                std::vector<Point2*> vHandles;
                input.pDt->insert(bench::toPoints(vCoordinates), vHandles);
                for (const std::size_t i : vChosen)
                    input.vQuestions.push_back(vHandles[i]);
                return input;
            },
            [](const Input& input) {
                for (Point2* pVtx : input.vQuestions)
                    input.pDt->remove(pVtx);
                return input.pDt;
            },
            [](const std::shared_ptr<Quor_2D>& pDt) { return pDt->numberOfTriangles(); });
    };
    const auto theirs = [&] {
        using Input = Prepared<CgalFlat, CgalFlat::Vertex_handle>;
        return bench::measure(
            [&] {
                const std::vector<CgalPoint> vPoints = toCgalPoints(vCoordinates);
                Input input{std::make_shared<CgalFlat>(vPoints.begin(), vPoints.end()), {}};
                for (const std::size_t i : vChosen)
                    input.vQuestions.push_back(input.pDt->nearest_vertex(vPoints[i]));
                return input;
            },
            [](const Input& input) {
                for (const CgalFlat::Vertex_handle& handle : input.vQuestions)
                    input.pDt->remove(handle);
                return input.pDt;
            },
            [](const std::shared_ptr<CgalFlat>& pDt) { return pDt->number_of_faces(); });
    };
    comparison.sameResult("removal: 100k random of 1M", 1.0, vChosen.size(), ours, theirs);
}

} // namespace

int main(int argc, char** argv)
{
    bench::Comparison comparison(argc, argv);
    const std::vector<double> vCoordinates = bench::uniformCoordinates(1000000);
    compareLocation(comparison, vCoordinates, queryCoordinates(1000000));
    compareInsertion(comparison, vCoordinates);
    compareRemoval(comparison, vCoordinates);
    return comparison.status();
}
