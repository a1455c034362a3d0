// Drawing with Visualizer2: a PostScript page with triangles, circles, points and labels.
//
// Draws a triangulation, the circumcircle of one triangle, which is empty, and the vertices with their numbers. It
// prints:
//
//     Visualizer2:: Writing drawing.ps
//     50 triangles, 30 labels
#include "Quor_2D.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

using namespace ZELK_QUOR2D;

int main()
{
    std::vector<Point2> vPoints;
    for (int i = 0; i < 30; ++i) { // the head of a sunflower
        const double radius = std::sqrt(i + 0.5), angle = 2.39996 * i;
        vPoints.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
        vPoints.back().setCustomIndex(i);
    }
    Quor_2D dt;
    dt.insert(vPoints);

    // Red, green, blue, line width, filled.
    const Color edge(0.35, 0.45, 0.25, 0.4, false), fill(1, 0.9, 0.55, 0.1, true);
    const Color circle(0.8, 0.1, 0.1, 1, false), text(0.1, 0.1, 0.1, 0.5, false);

    Visualizer2 page("drawing.ps");
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    const Triangle2* const pMiddle = dt.locate(Point2(0.2, 0.1));
    page.addObject(*pMiddle, fill);
    page.addObject(vTriangles, edge);
    const Point2 centre = pMiddle->getDual().first;
    const double dx = pMiddle->getCorner(0)->x() - centre.x(), dy = pMiddle->getCorner(0)->y() - centre.y();
    page.addObject(Circle2(centre, dx * dx + dy * dy), circle);
    std::vector<Point2*> vVertices;
    dt.getVertexPointers(vVertices);
    for (const Point2* p : vVertices)
        page.addObject(Label(*p, std::to_string(p->getCustomIndex()), true), text);
    page.writeFile();
    std::printf("%zu triangles, %zu labels\n", vTriangles.size(), vVertices.size());
}
