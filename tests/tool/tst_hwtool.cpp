// hwtool as a black box: the built binary run as a child process.
#include "CatalogFiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

using namespace catalogfiles;

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
};

QTEST_GUILESS_MAIN(TstHwtool)
#include "tst_hwtool.moc"
