// Zone algebra: zones out of zones, which follow the mesh.
//
// Two squares overlap in a quarter of each. The library tells that their borders cross; both are split there. A zone
// made of others is found anew whenever it is asked for, so it stays right when points come in. It prints:
//
//     squares 4 and 4
//     union 7, intersection 1, difference 3, symmetric difference 6
//     after 1000 more points: union 7, intersection 1, difference 3, symmetric difference 6
//     around the point (2.5, 2.5), without crossing a border: 3
#include "Quor_2D.h"

#include <cstdio>
#include <iostream>
#include <random>
#include <sstream>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

ConstraintGraph2* addSquare(Quor_2D& dt, double x, double y, double side)
{
    const Point2 a(x, y), b(x + side, y), c(x + side, y + side), d(x, y + side);
    return dt.createConstraint({Segment2(a, b), Segment2(b, c), Segment2(c, d), Segment2(d, a)},
                               CIS_CONSTRAINED_DELAUNAY);
}

double areaOf(const Zone2* pZone)
{
    std::vector<Triangle2*> vTriangles;
    pZone->getTriangles(vTriangles);
    double area = 0;
    for (const Triangle2* pT : vTriangles)
        area += pT->getArea();
    return area;
}

} // namespace

int main()
{
    // Reports go to std::cout. A program whose output is its result sends them elsewhere.
    std::ostringstream reports;
    std::streambuf* const pStandardOutput = std::cout.rdbuf(reports.rdbuf());

    Quor_2D dt;
    ConstraintGraph2* const pGraph0 = addSquare(dt, 0, 0, 2);
    ConstraintGraph2* const pGraph1 = addSquare(dt, 1, 1, 2);
    dt.insert(Point2(4, 4));
    dt.applyConstraintsAndZones();

    Zone2* const pSquare0 = dt.createZone(pGraph0, ZL_INSIDE);
    Zone2* const pSquare1 = dt.createZone(pGraph1, ZL_INSIDE);
    Zone2* const pUnion = zoneUnion(pSquare0, pSquare1);
    Zone2* const pBoth = zoneIntersection(pSquare0, pSquare1);
    Zone2* const pFirstOnly = zoneDifference(pSquare0, pSquare1);
    Zone2* const pOneOnly = zoneSymmetricDifference(pSquare0, pSquare1);
    const auto printAreas = [&] {
        std::printf("union %.12g, intersection %.12g, difference %.12g, symmetric difference %.12g\n", areaOf(pUnion),
                    areaOf(pBoth), areaOf(pFirstOnly), areaOf(pOneOnly));
    };
    std::printf("squares %g and %g\n", areaOf(pSquare0), areaOf(pSquare1));
    printAreas();

    std::mt19937 generator(1);
    std::uniform_real_distribution<double> coordinate(0, 4);
    std::vector<Point2> vPoints;
    for (int i = 0; i < 1000; ++i) {
        const double x = coordinate(generator);
        vPoints.emplace_back(x, coordinate(generator));
    }
    dt.insert(vPoints);
    std::printf("after 1000 more points: ");
    printAreas();

    const std::vector<ConstraintGraph2*> vBorders = {pGraph0, pGraph1};
    std::printf("around the point (2.5, 2.5), without crossing a border: %.12g\n",
                areaOf(dt.createZone(vBorders, ZL_GROW, Point2(2.5, 2.5))));
    std::cout.rdbuf(pStandardOutput);
}
