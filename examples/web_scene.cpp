// A web scene: a directory with a page that shows the mesh in a browser, from a server or straight from disk.
//
// It prints:
//
//     writeWebScene: Creating web_scene
//     open web_scene/index.html
//     the page is there: yes
#include "Quor_2D.h"

#include <cstdio>
#include <fstream>
#include <random>
#include <vector>

using namespace ZELK_QUOR2D;

int main()
{
    std::mt19937 generator(7);
    std::uniform_real_distribution<double> coordinate(0, 4);
    std::vector<Point2> vPoints;
    for (int i = 0; i < 500; ++i) {
        const double x = coordinate(generator);
        vPoints.emplace_back(x, coordinate(generator));
    }
    Quor_2D dt;
    dt.insert(vPoints);
    dt.writeWebScene("web_scene");
    std::printf("open web_scene/index.html\n");
    std::printf("the page is there: %s\n", std::ifstream("web_scene/index.html") ? "yes" : "no");
}
