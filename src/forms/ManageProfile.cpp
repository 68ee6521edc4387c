#include "forms/ManageProfile.h"

#include "forms/FormSupport.h"

ManageProfile::ManageProfile(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setModal(modal);
    setupUi(this);
    FormSupport::SortByFirstColumn(ListProfile);
    connectSignals();
    languageChange();
}

void ManageProfile::connectSignals()
{
    connect(ButCreateNew, &QPushButton::clicked, this, &ManageProfile::Slot_Create);
    connect(ListProfile, &QTreeWidget::itemDoubleClicked, this, &ManageProfile::Slot_Edit);
    connect(ButClose, &QPushButton::clicked, this, &QDialog::reject);
}

void ManageProfile::languageChange()
{
    retranslateUi(this);
}

void ManageProfile::Slot_Create() {}
void ManageProfile::Slot_Edit(QTreeWidgetItem*) {}
