// The settings dialog as the main window runs it, the search for the game's
// directories, and the preparation of package files for a save.
#include "app/DCreateShip.h"

#include "app/DConfigDialog.h"
#include "app/GameDirSearch.h"
#include "app/core/ProgramDir.h"
#include "deploy/ModelCompiler.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace {

// The text ComboLang shows for one language of the interface file.
QString LanguageItemText(const LanguageEntry& language)
{
    return language.Name + " (" + QString::number(language.Id) + ")" + " - By " + language.Translator;
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
#endif

} // namespace

void DCreateShip::Slot_Config()
{
    DConfigDialog dialog(&GameDirs, &UiText, m_prompter.get(), this);

    dialog.LineDirMod->setText(ModDir);
    dialog.LineDirModel->setText(ModelDir);
    dialog.LineDirType->setText(TypeDir);
    dialog.LineDirSave->setText(SaveDir);
    dialog.LineDirText->setText(TextDir);
    dialog.LineDirScript->setText(ScriptDir);
    dialog.LineDirX2bc->setText(X2bcDir);
    dialog.LineDefAuthor->setText(DefAuthor);
    dialog.LineDefWeb->setText(DefWeb);
    dialog.LineDefMirror1->setText(DefMirror1);
    dialog.LineDefMirror2->setText(DefMirror2);
    dialog.CheckX2bc->setChecked(X2BC);
    dialog.CheckWeb->setChecked(SaveWeb);
    dialog.CheckPrefix->setChecked(Prefix);
    dialog.CheckText->setChecked(ReadTextAtStart);
    dialog.CheckTextT->setChecked(ReadTextTableAtStart);
    dialog.UpdateEnabling();

    for (const LanguageEntry& language : Languages) {
        dialog.ComboLang->addItem(LanguageItemText(language));
        if (language.Name == Language)
            dialog.ComboLang->setCurrentIndex(dialog.ComboLang->count() - 1);
    }

    // A rejected dialog changes nothing more; a directory added to the list
    // stays there, since Slot_OpenDir works on the list itself.
    if (dialog.exec() != QDialog::Accepted)
        return;

    dialog.UseChosenGameDir();
    const QString chosenLanguage = dialog.ComboLang->currentText().section(' ', 0, 0);
    if (!chosenLanguage.isEmpty())
        Language = chosenLanguage;
    LoadUiTexts(true);
    UpdateCaption(); // the caption holds an interface text too

    ModDir = dialog.LineDirMod->text();
    ModelDir = dialog.LineDirModel->text();
    TypeDir = dialog.LineDirType->text();
    SaveDir = dialog.LineDirSave->text();
    TextDir = dialog.LineDirText->text();
    ScriptDir = dialog.LineDirScript->text();
    X2bcDir = dialog.LineDirX2bc->text();
    DefAuthor = dialog.LineDefAuthor->text();
    DefWeb = dialog.LineDefWeb->text();
    DefMirror1 = dialog.LineDefMirror1->text();
    DefMirror2 = dialog.LineDefMirror2->text();
    X2BC = dialog.CheckX2bc->isChecked();
    SaveWeb = dialog.CheckWeb->isChecked();
    Prefix = dialog.CheckPrefix->isChecked();
    ReadTextAtStart = dialog.CheckText->isChecked();
    ReadTextTableAtStart = dialog.CheckTextT->isChecked();
    SaveSettings();
}

void DCreateShip::DetectGameDirs()
{
    if (!GameDirs.isEmpty())
        return;
#ifdef Q_OS_WIN
    auto accept = [this](QString dir) {
        dir.replace('\\', '/');
        if (!QFileInfo::exists(dir + "/x3.exe"))
            return false;
        GameDirs.prepend(dir);
        return true;
    };
    const QString deepSilver = RegistryValue("DeepSilver\\X3 Reunion", "INSTALL_DIR");
    if (!deepSilver.isEmpty() && accept(deepSilver))
        return;
    const QString steam = RegistryValue("Valve\\Steam", "InstallPath");
    if (!steam.isEmpty())
        accept(steam + "/steamapps/common/x3 - reunion");
#else
    const QString found = FindGameDirWithoutRegistry(QDir::homePath(), qEnvironmentVariable("X3_GAME_DIR"));
    if (!found.isEmpty())
        GameDirs.prepend(found);
#endif
}

QString DCreateShip::PrepareFile(FileEntry& file, bool compile)
{
    return ::PrepareFile(file, compile, ProgramDir(), X2bcDir);
}
