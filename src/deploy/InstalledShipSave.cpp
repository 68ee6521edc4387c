#include "deploy/InstalledShipSave.h"

#include "catfs/transfer/GameFile.h"
#include "deploy/InstallJournal.h"
#include "gamedata/ShipLine.h"
#include "package/PackageReader.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

const QString Unchanged = QStringLiteral("<PACKAGE>");

QList<const FileEntry*> EntriesOf(const ShipPackage& record, InstalledFileKind kind)
{
    QList<const FileEntry*> entries;
    if (kind == InstalledFileKind::Files) {
        for (const FileEntry& entry : record.Files)
            entries.append(&entry);
        return entries;
    }
    for (const FileEntry& entry : record.Models)
        entries.append(&entry);
    for (const std::optional<FileEntry>* scene : {&record.SceneFile, &record.CockpitFile})
        if (*scene)
            entries.append(&**scene);
    return entries;
}

// A path typed into the form: no line breaks, slashes between directories.
QString CleanPath(QString path)
{
    path.remove('\r');
    path.remove('\n');
    path.replace('\\', '/');
    return path;
}

uint32_t FileTime(const QFileInfo& info)
{
    const qint64 seconds = info.lastModified().toSecsSinceEpoch();
    return uint32_t(std::clamp<qint64>(seconds, 0, std::numeric_limits<uint32_t>::max()));
}

// "objects/" + the scene field + "." + extension, with "cut/" before a field
// without a directory; nothing when that would leave the game directory.
std::optional<QString> InstalledSceneName(const QString& field, const QString& extension)
{
    QString name = CleanPath(field);
    if (!extension.isEmpty())
        name += '.' + extension;
    if (!name.contains('/'))
        name.prepend(QStringLiteral("cut/"));
    return SafeRelativeName(QStringLiteral("objects/") + name);
}

// A file of a disabled ship lies loose below ShipInstall/; its relative name
// must not lead out of there nor onto the registry or a pending change.
std::optional<QString> LooseTarget(const QString& localPath)
{
    const std::optional<QString> name = SafeRelativeName(localPath);
    if (!name)
        return std::nullopt;
    const QString first = name->section('/', 0, 0);
    const QString pending = QString::fromLatin1(PendingInstallDir).section('/', 1, 1);
    if (first.compare(pending, Qt::CaseInsensitive) == 0 ||
        name->compare(QStringLiteral("ships.dat"), Qt::CaseInsensitive) == 0)
        return std::nullopt;
    return QStringLiteral("ShipInstall/") + *name;
}

// A packed file is stored as it is; everything else is packed on the way in.
bool IsPackedForm(const QString& name)
{
    const QString extension = QFileInfo(name).suffix().toLower();
    return extension == QLatin1String("pbd") || extension == QLatin1String("pbb") ||
           extension == QLatin1String("pck");
}

class ShipSave
{
public:
    ShipSave(const QString& gameDir, QList<InstalledShip>& ships, qsizetype index, InstallTransaction& change,
             InstalledShipSaveResult& result)
        : m_gameDir(gameDir), m_ships(ships), m_index(index), m_change(change), m_result(result)
    {
    }

    ShipPackage& record() { return m_ships[m_index].Record; }

    void copyFields(const ShipPackage& edited)
    {
        ShipPackage& r = record();
        r.Name = edited.Name;
        r.Author = edited.Author;
        r.Version = edited.Version;
        r.Data = edited.Data;
        r.ID = edited.ID;
        r.Shipyards = edited.Shipyards;
        // Unlike a package, the registry keeps the comment on one line.
        r.Comment = QString(edited.Comment).replace('\r', ' ').replace('\n', ' ');
        r.LanguageText = edited.LanguageText;
        r.OriginalDesc = edited.OriginalDesc;
        r.Texts = edited.Texts;
        for (TextEntry& text : r.Texts)
            text.Title.remove(':');
        r.Cockpits = edited.Cockpits;
    }

    bool savePicture(const QString& choice)
    {
        if (choice.startsWith(Unchanged))
            return true;
        const QString source = CleanPath(choice);
        if (source.isEmpty())
            return true;
        QFile probe(source);
        const QFileInfo info(source);
        if (!info.isFile() || !probe.open(QIODevice::ReadOnly)) {
            note(QStringLiteral("the picture %1 cannot be read; the ship keeps its picture").arg(source));
            return true;
        }
        QString fileName = record().Name + '-' + record().Author;
        fileName.remove(' ').remove('/').remove('\\');
        if (!info.suffix().isEmpty())
            fileName += '.' + info.suffix();
        if (!SafeRelativeName(fileName)) {
            note(QStringLiteral(
                "the ship's name and author make no file name for the picture; it keeps its picture"));
            return true;
        }
        if (!m_change.putFile(source, QStringLiteral("ShipInstall/ShipPics/") + fileName))
            return false;
        record().ScreenShot = fileName;
        return true;
    }

    // One scene: `entry` is the record's SceneFile or CockpitFile.
    bool saveScene(const QString& choice, std::optional<FileEntry> ShipPackage::*entry, int field,
                   const char* what)
    {
        if (choice.startsWith(Unchanged))
            return true;
        const std::optional<FileEntry> old = record().*entry;
        const QString source = CleanPath(choice);
        if (source.isEmpty()) {
            (record().*entry).reset();
            retire(old);
            return true;
        }
        QFile probe(source);
        const QFileInfo info(source);
        if (!info.isFile() || !probe.open(QIODevice::ReadOnly)) {
            note(QStringLiteral("the %1 %2 cannot be read; it is left as it was").arg(what, source));
            return true;
        }
        const std::optional<QString> name =
            InstalledSceneName(ShipField(record().Data, field), info.suffix());
        if (!name) {
            note(QStringLiteral("the ship line names no %1 inside the game; it is left as it was").arg(what));
            return true;
        }
        FileEntry candidate;
        candidate.LocalPath = *name;
        candidate.Time = FileTime(info);
        candidate.Size = uint32_t(std::min<qint64>(info.size(), std::numeric_limits<uint32_t>::max()));

        // The ship's own old entry is the one being replaced.
        (record().*entry).reset();
        retire(old);
        if (!IsNewestFile(m_ships, candidate, InstalledFileKind::Models)) {
            note(QStringLiteral(
                     "%1 of the same or a later time is installed already; the ship's %2 is now that file's "
                     "owner's and is not written")
                     .arg(*name, what));
            return true;
        }
        qint64 bytes = 0;
        if (record().Enabled) {
            if (!m_change.putEntry(source, *name, !IsPackedForm(*name), &bytes))
                return false;
        } else {
            // A name below objects/ is never the registry nor a pending change.
            if (!m_change.putFile(source, QStringLiteral("ShipInstall/") + *name, &bytes))
                return false;
        }
        candidate.Size = uint32_t(std::min<qint64>(bytes, std::numeric_limits<uint32_t>::max()));
        record().*entry = candidate;
        return true;
    }

    // Takes out the retired files that no entry of the new registry names.
    void removeUnusedFiles()
    {
        QStringList removed;
        for (const FileEntry& old : m_retired) {
            const QString stored = StoredFileName(old.LocalPath);
            if (removed.contains(stored) ||
                IsFileUsedByOtherShip(m_ships, old.LocalPath, nullptr, InstalledFileKind::Models) ||
                IsFileUsedByOtherShip(m_ships, old.LocalPath, nullptr, InstalledFileKind::Files))
                continue;
            if (record().Enabled) {
                if (!GameFileEntryIsContained(ModCatalogPath(m_gameDir) + "::" + old.LocalPath))
                    continue;
                m_change.removeEntry(old.LocalPath);
            } else if (const std::optional<QString> target = LooseTarget(old.LocalPath)) {
                m_change.removeFile(*target);
            } else {
                continue;
            }
            removed.append(stored);
        }
    }

private:
    void note(const QString& text) { m_result.Notes.append(text); }

    void retire(const std::optional<FileEntry>& old)
    {
        if (old)
            m_retired.append(*old);
    }

    QString m_gameDir;
    QList<InstalledShip>& m_ships;
    qsizetype m_index;
    InstallTransaction& m_change;
    InstalledShipSaveResult& m_result;
    QList<FileEntry> m_retired;
};

QByteArray ReadWhole(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QString StoredFileName(const QString& name)
{
    return GameFilePackedName(QString(name).replace('\\', '/'), false).toUpper();
}

bool IsFileUsedByOtherShip(const QList<InstalledShip>& ships, const QString& name, const ShipPackage* except,
                           InstalledFileKind kind)
{
    const QString stored = StoredFileName(name);
    for (const InstalledShip& ship : ships) {
        const ShipPackage& record = ship.Record;
        if (record.IsTombstone() ||
            (except && record.Name == except->Name && record.Author == except->Author))
            continue;
        for (const FileEntry* entry : EntriesOf(record, kind))
            if (StoredFileName(entry->LocalPath) == stored)
                return true;
    }
    return false;
}

bool IsNewestFile(const QList<InstalledShip>& ships, const FileEntry& entry, InstalledFileKind kind)
{
    bool newest = true;
    for (const InstalledShip& ship : ships) {
        if (ship.Record.IsTombstone())
            continue;
        const QList<const FileEntry*> entries = EntriesOf(ship.Record, kind);
        const auto same = std::find_if(entries.begin(), entries.end(), [&](const FileEntry* other) {
            return other->LocalPath == entry.LocalPath;
        });
        if (same != entries.end() && int32_t((*same)->Time) >= int32_t(entry.Time))
            newest = false;
    }
    return newest;
}

InstalledShipSaveResult SaveInstalledShip(const QString& gameDir, const ShipKey& key,
                                          const ShipPackage& edited, const InstalledShipChoices& choices,
                                          InstalledShipsRead& registry)
{
    InstalledShipSaveResult result;
    auto failed = [&](InstalledShipSaveStatus status, const QString& error) {
        result.Status = status;
        result.Error = error;
        return result;
    };
    if (!registry.Exists)
        return failed(InstalledShipSaveStatus::ShipNotFound,
                      QStringLiteral("the game directory has no registry"));
    if (!registry.Problems.isEmpty())
        return failed(InstalledShipSaveStatus::RegistryNotFullyRead, registry.ProblemText());
    QString error;
    if (FinishPendingInstall(gameDir, &error) == InstallOutcome::Unfinished)
        return failed(InstalledShipSaveStatus::Unfinished,
                      QStringLiteral("an earlier save could not be completed: %1").arg(error));
    const QString registryPath = QDir(gameDir).filePath(QLatin1String(InstalledShipsPath));
    if (InstalledShipsDigest(ReadWhole(registryPath)) != registry.Digest)
        return failed(InstalledShipSaveStatus::RegistryChanged,
                      QStringLiteral("%1 was changed since it was read").arg(registryPath));
    QList<InstalledShip> ships = registry.Registry.Ships;
    const qsizetype index = FindInstalledShip(ships, key);
    if (index < 0)
        return failed(InstalledShipSaveStatus::ShipNotFound,
                      QStringLiteral("the registry has no ship %1 by %2").arg(key.Name, key.Author));

    InstallTransaction change(gameDir);
    ShipSave save(gameDir, ships, index, change, result);
    save.copyFields(edited);
    const bool staged =
        save.savePicture(choices.ScreenShot) &&
        save.saveScene(choices.SceneFile, &ShipPackage::SceneFile, ShipLineField::ShipScene, "ship scene") &&
        save.saveScene(choices.CockpitFile, &ShipPackage::CockpitFile, ShipLineField::CockpitScene,
                       "cockpit scene");
    if (!staged)
        return failed(InstalledShipSaveStatus::NotSaved, change.error());
    save.removeUnusedFiles();

    InstalledShips next = registry.Registry;
    next.Ships = ships;
    const QByteArray bytes = FormatInstalledShips(next);
    if (!change.putRegistry(bytes))
        return failed(InstalledShipSaveStatus::NotSaved, change.error());
    switch (change.commit()) {
    case InstallOutcome::Done:
        break;
    case InstallOutcome::Unfinished:
        return failed(InstalledShipSaveStatus::Unfinished, change.error());
    default:
        return failed(InstalledShipSaveStatus::NotSaved, change.error());
    }
    registry.Registry = next;
    registry.Digest = InstalledShipsDigest(bytes);
    result.Status = InstalledShipSaveStatus::Saved;
    return result;
}
