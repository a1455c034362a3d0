#include "core/HC2.h"
#include "core/SimplePool.h"
#include "core/VertexVault.h"
#include "tests/support/PointSets.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

TEST(SimplePool, FirstGrowthHalvesThenDoubles)
{
    SimplePool<Point2> pool;
    pool.init(3, -1);
    std::vector<Point2*> vElements;
    for (int i = 0; i < 12; ++i)
        vElements.push_back(pool.alloc());
    EXPECT_EQ(pool.getSizes(), (std::vector<int>{3, 1, 2, 4, 8}));
    EXPECT_EQ(vElements[2], vElements[0] + 2);
    EXPECT_EQ(vElements[9], vElements[6] + 3);
    EXPECT_EQ(pool.numberOfElements(), 12u);
    std::vector<Point2*> vVisited;
    pool.forEach([&vVisited](Point2* p) { vVisited.push_back(p); });
    EXPECT_EQ(vVisited, vElements);
    for (std::size_t i = 0; i < vElements.size(); ++i) {
        EXPECT_TRUE(pool.contains(vElements[i]));
        EXPECT_EQ(pool.indexOf(vElements[i]), i);
        EXPECT_EQ(pool.elementAt(i), vElements[i]);
    }
    EXPECT_EQ(pool.elementAt(vElements.size()), nullptr);
    EXPECT_FALSE(pool.contains(vElements.back() + 1)); // in the block, not handed out
    Point2 other;
    EXPECT_FALSE(pool.contains(&other));
    EXPECT_FALSE(pool.contains(reinterpret_cast<Point2*>(reinterpret_cast<char*>(vElements[0]) + 8)));
    EXPECT_FALSE(pool.contains(nullptr));
}

TEST(SimplePool, BlocksAreBounded)
{
    EXPECT_EQ(SimplePool<Point2>::kMaximumBlock, 3125000);
    EXPECT_EQ(SimplePool<Triangle2>::kMaximumBlock, 1785714);
    SimplePool<Triangle2> pool;
    pool.init(std::numeric_limits<int>::max(), -1);
    EXPECT_EQ(pool.getSizes().front(), 1785714);
    SimplePool<Point2> unused; // destruction without init
}

TEST(SimplePool, SecondInitEndsTheProcess)
{
    EXPECT_EXIT(
        {
            std::cout.rdbuf(std::cerr.rdbuf());
            SimplePool<Point2> pool;
            pool.init(1, -1);
            pool.init(1, -1);
        },
        testing::ExitedWithCode(1), "SimplePool::init\\(..\\), ERROR: This pool is already initialized");
}

TEST(HC2, NeighboursAlongTheCurveAreNeighboursInThePlane)
{
    const HC2 curve(0.0, 0.0, 8.0, 8.0, 6);
    std::vector<Point2> vCells(64);
    std::set<std::uint32_t> sKeys;
    for (int x = 0; x < 8; ++x)
        for (int y = 0; y < 8; ++y) {
            const std::uint32_t key = curve.getIndex(x + 0.5, y + 0.5);
            ASSERT_LT(key, 64u);
            sKeys.insert(key);
            vCells[key] = Point2(x, y);
        }
    EXPECT_EQ(sKeys.size(), 64u);
    EXPECT_EQ(curve.getIndex(0.0, 0.0), 0u);
    for (std::size_t i = 1; i < 64; ++i)
        EXPECT_EQ(std::abs(vCells[i].x() - vCells[i - 1].x()) + std::abs(vCells[i].y() - vCells[i - 1].y()), 1.0);
}

TEST(HC2, AnyDoubleGetsAKey)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double largest = std::numeric_limits<double>::max();
    const HC2 unit(0.0, 0.0, 1.0, 1.0, 30);
    const HC2 point(3.0, 3.0, 3.0, 3.0, 30);
    const HC2 wide(-largest, -largest, largest, largest, 30);
    const HC2 unbounded(-infinity, -infinity, infinity, infinity, 32);
    const HC2 tiny(0.0, 0.0, 5e-324, 5e-324, 30);
    for (const HC2* pCurve : {&unit, &point, &wide, &unbounded, &tiny})
        for (const double x : {-infinity, -largest, -1.0, 0.0, 5e-324, 1.0, 3.0, largest, infinity, std::nan("")})
            for (const double y : {-infinity, 0.0, largest, std::nan("")})
                pCurve->getIndex(x, y);
    EXPECT_EQ(point.getIndex(3.0, 3.0), 0u);
    EXPECT_EQ(unit.getIndex(-1.0, -1.0), unit.getIndex(0.0, 0.0));
    EXPECT_EQ(unit.getIndex(1.0, 1.0), unit.getIndex(2.0, 2.0));
    EXPECT_NE(wide.getIndex(-1e308, 0.0), wide.getIndex(1e308, 0.0));
    EXPECT_NE(tiny.getIndex(0.0, 0.0), tiny.getIndex(5e-324, 0.0));
}

TEST(HC2, BadKeyLengthEndsTheProcess)
{
    for (const int numBits : {0, 7, 34})
        EXPECT_EXIT(
            {
                std::cout.rdbuf(std::cerr.rdbuf());
                HC2(0.0, 0.0, 1.0, 1.0, numBits);
            },
            testing::ExitedWithCode(1), "HC2::HC2\\(..\\), ERROR: invalid bitlength");
}

namespace
{

struct VaultFixture : testing::Test {
    VaultFixture() : curve(0.0, 0.0, 1.0, 1.0, 30), vault(curve, pool)
    {
        pool.init(3, -1);
        vault.bFullDimensional = true;
    }

    Point2* add(double x, double y, bool bWithTriangle = true)
    {
        Point2* pVtx = vault.makeVertex(x, y, -1);
        pVtx->setIncidentTriangle(bWithTriangle ? makeTriangle() : nullptr);
        vault.add(curve.getIndex(x, y), pVtx);
        return pVtx;
    }

    Triangle2* makeTriangle()
    {
        vTriangles.push_back(std::make_unique<Triangle2>());
        return vTriangles.back().get();
    }

    HC2 curve;
    SimplePool<Point2> pool;
    VertexVault vault;
    std::vector<std::unique_ptr<Triangle2>> vTriangles;
};

} // namespace

TEST_F(VaultFixture, StartTriangleIsNearTheKeyAndSkipsVerticesWithoutTriangle)
{
    for (int i = 0; i < 50; ++i)
        add(i / 50.0, i / 50.0, i % 10 == 0);
    vault.updateSortedIndex(false);
    for (const VaultEntry& entry : vault.vIdxVtxAct)
        EXPECT_NE(vault.getCT(entry.key), nullptr);
    EXPECT_EQ(vault.getCT(0), vault[0].pVtx->getIncidentTriangle());
    EXPECT_NE(vault.getCT(0xFFFFFFFFu), nullptr);
    for (std::size_t i = 1; i < vault.size(); ++i)
        EXPECT_LE(vault[i - 1].key, vault[i].key);
}

TEST_F(VaultFixture, OnlyTheTailHasTriangles)
{
    for (int i = 0; i < 10; ++i)
        add(i / 10.0, 0.5, false);
    vault.updateSortedIndex(false);
    EXPECT_EQ(vault.maxSortedIndex, 10u);
    const Point2* pVtx = add(0.3, 0.9);
    vault.updateSortedIndex(true); // 11 entries are no reason to sort
    EXPECT_EQ(vault.maxSortedIndex, 10u);
    EXPECT_EQ(vault.getCT(0), pVtx->getIncidentTriangle());
}

TEST_F(VaultFixture, DuplicatesAndRemovedVerticesLeaveTheCount)
{
    std::vector<Point2*> vVertices;
    for (int i = 0; i < 10; ++i)
        vVertices.push_back(add(i / 10.0, 0.0));
    vault.addDuplicate(curve.getIndex(*vVertices[3]), vVertices[3]);
    vault.addDuplicate(curve.getIndex(*vVertices[4]), vVertices[4]);
    EXPECT_EQ(vault.size(), 12u);
    vault.remove(vVertices[3]);
    EXPECT_EQ(vault.size(), 9u);
    vault.updateSortedIndex(false);
    EXPECT_EQ(vault.size(), 9u);
    EXPECT_EQ(vault.vIdxVtxAct.size(), 9u);
    std::vector<Point2*> vListed;
    vault.getVertices(vListed);
    EXPECT_EQ(std::set<Point2*>(vListed.begin(), vListed.end()).size(), 9u);
}

// One far outlier squeezes all other points into one cell of the curve.
TEST_F(VaultFixture, PointsThatShareAKeyAreOrderedByAFinerCurve)
{
    std::vector<Point2> vPoints = uniformPoints(5000, 13);
    for (Point2& p : vPoints)
        p = Point2(p.x() * 1e-12, p.y() * 1e-12);
    vPoints.emplace_back(1.0, 1.0);
    vPoints.push_back(vPoints[17]);
    const auto source = [&vPoints](std::size_t i) -> const Point2& { return vPoints[i]; };
    std::vector<std::uint32_t> vEntryOfInput;
    vault.addPoints(
        vPoints.size(), source, [](std::size_t) { return false; }, &vEntryOfInput);
    EXPECT_EQ(vault.size(), 5001u);
    EXPECT_EQ(vEntryOfInput[17], vEntryOfInput.back());
    double length = 0.0;
    for (std::size_t i = 1; i < 5000; ++i)
        length += std::hypot(vault[i].pVtx->x() - vault[i - 1].pVtx->x(), vault[i].pVtx->y() - vault[i - 1].pVtx->y());
    EXPECT_LT(length, 2.0 * std::sqrt(5000.0) * 1e-12); // a random order would be 2600e-12 long
}

// The fault: keys say nothing about places in a dense cluster, so that every walk crosses half of it.
TEST_F(VaultFixture, RecentVerticesAreNearInDenseClusters)
{
    for (const double x : {0.0, 1.0})
        for (const double y : {0.0, 1.0})
            add(x, y);
    double size = 1e-6;
    for (int nesting = 0; nesting < 3; ++nesting, size *= 1e-5)
        for (const Point2& p : uniformPoints(4000, 17))
            add(0.6 + size * p.x(), 0.6 + size * p.y());
    for (int i = 0; i < 4000; ++i) // a cluster without extent in one direction
        add(0.2 + 1e-9 * i, 0.2);
    vault.updateSortedIndex(false);
    std::size_t numFar = 0;
    for (const VaultEntry& entry : vault.vIdxVtxAct) {
        const Point2& p = *entry.pVtx;
        const Point2* const pNear = vault.findRecent(entry.key, p);
        ASSERT_NE(pNear, nullptr);
        double spacing = 1e-9;
        for (size = 1e-6; p.x() > 0.5 && p.x() - 0.6 < size; size *= 1e-5)
            spacing = size / std::sqrt(4000.0);
        numFar += std::hypot(p.x() - pNear->x(), p.y() - pNear->y()) > 20 * spacing;
    }
    EXPECT_LT(numFar, vault.size() / 20);
}

TEST_F(VaultFixture, LongWalksAndNewVerticesImproveTheStarts)
{
    for (int i = 0; i < 8; ++i)
        add(i / 8.0, (i % 3) / 3.0);
    vault.updateSortedIndex(false);
    ASSERT_NE(vault.findRecent(0, Point2(0.0, 0.0)), nullptr);
    Point2* pNew = nullptr;
    for (int i = 0; i < 1000; ++i)
        pNew = add(0.6 + 1e-9 * i, 0.6);
    const std::uint32_t key = curve.getIndex(*pNew);
    vault.noteLongWalk(1000000); // the cells are filled anew and know the cluster
    const Point2* const pNear = vault.findRecent(key, *pNew);
    EXPECT_LT(pNew->x() - pNear->x(), 1e-7);
    vault.noteRecent(key, pNew);
    EXPECT_EQ(vault.findRecent(key, *pNew), pNew);
    vault.remove(pNew);
    EXPECT_EQ(vault.findRecent(key, *pNew), nullptr);
}
