// Helpers of the driver tests: whole-file transfers through the flat
// interface, and gzip streams built by hand. Catalogs made and read by hand
// come from CatalogFiles.h.
#pragma once

#include "CatalogFiles.h"

#include <zlib.h>

namespace drivertest {

using namespace catalogfiles;

// True when a driver call failed (false, a null handle or -1) and left `code`
// in the error cell; otherwise says what happened.
inline bool FailedWith(bool succeeded, uint32_t code)
{
    const uint32_t got = CatLastError();
    if (!succeeded && got == code)
        return true;
    qWarning("the call %s with error %u (%s), expected a failure with %u", succeeded ? "succeeded" : "failed",
             got, CatErrorText(got), code);
    return false;
}
inline bool FailedWith(int32_t result, uint32_t code)
{
    return FailedWith(result >= 0, code);
}
template <typename T> bool FailedWith(T* handle, uint32_t code)
{
    return FailedWith(handle != nullptr, code);
}

// Reads a whole file or entry through the driver; `ok` false on any failure.
inline QByteArray DriverRead(const QByteArray& path, bool* ok = nullptr, int32_t kind = CatKindAuto)
{
    if (ok)
        *ok = false;
    CatFile* file = CatOpen(path.constData(), CatModeRead, 0, kind);
    if (!file)
        return {};
    const int32_t size = CatSize(file);
    QByteArray bytes(size, Qt::Uninitialized);
    const int32_t got = size > 0 ? CatRead(file, bytes.data(), uint32_t(size)) : 0;
    const bool closed = CatClose(file);
    if (ok)
        *ok = closed && got == size;
    return bytes;
}

// Writes a whole file or entry through the driver, as the transfer layer does.
inline bool DriverWrite(const QByteArray& path, const QByteArray& bytes, int32_t kind)
{
    CatFile* file = CatOpen(path.constData(), CatModeWrite, 1, kind);
    if (!file)
        return false;
    bool ok = CatSeek(file, 0, CatSeekBegin);
    ok = ok && CatWrite(file, bytes.constData(), uint32_t(bytes.size())) == bytes.size();
    ok = ok && CatTruncate(file);
    return CatClose(file) && ok;
}

// A raw deflate stream of `data` (window bits -15).
inline QByteArray RawDeflate(const QByteArray& data, int level = 9)
{
    z_stream zs{};
    deflateInit2(&zs, level, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY);
    QByteArray out(int(deflateBound(&zs, uLong(data.size()))), Qt::Uninitialized);
    zs.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.constData()));
    zs.avail_in = uInt(data.size());
    zs.next_out = reinterpret_cast<Bytef*>(out.data());
    zs.avail_out = uInt(out.size());
    deflate(&zs, Z_FINISH);
    out.resize(int(zs.total_out));
    deflateEnd(&zs);
    return out;
}

inline QByteArray Le32(quint32 v)
{
    QByteArray b(4, 0);
    for (int i = 0; i < 4; ++i)
        b[i] = char(v >> (8 * i));
    return b;
}

// Scrambles a plain gzip stream into a packed file with the given key.
inline QByteArray PackedFromGzip(const QByteArray& gzip, uint8_t key)
{
    return QByteArray(1, char(key ^ 0x6E)) + XorBytes(gzip, key);
}

} // namespace drivertest
