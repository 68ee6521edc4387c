// Taking a ship line or cockpit lines out of a table of the game or a mod.
#include "app/DCreateShip.h"
#include "app/SelectShip.h"

#include "app/core/ProgramDir.h"
#include "gamedata/ShipLine.h"

#include <QIcon>
#include <QTreeWidgetItem>

void DCreateShip::Slot_LoadShip()
{
    DetectGameDirs();
    DSelectShip dialog(prompter(), UiText, GameDirs.value(0), BaseLang, &GameTextList, &ShipVariants,
                       &VariantNames, this);
    dialog.Setup(UiText[55] + " (tships.txt tships.pck *.cat);;" + UiText[56] + " (*.cat)", UiText[57],
                 "types\\TShips.pck", TypeDir);
    dialog.Slot_OpenFile();
    if (dialog.ListShips->topLevelItemCount() == 0 || dialog.exec() != QDialog::Accepted)
        return;
    const SelectedLine* chosen = dialog.FirstSelected();
    if (!chosen)
        return;
    TextRaw->setPlainText(chosen->Line);
    LineShipScene->setText(ShipField(chosen->Line, 16));
    LineCockpitScene->setText(ShipField(chosen->Line, 17));
    SpinOrgDesc->setValue(ShipFieldInt(chosen->Line, 6));
    LineID->setText(chosen->Id);
}

void DCreateShip::Slot_LoadCockpit()
{
    DetectGameDirs();
    // No game directory: the rows show ids only, and no names are looked up.
    DSelectShip dialog(prompter(), UiText, QString(), QString(), nullptr, nullptr, nullptr, this);
    dialog.Setup("TCockpit file (tcockpits.txt tcockpits.pck *.cat);;X Catalog Files (*.cat)",
                 "Select the TCockpits file to open", "types\\TCockpits.pck", TypeDir);
    dialog.ListShips->setSelectionMode(QAbstractItemView::MultiSelection);
    dialog.Slot_OpenFile();
    if (dialog.ListShips->topLevelItemCount() == 0 || dialog.exec() != QDialog::Accepted)
        return;
    const QIcon icon(ProgramPath("/Icons/cockpit.png"));
    bool added = false;
    for (const SelectedLine* line = dialog.FirstSelected(); line; line = dialog.NextSelected()) {
        auto* item = new QTreeWidgetItem(ListCockpit); // owned by the list
        item->setText(0, line->Id);
        item->setText(1, QString::number(line->Index));
        item->setText(2, line->Line);
        item->setIcon(0, icon);
        added = true;
    }
    if (added)
        Slot_Modified();
}
