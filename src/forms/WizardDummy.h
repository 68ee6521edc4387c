// Import wizard page: a check tree of the mod's dummies.
#pragma once

#include "ui_WizardDummy.h"

#include <QWidget>

class WizardDummy : public QWidget, public Ui::WizardDummy
{
    Q_OBJECT
public:
    explicit WizardDummy(QWidget* parent = nullptr, const char* name = nullptr, Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();
};
