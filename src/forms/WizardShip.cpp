#include "forms/WizardShip.h"

#include "forms/FormSupport.h"

WizardShip::WizardShip(QWidget* parent, const char* name, Qt::WindowFlags flags) : QWidget(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setupUi(this);
    FormSupport::SortByFirstColumn(ListShips);
    languageChange();
}

void WizardShip::languageChange()
{
    retranslateUi(this);
}
