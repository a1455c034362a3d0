#pragma once

#include "Point2.h"
#include "Quor2DExport.h"

#include <iosfwd>

namespace ZELK_QUOR2D
{

/// A directed straight segment between two detached points.
class QUOR2D_API Segment2
{
public:
    Segment2() = default;
    Segment2(Point2 source, Point2 target) : src(source), trg(target) {}

    Point2 getSrc() const { return src; }
    Point2 getTrg() const { return trg; }
    void swapSrcTrg();

private:
    Point2 src;
    Point2 trg;
};

/// Writes "Segment2: source,target" with both ends in the form of Point2.
QUOR2D_API std::ostream& operator<<(std::ostream& stream, const Segment2& segment);

} // namespace ZELK_QUOR2D
