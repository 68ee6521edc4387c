#include "forms/CreateProfile.h"

#include "forms/FormSupport.h"

CreateProfile::CreateProfile(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setModal(modal);
    setupUi(this);
    connectSignals();
    languageChange();
}

void CreateProfile::connectSignals()
{
    connect(ButSave, &QPushButton::clicked, this, &CreateProfile::Slot_Done);
    connect(ButImport, &QPushButton::clicked, this, &CreateProfile::Slot_Import);
    connect(ButCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void CreateProfile::languageChange()
{
    retranslateUi(this);
}

void CreateProfile::Slot_Done() {}
void CreateProfile::Slot_Import() {}
