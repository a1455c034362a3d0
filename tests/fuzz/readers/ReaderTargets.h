#pragma once

#include <cstddef>
#include <cstdint>

namespace fuzz
{

/// Each gives the input to readers of the quor2d command as a file. A fault of the file must be one FileError; what is
/// read must hold together, read back the same after it was written, and triangulate into a valid mesh.
void runReadPoints(const std::uint8_t* pData, std::size_t numBytes);
void runReadGeoJson(const std::uint8_t* pData, std::size_t numBytes);
void runReadWkt(const std::uint8_t* pData, std::size_t numBytes);
void runReadObj(const std::uint8_t* pData, std::size_t numBytes);
void runReadMsh(const std::uint8_t* pData, std::size_t numBytes);

/// These take a .node, an .ele and a .poly file with a line "====" between them.
void runReadNode(const std::uint8_t* pData, std::size_t numBytes);
void runReadPoly(const std::uint8_t* pData, std::size_t numBytes);

} // namespace fuzz
