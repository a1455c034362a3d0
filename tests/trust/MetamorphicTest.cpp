// The same points in another place, order or size give the same mesh.
#include "tests/output/OutputTestSupport.h"
#include "tests/support/MeshCheck.h"
#include "tests/support/PointSets.h"
#include "tests/trust/MeshSet.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>

using namespace ZELK_QUOR2D;
using test::Place;

namespace
{

// Whole numbers, so that moving and scaling are exact; no four of these are cocircular, so the mesh is unique.
std::vector<Point2> uniquePoints(int n)
{
    test::Uniform u(17);
    std::vector<Point2> vPoints;
    for (int i = 0; i < n; ++i) {
        const double x = u.below(1 << 20);
        vPoints.emplace_back(x, u.below(1 << 20));
    }
    return vPoints;
}

struct Motion {
    const char* pName;
    std::function<Point2(const Point2&)> apply;
    std::function<Place(const Point2&)> revert;
};

const double kShift = 0x1p31;

const Motion kMotions[] = {
    {"moved", [](const Point2& p) { return Point2(p.x() + kShift, p.y() - 3.0 * kShift); },
     [](const Point2& p) { return Place(p.x() - kShift, p.y() + 3.0 * kShift); }},
    {"mirrored", [](const Point2& p) { return Point2(-p.x(), p.y()); },
     [](const Point2& p) { return Place(-p.x(), p.y()); }},
    {"transposed", [](const Point2& p) { return Point2(p.y(), p.x()); },
     [](const Point2& p) { return Place(p.y(), p.x()); }},
    {"turned", [](const Point2& p) { return Point2(-p.y(), p.x()); },
     [](const Point2& p) { return Place(p.y(), -p.x()); }},
    {"enlarged", [](const Point2& p) { return Point2(std::ldexp(p.x(), 1000), std::ldexp(p.y(), 1000)); },
     [](const Point2& p) { return Place(std::ldexp(p.x(), -1000), std::ldexp(p.y(), -1000)); }},
    {"reduced", [](const Point2& p) { return Point2(std::ldexp(p.x(), -1074), std::ldexp(p.y(), -1074)); },
     [](const Point2& p) { return Place(std::ldexp(p.x(), 1074), std::ldexp(p.y(), 1074)); }},
};

template <class Build>
void expectSameMesh(Build build)
{
    const std::vector<Point2> vPoints = uniquePoints(700);
    Quor_2D reference;
    build(reference, vPoints);
    const test::MeshSet expected = test::meshSetOf(reference);
    ASSERT_FALSE(expected.empty());
    for (const Motion& motion : kMotions) {
        std::vector<Point2> vMoved;
        for (const Point2& p : vPoints)
            vMoved.push_back(motion.apply(p));
        Quor_2D dt;
        build(dt, vMoved);
        EXPECT_EQ(test::meshSetOf(dt, motion.revert), expected) << motion.pName;
    }
}

} // namespace

TEST(Metamorphic, BatchOfMovedPoints)
{
    expectSameMesh([](Quor_2D& dt, const std::vector<Point2>& vPoints) { dt.insert(vPoints); });
}

TEST(Metamorphic, SinglyInsertedAndPartlyRemovedMovedPoints)
{
    expectSameMesh([](Quor_2D& dt, const std::vector<Point2>& vPoints) {
        std::vector<Point2*> vHandles;
        for (const Point2& p : vPoints)
            vHandles.push_back(dt.insert(p));
        for (std::size_t i = 0; i < vHandles.size(); i += 3)
            dt.remove(vHandles[i]);
    });
}

TEST(Metamorphic, OrderOfPointsDoesNotMatter)
{
    std::vector<Point2> vPoints = uniquePoints(500);
    Quor_2D reference;
    reference.insert(vPoints);
    const test::MeshSet expected = test::meshSetOf(reference);
    std::mt19937 random(3);
    for (int round = 0; round < 5; ++round) {
        std::shuffle(vPoints.begin(), vPoints.end(), random);
        Quor_2D batch, single, mixed;
        batch.insert(vPoints);
        for (const Point2& p : vPoints)
            single.insert(p);
        mixed.insert(std::vector<Point2>(vPoints.begin(), vPoints.begin() + 100));
        for (std::size_t i = 100; i < 200; ++i)
            mixed.insert(vPoints[i]);
        mixed.insert(std::vector<Point2>(vPoints.begin() + 200, vPoints.end()));
        EXPECT_EQ(test::meshSetOf(batch), expected);
        EXPECT_EQ(test::meshSetOf(single), expected);
        EXPECT_EQ(test::meshSetOf(mixed), expected);
    }
}

TEST(Metamorphic, PointsThatCameAndWentLeaveNoTrace)
{
    const std::vector<Point2> vPoints = uniquePoints(400);
    Quor_2D reference;
    reference.insert(vPoints);
    Quor_2D dt;
    dt.insert(vPoints);
    std::vector<Point2*> vVisitors;
    std::vector<Point2> vVisitorPoints;
    for (const Point2& p : uniquePoints(900))
        vVisitorPoints.emplace_back(p.x() * 1.25 - 1000.5, p.y() * 1.25 - 1000.5);
    dt.insert(vVisitorPoints, vVisitors);
    for (Point2* pVtx : vVisitors)
        dt.remove(pVtx);
    EXPECT_EQ(test::meshSetOf(dt), test::meshSetOf(reference));
}

TEST(Metamorphic, InterleavedObjectsDoNotInfluenceEachOther)
{
    const std::vector<Point2> vPoints = uniquePoints(300);
    Quor_2D alone, first, second;
    for (const Point2& p : vPoints)
        alone.insert(p);
    std::vector<Point2*> vSecond;
    for (const Point2& p : vPoints) {
        first.insert(p);
        vSecond.push_back(second.insert(Point2(p.y() * 3.0, p.x())));
        if (vSecond.size() > 10 && vSecond.size() % 2 == 0)
            second.remove(vSecond[vSecond.size() - 5]);
    }
    EXPECT_EQ(test::meshSetOf(first), test::meshSetOf(alone));
    test::expectValid(second);
}
