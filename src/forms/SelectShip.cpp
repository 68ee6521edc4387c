#include "forms/SelectShip.h"

#include "forms/FormSupport.h"

SelectShip::SelectShip(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setModal(modal);
    setupUi(this);
    FormSupport::SortByFirstColumn(ListShips);
    connectSignals();
    languageChange();
}

void SelectShip::connectSignals()
{
    connect(ButOpen, &QPushButton::clicked, this, &SelectShip::Slot_OpenFile);
    connect(ButSelect, &QPushButton::clicked, this, &SelectShip::Slot_Selected);
    connect(ListShips, &QTreeWidget::itemDoubleClicked, this, &SelectShip::Slot_Selected);
    connect(ButClose, &QPushButton::clicked, this, &QDialog::reject);
}

void SelectShip::languageChange()
{
    retranslateUi(this);
}

void SelectShip::Slot_OpenFile() {}
void SelectShip::Slot_Selected() {}
