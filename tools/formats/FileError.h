#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>

namespace quor2d_tool
{

/// A fault of a file or its contents: one line for the user, "file:line: reason".
class FileError : public std::runtime_error
{
public:
    FileError(const std::string& file, const std::string& reason) : std::runtime_error(file + ": " + reason) {}

    /// Line 0 is before the first one: the file is empty.
    FileError(const std::string& file, std::size_t line, const std::string& reason)
        : std::runtime_error(file + (line > 0 ? ":" + std::to_string(line) : "") + ": " + reason)
    {
    }
};

/// A piece of the input for use in a message: quoted, shortened, without control characters.
inline std::string inQuotes(std::string_view text)
{
    constexpr std::size_t kMaxShown = 40;
    std::string result = "'";
    for (char c : text.substr(0, kMaxShown))
        result += (c >= 0 && c < ' ') || c == 127 ? '?' : c;
    return result + (text.size() > kMaxShown ? "...'" : "'");
}

} // namespace quor2d_tool
