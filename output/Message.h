#pragma once

#include <string>

namespace ZELK_QUOR2D
{

/// Reports to standard output: an empty line, the line with place and text, an empty line. The middle line is
/// written in one piece.
///
/// @param where    the reporting place, such as a method name with parentheses
/// @param message  the text
void reportError(std::string where, std::string message);
void reportWarning(std::string where, std::string message);

/// Deliberate: a note with a place carries no "[Quor2D-Message]" tag, one without a place does.
void reportInfo(std::string where, std::string message);

/// Writes a title framed by lines of asterisks.
void printTitle(std::string title);

} // namespace ZELK_QUOR2D
