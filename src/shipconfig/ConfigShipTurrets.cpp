// The turrets of DConfigShip. ListTurrets has a row for each turret:
// its number (the turret slot, cockpit block and gun group it owns), its
// cockpit, its position and the scene node of its model. Adding or removing a
// turret rewrites the middle of `Line` at once; the cockpit and the node of a
// row reach the line when it is rebuilt.
#include "shipconfig/DConfigShip.h"

#include "core/Services.h"
#include "forms/Prompter.h"
#include "gamedata/CockpitTable.h"
#include "gamedata/ShipLineEdit.h"
#include "shipconfig/ConfigShipText.h"
#include "shipconfig/ListRows.h"

namespace {

constexpr const char* NoNode = "0:0";
constexpr int MaxCockpitBlocks = TurretSlotCount + 1;

QString Num(int value)
{
    return QString::number(value);
}

// The position number at the head of a position text "<p>: <name>".
int PositionOf(const QTreeWidgetItem* row)
{
    return ReadInt(row->text(2).section(u':', 0, 0));
}

} // namespace

int DConfigShip::CockpitBlockCount() const
{
    return LayoutOf(Line).cockpitCount;
}

QString DConfigShip::PositionText(int position) const
{
    return Num(position) + ": " + Text(ConfigShipText::PositionName) + Num(position);
}

void DConfigShip::UpdateTurretButtons()
{
    ButTurretAdd->setEnabled(ListTurrets->topLevelItemCount() < TurretSlotCount &&
                             CockpitBlockCount() < MaxCockpitBlocks);
}

void DConfigShip::LoadTurrets()
{
    Slot_UpdateMasks();
    FillCockpitWeapons(0);
    GroupCockpit->setEnabled(false);

    ListTurrets->clear();
    for (const TurretInfo& turret : TurretsOf(Line)) {
        int number = ReadInt(turret.Cockpit);
        const bool named = number == 0 && turret.Cockpit != QLatin1String("0");
        if (named) {
            const int standard =
                ComboStdCockpit->findText(turret.Cockpit, Qt::MatchExactly | Qt::MatchCaseSensitive);
            if (standard >= 0)
                number = standard;
        }
        // A name that is no standard cockpit's is a custom cockpit's.
        const QString cockpit = named && number == 0 ? turret.Cockpit : Num(number);
        new NumberedItem(ListTurrets,
                         {Num(turret.Number), cockpit, PositionText(turret.Position), JoinNode(turret.Node)});
    }

    ComboCustCockpit->clear();
    for (const QString& line : CustomCockpits)
        ComboCustCockpit->addItem(CockpitName(line));

    if (CockpitBlockCount() > 0)
        ShowComboText(ComboMainCockpit, JoinNode(CockpitNode(Line, 0)));
    else
        ComboMainCockpit->setCurrentIndex(-1); // no main cockpit block: none is chosen
    ComboMainCockpit->setEnabled(ComboMainCockpit->count() > 0);
    UpdateTurretButtons();
    Slot_SelectGun();
}

QStringList DConfigShip::TurretSlotFields() const
{
    // A slot without a row (position 0) stays as the line has it.
    QStringList fields;
    for (int turret = 1; turret <= TurretSlotCount; ++turret) {
        if (const QTreeWidgetItem* row = RowNumbered(ListTurrets, turret))
            fields << row->text(1) << Num(PositionOf(row));
        else
            fields << ShipField(Line, TurretCockpitField(turret - 1))
                   << ShipField(Line, TurretPositionField(turret - 1));
    }
    return fields;
}

QStringList DConfigShip::CockpitBlockFields() const
{
    // A ship without a main cockpit block keeps none until it is given one.
    const int blocks = CockpitBlockCount();
    if (blocks == 0)
        return {ShipField(Line, ShipLineField::CockpitCount)};
    const SceneNode main = SplitNode(ComboMainCockpit->currentText());
    QStringList fields{Num(blocks), "1", "0", main.Body, main.Part};
    for (int turret = 1; turret < blocks; ++turret) {
        const QTreeWidgetItem* row = RowNumbered(ListTurrets, turret);
        if (!row) {
            // The block of a slot whose position is 0 is no turret's: it stays
            // as it is, so that the line keeps its blocks and groups in step.
            for (int offset = 0; offset < 4; ++offset)
                fields << ShipField(Line, ShipLineField::FirstCockpitBlock + 4 * turret + offset);
            continue;
        }
        // A turret that never got a node has the node "0": body 0, no part.
        const SceneNode node = SplitNode(row->text(3));
        fields << Num(turret + 1) << Num(turret) << node.Body << node.Part;
    }
    return fields;
}

void DConfigShip::Slot_AddTurret()
{
    if (ListTurrets->topLevelItemCount() >= TurretSlotCount || CockpitBlockCount() >= MaxCockpitBlocks) {
        ButTurretAdd->setEnabled(false);
        return;
    }
    QList<int> taken;
    for (int i = 0; i < ListTurrets->topLevelItemCount(); ++i)
        taken.append(PositionOf(ListTurrets->topLevelItem(i)));
    QStringList choices;
    for (int position = 1; position <= TurretPositionCount; ++position)
        if (!taken.contains(position))
            choices.append(PositionText(position));

    QString choice;
    if (choices.size() == 1) {
        choice = choices.first();
    } else if (choices.size() > 1) {
        const std::optional<QString> answer =
            Ask().item(this, "Qt: " + Text(ConfigShipText::TurretPositionCaption),
                       Text(ConfigShipText::TurretPositionLabel), choices, 0, false);
        if (answer && choices.contains(*answer))
            choice = *answer;
    }
    if (!choice.isEmpty())
        AddTurretAt(choice);
    UpdateTurretButtons();
}

void DConfigShip::AddTurretAt(const QString& positionText)
{
    if (CockpitBlockCount() == 0) {
        // The first turret of a ship without a main cockpit block gives it
        // that block and its group first, so that group 0 stays the cockpit's.
        const QString main = ComboMainCockpit->currentIndex() >= 0 ? ComboMainCockpit->currentText() : NoNode;
        TakeLine(AddMainCockpit(Line, SplitNode(main)));
        ShowComboText(ComboMainCockpit, main);
        ComboMainCockpit->setEnabled(true);
    }
    const int number = CockpitBlockCount();
    const QString line = AddTurret(Line, ReadInt(positionText.section(u':', 0, 0)));
    if (line == Line)
        return;
    TakeLine(line);
    auto* row = new NumberedItem(ListTurrets, {Num(number), "0", positionText, "0"}); // owned by the list
    SelectRow(ListTurrets, row);
    Slot_SelectTurret(row);
    UpdateGunList();
}

void DConfigShip::Slot_RemoveTurret()
{
    QTreeWidgetItem* row = SelectedRow(ListTurrets);
    if (!row) {
        ButTurretRemove->setEnabled(false);
        return;
    }
    const int number = RowNumber(row);
    delete row; // the list lets go of it
    for (int i = 0; i < ListTurrets->topLevelItemCount(); ++i) {
        QTreeWidgetItem* later = ListTurrets->topLevelItem(i);
        if (RowNumber(later) > number)
            later->setText(0, Num(RowNumber(later) - 1));
    }
    TakeLine(RemoveTurret(Line, number));
    UpdateGunList();
    // No turret is selected now, so the cockpit choice has none to change.
    ListTurrets->setCurrentItem(nullptr);
    ButTurretRemove->setEnabled(false);
    GroupCockpit->setEnabled(false);
    UpdateTurretButtons();
}

void DConfigShip::Slot_ChangeTurret(QTreeWidgetItem* item, int)
{
    if (!item || SceneNodes.isEmpty())
        return;
    const int current = std::max(0, int(SceneNodes.indexOf(item->text(3))));
    const std::optional<QString> answer = Ask().item(
        this, "Qt: " + Text(ConfigShipText::TurretNodeCaption),
        FormatMessage(Text(ConfigShipText::TurretNodeLabel), item->text(0)), SceneNodes, current, false);
    if (answer && !answer->isEmpty())
        item->setText(3, *answer);
}

void DConfigShip::Slot_MainCockpit(int item)
{
    if (item < 0 || CockpitBlockCount() > 0)
        return;
    TakeLine(AddMainCockpit(Line, SplitNode(ComboMainCockpit->itemText(item))));
    UpdateGunList();
    UpdateTurretButtons();
}
