// What does it cost to ask a zone for its triangles? Usage: zones [rounds]
#include "Quor_2D.h"
#include "benchmarks/RefineJobs.h"

#include <iostream>

namespace
{

using namespace ZELK_QUOR2D;

struct Scene {
    std::unique_ptr<Quor_2D> pDt;
    std::vector<Zone2*> vZones;
};

// What asking a zone has to go through: the triangles of the zones that it is made of.
struct ZoneJob {
    const char* title;
    std::vector<std::size_t> vParts;
};

ConstraintGraph2* addOutline(Quor_2D& dt, std::vector<std::pair<double, double>> vOutline, double x, double size)
{
    std::vector<Segment2> vSegments;
    const auto place = [&](std::size_t i) {
        const auto& p = vOutline[i % vOutline.size()];
        return Point2(x + size * p.first, 0.5 + size * p.second);
    };
    for (std::size_t i = 0; i < vOutline.size(); ++i)
        vSegments.emplace_back(place(i), place(i + 1));
    return dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY);
}

// Two overlapping polygons among uniform points; their zones, union and difference.
Scene makeScene(std::size_t numPoints, std::size_t numCorners)
{
    const std::vector<double> vCoordinates = bench::uniformCoordinates(numPoints);
    std::vector<Point2> vPoints;
    for (std::size_t i = 0; i < vCoordinates.size(); i += 2)
        vPoints.emplace_back(vCoordinates[i], vCoordinates[i + 1]);
    Scene scene{std::make_unique<Quor_2D>(), {}};
    scene.pDt->insert(vPoints);
    Quor_2D& dt = *scene.pDt;
    Zone2* const pA = dt.createZone(addOutline(dt, bench::starPolygon(numCorners), 0.45, 0.42), ZL_INSIDE);
    Zone2* const pB = dt.createZone(addOutline(dt, bench::starPolygon(numCorners), 0.55, 0.42), ZL_INSIDE);
    dt.applyConstraintsAndZones();
    scene.vZones = {pA, pB, zoneUnion(pA, pB), zoneDifference(pA, pB), dt.createZone(nullptr, ZL_GLOBAL)};
    return scene;
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    const ZoneJob aJobs[] = {{"inside of a polygon", {0}},
                             {"inside of another", {1}},
                             {"union of two", {0, 1}},
                             {"difference of two", {0, 1}},
                             {"all triangles", {4}}};
    std::streambuf* const pConsole = std::cout.rdbuf(nullptr); // crossings are reported
    for (const std::size_t numCorners : {100, 10000}) {
        double aCounts[5] = {};
        bench::Series aSeries[5];
        for (std::size_t zone = 0; zone < 5; ++zone) {
            for (int round = 0; round < rounds; ++round)
                aSeries[zone].add(
                    bench::measure([&] { return makeScene(1000000, numCorners); },
                                   [&](const Scene& scene) {
                                       std::vector<Triangle2*> vTriangles;
                                       scene.vZones[zone]->getTriangles(vTriangles);
                                       return vTriangles;
                                   },
                                   [](const std::vector<Triangle2*>& vTriangles) { return vTriangles.size(); }));
            aCounts[zone] = aSeries[zone].lastResult();
        }
        for (std::size_t zone = 0; zone < 5; ++zone) {
            double numRead = 0;
            for (const std::size_t part : aJobs[zone].vParts)
                numRead += aCounts[part];
            std::printf("| %s, 1M points, %zu corners | %.0f | %.0f | %.4f | %.3f | 0.15 |\n", aJobs[zone].title,
                        numCorners, aCounts[zone], numRead, aSeries[zone].seconds(),
                        aSeries[zone].seconds() / numRead * 1e6);
        }
    }
    std::cout.rdbuf(pConsole);
    return EXIT_SUCCESS;
}
