// Writing a .xsp ship package: a record's lines and the bytes of its files as
// one stream, which is then compressed into the package.
//
// The stream is a sequence of text lines, each ending in one line feed, some
// followed by a raw block of exactly the size their line names:
//
//     Packager: 1          Name: ...            Author: ...       ID: ...
//     Data: ...            [Web:/Mirror1:/Mirror2: when set]      Shipyard: 1;0;...
//     [LanguageText]       [ExistingShip]       [OriginalDesc: n]  Version: ...
//     [Comment: ...]       [ScreenShot: size ext + block + LF]     Text: lang:title:desc ...
//     [SceneFile: time size name + block]       [CockpitFile: time size name + block]
//     Model: time size name + block + LF ...    Files: time size name + block + LF ...
//     Dummy: section;data ...                   Component: section;id;data ...
//     Cockpit: line ...                         Script: time size file + block + LF ...
//
// The stream goes to disk first and is compressed in a second pass: the
// encoder's memory stays bounded by its dictionary, and the uncompressed size
// is known before the first byte of the package is written. The package
// itself is replaced only when the compression succeeded.
#pragma once

#include "package/Lzma.h"
#include "package/ShipPackage.h"

#include <QString>

#include <cstdint>
#include <functional>

class QFile;
class QIODevice;

// The block size in which file bytes are copied into the stream.
inline constexpr int64_t PackageCopyBlockSize = 50000;

// What the writer asks of its caller while it writes.
struct PackageWriteHooks
{
    // Brings an entry into its stored form (compiling, packing) and returns
    // the path of the bytes to store. Without it the entry's LocalPath is
    // used, with "<PACKAGE>/" resolved into `packageDir`.
    std::function<QString(FileEntry& entry, bool compile)> prepare;
    // The `compile` flag for models and other files; scenes and scripts never compile.
    bool compileModels = false;
    // What "<PACKAGE>/" stands for in the picture's path: the directory of
    // the open package's files, with a slash behind it.
    QString packageDir;

    // Progress of the current step, `done` of `total`.
    std::function<void(int64_t done, int64_t total)> progress;
    // A file's bytes are being added (its name), or the adding is over (empty).
    std::function<void(const QString& name)> adding;
    // The stream is complete and is being compressed.
    std::function<void()> compressing;
};

// Copies the whole open `source` to `target` in pieces of `blockSize` bytes,
// reporting the bytes done of the source's size after each piece. False
// when a read or a write fails or the source ends early.
bool CopyBlocks(QIODevice& source, QIODevice& target, int64_t blockSize,
                const std::function<void(int64_t done, int64_t total)>& progress = {});

// Writes the record's lines and its files' blocks to `out`, in the order of
// the format. The record itself is not changed: each entry is prepared as a
// copy. A file that cannot be read is left out without a word. False only
// when `out` could not be written.
bool WritePackageStream(const ShipPackage& record, QIODevice& out, const PackageWriteHooks& hooks);

enum class PackageSaveResult
{
    Saved,
    StreamFailed,  // writing the stream failed part-way
    CompressFailed // the package could not be compressed or put in place
};

// The whole save after the record is built: the stream into `stream` (open
// for writing; it is closed and removed at the end in every case), then
// compressed into `targetPath`, which is replaced only when all of it
// succeeded.
PackageSaveResult SavePackageFile(const ShipPackage& record, QFile& stream, const QString& targetPath,
                                  const PackageWriteHooks& hooks);

// The update note beside a saved package: "<Name without blanks>.dat" in the
// package's directory, with the lines "Script: " Name, "Version: " Version
// and "File: " the package's file name. False when it could not be written.
bool WriteUpdateNote(const ShipPackage& record, const QString& packagePath);
