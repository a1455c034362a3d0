#include "refine/ZoneQuality.h"

#include "Color.h"
#include "Triangle2.h"
#include "Visualizer2.h"
#include "core/Dt2.h"
#include "geometry/TriangleIndex.h"
#include "output/Message.h"
#include "refine/RefineCandidate.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

namespace ZELK_QUOR2D
{

namespace
{

const char* const kPlace = "Quor_2D::checkZoneQuality()";

const char* const kReasonTexts[ZoneQuality::NUM_REASONS] = {
    "not refined with these bounds",
    "constraints meet below the angle bound",
    "beside a sharp corner of constraints",
    "a constraint is in the way, splitting is not allowed",
    "edges would get shorter than the minimum",
    "the hull is in the way, without a constraint",
    "too flat or too small for a circumcentre",
};

// How far an angle may stay below the bound by rounding.
constexpr double kAngleTolerance = 1e-9;

double angleAt(const Triangle2* pT, int i)
{
    const Point2 &p = *pT->getCorner(i), &a = *pT->getCorner(next(i)), &b = *pT->getCorner(prev(i));
    const double ax = a.x() - p.x(), ay = a.y() - p.y(), bx = b.x() - p.x(), by = b.y() - p.y();
    return std::atan2(std::fabs(ax * by - ay * bx), ax * bx + ay * by) * (180.0 / 3.141592653589793);
}

Color colorOf(ZoneQuality::Reason reason)
{
    if (reason == ZoneQuality::REASON_NOT_REFINED)
        return Color(0.85, 0.1, 0.1, 0.1, true);
    if (reason == ZoneQuality::REASON_INPUT_ANGLE || reason == ZoneQuality::REASON_SHARP_CORNER)
        return Color(0.95, 0.75, 0.2, 0.1, true);
    return Color(0.95, 0.5, 0.15, 0.1, true);
}

} // namespace

ZoneQuality::ZoneQuality(Dt2& triangulation, const RefineParams& bounds)
    : dt(triangulation), params(bounds), smallestAngle(180.0), largestAngle(0.0),
      shortestEdge(std::numeric_limits<double>::infinity()), longestEdge(0.0)
{
}

void ZoneQuality::measure(const std::vector<Triangle2*>& vTriangles)
{
    vAll = vTriangles;
    for (Triangle2* pT : vAll) {
        if (!missesBounds(pT))
            continue;
        vMisses.push_back(Miss{pT, findReason(pT)});
        ++aReasons[vMisses.back().reason];
    }
}

bool ZoneQuality::missesBounds(const Triangle2* pT)
{
    double smallest = 180.0, longest = 0.0;
    for (int i = 0; i < 3; ++i) {
        const double angle = angleAt(pT, i), edge = std::sqrt(pT->getSquaredEdgeLength(i));
        smallest = std::min(smallest, angle);
        largestAngle = std::max(largestAngle, angle);
        longest = std::max(longest, edge);
        shortestEdge = std::min(shortestEdge, edge);
    }
    smallestAngle = std::min(smallestAngle, smallest);
    longestEdge = std::max(longestEdge, longest);
    ++aAngleClasses[static_cast<std::size_t>(std::clamp(static_cast<int>(smallest / 10.0), 0, kNumAngleClasses - 1))];
    const bool bSmallAngle = smallest < params.minAngleDegree - kAngleTolerance;
    const bool bLongEdge = longest > params.maxEdgeLength;
    numSmallAngles += bSmallAngle ? 1 : 0;
    numLongEdges += bLongEdge ? 1 : 0;
    return bSmallAngle || bLongEdge;
}

// The same questions, in the same order, as refinement asks.
ZoneQuality::Reason ZoneQuality::findReason(Triangle2* pT) const
{
    RefineCandidate candidate(&dt, pT);
    if (!candidate.bValid)
        return REASON_NO_CIRCUMCENTRE;
    const bool bLongEdge = candidate.aSqLengths[2] > params.sqMaxEdgeLength;
    if (!bLongEdge && candidate.hasSmallInputAngle(params.minAngleDegree))
        return REASON_INPUT_ANGLE;
    if (!bLongEdge && isRoundingGap(*pT))
        return REASON_NO_CIRCUMCENTRE;
    const bool bNeeded = candidate.needRefinement(params);
    if (candidate.pSparedCorner)
        return REASON_SHARP_CORNER;
    if (candidate.splitIndex < 0 || candidate.splitIndex > 2)
        return bNeeded || candidate.splitIndex != RefineCandidate::SPLIT_NONE ? REASON_NOT_REFINED
                                                                              : REASON_MINIMUM_LENGTH;
    if (!dt.isConstraint(candidate.pContainingT, candidate.splitIndex))
        return REASON_HULL;
    if (!params.bAllowConstraintSplitting)
        return REASON_NO_SPLITTING;
    const double squaredLength = candidate.pContainingT->getSquaredEdgeLength(candidate.splitIndex);
    return bNeeded && std::sqrt(squaredLength) >= 2.0 * params.minEdgeLength ? REASON_NOT_REFINED
                                                                             : REASON_MINIMUM_LENGTH;
}

void ZoneQuality::report(const std::string& name) const
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    const auto line = [&] {
        reportInfo(kPlace, name + ": " + text.str());
        text.str("");
    };
    text << vAll.size() << " triangles, angles from " << smallestAngle << " to " << largestAngle
         << " degrees, edges from " << shortestEdge << " to " << longestEdge;
    line();
    text << "smallest angles by tens of degrees:";
    for (const std::size_t count : aAngleClasses)
        text << " " << count;
    line();
    text << numSmallAngles << " triangles below " << params.minAngleDegree << " degrees";
    if (std::isfinite(params.maxEdgeLength))
        text << ", " << numLongEdges << " with an edge above " << params.maxEdgeLength;
    line();
    for (std::size_t reason = 0; reason < NUM_REASONS; ++reason) {
        if (aReasons[reason] == 0)
            continue;
        text << aReasons[reason] << " of them: " << kReasonTexts[reason];
        line();
    }
}

void ZoneQuality::draw(const std::string& name) const
{
    Visualizer2 page(name + ".ps");
    page.addObject(vAll, Color(0.6, 0.6, 0.6, 0.1, false));
    for (const Miss& miss : vMisses)
        page.addObject(*miss.pT, colorOf(miss.reason));
    page.writeFile();
}

} // namespace ZELK_QUOR2D
