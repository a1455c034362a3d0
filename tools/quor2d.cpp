// The quor2d command.
#include "cli/Arguments.h"
#include "commands/Commands.h"
#include "formats/FileError.h"
#include "formats/OutputFile.h"

#include <cstdio>
#include <iostream>
#include <new>
#include <streambuf>

namespace
{

using namespace quor2d_tool;

// Takes everything and keeps nothing.
class NullBuffer : public std::streambuf
{
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

// The library reports on std::cout, which is for results here: its reports go to standard error or nowhere.
class ReportRedirection
{
public:
    explicit ReportRedirection(bool bQuiet)
        : pSaved(std::cout.rdbuf(bQuiet ? static_cast<std::streambuf*>(&nowhere) : std::cerr.rdbuf()))
    {
    }
    ~ReportRedirection() { std::cout.rdbuf(pSaved); }
    ReportRedirection(const ReportRedirection&) = delete;
    ReportRedirection& operator=(const ReportRedirection&) = delete;

private:
    NullBuffer nowhere;
    std::streambuf* pSaved;
};

int run(const Arguments& arguments)
{
    ReportRedirection redirection(arguments.bQuiet);
    switch (arguments.command) {
    case Command::Check:
        return runCheck(arguments);
    case Command::Info:
        return runInfo(arguments);
    default:
        return runMesh(arguments);
    }
}

int fail(const char* pReason)
{
    std::fprintf(stderr, "quor2d: %s\n", pReason);
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    removeUnfinishedOnSignals();
    ParseResult parsed = parseArguments(argc, argv);
    if (!parsed.bRun)
        return parsed.exitStatus;
    try {
        return run(parsed.arguments);
    } catch (const std::bad_alloc&) {
        return fail("out of memory");
    } catch (const std::exception& problem) {
        return fail(problem.what());
    }
}
