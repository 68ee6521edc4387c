// Helpers of the driver tests: catalogs built and read by hand, independent of
// the driver's own reader and writer, and whole-file transfers through the
// flat interface.
#pragma once

#include "TestSupport.h"
#include "catfs/CatDriver.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QList>
#include <QPair>
#include <QString>

#include <zlib.h>

namespace drivertest {

inline QByteArray XorCatalogBytes(QByteArray bytes)
{
    for (int i = 0; i < bytes.size(); ++i)
        bytes[i] = char(uint8_t(bytes[i]) ^ uint8_t(0x5A + i));
    return bytes;
}

inline QByteArray XorBytes(QByteArray bytes, uint8_t key)
{
    for (char& c : bytes)
        c = char(uint8_t(c) ^ key);
    return bytes;
}

using Entry = QPair<QByteArray, QByteArray>; // name as in the file ('/'), stored bytes

// Writes <base>.cat and <base>.dat from the given catalog text and entries.
inline void WritePairRaw(const QString& base, const QByteArray& catalogText, const QList<Entry>& entries)
{
    QByteArray dat;
    for (const Entry& e : entries)
        dat += e.second;
    WriteFile(base + ".cat", XorCatalogBytes(catalogText));
    WriteFile(base + ".dat", XorBytes(dat, 0xA7));
}

inline void WritePair(const QString& base, const QList<Entry>& entries, const QByteArray& dataName = "01.dat")
{
    QByteArray text = dataName + "\n";
    for (const Entry& e : entries)
        text += e.first + " " + QByteArray::number(e.second.size()) + "\n";
    WritePairRaw(base, text, entries);
}

struct Line
{
    QByteArray name;
    quint32 size;
};

// The unscrambled text of a .cat file.
inline QByteArray CatalogText(const QString& catPath)
{
    return XorCatalogBytes(ReadFile(catPath));
}

// The entry lines of a .cat as written (LF only), line 1 in `dataName`.
inline QList<Line> ReadCatalog(const QString& catPath, QByteArray* dataName = nullptr)
{
    const QList<QByteArray> lines = CatalogText(catPath).split('\n');
    QList<Line> result;
    for (int i = 0; i < lines.size(); ++i) {
        if (i == 0) {
            if (dataName)
                *dataName = lines[0];
            continue;
        }
        if (lines[i].isEmpty())
            continue;
        const int blank = lines[i].lastIndexOf(' ');
        result.append({lines[i].left(blank), lines[i].mid(blank + 1).toUInt()});
    }
    return result;
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

// Deterministic bytes that compress somewhat, like game text.
inline QByteArray SampleBytes(int size, quint32 seed)
{
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = seed * 2654435761u + 1;
    for (int i = 0; i < size; ++i) {
        state = state * 1664525u + 1013904223u;
        bytes[i] = (state >> 28) < 12 ? char('a' + (state >> 24) % 8) : char(state >> 16);
    }
    return bytes;
}

} // namespace drivertest
