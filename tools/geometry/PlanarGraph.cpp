#include "geometry/PlanarGraph.h"

#include "formats/CoordIndex.h"
#include "formats/FileError.h"
#include "geometry/ExactPredicates.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace quor2d_tool
{
namespace
{

// Each round splits what the rounding of the one before made touch. The pieces shrink towards neighbouring doubles,
// so a few rounds are enough; the limit only guards the loop.
constexpr int kMaxRounds = 100;

class PlanarGraphBuilder
{
public:
    explicit PlanarGraphBuilder(const Scene& rScene) : scene(rScene), index(rScene.points.size()) {}

    PlanarGraph build()
    {
        collectVertices();
        collectSegments();
        mergeEqualSegments();
        std::vector<char> vChanged;
        for (int round = 0; splitAtContacts(vChanged); ++round)
            if (round == kMaxRounds)
                throw FileError(scene.name, "the crossings of its segments are too close for double precision");
        finish();
        return std::move(graph);
    }

private:
    // A segment while it is worked on: its pieces share one source; equal pieces are merged into lists at the end.
    struct Piece {
        VertexPair ends; // ascending
        std::uint32_t source;
        bool bChanged;
    };

    void collectVertices()
    {
        for (std::uint32_t i = 0; i < scene.points.size(); ++i) {
            std::uint32_t vertex = index.insert(scene.points.vCoords[i]);
            graph.vVertexOfPoint.push_back(vertex);
            if (vertex == graph.vPoints.size())
                graph.vPoints.push_back(i);
        }
    }

    void addPiece(std::uint32_t from, std::uint32_t to, std::uint32_t source, bool bChanged)
    {
        if (from != to)
            vPieces.push_back({{std::min(from, to), std::max(from, to)}, source, bChanged});
    }

    void collectSegments()
    {
        const auto& vVertex = graph.vVertexOfPoint;
        for (std::uint32_t r = 0; r < scene.vRings.size(); ++r) {
            const std::uint32_t* pRing = scene.vRingVertices.data() + scene.vRings[r].first;
            std::size_t count = scene.vRings[r].count;
            for (std::size_t i = 0; i < count; ++i)
                addPiece(vVertex[pRing[i]], vVertex[pRing[i + 1 == count ? 0 : i + 1]], r, false);
        }
        std::uint32_t source = static_cast<std::uint32_t>(scene.vRings.size());
        for (const Scene::Segment& segment : scene.vSegments)
            addPiece(vVertex[segment.from], vVertex[segment.to], source++, false);
    }

    // Sorts the pieces and numbers their distinct pairs of ends.
    void mergeEqualSegments()
    {
        std::sort(vPieces.begin(), vPieces.end(), [](const Piece& a, const Piece& b) {
            return std::tie(a.ends, a.source) < std::tie(b.ends, b.source);
        });
        vPairs.clear();
        vPieceBegin.clear();
        for (std::size_t i = 0; i < vPieces.size(); ++i)
            if (i == 0 || vPieces[i].ends != vPieces[i - 1].ends) {
                vPairs.push_back(vPieces[i].ends);
                vPieceBegin.push_back(i);
            }
        vPieceBegin.push_back(vPieces.size());
    }

    // Splits the segments once at everything they touch; in the first round all pairs are looked at.
    //
    // Returns whether there was anything to split.
    bool splitAtContacts(std::vector<char>& vChanged)
    {
        std::vector<VertexPair> vItems = vPairs;
        addLonePoints(index.size(), vItems); // they may lie on a segment
        if (!vChanged.empty())
            vChanged.resize(vItems.size(), 0);
        SegmentContacts contacts = findContacts(index.coords(), vItems, vChanged);
        if (contacts.vCrossings.empty() && contacts.vTouches.empty())
            return false;
        addCrossingVertices(contacts);
        splitPieces(contacts.vTouches);
        mergeEqualSegments();
        vChanged.assign(vPairs.size(), 0);
        for (std::size_t s = 0; s < vPairs.size(); ++s)
            for (std::size_t i = vPieceBegin[s]; i < vPieceBegin[s + 1]; ++i)
                vChanged[s] |= vPieces[i].bChanged;
        return true;
    }

    // Turns crossings into touches of a vertex near the crossing point.
    void addCrossingVertices(SegmentContacts& contacts)
    {
        for (const auto& crossing : contacts.vCrossings) {
            const VertexPair& s = vPairs[crossing[0]];
            const VertexPair& t = vPairs[crossing[1]];
            Coord place = lineCrossing(index[s[0]], index[s[1]], index[t[0]], index[t[1]]);
            std::uint32_t vertex = index.insert(snapped(place, s, t));
            if (vertex == graph.vPoints.size()) {
                graph.vPoints.push_back(PlanarGraph::kNewVertex);
                ++graph.numCrossings;
            }
            contacts.vTouches.push_back({crossing[0], vertex});
            contacts.vTouches.push_back({crossing[1], vertex});
        }
    }

    // A crossing next to an end of its segments is that end: otherwise nearly parallel segments would cross again and
    // again, a double further each time.
    Coord snapped(const Coord& place, const VertexPair& s, const VertexPair& t) const
    {
        auto isNear = [](double a, double b) {
            constexpr double kTolerance = 4 * std::numeric_limits<double>::epsilon();
            return std::abs(a - b) <= kTolerance * std::max(std::abs(a), std::abs(b));
        };
        for (std::uint32_t end : {s[0], s[1], t[0], t[1]})
            if (isNear(place.x, index[end].x) && isNear(place.y, index[end].y))
                return index[end];
        return place;
    }

    void splitPieces(std::vector<SegmentContacts::Touch>& vTouches)
    {
        std::sort(vTouches.begin(), vTouches.end(), [](const auto& a, const auto& b) {
            return a.segment != b.segment ? a.segment < b.segment : a.vertex < b.vertex;
        });
        std::vector<Piece> vOldPieces;
        vOldPieces.swap(vPieces);
        std::vector<std::uint32_t> vChain;
        std::size_t touch = 0;
        for (std::uint32_t s = 0; s < vPairs.size(); ++s) {
            vChain.assign(vPairs[s].begin(), vPairs[s].end());
            for (; touch < vTouches.size() && vTouches[touch].segment == s; ++touch)
                vChain.push_back(vTouches[touch].vertex);
            bool bSplit = vChain.size() > 2;
            if (bSplit)
                sortAlong(vPairs[s], vChain);
            for (std::size_t i = vPieceBegin[s]; i < vPieceBegin[s + 1]; ++i)
                for (std::size_t k = 1; k < vChain.size(); ++k)
                    addPiece(vChain[k - 1], vChain[k], vOldPieces[i].source, bSplit);
        }
    }

    // Orders vertices on or next to a segment from its first end to its second: along the axis in which it is longer.
    // The ends stay where they are, even if a vertex was snapped to a place a little beyond.
    void sortAlong(const VertexPair& ends, std::vector<std::uint32_t>& vChain) const
    {
        const Coord& a = index[ends[0]];
        const Coord& b = index[ends[1]];
        bool bByX = std::abs(b.x / 2 - a.x / 2) >= std::abs(b.y / 2 - a.y / 2);
        auto key = [&](std::uint32_t v) {
            double x = a.x < b.x ? index[v].x : -index[v].x;
            double y = a.y < b.y ? index[v].y : -index[v].y;
            return bByX ? std::make_pair(x, y) : std::make_pair(y, x);
        };
        vChain.erase(
            std::remove_if(vChain.begin(), vChain.end(), [&](std::uint32_t v) { return v == ends[0] || v == ends[1]; }),
            vChain.end());
        std::sort(vChain.begin(), vChain.end(), [&](std::uint32_t v, std::uint32_t w) { return key(v) < key(w); });
        vChain.erase(std::unique(vChain.begin(), vChain.end()), vChain.end());
        vChain.insert(vChain.begin(), ends[0]);
        vChain.push_back(ends[1]);
    }

    void finish()
    {
        for (std::size_t i = 0; i < index.size(); ++i)
            graph.vCoords.push_back(index[i]);
        for (std::size_t s = 0; s < vPairs.size(); ++s) {
            PlanarGraph::Segment segment;
            segment.from = vPairs[s][0];
            segment.to = vPairs[s][1];
            segment.firstSource = static_cast<std::uint32_t>(graph.vSources.size());
            for (std::size_t i = vPieceBegin[s]; i < vPieceBegin[s + 1]; ++i)
                graph.vSources.push_back(vPieces[i].source);
            segment.numSources = static_cast<std::uint32_t>(graph.vSources.size()) - segment.firstSource;
            graph.vSegments.push_back(segment);
        }
    }

    const Scene& scene;
    CoordIndex index;
    PlanarGraph graph;
    std::vector<Piece> vPieces;
    std::vector<VertexPair> vPairs;       // the distinct segments
    std::vector<std::size_t> vPieceBegin; // where the pieces of each begin
};

} // namespace

PlanarGraph makePlanar(const Scene& scene)
{
    return PlanarGraphBuilder(scene).build();
}

} // namespace quor2d_tool
