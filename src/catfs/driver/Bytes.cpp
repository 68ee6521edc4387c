#include "catfs/driver/Bytes.h"

#include <cstring>

namespace catfs {

namespace {

uint64_t Broadcast(uint8_t key)
{
    return uint64_t(key) * 0x0101010101010101ull;
}

} // namespace

// Both passes work on 64-bit words, four at a time, so that the compiler can
// keep them in vector registers; the unaligned head and tail go byte by byte.
void XorCopy(uint8_t* to, const uint8_t* from, size_t count, uint8_t key)
{
    const uint64_t wide = Broadcast(key);
    size_t i = 0;
    for (; i + 32 <= count; i += 32) {
        uint64_t w[4];
        std::memcpy(w, from + i, 32);
        w[0] ^= wide;
        w[1] ^= wide;
        w[2] ^= wide;
        w[3] ^= wide;
        std::memcpy(to + i, w, 32);
    }
    for (; i < count; ++i)
        to[i] = from[i] ^ key;
}

void XorInPlace(uint8_t* bytes, size_t count, uint8_t key)
{
    XorCopy(bytes, bytes, count, key);
}

void XorCatalog(uint8_t* bytes, size_t count, uint8_t key, size_t start)
{
    // The key stream repeats every 256 bytes: build one period as words and
    // apply it block by block.
    alignas(8) uint8_t period[256 + 32];
    for (size_t i = 0; i < sizeof(period); ++i)
        period[i] = uint8_t(key + start + i);
    size_t i = 0;
    for (; i + 256 <= count; i += 256) {
        for (size_t j = 0; j < 256; j += 8) {
            uint64_t data, mask;
            std::memcpy(&data, bytes + i + j, 8);
            std::memcpy(&mask, period + j, 8);
            data ^= mask;
            std::memcpy(bytes + i + j, &data, 8);
        }
    }
    for (size_t j = 0; i < count; ++i, ++j)
        bytes[i] ^= period[j];
}

} // namespace catfs
