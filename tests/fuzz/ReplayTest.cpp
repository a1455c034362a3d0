// Runs the inputs in the repository through the fuzz targets, with any compiler.
#include "tests/fuzz/Replay.h"

TEST(FuzzReplay, Predicates)
{
    fuzz::replay(fuzz::runPredicates, "predicates");
}

TEST(FuzzReplay, MeshProgram)
{
    fuzz::replay(fuzz::runMeshProgram, "meshprogram");
}
