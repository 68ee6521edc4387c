// Customize Ship as the window runs it: the form's ship line, its scene box,
// its dummy and cockpit lists and the game's classes and variations go to
// CustomiseShip (src/shipconfig), and on acceptance the new line and the
// custom cockpits come back into the form.
#pragma once

#include "app/WindowContext.h"
#include "shipconfig/CustomiseShip.h"

#include <functional>

class CockpitListController;
class DConfigShip;
class DummyListController;
class GameTextStore;
class QLineEdit;
class QTextEdit;

class ShipConfigFlow
{
public:
    ShipConfigFlow(WindowContext context, QTextEdit* shipLine, QLineEdit* sceneFile,
                   DummyListController& dummies, CockpitListController& cockpits,
                   const GameTextStore& gameTexts);

    // Runs the dialog over the form with the settings' game directories and
    // base language; the result says what the settings are to keep.
    CustomiseResult Run();

    // How the filled dialog is run; unset, its exec(). Tests drive it here.
    std::function<int(DConfigShip&)> runDialog;

private:
    WindowContext m_context;
    QTextEdit* m_shipLine;
    QLineEdit* m_sceneFile;
    DummyListController& m_dummies;
    CockpitListController& m_cockpits;
    const GameTextStore& m_gameTexts;
};
