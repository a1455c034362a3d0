#include "formats/MeshEdges.h"
#include "formats/MeshWriters.h"

#include <algorithm>
#include <cmath>

namespace quor2d_tool
{
namespace
{

constexpr double kDrawingSize = 500.0; // of the longer side, in points
constexpr double kMargin = 20.0;
constexpr int kDecimals = 3;

struct Rgb {
    int r, g, b;
};

// Light colours that neighbours in the list can be told apart by, and that dark lines stand out from.
constexpr Rgb kPalette[] = {{166, 206, 227}, {178, 223, 138}, {253, 191, 111}, {202, 178, 214}, {251, 154, 153},
                            {255, 255, 153}, {141, 211, 199}, {217, 217, 217}, {204, 235, 197}, {252, 205, 229}};

Rgb regionColour(std::uint32_t region)
{
    return kPalette[(region - 1) % std::size(kPalette)];
}

// Maps the box of the mesh to the page, y upwards. Halves keep the extent of the largest numbers finite.
class PageMap
{
public:
    explicit PageMap(const MeshData& mesh)
    {
        Coord high;
        for (std::size_t i = 0; i < mesh.vertices.size(); ++i) {
            const Coord& c = mesh.vertices.vCoords[i];
            low = i == 0 ? c : Coord{std::min(low.x, c.x), std::min(low.y, c.y)};
            high = i == 0 ? c : Coord{std::max(high.x, c.x), std::max(high.y, c.y)};
        }
        Coord half{high.x / 2 - low.x / 2, high.y / 2 - low.y / 2};
        halfExtent = std::max(half.x, half.y);
        if (halfExtent == 0.0)
            halfExtent = 1.0;
        width = 2 * kMargin + half.x / halfExtent * kDrawingSize;
        height = 2 * kMargin + half.y / halfExtent * kDrawingSize;
    }

    Coord operator()(const Coord& c) const
    {
        return {kMargin + (c.x / 2 - low.x / 2) / halfExtent * kDrawingSize,
                kMargin + (c.y / 2 - low.y / 2) / halfExtent * kDrawingSize};
    }

    double width = 0.0;
    double height = 0.0;

private:
    Coord low;
    double halfExtent = 1.0;
};

// What both drawings do: triangles filled by region, then inner edges, the border, and constraints.
class Drawing
{
public:
    Drawing(const MeshData& rMesh, OutputFile& rFile) : mesh(rMesh), file(rFile), map(rMesh) {}
    virtual ~Drawing() = default;

    void write()
    {
        begin();
        std::vector<std::vector<std::uint32_t>> vByRegion(mesh.vRegions.size());
        for (std::uint32_t t = 0; t < mesh.vTriangles.size() && !vByRegion.empty(); ++t)
            vByRegion[mesh.regionOf(t)].push_back(t);
        for (std::uint32_t r = 1; r < vByRegion.size(); ++r)
            fill(vByRegion[r], regionColour(r));

        std::vector<MeshEdge> vEdges = collectMeshEdges(mesh);
        draw(vEdges, {110, 110, 110}, 0.2, [](const MeshEdge& edge) { return !edge.bBorder && !edge.bConstraint; });
        draw(vEdges, {0, 0, 0}, 0.6, [](const MeshEdge& edge) { return edge.bBorder && !edge.bConstraint; });
        draw(vEdges, {190, 20, 20}, 0.8, [](const MeshEdge& edge) { return edge.bConstraint; });
        end();
    }

protected:
    virtual void begin() = 0;
    virtual void end() = 0;
    virtual void beginFill(Rgb colour) = 0;
    virtual void beginLines(Rgb colour, double width) = 0;
    virtual void addTriangle(Coord a, Coord b, Coord c) = 0;
    virtual void addLine(Coord a, Coord b) = 0;
    virtual void endPath() = 0;

    void number(double value) { file.writeFixed(value, kDecimals); }
    Coord page(std::uint32_t vertex) const { return map(mesh.vertices.vCoords[vertex]); }

    const MeshData& mesh;
    OutputFile& file;
    PageMap map;

private:
    void fill(const std::vector<std::uint32_t>& vTriangles, Rgb colour)
    {
        if (vTriangles.empty())
            return;
        beginFill(colour);
        for (std::uint32_t t : vTriangles) {
            const auto& aCorners = mesh.vTriangles[t];
            addTriangle(page(aCorners[0]), page(aCorners[1]), page(aCorners[2]));
        }
        endPath();
    }

    template <class Wanted>
    void draw(const std::vector<MeshEdge>& vEdges, Rgb colour, double width, Wanted isWanted)
    {
        beginLines(colour, width);
        for (const MeshEdge& edge : vEdges)
            if (isWanted(edge))
                addLine(page(edge.from), page(edge.to));
        endPath();
    }
};

class PostScriptDrawing : public Drawing
{
public:
    using Drawing::Drawing;

private:
    void begin() override
    {
        file << "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 " << static_cast<int>(std::ceil(map.width)) << ' '
             << static_cast<int>(std::ceil(map.height))
             << "\n%%Creator: quor2d\n%%Pages: 1\n%%EndComments\n"
                "/m {moveto} bind def\n/s {moveto lineto stroke} bind def\n"
                "/t {moveto lineto lineto closepath fill} bind def\n1 setlinecap\n1 setlinejoin\n%%Page: 1 1\n";
    }
    void end() override { file << "showpage\n%%EOF\n"; }
    void setColour(Rgb colour)
    {
        for (int part : {colour.r, colour.g, colour.b}) {
            number(part / 255.0);
            file << ' ';
        }
        file << "setrgbcolor\n";
    }
    void beginFill(Rgb colour) override { setColour(colour); }
    void beginLines(Rgb colour, double width) override
    {
        setColour(colour);
        number(width);
        file << " setlinewidth\n";
    }
    void addTriangle(Coord a, Coord b, Coord c) override
    {
        point(a);
        point(b);
        point(c);
        file << "t\n";
    }
    void addLine(Coord a, Coord b) override
    {
        point(a);
        point(b);
        file << "s\n";
    }
    void endPath() override {}
    void point(Coord c)
    {
        number(c.x);
        file << ' ';
        number(c.y);
        file << ' ';
    }
};

class SvgDrawing : public Drawing
{
public:
    using Drawing::Drawing;

private:
    void begin() override
    {
        file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 ";
        number(map.width);
        file << ' ';
        number(map.height);
        file << "\" stroke-linecap=\"round\" stroke-linejoin=\"round\">\n"
                "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";
    }
    void end() override { file << "</svg>\n"; }
    void colour(Rgb rgb) { file << "\"rgb(" << rgb.r << ',' << rgb.g << ',' << rgb.b << ")\""; }
    void beginFill(Rgb rgb) override
    {
        file << "<path stroke=\"none\" fill=";
        colour(rgb);
        file << " d=\"";
    }
    void beginLines(Rgb rgb, double width) override
    {
        file << "<path fill=\"none\" stroke=";
        colour(rgb);
        file << " stroke-width=\"";
        number(width);
        file << "\" d=\"";
    }
    void addTriangle(Coord a, Coord b, Coord c) override
    {
        point('M', a);
        point('L', b);
        point('L', c);
        file << "Z\n";
    }
    void addLine(Coord a, Coord b) override
    {
        point('M', a);
        point('L', b);
        file << '\n';
    }
    void endPath() override { file << "\"/>\n"; }
    void point(char command, Coord c) // y downwards
    {
        file << command;
        number(c.x);
        file << ' ';
        number(map.height - c.y);
    }
};

} // namespace

void writePostScript(const MeshData& mesh, OutputFile& file)
{
    PostScriptDrawing(mesh, file).write();
}

void writeSvg(const MeshData& mesh, OutputFile& file)
{
    SvgDrawing(mesh, file).write();
}

} // namespace quor2d_tool
