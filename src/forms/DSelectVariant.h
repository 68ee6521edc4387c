// A check list of ship variants for the profile import. Used as it is.
#pragma once

#include "ui_DSelectVariant.h"

#include <QDialog>

class DSelectVariant : public QDialog, public Ui::DSelectVariant
{
    Q_OBJECT
public:
    explicit DSelectVariant(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                            Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

private:
    void connectSignals();
};
