// hwtool as a black box: the built binary run with QProcess.
#include "catfs/CatDriver.h"
#include "tst_transfer_support.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

using namespace transfertest;

namespace {

struct ToolResult
{
    bool exited = false; // false when the tool crashed or did not start
    int code = -1;
    QByteArray out;
    QByteArray err;
};

} // namespace

class TstHwtool : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString m_tool;
    QString path(const QString& name) const { return m_dir->filePath(name); }

    ToolResult run(const QStringList& arguments) const
    {
        QProcess process;
        process.setWorkingDirectory(m_dir->path());
        process.start(m_tool, arguments);
        ToolResult result;
        if (!process.waitForFinished(60000))
            return result;
        result.exited = process.exitStatus() == QProcess::NormalExit;
        result.code = result.exited ? process.exitCode() : -1;
        result.out = process.readAllStandardOutput();
        result.err = process.readAllStandardError();
        return result;
    }

    // Runs the tool and fails the test unless it exits with `code`.
    ToolResult expect(int code, const QStringList& arguments) const
    {
        const ToolResult result = run(arguments);
        if (!result.exited || result.code != code)
            qWarning().noquote() << "hwtool" << arguments.join(' ') << "exited" << result.code << "\n"
                                 << result.err;
        return result;
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
        const ToolResult result = expect(2, arguments);
        QCOMPARE(result.code, 2);
        QVERIFY2(result.err.contains(complaint.toUtf8()), result.err.constData());
        QVERIFY(result.err.contains("usage"));
        QVERIFY(result.out.isEmpty());
        QVERIFY(!QFile::exists(path("x.cat")));
    }

    void helpListsEveryCommand()
    {
        const ToolResult result = expect(0, {"--help"});
        QCOMPARE(result.code, 0);
        for (const char* command : {"cat-list", "cat-extract", "cat-add", "cat-rm", "pck-unpack", "pck-pack"})
            QVERIFY2(result.out.contains(command), command);
    }

    // cat-add creates the pair; cat-list shows it; cat-extract gives the bytes back.
    void roundTripThroughACatalog()
    {
        const QByteArray rows = ShipRows(40, 11);
        const QByteArray image = QByteArray("\x00\x01\x02 binary \xff\xfe", 14);
        QVERIFY(WriteBytes(path("TShips.txt"), rows));
        QVERIFY(WriteBytes(path("a.tga"), image));
        const QString cat = path("mods/new.cat");
        QVERIFY(QDir().mkpath(path("mods")));

        QCOMPARE(expect(0, {"cat-add", cat, "gfx/a.tga", path("a.tga")}).code, 0);
        const ToolResult added =
            expect(0, {"cat-add", cat, "types\\TShips.txt", path("TShips.txt"), "--packed"});
        QCOMPARE(added.code, 0);
        QVERIFY(added.out.contains("types\\TShips.pck"));
        QVERIFY(QFile::exists(path("mods/new.dat")));

        const ToolResult list = expect(0, {"cat-list", cat});
        QCOMPARE(list.code, 0);
        const qint64 packedSize = CatalogLines(cat).value(1).second;
        QVERIFY(packedSize > 0 && packedSize != rows.size());
        QCOMPARE(list.out, "gfx\\a.tga\t14\ntypes\\TShips.pck\t" + QByteArray::number(packedSize) + "\n");

        QCOMPARE(expect(0, {"cat-extract", cat, "gfx\\a.tga", path("a.out")}).code, 0);
        QCOMPARE(ReadBytes(path("a.out")), image);
        QCOMPARE(expect(0, {"cat-extract", cat, "types/TShips.pck", path("rows.out")}).code, 0);
        QCOMPARE(ReadBytes(path("rows.out")), rows);
        QCOMPARE(expect(0, {"cat-extract", cat, "types/TShips.pck", path("raw.out"), "--raw"}).code, 0);
        QVERIFY(IsPacked(ReadBytes(path("raw.out"))));
        QCOMPARE(Unpacked(ReadBytes(path("raw.out"))).value_or("<does not unpack>"), rows);

        QCOMPARE(expect(0, {"cat-rm", cat, "gfx/a.tga"}).code, 0);
        QCOMPARE(expect(0, {"cat-list", cat}).out,
                 "types\\TShips.pck\t" + QByteArray::number(packedSize) + "\n");
    }

    // cat-rm takes the name as cat-list shows it, models included.
    void removeTakesTheExactName()
    {
        const QString cat = path("x.cat");
        QVERIFY(WriteCatalog(cat, {{"objects\\a.bob", "plain"}, {"objects\\a.pbb", Packed("packed")}}));
        QCOMPARE(expect(0, {"cat-rm", cat, "objects/a.bob"}).code, 0);
        QCOMPARE(CatalogNames(cat), QStringList({"objects\\a.pbb"}));
        QCOMPARE(expect(0, {"cat-rm", cat, "OBJECTS\\A.PBB"}).code, 0);
        QCOMPARE(CatalogNames(cat), QStringList());
    }

    void failuresGiveOneAndTheReason()
    {
        QVERIFY(WriteCatalog(path("x.cat"), {{"t\\a.txt", "text"}}));
        QVERIFY(WriteBytes(path("keep"), "old target"));

        ToolResult result = expect(1, {"cat-list", path("missing.cat")});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.contains("File does not exist."), result.err.constData());
        QVERIFY(result.out.isEmpty());

        result = expect(1, {"cat-extract", path("x.cat"), "t\\b.txt", path("keep")});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.contains("No entry in CAT file."), result.err.constData());
        QCOMPARE(ReadBytes(path("keep")), QByteArray("old target"));

        result = expect(1, {"cat-extract", path("x.cat"), "t\\a.txt", path("no dir/out")});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.contains("cannot write"), result.err.constData());

        result = expect(1, {"cat-rm", path("x.cat"), "t\\b.txt"});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.contains("No entry in CAT file."), result.err.constData());

        result = expect(1, {"cat-add", path("x.cat"), "t\\a.txt", path("no such file")});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.contains("File does not exist."), result.err.constData());
        QCOMPARE(CatalogNames(path("x.cat")), QStringList({"t\\a.txt"}));

        // Entry names that would leave the catalog touch nothing on disk.
        QVERIFY(WriteBytes(path("victim"), "disk file"));
        for (const QStringList& arguments :
             {QStringList({"cat-add", path("x.cat"), "t\\..\\..\\victim", path("keep")}),
              QStringList({"cat-extract", path("x.cat"), "t/../../victim", path("stolen")}),
              QStringList({"cat-rm", path("x.cat"), "t\\..\\..\\victim"})}) {
            result = expect(1, arguments);
            QCOMPARE(result.code, 1);
            QVERIFY2(result.err.contains("'..'"), result.err.constData());
        }
        QCOMPARE(ReadBytes(path("victim")), QByteArray("disk file"));
        QVERIFY(!QFile::exists(path("stolen")));

        // A catalog whose .dat is missing is not created over.
        QVERIFY(WriteBytes(path("lonely.dat"), "data"));
        result = expect(1, {"cat-add", path("lonely.cat"), "a", path("keep")});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.contains("File already exist."), result.err.constData());
        QCOMPARE(ReadBytes(path("lonely.dat")), QByteArray("data"));

        // A catalog line without a blank is bad data.
        QVERIFY(WriteBytes(path("bad.cat"), ScrambleCatalog("bad.dat\nnoblank\n")));
        QVERIFY(WriteBytes(path("bad.dat"), ""));
        result = expect(1, {"cat-list", path("bad.cat")});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.contains("Bad data in file."), result.err.constData());
    }

    void packAndUnpackFiles()
    {
        const QByteArray rows = ShipRows(25, 2);
        QVERIFY(WriteBytes(path("rows.txt"), rows));
        QCOMPARE(expect(0, {"pck-pack", path("rows.txt"), path("rows.pck")}).code, 0);
        QVERIFY(IsPacked(ReadBytes(path("rows.pck"))));
        QCOMPARE(expect(0, {"pck-unpack", path("rows.pck"), path("back.txt")}).code, 0);
        QCOMPARE(ReadBytes(path("back.txt")), rows);

        // Not packed: refused, and the target keeps what it had.
        ToolResult result = expect(1, {"pck-unpack", path("rows.txt"), path("back.txt")});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.contains("not a packed file"), result.err.constData());
        QCOMPARE(ReadBytes(path("back.txt")), rows);

        // Packed but damaged: the driver's reason, the target untouched.
        QByteArray damaged = ReadBytes(path("rows.pck"));
        damaged[damaged.size() - 6] = static_cast<char>(damaged[damaged.size() - 6] ^ 0x40);
        QVERIFY(WriteBytes(path("damaged.pck"), damaged));
        result = expect(1, {"pck-unpack", path("damaged.pck"), path("back.txt")});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.contains("GZIP"), result.err.constData());
        QCOMPARE(ReadBytes(path("back.txt")), rows);

        // A target whose packed form would have another name is refused.
        result = expect(1, {"pck-pack", path("rows.txt"), path("out.xml")});
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.contains("out.pck"), result.err.constData());
        QVERIFY(!QFile::exists(path("out.xml")));
        QVERIFY(!QFile::exists(path("out.pck")));
    }
};

QTEST_GUILESS_MAIN(TstHwtool)
#include "tst_hwtool.moc"
