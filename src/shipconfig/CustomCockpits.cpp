#include "shipconfig/CustomCockpits.h"

#include "gamedata/CockpitTable.h"

#include <algorithm>

int FindCockpit(const QStringList& lines, const QString& name)
{
    for (qsizetype i = 0; i < lines.size(); ++i)
        if (CockpitName(lines[i]) == name)
            return int(i);
    return -1;
}

bool SetCockpitField(QStringList& lines, const QString& name, int field, const QString& value)
{
    const int place = FindCockpit(lines, name);
    if (place < 0 || ShipField(lines[place], field) == value)
        return false;
    QString line = SetShipField(lines[place], field, value);
    if (!line.endsWith(u';'))
        line += u';';
    lines.removeAt(place);
    lines.append(line);
    return true;
}

bool CockpitNameTaken(const QString& name, const QStringList& standardNames, const QStringList& customLines)
{
    for (const QString& standard : standardNames)
        if (standard.toUpper() == name)
            return true;
    for (const QString& line : customLines)
        if (CockpitName(line).toUpper() == name)
            return true;
    return false;
}

QString CopiedCockpitLine(const QString& standardLine, const QString& name)
{
    QStringList fields = standardLine.split(u';').mid(0, CockpitField::Name);
    while (fields.size() < CockpitField::Name)
        fields.append(QString());
    fields.append(name);
    return fields.join(u';') + u';';
}

QStringList CockpitsInUse(const QStringList& lines, const QStringList& turretCockpits)
{
    QStringList used;
    for (const QString& line : lines) {
        const QString name = CockpitName(line);
        const bool isNumber = name == QLatin1String("0") || ReadInt(name) != 0;
        if (!isNumber && turretCockpits.contains(name))
            used.append(line);
    }
    return used;
}

QList<CockpitListRow> CockpitRowsInLineWith(const QList<CockpitListRow>& rows, const QStringList& lines)
{
    QList<CockpitListRow> result;
    for (const CockpitListRow& row : rows)
        if (FindCockpit(lines, row.Id) >= 0)
            result.append(row);
    for (const QString& line : lines) {
        const QString name = CockpitName(line);
        auto row =
            std::find_if(result.begin(), result.end(), [&](const CockpitListRow& r) { return r.Id == name; });
        if (row != result.end())
            row->Line = line;
        else
            result.append({name, PackageCockpitSource, line});
    }
    return result;
}
