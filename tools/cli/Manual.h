#pragma once

#include <string>

namespace CLI
{
class App;
}

namespace quor2d_tool
{

/// Examples of a command for its help and its manual; of all commands for an empty name.
std::string examplesText(const std::string& command);

/// The manual page, made of the options as --help knows them, in the language of man(7).
std::string manualPage(const CLI::App& app, const std::string& version);

/// The same as a page of the documentation, in Markdown.
std::string manualMarkdown(const CLI::App& app);

/// A completion script for bash, made of the same options.
std::string bashCompletion(const CLI::App& app);

} // namespace quor2d_tool
