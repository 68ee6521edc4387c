// What the import wizard hands to the main window on Finish: everything the
// chosen ship needs, its files already unpacked below the package's work
// directory (ShipInstall), so that the window only has to fill its form.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The marker at the head of a path that stands for the open package's work
// directory, <program directory>/ShipInstall.
inline constexpr const char* PackagePathMarker = "<PACKAGE>/";

// A row of the model list or the other-files list: the unpacked file as a
// "<PACKAGE>/" path, and the directory it goes to in the game (forward slashes).
struct ImportedFile
{
    QString Path;
    QString Directory;
};

// A cockpit of the mod's TCockpits that the ship uses: its name, its row
// number in the mod's table (data lines counted from 0, as the ship line's
// turret slots count them) and its whole line.
struct ImportedCockpit
{
    QString Name;
    int Index = 0;
    QString Line;
};

struct ImportedDummy
{
    QString Section;
    QString Line;
};

// One component group; groups of one section and one id are merged.
struct ImportedComponent
{
    QString Section;
    QString Id;
    QStringList Lines;
};

struct ImportedText
{
    QString Language; // two characters, from the page file's name
    QString Name;
    QString Description;
};

struct ImportResult
{
    QString ShipLine; // the ship's TShips line as it stands in the mod
    QString ShipId;   // its last field that has text
    QString ShipName;
    // Fields 16 and 17 of the line as they stand, for the scene name fields.
    QString ShipSceneField;
    QString CockpitSceneField;
    // The scenes as named in the catalog; empty when the mod does not hold them.
    QString ShipSceneEntry;
    QString CockpitSceneEntry;
    // The unpacked scenes as "<PACKAGE>/" paths; empty when not unpacked.
    QString ShipSceneFile;
    QString CockpitSceneFile;
    QList<ImportedFile> Models;
    QList<ImportedFile> Textures;
    QList<ImportedCockpit> Cockpits;
    QList<ImportedDummy> Dummies;
    QList<ImportedComponent> Components;
    QList<ImportedText> Texts;
};

// The shipyard box of the main window that a race (field 45 of a ship line)
// ticks.
enum class ShipyardBox
{
    None,
    Argon,
    Boron,
    Split,
    Paranid,
    Teladi,
    Xenon,
    Pirate,
    Friend
};

ShipyardBox ShipyardOfRace(int race);
