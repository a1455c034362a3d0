#pragma once

#include <vector>

namespace ZELK_QUOR2D
{

class ConstraintGraph2;
class Dt2;
class Point2;
class Triangle2;

/// Collects the triangles that can be reached from some seeds without crossing a border.
///
/// While it lives, triangles carry marks: those found Triangle2::getState(), those at the border TM_BORDER. deliver()
/// clears them. So no edge is looked up in a table while the triangles are collected.
class ZoneFill
{
public:
    explicit ZoneFill(const Dt2& triangulation) : dt(triangulation) {}
    ~ZoneFill();
    ZoneFill(const ZoneFill&) = delete;
    ZoneFill& operator=(const ZoneFill&) = delete;

    /// Makes the edge from p0 to p1 a border for triangles to its left. @return the triangle there, or null
    Triangle2* addBorder(const Point2* p0, const Point2* p1);

    /// Makes all alive segments of a graph borders on both sides.
    void addBorders(const ConstraintGraph2& graph);

    /// Null is no seed.
    void addSeed(Triangle2* pT);

    bool hasSeeds() const { return !vFound.empty(); }

    /// Replaces the contents of the vector by the seeds and all that they reach, in the order of the addresses.
    void deliver(std::vector<Triangle2*>& vTriangles);

private:
    void spread();
    void clearBorders();

    const Dt2& dt;
    std::vector<Triangle2*> vAtBorder;
    std::vector<Triangle2*> vFound; // all marked triangles
};

} // namespace ZELK_QUOR2D
