// The ship configuration dialog's working class.
//
// For now it holds only the game's weapon tables that the dialog's lists and
// combo boxes are built from; turning a ship line into widgets and back is
// still to come, and so are its members for that. Kept small on purpose until
// then.
#pragma once

#include "forms/ConfigShip.h"
#include "gamedata/WeaponTables.h"

#include <QList>
#include <QString>
#include <QStringList>

class DConfigShip : public ConfigShip
{
    Q_OBJECT
public:
    explicit DConfigShip(QWidget* parent = nullptr, const char* name = nullptr);

    // Each empties its list and fills it again from the newest catalog of the
    // first game directory that holds the table. Names stay empty until the
    // language pages are read, which must come after these three.
    void LoadShields();
    void LoadLasers();
    void LoadMissiles();

    // Game directories, most recent first; the first is the one in use.
    QStringList GameDirs;

    // The rows in file order. A shield row's place is the value of a ship
    // line's shield type; a weapon row's bit is its place in a mask.
    QList<ShieldRow> ShieldTable;
    QList<WeaponRow> LaserTable;
    QList<WeaponRow> MissileTable;

private:
    QString GameDir() const;
};
