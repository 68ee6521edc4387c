// The program's settings as one value, and config.dat, the file that keeps
// them in the program directory.
//
// config.dat is text of lines. This program owns two sections, each from a
// line that is exactly "<name>" to one that is exactly "</name>":
//
//   <common>
//   Version: 2
//   Language: <one word>
//   Dir: <game directory>          one line each, the one in use first
//   </common>
//   <hullwright>
//   ModDir: <path>                 ModDir, BaseLang, ModelDir, SaveDir, TypeDir,
//   ...                            TextDir, X2bcDir, ScriptDir, DefAuthor, DefWeb,
//   DefMirror2: <text>             DefMirror1, DefMirror2, always written
//   X2BC                           flag lines, each only when set: X2BC, Prefix,
//   ...                            NoText, NoTextT, SaveWeb
//   </hullwright>
//
// Keys of either section are read in either. A key takes everything behind
// its first blank, save Language and BaseLang, which take the second
// blank-separated word. Flag lines match as whole lines. Lines outside both
// sections belong to other programs and are written back behind ours.
#pragma once

#include <QString>
#include <QStringList>

struct AppSettings
{
    QString Language = QStringLiteral("English"); // interface language
    QStringList GameDirs;                         // most recent first, at most MaxGameDirs
    QString ModDir;
    QString BaseLang = QStringLiteral("44"); // language id of the game's text
    QString ModelDir;
    QString SaveDir;
    QString TypeDir;
    QString TextDir;
    QString X2bcDir; // the converter itself, not its folder
    QString ScriptDir;
    QString DefAuthor;
    QString DefWeb;
    QString DefMirror1;
    QString DefMirror2;
    bool X2BC = false;
    bool Prefix = false;
    bool ReadTextAtStart = true;      // "NoText" when off
    bool ReadTextTableAtStart = true; // "NoTextT" when off
    bool SaveWeb = false;

    static constexpr int MaxGameDirs = 10;

    bool operator==(const AppSettings&) const = default;
};

// Reads config.dat at `path`; a missing or unreadable file gives the
// defaults. A Dir: line is kept only when its directory holds the game
// (`holdsGame` decides), so a removed game drops out of the list.
AppSettings ReadSettingsFile(const QString& path, bool (*holdsGame)(const QString& dir));

// Writes `settings` to `path`, keeping the lines of other programs. The file
// is replaced whole, never left half-written; false when it could not be
// written, and the old file then stands as it was.
bool WriteSettingsFile(const AppSettings& settings, const QString& path);

// Puts `dir` at the front of the list of game directories, an older copy of
// it removed, and cuts the list to MaxGameDirs.
void PutGameDirFirst(QStringList& dirs, const QString& dir);
