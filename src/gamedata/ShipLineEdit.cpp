#include "gamedata/ShipLineEdit.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr QChar Separator = u';';
constexpr int HeadSize = ShipLineField::FirstCockpitBlock; // fields 0 to 53
constexpr int BlockSize = 4;
constexpr int GroupHeaderSize = 4;
constexpr int EntrySize = 6;
constexpr int MaxCockpitBlocks = 1 + TurretSlotCount;

// Offsets within a group's header (after the field before the group) and
// within an entry.
enum GroupHeader : int
{
    Pos = 0,
    Guns = 1,
    Number = 2,
    Entries = 3
};
enum EntryField : int
{
    Index = 0,
    Count = 1,
    PrimaryBody = 2,
    PrimaryPart = 3,
    SecondaryBody = 4,
    SecondaryPart = 5
};

QString Num(qint64 value)
{
    return QString::number(value);
}

struct Group
{
    QStringList header; // Pos, Guns, Number, Entries
    QList<QStringList> entries;
};

// A line taken apart at its middle. Joining the parts again gives the line
// back, padded to a whole head when it was shorter.
struct Middle
{
    QStringList head; // fields 0 to 53
    QList<QStringList> blocks;
    QList<Group> groups;
    QStringList tail; // fields T to the end

    static Middle Of(const QString& line)
    {
        const QStringList fields = line.split(Separator);
        const ShipLineLayout layout = LayoutOf(line);
        auto run = [&fields](int from, int count) {
            QStringList part = fields.mid(from, count);
            while (part.size() < count)
                part.append(QString());
            return part;
        };
        Middle middle;
        middle.head = run(0, HeadSize);
        for (int block = 0; block < layout.cockpitCount; ++block)
            middle.blocks.append(run(HeadSize + BlockSize * block, BlockSize));
        for (const GunGroupPlace& place : layout.groups) {
            Group group{run(place.header + 1, GroupHeaderSize), {}};
            for (int entry = 0; entry < place.entries; ++entry)
                group.entries.append(run(place.FirstEntry() + EntrySize * entry, EntrySize));
            middle.groups.append(group);
        }
        middle.tail = fields.mid(layout.tailIndex);
        return middle;
    }

    QString Join() const
    {
        QStringList fields = head;
        fields[ShipLineField::CockpitCount] = Num(blocks.size());
        for (const QStringList& block : blocks)
            fields += block;
        fields.append(Num(groups.size()));
        for (const Group& group : groups) {
            fields += group.header;
            for (const QStringList& entry : group.entries)
                fields += entry;
        }
        fields += tail;
        return fields.join(Separator);
    }

    // Blocks numbered 1, 2, ... with their predecessor 0, 1, ...
    void NumberBlocks()
    {
        for (int block = 0; block < blocks.size(); ++block) {
            blocks[block][0] = Num(block + 1);
            blocks[block][1] = Num(block);
        }
    }

    // Group numbers from 1; Pos and Index run through the entries' Count.
    void RenumberGroups()
    {
        qint64 counter = 1; // 64-bit: a hostile line may hold huge counts
        for (int g = 0; g < groups.size(); ++g) {
            Group& group = groups[g];
            group.header[Number] = Num(g + 1);
            group.header[Pos] = Num(counter);
            for (QStringList& entry : group.entries) {
                entry[Index] = Num(counter);
                counter += ReadInt(entry[Count]);
            }
        }
        head[ShipLineField::GunCount] = Num(counter - 1);
    }
};

// The field count, counting the empty field behind a final ";".
int FieldCount(const QString& line)
{
    return static_cast<int>(line.count(Separator)) + 1;
}

GunEntry EntryOf(const QStringList& fields)
{
    return {fields[Index],
            fields[Count],
            {fields[PrimaryBody], fields[PrimaryPart]},
            {fields[SecondaryBody], fields[SecondaryPart]}};
}

bool HasEntry(const Middle& middle, int group, int entry)
{
    return group >= 0 && group < middle.groups.size() && entry >= 0 &&
           entry < middle.groups[group].entries.size();
}

} // namespace

SceneNode SplitNode(const QString& text)
{
    const qsizetype colon = text.lastIndexOf(u':');
    if (colon < 0)
        return {text, QString()};
    return {text.left(colon), text.mid(colon + 1)};
}

QString JoinNode(const SceneNode& node)
{
    return node.Body + u':' + node.Part;
}

QList<GunGroup> GunGroupsOf(const QString& line)
{
    QList<GunGroup> groups;
    for (const Group& group : Middle::Of(line).groups) {
        GunGroup out{group.header[Pos], group.header[Guns], group.header[Number], {}};
        for (const QStringList& entry : group.entries)
            out.Entries.append(EntryOf(entry));
        groups.append(out);
    }
    return groups;
}

QList<TurretInfo> TurretsOf(const QString& line)
{
    QList<TurretInfo> turrets;
    const int blocks = LayoutOf(line).cockpitCount;
    for (int turret = 1; turret < blocks && turret <= TurretSlotCount; ++turret) {
        const int position = ShipFieldInt(line, TurretPositionField(turret - 1));
        if (position == 0)
            continue;
        turrets.append(
            {turret, ShipField(line, TurretCockpitField(turret - 1)), position, CockpitNode(line, turret)});
    }
    return turrets;
}

SceneNode CockpitNode(const QString& line, int block)
{
    if (block < 0 || block >= LayoutOf(line).cockpitCount)
        return {};
    const int first = ShipLineField::FirstCockpitBlock + BlockSize * block;
    return {ShipField(line, first + 2), ShipField(line, first + 3)};
}

LineWalk WalkShipLine(const QString& line)
{
    const qint64 fields = FieldCount(line);
    if (fields <= ShipLineField::CockpitCount)
        return LineWalk::ShortHead;
    const qint64 cockpits = ShipFieldInt(line, ShipLineField::CockpitCount);
    const qint64 g = HeadSize + BlockSize * cockpits;
    if (cockpits < 0 || g >= fields)
        return LineWalk::CockpitsPastEnd;
    const int groups = ShipFieldInt(line, int(g));
    if (groups < 0)
        return LineWalk::GroupsPastEnd;
    qint64 p = g;
    for (int group = 0; group < groups; ++group) {
        if (p + GroupHeaderSize >= fields)
            return LineWalk::GroupsPastEnd;
        const qint64 entries = ShipFieldInt(line, int(p + GroupHeaderSize));
        p += GroupHeaderSize + EntrySize * entries;
        if (entries < 0 || p >= fields)
            return LineWalk::GroupsPastEnd;
    }
    if (p + 1 + ShipTailOffset::ShipId >= fields)
        return LineWalk::TailPastEnd;
    return LineWalk::Complete;
}

QString AddMainCockpit(const QString& line, const SceneNode& node)
{
    Middle middle = Middle::Of(line);
    if (!middle.blocks.isEmpty())
        return line;
    middle.blocks.append({"1", "0", node.Body, node.Part});
    if (middle.groups.isEmpty())
        middle.groups.append({{"1", "0", "1", "0"}, {}});
    middle.RenumberGroups();
    return middle.Join();
}

QString AddTurret(const QString& line, int position)
{
    Middle middle = Middle::Of(line);
    const int turret = int(middle.blocks.size());
    if (turret == 0 || turret >= MaxCockpitBlocks)
        return line;
    middle.head[TurretCockpitField(turret - 1)] = "0";
    middle.head[TurretPositionField(turret - 1)] = Num(position);
    middle.blocks.append({Num(turret + 1), Num(turret), "0", "0"});
    middle.groups.append({{"1", "0", "1", "0"}, {}});
    middle.RenumberGroups();
    return middle.Join();
}

QString RemoveTurret(const QString& line, int turret)
{
    Middle middle = Middle::Of(line);
    if (turret < 1 || turret >= middle.blocks.size())
        return line;
    for (int slot = turret - 1; slot < TurretSlotCount; ++slot) {
        const bool last = slot + 1 >= TurretSlotCount;
        middle.head[TurretCockpitField(slot)] = last ? "0" : middle.head[TurretCockpitField(slot + 1)];
        middle.head[TurretPositionField(slot)] = last ? "0" : middle.head[TurretPositionField(slot + 1)];
    }
    middle.blocks.removeAt(turret);
    middle.NumberBlocks();
    if (turret < middle.groups.size())
        middle.groups.removeAt(turret);
    middle.RenumberGroups();
    return middle.Join();
}

QString AddGunEntry(const QString& line, int group)
{
    Middle middle = Middle::Of(line);
    if (group < 0 || group >= middle.groups.size())
        return line;
    middle.groups[group].entries.append({"0", "0", "0", "0", "0", "0"});
    middle.groups[group].header[Entries] = Num(middle.groups[group].entries.size());
    return UpdateLineGuns(middle.Join(), group);
}

QString RemoveGunEntry(const QString& line, int group, int entry)
{
    Middle middle = Middle::Of(line);
    if (!HasEntry(middle, group, entry))
        return line;
    middle.groups[group].entries.removeAt(entry);
    middle.groups[group].header[Entries] = Num(middle.groups[group].entries.size());
    return UpdateLineGuns(middle.Join(), group);
}

QString SetGunEntry(const QString& line, int group, int entry, const GunEntry& value)
{
    Middle middle = Middle::Of(line);
    if (!HasEntry(middle, group, entry))
        return line;
    QStringList& fields = middle.groups[group].entries[entry];
    fields[Count] = value.Count;
    fields[PrimaryBody] = value.Primary.Body;
    fields[PrimaryPart] = value.Primary.Part;
    fields[SecondaryBody] = value.Secondary.Body;
    fields[SecondaryPart] = value.Secondary.Part;
    return UpdateLineGuns(middle.Join(), group);
}

QString UpdateLineGuns(const QString& line, int editedGroup)
{
    // Works on the fields in place, so that a line that ends early keeps its length.
    QStringList fields = line.split(Separator);
    const ShipLineLayout layout = LayoutOf(line);
    qint64 gunCounter = 1; // 64-bit: a hostile line may hold huge counts
    for (int g = 0; g < layout.groups.size(); ++g) {
        const GunGroupPlace& place = layout.groups[g];
        if (g == editedGroup) {
            qint64 guns = 0;
            for (int entry = 0; entry < place.entries; ++entry)
                guns += ReadInt(fields[place.FirstEntry() + EntrySize * entry + Count]);
            fields[place.header + 1 + Guns] = Num(guns);
            fields[place.header + 1 + Entries] = Num(place.entries);
        }
        fields[place.header + 1 + Number] = Num(g + 1);
        fields[place.header + 1 + Pos] = Num(gunCounter);
        for (int entry = 0; entry < place.entries; ++entry) {
            const int first = place.FirstEntry() + EntrySize * entry;
            fields[first + Index] = Num(gunCounter);
            gunCounter += ReadInt(fields[first + Count]);
        }
    }
    if (fields.size() > ShipLineField::GunCount)
        fields[ShipLineField::GunCount] = Num(gunCounter - 1);
    return fields.join(Separator);
}
