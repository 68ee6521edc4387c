// How the rows of the form become file entries of a package record: the
// names the files get in the package, and which rows are left out.
#pragma once

#include "package/ShipPackage.h"

#include <QList>
#include <QString>

#include <optional>

// An entry for the file at `path` (time and size from the disk) named `name`
// in the package.
FileEntry EntryForFile(const QString& path, const QString& name);

// The name of a list file in the package: its target directory and its bare
// file name, without double slashes and never starting with one.
QString ListEntryName(const QString& targetDir, const QString& path);

// The name of a scene file in the package: below objects/cut/ when the scene
// name of the line has no directory, else below objects/; the file's own
// extension is added unless the scene name ends in a model extension.
QString SceneEntryName(const QString& sceneName, const QString& filePath);

// The scene entry of a scene name and its file field; none when either is
// empty or the file cannot be read. `workDir` is what "<PACKAGE>/" stands for.
std::optional<FileEntry> SceneEntry(const QString& sceneName, const QString& fileField,
                                    const QString& workDir);

// The name without its last extension, with its directory.
QString EntryStem(const QString& name);

// Adds a model to the list, keeping one entry per stem: a .bob replaces a
// .bod of the same stem, and every other repeat is dropped.
void AddModelOnce(QList<FileEntry>& models, const FileEntry& model);

// True when the file at `path` is a file and opens for reading.
bool IsReadableFile(const QString& path);
