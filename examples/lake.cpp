// What the library is for: a real region as a mesh for computations. The Caspian Sea is what lies within its shore but
// on none of its islands; refined so that no angle is below 27 degrees, drawn, and written for other programs.
// Usage: lake [data folder [output folder]]
#include "Outlines.h"
#include "Quor_2D.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <limits>
#include <locale>
#include <string>
#include <unordered_map>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

constexpr double kMinAngle = 27.0;      // degrees
constexpr double kMinEdgeLength = 0.02; // kilometres
constexpr double kMaxEdgeLength = 40.0;

struct Lake {
    Zone2* pWater = nullptr;
    Zone2* pIslands = nullptr;
};

// The first ring is the shore, the others are islands: a graph for each, then a difference of zones.
Lake makeLake(Quor_2D& dt, const Outlines& outlines)
{
    std::vector<ConstraintGraph2*> vGraphs;
    for (const std::vector<Segment2>& vRing : segmentsOfRings(outlines))
        vGraphs.push_back(dt.createConstraint(vRing, CIS_CONSTRAINED_DELAUNAY));
    dt.applyConstraintsAndZones();
    Lake lake;
    for (std::size_t i = 1; i < vGraphs.size(); ++i) {
        Zone2* const pIsland = dt.createZone(vGraphs[i], ZL_INSIDE);
        lake.pIslands = lake.pIslands ? zoneUnion(lake.pIslands, pIsland) : pIsland;
    }
    lake.pWater = zoneDifference(dt.createZone(vGraphs[0], ZL_INSIDE), lake.pIslands);
    return lake;
}

std::vector<Triangle2*> trianglesOf(const Zone2* pZone)
{
    std::vector<Triangle2*> vTriangles;
    pZone->getTriangles(vTriangles);
    return vTriangles;
}

double areaOf(const Zone2* pZone)
{
    double area = 0;
    for (const Triangle2* pT : trianglesOf(pZone))
        area += pT->getArea();
    return area;
}

// The area by the outlines alone: islands run clockwise and count as negative.
double areaOf(const Outlines& outlines)
{
    double area = 0;
    for (const std::vector<Segment2>& vRing : segmentsOfRings(outlines))
        for (const Segment2& s : vRing)
            area += 0.5 * (s.getSrc().x() * s.getTrg().y() - s.getTrg().x() * s.getSrc().y());
    return area;
}

// In degrees.
double smallestAngle(const Triangle2& triangle)
{
    double smallest = 180;
    for (int i = 0; i < 3; ++i) {
        const double a = triangle.getSquaredEdgeLength(i);
        const double b = triangle.getSquaredEdgeLength((i + 1) % 3), c = triangle.getSquaredEdgeLength((i + 2) % 3);
        smallest = std::min(smallest, std::acos((b + c - a) / (2 * std::sqrt(b * c))) * 180 / 3.14159265358979);
    }
    return smallest;
}

// Water in deeper blue the smaller the triangles, islands like sand, the shore dark.
void draw(const Quor_2D& dt, const Lake& lake, const std::string& filename)
{
    Visualizer2 page(filename);
    for (const Triangle2* pT : trianglesOf(lake.pWater)) {
        const double t = std::clamp(std::log2(pT->getArea() / 0.05) / 14, 0.0, 1.0);
        const double step = std::round(t * 12) / 12; // few colours keep the page small
        page.addObject(*pT, Color(0.16 + 0.70 * step, 0.42 + 0.50 * step, 0.66 + 0.32 * step, 0.05, true));
    }
    page.addObject(trianglesOf(lake.pIslands), Color(0.93, 0.83, 0.55, 0.05, true));
    page.addObject(trianglesOf(lake.pWater), Color(0.10, 0.26, 0.42, 0.07, false));
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    for (Triangle2* pT : vTriangles)
        for (int i = 0; i < 3; ++i)
            if (dt.isConstraint(pT, i))
                page.addObject(Segment2(*pT->getCorner((i + 1) % 3), *pT->getCorner((i + 2) % 3)),
                               Color(0.25, 0.20, 0.10, 0.7, false));
    page.writeFile();
}

// The triangles of a zone with numbered corners, as the formats want them.
struct Numbered {
    std::vector<const Point2*> vPoints;
    std::vector<std::size_t> vCorners; // three for each triangle
};

Numbered numberCorners(const std::vector<Triangle2*>& vTriangles)
{
    Numbered mesh;
    std::unordered_map<const Point2*, std::size_t> mNumbers;
    for (const Triangle2* pT : vTriangles)
        for (int i = 0; i < 3; ++i) {
            const auto [it, bNew] = mNumbers.emplace(pT->getCorner(i), mesh.vPoints.size());
            if (bNew)
                mesh.vPoints.push_back(pT->getCorner(i));
            mesh.vCorners.push_back(it->second);
        }
    return mesh;
}

// Opens a file for numbers that read back as they are.
std::ofstream openOutput(const std::string& filename)
{
    std::ofstream file(filename);
    file.imbue(std::locale::classic());
    file.precision(std::numeric_limits<double>::max_digits10);
    return file;
}

bool writeObj(const Numbered& mesh, const std::string& filename)
{
    std::ofstream file = openOutput(filename);
    for (const Point2* p : mesh.vPoints)
        file << "v " << p->x() << ' ' << p->y() << " 0\n";
    for (std::size_t i = 0; i < mesh.vCorners.size(); i += 3)
        file << "f " << mesh.vCorners[i] + 1 << ' ' << mesh.vCorners[i + 1] + 1 << ' ' << mesh.vCorners[i + 2] + 1
             << '\n';
    return file.flush().good();
}

// An unstructured grid for VTK, with the smallest angle of each triangle to colour it by.
bool writeVtu(const Numbered& mesh, const std::vector<Triangle2*>& vTriangles, const std::string& filename)
{
    std::ofstream file = openOutput(filename);
    const auto array = [&file](const char* type, const char* name, const char* more) {
        file << "<DataArray type=\"" << type << "\" Name=\"" << name << "\"" << more << " format=\"ascii\">\n";
    };
    file << "<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\" version=\"0.1\" "
            "byte_order=\"LittleEndian\">\n<UnstructuredGrid>\n<Piece NumberOfPoints=\""
         << mesh.vPoints.size() << "\" NumberOfCells=\"" << vTriangles.size() << "\">\n<Points>\n";
    array("Float64", "Points", " NumberOfComponents=\"3\"");
    for (const Point2* p : mesh.vPoints)
        file << p->x() << ' ' << p->y() << " 0\n";
    file << "</DataArray>\n</Points>\n<Cells>\n";
    array("Int64", "connectivity", "");
    for (std::size_t i = 0; i < mesh.vCorners.size(); i += 3)
        file << mesh.vCorners[i] << ' ' << mesh.vCorners[i + 1] << ' ' << mesh.vCorners[i + 2] << '\n';
    file << "</DataArray>\n";
    array("Int64", "offsets", "");
    for (std::size_t i = 1; i <= vTriangles.size(); ++i)
        file << 3 * i << '\n';
    file << "</DataArray>\n";
    array("UInt8", "types", "");
    for (std::size_t i = 0; i < vTriangles.size(); ++i)
        file << "5\n"; // a triangle
    file << "</DataArray>\n</Cells>\n<CellData Scalars=\"smallest_angle\">\n";
    array("Float64", "smallest_angle", "");
    for (const Triangle2* pT : vTriangles)
        file << smallestAngle(*pT) << '\n';
    file << "</DataArray>\n</CellData>\n</Piece>\n</UnstructuredGrid>\n</VTKFile>\n";
    return file.flush().good();
}

} // namespace

int main(int argc, char** argv)
{
    const std::string input = std::string(argc > 1 ? argv[1] : "examples/data") + "/caspian_sea.txt";
    const std::string output = std::string(argc > 2 ? argv[2] : ".") + "/caspian";
    Outlines outlines = readOutlines(input);
    if (outlines.vPoints.empty()) {
        std::fprintf(stderr, "lake: no points in %s\n", input.c_str());
        return EXIT_FAILURE;
    }
    projectToKilometres(outlines);
    std::cout << "The Caspian Sea: a shore and " << outlines.numRings - 1 << " islands, " << outlines.vPoints.size()
              << " points\n";

    Quor_2D dt;
    const Lake lake = makeLake(dt, outlines);
    std::cout << "Shore minus islands: " << trianglesOf(lake.pWater).size() << " triangles, "
              << std::lround(areaOf(lake.pWater)) << " square kilometres of water\n";

    dt.refine(lake.pWater, kMinAngle, kMinEdgeLength, kMaxEdgeLength, true);
    const std::vector<Triangle2*> vWater = trianglesOf(lake.pWater);
    const double area = areaOf(lake.pWater);
    std::cout << "Refined at " << kMinAngle << " degrees: " << vWater.size() << " triangles, still "
              << std::lround(area) << " square kilometres. What still misses the bounds, and why:\n";
    dt.checkZoneQuality(lake.pWater, kMinAngle, kMaxEdgeLength, output + "_quality", AcceptExperimentalFeature());

    draw(dt, lake, output + ".ps");
    const Numbered mesh = numberCorners(vWater);
    const bool bWritten = writeObj(mesh, output + ".obj") && writeVtu(mesh, vWater, output + ".vtu");
    const bool bAreaHolds = std::fabs(area - areaOf(outlines)) < 1e-9 * area;
    const bool bValid = dt.checkValidity(false, "lake");
    std::cout << "Look at:\n"
              << "  " << output << ".ps   the mesh of the water as a PostScript page\n"
              << "  " << output << ".vtu  the same for VTK and its viewers, with the smallest angle of each triangle\n"
              << "  " << output << ".obj  the same for any 3D viewer, in kilometres\n"
              << "  " << output << "_quality.ps  the triangles that miss the bounds, filled\n";
    return bWritten && bAreaHolds && bValid ? EXIT_SUCCESS : EXIT_FAILURE;
}
