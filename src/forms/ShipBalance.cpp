#include "forms/ShipBalance.h"

#include "forms/FormSupport.h"

ShipBalance::ShipBalance(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setModal(modal);
    setupUi(this);
    connectSignals();
    languageChange();
}

void ShipBalance::connectSignals()
{
    connect(ButBalance, &QPushButton::clicked, this, &ShipBalance::Slot_Balance);
    connect(ButAverage, &QPushButton::clicked, this, &ShipBalance::Slot_SetAverage);
    connect(ButDetail, &QPushButton::clicked, this, &ShipBalance::Slot_Details);
    connect(ButDone, &QPushButton::clicked, this, &QDialog::accept);
    connect(ButCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void ShipBalance::languageChange()
{
    retranslateUi(this);
}

void ShipBalance::Slot_Balance() {}
void ShipBalance::Slot_SetAverage() {}
void ShipBalance::Slot_Details() {}
