#include "tests/trust/SegmentWorlds.h"

using namespace small_worlds;

namespace
{

constexpr unsigned int kCornersOnly = 0b101000101u;
constexpr unsigned int kEverything = 0b111111111u;

} // namespace

TEST(SmallWorlds, EveryPairOfSegments)
{
    const std::vector<Segment2> vAll = latticeSegments();
    for (std::size_t i = 0; i < vAll.size(); ++i)
        for (std::size_t j = 0; j < vAll.size(); ++j)
            for (unsigned int strategies = 0; strategies < 4; ++strategies)
                for (const unsigned int first : {0u, kCornersOnly, kEverything}) {
                    SCOPED_TRACE(testing::Message() << i << " " << j << " " << strategies << " " << first);
                    applySegments({vAll[i], vAll[j]}, strategies, first);
                    if (HasFatalFailure())
                        return;
                }
}

// A sample of what AllTriplesTest.cpp runs in full.
TEST(SmallWorlds, SomeTriplesOfSegments)
{
    const std::vector<Segment2> vAll = latticeSegments();
    std::size_t number = 0;
    for (std::size_t i = 0; i < vAll.size(); ++i)
        for (std::size_t j = i + 1; j < vAll.size(); ++j)
            for (std::size_t k = j + 1; k < vAll.size(); ++k) {
                if (++number % 23 != 0)
                    continue;
                SCOPED_TRACE(testing::Message() << i << " " << j << " " << k << " " << number % 8);
                applySegments({vAll[i], vAll[j], vAll[k]}, number % 8, kCornersOnly);
                if (HasFatalFailure())
                    return;
            }
}
