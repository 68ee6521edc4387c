// Import wizard page: the entries of the mod above the entries chosen for the
// ship, with the buttons that move them between the two plain lists between
// them. The wizard connects the buttons to its own slots.
#pragma once

#include "ui_WizardSelectListV.h"

#include <QWidget>

class WizardSelectListV : public QWidget, public Ui::WizardSelectListV
{
    Q_OBJECT
public:
    explicit WizardSelectListV(QWidget* parent = nullptr, const char* name = nullptr,
                               Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();
};
