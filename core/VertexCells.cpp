#include "core/VertexCells.h"

#include "core/VertexVault.h"

#include <algorithm>

namespace ZELK_QUOR2D
{

namespace
{

constexpr int kMaxCellBits = 24;

// A stretch with more vertices is divided: a walk through them all would take about as long as the look-up.
constexpr std::size_t kCrowdFrom = 32;

} // namespace

void VertexCells::clear()
{
    vCells.clear();
    vCrowds.clear();
}

// The curve covers a doubled box, so that one stretch per vertex means about four vertices in those that are in use.
void VertexCells::fill(const std::vector<VaultEntry>& vEntries, std::size_t numSorted)
{
    int cellBits = 0;
    while (cellBits < kMaxCellBits && (std::size_t(1) << cellBits) < vEntries.size())
        ++cellBits;
    cellShift = kKeyBits - cellBits;
    clear();
    vCells.resize(std::size_t(1) << cellBits);
    std::vector<Point2*> vRun;
    for (std::size_t i = 0; i < numSorted;) {
        const std::uint32_t cell = vEntries[i].key >> cellShift;
        vRun.clear();
        for (; i < numSorted && vEntries[i].key >> cellShift == cell; ++i)
            if (vEntries[i].pVtx->getIncidentTriangle())
                vRun.push_back(vEntries[i].pVtx);
        setCell(cell, vRun);
    }
    fillGaps(0, vCells.size());
    // Ends: dividing separates the extreme vertices, so that every part is smaller than the whole.
    while (!vPending.empty()) {
        const Pending pending = std::move(vPending.back());
        vPending.pop_back();
        divide(pending);
    }
    CurveItems().swap(vItems);
    CurveItems().swap(vSorted);
    for (std::size_t i = numSorted; i < vEntries.size(); ++i)
        note(vEntries[i].key, *vEntries[i].pVtx, vEntries[i].pVtx);
}

// The vertex in the middle serves until the cell is divided, and is what gaps after it are filled with.
void VertexCells::setCell(std::size_t cell, std::vector<Point2*>& vVertices)
{
    if (vVertices.empty())
        return;
    vCells[cell] = Cell(vVertices[vVertices.size() / 2]);
    if (vVertices.size() > kCrowdFrom)
        vPending.push_back(Pending{cell, std::move(vVertices)});
}

void VertexCells::divide(const Pending& pending)
{
    const std::vector<Point2*>& vVertices = pending.vVertices;
    double minX = vVertices[0]->x(), maxX = minX, minY = vVertices[0]->y(), maxY = minY;
    for (const Point2* p : vVertices) {
        minX = std::min(minX, p->x());
        maxX = std::max(maxX, p->x());
        minY = std::min(minY, p->y());
        maxY = std::max(maxY, p->y());
    }
    if (!(minX < maxX) && !(minY < maxY))
        return;
    int keyBits = 2;
    while (keyBits < kMaxCellBits && (std::size_t(2) << keyBits) < vVertices.size())
        keyBits += 2;
    const std::size_t firstCell = vCells.size(), numCells = std::size_t(1) << keyBits;
    vCells[pending.cell] = Cell(vCrowds.size());
    vCrowds.push_back(Crowd{HC2(minX, minY, maxX, maxY, keyBits), firstCell});
    vCells.resize(firstCell + numCells);

    vItems.clear();
    for (std::size_t i = 0; i < vVertices.size(); ++i)
        vItems.push_back(makeCurveItem(vCrowds.back().curve.getIndex(*vVertices[i]), static_cast<std::uint32_t>(i)));
    sortByKey(vItems.data(), vItems.size(), vSorted);
    std::vector<Point2*> vRun;
    for (std::size_t i = 0; i < vItems.size();) {
        const std::uint32_t cell = keyOf(vItems[i]);
        vRun.clear();
        for (; i < vItems.size() && keyOf(vItems[i]) == cell; ++i)
            vRun.push_back(vVertices[positionOf(vItems[i])]);
        setCell(firstCell + cell, vRun);
    }
    fillGaps(firstCell, vCells.size());
}

// A cell without vertices gets one of the nearest cell before it that has some, else of the first one after it.
void VertexCells::fillGaps(std::size_t first, std::size_t last)
{
    Cell latest;
    for (std::size_t i = first; i < last && !latest.vertex(); ++i)
        latest = vCells[i];
    for (std::size_t i = first; i < last; ++i) {
        if (vCells[i].vertex())
            latest = vCells[i];
        else
            vCells[i] = latest;
    }
}

} // namespace ZELK_QUOR2D
