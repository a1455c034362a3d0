// How does the cost of constraints grow with their number and length? Usage: constraints [rounds]
#include "benchmarks/ConstraintJobs.h"

namespace
{

void run(const char* title, int rounds, const bench::ConstraintJob& job)
{
    bench::Series series;
    for (int round = 0; round < rounds; ++round)
        series.add(bench::measureConstraints(job));
    std::printf("%-20s %8zu points  %7zu segments  %8.3f s  %9.0f triangles\n", title, job.numPoints(),
                job.numSegments(), series.seconds(), series.lastResult());
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 3;
    for (const std::size_t n : {25000U, 50000U, 100000U, 200000U})
        run("star polygon", rounds, bench::starPolygonJob(n));
    for (const std::size_t n : {500U, 1000U, 2000U, 4000U})
        run("long segments", rounds, bench::longSegmentsJob(200000, n));
    return EXIT_SUCCESS;
}
