#pragma once

#include "Quor_2D.h"

#include <vector>

namespace fuzz
{

/// A zone of the library together with what it was made from, and what must be in it by the plainest search.
class ZoneModel
{
public:
    using Triangles = std::vector<ZELK_QUOR2D::Triangle2*>;

    explicit ZoneModel(ZELK_QUOR2D::Zone2* pLibraryZone) : pZone(pLibraryZone) {}

    ZELK_QUOR2D::Zone2* pZone;
    ZELK_QUOR2D::ConstraintGraph2* pGraph = nullptr;
    ZELK_QUOR2D::Point2 startPoint{0.0, 0.0};
    ZELK_QUOR2D::Zone2* pInput0 = nullptr; // of a result
    ZELK_QUOR2D::Zone2* pInput1 = nullptr;

    /// Whether asking for triangles makes sense: a polygon must have at least one edge in the mesh.
    bool isReady(const ZELK_QUOR2D::Quor_2D& dt) const;

    /// Compares getTriangles() with a search of its own.
    void check(const ZELK_QUOR2D::Quor_2D& dt) const;

    static Triangles trianglesOf(const ZELK_QUOR2D::Zone2* pLibraryZone);

private:
    void checkSide(const Triangles& vFound, const Triangles& vAll) const;
    void checkGrown(const Triangles& vFound, const Triangles& vAll) const;
    void checkResult(const Triangles& vFound) const;
};

} // namespace fuzz
