// Chooses lines of a ship or cockpit table. ButOpen drives Slot_OpenFile;
// ButSelect and a double click in ListShips drive Slot_Selected; the working
// class gives them their behaviour. ButClose rejects.
#pragma once

#include "ui_SelectShip.h"

#include <QDialog>

class SelectShip : public QDialog, public Ui::SelectShip
{
    Q_OBJECT
public:
    explicit SelectShip(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                        Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

    // Stubs that the working class overrides.
    virtual void Slot_OpenFile();
    virtual void Slot_Selected();

private:
    void connectSignals();
};
