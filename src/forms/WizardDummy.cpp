#include "forms/WizardDummy.h"

#include "forms/FormSupport.h"

WizardDummy::WizardDummy(QWidget* parent, const char* name, Qt::WindowFlags flags) : QWidget(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setupUi(this);
    FormSupport::SortByFirstColumn(ListDummy);
    languageChange();
}

void WizardDummy::languageChange()
{
    retranslateUi(this);
}
