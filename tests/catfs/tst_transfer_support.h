// Helpers of the transfer-layer and hwtool tests: catalogs written and read
// byte by byte, without the driver, so that a test sees what lies on disk.
#pragma once

#include "catfs/CatDriver.h"

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>

#include <cstdlib>
#include <optional>

namespace transfertest {

struct StoredEntry
{
    QString name;      // with '\', as held in memory
    QByteArray stored; // the entry's bytes as stored, before the .dat scrambling
};

inline QByteArray ReadBytes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

inline bool WriteBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

// The catalog scrambling is one XOR run, so it also unscrambles.
inline QByteArray ScrambleCatalog(QByteArray text)
{
    for (qsizetype i = 0; i < text.size(); ++i)
        text[i] = static_cast<char>(static_cast<uint8_t>(text[i]) ^ static_cast<uint8_t>(CatCatalogKey + i));
    return text;
}

inline QByteArray ScrambleData(QByteArray bytes)
{
    for (char& byte : bytes)
        byte = static_cast<char>(static_cast<uint8_t>(byte) ^ CatDataKey);
    return bytes;
}

inline QString DataPathOf(const QString& catPath)
{
    return catPath.left(catPath.lastIndexOf(QLatin1Char('.'))) + QStringLiteral(".dat");
}

// Writes a catalog pair as the game stores it.
inline bool WriteCatalog(const QString& catPath, const QList<StoredEntry>& entries)
{
    QByteArray text = "data.dat\n";
    QByteArray data;
    for (const StoredEntry& entry : entries) {
        QString name = entry.name;
        text += name.replace(QLatin1Char('\\'), QLatin1Char('/')).toLocal8Bit() + ' ' +
                QByteArray::number(entry.stored.size()) + '\n';
        data += entry.stored;
    }
    return WriteBytes(catPath, ScrambleCatalog(text)) && WriteBytes(DataPathOf(catPath), ScrambleData(data));
}

// The catalog's entries as they stand on disk: name (with '\') and size.
inline QList<QPair<QString, qint64>> CatalogLines(const QString& catPath)
{
    QList<QPair<QString, qint64>> lines;
    const QList<QByteArray> text = ScrambleCatalog(ReadBytes(catPath)).split('\n');
    for (qsizetype i = 1; i < text.size(); ++i) {
        if (text[i].isEmpty())
            continue;
        const qsizetype blank = text[i].lastIndexOf(' ');
        QString name = QString::fromLocal8Bit(text[i].left(blank));
        lines.append(
            {name.replace(QLatin1Char('/'), QLatin1Char('\\')), text[i].mid(blank + 1).toLongLong()});
    }
    return lines;
}

inline QStringList CatalogNames(const QString& catPath)
{
    QStringList names;
    for (const auto& line : CatalogLines(catPath))
        names.append(line.first);
    return names;
}

// The stored bytes of one entry, found by the offsets the catalog implies.
// Nothing when the entry is missing or the .dat is too short.
inline std::optional<QByteArray> StoredBytes(const QString& catPath, const QString& name)
{
    const QByteArray data = ReadBytes(DataPathOf(catPath));
    qint64 offset = 0;
    for (const auto& line : CatalogLines(catPath)) {
        if (line.first.compare(name, Qt::CaseInsensitive) == 0) {
            if (offset + line.second > data.size())
                return std::nullopt;
            return ScrambleData(data.mid(offset, line.second));
        }
        offset += line.second;
    }
    return std::nullopt;
}

// True when the .dat is exactly as long as the catalog's sizes add up to.
inline bool DataLengthMatches(const QString& catPath)
{
    qint64 sum = 0;
    for (const auto& line : CatalogLines(catPath))
        sum += line.second;
    return QFile(DataPathOf(catPath)).size() == sum;
}

// The packed form of `plain`: lead byte and scrambled gzip stream.
inline QByteArray Packed(const QByteArray& plain, uint32_t time = 1000000)
{
    GzipWriter writer;
    uint8_t lead = 0;
    if (PckPack(reinterpret_cast<const uint8_t*>(plain.constData()), static_cast<uint32_t>(plain.size()),
                &writer, time, &lead) != CatErrNone)
        return {};
    return QByteArray(1, static_cast<char>(lead)) +
           QByteArray(reinterpret_cast<const char*>(writer.output.data()),
                      static_cast<qsizetype>(writer.output.size()));
}

// The content of a packed form; nothing when it does not unpack.
inline std::optional<QByteArray> Unpacked(QByteArray packed)
{
    uint8_t* data = nullptr;
    uint32_t size = 0;
    uint32_t time = 0;
    const uint32_t code = PckUnpack(reinterpret_cast<uint8_t*>(packed.data()),
                                    static_cast<uint32_t>(packed.size()), &data, &size, &time);
    std::optional<QByteArray> result;
    if (code == CatErrNone)
        result = QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    PckFreeData(data);
    return result;
}

inline bool IsPacked(const QByteArray& bytes)
{
    return PckIsPacked(reinterpret_cast<const uint8_t*>(bytes.constData()),
                       static_cast<size_t>(bytes.size()));
}

// Game-like text: ship-table rows with varied numbers.
inline QByteArray ShipRows(int rows, int seed)
{
    QByteArray text;
    std::srand(static_cast<unsigned>(seed));
    for (int i = 0; i < rows; ++i)
        text += "ships\\ship_" + QByteArray::number(seed) + "_" + QByteArray::number(i) + ";0;" +
                QByteArray::number(std::rand() % 9000) + ";" + QByteArray::number(std::rand() % 120) +
                ".5;1;" + QByteArray::number(std::rand()) + ";SS_SH_" + QByteArray::number(i % 7) + ";\n";
    return text;
}

} // namespace transfertest
