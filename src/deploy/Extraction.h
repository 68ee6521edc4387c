// Taking a ship package apart into the loose files a modder lays into the
// game by hand:
//
//   <target>/<name>              each file block at its stored path
//   <target>/ShipPics/<picture>  the screenshot, when the package has one
//   <target>/Scripts/<name>      the scripts, when the package has any
//   <target>/types/TCockpits<suffix>.txt   when the ship brings cockpits
//   <target>/types/TShips<suffix>.txt      always
//   <target>/types/Dummies<suffix>.txt     when it brings dummy rows
//   <target>/types/Components<suffix>.txt  when it brings component rows
//
// The package is read into a record of its own; nothing of an open document
// is touched. Everything is first unpacked and written into a work directory
// inside the target (so that moving a file in is a rename on the same file
// system), and only a package that was read whole is moved in, file by file.
// A file that stood at one of these paths is thus replaced whole, never
// half-written, and a package that cannot be read leaves the target as it
// was. Nothing is written outside the target: the reader refuses names that
// climb out, and a destination whose directory leads elsewhere (through a
// symbolic link) refuses the move.
//
// Qt Core only: the command-line tool runs the same extraction.
#pragma once

#include "package/PackageReader.h"

#include <QString>
#include <QStringList>

enum class ExtractionStatus
{
    Extracted,     // every file and table is in the target
    TargetMissing, // the target is not an existing directory
    ReadFailed,    // the package could not be read; the target is unchanged
    WriteFailed    // a file could not be written into the target (see `entry`)
};

struct ExtractionResult
{
    ExtractionStatus status = ExtractionStatus::ReadFailed;
    PackageReadResult read; // what the package reader said
    // With WriteFailed, the path below the target that could not be written
    // (empty when the target itself refused the work directory). When
    // `written` is not empty, the extraction stopped part-way.
    QString entry;
    // The files now in the target, relative to it, in the order they were moved in.
    QStringList written;
};

// The table suffix: "_" and the ship's name without blanks when `prefix` is
// set, else empty. Slashes are taken out too, so the suffix never leaves the
// folder of the tables.
QString ExtractionTableSuffix(const QString& shipName, bool prefix);

// The ship line as the extracted TShips table holds it: every occurrence of a
// custom cockpit's id (the last non-empty field of its line) replaced, as
// plain text, by its row in the extracted TCockpits table (the first cockpit
// is row 1). Where ids overlap, the longest match at a position wins, and a
// replaced number is never replaced again.
QString ReplaceCockpitIds(const QString& shipLine, const QStringList& cockpits);

// The text of the extracted TShips table for one ship line.
QString ShipTableText(const QString& shipName, const QString& author, const QString& shipLine);

// Extracts the package at `packagePath` into the existing directory `target`.
ExtractionResult ExtractPackage(const QString& packagePath, const QString& target, bool prefix);

// One line of English saying why an extraction did not succeed, for the
// command-line tool; empty for a success.
QString ExtractionFailureText(const ExtractionResult& result, const QString& packagePath,
                              const QString& target);
