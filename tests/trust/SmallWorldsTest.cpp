#include "tests/trust/SmallWorlds.h"

#include <algorithm>
#include <random>

using namespace small_worlds;

namespace
{

// A few orders of every subset: as it is, backwards, and shuffled.
template <class Run>
void forEachSubsetInSomeOrders(double spacing, double origin, int bend, Run run)
{
    std::mt19937 random(9);
    for (unsigned int subset = 0; subset < 1u << kNumPlaces; ++subset) {
        std::vector<Point2> vPoints = latticeSubset(subset, spacing, origin, bend);
        for (int order = 0; order < 4; ++order) {
            if (order == 1)
                std::reverse(vPoints.begin(), vPoints.end());
            else if (order > 1)
                std::shuffle(vPoints.begin(), vPoints.end(), random);
            SCOPED_TRACE(testing::Message() << "subset " << subset << ", order " << order);
            run(vPoints);
            if (testing::Test::HasFatalFailure())
                return;
        }
    }
}

} // namespace

TEST(SmallWorlds, EverySubsetPointByPointAndAway)
{
    CapturedOutput output;
    forEachSubsetInSomeOrders(1.0, 0.0, 0, insertAndRemove);
}

// Offsets at which the lattice is still exact, a lattice that is bent by one unit in the last place, denormals.
TEST(SmallWorlds, EverySubsetOfDisturbedLattices)
{
    CapturedOutput output;
    forEachSubsetInSomeOrders(0.125, 1e15, 0, insertAndRemove);
    forEachSubsetInSomeOrders(1.0 / 3.0, 1.0 / 3.0, 0, insertAndRemove);
    forEachSubsetInSomeOrders(1.0, 0.0, 1, insertAndRemove);
    forEachSubsetInSomeOrders(1.0, 0.0, -1, insertAndRemove);
    forEachSubsetInSomeOrders(0x1p-1074, -0x1p-1074, 0, insertAndRemove);
    forEachSubsetInSomeOrders(0x1p1022, -0x1p1022, 0, insertAndRemove);
}

TEST(SmallWorlds, EverySubsetAsOneBatchOrTwo)
{
    forEachSubsetInSomeOrders(1.0, 0.0, 0, [](const std::vector<Point2>& vPoints) {
        for (std::size_t first = 0; first <= vPoints.size(); ++first) {
            Quor_2D dt;
            const auto middle = vPoints.begin() + static_cast<std::ptrdiff_t>(first);
            dt.insert(std::vector<Point2>(vPoints.begin(), middle));
            ASSERT_TRUE(test::isValidMesh(dt));
            std::vector<Point2*> vHandles;
            std::vector<Point2> vRest(middle, vPoints.end());
            if (first > 0)
                vRest.push_back(vPoints.front()); // a duplicate
            dt.insert(vRest, vHandles);
            ASSERT_TRUE(test::isValidMesh(dt));
            ASSERT_EQ(vHandles.size(), vRest.size());
            for (std::size_t i = 0; i < vRest.size(); ++i)
                ASSERT_EQ(*vHandles[i], vRest[i]);
        }
    });
}

// Where the points and the centres of all cells lie, asked against a search of all triangles.
TEST(SmallWorlds, LocationOfEveryHalfLatticePlace)
{
    forEachSubsetInSomeOrders(1.0, 0.0, 0, [](const std::vector<Point2>& vPoints) {
        Quor_2D dt;
        dt.insert(vPoints);
        std::vector<Triangle2*> vTriangles;
        dt.getTrianglePointers(vTriangles);
        const auto isInside = [](const Triangle2* pT, const Point2& p) {
            return test::orientationSign(*pT->getCorner(0), *pT->getCorner(1), p) >= 0 &&
                   test::orientationSign(*pT->getCorner(1), *pT->getCorner(2), p) >= 0 &&
                   test::orientationSign(*pT->getCorner(2), *pT->getCorner(0), p) >= 0;
        };
        for (int i = -1; i <= 5; ++i) {
            for (int j = -1; j <= 5; ++j) {
                const Point2 p(0.5 * i, 0.5 * j);
                const Triangle2* const pFound = dt.locate(p);
                const bool bAny = std::any_of(vTriangles.begin(), vTriangles.end(),
                                              [&](const Triangle2* pT) { return isInside(pT, p); });
                ASSERT_EQ(pFound != nullptr, bAny) << p.x() << " " << p.y();
                ASSERT_TRUE(!pFound || isInside(pFound, p)) << p.x() << " " << p.y();
            }
        }
    });
}
