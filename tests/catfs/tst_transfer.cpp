// The transfer layer against catalogs and files that the tests write and
// read byte by byte, so each check sees what really lies on disk.
#include "CatalogFiles.h"
#include "catfs/transfer/GameFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace catalogfiles;

class TstTransfer : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString path(const QString& name) const { return m_dir->filePath(name); }
    QString cat() const { return path("x.cat"); }
    QString entry(const QString& name) const { return cat() + "::" + name; }
    // Writes `content` to a file of the temporary directory and gives its path.
    QString source(const QString& name, const QByteArray& content) const
    {
        WriteFile(path(name), content);
        return path(name);
    }
    // Stored bytes of an entry of x.cat, or a marker that no content can equal.
    QByteArray stored(const QString& name) const
    {
        return StoredBytes(cat(), name).value_or("<no such entry or .dat too short>");
    }
    static QByteArray unpacked(const QByteArray& packed)
    {
        return Unpacked(packed).value_or("<does not unpack>");
    }
    bool copyIn(const QString& sourceName, const QByteArray& content, const QString& target, bool packed)
    {
        QFile file(source(sourceName, content));
        return GameFileCopyIn(file, target, packed);
    }

private slots:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
    }

    void packedNameMapping_data()
    {
        QTest::addColumn<QString>("input");
        QTest::addColumn<bool>("allRows");
        QTest::addColumn<QString>("expected");
        QTest::newRow("xml") << "c:/x.cat::t\\440001.xml" << true << "c:/x.cat::t\\440001.pck";
        QTest::newRow("txt upper case") << "types/TShips.TXT" << true << "types/TShips.pck";
        QTest::newRow("bob") << "x.cat::objects\\a.bob" << false << "x.cat::objects\\a.pbb";
        QTest::newRow("bod") << "objects/a.bod" << true << "objects/a.pbd";
        QTest::newRow("xml not a model row") << "t/440001.xml" << false << "t/440001.xml";
        QTest::newRow("outside the table") << "x.cat::gfx\\a.tga" << true << "x.cat::gfx\\a.tga";
        QTest::newRow("entry in the catalog root") << "/d/x.cat::a.xml" << true << "/d/x.cat::a.pck";
        QTest::newRow("dot only in a directory") << "/d/mods.xml/readme" << true << "/d/mods.xml/readme";
        QTest::newRow("no entry extension") << "/d/x.cat::a" << true << "/d/x.cat::a";
    }
    void packedNameMapping()
    {
        QFETCH(QString, input);
        QFETCH(bool, allRows);
        QFETCH(QString, expected);
        QCOMPARE(GameFilePackedName(input, allRows), expected);
    }

    // Copying in: which name an entry gets and in which form it is stored.
    void copyInChoosesStoredNameAndForm()
    {
        QVERIFY(WritePair(path("x"), {{"types\\TShips.pck", Packed("old")}}));
        const QByteArray page = "<language id=\"44\"><page id=\"17\"><t id=\"1\">Argon</t></page></language>";
        const QByteArray image = QByteArray("TGA image bytes \x01\x02\x03", 19);

        QVERIFY(copyIn("440001.xml", page, entry("t\\440001.xml"), true));
        QVERIFY(copyIn("a.tga", image, entry("gfx\\packed.tga"), true));
        QVERIFY(copyIn("a.tga", image, entry("gfx\\plain.tga"), false));
        QVERIFY(copyIn("b.xml", page, entry("t\\plain.xml"), false));

        QCOMPARE(CatalogNames(cat()), QStringList({"types\\TShips.pck", "t\\440001.pck", "gfx\\packed.tga",
                                                   "gfx\\plain.tga", "t\\plain.xml"}));
        QVERIFY(DataLengthMatches(cat()));
        QVERIFY(IsPacked(stored("t\\440001.pck")));
        QCOMPARE(unpacked(stored("t\\440001.pck")), page);
        // Packed under a name outside the table: a gzip form under the plain name.
        QVERIFY(IsPacked(stored("gfx\\packed.tga")));
        QCOMPARE(unpacked(stored("gfx\\packed.tga")), image);
        QCOMPARE(stored("gfx\\plain.tga"), image);
        QCOMPARE(stored("t\\plain.xml"), page);
        // The entry in front was not disturbed.
        QCOMPARE(unpacked(stored("types\\TShips.pck")), QByteArray("old"));
    }

    // A catalog that isn't there is not created by copying in.
    void copyInNeedsAnExistingCatalog()
    {
        QVERIFY(!copyIn("a.txt", "x", entry("a.txt"), false));
        QVERIFY(!QFile::exists(cat()));
        QVERIFY(!QFile::exists(DataPathOf(cat())));
    }

    // Replacing entries: only a plain model entry is overwritten where it
    // stands; all others leave their place and go to the end.
    void replacedEntriesKeepOrMoveTheirPlace()
    {
        QVERIFY(WritePair(
            path("x"),
            {{"objects\\a.bob", "0123456789"}, {"t\\b.txt", "bbbb"}, {"objects\\c.bob", "cccccc"}}));

        QVERIFY(copyIn("a1", "ABCDEFGHIJ", entry("objects\\a.bob"), false));
        QCOMPARE(CatalogNames(cat()), QStringList({"objects\\a.bob", "t\\b.txt", "objects\\c.bob"}));
        QCOMPARE(stored("objects\\a.bob"), QByteArray("ABCDEFGHIJ"));

        QVERIFY(copyIn("a2", "a longer model body", entry("objects/a.bob"), false));
        QCOMPARE(CatalogNames(cat()), QStringList({"t\\b.txt", "objects\\c.bob", "objects\\a.bob"}));

        // Not a model: removed and added again, even with the same length.
        QVERIFY(copyIn("b", "BBBB", entry("t\\b.txt"), false));
        QCOMPARE(CatalogNames(cat()), QStringList({"objects\\c.bob", "objects\\a.bob", "t\\b.txt"}));

        QVERIFY(DataLengthMatches(cat()));
        QCOMPARE(stored("objects\\c.bob"), QByteArray("cccccc"));
        QCOMPARE(stored("objects\\a.bob"), QByteArray("a longer model body"));
        QCOMPARE(stored("t\\b.txt"), QByteArray("BBBB"));
    }

    // An empty source really empties a plain model entry overwritten in place.
    void emptySourceEmptiesModelEntry()
    {
        QVERIFY(WritePair(path("x"), {{"objects\\a.bob", "model"}, {"t\\b.txt", "bbbb"}}));
        QVERIFY(copyIn("empty", {}, entry("objects\\a.bob"), false));
        QCOMPARE(stored("objects\\a.bob"), QByteArray());
        QCOMPARE(stored("t\\b.txt"), QByteArray("bbbb"));
        QVERIFY(DataLengthMatches(cat()));
    }

    // Model names address their packed form when removing, never the plain one.
    void removeTakesThePackedModel()
    {
        QVERIFY(WritePair(path("x"), {{"objects\\a.bob", "plain model"},
                                      {"objects\\a.pbb", Packed("packed model")},
                                      {"objects\\s.pbd", Packed("scene")},
                                      {"t\\c.txt", "text"}}));
        QVERIFY(GameFileRemove(entry("objects\\a.bob")));
        QVERIFY(GameFileRemove(entry("objects/S.BOD")));
        QCOMPARE(CatalogNames(cat()), QStringList({"objects\\a.bob", "t\\c.txt"}));
        QVERIFY(!GameFileRemove(entry("objects\\a.bob")));
        QCOMPARE(CatalogNames(cat()), QStringList({"objects\\a.bob", "t\\c.txt"}));
        QCOMPARE(stored("objects\\a.bob"), QByteArray("plain model"));
        QCOMPARE(stored("t\\c.txt"), QByteArray("text"));
        QVERIFY(DataLengthMatches(cat()));

        // Copying in a plain model clears a packed entry of that name.
        QVERIFY(WritePair(path("x"), {{"objects\\m.pbb", Packed("old packed")}}));
        QVERIFY(copyIn("m.bob", "new plain", entry("objects\\m.bob"), false));
        QCOMPARE(CatalogNames(cat()), QStringList({"objects\\m.bob"}));
    }

    // Extracting: packed names for models, raw and unpacked forms.
    void extractFindsPackedModelsAndKeepsTargetName()
    {
        const QByteArray body = "// model body\nP 0; 1; 2;\n";
        QVERIFY(WritePair(path("x"), {{"objects\\ship.pbb", Packed(body)}, {"t\\a.pck", Packed("page")}}));
        const QString target = path("out/ship.bob");
        QVERIFY(QDir().mkpath(path("out")));

        QVERIFY(!GameFileExtract(entry("objects\\ship.bob"), target, false, false));
        QVERIFY(!QFile::exists(target));
        QVERIFY(GameFileExtract(entry("objects/ship.bob"), target, true, false));
        QCOMPARE(ReadFile(target), body);
        QCOMPARE(QDir(path("out")).entryList(QDir::Files), QStringList({"ship.bob"}));
        // Text rows are not used when extracting.
        QVERIFY(!GameFileExtract(entry("t\\a.xml"), path("a.xml"), true, false));
    }

    void rawExtractionKeepsPackedScrambling()
    {
        const QByteArray rows = SampleBytes(2500, 3);
        const QByteArray packed = Packed(rows);
        QVERIFY(WritePair(path("x"), {{"types\\TShips.pck", packed}, {"gfx\\a.tga", "plain"}}));

        QVERIFY(GameFileExtract(entry("types\\TShips.pck"), path("raw"), false, true));
        QCOMPARE(ReadFile(path("raw")), packed);
        QVERIFY(GameFileExtract(entry("types\\TShips.pck"), path("plain"), false, false));
        QCOMPARE(ReadFile(path("plain")), rows);
        // A plain entry comes out the same either way.
        QVERIFY(GameFileExtract(entry("gfx\\a.tga"), path("tga"), false, true));
        QCOMPARE(ReadFile(path("tga")), QByteArray("plain"));
    }

    // Failures keep what stood before: the old entry, the old target.
    void failuresLoseNothing()
    {
        QVERIFY(WritePair(path("x"), {{"t\\c.txt", "keep me"}}));
        QFile missing(path("no such file"));
        QVERIFY(!GameFileCopyIn(missing, entry("t\\c.txt"), false));
        QCOMPARE(stored("t\\c.txt"), QByteArray("keep me"));

        const QString target = source("target", "old target");
        QVERIFY(!GameFileExtract(entry("t\\missing.txt"), target, false, false));
        QCOMPARE(ReadFile(target), QByteArray("old target"));
        QVERIFY(!GameFileExtract(path("no such file"), target, false, false));
        QCOMPARE(ReadFile(target), QByteArray("old target"));
        // The layer reports a target it can't write.
        QVERIFY(!GameFileExtract(entry("t\\c.txt"), path("no dir/target"), false, false));

        // A .dat shorter than the catalog claims: the entry can't be read.
        QVERIFY(WritePair(path("x"), {{"t\\c.txt", "keep me"}}));
        QVERIFY(WriteFile(DataPathOf(cat()), XorBytes("keep")));
        QVERIFY(!GameFileExtract(entry("t\\c.txt"), target, false, false));
        QCOMPARE(ReadFile(target), QByteArray("old target"));
    }

    // An entry name with ".." would reach a disk file beside the catalog.
    void entryNamesStayInsideTheCatalog()
    {
        QVERIFY(WritePair(path("x"), {{"t\\a.txt", "entry"}}));
        QVERIFY(WriteFile(path("victim.txt"), "disk file"));
        const QString escaping = entry("t\\..\\..\\victim.txt");
        QVERIFY(!GameFileEntryIsContained(escaping));
        QVERIFY(!GameFileEntryIsContained(entry("a/../b")));
        QVERIFY(GameFileEntryIsContained(path("../x.cat") + "::t\\a..b.txt"));

        QVERIFY(!GameFileExtract(escaping, path("out"), false, false));
        QVERIFY(!QFile::exists(path("out")));
        QVERIFY(!copyIn("src", "overwritten", escaping, false));
        QVERIFY(!GameFileRemove(escaping));
        QCOMPARE(ReadFile(path("victim.txt")), QByteArray("disk file"));
        QCOMPARE(CatalogNames(cat()), QStringList({"t\\a.txt"}));
    }

    void listing()
    {
        QVERIFY(GameFileList(path("missing.cat")).isEmpty());
        QVERIFY(WritePair(path("x"), {}));
        QVERIFY(GameFileList(cat()).isEmpty());

        const QByteArray packed = Packed(SampleBytes(500, 1));
        QVERIFY(WritePair(path("x"),
                          {{"types\\TShips.pck", packed}, {"some dir\\my file.txt", "120"}, {"e", {}}}));
        const QList<GameFileListEntry> list = GameFileList(path("x.cat").replace('/', '\\'));
        QCOMPARE(list.size(), 3);
        QCOMPARE(list[0].name, QString("types\\TShips.pck"));
        QCOMPARE(list[0].size, int32_t(packed.size()));
        QCOMPARE(list[1].name, QString("some dir\\my file.txt"));
        QCOMPARE(list[1].size, 3);
        QCOMPARE(list[2].name, QString("e"));
        QCOMPARE(list[2].size, 0);
    }

    // Both slash styles reach the same entry, and names are held with '\'.
    void slashesOfBothKinds()
    {
        QVERIFY(WritePair(path("x"), {}));
        QVERIFY(copyIn("f", "content", entry("dir/sub/f.txt"), false));
        QCOMPARE(CatalogNames(cat()), QStringList({"dir\\sub\\f.txt"}));
        QVERIFY(GameFileExtract(entry("dir\\sub\\f.txt"), path("one"), false, false));
        QVERIFY(GameFileExtract(entry("dir/sub\\f.txt"), path("two"), false, false));
        QCOMPARE(ReadFile(path("one")), QByteArray("content"));
        QCOMPARE(ReadFile(path("two")), QByteArray("content"));
    }

    // Files on disk go through the same functions.
    void filesOnDisk()
    {
        const QByteArray rows = SampleBytes(1000, 7);
        QVERIFY(QDir().mkpath(path("types")));
        QVERIFY(copyIn("src.txt", rows, path("types/TShips.txt"), true));
        QVERIFY(!QFile::exists(path("types/TShips.txt")));
        QVERIFY(IsPacked(ReadFile(path("types/TShips.pck"))));
        QCOMPARE(unpacked(ReadFile(path("types/TShips.pck"))), rows);

        // A shorter plain file replaces a longer one completely.
        QVERIFY(WriteFile(path("types/plain.txt"), "a much longer old content"));
        QVERIFY(copyIn("short", "short", path("types/plain.txt"), false));
        QCOMPARE(ReadFile(path("types/plain.txt")), QByteArray("short"));

        QVERIFY(GameFileExtract(path("types/TShips.pck"), path("unpacked"), false, false));
        QCOMPARE(ReadFile(path("unpacked")), rows);
    }

    void pckFileToPlain()
    {
        const QByteArray rows = SampleBytes(1500, 5);
        QVERIFY(WriteFile(path("t.pck"), Packed(rows)));
        PckFileToPlain(path("t.pck"), path("t.txt"));
        QCOMPARE(ReadFile(path("t.txt")), rows);

        // A plain or missing source gives an empty target, also over an old one.
        QVERIFY(WriteFile(path("plain.txt"), "not packed at all"));
        PckFileToPlain(path("plain.txt"), path("t.txt"));
        QVERIFY(QFile::exists(path("t.txt")));
        QCOMPARE(ReadFile(path("t.txt")), QByteArray());
        QVERIFY(WriteFile(path("t.txt"), "old"));
        PckFileToPlain(path("missing.pck"), path("t.txt"));
        QCOMPARE(QFile(path("t.txt")).size(), 0);
    }

    // Real tables and language pages of a sister game survive a round trip.
    void realFilesRoundTrip()
    {
        const QString corpus = qEnvironmentVariable("HW_CORPUS_DIR");
        if (corpus.isEmpty() || !QDir(corpus).exists())
            QSKIP("no corpus directory");
        QVERIFY(WritePair(path("x"), {}));
        const QStringList files = {"x3tc/types/TShips.txt", "x3tc/t/0001-L044.xml",
                                   "x3tc/objects/cut/00749.bod"};
        for (const QString& file : files) {
            QFile input(corpus + "/" + file);
            QVERIFY2(GameFileCopyIn(input, entry(file), true), qPrintable(file));
            QVERIFY(GameFileExtract(entry(GameFilePackedName(file, true)), path("out"), false, false));
            QCOMPARE(ReadFile(path("out")), ReadFile(corpus + "/" + file));
        }
        QCOMPARE(CatalogNames(cat()), QStringList({"x3tc\\types\\TShips.pck", "x3tc\\t\\0001-L044.pck",
                                                   "x3tc\\objects\\cut\\00749.pbd"}));
        QVERIFY(DataLengthMatches(cat()));
    }
};

QTEST_GUILESS_MAIN(TstTransfer)
#include "tst_transfer.moc"
