// Byte buffers and the XOR passes of the game's scrambling.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>

namespace catfs {

using ByteBuffer = std::unique_ptr<uint8_t[]>;

// A buffer of `count` uninitialised bytes, or null when memory is short. Never
// throws: callers turn null into "Cannot allocate memory".
inline ByteBuffer AllocateBytes(size_t count)
{
    return ByteBuffer(new (std::nothrow) uint8_t[count == 0 ? 1 : count]);
}

// bytes[i] ^= key for every byte.
void XorInPlace(uint8_t* bytes, size_t count, uint8_t key);
// to[i] = from[i] ^ key; one pass that copies and unscrambles.
void XorCopy(uint8_t* to, const uint8_t* from, size_t count, uint8_t key);
// The catalog scrambling: byte i of the file is XORed with (key + i) mod 256.
// `start` is the file position of bytes[0].
void XorCatalog(uint8_t* bytes, size_t count, uint8_t key, size_t start = 0);

} // namespace catfs
