// Constraints: a segment becomes an edge of the mesh, in one of two ways.
//
// CIS_CONSTRAINED_DELAUNAY replaces the triangles in the way and adds no vertex where nothing lies on the segment.
// CIS_CONFORMING_DELAUNAY adds vertices on the segment until all its pieces are Delaunay edges. It prints:
//
//     constrained: 1 piece, 202 vertices, every circle empty: no
//     Visualizer2:: Writing constrained.ps
//     conforming: several pieces, more vertices, every circle empty: yes
//     Visualizer2:: Writing conforming.ps
#include "Quor_2D.h"

#include <cstdio>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

// Two rows of points, and a segment that runs between them.
std::vector<Point2> twoRows()
{
    std::vector<Point2> vPoints;
    for (int i = 0; i < 100; ++i) {
        vPoints.emplace_back(i, 0.5 + 0.003 * i);
        vPoints.emplace_back(i, -0.4 - 0.002 * i);
    }
    return vPoints;
}

// No vertex of a neighbour strictly inside a circumcircle; checkValidity() tells the same exactly, in a report.
bool isDelaunay(const Quor_2D& dt)
{
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    for (const Triangle2* pT : vTriangles) {
        const Point2 centre = pT->getDual().first;
        const auto squaredDistance = [&centre](const Point2* p) {
            const double dx = p->x() - centre.x(), dy = p->y() - centre.y();
            return dx * dx + dy * dy;
        };
        for (int i = 0; i < 3; ++i) {
            const Triangle2* const pN = pT->getOppositeTriangle(i);
            if (pN && squaredDistance(pN->getCorner(pN->getIntraTriangleIndex(pT))) <
                          squaredDistance(pT->getCorner(0)) * (1 - 1e-9))
                return false;
        }
    }
    return true;
}

} // namespace

int main()
{
    const std::vector<Segment2> vSegments = {Segment2(Point2(-1, 0), Point2(100, 0))};
    for (const ConstraintInsertionStrategy cis : {CIS_CONSTRAINED_DELAUNAY, CIS_CONFORMING_DELAUNAY}) {
        Quor_2D dt;
        dt.insert(twoRows());
        ConstraintGraph2* const pGraph = dt.createConstraint(vSegments, cis);
        dt.applyConstraintsAndZones();

        std::vector<Point2*> vStarts; // of each piece
        pGraph->getPolygonVertices(vStarts);
        const bool bConstrained = cis == CIS_CONSTRAINED_DELAUNAY;
        if (bConstrained)
            std::printf("constrained: %zu piece, %u vertices", vStarts.size(), dt.numberOfPoints());
        else
            std::printf("conforming: %s, %s", vStarts.size() > 1 ? "several pieces" : "one piece",
                        dt.numberOfPoints() > 202 ? "more vertices" : "no more vertices");
        std::printf(", every circle empty: %s\n", isDelaunay(dt) ? "yes" : "no");
        dt.show(bConstrained ? "constrained.ps" : "conforming.ps"); // constraints are red
    }
}
