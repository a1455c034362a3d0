// Refinement: triangles of good shape inside a polygon.
//
// New vertices go in until no angle is below the bound and no edge above the length limit; segments of the border are
// split where that is needed. The corners given stay where they are. It prints:
//
//     before: smallest angle below 27 degrees: yes, edge longer than 1: yes
//     after: smallest angle below 27 degrees: no, edge longer than 1: no
//     the area is still 27.5
//     Visualizer2:: Writing refinement.ps
#include "Quor_2D.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

struct Quality {
    double minAngle = 180; // degrees
    double maxEdge = 0;
    double area = 0;
};

Quality measure(const Zone2* pZone)
{
    Quality quality;
    std::vector<Triangle2*> vTriangles;
    pZone->getTriangles(vTriangles);
    for (const Triangle2* pT : vTriangles) {
        quality.area += pT->getArea();
        for (int i = 0; i < 3; ++i) {
            const double a = pT->getSquaredEdgeLength(i);
            const double b = pT->getSquaredEdgeLength((i + 1) % 3), c = pT->getSquaredEdgeLength((i + 2) % 3);
            const double angle = std::acos((b + c - a) / (2 * std::sqrt(b * c))) * 180 / 3.14159265358979;
            quality.minAngle = std::min(quality.minAngle, angle);
            quality.maxEdge = std::max(quality.maxEdge, std::sqrt(a));
        }
    }
    return quality;
}

void print(const char* when, const Quality& quality)
{
    std::printf("%s: smallest angle below 27 degrees: %s, edge longer than 1: %s\n", when,
                quality.minAngle < 27 ? "yes" : "no", quality.maxEdge > 1 ? "yes" : "no");
}

} // namespace

int main()
{
    const std::vector<Point2> vRing = {{0, 0}, {10, 0}, {10, 1}, {5, 2}, {5, 5}, {0, 3}};
    std::vector<Segment2> vSegments;
    for (std::size_t i = 0; i < vRing.size(); ++i)
        vSegments.emplace_back(vRing[i], vRing[(i + 1) % vRing.size()]);

    Quor_2D dt;
    ConstraintGraph2* const pGraph = dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY);
    Zone2* const pZone = dt.createZone(pGraph, ZL_INSIDE);
    dt.applyConstraintsAndZones();
    print("before", measure(pZone));

    dt.refine(pZone, 27.0, 0.001, 1.0, true); // zone, angle, shortest and longest edge, borders may be split
    const Quality after = measure(pZone);
    print("after", after);
    std::printf("the area is still %.10g\n", after.area);
    dt.show("refinement.ps");
}
