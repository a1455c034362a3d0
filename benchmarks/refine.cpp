// How does refinement grow with the number of triangles that it makes? Usage: refine [rounds]
#include "benchmarks/RefineJobs.h"

namespace
{

void grow(const char* title, int rounds, const std::vector<std::pair<double, double>>& vOutline,
          const std::vector<double>& vMaxEdges)
{
    for (const double maxEdge : vMaxEdges) {
        bench::Series series;
        for (int round = 0; round < rounds; ++round)
            series.add(bench::measureRefinement({vOutline, 27, maxEdge}));
        const double numTriangles = series.lastResult();
        std::printf("%-28s  edges up to %-7g  %9.0f triangles  %7.3f s  %6.3f us/triangle  %6.0f bytes/triangle\n",
                    title, maxEdge, numTriangles, series.seconds(), series.seconds() / numTriangles * 1e6,
                    series.bytes() / numTriangles);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    std::printf("Refinement at 27 degrees, medians of %d rounds\n", rounds);
    grow("unit square", rounds, bench::unitSquare(), {0.009, 0.006, 0.0045, 0.003, 0.0022});
    grow("star polygon, 200 corners", rounds, bench::starPolygon(200), {0.017, 0.012, 0.0085, 0.006, 0.0041});
    grow("star polygon, 2000 corners", rounds, bench::starPolygon(2000), {0.05, 0.02, 0.01, 0.006, 0.0039});
    return EXIT_SUCCESS;
}
