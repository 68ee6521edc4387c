// A check list of ship variants for the profile import. The working class
// DSelectVariant fills it and reads the checked rows.
#pragma once

#include "ui_SelectVariant.h"

#include <QDialog>

class SelectVariant : public QDialog, public Ui::SelectVariant
{
    Q_OBJECT
public:
    explicit SelectVariant(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                           Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

private:
    void connectSignals();
};
