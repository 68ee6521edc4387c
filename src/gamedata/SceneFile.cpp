#include "gamedata/SceneFile.h"

#include "catfs/CatDriver.h"
#include "gamedata/ShipLine.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

// Packed file: a lead byte, then a gzip stream XORed with the key
// (lead byte ^ CatPackKey). The gzip stream ends in its unpacked size, four
// bytes little-endian, which is read here so that a small file claiming a huge
// content is refused before anything is unpacked.
constexpr int GzipSizeBytes = 4;

qint64 ClaimedUnpackedSize(const QByteArray& packed)
{
    if (packed.size() < 1 + GzipSizeBytes)
        return 0;
    const uint8_t key = uint8_t(packed.at(0)) ^ CatPackKey;
    quint32 size = 0;
    for (int i = 0; i < GzipSizeBytes; ++i)
        size |= quint32(uint8_t(packed.at(packed.size() - GzipSizeBytes + i)) ^ key) << (8 * i);
    return size;
}

SceneFileNodes Unpacked(QByteArray packed)
{
    const auto* bytes = reinterpret_cast<const uint8_t*>(packed.constData());
    if (!PckIsPacked(bytes, size_t(packed.size())))
        return {SceneRead::NotPacked, {}};
    if (ClaimedUnpackedSize(packed) > SceneByteLimit)
        return {SceneRead::TooLarge, {}};
    uint8_t* data = nullptr;
    uint32_t size = 0;
    uint32_t time = 0;
    const uint32_t code =
        PckUnpack(reinterpret_cast<uint8_t*>(packed.data()), uint32_t(packed.size()), &data, &size, &time);
    const bool unpacked = code == CatErrNone || code == CatErrGzipReservedFlags;
    QByteArray text;
    if (unpacked && data && size <= SceneByteLimit)
        text = QByteArray(reinterpret_cast<const char*>(data), qsizetype(size));
    PckFreeData(data);
    if (!unpacked)
        return {SceneRead::NotPacked, {}};
    if (size > SceneByteLimit)
        return {SceneRead::TooLarge, {}};
    if (text.contains('\0'))
        return {SceneRead::Binary, {}};
    return {SceneRead::Read, ParseSceneNodes(text)};
}

// A part line's node, or an empty string.
QString NodeOf(const QString& line)
{
    const QString partField = line.section(u';', 0, 0);
    const QStringList words = partField.split(u' ', Qt::SkipEmptyParts);
    const QString part = QString::number(words.size() > 1 ? ReadInt(words.at(1)) : 0);
    const QString bodyField = line.section(u';', 1, 1).trimmed();
    if (!bodyField.startsWith(QLatin1String("B ")))
        return {};
    const QString body = bodyField.mid(bodyField.indexOf(u' ') + 1);
    bool isNumber = false;
    body.trimmed().toInt(&isNumber);
    if (isNumber || body.trimmed().isEmpty())
        return {};
    return body + u':' + part;
}

} // namespace

QStringList ParseSceneNodes(QByteArrayView text)
{
    QStringList nodes;
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = text.indexOf('\n', start);
        if (end < 0)
            end = text.size();
        QByteArrayView raw = text.sliced(start, end - start);
        start = end + 1;
        if (raw.endsWith('\r'))
            raw.chop(1);
        if (!raw.startsWith("P "))
            continue; // comments, blank lines and other lines alike
        const QString node = NodeOf(QString::fromUtf8(raw));
        if (!node.isEmpty())
            nodes.append(node);
    }
    return nodes;
}

SceneFileNodes ReadSceneNodes(const QString& path)
{
    if (path.isEmpty())
        return {SceneRead::NoPath, {}};
    // Only a regular file: a pipe or a device could block or never end.
    if (!QFileInfo(path).isFile())
        return {SceneRead::Missing, {}};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {SceneRead::Missing, {}};
    // The size asked for is what the file has, so that a small file costs a
    // small buffer; one byte more tells a file at the limit from a larger one.
    const QByteArray bytes = file.read(std::min(file.size(), SceneByteLimit) + 1);
    if (bytes.size() > SceneByteLimit)
        return {SceneRead::TooLarge, {}};
    if (path.endsWith(QLatin1String(".pbd"), Qt::CaseInsensitive))
        return Unpacked(bytes);
    if (bytes.contains('\0'))
        return {SceneRead::Binary, {}};
    return {SceneRead::Read, ParseSceneNodes(bytes)};
}
