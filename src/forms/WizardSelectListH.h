// Import wizard page: the entries of the mod beside the entries chosen for the
// ship, with the buttons that move them between the two plain lists between
// them. The wizard connects the buttons to its own slots.
#pragma once

#include "ui_WizardSelectListH.h"

#include <QWidget>

class WizardSelectListH : public QWidget, public Ui::WizardSelectListH
{
    Q_OBJECT
public:
    explicit WizardSelectListH(QWidget* parent = nullptr, const char* name = nullptr,
                               Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();
};
