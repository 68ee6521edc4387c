// The settings dialog.
//
// It works on the main window's list of game directories directly: a
// directory added with Slot_OpenDir is in the list at once, and stays there
// even when the dialog is cancelled (it reaches config.dat only with the next
// accepted dialog). All other fields are plain widgets that the main window
// fills before and reads after the dialog runs. The dialog keeps the captions
// of its form; only the file dialogs it opens take texts from UiText.
#pragma once

#include "forms/ConfigDialog.h"

#include <QStringList>

class Prompter;

class DConfigDialog : public ConfigDialog
{
    Q_OBJECT
public:
    // The most game directories the list keeps.
    static constexpr int MaxGameDirs = 10;

    // `gameDirs`, `uiText` and `prompter` must outlive the dialog. ComboDir is
    // filled from `gameDirs`, the one in use (the first) current.
    DConfigDialog(QStringList* gameDirs, const QStringList* uiText, Prompter* prompter, QWidget* parent);

    // Enables LineDirX2bc and ButDirX2bc as CheckX2bc is, and CheckTextT as
    // CheckText is. The check boxes keep this up when they are toggled; call
    // it once after setting them from the settings.
    void UpdateEnabling();

    // Makes the directory chosen in ComboDir the one in use: it moves to the
    // front of the list. Nothing happens when the combo is empty.
    void UseChosenGameDir();

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
    void AskDirectoryInto(QLineEdit* line, int captionIndex);
    QString Text(int index) const;

    QStringList* m_gameDirs;
    const QStringList* m_uiText;
    Prompter* m_prompter;
};
