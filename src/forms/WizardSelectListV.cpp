#include "forms/WizardSelectListV.h"

#include "forms/FormSupport.h"

WizardSelectListV::WizardSelectListV(QWidget* parent, const char* name, Qt::WindowFlags flags)
    : QWidget(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setupUi(this);
    languageChange();
}

void WizardSelectListV::languageChange()
{
    retranslateUi(this);
}
