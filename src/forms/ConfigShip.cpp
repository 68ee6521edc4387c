#include "forms/ConfigShip.h"

#include "forms/FormSupport.h"

ConfigShip::ConfigShip(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setModal(modal);
    setupUi(this);
    for (QTreeWidget* list : {ListLasers, ListTurrets, ListCockpitWeapon, ListGuns, ListGuns2})
        FormSupport::SortByFirstColumn(list);
    connectSignals();
    languageChange();
}

void ConfigShip::connectSignals()
{
    connect(ButDir, &QPushButton::clicked, this, &ConfigShip::Slot_GetDirectory);
    connect(ButNewCockpit, &QPushButton::clicked, this, &ConfigShip::Slot_NewCockpit);
    connect(ButUpdate, &QPushButton::clicked, this, &ConfigShip::Slot_UpdateGuns);
    connect(ButAddGun, &QPushButton::clicked, this, &ConfigShip::Slot_AddGun);
    connect(ButRemoveGun, &QPushButton::clicked, this, &ConfigShip::Slot_RemoveGun);
    connect(ButTurretAdd, &QPushButton::clicked, this, &ConfigShip::Slot_AddTurret);
    connect(ButTurretRemove, &QPushButton::clicked, this, &ConfigShip::Slot_RemoveTurret);
    connect(ButCopy, &QPushButton::clicked, this, &ConfigShip::Slot_CopyCockpit);
    connect(ButDone, &QPushButton::clicked, this, &QDialog::accept);
    connect(ButCancel, &QPushButton::clicked, this, &QDialog::reject);
    connectDialStep(ButYawUp, DialYaw, QAbstractSlider::SliderSingleStepAdd);
    connectDialStep(ButYawDown, DialYaw, QAbstractSlider::SliderSingleStepSub);
    connectDialStep(ButPitchUp, DialPitch, QAbstractSlider::SliderSingleStepAdd);
    connectDialStep(ButPitchDown, DialPitch, QAbstractSlider::SliderSingleStepSub);
    connectDialStep(ButRollUp, DialRoll, QAbstractSlider::SliderSingleStepAdd);
    connectDialStep(ButRollDown, DialRoll, QAbstractSlider::SliderSingleStepSub);
}

void ConfigShip::connectDialStep(QPushButton* button, QDial* dial, QAbstractSlider::SliderAction step)
{
    connect(button, &QPushButton::clicked, dial, [dial, step] { dial->triggerAction(step); });
}

void ConfigShip::languageChange()
{
    retranslateUi(this);
}

void ConfigShip::Slot_GetDirectory() {}
void ConfigShip::Slot_NewCockpit() {}
void ConfigShip::Slot_UpdateGuns() {}
void ConfigShip::Slot_AddGun() {}
void ConfigShip::Slot_RemoveGun() {}
void ConfigShip::Slot_AddTurret() {}
void ConfigShip::Slot_RemoveTurret() {}
void ConfigShip::Slot_CopyCockpit() {}
