// The same input to this library and to CGAL. Where four points lie on a circle both may choose a diagonal: edges that
// an exact in-circle test finds tied are left out on both sides, all others must be the same.
#include "Quor_2D.h"
#include "tests/cgal/Clouds.h"
#include "tests/fuzz/SilentOutput.h"

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <set>
#include <utility>
#include <vector>

namespace
{

using namespace ZELK_QUOR2D;
using differential::Cloud;

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using CgalPoint = Kernel::Point_2;
using CgalDelaunay = CGAL::Delaunay_triangulation_2<Kernel>;
using CgalConstrained = CGAL::Constrained_Delaunay_triangulation_2<Kernel>;

using Place = std::pair<double, double>;
using Corners = std::array<Place, 3>;
using Edge = std::pair<Place, Place>;

CgalPoint toCgal(const Point2& p)
{
    return {p.x(), p.y()};
}

Place placeOf(const CgalPoint& p)
{
    return {p.x(), p.y()};
}

Place placeOf(const Point2& p)
{
    return {p.x(), p.y()};
}

Edge edgeOf(const Place& a, const Place& b)
{
    return std::minmax(a, b);
}

bool isTied(const CgalPoint& a, const CgalPoint& b, const CgalPoint& c, const CgalPoint& d)
{
    return CGAL::side_of_bounded_circle(a, b, c, d) == CGAL::ON_BOUNDARY;
}

struct Comparison {
    std::set<Corners> sTriangles;
    std::vector<Edge> vEdges; // sorted, without tied ones
    std::vector<Edge> vConstraints;
};

void sortAll(Comparison& mesh)
{
    for (std::vector<Edge>* pEdges : {&mesh.vEdges, &mesh.vConstraints}) {
        std::sort(pEdges->begin(), pEdges->end());
        pEdges->erase(std::unique(pEdges->begin(), pEdges->end()), pEdges->end());
    }
}

Corners sortedCorners(Corners corners)
{
    std::sort(corners.begin(), corners.end());
    return corners;
}

Comparison describe(const Quor_2D& dt)
{
    Comparison mesh;
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    for (Triangle2* pT : vTriangles) {
        mesh.sTriangles.insert(
            sortedCorners({placeOf(*pT->getCorner(0)), placeOf(*pT->getCorner(1)), placeOf(*pT->getCorner(2))}));
        for (int i = 0; i < 3; ++i) {
            const Point2 *pFrom = pT->getCorner((i + 1) % 3), *pTo = pT->getCorner((i + 2) % 3);
            const Edge edge = edgeOf(placeOf(*pFrom), placeOf(*pTo));
            const Triangle2* pOpp = pT->getOppositeTriangle(i);
            if (dt.isConstraint(pT, i))
                mesh.vConstraints.push_back(edge);
            else if (pOpp) {
                int k = 0;
                while (pOpp->getOppositeTriangle(k) != pT) // one of three neighbours is the triangle
                    ++k;
                if (isTied(toCgal(*pFrom), toCgal(*pTo), toCgal(*pT->getCorner(i)), toCgal(*pOpp->getCorner(k))))
                    continue;
            }
            mesh.vEdges.push_back(edge);
        }
    }
    sortAll(mesh);
    return mesh;
}

bool isConstrained(const CgalDelaunay&, const CgalDelaunay::Edge&)
{
    return false;
}

bool isConstrained(const CgalConstrained& cdt, const CgalConstrained::Edge& edge)
{
    return cdt.is_constrained(edge);
}

template <class Triangulation>
Comparison describe(const Triangulation& cgal)
{
    Comparison mesh;
    for (auto f = cgal.finite_faces_begin(); f != cgal.finite_faces_end(); ++f)
        mesh.sTriangles.insert(sortedCorners(
            {placeOf(f->vertex(0)->point()), placeOf(f->vertex(1)->point()), placeOf(f->vertex(2)->point())}));
    for (auto e = cgal.finite_edges_begin(); e != cgal.finite_edges_end(); ++e) {
        const auto f = e->first;
        const int i = e->second;
        const auto g = f->neighbor(i);
        const CgalPoint &from = f->vertex(f->cw(i))->point(), &to = f->vertex(f->ccw(i))->point();
        const Edge edge = edgeOf(placeOf(from), placeOf(to));
        if (isConstrained(cgal, *e))
            mesh.vConstraints.push_back(edge);
        else if (!cgal.is_infinite(f) && !cgal.is_infinite(g) &&
                 isTied(from, to, f->vertex(i)->point(), g->vertex(g->index(f))->point()))
            continue;
        mesh.vEdges.push_back(edge);
    }
    sortAll(mesh);
    return mesh;
}

void expectSame(const Comparison& ours, const Comparison& theirs, bool bTies)
{
    EXPECT_EQ(ours.sTriangles.size(), theirs.sTriangles.size());
    EXPECT_TRUE(ours.vEdges == theirs.vEdges) << ours.vEdges.size() << " edges against " << theirs.vEdges.size();
    EXPECT_TRUE(ours.vConstraints == theirs.vConstraints)
        << ours.vConstraints.size() << " constraint edges against " << theirs.vConstraints.size();
    if (!bTies) {
        EXPECT_TRUE(ours.sTriangles == theirs.sTriangles);
    }
}

std::vector<CgalPoint> toCgal(const std::vector<Point2>& vPoints)
{
    std::vector<CgalPoint> vResult;
    for (const Point2& p : vPoints)
        vResult.push_back(toCgal(p));
    return vResult;
}

// Some places inside, some outside, vertices, and midpoints of short ways between points, which often lie on edges.
std::vector<Point2> queriesFor(const std::vector<Point2>& vPoints)
{
    test::Uniform u(7);
    const auto some = [&] { return vPoints[static_cast<std::size_t>(u.below(static_cast<int>(vPoints.size())))]; };
    std::vector<Point2> vQueries;
    for (int i = 0; i < 1000; ++i) {
        const Point2 a = some(), b = some();
        vQueries.push_back(a);
        vQueries.emplace_back(a.x() + u.in(-1.2, 1.2) * (b.x() - a.x()), a.y() + u.in(-1.2, 1.2) * (b.y() - a.y()));
        vQueries.emplace_back((a.x() + b.x()) / 2, (a.y() + b.y()) / 2);
    }
    return vQueries;
}

// Both find a triangle with the query inside or on it, or both find none. On a tie of the mesh the triangles may
// differ.
void compareLocation(Quor_2D& dt, const CgalDelaunay& cgal, const Cloud& cloud)
{
    for (const Point2& query : queriesFor(cloud.vPoints)) {
        CgalDelaunay::Locate_type kind;
        int index;
        const CgalDelaunay::Face_handle face = cgal.locate(toCgal(query), kind, index);
        const Triangle2* pT = dt.locate(query);
        ASSERT_EQ(pT == nullptr, kind == CgalDelaunay::OUTSIDE_CONVEX_HULL) << query.x() << " " << query.y();
        if (!pT)
            continue;
        std::array<CgalPoint, 3> aCorners;
        for (int i = 0; i < 3; ++i)
            aCorners[static_cast<std::size_t>(i)] = toCgal(*pT->getCorner(i));
        for (std::size_t i = 0; i < 3; ++i)
            ASSERT_NE(CGAL::orientation(aCorners[i], aCorners[(i + 1) % 3], toCgal(query)), CGAL::RIGHT_TURN);
        if (kind == CgalDelaunay::FACE && !cloud.bTies) {
            const Corners ours = sortedCorners({placeOf(aCorners[0]), placeOf(aCorners[1]), placeOf(aCorners[2])});
            ASSERT_EQ(ours, sortedCorners({placeOf(face->vertex(0)->point()), placeOf(face->vertex(1)->point()),
                                           placeOf(face->vertex(2)->point())}));
        }
    }
}

// Segments between points that follow each other in the cloud or stand near in it, without those that cross one before:
// CGAL and this library place the vertex of a crossing differently.
std::vector<Segment2> someSegments(const Cloud& cloud)
{
    constexpr std::size_t kMaxSegments = 400;
    test::Uniform u(11);
    std::vector<Segment2> vSegments;
    std::vector<Kernel::Segment_2> vTaken;
    for (int tries = 0; tries < 4000 && vSegments.size() < kMaxSegments; ++tries) {
        const std::size_t i = static_cast<std::size_t>(u.below(static_cast<int>(cloud.vPoints.size())));
        const std::size_t k =
            (i + static_cast<std::size_t>(1 + u.below(tries % 4 == 0 ? 300 : 3))) % cloud.vPoints.size();
        const Kernel::Segment_2 segment(toCgal(cloud.vPoints[i]), toCgal(cloud.vPoints[k]));
        const auto crosses = [&](const Kernel::Segment_2& other) {
            const bool bShareEnd = segment.source() == other.source() || segment.source() == other.target() ||
                                   segment.target() == other.source() || segment.target() == other.target();
            return !bShareEnd && CGAL::do_intersect(segment, other);
        };
        if (segment.is_degenerate() || std::any_of(vTaken.begin(), vTaken.end(), crosses))
            continue;
        vTaken.push_back(segment);
        vSegments.emplace_back(cloud.vPoints[i], cloud.vPoints[k]);
    }
    return vSegments;
}

} // namespace

// Faults: an edge flipped the wrong way or not at all, a predicate with a wrong sign, a walk that ends next door.
TEST(Compare, DelaunayTrianglesAndLocations)
{
    for (const Cloud& cloud : differential::allClouds()) {
        SCOPED_TRACE(cloud.name);
        Quor_2D dt;
        dt.insert(cloud.vPoints);
        const std::vector<CgalPoint> vPoints = toCgal(cloud.vPoints);
        const CgalDelaunay cgal(vPoints.begin(), vPoints.end());
        expectSame(describe(dt), describe(cgal), cloud.bTies);
        compareLocation(dt, cgal, cloud);
    }
}

// Faults: an edge beside a constraint that is not flipped back, a constraint that is not split at a vertex on it.
TEST(Compare, ConstrainedTriangles)
{
    for (const Cloud& cloud : differential::allClouds()) {
        SCOPED_TRACE(cloud.name);
        const fuzz::SilentOutput silence; // a vertex on a segment is reported
        const std::vector<Segment2> vSegments = someSegments(cloud);
        EXPECT_GT(vSegments.size(), 10u);
        Quor_2D dt;
        dt.insert(cloud.vPoints);
        dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY);
        dt.applyConstraintsAndZones();
        const std::vector<CgalPoint> vPoints = toCgal(cloud.vPoints);
        CgalConstrained cgal;
        cgal.insert(vPoints.begin(), vPoints.end());
        for (const Segment2& s : vSegments)
            cgal.insert_constraint(toCgal(s.getSrc()), toCgal(s.getTrg()));
        expectSame(describe(dt), describe(cgal), cloud.bTies);
    }
}

// Faults: a hole that is closed with triangles that are not Delaunay, a vertex lost or left.
TEST(Compare, TrianglesAfterRemovals)
{
    const Cloud cloud{"uniform", test::uniformPoints(4000, 5), false};
    Quor_2D dt;
    std::vector<Point2*> vHandles;
    dt.insert(cloud.vPoints, vHandles);
    std::vector<CgalPoint> vLeft;
    for (std::size_t i = 0; i < vHandles.size(); ++i)
        if (i % 3 == 0)
            dt.remove(vHandles[i]);
        else
            vLeft.push_back(toCgal(cloud.vPoints[i]));
    expectSame(describe(dt), describe(CgalDelaunay(vLeft.begin(), vLeft.end())), false);
}
