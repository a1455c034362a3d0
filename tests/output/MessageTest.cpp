#include "output/Message.h"
#include "OutputTestSupport.h"
#include "Timer.h"
#include "Version.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iomanip>

using namespace ZELK_QUOR2D;

TEST(MessageTest, ReportsHaveTheirExactText)
{
    CapturedOutput output;
    reportError("Dt2::f()", "broken");
    EXPECT_EQ(output.take(), "\n      [Quor2D-Message] Dt2::f(), ERROR: broken\n\n");
    reportWarning("Dt2::f()", "odd");
    EXPECT_EQ(output.take(), "\n      [Quor2D-Message] Dt2::f(), WARNING: odd\n\n");
}

TEST(MessageTest, InfoCarriesTheTagOnlyWithoutPlace)
{
    CapturedOutput output;
    reportInfo("f()", "x");
    EXPECT_EQ(output.take(), "\n      f(), INFO: x\n\n");
    reportInfo("", "x");
    EXPECT_EQ(output.take(), "\n      [Quor2D-Message] INFO: x\n\n");
}

TEST(MessageTest, TitleIsFramed)
{
    CapturedOutput output;
    printTitle("Zones");
    const std::string line = std::string(71, '*') + "\n";
    EXPECT_EQ(output.take(), "\n\n" + line + line + "               Zones\n" + line + line + "\n\n");
}

TEST(TimerTest, SecondCallStopsAndThirdStartsAgain)
{
    CapturedOutput output;
    EXPECT_EQ(timer("t"), -1.0);
    EXPECT_EQ(output.take(), "Timer [t] start\n");
    EXPECT_EQ(timer("other"), -1.0);
    output.take();
    EXPECT_GE(timer("t"), 0.0);
    std::string text = output.take();
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c); }, '9');
    EXPECT_EQ(text, "Timer [t] stop, elapsed time: 9.999 s\n");
    EXPECT_EQ(timer("t"), -1.0);
    EXPECT_GE(timer("t"), 0.0);
    EXPECT_GE(timer("other"), 0.0);
}

TEST(TimerTest, StopLeavesFixedNotationWithPrecisionSix)
{
    CapturedOutput output;
    std::cout << std::setprecision(12) << std::scientific;
    timer("notation");
    timer("notation");
    output.take();
    std::cout << 0.5;
    EXPECT_EQ(output.take(), "0.500000");
}

TEST(VersionTest, IsTheInterfaceVersion)
{
    EXPECT_EQ(getQuor2DVersion(), "Debug_v1.24_Quor2D_vc12");
}
