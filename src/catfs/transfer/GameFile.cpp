#include "catfs/transfer/GameFile.h"

#include "catfs/CatDriver.h"

#include <QByteArray>
#include <QFile>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStringList>

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>

namespace {

struct ExtensionRow
{
    const char* plain;
    const char* packed;
    bool model; // used by extraction and removal too, not only by copying in
};

const ExtensionRow kExtensionRows[] = {
    {"bod", "pbd", true},
    {"bob", "pbb", true},
    {"xml", "pck", false},
    {"txt", "pck", false},
};

// Closes a driver handle when it goes out of scope, unless it was closed by hand.
struct CatFileCloser
{
    void operator()(CatFile* file) const { CatClose(file); }
};
using CatFilePtr = std::unique_ptr<CatFile, CatFileCloser>;

// The driver wants 8-bit strings with '\' between directories.
QByteArray DriverPath(const QString& path)
{
    QString native = path;
    native.replace(QLatin1Char('/'), QLatin1Char('\\'));
    return native.toLocal8Bit();
}

// Qt on this system wants '/' between directories.
QString QtPath(const QString& path)
{
    QString result = path;
    result.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return result;
}

bool IsCatalogPath(const QString& path)
{
    return path.contains(QLatin1String("::"));
}

// Reads the whole source device; false when it cannot be opened or read, or
// when it is too large for the driver's 32-bit sizes.
bool ReadWholeSource(QFile& source, QByteArray& content)
{
    if (source.isOpen())
        source.close();
    if (!source.open(QIODevice::ReadOnly))
        return false;
    const qint64 size = source.size();
    if (size > std::numeric_limits<int32_t>::max()) {
        source.close();
        return false;
    }
    content = source.readAll();
    const bool ok = source.error() == QFileDevice::NoError && content.size() == size;
    source.close();
    return ok;
}

bool WriteAll(CatFile* file, const QByteArray& content)
{
    qsizetype done = 0;
    while (done < content.size()) {
        const int32_t written =
            CatWrite(file, content.constData() + done, static_cast<uint32_t>(content.size() - done));
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

// Replaces everything in an open file with `content`.
bool WriteWholeContent(CatFile* file, const QByteArray& content)
{
    if (!CatSeek(file, 0, CatSeekBegin))
        return false;
    // A plain model entry is overwritten where it stands. The driver writes an
    // entry back only when a byte was written, so an empty source writes one
    // byte first and cuts it off again; otherwise the old content would stay.
    if (content.isEmpty() && CatSize(file) > 0) {
        const char zero = 0;
        if (CatWrite(file, &zero, 1) != 1 || !CatSeek(file, 0, CatSeekBegin))
            return false;
    }
    return WriteAll(file, content) && CatTruncate(file);
}

bool ReadAll(CatFile* file, QByteArray& content)
{
    const int32_t size = CatSize(file);
    if (size < 0)
        return false;
    content.resize(size);
    int32_t done = 0;
    while (done < size) {
        const int32_t read = CatRead(file, content.data() + done, static_cast<uint32_t>(size - done));
        if (read <= 0)
            return false;
        done += read;
    }
    return true;
}

// Replaces the disk file `target` as a whole: the bytes go to a temporary file
// beside it that takes the target's place only once everything was written.
bool WriteTarget(const QString& target, const QByteArray& content)
{
    QSaveFile file(QtPath(target));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // An unfinished QSaveFile discards its temporary file when it goes.
    if (file.write(content) != content.size())
        return false;
    return file.commit();
}

// A file or entry as stored: packed content stays packed, the scrambling of
// the .dat is taken off.
struct StoredFile
{
    QString path;
    QByteArray bytes;
};

std::optional<QByteArray> ReadStored(const QString& path)
{
    CatFilePtr file(CatOpen(DriverPath(path).constData(), CatModeRead, 0, CatKindPlain));
    QByteArray bytes;
    if (!file || !ReadAll(file.get(), bytes))
        return std::nullopt;
    return bytes;
}

// Puts back what a failed copy removed. Best effort: the copy has already
// failed, and each file is written whole or not at all.
void RestoreStored(const QList<StoredFile>& files)
{
    for (const StoredFile& file : files) {
        if (IsCatalogPath(file.path)) {
            CatDelete(DriverPath(file.path).constData());
            CatFilePtr entry(CatOpen(DriverPath(file.path).constData(), CatModeWrite, 1, CatKindPlain));
            if (entry && WriteAll(entry.get(), file.bytes))
                CatClose(entry.release());
        } else {
            WriteTarget(file.path, file.bytes);
        }
    }
}

} // namespace

bool GameFileEntryIsContained(const QString& path)
{
    const qsizetype separator = path.indexOf(QLatin1String("::"));
    if (separator < 0)
        return true;
    const QString entry = path.mid(separator + 2);
    static const QRegularExpression components(QStringLiteral("[/\\\\]"));
    return !entry.split(components).contains(QLatin1String(".."));
}

QString GameFilePackedName(const QString& path, bool allRows)
{
    // The file name starts behind the last separator; "::" separates the
    // catalog from an entry that stands in the catalog's root.
    const qsizetype catalogEnd = path.lastIndexOf(QLatin1String("::"));
    const qsizetype nameStart =
        std::max({path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')),
                  catalogEnd < 0 ? catalogEnd : catalogEnd + 1}) +
        1;
    const qsizetype dot = path.lastIndexOf(QLatin1Char('.'));
    if (dot < nameStart)
        return path;
    const QString extension = path.mid(dot + 1).toLower();
    for (const ExtensionRow& row : kExtensionRows) {
        if ((allRows || row.model) && extension == QLatin1String(row.plain))
            return path.left(dot + 1) + QLatin1String(row.packed);
    }
    return path;
}

bool GameFileCopyIn(QFile& source, const QString& path, bool packed)
{
    // Read first: a source that cannot be read must not cost the old entry.
    if (!GameFileEntryIsContained(path))
        return false;
    QByteArray content;
    if (!ReadWholeSource(source, content))
        return false;

    // What the new content replaces is kept as stored, so that a write that
    // fails (a full disk) can put it back instead of losing it.
    const QString stored = packed ? GameFilePackedName(path, true) : path;
    const QString removed = GameFilePackedName(stored, false);
    QStringList replaced{path, stored, removed};
    replaced.removeDuplicates();
    QList<StoredFile> previous;
    for (const QString& name : replaced)
        if (std::optional<QByteArray> bytes = ReadStored(name))
            previous.append({name, std::move(*bytes)});

    // CatOpen never truncates and would take an existing disk file as the
    // start of the new content, so a file on disk goes first.
    if (!IsCatalogPath(path))
        CatDelete(DriverPath(path).constData());
    GameFileRemove(stored);

    const QByteArray driverPath = DriverPath(stored);
    CatFilePtr file(CatOpen(driverPath.constData(), CatModeWrite, 1, packed ? CatKindPacked : CatKindPlain));
    if (!file) {
        RestoreStored(previous);
        return false;
    }
    // Only a plain model entry survives the removal above and opens with
    // content; the image of such an entry is left as it was by a failed write.
    const bool createdHere = CatSize(file.get()) == 0;
    // The content reaches the disk only when the file closes.
    if (WriteWholeContent(file.get(), content) && CatClose(file.release()))
        return true;
    // Nothing half-written stays behind: a file or entry made here goes, and
    // what stood before comes back.
    file.reset();
    if (createdHere)
        CatDelete(driverPath.constData());
    RestoreStored(previous);
    return false;
}

bool GameFileExtract(const QString& source, const QString& target, bool usePackedName, bool raw)
{
    if (!GameFileEntryIsContained(source))
        return false;
    const QString path = usePackedName ? GameFilePackedName(source, false) : source;
    QByteArray content;
    {
        CatFilePtr file(
            CatOpen(DriverPath(path).constData(), CatModeRead, 0, raw ? CatKindPlain : CatKindAuto));
        if (!file || !ReadAll(file.get(), content))
            return false;
    }
    return WriteTarget(target, content);
}

bool GameFileRemove(const QString& path)
{
    if (!GameFileEntryIsContained(path))
        return false;
    return CatDelete(DriverPath(GameFilePackedName(path, false)).constData());
}

QList<GameFileListEntry> GameFileList(const QString& catalogPath)
{
    QList<GameFileListEntry> entries;
    CatArchiveHandle* archive = CatOpenArchive(DriverPath(catalogPath).constData(), 0);
    if (!archive)
        return entries;
    CatFindData data{};
    if (CatFind* find = CatFindFirst(archive, "*", &data)) {
        do {
            entries.append({QString::fromLocal8Bit(data.name), static_cast<int32_t>(data.size)});
        } while (CatFindNext(find, &data));
        CatFindClose(find);
    }
    CatCloseArchive(archive);
    return entries;
}

void PckFileToPlain(const QString& source, const QString& target)
{
    uint8_t* data = nullptr;
    uint32_t size = 0;
    uint32_t time = 0;
    const uint32_t code = PckReadFile(DriverPath(source).constData(), &data, &size, &time);
    QByteArray content;
    if ((code == CatErrNone || code == CatErrGzipReservedFlags) && data)
        content = QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    PckFreeData(data);
    WriteTarget(target, content);
}
