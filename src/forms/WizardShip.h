// Import wizard page: the ships of the mod.
#pragma once

#include "ui_WizardShip.h"

#include <QWidget>

class WizardShip : public QWidget, public Ui::WizardShip
{
    Q_OBJECT
public:
    explicit WizardShip(QWidget* parent = nullptr, const char* name = nullptr, Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();
};
