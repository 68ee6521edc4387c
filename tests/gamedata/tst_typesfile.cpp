#include "TestSupport.h"
#include "catfs/CatDriver.h"
#include "catfs/transfer/GameFile.h"
#include "gamedata/GroupedTables.h"
#include "gamedata/TypesFile.h"

#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

// Makes an empty catalog pair in `dir`.
bool MakeCatalog(const QString& dir, const QString& name)
{
    CatArchiveHandle* archive = CatOpenArchive(QString(dir + "/" + name).toLocal8Bit().constData(), 1);
    return archive && CatCloseArchive(archive);
}

// Stores `content` packed as types\<table>.pck in the catalog.
bool AddTable(const QString& catalog, const QString& table, const QByteArray& content, const QString& scratch)
{
    const QString source = scratch + "/" + table + ".txt";
    QFile file(source);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return false;
    file.close();
    QFile input(source);
    return GameFileCopyIn(input, catalog + "::types\\" + table + ".txt", true);
}

} // namespace

class TestTypesFile : public QObject
{
    Q_OBJECT
private slots:
    void readingSkipsCommentsAndBlankLines();
    void missingFileIsAnEmptyTable();
    void catalogScanStopsAtTheFirstGap();
    void newestCatalogWinsAndWorkFileGoes();
    void corpusShipTableReads();
    void groupedTables();
};

void TestTypesFile::readingSkipsCommentsAndBlankLines()
{
    const TypesTable table = ParseTypesText("// made by hand\r\n"
                                            "   / indented comment\n"
                                            "   \n"
                                            "\n"
                                            "48;3;\n"
                                            "a;b c;\n"
                                            "x / y;z;\n"
                                            "1;2;\n"
                                            "3;4;\r\n"
                                            "5;6;");
    QCOMPARE(table.header, QString("48;3;"));
    QCOMPARE(table.records, (QStringList{"a;b c;", "x / y;z;", "1;2;", "3;4;", "5;6;"}));
    QVERIFY(IsSkippedTypesLine("   "));
    QVERIFY(IsSkippedTypesLine(" /x"));
    QVERIFY(!IsSkippedTypesLine("\t/x")); // only blanks are taken out for the test
}

void TestTypesFile::missingFileIsAnEmptyTable()
{
    const TypesTable table = ReadTypesFile("/nonexistent/TShips.txt");
    QVERIFY(table.header.isEmpty());
    QVERIFY(table.records.isEmpty());
}

void TestTypesFile::catalogScanStopsAtTheFirstGap()
{
    QTemporaryDir game;
    QVERIFY(MakeCatalog(game.path(), "01.cat"));
    QVERIFY(MakeCatalog(game.path(), "02.CAT")); // a copy from Windows may spell it so
    QVERIFY(MakeCatalog(game.path(), "04.cat"));
    QCOMPARE(HighestCatalog(game.path()), 2);
    QCOMPARE(CatalogName(7), QString("07.cat"));
    QCOMPARE(CatalogName(12), QString("12.cat"));

    // A table only in 04.cat is out of reach behind the gap.
    QVERIFY(AddTable(game.path() + "/04.cat", "TLaser", "1;1;\nlaser;\n", game.path()));
    const QString target = game.path() + "/TLaser.txt";
    QVERIFY(!FetchTypesFile(game.path(), "TLaser", target));
    QCOMPARE(HighestCatalog(game.path() + "/missing"), 0);
}

void TestTypesFile::newestCatalogWinsAndWorkFileGoes()
{
    QTemporaryDir game;
    QVERIFY(MakeCatalog(game.path(), "01.cat"));
    QVERIFY(MakeCatalog(game.path(), "02.cat"));
    QVERIFY(MakeCatalog(game.path(), "03.cat"));
    QVERIFY(AddTable(game.path() + "/01.cat", "TShields", "// old\n1;1;\nold shield;\n", game.path()));
    QVERIFY(AddTable(game.path() + "/02.cat", "TShields", "1;2;\nnew shield;\nsecond;\n", game.path()));
    QVERIFY(AddTable(game.path() + "/01.cat", "TMissiles", "1;1;\nonly in one;\n", game.path()));

    const QString work = game.path() + "/work/TShields.txt";
    QDir().mkpath(game.path() + "/work");
    const TypesTable shields = LoadGameTable(game.path(), "TShields", work);
    QCOMPARE(shields.records, (QStringList{"new shield;", "second;"}));
    QVERIFY2(!QFile::exists(work), "the work file is deleted after reading");

    const TypesTable missiles = LoadGameTable(game.path(), "TMissiles", work);
    QCOMPARE(missiles.records, QStringList{"only in one;"});

    const TypesTable none = LoadGameTable(game.path(), "TCockpits", work);
    QVERIFY(none.records.isEmpty());
    QVERIFY(!QFile::exists(work));
}

void TestTypesFile::corpusShipTableReads()
{
    const QString path = qEnvironmentVariable("HW_CORPUS_DIR") + "/x3tc/types/TShips.txt";
    if (!QFile::exists(path))
        QSKIP("the corpus is not beside the repository");
    const TypesTable table = ReadTypesFile(path);
    QCOMPARE(table.records.size(), 427);
    QVERIFY(table.header.startsWith("50;"));
}

void TestTypesFile::groupedTables()
{
    // A comment, a blank line, a section of 0, a count that is text, and a
    // count larger than what follows.
    const QString dummies = "// Dummies\r\nSDTYPE_DOCK;2;\r\n  \r\nd1;x;\r\nd2;y;\r\nSDTYPE_ANIMATED;0;\r\n"
                            "SDTYPE_GUN;one;\r\nSDTYPE_GUN;3;\r\ng1;\r\n / not a comment;\r\n";
    const QList<DummySection> read = ParseDummies(dummies);
    QCOMPARE(read.size(), 4);
    QCOMPARE(read[0].Name, QString("SDTYPE_DOCK"));
    QCOMPARE(read[0].Lines, QStringList({"d1;x;", "d2;y;"}));
    QVERIFY(read[1].Lines.isEmpty() && read[2].Lines.isEmpty());
    QCOMPARE(GunDummyLines(read), QStringList({"g1;", " / not a comment;"}));

    const QString components =
        "SCTYPE_LASER;2;\ngroupA;2;\na1;\na2;\ngroupB;0;\nSCTYPE_DOCK;1;\ngroupC;1;\nc1;\n";
    const QList<ComponentSection> comps = ParseComponents(components);
    QCOMPARE(comps.size(), 2);
    QCOMPARE(comps[0].Groups.size(), 2);
    QCOMPARE(comps[0].Groups[0].Id, QString("groupA"));
    QCOMPARE(comps[0].Groups[0].Lines, QStringList({"a1;", "a2;"}));
    QVERIFY(comps[0].Groups[1].Lines.isEmpty());
    QCOMPARE(comps[1].Groups[0].Lines, QStringList({"c1;"}));
    QVERIFY(ReadDummiesFile("/no/such/file").isEmpty());
}

QTEST_GUILESS_MAIN(TestTypesFile)
#include "tst_typesfile.moc"
