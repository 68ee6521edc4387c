#include "TestSupport.h"
#include "gamedata/CockpitTable.h"
#include "gamedata/ShipLine.h"

#include <QDir>
#include <QFile>
#include <QtTest>

class TestCockpitTable : public QObject
{
    Q_OBJECT
private slots:
    void readingNumbersRowsPastBlankLinesAndComments();
    void writtenTableTurnsTurretNamesIntoRowNumbers();
    void writingReplacesAFileWholeOrNotAtAll();
    void gameTableComesFromTheSampleCatalog();
};

void TestCockpitTable::readingNumbersRowsPastBlankLinesAndComments()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("TCockpits.txt");
    QVERIFY(WriteFile(path, "// cockpits\n"
                            "47;2;\n"
                            "0;1;0;0;0;0;0;scene\\a;7;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_A;\n"
                            "\n"
                            "   // between rows\n"
                            "0;2;0;0;0;0;0;scene\\b;135;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_B;\n"
                            "0;3;0;0;0;0;0;scene\\c;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_C;\n"));
    const CockpitTable table = ReadCockpitTable(path);
    QCOMPARE(table.header, QString("47;2;"));
    // The header's count is only a marker: all three rows come, numbered 0, 1, 2.
    QCOMPARE(table.names, (QStringList{"SS_COCKPIT_A", "SS_COCKPIT_B", "SS_COCKPIT_C"}));
    QCOMPARE(table.lines.size(), 3);
    QCOMPARE(CockpitWeapons(table.lines[1]), 135);
    QCOMPARE(CockpitSceneId(table.lines[2]), QString("scene\\c"));

    const CockpitTable missing = ReadCockpitTable(dir.filePath("absent.txt"));
    QVERIFY(missing.lines.isEmpty() && missing.names.isEmpty());
}

void TestCockpitTable::writtenTableTurnsTurretNamesIntoRowNumbers()
{
    // Turret slots 1 to 3 name the custom cockpits, slot 4 a standard row, and
    // a longer name that merely begins with a custom one; a gun body that
    // happens to share a cockpit's name is no turret slot and stays.
    QString ship = QStringList(65, "0").join(u';') + ";";
    ship = SetShipField(ship, 31, "SS_COCKPIT_B");
    ship = SetShipField(ship, 32, "1");
    ship = SetShipField(ship, 33, "SS_COCKPIT_A");
    ship = SetShipField(ship, 35, "7");
    ship = SetShipField(ship, 37, "SS_COCKPIT_A_LONG");
    ship = SetShipField(ship, 39, "SS_COCKPIT_A");
    ship = SetShipField(ship, 0, "SS_COCKPIT_B");
    const QStringList cockpits{"0;0;0;0;0;0;0;s;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_A", // no final ';'
                               NewCockpitLine("SS_COCKPIT_B")};

    const CockpitTableOutput out = BuildCockpitTable("Dart", "Ann", cockpits, ship);
    QCOMPARE(ShipField(out.shipLine, 31), QString("2"));
    QCOMPARE(ShipField(out.shipLine, 33), QString("1"));
    QCOMPARE(ShipField(out.shipLine, 35), QString("7"));
    QCOMPARE(ShipField(out.shipLine, 37), QString("SS_COCKPIT_A_LONG"));
    QCOMPARE(ShipField(out.shipLine, 39), QString("1"));
    QCOMPARE(ShipField(out.shipLine, 0), QString("SS_COCKPIT_B"));
    QCOMPARE(out.shipLine.count(u';'), ship.count(u';'));

    const QStringList lines = out.text.split(u'\n');
    QCOMPARE(lines[0], QString("// TCockpits.txt created by Hullwright for Dart by Ann"));
    QCOMPARE(lines[2], QString("47;3;"));
    QCOMPARE(lines.last(), QString()); // every line ends in a line feed
    QVERIFY(!out.text.contains(u'\r'));

    // Read back, the default row is row 0 and the custom rows follow from 1.
    QTemporaryDir dir;
    QVERIFY(WriteTableFile(dir.filePath("TCockpits.txt"), out.text));
    const CockpitTable table = ReadCockpitTable(dir.filePath("TCockpits.txt"));
    QCOMPARE(table.names, (QStringList{"SS_COCKPIT_DEFAULT", "SS_COCKPIT_A", "SS_COCKPIT_B"}));
    QCOMPARE(table.lines[1], cockpits[0] + ";");
    QCOMPARE(table.lines[2], cockpits[1]);
}

void TestCockpitTable::writingReplacesAFileWholeOrNotAtAll()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("TCockpits.txt");
    QVERIFY(WriteFile(path, "old table\n"));
    QVERIFY(WriteTableFile(path, "new table\n"));
    QCOMPARE(ReadFile(path), QByteArray("new table\n"));
    QVERIFY(!WriteTableFile(dir.filePath("no/such/dir/TCockpits.txt"), "x\n"));
    QCOMPARE(QDir(dir.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"TCockpits.txt"});
}

void TestCockpitTable::gameTableComesFromTheSampleCatalog()
{
    const QString sample = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    if (sample.isEmpty() || !QFile::exists(sample + "/01.cat"))
        QSKIP("the sample game is not built");
    QTemporaryDir game, work;
    QVERIFY(CopyTree(sample, game.path()));
    const QString workFile = work.filePath("Tcockpits.txt");
    const CockpitTable table = LoadGameCockpits(game.path(), workFile);
    QCOMPARE(table.lines.size(), 10);
    QCOMPARE(table.names.first(), QString("SS_COCKPIT_SAMPLE_NONE"));
    QVERIFY(table.names.contains("SS_COCKPIT_SAMPLE_REAR_HEAVY"));
    QVERIFY(!QFile::exists(workFile));

    // A directory without catalogs has no table, and leaves no work file.
    QTemporaryDir empty;
    QVERIFY(LoadGameCockpits(empty.path(), workFile).lines.isEmpty());
    QVERIFY(!QFile::exists(workFile));
}

QTEST_GUILESS_MAIN(TestCockpitTable)
#include "tst_cockpittable.moc"
