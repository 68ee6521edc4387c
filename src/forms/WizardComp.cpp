#include "forms/WizardComp.h"

#include "forms/FormSupport.h"

WizardComp::WizardComp(QWidget* parent, const char* name, Qt::WindowFlags flags) : QWidget(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setupUi(this);
    FormSupport::SortByFirstColumn(ListComp);
    languageChange();
}

void WizardComp::languageChange()
{
    retranslateUi(this);
}
