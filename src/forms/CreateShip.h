// The main window form: tabs of the ship package, the buttons around them,
// the menus, the tool bar and the actions.
//
// Each action carries two texts: the menu text with its mnemonic (for
// example "&New Ship...") is the action's text(), which menus show, and the
// plain text (for example "New Ship") is its iconText(), which the tool bar
// shows; the tool tip starts as the plain text too. Code that replaces the
// captions at run time should keep to the same split.
//
// The menus are fileMenu ("&File"), settingsMenu ("&Settings") and toolsMenu
// ("&Tools") inside MenuBar; the tool bar is Toolbar. FrameList, FrameOther
// and FrameScripts are empty frames with a margin-less QVBoxLayout into which
// the working class puts its run-time lists.
#pragma once

#include "ui_CreateShip.h"

#include <QMainWindow>

class CreateShip : public QMainWindow, public Ui::CreateShip
{
    Q_OBJECT
public:
    explicit CreateShip(QWidget* parent = nullptr, const char* name = nullptr, Qt::WindowFlags flags = {});

public slots:
    // Re-applies every default caption of the form.
    virtual void languageChange();

    // Driven by the actions and buttons of the form; the working class gives
    // them their behaviour. ButLoad and ButSave are left unconnected here: the
    // working class connects those two itself.
    virtual void Slot_New();
    virtual void Slot_Open();
    virtual void Slot_Save();
    virtual void Slot_SaveAs();
    virtual void Slot_LoadShip();
    virtual void Slot_ImportWizard();
    virtual void Slot_Config();
    virtual void Slot_ManageProfiles();
    virtual void Slot_ExtractShip();
    virtual void Slot_Balance();
    virtual void Slot_CustomiseShip();
    virtual void Slot_Close();
    virtual void Slot_SelectSceneFile();
    virtual void Slot_SelectSceneFileCp();
    virtual void Slot_ClearShipScene();
    virtual void Slot_ClearCockpitScene();
    virtual void Slot_ImportDummy();
    virtual void Slot_ImportComp();
    virtual void Slot_LoadCockpit();
    virtual void Slot_SelectPic();

private:
    void connectActions();
    void connectButtons();
};
