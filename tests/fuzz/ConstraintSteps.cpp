#include "tests/fuzz/MeshProgram.h"

#include <cmath>

namespace fuzz
{

using namespace ZELK_QUOR2D;

namespace
{

constexpr std::size_t kMaxSegments = 100;

// Halving a segment down from there makes tens of thousands of vertices.
bool isExtreme(const Point2& p)
{
    const auto isExtremeNumber = [](double c) { return c != 0.0 && !(std::fabs(c) > 1e-40 && std::fabs(c) < 1e40); };
    return isExtremeNumber(p.x()) || isExtremeNumber(p.y());
}

// Beside the axis by next to nothing. Conforming segments there would take as many vertices as they are longer than
// that.
bool isNearAxis(const Point2& p)
{
    return p.y() != 0.0 && std::fabs(p.y()) < 0x1p-30 * std::fabs(p.x());
}

} // namespace

// Ends are points of all kinds, so also what was inserted before.
void MeshProgram::createSegments(ConstraintInsertionStrategy cis)
{
    std::vector<Segment2> vSegments;
    for (int n = 1 + in.below(8); n > 0; --n) {
        const Point2 src = points.read(in);
        vSegments.emplace_back(src, points.read(in));
    }
    create(vSegments, cis);
}

void MeshProgram::createRing(ConstraintInsertionStrategy cis)
{
    std::vector<Point2> vRing;
    for (int n = 3 + in.below(6); n > 0; --n)
        vRing.push_back(points.read(in));
    std::vector<Segment2> vSegments;
    for (std::size_t i = 0; i < vRing.size(); ++i)
        vSegments.emplace_back(vRing[i], vRing[(i + 1) % vRing.size()]);
    create(vSegments, cis);
}

void MeshProgram::createFamily(ConstraintInsertionStrategy cis)
{
    const std::vector<Point2> vPoints = points.readFamily(in);
    const std::size_t stride = 1 + in.index(5);
    std::vector<Segment2> vSegments;
    for (std::size_t i = 0; i + stride < vPoints.size() && vSegments.size() < kMaxSegments / 2; i += stride)
        vSegments.emplace_back(vPoints[i], vPoints[i + stride]);
    create(vSegments, cis);
}

void MeshProgram::create(const std::vector<Segment2>& vSegments, ConstraintInsertionStrategy cis)
{
    if (isFull() || numSegments + vSegments.size() > kMaxSegments)
        return;
    numSegments += vSegments.size();
    for (const Segment2& segment : vSegments)
        if (isExtreme(segment.getSrc()) || isExtreme(segment.getTrg()) || isNearAxis(segment.getSrc()) ||
            isNearAxis(segment.getTrg()))
            cis = CIS_CONSTRAINED_DELAUNAY;
    std::vector<Point2> vEnds;
    for (const Segment2& segment : vSegments)
        vEnds.insert(vEnds.end(), {segment.getSrc(), segment.getTrg()});
    trace(cis == CIS_CONSTRAINED_DELAUNAY ? "create constrained" : "create conforming", vEnds);
    ConstraintGraph2* const pGraph = call([&] { return dt.createConstraint(vSegments, cis); });
    require((pGraph != nullptr) == !vSegments.empty(), "a graph for the segments");
    model.adoptVertices();
    if (pGraph) {
        require(pGraph->getInsertionStrategy() == cis, "the strategy of a graph");
        model.addGraph(pGraph);
    }
}

void MeshProgram::applyConstraints()
{
    trace("apply", {});
    silence.clear();
    call([&] { dt.applyConstraintsAndZones(); });
    model.adoptVertices();
    trace("applied", {});
    model.noteApplied(silence.count("giving up. Incorrect result!"));
}

void MeshProgram::queryConstraints()
{
    Point2* const p0 = someHandle();
    Point2* const p1 = someHandle();
    if (call([&] { return dt.isConstraint(p0, p1); }))
        require(p0 != p1 && model.isLive(p0) && model.isLive(p1), "a constraint between vertices that are not there");
    model.checkGraphs();
}

} // namespace fuzz
