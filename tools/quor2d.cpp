// The quor2d command.
#include "cli/Arguments.h"
#include "commands/Commands.h"
#include "formats/FileError.h"
#include "formats/OutputFile.h"

#include <cstdio>
#include <fcntl.h>
#include <iostream>
#include <new>
#include <streambuf>
#include <string_view>
#include <unistd.h>

namespace
{

using namespace quor2d_tool;

// Takes everything and keeps nothing, but tells of the one report after which the library ends the process.
class NullBuffer : public std::streambuf
{
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
    std::streamsize xsputn(const char* pText, std::streamsize count) override
    {
        if (std::string_view(pText, static_cast<std::size_t>(count)).find("Out of memory") != std::string_view::npos)
            std::fputs("quor2d: out of memory\n", stderr);
        return count;
    }
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

// Descriptors that the caller has closed would be given to files, and messages would end up in these. With the wrong
// direction reading and writing still fails.
void occupyStandardDescriptors()
{
    for (int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (fcntl(descriptor, F_GETFD) == -1)
            static_cast<void>(!open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY));
}

int fail(const char* pReason)
{
    std::fprintf(stderr, "quor2d: %s\n", pReason);
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    occupyStandardDescriptors();
    removeUnfinishedOnSignals();
    ParseResult parsed = parseArguments(argc, argv);
    if (!parsed.bRun) {
        if (!std::cout.flush() || std::fflush(stdout) != 0)
            return fail("standard output cannot be written");
        return parsed.exitStatus;
    }
    try {
        return run(parsed.arguments);
    } catch (const std::bad_alloc&) {
        return fail("out of memory");
    } catch (const std::exception& problem) {
        return fail(problem.what());
    }
}
