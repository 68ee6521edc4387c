// The window's slots of the content lists, each handed to the list's
// controller, and the scene file and picture fields, which are too small to
// need one.
#include "app/DCreateShip.h"

#include "app/ContentListSupport.h"
#include "app/FileListController.h"
#include "app/ScriptListController.h"
#include "app/TextListController.h"
#include "app/WindowTexts.h"

#include <QFileInfo>
#include <QMenu>

void DCreateShip::Slot_Dropped(const QString& text)
{
    m_models->Dropped(text);
}

void DCreateShip::Slot_OtherDropped(const QString& text)
{
    m_others->Dropped(text);
}

void DCreateShip::Slot_ScriptDropped(const QString& text)
{
    m_scripts->Dropped(text);
}

void DCreateShip::Slot_ModelMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    m_models->ShowMenu(item, globalPos);
}

void DCreateShip::Slot_OtherMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    m_others->ShowMenu(item, globalPos);
}

void DCreateShip::Slot_ScriptMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    m_scripts->ShowMenu(item, globalPos);
}

void DCreateShip::Slot_TextMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    m_texts->ShowMenu(item, globalPos);
}

void DCreateShip::Slot_DCTextMenu(QTreeWidgetItem* item, int column)
{
    m_texts->DoubleClicked(item, column);
}

std::unique_ptr<QMenu> DCreateShip::BuildModelMenu(QTreeWidgetItem* item)
{
    return m_models->BuildMenu(item);
}

std::unique_ptr<QMenu> DCreateShip::BuildOtherMenu(QTreeWidgetItem* item)
{
    return m_others->BuildMenu(item);
}

std::unique_ptr<QMenu> DCreateShip::BuildScriptMenu(QTreeWidgetItem* item)
{
    return m_scripts->BuildMenu(item);
}

std::unique_ptr<QMenu> DCreateShip::BuildTextMenu(QTreeWidgetItem* item)
{
    return m_texts->BuildMenu(item);
}

void DCreateShip::Slot_AddModel()
{
    m_models->Add();
}

void DCreateShip::Slot_ChangeModel()
{
    m_models->Change();
}

void DCreateShip::Slot_ChangeDir()
{
    m_models->ChangeDir();
}

void DCreateShip::Slot_RemoveModel()
{
    m_models->Remove();
}

void DCreateShip::Slot_SwitchScene()
{
    m_models->SwitchWithShipScene();
}

void DCreateShip::Slot_SwitchCockpit()
{
    m_models->SwitchWithCockpitScene();
}

void DCreateShip::ClearModels()
{
    m_models->ClearList();
}

void DCreateShip::Slot_AddFile()
{
    m_others->Add();
}

void DCreateShip::Slot_ChangeOther()
{
    m_others->Change();
}

void DCreateShip::Slot_ChangeOtherDir()
{
    m_others->ChangeDir();
}

void DCreateShip::Slot_RemoveFile()
{
    m_others->Remove();
}

void DCreateShip::ClearOther()
{
    m_others->ClearList();
}

void DCreateShip::Slot_AddScript()
{
    m_scripts->Add();
}

void DCreateShip::Slot_RemoveScript()
{
    m_scripts->Remove();
}

void DCreateShip::ClearScripts()
{
    m_scripts->ClearList();
}

void DCreateShip::Slot_AddLanguage()
{
    m_texts->AddLanguage();
}

void DCreateShip::Slot_RemoveLanguage()
{
    m_texts->RemoveLanguage();
}

void DCreateShip::Slot_ChangeName()
{
    m_texts->ChangeName();
}

void DCreateShip::Slot_ChangeDesc()
{
    m_texts->ChangeDescription();
}

void DCreateShip::ClearText()
{
    m_texts->ClearList();
}

void DCreateShip::Slot_ImportText()
{
    m_texts->ImportFiles();
}

void DCreateShip::Slot_ImportTextDir()
{
    m_texts->ImportDirectory();
}

void DCreateShip::Slot_SelectSceneFile()
{
    const QString answer = prompter().openFile(this, m_uiText[Txt::ModelCaption], m_settings.ModelDir,
                                               m_uiText[Txt::ModelFilter] + " (*.pbd; *.bod; *.bob)");
    if (QFileInfo(answer).isFile())
        LineSceneFile->setText(answer);
}

void DCreateShip::Slot_SelectSceneFileCp()
{
    const QString answer = prompter().openFile(this, m_uiText[Txt::ModelCaption], m_settings.ModelDir,
                                               m_uiText[Txt::ModelFilter] + " (*.pbd; *.bod; *.bob)");
    if (QFileInfo(answer).isFile())
        LineSceneFileCp->setText(answer);
}

void DCreateShip::Slot_ClearShipScene()
{
    LineSceneFile->clear();
}

void DCreateShip::Slot_ClearCockpitScene()
{
    LineSceneFileCp->clear();
}

void DCreateShip::Slot_SelectPic()
{
    const QString answer =
        prompter().openFile(this, m_uiText[Txt::PictureCaption], DirectoryPart(LineScreen->text()),
                            m_uiText[Txt::PictureFilter] + " (*.*)");
    if (!answer.isEmpty())
        LineScreen->setText(answer);
}
