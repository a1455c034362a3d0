// The program of the user guide (docs/user-guide.md): from points to a mesh, with a page for each step.
//
// It prints:
//
//     Visualizer2:: Writing guide_points.ps
//     Visualizer2:: Writing guide_constraints.ps
//     Visualizer2:: Writing guide_zone.ps
//     Visualizer2:: Writing guide_mesh.ps
//     all angles of at least 28 degrees: yes
#include "Quor_2D.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

// The closed ring through the points, as segments.
std::vector<Segment2> ringOf(const std::vector<Point2>& vPoints)
{
    std::vector<Segment2> vSegments;
    for (std::size_t i = 0; i < vPoints.size(); ++i)
        vSegments.emplace_back(vPoints[i], vPoints[(i + 1) % vPoints.size()]);
    return vSegments;
}

std::vector<Point2> circleOf(double x, double y, double radius, int numPoints)
{
    std::vector<Point2> vPoints;
    for (int i = 0; i < numPoints; ++i) {
        const double angle = 2 * 3.14159265358979 * i / numPoints;
        vPoints.emplace_back(x + radius * std::cos(angle), y + radius * std::sin(angle));
    }
    return vPoints;
}

// The triangles of the zone filled, all edges grey, constraints red.
void draw(const Quor_2D& dt, const Zone2* pZone, const std::string& filename)
{
    const Color fill(1, 0.93, 0.72, 0.1, true), grey(0.4, 0.4, 0.4, 0.8, false), red(0.8, 0.1, 0.1, 2.2, false);
    Visualizer2 page(filename);
    std::vector<Triangle2*> vTriangles;
    if (pZone)
        pZone->getTriangles(vTriangles);
    page.addObject(vTriangles, fill);
    vTriangles.clear();
    dt.getTrianglePointers(vTriangles);
    page.addObject(vTriangles, grey);
    for (Triangle2* pT : vTriangles)
        for (int i = 0; i < 3; ++i)
            if (dt.isConstraint(pT, i))
                page.addObject(Segment2(*pT->getCorner((i + 1) % 3), *pT->getCorner((i + 2) % 3)), red);
    page.writeFile();
}

double smallestAngle(const std::vector<Triangle2*>& vTriangles)
{
    double smallest = 180;
    for (const Triangle2* pT : vTriangles)
        for (int i = 0; i < 3; ++i) {
            const double a = pT->getSquaredEdgeLength(i);
            const double b = pT->getSquaredEdgeLength((i + 1) % 3), c = pT->getSquaredEdgeLength((i + 2) % 3);
            smallest = std::min(smallest, std::acos((b + c - a) / (2 * std::sqrt(b * c))) * 180 / 3.14159265358979);
        }
    return smallest;
}

} // namespace

int main()
{
    // 1. Points: the corners of a bracket and two drill holes.
    const std::vector<Point2> vOutline = {{0, 0}, {12, 0}, {12, 3}, {5, 4}, {4, 10}, {0, 10}};
    const std::vector<Point2> vHole0 = circleOf(2, 7, 1, 16), vHole1 = circleOf(9, 1.6, 0.8, 16);
    Quor_2D dt;
    for (const std::vector<Point2>& vPoints : {vOutline, vHole0, vHole1})
        dt.insert(vPoints);
    draw(dt, nullptr, "guide_points.ps");

    // 2. Constraints: the outline and the holes become edges.
    ConstraintGraph2* const pOutline = dt.createConstraint(ringOf(vOutline), CIS_CONSTRAINED_DELAUNAY);
    ConstraintGraph2* const pHole0 = dt.createConstraint(ringOf(vHole0), CIS_CONSTRAINED_DELAUNAY);
    ConstraintGraph2* const pHole1 = dt.createConstraint(ringOf(vHole1), CIS_CONSTRAINED_DELAUNAY);
    dt.applyConstraintsAndZones();
    draw(dt, nullptr, "guide_constraints.ps");

    // 3. A zone: inside the outline, without the holes.
    Zone2* const pHoles = zoneUnion(dt.createZone(pHole0, ZL_INSIDE), dt.createZone(pHole1, ZL_INSIDE));
    Zone2* const pBracket = zoneDifference(dt.createZone(pOutline, ZL_INSIDE), pHoles);
    draw(dt, pBracket, "guide_zone.ps");

    // 4. Refinement: angles of at least 28 degrees, edges of at most 1.
    dt.refine(pBracket, 28.0, 0.01, 1.0, true);
    draw(dt, pBracket, "guide_mesh.ps");

    std::vector<Triangle2*> vTriangles;
    pBracket->getTriangles(vTriangles);
    std::printf("all angles of at least 28 degrees: %s\n", smallestAngle(vTriangles) >= 28 ? "yes" : "no");
}
