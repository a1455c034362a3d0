#include "tests/trust/SmallWorlds.h"

#include <algorithm>

using namespace small_worlds;

// Every order of every subset: about a million sequences of insertions, and as many removals.
TEST(SmallWorlds, EveryOrderOfEverySubset)
{
    CapturedOutput output;
    for (unsigned int subset = 0; subset < 1u << kNumPlaces; ++subset) {
        std::vector<Point2> vPoints = latticeSubset(subset);
        do {
            SCOPED_TRACE(subset);
            insertAndRemove(vPoints);
            if (HasFatalFailure())
                return;
        } while (std::next_permutation(vPoints.begin(), vPoints.end()));
    }
}
