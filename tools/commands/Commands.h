#pragma once

#include "cli/Arguments.h"

namespace quor2d_tool
{

/// Each runs a command and returns its exit status. Faults of files are FileErrors.
int runMesh(const Arguments& arguments);
int runCheck(const Arguments& arguments);
int runInfo(const Arguments& arguments);

/// Writes a result to standard output. Throws FileError, unlike the standard streams.
void printResult(const std::string& text);

/// Writes a line about the work to standard error.
void printNote(const Arguments& arguments, const std::string& text);

} // namespace quor2d_tool
