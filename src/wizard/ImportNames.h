// The naming rules by which the import wizard ties the files of a mod catalog
// to one ship. Entries of a catalog are named with backslashes
// ("objects\ships\x\hull.pbd"); the functions here accept either slash.
//
// Three forms of a model's name meet:
//   - the catalog entry, "objects\ships\x\hull.pbd";
//   - its short name, as ship lines, scenes and dummies name bodies:
//     "ships\x\hull" (no "objects\", no extension, backslashes);
//   - the unpacked file that the transfer layer writes, "objects/ships/x/hull.bod".
#pragma once

#include <QString>
#include <QStringList>

// A packed model's name as its unpacked file is called: ".pbb" (in any case)
// becomes ".bob" and ".pbd" becomes ".bod"; any other name stays as it is.
QString UnpackedName(const QString& name);

// The catalog name that a scene field of a ship line (field 16 or 17) points
// at, without extension and with forward slashes: a bare name lies in
// "objects/cut/", one with a directory below "objects/". What follows the
// file name's last dot is taken for an extension and cut off when it has at
// most three characters; longer, it is part of the name. An empty field gives
// an empty name.
QString SceneLookupName(const QString& field);

// An entry as it is compared with a scene: its directory, "/" and its name
// up to the last dot, forward slashes, in lower case.
QString SceneComparisonName(const QString& entry);

// The short name of a model entry, in lower case: its directory, "\" and its
// name up to the first dot, with backslashes and without a leading "objects\".
QString ModelShortName(const QString& entry);

// A body name of a scene as a model name: a body that reads as a number other
// than 0 is padded with leading zeros to five characters, and a name without
// directory is looked for below "v\" ("17" -> "v\00017").
QString BodyModelName(const QString& body);

// True when a dummy row or component group whose first field is `key`
// belongs to the part `partName`: the same text without regard to case, or
// the part less its last character when that reads as a number other than 0
// ("17a" belongs to the key "17").
bool PartMatchesKey(const QString& key, const QString& partName);

// True for an entry whose first directory is dds, tex or textures.
bool IsTextureEntry(const QString& entry);

// True for an entry below "objects" (its first seven characters, any case).
bool IsObjectEntry(const QString& entry);

// True for an entry of a language page, below "t\".
bool IsLanguageEntry(const QString& entry);

// True when a catalog name can be unpacked below a directory without leaving
// it: not empty, relative, no drive, no "." or ".." component.
bool IsContainedEntryName(const QString& entry);

// The directory part of an entry with forward slashes; empty for a bare name.
QString EntryDirectory(const QString& entry);

// The file name of an entry (behind the last slash of either kind).
QString EntryFileName(const QString& entry);

// The distinct body names of the gun entries of a ship line (primary and
// secondary bodies of every entry of every gun group), in line order. An
// entry's body of "0" or nothing is no name.
QStringList GunBodyNames(const QString& shipLine);
