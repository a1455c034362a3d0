#include "Visualizer2.h"

#include "OutputTestSupport.h"
#include "Triangle2.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <limits>
#include <vector>

using namespace ZELK_QUOR2D;

namespace
{

const Color kBlack(0, 0, 0, 0.00001, false);
const Color kRed(1, 0, 0, 0.5, false);

std::string header(const std::string& name, const std::string& rangeX, const std::string& rangeY)
{
    return "%!PS-Adobe-1.0\n"
           "\t%%Creator: ZELK PostscriptWriter\n"
           "\t%%Title: " +
           name +
           "\n"
           "\t%%CreationDate: none\n"
           "\t%%DocumentMedia: A4 595 842 0 () ()\n"
           "\t%%Orientation: Portrait\n"
           "\t%%Pages: 1\t%%DocumentFonts: Times-Roman Helvetica\n"
           "\t%%EndComments\n"
           "\t%%BeginProlog\n"
           "\t%%EndProlog\n"
           "\t%%Page: Zelk PostscriptWriter 1\n"
           "0.05\tsetlinewidth\n"
           "\t0\t0\t0\tsetrgbcolor\n"
           "\t/Times-Roman findfont 17 scalefont\n"
           "\tsetfont\n"
           "40\t740\tmoveto\n"
           "\t(" +
           name +
           ")\tshow\n"
           "0.4\t0.4\t0.4\tsetrgbcolor\n"
           "\t/Times-Roman findfont 10 scalefont\n"
           "\tsetfont\n"
           "40\t725\tmoveto\n"
           "(Zelk Quor 2D)\tshow\n"
           "0.0\t0.0\t0.0\tsetrgbcolor\n"
           "\t/Times-Roman findfont 10 scalefont\n"
           "\tsetfont\n"
           "40\t705\tmoveto\n"
           "(x-Range: " +
           rangeX +
           ")\tshow\n"
           "40\t695\tmoveto\n"
           "(y-Range: " +
           rangeY + ")\tshow\n";
}

const char* const kTrailer = "stroke\nshowpage\n%%Trailer\n";

std::size_t count(const std::string& text, const std::string& part)
{
    std::size_t number = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++number;
    return number;
}

class VisualizerTest : public ::testing::Test
{
protected:
    // The page that `fill` draws.
    template <class Fill>
    std::string page(Fill fill, const std::string& name = "page.ps")
    {
        Visualizer2 visualizer(directory.path(name));
        fill(visualizer);
        visualizer.writeFile();
        EXPECT_FALSE(visualizer.is_open());
        return readFile(directory.path(name));
    }

    // The drawing alone, without header and trailer.
    template <class Fill>
    std::string drawing(Fill fill)
    {
        const std::string text = page(fill);
        const std::size_t first = text.find("\tshow\n", text.find("(y-Range")) + 6;
        return text.substr(first, text.size() - first - std::string(kTrailer).size());
    }

    TemporaryDirectory directory;
    CapturedOutput output;
};

} // namespace

TEST_F(VisualizerTest, EmptyPageShowsTheSentinelsOfTheBox)
{
    const std::string name = directory.path("page.ps");
    EXPECT_EQ(page([](Visualizer2&) {}), header(name, "[1.79769e+308 - 2.22507e-308] =-1.79769e+308",
                                                "[1.79769e+308 - 2.22507e-308] =-1.79769e+308") +
                                             kTrailer);
    EXPECT_EQ(output.take(), "Visualizer2:: Writing " + name + "\n");
}

// Kinds in their fixed order whatever the order of insertion, each mapped into the square above (50, 200).
TEST_F(VisualizerTest, DrawsEachKindMappedIntoTheSquare)
{
    std::array<Point2, 3> aCorners = {Point2(0, 0), Point2(4, 0), Point2(0, 2)};
    Triangle2 triangle;
    triangle.setProperties(&aCorners[0], &aCorners[1], &aCorners[2]);

    const std::string text = page([&](Visualizer2& v) {
        v.addObject(Label(Point2(3, 1), "apex", true), kRed);
        v.addObject(Label(Point2(3, 1), "bare", false), kRed);
        v.addObject(triangle, Color(0.25, 0.5, 1, 2, true));
        v.addObject(std::vector<Triangle2*>{&triangle, nullptr}, Color(0.25, 0.5, 1, 2, false));
        v.addObject(Point2(2, 1), kRed);
        v.addObject(Circle2(1, 1, 0.25), kRed);
        v.addObject(Segment2(Point2(-1, -2), Point2(4, 3)), kBlack);
    });
    EXPECT_EQ(text, header(directory.path("page.ps"), "[-1 - 4] =5", "[-2 - 3] =5") +
                        "stroke\n0\t0\t0\tsetrgbcolor\n1e-05\tsetlinewidth\n"
                        "50\t200\tmoveto\n545\t695\tlineto\n"
                        "stroke\n1\t0\t0\tsetrgbcolor\n0.5\tsetlinewidth\n"
                        "297.5\t497\tmoveto\n248\t497\t49.5\t0\t360\tarc\n"
                        "345.5\t495.5\tmoveto\n348.5\t498.5\tlineto\n345.5\t498.5\tmoveto\n348.5\t495.5\tlineto\n"
                        "stroke\n0.25\t0.5\t1\tsetrgbcolor\n2\tsetlinewidth\n"
                        "149\t398\tmoveto\n545\t398\tlineto\n149\t596\tlineto\nclosepath\nfill\n"
                        "stroke\n0.25\t0.5\t1\tsetrgbcolor\n2\tsetlinewidth\n"
                        "149\t398\tmoveto\n545\t398\tlineto\n149\t596\tlineto\nclosepath\nstroke\n"
                        "stroke\n1\t0\t0\tsetrgbcolor\n0.5\tsetlinewidth\n"
                        "/Arial findfont 8 scalefont\n setfont\n446\t497\tmoveto\n(apex)\tshow\n"
                        "444.5\t495.5\tmoveto\n447.5\t498.5\tlineto\n444.5\t498.5\tmoveto\n447.5\t495.5\tlineto\n"
                        "stroke\n"
                        "/Arial findfont 8 scalefont\n setfont\n446\t497\tmoveto\n(bare)\tshow\n"
                        "stroke\n" +
                        kTrailer);
}

TEST_F(VisualizerTest, ThirtyOneObjectsOfAnyKindMakeAPath)
{
    const std::string text = drawing([](Visualizer2& v) {
        for (int i = 0; i < 20; ++i) {
            v.addObject(Segment2(Point2(0, 0), Point2(1, 1)), kBlack);
            v.addObject(Point2(1, 0), kBlack);
        }
        for (int i = 0; i < 22; ++i)
            v.addObject(Point2(1, 0), kRed); // the switch does not restart the count
    });
    const std::string segment = "50\t200\tmoveto\n545\t695\tlineto\n";
    const std::string cross =
        "543.5\t198.5\tmoveto\n546.5\t201.5\tlineto\n543.5\t201.5\tmoveto\n546.5\t198.5\tlineto\n";
    std::string expected = "stroke\n0\t0\t0\tsetrgbcolor\n1e-05\tsetlinewidth\n";
    for (int i = 1; i <= 62; ++i) {
        if (i == 41)
            expected += "stroke\n1\t0\t0\tsetrgbcolor\n0.5\tsetlinewidth\n";
        expected += i <= 20 ? segment : cross;
        if (i == 31 || i == 62)
            expected += "stroke\n";
    }
    EXPECT_EQ(text, expected);
}

TEST_F(VisualizerTest, EveryFiftiethCircleOfTheProcessStrokes)
{
    const auto draw25Circles = [](Visualizer2& v) {
        for (int i = 0; i < 25; ++i)
            v.addObject(Circle2(0, 0, 1), kBlack);
    };
    std::size_t numStrokes = 0;
    for (int i = 0; i < 4; ++i)
        numStrokes += count(drawing(draw25Circles), "stroke\n");
    EXPECT_EQ(numStrokes, 4u + 2u); // four colour switches, two of a hundred circles
}

TEST_F(VisualizerTest, StringsAreEscapedOnlyWhereTheyMustBe)
{
    const auto label = [this](const std::string& text) {
        const std::string commands =
            drawing([&](Visualizer2& v) { v.addObject(Label(Point2(0, 0), text, false), kBlack); });
        const std::size_t first = commands.find("moveto\n") + 7;
        return commands.substr(first, commands.find("\tshow\n") - first);
    };
    EXPECT_EQ(label("f(x) (y(z))"), "(f(x) (y(z)))");
    EXPECT_EQ(label("Zürich"), "(Zürich)");
    EXPECT_EQ(label(")("), "(\\)\\()");
    EXPECT_EQ(label("(()"), "(\\(\\(\\))");
    EXPECT_EQ(label("a\\(b)"), "(a\\\\\\(b\\))");

    const std::string text = page([](Visualizer2&) {}, "a) b\nc.ps");
    EXPECT_NE(text.find("\t%%Title: " + directory.path("a) b c.ps") + "\n\t%%CreationDate"), std::string::npos);
    EXPECT_NE(text.find("\t(" + directory.path("a\\) b\nc.ps") + ")\tshow\n"), std::string::npos);
}

TEST_F(VisualizerTest, ABoxWithoutExtentMapsToItsCorner)
{
    EXPECT_EQ(drawing([](Visualizer2& v) { v.addObject(Segment2(Point2(7, 7), Point2(7, 7)), kRed); }),
              "stroke\n1\t0\t0\tsetrgbcolor\n0.5\tsetlinewidth\n50\t200\tmoveto\n50\t200\tlineto\n");
}

// Differences of the largest doubles overflow, quotients by the smallest do.
TEST_F(VisualizerTest, ExtremeBoxesFillTheSquare)
{
    for (double size : {std::numeric_limits<double>::max(), 1e305, 4 * std::numeric_limits<double>::denorm_min()})
        EXPECT_EQ(drawing([&](Visualizer2& v) {
                      v.addObject(Segment2(Point2(-size, -size), Point2(size, size)), kRed);
                      v.addObject(Point2(0, size / 2), kRed);
                  }),
                  "stroke\n1\t0\t0\tsetrgbcolor\n0.5\tsetlinewidth\n50\t200\tmoveto\n545\t695\tlineto\n"
                  "296\t569.75\tmoveto\n299\t572.75\tlineto\n296\t572.75\tmoveto\n299\t569.75\tlineto\n")
            << size;
}

TEST_F(VisualizerTest, ObjectsAndColorsThatAreNotFiniteLeaveThePageValid)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    std::array<Point2, 3> aCorners = {Point2(0, 0), Point2(inf, 0), Point2(0, 1)};
    Triangle2 triangle;
    triangle.setProperties(&aCorners[0], &aCorners[1], &aCorners[2]);
    EXPECT_EQ(drawing([&](Visualizer2& v) {
                  v.addObject(Segment2(Point2(0, 0), Point2(nan, 1)), kRed);
                  v.addObject(Segment2(Point2(0, -inf), Point2(0, 1)), kRed);
                  v.addObject(Circle2(0, 0, -1), kRed);
                  v.addObject(Circle2(0, 0, inf), kRed);
                  v.addObject(Point2(inf, 0), kRed);
                  v.addObject(triangle, kRed);
                  v.addObject(Triangle2(), kRed); // no corners
                  v.addObject(Label(Point2(0, nan), "x", true), kRed);
                  v.addObject(Segment2(Point2(0, 0), Point2(1, 1)), Color(nan, inf, 0, -inf, false));
              }),
              "stroke\n0\t0\t0\tsetrgbcolor\n0\tsetlinewidth\n50\t200\tmoveto\n545\t695\tlineto\n");
}

TEST_F(VisualizerTest, NumbersFollowNeitherLocaleNorStreamState)
{
    const auto fill = [](Visualizer2& v) { v.addObject(Segment2(Point2(-1234.5678, 0), Point2(0, 1)), kBlack); };
    const std::string expected = page(fill);
    EXPECT_NE(expected.find("(x-Range: [-1234.57 - 0] =1234.57)"), std::string::npos);

    CommaLocale comma;
    std::cout << std::fixed << std::setprecision(2);
    EXPECT_EQ(page(fill), expected);
    EXPECT_EQ(page([&](Visualizer2& v) {
                  v.imbue(std::locale());
                  v << std::scientific << std::showpos << std::setw(40);
                  fill(v);
              }),
              expected);
}

// The header of a second page sets its colour anew, so the drawing has to as well.
TEST_F(VisualizerTest, ASecondPageEqualsTheFirst)
{
    Visualizer2 visualizer(directory.path("page.ps"));
    for (int i = 0; i < 20; ++i)
        visualizer.addObject(Point2(i, 0), kRed);
    visualizer.writeFile();
    visualizer.open(directory.path("second.ps"));
    visualizer.writeFile();
    EXPECT_EQ(readFile(directory.path("second.ps")), readFile(directory.path("page.ps")));
}

TEST_F(VisualizerTest, AFileThatCannotBeOpenedIsSilent)
{
    const std::string name = directory.path("missing/page.ps");
    Visualizer2 visualizer(name);
    EXPECT_FALSE(visualizer.good());
    visualizer.addObject(Point2(0, 0), kBlack);
    visualizer.writeFile();
    EXPECT_EQ(output.take(), "Visualizer2:: Writing " + name + "\n");
}

namespace
{

// A page as a picture of one pixel per page unit, 255 = white.
struct Picture {
    int width = 0;
    int height = 0;
    std::string pixels;

    bool isDark(int x, int y) const // from the lower left corner
    {
        return static_cast<unsigned char>(pixels.at(static_cast<std::size_t>((height - 1 - y) * width + x))) < 128;
    }
};

class GhostscriptTest : public VisualizerTest
{
protected:
    void SetUp() override
    {
        if (std::system("gs --version >/dev/null 2>&1") != 0)
            GTEST_SKIP() << "Ghostscript is not installed";
    }

    // Runs the device over page.ps; an error of the page is what Ghostscript says about it.
    std::string run(const std::string& device)
    {
        const std::string result = directory.path("result");
        const std::string log = directory.path("log");
        const std::string command = "cd '" + directory.path() + "' && gs -q -dSAFER -dBATCH -dNOPAUSE -g595x842 -r72 " +
                                    "-sDEVICE=" + device + " -sOutputFile=result page.ps >log 2>&1";
        EXPECT_EQ(std::system(command.c_str()), 0) << readFile(log);
        EXPECT_EQ(readFile(log).find("Error"), std::string::npos) << readFile(log);
        return readFile(result);
    }

    Picture render()
    {
        std::istringstream file(run("pgmraw"));
        std::string line;
        Picture picture;
        std::getline(file, line);
        EXPECT_EQ(line, "P5");
        while (file.peek() == '#')
            std::getline(file, line);
        int depth = 0;
        file >> picture.width >> picture.height >> depth;
        file.get();
        picture.pixels.assign(std::istreambuf_iterator<char>(file), {});
        EXPECT_EQ(picture.pixels.size(), std::size_t{595} * 842);
        return picture;
    }
};

} // namespace

TEST_F(GhostscriptTest, TheDrawingFillsItsPlaceOnThePage)
{
    std::array<Point2, 3> aCorners = {Point2(10, 10), Point2(30, 10), Point2(10, 30)};
    Triangle2 triangle;
    triangle.setProperties(&aCorners[0], &aCorners[1], &aCorners[2]);
    page([&](Visualizer2& v) { v.addObject(triangle, Color(0, 0, 0, 0.1, true)); });

    const Picture picture = render();
    int numDark = 0;
    for (int y = 195; y < 690; ++y)
        for (int x = 0; x < 595; ++x)
            numDark += picture.isDark(x, y);
    EXPECT_NEAR(numDark, 495 * 495 / 2, 2000);
    EXPECT_TRUE(picture.isDark(52, 202) && picture.isDark(540, 202) && picture.isDark(52, 690));
    EXPECT_FALSE(picture.isDark(540, 690) || picture.isDark(47, 300) || picture.isDark(300, 197));

    int numTitleDark = 0;
    for (int x = 40; x < 300; ++x)
        for (int y = 735; y < 755; ++y)
            numTitleDark += picture.isDark(x, y);
    EXPECT_GT(numTitleDark, 50);
}

TEST_F(GhostscriptTest, EveryPageRendersWithoutError)
{
    page([](Visualizer2&) {});
    render();
    page([](Visualizer2& v) { v.addObject(Point2(3, 3), kBlack); });
    render();
    page([](Visualizer2& v) {
        for (int i = 0; i < 200; ++i) {
            const double size = std::pow(10.0, 3 * (i % 100) - 290);
            v.addObject(Segment2(Point2(size, 0), Point2(-size, size)), i % 3 ? kRed : kBlack);
            v.addObject(Circle2(size, size, size), Color(0.5, 0, 0, size, false));
            v.addObject(Label(Point2(size, 1), "(\n\\" + std::string(1, '\0') + "\xff)", true), kRed);
        }
    });
    render();
}

TEST_F(GhostscriptTest, PrintedTextEqualsTheName)
{
    const std::vector<std::string> vNames = {"plain(x)", "open(", ")close", "back\\slash", "n\\n(tab\\t"};
    page([&](Visualizer2& v) {
        for (std::size_t i = 0; i < vNames.size(); ++i)
            v.addObject(Label(Point2(0, static_cast<double>(i)), vNames[i], false), kBlack);
    });
    const std::string text = run("txtwrite");
    for (const std::string& name : vNames)
        EXPECT_NE(text.find(name), std::string::npos) << name << " in\n" << text;
}
