#include "core/HC2.h"

#include "output/Message.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace ZELK_QUOR2D
{

namespace
{

// Indexed by 4 * state + quadrant: the quadrant's place along the curve, and the orientation of the curve inside it.
constexpr std::uint8_t kDigit[16] = {0, 1, 3, 2, 0, 3, 1, 2, 2, 1, 3, 0, 2, 3, 1, 0};
constexpr std::uint8_t kNext[16] = {1, 0, 2, 0, 0, 3, 1, 1, 2, 2, 0, 3, 3, 1, 3, 2};

constexpr double kTinyExtent = 1e-280;
constexpr double kHugeExtent = 1e300;

} // namespace

void HC2::Axis::init(double low, double high, double cells)
{
    constexpr double largest = std::numeric_limits<double>::max();
    low = std::clamp(low, -largest, largest);
    high = std::clamp(high, -largest, largest);
    if (!(high > low)) {
        min = low;
        scale = 0.0;
        return;
    }
    // Without this the extent overflows, or the scale does. 2^900 cannot overflow a box of tiny extent: its
    // coordinates are at most 2^53 times the extent.
    if (high * 0.5 - low * 0.5 > kHugeExtent)
        preScale = 0x1p-2;
    else if (high - low < kTinyExtent)
        preScale = 0x1p+900;
    min = low * preScale;
    scale = cells / (high * preScale - min);
}

HC2::HC2(double minX, double minY, double maxX, double maxY, int keyBits)
    : numBits(keyBits), firstShift(keyBits - 2), gridSize(0)
{
    if (numBits < 2 || numBits > 32 || numBits % 2 != 0) {
        reportError("HC2::HC2(..)", "invalid bitlength");
        std::exit(1);
    }
    gridSize = std::uint64_t(1) << (numBits / 2);
    axisX.init(minX, maxX, static_cast<double>(gridSize));
    axisY.init(minY, maxY, static_cast<double>(gridSize));
}

std::uint32_t HC2::getIndex(double x, double y) const
{
    const double lastCell = static_cast<double>(gridSize - 1);
    const std::uint32_t xi = axisX.cell(x, lastCell);
    const std::uint32_t yi = axisY.cell(y, lastCell);
    unsigned state = 0;
    std::uint32_t key = 0;
    for (int shift = firstShift, bit = numBits / 2 - 1; shift >= 0; shift -= 2, --bit) {
        const unsigned index = 4 * state + 2 * ((xi >> bit) & 1u) + ((yi >> bit) & 1u);
        key |= static_cast<std::uint32_t>(kDigit[index]) << shift;
        state = kNext[index];
    }
    return key;
}

} // namespace ZELK_QUOR2D
