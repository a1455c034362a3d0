#include "refine/RefineParams.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ZELK_QUOR2D
{

namespace
{

constexpr double kPi = 3.141592653589793;

// A triangle with smallest angle a has radius over shortest edge 0.5 / sin(a).
double radiusEdgeRatio(double angleRadian)
{
    return angleRadian > 0.0 ? 0.5 / std::sin(angleRadian) : std::numeric_limits<double>::infinity();
}

// Corners at or above the bound need no exemption; by measurement, down to 20 degrees. Without one below that the
// pieces there would be halved without end.
double sharpCosineFor(double minAngleDegree)
{
    return std::cos(std::max(20.0, minAngleDegree) / 180.0 * kPi);
}

} // namespace

RefineParams::RefineParams(Dt2* pTriangulation, Zone2* pRefinedZone, double angleDegree, double minLength,
                           double maxLength, bool bSplitConstraints)
    : pDt(pTriangulation), pZone(pRefinedZone), minAngleDegree(angleDegree), minEdgeLength(std::max(0.0, minLength)),
      maxEdgeLength(maxLength), bAllowConstraintSplitting(bSplitConstraints),
      sqMinEdgeLength(minEdgeLength * minEdgeLength), sqMaxEdgeLength(maxEdgeLength * maxEdgeLength),
      maxRadiusEdgeRatio(radiusEdgeRatio(angleDegree / 180.0 * kPi)), sharpCosine(sharpCosineFor(angleDegree))
{
}

// Deliberate: these numbers are part of the interface.
RefineParams::RefineParams(Dt2* pTriangulation, bool bSplitConstraints)
    : pDt(pTriangulation), pZone(nullptr), minAngleDegree(5.732), minEdgeLength(0.1),
      maxEdgeLength(std::numeric_limits<double>::max()), bAllowConstraintSplitting(bSplitConstraints),
      sqMinEdgeLength(0.01), sqMaxEdgeLength(std::numeric_limits<double>::infinity()),
      maxRadiusEdgeRatio(radiusEdgeRatio(0.10004227272431497)), sharpCosine(sharpCosineFor(minAngleDegree))
{
}

} // namespace ZELK_QUOR2D
