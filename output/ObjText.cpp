#include "output/ObjText.h"

#include "Point2.h"
#include "Triangle2.h"
#include "output/TextWriter.h"

#include <string_view>

namespace ZELK_QUOR2D
{

namespace
{

// Numbers vertices in the order of their first appearance: a hash by address with open addressing, so that neither a
// node per vertex nor a field of the mesh is needed.
class VertexNumbers
{
public:
    VertexNumbers() : vSlots(std::size_t{1} << numBits) {}

    // The number of a vertex, from 1; a vertex seen for the first time is appended to `vVertices`.
    std::uint32_t numberOf(const Point2* pVtx, std::vector<const Point2*>& vVertices)
    {
        Slot& slot = find(pVtx);
        if (slot.pVtx)
            return slot.number;
        vVertices.push_back(pVtx);
        const auto number = static_cast<std::uint32_t>(vVertices.size());
        slot = {pVtx, number};
        if (2 * vVertices.size() > vSlots.size())
            grow();
        return number;
    }

private:
    struct Slot {
        const Point2* pVtx = nullptr;
        std::uint32_t number = 0;
    };

    // The slot of the vertex or the free one where it belongs. Ends because half of the slots stay free.
    Slot& find(const Point2* pVtx)
    {
        const std::size_t mask = vSlots.size() - 1;
        std::size_t i = home(pVtx);
        while (vSlots[i].pVtx && vSlots[i].pVtx != pVtx)
            i = (i + 1) & mask;
        return vSlots[i];
    }

    void grow()
    {
        ++numBits;
        std::vector<Slot> vOld(std::size_t{1} << numBits);
        vOld.swap(vSlots);
        for (const Slot& slot : vOld)
            if (slot.pVtx)
                find(slot.pVtx) = slot;
    }

    // Fibonacci hashing: the pool's blocks of neighbouring addresses spread over the whole table. Taking the low bits
    // as they are would let two blocks share one run of slots, and every probe would walk that run.
    std::size_t home(const Point2* pVtx) const
    {
        const std::uint64_t unit = reinterpret_cast<std::uintptr_t>(pVtx) / alignof(Point2);
        return static_cast<std::size_t>((unit * 0x9E3779B97F4A7C15u) >> (64 - numBits));
    }

    unsigned int numBits = 10;
    std::vector<Slot> vSlots;
};

} // namespace

ObjText::ObjText(const std::vector<Triangle2*>& vTriangles)
{
    VertexNumbers numbers;
    vCornerNumbers.reserve(3 * vTriangles.size());
    for (const Triangle2* pTriangle : vTriangles)
        for (int i = 0; i < 3; ++i)
            vCornerNumbers.push_back(numbers.numberOf(pTriangle->getCorner(i), vVertices));
}

void ObjText::write(TextWriter& writer) const
{
    for (const Point2* pVtx : vVertices)
        writer << "v " << pVtx->x() << ' ' << pVtx->y() << " 0 \n";
    for (std::size_t i = 0; i < vCornerNumbers.size(); i += 3)
        writer << "f " << vCornerNumbers[i] << ' ' << vCornerNumbers[i + 1] << ' ' << vCornerNumbers[i + 2] << '\n';
}

} // namespace ZELK_QUOR2D
