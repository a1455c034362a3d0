// Nanoseconds per orientation and in-circle test on random, grid, collinear and cocircular input.

#include "predicates/PredicateTest.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <random>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

constexpr int kNumQueries = 4096;

struct Query {
    Point2 aPoints[4];
    Triangle2 triangle;
};

using Queries = std::vector<Query>;

// `makePoints` fills three corners and a query point.
template <class MakePoints>
Queries makeQueries(MakePoints makePoints)
{
    Queries vQueries(kNumQueries);
    std::mt19937_64 random(42);
    for (Query& query : vQueries) {
        makePoints(random, query.aPoints);
        query.triangle.setProperties(&query.aPoints[0], &query.aPoints[1], &query.aPoints[2]);
    }
    return vQueries;
}

template <class Test>
double nanosecondsPerCall(const Queries& vQueries, Test test)
{
    using Clock = std::chrono::steady_clock;
    double best = 1e300;
    unsigned int sum = 0;
    for (int round = 0; round < 5; ++round) {
        const Clock::time_point start = Clock::now();
        int numCalls = 0;
        do {
            for (const Query& query : vQueries)
                sum += static_cast<unsigned int>(test(query));
            numCalls += kNumQueries;
        } while (Clock::now() - start < std::chrono::milliseconds(20));
        best = std::fmin(best, std::chrono::duration<double, std::nano>(Clock::now() - start).count() / numCalls);
    }
    volatile unsigned int sink = sum; // keeps the calls
    static_cast<void>(sink);
    return best;
}

void report(const char* pName, const Queries& vQueries)
{
    PredicateTest predicates;
    const double orientation = nanosecondsPerCall(vQueries, [&](const Query& query) {
        return predicates.getOrientation2(&query.aPoints[0], &query.aPoints[1], &query.aPoints[3]);
    });
    const double inCircle = nanosecondsPerCall(
        vQueries, [&](const Query& query) { return predicates.circleInc(&query.triangle, &query.aPoints[3]); });
    const double sign = nanosecondsPerCall(vQueries, [&](const Query& query) {
        return predicates.inCircleSign(&query.aPoints[0], &query.aPoints[1], &query.aPoints[2], &query.aPoints[3]);
    });
    const double exact = nanosecondsPerCall(vQueries, [&](const Query& query) {
        return predicates.exactInCircle(query.aPoints[0], query.aPoints[1], query.aPoints[2], query.aPoints[3]);
    });
    const double dual =
        nanosecondsPerCall(vQueries, [&](const Query& query) { return query.triangle.getDual().second; });
    std::printf("%-28s %11.1f %10.1f %12.1f %14.1f %8.1f\n", pName, orientation, inCircle, sign, exact, dual);
}

double unit(std::mt19937_64& random)
{
    return static_cast<double>(random() >> 11) * 0x1p-53;
}

int below(std::mt19937_64& random, int bound)
{
    return static_cast<int>(random() % static_cast<unsigned int>(bound));
}

// Four points on the circle of squared radius 5^2 * 13^2 about an integer centre, scaled.
void makeCocircular(std::mt19937_64& random, Point2* aPoints, double scale)
{
    static const int aOffsets[][2] = {{65, 0},  {63, 16}, {60, 25}, {56, 33}, {52, 39},
                                      {39, 52}, {33, 56}, {25, 60}, {16, 63}};
    const int centerX = below(random, 1000), centerY = below(random, 1000);
    for (int i = 0; i < 4; ++i) {
        const int* pOffset = aOffsets[below(random, 9)];
        int dx = pOffset[0], dy = pOffset[1];
        for (int turns = i; turns > 0; --turns) {
            const int previous = dx;
            dx = -dy;
            dy = previous;
        }
        aPoints[i] = Point2((centerX + dx) * scale, (centerY + dy) * scale);
    }
}

} // namespace

int main()
{
    std::printf("%-28s %11s %10s %12s %14s %8s\n", "ns per call", "orientation", "circleInc", "inCircleSign",
                "exactInCircle", "getDual");
    report("random in the unit square", makeQueries([](std::mt19937_64& random, Point2* aPoints) {
               for (int i = 0; i < 4; ++i)
                   aPoints[i] = Point2(unit(random), unit(random));
           }));
    report("random, offset 4e6", makeQueries([](std::mt19937_64& random, Point2* aPoints) {
               for (int i = 0; i < 4; ++i)
                   aPoints[i] = Point2(4e6 + 100.0 * unit(random), 4e6 + 100.0 * unit(random));
           }));
    report("grid squares", makeQueries([](std::mt19937_64& random, Point2* aPoints) {
               const int x = below(random, 1000), y = below(random, 1000);
               for (int i = 0; i < 4; ++i)
                   aPoints[i] = Point2(x + (i == 1 || i == 2), y + (i >= 2));
           }));
    report("cocircular integers",
           makeQueries([](std::mt19937_64& random, Point2* aPoints) { makeCocircular(random, aPoints, 1.0); }));
    report("cocircular, 31 bit integers",
           makeQueries([](std::mt19937_64& random, Point2* aPoints) { makeCocircular(random, aPoints, 1000003.0); }));
    report("cocircular times 0.1",
           makeQueries([](std::mt19937_64& random, Point2* aPoints) { makeCocircular(random, aPoints, 0.1); }));
    report("rounded circle", makeQueries([](std::mt19937_64& random, Point2* aPoints) {
               const double start = 6.28 * unit(random);
               for (int i = 0; i < 4; ++i)
                   aPoints[i] = Point2(std::cos(start + i * 1e-4), std::sin(start + i * 1e-4));
           }));
    report("rounded large circle arcs", makeQueries([](std::mt19937_64& random, Point2* aPoints) {
               const double start = 6.28 * unit(random);
               for (int i = 0; i < 4; ++i)
                   aPoints[i] = Point2(std::cos(start + i * 1.1), std::sin(start + i * 1.1));
           }));
    report("symmetric trapezoids", makeQueries([](std::mt19937_64& random, Point2* aPoints) {
               const double angle1 = 1.5 * unit(random), angle2 = 1.5 * unit(random);
               const double x1 = std::cos(angle1), y1 = std::sin(angle1), x2 = std::cos(angle2), y2 = std::sin(angle2);
               aPoints[0] = Point2(-x1, y1);
               aPoints[1] = Point2(-x2, -y2);
               aPoints[2] = Point2(x2, -y2);
               aPoints[3] = Point2(x1, y1);
           }));
    report("collinear, coordinates .1", makeQueries([](std::mt19937_64& random, Point2* aPoints) {
               const double dx = 0.1 * below(random, 100), dy = 0.1 * below(random, 100);
               for (int i = 0; i < 4; ++i)
                   aPoints[i] = Point2(dx * i, dy * i);
           }));
    report("random near 1e-160", makeQueries([](std::mt19937_64& random, Point2* aPoints) {
               for (int i = 0; i < 4; ++i)
                   aPoints[i] = Point2(1e-160 * unit(random), 1e-160 * unit(random));
           }));
    return 0;
}
