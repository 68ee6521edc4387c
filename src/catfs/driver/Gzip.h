// The gzip container around zlib's raw deflate, and the packed-file layer on
// top of it. Internal to the driver; the flat Pck* functions wrap these.
#pragma once

#include "catfs/CatDriver.h"
#include "catfs/driver/Bytes.h"

#include <cstdint>

namespace catfs {

// Status numbers of the gzip layer; GzipStatusToCode maps them to driver codes.
enum GzipStatus : int
{
    GzipReservedFlags = 1,
    GzipOk = 0,
    GzipNoHeader = -1,
    GzipTooSmall = -2,
    GzipDataCrc = -3,
    GzipHeaderCrc = -4,
    GzipMethod = -5,
    GzipZlibFailed = -6,
    GzipInternal = -8,
    GzipNoMemory = -9,
};

uint32_t GzipStatusToCode(int status);

struct GzipReadResult
{
    int status = GzipInternal;
    ByteBuffer data; // the inflated bytes; set for GzipOk and GzipReservedFlags
    uint32_t size = 0;
    uint32_t mtime = 0;
};

// Reads one gzip stream that fills `input` exactly (the trailer is its last
// eight bytes).
GzipReadResult GzipRead(const uint8_t* input, size_t length);

// Appends one gzip stream of `data` to writer.output; returns a status.
int GzipWrite(GzipWriter& writer, const uint8_t* data, uint32_t size);

// Unpacks a packed buffer in place (the buffer is unscrambled on the way).
// Returns a driver code; 0 or 21 deliver data.
uint32_t UnpackBuffer(uint8_t* buffer, size_t length, GzipReadResult& result);

// Packs `data` at level 9: on success `out` holds lead byte and scrambled gzip
// stream, one behind the other, and `outSize` their length.
uint32_t PackToBuffer(const uint8_t* data, uint32_t size, uint32_t time, ByteBuffer& out, uint32_t& outSize);

// A fresh scrambling key for each packed file.
uint8_t NextPackKey();

} // namespace catfs
