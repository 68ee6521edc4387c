// Package files brought into their stored form, with fake x2bc tools: shell
// scripts that log their arguments and working directory and answer as the
// real tool would, or fail, or stay silent, or hang.
#include "CatalogFiles.h"
#include "deploy/ModelCompiler.h"
#include "deploy/ModelTextures.h"
#include "package/ShipPackage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <csignal>

namespace {

// How a fake tool behaves.
enum class ToolKind
{
    Good,       // prints the success words and writes the target
    CutFails,   // the --cut try writes half a target and fails; --bob succeeds
    Silent,     // writes a target but prints nothing
    Hangs,      // logs its process id to "pids" in its directory and never ends
    Decompiles, // -d writes a text model with one material into its target
};

QByteArray ScriptBody(ToolKind kind)
{
    // Only shell built-ins: the tests may run with an empty PATH.
    QByteArray body = "#!/bin/sh\n";
    switch (kind) {
    case ToolKind::Good:
        body += "printf 'BOB from %s' \"$3\" > \"$4\"\necho 'x2bc 1.0'\necho 'model compiled successfully'\n";
        break;
    case ToolKind::CutFails:
        body += "if [ \"$2\" = \"--cut\" ]; then printf half > \"$4\"; echo 'cannot cut'; exit 1; fi\n"
                "printf 'BOB from %s' \"$3\" > \"$4\"\necho 'compiled successfully'\n";
        break;
    case ToolKind::Silent:
        body += "printf junk > \"$4\"\n";
        break;
    case ToolKind::Decompiles:
        body += "printf 'MATERIAL6: 1; 0x2000000; 23; tex; 1; From_Binary.dds;\\n' > \"$3\"\n"
                "echo 'model decompiled successfully'\n";
        break;
    case ToolKind::Hangs:
        body += "printf '%s\\n' $$ >> pids\nexec /bin/sleep 120\n";
        break;
    }
    return body;
}

// A directory with one fake tool and the log of its calls.
class FakeTool
{
public:
    explicit FakeTool(ToolKind kind, const QString& name = "x2bc")
    {
        m_path = m_dir.filePath(name);
        QByteArray script = ScriptBody(kind);
        // Log first, before the tool does its work (printf, since the echo of
        // dash would read the backslashes of a Windows path as escapes).
        script.insert(script.indexOf('\n') + 1,
                      "printf '%s|%s\\n' \"$PWD\" \"$*\" >> '" + logPath().toUtf8() + "'\n");
        QFile file(m_path);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(script);
            file.close();
        }
        file.setPermissions(file.permissions() | QFileDevice::ExeOwner);
    }

    QString path() const { return m_path; }
    QString dir() const { return m_dir.path(); }
    QString logPath() const { return m_dir.filePath("calls.log"); }
    // One "<working dir>|<arguments>" line for each run.
    QStringList calls() const
    {
        QFile file(logPath());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    }

private:
    QTemporaryDir m_dir;
    QString m_path;
};

// The content of a packed file, unpacked again.
QByteArray UnpackedFile(const QString& packed)
{
    return catalogfiles::Unpacked(ReadFile(packed)).value_or("<does not unpack>");
}

const QByteArray TextModel = "// a model\nMATERIAL6: 1; 0x2000; texture.jpg\n";

} // namespace

class TestModelCompiler : public QObject
{
    Q_OBJECT
private slots:
    void compilesWithTheCutTryAndPacks();
    void secondTryOnlyAfterTheFirstFails();
    void failedCompileStoresTheTextModel();
    void scenesAreNotCompiled_data();
    void scenesAreNotCompiled();
    void namesKeepAllDotsAndCaseOfTheExtensionDoesNotMatter();
    void packageMarkerIsExpanded();
    void packingDoesNotDependOnCompile();
    void missingToolMeansNoCompile();
    void windowsToolRunsThroughWineOnly();
    void hangingToolIsKilledAfterTheTimeOut();
    void unreadableSourceLeavesNoStaleCopy();
    void successWordsEndALine();
    void texturesOfTextAndBinaryModels();
};

void TestModelCompiler::compilesWithTheCutTryAndPacks()
{
    QTemporaryDir program, models;
    FakeTool tool(ToolKind::Good);
    const QString source = models.filePath("falcon.bod");
    QVERIFY(WriteFile(source, TextModel));

    FileEntry file{7, 0, source, "objects/ships/falcon.bod", false};
    const QString stored = PrepareFile(file, true, program.path(), tool.path());

    const QString bob = models.filePath("falcon.bob");
    QCOMPARE(stored, program.filePath("temp/falcon.pbb"));
    QCOMPARE(file.LocalPath, stored);
    QCOMPARE(file.Name, QString("objects/ships/falcon.pbb"));
    QVERIFY(file.DeleteAfterWrite);
    QCOMPARE(file.Size, static_cast<uint32_t>(QFileInfo(stored).size()));
    QVERIFY2(QFileInfo::exists(bob), "the compiled model stays beside its source");
    QCOMPARE(UnpackedFile(stored), ReadFile(bob));
    QCOMPARE(ReadFile(bob), "BOB from " + source.toUtf8());

    const QStringList calls = tool.calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls[0], tool.dir() + "|-c --cut " + source + " " + bob);
}

void TestModelCompiler::secondTryOnlyAfterTheFirstFails()
{
    QTemporaryDir program, models;
    FakeTool tool(ToolKind::CutFails);
    const QString source = models.filePath("hull.bod");
    const QString bob = models.filePath("hull.bob");
    QVERIFY(WriteFile(source, TextModel));

    FileEntry file{0, 0, source, "objects/hull.bod", false};
    PrepareFile(file, true, program.path(), tool.path());

    const QStringList calls = tool.calls();
    QCOMPARE(calls.size(), 2);
    QVERIFY(calls[0].contains("-c --cut "));
    QCOMPARE(calls[1], tool.dir() + "|-c --bob " + source + " " + bob);
    QCOMPARE(ReadFile(bob), "BOB from " + source.toUtf8()); // not the half file of the first try
    QCOMPARE(file.Name, QString("objects/hull.pbb"));
    QVERIFY(file.DeleteAfterWrite);
}

void TestModelCompiler::failedCompileStoresTheTextModel()
{
    QTemporaryDir program, models;
    FakeTool tool(ToolKind::Silent);
    const QString source = models.filePath("hull.bod");
    const QString bob = models.filePath("hull.bob");
    QVERIFY(WriteFile(source, TextModel));
    QVERIFY(WriteFile(bob, "stale binary from long ago"));

    FileEntry file{0, 0, source, "objects/hull.bod", false};
    const QString stored = PrepareFile(file, true, program.path(), tool.path());

    QCOMPARE(tool.calls().size(), 2);
    QVERIFY2(!QFileInfo::exists(bob), "neither a stale nor a half-made .bob is left");
    QCOMPARE(stored, program.filePath("temp/hull.pbd"));
    QCOMPARE(file.Name, QString("objects/hull.pbd"));
    QVERIFY(!file.DeleteAfterWrite);
    QCOMPARE(UnpackedFile(stored), TextModel);
}

void TestModelCompiler::scenesAreNotCompiled_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isScene");
    QTest::newRow("comments and blanks, then VER:")
        << QByteArray("// scene of the Falcon\n\n   \n/ another\nVER: 1\nP 0; B 1;\n") << true;
    QTest::newRow("CRLF lines") << QByteArray("// scene\r\n\r\nVER: 1\r\n") << true;
    QTest::newRow("VER:1 run together") << QByteArray("// scene\nVER:1\n") << false;
    QTest::newRow("model") << TextModel << false;
    QTest::newRow("VER: after the first real line") << QByteArray("MATERIAL6: 1;\nVER: 1\n") << false;
    QTest::newRow("only comments") << QByteArray("// nothing else\n\n") << false;
}

void TestModelCompiler::scenesAreNotCompiled()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isScene);
    QTemporaryDir program, models;
    FakeTool tool(ToolKind::Good);
    const QString source = models.filePath("scene.bod");
    QVERIFY(WriteFile(source, content));

    QCOMPARE(IsSceneFile(source), isScene);
    FileEntry file{0, 0, source, "objects/ships/scene.bod", false};
    PrepareFile(file, true, program.path(), tool.path());
    QCOMPARE(tool.calls().isEmpty(), isScene);
    QCOMPARE(file.Name, QString(isScene ? "objects/ships/scene.pbd" : "objects/ships/scene.pbb"));
}

void TestModelCompiler::namesKeepAllDotsAndCaseOfTheExtensionDoesNotMatter()
{
    QTemporaryDir program, models;
    FakeTool tool(ToolKind::Good);
    const QString source = models.filePath("my.ship.v2.BOD");
    QVERIFY(WriteFile(source, TextModel));

    FileEntry file{0, 0, source, "objects/my.ship.v2.BOD", false};
    const QString stored = PrepareFile(file, true, program.path(), tool.path());

    QCOMPARE(tool.calls().size(), 1);
    QVERIFY(QFileInfo::exists(models.filePath("my.ship.v2.bob")));
    QCOMPARE(stored, program.filePath("temp/my.ship.v2.pbb"));
    QCOMPARE(file.Name, QString("objects/my.ship.v2.pbb"));

    // A bare name gets the directory "." in the stored name.
    const QString bare = models.filePath("plain.bob");
    QVERIFY(WriteFile(bare, "binary"));
    FileEntry bareFile{0, 0, bare, "plain.BOB", false};
    PrepareFile(bareFile, false, program.path(), tool.path());
    QCOMPARE(bareFile.Name, QString("./plain.pbb"));
}

void TestModelCompiler::packageMarkerIsExpanded()
{
    QTemporaryDir program;
    QVERIFY(WriteFile(program.filePath("ShipInstall/scripts/setup.xml"), "<script/>"));
    QVERIFY(WriteFile(program.filePath("ShipInstall/objects/a.bod"), TextModel));

    FileEntry script{0, 9, "<PACKAGE>/scripts/setup.xml", "scripts/setup.xml", false};
    QCOMPARE(PrepareFile(script, false, program.path(), QString()),
             program.filePath("ShipInstall/scripts/setup.xml"));
    QCOMPARE(script.LocalPath, program.filePath("ShipInstall/scripts/setup.xml"));
    QCOMPARE(script.Size, 9u); // not a model: left alone

    FileEntry model{0, 0, "<PACKAGE>/objects/a.bod", "objects/a.bod", false};
    const QString stored = PrepareFile(model, false, program.path(), QString());
    QCOMPARE(UnpackedFile(stored), TextModel);
}

void TestModelCompiler::packingDoesNotDependOnCompile()
{
    QTemporaryDir program, models;
    FakeTool tool(ToolKind::Good);
    const QString bob = models.filePath("gun.bob");
    const QString bod = models.filePath("gun2.bod");
    const QString packed = models.filePath("gun3.pbb");
    QVERIFY(WriteFile(bob, "binary model"));
    QVERIFY(WriteFile(bod, TextModel));
    QVERIFY(WriteFile(packed, "already packed"));

    FileEntry binary{0, 0, bob, "objects/gun.bob", false};
    QCOMPARE(PrepareFile(binary, false, program.path(), tool.path()), program.filePath("temp/gun.pbb"));
    QCOMPARE(binary.Name, QString("objects/gun.pbb"));
    QCOMPARE(UnpackedFile(binary.LocalPath), QByteArray("binary model"));

    FileEntry text{0, 0, bod, "objects/gun2.bod", false};
    PrepareFile(text, false, program.path(), tool.path());
    QCOMPARE(text.Name, QString("objects/gun2.pbd"));

    FileEntry stored{0, 14, packed, "objects/gun3.pbb", false};
    QCOMPARE(PrepareFile(stored, true, program.path(), tool.path()), packed);
    QCOMPARE(stored.Name, QString("objects/gun3.pbb"));

    QVERIFY2(tool.calls().isEmpty(), "no compile without the flag, nor of a packed file");
}

void TestModelCompiler::missingToolMeansNoCompile()
{
    QTemporaryDir program, models;
    const QString source = models.filePath("hull.bod");
    QVERIFY(WriteFile(source, TextModel));
    for (const QString& toolPath : {QString(), models.filePath("nothing/x2bc"), models.path()}) {
        FileEntry file{0, 0, source, "objects/hull.bod", false};
        QCOMPARE(PrepareFile(file, true, program.path(), toolPath), program.filePath("temp/hull.pbd"));
        QVERIFY(!file.DeleteAfterWrite);
        QVERIFY(!QFileInfo::exists(models.filePath("hull.bob")));
    }
}

void TestModelCompiler::windowsToolRunsThroughWineOnly()
{
    QTemporaryDir program, models, bin;
    FakeTool tool(ToolKind::Good, "x2bc.exe"); // would succeed if it were run directly
    const QString source = models.filePath("hull.bod");
    const QString bob = models.filePath("hull.bob");
    QVERIFY(WriteFile(source, TextModel));

    {
        ScopedEnv path("PATH", bin.path().toUtf8()); // no wine anywhere
        FileEntry file{0, 0, source, "objects/hull.bod", false};
        PrepareFile(file, true, program.path(), tool.path());
        QVERIFY(tool.calls().isEmpty());
        QCOMPARE(file.Name, QString("objects/hull.pbd"));
    }

    // A fake wine: logs what it was given and does the tool's work.
    const QString wineLog = bin.filePath("wine.log");
    QVERIFY(WriteFile(bin.filePath("wine"), "#!/bin/sh\nprintf '%s|%s\\n' \"$PWD\" \"$*\" >> '" +
                                                wineLog.toUtf8() + "'\nprintf compiled > '" + bob.toUtf8() +
                                                "'\necho 'compiled successfully'\n"));
    QFile(bin.filePath("wine")).setPermissions(QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    {
        ScopedEnv path("PATH", bin.path().toUtf8());
        FileEntry file{0, 0, source, "objects/hull.bod", false};
        PrepareFile(file, true, program.path(), tool.path());
        QCOMPARE(file.Name, QString("objects/hull.pbb"));
    }
    auto zPath = [](QString path) { return "Z:" + path.replace('/', '\\'); };
    QCOMPARE(ReadFile(wineLog).trimmed(),
             (tool.dir() + "|" + tool.path() + " -c --cut " + zPath(source) + " " + zPath(bob)).toUtf8());
}

void TestModelCompiler::hangingToolIsKilledAfterTheTimeOut()
{
    // Were the time-out not applied, the tool would outlast the test's own
    // time limit; here each try is killed and the text model stored.
    QTemporaryDir program, models;
    FakeTool tool(ToolKind::Hangs);
    const QString source = models.filePath("hull.bod");
    QVERIFY(WriteFile(source, TextModel));

    FileEntry file{0, 0, source, "objects/hull.bod", false};
    PrepareFile(file, true, program.path(), tool.path(), 400);
    QCOMPARE(tool.calls().size(), 2);
    QCOMPARE(file.Name, QString("objects/hull.pbd"));
    QVERIFY(!file.DeleteAfterWrite);
    const QList<QByteArray> pids = ReadFile(tool.dir() + "/pids").split('\n');
    QCOMPARE(pids.size(), 3); // two and the empty rest behind the last line feed
    for (const QByteArray& pid : pids.first(2))
        QVERIFY2(::kill(pid_t(pid.toInt()), 0) != 0 && errno == ESRCH, pid.constData());
}

void TestModelCompiler::unreadableSourceLeavesNoStaleCopy()
{
    QTemporaryDir program, models;
    QVERIFY(WriteFile(program.filePath("temp/gone.pbd"), "from an earlier save"));
    FileEntry file{0, 0, models.filePath("gone.bod"), "objects/gone.bod", false};
    const QString stored = PrepareFile(file, false, program.path(), QString());
    QCOMPARE(stored, program.filePath("temp/gone.pbd"));
    QVERIFY2(!QFileInfo::exists(stored), "the writer must find nothing and leave the entry out");
    QCOMPARE(file.Size, 0u);
}

void TestModelCompiler::successWordsEndALine()
{
    QVERIFY(OutputHasSuccessWords("reading...\r\nfile compiled successfully\r\n", X2bcCompiledWords));
    QVERIFY(!OutputHasSuccessWords("compiled successfully.\n", X2bcCompiledWords));
    QVERIFY(!OutputHasSuccessWords("file decompiled successfully\n", X2bcCompiledWords));
    QVERIFY(OutputHasSuccessWords("file decompiled successfully\n", X2bcDecompiledWords));
    QVERIFY(!OutputHasSuccessWords("", X2bcCompiledWords));
}

// The texture scan of a mod's models: a text model is read as it is, a
// binary one through x2bc; without the tool a binary model names nothing.
void TestModelCompiler::texturesOfTextAndBinaryModels()
{
    QTemporaryDir mod, work;
    QVERIFY(catalogfiles::WritePair(
        mod.filePath("mod"), {{"objects/ships/text.bod",
                               "// a comment\nMATERIAL6: 2; 0x2000000; 5; tex; 1; Plain.DDS; 1;\nrest\n"},
                              {"objects/ships/binary.bob", "BOB1 binary"}}));
    FakeTool tool(ToolKind::Decompiles);
    TextureScanSetup setup{mod.filePath("mod.cat"), work.path(), tool.path()};
    const QStringList models = {"objects\\ships\\binary.bob", "objects\\ships\\text.bod",
                                "objects\\ships\\absent.bod"};
    QCOMPARE(ScanModelTextures(setup, models), QStringList({"from_binary.dds", "plain.dds"}));
    QVERIFY(QDir(work.path()).isEmpty());

    setup.X2bcPath.clear();
    QCOMPARE(ScanModelTextures(setup, models), QStringList({"plain.dds"}));
}

QTEST_GUILESS_MAIN(TestModelCompiler)
#include "tst_modelcompiler.moc"
