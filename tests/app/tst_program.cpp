// The real executable, started as a user or a script would start it.
#include "TestSupport.h"

#include <QDir>
#include <QProcess>
#include <QtTest>

class TestProgram : public QObject
{
    Q_OBJECT
private slots:
    void extractionFromTheCommandLineEndsWithoutAWindow();
};

void TestProgram::extractionFromTheCommandLineEndsWithoutAWindow()
{
    TempHome home(true);
    QDir(home.path()).mkpath("game");
    home.writeFile("game/x3.exe", "");
    home.writeFile("config.dat", "<common>\nDir: " + home.filePath("game").toUtf8() + "\n</common>\n");
    home.writeFile("ships/a.xsp", "");

    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HULLWRIGHT_HOME", home.path());
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    program.setProcessEnvironment(environment);
    program.start(qEnvironmentVariable("HW_BIN_DIR") + "/hullwright",
                  {"-X", home.filePath("ships/a.xsp"), "-d", "HERE"});
    QVERIFY2(program.waitForStarted(), qPrintable(program.errorString()));
    const bool finished = program.waitForFinished(30000);
    if (!finished)
        program.kill();
    QVERIFY2(finished, "the program kept running after an extraction from the command line");
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
}

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
