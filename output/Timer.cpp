#include "Timer.h"

#include "Version.h"

#include <chrono>
#include <iostream>
#include <mutex>
#include <unordered_map>

namespace ZELK_QUOR2D
{

namespace
{

using Clock = std::chrono::steady_clock;

std::unordered_map<std::string, Clock::time_point>& runningTimers()
{
    static std::unordered_map<std::string, Clock::time_point> mStart;
    return mStart;
}

} // namespace

double timer(const std::string& name)
{
    static std::mutex mutex; // the only state that triangulations in several threads would share
    const std::lock_guard<std::mutex> lock(mutex);
    auto& mStart = runningTimers();
    const auto it = mStart.find(name);
    if (it == mStart.end()) {
        mStart.emplace(name, Clock::now());
        std::cout << "Timer [" << name << "] start" << std::endl;
        return -1.0;
    }
    const double seconds = std::chrono::duration<double>(Clock::now() - it->second).count();
    mStart.erase(it);
    std::cout << "Timer [" << name << "] stop, elapsed time: ";
    std::cout.setf(std::ios_base::fixed, std::ios_base::floatfield);
    std::cout.precision(3);
    std::cout << seconds << " s" << std::endl;
    std::cout.precision(6); // deliberate: fixed notation stays on
    return seconds;
}

std::string getQuor2DVersion()
{
    return "Debug_v1.24_Quor2D_vc12";
}

} // namespace ZELK_QUOR2D
