// The cockpit tab of DConfigShip: the scene's nodes, and for the selected
// turret a standard cockpit of the game or a custom cockpit of the package,
// whose scene and weapons can be edited. A custom cockpit that is changed
// moves to the end of CustomCockpits; the items of its box stay in place.
#include "shipconfig/DConfigShip.h"

#include "forms/Prompter.h"
#include "gamedata/CockpitTable.h"
#include "shipconfig/ConfigShipText.h"
#include "shipconfig/CustomCockpits.h"
#include "shipconfig/ListRows.h"
#include "shipconfig/ShipFormulas.h"

namespace {

constexpr const char* NoNode = "0:0";
constexpr const char* DefaultCockpitName = "SS_COCKPIT_";

} // namespace

SceneRead DConfigShip::LoadScene(const QString& path)
{
    ScenePath = path;
    ComboMainCockpit->clear();
    SceneNodes.clear();
    ComboATPrimary->clear();
    ComboATPrimary->addItem(NoNode);
    const SceneFileNodes scene = ReadSceneNodes(path);
    SceneNodes = scene.nodes;
    ComboATPrimary->addItems(SceneNodes);
    ComboMainCockpit->addItems(SceneNodes);
    ComboMainCockpit->setEnabled(ComboMainCockpit->count() > 0);
    return scene.status;
}

void DConfigShip::AddGunBody(const QString& dummyLine)
{
    GunBodies.Add(dummyLine);
}

void DConfigShip::Slot_SelectTurret(QTreeWidgetItem* item)
{
    ButTurretRemove->setEnabled(false);
    if (!item)
        return;
    ButTurretRemove->setEnabled(true);
    GroupCockpit->setEnabled(true);
    const QString cockpit = item->text(1);
    const int number = ReadInt(cockpit);
    if (number == 0 && cockpit != QLatin1String("0")) {
        RadioCustCockpit->setChecked(true);
        ComboCustCockpit->setCurrentIndex(
            ComboCustCockpit->findText(cockpit, Qt::MatchExactly | Qt::MatchCaseSensitive));
    } else {
        RadioStdCockpit->setChecked(true);
        // A row number the game's table does not have shows no item, so
        // that the turret keeps its number.
        ComboStdCockpit->setCurrentIndex(number >= 0 && number < ComboStdCockpit->count() ? number : -1);
    }
    Slot_CockpitType();
}

void DConfigShip::Slot_CockpitType()
{
    for (QWidget* widget : std::initializer_list<QWidget*>{
             FrameCockpitScene, ListCockpitWeapon, ComboStdCockpit, ComboCustCockpit, ButNewCockpit, ButCopy})
        widget->setEnabled(false);
    if (RadioStdCockpit->isChecked()) {
        ComboStdCockpit->setEnabled(true);
        ButCopy->setEnabled(true);
        Slot_SelectStdCockpit();
    } else if (RadioCustCockpit->isChecked()) {
        FrameCockpitScene->setEnabled(true);
        ListCockpitWeapon->setEnabled(true);
        ComboCustCockpit->setEnabled(true);
        ButNewCockpit->setEnabled(true);
        Slot_SelectCustCockpit();
    }
}

void DConfigShip::Slot_SelectStdCockpit()
{
    if (QTreeWidgetItem* turret = ListTurrets->currentItem(); turret && ComboStdCockpit->currentIndex() >= 0)
        turret->setText(1, QString::number(ComboStdCockpit->currentIndex()));
}

void DConfigShip::Slot_SelectCustCockpit()
{
    const QString name = ComboCustCockpit->currentText();
    const int place = FindCockpit(CustomCockpits, name);
    if (place < 0)
        return;
    const QString line = CustomCockpits[place];
    m_filling = true;
    const int mask = CockpitWeapons(line);
    for (int i = 0; i < ListCockpitWeapon->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = ListCockpitWeapon->topLevelItem(i);
        item->setCheckState(0, (mask & ReadInt(item->text(1))) != 0 ? Qt::Checked : Qt::Unchecked);
    }
    m_filling = false;
    if (QTreeWidgetItem* turret = ListTurrets->currentItem())
        turret->setText(1, name);
    LineCockpitScene->setText(CockpitSceneId(line));
}

void DConfigShip::Slot_SceneChanged(const QString& text)
{
    SetCockpitField(CustomCockpits, ComboCustCockpit->currentText(), CockpitField::SceneId, text);
}

void DConfigShip::Slot_CockpitWeapons()
{
    SetCockpitField(CustomCockpits, ComboCustCockpit->currentText(), CockpitField::Weapons,
                    QString::number(CheckedCockpitWeapons()));
}

std::optional<QString> DConfigShip::AskCockpitName(const QString& proposal)
{
    const std::optional<QString> answer = Ask().text(this, "Qt: " + Text(ConfigShipText::CockpitNameCaption),
                                                     Text(ConfigShipText::CockpitNameLabel), proposal);
    if (!answer || answer->isEmpty())
        return std::nullopt;
    const QString name = answer->toUpper();
    QStringList standardNames;
    for (int i = 0; i < ComboStdCockpit->count(); ++i)
        standardNames.append(ComboStdCockpit->itemText(i));
    if (CockpitNameTaken(name, standardNames, CustomCockpits)) {
        Ask().warning(this, Text(ConfigShipText::CockpitExistsCaption),
                      Text(ConfigShipText::CockpitExistsText), {Text(ConfigShipText::ButtonOk)});
        return std::nullopt;
    }
    return name;
}

void DConfigShip::AddCustomCockpit(const QString& line)
{
    CustomCockpits.append(line);
    ComboCustCockpit->addItem(CockpitName(line));
    ComboCustCockpit->setCurrentIndex(ComboCustCockpit->count() - 1);
    Slot_SelectCustCockpit();
}

void DConfigShip::Slot_NewCockpit()
{
    if (const std::optional<QString> name = AskCockpitName(DefaultCockpitName))
        AddCustomCockpit(NewCockpitLine(*name));
}

void DConfigShip::Slot_CopyCockpit()
{
    const QTreeWidgetItem* turret = SelectedRow(ListTurrets);
    const QString proposal = ShipFormulas::CopiedCockpitName(SceneBase, turret ? turret->text(2) : QString());
    const std::optional<QString> name = AskCockpitName(proposal);
    if (!name)
        return;
    // The standard cockpit is looked up before the radio button switches, so
    // that a failed copy leaves the turret's cockpit alone.
    const QString standard = ComboStdCockpit->currentText().toUpper();
    QString source;
    for (const QString& line : StdCockpits)
        if (CockpitName(line).toUpper() == standard && source.isEmpty())
            source = line;
    if (source.isEmpty())
        return;
    RadioCustCockpit->setChecked(true);
    Slot_CockpitType();
    AddCustomCockpit(CopiedCockpitLine(source, *name));
}
