#include "formats/NumberText.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

namespace quor2d_tool
{
namespace
{

// from_chars knows no leading plus sign.
std::string_view withoutPlus(std::string_view text)
{
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    return text;
}

} // namespace

const char* parseNumber(std::string_view text, double& value)
{
    text = withoutPlus(text);
    const char* pEnd = text.data() + text.size();
    auto [pStop, error] = std::from_chars(text.data(), pEnd, value);
    if (pStop != pEnd || error == std::errc::invalid_argument)
        return "is not a number";
    if (error == std::errc::result_out_of_range)
        value = std::strtod(std::string(text).c_str(), nullptr); // tells too large from too small
    return std::isfinite(value) ? nullptr : "is not a finite number";
}

const char* parseInteger(std::string_view text, std::int64_t& value)
{
    text = withoutPlus(text);
    const char* pEnd = text.data() + text.size();
    auto [pStop, error] = std::from_chars(text.data(), pEnd, value);
    if (pStop != pEnd || error == std::errc::invalid_argument)
        return "is not a whole number";
    return error == std::errc() ? nullptr : "is too large";
}

bool looksLikeNumber(std::string_view text)
{
    double value = 0.0;
    text = withoutPlus(text);
    auto [pStop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error != std::errc::invalid_argument && pStop == text.data() + text.size();
}

std::string numberText(double value)
{
    char aText[32];
    return std::string(aText, std::to_chars(aText, aText + sizeof aText, value).ptr);
}

std::string plainNumberText(double value)
{
    constexpr double kExactWhole = 9007199254740992.0;
    if (value == std::floor(value) && std::abs(value) < kExactWhole)
        return std::to_string(static_cast<std::int64_t>(value));
    return numberText(value);
}

} // namespace quor2d_tool
