#include "core/Dt2.h"

#include "core/IncidentTriangles.h"

#include <algorithm>
#include <cstdint>
#include <new>

namespace ZELK_QUOR2D
{

namespace
{

// A hint beyond the largest block only means that the first block is that large.
int firstBlockSize(std::uint64_t wanted, int maximumBlock)
{
    return static_cast<int>(std::min<std::uint64_t>(wanted, static_cast<std::uint64_t>(maximumBlock)));
}

} // namespace

Dt2::Dt2(unsigned int numExpectedVertices)
    : vertexVault(hilbertCurve, vertexPool), fullDimensional(vertexVault.bFullDimensional), curveBox(&predicates)
{
    const std::uint64_t n = std::max(3u, numExpectedVertices);
    vertexPool.init(firstBlockSize(n, SimplePool<Point2>::kMaximumBlock), -1);
    trianglePool.init(firstBlockSize(2 * n + 10, SimplePool<Triangle2>::kMaximumBlock), -1);
}

Dt2::~Dt2()
{
    deleteZones();
    destroyConstraints();
}

void Dt2::setName(const std::string& newName)
{
    if (&newName != &name)
        name = newName;
}

unsigned int Dt2::numberOfPoints() const
{
    return static_cast<unsigned int>(vertexVault.size());
}

unsigned int Dt2::numberOfTriangles() const
{
    return static_cast<unsigned int>(numLiveTriangles());
}

void Dt2::getVertexPointers(std::vector<Point2*>& vVertices) const
{
    vertexVault.getVertices(vVertices);
}

void Dt2::getTrianglePointers(std::vector<Triangle2*>& vTriangles) const
{
    vTriangles.reserve(vTriangles.size() + numLiveTriangles());
    forEachTriangle([&vTriangles](Triangle2* pT) { vTriangles.push_back(pT); });
}

Bbox2 Dt2::computeBoundingBox() const
{
    Bbox2 box;
    std::vector<Point2*> vVertices;
    getVertexPointers(vVertices);
    for (const Point2* p : vVertices)
        box.add(*p);
    return box;
}

// Turns around both vertices in turn: one of them may be a hub of thousands of triangles.
Triangle2* Dt2::getAdjacentTriangle(const Point2* p0, const Point2* p1) const
{
    if (!p0 || !p1 || p0 == p1 || !p0->getIncidentTriangle() || !p1->getIncidentTriangle())
        return nullptr;
    IncidentTriangles around0(p0);
    IncidentTriangles around1(p1);
    while (!around0.atEnd() && !around1.atEnd()) {
        if (around0.hasCorner(p1))
            return around0.triangle();
        if (around1.hasCorner(p0))
            return around1.triangle();
        around0.advance();
        around1.advance();
    }
    return nullptr;
}

Triangle2* Dt2::findTriangleLeftOf(const Point2* p0, const Point2* p1) const
{
    Triangle2* const pT = getAdjacentTriangle(p0, p1);
    if (!pT)
        return nullptr;
    const int i = pT->getIntraTriangleIndex(p0);
    return pT->getCorner(next(i)) == p1 ? pT : pT->getOppositeTriangle(next(i));
}

Triangle2* Dt2::takeTriangle(Point2* pA, Point2* pB, Point2* pC)
{
    Triangle2* pT;
    if (vDeadTriangles.empty()) {
        pT = new (trianglePool.alloc()) Triangle2;
    } else {
        pT = vDeadTriangles.back();
        vDeadTriangles.pop_back();
    }
    pT->setProperties(pA, pB, pC);
    return pT;
}

void Dt2::discardTriangle(Triangle2* pT)
{
    for (int i = 0; i < 3; ++i) {
        pT->setVertexPointer(i, nullptr);
        pT->setOppTriangle(i, nullptr);
    }
    vDeadTriangles.push_back(pT);
}

} // namespace ZELK_QUOR2D
