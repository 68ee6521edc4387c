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
