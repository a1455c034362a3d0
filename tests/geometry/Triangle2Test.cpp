#include "Triangle2.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <limits>
#include <random>
#include <sstream>

using namespace ZELK_QUOR2D;

namespace
{

struct Corners {
    Corners(const Point2& a, const Point2& b, const Point2& c) : aPoints{a, b, c}
    {
        triangle.setProperties(&aPoints[0], &aPoints[1], &aPoints[2]);
    }
    Corners(const Corners&) = delete;
    Corners& operator=(const Corners&) = delete;
    Point2 aPoints[3];
    Triangle2 triangle;
};

double maxAbsCoord(const Point2& p)
{
    return std::fmax(std::fabs(p.x()), std::fabs(p.y()));
}

void expectFar(const std::pair<Point2, bool>& dual)
{
    EXPECT_FALSE(dual.second);
    EXPECT_GE(maxAbsCoord(dual.first), 0x1p1022);
    EXPECT_LT(maxAbsCoord(dual.first), 0x1p1023);
}

TEST(Triangle, SetPropertiesForgetsTheOldPlace)
{
    Corners corners(Point2(0, 0), Point2(1, 0), Point2(0, 1));
    Triangle2 neighbor;
    for (int i = 0; i < 3; ++i)
        corners.triangle.setOppTriangle(i, &neighbor);
    corners.triangle.setState(true);
    corners.triangle.setProperties(&corners.aPoints[1], &corners.aPoints[2], &corners.aPoints[0]);
    EXPECT_FALSE(corners.triangle.getState());
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(corners.triangle.getOppositeTriangle(i), nullptr);
        EXPECT_EQ(corners.triangle.getCorner(i), &corners.aPoints[(i + 1) % 3]);
        EXPECT_EQ(corners.aPoints[i].getIncidentTriangle(), &corners.triangle);
    }
    Point2 lone(5, 5);
    corners.triangle.setVertexPointer(0, &lone);
    EXPECT_EQ(lone.getIncidentTriangle(), nullptr);
}

TEST(Triangle, Measures)
{
    const Corners corners(Point2(0, 0), Point2(1, 0), Point2(0, 1));
    EXPECT_EQ(corners.triangle.getSquaredEdgeLength(0), 2.0);
    EXPECT_EQ(corners.triangle.getSquaredEdgeLength(1), 1.0);
    EXPECT_EQ(corners.triangle.getSquaredEdgeLength(2), 1.0);
    EXPECT_DOUBLE_EQ(corners.triangle.getArea(), 0.5);
    const Point2 center = corners.triangle.getBarycenter();
    EXPECT_EQ(center.x(), 1.0 / 3.0);
    EXPECT_EQ(center.y(), 1.0 / 3.0);
    EXPECT_EQ(center.getIncidentTriangle(), nullptr);
    EXPECT_EQ(center.getCustomIndex(), -1);
}

TEST(TriangleDual, CenterOfAnOrdinaryTriangle)
{
    const Corners corners(Point2(0, 0), Point2(1, 0), Point2(0, 1));
    const auto [center, bValid] = corners.triangle.getDual();
    EXPECT_TRUE(bValid);
    EXPECT_TRUE(center == Point2(0.5, 0.5));
    EXPECT_EQ(center.getIncidentTriangle(), nullptr);
    EXPECT_EQ(center.getCustomIndex(), -1);
}

// Sums of absolute coordinates call this triangle collinear.
TEST(TriangleDual, SmallTriangleFarFromTheOrigin)
{
    const double x = 1e7;
    const Corners corners(Point2(x, x), Point2(x + 0.01, x), Point2(x, x + 0.01));
    const auto [center, bValid] = corners.triangle.getDual();
    EXPECT_TRUE(bValid);
    EXPECT_NEAR(center.x(), x + 0.005, 4e-9);
    EXPECT_NEAR(center.y(), x + 0.005, 4e-9);
}

TEST(TriangleDual, ExactlyCollinearCornersAreFlatWhereverTheyLie)
{
    std::mt19937_64 random(3);
    for (double offset : {0.0, 1e6, 1e15, 1e300}) {
        const double step = std::fmax(1.0, offset * 0x1p-50);
        for (int i = 0; i < 200; ++i) {
            const auto small = [&] { return step * static_cast<double>(random() % 100); };
            const double dx = small(), dy = small() + step;
            const Point2 src(offset + small(), offset - small());
            const Point2 mid(src.x() + dx, src.y() + dy);
            const Point2 trg(mid.x() + (mid.x() - src.x()), mid.y() + (mid.y() - src.y()));
            const Corners corners(src, mid, trg), turned(trg, src, mid);
            expectFar(corners.triangle.getDual());
            expectFar(turned.triangle.getDual());
        }
    }
}

TEST(TriangleDual, DirectionOfAFlatTriangleIsThatOfTheNumerators)
{
    // Nx = -4, Ny = 4 for (0,0), (1,1), (2,2).
    const Corners diagonal(Point2(0, 0), Point2(1, 1), Point2(2, 2));
    const Point2 far = diagonal.triangle.getDual().first;
    EXPECT_EQ(far.x(), -0x1p1022);
    EXPECT_EQ(far.y(), 0x1p1022);
    // One numerator is zero and has no exponent of its own.
    for (double scale : {1e-3, 1e-160, 0x1p-1074}) {
        const Corners horizontal(Point2(0, 0), Point2(scale, 0), Point2(2 * scale, 0));
        EXPECT_EQ(horizontal.triangle.getDual().first.x(), 0.0);
        expectFar(horizontal.triangle.getDual());
    }
}

TEST(TriangleDual, CoincidentCorners)
{
    const Corners two(Point2(3, 4), Point2(3, 4), Point2(5, 6));
    expectFar(two.triangle.getDual());
    const Corners all(Point2(3, 4), Point2(3, 4), Point2(3, 4));
    EXPECT_FALSE(all.triangle.getDual().second);
    EXPECT_TRUE(std::isfinite(maxAbsCoord(all.triangle.getDual().first)));
}

TEST(TriangleDual, NonFiniteCenterCountsAsFlat)
{
    const double huge = std::numeric_limits<double>::max();
    const Corners wide(Point2(-huge, -huge), Point2(huge, -huge), Point2(0, huge));
    expectFar(wide.triangle.getDual());
    const Corners large(Point2(0, 0), Point2(1e200, 0), Point2(0, 1e200));
    expectFar(large.triangle.getDual());
    // Not collinear by the smallest possible amount.
    const Corners sliver(Point2(0, 0), Point2(1e154, 1e154), Point2(2e154, std::nextafter(2e154, 0.0)));
    expectFar(sliver.triangle.getDual());
}

TEST(TriangleDual, NearlyFlatTriangle)
{
    // Obtuse: the centre lies beyond the longest edge and is trusted.
    const Corners obtuse(Point2(0, 0), Point2(1, 0), Point2(0.5, 1e-12));
    const auto [center, bValid] = obtuse.triangle.getDual();
    EXPECT_TRUE(bValid);
    EXPECT_NEAR(center.x(), 0.5, 1e-12);
    EXPECT_NEAR(center.y() / -1.25e11, 1.0, 1e-9);

    // Acute and small: the centre lies on the inner side of the longest edge and comes back negated.
    const double leg = 1e-6;
    const Corners acute(Point2(1, 1), Point2(1 + leg, 1), Point2(1 + 0.5 * leg, 1 + 0.9 * leg));
    const auto [negated, bTrusted] = acute.triangle.getDual();
    EXPECT_FALSE(bTrusted);
    EXPECT_NEAR(negated.x(), -(1 + 0.5 * leg), 1e-9);
    EXPECT_NEAR(negated.y(), -1.0, 1e-6);
}

// Squares of such lengths vanish; the centre must not collapse onto corner 0.
TEST(TriangleDual, TinyTriangleKeepsItsCenter)
{
    const double leg = 1e-150;
    const Corners corners(Point2(0, 0), Point2(4 * leg, 0), Point2(leg, leg));
    const auto [center, bValid] = corners.triangle.getDual();
    EXPECT_TRUE(bValid);
    EXPECT_NEAR(center.x() / leg, 2.0, 1e-12);
    EXPECT_NEAR(center.y() / leg, -1.0, 1e-12);
}

TEST(TriangleDual, EquidistantOnRandomTriangles)
{
    std::mt19937_64 random(5);
    const auto unit = [&] { return static_cast<double>(random() >> 11) * 0x1p-53; };
    int numChecked = 0;
    for (int i = 0; i < 1000; ++i) {
        const Corners corners(Point2(unit(), unit()), Point2(unit(), unit()), Point2(unit(), unit()));
        const std::pair<Point2, bool> dual = corners.triangle.getDual();
        if (maxAbsCoord(dual.first) > 100.0)
            continue;
        ++numChecked;
        EXPECT_TRUE(dual.second);
        const auto distance = [&](const Point2& p) {
            return std::hypot(p.x() - dual.first.x(), p.y() - dual.first.y());
        };
        const double radius = distance(corners.aPoints[0]);
        EXPECT_NEAR(distance(corners.aPoints[1]), radius, 1e-9 * (1.0 + radius * radius));
        EXPECT_NEAR(distance(corners.aPoints[2]), radius, 1e-9 * (1.0 + radius * radius));
    }
    EXPECT_GT(numChecked, 900);
}

TEST(Triangle, IndexIsFoundByAddress)
{
    Corners corners(Point2(0, 0), Point2(1, 0), Point2(0, 1));
    Triangle2 neighbor;
    corners.triangle.setOppTriangle(2, &neighbor);
    EXPECT_EQ(corners.triangle.getIntraTriangleIndex(&corners.aPoints[1]), 1);
    EXPECT_EQ(corners.triangle.getIntraTriangleIndex(&neighbor), 2);
    const Triangle2* pNone = nullptr;
    EXPECT_EQ(corners.triangle.getIntraTriangleIndex(pNone), 0);
}

// Runs the call in this process where assertions are off, and in a child that must die where they are on.
template <class Call>
std::string outputOfBrokenCall(Call call)
{
    std::ostringstream captured;
    std::streambuf* pOld = std::cout.rdbuf(captured.rdbuf());
#ifdef NDEBUG
    EXPECT_EQ(call(), 2);
#else
    EXPECT_DEATH(
        {
            std::cout.rdbuf(std::cerr.rdbuf());
            call();
        },
        "Assertion `false' failed");
#endif
    std::cout.rdbuf(pOld);
    return captured.str();
}

TEST(Triangle, MissingCornerIsReported)
{
    Corners corners(Point2(0, 0), Point2(1, 0), Point2(0, 1));
    const Point2 copy(corners.aPoints[1]);
    const std::string output = outputOfBrokenCall([&] { return corners.triangle.getIntraTriangleIndex(&copy); });
#ifdef NDEBUG
    std::ostringstream expected;
    expected << "BUG: Triangle2::getIntraTriangleIndex failed for\n" << copy << "\n" << corners.triangle << "\n";
    EXPECT_EQ(output, expected.str());
#endif
}

TEST(Triangle, MissingNeighborIsReported)
{
    Corners corners(Point2(0, 0), Point2(1, 0), Point2(0, 1)), other(Point2(0, 0), Point2(-1, 0), Point2(0, -1));
    const std::string output =
        outputOfBrokenCall([&] { return corners.triangle.getIntraTriangleIndex(&other.triangle); });
#ifdef NDEBUG
    std::ostringstream expected;
    expected << "Triangle2::getIntraTriangleIndex, pTriangle is not a neighbor of the current triangle\n"
             << "Current triangle: " << corners.triangle << "\npTriangle: " << other.triangle << "\n";
    EXPECT_EQ(output, expected.str());
#endif
}

TEST(Triangle, DebugForm)
{
    Corners corners(Point2(0, 0), Point2(1, 0), Point2(0, 1));
    Triangle2 neighbor;
    corners.triangle.setOppTriangle(1, &neighbor);
    const void *pThis = &corners.triangle, *pNeighbor = &neighbor, *pNone = nullptr;
    std::ostringstream expected, actual;
    expected << "Triangle(" << pThis << "):\n0: " << corners.aPoints[0] << "\t oppTriangle: " << pNone
             << "\n1: " << corners.aPoints[1] << "\t oppTriangle: " << pNeighbor << "\n2: " << corners.aPoints[2]
             << "\t oppTriangle: " << pNone << "\n";
    actual << corners.triangle;
    EXPECT_EQ(actual.str(), expected.str());
}

} // namespace
