#pragma once

#include "ConstraintInsertionStrategy.h"
#include "ConstraintSegment2.h"
#include "Quor2DExport.h"

#include <memory>
#include <vector>

namespace ZELK_QUOR2D
{

class Dt2;
class Point2;
class PredicateTest;

/// The constraint segments of one Quor_2D::createConstraint() call.
///
/// Whether they form one closed simple polygon is decided once, by their connections: a closed ring that visits each of
/// its vertices once. The segments of a polygon are kept in counterclockwise order. The graph belongs to its
/// triangulation, and so do the segments.
class QUOR2D_API ConstraintGraph2
{
public:
    /// For the triangulation. Segments without extent are left out with a warning.
    ConstraintGraph2(Dt2* pTriangulation, const std::vector<ConstraintSegment2*>& vSegments,
                     ConstraintInsertionStrategy strategy);
    ~ConstraintGraph2();
    ConstraintGraph2(const ConstraintGraph2&) = delete;
    ConstraintGraph2& operator=(const ConstraintGraph2&) = delete;

    ConstraintInsertionStrategy getInsertionStrategy() const { return cis; }
    bool isPolygon() const { return bIsPolygon; }

    /// Replaces the contents of the vector by the segments as they were before any split: in polygon order, else in
    /// the order of creation.
    void getOriginalConstraintSegments(std::vector<ConstraintSegment2*>& vSegments) const;

    /// Replaces the contents of the vector by the vertices along the graph, split points included. For a polygon this
    /// is the ring, counterclockwise, each vertex once, from its lowest leftmost vertex on. For other graphs it is the
    /// start of each alive piece in turn.
    void getPolygonVertices(std::vector<Point2*>& vVertices) const;

    /// Whether an alive segment of this graph joins the two vertices, in either order. O(1), and O(log n) for a graph
    /// of segments that a caller made.
    bool isConstraint(Point2* p0, Point2* p1) const;

    // ---- for the library

    /// Whether the graph runs along a segment of its own from target to source.
    bool isReverse(const ConstraintSegment2* pCSeg) const;

    /// Replaces the contents of the vector by the alive pieces, in the order of the graph.
    void getAliveSegments(std::vector<ConstraintSegment2*>& vAliveCSeg) const;

    Dt2* getDelaunayTriangulation() const { return pDt2; }

private:
    friend class ConstraintSegment2;

    bool checkAndSortPolygon(const std::vector<ConstraintSegment2*>& vSegments);
    void append(ConstraintSegment2* pCSeg, bool bReverse);
    static bool isBefore(const ConstraintSegment2* pA, const ConstraintSegment2* pB);
    bool isUnregisteredConstraint(Point2* p0, Point2* p1) const;
    template <class Visitor>
    void forEachAliveSegment(Visitor visit) const;

    Dt2* pDt2;
    PredicateTest* pPredicates;
    ConstraintInsertionStrategy cis;
    std::vector<ConstraintSegment2*> vCSegments; // as they were before any split
    std::vector<bool> vReverse;                  // the direction of each of them
    bool bIsPolygon = false;
    std::shared_ptr<const ConstraintSegment2::OwnerList> pSoleOwner; // shared by segments that only this graph contains
    std::vector<ConstraintSegment2*> vUnregistered; // those that a caller made, by the addresses of their ends
};

} // namespace ZELK_QUOR2D
