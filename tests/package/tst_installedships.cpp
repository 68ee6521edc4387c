// The registry of installed ships: reading, writing, and what counts as a
// registry that may not be rewritten.
#include "TestSupport.h"
#include "package/InstalledShips.h"

#include <QDir>
#include <QtTest>

namespace {

// A registry in the writer's own order, with every key, two blocks of the same
// ship, tombstones, and lines this program does not know.
const QByteArray Canonical = "Mod: Sample Mod\n"
                             "UpdateTime: 1700000000\n"
                             "BaseFakePatch: -3\n"
                             "Buffer: 12\n"
                             "Installer: 4.1\n"
                             "Deleted: 7\n"
                             "<ship>\n"
                             "Name: Kite~Mk II\n"
                             "Version: 2\n"
                             "Author: Ann/Bee\n"
                             "ID: SS_KITE\n"
                             "Data: a;b;ships\\kite\\scene;cockpits\\kite\\cp;SS_KITE\n"
                             "OriginalDesc: 9002\n"
                             "Comment: first<newline>second\n"
                             "ScreenShot: KiteMkII-Ann.png\n"
                             "Argon\n"
                             "Split\n"
                             "Xenon\n"
                             "Disabled\n"
                             "GlobalDisabled\n"
                             "LanguageText\n"
                             "ExistingShip\n"
                             "NotChecked\n"
                             "Web: http://kite.example\n"
                             "Mirror1: m1\n"
                             "Mirror2: m2\n"
                             "Text: 44:Kite:A kite: light and fast\n"
                             "SceneFile: 120 1600000000 objects/ships/kite/scene.bod\n"
                             "CockpitFile: 80 1600000001 objects/cockpits/kite/cp.bod\n"
                             "Model: 10 5 objects/ships/kite/with blank.bob\n"
                             "Files: 11 6 textures/kite.jpg\n"
                             "Script: 12 7 setup.kite.xml\n"
                             "Dummy: SDTYPE_KITE:1;2;x;\n"
                             "Component: SCTYPE_KITE;kite_part;3;4;\n"
                             "Cockpit: 0;1;2;cockpits\\kite\\cp;SS_CP_KITE;\n"
                             "FileSystem: 2\n"
                             "InstallNote: keep me\n"
                             "</ship>\n"
                             "Deleted: -1\n"
                             "<ship>\n"
                             "Name: Kite~Mk II\n"
                             "Version: 3\n"
                             "Author: Ann/Bee\n"
                             "ID: SS_KITE\n"
                             "Data: x\n"
                             "FileSystem: 0\n"
                             "</ship>\n";

InstalledShipsRead Parsed(const QByteArray& bytes)
{
    return ParseInstalledShips(bytes);
}

} // namespace

class TestInstalledShips : public QObject
{
    Q_OBJECT
private slots:
    void everyKeyRoundTrips();
    void readingRules();
    void editTargetNamesTheShip();
    void damagedRegistriesListWhatCouldNotBeRead_data();
    void damagedRegistriesListWhatCouldNotBeRead();
    void writtenBesideAndRenamed();
};

void TestInstalledShips::everyKeyRoundTrips()
{
    const InstalledShipsRead read = Parsed(Canonical);
    QVERIFY2(read.FullyRead(), qPrintable(read.ProblemText()));
    QCOMPARE(FormatInstalledShips(read.Registry), Canonical);

    const ShipPackage& kite = read.Registry.Ships[1].Record;
    QCOMPARE(read.Registry.Ships.size(), 4);
    QCOMPARE(read.Registry.Ships[0].Record.Deleted, 7);
    QCOMPARE(kite.Comment, QString("first\nsecond"));
    QVERIFY(!kite.Enabled && !kite.GlobalEnabled && kite.NotChecked);
    QVERIFY(kite.Shipyards[ShipyardSplit] && !kite.Shipyards[ShipyardTeladi]);
    QCOMPARE(kite.Texts.value(0).Description, QString("A kite: light and fast"));
    QCOMPARE(kite.SceneFile->Size, 120u); // the size comes first in the registry
    QCOMPARE(kite.SceneFile->Time, 1600000000u);
    QCOMPARE(kite.Models.value(0).LocalPath, QString("objects/ships/kite/with blank.bob"));
    QCOMPARE(kite.Dummies.value(0).Data, QString("1;2;x;"));
    QCOMPARE(kite.Components.value(0).Data, QString("3;4;"));
    QCOMPARE(read.Registry.Ships[1].OtherLines, QStringList{"InstallNote: keep me"});
    QCOMPARE(read.Registry.OtherLines, QStringList{"Installer: 4.1"});
}

void TestInstalledShips::readingRules()
{
    // The keys of a block in any order, head keys behind the blocks, no
    // UpdateTime, and a buffer that is not written again.
    const InstalledShipsRead shuffled = Parsed("<ship>\nFileSystem: 0\nArgon\nData: d\nAuthor: A\nName: N\n"
                                               "Text: 49:T:D\nVersion: 1\nID: I\n</ship>\n"
                                               "Buffer: 10000\nMod: M\nBaseFakePatch: 1\n");
    QVERIFY2(shuffled.FullyRead(), qPrintable(shuffled.ProblemText()));
    const ShipPackage& ship = shuffled.Registry.Ships.value(0).Record;
    QVERIFY(ship.Enabled && ship.GlobalEnabled && ship.Shipyards[ShipyardArgon]);
    QCOMPARE(ship.Name, QString("N"));
    QCOMPARE(shuffled.Registry.UpdateTime, int64_t(0));
    QCOMPARE(
        FormatInstalledShips(shuffled.Registry),
        QByteArray("Mod: M\nUpdateTime: 0\nBaseFakePatch: 1\n<ship>\nName: N\nVersion: 1\nAuthor: A\nID: I\n"
                   "Data: d\nArgon\nText: 49:T:D\nFileSystem: 0\n</ship>\n"));
    InstalledShips zeroBuffer = shuffled.Registry;
    zeroBuffer.Buffer = 0;
    QVERIFY(!FormatInstalledShips(zeroBuffer).contains("Buffer"));

    // The later of two blocks of one ship wins; a tombstone is never a ship.
    const InstalledShipsRead twice = Parsed(Canonical);
    QCOMPARE(FindInstalledShip(twice.Registry.Ships, {"Ann/Bee", "Kite~Mk II"}), 3);
    QCOMPARE(FindInstalledShip(twice.Registry.Ships, {"Ann", "Bee/Kite~Mk II"}), -1);
    QCOMPARE(FindInstalledShip(twice.Registry.Ships, {"", ""}), -1);
}

void TestInstalledShips::editTargetNamesTheShip()
{
    const QString target = "/games/X3 Reunion/Ann<fslash>Bee~Kite~Mk II";
    QCOMPARE(ShipKeyFromEditTarget(target), QString("Ann/Bee~Kite~Mk II"));
    QCOMPARE(GameDirFromEditTarget(target), QString("/games/X3 Reunion"));
    const ShipKey key = SplitShipKey(ShipKeyFromEditTarget(target));
    QCOMPARE(key.Author, QString("Ann/Bee"));
    QCOMPARE(key.Name, QString("Kite~Mk II"));
    QCOMPARE(ShipKeyFromEditTarget("C:\\games\\x3\\A<bslash>B~N"), QString("A\\B~N"));
    QCOMPARE(GameDirFromEditTarget("Ann~Kite"), QString("."));
}

void TestInstalledShips::damagedRegistriesListWhatCouldNotBeRead_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("line");
    const QByteArray head = "Mod: M\n<ship>\nName: N\nAuthor: A\n";
    QTest::newRow("block without its end") << head << 2;
    QTest::newRow("block begun in a block") << head + "<ship>\nName: O\n</ship>\n" << 2;
    QTest::newRow("end without a block") << QByteArray("Mod: M\n</ship>\n") << 2;
    QTest::newRow("a key twice in a block") << head + "Name: O\n</ship>\n" << 5;
    QTest::newRow("a head key twice") << head + "</ship>\nMod: O\n" << 6;
    QTest::newRow("number too large") << head + "FileSystem: 4294967296\n</ship>\n" << 5;
    QTest::newRow("update time not a number") << QByteArray("UpdateTime: soon\n") << 1;
    QTest::newRow("tombstone of 0") << QByteArray("Deleted: 0\n") << 1;
    QTest::newRow("file line without a path") << head + "Model: 1 2\n</ship>\n" << 5;
    QTest::newRow("file line with a negative size") << head + "SceneFile: -1 2 a.bod\n</ship>\n" << 5;
    QTest::newRow("text with no language") << head + "Text: en:N:D\n</ship>\n" << 5;
    QTest::newRow("flag with a value") << head + "Argon yes\n</ship>\n" << 5;
    const char zero[] = "Web: a\0b\n</ship>\n";
    QTest::newRow("zero byte") << head + QByteArray(zero, sizeof(zero) - 1) << 5;
    QTest::newRow("carriage return left at a line end") << QByteArray("Mod: M\r\r\n") << 1;
    QTest::newRow("not text") << head + "Comment: \xff\xfe\n</ship>\n" << 5;
}

void TestInstalledShips::damagedRegistriesListWhatCouldNotBeRead()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, line);
    const InstalledShipsRead read = Parsed(bytes);
    QVERIFY(read.Exists && !read.FullyRead());
    QCOMPARE(read.Problems.value(0).Line, line);
    QVERIFY(read.ProblemText().startsWith(QStringLiteral("line %1: ").arg(line)));
}

void TestInstalledShips::writtenBesideAndRenamed()
{
    QTemporaryDir game;
    QVERIFY(!ReadInstalledShips(game.path()).Exists);
    QVERIFY(!WriteInstalledShips(QString(), {}));

    const InstalledShipsRead read = Parsed(Canonical);
    QVERIFY(WriteInstalledShips(game.path(), read.Registry));
    QCOMPARE(ReadFile(game.filePath(InstalledShipsPath)), Canonical);
    QCOMPARE(QDir(game.filePath("ShipInstall")).entryList(QDir::Files), QStringList{"ships.dat"});
    const InstalledShipsRead again = ReadInstalledShips(game.path());
    QVERIFY(again.FullyRead());
    QCOMPARE(again.Registry, read.Registry);
    QCOMPARE(again.Digest, read.Digest);
}

QTEST_GUILESS_MAIN(TestInstalledShips)
#include "tst_installedships.moc"
