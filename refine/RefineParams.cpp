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

} // namespace

RefineParams::RefineParams(Dt2* pTriangulation, Zone2* pRefinedZone, double angleDegree, double minLength,
                           double maxLength, bool bSplitConstraints)
    : pDt(pTriangulation), pZone(pRefinedZone), minAngleDegree(angleDegree), minEdgeLength(std::max(0.0, minLength)),
      maxEdgeLength(maxLength), bAllowConstraintSplitting(bSplitConstraints),
      sqMinEdgeLength(minEdgeLength * minEdgeLength), sqMaxEdgeLength(maxEdgeLength * maxEdgeLength),
      maxRadiusEdgeRatio(radiusEdgeRatio(angleDegree / 180.0 * kPi))
{
}

// Deliberate: these numbers are part of the interface.
RefineParams::RefineParams(Dt2* pTriangulation, bool bSplitConstraints)
    : pDt(pTriangulation), pZone(nullptr), minAngleDegree(5.732), minEdgeLength(0.1),
      maxEdgeLength(std::numeric_limits<double>::max()), bAllowConstraintSplitting(bSplitConstraints),
      sqMinEdgeLength(0.01), sqMaxEdgeLength(std::numeric_limits<double>::infinity()),
      maxRadiusEdgeRatio(radiusEdgeRatio(0.10004227272431497))
{
}

} // namespace ZELK_QUOR2D
