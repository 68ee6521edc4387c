// Asks for one language row: language number, ship name and description.
// Used as it is.
#pragma once

#include "ui_LanguageText.h"

#include <QDialog>

class LanguageText : public QDialog, public Ui::LanguageText
{
    Q_OBJECT
public:
    explicit LanguageText(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                          Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

private:
    void connectSignals();
};
