// Reading a .xsp ship package: the record's lines into a ShipPackage, the raw
// blocks behind them into files below a directory.
//
// The package is read as one stream, straight from the LZMA decoder (or from
// the file itself when it holds the plain stream, whose first word is
// "Packager:"), so nothing of it is kept in memory beyond one buffer and no
// decoded copy of it is written anywhere. Text lines and raw blocks are taken
// from one position: a block is exactly the byte count its line names and may
// hold anything, line feeds included.
//
// A package never writes outside the directory it is unpacked into: a file
// name that is absolute, climbs out with ".." or holds a control character
// refuses the whole package.
#pragma once

#include "package/Lzma.h"
#include "package/ShipPackage.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

class QFile;
class QIODevice;

// Why a read was not usable, beyond the result codes.
enum class ReadFailure
{
    None,
    CannotOpen,  // the file could not be opened or read
    NotAPackage, // neither a plain package stream nor LZMA data
    Damaged,     // truncated, corrupt, or a block longer than what is left
    TooLarge,    // the declared size is above the cap or the free space
    UnsafeName,  // a file name is absolute or leaves the target directory
    CannotWrite  // an unpacked file could not be written
};

// What the reader makes of the record's own lines.
enum class PackageCheck
{
    Passed,          // nothing to report: `ok` tells whether the read worked
    MissingIdentity, // the stream ended without a Name: or Author: value
    NewerFormat      // Packager: names a format newer than this reader's
};

struct PackageReadResult
{
    bool ok = false; // the record is usable
    PackageCheck check = PackageCheck::Passed;
    ReadFailure failure = ReadFailure::None;
    QString entry; // the file name that made the read fail, where one did
};

// One line of English saying why a read failed, for the command line and the
// log; the entry is named where one made the read fail.
QString PackageReadFailureText(const PackageReadResult& read);

// The stream of a package: lines and blocks from one position.
class PackageStream
{
public:
    // Reads up to `size` bytes into `data`: the count, 0 at the end, -1 on an error.
    using RawRead = std::function<int64_t(char* data, int64_t size)>;

    // `total` is the stream's length when it is known.
    PackageStream(RawRead read, std::optional<uint64_t> total);

    // The next line without its line feed (and a carriage return before it);
    // false at the end of the stream or on an error (see failed()).
    bool readLine(QByteArray& line);
    // Moves the next `size` bytes to `target` (or skips them when it is null)
    // in pieces of 250,000 bytes; false when the stream ends early or a write fails.
    bool readBlock(uint64_t size, QIODevice* target);

    uint64_t position() const { return m_position; }
    // Bytes left, when the length of the stream is known.
    std::optional<uint64_t> remaining() const;
    bool failed() const { return m_failed; }

private:
    bool fill();

    RawRead m_read;
    std::optional<uint64_t> m_total;
    std::vector<char> m_buffer;
    size_t m_begin = 0;
    size_t m_end = 0;
    uint64_t m_position = 0;
    bool m_ended = false;
    bool m_failed = false;
};

// Reads `file` (open for reading, or openable; it is closed at the end) into
// `record`, which the caller made empty. File blocks are unpacked below
// `baseDir` + "/ShipInstall" with `intoWorkDir`, else below `baseDir`; scripts
// below `baseDir` + "/" + `scriptDir`; the picture into "ShipPics" below the
// file target. A failed read may leave the files unpacked before the failure.
PackageReadResult ReadPackage(QFile& file, const QString& baseDir, ShipPackage& record,
                              const QString& scriptDir, bool intoWorkDir);

// `name` with backslashes turned into slashes, or nothing when it is empty,
// absolute (a leading slash or a drive letter), climbs with ".." or holds a
// control character.
std::optional<QString> SafeRelativeName(const QString& name);

// Writes the next `entry.Size` bytes of `source` to `directory` + "/" +
// `entry.LocalPath`, making the directories of that path. The file appears
// only complete; its modification time is set to `entry.Time` when that is
// not 0. False when the stream has fewer bytes left or the file cannot be
// written.
bool UnpackBlock(const FileEntry& entry, const QString& directory, PackageStream& source);
