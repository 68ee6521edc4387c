// The detail panel of the balance dialog: read-only values of the ship as the
// sliders stand. Used as it is, as the balance dialog's extension.
#pragma once

#include "ui_DBalanceValues.h"

#include <QDialog>

class DBalanceValues : public QDialog, public Ui::DBalanceValues
{
    Q_OBJECT
public:
    explicit DBalanceValues(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                            Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();
};
