// Catalog archives: reading catalogs written by others, the layout the
// writer leaves behind, and bad catalogs.

#include "driver_testutil.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace drivertest;

namespace {

QByteArray P(const QString& path)
{
    return path.toLocal8Bit();
}

struct Listed
{
    QByteArray name;
    quint32 size;
};

QList<Listed> List(const QString& cat, const char* pattern = "*")
{
    QList<Listed> result;
    CatArchiveHandle* archive = CatOpenArchive(P(cat).constData(), 0);
    if (!archive)
        return result;
    CatFindData data;
    if (CatFind* find = CatFindFirst(archive, pattern, &data)) {
        do
            result.append({QByteArray(data.name), data.size});
        while (CatFindNext(find, &data));
        CatFindClose(find);
    }
    CatCloseArchive(archive);
    return result;
}

// Checks the pair on disk by hand: every entry of `expected` (stored bytes by
// name) lies at the offset its catalog implies, and the .dat is exactly as
// long as the catalog's sizes add up to.
void VerifyPairOnDisk(const QString& base, const QMap<QByteArray, QByteArray>& expected)
{
    for (auto it = expected.begin(); it != expected.end(); ++it)
        QCOMPARE(StoredBytes(base + ".cat", QString(it.key()).replace('/', '\\')).value_or("<not stored>"),
                 it.value());
    QVERIFY(DataLengthMatches(base + ".cat"));
}

} // namespace

class TestCatalog : public QObject
{
    Q_OBJECT

private slots:
    void readsForeignCatalogText();
    void dataFileFollowsCatalogName();
    void badCatalogsAreRefusedUntouched();
    void shortDataFileFailsOnlyThatEntry();
    void replacingInnerEntryMovesItToTheEnd();
    void equalSizeReplacementKeepsPlace();
    void openReaderFollowsMovedEntry();
    void lastEntryChangesInPlaceAndDatIsCut();
    void packedEntrySizeIncludesLeadByte();
    void removingEntryClosesTheGap();
    void lookupsIgnoreCase();
    void creatingCatalogs();
    void entryNamesMustFitALine();
    void listingPatterns();
    void largeCatalogLoadsAndLists();
};

void TestCatalog::readsForeignCatalogText()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    // CR LF and lone CR line ends, blank lines, a .dat name with a slash, a
    // name with blanks, an empty entry and a last line without a line end.
    const QByteArray text = "sub/01.dat\r\n\r\ntypes/TShips.pck 5\r\nsome dir/my file.txt 3\r\rempty.txt 0\r"
                            "t/0001.xml 4";
    WritePairRaw(base, text,
                 {{"types/TShips.pck", "ships"}, {"x", "abc"}, {"empty.txt", ""}, {"t/0001.xml", "page"}});
    const QList<Listed> listed = List(base + ".cat");
    QCOMPARE(listed.size(), 4);
    QCOMPARE(listed[0].name, QByteArray("types\\TShips.pck"));
    QCOMPARE(listed[1].name, QByteArray("some dir\\my file.txt"));
    QCOMPARE(listed[1].size, 3u);
    QCOMPARE(listed[2].size, 0u);
    QCOMPARE(listed[3].name, QByteArray("t\\0001.xml"));

    bool ok = false;
    QCOMPARE(DriverRead(P(base + ".cat::some dir\\my file.txt"), &ok), QByteArray("abc"));
    QVERIFY(ok);
    QCOMPARE(DriverRead(P(base + ".cat::empty.txt"), &ok), QByteArray());
    QVERIFY(ok);
    QCOMPARE(DriverRead(P(base + ".cat::t/0001.xml"), &ok), QByteArray("page"));
    QVERIFY(ok);

    // After a change the writer leaves LF only and '/' separators, and keeps
    // the line that had no line end.
    QVERIFY(DriverWrite(P(base + ".cat::types\\TShips.pck"), "SHIPS", CatKindPlain));
    QCOMPARE(
        CatalogText(base + ".cat"),
        QByteArray("sub/01.dat\ntypes/TShips.pck 5\nsome dir/my file.txt 3\nempty.txt 0\nt/0001.xml 4\n"));
    QCOMPARE(DriverRead(P(base + ".cat::types\\tships.pck")), QByteArray("SHIPS"));
    VerifyPairOnDisk(base, {{"types/TShips.pck", "SHIPS"}, {"t/0001.xml", "page"}});
}

void TestCatalog::dataFileFollowsCatalogName()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir("mods"));
    const QString base = dir.filePath("mods/a");
    WritePair(base, {{"one.txt", "from a.dat"}}, "b.dat");
    QVERIFY(WriteFile(dir.filePath("mods/b.dat"), XorBytes("from b.dat", 0xA7)));
    QCOMPARE(DriverRead(P(base + ".cat::one.txt")), QByteArray("from a.dat"));
    QVERIFY(DriverWrite(P(base + ".cat::two.txt"), "new", CatKindPlain));
    QByteArray dataName;
    ReadCatalog(base + ".cat", &dataName);
    QCOMPARE(dataName, QByteArray("b.dat"));
    QCOMPARE(ReadFile(dir.filePath("mods/b.dat")), XorBytes("from b.dat", 0xA7));
    VerifyPairOnDisk(base, {{"one.txt", "from a.dat"}, {"two.txt", "new"}});

    // A .dat that differs from the catalog's name only in case is found.
    QVERIFY(QFile::rename(base + ".dat", dir.filePath("mods/A.DAT")));
    QCOMPARE(DriverRead(P(base + ".cat::two.txt")), QByteArray("new"));
}

void TestCatalog::badCatalogsAreRefusedUntouched()
{
    QTemporaryDir dir;
    struct Case
    {
        const char* what;
        QByteArray text;
        uint32_t code;
    };
    const QList<Case> cases = {
        {"line without blank", "01.dat\na.txt 1\nnoblank\n", CatErrBadData},
        {"size beyond 32 bits", "01.dat\na.txt 4294967296\n", CatErrInvalidSize},
        {"negative size", "01.dat\na.txt -5\n", CatErrInvalidSize},
        {"sum beyond 32 bits", "01.dat\na 4000000000\nb 300000000\n", CatErrInvalidSize},
        {"empty catalog", "", CatErrFileEmpty},
    };
    for (const Case& c : cases) {
        const QString base = dir.filePath(c.what);
        WritePairRaw(base, c.text, {{"a.txt", "1"}});
        const QByteArray catBefore = ReadFile(base + ".cat");
        QVERIFY2(FailedWith(CatOpenArchive(P(base + ".cat").constData(), 0), c.code), c.what);
        QVERIFY2(
            FailedWith(CatOpen(P(base + ".cat::a.txt").constData(), CatModeWrite, 1, CatKindPlain), c.code),
            c.what);
        QCOMPARE(ReadFile(base + ".cat"), catBefore);
        QCOMPARE(ReadFile(base + ".dat"), XorBytes("1", 0xA7));
    }
    // A size that does not parse reads as 0, as atoi would.
    WritePairRaw(dir.filePath("word"), "01.dat\na.txt many\n", {});
    const QList<Listed> listed = List(dir.filePath("word.cat"));
    QCOMPARE(listed.size(), 1);
    QCOMPARE(listed[0].size, 0u);

    WritePair(dir.filePath("nodat"), {{"a", "1"}});
    QVERIFY(QFile::remove(dir.filePath("nodat.dat")));
    QVERIFY(FailedWith(CatOpenArchive(P(dir.filePath("nodat.cat")).constData(), 0), CatErrNoDatFile));
    QVERIFY(FailedWith(CatOpenArchive(P(dir.filePath("missing.cat")).constData(), 0), CatErrFileNotFound));
    // "::" always means a catalog: a plain file on the left is no fallback.
    QVERIFY(WriteFile(dir.filePath("plain.txt"), "not a catalog\n"));
    QVERIFY(!CatOpen(P(dir.filePath("plain.txt::x")).constData(), CatModeRead, 0, CatKindAuto));
    QVERIFY(CatLastError() != CatErrNone);
}

void TestCatalog::shortDataFileFailsOnlyThatEntry()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    WritePairRaw(base, "01.dat\na.txt 3\nhuge.bin 4000000000\n", {{"a.txt", "abc"}});
    bool ok = false;
    QCOMPARE(DriverRead(P(base + ".cat::a.txt"), &ok), QByteArray("abc"));
    QVERIFY(ok);
    QVERIFY(FailedWith(CatOpen(P(base + ".cat::huge.bin").constData(), CatModeRead, 0, CatKindPlain),
                       CatErrInvalidSize));
}

void TestCatalog::replacingInnerEntryMovesItToTheEnd()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    QList<Entry> entries;
    QMap<QByteArray, QByteArray> expected;
    for (int i = 0; i < 6; ++i) {
        const QByteArray name = "dir/e" + QByteArray::number(i) + ".txt";
        const QByteArray bytes = SampleBytes(1000 + 777 * i, quint32(i));
        entries.append({name, bytes});
        expected[name] = bytes;
    }
    entries.insert(3, Entry{"zero.txt", ""});
    WritePair(base, entries);

    const QByteArray replacement = SampleBytes(2500, 99);
    QVERIFY(DriverWrite(P(base + ".cat::DIR\\E1.TXT"), replacement, CatKindPlain));
    expected["dir/e1.txt"] = replacement;

    const QList<Line> lines = ReadCatalog(base + ".cat");
    QCOMPARE(lines.size(), 7);
    QCOMPARE(lines.last().name, QByteArray("dir/e1.txt"));
    QCOMPARE(lines.last().size, quint32(replacement.size()));
    QCOMPARE(lines[0].name, QByteArray("dir/e0.txt"));
    QCOMPARE(lines[1].name, QByteArray("dir/e2.txt"));
    QCOMPARE(lines[2].name, QByteArray("zero.txt"));
    VerifyPairOnDisk(base, expected);
    // The open catalog agrees with what it wrote.
    for (auto it = expected.begin(); it != expected.end(); ++it)
        QCOMPARE(DriverRead(P(base + ".cat::") + it.key()), it.value());
    QVERIFY(!QFile::exists(base + ".cat.journal"));

    // Within one archive handle several changes in a row stay consistent.
    CatArchiveHandle* archive = CatOpenArchive(P(base + ".cat").constData(), 0);
    QVERIFY(archive);
    for (int round = 0; round < 4; ++round) {
        const QByteArray name = "dir/e" + QByteArray::number(round * 2 % 6) + ".txt";
        const QByteArray bytes = SampleBytes(300 + round * 5000, quint32(round + 40));
        QVERIFY(DriverWrite(P(base + ".cat::") + name, bytes, CatKindPlain));
        expected[name] = bytes;
    }
    QVERIFY(DriverWrite(P(base + ".cat::zero.txt"), "now filled", CatKindPlain));
    expected["zero.txt"] = "now filled";
    for (auto it = expected.begin(); it != expected.end(); ++it)
        QCOMPARE(DriverRead(P(base + ".cat::") + it.key()), it.value());
    QVERIFY(CatCloseArchive(archive));
    VerifyPairOnDisk(base, expected);
    QCOMPARE(ReadCatalog(base + ".cat").last().name, QByteArray("zero.txt"));
}

void TestCatalog::equalSizeReplacementKeepsPlace()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    WritePair(base, {{"a", "aaaa"}, {"b", "bbbb"}, {"c", "cc"}});
    const QByteArray catBefore = CatalogText(base + ".cat");
    QVERIFY(DriverWrite(P(base + ".cat::b"), "BBBB", CatKindPlain));
    QCOMPARE(CatalogText(base + ".cat"), catBefore);
    QCOMPARE(XorBytes(ReadFile(base + ".dat"), 0xA7), QByteArray("aaaaBBBBcc"));
}

void TestCatalog::openReaderFollowsMovedEntry()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    WritePair(base, {{"a", "aaaa"}, {"b", "bbbb"}, {"c", "0123456789"}});
    CatFile* reader = CatOpen(P(base + ".cat::c").constData(), CatModeRead, 0, CatKindAuto);
    QVERIFY(reader);
    char head[3] = {};
    QCOMPARE(CatRead(reader, head, 3), 3);
    // Changing entries in front of it moves its bytes in the .dat.
    QVERIFY(DriverWrite(P(base + ".cat::a"), "A", CatKindPlain));
    QVERIFY(CatDelete(P(base + ".cat::b").constData()));
    char rest[16] = {};
    QCOMPARE(CatRead(reader, rest, sizeof(rest)), 7);
    QCOMPARE(QByteArray(head, 3) + QByteArray(rest, 7), QByteArray("0123456789"));
    QVERIFY(CatClose(reader));
    QCOMPARE(XorBytes(ReadFile(base + ".dat"), 0xA7), QByteArray("0123456789A"));
}

void TestCatalog::lastEntryChangesInPlaceAndDatIsCut()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    WritePair(base, {{"a", "aaaa"}, {"last", "LLLLLLLL"}, {"e1", ""}, {"e2", ""}});
    QVERIFY(DriverWrite(P(base + ".cat::last"), "ll", CatKindPlain));
    QCOMPARE(CatalogText(base + ".cat"), QByteArray("01.dat\na 4\ne1 0\ne2 0\nlast 2\n"));
    QCOMPARE(XorBytes(ReadFile(base + ".dat"), 0xA7), QByteArray("aaaall"));
}

void TestCatalog::packedEntrySizeIncludesLeadByte()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    WritePair(base, {{"first.txt", "xyz"}});
    const QByteArray text = QByteArray("<t>").repeated(1000);
    QVERIFY(DriverWrite(P(base + ".cat::t\\0001.pck"), text, CatKindPacked));
    const QList<Line> lines = ReadCatalog(base + ".cat");
    QCOMPARE(lines.size(), 2);
    const QByteArray dat = XorBytes(ReadFile(base + ".dat"), 0xA7);
    QCOMPARE(qint64(lines[1].size), qint64(dat.size() - 3));
    const QByteArray stored = dat.mid(3);
    QVERIFY(PckIsPacked(reinterpret_cast<const uint8_t*>(stored.constData()), size_t(stored.size())));
    // Read back unpacked by content, or as stored with the plain kind.
    QCOMPARE(DriverRead(P(base + ".cat::t\\0001.pck")), text);
    QCOMPARE(DriverRead(P(base + ".cat::t\\0001.pck"), nullptr, CatKindPlain), stored);
    // A plain entry forced open as packed fails with a gzip code.
    QVERIFY(FailedWith(CatOpen(P(base + ".cat::first.txt").constData(), CatModeRead, 0, CatKindPacked),
                       CatErrGzipTooSmall));
}

void TestCatalog::removingEntryClosesTheGap()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    WritePair(base, {{"a", "aaaa"}, {"b", "bbbbbb"}, {"c", "cc"}, {"d", "d"}});
    QVERIFY(CatDelete(P(base + ".cat::B").constData()));
    QCOMPARE(CatalogText(base + ".cat"), QByteArray("01.dat\na 4\nc 2\nd 1\n"));
    QCOMPARE(XorBytes(ReadFile(base + ".dat"), 0xA7), QByteArray("aaaaccd"));
    QVERIFY(CatDelete(P(base + ".cat::d").constData()));
    QCOMPARE(XorBytes(ReadFile(base + ".dat"), 0xA7), QByteArray("aaaacc"));
    QVERIFY(FailedWith(CatDelete(P(base + ".cat::d").constData()), CatErrNoEntry));
}

void TestCatalog::lookupsIgnoreCase()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    WritePair(base, {{"types/TShips.txt", "ships"}, {"TYPES/TSHIPS.TXT", "shadowed"}});
    QCOMPARE(DriverRead(P(base + ".cat::types\\tships.txt")), QByteArray("ships"));
    CatFile* writer = CatOpen(P(base + ".cat::TYPES\\TShips.TXT").constData(), CatModeWrite, 0, CatKindPlain);
    QVERIFY(writer);
    QVERIFY(FailedWith(CatOpen(P(base + ".cat::types\\tships.txt").constData(), CatModeRead, 0, CatKindPlain),
                       CatErrBadMode));
    QVERIFY(CatClose(writer));
    // The catalog path itself is looked up without regard to case as well.
    QCOMPARE(DriverRead(P(dir.filePath("01.CAT::TYPES\\TSHIPS.TXT"))), QByteArray("ships"));
}

void TestCatalog::creatingCatalogs()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("mod");
    CatArchiveHandle* archive = CatOpenArchive(P(base + ".cat").constData(), 1);
    QVERIFY(archive);
    QCOMPARE(CatalogText(base + ".cat"), QByteArray("mod.dat\n"));
    QVERIFY(CatCloseArchive(archive));
    QVERIFY(QFileInfo(base + ".dat").exists());
    QCOMPARE(List(base + ".cat").size(), 0);
    QVERIFY(DriverWrite(P(base + ".cat::first.txt"), "1st", CatKindPlain));
    VerifyPairOnDisk(base, {{"first.txt", "1st"}});

    // Create refuses to overwrite a .dat it did not make.
    QVERIFY(WriteFile(dir.filePath("other.dat"), "keep me"));
    QVERIFY(FailedWith(CatOpenArchive(P(dir.filePath("other.cat")).constData(), 1), CatErrFileExists));
    QCOMPARE(ReadFile(dir.filePath("other.dat")), QByteArray("keep me"));
    QVERIFY(!QFile::exists(dir.filePath("other.cat")));
    QVERIFY(FailedWith(CatOpenArchive(P(base + ".cat").constData(), 2), CatErrBadFlags));
}

void TestCatalog::entryNamesMustFitALine()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    WritePair(base, {});
    for (const char* bad : {"a:b", "a*b", "a<b", "a>b", "a|b", "line\nbreak"}) {
        QVERIFY2(FailedWith(CatOpen((P(base + ".cat::") + bad).constData(), CatModeWrite, 1, CatKindPlain),
                            CatErrBadName),
                 bad);
    }
    QCOMPARE(CatalogText(base + ".cat"), QByteArray("01.dat\n"));
    // Blanks are fine: the size starts behind the last one.
    QVERIFY(DriverWrite(P(base + ".cat::my dir\\a b.txt"), "ab", CatKindPlain));
    QCOMPARE(CatalogText(base + ".cat"), QByteArray("01.dat\nmy dir/a b.txt 2\n"));
}

void TestCatalog::listingPatterns()
{
    QTemporaryDir dir;
    const QString base = dir.filePath("01");
    WritePair(base, {{"types/TShips.pck", "1"}, {"types/TLaser.txt", "22"}, {"t/440001.pck", "333"}});
    QCOMPARE(List(base + ".cat").size(), 3);
    QCOMPARE(List(base + ".cat", "*.PCK").size(), 2);
    QCOMPARE(List(base + ".cat", "types\\t?hips*").size(), 1);
    QCOMPARE(List(base + ".cat", "t\\??????.pck").size(), 1);
    CatArchiveHandle* archive = CatOpenArchive(P(base + ".cat").constData(), 0);
    CatFindData data;
    QVERIFY(FailedWith(CatFindFirst(archive, "*.bob", &data), CatErrNone));

    // Two searches taking turns each go on from their own place.
    CatFindData other;
    CatFind* all = CatFindFirst(archive, "*", &data);
    CatFind* packed = CatFindFirst(archive, "*.pck", &other);
    QVERIFY(all && packed);
    QCOMPARE(QByteArray(data.name), QByteArray("types\\TShips.pck"));
    QCOMPARE(QByteArray(other.name), QByteArray("types\\TShips.pck"));
    QVERIFY(CatFindNext(all, &data));
    QVERIFY(CatFindNext(packed, &other));
    QCOMPARE(QByteArray(data.name), QByteArray("types\\TLaser.txt"));
    QCOMPARE(QByteArray(other.name), QByteArray("t\\440001.pck"));
    QCOMPARE(other.size, 3u);
    QVERIFY(!CatFindNext(packed, &other));
    QVERIFY(CatFindClose(packed));

    // Bad calls are refused with their codes, and the search goes on after them.
    QVERIFY(FailedWith(CatFindNext(nullptr, &data), CatErrInvalidHandle));
    QVERIFY(FailedWith(CatFindNext(all, nullptr), CatErrBadFlags));
    QVERIFY(CatFindNext(all, &data));
    QCOMPARE(QByteArray(data.name), QByteArray("t\\440001.pck"));

    // A search whose catalog has gone is a dead handle.
    QVERIFY(CatCloseArchive(archive));
    QVERIFY(FailedWith(CatFindNext(all, &data), CatErrInvalidHandle));
    QVERIFY(CatFindClose(all));
}

void TestCatalog::largeCatalogLoadsAndLists()
{
    // Many entries: every one is listed and found again by name without
    // regard to case. How fast this goes is measured by bench_catfs.
    QTemporaryDir dir;
    const QString base = dir.filePath("big");
    QByteArray text = "big.dat\n";
    const int count = 100000;
    for (int i = 0; i < count; ++i)
        text += "objects/ships/model_" + QByteArray::number(i) + ".pbb 1\n";
    WriteFile(base + ".cat", XorCatalogBytes(text));
    WriteFile(base + ".dat", XorBytes(QByteArray(count, 'm'), 0xA7));
    CatArchiveHandle* archive = CatOpenArchive(P(base + ".cat").constData(), 0);
    QVERIFY(archive);
    CatFindData data;
    int listed = 0;
    CatFind* find = CatFindFirst(archive, "*", &data);
    for (bool more = find != nullptr; more; more = CatFindNext(find, &data))
        ++listed;
    CatFindClose(find);
    QCOMPARE(listed, count);
    for (int i = 0; i < count; i += 997) {
        const QByteArray path = P(base + ".cat::OBJECTS\\SHIPS\\MODEL_") + QByteArray::number(i) + ".PBB";
        CatFile* file = CatOpen(path.constData(), CatModeRead, 0, CatKindPlain);
        QVERIFY(file);
        char c = 0;
        QCOMPARE(CatRead(file, &c, 1), 1);
        QCOMPARE(c, 'm');
        QVERIFY(CatClose(file));
    }
    QVERIFY(CatCloseArchive(archive));
}

QTEST_GUILESS_MAIN(TestCatalog)
#include "tst_catalog.moc"
