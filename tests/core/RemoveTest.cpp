#include "Quor_2D.h"
#include "core/Dt2.h"
#include "core/IncidentTriangles.h"
#include "tests/output/OutputTestSupport.h"
#include "tests/support/MeshCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <random>
#include <sstream>
#include <vector>

using namespace ZELK_QUOR2D;
using test::expectValid;
using test::isValidMesh;

namespace
{

using Random = std::mt19937;

std::vector<Point2> gridPoints(int side, double spacing = 1.0, double origin = 0.0)
{
    std::vector<Point2> vPoints;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            vPoints.emplace_back(origin + spacing * x, origin + spacing * y);
    return vPoints;
}

Point2 uniformPoint(Random& random)
{
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    const double x = unit(random);
    return Point2(x, unit(random));
}

Point2 pointOnCircle(double angle)
{
    return Point2(std::cos(angle), std::sin(angle));
}

std::vector<Point2*> insertAll(Quor_2D& dt, const std::vector<Point2>& vPoints)
{
    std::vector<Point2*> vHandles;
    dt.insert(vPoints, vHandles);
    return vHandles;
}

bool isOnHull(const Point2* pVtx)
{
    IncidentTriangles it(pVtx);
    while (!it.atEnd())
        it.advance();
    return it.metHull();
}

std::string textOf(const Point2* pVtx)
{
    std::ostringstream text;
    text << *pVtx << "\n";
    return text.str();
}

const char* const kForeignWarning = "\n      [Quor2D-Message] Dt2::remove(), WARNING: trying to remove a vertex which "
                                    "does not belong to the triangulation\n\n";

// Refused with exactly the report, and without any change.
void expectRefused(Quor_2D& dt, Point2* pVtx)
{
    const unsigned int numPoints = dt.numberOfPoints();
    const unsigned int numTriangles = dt.numberOfTriangles();
    CapturedOutput output;
    dt.remove(pVtx);
    EXPECT_EQ(output.take(), kForeignWarning + textOf(pVtx));
    EXPECT_EQ(dt.numberOfPoints(), numPoints);
    EXPECT_EQ(dt.numberOfTriangles(), numTriangles);
    expectValid(dt);
}

// Removes all points in the given order, then inserts some again. Handles keep what they were made from.
void removeAllInOrder(const std::vector<Point2>& vPoints, const std::vector<std::size_t>& vOrder)
{
    Quor_2D dt;
    const std::vector<Point2*> vHandles = insertAll(dt, vPoints);
    unsigned int numPoints = dt.numberOfPoints();
    CapturedOutput output; // swallows the warnings once the mesh is empty
    for (const std::size_t i : vOrder) {
        const bool bMesh = dt.numberOfTriangles() > 0;
        dt.remove(vHandles[i]);
        numPoints -= bMesh ? 1 : 0;
        ASSERT_EQ(dt.numberOfPoints(), numPoints);
        ASSERT_TRUE(isValidMesh(dt));
        EXPECT_TRUE(dt.is2D());
        EXPECT_EQ(*vHandles[i], vPoints[i]);
        EXPECT_EQ(vHandles[i]->getIncidentTriangle(), nullptr);
        EXPECT_TRUE(dt.checkValidity(true, "x"));
    }
    EXPECT_EQ(dt.numberOfTriangles(), 0U);
    EXPECT_EQ(dt.locate(vPoints[0]), nullptr);
    std::vector<Triangle2*> vTriangles;
    dt.getTrianglePointers(vTriangles);
    EXPECT_TRUE(vTriangles.empty());
    for (const Point2& p : vPoints) {
        ASSERT_NE(dt.insert(p), nullptr);
        ASSERT_TRUE(isValidMesh(dt));
    }
    std::vector<Point2*> vVertices; // not numberOfPoints(), which counts repeated insertions until the next batch
    dt.getVertexPointers(vVertices);
    EXPECT_EQ(vVertices.size(), vPoints.size());
    EXPECT_GT(dt.numberOfTriangles(), 0U);
}

std::vector<std::size_t> shuffledOrder(std::size_t n, Random& random)
{
    std::vector<std::size_t> vOrder(n);
    for (std::size_t i = 0; i < n; ++i)
        vOrder[i] = i;
    std::shuffle(vOrder.begin(), vOrder.end(), random);
    return vOrder;
}

} // namespace

TEST(Remove, RefusesWhatDoesNotBelongToTheMesh)
{
    Quor_2D dt, other;
    const std::vector<Point2*> vHandles = insertAll(dt, gridPoints(3));
    const std::vector<Point2*> vOthers = insertAll(other, gridPoints(3));
    {
        CapturedOutput output;
        dt.remove(nullptr);
        EXPECT_EQ(output.take(), "\n      [Quor2D-Message] Dt2::remove(..), WARNING: pVtx==NULL, nothing to do\n\n");
    }
    expectRefused(dt, vOthers[4]);
    Point2 copy(*vHandles[4]);
    expectRefused(dt, &copy);
    copy.setIncidentTriangle(vHandles[4]->getIncidentTriangle());
    expectRefused(dt, &copy);
    dt.remove(vHandles[4]);
    EXPECT_EQ(dt.numberOfPoints(), 8U);
    expectRefused(dt, vHandles[4]);

    Quor_2D line;
    expectRefused(line, line.insert(Point2(0, 0)));
    expectRefused(line, line.insert(Point2(1, 0)));
}

TEST(Remove, MergesTheStarOfAVertexOfDegreeThree)
{
    Quor_2D dt;
    const std::vector<Point2*> vHandles = insertAll(dt, {Point2(0, 0), Point2(10, 0), Point2(4, 9), Point2(4, 3)});
    std::vector<Triangle2*> vBefore;
    dt.getTrianglePointers(vBefore);
    ASSERT_EQ(vBefore.size(), 3U);
    dt.remove(vHandles[3]);
    EXPECT_EQ(dt.numberOfTriangles(), 1U);
    expectValid(dt);
    const auto isDead = [](const Triangle2* pT) { return !pT->getCorner(0) && !pT->getCorner(1) && !pT->getCorner(2); };
    EXPECT_EQ(std::count_if(vBefore.begin(), vBefore.end(), isDead), 2) << "a dead triangle could be taken for live";
}

TEST(Remove, HandlesKeepTheirData)
{
    Quor_2D dt;
    insertAll(dt, gridPoints(5));
    Point2 p(1.5, 2.25);
    p.setCustomIndex(77);
    Point2* const pOld = dt.insert(p);
    dt.remove(pOld);
    EXPECT_EQ(*pOld, p);
    EXPECT_EQ(pOld->getCustomIndex(), 77);
    EXPECT_EQ(pOld->getIncidentTriangle(), nullptr);
    Point2* const pNew = dt.insert(p);
    EXPECT_NE(pNew, pOld) << "the removed vertex came back";
    EXPECT_NE(pNew->getIncidentTriangle(), nullptr);
    expectRefused(dt, pOld);
}

// Pending entries of duplicates were counted, or named a vertex that had gone.
TEST(Remove, CountsOneVertexHoweverOftenItWasInserted)
{
    Quor_2D dt;
    const std::vector<Point2*> vHandles = insertAll(dt, gridPoints(4));
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(dt.insert(*vHandles[5]), vHandles[5]);
        EXPECT_EQ(dt.insert(*vHandles[6]), vHandles[6]);
    }
    dt.remove(vHandles[5]);
    EXPECT_EQ(dt.numberOfPoints(), 15U);
    expectValid(dt);
    std::vector<Point2*> vAgain;
    dt.insert({*vHandles[5], *vHandles[6], *vHandles[5]}, vAgain);
    EXPECT_NE(vAgain[0], vHandles[5]);
    EXPECT_EQ(vAgain[2], vAgain[0]);
    EXPECT_EQ(vAgain[1], vHandles[6]);
    EXPECT_EQ(dt.numberOfPoints(), 16U);
    expectValid(dt);
}

// Only a third of the hull vertices of random points lose all but one triangle by flips.
TEST(Remove, PeelsRandomPointsFromOutside)
{
    Random random(1);
    for (int round = 0; round < 20; ++round) {
        Quor_2D dt;
        for (int i = 0; i < 60; ++i)
            dt.insert(uniformPoint(random));
        while (dt.numberOfTriangles() > 0) {
            std::vector<Point2*> vVertices;
            dt.getVertexPointers(vVertices);
            dt.remove(*std::find_if(vVertices.begin(), vVertices.end(), isOnHull));
            ASSERT_TRUE(isValidMesh(dt)) << "round " << round << ", " << dt.numberOfPoints() << " points";
        }
        EXPECT_EQ(dt.numberOfPoints(), 2U);
    }
}

// Refusing flat triangles on a straight border leaves a notch.
TEST(Remove, GridBorderKeepsItsHull)
{
    for (int i = 0; i < 25; ++i) {
        Quor_2D dt;
        const std::vector<Point2*> vHandles = insertAll(dt, gridPoints(5));
        dt.remove(vHandles[i]);
        ASSERT_TRUE(isValidMesh(dt)) << "vertex " << i;
        EXPECT_EQ(dt.numberOfPoints(), 24U);
    }
    Random random(2);
    for (int round = 0; round < 10; ++round)
        removeAllInOrder(gridPoints(6), shuffledOrder(36, random));
}

// The vertex lies on both diagonals, where no flip is allowed; squares of the distances underflow, overflow, or lose
// what the coordinates differ by.
TEST(Remove, MiddleOfASquareAtTheEndsOfTheRange)
{
    struct Case {
        double spacing;
        double origin;
    };
    for (const Case& c : {Case{1.0, 0x1p52}, Case{5e-324, 0.0}, Case{1e-170, 0.0}, Case{1e-300, 0.0}, Case{1e150, 0.0},
                          Case{1e300, 0.0}, Case{0x1p1022, -0x1p1022}, Case{0.1, 7.3}}) {
        Quor_2D dt;
        const std::vector<Point2> vPoints = gridPoints(3, c.spacing, c.origin);
        const std::vector<Point2*> vHandles = insertAll(dt, vPoints);
        ASSERT_EQ(dt.numberOfTriangles(), 8U) << c.spacing;
        for (const int i : {1, 3, 5, 7}) // leaves the middle with the four corners
            dt.remove(vHandles[i]);
        ASSERT_TRUE(isValidMesh(dt)) << c.spacing;
        dt.remove(vHandles[4]);
        EXPECT_TRUE(isValidMesh(dt)) << c.spacing;
        EXPECT_EQ(dt.numberOfTriangles(), 2U);
        EXPECT_EQ(*vHandles[4], vPoints[4]);
    }
}

// Relative to the vertex the corners on the right are one point: a rounded order of ears leads astray.
TEST(Remove, CornersThatRoundingMakesOne)
{
    const std::vector<Point2> vCorners{Point2(2, 1e-15), Point2(1, 6),     Point2(0, 3),     Point2(0, 9e-16),
                                       Point2(0, 0),     Point2(2, 4e-16), Point2(2, 6e-16), Point2(2, 8e-16)};
    Quor_2D dt;
    insertAll(dt, vCorners);
    const unsigned int numTriangles = dt.numberOfTriangles();
    Point2* const pMiddle = dt.insert(Point2(1, 1));
    EXPECT_EQ(dt.numberOfTriangles(), 8U); // all of them around it
    dt.remove(pMiddle);
    EXPECT_TRUE(isValidMesh(dt));
    EXPECT_EQ(dt.numberOfTriangles(), numTriangles);
}

// More corners than are replaced at once, on one circle: nothing tells the ears apart, and flips can end with a square
// around the vertex.
TEST(Remove, MiddleOfManyCocircularCorners)
{
    for (const int squaredRadius : {25, 65, 325}) {
        std::vector<Point2> vUnit;
        for (int x = -18; x <= 18; ++x)
            for (int y = -18; y <= 18; ++y)
                if (x * x + y * y == squaredRadius)
                    vUnit.emplace_back(x, y);
        for (const double origin : {0.0, 0x1p52, -0x1p50})
            for (const double scale : {5e-324, 1e-170, 1.0, 3.0, 1e150, 0x1p1000}) {
                if (origin != 0.0 && scale != 1.0 && scale != 3.0)
                    continue;
                Quor_2D dt;
                std::vector<Point2> vPoints;
                for (const Point2& p : vUnit)
                    vPoints.emplace_back(origin + scale * p.x(), origin + scale * p.y());
                insertAll(dt, vPoints);
                Point2* const pMiddle = dt.insert(Point2(origin, origin));
                ASSERT_EQ(dt.numberOfTriangles(), vPoints.size());
                dt.remove(pMiddle);
                EXPECT_TRUE(isValidMesh(dt)) << squaredRadius << ", " << scale;
                EXPECT_EQ(dt.numberOfTriangles(), vPoints.size() - 2);
            }
    }
}

TEST(Remove, DownToNothingAndUpAgain)
{
    Random random(4);
    std::vector<Point2> vApex;
    for (int i = 0; i < 12; ++i)
        vApex.emplace_back(i, 0);
    vApex.emplace_back(5, 3);
    std::vector<Point2> vCircle;
    for (int i = 0; i < 16; ++i)
        vCircle.push_back(pointOnCircle(0.392699081698724 * i));
    vCircle.emplace_back(0, 0);
    const std::vector<Point2> vCorner{Point2(0, 0), Point2(1, 0), Point2(0, 1)};
    for (const std::vector<Point2>& vPoints : {vApex, vCircle, vCorner, gridPoints(4)})
        for (int round = 0; round < 8; ++round)
            removeAllInOrder(vPoints, shuffledOrder(vPoints.size(), random));
}

// The last vertices are collinear, and the apex holds all triangles.
TEST(Remove, ApexOverALine)
{
    Quor_2D dt;
    std::vector<Point2> vPoints;
    for (int i = 0; i < 10; ++i)
        vPoints.emplace_back(0.5 * i, 1.5 * i);
    insertAll(dt, vPoints);
    Point2* const pApex = dt.insert(Point2(3, 0));
    EXPECT_EQ(dt.numberOfTriangles(), 9U);
    dt.remove(pApex);
    EXPECT_EQ(dt.numberOfPoints(), 10U);
    expectValid(dt);
    std::vector<Point2*> vVertices;
    dt.getVertexPointers(vVertices);
    expectRefused(dt, vVertices.front());
    EXPECT_NE(std::find(vVertices.begin(), vVertices.end(), dt.insert(vPoints[4])), vVertices.end());
    std::vector<Point2*> vHandles;
    dt.insert({Point2(1, 3.5), vPoints[2], Point2(9, 9)}, vHandles);
    EXPECT_EQ(dt.numberOfPoints(), 12U);
    expectValid(dt);
}

// With the rule for rectangles in the in-circle test the two diagonals of a square replace each other for ever.
TEST(Remove, SquaresEndFlipping)
{
    Random random(5);
    Quor_2D dt;
    std::vector<Point2*> vHandles = insertAll(dt, gridPoints(12));
    std::shuffle(vHandles.begin(), vHandles.end(), random);
    for (std::size_t i = 0; i + 3 < vHandles.size(); ++i) {
        dt.remove(vHandles[i]);
        ASSERT_TRUE(isValidMesh(dt)) << i;
    }
}

TEST(Remove, TryFlipAwayRefusesFlatTriangles)
{
    Dt2 dt(10);
    for (const Point2& p : {Point2(0, 0), Point2(2, 0), Point2(2, 2), Point2(0, 2)})
        dt.insert(p);
    Point2* const pMiddle = dt.insert(Point2(1, 1));
    for (IncidentTriangles it(pMiddle); !it.atEnd(); it.advance())
        EXPECT_EQ(dt.tryFlipAway(pMiddle, it.triangle()), nullptr);
    expectValid(dt);

    dt.insert(Point2(5, 1));
    dt.insert(Point2(1, 6));
    Point2* const pVtx = dt.insert(Point2(2.25, 2.5));
    Triangle2* pFlipped = nullptr;
    Triangle2* pLeft = nullptr;
    std::vector<Triangle2*> vStar;
    for (IncidentTriangles it(pVtx); !it.atEnd(); it.advance())
        vStar.push_back(it.triangle());
    for (std::size_t i = 0; i < vStar.size() && !pLeft; ++i) {
        pFlipped = vStar[i];
        pLeft = dt.tryFlipAway(pVtx, pFlipped);
    }
    ASSERT_NE(pLeft, nullptr);
    EXPECT_EQ(pVtx->getIncidentTriangle(), pLeft);
    for (int i = 0; i < 3; ++i)
        EXPECT_NE(pFlipped->getCorner(i), pVtx);
    test::MeshCheckOptions options;
    options.bDelaunay = false;
    expectValid(dt, options);
}

// Where edges were locked, circles beyond the star of the vertex need not be empty; its removal ends that.
TEST(Remove, InternalRemovalLooksBeyondTheStar)
{
    int numWithoutLook = 0;
    for (int round = 0; round < 100; ++round) {
        for (const bool bInternal : {false, true}) {
            Dt2 dt(20);
            Random points(static_cast<unsigned int>(round));
            for (int i = 0; i < 15; ++i)
                dt.insert(uniformPoint(points));
            Point2* const pVtx = dt.insert(Point2(0.5, 0.5));
            Triangle2* const pT = pVtx->getIncidentTriangle();
            if (!dt.tryFlipAway(pVtx, pT))
                continue; // now the vertex lies inside the circle of pT
            dt.remove(pVtx, bInternal);
            if (bInternal)
                EXPECT_TRUE(isValidMesh(dt)) << round;
            else
                numWithoutLook += isValidMesh(dt) ? 0 : 1;
        }
    }
    EXPECT_GT(numWithoutLook, 0) << "the test shows nothing";
}

// A removal could take an end of a segment, or flip a segment's edge while it restores circles.
TEST(Remove, KeepsConstraints)
{
    Random random(10);
    Quor_2D dt;
    std::vector<Point2*> vHandles = insertAll(dt, gridPoints(9));
    for (int i = 0; i < 60; ++i)
        vHandles.push_back(dt.insert(Point2(8.0 * uniformPoint(random).x(), 8.0 * uniformPoint(random).y())));
    std::vector<Segment2> vSegments{Segment2(Point2(0.3, 0.1), Point2(7.7, 7.2)),
                                    Segment2(Point2(0.2, 6), Point2(7.9, 1.5))};
    ASSERT_NE(dt.createConstraint(vSegments, CIS_CONSTRAINED_DELAUNAY), nullptr);
    dt.applyConstraintsAndZones();
    test::MeshCheckOptions options;
    options.isExemptEdge = [&dt](const Point2* p, const Point2* q) {
        return dt.isConstraint(const_cast<Point2*>(p), const_cast<Point2*>(q));
    };
    std::vector<Point2*> vVertices;
    dt.getVertexPointers(vVertices);
    std::shuffle(vVertices.begin(), vVertices.end(), random);
    int numRefused = 0;
    for (Point2* pVtx : vVertices) {
        CapturedOutput output;
        dt.remove(pVtx);
        const std::string text = output.take();
        if (!text.empty()) {
            EXPECT_EQ(text,
                      "\n      [Quor2D-Message] Dt2::remove(), WARNING: the vertex is an endpoint of a constraint "
                      "segment, nothing to do\n\n");
            EXPECT_NE(pVtx->getIncidentTriangle(), nullptr);
            ++numRefused;
        }
        ASSERT_TRUE(isValidMesh(dt, options));
    }
    EXPECT_EQ(numRefused, 5) << "two segments that cross have five ends";
    EXPECT_EQ(dt.numberOfPoints(), 5U);
}

// Hubs lose their corners in another order than ordinary vertices.
TEST(Remove, Hubs)
{
    Random random(6);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    constexpr int kDegree = 1500;
    const auto fan = [](const std::function<Point2(int)>& pointAt) {
        std::vector<Point2> vPoints;
        for (int i = 0; i < kDegree; ++i)
            vPoints.push_back(pointAt(i));
        return vPoints;
    };
    struct Case {
        const char* name;
        std::vector<Point2> vRing;
        Point2 hub;
    };
    const Case aCases[] = {
        {"circle", fan([](int i) { return pointOnCircle(6.283185307179586 * i / kDegree); }), Point2(0, 0)},
        {"uneven circle", fan([&](int) { return pointOnCircle(6.283185307179586 * unit(random)); }), Point2(0, 0)},
        {"parabola below", fan([](int i) { return Point2(2.0 * i / kDegree, 4.0 * i / kDegree * i / kDegree); }),
         Point2(-1e6, 1e6)},
        {"line", fan([](int i) { return Point2(i, 0); }), Point2(700.5, 1e7)},
        {"zigzag", fan([](int i) { return Point2(i, i % 2); }), Point2(700.5, 1e7)},
    };
    for (const Case& c : aCases) {
        Quor_2D dt;
        insertAll(dt, c.vRing);
        Point2* const pHub = dt.insert(c.hub);
        dt.remove(pHub);
        EXPECT_TRUE(isValidMesh(dt)) << c.name;
    }
}

// Look-ups by coordinates start at vertices of the vault; long runs of removed ones lie in between.
TEST(Remove, LocatesAndInsertsAmongRemovedVertices)
{
    Random random(7);
    Quor_2D dt;
    std::vector<Point2> vPoints;
    for (int i = 0; i < 5000; ++i)
        vPoints.push_back(uniformPoint(random));
    const std::vector<Point2*> vHandles = insertAll(dt, vPoints);
    for (Point2* pVtx : vHandles)
        if (std::hypot(pVtx->x() - 0.5, pVtx->y() - 0.5) < 0.4)
            dt.remove(pVtx);
    expectValid(dt);
    for (int i = 0; i < 1000; ++i) {
        const Point2 p(0.3 + 0.4 * uniformPoint(random).x(), 0.5);
        const Triangle2* const pT = dt.locate(p);
        ASSERT_NE(pT, nullptr);
        for (int k = 0; k < 3; ++k)
            ASSERT_GE(test::orientationSign(*pT->getCorner((k + 1) % 3), *pT->getCorner((k + 2) % 3), p), 0);
        if (i % 10 == 0)
            dt.insert(p);
    }
    expectValid(dt);
}

// ---- mixed insertions and removals

namespace
{

using Source = std::function<Point2(Random&)>;

// Keeps the number of vertices between small and 2 * target, and checks the mesh after every step.
void mixInsertionsAndRemovals(const char* name, const Source& source, int numSteps, std::size_t target)
{
    std::srand(8);
    Random random(8);
    Quor_2D dt;
    std::vector<Point2*> vLive;
    CapturedOutput output; // warnings while there are no triangles
    for (int step = 0; step < numSteps; ++step) {
        const bool bInsert = vLive.empty() || random() % (2 * target) >= vLive.size();
        if (bInsert) {
            Point2* const pVtx = dt.insert(source(random));
            if (std::find(vLive.begin(), vLive.end(), pVtx) == vLive.end())
                vLive.push_back(pVtx);
        } else {
            const std::size_t i = random() % vLive.size();
            if (!vLive[i]->getIncidentTriangle())
                continue; // all are collinear
            dt.remove(vLive[i]);
            vLive.erase(vLive.begin() + static_cast<std::ptrdiff_t>(i));
        }
        std::vector<Point2*> vVertices;
        dt.getVertexPointers(vVertices);
        std::vector<Point2*> vExpected(vLive);
        std::sort(vVertices.begin(), vVertices.end());
        std::sort(vExpected.begin(), vExpected.end());
        ASSERT_EQ(vVertices, vExpected) << name << ", step " << step;
        ASSERT_TRUE(isValidMesh(dt)) << name << ", step " << step;
    }
}

Point2 cocircularPoint(Random& random)
{
    // Lattice points of the circle of squared radius 5^2 * 13^2 * 17^2 = 1105^2 in thirds of the plane, and its centre.
    static const int aLegs[][2] = {{47, 1104},  {105, 1100}, {169, 1092}, {264, 1073}, {272, 1071},
                                   {425, 1020}, {468, 1001}, {520, 975},  {561, 952},  {576, 943},
                                   {663, 884},  {700, 855},  {744, 817},  {0, 1105}};
    if (random() % 8 == 0)
        return Point2(0, 0);
    const int* const aLeg = aLegs[random() % 14];
    const bool bSwap = random() % 2 == 0;
    return Point2((random() % 2 ? 1 : -1) * aLeg[bSwap], (random() % 2 ? 1 : -1) * aLeg[!bSwap]);
}

Point2 clusteredPoint(Random& random)
{
    const double scale = std::ldexp(1.0, -static_cast<int>(random() % 40));
    const Point2 p = uniformPoint(random);
    return Point2(0.25 + scale * (p.x() - 0.5), 0.75 + scale * (p.y() - 0.5));
}

} // namespace

TEST(Remove, MixedWithInsertionsUniform)
{
    mixInsertionsAndRemovals("uniform", uniformPoint, 2000, 60);
    mixInsertionsAndRemovals("few", uniformPoint, 1000, 4);
}

TEST(Remove, MixedWithInsertionsHull)
{
    mixInsertionsAndRemovals(
        "hull", [](Random& random) { return pointOnCircle(6.283185307179586 * uniformPoint(random).x()); }, 1500, 40);
}

TEST(Remove, MixedWithInsertionsGrid)
{
    const auto lattice = [](int side, double spacing, double origin) {
        return [=](Random& random) {
            const int x = static_cast<int>(random() % side);
            return Point2(origin + spacing * x, origin + spacing * static_cast<int>(random() % side));
        };
    };
    mixInsertionsAndRemovals("grid", lattice(9, 1.0, 0.0), 2000, 45);
    mixInsertionsAndRemovals("tiny grid", lattice(3, 1.0, 0.0), 1000, 4);
    mixInsertionsAndRemovals("far grid", lattice(6, 1.0, 0x1p52), 500, 20);
    mixInsertionsAndRemovals("tenths", lattice(7, 0.1, 0.3), 500, 25);
}

TEST(Remove, MixedWithInsertionsCocircular)
{
    mixInsertionsAndRemovals("cocircular", cocircularPoint, 2000, 60);
}

TEST(Remove, MixedWithInsertionsClustered)
{
    mixInsertionsAndRemovals("clustered", clusteredPoint, 2000, 60);
}

// The keys of the order underflow or overflow, so corners go in arbitrary order and circles are left to restore.
TEST(Remove, MixedWithInsertionsOfExtremeMagnitude)
{
    for (const double scale : {1e-300, 1e-165, 1e80, 1e155, 1e300}) {
        const auto scaled = [scale](Random& random) {
            const Point2 p = uniformPoint(random);
            return Point2(scale * p.x(), scale * p.y());
        };
        mixInsertionsAndRemovals("extreme", scaled, 250, 25);
    }
}
