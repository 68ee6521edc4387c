// The commands on catalogs (cat-*) and packed files (pck-*), on top of the
// transfer layer; only the making of a new catalog and the removal of an entry
// by its exact name go to the driver directly. Where the layer gives only
// false, the driver's last error or a check made here beforehand names the
// reason.
#include "Commands.h"

#include "catfs/CatDriver.h"
#include "catfs/transfer/GameFile.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

// The driver takes 8-bit paths with backslashes.
QByteArray DriverPath(const QString& path)
{
    return QString(path).replace(QLatin1Char('/'), QLatin1Char('\\')).toLocal8Bit();
}

QString EntryPath(const QString& catalog, const QString& entry)
{
    return catalog + QStringLiteral("::") + entry;
}

// A path for a disk file or a catalog must not hold "::", which would make
// the driver read it as a catalog entry.
bool HoldsEntrySeparator(const QString& path)
{
    return path.contains(QLatin1String("::"));
}

int RefuseEntrySeparator(const Invocation& call, const QString& path)
{
    return Fail(call, QStringLiteral("%1: a file path must not hold '::'").arg(path));
}

// Checks the catalog argument and the entry name of a cat-* command; gives
// an empty string when both are usable, else the reason.
QString CatalogArgumentProblem(const QString& catalog, const QString& entry = {})
{
    if (HoldsEntrySeparator(catalog))
        return QStringLiteral("%1: a catalog path must not hold '::'").arg(catalog);
    if (!GameFileEntryIsContained(EntryPath(catalog, entry)))
        return QStringLiteral("%1: an entry name must not hold a '..' component").arg(entry);
    return {};
}

// Names why a disk file can't be read, or gives an empty string when it can.
QString UnreadableReason(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists())
        return QStringLiteral("%1: File does not exist.").arg(path);
    if (!info.isFile())
        return QStringLiteral("%1: not a regular file").arg(path);
    if (!info.isReadable())
        return QStringLiteral("%1: cannot be read").arg(path);
    return {};
}

int CatList(const Invocation& call)
{
    const QString& catalog = call.arguments[0];
    if (const QString problem = CatalogArgumentProblem(catalog); !problem.isEmpty())
        return Fail(call, problem);
    const QList<GameFileListEntry> entries = GameFileList(catalog);
    // An empty list is either an empty catalog or one that could not be opened.
    if (entries.isEmpty() && CatLastError() != CatErrNone)
        return Fail(call, QStringLiteral("%1: %2").arg(catalog, DriverReason({})));
    QByteArray text;
    for (const GameFileListEntry& entry : entries)
        text += entry.name.toLocal8Bit() + '\t' + QByteArray::number(entry.size) + '\n';
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
    return ExitSuccess;
}

int CatExtract(const Invocation& call)
{
    const QString& catalog = call.arguments[0];
    const QString& target = call.arguments[2];
    if (const QString problem = CatalogArgumentProblem(catalog, call.arguments[1]); !problem.isEmpty())
        return Fail(call, problem);
    if (HoldsEntrySeparator(target))
        return RefuseEntrySeparator(call, target);
    const QString source = EntryPath(catalog, call.arguments[1]);
    if (!GameFileExtract(source, target, false, call.has("--raw")))
        return Fail(call, QStringLiteral("%1: %2").arg(
                              source, DriverReason(QStringLiteral("cannot write %1").arg(target))));
    return ExitSuccess;
}

int CatAdd(const Invocation& call)
{
    const QString& catalog = call.arguments[0];
    const QString& file = call.arguments[2];
    const bool packed = call.has("--packed");
    if (const QString problem = CatalogArgumentProblem(catalog, call.arguments[1]); !problem.isEmpty())
        return Fail(call, problem);
    if (const QString reason = UnreadableReason(file); !reason.isEmpty())
        return Fail(call, reason);

    // The transfer layer adds entries, not catalogs: make the pair if missing.
    CatArchiveHandle* archive = CatOpenArchive(DriverPath(catalog).constData(), 1);
    if (!archive)
        return Fail(
            call, QStringLiteral("%1: cannot open or create the catalog: %2").arg(catalog, DriverReason({})));
    CatCloseArchive(archive);

    const QString target = EntryPath(catalog, call.arguments[1]);
    QFile source(file);
    if (!GameFileCopyIn(source, target, packed))
        return Fail(call, QStringLiteral("%1: %2").arg(
                              target, DriverReason(QStringLiteral("cannot read %1").arg(file))));
    const QString stored = packed ? GameFilePackedName(call.arguments[1], true) : call.arguments[1];
    if (stored != call.arguments[1])
        std::printf("stored as %s\n", stored.toLocal8Bit().constData());
    return ExitSuccess;
}

// Removes the entry of exactly the given name, as cat-list shows it and
// cat-extract takes it. (The transfer layer's removal would turn a .bob or .bod
// into its packed name, and a plain model entry could not be removed at all.)
int CatRemove(const Invocation& call)
{
    const QString& catalog = call.arguments[0];
    if (const QString problem = CatalogArgumentProblem(catalog, call.arguments[1]); !problem.isEmpty())
        return Fail(call, problem);
    const QString target = EntryPath(catalog, call.arguments[1]);
    if (!CatDelete(DriverPath(target).constData()))
        return Fail(call, QStringLiteral("%1: %2").arg(target, DriverReason(QStringLiteral("not removed"))));
    return ExitSuccess;
}

bool StartsAsPackedFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(3);
    return PckIsPacked(reinterpret_cast<const uint8_t*>(head.constData()), static_cast<size_t>(head.size()));
}

int PckUnpackFile(const Invocation& call)
{
    const QString& source = call.arguments[0];
    const QString& target = call.arguments[1];
    for (const QString& path : {source, target})
        if (HoldsEntrySeparator(path))
            return RefuseEntrySeparator(call, path);
    if (const QString reason = UnreadableReason(source); !reason.isEmpty())
        return Fail(call, reason);
    // Refused here rather than copied: extraction passes plain files on as
    // they are, and the target would be overwritten with no unpacking done.
    if (!StartsAsPackedFile(source))
        return Fail(call, QStringLiteral("%1: not a packed file").arg(source));
    // Extraction rather than PckFileToPlain: it leaves an existing target
    // alone when the source can't be unpacked, and the driver names the reason.
    if (!GameFileExtract(source, target, false, false))
        return Fail(call, QStringLiteral("%1: %2").arg(
                              source, DriverReason(QStringLiteral("cannot write %1").arg(target))));
    return ExitSuccess;
}

int PckPackFile(const Invocation& call)
{
    const QString& source = call.arguments[0];
    const QString& target = call.arguments[1];
    for (const QString& path : {source, target})
        if (HoldsEntrySeparator(path))
            return RefuseEntrySeparator(call, path);
    if (const QString reason = UnreadableReason(source); !reason.isEmpty())
        return Fail(call, reason);
    // Packing stores a .xml, .txt, .bod or .bob under its packed extension;
    // the tool writes only where the user said, so such a target is refused.
    if (const QString stored = GameFilePackedName(target, true); stored != target)
        return Fail(call, QStringLiteral(
                              "%1: a packed file of this extension is stored as %2; name that as the target")
                              .arg(target, stored));
    QFile file(source);
    if (!GameFileCopyIn(file, target, true))
        return Fail(call, QStringLiteral("%1: %2").arg(
                              target, DriverReason(QStringLiteral("cannot read %1").arg(source))));
    return ExitSuccess;
}

const SubCommand kCatalogCommands[] = {
    {"cat-list", "CAT", "list the entries of a catalog: name, TAB, size in the .dat", 1, {}, CatList},
    {"cat-extract",
     "CAT ENTRY OUT [--raw]",
     "copy an entry to a file, unpacked (--raw: as stored, packed form kept)",
     3,
     {QStringLiteral("--raw")},
     CatExtract},
    {"cat-add",
     "CAT ENTRY FILE [--packed]",
     "add or replace an entry (--packed: store packed, .xml/.txt as .pck, .bod as .pbd, .bob as .pbb); "
     "creates the catalog when missing",
     3,
     {QStringLiteral("--packed")},
     CatAdd},
    {"cat-rm", "CAT ENTRY", "remove the entry of exactly this name", 2, {}, CatRemove},
    {"pck-unpack", "IN OUT", "unpack a packed file", 2, {}, PckUnpackFile},
    {"pck-pack", "IN OUT", "pack a file", 2, {}, PckPackFile},
};

} // namespace

std::span<const SubCommand> CatalogCommands()
{
    return kCatalogCommands;
}
