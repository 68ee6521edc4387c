#include "TestSupport.h"
#include "core/ProgramDir.h"
#include "core/Services.h"
#include "core/StatusProgressBar.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

class TestServices : public QObject
{
    Q_OBJECT
private slots:
    void programDirFollowsEnvironment();
    void debugLogAppendsStampedLines();
    void formatMessageChainsReplacements_data();
    void formatMessageChainsReplacements();
    void makeDirPathSkipsEmptyParts();
    void removeTreeKeepsChainsOfFiles();
    void removeTreeWithFilesRemovesAll();
    void progressIndicatorText();
};

void TestServices::programDirFollowsEnvironment()
{
    TempHome home;
    QCOMPARE(ProgramDir(), QDir::fromNativeSeparators(home.path()));
    QCOMPARE(ProgramPath("/config.dat"), home.path() + "/config.dat");
    qputenv("HULLWRIGHT_HOME", (home.path() + "///").toLocal8Bit());
    QCOMPARE(ProgramDir(), home.path());
}

void TestServices::debugLogAppendsStampedLines()
{
    TempHome home;
    WriteDebugLog("first");
    WriteDebugLog("second line");
    const QByteArray log = home.readFile("log/hullwright_debug.txt");
    const QList<QByteArray> lines = log.split('\n');
    QCOMPARE(lines.size(), 3); // two lines and the empty rest behind the last line feed
    const QRegularExpression stamped(R"(^\[\d\d:\d\d:\d\d - \d\d:\d\d:\d\d\] (.*)\r$)");
    auto first = stamped.match(QString::fromLatin1(lines[0]));
    auto second = stamped.match(QString::fromLatin1(lines[1]));
    QVERIFY2(first.hasMatch(), lines[0].constData());
    QVERIFY2(second.hasMatch(), lines[1].constData());
    QCOMPARE(first.captured(1), QString("first"));
    QCOMPARE(second.captured(1), QString("second line"));
    QVERIFY(lines[2].isEmpty());
}

void TestServices::formatMessageChainsReplacements_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("expected");
    QTest::newRow("no placeholder") << "plain text"
                                    << "a"
                                    << "b"
                                    << "plain text";
    QTest::newRow("twice") << "%1 and %1"
                           << "x"
                           << ""
                           << "x and x";
    QTest::newRow("missing argument vanishes") << "[%1][%2][%3]"
                                               << "a"
                                               << ""
                                               << "[a][][]";
    QTest::newRow("value holding a later placeholder") << "%1!"
                                                       << "say %2"
                                                       << "hi"
                                                       << "say hi!";
    QTest::newRow("order of fill") << "%2 %1"
                                   << "one"
                                   << "two"
                                   << "two one";
}

void TestServices::formatMessageChainsReplacements()
{
    QFETCH(QString, text);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, expected);
    QCOMPARE(FormatMessage(text, first, second), expected);
}

void TestServices::makeDirPathSkipsEmptyParts()
{
    QTemporaryDir dir;
    MakeDirPath(QDir(dir.path()), "a//b/c/");
    QVERIFY(QFileInfo(dir.path() + "/a/b/c").isDir());
    QCOMPARE(QDir(dir.path() + "/a/b/c").entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 0);
    MakeDirPath(QDir(dir.path()), "a/b/c"); // an existing path changes nothing
    QVERIFY(QFileInfo(dir.path() + "/a/b/c").isDir());
}

void TestServices::removeTreeKeepsChainsOfFiles()
{
    QTemporaryDir dir;
    const QString root = dir.path() + "/tree";
    QDir().mkpath(root + "/keep/deep/deeper");
    QDir().mkpath(root + "/empty/branch");
    QDir().mkpath(root + "/keep/side");
    QFile file(root + "/keep/deep/deeper/file.txt");
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("x");
    file.close();

    RemoveTree(root, false);
    QVERIFY(QFile::exists(root + "/keep/deep/deeper/file.txt"));
    QVERIFY(!QFileInfo::exists(root + "/empty"));
    QVERIFY(!QFileInfo::exists(root + "/keep/side"));

    RemoveTree(dir.path() + "/missing", true); // nothing there, nothing happens
    QVERIFY(QFileInfo::exists(root));
}

void TestServices::removeTreeWithFilesRemovesAll()
{
    QTemporaryDir dir;
    const QString root = dir.path() + "/tree";
    QDir().mkpath(root + "/a/b");
    for (const QString& name : {root + "/top.txt", root + "/a/b/inner.bin", root + "/a/.hidden"}) {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("data");
    }
    RemoveTree(root, true);
    QVERIFY(!QFileInfo::exists(root));
    QVERIFY(QFileInfo(dir.path()).isDir());
}

void TestServices::progressIndicatorText()
{
    StatusProgressBar bar(nullptr, "progress");
    QCOMPARE(bar.objectName(), QString("progress"));
    QString text;
    QVERIFY(bar.setIndicator(text, 1, 3));
    QCOMPARE(text, QString("33.3% "));
    QVERIFY(!bar.setIndicator(text, 1, 3)); // same text as before
    QVERIFY(bar.setIndicator(text, 0, 3));
    QCOMPARE(text, QString("0.0% "));
    QVERIFY(bar.setIndicator(text, -1, 3));
    QVERIFY(text.isEmpty());
    bar.setRange(0, 3);
    bar.setValue(2);
    QCOMPARE(bar.text(), QString("66.7% "));
}

QTEST_MAIN(TestServices)
#include "tst_services.moc"
