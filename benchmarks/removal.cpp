// What does removing a vertex cost, compared with inserting one in a batch, and does a hub cost more than its degree?
// Usage: removal [rounds]
#include "benchmarks/QuorInsert.h"

#include <chrono>
#include <cmath>
#include <functional>
#include <iostream>
#include <iterator>
#include <random>

namespace
{

using ZELK_QUOR2D::Point2;
using ZELK_QUOR2D::Quor_2D;
using Points = std::vector<Point2>;

struct Triangulated {
    std::unique_ptr<Quor_2D> pDt;
    std::vector<Point2*> vVertices; // to be removed, in this order
};

// A random tenth of the vertices, in random order, or in the order in which they are kept: along the curve.
Triangulated prepareRandomVertices(const Points& vPoints, bool bInOrder)
{
    Triangulated input{std::make_unique<Quor_2D>(), {}};
    input.pDt->insert(vPoints);
    std::vector<Point2*> vAll;
    input.pDt->getVertexPointers(vAll);
    std::mt19937_64 random(7);
    if (!bInOrder)
        std::shuffle(vAll.begin(), vAll.end(), random);
    std::sample(vAll.begin(), vAll.end(), std::back_inserter(input.vVertices), vPoints.size() / 10, random);
    return input;
}

Triangulated prepareHub(const Points& vRing, const Point2& hub)
{
    Triangulated input{std::make_unique<Quor_2D>(), {}};
    input.pDt->insert(vRing);
    input.vVertices.push_back(input.pDt->insert(hub));
    return input;
}

double measureRemoval(int rounds, const std::function<Triangulated()>& prepare)
{
    bench::Series series;
    for (int round = 0; round < rounds; ++round)
        series.add(bench::measure([&] { return std::make_shared<Triangulated>(prepare()); },
                                  [](const std::shared_ptr<Triangulated>& pInput) {
                                      for (Point2* pVtx : pInput->vVertices)
                                          pInput->pDt->remove(pVtx);
                                      return pInput;
                                  },
                                  [](const std::shared_ptr<Triangulated>& pInput) {
                                      return pInput->pDt->checkValidity(true, "benchmark") ? 1 : 0;
                                  }));
    if (series.lastResult() != 1)
        std::printf("the mesh is not valid after the removal\n");
    return series.seconds();
}

void compareWithInsertion(const char* title, int rounds, const Points& vPoints)
{
    bench::Series insertion;
    for (int round = 0; round < rounds; ++round)
        insertion.add(bench::measure([&] { return &vPoints; },
                                     [](const Points* pPoints) {
                                         auto pDt = std::make_unique<Quor_2D>();
                                         pDt->insert(*pPoints);
                                         return pDt;
                                     },
                                     [](const std::unique_ptr<Quor_2D>& pDt) { return pDt->numberOfTriangles(); }));
    const double n = static_cast<double>(vPoints.size());
    const double inserted = insertion.seconds() / n;
    for (const bool bInOrder : {false, true}) {
        const double removed =
            measureRemoval(rounds, [&] { return prepareRandomVertices(vPoints, bInOrder); }) / (n / 10);
        std::printf("%-10s %8zu points  insertion %6.3f us  removal %6.3f us %-16s  ratio %5.2f\n", title,
                    vPoints.size(), inserted * 1e6, removed * 1e6, bInOrder ? "along the curve" : "in random order",
                    removed / inserted);
    }
}

void reportHub(const char* title, int rounds, int degree, const Points& vRing, const Point2& hub)
{
    const double seconds = measureRemoval(rounds, [&] { return prepareHub(vRing, hub); });
    std::printf("%-28s degree %6d  %8.3f ms  %6.3f us per triangle\n", title, degree, seconds * 1e3,
                seconds * 1e6 / degree);
}

Points grid(int side)
{
    Points vPoints;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            vPoints.emplace_back(x, y);
    return vPoints;
}

Points ring(int n, const std::function<double(int)>& angleOf, const std::function<double(int)>& radiusOf)
{
    Points vPoints;
    for (int i = 0; i < n; ++i) {
        const double angle = angleOf(i);
        vPoints.emplace_back(radiusOf(i) * std::cos(angle), radiusOf(i) * std::sin(angle));
    }
    return vPoints;
}

Points row(int n, const std::function<double(double)>& heightAt)
{
    Points vPoints;
    for (int i = 0; i < n; ++i) {
        const double x = -1.0 + 2.0 * i / n;
        vPoints.emplace_back(x, heightAt(x));
    }
    return vPoints;
}

void reportHubs(int rounds, int n)
{
    const double fullTurn = 6.28318530717958648;
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const auto even = [&](int i) { return fullTurn * i / n; };
    const auto uneven = [&](int) { return fullTurn * unit(random); };
    const auto one = [](int) { return 1.0; };
    const auto rough = [&](int i) { return 1.0 + 1e-9 * (i % 7); };
    reportHub("hub in a circle", rounds, n, ring(n, even, one), Point2(0, 0));
    reportHub("hub in an uneven circle", rounds, n, ring(n, uneven, one), Point2(0, 0));
    reportHub("hub in a rough circle", rounds, n, ring(n, even, rough), Point2(0, 0));
    reportHub("hub beyond a line", rounds, n, row(n, [](double) { return 0.0; }), Point2(0.1, 1e9));
    reportHub("hub beyond an arch", rounds, n, row(n, [](double x) { return -x * x; }), Point2(0.1, 1e9));
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 3;
    std::cout.setstate(std::ios_base::failbit); // keeps the reports of checkValidity() away
    compareWithInsertion("uniform", rounds, bench::toPoints(bench::uniformCoordinates(1000000)));
    compareWithInsertion("grid", rounds, grid(1000));
    for (const int n : {10000, 20000, 40000})
        reportHubs(rounds, n);
    return EXIT_SUCCESS;
}
