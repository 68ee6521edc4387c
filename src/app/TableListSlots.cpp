// The window's slots of the dummy, component and cockpit lists, each handed
// to the list's controller.
#include "app/DCreateShip.h"

#include "app/TableListControllers.h"

#include <QMenu>

void DCreateShip::Slot_ImportDummy()
{
    m_dummies->Import();
}

void DCreateShip::Slot_ImportComp()
{
    m_components->Import();
}

void DCreateShip::Slot_DummyMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    m_dummies->ShowMenu(item, globalPos);
}

void DCreateShip::Slot_CompMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    m_components->ShowMenu(item, globalPos);
}

void DCreateShip::Slot_CockpitMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    m_cockpits->ShowMenu(item, globalPos);
}

std::unique_ptr<QMenu> DCreateShip::BuildDummyMenu(QTreeWidgetItem* item)
{
    return m_dummies->BuildMenu(item);
}

std::unique_ptr<QMenu> DCreateShip::BuildCompMenu(QTreeWidgetItem* item)
{
    return m_components->BuildMenu(item);
}

std::unique_ptr<QMenu> DCreateShip::BuildCockpitMenu(QTreeWidgetItem* item)
{
    return m_cockpits->BuildMenu(item);
}

QStringList DCreateShip::GunBodies() const
{
    return m_dummies->GunBodies();
}

void DCreateShip::Slot_AddDummy()
{
    m_dummies->Add();
}

void DCreateShip::Slot_RemoveDummy()
{
    m_dummies->Remove();
}

void DCreateShip::Slot_ChangeSection()
{
    m_dummies->ChangeSection();
}

void DCreateShip::Slot_ChangeData()
{
    m_dummies->ChangeData();
}

void DCreateShip::ClearDummy()
{
    m_dummies->ClearList();
}

void DCreateShip::Slot_RemoveComp()
{
    m_components->Remove();
}

void DCreateShip::ClearComp()
{
    m_components->ClearList();
}

void DCreateShip::Slot_RemoveCockpit()
{
    m_cockpits->Remove();
}

void DCreateShip::ClearCockpit()
{
    m_cockpits->ClearList();
}
