#include "OutputTestSupport.h"
#include "Point2.h"
#include "Triangle2.h"
#include "output/ObjText.h"
#include "output/TextWriter.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

std::string toObj(const std::vector<Triangle2*>& vTriangles)
{
    std::ostringstream stream;
    {
        TextWriter writer(stream);
        ObjText(vTriangles).write(writer);
    }
    return stream.str();
}

std::string numberText(double value)
{
    std::string text;
    appendNumber(text, value);
    return text;
}

// The format to match, by definition.
std::string streamText(double value)
{
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << value;
    return stream.str();
}

} // namespace

TEST(ObjTest, SharedVerticesAreNumberedOnceInOrderOfAppearance)
{
    std::array<Point2, 5> aPoints = {Point2(9, 9), Point2(0, 0), Point2(1, 0), Point2(0, 1), Point2(1.25, -0.0)};
    std::array<Triangle2, 2> aTriangles;
    aTriangles[0].setProperties(&aPoints[1], &aPoints[2], &aPoints[3]);
    EXPECT_EQ(toObj({&aTriangles[0]}), "v 0 0 0 \nv 1 0 0 \nv 0 1 0 \nf 1 2 3\n");

    aTriangles[1].setProperties(&aPoints[4], &aPoints[2], &aPoints[1]);
    EXPECT_EQ(toObj({&aTriangles[1], &aTriangles[0]}),
              "v 1.25 -0 0 \nv 1 0 0 \nv 0 0 0 \nv 0 1 0 \nf 1 2 3\nf 3 2 4\n");
}

// Enough vertices in two far blocks for the hash to grow often: a slot lost or met twice gives a wrong number.
TEST(ObjTest, NumbersManyVerticesOfSeveralBlocks)
{
    constexpr std::uint32_t kSize = 50000;
    std::vector<Point2> vFirst(kSize, Point2(1, 0));
    std::vector<Point2> vSecond(kSize, Point2(0, 1));
    Point2 hub(0, 0);
    std::vector<Triangle2> vRecords(kSize);
    std::vector<Triangle2*> vTriangles;
    std::string faces;
    for (std::uint32_t i = 0; i < kSize; ++i) {
        vRecords[i].setProperties(&hub, &vFirst[i], &vSecond[i]);
        vTriangles.push_back(&vRecords[i]);
        faces += "f 1 " + std::to_string(2 * i + 2) + " " + std::to_string(2 * i + 3) + "\n";
    }
    const std::string text = toObj(vTriangles);
    EXPECT_EQ(text.substr(text.find('f')), faces);
}

TEST(NumberTextTest, EqualsTheDefaultStreamFormat)
{
    using Limits = std::numeric_limits<double>;
    for (double value : {0.0,
                         0.1,
                         1.0 / 3,
                         0.00001,
                         0.0001,
                         0.00012345678,
                         9.999995,
                         9.9999949999,
                         99999.95,
                         999999.0,
                         999999.5,
                         999999.49999,
                         1e6,
                         1e5,
                         123456.5,
                         123457.5,
                         1234567.0,
                         1e15,
                         1e16,
                         1e22,
                         1e100,
                         1e-5,
                         9.9999999e-5,
                         0.5e-99,
                         Limits::max(),
                         Limits::min(),
                         Limits::denorm_min(),
                         Limits::epsilon(),
                         Limits::infinity()}) {
        EXPECT_EQ(numberText(value), streamText(value));
        EXPECT_EQ(numberText(-value), streamText(-value));
    }
    std::mt19937_64 random(7);
    for (int i = 0; i < 100000; ++i) {
        const std::uint64_t bits = random();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        ASSERT_EQ(numberText(value), streamText(value));
        // Seven digits that end in 5: ties and near ties of the sixth.
        const double tie =
            static_cast<double>(10 * (bits % 1000000) + 5) / std::pow(10.0, static_cast<int>(bits >> 61));
        ASSERT_EQ(numberText(tie), streamText(tie));
    }
}

TEST(TextWriterTest, FlushesLargeTextsInOrder)
{
    std::ostringstream stream;
    std::string expected;
    {
        CommaLocale comma;
        TextWriter writer(stream);
        for (std::uint32_t i = 0; i < 30000; ++i) {
            writer << "line " << i << ' ' << 0.5 << '\n';
            expected += "line " + std::to_string(i) + " 0.5\n";
        }
    }
    EXPECT_EQ(stream.str(), expected);
}
