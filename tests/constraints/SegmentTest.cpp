#include "ConstraintSegment2.h"
#include "Point2.h"
#include "tests/constraints/Scene.h"

#include <limits>
#include <memory>
#include <sstream>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

// Points in the order of their addresses, and segments that no triangulation owns.
class SegmentTest : public ::testing::Test
{
protected:
    ConstraintSegment2* make(int i, int j)
    {
        vOwned.push_back(std::make_unique<ConstraintSegment2>(&aPoints[i], &aPoints[j], CIS_CONSTRAINED_DELAUNAY));
        return vOwned.back().get();
    }

    // Splits, and takes the children over.
    std::pair<ConstraintSegment2*, ConstraintSegment2*> split(ConstraintSegment2* pCSeg, int i)
    {
        EXPECT_TRUE(pCSeg->split(&aPoints[i]));
        ConstraintSegment2 *pCSeg0 = nullptr, *pCSeg1 = nullptr;
        Point2* pSplit = nullptr;
        pCSeg->getChildrenAndSplitPoint(pCSeg0, pCSeg1, pSplit);
        EXPECT_EQ(pSplit, &aPoints[i]);
        vOwned.emplace_back(pCSeg0);
        vOwned.emplace_back(pCSeg1);
        return {pCSeg0, pCSeg1};
    }

    void expectEnds(const ConstraintSegment2* pCSeg, int i, int j)
    {
        EXPECT_EQ(pCSeg->getSrc(), &aPoints[i]);
        EXPECT_EQ(pCSeg->getTrg(), &aPoints[j]);
    }

    Point2 aPoints[6];
    std::vector<std::unique_ptr<ConstraintSegment2>> vOwned;
};

} // namespace

TEST_F(SegmentTest, ChildrenKeepTheAddressOrderWhereverTheSplitPointLies)
{
    for (const int split : {0, 3, 5}) {
        ConstraintSegment2* const pCSeg = make(2, 4);
        const auto children = this->split(pCSeg, split);
        EXPECT_FALSE(pCSeg->isAlive());
        EXPECT_TRUE(children.first->isAlive() && children.second->isAlive());
        expectEnds(children.first, std::min(2, split), std::max(2, split));
        expectEnds(children.second, std::min(4, split), std::max(4, split));
        EXPECT_EQ(children.first->getCIS(), CIS_CONSTRAINED_DELAUNAY);
        EXPECT_EQ(children.first->getNumberOfOwners(), 0u);
        EXPECT_EQ(children.first->getAdjacentArea(), std::numeric_limits<double>::max());
    }
}

TEST_F(SegmentTest, LeavesComeDepthFirstAndAreAppended)
{
    ConstraintSegment2* const pCSeg = make(0, 4);
    const auto children = split(pCSeg, 2);
    const auto grandchildren = split(children.second, 3);
    std::vector<ConstraintSegment2*> vLeaves(1, pCSeg);
    pCSeg->getChildrenRec(vLeaves);
    EXPECT_EQ(vLeaves,
              (std::vector<ConstraintSegment2*>{pCSeg, children.first, grandchildren.first, grandchildren.second}));
}

TEST_F(SegmentTest, AliveSegmentHasNoChildrenToReport)
{
    ConstraintSegment2* const pCSeg = make(0, 1);
    ConstraintSegment2 *pCSeg0 = pCSeg, *pCSeg1 = pCSeg;
    Point2* pSplit = &aPoints[5];
    CapturedOutput output;
    pCSeg->getChildrenAndSplitPoint(pCSeg0, pCSeg1, pSplit);
    EXPECT_EQ(output.stop(), "\n      [Quor2D-Message] ConstraintSegment2::getChildrenAndSplitPoint(), WARNING: *this "
                             "is still alive!\n\n");
    EXPECT_TRUE(pCSeg0 == pCSeg && pCSeg1 == pCSeg && pSplit == &aPoints[5]);
}

TEST_F(SegmentTest, NullOwnersAndSplitsAtAnEndAreRefused)
{
    ConstraintSegment2* const pCSeg = make(0, 1);
    pCSeg->addOwner(nullptr);
    EXPECT_EQ(pCSeg->getNumberOfOwners(), 0u);
#ifdef NDEBUG
    std::ostringstream expected;
    expected << "\n      [Quor2D-Message] ConstraintSegment2::split, WARNING: Trying to split a Constraint segment at "
                "one of its endpoints\n\np0="
             << static_cast<const void*>(&aPoints[0]) << "\np1=" << static_cast<const void*>(&aPoints[1])
             << "\npSplit=" << static_cast<const void*>(&aPoints[1]) << "\n";
    CapturedOutput output;
    EXPECT_FALSE(pCSeg->split(&aPoints[1]));
    EXPECT_EQ(output.stop(), expected.str());
    EXPECT_FALSE(pCSeg->splitAndRemovePrev(nullptr));
    EXPECT_TRUE(pCSeg->isAlive());
#else
    EXPECT_DEATH(pCSeg->split(&aPoints[1]), "p0!=pSplit && p1!=pSplit");
#endif
}

TEST_F(SegmentTest, OrderAndText)
{
    EXPECT_TRUE(*make(0, 3) < *make(1, 2));
    EXPECT_TRUE(*make(0, 2) < *make(0, 3));
    EXPECT_FALSE(*make(0, 2) < *make(0, 2));
    std::ostringstream text, expected;
    text << *make(0, 2);
    expected << "ConstraintSegment2: (" << static_cast<const void*>(&aPoints[0]) << ","
             << static_cast<const void*>(&aPoints[2]) << ")";
    EXPECT_EQ(text.str(), expected.str());
}

// Recursion would need a stack as deep as the tree.
TEST_F(SegmentTest, DeepTreeDoesNotExhaustTheStack)
{
    constexpr std::size_t kDepth = 300000;
    std::vector<Point2> vPoints(kDepth + 2);
    ConstraintSegment2* pLast = make(0, 1);
    vOwned.push_back(std::make_unique<ConstraintSegment2>(&vPoints.front(), &vPoints.back(), CIS_CONFORMING_DELAUNAY));
    ConstraintSegment2* const pRoot = pLast = vOwned.back().get();
    for (std::size_t i = 1; i <= kDepth; ++i) {
        ASSERT_TRUE(pLast->split(&vPoints[i]));
        ConstraintSegment2 *pCSeg0 = nullptr, *pCSeg1 = nullptr;
        Point2* pSplit = nullptr;
        pLast->getChildrenAndSplitPoint(pCSeg0, pCSeg1, pSplit);
        vOwned.emplace_back(pCSeg0);
        vOwned.emplace_back(pCSeg1);
        pLast = pCSeg1;
    }
    EXPECT_EQ(leavesOf(pRoot).size(), kDepth + 1);
}
