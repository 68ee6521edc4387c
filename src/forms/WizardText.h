// Import wizard page: the language rows of the ship, with buttons to import
// text files or a text directory. The wizard connects the buttons and the
// list's context menu to its own slots.
#pragma once

#include "ui_WizardText.h"

#include <QWidget>

class WizardText : public QWidget, public Ui::WizardText
{
    Q_OBJECT
public:
    explicit WizardText(QWidget* parent = nullptr, const char* name = nullptr, Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();
};
