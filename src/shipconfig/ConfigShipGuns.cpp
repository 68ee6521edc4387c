// The gun groups of DConfigShip. ListGuns shows one row for each group of
// `Line`, ListGuns2 the entries of the selected group; an entry is changed in
// its row and written into `Line` at once, and adding or removing an entry
// rewrites `Line` and shows the lists again from it.
#include "shipconfig/DConfigShip.h"

#include "gamedata/ShipLineEdit.h"
#include "shipconfig/ConfigShipText.h"
#include "shipconfig/ListRows.h"

namespace {

constexpr const char* NoNode = "0:0";
constexpr const char* NoSecondary = ":-1";

} // namespace

int DConfigShip::SelectedGroup() const
{
    const QTreeWidgetItem* row = SelectedRow(ListGuns);
    return row ? RowNumber(row) - 1 : -1;
}

int DConfigShip::SelectedEntry() const
{
    const QTreeWidgetItem* row = SelectedRow(ListGuns2);
    return row ? RowNumber(row) - 1 : -1;
}

void DConfigShip::TakeLine(const QString& line)
{
    if (line.count(u';') != Line.count(u';'))
        m_middleEdited = true;
    Line = line;
}

QString DConfigShip::GroupPositionName(int group) const
{
    if (group == 0)
        return "Cockpit";
    if (group > TurretSlotCount)
        return {};
    return Text(ConfigShipText::PositionName) + ShipField(Line, TurretPositionField(group - 1));
}

void DConfigShip::FillGroupList()
{
    const ShipLineLayout layout = LayoutOf(Line);
    GunIndexField = layout.gunIndexField;
    TailIndex = layout.tailIndex;
    const QList<GunGroup> groups = GunGroupsOf(Line);
    m_filling = true;
    ListGuns->clear();
    for (int g = 0; g < groups.size(); ++g)
        new NumberedItem(ListGuns, {QString::number(g + 1), groups[g].Pos, groups[g].Guns,
                                    QString::number(groups[g].Entries.size()), GroupPositionName(g)});
    m_filling = false;
}

void DConfigShip::FillEntryList(int group)
{
    m_filling = true;
    ListGuns2->clear();
    const QList<GunGroup> groups = GunGroupsOf(Line);
    if (group >= 0 && group < groups.size()) {
        const QList<GunEntry>& entries = groups[group].Entries;
        for (int j = 0; j < entries.size(); ++j)
            new NumberedItem(ListGuns2, {QString::number(j + 1), entries[j].Count,
                                         JoinNode(entries[j].Primary), JoinNode(entries[j].Secondary)});
    }
    m_filling = false;
}

void DConfigShip::ShowGunGroup(int group, int entry)
{
    FillGroupList();
    SelectRow(ListGuns, RowNumbered(ListGuns, group + 1));
    FillEntryList(SelectedGroup());
    ListGuns2->setEnabled(SelectedGroup() >= 0);
    ButAddGun->setEnabled(SelectedGroup() >= 0);
    QTreeWidgetItem* row = RowNumbered(ListGuns2, entry + 1);
    SelectRow(ListGuns2, row);
    ButRemoveGun->setEnabled(row != nullptr);
    TabWigGuns->setEnabled(row != nullptr);
}

void DConfigShip::UpdateGunList()
{
    FillGroupList();
    Slot_SelectGun();
}

void DConfigShip::UpdateLineGuns()
{
    const int group = SelectedGroup();
    QString line = Line;
    for (int i = 0; group >= 0 && i < ListGuns2->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = ListGuns2->topLevelItem(i);
        const GunEntry entry{{}, row->text(1), SplitNode(row->text(2)), SplitNode(row->text(3))};
        line = SetGunEntry(line, group, RowNumber(row) - 1, entry);
    }
    TakeLine(::UpdateLineGuns(line, group));
    // The group rows show the new numbers; the selection stays.
    const QList<GunGroup> groups = GunGroupsOf(Line);
    for (int i = 0; i < ListGuns->topLevelItemCount(); ++i) {
        QTreeWidgetItem* row = ListGuns->topLevelItem(i);
        const int g = RowNumber(row) - 1;
        if (g >= 0 && g < groups.size()) {
            row->setText(1, groups[g].Pos);
            row->setText(2, groups[g].Guns);
            row->setText(3, QString::number(groups[g].Entries.size()));
        }
    }
    const ShipLineLayout layout = LayoutOf(Line);
    GunIndexField = layout.gunIndexField;
    TailIndex = layout.tailIndex;
}

void DConfigShip::Slot_SelectGun()
{
    ListGuns2->clear();
    ListGuns2->setEnabled(false);
    ButAddGun->setEnabled(false);
    const int group = SelectedGroup();
    if (group < 0)
        return;
    ButAddGun->setEnabled(true);
    FillEntryList(group);
    ListGuns2->setEnabled(true);
    Slot_SelectGun2();
}

void DConfigShip::ShowEntryFields(const QTreeWidgetItem* row)
{
    ComboATPrimary->clear();
    ComboATPrimary->addItem(NoNode);
    ComboATPrimary->addItems(SceneNodes);
    ShowComboText(ComboATPrimary, row->text(2));
    const SceneNode primary = SplitNode(row->text(2));
    LinePrimary->setText(primary.Body);
    SpinPrimary->setValue(ReadInt(primary.Part));
    const SceneNode secondary = SplitNode(row->text(3));
    LineSecondary->setText(secondary.Body);
    SpinSecondary->setValue(ReadInt(secondary.Part));
}

void DConfigShip::Slot_SelectGun2()
{
    const QTreeWidgetItem* row = SelectedRow(ListGuns2);
    if (!row) {
        ButRemoveGun->setEnabled(false);
        TabWigGuns->setEnabled(false);
        return;
    }
    ShowEntryFields(row);
    TabWigGuns->setEnabled(true);
    ButRemoveGun->setEnabled(true);
    Slot_SelectPrimary();
}

void DConfigShip::Slot_SelectPrimary()
{
    ComboATSecondary->clear();
    ComboATSecondary->setEnabled(false);
    QTreeWidgetItem* row = SelectedRow(ListGuns2);
    if (!row || SelectedGroup() < 0)
        return;
    const QString primary = ComboATPrimary->currentText();
    row->setText(2, primary);
    const SceneNode node = SplitNode(primary);
    LinePrimary->setText(node.Body);
    SpinPrimary->setValue(ReadInt(node.Part));
    ComboATSecondary->addItem(NoSecondary);
    if (primary == QLatin1String(NoNode)) {
        row->setText(1, "0");
        Slot_SelectSecondary();
        return;
    }
    row->setText(1, "1");
    const QStringList nodes = GunBodies.NodesOf(node.Body);
    if (!nodes.isEmpty()) {
        ComboATSecondary->addItems(nodes);
        ShowComboText(ComboATSecondary, row->text(3));
    }
    ComboATSecondary->setEnabled(true);
    Slot_SelectSecondary();
}

void DConfigShip::Slot_SelectSecondary()
{
    QTreeWidgetItem* row = SelectedRow(ListGuns2);
    if (!row)
        return;
    const QString secondary = ComboATSecondary->currentText();
    const SceneNode node = SplitNode(secondary);
    LineSecondary->setText(node.Body);
    SpinSecondary->setValue(ReadInt(node.Part));
    row->setText(3, secondary);
    UpdateLineGuns();
}

void DConfigShip::Slot_UpdateGuns()
{
    QTreeWidgetItem* row = SelectedRow(ListGuns2);
    if (!row || SelectedGroup() < 0)
        return;
    row->setText(2, LinePrimary->text() + ":" + QString::number(SpinPrimary->value()));
    row->setText(3, LineSecondary->text() + ":" + QString::number(SpinSecondary->value()));
    row->setText(1, SpinPrimary->value() > 0 && !LinePrimary->text().isEmpty() ? "1" : "0");
    UpdateLineGuns();
}

void DConfigShip::Slot_AddGun()
{
    const int group = SelectedGroup();
    if (group < 0)
        return;
    UpdateLineGuns();
    TakeLine(AddGunEntry(Line, group));
    ShowGunGroup(group, ListGuns2->topLevelItemCount());
    Slot_SelectGun2();
}

void DConfigShip::Slot_RemoveGun()
{
    const int entry = SelectedEntry();
    if (entry < 0) {
        ButRemoveGun->setEnabled(false);
        return;
    }
    const int group = SelectedGroup();
    UpdateLineGuns();
    TakeLine(RemoveGunEntry(Line, group, entry));
    // The entry that took the removed one's place, or the new last one, is
    // shown without being changed.
    const int left = int(GunGroupsOf(Line).value(group).Entries.size());
    ShowGunGroup(group, std::min(entry, left - 1));
    if (const QTreeWidgetItem* row = SelectedRow(ListGuns2))
        ShowEntryFields(row);
}
