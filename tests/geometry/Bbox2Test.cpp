#include "Bbox2.h"

#include "predicates/PredicateTest.h"

#include <gtest/gtest.h>

#include <limits>

using namespace ZELK_QUOR2D;

namespace
{

void expectBox(const Bbox2& box, double minX, double minY, double maxX, double maxY)
{
    EXPECT_EQ(box.get_minX(), minX);
    EXPECT_EQ(box.get_minY(), minY);
    EXPECT_EQ(box.get_maxX(), maxX);
    EXPECT_EQ(box.get_maxY(), maxY);
}

const double kEmptyMin = std::numeric_limits<double>::max();
const double kEmptyMax = std::numeric_limits<double>::min();

TEST(Bbox, FirstPointReplacesTheEmptyBox)
{
    Bbox2 box;
    EXPECT_FALSE(box.isValid());
    expectBox(box, kEmptyMin, kEmptyMin, kEmptyMax, kEmptyMax);
    EXPECT_TRUE(box.add(Point2(-1, -2)));
    EXPECT_TRUE(box.isValid());
    expectBox(box, -1, -2, -1, -2);
    EXPECT_FALSE(box.add(Point2(-1, -2)));
    EXPECT_TRUE(box.add(Point2(-3, 5)));
    expectBox(box, -3, -2, -1, 5);
}

TEST(Bbox, RangeForm)
{
    const std::vector<Point2> vPoints = {Point2(-1, -2), Point2(-3, -4)};
    Bbox2 box;
    EXPECT_FALSE(box.add(vPoints.begin(), vPoints.begin()));
    EXPECT_FALSE(box.isValid());
    EXPECT_TRUE(box.add(vPoints.begin(), vPoints.end()));
    expectBox(box, -3, -4, -1, -2);
    EXPECT_FALSE(box.add(vPoints.begin(), vPoints.end()));
    expectBox(Bbox2(vPoints.begin(), vPoints.end()), -3, -4, -1, -2);
}

// The array form merges from the start values of the empty box.
TEST(Bbox, ArrayFormKeepsTheEmptyMaximum)
{
    double aCoords[] = {-1, -2, -3, -4};
    Bbox2 box;
    EXPECT_FALSE(box.add(aCoords, 0));
    EXPECT_FALSE(box.isValid());
    EXPECT_TRUE(box.add(aCoords, 4));
    EXPECT_TRUE(box.isValid());
    expectBox(box, -3, -4, kEmptyMax, kEmptyMax);
    EXPECT_FALSE(box.add(aCoords, 4));
    double aPositive[] = {5, 6};
    Bbox2 other;
    EXPECT_TRUE(other.add(aPositive, 2));
    expectBox(other, 5, 6, 5, 6);
    // Marked as valid: a later point is merged, it does not replace the box.
    EXPECT_TRUE(other.add(Point2(0, 0)));
    expectBox(other, 0, 0, 5, 6);
}

TEST(Bbox, SumChangesTheLeftOperand)
{
    Bbox2 left, right;
    left.add(Point2(0, 0));
    right.add(Point2(2, -3));
    const Bbox2 sum = left + right;
    expectBox(sum, 0, -3, 2, 0);
    expectBox(left, 0, -3, 2, 0);
    expectBox(right, 2, -3, 2, -3);
    Bbox2 empty;
    EXPECT_TRUE((empty + right).isValid());
}

TEST(Bbox, DoublingTellsThePredicatesTheRange)
{
    PredicateTest predicates;
    Bbox2 box(&predicates);
    box.add(Point2(0, 0));
    box.add(Point2(2, 4));
    box.doubleTheBox();
    expectBox(box, -1, -2, 3, 6);
    EXPECT_EQ(predicates.maxAbsCoord, 6.0);
    EXPECT_EQ(predicates.staticBound, 36.0 * 2.6645352591003757e-15);

    Bbox2 negative(&predicates);
    negative.add(Point2(-10, -4));
    negative.add(Point2(-8, -3));
    negative.doubleTheBox();
    EXPECT_EQ(predicates.maxAbsCoord, 11.0);
}

TEST(Bbox, Extents)
{
    Bbox2 box;
    box.add(Point2(1, -7));
    box.add(Point2(4, -5));
    EXPECT_EQ(box.getMinCoord(), -7.0);
    EXPECT_EQ(box.getMaxCoord(), 4.0);
    EXPECT_EQ(box.getRangeX(), 3.0);
    EXPECT_EQ(box.getRangeY(), 2.0);
    EXPECT_EQ(box.getMaxRange(), 3.0);
    EXPECT_TRUE(box.getMinPoint() == Point2(1, -7));
    EXPECT_TRUE(box.getMaxPoint() == Point2(4, -5));
}

} // namespace
