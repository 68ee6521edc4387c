// hwtool as a black box: the built binary run as a child process, on
// catalogs and packed files, and on ship packages made from a manifest and
// dumped back to JSON.
#include "CatalogFiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

using namespace catalogfiles;

namespace {

QJsonObject FileObject(const QString& path, const QString& name, qint64 time)
{
    return QJsonObject{{"Path", path}, {"Name", name}, {"Time", time}};
}

} // namespace

class TstHwtool : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_tool;
    QString path(const QString& name) const { return m_dir->filePath(name); }

    // Runs the tool; says why when it does not exit with `code`.
    ProgramRun expect(int code, const QStringList& arguments) const
    {
        const ProgramRun result = RunProgram(m_tool, arguments, m_dir->path());
        if (!result.exited || result.code != code)
            qWarning().noquote() << "hwtool" << arguments.join(' ') << "exited" << result.code << "\n"
                                 << result.err;
        return result;
    }

    // Runs the tool: true when it exits with 1, `reason` on stderr and nothing on stdout.
    bool fails(const QStringList& arguments, const QByteArray& reason) const
    {
        const ProgramRun result = expect(1, arguments);
        if (result.code == 1 && !result.err.contains(reason))
            qWarning().noquote() << "hwtool" << arguments.join(' ') << "gave no" << reason << "in"
                                 << result.err;
        return result.code == 1 && result.err.contains(reason) && result.out.isEmpty();
    }

    // Writes `manifest` and gives the arguments that build `package` from it.
    QStringList xspBuild(const QJsonObject& manifest, const QString& package) const
    {
        WriteFile(path("m.json"), QJsonDocument(manifest).toJson());
        return {"xsp-build", path("m.json"), package};
    }

private slots:
    void initTestCase()
    {
        m_tool = qEnvironmentVariable("HW_BIN_DIR") + "/hwtool";
        QVERIFY2(QFile::exists(m_tool), qPrintable(m_tool));
    }

    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
    }

    void wrongUsageGivesTwoAndTheUsage_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("complaint");
        QTest::newRow("nothing") << QStringList() << "no command given";
        QTest::newRow("unknown command")
            << QStringList({"cat-frobnicate"}) << "unknown command 'cat-frobnicate'";
        QTest::newRow("too few") << QStringList({"cat-extract", "x.cat", "a"})
                                 << "expected 3 arguments, got 2";
        QTest::newRow("too many") << QStringList({"cat-list", "x.cat", "y.cat"})
                                  << "expected 1 arguments, got 2";
        QTest::newRow("option of another command")
            << QStringList({"cat-add", "x.cat", "a", "f", "--raw"}) << "unknown option '--raw'";
    }
    void wrongUsageGivesTwoAndTheUsage()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, complaint);
        const ProgramRun result = expect(2, arguments);
        QCOMPARE(result.code, 2);
        QVERIFY2(result.err.contains(complaint.toUtf8()), result.err.constData());
        QVERIFY(result.err.contains("usage"));
        QVERIFY(result.out.isEmpty());
        QVERIFY(!QFile::exists(path("x.cat")));
    }

    // cat-add creates the pair; cat-list shows it; cat-extract gives the bytes back.
    void roundTripThroughACatalog()
    {
        const QByteArray rows = SampleBytes(2000, 11);
        const QByteArray image = QByteArray("\x00\x01\x02 binary \xff\xfe", 14);
        QVERIFY(WriteFile(path("TShips.txt"), rows));
        QVERIFY(WriteFile(path("a.tga"), image));
        const QString cat = path("mods/new.cat");
        QVERIFY(QDir().mkpath(path("mods")));

        QCOMPARE(expect(0, {"cat-add", cat, "gfx/a.tga", path("a.tga")}).code, 0);
        const ProgramRun added =
            expect(0, {"cat-add", cat, "types\\TShips.txt", path("TShips.txt"), "--packed"});
        QCOMPARE(added.code, 0);
        QVERIFY(added.out.contains("types\\TShips.pck"));
        QVERIFY(QFile::exists(path("mods/new.dat")));

        const ProgramRun list = expect(0, {"cat-list", cat});
        QCOMPARE(list.code, 0);
        const qint64 packedSize = ReadCatalog(cat).value(1).size;
        QVERIFY(packedSize > 0 && packedSize != rows.size());
        QCOMPARE(list.out, "gfx\\a.tga\t14\ntypes\\TShips.pck\t" + QByteArray::number(packedSize) + "\n");

        QCOMPARE(expect(0, {"cat-extract", cat, "gfx\\a.tga", path("a.out")}).code, 0);
        QCOMPARE(ReadFile(path("a.out")), image);
        QCOMPARE(expect(0, {"cat-extract", cat, "types/TShips.pck", path("rows.out")}).code, 0);
        QCOMPARE(ReadFile(path("rows.out")), rows);
        QCOMPARE(expect(0, {"cat-extract", cat, "types/TShips.pck", path("raw.out"), "--raw"}).code, 0);
        QVERIFY(IsPacked(ReadFile(path("raw.out"))));
        QCOMPARE(Unpacked(ReadFile(path("raw.out"))).value_or("<does not unpack>"), rows);

        QCOMPARE(expect(0, {"cat-rm", cat, "gfx/a.tga"}).code, 0);
        QCOMPARE(expect(0, {"cat-list", cat}).out,
                 "types\\TShips.pck\t" + QByteArray::number(packedSize) + "\n");
    }

    // cat-rm takes the name as cat-list shows it, models included.
    void removeTakesTheExactName()
    {
        const QString cat = path("x.cat");
        QVERIFY(WritePair(path("x"), {{"objects\\a.bob", "plain"}, {"objects\\a.pbb", Packed("packed")}}));
        QCOMPARE(expect(0, {"cat-rm", cat, "objects/a.bob"}).code, 0);
        QCOMPARE(CatalogNames(cat), QStringList({"objects\\a.pbb"}));
        QCOMPARE(expect(0, {"cat-rm", cat, "OBJECTS\\A.PBB"}).code, 0);
        QCOMPARE(CatalogNames(cat), QStringList());
    }

    void failuresGiveOneAndTheReason()
    {
        QVERIFY(WritePair(path("x"), {{"t\\a.txt", "text"}}));
        QVERIFY(WriteFile(path("keep"), "old target"));
        const QString cat = path("x.cat");

        QVERIFY(fails({"cat-list", path("missing.cat")}, "File does not exist."));
        QVERIFY(fails({"cat-extract", cat, "t\\b.txt", path("keep")}, "No entry in CAT file."));
        QVERIFY(fails({"cat-extract", cat, "t\\a.txt", path("no dir/out")}, "cannot write"));
        QVERIFY(fails({"cat-rm", cat, "t\\b.txt"}, "No entry in CAT file."));
        QVERIFY(fails({"cat-add", cat, "t\\a.txt", path("no such file")}, "File does not exist."));
        QCOMPARE(ReadFile(path("keep")), QByteArray("old target"));
        QCOMPARE(CatalogNames(cat), QStringList({"t\\a.txt"}));

        // Entry names that would leave the catalog touch nothing on disk.
        QVERIFY(WriteFile(path("victim"), "disk file"));
        QVERIFY(fails({"cat-add", cat, "t\\..\\..\\victim", path("keep")}, "'..'"));
        QVERIFY(fails({"cat-extract", cat, "t/../../victim", path("stolen")}, "'..'"));
        QVERIFY(fails({"cat-rm", cat, "t\\..\\..\\victim"}, "'..'"));
        QCOMPARE(ReadFile(path("victim")), QByteArray("disk file"));
        QVERIFY(!QFile::exists(path("stolen")));

        // A catalog whose .dat is missing is not created over.
        QVERIFY(WriteFile(path("lonely.dat"), "data"));
        QVERIFY(fails({"cat-add", path("lonely.cat"), "a", path("keep")}, "File already exist."));
        QCOMPARE(ReadFile(path("lonely.dat")), QByteArray("data"));

        // A catalog line without a blank is bad data.
        QVERIFY(WritePairRaw(path("bad"), "bad.dat\nnoblank\n", {}));
        QVERIFY(fails({"cat-list", path("bad.cat")}, "Bad data in file."));
    }

    void packAndUnpackFiles()
    {
        const QByteArray rows = SampleBytes(1200, 2);
        QVERIFY(WriteFile(path("rows.txt"), rows));
        QCOMPARE(expect(0, {"pck-pack", path("rows.txt"), path("rows.pck")}).code, 0);
        QVERIFY(IsPacked(ReadFile(path("rows.pck"))));
        QCOMPARE(expect(0, {"pck-unpack", path("rows.pck"), path("back.txt")}).code, 0);
        QCOMPARE(ReadFile(path("back.txt")), rows);

        // Not packed, or packed but damaged: refused, and the target keeps what it had.
        QByteArray damaged = ReadFile(path("rows.pck"));
        damaged[damaged.size() - 6] = char(damaged[damaged.size() - 6] ^ 0x40);
        QVERIFY(WriteFile(path("damaged.pck"), damaged));
        QVERIFY(fails({"pck-unpack", path("rows.txt"), path("back.txt")}, "not a packed file"));
        QVERIFY(fails({"pck-unpack", path("damaged.pck"), path("back.txt")}, "GZIP"));
        QCOMPARE(ReadFile(path("back.txt")), rows);

        // A target whose packed form would have another name is refused.
        QVERIFY(fails({"pck-pack", path("rows.txt"), path("out.xml")}, "out.pck"));
        QVERIFY(!QFile::exists(path("out.xml")));
        QVERIFY(!QFile::exists(path("out.pck")));
    }

    void xspBuildAndDumpRoundTrip()
    {
        const QByteArray scene = "VER: 1;\nP 0; B 1;\n";
        const QByteArray model = RandomBytes(70000, 2);
        const QByteArray other = "texture bytes\nwith a Packager: 2 line\n";
        const QByteArray script = "<?xml version=\"1.0\"?><script/>";
        const QByteArray picture = RandomBytes(400, 3);
        WriteFile(path("files/scene.pbd"), scene);
        WriteFile(path("files/hull.pbb"), model);
        WriteFile(path("files/tex ture.dds"), other);
        WriteFile(path("files/setup.ship.xml"), script);
        WriteFile(path("files/shot.jpg"), picture);

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
            {"Texts",
             QJsonArray{QJsonObject{{"Language", 44}, {"Title", "Long"}, {"Description", "A: ship"}}}},
            {"Dummies", QJsonArray{QJsonObject{{"Section", "SDTYPE_GUN"}, {"Data", "1;2;"}}}},
            {"Components", QJsonArray{QJsonObject{{"Section", "SC"}, {"Id", "7"}, {"Data", "a;b;"}}}},
            {"Cockpits", QJsonArray{"0;1;COCK_A"}},
            {"SceneFile", FileObject("files/scene.pbd", "objects/ships/long.pbd", 1000)},
            {"CockpitFile", QJsonValue()},
            {"Models", QJsonArray{FileObject("files/hull.pbb", "objects/ships/hull.pbb", 1001)}},
            {"Files", QJsonArray{FileObject(path("files/tex ture.dds"), "textures/tex ture.dds", 1002)}},
            {"Scripts", QJsonArray{FileObject("files/setup.ship.xml", "setup.ship.xml", 1003)}}};
        const QString package = path("out/long.xsp");
        QDir().mkpath(path("out"));
        QCOMPARE(expect(0, xspBuild(manifest, package)).code, 0);
        const ProgramRun run = expect(0, {"xsp-dump", package});
        const QJsonObject dump = QJsonDocument::fromJson(run.out).object();
        QVERIFY(!dump.isEmpty());

        for (const char* key : {"Name", "Author", "Version", "ID", "Data", "Web", "Mirror1", "Mirror2",
                                "Comment", "LanguageText", "ExistingShip", "OriginalDesc", "Shipyards",
                                "Texts", "Dummies", "Components", "Cockpits"})
            QVERIFY2(dump.value(key) == manifest.value(key), key);
        QCOMPARE(dump.value("ScreenShot").toString(), QString("LongShip-A.Modder.jpg"));
        QVERIFY(dump.value("CockpitFile").isNull());

        const auto checkFile = [](const QJsonValue& value, const QString& name, const QByteArray& bytes,
                                  int time) {
            const QJsonObject file = value.toObject();
            return file.value("Name").toString() == name && file.value("Size").toInteger() == bytes.size() &&
                   file.value("Time").toInteger() == time &&
                   file.value("Sha256").toString() ==
                       QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
        };
        QVERIFY(checkFile(dump.value("SceneFile"), "objects/ships/long.pbd", scene, 1000));
        QVERIFY(checkFile(dump.value("Models").toArray().at(0), "objects/ships/hull.pbb", model, 1001));
        QVERIFY(checkFile(dump.value("Files").toArray().at(0), "textures/tex ture.dds", other, 1002));
        QVERIFY(checkFile(dump.value("Scripts").toArray().at(0), "setup.ship.xml", script, 1003));

        // The same manifest builds the same package, byte for byte.
        QCOMPARE(expect(0, xspBuild(manifest, path("out/again.xsp"))).code, 0);
        QCOMPARE(ReadFile(path("out/again.xsp")), ReadFile(package));
    }

    void xspRefusesBadInput()
    {
        WriteFile(path("a.bin"), "abc");
        const QJsonObject base{{"Name", "N"}, {"Author", "A"}, {"Data", "1"}};
        QJsonObject unsafe = base, typo = base, missing = base;
        unsafe["Files"] = QJsonArray{FileObject("a.bin", "../outside.bin", 1)};
        typo["Modles"] = QJsonArray{};
        missing["Models"] = QJsonArray{FileObject("nothere.pbb", "objects/x.pbb", 1)};
        QVERIFY(fails(xspBuild(unsafe, path("out.xsp")), "../outside.bin"));
        QVERIFY(fails(xspBuild(typo, path("out.xsp")), "Modles"));
        QVERIFY(fails(xspBuild(missing, path("out.xsp")), "nothere.pbb"));
        QVERIFY(!QFileInfo::exists(path("out.xsp")));

        // Not a package: a clear reason and exit 1.
        QVERIFY(fails({"xsp-dump", path("a.bin")}, "not a ship package"));
        QVERIFY(fails({"xsp-dump", path("none.xsp")}, ""));
    }

    void killedXspBuildLeavesThePackage()
    {
        WriteFile(path("big.pbb"), RandomBytes(48 << 20, 8));
        const QJsonObject manifest{{"Name", "N"},
                                   {"Author", "A"},
                                   {"Data", "1"},
                                   {"Models", QJsonArray{FileObject("big.pbb", "objects/big.pbb", 5)}}};
        const QStringList build = xspBuild(manifest, path("ship.xsp"));
        const QString package = path("ship.xsp");
        const QByteArray previous = "the package from yesterday";
        WriteFile(package, previous);

        // Killed while the stream is written and while it is compressed.
        for (const int delayMs : {150, 2500}) {
            QProcess process;
            process.start(m_tool, build);
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
};

QTEST_GUILESS_MAIN(TstHwtool)
#include "tst_hwtool.moc"
