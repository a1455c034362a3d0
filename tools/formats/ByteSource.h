#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quor2d_tool
{

/// A file, or standard input for "-", read in large blocks and counted in lines.
class ByteSource
{
public:
    /// Opens the file. Throws FileError where it cannot be read.
    explicit ByteSource(const std::string& path);
    ~ByteSource();
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    static constexpr int kEnd = -1;

    /// The next character without taking it; kEnd at the end.
    int peek() { return pNext != pStop || fill() ? static_cast<unsigned char>(*pNext) : kEnd; }

    /// Takes the next character; kEnd at the end.
    int get()
    {
        int c = peek();
        if (c != kEnd)
            ++pNext;
        if (c == '\n')
            ++numLine;
        return c;
    }

    /// Makes the unread part of the buffer longer.
    ///
    /// @return false at the end of the input
    bool extend();

    const char* unreadBegin() const { return pNext; }
    const char* unreadEnd() const { return pStop; }

    /// Takes characters up to p, which lies in the unread part; they hold `numLines` line ends.
    void take(const char* p, std::size_t numLines)
    {
        pNext = p;
        numLine += numLines;
    }

    /// The line of the next character, counted from 1.
    std::size_t line() const { return numLine; }

    /// What messages call the input.
    const std::string& name() const { return displayName; }

    /// Throws FileError at the given line.
    [[noreturn]] void fail(std::size_t line, const std::string& reason) const;
    [[noreturn]] void fail(const std::string& reason) const { fail(numLine, reason); }

private:
    bool fill();
    void skipByteOrderMark();

    std::string displayName;
    std::vector<char> vBuffer;
    const char* pNext = nullptr;
    const char* pStop = nullptr;
    std::size_t numLine = 1;
    int fd = -1;
    bool bAtEnd = false;
};

} // namespace quor2d_tool
