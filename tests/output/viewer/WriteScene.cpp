// Writes the web scene of a small triangulation into the directory named on the command line.
#include "Quor_2D.h"

#include <cmath>
#include <vector>

int main(int argc, char** argv)
{
    if (argc != 2)
        return 1;
    std::vector<ZELK_QUOR2D::Point2> vPoints;
    for (int i = 0; i < 300; ++i) {
        // A sunflower: seeds turn by the golden angle.
        const double radius = std::sqrt(i + 0.5), angle = 2.399963229728653 * i;
        vPoints.emplace_back(radius * std::cos(angle), radius * std::sin(angle));
    }
    ZELK_QUOR2D::Quor_2D quor;
    quor.insert(vPoints);
    quor.writeWebScene(argv[1]);
    return 0;
}
