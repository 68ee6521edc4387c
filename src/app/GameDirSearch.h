// Finding an installed game on a system without a registry.
//
// On Windows the installers leave the game's folder in the registry. Elsewhere
// the game runs through Steam or Wine, and its folder is found by looking
// where those put it. Every name below the home directory is matched without
// regard to case, since a Windows program's folders are often copied with
// other casing than the installer used; so is the proof file x3.exe.
#pragma once

#include <QString>
#include <QStringList>

// The name of the file that proves a game directory.
inline constexpr const char* GameDirProofFile = "x3.exe";

// True when `dir` holds the game's executable, its name matched without
// regard to case.
bool HoldsGameExecutable(const QString& dir);

// Follows `relative` (components separated by '/') down from `base`, matching
// each component without regard to case; an exact match wins over others.
// Returns the path as it stands on disk, or an empty string when some
// component has no match.
QString ResolveWithoutCase(const QString& base, const QString& relative);

// The library folders named in the text of a Steam libraryfolders.vdf: the
// values of every "path" key, and, for files of the older layout, values of
// numbered keys that are absolute paths. In the order of the file, escapes
// (\\ and \") undone.
QStringList ParseSteamLibraryFolders(const QByteArray& vdf);

// The places that may hold the game, in the order of search:
//  1. `envValue`, the value of X3_GAME_DIR, when it is not empty;
//  2. "steamapps/common/X3 - Reunion" of every Steam library listed in
//     <home>/.steam/steam/steamapps/libraryfolders.vdf, then in
//     <home>/.local/share/Steam/steamapps/libraryfolders.vdf, and of the
//     Steam folder that holds each file;
//  3. the default install folders of the Deep Silver and the Steam
//     installers inside the Wine prefix <home>/.wine/drive_c.
// Only folders that exist are listed; duplicates appear once.
QStringList GameDirCandidates(const QString& home, const QString& envValue);

// The first candidate that holds x3.exe, with forward slashes; empty when
// there is none.
QString FindGameDirWithoutRegistry(const QString& home, const QString& envValue);
