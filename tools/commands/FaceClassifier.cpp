#include "commands/FaceClassifier.h"

#include <algorithm>
#include <deque>

namespace quor2d_tool
{
namespace
{

constexpr std::uint32_t kNone = MeshTopology::kNone;

// The numbers of the rings around a place, ascending.
using RingSet = std::vector<std::uint32_t>;

struct Face {
    RingSet rings;
    bool bOpen = false; // reaches the border of the hull, where no segment runs
};

// A way into a face that has not been visited: triangle, the face before (kNone: outside), the segment on the way.
struct Entrance {
    std::uint32_t cell;
    std::uint32_t fromFace;
    std::uint32_t segment;
};

class FaceClassifier
{
public:
    FaceClassifier(const Scene& rScene, const PlanarGraph& rGraph, const MeshTopology& rTopology)
        : scene(rScene), graph(rGraph), vCells(rTopology.cells()), vFaceOfCell(vCells.size(), kNone)
    {
    }

    Classification classify(const std::vector<SeedTriangle>& vSeeds)
    {
        collectFaces();
        std::vector<char> vInside;
        std::vector<double> vRegion;
        for (const Face& face : vFaces) {
            std::uint32_t feature = featureOf(face.rings);
            vInside.push_back(scene.vRings.empty() ? !face.bOpen || scene.vSegments.empty()
                                                   : feature != Scene::kNoFeature);
            vRegion.push_back(feature);
        }
        for (const SeedTriangle& seed : vSeeds) {
            if (seed.cell == kNone)
                continue;
            if (seed.bHole)
                vInside[vFaceOfCell[seed.cell]] = 0;
            else
                vRegion[vFaceOfCell[seed.cell]] = seed.region;
        }
        Classification result;
        for (std::uint32_t face : vFaceOfCell) {
            result.vInside.push_back(vInside[face]);
            result.vRegion.push_back(vRegion[face]);
        }
        return result;
    }

private:
    // Visits face after face from the border of the hull on; each segment on the way turns its rings on or off. Ends
    // because each visit numbers a face, and each face adds its entrances once.
    void collectFaces()
    {
        std::deque<Entrance> entrances;
        for (std::uint32_t c = 0; c < vCells.size() && entrances.empty(); ++c)
            for (std::size_t i = 0; i < 3; ++i)
                if (vCells[c].aNeighbors[i] == kNone)
                    entrances.push_back({c, kNone, vCells[c].aSegments[i]});
        while (!entrances.empty()) {
            Entrance entrance = entrances.front();
            entrances.pop_front();
            if (vFaceOfCell[entrance.cell] != kNone)
                continue;
            Face face;
            if (entrance.fromFace != kNone)
                face.rings = vFaces[entrance.fromFace].rings;
            if (entrance.segment != kNone)
                cross(face.rings, entrance.segment);
            fill(entrance.cell, face, entrances);
            vFaces.push_back(std::move(face));
        }
    }

    void fill(std::uint32_t start, Face& face, std::deque<Entrance>& entrances)
    {
        std::uint32_t number = static_cast<std::uint32_t>(vFaces.size());
        vStack.assign(1, start);
        vFaceOfCell[start] = number;
        while (!vStack.empty()) { // ends: a triangle enters the stack once
            const MeshTopology::Cell& cell = vCells[vStack.back()];
            vStack.pop_back();
            for (std::size_t i = 0; i < 3; ++i) {
                std::uint32_t neighbor = cell.aNeighbors[i];
                if (neighbor == kNone) {
                    face.bOpen |= cell.aSegments[i] == kNone;
                } else if (vFaceOfCell[neighbor] == kNone && cell.aSegments[i] != kNone) {
                    entrances.push_back({neighbor, number, cell.aSegments[i]});
                } else if (vFaceOfCell[neighbor] == kNone) {
                    vFaceOfCell[neighbor] = number;
                    vStack.push_back(neighbor);
                }
            }
        }
    }

    void cross(RingSet& rings, std::uint32_t segment) const
    {
        const PlanarGraph::Segment& s = graph.vSegments[segment];
        for (std::uint32_t i = 0; i < s.numSources; ++i) {
            std::uint32_t source = graph.vSources[s.firstSource + i];
            if (source >= scene.vRings.size())
                break; // the sources are sorted, rings first
            auto q_it = std::lower_bound(rings.begin(), rings.end(), source);
            if (q_it != rings.end() && *q_it == source)
                rings.erase(q_it);
            else
                rings.insert(q_it, source);
        }
    }

    // The last feature with a polygon whose outer ring, but no hole ring, is around. The rings of a polygon follow each
    // other, the outer one first.
    std::uint32_t featureOf(const RingSet& rings) const
    {
        std::uint32_t feature = Scene::kNoFeature;
        for (std::size_t i = 0; i < rings.size(); ++i) {
            const Scene::Ring& ring = scene.vRings[rings[i]];
            bool bInHole = i + 1 < rings.size() && scene.vRings[rings[i + 1]].polygon == ring.polygon;
            if (!ring.bHole && !bInHole)
                feature = std::max(feature, scene.vPolygonFeatures[ring.polygon]);
        }
        return feature;
    }

    const Scene& scene;
    const PlanarGraph& graph;
    const std::vector<MeshTopology::Cell>& vCells;
    std::vector<std::uint32_t> vFaceOfCell;
    std::vector<Face> vFaces;
    std::vector<std::uint32_t> vStack;
};

} // namespace

Classification classifyFaces(const Scene& scene, const PlanarGraph& graph, const MeshTopology& topology,
                             const std::vector<SeedTriangle>& vSeeds)
{
    return FaceClassifier(scene, graph, topology).classify(vSeeds);
}

} // namespace quor2d_tool
