#pragma once

#include "Point2.h"
#include "refine/RefineParams.h"

#include <array>

namespace ZELK_QUOR2D
{

class ConstraintSegment2;
class Dt2;
class Triangle2;

/// The height of a triangle over its longest edge.
double heightOf(const Triangle2& triangle);

/// Whether a triangle lies between constraints that coincide but for rounding: so thin that rounding gave it its shape,
/// and with an end of a constraint over its longest edge. Such triangles are no reason to insert anything: it would
/// take edges as short as they are thin.
bool isRoundingGap(const Triangle2& triangle);

/// What the lengths of the edges tell about a triangle.
class QuickTest
{
public:
    explicit QuickTest(const Triangle2& triangle);

    /// Whether they tell that it meets the bounds. A false answer says nothing.
    bool clearlyMeets(const RefineParams& params) const;

    /// But for rounding, and never NaN.
    double circumRadius() const;

private:
    double shortest2; // squared
    double middle2;
    double longest2;
    double doubledArea;
};

/// A triangle that may have to be refined, and where the point that would do it lies.
class RefineCandidate
{
public:
    /// Where the way to the Steiner point ends, besides 0, 1, 2: the edge of the containing triangle that blocks it.
    enum SplitIndex { SPLIT_NONE = -1, SPLIT_AT_CORNER = 4, SPLIT_LOST = 5 };

    /// Finds the Steiner point, the circumcentre, but not yet the triangle that contains it.
    RefineCandidate(Dt2* pTriangulation, Triangle2* pTestedTriangle);

    /// Whether the triangle misses the bounds and there is something to do about it. Walks to the Steiner point if the
    /// lengths say that the triangle misses them; then pContainingT and splitIndex are known.
    bool needRefinement(const RefineParams& params);

    /// The part of needRefinement() that depends on more than the triangle, for one that misses the bounds.
    bool isRefinable(const RefineParams& params);

    /// The part of needRefinement() that depends on nothing but the triangle.
    bool missesBounds(const RefineParams& params) const;

    /// Whether two constraints that meet in a corner of the triangle make it impossible to reach the bound.
    bool hasSmallInputAngle(double minAngleDegree) const;

    Dt2* pDt;
    Triangle2* pTriangle;
    Triangle2* pContainingT; // where the walk stopped
    Point2 steinerPoint;
    double circumRadius = 0.0;
    int splitIndex = SPLIT_NONE;
    bool bValid = false;
    std::array<double, 3> aSqLengths;    // ascending
    Point2* pSparedCorner = nullptr;     // the sharp corner for whose sake nothing is done
    ConstraintSegment2* pCSeg = nullptr; // what runs along the edge of splitIndex

private:
    bool isWorthwhile(const RefineParams& params);
    bool isWorthInserting(const RefineParams& params);
    void walk();
    int findExit(int ith, int numEdges, bool& bOnEdge) const;
    int findBlockingEdgeUnderPoint() const;
    void setSplitIndex(int index);
};

} // namespace ZELK_QUOR2D
