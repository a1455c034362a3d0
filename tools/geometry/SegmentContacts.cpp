#include "geometry/SegmentContacts.h"

#include "geometry/ExactPredicates.h"

namespace quor2d_tool
{
namespace
{

class ContactFinder
{
public:
    ContactFinder(const std::vector<Coord>& vAllCoords, const std::vector<VertexPair>& vAllSegments)
        : vCoords(vAllCoords), vSegments(vAllSegments)
    {
    }

    // Looks at segments i and j.
    void lookAt(std::uint32_t i, std::uint32_t j)
    {
        const VertexPair& s = vSegments[i];
        const VertexPair& t = vSegments[j];
        int t0 = sideOf(s, t[0]), t1 = sideOf(s, t[1]);
        if (t0 * t1 > 0)
            return;
        int s0 = sideOf(t, s[0]), s1 = sideOf(t, s[1]);
        if (s0 * s1 > 0)
            return;
        if (t0 * t1 < 0 && s0 * s1 < 0) {
            contacts.vCrossings.push_back({i, j});
            return;
        }
        touch(i, t[0], t0);
        touch(i, t[1], t1);
        touch(j, s[0], s0);
        touch(j, s[1], s1);
    }

    SegmentContacts contacts;

private:
    // An end point lies on its segment; a lone point has no sides.
    int sideOf(const VertexPair& segment, std::uint32_t vertex) const
    {
        if (vertex == segment[0] || vertex == segment[1] || segment[0] == segment[1])
            return 0;
        return orientation(vCoords[segment[0]], vCoords[segment[1]], vCoords[vertex]);
    }

    void touch(std::uint32_t i, std::uint32_t vertex, int side)
    {
        const VertexPair& s = vSegments[i];
        if (side == 0 && s[0] != s[1] && vertex != s[0] && vertex != s[1] &&
            inBoxOf(vCoords[vertex], vCoords[s[0]], vCoords[s[1]]))
            contacts.vTouches.push_back({i, vertex});
    }

    const std::vector<Coord>& vCoords;
    const std::vector<VertexPair>& vSegments;
};

} // namespace

SegmentContacts findContacts(const std::vector<Coord>& vCoords, const std::vector<VertexPair>& vSegments,
                             const std::vector<char>& vChanged)
{
    std::vector<Bounds> vBounds;
    vBounds.reserve(vSegments.size());
    for (const VertexPair& s : vSegments)
        vBounds.push_back(Bounds::ofSegment(vCoords[s[0]], vCoords[s[1]]));
    BoxTree tree(vBounds);
    ContactFinder finder(vCoords, vSegments);
    for (std::uint32_t i = 0; i < vSegments.size(); ++i) {
        if (!vChanged.empty() && !vChanged[i])
            continue;
        tree.query(vBounds[i], [&](std::uint32_t j) {
            bool bOtherChanged = vChanged.empty() || vChanged[j];
            if (j > i || (j < i && !bOtherChanged)) // a pair of two flagged ones is met twice
                finder.lookAt(i, j);
        });
    }
    return std::move(finder.contacts);
}

void addLonePoints(std::size_t numVertices, std::vector<VertexPair>& vSegments)
{
    if (vSegments.empty())
        return;
    std::vector<char> vUsed(numVertices, 0);
    for (const VertexPair& pair : vSegments)
        vUsed[pair[0]] = vUsed[pair[1]] = 1;
    for (std::uint32_t v = 0; v < numVertices; ++v)
        if (!vUsed[v])
            vSegments.push_back({v, v});
}

} // namespace quor2d_tool
