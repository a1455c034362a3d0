#include "commands/MeshTopology.h"

#include "ConstraintGraph2.h"
#include "ConstraintSegment2.h"

#include <algorithm>

namespace quor2d_tool
{
namespace
{

using ZELK_QUOR2D::ConstraintGraph2;
using ZELK_QUOR2D::ConstraintSegment2;
using ZELK_QUOR2D::Point2;
using ZELK_QUOR2D::Quor_2D;
using ZELK_QUOR2D::Triangle2;

std::vector<Triangle2*> trianglesOf(const Quor_2D& triangulation)
{
    std::vector<Triangle2*> vTriangles;
    triangulation.getTrianglePointers(vTriangles);
    return vTriangles;
}

std::uint32_t indexOf(const Point2* pVertex)
{
    return static_cast<std::uint32_t>(pVertex->getCustomIndex());
}

// The segment of the graph between two vertices; its segments are sorted by their ends.
std::uint32_t segmentBetween(const PlanarGraph& graph, std::uint32_t a, std::uint32_t b)
{
    std::uint64_t key = edgeKey(a, b);
    auto q_it = std::lower_bound(graph.vSegments.begin(), graph.vSegments.end(), key,
                                 [](const PlanarGraph::Segment& segment, std::uint64_t wanted) {
                                     return edgeKey(segment.from, segment.to) < wanted;
                                 });
    bool bFound = q_it != graph.vSegments.end() && edgeKey(q_it->from, q_it->to) == key;
    return bFound ? static_cast<std::uint32_t>(q_it - graph.vSegments.begin()) : FlatMap::kNone;
}

} // namespace

MeshTopology::MeshTopology(const Quor_2D& triangulation, const PlanarGraph& graph, const ConstraintGraph2* pConstraints)
    : vTriangles(trianglesOf(triangulation)), cellNumbers(vTriangles.size())
{
    numberVertices(triangulation, graph.vCoords.size());
    for (std::size_t t = 0; t < vTriangles.size(); ++t)
        cellNumbers.insert(reinterpret_cast<std::uintptr_t>(vTriangles[t]), static_cast<std::uint32_t>(t));
    FlatMap segments = pieces(graph, pConstraints);
    vCells.reserve(vTriangles.size());
    for (const Triangle2* pTriangle : vTriangles) {
        Cell cell;
        for (int i = 0; i < 3; ++i) {
            cell.aCorners[static_cast<std::size_t>(i)] = indexOf(pTriangle->getCorner(i));
            cell.aNeighbors[static_cast<std::size_t>(i)] = cellOf(pTriangle->getOppositeTriangle(i));
        }
        for (std::size_t i = 0; i < 3; ++i)
            cell.aSegments[i] = segments[edgeKey(cell.aCorners[next(i)], cell.aCorners[prev(i)])];
        vCells.push_back(cell);
    }
}

void MeshTopology::numberVertices(const Quor_2D& triangulation, std::size_t numKnown)
{
    std::vector<Point2*> vFound;
    triangulation.getVertexPointers(vFound);
    vVertices.assign(numKnown, nullptr);
    std::vector<Point2*> vNew;
    for (Point2* pVertex : vFound) {
        int index = pVertex->getCustomIndex();
        if (index >= 0 && static_cast<std::size_t>(index) < numKnown)
            vVertices[static_cast<std::size_t>(index)] = pVertex;
        else
            vNew.push_back(pVertex);
    }
    for (Point2* pVertex : vNew) {
        pVertex->setCustomIndex(static_cast<int>(vVertices.size()));
        vVertices.push_back(pVertex);
    }
}

// The pieces that the segments have been split into, with the segment of each.
FlatMap MeshTopology::pieces(const PlanarGraph& graph, const ConstraintGraph2* pConstraints) const
{
    std::vector<ConstraintSegment2*> vSegments, vPieces;
    std::vector<std::pair<std::uint64_t, std::uint32_t>> vFound;
    if (pConstraints)
        pConstraints->getOriginalConstraintSegments(vSegments);
    for (ConstraintSegment2* pSegment : vSegments) {
        std::uint32_t segment = segmentBetween(graph, indexOf(pSegment->getSrc()), indexOf(pSegment->getTrg()));
        vPieces.clear();
        if (pSegment->isAlive())
            vPieces.push_back(pSegment);
        else
            pSegment->getChildrenRec(vPieces);
        for (const ConstraintSegment2* pPiece : vPieces)
            vFound.push_back({edgeKey(indexOf(pPiece->getSrc()), indexOf(pPiece->getTrg())), segment});
    }
    FlatMap map(vFound.size());
    for (const auto& piece : vFound)
        map.insert(piece.first, piece.second);
    return map;
}

} // namespace quor2d_tool
