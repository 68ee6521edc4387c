// The ship configuration dialog: turns a ship line into widgets and back.
//
// The dialog is given the raw line, the game's tables, the package's custom
// cockpits, the scene's nodes and the gun bodies (CustomiseShip.h does that),
// and gives back a new line, the custom cockpits that a turret still uses and
// the base language. It keeps no parsed copy of the ship: `Line` is the
// working line, and the widgets hold the fields of the head and the tail.
// The middle of the line (cockpit blocks and gun groups) is the one part that
// changes at once: adding or removing turrets and gun entries rewrites `Line`
// through gamedata/ShipLineEdit.h and the lists are shown again from it.
//
// The members are spread over files by tab: DConfigShip.cpp (construction,
// loading and rebuilding the line, the game directory), ConfigShipMoving.cpp
// (speed, turning, recharge, notoriety), ConfigShipTexts.cpp (languages and
// names), ConfigShipWeapons.cpp (laser and missile masks), ConfigShipGuns.cpp
// (gun groups), ConfigShipTurrets.cpp (turrets) and ConfigShipCockpits.cpp
// (cockpits and the scene). The arithmetic and the table work lie in
// widget-free files beside them.
#pragma once

#include "forms/ConfigShip.h"
#include "gamedata/SceneFile.h"
#include "gamedata/ShipLine.h"
#include "gamedata/WeaponTables.h"
#include "language/GameText.h"
#include "shipconfig/ConfigNames.h"
#include "shipconfig/GunBodies.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

class Prompter;
class QTreeWidgetItem;

class DConfigShip : public ConfigShip
{
    Q_OBJECT
public:
    // Every pointer may be null and must outlive the dialog. Without a
    // prompter the toolkit's own dialogs ask.
    explicit DConfigShip(const QStringList* texts = nullptr, const QStringList& gameDirs = {},
                         const QString& baseLanguage = QString(), const QList<IdName>* variants = nullptr,
                         const QList<IdName>* classes = nullptr, QWidget* parent = nullptr,
                         Prompter* prompter = nullptr);
    ~DConfigShip() override;

    // --- Loading, in the order the opener calls them.

    // Each empties its list and fills it again from the newest catalog of the
    // first game directory that holds the table. Names stay empty until the
    // language pages are read, which must come after these three.
    void LoadShields();
    void LoadLasers();
    void LoadMissiles();
    // The base languages of the catalogs, the names of the current one, then
    // the game's standard cockpits.
    void LoadLanguagesAndCockpits();
    // Refills the race, cargo, variation, shield and class boxes from the
    // language file of the base language, keeping their current items.
    void LoadShipTexts();
    void LoadStdCockpits();
    // Reads the nodes of the ship's scene; gives how the read went.
    SceneRead LoadScene(const QString& path);
    // Offers the nodes of a SDTYPE_GUN line of Dummies as secondary gun nodes.
    void AddGunBody(const QString& dummyLine);
    // Fills the dialog from a line: run once, after everything above.
    void LoadShipLine(const QString& line);

    // The line rebuilt from the widgets and the working line. The custom
    // cockpits that no turret names are dropped on the way.
    QString BuildShipLine();

    // --- Operations the slots share.
    void UpdateRanks();
    void UpdateGunList();
    void UpdateLineGuns();

    // --- State. The first game directory is the one in use.
    QStringList GameDirs;
    QString BaseLanguage; // number of the language as text, "44" when empty
    QList<ShieldRow> ShieldTable;
    QList<WeaponRow> LaserTable;
    QList<WeaponRow> MissileTable;
    QList<LanguageFile> LanguageFiles;
    QStringList RankNames; // six tables of 16, the highest rank first

    QString Line;                                         // the working ship line
    int GunIndexField = ShipLineField::FirstCockpitBlock; // G of Line
    int TailIndex = ShipLineField::FirstCockpitBlock + 1; // T of Line
    int LaserMask = 0;
    int MissileMask = 0;

    QStringList StdCockpits;    // the game's TCockpits lines, row by row
    QStringList CustomCockpits; // TCockpits lines of the package's cockpits
    QString ScenePath;          // null until LoadScene ran
    QString SceneBase;          // base name of the line's ship scene
    QStringList SceneNodes;     // "body:part" of the scene's named parts
    GunBodyList GunBodies;

public slots:
    // Game directory and base language.
    void Slot_GetDirectory() override;
    void Slot_BaseLang(const QString& text);

    // Movement, turning, recharge and notoriety.
    void Slot_MinSpeedChange(int value);
    void Slot_SpeedChange(int extensions);
    void Slot_MinSpeedUpdate();
    void Slot_AccelChange(int value);
    void Slot_AccelUpdate();
    void Slot_YawDial(int value);
    void Slot_PitchDial(int value);
    void Slot_RollDial(int value);
    void Slot_RechargeT();
    void Slot_Recharge();
    void Slot_Not();

    // Laser and missile masks.
    void Slot_UpdateMasks();
    void Slot_LaserChange(QTreeWidgetItem* item);

    // Turrets.
    void Slot_AddTurret() override;
    void Slot_RemoveTurret() override;
    void Slot_ChangeTurret(QTreeWidgetItem* item, int column);
    // A ship without a main cockpit block gets one when a main cockpit node
    // is chosen for it.
    void Slot_MainCockpit(int item);

    // Gun groups and entries.
    void Slot_SelectGun();
    void Slot_SelectGun2();
    void Slot_SelectPrimary();
    void Slot_SelectSecondary();
    void Slot_UpdateGuns() override;
    void Slot_AddGun() override;
    void Slot_RemoveGun() override;

    // Cockpits.
    void Slot_SelectTurret(QTreeWidgetItem* item);
    void Slot_CockpitType();
    void Slot_SelectStdCockpit();
    void Slot_SelectCustCockpit();
    void Slot_NewCockpit() override;
    void Slot_CopyCockpit() override;
    void Slot_SceneChanged(const QString& text);
    void Slot_CockpitWeapons();
    void Slot_UpdateTurretWeapons();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString Text(int index) const;
    QString GameDir() const;
    Prompter& Ask();
    void ApplyCaptions();
    void ConnectSlots();

    // Parts of LoadShipLine and BuildShipLine, by tab.
    void LoadTurning(const QString& line);
    void LoadTurrets();
    QStringList TurretSlotFields() const;
    QStringList CockpitBlockFields() const;
    QString PositionText(int position) const;
    void FillCockpitWeapons(int checkedMask);
    int CheckedCockpitWeapons() const;
    void AddCustomCockpit(const QString& line);
    std::optional<QString> AskCockpitName(const QString& proposal);

    // The gun lists.
    void TakeLine(const QString& line); // a new working line; notes when its length changed
    int SelectedGroup() const;          // from 0, or -1
    int SelectedEntry() const;          // from 0, or -1
    QString GroupPositionName(int group) const;
    void FillGroupList();
    void FillEntryList(int group);
    // Shows the lists again from `Line`, with group `group` and its entry
    // `entry` selected where they exist.
    void ShowGunGroup(int group, int entry);
    // Shows an entry in the automatic and manual pages without changing it.
    void ShowEntryFields(const QTreeWidgetItem* row);

    // The turret list.
    int CockpitBlockCount() const; // N of Line
    void AddTurretAt(const QString& positionText);
    void UpdateTurretButtons();

    const QStringList* m_texts;
    const QList<IdName>* m_variants;
    const QList<IdName>* m_classes;
    Prompter* m_prompter;
    std::unique_ptr<Prompter> m_ownPrompter; // the toolkit's dialogs, when none was given
    int m_loadedFieldCount = 0;              // the field count of the line as loaded
    bool m_middleEdited = false;             // turrets or gun entries were added or removed
    bool m_filling = false;                  // lists are being filled: their change signals mean nothing
};
