// Handles and custom indices: how vertices lead back to the caller's own data.
//
// A batch returns one handle for each input point. A handle stays valid as long as the triangulation lives, and equal
// points share one vertex, which keeps the custom index of the point that came first. It prints:
//
//     5 points, 4 vertices
//     the last point is the vertex of the first one: yes
//     Tower at (3, 4) has the neighbours: Bridge Mill
//     the point (1, 0.5) lies in the triangle: Harbour Bridge Mill
#include "Quor_2D.h"

#include <cstdio>
#include <set>
#include <string>
#include <vector>

using namespace ZELK_QUOR2D;

int main()
{
    const std::vector<std::string> vNames = {"Harbour", "Bridge", "Tower", "Mill", "Harbour again"};
    std::vector<Point2> vPoints = {{0, 0}, {4, 0}, {3, 4}, {0, 2}, {0, 0}};
    for (std::size_t i = 0; i < vPoints.size(); ++i)
        vPoints[i].setCustomIndex(static_cast<int>(i));
    const auto nameOf = [&vNames](const Point2* p) { return vNames[static_cast<std::size_t>(p->getCustomIndex())]; };

    Quor_2D dt;
    std::vector<Point2*> vHandles;
    dt.insert(vPoints, vHandles);
    std::printf("%zu points, %u vertices\n", vPoints.size(), dt.numberOfPoints());
    std::printf("the last point is the vertex of the first one: %s\n", vHandles[4] == vHandles[0] ? "yes" : "no");

    // Once round the vertex; at the hull the iterator yields null where the outside is.
    const Point2* const pTower = vHandles[2];
    std::set<int> sNeighbours;
    TriangleAroundVertexIterator it(vHandles[2]);
    const Triangle2* const pFirst = *it;
    do {
        for (int i = 0; *it && i < 3; ++i)
            if ((*it)->getCorner(i) != pTower)
                sNeighbours.insert((*it)->getCorner(i)->getCustomIndex());
        ++it;
    } while (*it != pFirst);
    std::printf("%s at (%g, %g) has the neighbours:", nameOf(pTower).c_str(), pTower->x(), pTower->y());
    for (const int index : sNeighbours)
        std::printf(" %s", vNames[static_cast<std::size_t>(index)].c_str());

    std::set<int> sCorners;
    const Triangle2* const pT = dt.locate(Point2(1, 0.5));
    for (int i = 0; i < 3; ++i)
        sCorners.insert(pT->getCorner(i)->getCustomIndex());
    std::printf("\nthe point (1, 0.5) lies in the triangle:");
    for (const int index : sCorners)
        std::printf(" %s", vNames[static_cast<std::size_t>(index)].c_str());
    std::printf("\n");
}
