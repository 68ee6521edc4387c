// Saving a ship that is installed in a game directory (edit mode).
//
// The ship's block of ShipInstall/ships.dat takes the edited values; a new
// picture goes to ShipInstall/ShipPics/, new scene files into the mod catalog
// mods/Hullwright.cat (or, for a ship whose block says Disabled, loose below
// ShipInstall/); old files that no ship names any more are taken out; and the
// registry is rewritten. All of it is one InstallTransaction, so a crash
// leaves the old state or the new one (completed at the next start).
//
// How a scene is saved. A scene whose field in the form still begins with
// "<PACKAGE>" is unchanged. Otherwise the field names the chosen file: empty
// removes the ship's scene; a file gets the name "objects/" + the scene's
// field of the ship line + "." + the chosen file's extension, with "cut/"
// before a field that has no directory. Its entry's Time and Size describe
// the chosen file: its modification time and its byte count, which is also
// the size of the entry read back unpacked.
//
// No file is lost:
//  - A replacement by a file of the same name is put over the old file in
//    place; the old file is never taken out first. The ship's own old entry
//    is what is being replaced, so it does not count against the new file in
//    IsNewestFile; another ship's entry of that name with the same or a later
//    time does, and then the scene's entry becomes empty (that file stays).
//  - An old file is taken out only when no live entry of the new registry,
//    of any ship and of either kind, names it, compared as the catalog stores
//    names (see StoredFileName).
//  - A chosen file that cannot be read leaves that scene as it was, file and
//    entry, and the result says so.
//  - A registry that was not read completely, or that changed on disk since
//    it was read, is not written, and nothing else is either.
#pragma once

#include "package/InstalledShips.h"

#include <QList>
#include <QString>
#include <QStringList>

// Which of a ship's file lists a search looks at.
enum class InstalledFileKind
{
    Models, // Models, SceneFile and CockpitFile
    Files,  // Files
};

// A file name as the mod catalog stores it, for comparisons: slashes, upper
// case, and a .bod/.bob under its packed extension (.pbd/.pbb).
QString StoredFileName(const QString& name);

// True when a live ship other than `except` (matched by name and author; none
// when null) has an entry of `kind` that names the same stored file as `name`.
bool IsFileUsedByOtherShip(const QList<InstalledShip>& ships, const QString& name, const ShipPackage* except,
                           InstalledFileKind kind);

// False when a live ship's first entry of `kind` whose LocalPath equals that
// of `entry` exactly has a Time that, as a signed 32-bit number, is the same
// or later. Every ship takes part, the one being saved too.
bool IsNewestFile(const QList<InstalledShip>& ships, const FileEntry& entry, InstalledFileKind kind);

// The texts of the form's picture and scene file fields.
struct InstalledShipChoices
{
    QString ScreenShot;  // LineScreen
    QString SceneFile;   // LineSceneFile
    QString CockpitFile; // LineSceneFileCp
};

enum class InstalledShipSaveStatus
{
    Saved,
    ShipNotFound,         // no block of the key: nothing was written
    RegistryNotFullyRead, // the registry had problems: nothing was written
    RegistryChanged,      // the file changed since it was read: nothing was written
    NotSaved,             // staging failed: nothing of the game changed
    Unfinished,           // the change was decided but stopped: the next start completes it
};

struct InstalledShipSaveResult
{
    InstalledShipSaveStatus Status = InstalledShipSaveStatus::NotSaved;
    QStringList Notes; // what was left as it was, and why
    QString Error;     // why the save failed
};

// Saves the ship of `key` in the game directory `gameDir`.
//
// From `edited` the save takes Name, Author, Version, ID, Data, the eight
// Shipyards, Comment (the form's text; its line breaks become blanks),
// LanguageText, OriginalDesc (0 unless the original description is chosen),
// Texts (colons leave the titles) and Cockpits. `registry` is what was read
// when the ship was opened; on success it holds the registry as now written.
InstalledShipSaveResult SaveInstalledShip(const QString& gameDir, const ShipKey& key,
                                          const ShipPackage& edited, const InstalledShipChoices& choices,
                                          InstalledShipsRead& registry);
