// The record of one ship package: everything a .xsp file holds and everything
// the registry of installed ships remembers of one ship. Plain data: the code
// that makes a record fills its public fields directly.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <cstdint>
#include <optional>

// One packaged file. In a record built from the form, LocalPath is the file on
// disk and Name the package-relative name. In a record filled by a reader, the
// package-relative name stands in LocalPath and Name stays empty.
struct FileEntry
{
    uint32_t Time = 0; // last modification of the source, seconds since 1970
    uint32_t Size = 0;
    QString LocalPath;
    QString Name; // with forward slashes
    bool DeleteAfterWrite = false;

    bool operator==(const FileEntry&) const = default;
};

// One language's texts of the ship.
struct TextEntry
{
    int32_t Language = 0; // the game's language id, such as 44
    QString Title;        // never holds a colon: it separates the fields of a Text: line
    QString Description;

    bool operator==(const TextEntry&) const = default;
};

// One row for the game's Dummies table; Data ends with a semicolon.
struct DummyEntry
{
    QString Section;
    QString Data;

    bool operator==(const DummyEntry&) const = default;
};

// One child row of the component tree: its top row's Section and Id, and its Data.
struct ComponentEntry
{
    QString Section;
    QString Id;
    QString Data;

    bool operator==(const ComponentEntry&) const = default;
};

// The order of the eight shipyard flags in a record. It differs from the order
// of the check boxes on the main window: Split comes before Teladi here.
enum ShipyardIndex
{
    ShipyardArgon = 0,
    ShipyardBoron,
    ShipyardParanid,
    ShipyardSplit,
    ShipyardTeladi,
    ShipyardPirates,
    ShipyardFriendly,
    ShipyardXenon,
    ShipyardCount
};

struct ShipPackage
{
    QString Name;
    QString Author;
    QString Version; // an empty version is written as "0"
    QString ID;      // replaces the last field of the ship line
    QString Data;    // the TShips line as it travels
    QString Web;
    QString Mirror1;
    QString Mirror2;
    QList<TextEntry> Texts;
    std::optional<FileEntry> SceneFile;   // none when the ship has no scene of its own
    std::optional<FileEntry> CockpitFile; // none when it brings no cockpit scene
    QList<FileEntry> Models;
    QList<FileEntry> Files;
    QList<DummyEntry> Dummies;
    QList<ComponentEntry> Components;
    QList<FileEntry> Scripts;
    QStringList Cockpits; // whole lines of the game's TCockpits table
    QString Comment;      // carriage return as blank, line feed as "<newline>"
    QString ScreenShot;
    bool LanguageText = false;
    bool Enabled = false;
    bool GlobalEnabled = false;
    std::array<bool, ShipyardCount> Shipyards{};
    bool NotChecked = false;
    bool SaveWeb = false;
    bool ExistingShip = false;
    int32_t Deleted = 0; // not 0 marks a tombstone of the installed-ships list
    int32_t OriginalDesc = 0;
    int32_t FileSystem = 0;

    bool IsTombstone() const { return Deleted != 0; }
};

// The comment as a record keeps it on one line: a carriage return becomes a
// blank and a line feed the token "<newline>".
inline QString CommentToRecord(QString text)
{
    text.replace('\r', ' ');
    text.replace('\n', QStringLiteral("<newline>"));
    return text;
}

inline QString CommentFromRecord(QString text)
{
    text.replace(QStringLiteral("<newline>"), QStringLiteral("\n"));
    return text;
}

// A path of the form that begins with this token names a file of the open
// package: it lies in WorkDir (ShipInstall below the program directory) and
// counts as unchanged since the open.
inline const QString PackageToken = QStringLiteral("<PACKAGE>/");

inline bool IsPackagePath(const QString& path)
{
    return path.startsWith(PackageToken);
}

// A path of the form as a path on disk: the token resolved against
// `workDir` (which ends in a slash), line breaks removed.
inline QString ResolvePackagePath(QString path, const QString& workDir)
{
    path.replace(PackageToken, workDir);
    path.remove('\n');
    path.remove('\r');
    return path;
}
