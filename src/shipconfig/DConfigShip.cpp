#include "shipconfig/DConfigShip.h"

#include "core/ProgramDir.h"

DConfigShip::DConfigShip(QWidget* parent, const char* name) : ConfigShip(parent, name, true) {}

QString DConfigShip::GameDir() const
{
    return GameDirs.isEmpty() ? QString() : GameDirs.first();
}

// Without a game directory there is nothing to read; an empty path must not
// fall back on the current directory's catalogs.
void DConfigShip::LoadShields()
{
    ShieldTable.clear();
    if (!GameDir().isEmpty())
        ShieldTable = LoadShieldTable(GameDir(), ProgramPath("/TShields.txt"));
}

void DConfigShip::LoadLasers()
{
    LaserTable.clear();
    if (!GameDir().isEmpty())
        LaserTable = LoadLaserTable(GameDir(), ProgramPath("/TLaser.txt"));
}

void DConfigShip::LoadMissiles()
{
    MissileTable.clear();
    if (!GameDir().isEmpty())
        MissileTable = LoadMissileTable(GameDir(), ProgramPath("/TMissiles.txt"));
}
