#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace quor2d_tool
{

/// Shows on a terminal how long a step is taking, once it takes more than a second; nothing elsewhere. The line is
/// gone when the object is.
class Progress
{
public:
    Progress(const std::string& stepName, bool bQuiet);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    void show();

    std::string step;
    std::mutex mutex;
    std::condition_variable stopped;
    bool bStop = false;
    std::thread thread;
};

} // namespace quor2d_tool
