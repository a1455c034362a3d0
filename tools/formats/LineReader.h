#pragma once

#include "formats/ByteSource.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quor2d_tool
{

/// Reads a text line by line and takes lines apart into blank-separated fields. Every fault is a FileError that names
/// file and line.
class LineReader
{
public:
    explicit LineReader(const std::string& path) : source(path) {}

    /// Moves to the next line. Line ends may be "\n" or "\r\n".
    ///
    /// @return false at the end of the input
    bool next();

    /// Moves to the next line that holds anything beside blanks and a comment, which begins with `comment`.
    bool nextFilled(char comment);

    /// The current line; valid until the next move.
    std::string_view text() const { return content; }

    /// The number of the current line, counted from 1; after the end, the number of lines.
    std::size_t line() const { return numLine; }

    const std::string& name() const { return source.name(); }

    /// The next blank-separated field of the current line; empty at its end.
    std::string_view field();

    bool hasField();

    /// The next field as a number, an integer, or an integer within bounds. `what` names it in messages.
    double number(const char* what);
    std::int64_t integer(const char* what);
    std::int64_t integer(const char* what, std::int64_t lowest, std::int64_t highest);

    /// Fails where the current line holds more fields.
    void expectLineEnd();

    /// Throws FileError at the current line.
    [[noreturn]] void fail(const std::string& reason) const;

private:
    std::string_view requiredField(const char* what);

    ByteSource source;
    std::string_view content;
    std::size_t position = 0;
    std::size_t numLine = 0;
};

/// True for the characters that separate fields.
inline bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f';
}

} // namespace quor2d_tool
