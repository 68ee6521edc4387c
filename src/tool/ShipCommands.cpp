// The command on installed ships: ship-install puts a ship package into a game
// directory as an installed ship, through the same save as the main window's
// edit mode. The ship's block in ShipInstall/ships.dat takes the package's
// record (a new block, enabled, when the registry has none of its author and
// name; a new registry, mod "Hullwright", when there is none), its scenes go
// into mods/Hullwright.cat and its picture into ShipInstall/ShipPics/.
//
// A package's scenes are stored packed; they are unpacked before the save,
// so the registry records the plain scene's size. Models, other files and
// scripts are the business of the game's own installer: a package that
// brings any is refused.
#include "Commands.h"

#include "deploy/InstallJournal.h"
#include "deploy/InstalledShipSave.h"
#include "package/InstalledShips.h"
#include "package/PackageReader.h"

#include "catfs/transfer/GameFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>

namespace {

const QString NewRegistryMod = QStringLiteral("Hullwright");

// The plain form of an unpacked scene: a .pbd/.pbb becomes a .bod/.bob beside
// it with the same modification time. Empty when it cannot be unpacked.
QString PlainScene(const QString& path)
{
    const QFileInfo info(path);
    const QString extension = info.suffix().toLower();
    if (extension != QLatin1String("pbd") && extension != QLatin1String("pbb"))
        return path;
    const QString plain =
        info.path() + '/' + info.completeBaseName() +
        (extension == QLatin1String("pbd") ? QStringLiteral(".bod") : QStringLiteral(".bob"));
    if (!GameFileExtract(path, plain, false, false))
        return {};
    QFile file(plain);
    if (file.open(QIODevice::ReadWrite))
        file.setFileTime(info.lastModified(), QFileDevice::FileModificationTime);
    return plain;
}

int ShipInstall(const Invocation& call)
{
    const QString& gameDir = call.arguments[0];
    const QString& packagePath = call.arguments[1];
    if (!QFileInfo(QDir(gameDir).filePath("x3.exe")).isFile())
        return Fail(call, QStringLiteral("%1: not a game directory (it has no x3.exe)").arg(gameDir));

    QTemporaryDir unpacked;
    QFile package(packagePath);
    if (!unpacked.isValid() || !package.open(QIODevice::ReadOnly))
        return Fail(call, QStringLiteral("%1: cannot open the package").arg(packagePath));
    ShipPackage record;
    if (!ReadPackage(package, unpacked.path(), record, "Scripts", false).ok)
        return Fail(call, QStringLiteral("%1: not a readable ship package").arg(packagePath));
    if (!record.Models.isEmpty() || !record.Files.isEmpty() || !record.Scripts.isEmpty())
        return Fail(call,
                    QStringLiteral("%1: the package brings models, other files or scripts, which the game's "
                                   "installer puts in place, not this command")
                        .arg(packagePath));

    QString error;
    if (FinishPendingInstall(gameDir, &error) == InstallOutcome::Unfinished)
        return Fail(call,
                    QStringLiteral("an earlier change of %1 could not be completed: %2").arg(gameDir, error));
    InstalledShipsRead registry = ReadInstalledShips(gameDir);
    if (!registry.Problems.isEmpty())
        return Fail(call, QStringLiteral("%1 is not rewritten, since it could not be fully read:\n%2")
                              .arg(QDir(gameDir).filePath(InstalledShipsPath), registry.ProblemText()));
    if (!registry.Exists) {
        registry.Exists = true;
        registry.Registry.ModName = NewRegistryMod;
    }

    const ShipKey key{record.Author, record.Name};
    qsizetype index = FindInstalledShip(registry.Registry.Ships, key);
    if (index < 0) {
        InstalledShip ship;
        ship.Record.Name = record.Name;
        ship.Record.Author = record.Author;
        ship.Record.Enabled = true;
        ship.Record.GlobalEnabled = true;
        registry.Registry.Ships.append(ship);
        index = registry.Registry.Ships.size() - 1;
    }
    ShipPackage& installed = registry.Registry.Ships[index].Record;
    installed.Web = record.Web;
    installed.Mirror1 = record.Mirror1;
    installed.Mirror2 = record.Mirror2;
    installed.ExistingShip = record.ExistingShip;
    installed.Dummies = record.Dummies;
    installed.Components = record.Components;

    InstalledShipChoices choices;
    if (!record.ScreenShot.isEmpty())
        choices.ScreenShot = unpacked.filePath("ShipPics/" + record.ScreenShot);
    for (const auto& [scene, choice] : {std::pair{&record.SceneFile, &choices.SceneFile},
                                        std::pair{&record.CockpitFile, &choices.CockpitFile}}) {
        if (!*scene)
            continue;
        *choice = PlainScene(unpacked.filePath((*scene)->LocalPath));
        if (choice->isEmpty())
            return Fail(call, QStringLiteral("%1: cannot unpack %2").arg(packagePath, (*scene)->LocalPath));
    }
    ShipPackage edited = record;
    edited.Comment = CommentFromRecord(record.Comment);

    const InstalledShipSaveResult saved = SaveInstalledShip(gameDir, key, edited, choices, registry);
    for (const QString& note : saved.Notes)
        std::fprintf(stderr, "hwtool: ship-install: %s\n", note.toLocal8Bit().constData());
    if (saved.Status != InstalledShipSaveStatus::Saved)
        return Fail(call, saved.Error);
    std::printf("installed %s by %s in %s\n", qPrintable(record.Name), qPrintable(record.Author),
                qPrintable(gameDir));
    return ExitSuccess;
}

const SubCommand kShipCommands[] = {
    {"ship-install",
     "GAMEDIR PKG",
     "install a ship package in a game directory: its record into ShipInstall/ships.dat, its scenes into "
     "mods/Hullwright.cat, its picture into ShipInstall/ShipPics/",
     2,
     {},
     ShipInstall},
};

} // namespace

std::span<const SubCommand> ShipCommands()
{
    return kShipCommands;
}
