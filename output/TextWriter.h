#pragma once

#include <cstdint>
#include <fstream>
#include <iosfwd>
#include <string>
#include <string_view>

namespace ZELK_QUOR2D
{

/// Opens a file for writing text whose content does not depend on the global locale. A file that cannot be opened
/// leaves the stream in the failed state.
std::ofstream openTextFile(const std::string& filename);

/// Appends `value` as a stream in its initial state writes it: six significant digits, "%g", a decimal point.
void appendNumber(std::string& text, double value);

/// Buffered text output to a stream, for files of millions of numbers.
///
/// Neither format flags nor locale of the stream take part. What is buffered reaches the stream with flush() or the
/// destructor.
class TextWriter
{
public:
    explicit TextWriter(std::ostream& target);
    ~TextWriter();
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;

    TextWriter& operator<<(std::string_view text);
    TextWriter& operator<<(char character);
    TextWriter& operator<<(double value);
    TextWriter& operator<<(std::uint32_t value);

    void flush();

private:
    void flushWhenFull();

    std::ostream& stream;
    std::string buffer;
};

} // namespace ZELK_QUOR2D
