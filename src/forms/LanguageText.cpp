#include "forms/LanguageText.h"

#include "forms/FormSupport.h"

LanguageText::LanguageText(QWidget* parent, const char* name, bool modal, Qt::WindowFlags flags)
    : QDialog(parent, flags)
{
    FormSupport::EnsureResources();
    FormSupport::ApplyObjectName(this, name);
    setModal(modal);
    setupUi(this);
    connectSignals();
    languageChange();
}

void LanguageText::connectSignals()
{
    connect(ButOk, &QPushButton::clicked, this, &QDialog::accept);
    connect(ButCancel, &QPushButton::clicked, this, &QDialog::reject);
}

void LanguageText::languageChange()
{
    retranslateUi(this);
}
