#pragma once

#include "Quor_2D.h"
#include "tests/fuzz/ByteReader.h"
#include "tests/fuzz/MeshModel.h"
#include "tests/fuzz/PointChoice.h"
#include "tests/fuzz/SilentOutput.h"
#include "tests/fuzz/Targets.h"
#include "tests/fuzz/ZoneModel.h"
#include "tests/support/HostMode.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace fuzz
{

/// A fuzz input as a program of operations on one triangulation. Every operation is compared with the model.
class MeshProgram
{
public:
    MeshProgram(const std::uint8_t* pData, std::size_t numBytes);

    void run();

private:
    // Calls the library in the floating-point mode of the host.
    template <class Call>
    auto call(Call libraryCall)
    {
        const ZELK_QUOR2D::test::HostMode host(rounding, bFlush);
        struct ModeCheck {
            const ZELK_QUOR2D::test::HostMode& hostMode;
            bool& bUnchanged;
            ~ModeCheck() { bUnchanged = bUnchanged && hostMode.isUnchanged(); }
        };
        const ModeCheck check{host, bModeKept};
        return libraryCall();
    }

    void runStep();
    void trace(const char* what, const std::vector<ZELK_QUOR2D::Point2>& vPoints) const;
    void checkValidity();
    bool isFull() const;
    ZELK_QUOR2D::Point2* someHandle();
    std::vector<ZELK_QUOR2D::Point2> readPoints();

    // ---- points (MeshProgram.cpp)
    void insertOne();
    void insertVector(const std::vector<ZELK_QUOR2D::Point2>& vPoints);
    void insertArray();
    void locate();
    void removeVertex(ZELK_QUOR2D::Point2* pVtx);
    void removeMany();
    void findAdjacent();
    void draw();

    // ---- constraints (ConstraintSteps.cpp)
    void createSegments(ZELK_QUOR2D::ConstraintInsertionStrategy cis);
    void createRing(ZELK_QUOR2D::ConstraintInsertionStrategy cis);
    void createFamily(ZELK_QUOR2D::ConstraintInsertionStrategy cis);
    void create(const std::vector<ZELK_QUOR2D::Segment2>& vSegments, ZELK_QUOR2D::ConstraintInsertionStrategy cis);
    void applyConstraints();
    void queryConstraints();

    // ---- zones and refinement (ZoneSteps.cpp)
    ZoneModel* someZone();
    ZELK_QUOR2D::ConstraintGraph2* someGraph();
    void keepZone(ZELK_QUOR2D::Zone2* pZone, const ZoneModel& zone);
    void createZone();
    void createGrownZone();
    void combineZones();
    void deleteZone();
    bool isReady(const ZoneModel& zone) const;
    void checkZones() const;
    void refine();
    void refineTriangles();
    void noteRefined(bool bDone);

    ByteReader in;
    SilentOutput silence;
    PointChoice points;
    ZELK_QUOR2D::Quor_2D dt;
    MeshModel model{dt};
    int rounding;
    bool bFlush;
    bool bModeKept = true;
    bool bTrace; // set QUOR2D_FUZZ_TRACE to see on standard error what an input does
    int nextIndex = 0;
    std::size_t numSegments = 0;
    std::vector<ZoneModel> vZones;
    int numRefinements = 0;
};

} // namespace fuzz
