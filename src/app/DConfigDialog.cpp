#include "app/DConfigDialog.h"

#include "app/GameDirSearch.h"
#include "app/WindowTexts.h"
#include "forms/Prompter.h"

namespace {

QString WithForwardSlashes(QString path)
{
    path.replace('\\', '/');
    return path;
}

// The text ComboLang shows for one language of the interface file.
QString LanguageItemText(const LanguageEntry& language)
{
    return language.Name + " (" + QString::number(language.Id) + ")" + " - By " + language.Translator;
}

} // namespace

DConfigDialog::DConfigDialog(const AppSettings& settings, const QList<LanguageEntry>& languages,
                             const QStringList& uiText, Prompter& prompter, QWidget* parent)
    : ConfigDialog(parent, "DConfigDialog", true), m_settings(settings), m_gameDirs(settings.GameDirs),
      m_uiText(uiText), m_prompter(prompter)
{
    ShowSettings(languages);
}

void DConfigDialog::ShowSettings(const QList<LanguageEntry>& languages)
{
    const AppSettings& s = m_settings;
    ComboDir->addItems(m_gameDirs);
    ComboDir->setCurrentIndex(m_gameDirs.isEmpty() ? -1 : 0);
    LineDirMod->setText(s.ModDir);
    LineDirModel->setText(s.ModelDir);
    LineDirType->setText(s.TypeDir);
    LineDirSave->setText(s.SaveDir);
    LineDirText->setText(s.TextDir);
    LineDirScript->setText(s.ScriptDir);
    LineDirX2bc->setText(s.X2bcDir);
    LineDefAuthor->setText(s.DefAuthor);
    LineDefWeb->setText(s.DefWeb);
    LineDefMirror1->setText(s.DefMirror1);
    LineDefMirror2->setText(s.DefMirror2);
    CheckX2bc->setChecked(s.X2BC);
    CheckWeb->setChecked(s.SaveWeb);
    CheckPrefix->setChecked(s.Prefix);
    CheckText->setChecked(s.ReadTextAtStart);
    CheckTextT->setChecked(s.ReadTextTableAtStart);
    // The form keeps the enabling up when the boxes are toggled; setting them
    // may toggle nothing, so it is set once here.
    UpdateEnabling();
    for (const LanguageEntry& language : languages) {
        ComboLang->addItem(LanguageItemText(language));
        if (language.Name == s.Language)
            ComboLang->setCurrentIndex(ComboLang->count() - 1);
    }
}

AppSettings DConfigDialog::Settings() const
{
    AppSettings s = m_settings;
    s.GameDirs = m_gameDirs;
    const QString chosenDir = ComboDir->currentText();
    if (!chosenDir.isEmpty() && s.GameDirs.contains(chosenDir))
        PutGameDirFirst(s.GameDirs, chosenDir);
    const QString chosenLanguage = ComboLang->currentText().section(' ', 0, 0);
    if (!chosenLanguage.isEmpty())
        s.Language = chosenLanguage;
    s.ModDir = LineDirMod->text();
    s.ModelDir = LineDirModel->text();
    s.TypeDir = LineDirType->text();
    s.SaveDir = LineDirSave->text();
    s.TextDir = LineDirText->text();
    s.ScriptDir = LineDirScript->text();
    s.X2bcDir = LineDirX2bc->text();
    s.DefAuthor = LineDefAuthor->text();
    s.DefWeb = LineDefWeb->text();
    s.DefMirror1 = LineDefMirror1->text();
    s.DefMirror2 = LineDefMirror2->text();
    s.X2BC = CheckX2bc->isChecked();
    s.SaveWeb = CheckWeb->isChecked();
    s.Prefix = CheckPrefix->isChecked();
    s.ReadTextAtStart = CheckText->isChecked();
    s.ReadTextTableAtStart = CheckTextT->isChecked();
    return s;
}

QString DConfigDialog::Text(int index) const
{
    return m_uiText.value(index);
}

void DConfigDialog::UpdateEnabling()
{
    LineDirX2bc->setEnabled(CheckX2bc->isChecked());
    ButDirX2bc->setEnabled(CheckX2bc->isChecked());
    CheckTextT->setEnabled(CheckText->isChecked());
}

void DConfigDialog::Slot_OpenDir()
{
    const QString answer = m_prompter.directory(this, Text(Txt::GameDirCaption), LineDirMod->text());
    if (answer.isEmpty())
        return;
    const QString dir = WithForwardSlashes(answer);
    if (!HoldsGameExecutable(dir)) {
        m_prompter.critical(this, Text(Txt::InvalidGameDir), Text(Txt::InvalidGameDirText), {Text(Txt::Ok)});
        return;
    }
    PutGameDirFirst(m_gameDirs, dir);
    ComboDir->clear();
    ComboDir->addItems(m_gameDirs);
    ComboDir->setCurrentIndex(0);
}

void DConfigDialog::AskDirectoryInto(QLineEdit* line, int captionIndex)
{
    const QString answer = m_prompter.directory(this, Text(captionIndex), line->text());
    if (!answer.isEmpty())
        line->setText(WithForwardSlashes(answer));
}

void DConfigDialog::Slot_OpenModDir()
{
    AskDirectoryInto(LineDirMod, Txt::ModDirCaption);
}

void DConfigDialog::Slot_OpenModelDir()
{
    AskDirectoryInto(LineDirModel, Txt::ModelDirCaption);
}

void DConfigDialog::Slot_OpenTypesDir()
{
    AskDirectoryInto(LineDirType, Txt::TypesDirCaption);
}

void DConfigDialog::Slot_OpenSaveDir()
{
    AskDirectoryInto(LineDirSave, Txt::SaveDirCaption);
}

void DConfigDialog::Slot_OpenTextDir()
{
    AskDirectoryInto(LineDirText, Txt::TextDirCaption);
}

void DConfigDialog::Slot_OpenScriptDir()
{
    AskDirectoryInto(LineDirScript, Txt::ScriptDirCaption);
}

void DConfigDialog::Slot_OpenX2bcDir()
{
    // The setting names the converter itself, not its folder.
    const QString answer =
        m_prompter.openFile(this, Text(Txt::X2bcCaption), LineDirX2bc->text(), "X2bc (x2bc.exe)");
    if (!answer.isEmpty())
        LineDirX2bc->setText(WithForwardSlashes(answer));
}
