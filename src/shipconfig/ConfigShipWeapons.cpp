// The masks of allowed lasers and missiles of DConfigShip: one check list
// shows the rows of TLaser or of TMissiles, ticked where the mask has the
// row's bit; the hidden column 1 holds the bit.
#include "shipconfig/DConfigShip.h"

#include "shipconfig/ConfigShipText.h"
#include "shipconfig/ListRows.h"

namespace {

// Fills a check list with the rows of a weapon table. A row past the 32nd
// has no bit and cannot be ticked.
void FillWeaponList(QTreeWidget* list, const QList<WeaponRow>& rows, int mask)
{
    list->clear();
    for (const WeaponRow& row : rows) {
        auto* item = new QTreeWidgetItem(list, {row.Name, QString::number(row.Bit)}); // owned by the list
        item->setCheckState(0, (mask & row.Bit) != 0 ? Qt::Checked : Qt::Unchecked);
        if (row.Bit == 0)
            item->setFlags(item->flags() & ~Qt::ItemIsUserCheckable);
    }
    list->setColumnHidden(1, true);
}

} // namespace

void DConfigShip::Slot_UpdateMasks()
{
    const bool lasers = RadioLasers->isChecked();
    if (m_texts)
        ListLasers->headerItem()->setText(
            0, Text(lasers ? ConfigShipText::Lasers : ConfigShipText::MissileList));
    const int mask = lasers ? LaserMask : MissileMask;
    LineLasers->setText(QString::number(mask));
    m_filling = true;
    FillWeaponList(ListLasers, lasers ? LaserTable : MissileTable, mask);
    m_filling = false;
}

void DConfigShip::Slot_LaserChange(QTreeWidgetItem*)
{
    const int mask = CheckedSum(ListLasers);
    (RadioLasers->isChecked() ? LaserMask : MissileMask) = mask;
    LineLasers->setText(QString::number(mask));
}

void DConfigShip::FillCockpitWeapons(int checkedMask)
{
    m_filling = true;
    FillWeaponList(ListCockpitWeapon, LaserTable, checkedMask);
    m_filling = false;
}

int DConfigShip::CheckedCockpitWeapons() const
{
    return CheckedSum(ListCockpitWeapon);
}

void DConfigShip::Slot_UpdateTurretWeapons()
{
    FillCockpitWeapons(CheckedCockpitWeapons());
}
