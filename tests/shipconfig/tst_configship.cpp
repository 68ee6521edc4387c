// The ship configuration dialog over the sample game, tab by tab: movement
// formulas, masks, turrets, guns, cockpits, and lines that go in and come out.
#include "ConfigShipFixture.h"
#include "gamedata/CockpitTable.h"
#include "gamedata/ShipLineEdit.h"
#include "shipconfig/ListRows.h"

#include <QtTest>

using namespace fixture;

namespace {

int FieldCount(const QString& line)
{
    return int(line.count(u';')) + 1;
}

// The fields from T on, and the others the dialog only carries.
void CheckCarriedFields(const QString& before, const QString& after)
{
    for (int field :
         {int(ShipLineField::NameId), int(ShipLineField::ShipScene), int(ShipLineField::CockpitScene),
          ShipLineField::CargoMax + 1, ShipLineField::Variation + 1})
        QCOMPARE(ShipField(after, field), ShipField(before, field));
    const int tail = TailIndex(before);
    QCOMPARE(TailIndex(after), tail);
    const QStringList a = after.split(';'), b = before.split(';');
    QCOMPARE(a.size(), b.size());
    for (int field = tail; field < b.size(); ++field)
        if (field - tail != ShipTailOffset::PriceNpc &&
            (field - tail < ShipTailOffset::PricePlayer || field - tail > ShipTailOffset::VideoId))
            QCOMPARE(a[field], b[field]);
    QCOMPARE(ShipField(after, TailIndex(after) + ShipTailOffset::ShipId), ShipLineId(before));
}

} // namespace

class TestConfigShip : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void movementAndPowerBoxesFollowTheFormulas();
    void everySampleShipSurvivesTheDialog();
    void corpusShipsSurviveTheDialog();
    void masksKeepTheSignBit();
    void turretsAtFullAndFromNothing();
    void gunEntriesAreChosenAddedAndRemoved();
    void cockpitsAreCopiedMadeAndDropped();
    void brokenLinesOpenAndKeepTheirLength();
};

void TestConfigShip::initTestCase()
{
    if (!HaveSampleGame())
        QSKIP("the sample game is not built");
}

void TestConfigShip::movementAndPowerBoxesFollowTheFormulas()
{
    Dialog fixture;
    QString line = SampleShip("SS_SH_SAMPLE_HALBERD");
    line = SetShipField(line, ShipLineField::Yaw, "0.5");
    line = SetShipField(line, ShipLineField::Pitch, "1.5");
    DConfigShip& d = fixture.open(line);

    QCOMPARE(d.LineYaw1->text(), QString("30.0"));
    QCOMPARE(d.DialYaw->value(), 300);
    QCOMPARE(d.LineYaw2->text(), QString("0.5"));
    QCOMPARE(d.DialPitch->value(), 600); // above one turn the field comes back as 1
    QCOMPARE(d.LinePitch2->text(), QString("1"));
    d.ButYawDown->click();
    QCOMPARE(d.LineYaw1->text(), QString("29.9"));

    d.SpinSpeedMin->setValue(1000);
    d.SpinSpeed->setValue(3);
    QCOMPARE(d.LineSpeedMax2->text(), QString("1300"));
    QCOMPARE(d.LineSpeedMin->text(), QString("2"));
    d.LineSpeedMin->clear();
    d.Slot_MinSpeedUpdate();
    QCOMPARE(d.SpinSpeedMin->value(), 1000); // a cleared box changes nothing
    d.LineAccel->setText("12.5");
    d.Slot_AccelUpdate();
    QCOMPARE(d.SpinAccel->value(), 6250);

    d.SpinEnergy->setValue(9000);
    d.LineRechargeT->setText("720");
    d.Slot_RechargeT();
    QCOMPARE(d.LineRecharge->text(), QString("0.08"));
    d.SpinEnergy->setValue(4500); // the share stays; only leaving a box converts
    QCOMPARE(d.LineRecharge->text(), QString("0.08"));

    d.ComboRace->setCurrentIndex(8);
    d.UpdateRanks();
    QCOMPARE(d.ComboNotPreset->count(), 17);
    d.ComboNotPreset->setCurrentIndex(13);
    d.Slot_Not();
    QCOMPARE(d.SpinNot->value(), -101);
    d.ComboRace->setCurrentIndex(6);
    d.UpdateRanks();
    QCOMPARE(d.ComboNotPreset->count(), 1);

    d.SpinCargoMin->setValue(900);
    d.SpinCargoMax->setValue(500);
    d.ComboClass->setCurrentIndex(9); // written as class 1, with class 1's id
    const QString built = d.BuildShipLine();
    QCOMPARE(ShipFields(built, ShipLineField::CargoMin, ShipLineField::CargoMax), QString("500;500"));
    QCOMPARE(ShipField(built, ShipLineField::Yaw), QString("0.498333"));
    QCOMPARE(ShipField(built, ShipLineField::RechargeRate), QString("0.08"));
    QCOMPARE(ShipField(built, ShipLineField::ShipClass), QString("1"));
    QCOMPARE(ShipFieldInt(built, ShipLineField::ClassId), fixture.classes[1].Id);
    QCOMPARE(ShipField(built, ShipLineField::Race), QString("7"));
    QCOMPARE(ShipFieldInt(built, TailIndex(built) + ShipTailOffset::Notoriety), -101);
}

void TestConfigShip::everySampleShipSurvivesTheDialog()
{
    Dialog fixture;
    const QStringList lines = ShipLines(SampleSource("types/TShips.txt"));
    QVERIFY(lines.size() >= 16);
    for (const QString& line : lines) {
        const QString built = fixture.open(line).BuildShipLine();
        QCOMPARE(WalkShipLine(built), LineWalk::Complete);
        CheckCarriedFields(line, built);
        // Besides the turning fields, which move to the dial's steps of 1/600,
        // a field changes only where its value lies outside its box.
        const DConfigShip& d = *fixture.dialog;
        namespace F = ShipLineField;
        const QMap<int, const QSpinBox*> boxes = {{F::PictureId, d.SpinPicture},
                                                  {F::Speed, d.SpinSpeedMin},
                                                  {F::Acceleration, d.SpinAccel},
                                                  {F::EngineSound, d.SpinESound},
                                                  {F::ReactionDelay, d.SpinDelay},
                                                  {F::EngineEffect, d.SpinEEffect},
                                                  {F::EngineGlowEffect, d.SpinEGlowEffect},
                                                  {F::ReactorOutput, d.SpinReactor},
                                                  {F::SoundVolumeMin, d.SpinSMin},
                                                  {F::SoundVolumeMax, d.SpinSMax},
                                                  {F::WeaponEnergy, d.SpinEnergy},
                                                  {F::ShieldCount, d.SpinShield},
                                                  {F::MissileCount, d.SpinMissile},
                                                  {F::SpeedExtensions, d.SpinSpeed},
                                                  {F::RudderExtensions, d.SpinRudder},
                                                  {F::CargoMin, d.SpinCargoMin},
                                                  {F::CargoMax, d.SpinCargoMax},
                                                  {F::DockingSlots, d.SpinDocking},
                                                  {F::Hull, d.SpinHull},
                                                  {F::ExplosionDef, d.SpinExDef},
                                                  {F::BodyExplosionDef, d.SpinExBodyDef},
                                                  {F::ExplosionParticles, d.SpinExParticle}};
        const QStringList a = built.split(';'), b = line.split(';');
        for (int field = 0; field < b.size(); ++field) {
            if (field >= ShipLineField::Yaw && field <= ShipLineField::Roll)
                continue;
            QString expected = b[field];
            // Classes 8 and 9 are stored as classes 0 and 1, with their ids.
            const int shipClass = b[ShipLineField::ShipClass].toInt();
            const int storedClass = shipClass == 8 || shipClass == 9 ? shipClass - 8 : shipClass;
            if (field == ShipLineField::ShipClass)
                expected = QString::number(storedClass);
            if (field == ShipLineField::ClassId)
                expected = QString::number(fixture.classes[storedClass].Id);
            auto clamped = [&](int f) {
                return qBound(boxes[f]->minimum(), b[f].toInt(), boxes[f]->maximum());
            };
            if (boxes.contains(field))
                expected = QString::number(clamped(field));
            if (field == ShipLineField::CargoMin)
                expected = QString::number(std::min(clamped(field), clamped(ShipLineField::CargoMax)));
            QVERIFY2(a[field] == expected, qPrintable(ShipLineId(line) + " field " + QString::number(field)));
        }
        QVERIFY(fixture.prompts.shown.isEmpty());
    }
}

void TestConfigShip::corpusShipsSurviveTheDialog()
{
    const QString path = qEnvironmentVariable("HW_CORPUS_DIR") + "/x3tc/types/TShips.txt";
    if (!QFile::exists(path))
        QSKIP(qPrintable("the corpus is not at " + path));
    const QStringList lines = ShipLines(path);
    QCOMPARE(lines.size(), 427);

    // One dialog for all lines: loading a line does not depend on the last one.
    Dialog fixture;
    DConfigShip& d = fixture.open(lines.first());
    QMap<int, int> changed; // field -> lines whose owned field came back changed
    for (const QString& line : lines) {
        d.LoadShipLine(line);
        const QString built = d.BuildShipLine();
        QCOMPARE(WalkShipLine(built), LineWalk::Complete);
        CheckCarriedFields(line, built);
        const QStringList a = built.split(';'), b = line.split(';');
        for (int field = 0; field < TailIndex(line); ++field)
            if (a[field] != b[field])
                ++changed[field];
    }
    QString summary;
    for (auto it = changed.cbegin(); it != changed.cend(); ++it)
        summary += QStringLiteral(" %1:%2").arg(it.key()).arg(it.value());
    qInfo("owned fields that changed (field:lines):%s", qPrintable(summary));
}

void TestConfigShip::masksKeepTheSignBit()
{
    Dialog fixture;
    DConfigShip& d = fixture.open(SampleShip("SS_SH_SAMPLE_LANCE"));
    QCOMPARE(d.ListLasers->topLevelItemCount(), d.LaserTable.size());
    QCOMPARE(d.LineLasers->text(), ShipField(SampleShip("SS_SH_SAMPLE_LANCE"), ShipLineField::LaserMask));

    // Names that sort in row order, as the list sorts by name.
    d.LaserTable.clear();
    for (int row = 0; row < 33; ++row)
        d.LaserTable.append({QString::asprintf("L%02d", row), 0, WeaponBit(row)});
    d.LaserMask = int(0x80000001u);
    d.Slot_UpdateMasks();
    QCOMPARE(d.ListLasers->topLevelItem(31)->checkState(0), Qt::Checked);
    QCOMPARE(d.ListLasers->topLevelItem(1)->checkState(0), Qt::Unchecked);
    QVERIFY(!(d.ListLasers->topLevelItem(32)->flags() & Qt::ItemIsUserCheckable)); // no bit left for it
    d.ListLasers->topLevelItem(1)->setCheckState(0, Qt::Checked);
    QCOMPARE(d.LineLasers->text(), QString::number(int(0x80000003u)));
    for (int row = 0; row < 33; ++row)
        d.ListLasers->topLevelItem(row)->setCheckState(0, Qt::Unchecked);
    QCOMPARE(d.LaserMask, 0);

    d.MissileMask = 6;
    d.RadioMissiles->click();
    QCOMPARE(d.LineLasers->text(), QString("6"));
    d.ListLasers->findItems("1", Qt::MatchExactly, 1).value(0)->setCheckState(0, Qt::Checked);
    const QString built = d.BuildShipLine();
    QCOMPARE(ShipField(built, ShipLineField::LaserMask), QString("0"));
    QCOMPARE(ShipField(built, ShipLineField::MissileMask), QString("7"));
}

void TestConfigShip::turretsAtFullAndFromNothing()
{
    Dialog fixture;
    const QString tidewall = SampleShip("SS_SH_SAMPLE_TIDEWALL");
    DConfigShip& d = fixture.open(tidewall);
    QCOMPARE(d.ListTurrets->topLevelItemCount(), 6);
    QVERIFY(!d.ButTurretAdd->isEnabled());
    d.Slot_AddTurret();
    QCOMPARE(d.Line, tidewall);

    QTreeWidgetItem* third = d.ListTurrets->topLevelItem(2);
    const QString freed = third->text(2);
    const int entries = GunGroupsOf(tidewall)[3].Entries.size();
    d.ListTurrets->setCurrentItem(third);
    d.Slot_SelectTurret(third);
    d.Slot_RemoveTurret();
    QCOMPARE(d.TailIndex, TailIndex(tidewall) - 8 - 6 * entries);
    QCOMPARE(d.ListTurrets->topLevelItemCount(), 5);
    QCOMPARE(d.ListTurrets->topLevelItem(4)->text(0), QString("5"));
    QVERIFY(d.ButTurretAdd->isEnabled());

    d.Slot_AddTurret(); // one free position: taken without asking
    QVERIFY(fixture.prompts.shown.isEmpty());
    QCOMPARE(d.ListTurrets->topLevelItem(5)->text(2), freed);
    QCOMPARE(d.TailIndex, TailIndex(tidewall) - 6 * entries);
    const QString built = d.BuildShipLine();
    QCOMPARE(WalkShipLine(built), LineWalk::Complete);
    QCOMPARE(TurretsOf(built).size(), 6);
    QCOMPARE(TurretsOf(built)[5].Cockpit, QString("0"));
    QCOMPARE(TurretsOf(built)[5].Node.Body, QString("0"));

    // A scout without cockpit blocks: its first turret brings the main block
    // and group along, so that group 0 stays the cockpit's.
    const QString dart = SampleShip("SS_SH_SAMPLE_DART");
    DConfigShip& scout = fixture.open(dart);
    QCOMPARE(TailIndex(scout.BuildShipLine()), 55);     // no block of its own accord
    fixture.prompts.inputAnswers.enqueue(std::nullopt); // the position dialog cancelled
    scout.Slot_AddTurret();
    QCOMPARE(scout.Line, dart);
    const QString position = "4: " + fixture.texts[283] + "4";
    fixture.prompts.inputAnswers.enqueue(position);
    scout.Slot_AddTurret();
    QCOMPARE(fixture.prompts.shown.last().buttons.size(), 6);
    const QString grown = scout.BuildShipLine();
    QCOMPARE(GunIndexField(grown), 62);
    QCOMPARE(TailIndex(grown), 71);
    QCOMPARE(LayoutOf(grown).groups.size(), 2);
    QCOMPARE(TurretsOf(grown).value(0).Position, 4);
    QCOMPARE(ShipField(grown, 71 + ShipTailOffset::ShipId), QString("SS_SH_SAMPLE_DART"));
}

void TestConfigShip::gunEntriesAreChosenAddedAndRemoved()
{
    Dialog fixture;
    const QString lance = SampleShip("SS_SH_SAMPLE_LANCE");
    DConfigShip& d = fixture.open(lance);
    d.ListGuns->setCurrentItem(d.ListGuns->topLevelItem(0));
    d.Slot_SelectGun();
    QCOMPARE(d.ListGuns2->topLevelItemCount(), 4);

    // The empty entry: no primary, so no gun and no secondary node.
    d.ListGuns2->setCurrentItem(d.ListGuns2->topLevelItem(1));
    d.Slot_SelectGun2();
    QCOMPARE(d.ListGuns2->topLevelItem(1)->text(1), QString("0"));
    QVERIFY(!d.ComboATSecondary->isEnabled());
    QCOMPARE(d.ComboATSecondary->currentText(), QString(":-1"));

    // A gun body of the Dummies table offers its barrels; the entry keeps its own.
    d.ListGuns2->setCurrentItem(d.ListGuns2->topLevelItem(0));
    d.Slot_SelectGun2();
    QCOMPARE(d.ComboATSecondary->count(), 3);
    QCOMPARE(d.ComboATSecondary->currentText(), QString("weapons\\sample\\barrel_left:1"));

    // An added entry is empty; choosing a primary node makes it a gun.
    const int tail = d.TailIndex;
    d.Slot_AddGun();
    QCOMPARE(d.TailIndex, tail + 6);
    QCOMPARE(SelectedRow(d.ListGuns2)->text(0), QString("5"));
    QCOMPARE(SelectedRow(d.ListGuns2)->text(3), QString(":-1"));
    d.ComboATPrimary->setCurrentText("ships\\sample\\props\\gun_mount:3");
    d.Slot_SelectPrimary();
    d.ComboATSecondary->setCurrentText("weapons\\sample\\barrel_right:2");
    d.Slot_SelectSecondary();
    QCOMPARE(ShipFieldInt(d.Line, ShipLineField::GunCount), ShipFieldInt(lance, ShipLineField::GunCount) + 1);
    QCOMPARE(JoinNode(GunGroupsOf(d.Line)[0].Entries[4].Secondary),
             QString("weapons\\sample\\barrel_right:2"));

    // A primary body without a Dummies record has no barrels to offer.
    d.LinePrimary->setText("ships\\sample\\props\\cockpit_mount");
    d.SpinPrimary->setValue(1);
    d.LineSecondary->setText("weapons\\sample\\barrel_left");
    d.SpinSecondary->setValue(1);
    d.Slot_UpdateGuns();
    d.Slot_SelectGun2();
    QCOMPARE(SelectedRow(d.ListGuns2)->text(3), QString(":-1"));
    QCOMPARE(GunGroupsOf(d.Line)[0].Entries[4].Secondary.Part, QString("-1"));

    d.Slot_RemoveGun();
    d.Slot_RemoveGun();
    QCOMPARE(d.TailIndex, tail - 6);
    QCOMPARE(d.ListGuns2->topLevelItemCount(), 3);
    const QString built = d.BuildShipLine();
    QCOMPARE(WalkShipLine(built), LineWalk::Complete);
    int guns = 0;
    const QList<GunGroup> groups = GunGroupsOf(built);
    for (const GunEntry& entry : groups[0].Entries)
        guns += ReadInt(entry.Count);
    QCOMPARE(ShipFieldInt(built, ShipLineField::GunCount), guns);
}

void TestConfigShip::cockpitsAreCopiedMadeAndDropped()
{
    Dialog fixture;
    fixture.customCockpits = {NewCockpitLine("SS_COCKPIT_OLD")};
    const QString halberd = SampleShip("SS_SH_SAMPLE_HALBERD");
    DConfigShip& d = fixture.open(halberd);
    QCOMPARE(d.ComboCustCockpit->count(), 1);

    QTreeWidgetItem* front = d.ListTurrets->topLevelItem(0);
    d.ListTurrets->setCurrentItem(front);
    d.Slot_SelectTurret(front);
    QVERIFY(d.RadioStdCockpit->isChecked());
    QCOMPARE(d.ComboStdCockpit->currentIndex(), ShipFieldInt(halberd, TurretCockpitField(0)));

    fixture.prompts.inputAnswers.enqueue(QString("my_pit"));
    d.Slot_CopyCockpit();
    QCOMPARE(fixture.prompts.shown.last().buttons.value(0),
             ("SS_COCKPIT_HALBERD_" + fixture.texts[283] + "1").toUpper());
    QVERIFY(d.RadioCustCockpit->isChecked());
    QCOMPARE(front->text(1), QString("MY_PIT"));
    const QString copy = d.CustomCockpits.last();
    QCOMPARE(CockpitName(copy), QString("MY_PIT"));
    QCOMPARE(
        ShipFields(copy, 0, CockpitField::Name - 1),
        ShipFields(d.StdCockpits[ShipFieldInt(halberd, TurretCockpitField(0))], 0, CockpitField::Name - 1));

    // Scene and weapons of a custom cockpit are edited in its line.
    d.LineCockpitScene->setText("cockpits\\mine");
    d.ListCockpitWeapon->topLevelItem(0)->setCheckState(0, Qt::Unchecked);
    d.ListCockpitWeapon->topLevelItem(2)->setCheckState(0, Qt::Checked);
    QCOMPARE(CockpitSceneId(d.CustomCockpits.last()), QString("cockpits\\mine"));
    QCOMPARE(CockpitWeapons(d.CustomCockpits.last()), CheckedSum(d.ListCockpitWeapon));

    // Names in use are refused, whatever their case.
    const int count = d.CustomCockpits.size();
    for (const QString& taken : {QString("ss_cockpit_sample_none"), QString("my_pit"), QString()}) {
        fixture.prompts.inputAnswers.enqueue(taken);
        d.Slot_NewCockpit();
    }
    QCOMPARE(d.CustomCockpits.size(), count);
    QCOMPARE(fixture.prompts.messages("warning").size(), 2);
    fixture.prompts.inputAnswers.enqueue(QString("SS_COCKPIT_SPARE"));
    d.Slot_NewCockpit();
    QCOMPARE(d.CustomCockpits.size(), count + 1);
    QCOMPARE(front->text(1), QString("SS_COCKPIT_SPARE"));
    d.ComboCustCockpit->setCurrentText("MY_PIT");
    d.Slot_SelectCustCockpit();
    QCOMPARE(d.LineCockpitScene->text(), QString("cockpits\\mine"));

    // On accept only the cockpits a turret names stay.
    const QString built = d.BuildShipLine();
    QCOMPARE(ShipField(built, TurretCockpitField(0)), QString("MY_PIT"));
    QCOMPARE(ShipField(built, TurretCockpitField(1)), ShipField(halberd, TurretCockpitField(1)));
    QCOMPARE(d.CustomCockpits.size(), 1);
    QCOMPARE(CockpitName(d.CustomCockpits.first()), QString("MY_PIT"));
}

void TestConfigShip::brokenLinesOpenAndKeepTheirLength()
{
    const QString halberd = SampleShip("SS_SH_SAMPLE_HALBERD");
    QStringList noPositions = halberd.split(';');
    noPositions[TurretPositionField(0)] = "0";
    noPositions[TurretPositionField(1)] = "0";
    const QStringList broken = {
        "ships\\x;12;fast;0.1",                                      // short
        SetShipField(halberd, ShipLineField::Speed, "quick"),        // text in a number
        SetShipField(halberd, ShipLineField::CockpitCount, "99999"), // blocks past the end
        SetShipField(halberd, GunIndexField(halberd), "2147483647"), // groups past the end
        noPositions.join(';'),                                       // turret blocks without positions
        halberd.left(halberd.indexOf("ships\\sample\\props\\turret_mount")), // cut in the middle
    };
    Dialog fixture;
    for (const QString& line : broken) {
        DConfigShip& d = fixture.open(line);
        const QString built = d.BuildShipLine();
        QCOMPARE(FieldCount(built), FieldCount(line));
        QCOMPARE(ShipField(built, ShipLineField::BodyFile), ShipField(line, ShipLineField::BodyFile));
        QCOMPARE(ShipField(built, ShipLineField::CockpitScene), ShipField(line, ShipLineField::CockpitScene));
    }
    // The blocks without positions show no turret and stay in the line.
    DConfigShip& d = fixture.open(noPositions.join(';'));
    QCOMPARE(d.ListTurrets->topLevelItemCount(), 0);
    QCOMPARE(d.BuildShipLine(), d.Line);

    // A class that data/classes has no row for falls on the first class, as
    // every box does with a value it has no item for; with no rows at all the
    // line keeps its class id.
    const QString odd =
        SetShipField(SetShipField(halberd, ShipLineField::ShipClass, "3"), ShipLineField::ClassId, "777");
    fixture.classes = fixture.classes.mid(0, 1);
    const QString firstClass = fixture.open(odd).BuildShipLine();
    QCOMPARE(ShipField(firstClass, ShipLineField::ShipClass), QString("0"));
    QCOMPARE(ShipFieldInt(firstClass, ShipLineField::ClassId), fixture.classes[0].Id);
    fixture.classes.clear();
    QCOMPARE(ShipField(fixture.open(odd).BuildShipLine(), ShipLineField::ClassId), QString("777"));
}

QTEST_MAIN(TestConfigShip)
#include "tst_configship.moc"
