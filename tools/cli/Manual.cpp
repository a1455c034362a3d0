#include "cli/Manual.h"

#include "formats/Formats.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>

namespace quor2d_tool
{
namespace
{

struct Example {
    const char* pCommand;
    const char* pLine;
    const char* pMeaning;
};

constexpr Example kExamples[] = {
    {"mesh", "quor2d mesh lake.geojson -o lake.vtu lake.svg --min-angle 25 --max-edge 100",
     "a lake with islands as a mesh for computations and as a drawing"},
    {"mesh", "quor2d mesh countries.geojson -o countries.msh",
     "countries with common borders as one mesh, a physical group for each"},
    {"mesh", "quor2d mesh part.poly -o part.ele part.edge --no-split --stats json",
     "a .poly file with holes and regions, its segments kept whole"},
    {"triangulate", "quor2d triangulate points.csv -o mesh.obj", "a terrain from measured points"},
    {"triangulate", "quor2d triangulate roads.wkt -o scene/", "lines as edges of a mesh, shown in a browser"},
    {"triangulate", "cut -f2,3 table.tsv | quor2d triangulate - --input-format points -o - --format geojson",
     "from standard input to standard output"},
    {"check", "quor2d check mesh.ele && echo good", "is mesh.node with mesh.ele a valid Delaunay mesh?"},
    {"check", "quor2d check part.msh --stats json", "its measures for a script"},
    {"info", "quor2d info countries.geojson", "counts, duplicates, crossing borders"},
};

constexpr const char* kDescription =
    "Coordinates are those of a plane; longitude and latitude are taken as such, so project them first where "
    "angles and lengths matter. Equal points become one vertex. Where segments cross or touch they are split, and "
    "a crossing gets a vertex, rounded to double precision. Coordinates are written with as many digits as it "
    "takes to read back the same numbers.\n\n"
    "Inside is what the polygons cover, holes left out; without polygons it is what the segments keep from the "
    "outside, but for hole points. A feature makes a region with the number of the feature in the file, counted "
    "from 1; where features overlap the later one wins. Region points of a .poly file number what the segments "
    "enclose around them.\n\n"
    "Vertices keep their number in the input, edges the marker or the feature of their segment, wherever the "
    "format has a place for them.\n\n"
    "Results go to files or standard output, everything else to standard error: reports of the library, notes, "
    "and on a terminal the progress of steps that take longer than a second.";

constexpr const char* kExitStatus[][2] = {
    {"0", "The command did what was asked; a checked mesh is valid and Delaunay."},
    {"1", "The input or the mesh is at fault, or a file cannot be read or written: one line on standard error says "
          "which, where and why. No output is left half written."},
    {"2", "The command line is at fault."},
};

// Text for man(7): no line may begin with a control character, and minus signs are for copying.
std::string roff(const std::string& text)
{
    std::string result;
    for (char c : text) {
        if ((c == '.' || c == '\'') && (result.empty() || result.back() == '\n'))
            result += "\\&";
        if (c == '\\')
            result += "\\e";
        else if (c == '-')
            result += "\\-";
        else
            result += c;
    }
    return result;
}

std::string optionNames(const CLI::Option& option)
{
    std::string names;
    for (const std::string& shortName : option.get_snames())
        names += (names.empty() ? "-" : ", -") + shortName;
    for (const std::string& longName : option.get_lnames())
        names += (names.empty() ? "--" : ", --") + longName;
    return names;
}

// Options that the manual and completion show: named ones, in a group.
std::vector<const CLI::Option*> shownOptions(const CLI::App& app)
{
    std::vector<const CLI::Option*> vShown;
    for (const CLI::Option* pOption : app.get_options())
        if (!pOption->get_group().empty() && !optionNames(*pOption).empty())
            vShown.push_back(pOption);
    return vShown;
}

// A type such as "text|json" lists the values that may be given.
bool isListOfWords(const std::string& type)
{
    return type.find('|') != std::string::npos;
}

std::string optionsManual(const CLI::App& app)
{
    std::string text;
    for (const CLI::Option* pOption : shownOptions(app)) {
        std::string type = pOption->get_type_name();
        text += ".TP\n\\fB" + roff(optionNames(*pOption)) + "\\fR";
        if (!type.empty() && pOption->get_items_expected_max() > 0)
            text += (isListOfWords(type) ? " " : " \\fI") + roff(type) + "\\fR";
        text += "\n" + roff(pOption->get_description());
        if (!pOption->get_default_str().empty())
            text += roff(" (by default " + pOption->get_default_str() + ")");
        text += ".\n";
    }
    return text;
}

std::vector<const CLI::App*> allCommands(const CLI::App& app)
{
    return app.get_subcommands([](const CLI::App*) { return true; });
}

// "input, output"
std::string usesText(const FormatInfo& info)
{
    std::string uses;
    for (const auto& [bUse, pUse] :
         {std::make_pair(info.bScene, "input"), {info.bMesh, "input of check"}, {info.bOutput, "output"}})
        if (bUse)
            uses += (uses.empty() ? "" : ", ") + std::string(pUse);
    return uses;
}

std::string commandsManual(const CLI::App& app)
{
    std::string text = ".SH COMMANDS\n";
    for (const CLI::App* pCommand : allCommands(app)) {
        bool bOutput = pCommand->get_option_no_throw("--output") != nullptr;
        text += ".SS quor2d " + pCommand->get_name() + " INPUT" + (bOutput ? " \\-o OUTPUT..." : "") + " [OPTIONS]\n";
        text += roff(pCommand->get_description()) + ".\n" + optionsManual(*pCommand);
    }
    return text;
}

std::string formatsManual()
{
    std::string text = ".SH FORMATS\n";
    for (const FormatInfo& info : allFormats())
        text += ".TP\n\\fB" + roff(info.pName) + "\\fR \\fI" + roff(info.pExtensions) + "\\fR(" + usesText(info) +
                ")\n" + roff(info.pDescription) + ".\n";
    return text;
}

std::string paragraphs(const std::string& text)
{
    std::string result = roff(text);
    for (std::size_t i = result.find("\n\n"); i != std::string::npos; i = result.find("\n\n", i))
        result.replace(i, 2, "\n.PP\n"); // each turn removes an empty line
    return result + "\n";
}

// Lines of at most 120 characters; those after the first are indented.
std::string wrapped(const std::string& text, const std::string& indent)
{
    constexpr std::size_t kWidth = 120;
    std::string result;
    std::size_t length = 0;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (length > 0 && length + 1 + word.size() > kWidth) {
            result += '\n' + indent;
            length = indent.size();
        } else if (length > 0) {
            result += ' ';
            ++length;
        }
        result += word;
        length += word.size();
    }
    return result + "\n";
}

std::string optionsMarkdown(const CLI::App& app)
{
    std::string text;
    for (const CLI::Option* pOption : shownOptions(app)) {
        std::string type = pOption->get_items_expected_max() > 0 ? pOption->get_type_name() : "";
        std::string line = "- `" + optionNames(*pOption) + (type.empty() ? "" : " " + type) + "`: ";
        line += pOption->get_description();
        if (!pOption->get_default_str().empty())
            line += " (by default " + pOption->get_default_str() + ")";
        text += wrapped(line + ".", "  ");
    }
    return text;
}

std::string examplesMarkdown(const std::string& command)
{
    std::string text = "\n```sh\n";
    for (const Example& example : kExamples)
        if (command == example.pCommand)
            text += std::string("# ") + example.pMeaning + "\n" + example.pLine + "\n";
    return text + "```\n";
}

std::string joined(const std::vector<std::string>& vWords)
{
    std::string text;
    for (const std::string& word : vWords)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

// The values of an option: words, names of formats, files or nothing.
std::string completionOfValues(const CLI::Option& option)
{
    std::string type = option.get_type_name();
    std::string names;
    for (const std::string& longName : option.get_lnames())
        names += (names.empty() ? "--" : "|--") + longName;
    for (const std::string& shortName : option.get_snames())
        names += "|-" + shortName;
    std::string words;
    if (type == "FORMAT") {
        std::vector<std::string> vNames;
        for (const FormatInfo& info : allFormats())
            vNames.push_back(info.pName);
        words = joined(vNames);
    } else if (isListOfWords(type)) {
        words = type;
        std::replace(words.begin(), words.end(), '|', ' ');
    } else if (type.find("OUTPUT") != std::string::npos) {
        return "        " + names + ") COMPREPLY=($(compgen -f -- \"$current\")); return ;;\n";
    }
    return "        " + names + ") COMPREPLY=($(compgen -W \"" + words + "\" -- \"$current\")); return ;;\n";
}

} // namespace

std::string examplesText(const std::string& command)
{
    std::string text = "Examples:\n";
    for (const Example& example : kExamples)
        if (command.empty() || command == example.pCommand)
            text += std::string("  ") + example.pLine + "\n      " + example.pMeaning + "\n";
    return text;
}

std::string manualPage(const CLI::App& app, const std::string& version)
{
    std::string text = ".TH QUOR2D 1 \"\" \"quor2d " + version + "\" \"User Commands\"\n.SH NAME\nquor2d \\- " +
                       "triangulate points and lines, mesh polygons, check meshes\n.SH SYNOPSIS\n" +
                       ".B quor2d\n.I COMMAND INPUT\n[\\fB\\-o\\fR \\fIOUTPUT...\\fR] [\\fIOPTIONS\\fR]\n" +
                       ".SH DESCRIPTION\n" + paragraphs(kDescription) + commandsManual(app);
    text += ".SH GENERAL OPTIONS\n" + optionsManual(app) + formatsManual() + ".SH EXIT STATUS\n";
    for (const auto& status : kExitStatus)
        text += std::string(".TP\n.B ") + status[0] + "\n" + roff(status[1]) + "\n";
    text += ".SH EXAMPLES\n";
    for (const Example& example : kExamples)
        text += ".TP\n.B " + roff(example.pLine) + "\n" + roff(example.pMeaning) + "\n";
    return text;
}

std::string manualMarkdown(const CLI::App& app)
{
    std::string text = "# The command quor2d\n\nTriangulates points and lines, meshes polygons, checks meshes:\n\n```\n"
                       "quor2d COMMAND INPUT [-o OUTPUT...] [OPTIONS]\n```\n\n";
    std::istringstream description(kDescription);
    for (std::string line; std::getline(description, line);)
        text += wrapped(line, "");
    text += "\nWhat the formats hold, with an example of each, is told in [formats](formats.md).\n";
    for (const CLI::App* pCommand : allCommands(app)) {
        bool bOutput = pCommand->get_option_no_throw("--output") != nullptr;
        text += "\n## quor2d " + pCommand->get_name() + " INPUT" + (bOutput ? " -o OUTPUT..." : "") + "\n\n" +
                pCommand->get_description() + ".\n\n" + optionsMarkdown(*pCommand) +
                examplesMarkdown(pCommand->get_name());
    }
    text += "\n## Without a command\n\n" + optionsMarkdown(app) + "\n## Formats\n\n| Name | Extensions | Use | |\n" +
            "| --- | --- | --- | --- |\n";
    for (const FormatInfo& info : allFormats()) {
        std::string extensions = info.pExtensions;
        extensions.pop_back();
        text += std::string("| `") + info.pName + "` | `" + extensions + "` | " + usesText(info) + " | " +
                info.pDescription + " |\n";
    }
    text += "\n## Exit status\n\n";
    for (const auto& status : kExitStatus)
        text += wrapped(std::string("- ") + status[0] + ": " + status[1], "  ");
    return text + "\nThis page, the manual page and `--help` come from one source.\n";
}

std::string bashCompletion(const CLI::App& app)
{
    std::vector<std::string> vCommands;
    std::string values, options;
    std::vector<std::string> vGeneral;
    for (const CLI::Option* pOption : shownOptions(app))
        vGeneral.push_back("--" + pOption->get_lnames().front());
    std::vector<std::string> vSeen;
    for (const CLI::App* pCommand : allCommands(app)) {
        vCommands.push_back(pCommand->get_name());
        std::vector<std::string> vOptions;
        for (const CLI::Option* pOption : shownOptions(*pCommand)) {
            vOptions.push_back("--" + pOption->get_lnames().front());
            bool bSeen = std::find(vSeen.begin(), vSeen.end(), vOptions.back()) != vSeen.end();
            if (pOption->get_items_expected_max() > 0 && !bSeen) {
                values += completionOfValues(*pOption);
                vSeen.push_back(vOptions.back());
            }
        }
        options += "        " + pCommand->get_name() + ") options=\"" + joined(vOptions) + "\" ;;\n";
    }
    return "# bash completion for quor2d\n_quor2d()\n{\n    local current=${COMP_WORDS[COMP_CWORD]} options\n"
           "    COMPREPLY=()\n    if [ \"$COMP_CWORD\" -eq 1 ]; then\n        COMPREPLY=($(compgen -W \"" +
           joined(vCommands) + " " + joined(vGeneral) +
           "\" -- \"$current\"))\n        return\n    fi\n    case ${COMP_WORDS[COMP_CWORD - 1]} in\n" + values +
           "    esac\n    case ${COMP_WORDS[1]} in\n" + options +
           "    esac\n    if [[ $current == -* ]]; then\n"
           "        COMPREPLY=($(compgen -W \"$options\" -- \"$current\"))\n    else\n"
           "        COMPREPLY=($(compgen -f -- \"$current\"))\n    fi\n}\ncomplete -o filenames -F _quor2d quor2d\n";
}

} // namespace quor2d_tool
