#include "gamedata/CockpitTable.h"

#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"

#include <QSaveFile>
#include <QTextStream>

const char* const DefaultCockpitLine = "0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_DEFAULT;";

namespace {

CockpitTable FromTypesTable(const TypesTable& table)
{
    CockpitTable result;
    result.header = table.header;
    result.lines = table.records;
    for (const QString& line : table.records)
        result.names.append(CockpitName(line));
    return result;
}

// Replaces the cockpit field of every turret slot that holds exactly `id`.
QString RenumberTurretCockpits(QString line, const QString& id, int row)
{
    for (int slot = 0; slot < TurretSlotCount; ++slot) {
        const int field = TurretCockpitField(slot);
        if (ShipField(line, field) == id)
            line = SetShipField(line, field, QString::number(row));
    }
    return line;
}

} // namespace

QString NewCockpitLine(const QString& name)
{
    return "0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;" + name + ";";
}

QString CockpitSceneId(const QString& line)
{
    return ShipField(line, CockpitField::SceneId);
}

int CockpitWeapons(const QString& line)
{
    return ShipFieldInt(line, CockpitField::Weapons);
}

QString CockpitName(const QString& line)
{
    return ShipField(line, CockpitField::Name);
}

CockpitTable ReadCockpitTable(const QString& path)
{
    return FromTypesTable(ReadTypesFile(path));
}

CockpitTable LoadGameCockpits(const QString& gameDir, const QString& workFile)
{
    return FromTypesTable(LoadGameTable(gameDir, "TCockpits", workFile));
}

CockpitTableOutput BuildCockpitTable(const QString& shipName, const QString& author,
                                     const QStringList& cockpits, const QString& shipLine)
{
    CockpitTableOutput out;
    out.shipLine = shipLine;
    out.text = "// TCockpits.txt created by Hullwright for " + shipName + " by " + author + "\n";
    out.text += "// (first cockpit entry is the default cockpit, and isn't part of the ship)\n";
    out.text += "47;" + QString::number(cockpits.size() + 1) + ";\n";
    out.text += QString::fromLatin1(DefaultCockpitLine) + "\n";
    int row = 1;
    for (const QString& cockpit : cockpits) {
        const QString id = ShipLineId(cockpit);
        if (!id.isEmpty())
            out.shipLine = RenumberTurretCockpits(out.shipLine, id, row);
        out.text += cockpit.endsWith(u';') ? cockpit : cockpit + ";";
        out.text += "\n";
        ++row;
    }
    return out;
}

bool WriteTableFile(const QString& path, const QString& text)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QTextStream stream(&file);
    stream << text;
    stream.flush();
    if (stream.status() != QTextStream::Ok) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}
