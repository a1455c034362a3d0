// A polygon with a hole: the triangles between two rings.
//
// Each ring is one constraint graph. What lies inside the outer ring but not inside the inner one is the difference of
// two zones. It prints:
//
//     the rings are polygons: yes yes
//     plate 24, hole 2, plate without hole 22
#include "Quor_2D.h"

#include <cstdio>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

ConstraintGraph2* addRing(Quor_2D& dt, const std::vector<Point2>& vRing)
{
    std::vector<Segment2> vSegments;
    for (std::size_t i = 0; i < vRing.size(); ++i)
        vSegments.emplace_back(vRing[i], vRing[(i + 1) % vRing.size()]);
    return dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY);
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
    Quor_2D dt;
    ConstraintGraph2* const pOuter = addRing(dt, {{0, 0}, {6, 0}, {6, 4}, {0, 4}});
    ConstraintGraph2* const pInner = addRing(dt, {{3, 1}, {4, 2}, {3, 3}, {2, 2}});
    dt.applyConstraintsAndZones();
    std::printf("the rings are polygons: %s %s\n", pOuter->isPolygon() ? "yes" : "no",
                pInner->isPolygon() ? "yes" : "no");

    Zone2* const pPlate = dt.createZone(pOuter, ZL_INSIDE);
    Zone2* const pHole = dt.createZone(pInner, ZL_INSIDE);
    Zone2* const pRest = zoneDifference(pPlate, pHole);
    std::printf("plate %g, hole %g, plate without hole %g\n", areaOf(pPlate), areaOf(pHole), areaOf(pRest));
}
