#pragma once

#include "Point2.h"
#include "Triangle2.h"
#include "core/CurveSort.h"
#include "core/HC2.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ZELK_QUOR2D
{

struct VaultEntry;

/// For every stretch of the curve a vertex that lies there, so that walks start nearby.
///
/// Keys say nothing about where the points of a dense cluster lie. A stretch with many vertices is therefore divided
/// again, along a curve of its own over their box, and so on until no stretch has many.
class VertexCells
{
public:
    static constexpr int kKeyBits = 30; // of the triangulation's curve

    bool empty() const { return vCells.empty(); }
    void clear();

    /// Makes the stretches anew. O(n) for entries in the order of their keys, but for nested clusters.
    ///
    /// @param numSorted  the first so many entries are in that order
    void fill(const std::vector<VaultEntry>& vEntries, std::size_t numSorted);

    /// A vertex of the mesh noted in the same stretch as p, or near it; null when it has left the mesh.
    ///
    /// @param key  of p
    Point2* find(std::uint32_t key, const Point2& p) const
    {
        Point2* const pVtx = vCells[indexOf(key, p)].vertex();
        return pVtx && pVtx->getIncidentTriangle() ? pVtx : nullptr;
    }

    /// Makes a vertex the one that find() gives around p.
    void note(std::uint32_t key, const Point2& p, Point2* pVtx) { vCells[indexOf(key, p)] = Cell(pVtx); }

private:
    /// A vertex, none, or the index of a crowd: then the lowest bit is set, which no address of a vertex has.
    class Cell
    {
    public:
        Cell() = default;
        explicit Cell(Point2* pVtx) : bits(reinterpret_cast<std::uintptr_t>(pVtx)) {}
        explicit Cell(std::size_t crowd) : bits(2 * crowd + 1) {}
        bool isCrowd() const { return bits & 1; }
        std::size_t crowd() const { return bits / 2; }
        Point2* vertex() const { return reinterpret_cast<Point2*>(bits); }

    private:
        std::uintptr_t bits = 0;
    };

    /// A divided stretch. Its own stretches are the cells from firstCell on, one for each key of its curve.
    struct Crowd {
        HC2 curve;
        std::size_t firstCell;
    };

    // Ends: crowds are made from the outside in.
    std::size_t indexOf(std::uint32_t key, const Point2& p) const
    {
        std::size_t i = key >> cellShift;
        while (vCells[i].isCrowd()) {
            const Crowd& crowd = vCrowds[vCells[i].crowd()];
            i = crowd.firstCell + crowd.curve.getIndex(p);
        }
        return i;
    }

    struct Pending {
        std::size_t cell;
        std::vector<Point2*> vVertices;
    };
    void setCell(std::size_t cell, std::vector<Point2*>& vVertices);
    void divide(const Pending& pending);
    void fillGaps(std::size_t first, std::size_t last);

    std::vector<Cell> vCells; // those of the triangulation's curve, then those of the crowds
    std::vector<Crowd> vCrowds;
    int cellShift = 0;             // from a key of the triangulation's curve to its cell
    std::vector<Pending> vPending; // while filling: the cells to be divided
    CurveItems vItems;             // scratch
    CurveItems vSorted;            // scratch
};

} // namespace ZELK_QUOR2D
