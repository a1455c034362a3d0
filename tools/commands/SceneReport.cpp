#include "commands/SceneReport.h"

#include "commands/MeshStatistics.h"
#include "formats/CoordIndex.h"
#include "formats/NumberText.h"
#include "geometry/ExactPredicates.h"
#include "geometry/SegmentContacts.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <numeric>
#include <tuple>

namespace quor2d_tool
{
namespace
{

class SceneInspector
{
public:
    explicit SceneInspector(const Scene& rScene) : scene(rScene), index(rScene.points.size()) {}

    SceneReport inspect()
    {
        inspectPoints();
        countGivenParts();
        collectSegments();
        countClosedLines();
        findContactsOfSegments();
        return std::move(report);
    }

private:
    void inspectPoints()
    {
        report.numPoints = scene.points.size();
        report.vAttributeNames = scene.points.vAttributeNames;
        report.bPointMarkers = !scene.points.vMarkers.empty();
        if (report.numPoints > 0)
            report.low = report.high = scene.points.vCoords[0];
        for (const Coord& c : scene.points.vCoords) {
            report.low = {std::min(report.low.x, c.x), std::min(report.low.y, c.y)};
            report.high = {std::max(report.high.x, c.x), std::max(report.high.y, c.y)};
            vPlaces.push_back(index.insert(c));
        }
        report.numDuplicates = report.numPoints - scene.numClosingPoints - index.size();
    }

    void countGivenParts()
    {
        report.numSegments = scene.vSegments.size();
        report.numFeatures = scene.vFeatureNames.size();
        report.numPolygons = scene.vPolygonFeatures.size();
        report.numRings = scene.vRings.size();
        for (const Scene::Ring& ring : scene.vRings) {
            report.numRingSegments += ring.count;
            report.numHoleRings += ring.bHole;
        }
        report.numHolePoints = scene.vHolePoints.size();
        report.numRegionPoints = scene.vRegionPoints.size();
    }

    void addSegment(std::uint32_t from, std::uint32_t to)
    {
        if (from == to)
            ++report.numNullSegments;
        else
            vSegments.push_back({std::min(from, to), std::max(from, to)});
    }

    static void makeDistinct(std::vector<VertexPair>& vPairs)
    {
        std::sort(vPairs.begin(), vPairs.end());
        vPairs.erase(std::unique(vPairs.begin(), vPairs.end()), vPairs.end());
    }

    void collectSegments()
    {
        for (const Scene::Segment& segment : scene.vSegments)
            addSegment(vPlaces[segment.from], vPlaces[segment.to]);
        vLineSegments = vSegments;
        makeDistinct(vLineSegments);
        for (const Scene::Ring& ring : scene.vRings)
            for (std::size_t i = 0; i < ring.count; ++i) {
                std::size_t next = i + 1 == ring.count ? 0 : i + 1;
                addSegment(vPlaces[scene.vRingVertices[ring.first + i]],
                           vPlaces[scene.vRingVertices[ring.first + next]]);
            }
        report.numRepeatedSegments = vSegments.size();
        makeDistinct(vSegments);
        report.numRepeatedSegments -= vSegments.size();
    }

    void countClosedLines()
    {
        std::vector<std::uint32_t> vParent(index.size()), vDegree(index.size(), 0);
        std::iota(vParent.begin(), vParent.end(), 0u);
        auto rootOf = [&vParent](std::uint32_t v) { // halves the path, so it ends at the root
            while (vParent[v] != v)
                v = vParent[v] = vParent[vParent[v]];
            return v;
        };
        for (const VertexPair& s : vLineSegments) {
            ++vDegree[s[0]];
            ++vDegree[s[1]];
            vParent[rootOf(s[0])] = rootOf(s[1]);
        }
        std::vector<char> vClosed(index.size(), 1);
        for (std::uint32_t v = 0; v < index.size(); ++v)
            if (vDegree[v] != 2)
                vClosed[rootOf(v)] = 0;
        for (std::uint32_t v = 0; v < index.size(); ++v)
            report.numClosedLines += vParent[v] == v && vClosed[v];
    }

    std::string segmentText(const VertexPair& s) const
    {
        return "(" + placeText(index[s[0]]) + ")-(" + placeText(index[s[1]]) + ")";
    }
    static std::string placeText(const Coord& c) { return numberText(c.x) + " " + numberText(c.y); }

    void findContactsOfSegments()
    {
        addLonePoints(index.size(), vSegments);
        SegmentContacts contacts = findContacts(index.coords(), vSegments);
        report.numCrossings = contacts.vCrossings.size();
        if (report.numCrossings > 0) {
            const VertexPair& s = vSegments[contacts.vCrossings[0][0]];
            const VertexPair& t = vSegments[contacts.vCrossings[0][1]];
            Coord p = lineCrossing(index[s[0]], index[s[1]], index[t[0]], index[t[1]]);
            report.firstCrossing = segmentText(s) + " and " + segmentText(t) + " near (" + placeText(p) + ")";
        }
        auto& vTouches = contacts.vTouches;
        auto key = [](const auto& touch) { return std::make_tuple(touch.segment, touch.vertex); };
        std::sort(vTouches.begin(), vTouches.end(), [&](const auto& a, const auto& b) { return key(a) < key(b); });
        auto sameKey = [&](const auto& a, const auto& b) { return key(a) == key(b); };
        vTouches.erase(std::unique(vTouches.begin(), vTouches.end(), sameKey), vTouches.end());
        report.numTouches = vTouches.size();
        if (report.numTouches > 0)
            report.firstTouch =
                "(" + placeText(index[vTouches[0].vertex]) + ") on " + segmentText(vSegments[vTouches[0].segment]);
    }

    const Scene& scene;
    SceneReport report;
    CoordIndex index;
    std::vector<std::uint32_t> vPlaces; // per point
    std::vector<VertexPair> vSegments;
    std::vector<VertexPair> vLineSegments;
};

std::string countText(std::size_t count, const char* pWhat)
{
    return count == 0 ? "" : ", " + std::to_string(count) + " " + pWhat;
}

} // namespace

SceneReport inspectScene(const Scene& scene)
{
    return SceneInspector(scene).inspect();
}

std::string sceneReportText(const SceneReport& report)
{
    std::string attributes;
    for (const std::string& attribute : report.vAttributeNames)
        attributes += (attributes.empty() ? "" : ", ") + attribute;
    std::string text = "points     " + std::to_string(report.numPoints) +
                       countText(report.numDuplicates, "of them at the place of another") +
                       (report.bPointMarkers ? ", with markers" : "") + '\n';
    if (!attributes.empty())
        text += "attributes " + attributes + '\n';
    text += "box        " + boxText(report.low, report.high) + '\n';
    text += "segments   " + std::to_string(report.numSegments + report.numRingSegments) +
            countText(report.numRingSegments, "of polygons") + countText(report.numNullSegments, "without length") +
            countText(report.numRepeatedSegments, "repeated") + '\n';
    if (report.numPolygons > 0)
        text += "polygons   " + std::to_string(report.numPolygons) + " with " + std::to_string(report.numRings) +
                " rings" + countText(report.numHoleRings, "of them holes") + '\n';
    if (report.numFeatures > 0)
        text += "features   " + std::to_string(report.numFeatures) + '\n';
    text += "closed     " + std::to_string(report.numRings + report.numClosedLines) + " rings" +
            countText(report.numClosedLines, "of them of lines") + '\n';
    if (report.numHolePoints + report.numRegionPoints > 0)
        text += "marked     " + std::to_string(report.numHolePoints) + " holes, " +
                std::to_string(report.numRegionPoints) + " regions\n";
    text += "crossings  " + std::to_string(report.numCrossings);
    text += report.numCrossings > 0 ? ", the first of " + report.firstCrossing + '\n' : "\n";
    text += "touches    " + std::to_string(report.numTouches);
    return text + (report.numTouches > 0 ? ", the first at " + report.firstTouch + '\n' : "\n");
}

nlohmann::ordered_json sceneReportJson(const SceneReport& report)
{
    return {{"points", report.numPoints},
            {"duplicate_points", report.numDuplicates},
            {"attributes", report.vAttributeNames},
            {"box", {report.low.x, report.low.y, report.high.x, report.high.y}},
            {"segments", report.numSegments},
            {"polygon_segments", report.numRingSegments},
            {"null_segments", report.numNullSegments},
            {"repeated_segments", report.numRepeatedSegments},
            {"features", report.numFeatures},
            {"polygons", report.numPolygons},
            {"rings", report.numRings},
            {"hole_rings", report.numHoleRings},
            {"closed_lines", report.numClosedLines},
            {"hole_points", report.numHolePoints},
            {"region_points", report.numRegionPoints},
            {"crossings", report.numCrossings},
            {"touches", report.numTouches}};
}

} // namespace quor2d_tool
