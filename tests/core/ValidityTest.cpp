#include "Quor_2D.h"
#include "core/Dt2.h"
#include "tests/output/OutputTestSupport.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

const std::string kStart = "CheckValidity has been started, name=mesh\n";

std::string errorLine(const std::string& message)
{
    return "\n      [Quor2D-Message] Quor_2D::CheckValidity(mesh), ERROR: " + message + "\n\n";
}

std::string warningLine(int numPoints)
{
    return "\n      [Quor2D-Message] checkValidity(mesh), WARNING: not fulldimensional yet (empty or all points "
           "collinear), number of points: " +
           std::to_string(numPoints) + ". Returning true\n\n";
}

template <class Item>
std::string textOf(const Item* pItem)
{
    std::ostringstream text;
    text << *pItem;
    return text.str();
}

template <class Triangulation>
std::string outputOfCheck(Triangulation& dt, bool bCheckEmptyCircle, bool bExpected)
{
    CapturedOutput output;
    EXPECT_EQ(dt.checkValidity(bCheckEmptyCircle, "mesh"), bExpected);
    return output.take();
}

// Two triangles over a common edge.
class TwoTriangles : public ::testing::Test
{
protected:
    TwoTriangles() : dt(4)
    {
        for (const Point2& p : {Point2(0, 0), Point2(4, -1), Point2(4, 1), Point2(9, 0)})
            dt.insert(p);
        dt.getTrianglePointers(vTriangles);
        for (int i = 0; i < 3; ++i)
            if (vTriangles[0]->getOppositeTriangle(i))
                common = i;
    }

    // The reports name the triangle that comes first.
    std::string bothTriangles() const { return textOf(vTriangles[0]) + textOf(vTriangles[1]); }

    Dt2 dt;
    std::vector<Triangle2*> vTriangles;
    int common = -1;
};

} // namespace

TEST(Validity, WithoutTriangles)
{
    Quor_2D dt;
    EXPECT_EQ(outputOfCheck(dt, true, true), kStart + warningLine(0));
    dt.insert(Point2(0, 0));
    dt.insert(Point2(1, 0));
    EXPECT_EQ(outputOfCheck(dt, false, true), kStart + warningLine(2));
    Point2* const pApex = dt.insert(Point2(0, 1));
    dt.remove(pApex);
    EXPECT_TRUE(dt.is2D());
    EXPECT_EQ(outputOfCheck(dt, true, true), kStart + warningLine(2)) << "emptied by removal";
}

// Every square of a grid has two Delaunay diagonals; the rule for rectangles would call both wrong.
TEST(Validity, GridsAreValid)
{
    Quor_2D dt;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            dt.insert(Point2(0.1 * x, 0.1 * y));
    const std::string expected = kStart + "\n      Quor_2D::CheckValidity(mesh), INFO: Valid triangulation\n\n";
    EXPECT_EQ(outputOfCheck(dt, true, true), expected);
    EXPECT_EQ(outputOfCheck(dt, false, true), expected);
}

TEST_F(TwoTriangles, RepeatedCorner)
{
    vTriangles[0]->setVertexPointer(1, vTriangles[0]->getCorner(2));
    EXPECT_EQ(outputOfCheck(dt, true, false), kStart + errorLine("Less than three different neighbors"));
    vTriangles[0]->setVertexPointer(1, nullptr);
    EXPECT_EQ(outputOfCheck(dt, true, false), kStart + errorLine("Less than three different neighbors"));
}

TEST_F(TwoTriangles, NeighborThatDoesNotLinkBack)
{
    Triangle2* const pN = vTriangles[1];
    pN->setOppTriangle(pN->getIntraTriangleIndex(vTriangles[0]), nullptr);
    EXPECT_EQ(outputOfCheck(dt, true, false), kStart + errorLine("Inconsistant neighborships:") + bothTriangles());
}

TEST_F(TwoTriangles, DeadNeighborIsReportedNotRead)
{
    Triangle2 dead;
    vTriangles[0]->setOppTriangle(common, &dead);
    std::ostringstream address;
    address << "Triangle(" << static_cast<const void*>(&dead) << ")\n";
    EXPECT_EQ(outputOfCheck(dt, true, false),
              kStart + errorLine("Inconsistant neighborships:") + textOf(vTriangles[0]) + address.str());
}

TEST_F(TwoTriangles, NeighborAcrossTheWrongEdge)
{
    Triangle2* const pN = vTriangles[1];
    const int j = pN->getIntraTriangleIndex(vTriangles[0]);
    pN->setOppTriangle(j, nullptr);
    pN->setOppTriangle((j + 1) % 3, vTriangles[0]);
    EXPECT_EQ(outputOfCheck(dt, true, false),
              kStart + errorLine("Neighbor found but inconsistent intra triangle indices:") + bothTriangles());
}

TEST_F(TwoTriangles, CircleThatIsNotEmpty)
{
    dt.flipEdge(vTriangles[0], common);
    Triangle2* const pN = vTriangles[1];
    const Point2* const pInside = pN->getCorner(pN->getIntraTriangleIndex(vTriangles[0]));
    EXPECT_EQ(outputOfCheck(dt, true, false),
              kStart + errorLine("Sphere inclusion test failed ") + textOf(vTriangles[0]) + textOf(pInside) + "\n");
    const std::string text = outputOfCheck(dt, false, true);
    EXPECT_EQ(text, kStart + "\n      Quor_2D::CheckValidity(mesh), INFO: Valid triangulation\n\n")
        << "circles were not asked for";
}
