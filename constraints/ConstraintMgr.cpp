#include "constraints/ConstraintMgr.h"

#include "core/Dt2.h"
#include "output/Message.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <locale>
#include <sstream>

namespace ZELK_QUOR2D
{

namespace
{

bool isFinite(const Point2& p)
{
    return std::isfinite(p.x()) && std::isfinite(p.y());
}

std::string toText(const Point2& p0, const Point2& p1)
{
    std::ostringstream text;
    text << p0 << "," << p1;
    return text.str();
}

// Appends both ends of every segment whose coordinates are finite.
void collectEnds(const std::vector<Segment2>& vSegments, std::vector<Point2>& vPoints)
{
    vPoints.reserve(2 * vSegments.size());
    for (const Segment2& segment : vSegments) {
        const Point2 source = segment.getSrc(), target = segment.getTrg();
        if (!isFinite(source) || !isFinite(target)) {
            reportError("ConstraintMgr::createConstraint(..)",
                        "a constraint segment with a non-finite coordinate has been skipped");
            continue;
        }
        vPoints.push_back(source);
        vPoints.push_back(target);
    }
}

} // namespace

ConstraintMgr::~ConstraintMgr()
{
    for (ConstraintGraph2* pGraph : vGraphs)
        delete pGraph;
}

// ---- building

// One batch for all ends: near-linear, and consecutive segments find their common end as one vertex.
ConstraintGraph2* ConstraintMgr::createConstraint(const std::vector<Segment2>& vInput, ConstraintInsertionStrategy cis)
{
    QUOR2D_ASSERT(!vInput.empty(), "!vSegments.empty()");
    std::vector<Point2> vPoints;
    collectEnds(vInput, vPoints);
    std::vector<Point2*> vEnds;
    pDt2->insert(vPoints, vEnds);
    std::vector<ConstraintSegment2*> vCSegments;
    vCSegments.reserve(vEnds.size() / 2);
    segmentIndex.reserve(segmentIndex.size() + vEnds.size() / 2);
    for (std::size_t i = 0; i < vEnds.size(); i += 2) {
        if (vEnds[i] != vEnds[i + 1])
            vCSegments.push_back(findOrCreateSegment(vEnds[i], vEnds[i + 1], cis));
        else
            reportWarning("ConstraingMgr::createConstraint",
                          "Identical source and endpoint, a constraint segment has been skipped (" +
                              toText(*vEnds[i], *vEnds[i + 1]) + ")");
    }
    ConstraintGraph2* const pGraph = new ConstraintGraph2(pDt2, vCSegments, cis);
    vGraphs.push_back(pGraph);
    return pGraph;
}

ConstraintSegment2* ConstraintMgr::findOrCreateSegment(Point2* p0, Point2* p1, ConstraintInsertionStrategy cis)
{
    QUOR2D_ASSERT(p0 != p1, "p0!=p1");
    orderByAddress(p0, p1);
    if (ConstraintSegment2* pExisting = findSegment(p0, p1))
        return pExisting;
    ConstraintSegment2* const pCSeg = newSegment(p0, p1, cis);
    adopt(pCSeg);
    return pCSeg;
}

ConstraintSegment2* ConstraintMgr::newSegment(Point2* pLower, Point2* pHigher, ConstraintInsertionStrategy cis)
{
    ConstraintSegment2* const pCSeg = &nodes.emplace_back(pLower, pHigher, cis).segment;
    pCSeg->pMgr = this;
    return pCSeg;
}

// Enters an alive segment as a constraint, perhaps again. For a new vertex its signature tells that it is not there.
void ConstraintMgr::adopt(ConstraintSegment2* pCSeg)
{
    if (!findSegment(pCSeg->getSrc(), pCSeg->getTrg()))
        segmentIndex.insert(pCSeg);
    pCSeg->getSrc()->marks |= VM_CONSTRAINT | signatureBit(pCSeg->getTrg());
    pCSeg->getTrg()->marks |= VM_CONSTRAINT | signatureBit(pCSeg->getSrc());
    bHasConforming = bHasConforming || pCSeg->getCIS() == CIS_CONFORMING_DELAUNAY;
    pDt2->bHasConstraints = true;
}

void ConstraintMgr::recordSplit(ConstraintSegment2* pParentCSeg, ConstraintSegment2* pCSeg0, ConstraintSegment2* pCSeg1)
{
    QUOR2D_ASSERT(!pParentCSeg->isAlive(), "!pParentCSeg->isAlive()");
    QUOR2D_ASSERT(pCSeg0 != pCSeg1, "pCSeg0!=pCSeg1");
    ++numSplits;
    segmentIndex.erase(pParentCSeg);
    adopt(pCSeg0);
    adopt(pCSeg1);
}

void ConstraintMgr::prefetchSplit(const ConstraintSegment2* pCSeg, const Point2* pSplit) const
{
    segmentIndex.prefetchSlot(pCSeg->getSrc(), pSplit);
    segmentIndex.prefetchSlot(pCSeg->getTrg(), pSplit);
}

// ---- queries

void ConstraintMgr::getLiveSegments(std::vector<ConstraintSegment2*>& vLive) const
{
    vLive.clear();
    vLive.reserve(segmentIndex.size());
    segmentIndex.forEach([&vLive](ConstraintSegment2* pCSeg) { vLive.push_back(pCSeg); });
    sortByEnds(vLive);
}

// Sorts copies of the ends: the segments themselves lie all over the memory.
void ConstraintMgr::sortByEnds(std::vector<ConstraintSegment2*>& vList)
{
    struct Entry {
        const Point2* src;
        const Point2* trg;
        ConstraintSegment2* pCSeg;
    };
    std::vector<Entry> vEntries;
    vEntries.reserve(vList.size());
    for (ConstraintSegment2* pCSeg : vList)
        vEntries.push_back({pCSeg->getSrc(), pCSeg->getTrg(), pCSeg});
    std::sort(vEntries.begin(), vEntries.end(), [](const Entry& a, const Entry& b) {
        const std::less<const Point2*> before;
        return before(a.src, b.src) || (a.src == b.src && before(a.trg, b.trg));
    });
    for (std::size_t i = 0; i < vList.size(); ++i)
        vList[i] = vEntries[i].pCSeg;
}

void ConstraintMgr::writeConstraints(const std::string& prefix, int number) const
{
    const std::string filename = prefix + "_c" + std::to_string(number) + ".con";
    std::vector<ConstraintSegment2*> vLive;
    getLiveSegments(vLive);
    std::ofstream file(filename);
    file.imbue(std::locale::classic());
    file.precision(std::numeric_limits<double>::max_digits10);
    for (const ConstraintSegment2* pCSeg : vLive) {
        const Point2 &source = *pCSeg->getSrc(), &target = *pCSeg->getTrg();
        file << source.x() << '\t' << source.y() << '\t' << target.x() << '\t' << target.y() << '\n';
    }
    reportInfo("ConstraintMgr::writeConstraints()",
               "writes " + std::to_string(vLive.size()) + " child segments to " + filename);
}

} // namespace ZELK_QUOR2D
