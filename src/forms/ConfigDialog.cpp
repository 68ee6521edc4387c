#include "forms/ConfigDialog.h"

#include "forms/FormSupport.h"

ConfigDialog::ConfigDialog(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setModal(modal);
    setupUi(this);
    connectSignals();
    languageChange();
}

void ConfigDialog::connectSignals()
{
    connect(ButDir, &QPushButton::clicked, this, &ConfigDialog::Slot_OpenDir);
    connect(ButDirMod, &QPushButton::clicked, this, &ConfigDialog::Slot_OpenModDir);
    connect(ButDirModel, &QPushButton::clicked, this, &ConfigDialog::Slot_OpenModelDir);
    connect(ButDirType, &QPushButton::clicked, this, &ConfigDialog::Slot_OpenTypesDir);
    connect(ButDirSave, &QPushButton::clicked, this, &ConfigDialog::Slot_OpenSaveDir);
    connect(ButDirText, &QPushButton::clicked, this, &ConfigDialog::Slot_OpenTextDir);
    connect(ButDirScript, &QPushButton::clicked, this, &ConfigDialog::Slot_OpenScriptDir);
    connect(ButDirX2bc, &QPushButton::clicked, this, &ConfigDialog::Slot_OpenX2bcDir);
    connect(ButDone, &QPushButton::clicked, this, &QDialog::accept);
    connect(ButCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(CheckX2bc, &QCheckBox::toggled, LineDirX2bc, &QWidget::setEnabled);
    connect(CheckX2bc, &QCheckBox::toggled, ButDirX2bc, &QWidget::setEnabled);
    connect(CheckText, &QCheckBox::toggled, CheckTextT, &QWidget::setEnabled);
}

void ConfigDialog::languageChange()
{
    retranslateUi(this);
}

void ConfigDialog::Slot_OpenDir() {}
void ConfigDialog::Slot_OpenModDir() {}
void ConfigDialog::Slot_OpenModelDir() {}
void ConfigDialog::Slot_OpenTypesDir() {}
void ConfigDialog::Slot_OpenSaveDir() {}
void ConfigDialog::Slot_OpenTextDir() {}
void ConfigDialog::Slot_OpenScriptDir() {}
void ConfigDialog::Slot_OpenX2bcDir() {}
