#include "commands/Commands.h"
#include "commands/MeshBuilder.h"
#include "commands/MeshStatistics.h"
#include "commands/Progress.h"
#include "formats/NumberText.h"

#include <cstdio>
#include <nlohmann/json.hpp>

namespace quor2d_tool
{
namespace
{

std::string shortNumber(double value)
{
    char aText[32];
    std::snprintf(aText, sizeof aText, "%.3g", value);
    return aText;
}

std::string meshJson(const MeshStatistics& statistics, const MeshData& mesh, const BuildNotes& notes)
{
    nlohmann::ordered_json json = {{"input", mesh.name},
                                   {"duplicate_points", notes.numDuplicates},
                                   {"crossings", notes.numCrossings},
                                   {"new_vertices", notes.numNewVertices},
                                   {"seconds", notes.seconds}};
    json.update(statisticsJson(statistics));
    std::vector<std::size_t> vCounts(mesh.vRegions.size(), 0);
    for (std::uint32_t region : mesh.vTriangleRegions)
        ++vCounts[region];
    json["region_list"] = nlohmann::ordered_json::array();
    for (std::size_t r = 0; r < vCounts.size(); ++r)
        if (vCounts[r] > 0)
            json["region_list"].push_back({{"region", nlohmann::json::parse(plainNumberText(mesh.vRegions[r].number))},
                                           {"name", mesh.vRegions[r].name},
                                           {"triangles", vCounts[r]}});
    return json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n';
}

void printNotes(const Arguments& arguments, const MeshStatistics& statistics, const BuildNotes& notes)
{
    if (notes.numDuplicates > 0)
        printNote(arguments, "points at the place of another one: " + std::to_string(notes.numDuplicates));
    if (notes.numCrossings > 0)
        printNote(arguments, "crossings of segments, given a vertex: " + std::to_string(notes.numCrossings));
    if (notes.numUnrefined > 0)
        printNote(arguments, "parts too thin to be refined: " + std::to_string(notes.numUnrefined));
    printNote(arguments, std::to_string(statistics.numTriangles) + " triangles, " +
                             std::to_string(statistics.numVertices) + " vertices (" +
                             std::to_string(notes.numNewVertices) + " new), angles from " +
                             shortNumber(statistics.smallestAngle) + " degrees, " + shortNumber(notes.seconds) + " s");
}

} // namespace

int runMesh(const Arguments& arguments)
{
    checkTargets(arguments.vOutputs);
    Scene scene;
    {
        Progress progress("reading", arguments.bQuiet);
        scene = readScene(arguments.input, arguments.inputFormat);
    }
    BuildNotes notes;
    MeshData mesh = buildMesh(scene, arguments, notes);
    {
        Progress progress("writing", arguments.bQuiet);
        writeMesh(mesh, arguments.vOutputs);
    }
    if (arguments.bQuiet && arguments.stats == Stats::None)
        return 0;
    MeshStatistics statistics = measureMesh(mesh, collectMeshEdges(mesh));
    printNotes(arguments, statistics, notes);
    if (arguments.stats == Stats::Json)
        printResult(meshJson(statistics, mesh, notes));
    else if (arguments.stats == Stats::Text)
        printResult(statisticsText(statistics));
    return 0;
}

} // namespace quor2d_tool
