// hwtool ships and ship as a black box: the built binary run on the sample
// game's table (plain, and packed in its catalog), on the corpus's table when
// it is there, and on broken tables.
#include "TestSupport.h"
#include "gamedata/ShipLine.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

QString SampleTable()
{
    return qEnvironmentVariable("HW_SOURCE_DIR") + "/samples/game-src/types/TShips.txt";
}

// The data lines of a table, cut here without the program's readers.
QStringList DataLines(const QString& path)
{
    QStringList lines;
    bool header = false;
    for (QString line : QString::fromUtf8(ReadFile(path)).split('\n')) {
        line.remove('\r');
        if (QString(line).remove(' ').isEmpty() || QString(line).remove(' ').startsWith('/'))
            continue;
        if (header)
            lines.append(line);
        header = true;
    }
    return lines;
}

} // namespace

class TestShipTool : public QObject
{
    Q_OBJECT
private slots:
    void listsEveryShipOfPlainAndPackedTables();
    void showsAShipAsJsonByIdAndByRow();
    void refusesUnknownShipsAndBrokenLines();
};

void TestShipTool::listsEveryShipOfPlainAndPackedTables()
{
    const QStringList lines = DataLines(SampleTable());
    const ProgramRun plain = Hwtool({"ships", SampleTable()});
    QCOMPARE(plain.code, 0);
    const QStringList rows = QString::fromUtf8(plain.out).split('\n', Qt::SkipEmptyParts);
    QCOMPARE(rows.size(), lines.size() + 1); // a heading, then one row a ship
    for (int i = 0; i < lines.size(); ++i) {
        const QStringList columns = rows[i + 1].split('\t');
        const QStringList fields = lines[i].split(';');
        QCOMPARE(columns.value(0), QString::number(i));
        QCOMPARE(columns.value(1), fields.value(fields.size() - 2)); // the id before the final ";"
        QCOMPARE(columns.value(2), fields.value(ShipLineField::ShipScene));
    }
    // The Tidewall has a turret at each position and a group for each cockpit.
    QVERIFY(rows.filter("SS_SH_SAMPLE_TIDEWALL").value(0).endsWith("\t6\t7"));

    const QString game = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    if (game.isEmpty() || !QFile::exists(game + "/01.cat"))
        QSKIP("the sample game is not built");
    const ProgramRun packed = Hwtool({"ships", game + "/01.cat::types\\TShips.pck"});
    QCOMPARE(packed.code, 0);
    QCOMPARE(packed.out, plain.out);
}

void TestShipTool::showsAShipAsJsonByIdAndByRow()
{
    const QStringList lines = DataLines(SampleTable());
    const ProgramRun byId = Hwtool({"ship", SampleTable(), "SS_SH_SAMPLE_BASTION"});
    QCOMPARE(byId.code, 0);
    const QJsonObject ship = QJsonDocument::fromJson(byId.out).object();
    const int row = ship["row"].toInt();
    QCOMPARE(Hwtool({"ship", SampleTable(), QString::number(row)}).out, byId.out);

    const QStringList fields = lines[row].split(';');
    QCOMPARE(ship["fields"]["Speed"].toInt(), fields[ShipLineField::Speed].toInt());
    QCOMPARE(ship["fields"]["Yaw"].toString(), fields[ShipLineField::Yaw]); // a float stays text
    const int tail = ship["tailIndex"].toInt();
    QCOMPARE(ship["tail"]["ShipId"].toString(), QString("SS_SH_SAMPLE_BASTION"));
    QCOMPARE(ship["tail"]["PriceNpc"].toInt(), fields[tail + ShipTailOffset::PriceNpc].toInt());
    const QJsonArray turrets = ship["turrets"].toArray();
    QCOMPARE(turrets.size(), fields[ShipLineField::CockpitCount].toInt() - 1);
    for (const QJsonValue turret : turrets) {
        const int number = turret["number"].toInt();
        QCOMPARE(turret["position"].toInt(), fields[TurretPositionField(number - 1)].toInt());
        QCOMPARE(turret["node"]["body"].toString(),
                 fields[ShipLineField::FirstCockpitBlock + 4 * number + 2]);
    }
    // Every gun of the groups is counted in GunCount.
    int guns = 0;
    for (const QJsonValue group : ship["gunGroups"].toArray())
        for (const QJsonValue entry : group["entries"].toArray())
            guns += entry["count"].toInt();
    QCOMPARE(guns, fields[ShipLineField::GunCount].toInt());

    const QString corpus = qEnvironmentVariable("HW_CORPUS_DIR") + "/x3tc/types/TShips.txt";
    if (!QFile::exists(corpus))
        QSKIP("the corpus is not there");
    // The corpus's longest line walks to its id too.
    const QStringList real = DataLines(corpus);
    int longest = 0;
    for (int i = 1; i < real.size(); ++i)
        if (real[i].size() > real[longest].size())
            longest = i;
    const ProgramRun big = Hwtool({"ship", corpus, QString::number(longest)});
    QCOMPARE(big.code, 0);
    const QJsonObject bigShip = QJsonDocument::fromJson(big.out).object();
    QCOMPARE(bigShip["id"].toString(), bigShip["tail"]["ShipId"].toString());
    QVERIFY(!bigShip["gunGroups"].toArray().isEmpty());
}

void TestShipTool::refusesUnknownShipsAndBrokenLines()
{
    QTemporaryDir dir;
    const QStringList lines = DataLines(SampleTable());
    QStringList broken = lines.mid(0, 1);
    QStringList fields = lines[5].split(';');
    fields[ShipLineField::CockpitCount] = "40"; // cockpit blocks far behind the end
    broken.append(fields.join(';'));
    fields = lines[5].split(';');
    fields[ShipLineField::FirstCockpitBlock + 4 * fields[ShipLineField::CockpitCount].toInt()] =
        "9"; // more gun groups than the line holds
    broken.append(fields.join(';'));
    broken.append("1;2;3;");
    const QString table = dir.filePath("TShips.txt");
    QVERIFY(WriteFile(table, ("48;4;\n" + broken.join('\n') + "\n").toUtf8()));

    const ProgramRun list = Hwtool({"ships", table});
    QCOMPARE(list.code, 0); // a listing shows what it can of every line
    QCOMPARE(QString::fromUtf8(list.out).count('\n'), 5);

    QCOMPARE(Hwtool({"ship", table, "0"}).code, 0);
    for (const QString& wanted : {QString("1"), QString("2"), QString("3"), QString("SS_NOT_THERE")}) {
        const ProgramRun run = Hwtool({"ship", table, wanted});
        QCOMPARE(run.code, 1);
        QVERIFY(run.out.isEmpty());
        QCOMPARE(run.err.count('\n'), 1);
        QVERIFY2(run.err.startsWith("hwtool: ship: "), run.err.constData());
    }
    QVERIFY(Hwtool({"ship", table, "1"}).err.contains("cockpit count"));
    QVERIFY(Hwtool({"ship", table, "2"}).err.contains("gun groups"));
    QCOMPARE(Hwtool({"ships", dir.filePath("absent.txt")}).code, 1);
}

QTEST_GUILESS_MAIN(TestShipTool)
#include "tst_shiptool.moc"
