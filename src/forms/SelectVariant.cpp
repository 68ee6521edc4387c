#include "forms/SelectVariant.h"

#include "forms/FormSupport.h"

SelectVariant::SelectVariant(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setModal(modal);
    setupUi(this);
    FormSupport::SortByFirstColumn(ListVariant);
    connectSignals();
    languageChange();
}

void SelectVariant::connectSignals()
{
    connect(ButDone, &QPushButton::clicked, this, &QDialog::accept);
    connect(ButCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void SelectVariant::languageChange()
{
    retranslateUi(this);
}
