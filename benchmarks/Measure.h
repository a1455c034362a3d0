#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <malloc.h>
#include <random>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// What the benchmark programs share. Linux only: memory is read from /proc.
namespace bench
{

/// What one run of a piece of work cost.
struct Cost {
    double seconds = 0; ///< of processor time
    double bytes = 0;   ///< peak resident memory minus resident memory before
    double result = 0;  ///< whatever the work wants to be compared by, such as its number of triangles
};

/// x0, y0, x1, y1, ...: n points uniform in the unit square, the same on every machine.
inline std::vector<double> uniformCoordinates(std::size_t n)
{
    std::mt19937_64 random(42);
    std::vector<double> vCoordinates(2 * n);
    for (double& c : vCoordinates)
        c = static_cast<double>(random() >> 11) * 0x1p-53;
    return vCoordinates;
}

/// Processor time of this process so far: unlike the wall clock, it does not count what else the machine does.
inline double processSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// A line of /proc/self/status, in bytes.
inline double residentMemory(const std::string& key)
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (word == key + ":") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    return 0;
}

/// Runs prepare() and then, measured, work(input) in a child process: no run inherits the heap of another. The work
/// returns an object that stands for its result until the measurement is over, and that evaluate() turns into a number.
template <class Prepare, class Work, class Evaluate>
Cost measure(Prepare prepare, Work work, Evaluate evaluate)
{
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0)
        std::exit(EXIT_FAILURE);
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        const auto input = prepare();
        malloc_trim(0); // what the parent has freed must not serve the work unseen
        Cost cost;
        const double before = residentMemory("VmRSS");
        const double start = processSeconds();
        const auto output = work(input);
        cost.seconds = processSeconds() - start;
        cost.bytes = residentMemory("VmHWM") - before;
        cost.result = static_cast<double>(evaluate(output));
        const bool bWritten = write(pipeEnds[1], &cost, sizeof cost) == static_cast<ssize_t>(sizeof cost);
        _exit(bWritten ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    Cost cost;
    close(pipeEnds[1]);
    const bool bRead = child > 0 && read(pipeEnds[0], &cost, sizeof cost) == static_cast<ssize_t>(sizeof cost);
    close(pipeEnds[0]);
    if (!bRead || waitpid(child, nullptr, 0) != child) {
        std::fprintf(stderr, "a measured run failed\n");
        std::exit(EXIT_FAILURE);
    }
    return cost;
}

inline double median(std::vector<double> vValues)
{
    std::sort(vValues.begin(), vValues.end());
    const std::size_t half = vValues.size() / 2;
    return vValues.size() % 2 == 1 ? vValues[half] : 0.5 * (vValues[half - 1] + vValues[half]);
}

/// Costs of several rounds of one kind of work.
class Series
{
public:
    void add(const Cost& cost)
    {
        vSeconds.push_back(cost.seconds);
        vBytes.push_back(cost.bytes);
        result = cost.result;
    }
    double seconds() const { return median(vSeconds); }
    double bytes() const { return median(vBytes); }
    double lastResult() const { return result; }

private:
    std::vector<double> vSeconds;
    std::vector<double> vBytes;
    double result = 0;
};

} // namespace bench
