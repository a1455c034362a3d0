#pragma once

#include "Point2.h"

#include <cstdint>

namespace ZELK_QUOR2D
{

/// Bits that the triangulation keeps in Point2::marks. The bits above them are a signature of the vertices that
/// constraint segments join to this one, see signatureBit().
enum VertexMark : unsigned int {
    VM_REMOVED = 1u, ///< left the triangulation; entries of the vault that name it are dropped at the next compaction
    VM_CONSTRAINT = 2u, ///< an end of a constraint segment, alive or split
    VM_REFINEMENT = 4u, ///< a circumcentre inserted by the refinement that is running, which may take it back
    VM_VISITED = 8u     ///< met by a search that is running
};

/// The bit that stands for a vertex in the signatures of others. Where two vertices lack each other's bit no segment
/// joins them; this settles almost every question about an edge that is no constraint without a look into a table.
inline unsigned int signatureBit(const Point2* p)
{
    constexpr unsigned int kFirstBit = 4, kNumBits = 28;
    const auto place = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(p) / sizeof(Point2));
    const std::uint64_t hash = place * 0x9E3779B1u & 0xFFFFFFFFu;
    return 1u << (kFirstBit + static_cast<unsigned int>((hash * kNumBits) >> 32));
}

} // namespace ZELK_QUOR2D
