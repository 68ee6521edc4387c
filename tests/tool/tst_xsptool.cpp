// hwtool xsp-build and xsp-dump as a black box: the built binary run with
// QProcess, a manifest in and a package out, and back to JSON.
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include "TestSupport.h"

#include <csignal>

namespace {

QString Sha256(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex());
}

QString Tool()
{
    return qEnvironmentVariable("HW_BIN_DIR") + "/hwtool";
}

ProgramRun Hwtool(const QStringList& arguments)
{
    return RunProgram(Tool(), arguments);
}

QJsonObject FileObject(const QString& path, const QString& name, qint64 time)
{
    return QJsonObject{{"Path", path}, {"Name", name}, {"Time", time}};
}

} // namespace

class TestXspTool : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void buildAndDumpRoundTrip();
    void refusesBadInput();
    void killedBuildLeavesThePackage();
};

void TestXspTool::initTestCase()
{
    QVERIFY2(QFileInfo(Tool()).isExecutable(), qPrintable(Tool()));
}

void TestXspTool::buildAndDumpRoundTrip()
{
    QTemporaryDir dir;
    const QByteArray scene = "VER: 1;\nP 0; B 1;\n";
    const QByteArray model = RandomBytes(70000, 2);
    const QByteArray other = "texture bytes\nwith a Packager: 2 line\n";
    const QByteArray script = "<?xml version=\"1.0\"?><script/>";
    const QByteArray picture = RandomBytes(400, 3);
    WriteFile(dir.filePath("files/scene.pbd"), scene);
    WriteFile(dir.filePath("files/hull.pbb"), model);
    WriteFile(dir.filePath("files/tex ture.dds"), other);
    WriteFile(dir.filePath("files/setup.ship.xml"), script);
    WriteFile(dir.filePath("files/shot.jpg"), picture);

    const QJsonObject manifest{
        {"Name", "Long Ship"},
        {"Author", "A. Modder"},
        {"Version", "1.2"},
        {"ID", "SS_SH_LONG"},
        {"Data", "1;2;3;SS_SH_LONG"},
        {"Web", "http://example.invalid/ship"},
        {"Mirror1", "m1"},
        {"Mirror2", ""},
        {"Comment", "first line\nsecond: line"},
        {"ScreenShot", "files/shot.jpg"},
        {"LanguageText", true},
        {"ExistingShip", false},
        {"OriginalDesc", 1234},
        {"Shipyards", QJsonArray{true, false, false, true, false, false, false, true}},
        {"Texts", QJsonArray{QJsonObject{{"Language", 44}, {"Title", "Long"}, {"Description", "A: ship"}}}},
        {"Dummies", QJsonArray{QJsonObject{{"Section", "SDTYPE_GUN"}, {"Data", "1;2;"}}}},
        {"Components", QJsonArray{QJsonObject{{"Section", "SC"}, {"Id", "7"}, {"Data", "a;b;"}}}},
        {"Cockpits", QJsonArray{"0;1;COCK_A"}},
        {"SceneFile", FileObject("files/scene.pbd", "objects/ships/long.pbd", 1000)},
        {"CockpitFile", QJsonValue()},
        {"Models", QJsonArray{FileObject("files/hull.pbb", "objects/ships/hull.pbb", 1001)}},
        {"Files", QJsonArray{FileObject(dir.filePath("files/tex ture.dds"), "textures/tex ture.dds", 1002)}},
        {"Scripts", QJsonArray{FileObject("files/setup.ship.xml", "setup.ship.xml", 1003)}}};
    WriteFile(dir.filePath("manifest.json"), QJsonDocument(manifest).toJson());

    const QString package = dir.filePath("out/long.xsp");
    QDir().mkpath(dir.filePath("out"));
    ProgramRun run = Hwtool({"xsp-build", dir.filePath("manifest.json"), package});
    QVERIFY2(run.code == 0, run.err.constData());
    run = Hwtool({"xsp-dump", package});
    QVERIFY2(run.code == 0, run.err.constData());
    const QJsonObject dump = QJsonDocument::fromJson(run.out).object();
    QVERIFY(!dump.isEmpty());

    for (const char* key :
         {"Name", "Author", "Version", "ID", "Data", "Web", "Mirror1", "Mirror2", "Comment", "LanguageText",
          "ExistingShip", "OriginalDesc", "Shipyards", "Texts", "Dummies", "Components", "Cockpits"})
        QVERIFY2(dump.value(key) == manifest.value(key), key);
    QCOMPARE(dump.value("ScreenShot").toString(), QString("LongShip-A.Modder.jpg"));
    QVERIFY(dump.value("CockpitFile").isNull());

    const auto checkFile = [](const QJsonValue& value, const QString& name, const QByteArray& bytes,
                              int time) {
        const QJsonObject file = value.toObject();
        return file.value("Name").toString() == name && file.value("Size").toInteger() == bytes.size() &&
               file.value("Time").toInteger() == time && file.value("Sha256").toString() == Sha256(bytes);
    };
    QVERIFY(checkFile(dump.value("SceneFile"), "objects/ships/long.pbd", scene, 1000));
    QVERIFY(checkFile(dump.value("Models").toArray().at(0), "objects/ships/hull.pbb", model, 1001));
    QVERIFY(checkFile(dump.value("Files").toArray().at(0), "textures/tex ture.dds", other, 1002));
    QVERIFY(checkFile(dump.value("Scripts").toArray().at(0), "setup.ship.xml", script, 1003));

    // The same manifest builds the same package, byte for byte.
    QVERIFY(Hwtool({"xsp-build", dir.filePath("manifest.json"), dir.filePath("out/again.xsp")}).code == 0);
    QCOMPARE(ReadFile(dir.filePath("out/again.xsp")), ReadFile(package));
}

void TestXspTool::refusesBadInput()
{
    QTemporaryDir dir;
    WriteFile(dir.filePath("a.bin"), "abc");
    const auto build = [&](const QJsonObject& manifest) {
        WriteFile(dir.filePath("m.json"), QJsonDocument(manifest).toJson());
        return Hwtool({"xsp-build", dir.filePath("m.json"), dir.filePath("out.xsp")});
    };
    const QJsonObject base{{"Name", "N"}, {"Author", "A"}, {"Data", "1"}};

    QJsonObject unsafe = base;
    unsafe["Files"] = QJsonArray{FileObject("a.bin", "../outside.bin", 1)};
    ProgramRun run = build(unsafe);
    QCOMPARE(run.code, 1);
    QVERIFY(run.err.contains("../outside.bin"));

    QJsonObject typo = base;
    typo["Modles"] = QJsonArray{};
    run = build(typo);
    QCOMPARE(run.code, 1);
    QVERIFY(run.err.contains("Modles"));

    QJsonObject missing = base;
    missing["Models"] = QJsonArray{FileObject("nothere.pbb", "objects/x.pbb", 1)};
    QCOMPARE(build(missing).code, 1);
    QVERIFY(!QFileInfo::exists(dir.filePath("out.xsp")));

    // Not a package: a clear reason and exit 1.
    run = Hwtool({"xsp-dump", dir.filePath("a.bin")});
    QCOMPARE(run.code, 1);
    QVERIFY(run.err.contains("not a ship package"));
    run = Hwtool({"xsp-dump", dir.filePath("none.xsp")});
    QCOMPARE(run.code, 1);
    QVERIFY(run.out.isEmpty());
}

void TestXspTool::killedBuildLeavesThePackage()
{
    QTemporaryDir dir;
    WriteFile(dir.filePath("big.pbb"), RandomBytes(48 << 20, 8));
    const QJsonObject manifest{{"Name", "N"},
                               {"Author", "A"},
                               {"Data", "1"},
                               {"Models", QJsonArray{FileObject("big.pbb", "objects/big.pbb", 5)}}};
    WriteFile(dir.filePath("m.json"), QJsonDocument(manifest).toJson());
    const QString package = dir.filePath("ship.xsp");
    const QByteArray previous = "the package from yesterday";
    WriteFile(package, previous);

    // Killed while the stream is written and while it is compressed.
    for (const int delayMs : {150, 2500}) {
        QProcess process;
        process.start(Tool(), {"xsp-build", dir.filePath("m.json"), package});
        QVERIFY(process.waitForStarted());
        QTest::qWait(delayMs);
        if (process.state() != QProcess::Running)
            QSKIP("the build ended before it could be interrupted");
        ::kill(pid_t(process.processId()), SIGKILL);
        QVERIFY(process.waitForFinished(10000));
        QCOMPARE(process.exitStatus(), QProcess::CrashExit);
        QCOMPARE(ReadFile(package), previous);
    }
}

QTEST_GUILESS_MAIN(TestXspTool)
#include "tst_xsptool.moc"
