// The context menus of the content lists. Each right click builds its menu
// anew from the state of the list at that moment: the entries that act on
// rows appear only when the click hit a row, and those that act on exactly
// one row only when exactly one is selected. The menu is destroyed after use.
#include "app/DCreateShip.h"

#include "app/core/ProgramDir.h"
#include "forms/WListView.h"

#include <QIcon>
#include <QMenu>

namespace {

using WindowSlot = void (DCreateShip::*)();

// One entry: its text, its icon from the program directory and its slot.
void AddEntry(QMenu& menu, const QString& text, const char* icon, DCreateShip* window, WindowSlot slot)
{
    QAction* action = menu.addAction(QIcon(ProgramPath(QString::fromLatin1(icon))), text);
    QObject::connect(action, &QAction::triggered, window, slot);
}

bool OneSelected(const QTreeWidget* list)
{
    return list->selectedItems().size() == 1;
}

} // namespace

std::unique_ptr<QMenu> DCreateShip::BuildModelMenu(QTreeWidgetItem* item)
{
    const bool withRow = item != nullptr;
    const bool one = withRow && OneSelected(ModelList);
    auto menu = std::make_unique<QMenu>();
    AddEntry(*menu, UiText[97], "/Icons/add.png", this, &DCreateShip::Slot_AddModel);
    if (withRow) {
        AddEntry(*menu, UiText[100], "/Icons/remove.png", this, &DCreateShip::Slot_RemoveModel);
        menu->addSeparator();
    }
    if (one)
        AddEntry(*menu, UiText[98], "/Icons/edit.png", this, &DCreateShip::Slot_ChangeModel);
    if (withRow)
        AddEntry(*menu, UiText[99], "/Icons/edit.png", this, &DCreateShip::Slot_ChangeDir);
    if (one) {
        menu->addSeparator();
        AddEntry(*menu, UiText[206], "/Icons/switch.png", this, &DCreateShip::Slot_SwitchScene);
        AddEntry(*menu, UiText[207], "/Icons/switch.png", this, &DCreateShip::Slot_SwitchCockpit);
    }
    menu->addSeparator();
    AddEntry(*menu, UiText[50], "/Icons/trash.png", this, &DCreateShip::ClearModels);
    return menu;
}

std::unique_ptr<QMenu> DCreateShip::BuildOtherMenu(QTreeWidgetItem* item)
{
    const bool withRow = item != nullptr;
    auto menu = std::make_unique<QMenu>();
    AddEntry(*menu, UiText[230], "/Icons/add.png", this, &DCreateShip::Slot_AddFile);
    if (withRow) {
        AddEntry(*menu, UiText[231], "/Icons/remove.png", this, &DCreateShip::Slot_RemoveFile);
        menu->addSeparator();
        if (OneSelected(OtherList))
            AddEntry(*menu, UiText[98], "/Icons/edit.png", this, &DCreateShip::Slot_ChangeOther);
        AddEntry(*menu, UiText[99], "/Icons/edit.png", this, &DCreateShip::Slot_ChangeOtherDir);
    }
    menu->addSeparator();
    AddEntry(*menu, UiText[50], "/Icons/trash.png", this, &DCreateShip::ClearOther);
    return menu;
}

std::unique_ptr<QMenu> DCreateShip::BuildScriptMenu(QTreeWidgetItem* item)
{
    auto menu = std::make_unique<QMenu>();
    AddEntry(*menu, UiText[97], "/Icons/add.png", this, &DCreateShip::Slot_AddScript);
    if (item)
        AddEntry(*menu, UiText[100], "/Icons/remove.png", this, &DCreateShip::Slot_RemoveScript);
    menu->addSeparator();
    AddEntry(*menu, UiText[50], "/Icons/trash.png", this, &DCreateShip::ClearScripts);
    return menu;
}

std::unique_ptr<QMenu> DCreateShip::BuildTextMenu(QTreeWidgetItem* item)
{
    auto menu = std::make_unique<QMenu>();
    // Importing looks the ship's texts up by its line, so it needs one.
    if (!TextRaw->toPlainText().isEmpty()) {
        AddEntry(*menu, UiText[45], "/Icons/import.png", this, &DCreateShip::Slot_ImportText);
        AddEntry(*menu, UiText[355], "/Icons/importdir.png", this, &DCreateShip::Slot_ImportTextDir);
        menu->addSeparator();
    }
    AddEntry(*menu, UiText[46], "/Icons/add.png", this, &DCreateShip::Slot_AddLanguage);
    if (item) {
        AddEntry(*menu, UiText[47], "/Icons/remove.png", this, &DCreateShip::Slot_RemoveLanguage);
        menu->addSeparator();
        AddEntry(*menu, UiText[48], "/Icons/edit.png", this, &DCreateShip::Slot_ChangeName);
        AddEntry(*menu, UiText[49], "/Icons/edit.png", this, &DCreateShip::Slot_ChangeDesc);
    }
    menu->addSeparator();
    AddEntry(*menu, UiText[50], "/Icons/trash.png", this, &DCreateShip::ClearText);
    return menu;
}

void DCreateShip::Slot_ModelMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    BuildModelMenu(item)->exec(globalPos);
}

void DCreateShip::Slot_OtherMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    BuildOtherMenu(item)->exec(globalPos);
}

void DCreateShip::Slot_ScriptMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    BuildScriptMenu(item)->exec(globalPos);
}

void DCreateShip::Slot_TextMenu(QTreeWidgetItem* item, const QPoint& globalPos, int)
{
    BuildTextMenu(item)->exec(globalPos);
}
