// Fuzz harness of the game's tables: an input is the text of a table file.
// It is read as a types table (TShips, TCockpits, the weapon tables), every
// record is walked as a ship line (cockpit blocks, gun groups, renumbering,
// the settling for a save), the records become a cockpit table of their own,
// and the text is read as the grouped Dummies and Components tables.
#include "FuzzSupport.h"
#include "gamedata/CockpitTable.h"
#include "gamedata/GroupedTables.h"
#include "gamedata/ShipLine.h"
#include "gamedata/ShipLineEdit.h"
#include "gamedata/TypesFile.h"
#include "gamedata/WeaponTables.h"

#include <QString>
#include <QStringList>

namespace {

constexpr const char* kHarness = "fuzz_types";

void Require(bool condition, const char* what, const QString& detail = {})
{
    fuzz::Require(condition, kHarness, what, detail.left(200).toStdString());
}

// The lines a reader keeps: line ends cut, skipped lines left out.
template <class Skipped> qsizetype KeptLines(const QString& text, Skipped skipped)
{
    qsizetype kept = 0;
    for (QString line : text.split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        kept += skipped(line) ? 0 : 1;
    }
    return kept;
}

bool SameLayout(const ShipLineLayout& a, const ShipLineLayout& b)
{
    if (a.cockpitCount != b.cockpitCount || a.gunIndexField != b.gunIndexField ||
        a.tailIndex != b.tailIndex || a.groups.size() != b.groups.size())
        return false;
    for (qsizetype i = 0; i < a.groups.size(); ++i)
        if (a.groups[i].header != b.groups[i].header || a.groups[i].entries != b.groups[i].entries)
            return false;
    return true;
}

// The walk stays inside the line, its groups follow one another, and
// renumbering changes neither the fields nor the layout, and is stable.
void CheckShipLine(const QString& line)
{
    const qsizetype fieldCount = line.count(u';') + 1;
    const ShipLineLayout layout = LayoutOf(line);
    Require(layout.cockpitCount >= 0 &&
                layout.gunIndexField == ShipLineField::FirstCockpitBlock + 4 * layout.cockpitCount,
            "cockpit blocks and the gun index disagree:", line);
    qint64 p = layout.gunIndexField;
    for (const GunGroupPlace& group : layout.groups) {
        Require(group.header == p && group.entries >= 0, "gun groups do not follow one another:", line);
        p = group.header + 4 + 6 * qint64(group.entries);
        Require(p < fieldCount, "a gun group runs past the line:", line);
    }
    Require(layout.tailIndex == p + 1, "the tail is not behind the last group:", line);

    const QString renumbered = RenumberGuns(line);
    Require(renumbered.count(u';') + 1 == qMax<qsizetype>(fieldCount, 1),
            "renumbering changed the fields:", line);
    Require(SameLayout(LayoutOf(renumbered), layout), "renumbering changed the layout:", line);
    Require(RenumberGuns(renumbered) == renumbered, "renumbering is not stable:", line);

    const SettledShipLine settled = SettleShipLine(line, "scene", "cockpit", {}, "FUZZ_ID");
    Require(ShipLineId(settled.Data) == "FUZZ_ID" &&
                ShipField(settled.Data, ShipLineField::ShipScene) == "scene" &&
                ShipField(settled.Data, ShipLineField::CockpitScene) == "cockpit",
            "settling lost the id or the scenes:", line);
    Require(!ShipFields(line, 0, -1).endsWith(u';'), "a run of fields ends in ';':", line);

    // The configuration dialog's edits of the middle, on whatever a table holds.
    Require(UpdateLineGuns(line, 0).count(u';') == line.count(u';'),
            "numbering the guns changed the fields:", line);
    if (WalkShipLine(line) == LineWalk::Complete) {
        for (const QString& edited : {AddTurret(line, 1), AddGunEntry(line, 0), RemoveGunEntry(line, 0, 0)})
            Require(edited == line || WalkShipLine(edited) == LineWalk::Complete,
                    "an edit left a line that cannot be walked:", line);
    }
}

void CheckTypesTable(const QString& text)
{
    const TypesTable table = ParseTypesText(text);
    const qsizetype kept = KeptLines(text, IsSkippedTypesLine);
    Require(kept == (table.header.isNull() && table.records.isEmpty() ? 0 : 1 + table.records.size()),
            "lines were lost or added");
    const QList<ShieldRow> shields = ShieldRows(table);
    const QList<WeaponRow> weapons = WeaponRows(table);
    Require(shields.size() == table.records.size() && weapons.size() == table.records.size(),
            "rows and records differ in number");
    for (qsizetype i = 0; i < weapons.size(); ++i)
        Require(weapons[i].Bit == WeaponBit(int(i)) && weapons[i].TextId == shields[i].TextId,
                "a weapon row has the wrong bit or text");

    for (const QString& record : table.records) {
        Require(!record.contains(u'\n') && !IsSkippedTypesLine(record), "a record is no data line:", record);
        CheckShipLine(record);
        CockpitName(record);
        CockpitWeapons(record);
    }
    if (!table.records.isEmpty()) {
        // The records as the custom cockpits of a ship: the written table
        // reads back with one row more, the default cockpit.
        const CockpitTableOutput output =
            BuildCockpitTable("ship", "author", table.records, table.records.first());
        Require(ParseTypesText(output.text).records.size() == table.records.size() + 1,
                "a written cockpit table reads back with other rows");
    }
}

void CheckGroupedTables(const QString& text)
{
    const qsizetype kept = KeptLines(text, IsSkippedGroupedLine);
    qsizetype placed = 0;
    for (const DummySection& section : ParseDummies(text))
        placed += 1 + section.Lines.size();
    Require(placed == kept, "Dummies lost or added lines");
    placed = 0;
    for (const ComponentSection& section : ParseComponents(text)) {
        ++placed;
        for (const ComponentGroup& group : section.Groups)
            placed += 1 + group.Lines.size();
    }
    Require(placed == kept, "Components lost or added lines");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(bytes), qsizetype(size));
    CheckTypesTable(text);
    CheckGroupedTables(text);
    return 0;
}
