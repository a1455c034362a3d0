#include "Visualizer2.h"

#include "Triangle2.h"
#include "core/Guarded.h"
#include "output/TextWriter.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <locale>

namespace ZELK_QUOR2D
{

namespace
{

constexpr double kSquareSize = 495.0; // page units
constexpr double kSquareLeft = 50.0;
constexpr double kSquareBottom = 200.0;
constexpr double kCrossHalfSize = 1.5;

// A path is stroked when it holds more objects than this: interpreters are slow on long paths and may limit them.
constexpr int kMaxObjectsPerPath = 30;
constexpr std::uint64_t kCirclesPerStroke = 50;

// Differs from every colour in use, so that the first object switches.
Color noColor()
{
    return Color(-1.0, -1.0, 1.0, -1.0, false);
}

std::atomic<std::uint64_t> numCirclesDrawn{0};

bool isFinite(const Point2& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

// Holds for a name as it stands between the parentheses of a PostScript string.
bool isPlainStringText(const std::string& text)
{
    int depth = 0;
    for (const char c : text) {
        if (c == '\\' || (c == ')' && depth == 0))
            return false;
        depth += (c == '(') - (c == ')');
    }
    return depth == 0;
}

std::string escapeString(const std::string& text)
{
    if (isPlainStringText(text))
        return text;
    std::string escaped;
    for (const char c : text) {
        if (c == '(' || c == ')' || c == '\\')
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

// Interpreters know no "nan" and "inf".
double toColorValue(float value)
{
    return std::isfinite(value) ? double{value} : 0.0;
}

// A line end in a file name would end the comment and make the rest of the name a part of the program.
std::string toCommentText(std::string text)
{
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\f'; }, ' ');
    return text;
}

} // namespace

// The text of the page and the mapping of coordinates to page units.
class Visualizer2::Page
{
public:
    Page(std::ostream& stream, const Bbox2& bbox) : text(stream)
    {
        // The differences of huge coordinates overflow, and so do their multiples; a power of two in front changes
        // nothing else.
        if (!(bbox.getMaxRange() < 1e300))
            scale = std::ldexp(1.0, -64);
        minX = bbox.get_minX() * scale;
        minY = bbox.get_minY() * scale;
        range = std::max(bbox.get_maxX() * scale - minX, bbox.get_maxY() * scale - minY);
    }

    void draw(const Segment2& segment, bool)
    {
        moveTo(mapX(segment.getSrc()), mapY(segment.getSrc()));
        lineTo(mapX(segment.getTrg()), mapY(segment.getTrg()));
    }

    void draw(const Circle2& circle, bool)
    {
        const double x = mapX(circle.getCenter());
        const double y = mapY(circle.getCenter());
        const double radius = toPageLength(circle.getRadius() * scale);
        moveTo(x + radius, y);
        text << x << '\t' << y << '\t' << radius << "\t0\t360\tarc\n";
        if (++numCirclesDrawn % kCirclesPerStroke == 0)
            stroke();
    }

    void draw(const Point2& point, bool)
    {
        const double x = mapX(point);
        const double y = mapY(point);
        moveTo(x - kCrossHalfSize, y - kCrossHalfSize);
        lineTo(x + kCrossHalfSize, y + kCrossHalfSize);
        moveTo(x - kCrossHalfSize, y + kCrossHalfSize);
        lineTo(x + kCrossHalfSize, y - kCrossHalfSize);
    }

    void draw(const std::array<Point2, 3>& triangle, bool bFill)
    {
        moveTo(mapX(triangle[0]), mapY(triangle[0]));
        lineTo(mapX(triangle[1]), mapY(triangle[1]));
        lineTo(mapX(triangle[2]), mapY(triangle[2]));
        text << (bFill ? "closepath\nfill\n" : "closepath\nstroke\n");
    }

    void draw(const Label& label, bool)
    {
        const Point2 position = label.getPosition();
        text << "/Arial findfont 8 scalefont\n setfont\n";
        moveTo(mapX(position), mapY(position));
        text << '(' << escapeString(label.getText()) << ")\tshow\n";
        if (label.isWithMark())
            draw(position, false);
        stroke();
    }

    void stroke() { text << "stroke\n"; }

    TextWriter text;

private:
    void moveTo(double x, double y) { text << x << '\t' << y << "\tmoveto\n"; }
    void lineTo(double x, double y) { text << x << '\t' << y << "\tlineto\n"; }

    double mapX(const Point2& p) const { return toPageLength(p.x() * scale - minX) + kSquareLeft; }
    double mapY(const Point2& p) const { return toPageLength(p.y() * scale - minY) + kSquareBottom; }

    // A box without extent has no scale: everything falls on its lower left corner.
    double toPageLength(double length) const { return range > 0.0 ? length * kSquareSize / range : 0.0; }

    double scale = 1.0;
    double minX;
    double minY;
    double range;
};

Visualizer2::Visualizer2(std::string name) : colorCurrent(noColor()), filename(std::move(name))
{
    std::cout << "Visualizer2:: Writing " << filename << std::endl;
    imbue(std::locale::classic());
    open(filename);
}

void Visualizer2::addObject(const Segment2& segment, const Color& color)
{
    if (isFinite(segment.getSrc()) && isFinite(segment.getTrg()))
        guarded([&] { vSegments.emplace_back(segment, color); });
}

void Visualizer2::addObject(const Circle2& circle, const Color& color)
{
    if (isFinite(circle.getCenter()) && std::isfinite(circle.getRadius()))
        guarded([&] { vCircles.emplace_back(circle, color); });
}

void Visualizer2::addObject(const Point2& point, const Color& color)
{
    if (isFinite(point))
        guarded([&] { vPoints.emplace_back(point, color); });
}

void Visualizer2::addObject(const Label& label, const Color& color)
{
    if (isFinite(label.getPosition()))
        guarded([&] { vLabels.emplace_back(label, color); });
}

void Visualizer2::addObject(const Triangle2& triangle, const Color& color)
{
    // A triangle that is no longer part of a mesh may have lost its corners.
    for (int i = 0; i < 3; ++i)
        if (!triangle.getCorner(i) || !isFinite(*triangle.getCorner(i)))
            return;
    guarded([&] {
        vTriangles.emplace_back(
            std::array<Point2, 3>{*triangle.getCorner(0), *triangle.getCorner(1), *triangle.getCorner(2)}, color);
    });
}

void Visualizer2::addObject(std::vector<Triangle2*> vMeshTriangles, const Color& color)
{
    for (const Triangle2* pTriangle : vMeshTriangles)
        if (pTriangle)
            addObject(*pTriangle, color);
}

void Visualizer2::writeFile()
{
    computeBbox();
    colorCurrent = noColor(); // also for a second page, after the caller has opened another file
    bFillCurrent = false;
    strokeCounter = 0;
    {
        Page page(*this, bbox);
        writeHeader(page);
        drawObjects(page, vSegments);
        drawObjects(page, vCircles);
        drawObjects(page, vPoints);
        drawObjects(page, vTriangles);
        drawObjects(page, vLabels);
        page.text << "stroke\nshowpage\n%%Trailer\n";
    }
    close();
}

void Visualizer2::computeBbox()
{
    bbox = Bbox2();
    for (const auto& [segment, color] : vSegments) {
        bbox.add(segment.getSrc());
        bbox.add(segment.getTrg());
    }
    for (const auto& [circle, color] : vCircles) {
        const Point2 center = circle.getCenter();
        const double radius = circle.getRadius();
        bbox.add(Point2(center.x() - radius, center.y() - radius));
        bbox.add(Point2(center.x() + radius, center.y() + radius));
    }
    for (const auto& [point, color] : vPoints)
        bbox.add(point);
    for (const auto& [triangle, color] : vTriangles)
        for (const Point2& corner : triangle)
            bbox.add(corner);
    for (const auto& [label, color] : vLabels)
        bbox.add(label.getPosition());
}

void Visualizer2::writeHeader(Page& page) const
{
    const std::string title = escapeString(filename);
    page.text << "%!PS-Adobe-1.0\n\t%%Creator: ZELK PostscriptWriter\n\t%%Title: " << toCommentText(filename)
              << "\n\t%%CreationDate: none\n"
                 "\t%%DocumentMedia: A4 595 842 0 () ()\n"
                 "\t%%Orientation: Portrait\n"
                 "\t%%Pages: 1\t%%DocumentFonts: Times-Roman Helvetica\n"
                 "\t%%EndComments\n"
                 "\t%%BeginProlog\n"
                 "\t%%EndProlog\n"
                 "\t%%Page: Zelk PostscriptWriter 1\n"
                 "0.05\tsetlinewidth\n\t0\t0\t0\tsetrgbcolor\n\t/Times-Roman findfont 17 scalefont\n\tsetfont\n"
                 "40\t740\tmoveto\n\t("
              << title
              << ")\tshow\n"
                 "0.4\t0.4\t0.4\tsetrgbcolor\n\t/Times-Roman findfont 10 scalefont\n\tsetfont\n"
                 "40\t725\tmoveto\n(Zelk Quor 2D)\tshow\n"
                 "0.0\t0.0\t0.0\tsetrgbcolor\n\t/Times-Roman findfont 10 scalefont\n\tsetfont\n";
    page.text << "40\t705\tmoveto\n(x-Range: [" << bbox.get_minX() << " - " << bbox.get_maxX()
              << "] =" << bbox.getRangeX() << ")\tshow\n";
    page.text << "40\t695\tmoveto\n(y-Range: [" << bbox.get_minY() << " - " << bbox.get_maxY()
              << "] =" << bbox.getRangeY() << ")\tshow\n";
}

void Visualizer2::switchColor(Page& page, const Color& color)
{
    page.stroke();
    page.text << toColorValue(color.r) << '\t' << toColorValue(color.g) << '\t' << toColorValue(color.b)
              << "\tsetrgbcolor\n";
    page.text << toColorValue(color.width) << "\tsetlinewidth\n";
    colorCurrent = color;
    bFillCurrent = color.bFill;
}

template <class Object>
void Visualizer2::drawObjects(Page& page, const std::vector<std::pair<Object, Color>>& vObjects)
{
    for (const auto& [object, color] : vObjects) {
        if (color != colorCurrent)
            switchColor(page, color);
        page.draw(object, bFillCurrent);
        if (++strokeCounter > kMaxObjectsPerPath) {
            strokeCounter = 0;
            page.stroke();
        }
    }
}

} // namespace ZELK_QUOR2D
