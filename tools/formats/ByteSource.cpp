#include "formats/ByteSource.h"

#include "formats/FileError.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quor2d_tool
{
namespace
{

constexpr std::size_t kBlock = std::size_t(1) << 16;

} // namespace

ByteSource::ByteSource(const std::string& path) : displayName(path == "-" ? "standard input" : path), vBuffer(kBlock)
{
    fd = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        throw FileError(displayName, std::strerror(errno));
    struct stat status;
    if (fstat(fd, &status) == 0 && S_ISDIR(status.st_mode)) {
        if (fd != STDIN_FILENO)
            close(fd);
        throw FileError(displayName, std::strerror(EISDIR));
    }
    pNext = pStop = vBuffer.data();
    skipByteOrderMark();
}

ByteSource::~ByteSource()
{
    if (fd > STDIN_FILENO)
        close(fd);
}

void ByteSource::fail(std::size_t line, const std::string& reason) const
{
    throw FileError(displayName, line, reason);
}

bool ByteSource::fill()
{
    pNext = pStop = vBuffer.data();
    return extend();
}

bool ByteSource::extend()
{
    if (bAtEnd)
        return false;
    // The unread part moves to the front; a buffer that it fills grows, so that each byte is copied O(1) times.
    std::size_t numUnread = static_cast<std::size_t>(pStop - pNext);
    if (pNext != vBuffer.data())
        std::memmove(vBuffer.data(), pNext, numUnread);
    if (numUnread == vBuffer.size())
        vBuffer.resize(2 * vBuffer.size());
    ssize_t numRead = 0;
    do
        numRead = read(fd, vBuffer.data() + numUnread, vBuffer.size() - numUnread);
    while (numRead < 0 && errno == EINTR);
    if (numRead < 0)
        throw FileError(displayName, std::strerror(errno));
    bAtEnd = numRead == 0;
    pNext = vBuffer.data();
    pStop = pNext + numUnread + static_cast<std::size_t>(numRead);
    return !bAtEnd;
}

void ByteSource::skipByteOrderMark()
{
    while (pStop - pNext < 3 && extend()) {
        // a pipe may deliver fewer bytes at a time; ends with the input
    }
    if (pStop - pNext >= 3 && std::memcmp(pNext, "\xEF\xBB\xBF", 3) == 0)
        pNext += 3;
}

} // namespace quor2d_tool
