// The library at work on real data, step by step: triangulates the coast of Greece, mainland and islands; cuts a hole
// by removing points; forces the coast lines into the mesh. Usage: demo [data folder [output folder]]
#include "Outlines.h"
#include "Quor_2D.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

double secondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// A triangle between points of one ring lies on the land side when it meets them in the ring's own order.
bool isLand(const Triangle2& triangle, const Outlines& coast)
{
    const int i = triangle.getCorner(0)->getCustomIndex();
    const int j = triangle.getCorner(1)->getCustomIndex();
    const int k = triangle.getCorner(2)->getCustomIndex();
    const auto ringOf = [&](int index) { return coast.vRingOfPoint[static_cast<std::size_t>(index)]; };
    return ringOf(i) == ringOf(j) && ringOf(j) == ringOf(k) && (i < j) + (j < k) + (k < i) == 2;
}

double longestEdge(const Triangle2& triangle)
{
    double longest = 0;
    for (int i = 0; i < 3; ++i)
        longest = std::max(longest, triangle.getSquaredEdgeLength(i));
    return std::sqrt(longest);
}

// Small triangles dark, large ones light; on land from green to sand, at sea from deep to pale blue.
Color fillColor(const Triangle2& triangle, bool bLand)
{
    const double t = std::clamp(std::log2(longestEdge(triangle)) / 7, 0.0, 1.0); // 0 at 1 km, 1 at 128 km
    const double step = std::round(t * 12) / 12;                                 // few colours keep the page small
    if (bLand)
        return Color(0.42 + 0.52 * step, 0.56 + 0.32 * step, 0.30 + 0.38 * step, 0.05, true);
    return Color(0.30 + 0.56 * step, 0.53 + 0.39 * step, 0.72 + 0.25 * step, 0.05, true);
}

void drawMesh(const std::vector<Triangle2*>& vTriangles, const Outlines& coast, const std::string& filename)
{
    const Color landEdge(0.45, 0.42, 0.22, 0.06, false);
    const Color seaEdge(0.35, 0.52, 0.68, 0.06, false);
    Visualizer2 page(filename);
    for (const Triangle2* pT : vTriangles)
        page.addObject(*pT, fillColor(*pT, isLand(*pT, coast)));
    for (const bool bLand : {false, true}) // land last: its edges draw the coast line
        for (const Triangle2* pT : vTriangles)
            if (isLand(*pT, coast) == bLand)
                page.addObject(*pT, bLand ? landEdge : seaEdge);
    page.writeFile();
}

// Removes every point inside a circle around the middle of the map and draws what closes the gap.
bool cutHole(const Outlines& coast, const std::string& filename)
{
    Quor_2D dt;
    dt.insert(coast.vPoints);
    const auto start = std::chrono::steady_clock::now();
    const double radius = 60.0; // kilometres
    std::vector<Point2*> vVertices;
    dt.getVertexPointers(vVertices);
    for (Point2* p : vVertices)
        if (p->x() * p->x() + p->y() * p->y() < radius * radius)
            dt.remove(p);
    const double seconds = secondsSince(start);
    std::cout << "\nRemoved " << vVertices.size() - dt.numberOfPoints() << " points inside a circle in " << seconds
              << " s\n";
    dt.show(filename);
    return dt.checkValidity(true, "hole");
}

// Every piece of coast becomes an edge; the page shows them in red. The outline of the mainland crosses itself in the
// mouth of a creek, where the source was rounded: the library reports that, and puts a vertex there.
bool forceCoastLines(const Outlines& coast, const std::string& filename)
{
    std::vector<Segment2> vSegments;
    for (const std::vector<Segment2>& vRing : segmentsOfRings(coast))
        vSegments.insert(vSegments.end(), vRing.begin(), vRing.end());
    Quor_2D dt;
    dt.insert(coast.vPoints);
    std::cout << "\nForcing the coast lines in. Two pieces cross where the data were rounded: the library says so, "
                 "and splits both.\n";
    const auto start = std::chrono::steady_clock::now();
    ConstraintGraph2* pGraph = dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY);
    dt.applyConstraintsAndZones();
    std::cout << "Forced " << vSegments.size() << " pieces of coast into the mesh in " << secondsSince(start) << " s\n";
    dt.show(filename);
    std::vector<ConstraintSegment2*> vPieces;
    pGraph->getOriginalConstraintSegments(vPieces);
    return std::all_of(vPieces.begin(), vPieces.end(), [&](const ConstraintSegment2* pPiece) {
        return !pPiece->isAlive() || dt.getAdjacentTriangle(pPiece->getSrc(), pPiece->getTrg());
    });
}

} // namespace

int main(int argc, char** argv)
{
    const std::string input = std::string(argc > 1 ? argv[1] : "examples/data") + "/greece.txt";
    const std::string output = std::string(argc > 2 ? argv[2] : ".") + "/greece";

    Outlines coast = readOutlines(input);
    if (coast.vPoints.empty()) {
        std::fprintf(stderr, "demo: no points in %s\n", input.c_str());
        return EXIT_FAILURE;
    }
    projectToKilometres(coast);
    std::cout << "Read " << coast.vPoints.size() << " points of " << coast.numRings << " coast lines from " << input
              << "\n";

    const auto start = std::chrono::steady_clock::now();
    Quor_2D dt;
    dt.insert(coast.vPoints);
    const double seconds = secondsSince(start);
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    std::cout << "Triangulated in " << seconds << " s: " << dt.numberOfPoints() << " vertices, " << vTriangles.size()
              << " triangles\n";

    double landArea = 0;
    for (const Triangle2* pT : vTriangles)
        landArea += isLand(*pT, coast) ? pT->getArea() : 0;
    std::cout << "Land area: " << std::lround(landArea) << " square kilometres\n";

    drawMesh(vTriangles, coast, output + ".ps");
    dt.writeObj(output + ".obj");
    dt.writeWebScene((output + "_web").c_str());
    const bool bHoleValid = cutHole(coast, output + "_hole.ps");
    const bool bCoastHolds = forceCoastLines(coast, output + "_coast.ps");
    std::cout << "\nLook at:\n"
              << "  " << output << ".ps   the mesh, land and sea, as a PostScript page\n"
              << "  " << output << ".obj  the mesh for any 3D viewer, in kilometres\n"
              << "  " << output << "_web/index.html  the mesh in a browser\n"
              << "  " << output << "_hole.ps   the mesh after points were removed\n"
              << "  " << output << "_coast.ps  the mesh with the coast lines forced in, drawn in red\n";
    return dt.is2D() && bHoleValid && bCoastHolds ? EXIT_SUCCESS : EXIT_FAILURE;
}
