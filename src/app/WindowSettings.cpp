// The window's side of the settings: config.dat read and written, the
// settings dialog, and the search for the game's directories.
#include "app/DCreateShip.h"

#include "app/DConfigDialog.h"
#include "app/GameDirSearch.h"
#include "core/ProgramDir.h"

#include <QDir>
#include <QSettings>

namespace {

QString ConfigPath()
{
    return ProgramPath("/config.dat");
}

#ifdef Q_OS_WIN
// A value of the registry, looked up for the current user first and then for
// the machine, in the 32-bit view the game's installers write to as well as
// the native one. A missing key reads as empty.
QString RegistryValue(const QString& key, const QString& value)
{
    const QString roots[] = {"HKEY_CURRENT_USER\\Software\\", "HKEY_LOCAL_MACHINE\\Software\\"};
    const QSettings::Format formats[] = {QSettings::Registry32Format, QSettings::Registry64Format};
    for (const QString& root : roots)
        for (QSettings::Format format : formats) {
            const QString found = QSettings(root + key, format).value(value).toString();
            if (!found.isEmpty())
                return found;
        }
    return {};
}

// The game's folder from the installers' registry keys, Deep Silver's first.
QString GameDirFromRegistry()
{
    const auto holdsGame = [](QString dir) {
        dir.replace('\\', '/');
        return QFileInfo::exists(dir + "/x3.exe") ? dir : QString();
    };
    const QString deepSilver = RegistryValue("DeepSilver\\X3 Reunion", "INSTALL_DIR");
    if (!deepSilver.isEmpty() && !holdsGame(deepSilver).isEmpty())
        return holdsGame(deepSilver);
    const QString steam = RegistryValue("Valve\\Steam", "InstallPath");
    return steam.isEmpty() ? QString() : holdsGame(steam + "/steamapps/common/x3 - reunion");
}
#endif

} // namespace

void DCreateShip::LoadSettings()
{
    m_settings = ReadSettingsFile(ConfigPath(), HoldsGameExecutable);
}

void DCreateShip::SaveSettings()
{
    // A config.dat that cannot be written stays as it was; nothing is shown.
    WriteSettingsFile(m_settings, ConfigPath());
}

void DCreateShip::DetectGameDirs()
{
    if (!m_settings.GameDirs.isEmpty())
        return;
#ifdef Q_OS_WIN
    const QString found = GameDirFromRegistry();
#else
    const QString found = FindGameDirWithoutRegistry(QDir::homePath(), qEnvironmentVariable("X3_GAME_DIR"));
#endif
    if (!found.isEmpty())
        m_settings.GameDirs.prepend(found);
}

void DCreateShip::Slot_Config()
{
    DConfigDialog dialog(m_settings, m_languages, m_uiText, prompter(), this);
    if (dialog.exec() != QDialog::Accepted) {
        // A directory added in the dialog stays in the list all the same.
        m_settings.GameDirs = dialog.GameDirs();
        return;
    }
    m_settings = dialog.Settings();
    LoadUiTexts(true);
    UpdateCaption(); // the caption holds an interface text too
    SaveSettings();
}
