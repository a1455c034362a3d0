#include "commands/Progress.h"

#include <cstdio>
#include <unistd.h>

namespace quor2d_tool
{

Progress::Progress(const std::string& stepName, bool bQuiet) : step(stepName)
{
    if (!bQuiet && isatty(STDERR_FILENO))
        thread = std::thread([this] { show(); });
}

Progress::~Progress()
{
    if (!thread.joinable())
        return;
    {
        std::lock_guard<std::mutex> lock(mutex);
        bStop = true;
    }
    stopped.notify_one();
    thread.join();
}

void Progress::show()
{
    std::unique_lock<std::mutex> lock(mutex);
    int numSeconds = 0;
    while (!stopped.wait_for(lock, std::chrono::seconds(1), [this] { return bStop; })) // ends with the step
        std::fprintf(stderr, "\rquor2d: %s, %d s ", step.c_str(), ++numSeconds);
    if (numSeconds > 0)
        std::fputs("\r\033[K", stderr);
}

} // namespace quor2d_tool
