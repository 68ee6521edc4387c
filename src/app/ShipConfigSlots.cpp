// Customize Ship, from its button and from Tools > Configure Ship.
#include "app/DCreateShip.h"

#include "app/ShipConfigFlow.h"

void DCreateShip::Slot_CustomiseShip()
{
    DetectGameDirs();
    const CustomiseResult result = m_shipConfig->Run();
    if (!result.SaveSettings())
        return;
    // The base language and a game directory named in the dialog are kept
    // after a cancel too.
    m_settings.BaseLang = result.baseLanguage;
    m_settings.GameDirs = result.gameDirs;
    SaveSettings();
}
