#pragma once

#include "refine/RefineParams.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace ZELK_QUOR2D
{

class Dt2;
class Triangle2;

/// Measures the triangles of a zone against bounds and finds out why some miss them.
class ZoneQuality
{
public:
    /// Why refinement leaves a triangle as it is.
    enum Reason {
        REASON_NOT_REFINED,     ///< refinement with these bounds would change it
        REASON_INPUT_ANGLE,     ///< two constraints meet in it below the angle bound
        REASON_SHARP_CORNER,    ///< to change it would cut the tip off a sharp corner
        REASON_NO_SPLITTING,    ///< a constraint is in the way, and splitting was not allowed
        REASON_MINIMUM_LENGTH,  ///< its own edges, or the halves of the constraint in the way, would be too short
        REASON_HULL,            ///< the hull is in the way, and no constraint runs there
        REASON_NO_CIRCUMCENTRE, ///< it is too flat, or too small, for its circumcentre to be trusted
        NUM_REASONS
    };

    /// @param params  the bounds; for the reasons also what else the zone was refined with
    ZoneQuality(Dt2& triangulation, const RefineParams& params);

    void measure(const std::vector<Triangle2*>& vTriangles);

    /// Writes report lines.
    void report(const std::string& name) const;

    /// Draws the zone, triangles that miss the bounds filled, to the page name.ps.
    void draw(const std::string& name) const;

private:
    static constexpr int kNumAngleClasses = 6; // of ten degrees, by the smallest angle

    struct Miss {
        const Triangle2* pT;
        Reason reason;
    };

    bool missesBounds(const Triangle2* pT);
    Reason findReason(Triangle2* pT) const;

    Dt2& dt;
    RefineParams params;
    std::vector<Triangle2*> vAll;
    std::vector<Miss> vMisses;
    std::array<std::size_t, kNumAngleClasses> aAngleClasses{};
    std::array<std::size_t, NUM_REASONS> aReasons{};
    std::size_t numSmallAngles = 0;
    std::size_t numLongEdges = 0;
    double smallestAngle;
    double largestAngle;
    double shortestEdge;
    double longestEdge;
};

} // namespace ZELK_QUOR2D
