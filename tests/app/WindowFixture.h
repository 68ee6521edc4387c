// A main window over a private program directory, with a scripted prompter.
#pragma once

#include "TestSupport.h"
#include "app/DCreateShip.h"
#include "app/ExtractionFlow.h"
#include "app/PackageDocument.h"

#include <QDir>

#include <functional>
#include <memory>

struct WindowFixture
{
    // The program directory holds the shipped data and a config.dat naming a
    // fake game directory, so that the window asks nothing while it starts.
    explicit WindowFixture(const QByteArray& extraConfig = {}) : home(true)
    {
        QDir(home.path()).mkpath("game");
        home.writeFile("game/x3.exe", "");
        home.writeFile("config.dat", "<common>\nLanguage: English\nDir: " + home.filePath("game").toUtf8() +
                                         "\n</common>\n<hullwright>\n" + extraConfig + "</hullwright>\n");
    }

    DCreateShip& make()
    {
        auto scripted = std::make_unique<ScriptedPrompter>();
        prompts = scripted.get();
        window = std::make_unique<DCreateShip>(std::move(scripted));
        return *window;
    }

    TempHome home;
    ScriptedPrompter* prompts = nullptr;
    std::unique_ptr<DCreateShip> window;
};

// Changes the window's settings in place, as the settings dialog would.
inline void ChangeSettings(DCreateShip& window, const std::function<void(AppSettings&)>& change)
{
    AppSettings settings = window.settings();
    change(settings);
    window.setSettings(settings);
}
