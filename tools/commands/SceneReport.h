#pragma once

#include "formats/Scene.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace quor2d_tool
{

/// What is in a file of points, lines and polygons.
struct SceneReport {
    std::size_t numPoints = 0;
    std::size_t numDuplicates = 0; ///< points where another one stands already, but for the ends of rings
    Coord low;
    Coord high;
    std::vector<std::string> vAttributeNames;
    bool bPointMarkers = false;
    std::size_t numSegments = 0;         ///< of lines
    std::size_t numRingSegments = 0;     ///< of polygons
    std::size_t numNullSegments = 0;     ///< with one place for both ends
    std::size_t numRepeatedSegments = 0; ///< that another one joins the same places already
    std::size_t numFeatures = 0;
    std::size_t numPolygons = 0;
    std::size_t numRings = 0;
    std::size_t numHoleRings = 0;
    std::size_t numClosedLines = 0; ///< rings that the lines form: connected, two segments at each vertex
    std::size_t numHolePoints = 0;
    std::size_t numRegionPoints = 0;
    std::size_t numCrossings = 0; ///< pairs of segments that cross
    std::string firstCrossing;
    std::size_t numTouches = 0; ///< points that lie inside a segment
    std::string firstTouch;
};

/// Near-linear in the size of the scene, see BoxTree.
SceneReport inspectScene(const Scene& scene);

std::string sceneReportText(const SceneReport& report);
nlohmann::ordered_json sceneReportJson(const SceneReport& report);

} // namespace quor2d_tool
