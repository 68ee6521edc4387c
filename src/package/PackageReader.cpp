#include "package/PackageReader.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStorageInfo>

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t kStreamBufferSize = 250000; // one piece of a block
constexpr uint64_t kBlockPiece = 250000;
// A line longer than this is no line of a package: the stream is damaged.
constexpr int kLongestLine = 16 << 20;

const QByteArray PackagerKey = "Packager:";

bool IsPackagerKey(const QByteArray& key)
{
    // A stray character in front of the key (such as a byte-order mark's last
    // byte) is tolerated.
    return key == PackagerKey || (key.size() == PackagerKey.size() + 1 && key.endsWith(PackagerKey));
}

QByteArray FirstWord(const QByteArray& line)
{
    const int blank = line.indexOf(' ');
    return blank < 0 ? line : line.left(blank);
}

// Whether the file holds the plain stream: its first word is "Packager:".
bool StartsAsPlainStream(QFile& file)
{
    QByteArray head = file.peek(64);
    const int end = head.indexOf('\n');
    if (end >= 0)
        head.truncate(end);
    if (head.endsWith('\r'))
        head.chop(1);
    return IsPackagerKey(FirstWord(head));
}

// "time size name": the name is all behind the second blank.
FileEntry ParseFileLine(const QString& value)
{
    FileEntry entry;
    entry.Time = value.section(' ', 0, 0).toUInt();
    entry.Size = value.section(' ', 1, 1).toUInt();
    const int first = value.indexOf(' ');
    const int second = first < 0 ? -1 : value.indexOf(' ', first + 1);
    entry.LocalPath = second < 0 ? QString() : value.mid(second + 1);
    return entry;
}

uint64_t FreeSpaceIn(const QString& directory)
{
    QString existing = QFileInfo(directory).absoluteFilePath();
    while (!QFileInfo(existing).exists() && existing.contains('/'))
        existing = QFileInfo(existing).absolutePath();
    const QStorageInfo storage(existing);
    return storage.isValid() ? uint64_t(std::max<qint64>(storage.bytesAvailable(), 0)) : UINT64_MAX;
}

ReadFailure FailureOf(LzmaStatus status)
{
    switch (status) {
    case LzmaStatus::Ok:
        return ReadFailure::None;
    case LzmaStatus::NotLzma:
        return ReadFailure::NotAPackage;
    case LzmaStatus::TooLarge:
        return ReadFailure::TooLarge;
    case LzmaStatus::ReadFailed:
        return ReadFailure::CannotOpen;
    case LzmaStatus::WriteFailed:
        return ReadFailure::CannotWrite;
    default:
        return ReadFailure::Damaged;
    }
}

// Reads the lines of one package stream into a record.
class RecordReader
{
public:
    RecordReader(PackageStream& stream, ShipPackage& record, const QString& baseDir, const QString& scriptDir,
                 bool intoWorkDir)
        : m_stream(stream), m_record(record), m_scriptDir(baseDir + "/" + scriptDir),
          m_targetDir(intoWorkDir ? baseDir + "/ShipInstall" : baseDir)
    {
    }

    // Reads to the end of the stream, or to the first failure.
    PackageReadResult run()
    {
        QDir().mkpath(m_scriptDir);
        QDir().mkpath(m_targetDir);
        QByteArray line;
        while (m_result.failure == ReadFailure::None && m_result.check == PackageCheck::Passed &&
               m_stream.readLine(line)) {
            if (!line.isEmpty())
                readLine(QString::fromLocal8Bit(line));
        }
        if (m_stream.failed() && m_result.failure == ReadFailure::None)
            m_result.failure = ReadFailure::Damaged;
        if (m_result.failure != ReadFailure::None)
            return m_result;
        if (m_result.check == PackageCheck::Passed) {
            if (!m_record.Name.isEmpty() && !m_record.Author.isEmpty())
                m_result.ok = true;
            else
                m_result.check = PackageCheck::MissingIdentity;
        }
        return m_result;
    }

private:
    void readLine(const QString& line)
    {
        const int blank = line.indexOf(' ');
        const QString key = blank < 0 ? line : line.left(blank);
        const QString value = blank < 0 ? QString() : line.mid(blank + 1);

        if (IsPackagerKey(key.toLatin1())) {
            if (value.trimmed().toDouble() > 1.0)
                m_result.check = PackageCheck::NewerFormat;
        } else if (key == "Name:") {
            m_record.Name = value;
        } else if (key == "Author:") {
            m_record.Author = value;
        } else if (key == "ID:") {
            m_record.ID = value;
        } else if (key == "Version:") {
            m_record.Version = value;
        } else if (key == "Data:") {
            m_record.Data = value;
        } else if (key == "Web:") {
            m_record.Web = value;
        } else if (key == "Mirror1:") {
            m_record.Mirror1 = value;
        } else if (key == "Mirror2:") {
            m_record.Mirror2 = value;
        } else if (key == "LanguageText") {
            m_record.LanguageText = true;
        } else if (key == "ExistingShip") {
            m_record.ExistingShip = true;
        } else if (key == "OriginalDesc:") {
            m_record.OriginalDesc = value.trimmed().toInt();
        } else if (key == "Comment:") {
            m_record.Comment = value; // kept in its one-line form; the form turns the tokens back
        } else if (key == "ScreenShot:") {
            readScreenShot(value);
        } else if (key == "Text:") {
            m_record.Texts.append(
                TextEntry{value.section(':', 0, 0).toInt(), value.section(':', 1, 1), value.section(':', 2)});
        } else if (key == "SceneFile:" || key == "CockpitFile:") {
            FileEntry entry = ParseFileLine(value);
            if (unpack(entry, m_targetDir))
                (key == "SceneFile:" ? m_record.SceneFile : m_record.CockpitFile) = entry;
        } else if (key == "Model:" || key == "Files:") {
            FileEntry entry = ParseFileLine(value);
            if (unpack(entry, m_targetDir))
                (key == "Model:" ? m_record.Models : m_record.Files).append(entry);
        } else if (key == "Script:") {
            FileEntry entry = ParseFileLine(value);
            if (unpack(entry, m_scriptDir))
                m_record.Scripts.append(entry);
        } else if (key == "Dummy:") {
            DummyEntry dummy{value.section(';', 0, 0), value.section(';', 1)};
            if (!dummy.Data.endsWith(';'))
                dummy.Data += ';';
            m_record.Dummies.append(dummy);
        } else if (key == "Component:") {
            m_record.Components.append(
                ComponentEntry{value.section(';', 0, 0), value.section(';', 1, 1), value.section(';', 2)});
        } else if (key == "Cockpit:") {
            m_record.Cockpits.append(value);
        } else if (key == "Shipyard:") {
            const QStringList flags = value.split(';');
            for (int i = 0; i < ShipyardCount && i < flags.size(); ++i)
                if (flags[i] == "1")
                    m_record.Shipyards[i] = true;
        }
    }

    // Checks the entry's name and the length of its block, then unpacks it.
    bool unpack(FileEntry& entry, const QString& directory)
    {
        const std::optional<QString> name = SafeRelativeName(entry.LocalPath);
        if (!name) {
            fail(ReadFailure::UnsafeName, entry.LocalPath);
            return false;
        }
        entry.LocalPath = *name;
        if (!checkBlockLength(entry.Size, entry.LocalPath))
            return false;
        if (!UnpackBlock(entry, directory, m_stream)) {
            fail(m_stream.failed() ? ReadFailure::Damaged : ReadFailure::CannotWrite, entry.LocalPath);
            return false;
        }
        return true;
    }

    bool checkBlockLength(uint64_t size, const QString& name)
    {
        const std::optional<uint64_t> left = m_stream.remaining();
        if (left && size > *left) {
            fail(ReadFailure::Damaged, name);
            return false;
        }
        return true;
    }

    // The picture is named after the ship, so Name: and Author: come before it.
    void readScreenShot(const QString& value)
    {
        const uint64_t size = value.section(' ', 0, 0).toULongLong();
        QString base = m_record.Name + "-" + m_record.Author;
        base.remove(QRegularExpression(QStringLiteral("[ /\\\\]")));
        const QString fileName = base + "." + value.section(' ', 1, 1);
        const std::optional<QString> name = SafeRelativeName("ShipPics/" + fileName);
        if (!name || name->count('/') != 1) {
            fail(ReadFailure::UnsafeName, fileName);
            return;
        }
        if (!checkBlockLength(size, fileName))
            return;
        QDir(m_targetDir).mkpath("ShipPics");
        FileEntry picture;
        picture.Size = uint32_t(std::min<uint64_t>(size, UINT32_MAX));
        picture.LocalPath = *name;
        if (uint64_t(picture.Size) != size) {
            fail(ReadFailure::Damaged, fileName);
            return;
        }
        if (!UnpackBlock(picture, m_targetDir, m_stream)) {
            fail(m_stream.failed() ? ReadFailure::Damaged : ReadFailure::CannotWrite, fileName);
            return;
        }
        m_record.ScreenShot = fileName;
    }

    void fail(ReadFailure failure, const QString& entry)
    {
        m_result.failure = failure;
        m_result.entry = entry;
    }

    PackageStream& m_stream;
    ShipPackage& m_record;
    QString m_scriptDir;
    QString m_targetDir;
    PackageReadResult m_result;
};

} // namespace

// --- PackageStream

PackageStream::PackageStream(RawRead read, std::optional<uint64_t> total)
    : m_read(std::move(read)), m_total(total), m_buffer(kStreamBufferSize)
{
}

std::optional<uint64_t> PackageStream::remaining() const
{
    if (!m_total)
        return std::nullopt;
    return *m_total > m_position ? *m_total - m_position : 0;
}

bool PackageStream::fill()
{
    if (m_begin < m_end)
        return true;
    if (m_ended || m_failed)
        return false;
    m_begin = m_end = 0;
    const int64_t got = m_read(m_buffer.data(), int64_t(m_buffer.size()));
    if (got < 0) {
        m_failed = true;
        return false;
    }
    if (got == 0) {
        m_ended = true;
        return false;
    }
    m_end = size_t(got);
    return true;
}

bool PackageStream::readLine(QByteArray& line)
{
    line.clear();
    bool any = false;
    while (fill()) {
        any = true;
        const char* start = m_buffer.data() + m_begin;
        const char* feed = static_cast<const char*>(std::memchr(start, '\n', m_end - m_begin));
        const size_t length = feed ? size_t(feed - start) : m_end - m_begin;
        if (line.size() + int64_t(length) > kLongestLine) {
            m_failed = true;
            return false;
        }
        line.append(start, qsizetype(length));
        m_begin += length;
        m_position += length;
        if (feed) {
            ++m_begin;
            ++m_position;
            if (line.endsWith('\r'))
                line.chop(1);
            return true;
        }
    }
    if (m_failed)
        return false;
    if (line.endsWith('\r'))
        line.chop(1);
    return any; // a last line without its line feed
}

bool PackageStream::readBlock(uint64_t size, QIODevice* target)
{
    std::vector<char> piece;
    while (size > 0) {
        if (m_begin < m_end) {
            const size_t take = size_t(std::min<uint64_t>(size, m_end - m_begin));
            if (target && target->write(m_buffer.data() + m_begin, int64_t(take)) != int64_t(take))
                return false;
            m_begin += take;
            m_position += take;
            size -= take;
            continue;
        }
        if (m_ended || m_failed)
            break;
        // Large blocks bypass the line buffer.
        if (piece.empty())
            piece.resize(kBlockPiece);
        const int64_t got = m_read(piece.data(), int64_t(std::min<uint64_t>(size, kBlockPiece)));
        if (got < 0) {
            m_failed = true;
            break;
        }
        if (got == 0) {
            m_ended = true;
            break;
        }
        if (target && target->write(piece.data(), got) != got)
            return false;
        m_position += uint64_t(got);
        size -= uint64_t(got);
    }
    if (size > 0)
        m_failed = true; // the stream ended inside the block
    return size == 0;
}

// --- Free functions

std::optional<QString> SafeRelativeName(const QString& name)
{
    QString clean = name;
    clean.replace('\\', '/');
    if (clean.isEmpty() || clean.startsWith('/'))
        return std::nullopt;
    // A control character names no file that can be made: a zero cuts the
    // name short on disk, so another file than the named one would be written.
    if (std::any_of(clean.cbegin(), clean.cend(), [](QChar c) { return c.unicode() < 0x20; }))
        return std::nullopt;
    if (clean.size() >= 2 && clean[1] == ':' && clean[0].isLetter())
        return std::nullopt;
    const QStringList parts = clean.split('/');
    if (parts.contains(QStringLiteral("..")) || parts.last().isEmpty())
        return std::nullopt;
    return clean;
}

bool UnpackBlock(const FileEntry& entry, const QString& directory, PackageStream& source)
{
    const std::optional<uint64_t> left = source.remaining();
    if (left && entry.Size > *left) {
        source.readBlock(*left, nullptr); // the block runs past the end: the stream is damaged
        return false;
    }
    const QString path = directory + "/" + entry.LocalPath;
    QDir(directory).mkpath(QFileInfo(entry.LocalPath).path());
    QSaveFile target(path);
    if (!target.open(QIODevice::WriteOnly))
        return false;
    if (!source.readBlock(entry.Size, &target) || !target.commit())
        return false; // an uncommitted file vanishes: no half file is left
    if (entry.Time != 0) {
        QFile written(path);
        if (written.open(QIODevice::ReadWrite | QIODevice::Append))
            written.setFileTime(QDateTime::fromSecsSinceEpoch(entry.Time), QFileDevice::FileModificationTime);
    }
    return true;
}

PackageReadResult ReadPackage(QFile& file, const QString& baseDir, ShipPackage& record,
                              const QString& scriptDir, bool intoWorkDir)
{
    PackageReadResult failed;
    if (!file.isOpen() && !file.open(QIODevice::ReadOnly)) {
        failed.failure = ReadFailure::CannotOpen;
        return failed;
    }
    record.SceneFile.reset();
    record.CockpitFile.reset();

    PackageReadResult result;
    if (StartsAsPlainStream(file)) {
        // The plain stream: its first line is read and passed over by the loop.
        PackageStream stream([&](char* data, int64_t size) { return int64_t(file.read(data, size)); },
                             uint64_t(file.size()));
        RecordReader reader(stream, record, baseDir, scriptDir, intoWorkDir);
        result = reader.run();
    } else {
        LzmaDecoder decoder(file);
        const LzmaStatus opened = decoder.open(std::min(MaxPackageStreamSize, FreeSpaceIn(baseDir)));
        if (opened != LzmaStatus::Ok) {
            file.close();
            failed.failure = FailureOf(opened);
            return failed;
        }
        std::optional<uint64_t> total;
        if (decoder.header().sizeKnown())
            total = decoder.header().uncompressedSize;
        PackageStream stream([&](char* data, int64_t size) { return decoder.read(data, size); }, total);
        RecordReader reader(stream, record, baseDir, scriptDir, intoWorkDir);
        result = reader.run();
        if (result.failure == ReadFailure::Damaged && decoder.status() != LzmaStatus::Ok)
            result.failure = FailureOf(decoder.status());
    }
    file.close();
    return result;
}

QString PackageReadFailureText(const PackageReadResult& read)
{
    if (read.check == PackageCheck::MissingIdentity)
        return QStringLiteral("the package has no Name: or no Author: value");
    if (read.check == PackageCheck::NewerFormat)
        return QStringLiteral("the package was written in a newer format (Packager: above 1)");
    switch (read.failure) {
    case ReadFailure::CannotOpen:
        return QStringLiteral("cannot open or read the file");
    case ReadFailure::NotAPackage:
        return QStringLiteral("not a ship package: neither a package stream nor LZMA data");
    case ReadFailure::Damaged:
        return read.entry.isEmpty()
                   ? QStringLiteral("the package is damaged or truncated")
                   : QStringLiteral("the package is damaged or truncated at %1").arg(read.entry);
    case ReadFailure::TooLarge:
        return QStringLiteral("the package declares more data than fits or than a package can hold");
    case ReadFailure::UnsafeName:
        return QStringLiteral("the package names a file outside the folder it unpacks into: %1")
            .arg(read.entry);
    case ReadFailure::CannotWrite:
        return QStringLiteral("cannot write the unpacked file %1").arg(read.entry);
    case ReadFailure::None:
        break;
    }
    return QStringLiteral("the package could not be read");
}
