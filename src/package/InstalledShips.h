// The registry of the ships installed in one game directory:
// <game directory>/ShipInstall/ships.dat.
//
// A text file in the system's 8-bit encoding, one item a line, each ended by a
// line feed (a carriage return before it is dropped). A line's key is its
// first blank-separated word, its value all behind the first blank.
//
//   Mod: <name>                 the head: read anywhere, written first
//   UpdateTime: <number>        0 when missing
//   BaseFakePatch: <number>
//   Buffer: <number>            written again only when not 0 and below 10000
//   Deleted: <number>           a tombstone: a removed ship, kept in its place
//   <ship>                      a block: one installed ship
//     Name: Version: Author: ID: Data: OriginalDesc: Comment: ScreenShot:
//     Argon Boron Paranid Split Teladi Pirates Friendly Xenon   (yard words)
//     Disabled GlobalDisabled LanguageText ExistingShip NotChecked   (flags)
//     Web: Mirror1: Mirror2:
//     Text: <language>:<title>:<description>
//     SceneFile: CockpitFile: Model: Files: Script: <size> <time> <path>
//     Dummy: <section>:<data>
//     Component: <section>;<id>;<data>
//     Cockpit: <TCockpits line>
//     FileSystem: <number>
//   </ship>
//
// Inside a block the order of the keys is free. A comment keeps its line
// breaks as "<newline>". A file line names the file by its relative name in
// the game (below "objects/", say), which the record holds in LocalPath. Two
// blocks of the same author and name may stand in the file: the later wins.
//
// This program takes no decision on the head's values, on tombstones or on
// GlobalDisabled, NotChecked and FileSystem: they pass through. So do lines it
// does not know: inside a block they are written back at the block's end,
// outside any block after the head.
//
// A registry is rewritten only when it was read completely: every line was
// understood and would be written back with the same meaning. Anything else
// (a block without its end, a number that does not parse or does not fit, a
// single-valued key twice in one block, bytes that are not text in the
// system's encoding, a file too large to be a registry) is listed as a
// problem, and the callers refuse to write such a file.
#pragma once

#include "package/ShipPackage.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <cstdint>

// The relative path of the registry below a game directory.
inline constexpr const char* InstalledShipsPath = "ShipInstall/ships.dat";

// A registry larger than this is not read: no real one comes near it.
inline constexpr qint64 InstalledShipsLargestFile = 64 << 20;

// One entry of the registry: a ship's block, or a tombstone (Record.Deleted
// not 0, nothing else meaningful).
struct InstalledShip
{
    ShipPackage Record;
    QStringList OtherLines; // lines of the block this program does not know, in order

    bool operator==(const InstalledShip& other) const;
};

struct InstalledShips
{
    QString ModName;
    int64_t UpdateTime = 0;
    int32_t FakePatch = 0; // BaseFakePatch:
    int32_t Buffer = 0;
    QList<InstalledShip> Ships; // the file's order, tombstones in their places
    QStringList OtherLines;     // unknown lines outside any block

    bool operator==(const InstalledShips&) const = default;
};

// Something of the file that could not be read so that it would be written
// back unchanged. Line numbers count from 1; 0 means the file as a whole.
struct RegistryProblem
{
    int Line = 0;
    QString What;
};

struct InstalledShipsRead
{
    bool Exists = false; // the file was there and could be opened
    InstalledShips Registry;
    QList<RegistryProblem> Problems;
    QByteArray Digest; // of the bytes read: tells whether the file changed since

    // True when the file may be rewritten from `Registry`. A file that does
    // not exist counts as an empty registry that is not to be written.
    bool FullyRead() const { return Exists && Problems.isEmpty(); }
    // The problems as lines of text for the user, at most `limit` of them.
    QString ProblemText(int limit = 10) const;
};

// What ReadShipLine made of one line of a block.
enum class ShipLineRead
{
    Taken,     // understood
    Unknown,   // a key this program does not know; the record is unchanged
    Malformed, // taken as far as it goes, but it would not be written back as it stands
};

// Takes one line of a block (its key and value) into `record`.
ShipLineRead ReadShipLine(ShipPackage& record, const QString& key, const QString& value);

// Reads the registry of a game directory.
InstalledShipsRead ReadInstalledShips(const QString& gameDir);
// Reads a registry from its bytes.
InstalledShipsRead ParseInstalledShips(const QByteArray& bytes);
// The digest the reader records for `bytes`.
QByteArray InstalledShipsDigest(const QByteArray& bytes);

// The registry as the file holds it.
QByteArray FormatInstalledShips(const InstalledShips& registry);

// Writes the registry of a game directory, making ShipInstall/ if missing.
// The file is written beside and renamed over the old one, so it is either
// wholly old or wholly new. False when `gameDir` is empty or the write failed.
bool WriteInstalledShips(const QString& gameDir, const InstalledShips& registry);

// The ship key that an edit-mode target names: the target's file name (after
// its last slash or backslash) with "<bslash>" turned into a backslash and
// then "<fslash>" into a slash.
QString ShipKeyFromEditTarget(const QString& editTarget);
// The game directory of an edit-mode target: all before its file name ("."
// when there is nothing before it).
QString GameDirFromEditTarget(const QString& editTarget);

struct ShipKey
{
    QString Author; // all before the first "~"
    QString Name;   // all behind it, further "~" included
};
ShipKey SplitShipKey(const QString& key);

// The position of the ship of `key` among `ships`: the last live block whose
// author and name equal the key's exactly, since a later block wins; -1 when
// there is none.
qsizetype FindInstalledShip(const QList<InstalledShip>& ships, const ShipKey& key);
