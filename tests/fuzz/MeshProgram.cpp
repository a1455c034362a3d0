#include "tests/fuzz/MeshProgram.h"

#include <cstdio>
#include <cstdlib>

namespace fuzz
{

using namespace ZELK_QUOR2D;

namespace
{

constexpr int kMaxSteps = 256;
constexpr std::size_t kMaxVertices = 1000; // keeps one run short; the checks are slower than the library
constexpr unsigned int kMaxChecked = 4000; // splitting segments of extreme lengths can make many more

} // namespace

void runMeshProgram(const std::uint8_t* pData, std::size_t numBytes)
{
    MeshProgram(pData, numBytes).run();
}

MeshProgram::MeshProgram(const std::uint8_t* pData, std::size_t numBytes) : in(pData, numBytes)
{
    const int mode = in.byte(); // most programs run in the standard mode
    static const int aRoundings[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
    rounding = mode < 192 ? FE_TONEAREST : aRoundings[mode & 3];
    bFlush = mode >= 192 && (mode & 4);
    bTrace = std::getenv("QUOR2D_FUZZ_TRACE") != nullptr;
}

void MeshProgram::run()
{
    std::srand(1);
    const int checkEvery = 1 + in.below(8);
    for (int step = 1; step <= kMaxSteps && !in.atEnd(); ++step) {
        silence.clear();
        runStep();
        require(bModeKept, "the floating-point mode has changed");
        if (dt.numberOfPoints() > kMaxChecked)
            break;
        if (step % checkEvery == 0)
            model.checkMesh();
    }
    if (dt.numberOfPoints() <= kMaxChecked) {
        model.checkMesh();
        checkZones();
    }
    checkValidity();
}

// The meaning of a number never changes, or the inputs in the repository would lose theirs.
void MeshProgram::runStep()
{
    const int operation = in.byte() & 63;
    if (operation < 16)
        insertOne();
    else if (operation < 19)
        insertVector(readPoints());
    else if (operation < 21)
        insertArray();
    else if (operation < 23)
        insertVector(points.readFamily(in));
    else if (operation < 26)
        locate();
    else if (operation < 34)
        removeVertex(someHandle());
    else if (operation == 34)
        removeMany();
    else if (operation == 35)
        findAdjacent();
    else if (operation == 36)
        model.checkStar(someHandle());
    else if (operation == 37)
        checkValidity();
    else if (operation == 38)
        draw();
    else if (operation < 41)
        createSegments(CIS_CONSTRAINED_DELAUNAY);
    else if (operation < 43)
        createSegments(CIS_CONFORMING_DELAUNAY);
    else if (operation < 45)
        createRing(operation == 43 ? CIS_CONSTRAINED_DELAUNAY : CIS_CONFORMING_DELAUNAY);
    else if (operation < 47)
        createFamily(operation == 45 ? CIS_CONSTRAINED_DELAUNAY : CIS_CONFORMING_DELAUNAY);
    else if (operation < 50)
        applyConstraints();
    else if (operation == 50)
        queryConstraints();
    else if (operation < 53)
        createZone();
    else if (operation == 53)
        createGrownZone();
    else if (operation == 54)
        combineZones();
    else if (operation == 55)
        deleteZone();
    else if (operation < 58)
        checkZones();
    else if (operation < 61)
        refine();
    else if (operation == 61)
        refineTriangles();
    else
        insertOne();
}

void MeshProgram::trace(const char* what, const std::vector<Point2>& vPoints) const
{
    if (!bTrace)
        return;
    std::fprintf(stderr, "%u points, %u triangles: %s", dt.numberOfPoints(), dt.numberOfTriangles(), what);
    for (const Point2& p : vPoints)
        std::fprintf(stderr, " (%.17g, %.17g)", p.x(), p.y());
    std::fprintf(stderr, "\n");
}

void MeshProgram::checkValidity()
{
    require(call([&] { return dt.checkValidity(true, "fuzz"); }), "checkValidity() found a defect");
}

bool MeshProgram::isFull() const
{
    return model.numberOfVertices() >= kMaxVertices;
}

Point2* MeshProgram::someHandle()
{
    const auto& vHandles = model.getHandles();
    return vHandles.empty() ? nullptr : vHandles[in.index(vHandles.size())];
}

std::vector<Point2> MeshProgram::readPoints()
{
    std::vector<Point2> vPoints;
    for (int n = in.below(24); n > 0; --n)
        vPoints.push_back(points.read(in));
    return vPoints;
}

void MeshProgram::insertOne()
{
    Point2 p = points.read(in);
    if (isFull())
        return;
    trace("insert", {p});
    p.setCustomIndex(nextIndex++);
    Point2* const pHandle = call([&] { return dt.insert(p); });
    model.noteInserted(p, pHandle);
}

void MeshProgram::insertVector(const std::vector<Point2>& vPoints)
{
    if (isFull())
        return;
    trace("insert", vPoints);
    std::vector<Point2*> vHandles(3, nullptr);
    call([&] { dt.insert(vPoints, vHandles); });
    require(vHandles.size() == vPoints.size(), "the number of handles");
    for (std::size_t i = 0; i < vPoints.size(); ++i)
        model.noteInserted(vPoints[i], vHandles[i]);
}

void MeshProgram::insertArray()
{
    const std::vector<Point2> vPoints = readPoints();
    if (isFull())
        return;
    trace("insert array", vPoints);
    std::vector<double> vCoordinates;
    for (const Point2& p : vPoints) {
        vCoordinates.push_back(p.x());
        vCoordinates.push_back(p.y());
    }
    const int n = static_cast<int>(vPoints.size());
    std::vector<Point2*> vHandles(vPoints.size(), nullptr);
    call([&] { dt.insert(n, vCoordinates.data(), vHandles.data()); });
    for (std::size_t i = 0; i < vPoints.size(); ++i)
        model.noteInserted(vPoints[i], vHandles[i]);
}

void MeshProgram::locate()
{
    const Point2 p = points.read(in);
    trace("locate", {p});
    model.checkLocation(p, call([&] { return dt.locate(p); }));
}

void MeshProgram::removeVertex(Point2* pVtx)
{
    if (pVtx)
        trace("remove", {*pVtx});
    const bool bAccepted = pVtx && model.isRemovable(pVtx);
    call([&] { dt.remove(pVtx); });
    if (bAccepted)
        model.noteRemoved(pVtx);
}

void MeshProgram::removeMany()
{
    const std::size_t stride = 1 + in.index(7);
    const std::vector<Point2*> vHandles = model.getHandles();
    for (std::size_t i = in.index(16); i < vHandles.size(); i += stride)
        removeVertex(vHandles[i]);
}

void MeshProgram::findAdjacent()
{
    Point2* const p0 = someHandle();
    Point2* const p1 = someHandle();
    if (p0 && p1)
        model.checkAdjacency(p0, p1, call([&] { return dt.getAdjacentTriangle(p0, p1); }));
}

void MeshProgram::draw()
{
    call([&] {
        dt.show("/dev/null");
        dt.writeObj("/dev/null");
    });
}

} // namespace fuzz
