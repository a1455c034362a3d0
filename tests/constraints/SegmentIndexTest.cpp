#include "constraints/SegmentIndex.h"
#include "Point2.h"

#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <random>
#include <set>

using namespace ZELK_QUOR2D;

namespace
{

// The index and what it should hold.
class Index : public testing::Test
{
protected:
    ConstraintSegment2* add(std::size_t i, std::size_t j)
    {
        Point2* const p0 = &vVertices[std::min(i, j)];
        Point2* const p1 = &vVertices[std::max(i, j)];
        segments.emplace_back(p0, p1, CIS_CONSTRAINED_DELAUNAY);
        if (mExpected.emplace(std::make_pair(p0, p1), &segments.back()).second)
            index.insert(&segments.back());
        return &segments.back();
    }
    void remove(ConstraintSegment2* pCSeg)
    {
        index.erase(pCSeg);
        const auto it = mExpected.find({pCSeg->getSrc(), pCSeg->getTrg()});
        if (it != mExpected.end() && it->second == pCSeg)
            mExpected.erase(it);
    }
    void check() const
    {
        ASSERT_EQ(index.size(), mExpected.size());
        for (const auto& entry : mExpected) {
            ASSERT_EQ(index.find(entry.first.first, entry.first.second), entry.second);
            ASSERT_EQ(index.find(entry.first.second, entry.first.first), entry.second);
        }
        std::set<const ConstraintSegment2*> sVisited;
        index.forEach([&sVisited](const ConstraintSegment2* pCSeg) { sVisited.insert(pCSeg); });
        ASSERT_EQ(sVisited.size(), mExpected.size());
    }

    std::vector<Point2> vVertices = std::vector<Point2>(3000);
    std::deque<ConstraintSegment2> segments;
    SegmentIndex index;
    std::map<std::pair<Point2*, Point2*>, ConstraintSegment2*> mExpected;
};

} // namespace

// Fault: a vertex with more segments than slots loses some, or keeps what was erased.
TEST_F(Index, HubsAndNeighborsShareSlots)
{
    for (const std::size_t hub : {2999u, 0u, 1500u})
        for (std::size_t i = 0; i < 3000; ++i)
            if (i != hub)
                add(i, hub);
    check();
    for (std::size_t k = 0; k < segments.size(); k += 2)
        remove(&segments[k]);
    check();
}

// Fault: after many changes a segment is looked for in a slot while it stands in the hash, or the other way round.
TEST_F(Index, SegmentsComeAndGo)
{
    std::mt19937 random(7);
    std::vector<ConstraintSegment2*> vAdded;
    for (int step = 0; step < 20000; ++step) {
        const std::size_t i = random() % 12, j = random() % 12;
        if (i == j)
            continue;
        if (random() % 2 == 0)
            vAdded.push_back(add(i, j));
        else if (!vAdded.empty())
            remove(vAdded[random() % vAdded.size()]);
        if (step % 500 == 0)
            check();
    }
    check();
}
