#include "cli/Arguments.h"

#include "Version.h"
#include "cli/Manual.h"
#include "formats/NumberText.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <sys/stat.h>

namespace quor2d_tool
{
namespace
{

constexpr int kUsageStatus = 2;
constexpr double kLargestMinAngle = 30.0; // the library's refinement is not known to end above
constexpr const char* kVersion = QUOR2D_TOOL_VERSION;

bool isDirectory(const std::string& path)
{
    struct stat status;
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The names of the formats that can be used in one way.
template <class Usable>
std::vector<std::string> formatNames(Usable isUsable)
{
    std::vector<std::string> vNames;
    for (const FormatInfo& info : allFormats())
        if (isUsable(info))
            vNames.push_back(info.pName);
    return vNames;
}

// The help shows the words as the type of the option already.
CLI::Validator oneOf(const std::vector<std::string>& vWords)
{
    return CLI::IsMember(vWords).description("");
}

// A number from low to high; `what` names it in the message.
CLI::Validator numberBetween(double low, double high, const std::string& what)
{
    auto problemOf = [=](const std::string& text) {
        double value = 0.0;
        bool bGood = !parseNumber(text, value) && value >= low && value <= high;
        return bGood ? std::string() : "'" + text + "' is not " + what;
    };
    return CLI::Validator(problemOf, "");
}

CLI::Validator positiveLength()
{
    return numberBetween(std::numeric_limits<double>::min(), std::numeric_limits<double>::max(), "a positive length");
}

// Shows how a command is called in one order that always works.
class HelpFormatter : public CLI::Formatter
{
public:
    std::string make_usage(const CLI::App* pApp, std::string name) const override
    {
        if (!pApp->get_option_no_throw("INPUT"))
            return "Usage: " + name + " COMMAND INPUT [OPTIONS]\n";
        bool bOutput = pApp->get_option_no_throw("--output") != nullptr;
        return "Usage: " + name + " INPUT" + (bOutput ? " -o OUTPUT..." : "") + " [OPTIONS]\n";
    }
};

class ArgumentParser
{
public:
    ArgumentParser() : app("Triangulates points and lines, meshes polygons, checks meshes.", "quor2d")
    {
        app.formatter(std::make_shared<HelpFormatter>());
        app.require_subcommand(1);
        app.set_version_flag("--version",
                             std::string("quor2d ") + kVersion + " (library " + ZELK_QUOR2D::getQuor2DVersion() + ")");
        app.get_option("--version")->description("Print the version and exit");
        app.set_help_flag("-h,--help", "Print this help and exit");
        app.footer(examplesText(""));
        app.add_flag("--print-manual")->group("");
        app.add_flag("--print-markdown")->group("");
        app.add_flag("--print-completion")->group("");
        addMesh();
        addTriangulate();
        addCheck();
        addInfo();
    }

    ParseResult parse(int argc, char** argv)
    {
        for (int i = 1; i < argc; ++i) { // used by the build, without a command
            if (std::string(argv[i]) == "--print-manual")
                return printed(manualPage(app, kVersion));
            if (std::string(argv[i]) == "--print-markdown")
                return printed(manualMarkdown(app));
            if (std::string(argv[i]) == "--print-completion")
                return printed(bashCompletion(app));
        }
        std::string first = argc > 1 ? argv[1] : "-";
        if (first[0] != '-' && !isCommand(first))
            return usageFault("there is no command '" + first + "'");
        try {
            app.parse(argc, argv);
            return resolve();
        } catch (const CLI::ParseError& problem) {
            if (problem.get_exit_code() == 0)
                return {false, app.exit(problem), {}};
            return usageFault(problem.what());
        }
    }

private:
    static ParseResult printed(const std::string& text)
    {
        std::cout << text << std::flush;
        return {false, std::cout ? 0 : 1, {}};
    }

    bool isCommand(const std::string& name) const
    {
        return !app.get_subcommands([&name](const CLI::App* pCommand) { return pCommand->get_name() == name; }).empty();
    }

    ParseResult usageFault(const std::string& text) const
    {
        std::string command;
        for (const CLI::App* pCommand : app.get_subcommands())
            command = " " + pCommand->get_name();
        std::cerr << "quor2d: " << text << "\nTry 'quor2d" << command << " --help'.\n";
        return {false, kUsageStatus, {}};
    }

    CLI::App* addCommand(Command command, const char* pName, const char* pDescription, const char* pInput)
    {
        CLI::App* pCommand = app.add_subcommand(pName, pDescription);
        pCommand->footer(examplesText(pName));
        pCommand->callback([this, command] { arguments.command = command; });
        pCommand->add_option("INPUT", arguments.input, pInput)->type_name("");
        return pCommand;
    }

    void addInputFormat(CLI::App* pCommand, const std::vector<std::string>& vNames)
    {
        pCommand->add_option("--input-format", inputFormat, "The format of the input where its name does not tell")
            ->type_name("FORMAT")
            ->check(oneOf(vNames));
    }

    void addCommon(CLI::App* pCommand)
    {
        pCommand->add_option("--stats", stats, "Print counts and measures to standard output, as text or as JSON")
            ->type_name("text|json")
            ->check(oneOf({"text", "json"}));
        pCommand->add_flag("-q,--quiet", arguments.bQuiet, "No reports, notes and progress on standard error");
    }

    void addMeshing(CLI::App* pCommand, const char* pKeepDefault)
    {
        auto isScene = [](const FormatInfo& info) { return info.bScene; };
        auto isOutput = [](const FormatInfo& info) { return info.bOutput; };
        addInputFormat(pCommand, formatNames(isScene));
        pCommand
            ->add_option("-o,--output", vOutputPaths,
                         "Files to write, each in the format of its extension; '-' is standard output, a name that "
                         "ends in '/' is a directory for the web scene")
            ->required()
            ->type_name("OUTPUT");
        pCommand->add_option("--format", outputFormat, "The format of outputs whose names do not tell")
            ->type_name("FORMAT")
            ->check(oneOf(formatNames(isOutput)));
        pCommand
            ->add_option("--strategy", strategy,
                         "How segments become edges: constrained forces them in, conforming splits them until the "
                         "mesh is Delaunay")
            ->type_name("constrained|conforming")
            ->check(oneOf({"constrained", "conforming"}))
            ->default_str("constrained");
        pCommand
            ->add_option("--keep", keep,
                         std::string("Which triangles to write: those inside the polygons, those outside, or all "
                                     "within the convex hull; by default ") +
                             pKeepDefault)
            ->type_name("outside|inside|all")
            ->check(oneOf({"outside", "inside", "all"}));
    }

    void addMesh()
    {
        CLI::App* pCommand =
            addCommand(Command::Mesh, "mesh", "Mesh polygons with holes, or a .poly file, with triangles of quality",
                       "Polygons, lines and points; '-' is standard input");
        pCommand
            ->add_option("--min-angle", arguments.minAngle,
                         "The smallest angle allowed in the mesh, in degrees, 0 to 30")
            ->type_name("DEGREES")
            ->check(numberBetween(0.0, kLargestMinAngle, "an angle from 0 to 30 degrees"))
            ->capture_default_str();
        pCommand->add_option("--max-edge", arguments.maxEdge, "Split triangles with an edge longer than this")
            ->type_name("LENGTH")
            ->check(positiveLength());
        pCommand
            ->add_option("--min-edge", arguments.minEdge,
                         "Do not refine for quality below this length; by default a hundred thousandth of the extent")
            ->type_name("LENGTH")
            ->check(positiveLength());
        pCommand->add_flag("--no-split", bNoSplit, "Keep segments whole: no new points on them");
        addMeshing(pCommand, "inside");
        addCommon(pCommand);
    }

    void addTriangulate()
    {
        CLI::App* pCommand = addCommand(Command::Triangulate, "triangulate",
                                        "Triangulate points and lines: a Delaunay or constrained Delaunay mesh",
                                        "Points, lines and polygons; '-' is standard input");
        addMeshing(pCommand, "all");
        addCommon(pCommand);
    }

    void addCheck()
    {
        CLI::App* pCommand =
            addCommand(Command::Check, "check", "Check exactly whether a mesh is valid and Delaunay, and measure it",
                       "A mesh; '-' is standard input");
        addInputFormat(pCommand, formatNames([](const FormatInfo& info) { return info.bMesh; }));
        pCommand->add_flag("--valid-only", arguments.bIgnoreDelaunay, "Accept a valid mesh that is not Delaunay");
        addCommon(pCommand);
    }

    void addInfo()
    {
        CLI::App* pCommand = addCommand(Command::Info, "info", "Tell what is in a file of points, lines and polygons",
                                        "Points, lines and polygons; '-' is standard input");
        addInputFormat(pCommand, formatNames([](const FormatInfo& info) { return info.bScene; }));
        addCommon(pCommand);
    }

    // What the options mean together. Throws CLI::ValidationError.
    ParseResult resolve()
    {
        // "-o mesh.obj points.xy": the list of outputs swallows the input behind it.
        if (arguments.input.empty() && vOutputPaths.size() > 1) {
            arguments.input = vOutputPaths.back();
            vOutputPaths.pop_back();
        }
        if (arguments.input.empty())
            throw CLI::ValidationError("INPUT is missing");
        arguments.inputFormat = resolveInputFormat();
        std::string defaultKeep = arguments.command == Command::Mesh ? "inside" : "all";
        const std::map<std::string, Keep> mKeep = {
            {"inside", Keep::Inside}, {"outside", Keep::Outside}, {"all", Keep::All}};
        arguments.keep = mKeep.at(keep.empty() ? defaultKeep : keep);
        arguments.strategy = strategy == "conforming" ? Strategy::Conforming : Strategy::Constrained;
        arguments.stats = stats.empty() ? Stats::None : stats == "json" ? Stats::Json : Stats::Text;
        arguments.bSplit = !bNoSplit;
        if (arguments.minEdge > 0 && arguments.maxEdge > 0 && arguments.minEdge > arguments.maxEdge)
            throw CLI::ValidationError("--min-edge is larger than --max-edge");
        resolveOutputs();
        return {true, 0, arguments};
    }

    Format resolveInputFormat() const
    {
        const FormatInfo* pInfo = inputFormat.empty() ? formatByExtension(arguments.input) : formatByName(inputFormat);
        if (!pInfo && arguments.input == "-")
            throw CLI::ValidationError("standard input needs --input-format");
        if (inputFormat.empty() && (!pInfo || pInfo->format == Format::WebScene) && isDirectory(arguments.input))
            throw CLI::ValidationError("'" + arguments.input + "' is a directory");
        if (!pInfo)
            throw CLI::ValidationError("the name of '" + arguments.input +
                                       "' does not tell its format; say it with --input-format");
        bool bMesh = arguments.command == Command::Check;
        if (bMesh ? !pInfo->bMesh : !pInfo->bScene)
            throw CLI::ValidationError(std::string("no ") + (bMesh ? "mesh" : "points or polygons") +
                                       " can be read from the format " + pInfo->pName);
        if (arguments.input == "-" && bMesh && (pInfo->format == Format::Node || pInfo->format == Format::Ele))
            throw CLI::ValidationError("a mesh in two files cannot come from standard input");
        return pInfo->format;
    }

    void resolveOutputs()
    {
        std::size_t numStandard = 0;
        for (const std::string& path : vOutputPaths) {
            const FormatInfo* pInfo = path == "-" ? nullptr : formatByExtension(path);
            if (!pInfo && path != "-" && isDirectory(path))
                pInfo = formatByName("web");
            if (!pInfo)
                pInfo = formatByName(outputFormat);
            if (!pInfo)
                throw CLI::ValidationError(path == "-" ? "standard output needs --format"
                                                       : "the name of '" + path +
                                                             "' does not tell its format; say it with --format");
            if (!pInfo->bOutput)
                throw CLI::ValidationError(std::string("nothing can be written in the format ") + pInfo->pName);
            if (path == "-" && pInfo->format == Format::WebScene)
                throw CLI::ValidationError("the web scene is a directory");
            numStandard += path == "-";
            arguments.vOutputs.push_back({path, pInfo->format});
        }
        if (numStandard + (numStandard > 0 && arguments.stats != Stats::None) > 1)
            throw CLI::ValidationError("standard output can take one result only");
    }

    CLI::App app;
    Arguments arguments;
    std::vector<std::string> vOutputPaths;
    std::string inputFormat;
    std::string outputFormat;
    std::string strategy;
    std::string keep;
    std::string stats;
    bool bNoSplit = false;
};

} // namespace

ParseResult parseArguments(int argc, char** argv)
{
    return ArgumentParser().parse(argc, argv);
}

} // namespace quor2d_tool
