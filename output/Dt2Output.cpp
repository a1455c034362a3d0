#include "Color.h"
#include "FileOutput.h"
#include "Segment2.h"
#include "Triangle2.h"
#include "Visualizer2.h"
#include "core/Dt2.h"
#include "geometry/TriangleIndex.h"
#include "output/Message.h"
#include "output/ObjText.h"
#include "output/TextWriter.h"

#include <functional>
#include <iostream>

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

// A page opened from disk may not read 3d.obj, but it may load a script. The text needs no escapes: it consists of
// letters, numbers, blanks and line ends.
void writeObjScript(const std::string& filename, const ObjText& text)
{
    std::ofstream file = openTextFile(filename);
    if (!file)
        return;
    TextWriter writer(file);
    writer << "window.JSC3D_SCENE_TEXT = `";
    text.write(writer);
    writer << "`;\n";
}

} // namespace

void Dt2::show(const std::string& filename) const
{
    Visualizer2 visualizer(filename);
    if (!hasTriangles()) {
        reportError("Dt2::show()", "The triangulation is not 2D, no visualization");
    } else {
        std::vector<Triangle2*> vTriangles;
        getTrianglePointers(vTriangles);
        const Color black(0.0, 0.0, 0.0, 0.00001, false);
        forEachEdge(vTriangles,
                    [&](const Triangle2* pTriangle, int i) { visualizer.addObject(toSegment(pTriangle, i), black); });
        const Color red(1.0, 0.0, 0.0, 0.0001, false);
        forEachEdge(vTriangles, [&](Triangle2* pTriangle, int i) {
            if (isConstraint(pTriangle, i))
                visualizer.addObject(toSegment(pTriangle, i), red);
        });
    }
    visualizer.writeFile();
}

void Dt2::writeObj(const std::string& filename) const
{
    if (!hasTriangles()) {
        reportError("Dt2::show()", "The triangulation is not full dimensional yet, no visualization");
        return;
    }
    std::vector<Triangle2*> vTriangles;
    getTrianglePointers(vTriangles);
    writeObjFile(filename, ObjText(vTriangles));
}

void Dt2::writeWebScene(const char* path) const
{
    if (!createDirectory(path)) {
        reportWarning("Dt2::writeWebScene()", std::string("Can't create directory ") + (path ? path : ""));
        return;
    }
    std::cout << "writeWebScene: Creating " << path << std::endl;
    for (const char* resource : {"index.html", "jsc3d.js", "jsc3d.ctm.js", "jsc3d.touch.js"})
        fileReplicate(resource, path);
    const std::string objFile = std::string(path) + "/3d.obj";
    writeObj(objFile);
    if (!hasTriangles())
        return; // reported by writeObj
    std::vector<Triangle2*> vTriangles;
    getTrianglePointers(vTriangles);
    writeObjScript(objFile + ".js", ObjText(vTriangles));
}

} // namespace ZELK_QUOR2D
