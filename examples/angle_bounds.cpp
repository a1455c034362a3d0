// What an angle bound costs and brings: the Caspian Sea at 20, 25, 28 and 30 degrees. Prints the table of
// docs/refinement.md, draws how the angles are distributed, and a part of the mesh at 20 and at 30 degrees.
// Usage: angle_bounds [data folder [output folder]]
#include "Outlines.h"
#include "Quor_2D.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <set>
#include <string>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

constexpr double kPi = 3.14159265358979;
constexpr double kNoLimit = std::numeric_limits<double>::infinity();
constexpr int kDegreesPerBar = 3;

struct Measures {
    double bound = 0;
    std::size_t numTriangles = 0;
    std::size_t numBelow = 0;       // triangles with an angle below the bound
    double smallestAtCorners = 180; // at corners of the shore that are sharper than the bound
    double smallestElsewhere = 180;
    std::array<int, 180 / kDegreesPerBar> aBars = {}; // all angles of all triangles
};

double angleBetween(const Point2& apex, const Point2& a, const Point2& b)
{
    const double ax = a.x() - apex.x(), ay = a.y() - apex.y(), bx = b.x() - apex.x(), by = b.y() - apex.y();
    return std::atan2(std::fabs(ax * by - ay * bx), ax * bx + ay * by) * 180 / kPi;
}

// The points of the outlines whose two sides meet below the bound.
std::set<Point2> sharpCorners(const Outlines& outlines, double bound)
{
    std::set<Point2> sCorners;
    for (const std::vector<Segment2>& vRing : segmentsOfRings(outlines))
        for (std::size_t i = 0; i < vRing.size(); ++i) {
            const Segment2& following = vRing[(i + 1) % vRing.size()];
            if (angleBetween(following.getSrc(), vRing[i].getSrc(), following.getTrg()) < bound)
                sCorners.insert(following.getSrc());
        }
    return sCorners;
}

Zone2* makeWater(Quor_2D& dt, const Outlines& outlines)
{
    std::vector<ConstraintGraph2*> vGraphs;
    for (const std::vector<Segment2>& vRing : segmentsOfRings(outlines))
        vGraphs.push_back(dt.createConstraint(vRing, CIS_CONSTRAINED_DELAUNAY));
    dt.applyConstraintsAndZones();
    Zone2* pWater = dt.createZone(vGraphs[0], ZL_INSIDE);
    for (std::size_t i = 1; i < vGraphs.size(); ++i)
        pWater = zoneDifference(pWater, dt.createZone(vGraphs[i], ZL_INSIDE));
    return pWater;
}

Measures measure(const std::vector<Triangle2*>& vTriangles, const std::set<Point2>& sSharp, double bound)
{
    Measures measures;
    measures.bound = bound;
    measures.numTriangles = vTriangles.size();
    for (const Triangle2* pT : vTriangles) {
        double smallest = 180;
        bool bSharp = false;
        for (int i = 0; i < 3; ++i) {
            const Point2& p = *pT->getCorner(i);
            const double angle = angleBetween(p, *pT->getCorner((i + 1) % 3), *pT->getCorner((i + 2) % 3));
            ++measures.aBars[std::min<std::size_t>(static_cast<std::size_t>(angle / kDegreesPerBar),
                                                   measures.aBars.size() - 1)];
            smallest = std::min(smallest, angle);
            bSharp = bSharp || sSharp.count(p) > 0;
        }
        double& worst = bSharp ? measures.smallestAtCorners : measures.smallestElsewhere;
        worst = std::min(worst, smallest);
        measures.numBelow += smallest < bound ? 1 : 0;
    }
    return measures;
}

// The triangles near the islands of the north.
void drawPart(const std::vector<Triangle2*>& vTriangles, const std::string& filename)
{
    const auto isInPart = [](const Point2& p) { // kilometres
        return p.x() > -55 && p.x() < 65 && p.y() > 305 && p.y() < 385;
    };
    Visualizer2 page(filename);
    for (const Point2& corner : {Point2(-66, 302), Point2(61, 392)}) // invisible: the scale is the same for all parts
        page.addObject(corner, Color(1, 1, 1, 0.1, false));
    for (const Triangle2* pT : vTriangles)
        if (isInPart(pT->getBarycenter()))
            page.addObject(*pT, Color(0.80, 0.90, 0.97, 0.1, true));
    for (const Triangle2* pT : vTriangles)
        if (isInPart(pT->getBarycenter()))
            page.addObject(*pT, Color(0.10, 0.26, 0.42, 0.25, false));
    page.writeFile();
}

// Two triangles that the page fills.
void addRectangle(Visualizer2& page, double x0, double y0, double x1, double y1, const Color& color)
{
    std::array<Point2, 4> aCorners = {Point2(x0, y0), Point2(x1, y0), Point2(x1, y1), Point2(x0, y1)};
    for (std::size_t i = 1; i <= 2; ++i) {
        Triangle2 half;
        half.setProperties(&aCorners[0], &aCorners[i], &aCorners[i + 1]);
        page.addObject(half, color);
    }
}

// One plot, 180 wide for the degrees and 65 high for a tenth of all angles, with its lower left corner at (x, y).
void addPlot(Visualizer2& page, const Measures& measures, double x, double y)
{
    const Color axis(0.3, 0.3, 0.3, 0.5, false), bar(0.30, 0.55, 0.75, 0.1, true), mark(0.80, 0.10, 0.10, 0.8, false);
    for (std::size_t i = 0; i < measures.aBars.size(); ++i) {
        const double height = measures.aBars[i] * 650.0 / (3.0 * static_cast<double>(measures.numTriangles));
        const double left = x + static_cast<double>(i) * kDegreesPerBar;
        if (height > 0)
            addRectangle(page, left + 0.3, y, left + kDegreesPerBar - 0.3, y + height, bar);
    }
    page.addObject(Segment2({x, y}, {x + 180, y}), axis);
    for (int degrees = 0; degrees <= 180; degrees += 30) {
        page.addObject(Segment2({x + degrees, y}, {x + degrees, y - 2}), axis);
        page.addObject(Label({x + degrees - 4, y - 9}, std::to_string(degrees), false), axis);
    }
    // No angle can be below the bound, so none can be above what that leaves for the third.
    for (const double degrees : {measures.bound, 180 - 2 * measures.bound})
        page.addObject(Segment2({x + degrees, y}, {x + degrees, y + 68}), mark);
    page.addObject(Label({x + 84, y + 72},
                         "at least " + std::to_string(std::lround(measures.bound)) +
                             " degrees: " + std::to_string(measures.numTriangles) + " triangles",
                         false),
                   axis);
}

} // namespace

int main(int argc, char** argv)
{
    const std::string input = std::string(argc > 1 ? argv[1] : "examples/data") + "/caspian_sea.txt";
    const std::string output = std::string(argc > 2 ? argv[2] : ".") + "/";
    Outlines outlines = readOutlines(input);
    projectToKilometres(outlines);

    bool bGood = !outlines.vPoints.empty();
    Visualizer2 plots(output + "angles.ps");
    std::printf("| Bound | Triangles | Triangles below it | Smallest angle | The same away from sharp corners |\n"
                "| ---: | ---: | ---: | ---: | ---: |\n");
    int column = 0;
    for (const double bound : {20.0, 25.0, 28.0, 30.0}) {
        Quor_2D dt;
        Zone2* const pWater = makeWater(dt, outlines);
        dt.refine(pWater, bound, 0.0, kNoLimit, true);
        std::vector<Triangle2*> vTriangles;
        pWater->getTriangles(vTriangles);
        const Measures measures = measure(vTriangles, sharpCorners(outlines, bound), bound);
        std::printf("| %g | %zu | %zu | %.2f | %.2f |\n", bound, measures.numTriangles, measures.numBelow,
                    std::min(measures.smallestAtCorners, measures.smallestElsewhere), measures.smallestElsewhere);
        addPlot(plots, measures, column % 2 * 200.0, column / 2 * -105.0);
        ++column;
        if (bound == 20 || bound == 30)
            drawPart(vTriangles, output + (bound == 20 ? "angles_20.ps" : "angles_30.ps"));
        bGood = bGood && measures.smallestElsewhere > bound - 1e-9;
    }
    plots.writeFile();
    return bGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
