// hwtool xsp-extract as a black box: the built binary run on packages made by
// the writer, and its exit codes.
#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

class TestExtractTool : public QObject
{
    Q_OBJECT
private slots:
    void extractsAndListsTheFiles();
    void exitCodesTellWhatWentWrong();
};

void TestExtractTool::extractsAndListsTheFiles()
{
    QTemporaryDir dir;
    QVERIFY(WriteFile(dir.filePath("ship.xsp"),
                      "Packager: 1\nName: Tool Ship\nAuthor: Ann\n"
                      "Data: 1;SS_COCKPIT_T;SS_SH_T\nModel: 0 5 objects/m.pbd\nmodel\n"
                      "Cockpit: 0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_T;\n"));
    QVERIFY(QDir().mkpath(dir.filePath("out")));

    const ProgramRun run = Hwtool({"xsp-extract", dir.filePath("ship.xsp"), dir.filePath("out"), "--prefix"});
    QCOMPARE(run.code, 0);
    QVERIFY(run.err.isEmpty());
    QCOMPARE(run.out, QByteArray("objects/m.pbd\ntypes/TCockpits_ToolShip.txt\ntypes/TShips_ToolShip.txt\n"));
    QCOMPARE(ReadFile(dir.filePath("out/objects/m.pbd")), QByteArray("model"));
    QVERIFY(ReadFile(dir.filePath("out/types/TShips_ToolShip.txt")).endsWith("\n1;1;SS_SH_T;\n"));
}

void TestExtractTool::exitCodesTellWhatWentWrong()
{
    QTemporaryDir dir;
    QVERIFY(WriteFile(dir.filePath("not.xsp"), "neither a package nor LZMA data"));
    QVERIFY(QDir().mkpath(dir.filePath("out")));

    ProgramRun run = Hwtool({"xsp-extract", dir.filePath("not.xsp"), dir.filePath("out")});
    QCOMPARE(run.code, 1);
    QVERIFY2(run.err.contains("not a ship package"), run.err.constData());
    QVERIFY(QDir(dir.filePath("out")).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));

    run = Hwtool({"xsp-extract", dir.filePath("not.xsp"), dir.filePath("missing")});
    QCOMPARE(run.code, 1);
    QVERIFY2(run.err.contains("no such directory"), run.err.constData());
    QVERIFY(!QFileInfo::exists(dir.filePath("missing")));

    QCOMPARE(Hwtool({"xsp-extract", dir.filePath("not.xsp")}).code, 2);
    QCOMPARE(Hwtool({"xsp-extract", dir.filePath("not.xsp"), dir.filePath("out"), "--force"}).code, 2);
}

QTEST_GUILESS_MAIN(TestExtractTool)
#include "tst_extracttool.moc"
