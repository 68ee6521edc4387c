// The settings dialog, given the settings and handing back the edited value.
//
// The list of game directories is edited in place: a directory added with
// Slot_OpenDir is in GameDirs() at once, and the caller keeps that list even
// when the dialog is cancelled (it reaches config.dat only with the next
// accepted dialog). Everything else counts only when the dialog is accepted:
// Settings() then gives the new value. The dialog keeps the captions of its
// form; only the file dialogs it opens take texts from UiText.
#pragma once

#include "core/AppSettings.h"
#include "forms/ConfigDialog.h"
#include "language/UiTexts.h"

#include <QList>
#include <QStringList>

class Prompter;

class DConfigDialog : public ConfigDialog
{
    Q_OBJECT
public:
    // `uiText` and `prompter` must outlive the dialog. ComboLang offers the
    // `languages`, the settings' own current; ComboDir the game directories,
    // the one in use current.
    DConfigDialog(const AppSettings& settings, const QList<LanguageEntry>& languages,
                  const QStringList& uiText, Prompter& prompter, QWidget* parent);

    // The settings as the dialog shows them: the directory chosen in ComboDir
    // first among the game directories, the language the first word of
    // ComboLang's text (kept when the combo is empty).
    AppSettings Settings() const;
    // The game directories as the dialog has changed them so far.
    const QStringList& GameDirs() const { return m_gameDirs; }

public slots:
    void Slot_OpenDir() override;
    void Slot_OpenModDir() override;
    void Slot_OpenModelDir() override;
    void Slot_OpenTypesDir() override;
    void Slot_OpenSaveDir() override;
    void Slot_OpenTextDir() override;
    void Slot_OpenScriptDir() override;
    void Slot_OpenX2bcDir() override;

private:
    void ShowSettings(const QList<LanguageEntry>& languages);
    void UpdateEnabling();
    void AskDirectoryInto(QLineEdit* line, int captionIndex);
    QString Text(int index) const;

    AppSettings m_settings; // what the dialog was given; fields it has no widget for pass through
    QStringList m_gameDirs;
    const QStringList& m_uiText;
    Prompter& m_prompter;
};
