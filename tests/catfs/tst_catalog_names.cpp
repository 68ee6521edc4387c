// Entry names that a path would spell differently ("a\", ".\.", "b\..\c"):
// the name a catalog lists is always the name that opens that entry, and the
// entry part of a path never reaches out of its catalog.

#include "catfs/driver/CatalogText.h"
#include "driver_testutil.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace drivertest;

namespace {

struct Listed
{
    QByteArray name;
    quint32 size;
};

QList<Listed> List(const QByteArray& cat)
{
    QList<Listed> listed;
    CatArchiveHandle* archive = CatOpenArchive(cat.constData(), 0);
    if (!archive)
        return listed;
    CatFindData data{};
    if (CatFind* find = CatFindFirst(archive, "*", &data)) {
        do
            listed.append({QByteArray(data.name), data.size});
        while (CatFindNext(find, &data));
        CatFindClose(find);
    }
    CatCloseArchive(archive);
    return listed;
}

QByteArray P(const QString& path)
{
    return QDir::toNativeSeparators(path).toUtf8();
}

} // namespace

class TestCatalogNames : public QObject
{
    Q_OBJECT

private slots:
    void listedNamesOpenTheirOwnEntry_data();
    void listedNamesOpenTheirOwnEntry();
    void namesThatMeetTakeTheFirst();
    void entryPathsStayInsideTheCatalog();
    void rewrittenCatalogKeepsEveryEntry();
    void oddNamesAreFoundAtEveryPosition();
};

void TestCatalogNames::listedNamesOpenTheirOwnEntry_data()
{
    QTest::addColumn<QByteArray>("inFile");
    QTest::addColumn<QByteArray>("listed");
    QTest::newRow("trailing separator") << QByteArray("a/") << QByteArray("a");
    QTest::newRow("dot components") << QByteArray("./x/.") << QByteArray("x");
    QTest::newRow("only dots") << QByteArray("./.") << QByteArray("");
    QTest::newRow("doubled separator") << QByteArray("x//y") << QByteArray("x\\y");
    QTest::newRow("leading separator") << QByteArray("/lead") << QByteArray("lead");
    QTest::newRow("dot-dot inside") << QByteArray("b/../c") << QByteArray("c");
    QTest::newRow("dot-dot above the root") << QByteArray("t\\..\\..\\v") << QByteArray("v");
    QTest::newRow("plain name stays") << QByteArray("dir/.hidden") << QByteArray("dir\\.hidden");
}

void TestCatalogNames::listedNamesOpenTheirOwnEntry()
{
    QFETCH(QByteArray, inFile);
    QFETCH(QByteArray, listed);
    QTemporaryDir dir;
    WritePair(dir.filePath("01"), {{"keep", "kept bytes"}, {inFile, "odd entry's bytes"}});
    const QByteArray cat = P(dir.filePath("01.cat"));

    const QList<Listed> entries = List(cat);
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries[1].name, listed);
    QCOMPARE(entries[1].size, quint32(17));
    // By the listed name and by the name as the file spells it.
    for (const QByteArray& name : {listed, QByteArray(inFile).replace('/', '\\')}) {
        bool ok = false;
        QCOMPARE(DriverRead(cat + "::" + name, &ok, CatKindPlain), QByteArray("odd entry's bytes"));
        QVERIFY(ok);
    }
    QCOMPARE(DriverRead(cat + "::keep"), QByteArray("kept bytes"));
}

void TestCatalogNames::namesThatMeetTakeTheFirst()
{
    // "a\" and "A" become one name with "a": all three are listed, and the
    // name opens the first, as with any names that differ only in case.
    QTemporaryDir dir;
    WritePair(dir.filePath("01"), {{"a", "first"}, {"a/", "second!"}, {"./A", "third!!!"}});
    const QByteArray cat = P(dir.filePath("01.cat"));
    const QList<Listed> entries = List(cat);
    QCOMPARE(entries.size(), 3);
    QCOMPARE(entries[1].name, QByteArray("a"));
    QCOMPARE(entries[2].name, QByteArray("A"));
    QCOMPARE(DriverRead(cat + "::a\\"), QByteArray("first"));
    QCOMPARE(DriverRead(cat + "::.\\A"), QByteArray("first"));
}

void TestCatalogNames::entryPathsStayInsideTheCatalog()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath("game"));
    WritePair(dir.filePath("game/01"), {{"t/a.txt", "entry"}});
    QVERIFY(WriteFile(dir.filePath("victim.txt"), "disk file"));
    const QByteArray escaping = P(dir.filePath("game/01.cat")) + "::t\\..\\..\\..\\victim.txt";

    QVERIFY(!CatOpen(escaping.constData(), CatModeRead, 0, CatKindAuto));
    QCOMPARE(CatLastError(), uint32_t(CatErrNoEntry));
    // A write creates the entry in the catalog, under the name it resolves to.
    QVERIFY(DriverWrite(escaping, "new entry", CatKindPlain));
    QCOMPARE(ReadFile(dir.filePath("victim.txt")), QByteArray("disk file"));
    QCOMPARE(DriverRead(P(dir.filePath("game/01.cat")) + "::victim.txt"), QByteArray("new entry"));
    QVERIFY(CatDelete(escaping.constData()));
    QVERIFY(QFile::exists(dir.filePath("victim.txt")));
    QCOMPARE(ReadCatalog(dir.filePath("game/01.cat")).size(), 1);
}

void TestCatalogNames::rewrittenCatalogKeepsEveryEntry()
{
    // A change writes the catalog again with the names as listed; every
    // entry keeps its bytes.
    QTemporaryDir dir;
    WritePair(dir.filePath("01"), {{"s/./one/", "111"}, {"s//two", "2222"}, {"../three", "33"}});
    const QByteArray cat = P(dir.filePath("01.cat"));
    QVERIFY(DriverWrite(cat + "::four", "4", CatKindPlain));

    const QList<Line> lines = ReadCatalog(dir.filePath("01.cat"));
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lines[0].name, QByteArray("s/one"));
    QCOMPARE(lines[1].name, QByteArray("s/two"));
    QCOMPARE(lines[2].name, QByteArray("three"));
    QCOMPARE(DriverRead(cat + "::s\\one"), QByteArray("111"));
    QCOMPARE(DriverRead(cat + "::s\\two"), QByteArray("2222"));
    QCOMPARE(DriverRead(cat + "::three"), QByteArray("33"));
    QCOMPARE(DriverRead(cat + "::four"), QByteArray("4"));
}

void TestCatalogNames::oddNamesAreFoundAtEveryPosition()
{
    // The decoder looks for odd names in blocks of 64 bytes and pieces of
    // 4096: a padding line moves each across every boundary.
    using namespace catfs;
    const QList<QPair<QByteArray, QByteArray>> odd = {
        {"a/", "a"}, {"/b", "b"}, {"c/.", "c"}, {"e//f", "e\\f"}};
    for (const CatalogDecoder decoder : {CatalogDecoder::Best, CatalogDecoder::Portable}) {
        for (const auto& [inFile, canonical] : odd) {
            for (int pad = 1; pad <= 4200; ++pad) {
                const QByteArray plain = "01.dat\n" + QByteArray(pad, 'p') + " 1\n" + inFile + " 2\n";
                const QByteArray scrambled = XorCatalogBytes(plain);
                std::vector<char> text(scrambled.begin(), scrambled.end());
                text.resize(text.size() + kCatalogTextSlack);
                std::string dataName;
                CatEntryList entries;
                QCOMPARE(DecodeCatalogText(text.data(), size_t(plain.size()), dataName, entries, decoder),
                         uint32_t(CatErrNone));
                QCOMPARE(entries.size(), size_t(2));
                QCOMPARE(QByteArray(text.data() + entries[1].nameOffset, entries[1].nameLength), canonical);
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestCatalogNames)
#include "tst_catalog_names.moc"
