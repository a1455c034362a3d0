#pragma once

#include "Bbox2.h"
#include "ConstraintInsertionStrategy.h"
#include "Point2.h"
#include "Triangle2.h"
#include "ZoneLocation.h"
#include "core/CoordinateSet.h"
#include "core/HC2.h"
#include "core/SimplePool.h"
#include "core/StarRing.h"
#include "core/TrianglePlaces.h"
#include "core/VertexStar.h"
#include "core/VertexVault.h"
#include "predicates/PredicateTest.h"

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace ZELK_QUOR2D
{

class ConstraintGraph2;
class ConstraintMgr;
class ConstraintSegment2;
class IncidentTriangles;
class RefineCandidate;
class RefineZone;
class Segment2;
class Zone2;
struct OpenTriangle;
struct RefineParams;
struct SegmentTrace;

/// The triangulation behind Quor_2D: owns vertices and triangles and changes them.
///
/// The methods live with their subject: Dt2.cpp (life and simple queries), Dt2Locate.cpp, Dt2Insert.cpp,
/// Dt2Bootstrap.cpp, Dt2Remove.cpp and Dt2RemoveStar.cpp, Dt2Validity.cpp, Dt2Output.cpp, in constraints/ the forcing
/// of segments into the mesh, in zones/ what makes and keeps zones, and in refine/ the refinement.
class Dt2
{
public:
    // ---- lifecycle (Dt2.cpp)

    /// @param numExpectedVertices  capacity hint of the pools, any value
    explicit Dt2(unsigned int numExpectedVertices);
    ~Dt2();
    Dt2(const Dt2&) = delete;
    Dt2& operator=(const Dt2&) = delete;

    void setName(const std::string& newName);
    std::string getName() const { return name; }

    /// Deliberate: stores a flag that nothing reads; every operation stays single-threaded.
    void enableMultithreading() { bMultithreading = true; }

    // ---- points (Dt2Insert.cpp)

    Point2* insert(const Point2& p);
    void insert(const std::vector<Point2>& vInputPoints);
    void insert(const std::vector<Point2>& vInputPoints, std::vector<Point2*>& vHandles);
    void insert(int numPoints, double* aCoordinates, Point2** aHandles);

    // ---- removal (Dt2Remove.cpp)

    /// Takes a vertex out and restores the empty circles around the hole. Expected time: proportional to the degree;
    /// a hub of degree d costs O(d log d). Without new memory once the scratch lists have grown.
    ///
    /// A vertex that does not belong to the triangulation, or has no triangle, is reported and nothing changes.
    ///
    /// @param bInternal  true when the library itself asks: it may remove what callers may not, and circles across the
    ///                   border of the hole, which locked edges at the vertex may have kept from being empty, are
    ///                   restored, too
    void remove(Point2* pVtx, bool bInternal);

    /// Flips the edge from the vertex to the next corner of pT if both new triangles are strictly counterclockwise;
    /// pT then no longer has the vertex. @return the triangle that still has it, or null
    Triangle2* tryFlipAway(Point2* pVtx, Triangle2* pT) { return flipAway(pVtx, pT, FLAT_REFUSED); }

    // ---- validity (Dt2Validity.cpp)

    /// Checks the links of all triangles and, on request, that all circumcircles are empty. Reports the first defect.
    ///
    /// @param s  a name for the reports
    /// @return whether there is no defect
    bool checkValidity(bool bCheckEmptyCircle, const std::string& s);

    // ---- queries (Dt2.cpp, Dt2Locate.cpp)

    Triangle2* locate(const Point2& p);
    unsigned int numberOfPoints() const;
    unsigned int numberOfTriangles() const;
    void getVertexPointers(std::vector<Point2*>& vVertices) const;
    void getTrianglePointers(std::vector<Triangle2*>& vTriangles) const;
    bool is2D() const { return fullDimensional; }
    Bbox2 computeBoundingBox() const;
    Triangle2* getAdjacentTriangle(const Point2* p0, const Point2* p1) const;

    /// The triangle to the left of the edge from p0 to p1; null when there is no such edge, or nothing on that side.
    /// Time: the smaller of the two degrees.
    Triangle2* findTriangleLeftOf(const Point2* p0, const Point2* p1) const;

    // ---- constraints (constraints/Dt2Constraints.cpp)

    ConstraintGraph2* createConstraint(const std::vector<Segment2>& vSegments, ConstraintInsertionStrategy cis);
    void applyConstraintsAndZones();
    bool isConstraint(const Point2* p0, const Point2* p1) const;
    bool isConstraint(const Triangle2* pT, int ith) const;
    void createArbitraryTriangles(const std::vector<Point2>& vPoints);

    // ---- zones (zones/Dt2Zones.cpp)

    Zone2* createZone(ConstraintGraph2* pConstraintGraph, ZoneLocation zoneLoc);
    Zone2* createZone(ConstraintGraph2* pConstraintGraph, ZoneLocation zoneLoc, const Point2& startPoint);
    Zone2* createZone(const std::vector<ConstraintGraph2*>& vConstraintGraphs, ZoneLocation zoneLoc,
                      const Point2& startPoint);
    void deleteZone(Zone2* pZone);

    /// One of the four results, of two zones of this triangulation.
    Zone2* createResultZone(Zone2* pZone0, Zone2* pZone1, ZoneLocation kind);

    /// Whether this triangulation made the zone and still has it. Any address may be asked for.
    bool hasZone(Zone2* pZone) const { return sZones.count(pZone) > 0; }

    /// Replaces the contents of the vector by the triangles that can be reached from a point without crossing an edge
    /// of the graphs, in the order of their addresses. A point on a vertex or edge starts in one triangle there.
    void growZoneArea(const Point2& startPoint, const std::vector<ConstraintGraph2*>& vConstraintGraphs,
                      std::vector<Triangle2*>& vTriangles);

    // ---- refinement (refine/)

    /// @see Quor_2D::refine()
    void refine(RefineParams* pRefineParams);
    void refineSpecificTriangles(const std::vector<Triangle2*>& vTriangles, bool bAllowConstraintSplitting);

    /// @see Quor_2D::checkZoneQuality()
    void checkZoneQuality(Zone2* pZone, double minAngleDegree, double maxEdgeLength, const std::string& zoneName);

    /// Collects what seems to miss the bounds: the largest circumcircles first.
    void uniformRefinement(RefineZone& zoneTriangles, std::vector<OpenTriangle*>& vCandidates);

    /// Inserts circumcentres and splits constraint segments. @return the number of vertices inserted
    std::size_t refineTriangles(RefineZone& zoneTriangles, const std::vector<OpenTriangle*>& vCandidates,
                                const RefineParams* pRefineParams);

    // ---- output (Dt2Output.cpp)

    void show(const std::string& filename) const;
    void writeObj(const std::string& filename) const;
    void writeWebScene(const char* path) const;

    // ---- internal operations that other parts of the library build on

    /// Result of walkToTriangle() besides 0, 1, 2 (beyond, or on, the hull edge of that index).
    enum WalkState { WALK_INSIDE = -1, WALK_ON_CORNER = 4 };

    /// Visibility walk to the triangle that contains p (Devillers, Pion, Teillaud 2002).
    ///
    /// @param pT  in: start; out: the triangle where the walk ended
    /// @return WALK_INSIDE, WALK_ON_CORNER, or the index of the hull edge of pT that p lies beyond; a point on a hull
    ///         edge, strictly between its ends, gives that edge, too
    int walkToTriangle(const Point2* p, Triangle2*& pT);

    /// Inserts the vertex *pHandle, walking from pStart. For a duplicate the handle is overwritten with the existing
    /// vertex. @return a triangle incident to the vertex
    Triangle2* insertIntoTriangle(Point2** pHandle, Triangle2* pStart);

    /// A new vertex with an entry in the vault, not yet part of the mesh.
    Point2* newVertex(double x, double y);

    /// Inserts a vertex whose place the walk has found.
    Triangle2* insertVertex(Point2** pHandle, Triangle2* pT, int intState);
    Triangle2* insertOutsideHull(Point2* pVtx, Triangle2* pT, int ith);

    /// Restores the empty circles around the newest vertex, see Dt2Insert.cpp. Live constraint edges stay, but for
    /// those that the vertex lies on; they are split there.
    void legalize();

    /// A triangle with these corners, recycled if possible. A clockwise order is reported and ends the process.
    Triangle2* createTriangle(Point2* pA, Point2* pB, Point2* pC);

    /// Puts a triangle on the stack for recycling. Its corners become null, so nobody takes it for a live one.
    void discardTriangle(Triangle2* pT);

    /// Flips the edge opposite corner ith of pT. Afterwards that corner is corner 0 of both triangles.
    void flipEdge(Triangle2* pT, int ith);

    // ---- what other parts of the library ask and do about constraints (constraints/)

    /// Made on first use.
    ConstraintMgr& constraintMgr();

    /// The live segment between two vertices, in any order, or null.
    ConstraintSegment2* findConstraintSegment(const Point2* p0, const Point2* p1) const;

    /// Fetches ahead what findConstraintSegment() will look at, for the edges of a triangle that may be constraints.
    void prefetchConstraintSlots(const Triangle2* pT) const;

    /// Whether the vertex is an end of a constraint segment, live or split.
    static bool isConstraintVertex(const Point2* p) { return p && (p->marks & VM_CONSTRAINT); }

    /// Whether edge ith of a live triangle is a live constraint edge.
    bool isConstraintEdge(const Triangle2* pT, int ith) const
    {
        return bHasConstraints && mayBeConstraint(pT, ith) && isConstraint(pT, ith);
    }

    /// Whether edge ith of pT is a live constraint edge that may not be flipped.
    bool isLockedEdge(const Triangle2* pT, int ith) const
    {
        return bHasConstraints && mayBeConstraint(pT, ith) && isLockedSegment(pT, ith);
    }

    /// Forces one segment in as a chain of edges: splits it at vertices that lie on it and where it crosses others.
    void insertConstraintSegmentIgnoreDelaunay(ConstraintSegment2* pCSeg);

    /// One step towards Delaunay edges: splits the segment at most once.
    void insertConstraintSegmentKeepDelaunay(ConstraintSegment2* pCSeg);

    /// Makes p0-p1 an edge. @return null, or an existing vertex on the open segment; then nothing has changed
    Point2* treatConstraintZone(Point2* p0, Point2* p1);

    /// Restores the empty circles by flips that start from these triangles. Locked edges stay, and the edge between the
    /// two vertices given. Empties the list.
    void flipToMatchCDT(std::vector<Triangle2*>& vWork, const Point2* pKeep0 = nullptr, const Point2* pKeep1 = nullptr);

    /// Inserts a point on a live segment, or as near to it as coordinates allow; its edge may be flipped meanwhile.
    /// The segment is not split yet; finishSplit() must follow the split.
    ///
    /// @param pStart  where the walk starts
    /// @return the vertex there, which may be an end of the segment
    Point2* insertReleased(const ConstraintSegment2* pCSeg, const Point2& p, Triangle2* pStart);

    /// After a split: restores the circles where the old edge still stands, and makes constrained pieces edges.
    void finishSplit(const ConstraintSegment2* pParentCSeg);

    /// Removes the vertices made by refinement that lie nearer to pSplit than the root of squaredRadius.
    void removeSplitVerticesNear(Point2* pSplit, double squaredRadius);

    /// While true no live constraint edge of either strategy is flipped; else only constrained ones stay.
    bool bLockConformingEdges = false;

    bool bHasConstraints = false;         ///< whether there is, or was, any segment
    std::size_t numConstraintChanges = 0; ///< counts changes of the mesh made for constraints

    /// A triangle near p from which a walk is short. The triangulation has triangles.
    ///
    /// @param key  the Hilbert key of p
    Triangle2* findStartTriangle(const Point2& p, std::uint32_t key);

    bool hasTriangles() const { return numLiveTriangles() > 0; }
    std::size_t numLiveTriangles() const { return trianglePool.numberOfElements() - vDeadTriangles.size(); }

    /// Calls visit(Triangle2*) for every live triangle.
    template <class Visitor>
    void forEachTriangle(Visitor visit) const
    {
        trianglePool.forEach([&visit](Triangle2* pT) {
            if (pT->getCorner(0))
                visit(pT);
        });
    }

    /// The same in the order of the addresses.
    template <class Visitor>
    void forEachTriangleByAddress(Visitor visit) const
    {
        trianglePool.forEachByAddress([&visit](Triangle2* pT) {
            if (pT->getCorner(0))
                visit(pT);
        });
    }

private:
    HC2 hilbertCurve;

public:
    VertexVault vertexVault;

private:
    bool& fullDimensional; // the vault's flag

public:
    PredicateTest predicates;

private:
    // ---- insertion
    struct HullEdge {
        Triangle2* pT;
        int ith;
    };
    struct HullNeighbors {
        Point2* pNext;
        Point2* pPrev;
    };
    template <class Source>
    void insertBatch(std::size_t numPoints, const Source& source, Point2** aHandles);
    template <class Source>
    std::size_t addToBoxes(std::size_t numPoints, const Source& source);
    template <class Source>
    void insertBatchWhileCollecting(std::size_t numPoints, const Source& source, Point2** aHandles);
    template <class Source>
    void insertBatchIntoMesh(std::size_t numPoints, std::size_t numLeftOut, const Source& source, Point2** aHandles);
    void insertRange(std::size_t first, std::size_t last, Triangle2* pStart);
    void insertSparse(std::vector<VaultEntry>& vBatch);
    Point2* insertWalked(const Point2& p, std::uint32_t key, Triangle2* pT, int intState);
    Triangle2* insertEntry(std::size_t index, Triangle2* pStart);
    void notePlace(const Point2* pVtx);
    Triangle2* splitTriangle(Point2* pVtx, Triangle2* pT);
    Triangle2* takeTriangle(Point2* pA, Point2* pB, Point2* pC);
    void collectVisibleHullEdges(const Point2* pVtx, Triangle2* pT, int ith);
    bool findNextVisibleHullEdge(const Point2* pVtx, HullEdge& edge);
    bool findPrevVisibleHullEdge(const Point2* pVtx, HullEdge& edge);
    void updateHullNeighbors(Point2* pVtx);

    // ---- removal
    enum FlatTriangles { FLAT_REFUSED, FLAT_ALLOWED }; // at the vertex that goes away
    struct Star {
        Triangle2* pT; // one of its triangles
        int degree;
    };
    bool isRemovable(const Point2* pVtx) const;
    void removeInside(Point2* pVtx);
    void removeAtHull(Point2* pVtx);
    bool fillHole(const Point2* pVtx);
    template <int N>
    bool fillHoleOf(const Point2* pVtx);
    void fillRing(const Point2* pVtx);
    void forgetVertex(Point2* pVtx);
    Triangle2* flipAway(Point2* pVtx, Triangle2* pT, FlatTriangles flatTriangles);
    Triangle2* takeCornerAway(Point2* pVtx, Triangle2* pT, FlatTriangles flatTriangles);
    void flipInOrder(Point2* pVtx, Star& star, FlatTriangles flatTriangles);
    void flipStar(Point2* pVtx, Star& star);
    void flipFan(Point2* pVtx, Triangle2* pFirst);
    void suspectBorderOfStar(const Point2* pVtx);
    void restoreCircles();
    bool isCircleViolated(const Triangle2* pT, int ith);

    // ---- validity
    bool checkCircles(const std::vector<Triangle2*>& vTriangles, const std::string& place);

    // ---- flips beside constraints
    template <bool bWithConstraints>
    void legalizeWith();
    static bool mayBeConstraint(const Point2* p0, const Point2* p1)
    {
        return (p0->marks & signatureBit(p1)) && (p1->marks & signatureBit(p0));
    }
    static bool mayBeConstraint(const Triangle2* pT, int ith)
    {
        return mayBeConstraint(pT->getCorner(next(ith)), pT->getCorner(prev(ith)));
    }
    bool isLockedSegment(const Triangle2* pT, int ith) const;
    bool isLocked(const ConstraintSegment2* pCSeg) const;
    bool isKeptByConstraint(const Triangle2* pT);
    void splitSegmentUnder(Point2* pVtx);

    // ---- constraint segments
    class CavityFiller;
    void traceSegment(Point2* p0, Point2* p1, bool bStopAtConstraints, SegmentTrace& trace);
    void findTraceStart(Point2* p0, Point2* p1, SegmentTrace& trace);
    void examineFan(const IncidentTriangles& around, Point2* pFrom, Point2* pTo, SegmentTrace& trace);
    void followSegment(bool bStopAtConstraints, SegmentTrace& trace);
    void recoverEdge(const SegmentTrace& trace);
    void insertPiece(ConstraintSegment2* pCSeg);
    Point2* findVertexBeside(const SegmentTrace& trace) const;
    void splitAtMidpoint(ConstraintSegment2* pCSeg, Triangle2* pStart);
    template <class IsKept>
    void flipIllegalEdge(Triangle2* pT, std::vector<Triangle2*>& vChanged, const IsKept& isKept);
    Point2* insertAt(const Point2& p, Triangle2* pStart);
    void restoreUnlocked(const ConstraintSegment2* pParentCSeg);
    void restoreEdge(Point2* p0, Point2* p1);
    bool splitAtCrossing(ConstraintSegment2* pCSeg, ConstraintSegment2* pOther, Triangle2* pStart, const char* where);
    void giveUp(ConstraintSegment2* pCSeg, const char* where);
    double conformingTolerance() const;
    bool isBelowTolerance(const Point2& src, const Point2& trg) const;
    void destroyConstraints();

    // ---- zones
    Zone2* keepZone(Zone2* pZone);
    bool isForeign(const ConstraintGraph2* pGraph) const;
    void deleteZones();

    // ---- arbitrary triangles
    static void reportMissingTriangles(const Dt2& auxiliary, const std::vector<Point2*>& vHandles);
    void takeOver(const Dt2& other);

    // ---- refinement
    void runRefinement(RefineZone& zoneTriangles, RefineParams* pRefineParams);
    bool refineCycle(RefineZone& zoneTriangles, const RefineParams* pRefineParams);
    bool refineCandidate(RefineZone& zoneTriangles, const RefineCandidate& candidate,
                         const RefineParams* pRefineParams);
    bool insertCircumcenter(RefineZone& zoneTriangles, const RefineCandidate& candidate);
    bool splitConstraint(RefineZone& zoneTriangles, const RefineCandidate& candidate,
                         const RefineParams* pRefineParams);
    void splitConstraintAt(RefineZone& zoneTriangles, ConstraintSegment2* pCSeg, const Point2& p, Triangle2* pT,
                           int ith, double squaredRadius);
    bool splitIllegalPieces(RefineZone& zoneTriangles, const RefineParams* pRefineParams);
    bool splitIllegalPiece(RefineZone& zoneTriangles, ConstraintSegment2* pCSeg, const RefineParams* pRefineParams);
    bool evenOutCorners(RefineZone& zoneTriangles, const RefineParams* pRefineParams);
    bool evenOutCorner(RefineZone& zoneTriangles, Point2* pCorner, const RefineParams* pRefineParams);
    bool splitAtDistance(RefineZone& zoneTriangles, Point2* pCorner, Point2* pEnd, double radius);
    Point2* insertReleasedVertex(RefineZone& zoneTriangles, const ConstraintSegment2* pCSeg, const Point2& p,
                                 Triangle2* pStart);
    void updateZoneBeside(RefineZone& zoneTriangles, Point2* pVtx, Point2* pFrom, const Point2* pTo, bool bMember);
    void removeSteinerVertex(Point2* pVtx);
    void updateZoneInside(bool bMember);

    // ---- growing box and bootstrap
    void growBoxes(const Point2& p);
    void rebuildOrderingIfLeft(const Point2& minPoint, const Point2& maxPoint);
    void rebuildOrdering();
    void startCollecting();
    Point2* collect(const Point2& p);
    void noteCollected(Point2* pVtx);
    void stopCollecting();
    void makeFullDimensional(bool bOrdered);

    // ---- location
    int walkFromNear(const Point2& p, std::uint32_t key, Triangle2*& pT);
    int testHullLine(const Point2* p, const Triangle2* pT, int ith);
    int searchExhaustively(const Point2* p, Triangle2*& pT);

    Bbox2 bbox;     // of all points ever inserted
    Bbox2 curveBox; // a doubled copy of bbox as it was when the curve was made; knows the predicates
    SimplePool<Triangle2> trianglePool;
    SimplePool<Point2> vertexPool;
    std::vector<Triangle2*> vDeadTriangles;
    std::vector<Triangle2*> vFlipCurrent; // members: their capacity survives from insertion to insertion
    std::vector<Triangle2*> vFlipNext;
    std::vector<HullEdge> vVisibleHullEdges; // counterclockwise
    std::vector<HullEdge> vSuspectEdges;     // edges whose circles removal has to look at
    std::vector<HullEdge> vSuspectNext;
    TrianglePlaces trianglePlaces;
    VertexStar vertexStar; // of a vertex that is removed
    StarRing ring;
    Point2* pLastInserted = nullptr;
    std::size_t walkSteps = 0; // of the latest walk

    // Hull neighbours of the few hull vertices whose fan of triangles is long, so that not every insertion beyond the
    // hull turns around them. Empty for ordinary input.
    std::unordered_map<const Point2*, HullNeighbors> mLongFans;

    // While there are no triangles: the vertices by place, and two different ones of them.
    CoordinateSet sCollected;
    bool bCollectorReady = false;
    Point2* pCollected0 = nullptr;
    Point2* pCollected1 = nullptr;
    Point2* pOffLine = nullptr; // not collinear with these two

    ConstraintMgr* pConstraintMgr = nullptr; // owned
    const ConstraintSegment2* pReleasedSegment = nullptr;
    ConstraintSegment2* pSegmentUnderVertex = nullptr; // found by legalize() under the newest vertex

    std::set<Zone2*> sZones; // owned

    struct LastRefinement {
        double minEdgeLength;
        bool bAllowConstraintSplitting;
        double startAltitude;    // see RefineParams
        std::size_t numVertices; // of the triangulation, afterwards
    };
    std::unordered_map<const Zone2*, LastRefinement> mLastRefinements; // of the zones that have been refined

    RefineZone* pRefineZone = nullptr;     // while refinement runs
    std::vector<Point2*> vSteinerVertices; // the vertices with VM_REFINEMENT, and others
    std::vector<Point2*> vNearSplit;       // scratch of removeSplitVerticesNear()
    std::vector<Point2*> vStarRing;        // scratch of removeSteinerVertex(): corners around the vertex

    bool bMultithreading = false;
    std::string name;
};

} // namespace ZELK_QUOR2D
