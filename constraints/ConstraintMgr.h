#pragma once

#include "ConstraintGraph2.h"
#include "ConstraintSegment2.h"
#include "Point2.h"
#include "Segment2.h"
#include "constraints/SegmentIndex.h"
#include "constraints/SegmentTrace.h"
#include "core/VertexMarks.h"

#include <cstddef>
#include <deque>
#include <string>
#include <unordered_set>
#include <vector>

namespace ZELK_QUOR2D
{

class Dt2;

/// The constraints of one triangulation: owns every segment and every graph, and answers which edges are constraints.
class ConstraintMgr
{
public:
    explicit ConstraintMgr(Dt2* pTriangulation) : pDt2(pTriangulation) {}
    ~ConstraintMgr();
    ConstraintMgr(const ConstraintMgr&) = delete;
    ConstraintMgr& operator=(const ConstraintMgr&) = delete;

    // ---- building

    /// Inserts the ends of the segments as points and makes one graph of the segments. Nothing is forced in yet.
    ConstraintGraph2* createConstraint(const std::vector<Segment2>& vSegments, ConstraintInsertionStrategy cis);

    /// The alive segment between two different vertices, whatever its strategy, or a new one.
    ConstraintSegment2* findOrCreateSegment(Point2* p0, Point2* p1, ConstraintInsertionStrategy cis);

    /// Called for each split, perhaps several times.
    void recordSplit(ConstraintSegment2* pParentCSeg, ConstraintSegment2* pCSeg0, ConstraintSegment2* pCSeg1);

    // ---- forcing into the mesh (ConstraintApply.cpp)

    /// Forces every alive segment into the triangulation, pass by pass, until a look at all of them finds each to be
    /// an edge. Pieces that cannot be split any further are left out with a warning.
    void apply();

    /// While apply() runs: a change of the mesh may have taken the edge of this segment away.
    void noteInDanger(ConstraintSegment2* pCSeg)
    {
        if (bApplying)
            vInDanger.push_back(pCSeg);
    }

    /// The same for the two halves of a segment that was split on the side.
    void notePiecesInDanger(const ConstraintSegment2* pParentCSeg);

    /// Leaves a piece alone until the next apply().
    void giveUp(const ConstraintSegment2* pCSeg) { sGivenUp.insert(pCSeg); }

    // ---- queries

    /// The alive segment between two vertices, in any order, or null. O(1).
    ConstraintSegment2* findSegment(const Point2* p0, const Point2* p1) const
    {
        return p0 && p1 && (p0->marks & signatureBit(p1)) && (p1->marks & signatureBit(p0)) ? segmentIndex.find(p0, p1)
                                                                                            : nullptr;
    }
    bool isConstraint(const Point2* p0, const Point2* p1) const { return findSegment(p0, p1) != nullptr; }

    /// Fetches ahead what findSegment() will look at.
    void prefetchSegment(const Point2* p0, const Point2* p1) const { segmentIndex.prefetchSlot(p0, p1); }

    /// Fetches ahead what splitting a segment at a vertex will look at.
    void prefetchSplit(const ConstraintSegment2* pCSeg, const Point2* pSplit) const;

    /// Whether there is, or was, any segment with CIS_CONFORMING_DELAUNAY.
    bool hasConformingSegments() const { return bHasConforming; }

    std::size_t numberOfLiveSegments() const { return segmentIndex.size(); }

    /// Replaces the contents of the vector by the alive segments, ordered by the addresses of their ends.
    void getLiveSegments(std::vector<ConstraintSegment2*>& vLive) const;

    /// For one operation at a time.
    ConstraintScratch scratch;

    const std::vector<ConstraintGraph2*>& graphs() const { return vGraphs; }

    /// Writes the alive pieces to the file prefix + "_c" + number + ".con", one line "x0 TAB y0 TAB x1 TAB y1" each,
    /// with 17 significant digits.
    void writeConstraints(const std::string& prefix, int number) const;

private:
    friend class ConstraintSegment2;

    // Not of an exported type, so that instances of standard templates for it are not exported either.
    struct Node {
        ConstraintSegment2 segment;
        Node(Point2* pLower, Point2* pHigher, ConstraintInsertionStrategy cis) : segment(pLower, pHigher, cis) {}
    };

    ConstraintSegment2* newSegment(Point2* pLower, Point2* pHigher, ConstraintInsertionStrategy cis);
    void adopt(ConstraintSegment2* pCSeg);
    void insertPending(ConstraintSegment2* pCSeg, std::vector<ConstraintSegment2*>& vNext);
    bool isInsertable(const ConstraintSegment2* pCSeg) const;
    void collectWork(std::vector<ConstraintSegment2*>& vWork) const;
    static void sortByEnds(std::vector<ConstraintSegment2*>& vList);
    std::vector<ConstraintSegment2*> collectAlive();
    void collectMissingOf(const std::vector<ConstraintSegment2*>& vList, std::vector<ConstraintSegment2*>& vWork) const;

    Dt2* pDt2;
    std::size_t numSplits = 0;
    bool bHasConforming = false;
    std::deque<Node> nodes;                 // of all split trees; they never move
    std::vector<ConstraintGraph2*> vGraphs; // owned
    SegmentIndex segmentIndex;              // the alive ones
    bool bApplying = false;
    std::vector<ConstraintSegment2*> vInDanger; // while applying; with repetitions
    std::unordered_set<const ConstraintSegment2*> sGivenUp;
};

} // namespace ZELK_QUOR2D
