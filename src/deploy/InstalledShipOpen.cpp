#include "deploy/InstalledShipOpen.h"

#include "catfs/transfer/GameFile.h"
#include "deploy/InstallJournal.h"
#include "package/PackageReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {

bool CopyWhole(const QString& source, const QString& target)
{
    QFile in(source);
    QSaveFile out(target);
    if (!in.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly))
        return false;
    const QByteArray bytes = in.readAll();
    return in.error() == QFileDevice::NoError && out.write(bytes) == bytes.size() && out.commit();
}

// Brings one file of the ship to `workDir`/`name`.
bool FetchFile(const QString& gameDir, const ShipPackage& record, const QString& name, const QString& workDir)
{
    const std::optional<QString> safe = SafeRelativeName(name);
    if (!safe)
        return false;
    const QString target = QDir(workDir).filePath(*safe);
    if (!QDir().mkpath(QFileInfo(target).absolutePath()))
        return false;
    if (!record.Enabled)
        return CopyWhole(QDir(gameDir).filePath(QStringLiteral("ShipInstall/") + *safe), target);
    // A model is stored under its packed name; one stored plain is found too.
    const QString entry = ModCatalogPath(gameDir) + "::" + *safe;
    return GameFileExtract(entry, target, true, false) || GameFileExtract(entry, target, false, false);
}

} // namespace

InstalledShipOpened OpenInstalledShip(const QString& gameDir, const ShipKey& key, const QString& workDir)
{
    InstalledShipOpened opened;
    if (!QFileInfo(gameDir).isDir())
        return opened;
    if (FinishPendingInstall(gameDir, &opened.Error) == InstallOutcome::Unfinished) {
        opened.Status = InstalledShipOpenStatus::Unfinished;
        return opened;
    }
    opened.Registry = ReadInstalledShips(gameDir);
    if (!opened.Registry.Exists)
        return opened;
    if (!opened.Registry.Problems.isEmpty()) {
        opened.Status = InstalledShipOpenStatus::NotFullyRead;
        return opened;
    }
    const qsizetype index = FindInstalledShip(opened.Registry.Registry.Ships, key);
    if (index < 0)
        return opened;
    opened.Status = InstalledShipOpenStatus::Opened;
    opened.Record = opened.Registry.Registry.Ships[index].Record;

    const ShipPackage& record = opened.Record;
    QList<FileEntry> files;
    for (const std::optional<FileEntry>& scene : {record.SceneFile, record.CockpitFile})
        if (scene)
            files.append(*scene);
    files += record.Models + record.Files;
    for (const FileEntry& file : files)
        if (!FetchFile(gameDir, record, file.LocalPath, workDir))
            opened.Missing.append(file.LocalPath);
    if (!record.ScreenShot.isEmpty()) {
        const QString picture = QStringLiteral("ShipPics/") + record.ScreenShot;
        const std::optional<QString> safe = SafeRelativeName(picture);
        const bool copied = safe && QDir(workDir).mkpath(QStringLiteral("ShipPics")) &&
                            CopyWhole(QDir(gameDir).filePath(QStringLiteral("ShipInstall/") + *safe),
                                      QDir(workDir).filePath(*safe));
        if (!copied)
            opened.Missing.append(picture);
    }
    return opened;
}
