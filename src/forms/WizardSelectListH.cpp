#include "forms/WizardSelectListH.h"

#include "forms/FormSupport.h"

WizardSelectListH::WizardSelectListH(QWidget* parent, const char* name, Qt::WindowFlags flags)
    : QWidget(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setupUi(this);
    languageChange();
}

void WizardSelectListH::languageChange()
{
    retranslateUi(this);
}
