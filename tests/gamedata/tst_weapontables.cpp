#include "TestSupport.h"
#include "gamedata/WeaponTables.h"
#include "shipconfig/DConfigShip.h"

#include <QFile>
#include <QtTest>

#include <limits>

namespace {

// A laser table of `rows` data rows whose field 6 is 100 + the row number.
QString LaserText(int rows)
{
    QString text = "48;1;\n";
    for (int i = 0; i < rows; ++i)
        text += QString("%1;0;0;0;0;SG;%2;0;\n").arg(i).arg(100 + i);
    return text;
}

} // namespace

class TestWeaponTables : public QObject
{
    Q_OBJECT
private slots:
    void commentsBetweenRowsTakeNoBit();
    void thirtySecondRowHasTheSignBitAndLaterRowsNone();
    void dialogLoadsTheSampleGameTablesAgainAfterADirectoryChange();
};

void TestWeaponTables::commentsBetweenRowsTakeNoBit()
{
    const TypesTable table = ParseTypesText("// lasers\n"
                                            "48;2;\n"
                                            "1;0;0;0;0;SG_A;8101;\n"
                                            "// a comment between rows\n"
                                            "   / and one behind blanks\n"
                                            "\n"
                                            "2;0;0;0;0;SG_B;8111;\n"
                                            "3;0;0;0;0;SG_C;no number;\n"
                                            "4;0;0;0;0;SG_D; 8131 ;\n");
    const QList<WeaponRow> rows = WeaponRows(table);
    QCOMPARE(rows.size(), 4); // more rows than the header says
    QList<int> bits, ids;
    for (const WeaponRow& row : rows) {
        bits.append(row.Bit);
        ids.append(row.TextId);
        QVERIFY(row.Name.isEmpty());
    }
    QCOMPARE(bits, (QList<int>{1, 2, 4, 8}));
    QCOMPARE(ids, (QList<int>{8101, 8111, 0, 8131}));

    const QList<ShieldRow> shields = ShieldRows(table);
    QCOMPARE(shields.size(), 4);
    QCOMPARE(shields[1].TextId, 8111);
}

void TestWeaponTables::thirtySecondRowHasTheSignBitAndLaterRowsNone()
{
    const QList<WeaponRow> rows = WeaponRows(ParseTypesText(LaserText(34)));
    QCOMPARE(rows.size(), 34);
    QCOMPARE(rows[30].Bit, int32_t(1) << 30);
    QCOMPARE(rows[31].Bit, std::numeric_limits<int32_t>::min());
    QCOMPARE(rows[32].Bit, 0);
    QCOMPARE(rows[33].Bit, 0);
    QCOMPARE(rows[33].TextId, 133); // such a row is still listed
    // The 32 rows with a bit fill the whole mask, each bit exactly once.
    uint32_t mask = 0;
    for (int i = 0; i < 32; ++i) {
        QCOMPARE(mask & uint32_t(rows[i].Bit), 0u);
        mask |= uint32_t(rows[i].Bit);
    }
    QCOMPARE(mask, 0xFFFFFFFFu);
}

void TestWeaponTables::dialogLoadsTheSampleGameTablesAgainAfterADirectoryChange()
{
    const QString sample = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    if (sample.isEmpty() || !QFile::exists(sample + "/01.cat"))
        QSKIP("the sample game is not built");
    TempHome home;
    QTemporaryDir game, other;
    QVERIFY(CopyTree(sample, game.path()));

    DConfigShip dialog;
    dialog.LoadShields(); // no game directory yet: nothing, and no stray read
    QVERIFY(dialog.ShieldTable.isEmpty());

    dialog.GameDirs = QStringList{game.path()};
    dialog.LoadShields();
    dialog.LoadLasers();
    dialog.LoadMissiles();
    // 02.cat overrides the shields of 01.cat with six rows.
    QCOMPARE(dialog.ShieldTable.size(), 6);
    QCOMPARE(dialog.ShieldTable.last().TextId, 8251);
    QCOMPARE(dialog.LaserTable.size(), 10);
    QCOMPARE(dialog.LaserTable.last().Bit, 512);
    QCOMPARE(dialog.LaserTable.last().TextId, 8191);
    QCOMPARE(dialog.MissileTable.size(), 6);
    QCOMPARE(dialog.MissileTable.first().TextId, 8301);
    for (const char* work : {"TShields.txt", "TLaser.txt", "TMissiles.txt"})
        QVERIFY2(!QFile::exists(home.filePath(work)), work);

    // A game directory without catalogs, then back: each load
    // starts afresh, and the bits start at 1 again.
    QVERIFY(WriteFile(other.filePath("x3.exe")));
    dialog.GameDirs.prepend(other.path());
    dialog.LoadLasers();
    dialog.LoadShields();
    QVERIFY(dialog.LaserTable.isEmpty());
    QVERIFY(dialog.ShieldTable.isEmpty());
    dialog.GameDirs.removeFirst();
    dialog.LoadLasers();
    QCOMPARE(dialog.LaserTable.size(), 10);
    QCOMPARE(dialog.LaserTable.first().Bit, 1);
}

QTEST_MAIN(TestWeaponTables)
#include "tst_weapontables.moc"
