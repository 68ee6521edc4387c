// The game-file transfer layer: the application's one way to game files.
//
// Five functions copy whole files between disk and the game's catalogs. They
// take Qt strings and devices, choose the packed or plain form of a game file
// from its extension, and hide the driver's streaming interface: every
// transfer is open, one read or write of the whole content, close.
//
// A game path is either a file on disk or "<catalog path>::<entry name>".
// Forward slashes and backslashes are both accepted; every '/' becomes '\'
// before a path reaches the driver. Paths handed to Qt (the targets of
// GameFileExtract and PckFileToPlain) are used with forward slashes.
//
// Packed and plain names. The game keeps models and texts packed under other
// extensions than the plain files a modder works with:
//
//     bod -> .pbd    bob -> .pbb    xml -> .pck    txt -> .pck
//
// GameFileCopyIn uses all four rows; GameFileExtract and GameFileRemove use
// only the rows for models (bod, bob). The extension is compared without
// regard to case; any other extension leaves the path as it is.
//
// Failures: the layer passes no driver code upward. A false or empty result is
// all a caller learns. For a diagnostic tool: right after a false result the
// driver's CatLastError() holds the code of the driver call that failed, or 0
// when the failure was on the Qt side (a source or target that could not be
// read or written).
#pragma once

#include <QList>
#include <QString>

#include <cstdint>

class QFile;

struct GameFileListEntry
{
    QString name; // the entry's name as held in memory, with '\'
    int32_t size; // the entry's size in the .dat (packed length for a packed entry)
};

// Copies the whole source file to `path`, stored packed when `packed` is set.
//
// With `packed` the path takes its packed name (all four rows). An existing
// file at a disk path is replaced. In a catalog the old entry of that name, and
// for a .bob/.bod the packed .pbb/.pbd entry, is removed first, so a replaced
// entry moves to the end of the catalog; only a plain .bob/.bod entry is
// overwritten where it stands, keeping its place when the length is equal.
// The catalog must exist already: this function creates entries, not catalogs.
//
// The source is read whole before anything at `path` is touched: a source that
// cannot be opened or read gives false and leaves the old file or entry as it
// was. A write that fails part-way deletes what it had written. True only when
// the content was written and closed without a failure.
bool GameFileCopyIn(QFile& source, const QString& path, bool packed);

// Copies the file or entry at `source` to the disk file `target`.
//
// With `usePackedName` a .bob/.bod source is looked up under its packed name
// (.pbb/.pbd); the target keeps the name the caller gave. With `raw` unset a
// packed file arrives unpacked, whatever its extension; with `raw` set it
// arrives as stored: the scrambling of the packed form stays on, that of the
// .dat is taken off.
//
// The target's directory must exist. The target is replaced as a whole or not
// at all: a source that cannot be opened, or a target that cannot be written,
// leaves an existing target as it was, and the result is false in both cases.
bool GameFileExtract(const QString& source, const QString& target, bool usePackedName, bool raw);

// Deletes the file or entry at `path`, looked up under its packed model name
// (.bob -> .pbb, .bod -> .pbd): a plain .bob is never deleted by this call.
// True when something was deleted; callers in the application do not need it.
bool GameFileRemove(const QString& path);

// The entries of the catalog at `catalogPath` in catalog order. Empty when the
// catalog cannot be opened (then CatLastError() names the reason) and when it
// has no entries (then CatLastError() is 0).
QList<GameFileListEntry> GameFileList(const QString& catalogPath);

// Unpacks the packed file on disk at `source` into the disk file `target`.
// The source must be a packed file on disk, not a catalog entry nor a plain
// file. A source that cannot be read or unpacked gives an empty target.
void PckFileToPlain(const QString& source, const QString& target);

// False when the entry part of a catalog path holds a ".." component. The
// driver keeps ".." inside the catalog ("x.cat::a\..\..\f" is the entry f),
// but such a path names another entry than it seems to. Every function of this
// layer refuses it (false, nothing read or written), since entry names may
// come from files of other people's mods.
bool GameFileEntryIsContained(const QString& path);

// The packed name of `path` by the given rows of the table above: the whole
// table when `allRows` is set, else only bod and bob. Directories and the
// catalog part of the path are left alone.
QString GameFilePackedName(const QString& path, bool allRows);
