#include "formats/OutputFile.h"

#include "formats/FileError.h"

#include <atomic>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quor2d_tool
{
namespace
{

constexpr std::size_t kBufferSize = std::size_t(1) << 18;
constexpr std::size_t kNumberSize = 32; // room for any double in shortest form
constexpr std::size_t kFixedSize = 400; // room for the largest double written out
constexpr std::size_t kMaxUnfinished = 64;

// Plain storage, because a signal handler reads it.
struct UnfinishedSlot {
    std::atomic<bool> bUsed{false};
    char aPath[PATH_MAX];
};
UnfinishedSlot aUnfinished[kMaxUnfinished];

extern "C" void removeUnfinishedAndStop(int signalNumber)
{
    for (UnfinishedSlot& slot : aUnfinished)
        if (slot.bUsed && unlink(slot.aPath) != 0)
            rmdir(slot.aPath);
    signal(signalNumber, SIG_DFL);
    raise(signalNumber);
}

// The file a name stands for; the name itself where there is none yet.
std::string resolved(const std::string& path)
{
    char* pReal = realpath(path.c_str(), nullptr);
    std::string result = pReal ? pReal : path;
    std::free(pReal);
    return result;
}

std::string directoryOf(const std::string& path)
{
    std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : slash == 0 ? "/" : path.substr(0, slash);
}

} // namespace

void addUnfinished(const std::string& path)
{
    for (UnfinishedSlot& slot : aUnfinished)
        if (!slot.bUsed && path.size() < sizeof slot.aPath) {
            std::memcpy(slot.aPath, path.c_str(), path.size() + 1);
            slot.bUsed = true;
            return;
        }
}

void removeUnfinished(const std::string& path)
{
    for (UnfinishedSlot& slot : aUnfinished)
        if (slot.bUsed && path == slot.aPath)
            slot.bUsed = false;
}

void removeUnfinishedOnSignals()
{
    for (int signalNumber : {SIGINT, SIGTERM, SIGHUP, SIGXCPU})
        signal(signalNumber, removeUnfinishedAndStop);
    for (int signalNumber : {SIGPIPE, SIGXFSZ}) // a closed pipe or a limit is an error of write then, with a message
        signal(signalNumber, SIG_IGN);
}

std::string temporaryNameBeside(const std::string& path)
{
    static int numNames = 0;
    std::size_t slash = path.rfind('/');
    std::string directory = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    return directory + "." + base.substr(0, 200) + "." + std::to_string(getpid()) + "." + std::to_string(++numNames) +
           ".tmp";
}

void checkWritable(const std::string& path)
{
    if (path == "-")
        return;
    struct stat status;
    if (stat(path.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode))
            throw FileError(path, std::strerror(EISDIR));
        if (access(path.c_str(), W_OK) != 0)
            throw FileError(path, std::strerror(errno));
        if (!S_ISREG(status.st_mode))
            return;
    }
    if (access(directoryOf(resolved(path)).c_str(), W_OK | X_OK) != 0)
        throw FileError(path, std::strerror(errno));
}

OutputFile::OutputFile(const std::string& path)
    : displayName(path == "-" ? "standard output" : path), target(path), vBuffer(kBufferSize)
{
    if (path == "-") {
        fd = STDOUT_FILENO;
        return;
    }
    checkWritable(path);
    target = resolved(path);
    struct stat status;
    if (stat(target.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        fd = open(target.c_str(), O_WRONLY | O_CLOEXEC);
    else
        openBeside();
    if (fd < 0)
        failWithErrno();
}

void OutputFile::openBeside()
{
    std::string name = temporaryNameBeside(target);
    fd = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0)
        return;
    temporary = name;
    addUnfinished(temporary);
    struct stat status;
    if (stat(target.c_str(), &status) == 0)
        fchmod(fd, status.st_mode & 07777); // a replaced file keeps its permissions
}

OutputFile::~OutputFile()
{
    if (fd > STDERR_FILENO)
        ::close(fd);
    if (!temporary.empty()) {
        unlink(temporary.c_str());
        removeUnfinished(temporary);
    }
}

void OutputFile::failWithErrno()
{
    throw FileError(displayName, std::strerror(errno));
}

OutputFile& OutputFile::operator<<(std::string_view text)
{
    while (!text.empty()) { // every turn takes a part that fits
        reserve(1);
        std::size_t numCopied = std::min(text.size(), vBuffer.size() - numUsed);
        std::memcpy(vBuffer.data() + numUsed, text.data(), numCopied);
        numUsed += numCopied;
        text.remove_prefix(numCopied);
    }
    return *this;
}

OutputFile& OutputFile::operator<<(char c)
{
    reserve(1);
    vBuffer[numUsed++] = c;
    return *this;
}

OutputFile& OutputFile::operator<<(double value)
{
    reserve(kNumberSize);
    char* pBegin = vBuffer.data() + numUsed;
    numUsed += static_cast<std::size_t>(std::to_chars(pBegin, pBegin + kNumberSize, value).ptr - pBegin);
    return *this;
}

OutputFile& OutputFile::operator<<(std::int64_t value)
{
    reserve(kNumberSize);
    char* pBegin = vBuffer.data() + numUsed;
    numUsed += static_cast<std::size_t>(std::to_chars(pBegin, pBegin + kNumberSize, value).ptr - pBegin);
    return *this;
}

void OutputFile::writeFixed(double value, int numDecimals)
{
    reserve(kFixedSize);
    char* pBegin = vBuffer.data() + numUsed;
    auto [pEnd, error] = std::to_chars(pBegin, pBegin + kFixedSize, value, std::chars_format::fixed, numDecimals);
    if (error == std::errc())
        numUsed += static_cast<std::size_t>(pEnd - pBegin);
}

void OutputFile::flush()
{
    const char* pNext = vBuffer.data();
    while (numUsed > 0) { // every turn writes a part or ends with an error
        ssize_t numWritten = write(fd, pNext, numUsed);
        if (numWritten < 0 && errno == EINTR)
            continue;
        if (numWritten < 0)
            failWithErrno();
        pNext += numWritten;
        numUsed -= static_cast<std::size_t>(numWritten);
    }
}

void OutputFile::close()
{
    flush();
    if (fd <= STDERR_FILENO)
        return;
    int closed = ::close(fd);
    fd = -1;
    if (closed != 0 && errno != EINTR)
        failWithErrno();
}

void OutputFile::commit()
{
    if (temporary.empty())
        return;
    if (rename(temporary.c_str(), target.c_str()) != 0)
        failWithErrno();
    removeUnfinished(temporary);
    temporary.clear();
}

} // namespace quor2d_tool
