// The balance profile editor: name, class, variant and the limits of a profile.
// ButSave drives Slot_Done and ButImport Slot_Import; the working class gives
// them their behaviour.
#pragma once

#include "ui_CreateProfile.h"

#include <QDialog>

class CreateProfile : public QDialog, public Ui::CreateProfile
{
    Q_OBJECT
public:
    explicit CreateProfile(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                           Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

    // Stubs that the working class overrides.
    virtual void Slot_Done();
    virtual void Slot_Import();

private:
    void connectSignals();
};
