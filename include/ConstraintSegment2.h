#pragma once

#include "ConstraintInsertionStrategy.h"
#include "Quor2DExport.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <vector>

namespace ZELK_QUOR2D
{

class ConstraintGraph2;
class ConstraintMgr;
class Point2;

/// An edge between two vertices that the triangulation must contain.
///
/// The edge is undirected: the vertex with the lower address is the source. Where a vertex comes to lie on a segment,
/// the segment is split: it keeps its ends but is no longer alive, and two children take its place. The alive segments
/// below it are its pieces in the triangulation. Segments that overlap share their common pieces.
///
/// Segments are owned by their triangulation; a segment that a caller makes is the caller's, and so are the children
/// it gets while no graph owns it.
class QUOR2D_API ConstraintSegment2
{
public:
    /// @param p0, p1  two vertices, the one with the lower address first; not owned
    ConstraintSegment2(Point2* p0, Point2* p1, ConstraintInsertionStrategy strategy);
    ~ConstraintSegment2();
    ConstraintSegment2(const ConstraintSegment2&) = delete;
    ConstraintSegment2& operator=(const ConstraintSegment2&) = delete;

    Point2* getSrc() const { return src; }
    Point2* getTrg() const { return trg; }
    ConstraintInsertionStrategy getCIS() const { return cis; }

    /// False once the segment has been split.
    bool isAlive() const { return !pChild0; }

    /// The number of graphs that contain this segment or one it is a piece of.
    std::uint64_t getNumberOfOwners() const { return sOwners ? sOwners->size() : 0; }

    /// Adding a graph again, or null, has no effect.
    ///
    /// @param bReverse  whether the graph runs along the segment from target to source
    void addOwner(ConstraintGraph2* pGraph, bool bReverse = false);

    /// A number that clients attach; at first the largest finite double.
    double getAdjacentArea() const { return adjacentArea; }
    void setAdjacentArea(double area) { adjacentArea = area; }

    /// Replaces this segment by two children that meet at a vertex. Only the bookkeeping changes, not the mesh.
    ///
    /// A child whose ends an alive segment of the triangulation joins already is that segment.
    ///
    /// @param pSplit  a vertex on the segment, or the nearest one that coordinates allow
    /// @return false, with a warning and nothing changed, when pSplit is an end of the segment
    bool split(Point2* pSplit);

    /// Like split(); then removes the vertices made by refinement that lie nearer to pSplit than the source does.
    bool splitAndRemovePrev(Point2* pSplit);

    /// Appends the alive pieces of a split segment, child 0 before child 1 at every level. This need not be their
    /// order along the segment.
    void getChildrenRec(std::vector<ConstraintSegment2*>& vChildSegments) const;

    /// The two children and the vertex between them. For an alive segment a warning is given and the arguments stay
    /// as they are.
    void getChildrenAndSplitPoint(ConstraintSegment2*& pCSeg0, ConstraintSegment2*& pCSeg1, Point2*& pSplitPoint) const;

    /// Orders by the addresses of source, then target.
    bool operator<(const ConstraintSegment2& other) const;

private:
    friend class ConstraintGraph2;
    friend class ConstraintMgr;

    struct Owner {
        ConstraintGraph2* pGraph;
        bool bReverse; // the graph runs from target to source, or, with bOwnersReverse, from source to target
    };
    using OwnerList = std::vector<Owner>; // ascending addresses, each once

    const Owner* findOwner(const ConstraintGraph2* pGraph) const;
    void makeChildren(Point2* pSplit);
    ConstraintSegment2* makeChild(Point2* pFirst, Point2* pSecond, bool bReverse) const;
    ConstraintMgr* findManager() const;

    Point2* src;
    Point2* trg;
    ConstraintInsertionStrategy cis;
    bool bOwnersReverse = false;
    std::shared_ptr<const OwnerList> sOwners; // pieces of one segment share the list; null for none
    ConstraintSegment2* pChild0 = nullptr;    // both or none; child 0 has the source, child 1 the target
    ConstraintSegment2* pChild1 = nullptr;
    double adjacentArea;
    ConstraintMgr* pMgr = nullptr; // the owner; null for a segment that a caller made
};

/// Writes "ConstraintSegment2: (source address,target address)".
QUOR2D_API std::ostream& operator<<(std::ostream& stream, const ConstraintSegment2& segment);

} // namespace ZELK_QUOR2D
