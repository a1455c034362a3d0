// The readers' seeds and past faults, with any compiler.
#include "tests/fuzz/Replay.h"
#include "tests/fuzz/readers/ReaderTargets.h"

TEST(FuzzReplay, Readers)
{
    fuzz::replay(fuzz::runReadPoints, "readpoints");
    fuzz::replay(fuzz::runReadGeoJson, "readgeojson");
    fuzz::replay(fuzz::runReadWkt, "readwkt");
    fuzz::replay(fuzz::runReadObj, "readobj");
    fuzz::replay(fuzz::runReadMsh, "readmsh");
    fuzz::replay(fuzz::runReadNode, "readnode");
    fuzz::replay(fuzz::runReadPoly, "readpoly");
}
