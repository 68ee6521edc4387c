#include "forms/WizardText.h"

#include "forms/FormSupport.h"

WizardText::WizardText(QWidget* parent, const char* name, Qt::WindowFlags flags) : QWidget(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setupUi(this);
    FormSupport::SortByFirstColumn(ListText);
    languageChange();
}

void WizardText::languageChange()
{
    retranslateUi(this);
}
