#include "Segment2.h"

#include <ostream>
#include <utility>

namespace ZELK_QUOR2D
{

void Segment2::swapSrcTrg()
{
    std::swap(src, trg);
}

std::ostream& operator<<(std::ostream& stream, const Segment2& segment)
{
    return stream << "Segment2: " << segment.getSrc() << "," << segment.getTrg();
}

} // namespace ZELK_QUOR2D
