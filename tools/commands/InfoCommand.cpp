#include "commands/Commands.h"
#include "commands/Progress.h"
#include "commands/SceneReport.h"

#include <nlohmann/json.hpp>

namespace quor2d_tool
{

int runInfo(const Arguments& arguments)
{
    Progress progress("reading", arguments.bQuiet);
    SceneReport report = inspectScene(readScene(arguments.input, arguments.inputFormat));
    if (arguments.stats == Stats::Json)
        printResult(sceneReportJson(report).dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + '\n');
    else
        printResult(sceneReportText(report));
    return 0;
}

} // namespace quor2d_tool
