#include "Quor_2D.h"

#include "core/Dt2.h"
#include "core/Guarded.h"
#include "output/Message.h"
#include "refine/RefineParams.h"

#include <cmath>
#include <iostream>

namespace ZELK_QUOR2D
{

Quor_2D::Quor_2D(unsigned int numExpectedVertices)
{
    initQuor(numExpectedVertices);
}

Quor_2D::~Quor_2D()
{
    delete pDt2;
}

void Quor_2D::initQuor(unsigned int numExpectedVertices)
{
    guarded([&] {
        Dt2* const pNew = new Dt2(numExpectedVertices);
        delete pDt2;
        pDt2 = pNew;
    });
}

void Quor_2D::setName(const std::string& name)
{
    guarded([&] { pDt2->setName(name); });
}

std::string Quor_2D::getName() const
{
    return guarded([&] { return pDt2->getName(); });
}

void Quor_2D::enableMultithreading()
{
    pDt2->enableMultithreading();
}

Point2* Quor_2D::insert(const Point2& p)
{
    return guarded([&] { return pDt2->insert(p); });
}

void Quor_2D::insert(const std::vector<Point2>& vInputPoints)
{
    guarded([&] { pDt2->insert(vInputPoints); });
}

void Quor_2D::insert(const std::vector<Point2>& vInputPoints, std::vector<Point2*>& vHandles)
{
    guarded([&] { pDt2->insert(vInputPoints, vHandles); });
}

void Quor_2D::insert(int numPoints, double* aCoordinates, Point2** aHandles)
{
    guarded([&] { pDt2->insert(numPoints, aCoordinates, aHandles); });
}

void Quor_2D::remove(Point2* pVtx)
{
    guarded([&] { pDt2->remove(pVtx, false); });
}

Triangle2* Quor_2D::locate(const Point2& p)
{
    return guarded([&] { return pDt2->locate(p); });
}

unsigned int Quor_2D::numberOfPoints() const
{
    return pDt2->numberOfPoints();
}

unsigned int Quor_2D::numberOfTriangles() const
{
    return pDt2->numberOfTriangles();
}

void Quor_2D::getVertexPointers(std::vector<Point2*>& vVertices) const
{
    guarded([&] { pDt2->getVertexPointers(vVertices); });
}

void Quor_2D::getTrianglePointers(std::vector<Triangle2*>& vTriangles) const
{
    guarded([&] { pDt2->getTrianglePointers(vTriangles); });
}

bool Quor_2D::is2D() const
{
    return pDt2->is2D();
}

Bbox2 Quor_2D::computeBoundingBox() const
{
    return guarded([&] { return pDt2->computeBoundingBox(); });
}

Triangle2* Quor_2D::getAdjacentTriangle(Point2* p0, Point2* p1) const
{
    return pDt2->getAdjacentTriangle(p0, p1);
}

bool Quor_2D::checkValidity(bool bCheckEmptyCircle, const std::string& s) const
{
    return guarded([&] { return pDt2->checkValidity(bCheckEmptyCircle, s); });
}

ConstraintGraph2* Quor_2D::createConstraint(const std::vector<Segment2>& vSegments, ConstraintInsertionStrategy cis)
{
    if (vSegments.empty()) {
        reportWarning("Quor_2D::createConstraint()", "You have not supplied any segments. Returning NULL!");
        return nullptr;
    }
    return guarded([&] { return pDt2->createConstraint(vSegments, cis); });
}

void Quor_2D::applyConstraintsAndZones()
{
    if (!is2D()) {
        reportWarning("Quor2D::applyConstraintsAndZones()",
                      "The triangulation is not 2D yet, can't apply the constraints");
        return;
    }
    guarded([&] { pDt2->applyConstraintsAndZones(); });
}

bool Quor_2D::isConstraint(Point2* p0, Point2* p1) const
{
    return pDt2->isConstraint(p0, p1);
}

bool Quor_2D::isConstraint(Triangle2* pT, int ith) const
{
    QUOR2D_ASSERT(ith >= 0 && ith < 3, "checkRange(ith)");
    return pDt2->isConstraint(pT, ith);
}

Zone2* Quor_2D::createZone(ConstraintGraph2* pConstraintGraph, ZoneLocation zoneLoc)
{
    return guarded([&] { return pDt2->createZone(pConstraintGraph, zoneLoc); });
}

Zone2* Quor_2D::createZone(ConstraintGraph2* pConstraintGraph, ZoneLocation zoneLoc, const Point2& startPoint)
{
    return guarded([&] { return pDt2->createZone(pConstraintGraph, zoneLoc, startPoint); });
}

Zone2* Quor_2D::createZone(const std::vector<ConstraintGraph2*>& vConstraintGraphs, ZoneLocation zoneLoc,
                           const Point2& startPoint)
{
    return guarded([&] { return pDt2->createZone(vConstraintGraphs, zoneLoc, startPoint); });
}

void Quor_2D::deleteZone(Zone2* pZone)
{
    pDt2->deleteZone(pZone);
}

void Quor_2D::createArbitraryTriangles(const std::vector<Point2>& vPoints, const AcceptExperimentalFeature&)
{
    guarded([&] { pDt2->createArbitraryTriangles(vPoints); });
}

namespace
{

void warnOfRefine(const char* text)
{
    std::cerr << std::endl << "Warning: Quor_2D::refine(..)" << text << std::endl << std::endl;
}

} // namespace

void Quor_2D::refine(Zone2* pZone, double minAngleDegree, double minEdgeLength, double maxEdgeLength,
                     bool bAllowConstraintSplitting)
{
    if (!pZone) {
        warnOfRefine(" has been called with pZone==NULL");
        return;
    }
    if (minAngleDegree > 30.0) {
        warnOfRefine(", minAngleDegree can't be >30");
        return;
    }
    if (std::isnan(minAngleDegree) || std::isnan(minEdgeLength) || !(maxEdgeLength > 0.0)) {
        warnOfRefine(", no argument can be NaN, and maxEdgeLength can't be <=0");
        return;
    }
    guarded([&] {
        RefineParams params(pDt2, pZone, minAngleDegree, minEdgeLength, maxEdgeLength, bAllowConstraintSplitting);
        pDt2->refine(&params);
    });
}

void Quor_2D::refineSpecificTriangles(std::vector<Triangle2*>& vTriangles, bool bAllowConstraintSplitting)
{
    guarded([&] { pDt2->refineSpecificTriangles(vTriangles, bAllowConstraintSplitting); });
}

void Quor_2D::checkZoneQuality(Zone2* pZone, double minAngleDegree, double maxEdgeLength, const std::string& name,
                               const AcceptExperimentalFeature&)
{
    guarded([&] { pDt2->checkZoneQuality(pZone, minAngleDegree, maxEdgeLength, name); });
}

void Quor_2D::show(const std::string& filename) const
{
    guarded([&] { pDt2->show(filename); });
}

void Quor_2D::writeObj(const std::string& filename) const
{
    guarded([&] { pDt2->writeObj(filename); });
}

void Quor_2D::writeWebScene(const char* path) const
{
    guarded([&] { pDt2->writeWebScene(path); });
}

} // namespace ZELK_QUOR2D
