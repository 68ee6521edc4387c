// Fuzz harness of the packed-file reader: PckIsPacked and PckUnpack on
// arbitrary bytes. What unpacks must pack again and come back equal.
#include "catfs/CatDriver.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

void Require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "fuzz_pck: %s\n", what);
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const bool packed = PckIsPacked(bytes, size);
    Require(!packed || size >= 3, "PckIsPacked accepted fewer than 3 bytes");
    if (size > UINT32_MAX)
        return 0;

    std::vector<uint8_t> buffer(bytes, bytes + size);
    uint8_t* data = nullptr;
    uint32_t length = 0;
    uint32_t time = 0;
    const uint32_t code = PckUnpack(buffer.data(), static_cast<uint32_t>(size), &data, &length, &time);
    if (code != CatErrNone && code != CatErrGzipReservedFlags) {
        Require(data == nullptr && length == 0, "a failed unpack left output");
        return 0;
    }

    // Whatever was read must survive a round trip through the writer.
    GzipWriter writer;
    uint8_t lead = 0;
    Require(PckPack(data, length, &writer, time, &lead) == CatErrNone, "packing unpacked data failed");
    std::vector<uint8_t> again;
    again.push_back(lead);
    again.insert(again.end(), writer.output.begin(), writer.output.end());
    Require(PckIsPacked(again.data(), again.size()), "a written packed file is not recognised");
    uint8_t* second = nullptr;
    uint32_t secondLength = 0;
    uint32_t secondTime = 0;
    Require(PckUnpack(again.data(), static_cast<uint32_t>(again.size()), &second, &secondLength,
                      &secondTime) == CatErrNone,
            "a written packed file does not unpack");
    Require(secondLength == length && secondTime == time &&
                (length == 0 || std::memcmp(second, data, length) == 0),
            "round trip changed the data or the time");
    PckFreeData(second);
    PckFreeData(data);
    return 0;
}
