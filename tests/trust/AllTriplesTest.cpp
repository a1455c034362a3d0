#include "tests/trust/SegmentWorlds.h"

using namespace small_worlds;

// Every triple of segments, each with either strategy, in two worlds: more than a hundred thousand.
TEST(SmallWorlds, EveryTripleOfSegments)
{
    const std::vector<Segment2> vAll = latticeSegments();
    for (std::size_t i = 0; i < vAll.size(); ++i)
        for (std::size_t j = i + 1; j < vAll.size(); ++j)
            for (std::size_t k = j + 1; k < vAll.size(); ++k)
                for (unsigned int strategies = 0; strategies < 8; ++strategies)
                    for (const unsigned int first : {0u, 0b101000101u}) {
                        SCOPED_TRACE(testing::Message() << i << " " << j << " " << k << " " << strategies);
                        applySegments({vAll[i], vAll[j], vAll[k]}, strategies, first);
                        if (HasFatalFailure())
                            return;
                    }
}
