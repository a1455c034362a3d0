#include "Color.h"
#include "Segment2.h"
#include "Triangle2.h"
#include "Visualizer2.h"
#include "core/Dt2.h"
#include "geometry/TriangleIndex.h"
#include "output/Message.h"
#include "output/ObjText.h"
#include "output/TextWriter.h"

#include <functional>

namespace ZELK_QUOR2D
{

namespace
{

// Calls visit(pTriangle, i) once for each undirected edge: from the triangle with the lower address, or from the only
// one at the hull.
template <class Visit>
void forEachEdge(const std::vector<Triangle2*>& vTriangles, Visit visit)
{
    for (Triangle2* pTriangle : vTriangles)
        for (int i = 0; i < 3; ++i) {
            const Triangle2* pOpp = pTriangle->getOppositeTriangle(i);
            if (!pOpp || std::less<const Triangle2*>()(pTriangle, pOpp))
                visit(pTriangle, i);
        }
}

Segment2 toSegment(const Triangle2* pTriangle, int ith)
{
    return Segment2(*pTriangle->getCorner(next(ith)), *pTriangle->getCorner(prev(ith)));
}

void writeObjFile(const std::string& filename, const ObjText& text)
{
    std::ofstream file = openTextFile(filename);
    if (!file)
        return;
    TextWriter writer(file);
    text.write(writer);
}

} // namespace

void Dt2::show(const std::string& filename) const
{
    Visualizer2 visualizer(filename);
    if (!is2D()) {
        reportError("Dt2::show()", "The triangulation is not 2D, no visualization");
    } else {
        std::vector<Triangle2*> vTriangles;
        getTrianglePointers(vTriangles);
        const Color black(0.0, 0.0, 0.0, 0.00001, false);
        forEachEdge(vTriangles,
                    [&](const Triangle2* pTriangle, int i) { visualizer.addObject(toSegment(pTriangle, i), black); });
    }
    visualizer.writeFile();
}

void Dt2::writeObj(const std::string& filename) const
{
    if (!is2D()) {
        reportError("Dt2::show()", "The triangulation is not full dimensional yet, no visualization");
        return;
    }
    std::vector<Triangle2*> vTriangles;
    getTrianglePointers(vTriangles);
    writeObjFile(filename, ObjText(vTriangles));
}

} // namespace ZELK_QUOR2D
