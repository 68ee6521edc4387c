// The shield, laser and missile tables, as far as the ship configuration
// needs them: the order of the rows and the text id of each row's name
// (field 6). Names start empty and are filled by the language reader; a row
// whose text the language files lack keeps an empty name.
//
// Lasers and missiles are chosen by bit masks: the first data row has bit 1,
// each next row the double. A mask is a signed 32-bit int, so the 32nd row
// has the sign bit and rows from the 33rd on have no bit and cannot be chosen.
// Comment lines take no bit, and the header's row count plays no part.
#pragma once

#include "gamedata/TypesFile.h"

#include <QList>
#include <QString>

#include <cstdint>

struct ShieldRow
{
    QString Name;
    int TextId = 0;
};

struct WeaponRow
{
    QString Name;
    int TextId = 0;
    int32_t Bit = 0;
};

// The bit of the data row `row` (from 0) in a weapon mask.
int32_t WeaponBit(int row);

QList<ShieldRow> ShieldRows(const TypesTable& table);
QList<WeaponRow> WeaponRows(const TypesTable& table);

// The game's tables from the newest catalog that holds them, extracted to
// `workFile`, which is deleted afterwards whether it could be read or not.
// A table that no catalog holds gives no rows.
QList<ShieldRow> LoadShieldTable(const QString& gameDir, const QString& workFile);
QList<WeaponRow> LoadLaserTable(const QString& gameDir, const QString& workFile);
QList<WeaponRow> LoadMissileTable(const QString& gameDir, const QString& workFile);
