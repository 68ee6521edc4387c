// Import wizard page: a check tree of the mod's components.
#pragma once

#include "ui_WizardComp.h"

#include <QWidget>

class WizardComp : public QWidget, public Ui::WizardComp
{
    Q_OBJECT
public:
    explicit WizardComp(QWidget* parent = nullptr, const char* name = nullptr, Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();
};
