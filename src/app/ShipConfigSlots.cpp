// Customize Ship, from its button and from Tools > Configure Ship.
#include "app/DCreateShip.h"

#include "app/ShipConfigFlow.h"

#include <QStatusBar>

void DCreateShip::Slot_CustomiseShip()
{
    DetectGameDirs();
    const CustomiseResult result = m_shipConfig->Run();
    // Why the scene gave the dialog no nodes (missing, binary, too large).
    if (!result.sceneMessage.isEmpty())
        QMainWindow::statusBar()->showMessage(result.sceneMessage);
    if (!result.SaveSettings())
        return;
    // The base language and a game directory named in the dialog are kept
    // after a cancel too.
    m_settings.BaseLang = result.baseLanguage;
    m_settings.GameDirs = result.gameDirs;
    SaveSettings();
}
