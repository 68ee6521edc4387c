#include "forms/DSelectVariant.h"

#include "forms/FormSupport.h"

DSelectVariant::DSelectVariant(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
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

void DSelectVariant::connectSignals()
{
    connect(ButDone, &QPushButton::clicked, this, &QDialog::accept);
    connect(ButCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void DSelectVariant::languageChange()
{
    retranslateUi(this);
}
