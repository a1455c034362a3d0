#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace fuzz
{

/// Turns the bytes of a fuzz input into choices. Behind the end everything reads as zero.
class ByteReader
{
public:
    ByteReader(const std::uint8_t* pData, std::size_t numBytes) : pNext(pData), pEnd(pData + numBytes) {}

    bool atEnd() const { return pNext == pEnd; }

    std::uint8_t byte() { return atEnd() ? std::uint8_t(0) : *pNext++; }

    /// A number in [0, bound), from one byte.
    int below(int bound) { return byte() % bound; }

    /// A number in [0, bound), from two bytes.
    std::size_t index(std::size_t bound)
    {
        const unsigned int low = byte();
        return (low + 256u * byte()) % bound;
    }

    /// Any double, NaN and infinity included.
    double rawDouble()
    {
        std::uint64_t bits = 0;
        for (int i = 0; i < 8; ++i)
            bits |= static_cast<std::uint64_t>(byte()) << (8 * i);
        double value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

private:
    const std::uint8_t* pNext;
    const std::uint8_t* pEnd;
};

} // namespace fuzz
