// A program outside the project that uses the installed library.
#include "Quor_2D.h"

#include <cstdio>
#include <vector>

int main()
{
    using namespace ZELK_QUOR2D;
    Quor_2D dt;
    dt.insert(std::vector<Point2>{Point2(0, 0), Point2(2, 0), Point2(2, 1), Point2(0, 1)});
    std::printf("%u points, %u triangles\n", dt.numberOfPoints(), dt.numberOfTriangles());
    return dt.locate(Point2(1.5, 0.5)) ? 0 : 1;
}
