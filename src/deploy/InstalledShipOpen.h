// Opening a ship installed in a game directory for edit mode: a change that a
// crash interrupted is completed first, the registry is read, the ship's block
// found, and the ship's files are brought into the work directory (where the
// form's "<PACKAGE>/" points), from the mod catalog or, for a disabled ship,
// from below ShipInstall/. Scene and model files arrive unpacked under the
// names the registry gives them; the picture goes to ShipPics/.
#pragma once

#include "package/InstalledShips.h"

#include <QString>
#include <QStringList>

enum class InstalledShipOpenStatus
{
    Opened,
    NotFound,     // no game directory, no registry, or no block of the key
    NotFullyRead, // the registry had problems (InstalledShipOpened::Registry.Problems)
    Unfinished,   // an interrupted change could not be completed (Error)
};

struct InstalledShipOpened
{
    InstalledShipOpenStatus Status = InstalledShipOpenStatus::NotFound;
    InstalledShipsRead Registry;
    ShipPackage Record;  // the ship's block, when opened
    QStringList Missing; // names of the ship's files that could not be brought into the work directory
    QString Error;
};

InstalledShipOpened OpenInstalledShip(const QString& gameDir, const ShipKey& key, const QString& workDir);
