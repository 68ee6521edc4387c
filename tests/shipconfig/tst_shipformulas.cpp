// The widget-free parts of the ship configuration: formulas, the items of the
// name boxes, custom cockpit lines, gun bodies and scene nodes.
#include "TestSupport.h"
#include "catfs/CatDriver.h"
#include "gamedata/CockpitTable.h"
#include "gamedata/SceneFile.h"
#include "shipconfig/ConfigNames.h"
#include "shipconfig/CustomCockpits.h"
#include "shipconfig/GunBodies.h"
#include "shipconfig/ShipFormulas.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace ShipFormulas;

class TestShipFormulas : public QObject
{
    Q_OBJECT
private slots:
    void speedTurningAndRecharge();
    void notorietyAndCockpitNames();
    void nameBoxItems();
    void customCockpitLines();
    void gunBodies();
    void sceneNodes();
};

void TestShipFormulas::speedTurningAndRecharge()
{
    QCOMPARE(TopSpeedOf(1000, 3).units, 1300);
    QCOMPARE(TopSpeedOf(1000, 3).metres, QString("2.601"));
    QCOMPARE(TopSpeedOf(3, 1).units, 3);                      // 3 + 0.3 + 0.5 = 3.8, cut
    QCOMPARE(TopSpeedOf(2000000, 2000000).units, 2147483647); // held inside an int
    QCOMPARE(MetresPerSecond(60000), QString("120"));
    QCOMPARE(UnitsFromMetres("120"), 60000);
    QCOMPARE(UnitsFromMetres("0.0031"), 2); // 1.55 + 0.5, cut
    QCOMPARE(UnitsFromMetres("fast"), 0);

    const Turning half = TurningFromField("0.5");
    QCOMPARE(half.shown, QString("30.0"));
    QCOMPARE(half.dial, 300);
    QCOMPARE(half.raw, QString("0.5"));
    QCOMPARE(TurningFromField("1.5").dial, 900);
    QCOMPARE(TurningFromField("0.0625").dial, 37); // 37.5, cut
    QCOMPARE(TurningFromDial(600).raw, QString("1"));
    QCOMPARE(TurningFromDial(37).raw, QString("0.0616667"));
    QCOMPARE(TurningFromDial(299).shown, QString("29.9"));

    QCOMPARE(RechargePerSecond("0.04", 9000), QString("360"));
    QCOMPARE(RechargeShare("360", 9000), QString("0.04"));
    QCOMPARE(RechargePerSecond("lots", 9000), QString("0"));
}

void TestShipFormulas::notorietyAndCockpitNames()
{
    QCOMPARE(NotorietyPreset(1), std::optional<int>(333333));
    QCOMPARE(NotorietyPreset(11), std::optional<int>(0));
    QCOMPARE(NotorietyPreset(16), std::optional<int>(-100001));
    QVERIFY(!NotorietyPreset(0) && !NotorietyPreset(17));
    QCOMPARE(RankTableOfRace(4), std::optional<int>(4));
    QCOMPARE(RankTableOfRace(8), std::optional<int>(5));
    QVERIFY(!RankTableOfRace(5) && !RankTableOfRace(7) && !RankTableOfRace(-1));

    QCOMPARE(SceneBaseOf("ships\\sample\\lance_Scene.bod"), QString("lance_Scene"));
    QCOMPARE(SceneBaseOf("a/b.c/plain"), QString("plain"));
    QCOMPARE(CopiedCockpitName("big_lance_scene_SCENE"), QString("SS_COCKPIT_BIG_LANCE"));
    QCOMPARE(CopiedCockpitName("lance_scene", "2: Rear: left "), QString("SS_COCKPIT_LANCE_REAR: LEFT"));
}

void TestShipFormulas::nameBoxItems()
{
    // Races 4 and 6 have no name: they show their number, so item i stays race i + 1.
    QStringList races(19);
    races[0] = "Argon";
    races[2] = "Split";
    races[4] = "Teladi";
    races[11] = "Neutral";
    const QStringList items = RaceItems(races, "Player");
    QCOMPARE(items.size(), 12);
    QCOMPARE(items[3], QString("(4)"));
    QCOMPARE(items[9], QString("Player (10)"));
    QCOMPARE(items[11], QString("Neutral (12)"));
    QCOMPARE(RaceItems(QStringList(19), "P").size(), 10); // the player at least

    QCOMPARE(CargoItems({"T", "S", "", "L"}), QStringList({"T (0)", "S (1)"}));

    const QList<IdName> variants = {
        {0, "Standard"}, {10001, "Vanguard"}, {10003, "Raider"}, {10008, "Hauler"}};
    const QStringList variation =
        VariationItems({"", "Van\r\nguard", "Raider", "{17,10003}"}, variants, "None");
    QCOMPARE(variation,
             QStringList({"None (0)", "Standard (1)", "Vanguard (2)", "Raider (3)", "Raider (4)"}));
}

void TestShipFormulas::customCockpitLines()
{
    QStringList lines = {NewCockpitLine("SS_COCKPIT_A"),
                         "0;0;0;0;0;0;0;scene;8;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_B"};
    QVERIFY(!SetCockpitField(lines, "SS_COCKPIT_B", CockpitField::SceneId,
                             "scene")); // unchanged: stays where it is
    QVERIFY(SetCockpitField(lines, "SS_COCKPIT_A", CockpitField::Weapons, "5"));
    QCOMPARE(CockpitName(lines.last()), QString("SS_COCKPIT_A"));
    QCOMPARE(CockpitWeapons(lines.last()), 5);
    QVERIFY(SetCockpitField(lines, "SS_COCKPIT_B", CockpitField::SceneId, "other"));
    QVERIFY(lines.last().endsWith(";SS_COCKPIT_B;")); // a final ";" added
    QVERIFY(!SetCockpitField(lines, "SS_COCKPIT_C", CockpitField::SceneId, "x"));

    const QString copy = CopiedCockpitLine("1;2;3;4;5;6;7;scene;9;;;;;;;-1;;;SS_STD;extra;", "MINE");
    QCOMPARE(copy, QString("1;2;3;4;5;6;7;scene;9;;;;;;;-1;;;MINE;"));
    QCOMPARE(CopiedCockpitLine("1;2", "X").count(';'), 19);

    const QStringList kept =
        CockpitsInUse({NewCockpitLine("A"), NewCockpitLine("B"), NewCockpitLine("0")}, {"3", "B", "0"});
    QCOMPARE(kept, QStringList({NewCockpitLine("B")}));

    const QList<CockpitListRow> rows = {{"OLD", "<PACKAGE>", "old;"}, {"B", "7", "b-old;"}};
    const QList<CockpitListRow> synced =
        CockpitRowsInLineWith(rows, {NewCockpitLine("B"), NewCockpitLine("C")});
    QCOMPARE(synced.size(), 2);
    QCOMPARE(synced[0].Id, QString("B"));
    QCOMPARE(synced[0].Source, QString("7")); // a row that stays keeps its source
    QCOMPARE(synced[0].Line, NewCockpitLine("B"));
    QCOMPARE(synced[1].Source, QString(PackageCockpitSource));
}

void TestShipFormulas::gunBodies()
{
    GunBodyList bodies;
    bodies.Add("ships\\props\\gun;0;1;0;4;3;barrel_l;0;;0;barrel_r;0;");
    bodies.Add("ships\\props\\gun;0;0;1;other;0;"); // the first line for a body wins
    bodies.Add("ships\\props\\nothing;0;0;0;");     // no node: no record
    bodies.Add("ships\\props\\huge;0;0;2147483647;far;0;");
    bodies.Add("x;0;-5;9;");
    QCOMPARE(bodies.NodesOf("SHIPS\\Props\\GUN"), QStringList({"barrel_l:1", "barrel_r:3"}));
    QCOMPARE(bodies.NodesOf("ships\\props\\huge"), QStringList({"far:1"}));
    QVERIFY(bodies.NodesOf("ships\\props\\nothing").isEmpty());
    QCOMPARE(bodies.Bodies().size(), 2);
}

void TestShipFormulas::sceneNodes()
{
    const QByteArray text = "// scene\r\nVER: 6;\r\n"
                            "P 0; B ships\\hull; N Bpart00; b\r\n"
                            "P 003;B ships\\props\\gun ; N x\r\n"
                            "P 4; B 1234; N numbered body\r\n"
                            "  P 5; B indented\r\n"
                            "P 6; N no body\r\n"
                            "P 7; B  spaced name\n";
    const QStringList nodes = {"ships\\hull:0", "ships\\props\\gun:3", " spaced name:7"};
    QCOMPARE(ParseSceneNodes(text), nodes);

    QTemporaryDir dir;
    QVERIFY(WriteFile(dir.filePath("scene.bod"), text));
    QCOMPARE(ReadSceneNodes(dir.filePath("scene.bod")).nodes, nodes);

    GzipWriter writer;
    uint8_t lead = 0;
    QCOMPARE(
        PckPack(reinterpret_cast<const uint8_t*>(text.constData()), uint32_t(text.size()), &writer, 0, &lead),
        uint32_t(CatErrNone));
    QByteArray packed(1, char(lead));
    packed +=
        QByteArray(reinterpret_cast<const char*>(writer.output.data()), qsizetype(writer.output.size()));
    QVERIFY(WriteFile(dir.filePath("scene.PBD"), packed));
    const SceneFileNodes unpacked = ReadSceneNodes(dir.filePath("scene.PBD"));
    QCOMPARE(unpacked.status, SceneRead::Read);
    QCOMPARE(unpacked.nodes, nodes);

    // A small packed file that claims a huge content is refused before unpacking.
    QByteArray bomb = packed;
    const uint8_t key = uint8_t(packed[0]) ^ CatPackKey;
    for (int i = 1; i <= 4; ++i)
        bomb[bomb.size() - i] = char(0x7F ^ key);
    QVERIFY(WriteFile(dir.filePath("bomb.pbd"), bomb));
    QCOMPARE(ReadSceneNodes(dir.filePath("bomb.pbd")).status, SceneRead::TooLarge);

    QVERIFY(WriteFile(dir.filePath("model.bod"), "P 1; B name\n" + QByteArray(10, '\0')));
    QCOMPARE(ReadSceneNodes(dir.filePath("model.bod")).status, SceneRead::Binary);
    QVERIFY(ReadSceneNodes(dir.filePath("model.bod")).nodes.isEmpty());
    QVERIFY(WriteFile(dir.filePath("text.pbd"), text));
    QCOMPARE(ReadSceneNodes(dir.filePath("text.pbd")).status, SceneRead::NotPacked);
    QFile big(dir.filePath("big.bod"));
    QVERIFY(big.open(QIODevice::WriteOnly) && big.resize(SceneByteLimit + 1));
    big.close();
    QCOMPARE(ReadSceneNodes(dir.filePath("big.bod")).status, SceneRead::TooLarge);
    QCOMPARE(ReadSceneNodes(dir.filePath("absent.bod")).status, SceneRead::Missing);
    QCOMPARE(ReadSceneNodes(dir.path()).status, SceneRead::Missing);
    QCOMPARE(ReadSceneNodes(QString()).status, SceneRead::NoPath);
}

QTEST_GUILESS_MAIN(TestShipFormulas)
#include "tst_shipformulas.moc"
