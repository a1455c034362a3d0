#pragma once

#include "Bbox2.h"
#include "Circle2.h"
#include "Color.h"
#include "Label.h"
#include "Point2.h"
#include "Quor2DExport.h"
#include "Segment2.h"

#include <array>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace ZELK_QUOR2D
{

class Triangle2;

/// Collects coloured geometric objects and draws them on one PostScript page (A4).
///
/// The box of all objects is scaled, with its aspect ratio kept, into a square of 495 page units (1/72 inch) whose
/// lower left corner is (50, 200). Objects are copied. The page is written by writeFile():
///
///     Visualizer2 drawing("hull.ps");
///     drawing.addObject(Segment2(a, b), Color(1, 0, 0, 0.5, false));
///     drawing.writeFile();
///
/// Segments are drawn first, then circles, points, triangles and labels, each kind in the order of insertion.
/// Objects with a coordinate that is not finite are left out.
class QUOR2D_API Visualizer2 : public std::ofstream
{
public:
    /// Opens the file `name` for writing and tells so on standard output. The name is also the title of the page.
    ///
    /// A file that cannot be opened is not reported: the stream is in the failed state and nothing is written.
    explicit Visualizer2(std::string name);

    /// Adds an object. A circle gets an outline, a point a cross of three page units.
    void addObject(const Segment2& segment, const Color& color);
    void addObject(const Circle2& circle, const Color& color);
    void addObject(const Point2& point, const Color& color);
    void addObject(const Label& label, const Color& color);

    /// Adds copies of the corners, filled if the colour says so.
    void addObject(const Triangle2& triangle, const Color& color);

    /// Adds each triangle of the list; null pointers are left out.
    void addObject(std::vector<Triangle2*> vMeshTriangles, const Color& color);

    /// Writes the page and closes the file. Numbers have six significant digits, whatever the state of this stream
    /// or the global locale. Linear in the number of objects.
    void writeFile();

private:
    class Page; // the text of the page and the mapping to it

    void computeBbox();
    void writeHeader(Page& page) const;
    void switchColor(Page& page, const Color& color);
    template <class Object>
    void drawObjects(Page& page, const std::vector<std::pair<Object, Color>>& vObjects);

    std::vector<std::pair<Segment2, Color>> vSegments;
    std::vector<std::pair<Circle2, Color>> vCircles;
    std::vector<std::pair<Point2, Color>> vPoints;
    std::vector<std::pair<std::array<Point2, 3>, Color>> vTriangles;
    std::vector<std::pair<Label, Color>> vLabels;
    int strokeCounter = 0; // objects since the last batch "stroke"
    Bbox2 bbox;            // of all objects, set by writeFile
    bool bFillCurrent = false;
    Color colorCurrent; // as set on the page
    std::string filename;
};

} // namespace ZELK_QUOR2D
