// A package taken apart into loose files: packages made by the writer and
// packages made by hand to be hostile, extracted into targets that already
// hold files.
#include "TestSupport.h"
#include "deploy/Extraction.h"
#include "package/PackageWriter.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

Q_DECLARE_METATYPE(ExtractionStatus)

namespace {

// Every file below `root`, relative to it, sorted; hidden ones included.
QStringList FilesBelow(const QString& root)
{
    QStringList files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(QDir(root).relativeFilePath(it.next()));
    files.sort();
    return files;
}

// Every entry, directories too, with the bytes of the files.
QMap<QString, QByteArray> Snapshot(const QString& root)
{
    QMap<QString, QByteArray> entries;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        entries.insert(QDir(root).relativeFilePath(path), it.fileInfo().isFile() ? ReadFile(path) : "<dir>");
    }
    return entries;
}

FileEntry OnDisk(const QString& path, const QString& name)
{
    FileEntry entry;
    entry.Time = 1700000000;
    entry.LocalPath = path;
    entry.Name = name;
    return entry;
}

bool Save(const ShipPackage& record, const QString& dir, const QString& package)
{
    QFile stream(dir + "/stream.tMp");
    return stream.open(QIODevice::WriteOnly) &&
           SavePackageFile(record, stream, package, {}) == PackageSaveResult::Saved;
}

// A ship line whose turret slots 1 and 2 name the custom cockpits, and whose
// body field holds the first id inside a longer text.
QString ShipLineWithCockpits()
{
    QStringList fields(65, "0");
    fields[0] = "ships\\SS_COCKPIT_HULL\\body";
    fields[31] = "SS_COCKPIT_HULL_REAR";
    fields[33] = "SS_COCKPIT_HULL";
    fields[35] = "3";
    fields[64] = "SS_SH_HAULER";
    return fields.join(';');
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
    const QByteArray scene = "scene bytes\n", model = RandomBytes(300000, 7), texture = "DDS\0tex";
    QVERIFY(WriteFile(source.filePath("scene.pbd"), scene));
    QVERIFY(WriteFile(source.filePath("m.pbb"), model));
    QVERIFY(WriteFile(source.filePath("t.dds"), texture));
    QVERIFY(WriteFile(source.filePath("setup.hauler.xml"), "<script/>"));
    QVERIFY(WriteFile(source.filePath("shot.png"), "PNG"));

    ShipPackage record;
    record.Name = "Big Hauler";
    record.Author = "Ann";
    record.ID = "SS_SH_HAULER";
    record.Data = ShipLineWithCockpits();
    record.SceneFile = OnDisk(source.filePath("scene.pbd"), "objects/ships/hauler.pbd");
    record.Models.append(OnDisk(source.filePath("m.pbb"), "objects/ships/props/m.pbb"));
    record.Files.append(OnDisk(source.filePath("t.dds"), "dds/hauler.dds"));
    record.Scripts.append(OnDisk(source.filePath("setup.hauler.xml"), "setup.hauler.xml"));
    record.ScreenShot = source.filePath("shot.png");
    record.Cockpits = {"0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_HULL",
                       "0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_HULL_REAR;"};
    record.Dummies = {{"SDTYPE_GUN", "g1;"}, {"SDTYPE_DOCK", "d1;"}, {"SDTYPE_GUN", "g1;"}};
    record.Components = {
        {"SCTYPE_LASER", "body", "a;0;"}, {"SCTYPE_DOCKING", "hull", "b"}, {"SCTYPE_LASER", "body", "c;1;"}};
    const QString package = source.filePath("hauler.xsp");
    QVERIFY(Save(record, source.path(), package));

    // A target that already holds a file of the package and one of its own.
    const QString target = place.filePath("out");
    QVERIFY(WriteFile(target + "/objects/ships/hauler.pbd", "an older scene, longer than the new one"));
    QVERIFY(WriteFile(target + "/mine.txt", "mine"));

    const ExtractionResult result = ExtractPackage(package, target, true);
    QCOMPARE(result.status, ExtractionStatus::Extracted);
    const QStringList expected{"Scripts/setup.hauler.xml",
                               "ShipPics/BigHauler-Ann.png",
                               "dds/hauler.dds",
                               "mine.txt",
                               "objects/ships/hauler.pbd",
                               "objects/ships/props/m.pbb",
                               "types/Components_BigHauler.txt",
                               "types/Dummies_BigHauler.txt",
                               "types/TCockpits_BigHauler.txt",
                               "types/TShips_BigHauler.txt"};
    QCOMPARE(FilesBelow(target), expected);               // no work directory is left behind
    QCOMPARE(result.written.size(), expected.size() - 1); // all but mine.txt
    QCOMPARE(ReadFile(target + "/objects/ships/hauler.pbd"), scene);
    QCOMPARE(ReadFile(target + "/objects/ships/props/m.pbb"), model);
    QCOMPARE(ReadFile(target + "/dds/hauler.dds"), texture);
    QCOMPARE(ReadFile(target + "/Scripts/setup.hauler.xml"), QByteArray("<script/>"));
    QCOMPARE(ReadFile(target + "/ShipPics/BigHauler-Ann.png"), QByteArray("PNG"));

    // The ship line names the cockpits by their rows and gets its final ";".
    QString line = ShipLineWithCockpits();
    line.replace("SS_COCKPIT_HULL_REAR", "2").replace("SS_COCKPIT_HULL", "1");
    QCOMPARE(ReadFile(target + "/types/TShips_BigHauler.txt"),
             ("// TShips.txt created by Hullwright for Big Hauler by Ann\n48;1;\n" + line + ";\n").toUtf8());
    const QStringList cockpits = QString(ReadFile(target + "/types/TCockpits_BigHauler.txt")).split('\n');
    QCOMPARE(cockpits.mid(2),
             (QStringList{"47;3;", "0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_DEFAULT;",
                          record.Cockpits[0] + ";", record.Cockpits[1], ""}));

    QCOMPARE(ReadFile(target + "/types/Dummies_BigHauler.txt"),
             QByteArray("// Dummies.txt created by Hullwright for Big Hauler by Ann\n"
                        "SDTYPE_GUN;2;\ng1;\ng1;\n\n"
                        "SDTYPE_DOCK;1;\nd1;\n\n"));
    QCOMPARE(ReadFile(target + "/types/Components_BigHauler.txt"),
             QByteArray("// Components.txt created by Hullwright for Big Hauler by Ann\n"
                        "SCTYPE_LASER;1;\nbody;2;\na;0;\nc;1;\n\n"
                        "SCTYPE_DOCKING;1;\nhull;1;\nb;\n\n"));
}

void TestExtraction::plainShipLeavesOnlyItsShipTable()
{
    QTemporaryDir dir;
    const QString line = "1;2;3;SS_SH_PLAIN;";
    const QString package = dir.filePath("plain.xsp");
    QVERIFY(WriteFile(package, "Packager: 1\nName: Plain Ship\nAuthor: Bo\nData: " + line.toUtf8() + "\n"));
    const QString target = dir.filePath("out");
    QVERIFY(QDir().mkpath(target));
    QVERIFY(WriteFile(target + "/types/TShips.txt", "the first extraction's table, to be replaced\n"));

    const ExtractionResult result = ExtractPackage(package, target, false);
    QCOMPARE(result.status, ExtractionStatus::Extracted);
    QCOMPARE(result.written, QStringList{"types/TShips.txt"});
    QCOMPARE(FilesBelow(target), QStringList{"types/TShips.txt"}); // no Scripts, no other table
    QCOMPARE(ReadFile(target + "/types/TShips.txt"),
             ("// TShips.txt created by Hullwright for Plain Ship by Bo\n48;1;\n" + line + "\n").toUtf8());
    QVERIFY(!QFileInfo::exists(target + "/Scripts"));

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
    const QByteArray head = "Packager: 1\nName: Evil\nAuthor: Eve\nData: 1;2;\n"
                            "Model: 0 3 objects/first.pbd\nabc\n";
    for (const char* name : {"../escaped", "../../escaped", "/tmp/escaped", "C:/escaped", "..\\escaped",
                             "objects/../../escaped"})
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
    WriteFile(dir.filePath("m.pbd"), RandomBytes(200000, 3));
    record.Models.append(OnDisk(dir.filePath("m.pbd"), "objects/first.pbd"));
    Save(record, dir.path(), dir.filePath("cut.xsp"));
    const QByteArray whole = ReadFile(dir.filePath("cut.xsp"));
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
    const QMap<QString, QByteArray> before = Snapshot(place.path());

    const ExtractionResult result = ExtractPackage(package, target, false);
    QCOMPARE(result.status, ExtractionStatus::ReadFailed);
    QCOMPARE(result.read.entry, blame);
    QVERIFY(result.written.isEmpty());
    QCOMPARE(Snapshot(place.path()), before); // the first file was unpacked, but never moved in
    QVERIFY(ExtractionFailureText(result, package, target).contains("nothing was written"));
}

void TestExtraction::targetsThatRefuseChangeNothing()
{
    QTemporaryDir source, place;
    ShipPackage record;
    record.Name = "Ship";
    record.Author = "Ann";
    record.Data = "1;2";
    QVERIFY(WriteFile(source.filePath("m.pbd"), "model"));
    record.Models.append(OnDisk(source.filePath("m.pbd"), "objects/m.pbd"));
    record.Models.append(OnDisk(source.filePath("m.pbd"), "elsewhere/m.pbd"));
    const QString package = source.filePath("ship.xsp");
    QVERIFY(Save(record, source.path(), package));

    // A directory of the target that leads outside it through a link.
    const QString target = place.filePath("target");
    const QString outside = place.filePath("outside");
    QVERIFY(QDir().mkpath(outside) && QDir().mkpath(target));
    QVERIFY(QFile::link(outside, target + "/elsewhere"));
    const QMap<QString, QByteArray> before = Snapshot(place.path());
    ExtractionResult result = ExtractPackage(package, target, false);
    QCOMPARE(result.status, ExtractionStatus::WriteFailed);
    QCOMPARE(result.entry, QString("elsewhere/m.pbd"));
    QVERIFY(result.written.isEmpty());
    QCOMPARE(Snapshot(place.path()), before);

    // A directory where a file is to go.
    QVERIFY(QFile::remove(target + "/elsewhere"));
    QVERIFY(QDir().mkpath(target + "/types/TShips.txt"));
    result = ExtractPackage(package, target, false);
    QCOMPARE(result.status, ExtractionStatus::WriteFailed);
    QCOMPARE(result.entry, QString("types/TShips.txt"));
    QCOMPARE(FilesBelow(target), QStringList());

    // A directory that takes no new entry at all, even from the superuser.
    if (!QFileInfo(QStringLiteral("/proc/self")).isDir())
        QSKIP("no /proc");
    result = ExtractPackage(package, "/proc/self", false);
    QCOMPARE(result.status, ExtractionStatus::WriteFailed);
    QVERIFY(result.entry.isEmpty());
    QVERIFY(ExtractionFailureText(result, package, "/proc/self").contains("cannot write into the directory"));
}

QTEST_GUILESS_MAIN(TestExtraction)
#include "tst_extraction.moc"
