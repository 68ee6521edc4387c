// The ship line: one TShips row, fields separated by ";" and counted from 0.
// It is the one representation of a ship; nobody keeps a parsed copy. A field
// is changed by building a new line.
//
// Layout: a fixed head (fields 0 to 53), a middle of cockpit blocks and gun
// groups, and a tail whose place follows from the middle:
//   N = field 53, the number of cockpit blocks (4 fields each, from field 54);
//   G = 54 + 4N, the field holding the number of gun groups;
//   each gun group: 4 header fields (Pos, Guns, Number, Entries) behind the
//   field before it, then Entries records of 6 fields (Index, Count,
//   PrimaryBody, PrimaryPart, SecondaryBody, SecondaryPart);
//   T, the first field behind the last group; T + 9 holds the ship's id.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// Numbers of the fields of the fixed head (0 to 53) that the program reads or
// writes by name. Fields 30 and 51 are carried through unread.
namespace ShipLineField {
enum : int
{
    BodyFile = 0,
    PictureId = 1,
    Yaw = 2,   // float: the field is the shown value * 6 / 360
    Pitch = 3, // as Yaw
    Roll = 4,  // as Yaw
    ShipClass = 5,
    NameId = 6,
    Speed = 7,        // 500 units = 1 m/s
    Acceleration = 8, // 500 units = 1 m/s
    EngineSound = 9,
    ReactionDelay = 10,
    EngineEffect = 11,
    EngineGlowEffect = 12,
    ReactorOutput = 13,
    SoundVolumeMin = 14,
    SoundVolumeMax = 15,
    ShipScene = 16,
    CockpitScene = 17,
    LaserMask = 18,
    GunCount = 19,
    WeaponEnergy = 20,
    RechargeRate = 21, // float: share of WeaponEnergy per second
    ShieldType = 22,
    ShieldCount = 23,
    MissileMask = 24,
    MissileCount = 25,
    SpeedExtensions = 26,
    RudderExtensions = 27,
    CargoMin = 28,
    CargoMax = 29,
    FirstTurretSlot = 31, // six slots of two fields: cockpit, position
    DockingSlots = 43,
    CargoClass = 44,
    Race = 45,
    Hull = 46,
    ExplosionDef = 47,
    BodyExplosionDef = 48,
    ExplosionParticles = 49,
    Variation = 50,
    ClassId = 52,
    CockpitCount = 53,
    FirstCockpitBlock = 54 // four fields a block: index, previous index, body, part
};
} // namespace ShipLineField

// Fields behind T, the first field behind the gun groups, as offsets from T.
namespace ShipTailOffset {
enum : int
{
    PriceNpc = 1,
    PricePlayer = 5,
    Notoriety = 6,
    VideoId = 7,
    ShipId = 9
};
} // namespace ShipTailOffset

// The six turret slots: slot k (from 0) names a cockpit in one field (a row
// number of the game's TCockpits, or a custom cockpit's name) and a turret
// position (0 = empty) in the next.
inline constexpr int TurretSlotCount = 6;
constexpr int TurretCockpitField(int slot)
{
    return ShipLineField::FirstTurretSlot + 2 * slot;
}
constexpr int TurretPositionField(int slot)
{
    return TurretCockpitField(slot) + 1;
}

// The TShips line of a new ship: 65 fields and a trailing semicolon, with no
// cockpit block and no gun group (T = 55).
extern const char* const DefaultShipLine;

// Field `index` of the line; a field behind the end is empty. A negative index
// counts from the end, -1 being the last field.
QString ShipField(const QString& line, int index);

// Fields `first` to `last` joined by ";"; `last` = -1 runs to the last field.
// Empty fields at the end of the run are dropped with their separators, so a
// run never ends in ";". Empty when `first` lies behind `last`.
QString ShipFields(const QString& line, int first, int last);

// The last field of the line that has text: the same for a line with and
// without its final ";".
QString ShipLineId(const QString& line);

// The line with field `index` replaced (fields are added when the line is
// shorter). Everything else, the final ";" included, stays as it was.
QString SetShipField(const QString& line, int index, const QString& value);

// Numbers in fields: text that is not a number reads as 0.
int ReadInt(const QString& text);
double ReadFloat(const QString& text);
int ShipFieldInt(const QString& line, int index);

// Floating-point values are written in form 'g' with six significant digits.
QString FormatFloat(double value);

// One gun group as it lies in a line.
struct GunGroupPlace
{
    int header = 0;  // the field before the group's four header fields
    int entries = 0; // its Entries value
    int FirstEntry() const { return header + 5; }
};

// The middle of a line, found by walking its gun groups.
struct ShipLineLayout
{
    int cockpitCount = 0;   // N
    int gunIndexField = 54; // G
    int tailIndex = 55;     // T
    QList<GunGroupPlace> groups;
};

// Walks the gun groups of the line. A line that is too short or holds
// nonsense counts gives a defined layout and never reads past its fields.
ShipLineLayout LayoutOf(const QString& line);
inline int CockpitCount(const QString& line)
{
    return LayoutOf(line).cockpitCount;
}
inline int GunIndexField(const QString& line)
{
    return LayoutOf(line).gunIndexField;
}
inline int TailIndex(const QString& line)
{
    return LayoutOf(line).tailIndex;
}

// Renumbers the guns: each group's Pos and each entry's Index take a counter
// that starts at 1 and grows by each entry's Count; field 19 (GunCount)
// becomes the final count.
QString RenumberGuns(const QString& line);

// One row of the main window's cockpit list: the cockpit's name, where it
// comes from (the row number in the game's TCockpits, or "<PACKAGE>" for a
// custom cockpit of the package) and its whole TCockpits line.
struct CockpitListRow
{
    QString Id;
    QString Source;
    QString Line;

    bool operator==(const CockpitListRow&) const = default;
};

// The cockpit list's source text of a custom cockpit.
inline constexpr const char* PackageCockpitSource = "<PACKAGE>";

// A ship line as it travels in a package, and the cockpit lines it brings.
struct SettledShipLine
{
    QString Data;
    QStringList Cockpits;
};

// Settles the line of the form for a save: fields 16 and 17 take the scene
// names; a turret slot whose cockpit number matches a standard cockpit of the
// list takes that cockpit's name instead; the last field that has text is
// replaced by `id`, with no ";" behind it. The cockpits brought along are the
// list's custom ones in list order, then each standard one a turret uses,
// once.
SettledShipLine SettleShipLine(const QString& line, const QString& shipScene, const QString& cockpitScene,
                               const QList<CockpitListRow>& cockpits, const QString& id);
