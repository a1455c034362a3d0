// How does insertion grow with the number of points, and how does it fare on awkward input?
// Usage: insert [rounds]
#include "benchmarks/PointInputs.h"
#include "benchmarks/QuorInsert.h"

namespace
{

using ZELK_QUOR2D::Point2;
using ZELK_QUOR2D::Quor_2D;
using Points = std::vector<Point2>;

void report(const char* title, const bench::Series& series, std::size_t numPoints)
{
    const auto n = static_cast<double>(numPoints);
    std::printf("| %s | %zu | %.3f | %.3f | %.0f |\n", title, numPoints, series.seconds(), series.seconds() / n * 1e6,
                series.bytes() / n);
}

template <class Work>
void run(const char* title, int rounds, const Points& vPoints, Work work)
{
    bench::Series series;
    for (int round = 0; round < rounds; ++round)
        series.add(bench::measure([&] { return &vPoints; },
                                  [&](const Points* pPoints) {
                                      auto pDt = std::make_unique<Quor_2D>();
                                      work(*pDt, *pPoints);
                                      return pDt;
                                  },
                                  [](const std::unique_ptr<Quor_2D>& pDt) { return pDt->numberOfTriangles(); }));
    report(title, series, vPoints.size());
}

void insertBatch(Quor_2D& dt, const Points& vPoints)
{
    dt.insert(vPoints);
}

void insertOneByOne(Quor_2D& dt, const Points& vPoints)
{
    for (const Point2& p : vPoints)
        dt.insert(p);
}

Points withOutlier(Points vPoints)
{
    vPoints.emplace_back(1e9, 1e9);
    return vPoints;
}

Points lineAndApex(int n)
{
    Points vPoints;
    for (int i = 0; i < n; ++i)
        vPoints.emplace_back(i, 0);
    vPoints.emplace_back(0, 1);
    return vPoints;
}

Points apexAndLine(int n)
{
    Points vPoints{Point2(0, 1)};
    for (int i = 0; i < n; ++i)
        vPoints.emplace_back(i, 0);
    return vPoints;
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 3;
    for (const std::size_t n : {250000U, 1000000U, 4000000U})
        run("batch, uniform", rounds, bench::toPoints(bench::uniformCoordinates(n)), insertBatch);
    const Points vUniform = bench::toPoints(bench::uniformCoordinates(100000));
    run("batch, uniform and one far outlier", rounds, withOutlier(vUniform), insertBatch);
    run("batch, line and one point off it", rounds, lineAndApex(1000000), insertBatch);
    run("one by one, uniform", rounds, vUniform, insertOneByOne);
    run("one by one, grid row by row", rounds, bench::toPoints(bench::gridCoordinates(316)), insertOneByOne);
    run("one by one, line and then a point off it", rounds, lineAndApex(100000), insertOneByOne);
    run("one by one, apex and then a line", rounds, apexAndLine(100000), insertOneByOne);
    return EXIT_SUCCESS;
}
