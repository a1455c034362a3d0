#include "formats/MeshEdges.h"

#include "geometry/FlatMap.h"

#include <algorithm>

namespace quor2d_tool
{
namespace
{

// A triangle's side, keyed by its vertices in ascending order.
struct Side {
    std::uint64_t key;
    std::uint32_t triangle;
    bool bForward; // runs from the lower number to the higher one
};

std::vector<Side> sortedSides(const MeshData& mesh)
{
    std::vector<Side> vSides;
    vSides.reserve(3 * mesh.vTriangles.size());
    for (std::uint32_t t = 0; t < mesh.vTriangles.size(); ++t)
        for (int i = 0; i < 3; ++i) {
            std::uint32_t a = mesh.vTriangles[t][static_cast<std::size_t>(i)];
            std::uint32_t b = mesh.vTriangles[t][static_cast<std::size_t>(i == 2 ? 0 : i + 1)];
            vSides.push_back({edgeKey(a, b), t, a < b});
        }
    std::sort(vSides.begin(), vSides.end(),
              [](const Side& a, const Side& b) { return a.key != b.key ? a.key < b.key : a.triangle < b.triangle; });
    return vSides;
}

MeshEdge makeEdge(const Side* pFirst, const Side* pLast)
{
    MeshEdge edge;
    edge.from = static_cast<std::uint32_t>(pFirst->key >> 32);
    edge.to = static_cast<std::uint32_t>(pFirst->key);
    for (const Side* pSide = pFirst; pSide != pLast; ++pSide) {
        std::uint32_t& triangle = pSide->bForward ? edge.left : edge.right;
        edge.bCrowded |= triangle != MeshEdge::kNone;
        triangle = pSide->triangle;
    }
    edge.bBorder = pLast - pFirst == 1;
    if (edge.left == MeshEdge::kNone) { // the border runs with its triangle on the left
        std::swap(edge.from, edge.to);
        std::swap(edge.left, edge.right);
    }
    return edge;
}

} // namespace

std::vector<MeshEdge> collectMeshEdges(const MeshData& mesh)
{
    std::vector<Side> vSides = sortedSides(mesh);
    std::vector<const MeshData::Edge*> vMarked;
    for (const MeshData::Edge& edge : mesh.vEdges)
        vMarked.push_back(&edge);
    auto lessKey = [](const MeshData::Edge* pA, const MeshData::Edge* pB) {
        return edgeKey(pA->from, pA->to) < edgeKey(pB->from, pB->to);
    };
    std::stable_sort(vMarked.begin(), vMarked.end(), lessKey);

    std::vector<MeshEdge> vEdges;
    vEdges.reserve(vSides.size() / 2);
    std::size_t marked = 0;
    for (std::size_t i = 0; i < vSides.size();) { // every turn takes all sides of an edge
        std::size_t end = i + 1;
        while (end < vSides.size() && vSides[end].key == vSides[i].key)
            ++end;
        MeshEdge edge = makeEdge(&vSides[i], &vSides[0] + end);
        auto keyOf = [&](std::size_t k) { return edgeKey(vMarked[k]->from, vMarked[k]->to); };
        while (marked < vMarked.size() && keyOf(marked) < vSides[i].key)
            ++marked;
        for (; marked < vMarked.size() && keyOf(marked) == vSides[i].key; ++marked) {
            if (edge.marker == 0)
                edge.marker = vMarked[marked]->marker;
            edge.bConstraint |= vMarked[marked]->bConstraint;
        }
        vEdges.push_back(edge);
        i = end;
    }
    return vEdges;
}

} // namespace quor2d_tool
