#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quor2d_tool
{

/// Reads a whole text as a finite number, correctly rounded; values too small for a double become zero.
///
/// @return null, or what is wrong with the text
const char* parseNumber(std::string_view text, double& value);

/// Reads a whole text as a whole number of up to 64 bits.
///
/// @return null, or what is wrong with the text
const char* parseInteger(std::string_view text, std::int64_t& value);

/// True where the whole text is a number, NaN and infinity included.
bool looksLikeNumber(std::string_view text);

/// The shortest text that reads back as the same double, at most 17 significant digits; "-0" for negative zero.
std::string numberText(double value);

/// The same, but whole numbers below 2^53 stand without an exponent: for numbers of regions.
std::string plainNumberText(double value);

} // namespace quor2d_tool
