#include "output/TextWriter.h"

#include <charconv>
#include <locale>
#include <sstream>

namespace ZELK_QUOR2D
{

namespace
{

constexpr std::size_t kBufferSize = std::size_t{1} << 16;

// Longest texts: "-1.23457e-308" and ten digits.
constexpr std::size_t kNumberLength = 32;

} // namespace

std::ofstream openTextFile(const std::string& filename)
{
    std::ofstream file;
    file.imbue(std::locale::classic());
    file.open(filename);
    return file;
}

void appendNumber(std::string& text, double value)
{
#if defined(__cpp_lib_to_chars)
    char digits[kNumberLength];
    const auto result = std::to_chars(digits, digits + kNumberLength, value, std::chars_format::general, 6);
    text.append(digits, result.ptr);
#else
    // Standard libraries without to_chars for double: slow, the same text.
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << value;
    text += stream.str();
#endif
}

TextWriter::TextWriter(std::ostream& target) : stream(target)
{
    buffer.reserve(kBufferSize + kNumberLength);
}

TextWriter::~TextWriter()
{
    flush();
}

TextWriter& TextWriter::operator<<(std::string_view text)
{
    buffer += text;
    flushWhenFull();
    return *this;
}

TextWriter& TextWriter::operator<<(char character)
{
    buffer += character;
    return *this;
}

TextWriter& TextWriter::operator<<(double value)
{
    appendNumber(buffer, value);
    flushWhenFull();
    return *this;
}

TextWriter& TextWriter::operator<<(std::uint32_t value)
{
    char digits[kNumberLength];
    const auto result = std::to_chars(digits, digits + kNumberLength, value);
    buffer.append(digits, result.ptr);
    flushWhenFull();
    return *this;
}

void TextWriter::flushWhenFull()
{
    if (buffer.size() >= kBufferSize)
        flush();
}

void TextWriter::flush()
{
    stream.write(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    buffer.clear();
}

} // namespace ZELK_QUOR2D
