#pragma once

#include "benchmarks/Measure.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

namespace bench
{

/// Measures a job done by two libraries in turn, each run in a process of its own, and writes rows of a Markdown table:
/// job, seconds of both, ratio, target of the ratio, triangles of both, peak bytes per point of both.
class Comparison
{
public:
    /// @param argc, argv  of the program: the first argument is the number of rounds, 5 without one
    Comparison(int argc, char** argv) : rounds(argc > 1 ? std::max(1, std::atoi(argv[1])) : 5) {}

    /// Both must come to the same result.
    template <class Ours, class Theirs>
    void sameResult(const std::string& job, double target, std::size_t numPoints, Ours ours, Theirs theirs)
    {
        runInTurn(ours, theirs);
        if (our.lastResult() != their.lastResult()) {
            std::fprintf(stderr, "%s: the results differ: %.0f and %.0f\n", job.c_str(), our.lastResult(),
                         their.lastResult());
            bSame = false;
        }
        const auto n = static_cast<double>(numPoints);
        std::printf("| %s | %.3f | %.3f | **%.2f** | %.2f | | | %.0f | %.0f |\n", job.c_str(), our.seconds(),
                    their.seconds(), our.seconds() / their.seconds(), target, our.bytes() / n, their.bytes() / n);
        std::fflush(stdout);
    }

    /// The results are numbers of triangles, and what counts are the seconds per triangle made.
    template <class Ours, class Theirs>
    void perTriangle(const std::string& job, double target, Ours ours, Theirs theirs)
    {
        runInTurn(ours, theirs);
        const double ratio = our.seconds() / our.lastResult() / (their.seconds() / their.lastResult());
        std::printf("| %s | %.3f | %.3f | **%.2f** | %.2f | %.0f | %.0f | | |\n", job.c_str(), our.seconds(),
                    their.seconds(), ratio, target, our.lastResult(), their.lastResult());
        std::fflush(stdout);
    }

    /// For the exit of the program.
    int status() const { return bSame ? EXIT_SUCCESS : EXIT_FAILURE; }

private:
    template <class Ours, class Theirs>
    void runInTurn(Ours ours, Theirs theirs)
    {
        our = Series();
        their = Series();
        for (int round = 0; round < rounds; ++round) {
            our.add(ours());
            their.add(theirs());
        }
    }

    int rounds;
    bool bSame = true;
    Series our;
    Series their;
};

} // namespace bench
