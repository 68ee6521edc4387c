#include "forms/DBalanceValues.h"

#include "forms/FormSupport.h"

DBalanceValues::DBalanceValues(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setModal(modal);
    setupUi(this);
    languageChange();
}

void DBalanceValues::languageChange()
{
    retranslateUi(this);
}
