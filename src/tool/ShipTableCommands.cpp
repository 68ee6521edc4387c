// The commands on ship tables: a TShips table (plain text, a packed .pck, or
// an entry "<catalog>::types\TShips.pck") listed one ship a line, and one ship
// as JSON. Both read the lines through the ship-line module the configuration
// dialog uses, so a script sees the fields, turrets and gun groups the dialog
// would show.
//
// In the JSON a field whose text is a whole number in plain decimal is a
// number; any other text (floats, names, empty fields) stays a string, as it
// stands in the line.
#include "Commands.h"

#include "catfs/transfer/GameFile.h"
#include "gamedata/ShipLineEdit.h"
#include "gamedata/TypesFile.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cstdio>
#include <optional>

namespace {

// The names of the fields of a line's head; fields the program does not
// interpret are named by their number.
QString HeadFieldName(int field)
{
    static const QStringList names = {"BodyFile",
                                      "PictureId",
                                      "Yaw",
                                      "Pitch",
                                      "Roll",
                                      "ShipClass",
                                      "NameId",
                                      "Speed",
                                      "Acceleration",
                                      "EngineSound",
                                      "ReactionDelay",
                                      "EngineEffect",
                                      "EngineGlowEffect",
                                      "ReactorOutput",
                                      "SoundVolumeMin",
                                      "SoundVolumeMax",
                                      "ShipScene",
                                      "CockpitScene",
                                      "LaserMask",
                                      "GunCount",
                                      "WeaponEnergy",
                                      "RechargeRate",
                                      "ShieldType",
                                      "ShieldCount",
                                      "MissileMask",
                                      "MissileCount",
                                      "SpeedExtensions",
                                      "RudderExtensions",
                                      "CargoMin",
                                      "CargoMax"};
    if (field < names.size())
        return names[field];
    if (field >= ShipLineField::FirstTurretSlot && field < ShipLineField::DockingSlots) {
        const int slot = (field - ShipLineField::FirstTurretSlot) / 2;
        const bool cockpit = field == TurretCockpitField(slot);
        return QStringLiteral("TurretSlot%1%2").arg(slot + 1).arg(cockpit ? "Cockpit" : "Position");
    }
    static const QStringList late = {
        "DockingSlots",       "CargoClass", "Race",    "Hull",    "ExplosionDef", "BodyExplosionDef",
        "ExplosionParticles", "Variation",  "Field51", "ClassId", "CockpitCount"};
    if (field >= ShipLineField::DockingSlots && field - ShipLineField::DockingSlots < late.size())
        return late[field - ShipLineField::DockingSlots];
    return QStringLiteral("Field%1").arg(field);
}

QString TailFieldName(int offset)
{
    switch (offset) {
    case ShipTailOffset::PriceNpc:
        return "PriceNpc";
    case ShipTailOffset::PricePlayer:
        return "PricePlayer";
    case ShipTailOffset::Notoriety:
        return "Notoriety";
    case ShipTailOffset::VideoId:
        return "VideoId";
    case ShipTailOffset::ShipId:
        return "ShipId";
    default:
        return QStringLiteral("T+%1").arg(offset);
    }
}

QJsonValue FieldValue(const QString& text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (isNumber && QString::number(number) == text)
        return number;
    return text;
}

QJsonObject NodeObject(const SceneNode& node)
{
    return {{"body", FieldValue(node.Body)}, {"part", FieldValue(node.Part)}};
}

QJsonArray EntriesArray(const QList<GunEntry>& entries)
{
    QJsonArray array;
    for (const GunEntry& entry : entries)
        array.append(QJsonObject{{"index", FieldValue(entry.Index)},
                                 {"count", FieldValue(entry.Count)},
                                 {"primary", NodeObject(entry.Primary)},
                                 {"secondary", NodeObject(entry.Secondary)}});
    return array;
}

QString WalkProblem(LineWalk walk)
{
    switch (walk) {
    case LineWalk::ShortHead:
        return "the line has fewer than 54 fields";
    case LineWalk::CockpitsPastEnd:
        return "its cockpit count (field 53) points past the end of the line";
    case LineWalk::GroupsPastEnd:
        return "its gun groups run past the end of the line";
    case LineWalk::TailPastEnd:
        return "the line ends before the ship id behind its gun groups";
    case LineWalk::Complete:
        break;
    }
    return {};
}

// The data lines of the table, or the reason why there are none.
std::optional<QStringList> ReadShipTable(const Invocation& call, const QString& table)
{
    const bool entry = table.contains(QLatin1String("::"));
    if (!entry && !QFileInfo(table).isFile()) {
        Fail(call, QStringLiteral("%1: File does not exist.").arg(table));
        return std::nullopt;
    }
    QTemporaryDir work;
    const QString plain = work.filePath("TShips.txt");
    if (!work.isValid() || !GameFileExtract(table, plain, false, false)) {
        Fail(call, QStringLiteral("%1: %2").arg(table, DriverReason("cannot be read")));
        return std::nullopt;
    }
    return ReadTypesFile(plain).records;
}

int ListShips(const Invocation& call)
{
    const std::optional<QStringList> lines = ReadShipTable(call, call.arguments[0]);
    if (!lines)
        return ExitFailure;
    QString out = "row\tid\tscene\tclass\trace\tturrets\tgun groups\n";
    for (int row = 0; row < lines->size(); ++row) {
        const QString& line = lines->at(row);
        out += QStringLiteral("%1\t%2\t%3\t%4\t%5\t%6\t%7\n")
                   .arg(row)
                   .arg(ShipLineId(line), ShipField(line, ShipLineField::ShipScene),
                        ShipField(line, ShipLineField::ShipClass), ShipField(line, ShipLineField::Race))
                   .arg(TurretsOf(line).size())
                   .arg(LayoutOf(line).groups.size());
    }
    std::fputs(out.toUtf8().constData(), stdout);
    return ExitSuccess;
}

// The row of the ship with this id, else the row of this number.
int FindShip(const QStringList& lines, const QString& wanted)
{
    for (int row = 0; row < lines.size(); ++row)
        if (ShipLineId(lines[row]) == wanted)
            return row;
    bool isNumber = false;
    const int row = wanted.toInt(&isNumber);
    return isNumber && row >= 0 && row < lines.size() ? row : -1;
}

QJsonObject ShipObject(int row, const QString& line)
{
    const ShipLineLayout layout = LayoutOf(line);
    QJsonObject fields;
    for (int field = 0; field <= ShipLineField::CockpitCount; ++field)
        fields.insert(HeadFieldName(field), FieldValue(ShipField(line, field)));
    QJsonObject tail;
    for (int offset = 0; offset <= ShipTailOffset::ShipId; ++offset)
        tail.insert(TailFieldName(offset), FieldValue(ShipField(line, layout.tailIndex + offset)));

    const QList<GunGroup> groups = GunGroupsOf(line);
    QJsonArray groupArray;
    for (const GunGroup& group : groups)
        groupArray.append(QJsonObject{{"number", FieldValue(group.Number)},
                                      {"pos", FieldValue(group.Pos)},
                                      {"guns", FieldValue(group.Guns)},
                                      {"entries", EntriesArray(group.Entries)}});
    QJsonArray turrets;
    for (const TurretInfo& turret : TurretsOf(line))
        turrets.append(
            QJsonObject{{"number", turret.Number},
                        {"position", turret.Position},
                        {"cockpit", FieldValue(turret.Cockpit)},
                        {"node", NodeObject(turret.Node)},
                        {"guns", turret.Number < groups.size() ? EntriesArray(groups[turret.Number].Entries)
                                                               : QJsonArray()}});

    QJsonObject ship{{"row", row},
                     {"id", ShipLineId(line)},
                     {"cockpitCount", layout.cockpitCount},
                     {"gunIndexField", layout.gunIndexField},
                     {"tailIndex", layout.tailIndex},
                     {"fields", fields},
                     {"tail", tail},
                     {"turrets", turrets},
                     {"gunGroups", groupArray}};
    if (layout.cockpitCount > 0)
        ship.insert("mainCockpit", NodeObject(CockpitNode(line, 0)));
    return ship;
}

int ShowShip(const Invocation& call)
{
    const std::optional<QStringList> lines = ReadShipTable(call, call.arguments[0]);
    if (!lines)
        return ExitFailure;
    const QString& wanted = call.arguments[1];
    const int row = FindShip(*lines, wanted);
    if (row < 0)
        return Fail(call,
                    QStringLiteral("%1: no ship with the id or row '%2'").arg(call.arguments[0], wanted));
    const QString& line = lines->at(row);
    const LineWalk walk = WalkShipLine(line);
    if (walk != LineWalk::Complete)
        return Fail(call, QStringLiteral("%1: row %2 (%3): %4")
                              .arg(call.arguments[0])
                              .arg(row)
                              .arg(ShipLineId(line), WalkProblem(walk)));
    std::fputs(QJsonDocument(ShipObject(row, line)).toJson(QJsonDocument::Indented).constData(), stdout);
    return ExitSuccess;
}

const SubCommand kShipTableCommands[] = {
    {"ships",
     "TABLE",
     "list the ships of a TShips table (.txt, .pck or catalog entry), one a line",
     1,
     {},
     ListShips},
    {"ship",
     "TABLE ID|ROW",
     "print one ship of a TShips table as JSON: named fields, turrets, gun groups",
     2,
     {},
     ShowShip},
};

} // namespace

std::span<const SubCommand> ShipTableCommands()
{
    return kShipTableCommands;
}
