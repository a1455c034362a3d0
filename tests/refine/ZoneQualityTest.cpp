#include "tests/refine/RefineTestSupport.h"
#include "tests/support/TemporaryDirectory.h"

#include <cstdio>

using namespace ZELK_QUOR2D;
using namespace ZELK_QUOR2D::test;

namespace
{

class ZoneQuality : public testing::Test
{
protected:
    std::string qualityOf(Region& region, Zone2* pZone, double angle, double maxEdge)
    {
        std::remove((name + ".ps").c_str());
        return outputOf([&] { region.dt.checkZoneQuality(pZone, angle, maxEdge, name, AcceptExperimentalFeature()); });
    }

    std::string page() const { return readFile(name + ".ps"); }

private:
    TemporaryDirectory directory;
    const std::string name = directory.path("quality");
};

bool contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

} // namespace

// Each reason in a scene where it is the only one.
TEST_F(ZoneQuality, NamesTheReasons)
{
    Region flat({Point2(0, 0), Point2(10, 0), Point2(10, 1), Point2(5, 1.01), Point2(0, 1)});
    flat.apply();
    const std::string before = qualityOf(flat, flat.pZone, 25, 2);
    EXPECT_TRUE(contains(before, "3 triangles below 25 degrees, 3 with an edge above 2")) << before;
    EXPECT_TRUE(contains(before, "3 of them: not refined with these bounds")) << before;
    const std::string drawing = page();
    EXPECT_TRUE(contains(drawing, "fill"));

    flat.dt.refine(flat.pZone, 25, 0, kNoLimit, false);
    EXPECT_TRUE(contains(qualityOf(flat, flat.pZone, 25, kNoLimit), "splitting is not allowed"));
    flat.dt.refine(flat.pZone, 25, 6, kNoLimit, true);
    EXPECT_TRUE(contains(qualityOf(flat, flat.pZone, 25, kNoLimit), "edges would get shorter than the minimum"));
    flat.dt.refine(flat.pZone, 25, 0, kNoLimit, true);
    const std::string after = qualityOf(flat, flat.pZone, 25, kNoLimit);
    EXPECT_TRUE(contains(after, ": 0 triangles below 25 degrees")) << after;
    EXPECT_FALSE(contains(after, "of them")) << after;
    EXPECT_FALSE(contains(page(), "fill"));

    Region thin({Point2(0, 0), Point2(1, 0), Point2(0.7, 0.01)});
    thin.apply();
    EXPECT_TRUE(
        contains(qualityOf(thin, thin.pZone, 25, kNoLimit), "1 of them: constraints meet below the angle bound"));

    Region bare(box(-2, -2, -1, -1));
    bare.dt.insert({Point2(0, 0), Point2(20, 0), Point2(10, 1)});
    bare.apply();
    EXPECT_TRUE(contains(qualityOf(bare, bare.dt.createZone(nullptr, ZL_GLOBAL), 25, kNoLimit),
                         "the hull is in the way, without a constraint"));
}

TEST_F(ZoneQuality, RefusesWhatIsNoZone)
{
    Region region(box(0, 0, 1, 1)), other(box(0, 0, 1, 1));
    region.apply();
    other.apply();
    for (Zone2* pZone : {static_cast<Zone2*>(nullptr), other.pZone})
        EXPECT_TRUE(contains(qualityOf(region, pZone, 25, 1), "WARNING: the zone does not belong"));
    EXPECT_TRUE(contains(qualityOf(region, zoneDifference(region.pZone, region.pZone), 25, 1), "the zone is empty"));
}
