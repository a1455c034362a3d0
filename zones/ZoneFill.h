#pragma once

#include "constraints/SegmentIndex.h"

#include <vector>

namespace ZELK_QUOR2D
{

class ConstraintGraph2;
class Dt2;
class Triangle2;

/// Collects the triangles that can be reached from some seeds without crossing an edge of the given graphs.
///
/// While it lives, the triangles found carry their mark (Triangle2::getState()); deliver() clears the marks.
class ZoneFill
{
public:
    /// @param vGraphs  null pointers among them are skipped
    ZoneFill(const Dt2& triangulation, const std::vector<ConstraintGraph2*>& vGraphs);

    /// Null is no seed.
    void addSeed(Triangle2* pT);

    bool hasSeeds() const { return !vFound.empty(); }

    /// Replaces the contents of the vector by the seeds and all that they reach, in the order of the addresses.
    void deliver(std::vector<Triangle2*>& vTriangles);

private:
    void spread();

    const Dt2& dt;
    SegmentIndex boundary;
    std::vector<Triangle2*> vFound;     // all marked triangles
    std::vector<Triangle2*> vWorkspace; // those of them whose neighbours have not been looked at
};

} // namespace ZELK_QUOR2D
