// The flat functions of packed files. The layouts are described at their
// readers in Gzip.cpp.

#include "catfs/CatDriver.h"
#include "catfs/driver/Gzip.h"
#include "catfs/driver/Platform.h"

#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>

using namespace catfs;

bool PckIsPacked(const uint8_t* bytes, size_t length)
{
    if (!bytes || length < 3)
        return false;
    const uint8_t key = bytes[0] ^ CatPackKey;
    return (bytes[1] ^ key) == 0x1F && (bytes[2] ^ key) == 0x8B;
}

uint32_t PckUnpack(uint8_t* buffer, uint32_t length, uint8_t** data, uint32_t* size, uint32_t* time)
{
    if (data)
        *data = nullptr;
    if (size)
        *size = 0;
    if (time)
        *time = 0;
    if (!data || !size || !time || (!buffer && length > 0))
        return CatErrBadFlags;
    GzipReadResult result;
    const uint32_t code = UnpackBuffer(buffer, length, result);
    if (code == CatErrNone || code == CatErrGzipReservedFlags) {
        *data = result.data.release(); // released by the caller with PckFreeData
        *size = result.size;
        *time = result.mtime;
    }
    return code;
}

uint32_t PckPack(const uint8_t* data, uint32_t size, GzipWriter* out, uint32_t time, uint8_t* leadByte)
{
    if (!out || !leadByte || (!data && size > 0))
        return CatErrBadFlags;
    try {
        const uint8_t empty = 0;
        out->output.clear();
        out->mtime = time;
        out->level = 9;
        const int status = GzipWrite(*out, data ? data : &empty, size);
        if (status != GzipOk)
            return GzipStatusToCode(status);
        const uint8_t key = NextPackKey();
        XorInPlace(out->output.data(), out->output.size(), key);
        *leadByte = key ^ CatPackKey;
        return CatErrNone;
    } catch (const std::bad_alloc&) {
        out->output.clear();
        return CatErrNoMemory;
    }
}

uint32_t PckWriteFile(const uint8_t* data, uint32_t size, int descriptor, uint32_t time)
{
    if (descriptor < 0)
        return CatErrInvalidHandle;
    ByteBuffer packed;
    uint32_t length = 0;
    const uint32_t code = PackToBuffer(data, size, time, packed, length);
    if (code != CatErrNone)
        return code;
    if (!WriteAllAt(descriptor, packed.get(), length, 0) || ::ftruncate(descriptor, off_t(length)) != 0 ||
        ::lseek(descriptor, off_t(length), SEEK_SET) < 0)
        return ErrnoToCode(errno);
    return CatErrNone;
}

uint32_t PckReadFile(const char* path, uint8_t** data, uint32_t* size, uint32_t* time)
{
    if (data)
        *data = nullptr;
    if (size)
        *size = 0;
    if (time)
        *time = 0;
    if (!data || !size || !time)
        return CatErrBadFlags;
    try {
        std::string canonical;
        if (!NormalisePath(path, canonical))
            return CatErrInternal;
        uint32_t code = CatErrNone;
        const UniqueFd fd = OpenLocked(ResolveOnDisk(canonical), O_RDONLY, Sharing::Shared, code);
        if (!fd.valid())
            return code;
        struct stat st;
        if (::fstat(fd.get(), &st) != 0)
            return ErrnoToCode(errno);
        if (uint64_t(st.st_size) > UINT32_MAX)
            return CatErrNoMemory;
        const size_t length = size_t(st.st_size);
        ByteBuffer stored = AllocateBytes(length);
        if (!stored)
            return CatErrNoMemory;
        if (length > 0 && !ReadAllAt(fd.get(), stored.get(), length, 0))
            return ErrnoToCode(errno);
        return PckUnpack(stored.get(), uint32_t(length), data, size, time);
    } catch (const std::bad_alloc&) {
        return CatErrNoMemory;
    }
}

void PckFreeData(uint8_t* data)
{
    delete[] data; // allocated by the driver as uint8_t[]
}
