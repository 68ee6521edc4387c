// The game's names that the ship configuration dialog shows in its combo
// boxes, and the items made of them. Free of widgets: the dialog fills its
// boxes from the lists built here.
//
// The names come from one language file of the game, the one of the base
// language: races (page 1266), ranks (pages 23 to 28), cargo classes (1999),
// variations and the names of shields, lasers and missiles (17), ship classes
// (2006). The file lies in a catalog as t\<language>0001.pck or .xml; the
// newest catalog that has a language's file wins.
#pragma once

#include "gamedata/WeaponTables.h"
#include "language/GameText.h"

#include <QList>
#include <QString>
#include <QStringList>

// A base language and where its file lies: "<catalog>::t\<language>0001.pck".
struct LanguageFile
{
    QString Language;
    QString Path;
};

// The language files of the catalogs of `gameDir`, newest catalog first, one
// per language.
QList<LanguageFile> ListLanguageFiles(const QString& gameDir);

struct ConfigNames
{
    QStringList Races;    // 19, race number - 1
    QStringList Ranks;    // 96: six tables of 16, the highest rank first
    QStringList Cargo;    // 10, cargo class
    QStringList Variants; // one for each row of the variant list
    QStringList Classes;  // one for each row of the class list
    bool Read = false;    // false when there was no file: all lists are empty then
};

// Reads the names from the plain language file at `path`; the weapon rows
// whose text ids the file holds get their names on the way. Without a file the
// lists are empty and the rows keep their names.
ConfigNames ReadConfigNames(const QString& path, const QList<IdName>& variants, const QList<IdName>& classes,
                            QList<ShieldRow>& shields, QList<WeaponRow>& lasers, QList<WeaponRow>& missiles);

// Items of the boxes, "<name> (<number>)".
//
// Races: every race up to the last that has a name, and always race 10, which
// is the player (`playerName`). A race without a name in between shows its
// number alone, so that item i is always race i + 1 and field 45 stays item + 1.
QStringList RaceItems(const QStringList& races, const QString& playerName);
// Cargo classes from 0, up to the first without a name.
QStringList CargoItems(const QStringList& cargo);
// Ship classes in list order, up to the first without a name.
QStringList ClassItems(const QStringList& classNames);
// "<none> (0)", then every variant as "(row + 1)". A variant without a game
// name shows the list's own name; a name "{17,<id>}" shows the name of the
// variant with that id.
QStringList VariationItems(const QStringList& variantNames, const QList<IdName>& variants,
                           const QString& noneName);
// Every shield row, numbered from 0.
QStringList ShieldItems(const QList<ShieldRow>& shields);
