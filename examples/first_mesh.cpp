// Triangulates five points and prints the triangles.
#include "Quor_2D.h"
#include <cstdio>

int main()
{
    ZELK_QUOR2D::Quor_2D dt;
    dt.insert({{0, 0}, {4, 0}, {4, 3}, {0, 3}, {1, 1}});
    std::vector<ZELK_QUOR2D::Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    for (const auto* pT : vTriangles) {
        for (int i = 0; i < 3; ++i)
            std::printf("(%g, %g)  ", pT->getCorner(i)->x(), pT->getCorner(i)->y());
        std::printf("area %g\n", pT->getArea());
    }
}
