// The balance dialog: nine sliders between the limits of a profile, their
// percentages and the average. ButBalance, ButAverage and ButDetail drive
// virtual slots that the working class overrides; the working class sets the
// slider ranges and connects the sliders itself.
#pragma once

#include "ui_ShipBalance.h"

#include <QDialog>

class ShipBalance : public QDialog, public Ui::ShipBalance
{
    Q_OBJECT
public:
    explicit ShipBalance(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                         Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

    // Stubs that the working class overrides.
    virtual void Slot_Balance();
    virtual void Slot_SetAverage();
    virtual void Slot_Details();

private:
    void connectSignals();
};
