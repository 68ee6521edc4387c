#include "app/DConfigDialog.h"

#include "app/GameDirSearch.h"
#include "forms/Prompter.h"

namespace {

QString WithForwardSlashes(QString path)
{
    path.replace('\\', '/');
    return path;
}

} // namespace

DConfigDialog::DConfigDialog(QStringList* gameDirs, const QStringList* uiText, Prompter* prompter,
                             QWidget* parent)
    : ConfigDialog(parent, "DConfigDialog", true), m_gameDirs(gameDirs), m_uiText(uiText),
      m_prompter(prompter)
{
    ComboDir->addItems(*m_gameDirs);
    ComboDir->setCurrentIndex(m_gameDirs->isEmpty() ? -1 : 0);
}

QString DConfigDialog::Text(int index) const
{
    return m_uiText->value(index);
}

void DConfigDialog::UpdateEnabling()
{
    LineDirX2bc->setEnabled(CheckX2bc->isChecked());
    ButDirX2bc->setEnabled(CheckX2bc->isChecked());
    CheckTextT->setEnabled(CheckText->isChecked());
}

void DConfigDialog::UseChosenGameDir()
{
    const QString chosen = ComboDir->currentText();
    if (chosen.isEmpty() || !m_gameDirs->contains(chosen))
        return;
    m_gameDirs->removeAll(chosen);
    m_gameDirs->prepend(chosen);
}

void DConfigDialog::Slot_OpenDir()
{
    const QString answer = m_prompter->directory(this, Text(235), LineDirMod->text());
    if (answer.isEmpty())
        return;
    const QString dir = WithForwardSlashes(answer);
    if (!HoldsGameExecutable(dir)) {
        m_prompter->critical(this, Text(353), Text(354), {Text(60)});
        return;
    }
    m_gameDirs->removeAll(dir);
    for (int index = ComboDir->findText(dir); index >= 0; index = ComboDir->findText(dir))
        ComboDir->removeItem(index);

    ComboDir->insertItem(0, dir);
    ComboDir->setCurrentIndex(0);
    m_gameDirs->prepend(dir);
    while (m_gameDirs->size() > MaxGameDirs) {
        m_gameDirs->removeLast();
        ComboDir->removeItem(ComboDir->count() - 1);
    }
}

void DConfigDialog::AskDirectoryInto(QLineEdit* line, int captionIndex)
{
    const QString answer = m_prompter->directory(this, Text(captionIndex), line->text());
    if (!answer.isEmpty())
        line->setText(WithForwardSlashes(answer));
}

void DConfigDialog::Slot_OpenModDir()
{
    AskDirectoryInto(LineDirMod, 158);
}

void DConfigDialog::Slot_OpenModelDir()
{
    AskDirectoryInto(LineDirModel, 159);
}

void DConfigDialog::Slot_OpenTypesDir()
{
    AskDirectoryInto(LineDirType, 160);
}

void DConfigDialog::Slot_OpenSaveDir()
{
    AskDirectoryInto(LineDirSave, 161);
}

void DConfigDialog::Slot_OpenTextDir()
{
    AskDirectoryInto(LineDirText, 162);
}

void DConfigDialog::Slot_OpenScriptDir()
{
    AskDirectoryInto(LineDirScript, 190);
}

void DConfigDialog::Slot_OpenX2bcDir()
{
    // The setting names the converter itself, not its folder.
    const QString answer = m_prompter->openFile(this, Text(163), LineDirX2bc->text(), "X2bc (x2bc.exe)");
    if (!answer.isEmpty())
        LineDirX2bc->setText(WithForwardSlashes(answer));
}
