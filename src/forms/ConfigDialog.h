// The settings dialog: interface language, game directories, defaults of a new
// ship, start directories of the file dialogs and the model converter.
//
// The directory buttons drive the Slot_Open... slots, which the working class
// gives their behaviour. Turning CheckX2bc on enables the converter's path,
// and CheckText enables CheckTextT.
#pragma once

#include "ui_ConfigDialog.h"

#include <QDialog>

class ConfigDialog : public QDialog, public Ui::ConfigDialog
{
    Q_OBJECT
public:
    explicit ConfigDialog(QWidget* parent = nullptr, const char* name = nullptr, bool modal = false,
                          Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

    // Stubs that the working class overrides.
    virtual void Slot_OpenDir();
    virtual void Slot_OpenModDir();
    virtual void Slot_OpenModelDir();
    virtual void Slot_OpenTypesDir();
    virtual void Slot_OpenSaveDir();
    virtual void Slot_OpenTextDir();
    virtual void Slot_OpenScriptDir();
    virtual void Slot_OpenX2bcDir();

private:
    void connectSignals();
};
