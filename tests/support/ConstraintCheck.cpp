#include "tests/support/ConstraintCheck.h"

#include <gmpxx.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <sstream>
#include <unordered_set>

namespace ZELK_QUOR2D
{
namespace test
{

namespace
{

using Edge = std::pair<const Point2*, const Point2*>;

Edge makeEdge(const Point2* p, const Point2* q)
{
    return std::less<const Point2*>()(p, q) ? Edge(p, q) : Edge(q, p);
}

Edge edgeOf(const ConstraintSegment2* pCSeg)
{
    return makeEdge(pCSeg->getSrc(), pCSeg->getTrg());
}

std::string describe(const Edge& edge)
{
    std::ostringstream stream;
    stream.precision(17);
    stream << "(" << edge.first->x() << ", " << edge.first->y() << ") - (" << edge.second->x() << ", "
           << edge.second->y() << ")";
    return stream.str();
}

// Where p lies along the segment: 0 at its source, its squared length at its target. Exact.
mpq_class positionAlong(const ConstraintSegment2* pCSeg, const Point2* p)
{
    const Point2 &src = *pCSeg->getSrc(), &trg = *pCSeg->getTrg();
    const mpq_class sx(src.x()), sy(src.y());
    return mpq_class((mpq_class(p->x()) - sx) * (mpq_class(trg.x()) - sx) +
                     (mpq_class(p->y()) - sy) * (mpq_class(trg.y()) - sy));
}

bool isBeside(const ConstraintSegment2* pCSeg, const Point2* p, double maxDeviation)
{
    if (orientationSign(*pCSeg->getSrc(), *pCSeg->getTrg(), *p) == 0)
        return false;
    const Point2 &src = *pCSeg->getSrc(), &trg = *pCSeg->getTrg();
    const mpq_class sx(src.x()), sy(src.y());
    const mpq_class dx = mpq_class(trg.x()) - sx, dy = mpq_class(trg.y()) - sy;
    const mpq_class cross = dx * (mpq_class(p->y()) - sy) - dy * (mpq_class(p->x()) - sx);
    const mpq_class limit(maxDeviation);
    return cross * cross > limit * limit * (dx * dx + dy * dy);
}

class ConstraintChecker
{
public:
    ConstraintChecker(const Quor_2D& triangulation, const std::vector<ConstraintGraph2*>& graphs,
                      const ConstraintCheckOptions& checkOptions)
        : dt(triangulation), vGraphs(graphs), options(checkOptions)
    {
        std::vector<Triangle2*> vTriangles;
        dt.getTrianglePointers(vTriangles);
        for (const Triangle2* pT : vTriangles)
            for (int i = 0; i < 3; ++i)
                sMeshEdges.insert(makeEdge(pT->getCorner((i + 1) % 3), pT->getCorner((i + 2) % 3)));
        for (ConstraintSegment2* pPiece : alivePieces(vGraphs)) {
            if (!mPieces.emplace(edgeOf(pPiece), pPiece).second)
                defect = "two alive segments for the edge " + describe(edgeOf(pPiece));
        }
    }

    std::string findDefect()
    {
        using Check = void (ConstraintChecker::*)();
        for (const Check check : {&ConstraintChecker::checkPresence, &ConstraintChecker::checkChains,
                                  &ConstraintChecker::checkQueries, &ConstraintChecker::checkMesh})
            if (defect.empty())
                (this->*check)();
        return defect;
    }

private:
    void checkPresence()
    {
        std::size_t numMissing = 0;
        std::string missing;
        for (const auto& [edge, pPiece] : mPieces) {
            if (sMeshEdges.count(edge) > 0)
                continue;
            ++numMissing;
            missing = describe(edge);
        }
        if (numMissing > options.maxMissing)
            defect = std::to_string(numMissing) + " alive pieces are no edges, among them " + missing;
    }

    void checkChains()
    {
        for (ConstraintGraph2* pGraph : vGraphs) {
            std::vector<ConstraintSegment2*> vOriginal;
            pGraph->getOriginalConstraintSegments(vOriginal);
            for (ConstraintSegment2* pCSeg : vOriginal)
                if (defect.empty() && !isChain(pCSeg))
                    defect = describeBrokenChain(pCSeg);
        }
    }

    static std::string describeBrokenChain(ConstraintSegment2* pCSeg)
    {
        std::string text = "the pieces are no chain along " + describe(edgeOf(pCSeg)) + ":";
        for (const ConstraintSegment2* pLeaf : leavesOf(pCSeg))
            text += "\n  " + describe(edgeOf(pLeaf));
        return text;
    }

    // Walks from the source to the target, each piece once.
    bool isChain(ConstraintSegment2* pCSeg) const
    {
        std::multimap<const Point2*, const ConstraintSegment2*> mPiecesAt;
        const std::vector<ConstraintSegment2*> vLeaves = leavesOf(pCSeg);
        for (const ConstraintSegment2* pLeaf : vLeaves) {
            mPiecesAt.emplace(pLeaf->getSrc(), pLeaf);
            mPiecesAt.emplace(pLeaf->getTrg(), pLeaf);
        }
        const mpq_class backward = backwardLimit(pCSeg);
        const Point2* pAt = pCSeg->getSrc();
        const ConstraintSegment2* pLast = nullptr;
        for (std::size_t step = 0; step < vLeaves.size(); ++step) {
            const ConstraintSegment2* pNext = nullptr;
            const auto range = mPiecesAt.equal_range(pAt);
            for (auto it = range.first; it != range.second; ++it)
                if (it->second != pLast)
                    pNext = it->second;
            if (!pNext || std::distance(range.first, range.second) > 2)
                return false;
            const Point2* const pEnd = pNext->getSrc() == pAt ? pNext->getTrg() : pNext->getSrc();
            if (isBeside(pCSeg, pEnd, options.maxDeviation) ||
                positionAlong(pCSeg, pEnd) <= positionAlong(pCSeg, pAt) - backward)
                return false;
            pAt = pEnd;
            pLast = pNext;
        }
        return pAt == pCSeg->getTrg();
    }

    // Rounding may turn the order along the segment round by as much as it puts points beside it.
    mpq_class backwardLimit(const ConstraintSegment2* pCSeg) const
    {
        const double length =
            std::hypot(pCSeg->getTrg()->x() - pCSeg->getSrc()->x(), pCSeg->getTrg()->y() - pCSeg->getSrc()->y());
        return mpq_class(std::min(length, std::numeric_limits<double>::max())) * mpq_class(options.maxDeviation);
    }

    void checkQueries()
    {
        for (const Edge& edge : sMeshEdges) {
            Point2* const p = const_cast<Point2*>(edge.first);
            Point2* const q = const_cast<Point2*>(edge.second);
            const bool bExpected = mPieces.count(edge) > 0;
            if (dt.isConstraint(p, q) != bExpected || dt.isConstraint(q, p) != bExpected)
                defect = "isConstraint() is wrong for " + describe(edge);
        }
        for (ConstraintGraph2* pGraph : vGraphs)
            for (ConstraintSegment2* pPiece : alivePieces({pGraph}))
                if (!pGraph->isConstraint(pPiece->getTrg(), pPiece->getSrc()))
                    defect = "a graph does not know its piece " + describe(edgeOf(pPiece));
    }

    void checkMesh()
    {
        MeshCheckOptions meshOptions;
        meshOptions.isExemptEdge = [this](const Point2* p, const Point2* q) {
            const auto it = mPieces.find(makeEdge(p, q));
            return it != mPieces.end() && (options.bRefined || it->second->getCIS() == CIS_CONSTRAINED_DELAUNAY);
        };
        std::vector<Triangle2*> vTriangles;
        std::vector<Point2*> vVertices;
        dt.getTrianglePointers(vTriangles);
        dt.getVertexPointers(vVertices);
        defect = findMeshDefect(vTriangles, vVertices, meshOptions);
    }

    const Quor_2D& dt;
    const std::vector<ConstraintGraph2*>& vGraphs;
    const ConstraintCheckOptions& options;
    std::set<Edge> sMeshEdges;
    std::map<Edge, const ConstraintSegment2*> mPieces;
    std::string defect;
};

} // namespace

std::vector<ConstraintSegment2*> leavesOf(ConstraintSegment2* pCSeg)
{
    std::vector<ConstraintSegment2*> vLeaves;
    if (pCSeg->isAlive())
        vLeaves.push_back(pCSeg);
    else
        pCSeg->getChildrenRec(vLeaves);
    return vLeaves;
}

std::vector<ConstraintSegment2*> alivePieces(const std::vector<ConstraintGraph2*>& vGraphs)
{
    std::vector<ConstraintSegment2*> vPieces;
    for (ConstraintGraph2* pGraph : vGraphs) {
        std::vector<ConstraintSegment2*> vOriginal;
        pGraph->getOriginalConstraintSegments(vOriginal);
        for (ConstraintSegment2* pCSeg : vOriginal)
            for (ConstraintSegment2* pLeaf : leavesOf(pCSeg))
                vPieces.push_back(pLeaf);
    }
    std::sort(vPieces.begin(), vPieces.end(), std::less<ConstraintSegment2*>());
    vPieces.erase(std::unique(vPieces.begin(), vPieces.end()), vPieces.end());
    return vPieces;
}

std::string findConstraintDefect(const Quor_2D& dt, const std::vector<ConstraintGraph2*>& vGraphs,
                                 const ConstraintCheckOptions& options)
{
    return ConstraintChecker(dt, vGraphs, options).findDefect();
}

void expectConstraintsHold(const Quor_2D& dt, const std::vector<ConstraintGraph2*>& vGraphs,
                           const ConstraintCheckOptions& options)
{
    EXPECT_EQ(findConstraintDefect(dt, vGraphs, options), "");
}

std::size_t countOf(const std::string& text, const std::string& pattern)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(pattern); at != std::string::npos; at = text.find(pattern, at + pattern.size()))
        ++count;
    return count;
}

} // namespace test
} // namespace ZELK_QUOR2D
