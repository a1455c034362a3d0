#include "commands/Commands.h"
#include "commands/MeshCheck.h"
#include "commands/MeshStatistics.h"
#include "commands/Progress.h"
#include "formats/FileError.h"
#include "formats/OutputFile.h"

#include <cstdio>
#include <nlohmann/json.hpp>

namespace quor2d_tool
{
namespace
{

std::string delaunayText(const MeshCheckResult& result)
{
    if (!result.defect.empty())
        return "not checked";
    if (result.numNonDelaunay > 0)
        return "no, " + std::to_string(result.numNonDelaunay) + " edges are not: " + result.delaunayDefect;
    if (result.numConstraintsNotDelaunay > 0)
        return "yes, but for " + std::to_string(result.numConstraintsNotDelaunay) + " constraint edges";
    return "yes";
}

std::string checkText(const MeshCheckResult& result, const MeshData& mesh)
{
    std::string text = "valid     " + (result.defect.empty() ? "yes" : "no: " + result.defect) + "\nDelaunay  " +
                       delaunayText(result) + '\n';
    if (result.bClockwise)
        text += "direction clockwise\n";
    return text + statisticsText(measureMesh(mesh, result.vEdges));
}

std::string checkJson(const MeshCheckResult& result, const MeshData& mesh)
{
    nlohmann::ordered_json json = {{"valid", result.defect.empty()},
                                   {"delaunay", result.defect.empty() && result.numNonDelaunay == 0},
                                   {"not_delaunay_edges", result.numNonDelaunay},
                                   {"not_delaunay_constraints", result.numConstraintsNotDelaunay},
                                   {"clockwise", result.bClockwise},
                                   {"defect", result.defect.empty() ? result.delaunayDefect : result.defect}};
    json.update(statisticsJson(measureMesh(mesh, result.vEdges)));
    return json.dump(2) + '\n';
}

} // namespace

void printResult(const std::string& text)
{
    OutputFile file("-");
    file << text;
    file.close();
}

void printNote(const Arguments& arguments, const std::string& text)
{
    if (!arguments.bQuiet)
        std::fprintf(stderr, "quor2d: %s\n", text.c_str());
}

int runCheck(const Arguments& arguments)
{
    Progress progress("checking", arguments.bQuiet);
    MeshData mesh = readMesh(arguments.input, arguments.inputFormat);
    MeshCheckResult result = checkMesh(mesh);
    printResult(arguments.stats == Stats::Json ? checkJson(result, mesh) : checkText(result, mesh));
    std::string defect = result.defect;
    if (defect.empty() && !arguments.bIgnoreDelaunay)
        defect = result.delaunayDefect;
    if (!defect.empty())
        throw FileError(mesh.name, defect);
    return 0;
}

} // namespace quor2d_tool
