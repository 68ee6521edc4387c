// Reading and changing the middle of a ship line: the cockpit blocks, the gun
// groups and the turret slots that belong to them (see ShipLine.h for the
// layout). Turret k (from 1) has turret slot k, cockpit block k and gun group
// k; block 0 and group 0 belong to the main cockpit, which has no slot.
//
// Every edit walks the line, works on its fields as a list and joins them
// again, so empty fields keep their places, everything in front of the middle
// but the fields an edit names and everything from T on stays as it was, and
// T moves by exactly the size of what was added or removed: 4 fields for a
// cockpit block, 4 for a gun group's header, 6 for a gun entry.
//
// An edit of a line that is too short for what it touches adds empty fields.
// No edit reads past the end of a line.
#pragma once

#include "gamedata/ShipLine.h"

#include <QList>
#include <QString>

// A node of a scene as a line holds it: a body name and a part number. Shown
// as "body:part"; the text is cut at its last ":" so that any body name comes
// back as it was.
struct SceneNode
{
    QString Body;
    QString Part;
};

// "body:part" cut at the last ":"; a text without ":" is all body.
SceneNode SplitNode(const QString& text);
QString JoinNode(const SceneNode& node);

// The six fields of a gun entry, as text.
struct GunEntry
{
    QString Index;
    QString Count;
    SceneNode Primary;
    SceneNode Secondary;
};

// A gun group: its header and its entries, as text.
struct GunGroup
{
    QString Pos;
    QString Guns;
    QString Number;
    QList<GunEntry> Entries;
};

// A turret as the line names it: turret slot `Number` with a position other
// than 0, its cockpit (a row number of TCockpits or a custom cockpit's name)
// and the node of its cockpit block.
struct TurretInfo
{
    int Number = 0;
    QString Cockpit;
    int Position = 0;
    SceneNode Node;
};

// Turret positions are 1 to 6; 0 marks an empty slot.
inline constexpr int TurretPositionCount = 6;

// The gun groups as far as the walk can follow them.
QList<GunGroup> GunGroupsOf(const QString& line);

// The turrets of the line: slots 1 to N - 1 (at most six) whose position is
// not 0, in slot order. A slot with position 0 is no turret, even when the
// line has a cockpit block for it.
QList<TurretInfo> TurretsOf(const QString& line);

// The node of cockpit block `block` (0 is the main cockpit); empty when the
// line has no such block.
SceneNode CockpitNode(const QString& line, int block);

// How far the walk of a line's middle gets.
enum class LineWalk
{
    Complete,        // head, blocks, groups and the ship id at T + 9 are all there
    ShortHead,       // fewer than 54 fields: no cockpit count
    CockpitsPastEnd, // the cockpit count puts G behind the last field
    GroupsPastEnd,   // a group, or the count of groups, runs past the last field
    TailPastEnd      // the groups end, but T + 9 lies behind the last field
};
LineWalk WalkShipLine(const QString& line);

// Every edit below that changes a line leaves its guns numbered: groups take
// Number g + 1, a group's Pos and an entry's Index run from 1 through the
// entries' Count, and GunCount (field 19) is the total. An entry of Count 0
// therefore shares its Index with the entry behind it.

// Gives a line without cockpit blocks its main cockpit: block 0 with `node`,
// and an empty gun group for it when the line has no group yet. A line that
// has block 0 already comes back unchanged.
QString AddMainCockpit(const QString& line, const SceneNode& node);

// Adds a turret at `position` behind the last cockpit block: turret slot N
// takes cockpit 0 and the position, block N with node 0:0, and an empty gun
// group at the end. A line without cockpit blocks, or with seven, comes back
// unchanged. T moves by 8.
QString AddTurret(const QString& line, int position);

// Removes turret `turret` (1 to N - 1): its slot, block and group. Later
// turrets move down by one in all three, the freed last slot becomes 0;0 and
// the blocks are numbered again. T moves by 8 and by 6 for each entry the
// group had.
QString RemoveTurret(const QString& line, int turret);

// Appends the entry Index;0;0;0;0;0 to group `group` (from 0); T moves by 6.
QString AddGunEntry(const QString& line, int group);

// Removes entry `entry` (from 0) of group `group`; T moves back by 6. A group
// whose last entry goes stays, with Entries 0: its cockpit keeps its place in
// the line and simply has no guns.
QString RemoveGunEntry(const QString& line, int group, int entry);

// Replaces Count and both nodes of an entry; its Index stays.
QString SetGunEntry(const QString& line, int group, int entry, const GunEntry& value);

// Brings the guns' numbers in line after entries changed: group
// `editedGroup` (or none, with -1) takes Guns as the sum of its entries' Count
// and Entries as their number; then the numbering above. Fields that the line
// does not have are not added.
QString UpdateLineGuns(const QString& line, int editedGroup);
