// A package taken apart into loose files: packages made by the writer and
// packages made by hand to be hostile, extracted into targets that already
// hold files.
#include "TestSupport.h"
#include "deploy/Extraction.h"
#include "package/PackageWriter.h"

#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

Q_DECLARE_METATYPE(ExtractionStatus)

namespace {

// Every file below `root` (hidden ones too) with its bytes.
QMap<QString, QByteArray> Files(const QString& root)
{
    QMap<QString, QByteArray> files;
    for (QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); it.hasNext();) {
        const QString path = it.next();
        files.insert(QDir(root).relativeFilePath(path), ReadFile(path));
    }
    return files;
}

// A record's file: `bytes` written to `dir`, stored under `name`.
FileEntry File(const QString& dir, const QString& name, const QByteArray& bytes)
{
    const QString path = dir + "/" + name;
    WriteFile(path, bytes);
    return FileEntry{1700000000, 0, path, name, false};
}

QString Save(const ShipPackage& record, const QString& dir)
{
    QFile stream(dir + "/stream.tMp");
    const QString package = dir + "/ship.xsp";
    const bool saved = stream.open(QIODevice::WriteOnly) &&
                       SavePackageFile(record, stream, package, {}) == PackageSaveResult::Saved;
    return saved ? package : QString();
}

} // namespace

class TestExtraction : public QObject
{
    Q_OBJECT
private slots:
    void everyFileAndTableComesOut();
    void plainShipLeavesOnlyItsShipTable();
    void cockpitIdsAreReplacedAsPlainText_data();
    void cockpitIdsAreReplacedAsPlainText();
    void hostilePackagesChangeNothing_data();
    void hostilePackagesChangeNothing();
    void targetsThatRefuseChangeNothing();
};

void TestExtraction::everyFileAndTableComesOut()
{
    QTemporaryDir source, place;
    const QByteArray model = RandomBytes(300000, 7);
    ShipPackage record;
    record.Name = "Big Hauler";
    record.Author = "Ann";
    // Turret slots 1 and 2 name the custom cockpits; the body field holds
    // the first id inside a longer text.
    QStringList fields(65, "0");
    fields[0] = "ships\\SS_COCKPIT_HULL\\body";
    fields[31] = "SS_COCKPIT_HULL_REAR";
    fields[33] = "SS_COCKPIT_HULL";
    fields[64] = "SS_SH_HAULER";
    record.Data = fields.join(';');
    record.SceneFile = File(source.path(), "objects/ships/hauler.pbd", "scene");
    record.Models.append(File(source.path(), "objects/ships/props/m.pbb", model));
    record.Files.append(File(source.path(), "dds/hauler.dds", QByteArray("DDS\0tex", 7)));
    record.Scripts.append(File(source.path(), "setup.hauler.xml", "<script/>"));
    record.ScreenShot = File(source.path(), "shot.png", "PNG").LocalPath;
    record.Cockpits = {"0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_HULL",
                       "0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_HULL_REAR;"};
    record.Dummies = {{"SDTYPE_GUN", "g1;"}, {"SDTYPE_DOCK", "d1;"}, {"SDTYPE_GUN", "g1;"}};
    record.Components = {
        {"SCTYPE_LASER", "body", "a;0;"}, {"SCTYPE_DOCKING", "hull", "b"}, {"SCTYPE_LASER", "body", "c;1;"}};
    const QString package = Save(record, source.path());
    QVERIFY(!package.isEmpty());

    // A target that already holds a file of the package and one of its own.
    const QString target = place.filePath("out");
    QVERIFY(WriteFile(target + "/objects/ships/hauler.pbd", "an older scene, longer than the new one"));
    QVERIFY(WriteFile(target + "/mine.txt", "mine"));

    const ExtractionResult result = ExtractPackage(package, target, true);
    QCOMPARE(result.status, ExtractionStatus::Extracted);
    QString line = record.Data;
    line.replace("SS_COCKPIT_HULL_REAR", "2").replace("SS_COCKPIT_HULL", "1");
    const QMap<QString, QByteArray> expected{
        {"mine.txt", "mine"},
        {"objects/ships/hauler.pbd", "scene"},
        {"objects/ships/props/m.pbb", model},
        {"dds/hauler.dds", QByteArray("DDS\0tex", 7)},
        {"Scripts/setup.hauler.xml", "<script/>"},
        {"ShipPics/BigHauler-Ann.png", "PNG"},
        // The ship line names the cockpits by their rows and gets its final ";".
        {"types/TShips_BigHauler.txt",
         ("// TShips.txt created by Hullwright for Big Hauler by Ann\n48;1;\n" + line + ";\n").toUtf8()},
        {"types/TCockpits_BigHauler.txt",
         "// TCockpits.txt created by Hullwright for Big Hauler by Ann\n"
         "// (first cockpit entry is the default cockpit, and isn't part of the ship)\n47;3;\n"
         "0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_DEFAULT;\n" +
             (record.Cockpits[0] + ";\n" + record.Cockpits[1] + "\n").toUtf8()},
        {"types/Dummies_BigHauler.txt", "// Dummies.txt created by Hullwright for Big Hauler by Ann\n"
                                        "SDTYPE_GUN;2;\ng1;\ng1;\n\nSDTYPE_DOCK;1;\nd1;\n\n"},
        {"types/Components_BigHauler.txt", "// Components.txt created by Hullwright for Big Hauler by Ann\n"
                                           "SCTYPE_LASER;1;\nbody;2;\na;0;\nc;1;\n\n"
                                           "SCTYPE_DOCKING;1;\nhull;1;\nb;\n\n"}};
    QCOMPARE(Files(target), expected);                    // and no work directory is left behind
    QCOMPARE(result.written.size(), expected.size() - 1); // all but mine.txt
}

void TestExtraction::plainShipLeavesOnlyItsShipTable()
{
    QTemporaryDir dir;
    const QString package = dir.filePath("plain.xsp");
    QVERIFY(WriteFile(package, "Packager: 1\nName: Plain Ship\nAuthor: Bo\nData: 1;2;SS_SH_PLAIN;\n"));
    const QString target = dir.filePath("out");
    QVERIFY(WriteFile(target + "/types/TShips.txt", "the first extraction's table, to be replaced\n"));

    const ExtractionResult result = ExtractPackage(package, target, false);
    QCOMPARE(result.status, ExtractionStatus::Extracted);
    QCOMPARE(result.written, QStringList{"types/TShips.txt"});
    // No Scripts folder, no other table, and no second ";".
    QCOMPARE(QDir(target).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{"types"});
    QCOMPARE(
        Files(target).value("types/TShips.txt"),
        QByteArray("// TShips.txt created by Hullwright for Plain Ship by Bo\n48;1;\n1;2;SS_SH_PLAIN;\n"));

    QCOMPARE(ExtractPackage(package, dir.filePath("missing"), false).status, ExtractionStatus::TargetMissing);
    QCOMPARE(ExtractionTableSuffix("A / B\\C D", true), QString("_ABCD"));
}

void TestExtraction::cockpitIdsAreReplacedAsPlainText_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QStringList>("cockpits");
    QTest::addColumn<QString>("expected");
    const QString head = "0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;";
    QTest::newRow("every occurrence") << "A;x;A;pA" << QStringList{head + "A;"} << "1;x;1;p1";
    QTest::newRow("longer id first") << "AB;A" << QStringList{head + "A", head + "AB"} << "2;1";
    QTest::newRow("a row number is not replaced again")
        << "X;1" << QStringList{head + "X", head + "1"} << "1;2";
    QTest::newRow("a line without id counts as a row") << "B" << QStringList{";;;", head + "B"} << "2";
}

void TestExtraction::cockpitIdsAreReplacedAsPlainText()
{
    QFETCH(QString, line);
    QFETCH(QStringList, cockpits);
    QFETCH(QString, expected);
    QCOMPARE(ReplaceCockpitIds(line, cockpits), expected);
}

void TestExtraction::hostilePackagesChangeNothing_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("blame");
    // The first file is unpacked before the bad part is met.
    const QByteArray head =
        "Packager: 1\nName: Evil\nAuthor: Eve\nData: 1;2;\nModel: 0 3 objects/first.pbd\nabc\n";
    for (const char* name :
         {"../escaped", "/tmp/escaped", "C:/escaped", "..\\escaped", "objects/../../escaped"})
        QTest::newRow(name) << head + "Files: 0 4 " + name + "\nevil\n" << QString(name);
    QTest::newRow("size lies") << head + "Files: 0 900 big.dds\nshort\n"
                               << "big.dds";
    QTest::newRow("script climbs out") << head + "Script: 0 4 ../s.xml\nevil\n"
                                       << "../s.xml";
    QTest::newRow("no author") << QByteArray("Packager: 1\nName: Evil\nModel: 0 3 objects/first.pbd\nabc\n")
                               << QString();

    // A package of the writer, cut off in the middle of its compressed stream.
    QTemporaryDir dir;
    ShipPackage record;
    record.Name = "Cut";
    record.Author = "Eve";
    record.Models.append(File(dir.path(), "objects/first.pbd", RandomBytes(200000, 3)));
    const QByteArray whole = ReadFile(Save(record, dir.path()));
    QTest::newRow("truncated") << whole.left(whole.size() / 2) << "objects/first.pbd";
}

void TestExtraction::hostilePackagesChangeNothing()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, blame);
    QTemporaryDir place;
    const QString package = place.filePath("evil.xsp");
    QVERIFY(WriteFile(package, bytes));
    const QString target = place.filePath("a/b/target");
    QVERIFY(WriteFile(target + "/objects/first.pbd", "old"));
    const QMap<QString, QByteArray> before = Files(place.path());

    const ExtractionResult result = ExtractPackage(package, target, false);
    QCOMPARE(result.status, ExtractionStatus::ReadFailed);
    QCOMPARE(result.read.entry, blame);
    QCOMPARE(Files(place.path()), before);
    QVERIFY(ExtractionFailureText(result, package, target).contains("nothing was written"));
}

void TestExtraction::targetsThatRefuseChangeNothing()
{
    QTemporaryDir source, place;
    ShipPackage record;
    record.Name = "Ship";
    record.Author = "Ann";
    record.Models = {File(source.path(), "objects/m.pbd", "model"),
                     File(source.path(), "elsewhere/m.pbd", "m")};
    const QString package = Save(record, source.path());

    // A directory of the target that leads outside it through a link.
    const QString target = place.filePath("target");
    QVERIFY(QDir().mkpath(place.filePath("outside")) && QDir().mkpath(target));
    QVERIFY(QFile::link(place.filePath("outside"), target + "/elsewhere"));
    ExtractionResult result = ExtractPackage(package, target, false);
    QCOMPARE(result.status, ExtractionStatus::WriteFailed);
    QCOMPARE(result.entry, QString("elsewhere/m.pbd"));
    QVERIFY(Files(place.path()).isEmpty());

    // A directory where a file is to go.
    QVERIFY(QFile::remove(target + "/elsewhere"));
    QVERIFY(QDir().mkpath(target + "/types/TShips.txt"));
    result = ExtractPackage(package, target, false);
    QCOMPARE(result.entry, QString("types/TShips.txt"));
    QVERIFY(result.written.isEmpty());
    QVERIFY(Files(place.path()).isEmpty());

    // A directory that takes no new entry at all, even from the superuser.
    if (!QFileInfo(QStringLiteral("/proc/self")).isDir())
        QSKIP("no /proc");
    result = ExtractPackage(package, "/proc/self", false);
    QCOMPARE(result.status, ExtractionStatus::WriteFailed);
    QVERIFY(ExtractionFailureText(result, package, "/proc/self").contains("cannot write into the directory"));
}

QTEST_GUILESS_MAIN(TestExtraction)
#include "tst_extraction.moc"
