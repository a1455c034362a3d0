// Removal: vertices leave, and the mesh closes behind them.
//
// A removed vertex keeps its coordinates and custom index but belongs to no mesh any more. Ends of constraints are not
// removed. It prints:
//
//     before: 121 vertices, 200 triangles
//     after: 84 vertices, 126 triangles
//     the removed vertex was number 60, at (5, 5), and has a triangle: no
//     CheckValidity has been started, name=field
//
//           Quor_2D::CheckValidity(field), INFO: Valid triangulation
#include "Quor_2D.h"

#include <cstdio>
#include <vector>

using namespace ZELK_QUOR2D;

int main()
{
    std::vector<Point2> vPoints;
    for (int i = 0; i < 121; ++i) {
        vPoints.emplace_back(i % 11, i / 11);
        vPoints.back().setCustomIndex(i);
    }
    Quor_2D dt;
    std::vector<Point2*> vHandles;
    dt.insert(vPoints, vHandles);
    std::printf("before: %u vertices, %u triangles\n", dt.numberOfPoints(), dt.numberOfTriangles());

    for (Point2* p : vHandles) {
        const double dx = p->x() - 5, dy = p->y() - 5;
        if (dx * dx + dy * dy < 12)
            dt.remove(p);
    }
    std::printf("after: %u vertices, %u triangles\n", dt.numberOfPoints(), dt.numberOfTriangles());
    const Point2* const pMiddle = vHandles[60];
    std::printf("the removed vertex was number %d, at (%g, %g), and has a triangle: %s\n", pMiddle->getCustomIndex(),
                pMiddle->x(), pMiddle->y(), pMiddle->getIncidentTriangle() ? "yes" : "no");
    return dt.checkValidity(true, "field") ? 0 : 1;
}
