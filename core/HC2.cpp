#include "core/HC2.h"

#include "output/Message.h"

#include <algorithm>
#include <array>
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

// The same for two levels of quadrants at a time: half as many dependent look-ups. Indexed 16 * state + 4 * (two bits
// of x) + (two bits of y).
struct DoubleStep {
    std::uint8_t digits; // the place among sixteen
    std::uint8_t next;   // the orientation inside, times 16
};

constexpr std::array<DoubleStep, 64> makeDoubleSteps()
{
    std::array<DoubleStep, 64> aSteps{};
    for (unsigned index = 0; index < 64; ++index) {
        const unsigned state = index >> 4, x = (index >> 2) & 3, y = index & 3;
        const unsigned outer = 4 * state + 2 * (x >> 1) + (y >> 1);
        const unsigned inner = 4u * kNext[outer] + 2 * (x & 1) + (y & 1);
        aSteps[index].digits = static_cast<std::uint8_t>(4 * kDigit[outer] + kDigit[inner]);
        aSteps[index].next = static_cast<std::uint8_t>(16 * kNext[inner]);
    }
    return aSteps;
}

constexpr std::array<DoubleStep, 64> kDoubleSteps = makeDoubleSteps();

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

HC2::HC2(double minX, double minY, double maxX, double maxY, int keyBits) : numBits(keyBits), gridSize(0)
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
    int bit = numBits / 2;
    unsigned state = 0; // times 16
    std::uint32_t key = 0;
    if (bit % 2 != 0) {
        --bit;
        const unsigned index = 2 * ((xi >> bit) & 1u) + ((yi >> bit) & 1u);
        key = kDigit[index];
        state = 16u * kNext[index];
    }
    while (bit > 0) {
        bit -= 2;
        const DoubleStep step = kDoubleSteps[state | (((xi >> bit) & 3u) << 2) | ((yi >> bit) & 3u)];
        key = (key << 4) | step.digits;
        state = step.next;
    }
    return key;
}

} // namespace ZELK_QUOR2D
