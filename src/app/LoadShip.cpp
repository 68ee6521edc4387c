// Taking a ship line or cockpit lines out of a table of the game or a mod,
// or a whole ship out of a finished mod.
#include "app/DCreateShip.h"

#include "app/ModImport.h"
#include "app/SelectShip.h"
#include "app/TableListControllers.h"
#include "app/WindowTexts.h"

void DCreateShip::Slot_LoadShip()
{
    DetectGameDirs();
    const QStringList& t = m_uiText;
    DSelectShip dialog(prompter(), t, m_settings.GameDirs.value(0), m_settings.BaseLang, &m_gameTexts.Texts(),
                       &m_gameTexts.Variants(), &m_gameTexts.VariantNames(), this);
    dialog.Setup(t[Txt::ShipTableFilter] + " (tships.txt tships.pck *.cat);;" + t[Txt::CatalogFilter] +
                     " (*.cat)",
                 t[Txt::ShipTableCaption], "types\\TShips.pck", m_settings.TypeDir);
    dialog.Slot_OpenFile();
    if (dialog.ListShips->topLevelItemCount() == 0 || dialog.exec() != QDialog::Accepted)
        return;
    const SelectedLine* chosen = dialog.FirstSelected();
    if (!chosen)
        return;
    TextRaw->setPlainText(chosen->Line);
    LineShipScene->setText(ShipField(chosen->Line, ShipLineField::ShipScene));
    LineCockpitScene->setText(ShipField(chosen->Line, ShipLineField::CockpitScene));
    SpinOrgDesc->setValue(ShipFieldInt(chosen->Line, ShipLineField::NameId));
    LineID->setText(chosen->Id);
}

void DCreateShip::Slot_LoadCockpit()
{
    DetectGameDirs();
    // No game directory: the rows show ids only, and no names are looked up.
    DSelectShip dialog(prompter(), m_uiText, QString(), QString(), nullptr, nullptr, nullptr, this);
    dialog.Setup("TCockpit file (tcockpits.txt tcockpits.pck *.cat);;X Catalog Files (*.cat)",
                 "Select the TCockpits file to open", "types\\TCockpits.pck", m_settings.TypeDir);
    dialog.ListShips->setSelectionMode(QAbstractItemView::MultiSelection);
    dialog.Slot_OpenFile();
    if (dialog.ListShips->topLevelItemCount() == 0 || dialog.exec() != QDialog::Accepted)
        return;
    QList<CockpitListRow> rows;
    for (const SelectedLine* line = dialog.FirstSelected(); line; line = dialog.NextSelected())
        rows.append({line->Id, QString::number(line->Index), line->Line});
    m_cockpits->Add(rows);
    if (!rows.isEmpty())
        Slot_Modified();
}

void DCreateShip::Slot_ImportWizard()
{
    if (!ClearDocument())
        return;
    m_modImport->Run();
    UpdateCaption();
}
