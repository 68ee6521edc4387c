#include "gamedata/WeaponTables.h"

#include "gamedata/ShipLine.h"

#include <limits>

namespace {

constexpr int kTextIdField = 6;
constexpr int kMaskBits = 32;

} // namespace

int32_t WeaponBit(int row)
{
    if (row < 0 || row >= kMaskBits)
        return 0;
    if (row == kMaskBits - 1)
        return std::numeric_limits<int32_t>::min();
    return int32_t(1) << row;
}

QList<ShieldRow> ShieldRows(const TypesTable& table)
{
    QList<ShieldRow> rows;
    for (const QString& line : table.records)
        rows.append({QString(), ShipFieldInt(line, kTextIdField)});
    return rows;
}

QList<WeaponRow> WeaponRows(const TypesTable& table)
{
    QList<WeaponRow> rows;
    for (const QString& line : table.records)
        rows.append({QString(), ShipFieldInt(line, kTextIdField), WeaponBit(int(rows.size()))});
    return rows;
}

QList<ShieldRow> LoadShieldTable(const QString& gameDir, const QString& workFile)
{
    return ShieldRows(LoadGameTable(gameDir, "TShields", workFile));
}

QList<WeaponRow> LoadLaserTable(const QString& gameDir, const QString& workFile)
{
    return WeaponRows(LoadGameTable(gameDir, "TLaser", workFile));
}

QList<WeaponRow> LoadMissileTable(const QString& gameDir, const QString& workFile)
{
    return WeaponRows(LoadGameTable(gameDir, "TMissiles", workFile));
}
