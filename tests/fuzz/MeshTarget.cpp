#include "Quor_2D.h"
#include "tests/fuzz/ByteReader.h"
#include "tests/fuzz/MeshModel.h"
#include "tests/fuzz/PointChoice.h"
#include "tests/fuzz/Targets.h"
#include "tests/support/HostMode.h"

#include <cstdlib>
#include <iostream>
#include <streambuf>
#include <string>

namespace fuzz
{

namespace
{

using namespace ZELK_QUOR2D;

constexpr int kMaxSteps = 256;
constexpr std::size_t kMaxVertices = 1000; // keeps one run short; the checks are slower than the library

// Discards what the library reports, yet lets it format everything.
class SilentOutput : std::streambuf
{
public:
    SilentOutput() : pSaved(std::cout.rdbuf(this)) { savedFormat.copyfmt(std::cout); }
    ~SilentOutput() override
    {
        std::cout.rdbuf(pSaved);
        std::cout.copyfmt(savedFormat);
    }

private:
    int overflow(int c) override { return c == EOF ? 0 : c; }
    std::streambuf* pSaved;
    std::ios savedFormat{nullptr};
};

class MeshProgram
{
public:
    MeshProgram(const std::uint8_t* pData, std::size_t numBytes) : in(pData, numBytes)
    {
        const int mode = in.byte(); // most programs run in the standard mode
        static const int aRoundings[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
        rounding = mode < 192 ? FE_TONEAREST : aRoundings[mode & 3];
        bFlush = mode >= 192 && (mode & 4);
    }

    void run()
    {
        std::srand(1);
        const int checkEvery = 1 + in.below(8);
        for (int step = 1; step <= kMaxSteps && !in.atEnd(); ++step) {
            runStep();
            if (step % checkEvery == 0)
                model.checkMesh();
        }
        model.checkMesh();
        checkValidity();
    }

private:
    // Calls the library in the floating-point mode of the host.
    template <class Call>
    auto call(Call libraryCall)
    {
        const test::HostMode host(rounding, bFlush);
        struct ModeCheck {
            const test::HostMode& host;
            bool& bUnchanged;
            ~ModeCheck() { bUnchanged = bUnchanged && host.isUnchanged(); }
        };
        const ModeCheck check{host, bModeKept};
        return libraryCall();
    }

    // The meaning of a number never changes, or the inputs in the repository would lose theirs.
    void runStep()
    {
        const int operation = in.byte() & 63;
        if (operation < 16)
            insertOne();
        else if (operation < 19)
            insertBatch();
        else if (operation < 21)
            insertArray();
        else if (operation < 23)
            insertFamily();
        else if (operation < 26)
            locate();
        else if (operation < 34)
            remove();
        else if (operation == 34)
            removeMany();
        else if (operation == 35)
            findAdjacent();
        else if (operation == 36)
            checkSomeStar();
        else if (operation == 37)
            checkValidity();
        else if (operation == 38)
            draw();
        else
            insertOne();
    }

    void checkValidity()
    {
        require(call([&] { return dt.checkValidity(true, "fuzz"); }), "checkValidity() found a defect");
    }

    bool isFull() const { return model.numberOfVertices() >= kMaxVertices; }

    Point2* someHandle()
    {
        const auto& vHandles = model.getHandles();
        return vHandles.empty() ? nullptr : vHandles[in.index(vHandles.size())];
    }

    void insertOne()
    {
        Point2 p = points.read(in);
        if (isFull())
            return;
        p.setCustomIndex(nextIndex++);
        Point2* const pHandle = call([&] { return dt.insert(p); });
        model.noteInserted(p, pHandle);
        require(bModeKept, "the floating-point mode has changed");
    }

    void insertVector(const std::vector<Point2>& vPoints)
    {
        if (isFull())
            return;
        std::vector<Point2*> vHandles(3, nullptr);
        call([&] { dt.insert(vPoints, vHandles); });
        require(vHandles.size() == vPoints.size(), "the number of handles");
        for (std::size_t i = 0; i < vPoints.size(); ++i)
            model.noteInserted(vPoints[i], vHandles[i]);
        require(bModeKept, "the floating-point mode has changed");
    }

    std::vector<Point2> readPoints()
    {
        std::vector<Point2> vPoints;
        for (int n = in.below(24); n > 0; --n)
            vPoints.push_back(points.read(in));
        return vPoints;
    }

    void insertBatch() { insertVector(readPoints()); }

    void insertFamily() { insertVector(points.readFamily(in)); }

    void insertArray()
    {
        const std::vector<Point2> vPoints = readPoints();
        if (isFull())
            return;
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

    void locate()
    {
        const Point2 p = points.read(in);
        model.checkLocation(p, call([&] { return dt.locate(p); }));
        require(bModeKept, "the floating-point mode has changed");
    }

    void remove()
    {
        if (Point2* const pVtx = someHandle())
            removeVertex(pVtx);
    }

    void removeVertex(Point2* pVtx)
    {
        const bool bAccepted = model.isLive(pVtx) && dt.numberOfTriangles() > 0;
        call([&] { dt.remove(pVtx); });
        if (bAccepted)
            model.noteRemoved(pVtx);
        require(bModeKept, "the floating-point mode has changed");
    }

    void removeMany()
    {
        const std::size_t stride = 1 + in.index(7);
        const std::vector<Point2*> vHandles = model.getHandles();
        for (std::size_t i = in.index(16); i < vHandles.size(); i += stride)
            removeVertex(vHandles[i]);
    }

    void findAdjacent()
    {
        Point2* const p0 = someHandle();
        Point2* const p1 = someHandle();
        if (p0 && p1)
            model.checkAdjacency(p0, p1, call([&] { return dt.getAdjacentTriangle(p0, p1); }));
    }

    void checkSomeStar()
    {
        if (Point2* const pVtx = someHandle())
            model.checkStar(pVtx);
    }

    void draw()
    {
        call([&] {
            dt.show("/dev/null");
            dt.writeObj("/dev/null");
        });
    }

    ByteReader in;
    SilentOutput silence;
    PointChoice points;
    Quor_2D dt;
    MeshModel model{dt};
    int rounding = FE_TONEAREST;
    bool bFlush = false;
    bool bModeKept = true;
    int nextIndex = 0;
};

} // namespace

void runMeshProgram(const std::uint8_t* pData, std::size_t numBytes)
{
    MeshProgram(pData, numBytes).run();
}

} // namespace fuzz
