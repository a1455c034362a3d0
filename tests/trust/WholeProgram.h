#pragma once

#include "tests/support/PointSets.h"
#include "tests/trust/MeshSet.h"

#include <cstdlib>
#include <string>
#include <vector>

namespace ZELK_QUOR2D
{
namespace test
{

/// Does everything with one triangulation, step by step, so that the steps of several can be mixed.
class WholeProgram
{
public:
    static constexpr int kNumSteps = 8;

    /// @param prefix  of the files that step 7 writes
    WholeProgram(std::uint64_t programSeed, const std::string& prefix, int numPoints = 400)
        : seed(programSeed), filePrefix(prefix), vCloud(uniformPoints(numPoints, programSeed))
    {
    }

    void step(int number)
    {
        switch (number) {
        case 0:
            dt.insert(vCloud, vHandles);
            break;
        case 1:
            for (const Point2& p : gridPoints(9, 9, 0.125))
                vHandles.push_back(dt.insert(p));
            break;
        case 2:
            constrain();
            break;
        case 3:
            dt.applyConstraintsAndZones();
            makeZones();
            break;
        case 4: // most vertices that no constraint holds; the others are reported
            for (std::size_t i = 0; i < vHandles.size(); i += 3)
                if (vHandles[i] && vHandles[i]->getIncidentTriangle())
                    dt.remove(vHandles[i]);
            break;
        case 5:
            dt.refine(pDifference, 25.0, 1e-3, 0.1, true);
            break;
        case 6:
            query();
            break;
        default:
            dt.show(filePrefix + ".ps");
            dt.writeObj(filePrefix + ".obj");
        }
    }

    void run()
    {
        for (int i = 0; i < kNumSteps; ++i)
            step(i);
    }

    MeshSet mesh() const { return meshSetOf(dt); }
    const Quor_2D& triangulation() const { return dt; }

private:
    void constrain()
    {
        const auto ring = [](std::vector<Point2> vRing) {
            std::vector<Segment2> vSegments;
            for (std::size_t i = 0; i < vRing.size(); ++i)
                vSegments.emplace_back(vRing[i], vRing[(i + 1) % vRing.size()]);
            return vSegments;
        };
        pOuter = dt.createConstraint(ring({{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}}), CIS_CONSTRAINED_DELAUNAY);
        pInner = dt.createConstraint(ring({{0.25, 0.25}, {0.75, 0.3}, {0.5, 0.75}}), CIS_CONFORMING_DELAUNAY);
        dt.createConstraint({Segment2({0.1, 0.1}, {0.9, 0.9}), Segment2({0.1, 0.9}, {0.9, 0.1})},
                            CIS_CONSTRAINED_DELAUNAY);
        Uniform u(seed + 1);
        for (ConstraintInsertionStrategy cis : {CIS_CONSTRAINED_DELAUNAY, CIS_CONFORMING_DELAUNAY}) {
            std::vector<Segment2> vCrossing;
            for (int i = 0; i < 12; ++i) {
                const double x0 = u(), y0 = u(), x1 = u();
                vCrossing.emplace_back(Point2(x0, y0), Point2(x1, u()));
            }
            dt.createConstraint(vCrossing, cis);
        }
    }
    void makeZones()
    {
        pDifference = zoneDifference(dt.createZone(pOuter, ZL_INSIDE), dt.createZone(pInner, ZL_INSIDE));
    }
    void query()
    {
        Uniform u(seed);
        for (int i = 0; i < 200; ++i) {
            const double x = u.in(-0.1, 1.1);
            dt.locate(Point2(x, u.in(-0.1, 1.1)));
        }
        dt.checkValidity(true, "whole program");
        dt.insert(Point2(0.5, std::nan(""))); // reported
        std::vector<Triangle2*> vTriangles;
        if (pDifference)
            pDifference->getTriangles(vTriangles);
    }

    std::uint64_t seed;
    std::string filePrefix;
    std::vector<Point2> vCloud;
    Quor_2D dt;
    std::vector<Point2*> vHandles;
    ConstraintGraph2* pOuter = nullptr;
    ConstraintGraph2* pInner = nullptr;
    Zone2* pDifference = nullptr;
};

} // namespace test
} // namespace ZELK_QUOR2D
