// The ship configuration dialog: seven tabs that show the fields of a ship
// line (info, movement, weapons, model, lasers and missiles, turrets and
// cockpits, guns).
//
// The buttons that change the line's middle drive virtual slots that the
// working class overrides; the form connects them. The "+" and "-" buttons of
// each turning axis step its dial by one line. The list views sort by
// column 0 as text.
#pragma once

#include "ui_ConfigShip.h"

#include <QDialog>

class ConfigShip : public QDialog, public Ui::ConfigShip
{
    Q_OBJECT
public:
    explicit ConfigShip(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                        Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

    // Stubs that the working class overrides.
    virtual void Slot_GetDirectory();
    virtual void Slot_NewCockpit();
    virtual void Slot_UpdateGuns();
    virtual void Slot_AddGun();
    virtual void Slot_RemoveGun();
    virtual void Slot_AddTurret();
    virtual void Slot_RemoveTurret();
    virtual void Slot_CopyCockpit();

private:
    void connectSignals();
    void connectDialStep(QPushButton* button, QDial* dial, QAbstractSlider::SliderAction step);
};
