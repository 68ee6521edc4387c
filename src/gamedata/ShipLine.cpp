#include "gamedata/ShipLine.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr QChar Separator = u';';

} // namespace

const char* const DefaultShipLine =
    "0;0;0;0;0;0;0;0;0;106;1;5;37;0;112;202;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;"
    "0;0;0;0;0;0;0;0;0;0;0;35;36;1;0;0;0;0;0;1;0;25;1;0;0;0;0;0;HW_NEW_SHIP;";

QString ShipField(const QString& line, int index)
{
    return line.section(Separator, index, index);
}

QString ShipFields(const QString& line, int first, int last)
{
    if (last >= 0 && first > last)
        return QString();
    QString run = line.section(Separator, first, last);
    while (run.endsWith(Separator))
        run.chop(1);
    return run;
}

QString ShipLineId(const QString& line)
{
    const QStringList fields = line.split(Separator);
    for (auto it = fields.crbegin(); it != fields.crend(); ++it)
        if (!it->isEmpty())
            return *it;
    return QString();
}

QString SetShipField(const QString& line, int index, const QString& value)
{
    if (index < 0)
        return line;
    QStringList fields = line.split(Separator);
    while (fields.size() <= index)
        fields.append(QString());
    fields[index] = value;
    return fields.join(Separator);
}

int ReadInt(const QString& text)
{
    bool ok = false;
    const int value = text.trimmed().toInt(&ok, 10);
    return ok ? value : 0;
}

double ReadFloat(const QString& text)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    return ok ? value : 0.0;
}

int ShipFieldInt(const QString& line, int index)
{
    return ReadInt(ShipField(line, index));
}

QString FormatFloat(double value)
{
    return QString::number(value, 'g', 6);
}

ShipLineLayout LayoutOf(const QString& line)
{
    ShipLineLayout layout;
    const int fieldCount = static_cast<int>(line.count(Separator)) + 1;
    // A count that would put G behind the line's end is taken as no cockpits.
    const int cockpits = ShipFieldInt(line, ShipLineField::CockpitCount);
    layout.cockpitCount =
        (cockpits > 0 && ShipLineField::FirstCockpitBlock + 4 * static_cast<qint64>(cockpits) < fieldCount)
            ? cockpits
            : 0;
    layout.gunIndexField = ShipLineField::FirstCockpitBlock + 4 * layout.cockpitCount;

    const int groupCount = ShipFieldInt(line, layout.gunIndexField);
    int p = layout.gunIndexField;
    for (int group = 0; group < groupCount && p + 4 < fieldCount; ++group) {
        const int entries = std::max(0, ShipFieldInt(line, p + 4));
        const qint64 next = p + 4 + 6 * static_cast<qint64>(entries);
        if (next >= fieldCount)
            break;
        layout.groups.append({p, entries});
        p = static_cast<int>(next);
    }
    layout.tailIndex = p + 1;
    return layout;
}

QString RenumberGuns(const QString& line)
{
    const ShipLineLayout layout = LayoutOf(line);
    QStringList fields = line.split(Separator);
    // 64 bits: the counts of a foreign line may add up past the int range.
    qint64 counter = 1;
    for (const GunGroupPlace& group : layout.groups) {
        fields[group.header + 1] = QString::number(counter);
        for (int entry = 0; entry < group.entries; ++entry) {
            const int index = group.FirstEntry() + 6 * entry;
            fields[index] = QString::number(counter);
            counter += ReadInt(fields[index + 1]);
        }
    }
    if (fields.size() > ShipLineField::GunCount)
        fields[ShipLineField::GunCount] = QString::number(counter - 1);
    return fields.join(Separator);
}

namespace {

// The standard cockpit of the list that a turret slot's number names.
const CockpitListRow* StandardCockpitNumbered(const QList<CockpitListRow>& cockpits, int number)
{
    if (number == 0)
        return nullptr;
    for (const CockpitListRow& row : cockpits)
        if (row.Source != QLatin1String(PackageCockpitSource) && ReadInt(row.Source) == number)
            return &row;
    return nullptr;
}

} // namespace

SettledShipLine SettleShipLine(const QString& line, const QString& shipScene, const QString& cockpitScene,
                               const QList<CockpitListRow>& cockpits, const QString& id)
{
    SettledShipLine settled;
    QStringList names;
    for (const CockpitListRow& row : cockpits)
        if (row.Source == QLatin1String(PackageCockpitSource)) {
            names.append(row.Id);
            settled.Cockpits.append(row.Line);
        }

    QStringList fields;
    for (int n = 0; n < ShipLineField::ShipScene; ++n)
        fields.append(ShipField(line, n));
    fields.append(shipScene);
    fields.append(cockpitScene);
    for (int n = ShipLineField::CockpitScene + 1; n < ShipLineField::FirstTurretSlot; ++n)
        fields.append(ShipField(line, n));
    for (int slot = 0; slot < TurretSlotCount; ++slot) {
        const QString cockpit = ShipField(line, TurretCockpitField(slot));
        const CockpitListRow* match = StandardCockpitNumbered(cockpits, ReadInt(cockpit));
        fields.append(match ? match->Id : cockpit);
        if (match && !names.contains(match->Id)) {
            names.append(match->Id);
            settled.Cockpits.append(match->Line);
        }
        fields.append(ShipField(line, TurretPositionField(slot)));
    }
    QString data = fields.join(Separator) + Separator + ShipFields(line, ShipLineField::DockingSlots, -1);
    data.truncate(data.lastIndexOf(Separator) + 1);
    settled.Data = data + id;
    return settled;
}
