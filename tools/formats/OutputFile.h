#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quor2d_tool
{

/// A file that appears under its name only when it is complete: it is written beside its place and renamed. Standard
/// output ("-") and special files such as devices and pipes are written as they are.
///
/// Every failure, a full disk included, is a FileError; the unfinished file is then removed.
class OutputFile
{
public:
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    OutputFile& operator<<(std::string_view text);
    OutputFile& operator<<(char c);
    OutputFile& operator<<(double value); ///< the shortest text that reads back as the same double
    OutputFile& operator<<(std::int64_t value);
    OutputFile& operator<<(int value) { return *this << std::int64_t(value); }
    OutputFile& operator<<(std::uint32_t value) { return *this << std::int64_t(value); }
    OutputFile& operator<<(std::size_t value) { return *this << static_cast<std::int64_t>(value); }

    /// A number with `numDecimals` digits after the point, for drawings.
    void writeFixed(double value, int numDecimals);

    /// Writes what is buffered and closes the file. Nothing may be written afterwards.
    void close();

    /// Gives the closed file its name.
    void commit();

private:
    void openBeside();
    void flush();
    void reserve(std::size_t numBytes)
    {
        if (vBuffer.size() - numUsed < numBytes)
            flush();
    }
    [[noreturn]] void failWithErrno();

    std::string displayName;
    std::string target;    // links resolved
    std::string temporary; // empty where the file is written in place
    std::vector<char> vBuffer;
    std::size_t numUsed = 0;
    int fd = -1;
};

/// Throws FileError where a file can clearly not be written at `path`: spares a long computation. Passing is no
/// promise.
void checkWritable(const std::string& path);

/// Removes the files and directories of unfinished outputs when the process is ended by a signal.
void removeUnfinishedOnSignals();

/// Registers a path to be removed then, or takes it back.
void addUnfinished(const std::string& path);
void removeUnfinished(const std::string& path);

/// A new name beside `path` for its unfinished form.
std::string temporaryNameBeside(const std::string& path);

} // namespace quor2d_tool
