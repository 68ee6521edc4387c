#include "shipconfig/DConfigShip.h"

#include "core/ProgramDir.h"
#include "forms/Prompter.h"
#include "gamedata/ShipLineEdit.h"
#include "shipconfig/ConfigShipText.h"
#include "shipconfig/CustomCockpits.h"
#include "shipconfig/ListRows.h"
#include "shipconfig/ShipFormulas.h"

#include <QEvent>
#include <QFileInfo>

#include <algorithm>

namespace Txt = ConfigShipText;

namespace {

constexpr int MaxGameDirs = 10;
// Ship classes 8 and 9 are written as classes 0 and 1.
constexpr int FirstFoldedClass = 8;
// The two fields of the head that are carried through unread.
constexpr int UnreadAfterCargo = ShipLineField::CargoMax + 1;
constexpr int UnreadAfterVariation = ShipLineField::Variation + 1;

int FieldCount(const QString& line)
{
    return int(line.count(u';')) + 1;
}

QString Num(int value)
{
    return QString::number(value);
}

// The current item of a box, or 0 when it has none.
int ItemOf(const QComboBox* box)
{
    return std::max(0, box->currentIndex());
}

// Makes item `index` current when the box has it; else the box stays as it is.
void SetItem(QComboBox* box, int index)
{
    if (index >= 0 && index < box->count())
        box->setCurrentIndex(index);
}

} // namespace

DConfigShip::DConfigShip(const QStringList* texts, const QStringList& gameDirs, const QString& baseLanguage,
                         const QList<IdName>* variants, const QList<IdName>* classes, QWidget* parent,
                         Prompter* prompter)
    : ConfigShip(parent, nullptr, true), GameDirs(gameDirs), BaseLanguage(baseLanguage), m_texts(texts),
      m_variants(variants), m_classes(classes), m_prompter(prompter)
{
    if (!m_prompter) {
        m_ownPrompter = std::make_unique<QtPrompter>();
        m_prompter = m_ownPrompter.get();
    }
    ApplyCaptions();
    ConnectSlots();
    ComboDir->addItems(GameDirs);
    ComboMainCockpit->setEnabled(false);
    GroupCockpit->setEnabled(false);
    ButTurretRemove->setEnabled(false);
    ButAddGun->setEnabled(false);
    ButRemoveGun->setEnabled(false);
    ListGuns2->setEnabled(false);
    TabWigGuns->setEnabled(false);
    for (QTreeWidget* checkList : {ListLasers, ListCockpitWeapon}) {
        checkList->header()->setSectionResizeMode(1, QHeaderView::Fixed);
        checkList->setColumnHidden(1, true);
    }
}

DConfigShip::~DConfigShip() = default;

QString DConfigShip::Text(int index) const
{
    return m_texts ? m_texts->value(index) : QString();
}

QString DConfigShip::GameDir() const
{
    return GameDirs.isEmpty() ? QString() : GameDirs.first();
}

Prompter& DConfigShip::Ask()
{
    return *m_prompter;
}

void DConfigShip::ApplyCaptions()
{
    if (!m_texts)
        return;
    const QList<std::pair<QLabel*, int>> labels = {{LabelCargoMin, Txt::Minimum},
                                                   {LabelSpeedMin, Txt::Minimum},
                                                   {LabelSMin, Txt::Minimum},
                                                   {LabelCargoMax, Txt::Maximum},
                                                   {LabelSpeedMax, Txt::Maximum},
                                                   {LabelSMax, Txt::Maximum},
                                                   {LabelSpeed, Txt::SpeedExtensions},
                                                   {LabelAccel, Txt::Acceleration},
                                                   {LabelYaw, Txt::Yaw},
                                                   {LabelPitch, Txt::Pitch},
                                                   {LabelRoll, Txt::Roll},
                                                   {LabelRudder, Txt::RudderExtensions},
                                                   {LabelDir, Txt::GameDirLabel},
                                                   {LabelLang, Txt::BaseLanguage},
                                                   {LabelRace, Txt::Race},
                                                   {LabelVari, Txt::Variation},
                                                   {LabelCargo, Txt::CargoType},
                                                   {LabelPriceP, Txt::PricePlayer},
                                                   {LabelPriceN, Txt::PriceNpc},
                                                   {LabelNotPreset, Txt::NotorietyPreset},
                                                   {LabelNot, Txt::Notoriety},
                                                   {LabelShield, Txt::ShieldType},
                                                   {LabelMaxShield, Txt::ShieldCount},
                                                   {LabelHull, Txt::Hull},
                                                   {LabelReactor, Txt::Reactor},
                                                   {LabelEnergy, Txt::WeaponEnergy},
                                                   {LabelRecharge, Txt::Recharge},
                                                   {LabelMissile, Txt::Missiles},
                                                   {LabelClass, Txt::ShipClass},
                                                   {LabelDocking, Txt::DockingSlots},
                                                   {LabelDelay, Txt::ReactionDelay},
                                                   {LabelBodyFile, Txt::BodyFile},
                                                   {LabelPicture, Txt::PictureId},
                                                   {LabelVideo, Txt::VideoId},
                                                   {LabelEEffect, Txt::EngineEffect},
                                                   {LabelEGlowEffect, Txt::EngineGlowEffect},
                                                   {LabelESound, Txt::EngineSound},
                                                   {LabelAPrimary, Txt::PrimaryBody},
                                                   {LabelMPrimary, Txt::PrimaryBody},
                                                   {LabelASecondary, Txt::SecondaryBody},
                                                   {LabelMSecondary, Txt::SecondaryBody},
                                                   {LabelCockpitScene, Txt::CockpitScene}};
    for (const auto& [label, index] : labels)
        label->setText("<b>" + Text(index) + ":</b>");
    // These four carry no colon.
    for (const auto& [label, index] :
         QList<std::pair<QLabel*, int>>{{LabelExDef, Txt::ExplosionDef},
                                        {LabelExBodyDef, Txt::BodyExplosionDef},
                                        {LabelExParticle, Txt::ExplosionParticles},
                                        {LabelMainCockpit, Txt::MainCockpit}})
        label->setText("<b>" + Text(index) + "</b>");

    const QList<std::pair<QGroupBox*, int>> groups = {
        {GroupCargo, Txt::GroupCargo},   {GroupSpeed, Txt::GroupSpeed},    {GroupTurning, Txt::GroupTurning},
        {GroupPrice, Txt::GroupPrice},   {GroupNot, Txt::GroupNotoriety},  {GroupShield, Txt::GroupShield},
        {GroupWeapon, Txt::GroupWeapon}, {GroupId, Txt::GroupId},          {GroupEngine, Txt::GroupEngine},
        {GroupSound, Txt::GroupSound},   {GroupExplode, Txt::GroupExplode}};
    for (const auto& [group, index] : groups)
        group->setTitle(Text(index));

    const QList<std::pair<QAbstractButton*, int>> buttons = {{ButDone, Txt::Done},
                                                             {ButCancel, Txt::Cancel},
                                                             {RadioLasers, Txt::Lasers},
                                                             {RadioMissiles, Txt::MissileList},
                                                             {ButUpdate, Txt::Update},
                                                             {ButAddGun, Txt::AddGun},
                                                             {ButRemoveGun, Txt::RemoveGun},
                                                             {ButTurretAdd, Txt::AddTurret},
                                                             {ButTurretRemove, Txt::RemoveTurret},
                                                             {RadioStdCockpit, Txt::StandardCockpit},
                                                             {ButCopy, Txt::CopyCockpit},
                                                             {RadioCustCockpit, Txt::CustomCockpit},
                                                             {ButNewCockpit, Txt::NewCockpit}};
    for (const auto& [button, index] : buttons)
        button->setText(Text(index));

    const QList<std::pair<QWidget*, int>> tabs = {{TabInfo, Txt::TabInfo},     {TabMove, Txt::TabMove},
                                                  {TabWeapon, Txt::TabWeapon}, {TabModel, Txt::TabModel},
                                                  {TabLasers, Txt::TabLasers}, {TabCockpit, Txt::TabCockpit},
                                                  {TabGuns, Txt::TabGuns}};
    for (const auto& [tab, index] : tabs)
        TabConfig->setTabText(TabConfig->indexOf(tab), Text(index));
    TabWigGuns->setTabText(TabWigGuns->indexOf(TabAuto), Text(Txt::TabAuto));
    TabWigGuns->setTabText(TabWigGuns->indexOf(TabManual), Text(Txt::TabManual));

    auto headers = [this](QTreeWidget* list, const QList<std::pair<int, int>>& columns) {
        for (const auto& [column, index] : columns)
            list->headerItem()->setText(column, Text(index));
    };
    headers(ListTurrets, {{1, Txt::TurretType}, {2, Txt::TurretPosition}, {3, Txt::TurretModel}});
    headers(ListGuns, {{1, Txt::GunPos}, {2, Txt::GunGuns}, {3, Txt::GunEntries}, {4, Txt::GunPosition}});
    headers(ListGuns2, {{1, Txt::GunCount}, {2, Txt::PrimaryBody}, {3, Txt::SecondaryBody}});
    headers(ListLasers, {{1, Txt::Mask}});
    headers(ListCockpitWeapon, {{0, Txt::Lasers}, {1, Txt::Mask}});
}

void DConfigShip::ConnectSlots()
{
    connect(SpinSpeedMin, &QSpinBox::valueChanged, this, &DConfigShip::Slot_MinSpeedChange);
    connect(SpinSpeed, &QSpinBox::valueChanged, this, &DConfigShip::Slot_SpeedChange);
    connect(SpinAccel, &QSpinBox::valueChanged, this, &DConfigShip::Slot_AccelChange);
    // The m/s boxes steer the spin boxes only when the user types: a value
    // written into them from a spin box must not come back rounded to the
    // six digits of the text.
    connect(LineSpeedMin, &QLineEdit::textEdited, this, &DConfigShip::Slot_MinSpeedUpdate);
    connect(LineAccel, &QLineEdit::textEdited, this, &DConfigShip::Slot_AccelUpdate);
    connect(DialYaw, &QDial::valueChanged, this, &DConfigShip::Slot_YawDial);
    connect(DialPitch, &QDial::valueChanged, this, &DConfigShip::Slot_PitchDial);
    connect(DialRoll, &QDial::valueChanged, this, &DConfigShip::Slot_RollDial);
    connect(ComboLang, &QComboBox::textActivated, this, &DConfigShip::Slot_BaseLang);
    connect(ComboRace, &QComboBox::activated, this, &DConfigShip::UpdateRanks);
    connect(ComboNotPreset, &QComboBox::activated, this, &DConfigShip::Slot_Not);
    LineRechargeT->installEventFilter(this);
    LineRecharge->installEventFilter(this);

    connect(RadioLasers, &QRadioButton::clicked, this, &DConfigShip::Slot_UpdateMasks);
    connect(RadioMissiles, &QRadioButton::clicked, this, &DConfigShip::Slot_UpdateMasks);
    // A tick changes the check state; itemChanged sees it whether the box or
    // the keyboard was used, and filling the list is kept out by m_filling.
    connect(ListLasers, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* item) {
        if (!m_filling)
            Slot_LaserChange(item);
    });
    connect(ListCockpitWeapon, &QTreeWidget::itemChanged, this, [this] {
        if (!m_filling)
            Slot_CockpitWeapons();
    });

    connect(ListTurrets, &QTreeWidget::itemClicked, this, &DConfigShip::Slot_SelectTurret);
    connect(ListTurrets, &QTreeWidget::itemDoubleClicked, this, &DConfigShip::Slot_ChangeTurret);
    connect(ComboMainCockpit, &QComboBox::activated, this, &DConfigShip::Slot_MainCockpit);
    connect(ListGuns, &QTreeWidget::itemClicked, this, &DConfigShip::Slot_SelectGun);
    connect(ListGuns2, &QTreeWidget::itemClicked, this, &DConfigShip::Slot_SelectGun2);
    connect(ComboATPrimary, &QComboBox::activated, this, &DConfigShip::Slot_SelectPrimary);
    connect(ComboATSecondary, &QComboBox::activated, this, &DConfigShip::Slot_SelectSecondary);

    connect(RadioStdCockpit, &QRadioButton::clicked, this, &DConfigShip::Slot_CockpitType);
    connect(RadioCustCockpit, &QRadioButton::clicked, this, &DConfigShip::Slot_CockpitType);
    connect(ComboStdCockpit, &QComboBox::activated, this, &DConfigShip::Slot_SelectStdCockpit);
    connect(ComboCustCockpit, &QComboBox::activated, this, &DConfigShip::Slot_SelectCustCockpit);
    connect(LineCockpitScene, &QLineEdit::textChanged, this, &DConfigShip::Slot_SceneChanged);
}

bool DConfigShip::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusOut) {
        if (watched == LineRechargeT)
            Slot_RechargeT();
        else if (watched == LineRecharge)
            Slot_Recharge();
    }
    return ConfigShip::eventFilter(watched, event);
}

// --- The game's tables. Without a game directory there is nothing to read;
// an empty path must not fall back on the current directory's catalogs.

void DConfigShip::LoadShields()
{
    ShieldTable.clear();
    if (!GameDir().isEmpty())
        ShieldTable = LoadShieldTable(GameDir(), ProgramPath("/TShields.txt"));
}

void DConfigShip::LoadLasers()
{
    LaserTable.clear();
    if (!GameDir().isEmpty())
        LaserTable = LoadLaserTable(GameDir(), ProgramPath("/TLaser.txt"));
}

void DConfigShip::LoadMissiles()
{
    MissileTable.clear();
    if (!GameDir().isEmpty())
        MissileTable = LoadMissileTable(GameDir(), ProgramPath("/TMissiles.txt"));
}

void DConfigShip::Slot_GetDirectory()
{
    QString dir = Ask().directory(this, Text(Txt::GameDirCaption), GameDir());
    if (dir.isEmpty())
        return;
    dir.replace(u'\\', u'/');
    if (!QFileInfo::exists(dir + "/x3.exe")) {
        Ask().critical(this, Text(Txt::BadGameDirCaption), Text(Txt::BadGameDirText), {Text(Txt::ButtonOk)});
        return;
    }
    GameDirs.removeAll(dir);
    for (int item = ComboDir->findText(dir); item >= 0; item = ComboDir->findText(dir))
        ComboDir->removeItem(item);
    GameDirs.prepend(dir);
    ComboDir->insertItem(0, dir);
    ComboDir->setCurrentIndex(0);
    while (GameDirs.size() > MaxGameDirs) {
        GameDirs.removeLast();
        ComboDir->removeItem(ComboDir->count() - 1);
    }
    LoadShields();
    LoadLasers();
    LoadMissiles();
    LoadLanguagesAndCockpits();
}

// --- The line.

void DConfigShip::LoadShipLine(const QString& line)
{
    using namespace ShipLineField;
    m_loadedFieldCount = FieldCount(line);
    m_middleEdited = false;
    Line = line;

    LoadTurning(line);
    LineBodyFile->setText(ShipField(line, BodyFile));
    SpinPicture->setValue(ShipFieldInt(line, PictureId));
    SpinSpeed->setValue(ShipFieldInt(line, SpeedExtensions));
    SpinRudder->setValue(ShipFieldInt(line, RudderExtensions));
    SpinCargoMin->setValue(ShipFieldInt(line, CargoMin));
    SpinCargoMax->setValue(ShipFieldInt(line, CargoMax));

    SpinSpeedMin->setValue(ShipFieldInt(line, Speed));
    Slot_MinSpeedChange(SpinSpeedMin->value());
    SpinAccel->setValue(ShipFieldInt(line, Acceleration));
    Slot_AccelChange(SpinAccel->value());

    SpinDelay->setValue(ShipFieldInt(line, ReactionDelay));
    SpinEEffect->setValue(ShipFieldInt(line, EngineEffect));
    SpinEGlowEffect->setValue(ShipFieldInt(line, EngineGlowEffect));
    SpinESound->setValue(ShipFieldInt(line, EngineSound));
    SpinSMin->setValue(ShipFieldInt(line, SoundVolumeMin));
    SpinSMax->setValue(ShipFieldInt(line, SoundVolumeMax));
    SpinExDef->setValue(ShipFieldInt(line, ExplosionDef));
    SpinExBodyDef->setValue(ShipFieldInt(line, BodyExplosionDef));
    SpinExParticle->setValue(ShipFieldInt(line, ExplosionParticles));

    SceneBase = ShipFormulas::SceneBaseOf(ShipField(line, ShipScene));
    UpdateGunList();
    SpinPriceN->setValue(ShipFieldInt(line, TailIndex + ShipTailOffset::PriceNpc));
    SpinPriceP->setValue(ShipFieldInt(line, TailIndex + ShipTailOffset::PricePlayer));

    // As in a new dialog, a box whose item the line does not name shows its
    // first item.
    for (QComboBox* box : {ComboRace, ComboCargo, ComboClass, ComboVariation, ComboShield})
        SetItem(box, 0);
    SetItem(ComboRace, ShipFieldInt(line, Race) - 1);
    LaserMask = ShipFieldInt(line, ShipLineField::LaserMask);
    MissileMask = ShipFieldInt(line, ShipLineField::MissileMask);
    SetItem(ComboCargo, ShipFieldInt(line, CargoClass));
    SetItem(ComboClass, ShipFieldInt(line, ShipClass));
    SetItem(ComboVariation, ShipFieldInt(line, ShipLineField::Variation));
    SetItem(ComboShield, ShipFieldInt(line, ShieldType));

    SpinShield->setValue(ShipFieldInt(line, ShieldCount));
    SpinHull->setValue(ShipFieldInt(line, ShipLineField::Hull));
    SpinDocking->setValue(ShipFieldInt(line, ShipLineField::DockingSlots));
    SpinNot->setValue(ShipFieldInt(line, TailIndex + ShipTailOffset::Notoriety));
    SpinVideo->setValue(ShipFieldInt(line, TailIndex + ShipTailOffset::VideoId));
    SpinReactor->setValue(ShipFieldInt(line, ReactorOutput));
    SpinEnergy->setValue(ShipFieldInt(line, ShipLineField::WeaponEnergy));
    LineRecharge->setText(ShipField(line, RechargeRate));
    SpinMissile->setValue(ShipFieldInt(line, MissileCount));

    UpdateRanks();
    LineRechargeT->setText(ShipFormulas::RechargePerSecond(LineRecharge->text(), SpinEnergy->value()));
    LoadTurrets();
}

void DConfigShip::LoadTurning(const QString& line)
{
    const QList<std::tuple<int, QDial*, QLineEdit*, QLineEdit*>> axes = {
        {ShipLineField::Yaw, DialYaw, LineYaw1, LineYaw2},
        {ShipLineField::Pitch, DialPitch, LinePitch1, LinePitch2},
        {ShipLineField::Roll, DialRoll, LineRoll1, LineRoll2}};
    for (const auto& [field, dial, shown, raw] : axes) {
        // As in a new dialog, the dial starts at 0: setting it fires its slot
        // exactly when the value is another.
        const QSignalBlocker quiet(dial);
        dial->setValue(0);
    }
    for (const auto& [field, dial, shown, raw] : axes) {
        const ShipFormulas::Turning turning = ShipFormulas::TurningFromField(ShipField(line, field));
        raw->setText(turning.raw);
        shown->setText(turning.shown);
        dial->setValue(turning.dial);
    }
}

QString DConfigShip::BuildShipLine()
{
    using namespace ShipLineField;
    UpdateLineGuns();
    Slot_MinSpeedChange(SpinSpeedMin->value());
    Slot_AccelChange(SpinAccel->value());
    int classItem = ItemOf(ComboClass);
    if (classItem >= FirstFoldedClass && classItem <= FirstFoldedClass + 1)
        classItem -= FirstFoldedClass;

    auto kept = [this](int field) { return ShipField(Line, field); };
    QStringList fields = {LineBodyFile->text(), Num(SpinPicture->value()), LineYaw2->text(),
                          LinePitch2->text(),   LineRoll2->text(),         Num(classItem),
                          kept(NameId)};
    for (const QSpinBox* spin : {SpinSpeedMin, SpinAccel, SpinESound, SpinDelay, SpinEEffect, SpinEGlowEffect,
                                 SpinReactor, SpinSMin, SpinSMax})
        fields.append(Num(spin->value()));
    fields << kept(ShipScene) << kept(CockpitScene) << Num(LaserMask) << kept(GunCount);
    fields << Num(SpinEnergy->value()) << LineRecharge->text() << Num(ItemOf(ComboShield))
           << Num(SpinShield->value());
    fields << Num(MissileMask) << Num(SpinMissile->value()) << Num(SpinSpeed->value())
           << Num(SpinRudder->value());
    fields << Num(std::min(SpinCargoMin->value(), SpinCargoMax->value())) << Num(SpinCargoMax->value());
    fields << kept(UnreadAfterCargo);

    QStringList turretCockpits;
    for (int i = 0; i < ListTurrets->topLevelItemCount(); ++i)
        turretCockpits.append(ListTurrets->topLevelItem(i)->text(1));
    CustomCockpits = CockpitsInUse(CustomCockpits, turretCockpits);
    fields += TurretSlotFields();

    fields << Num(SpinDocking->value()) << Num(ItemOf(ComboCargo)) << Num(ItemOf(ComboRace) + 1)
           << Num(SpinHull->value()) << Num(SpinExDef->value()) << Num(SpinExBodyDef->value())
           << Num(SpinExParticle->value()) << Num(ItemOf(ComboVariation));
    fields << kept(UnreadAfterVariation);
    // Without a class row (no data/classes), the line keeps its class id.
    const bool hasClassRow = m_classes && classItem < m_classes->size();
    fields << (hasClassRow ? Num(m_classes->at(classItem).Id) : kept(ClassId));

    fields += CockpitBlockFields();
    for (int field = GunIndexField; field <= TailIndex; ++field)
        fields.append(kept(field));
    fields << Num(SpinPriceN->value());
    for (int offset = ShipTailOffset::PriceNpc + 1; offset < ShipTailOffset::PricePlayer; ++offset)
        fields.append(kept(TailIndex + offset));
    fields << Num(SpinPriceP->value()) << Num(SpinNot->value()) << Num(SpinVideo->value());
    fields += Line.split(u';').mid(TailIndex + ShipTailOffset::VideoId + 1);

    // A line that was too short for its own layout keeps its length unless
    // its middle was changed.
    if (!m_middleEdited && fields.size() > m_loadedFieldCount)
        fields.resize(m_loadedFieldCount);
    return fields.join(u';');
}
