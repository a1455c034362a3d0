#include "Circle2.h"
#include "Color.h"
#include "Point2.h"
#include "Segment2.h"
#include "Triangle2.h"
#include "Vector2.h"

#include <gtest/gtest.h>

#include <iostream>
#include <limits>
#include <sstream>

using namespace ZELK_QUOR2D;

namespace
{

template <class T>
std::string textOf(const T& value)
{
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

std::string addressOf(const void* pObject)
{
    std::ostringstream stream;
    stream << pObject;
    return stream.str();
}

TEST(Point, UnsetPointSortsFirst)
{
    const Point2 unset, other;
    EXPECT_EQ(unset.x(), -std::numeric_limits<double>::max());
    EXPECT_EQ(unset.getCustomIndex(), -1);
    EXPECT_TRUE(unset == other);
    EXPECT_TRUE(unset < Point2(-1e308, -1e308));
}

TEST(Point, OrderIsLexicographic)
{
    EXPECT_TRUE(Point2(1, 2) < Point2(1, 3));
    EXPECT_FALSE(Point2(1, 3) < Point2(1, 2));
    EXPECT_FALSE(Point2(1, 2) < Point2(1, 2));
    EXPECT_TRUE(Point2(0, 9) < Point2(1, 2));
    EXPECT_FALSE(Point2(1, 2) < Point2(0, 9));
    EXPECT_TRUE(Point2(-0.0, 0.0) == Point2(0.0, -0.0));
    const double kNaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(Point2(kNaN, 0) != Point2(kNaN, 0));
}

// A copy that kept the triangle would let a caller's point pass for a vertex.
TEST(Point, CopiesAreDetached)
{
    Triangle2 triangle;
    Point2 vertex(1, 2), target(3, 4);
    vertex.setIncidentTriangle(&triangle);
    vertex.setCustomIndex(7);
    const Point2 copy(vertex);
    EXPECT_EQ(copy.getIncidentTriangle(), nullptr);
    EXPECT_EQ(copy.getCustomIndex(), 7);
    EXPECT_TRUE(copy == vertex);

    Triangle2 other;
    target.setIncidentTriangle(&other);
    target = vertex;
    EXPECT_EQ(target.getIncidentTriangle(), &other);
    EXPECT_EQ(target.getCustomIndex(), 7);
    EXPECT_TRUE(target == vertex);
}

TEST(Point, RecordSizesAreInterface)
{
    if (sizeof(void*) == 8) {
        EXPECT_EQ(sizeof(Point2), 32u);
        EXPECT_EQ(sizeof(Triangle2), 56u);
    }
}

TEST(Vector, NormalizeWarnsAboutNoLength)
{
    EXPECT_DOUBLE_EQ(Vector2(3, 4).length(), 5.0);
    EXPECT_EQ(Vector2(3, 4) * Vector2(-4, 3), 0.0);
    std::ostringstream captured;
    std::streambuf* pOld = std::cout.rdbuf(captured.rdbuf());
    const Vector2 unit = normalize(Vector2(3, 4));
    EXPECT_EQ(captured.str(), "");
    const Vector2 null = normalize(Vector2(0, 0));
    const Vector2 nan = normalize(Vector2(std::numeric_limits<double>::quiet_NaN(), 1));
    std::cout.rdbuf(pOld);
    EXPECT_EQ(unit.x(), 0.6);
    EXPECT_EQ(unit.y(), 0.8);
    EXPECT_EQ(null.x(), 0.0);
    EXPECT_EQ(nan.y(), 0.0);
    const std::string warning = "warning: normalize(const Vector2& other), Null length vector!\n";
    EXPECT_EQ(captured.str(), warning + warning);
}

TEST(ValueTypes, TextForms)
{
    Point2 p(1.5, -2);
    EXPECT_EQ(textOf(p), "Point2 (" + addressOf(&p) + ",-1): 1.5, -2");
    p.setCustomIndex(42);
    EXPECT_EQ(textOf(p), "Point2 (" + addressOf(&p) + ",42): 1.5, -2");
    EXPECT_EQ(textOf(Vector2(1, 2.5)), "Vector2: 1, 2.5");
    const std::string circle = textOf(Circle2(p, 4));
    EXPECT_EQ(circle.substr(0, 17), "Circle2: Point2 (");
    EXPECT_NE(circle.find(",42): 1.5, -2, r=2"), std::string::npos);
    const std::string segment = textOf(Segment2(p, Point2(3, 4)));
    EXPECT_EQ(segment.substr(0, 18), "Segment2: Point2 (");
    EXPECT_NE(segment.find(",42): 1.5, -2,Point2 ("), std::string::npos);
    EXPECT_EQ(segment.substr(segment.size() - 10), ",-1): 3, 4");
}

TEST(ValueTypes, ColorsCompareEveryField)
{
    const Color color(0.1, 0.2, 0.3, 0.4, true);
    EXPECT_EQ(color.r, 0.1f);
    EXPECT_TRUE(color == Color(0.1, 0.2, 0.3, 0.4, true));
    EXPECT_TRUE(color == Color(0.1 + 1e-12, 0.2, 0.3, 0.4, true)) << "components are single precision";
    for (const Color& other :
         {Color(0.9, 0.2, 0.3, 0.4, true), Color(0.1, 0.9, 0.3, 0.4, true), Color(0.1, 0.2, 0.9, 0.4, true),
          Color(0.1, 0.2, 0.3, 0.9, true), Color(0.1, 0.2, 0.3, 0.4, false)})
        EXPECT_TRUE(color != other);
}

} // namespace
