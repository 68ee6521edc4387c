// Customize Ship from the window's side: what goes into the dialog, and what
// comes back on accept and on cancel.
#include "ConfigShipFixture.h"
#include "gamedata/CockpitTable.h"
#include "gamedata/ShipLineEdit.h"
#include "shipconfig/CustomiseShip.h"
#include "shipconfig/ListRows.h"

#include <QDir>
#include <QtTest>

using namespace fixture;

namespace {

struct Opener
{
    Dialog data; // texts, lists, prompter and program directory
    CustomiseRequest request;

    Opener()
    {
        request.prompter = &data.prompts;
        request.uiText = &data.texts;
        request.shipLine = SampleShip("SS_SH_SAMPLE_HALBERD");
        request.baseLanguage = "44";
        request.gameDirs = {SampleGame()};
        request.classes = &data.classes;
        request.variants = &data.variants;
        request.sceneFile = SampleSource("objects/ships/sample/halberd_scene.bod");
    }
};

} // namespace

class TestCustomiseShip : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void refusesAnEmptyLineAndAMissingGameDir();
    void cancelChangesNothingButTheLanguage();
    void acceptKeepsTheCockpitsTurretsUse();
    void sceneAndGunBodiesReachTheDialog();
};

void TestCustomiseShip::initTestCase()
{
    if (!HaveSampleGame())
        QSKIP("the sample game is not built");
}

void TestCustomiseShip::refusesAnEmptyLineAndAMissingGameDir()
{
    Opener opener;
    bool ran = false;
    opener.request.run = [&ran](DConfigShip&) {
        ran = true;
        return int(QDialog::Accepted);
    };
    opener.request.shipLine.clear();
    CustomiseResult result = CustomiseShip(opener.request);
    QCOMPARE(result.outcome, CustomiseOutcome::NoShipLine);
    QCOMPARE(opener.data.prompts.messages("warning").size(), 1);
    QVERIFY(!result.SaveSettings());

    // No game directory: the user is asked for one, and without it nothing runs.
    opener.request.shipLine = SampleShip("SS_SH_SAMPLE_LANCE");
    opener.request.gameDirs.clear();
    opener.data.prompts.fileAnswers.enqueue(QString());
    result = CustomiseShip(opener.request);
    QCOMPARE(result.outcome, CustomiseOutcome::NoGameDir);
    QVERIFY(!ran);

    // A directory without x3.exe is refused; a real one is taken and kept.
    QTemporaryDir notAGame;
    opener.data.prompts.fileAnswers.enqueue(notAGame.path());
    QCOMPARE(CustomiseShip(opener.request).outcome, CustomiseOutcome::NoGameDir);
    QCOMPARE(opener.data.prompts.messages("critical").size(), 1);
    opener.data.prompts.fileAnswers.enqueue(SampleGame());
    result = CustomiseShip(opener.request);
    QVERIFY(ran);
    QCOMPARE(result.outcome, CustomiseOutcome::Accepted);
    QCOMPARE(result.gameDirs, QStringList({SampleGame()}));
}

void TestCustomiseShip::cancelChangesNothingButTheLanguage()
{
    Opener opener;
    opener.request.cockpits = {{"MINE", PackageCockpitSource, NewCockpitLine("MINE")}};
    opener.request.run = [](DConfigShip& dialog) {
        // Everything a user might do, then cancel.
        dialog.SpinHull->setValue(5);
        dialog.ListTurrets->setCurrentItem(dialog.ListTurrets->topLevelItem(0));
        dialog.Slot_RemoveTurret();
        dialog.Slot_BaseLang("49");
        return int(QDialog::Rejected);
    };
    const CustomiseResult result = CustomiseShip(opener.request);
    QCOMPARE(result.outcome, CustomiseOutcome::Cancelled);
    QVERIFY(result.shipLine.isEmpty());
    QCOMPARE(result.cockpits.size(), 1);
    QCOMPARE(result.cockpits[0].Line, NewCockpitLine("MINE"));
    QCOMPARE(result.baseLanguage, QString("49"));
    QVERIFY(result.SaveSettings());
    // Work files of the run are gone.
    QCOMPARE(QDir(opener.data.home.path()).entryList(QDir::Files), QStringList());
    QCOMPARE(QDir(opener.data.home.filePath("temp")).entryList(QDir::Files), QStringList());
}

void TestCustomiseShip::acceptKeepsTheCockpitsTurretsUse()
{
    Opener opener;
    QString line = SetShipField(opener.request.shipLine, TurretCockpitField(0), "MINE");
    opener.request.shipLine = line;
    opener.request.cockpits = {{"MINE", "4", NewCockpitLine("MINE")},
                               {"UNUSED", PackageCockpitSource, NewCockpitLine("UNUSED")},
                               {"SS_COCKPIT_SAMPLE_FRONT_HEAVY", "3", "std;"}};
    opener.request.run = [](DConfigShip& dialog) {
        QTreeWidgetItem* turret = RowNumbered(dialog.ListTurrets, 1);
        if (!turret || turret->text(1) != "MINE")
            return int(QDialog::Rejected);
        dialog.ListTurrets->setCurrentItem(turret);
        dialog.Slot_SelectTurret(turret);
        dialog.LineCockpitScene->setText("cockpits\\changed");
        return int(QDialog::Accepted);
    };
    const CustomiseResult result = CustomiseShip(opener.request);
    QCOMPARE(result.outcome, CustomiseOutcome::Accepted);
    QCOMPARE(ShipField(result.shipLine, TurretCockpitField(0)), QString("MINE"));
    QCOMPARE(result.cockpits.size(), 1);
    QCOMPARE(result.cockpits[0].Id, QString("MINE"));
    QCOMPARE(result.cockpits[0].Source, QString("4")); // a kept row keeps its column 1
    QCOMPARE(CockpitSceneId(result.cockpits[0].Line), QString("cockpits\\changed"));
}

void TestCustomiseShip::sceneAndGunBodiesReachTheDialog()
{
    Opener opener;
    // A package body named like a game body comes first and keeps its nodes.
    opener.request.packageGunLines = {"ships\\sample\\props\\gun_mount;0;0;1;weapons\\mine;0;"};
    QStringList nodes;
    QStringList gunNodes;
    QStringList turretNodes;
    opener.request.run = [&](DConfigShip& dialog) {
        nodes = dialog.SceneNodes;
        gunNodes = dialog.GunBodies.NodesOf("ships\\sample\\props\\gun_mount");
        turretNodes = dialog.GunBodies.NodesOf("ships\\sample\\props\\turret_gun");
        return int(QDialog::Rejected);
    };
    // The scene as the package holds it, below the work directory.
    QVERIFY(opener.data.home.writeFile("ShipInstall/objects/halberd_scene.bod",
                                       ReadFile(SampleSource("objects/ships/sample/halberd_scene.bod"))));
    opener.request.sceneFile = "<PACKAGE>/objects/halberd_scene.bod";
    const CustomiseResult result = CustomiseShip(opener.request);
    QCOMPARE(result.scene, SceneRead::Read);
    QVERIFY(result.sceneMessage.isEmpty());
    QVERIFY(nodes.contains("ships\\sample\\props\\turret_mount:4"));
    QCOMPARE(gunNodes, QStringList({"weapons\\mine:1"}));
    QCOMPARE(turretNodes, QStringList({"weapons\\sample\\turret_barrel:1"}));

    // A missing or binary scene opens the dialog all the same, with a message.
    for (const QByteArray& content : {QByteArray(), QByteArray("\x01\x00\x02", 3)}) {
        const QString path = opener.data.home.filePath("scene.bod");
        QFile::remove(path);
        if (!content.isEmpty())
            QVERIFY(WriteFile(path, content));
        opener.request.sceneFile = path;
        const CustomiseResult missing = CustomiseShip(opener.request);
        QCOMPARE(missing.outcome, CustomiseOutcome::Cancelled);
        QVERIFY(nodes.isEmpty());
        QVERIFY(missing.sceneMessage.contains(path));
    }
}

QTEST_MAIN(TestCustomiseShip)
#include "tst_customiseship.moc"
