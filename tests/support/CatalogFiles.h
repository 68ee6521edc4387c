// Catalog pairs and packed files made and read byte by byte, without the
// driver's own reader and writer, so that a test sees what lies on disk.
//
// A .cat is text scrambled by XOR with (0x5A + offset) per byte: its first
// line names the .dat, each further line is "<name> <size>" with '/' in
// names. The .dat holds the entries back to back, every byte XOR 0xA7.
// A packed file is one lead byte (key ^ 0x6E) and a gzip stream XOR key.
#pragma once

#include "TestSupport.h"
#include "catfs/CatDriver.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

#include <optional>

namespace catalogfiles {

inline QByteArray XorCatalogBytes(QByteArray bytes)
{
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = char(uint8_t(bytes[i]) ^ uint8_t(0x5A + i));
    return bytes;
}

inline QByteArray XorBytes(QByteArray bytes, uint8_t key = 0xA7)
{
    for (char& c : bytes)
        c = char(uint8_t(c) ^ key);
    return bytes;
}

inline QString DataPathOf(const QString& catPath)
{
    return catPath.left(catPath.lastIndexOf('.')) + ".dat";
}

using Entry = QPair<QByteArray, QByteArray>; // name ('/' or '\'), stored bytes

// Writes <base>.cat and <base>.dat from the given catalog text and entries.
inline bool WritePairRaw(const QString& base, const QByteArray& catalogText, const QList<Entry>& entries)
{
    QByteArray dat;
    for (const Entry& e : entries)
        dat += e.second;
    return WriteFile(base + ".cat", XorCatalogBytes(catalogText)) && WriteFile(base + ".dat", XorBytes(dat));
}

// Writes <base>.cat and <base>.dat as the game stores them.
inline bool WritePair(const QString& base, const QList<Entry>& entries, const QByteArray& dataName = "01.dat")
{
    QByteArray text = dataName + "\n";
    for (const Entry& e : entries)
        text += QByteArray(e.first).replace('\\', '/') + " " + QByteArray::number(e.second.size()) + "\n";
    return WritePairRaw(base, text, entries);
}

struct Line
{
    QByteArray name; // as in the file, with '/'
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
    if (dataName)
        *dataName = lines.value(0);
    QList<Line> result;
    for (qsizetype i = 1; i < lines.size(); ++i) {
        if (lines[i].isEmpty())
            continue;
        const qsizetype blank = lines[i].lastIndexOf(' ');
        result.append({lines[i].left(blank), lines[i].mid(blank + 1).toUInt()});
    }
    return result;
}

// The entry names of a .cat, with '\' as the program holds them.
inline QStringList CatalogNames(const QString& catPath)
{
    QStringList names;
    for (const Line& line : ReadCatalog(catPath))
        names.append(QString::fromLocal8Bit(line.name).replace('/', '\\'));
    return names;
}

// The stored bytes of one entry, found by the offsets the catalog implies.
// Nothing when the entry is missing or the .dat is too short.
inline std::optional<QByteArray> StoredBytes(const QString& catPath, const QString& name)
{
    const QByteArray data = ReadFile(DataPathOf(catPath));
    qint64 offset = 0;
    for (const Line& line : ReadCatalog(catPath)) {
        if (QString::fromLocal8Bit(line.name).replace('/', '\\').compare(name, Qt::CaseInsensitive) == 0) {
            if (offset + line.size > data.size())
                return std::nullopt;
            return XorBytes(data.mid(offset, line.size));
        }
        offset += line.size;
    }
    return std::nullopt;
}

// True when the .dat is exactly as long as the catalog's sizes add up to.
inline bool DataLengthMatches(const QString& catPath)
{
    qint64 sum = 0;
    for (const Line& line : ReadCatalog(catPath))
        sum += line.size;
    return ReadFile(DataPathOf(catPath)).size() == sum;
}

// The packed form of `plain`: lead byte and scrambled gzip stream.
inline QByteArray Packed(const QByteArray& plain, uint32_t time = 1000000)
{
    GzipWriter writer;
    uint8_t lead = 0;
    if (PckPack(reinterpret_cast<const uint8_t*>(plain.constData()), uint32_t(plain.size()), &writer, time,
                &lead) != CatErrNone)
        return {};
    return QByteArray(1, char(lead)) +
           QByteArray(reinterpret_cast<const char*>(writer.output.data()), qsizetype(writer.output.size()));
}

// The content of a packed form; nothing when it does not unpack.
inline std::optional<QByteArray> Unpacked(QByteArray packed)
{
    uint8_t* data = nullptr;
    uint32_t size = 0;
    uint32_t time = 0;
    const uint32_t code =
        PckUnpack(reinterpret_cast<uint8_t*>(packed.data()), uint32_t(packed.size()), &data, &size, &time);
    std::optional<QByteArray> result;
    if (code == CatErrNone)
        result = QByteArray(reinterpret_cast<const char*>(data), qsizetype(size));
    PckFreeData(data);
    return result;
}

inline bool IsPacked(const QByteArray& bytes)
{
    return PckIsPacked(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
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

} // namespace catalogfiles
