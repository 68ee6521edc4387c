#include "forms/ImportDummy.h"

#include "forms/FormSupport.h"

ImportDummy::ImportDummy(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setModal(modal);
    setupUi(this);
    FormSupport::SortByFirstColumn(ListDummy);
    connectSignals();
    languageChange();
}

void ImportDummy::connectSignals()
{
    connect(ButDone, &QPushButton::clicked, this, &QDialog::accept);
    connect(ButCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void ImportDummy::languageChange()
{
    retranslateUi(this);
}
