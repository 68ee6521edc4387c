#include "catfs/driver/Gzip.h"

#include <zlib.h>

#include <atomic>
#include <cstring>
#include <ctime>

namespace catfs {

namespace {

// Deflate cannot expand data by more than this factor (a run of 258 equal
// bytes per 2-bit code, plus block overhead); a trailer that claims more
// describes a stream that cannot be genuine.
constexpr uint64_t kMaxInflateRatio = 1032;
constexpr uint64_t kMaxInflatedSize = uint64_t(1) << 30;

constexpr uint8_t kFlagText = 1;
constexpr uint8_t kFlagHeaderCrc = 2;
constexpr uint8_t kFlagExtra = 4;
constexpr uint8_t kFlagName = 8;
constexpr uint8_t kFlagComment = 16;
constexpr uint8_t kFlagsReserved = 0xE0;

uint32_t ReadLe32(const uint8_t* p)
{
    return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}

void AppendLe32(std::vector<uint8_t>& out, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        out.push_back(uint8_t(value >> (8 * i)));
}

// Skips a zero-terminated string; false when it runs past `end`.
bool SkipString(size_t& pos, size_t end, const uint8_t* input)
{
    const void* zero = std::memchr(input + pos, 0, end - pos);
    if (!zero)
        return false;
    pos = size_t(static_cast<const uint8_t*>(zero) - input) + 1;
    return true;
}

} // namespace

uint32_t GzipStatusToCode(int status)
{
    switch (status) {
    case GzipReservedFlags:
        return CatErrGzipReservedFlags;
    case GzipOk:
        return CatErrNone;
    case GzipNoHeader:
        return CatErrGzipNoHeader;
    case GzipTooSmall:
        return CatErrGzipTooSmall;
    case GzipDataCrc:
        return CatErrGzipDataCrc;
    case GzipHeaderCrc:
        return CatErrGzipHeaderCrc;
    case GzipMethod:
        return CatErrGzipMethod;
    case GzipZlibFailed:
        return CatErrGzipInflate;
    case GzipInternal:
        return CatErrInternal;
    case GzipNoMemory:
        return CatErrNoMemory;
    default:
        return uint32_t(status);
    }
}

// The gzip stream (RFC 1952), offsets from its first byte:
//
//   0  2  magic 0x1F 0x8B
//   2  1  method, 8 = deflate
//   3  1  flags: 1 text, 2 header CRC, 4 extra, 8 name, 16 comment, 0xE0 reserved
//   4  4  MTIME, little-endian
//   8  1  XFL (0 from our writer)
//   9  1  OS (11 from our writer)
//  10     optional fields, in this order: extra (2-byte little-endian length
//         and that many bytes), name (zero-terminated), comment
//         (zero-terminated), header CRC (2 bytes)
//   ..    raw deflate data
//  n-8 4  CRC-32 of the uncompressed data, little-endian
//  n-4 4  ISIZE, length of the uncompressed data, little-endian
//
// The trailer is taken from the end of the input, not found by following the
// deflate data, so nothing may stand behind it. The header CRC is skipped, not
// checked. ISIZE decides the output allocation, but only after it was checked
// against what the deflate data can possibly expand to.
GzipReadResult GzipRead(const uint8_t* input, size_t length)
{
    GzipReadResult result;
    if (length < 10) {
        result.status = GzipTooSmall;
        return result;
    }
    if (input[0] != 0x1F || input[1] != 0x8B) {
        result.status = GzipNoHeader;
        return result;
    }
    const uint8_t method = input[2];
    const uint8_t flags = input[3];
    result.mtime = ReadLe32(input + 4);

    // Optional fields must leave room for the 8-byte trailer.
    if (length < 18) {
        result.status = GzipTooSmall;
        return result;
    }
    const size_t trailer = length - 8;
    size_t pos = 10;
    if (flags & kFlagExtra) {
        if (trailer - pos < 2) {
            result.status = GzipTooSmall;
            return result;
        }
        const size_t extra = size_t(input[pos]) | size_t(input[pos + 1]) << 8;
        pos += 2;
        if (trailer - pos < extra) {
            result.status = GzipTooSmall;
            return result;
        }
        pos += extra;
    }
    if ((flags & kFlagName) && !SkipString(pos, trailer, input)) {
        result.status = GzipTooSmall;
        return result;
    }
    if ((flags & kFlagComment) && !SkipString(pos, trailer, input)) {
        result.status = GzipTooSmall;
        return result;
    }
    if (flags & kFlagHeaderCrc) {
        if (trailer - pos < 2) {
            result.status = GzipTooSmall;
            return result;
        }
        pos += 2;
    }
    (void)kFlagText;

    if (method != 8) {
        result.status = GzipMethod;
        return result;
    }
    const int okStatus = (flags & kFlagsReserved) ? GzipReservedFlags : GzipOk;

    const uint32_t storedCrc = ReadLe32(input + trailer);
    const uint32_t storedSize = ReadLe32(input + trailer + 4);
    const size_t deflateLength = trailer - pos;
    if (storedSize > kMaxInflatedSize || uint64_t(storedSize) > deflateLength * kMaxInflateRatio ||
        deflateLength > UINT32_MAX) {
        result.status = GzipZlibFailed;
        return result;
    }

    ByteBuffer output = AllocateBytes(storedSize);
    if (!output) {
        result.status = GzipNoMemory;
        return result;
    }

    z_stream stream{};
    if (inflateInit2(&stream, -15) != Z_OK) {
        result.status = GzipZlibFailed;
        return result;
    }
    stream.next_in = const_cast<Bytef*>(input + pos);
    stream.avail_in = uInt(deflateLength);
    stream.next_out = output.get();
    stream.avail_out = storedSize;
    const int z = inflate(&stream, Z_FINISH);
    const uLong produced = stream.total_out;
    inflateEnd(&stream);
    if (z != Z_STREAM_END || produced != storedSize) {
        result.status = GzipZlibFailed;
        return result;
    }
    if (crc32(crc32(0, nullptr, 0), output.get(), storedSize) != storedCrc) {
        result.status = GzipDataCrc;
        return result;
    }
    result.status = okStatus;
    result.data = std::move(output);
    result.size = storedSize;
    return result;
}

int GzipWrite(GzipWriter& writer, const uint8_t* data, uint32_t size)
{
    std::vector<uint8_t>& out = writer.output;
    uint8_t flags = 0;
    if (!writer.comment.empty())
        flags |= kFlagComment;
    if (!writer.name.empty())
        flags |= kFlagName;

    z_stream stream{};
    if (deflateInit2(&stream, writer.level, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY) != Z_OK) {
        writer.status = GzipZlibFailed;
        return writer.status;
    }
    const uLong bound = deflateBound(&stream, size);
    const size_t headerSize = 10 + (writer.name.empty() ? 0 : writer.name.size() + 1) +
                              (writer.comment.empty() ? 0 : writer.comment.size() + 1);
    out.reserve(out.size() + headerSize + bound + 8);

    const uint8_t header[10] = {0x1F, 0x8B, 8, flags, 0, 0, 0, 0, 0, 11};
    const size_t start = out.size();
    out.insert(out.end(), header, header + 10);
    for (int i = 0; i < 4; ++i)
        out[start + 4 + i] = uint8_t(writer.mtime >> (8 * i));
    if (!writer.name.empty())
        out.insert(out.end(), writer.name.c_str(), writer.name.c_str() + writer.name.size() + 1);
    if (!writer.comment.empty())
        out.insert(out.end(), writer.comment.c_str(), writer.comment.c_str() + writer.comment.size() + 1);

    // deflateBound is an upper limit for a single Z_FINISH call, so the loop
    // normally runs once; it grows in 1024-byte steps only if zlib asks.
    const size_t deflateStart = out.size();
    out.resize(deflateStart + bound);
    stream.next_in = const_cast<Bytef*>(data);
    stream.avail_in = size;
    stream.next_out = out.data() + deflateStart;
    stream.avail_out = uInt(bound);
    int z = deflate(&stream, Z_FINISH);
    while (z == Z_OK || (z == Z_BUF_ERROR && stream.avail_out == 0)) {
        const size_t used = deflateStart + stream.total_out;
        out.resize(out.size() + 1024);
        stream.next_out = out.data() + used;
        stream.avail_out = uInt(out.size() - used);
        z = deflate(&stream, Z_FINISH);
    }
    const size_t produced = stream.total_out;
    deflateEnd(&stream);
    out.resize(deflateStart + produced);
    if (z != Z_STREAM_END) {
        out.resize(start);
        writer.status = GzipZlibFailed;
        return writer.status;
    }
    AppendLe32(out, uint32_t(crc32(crc32(0, nullptr, 0), data, size)));
    AppendLe32(out, size);
    writer.status = GzipOk;
    return writer.status;
}

uint8_t NextPackKey()
{
    // The processor clock alone repeats when files are packed in quick
    // succession; a counter keeps consecutive keys apart.
    static std::atomic<uint32_t> counter{0};
    const uint32_t mixed =
        uint32_t(std::clock()) + 0x9Du * counter.fetch_add(1) + uint32_t(std::time(nullptr));
    return uint8_t(mixed ^ (mixed >> 8));
}

// A packed file, in storage order:
//
//   0  1  lead byte: key XOR CatPackKey (0x6E)
//   1  n  the gzip stream, every byte XORed with the key
//
// The key is one byte chosen afresh by the writer; the reader derives it from
// the lead byte. Compression comes first, scrambling second.
uint32_t UnpackBuffer(uint8_t* buffer, size_t length, GzipReadResult& result)
{
    result = GzipReadResult{};
    if (length == 0)
        return CatErrFileEmpty;
    const uint8_t key = buffer[0] ^ CatPackKey;
    XorInPlace(buffer, length, key);
    result = GzipRead(buffer + 1, length - 1);
    const uint32_t code = GzipStatusToCode(result.status);
    if (code != CatErrNone && code != CatErrGzipReservedFlags) {
        result.data.reset();
        result.size = 0;
        result.mtime = 0;
    }
    return code;
}

uint32_t PackToBuffer(const uint8_t* data, uint32_t size, uint32_t time, ByteBuffer& out, uint32_t& outSize)
{
    GzipWriter writer;
    uint8_t lead = 0;
    const uint32_t code = PckPack(data, size, &writer, time, &lead);
    if (code != CatErrNone)
        return code;
    if (writer.output.size() + 1 > UINT32_MAX)
        return CatErrInvalidSize;
    out = AllocateBytes(writer.output.size() + 1);
    if (!out)
        return CatErrNoMemory;
    out[0] = lead;
    std::memcpy(out.get() + 1, writer.output.data(), writer.output.size());
    outSize = uint32_t(writer.output.size() + 1);
    return CatErrNone;
}

} // namespace catfs
