// hwtool balance as a black box: the sample game's table as text and in its
// catalog gives the same report, which is the balance model's; bad input ends
// with a reason and a failure status.
#include "TestSupport.h"
#include "balance/BalanceReport.h"
#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kSource = qEnvironmentVariable("HW_SOURCE_DIR");
const QString kProfile = kSource + "/data/Profiles/m3_fighter.xbp";
const QString kTable = kSource + "/samples/game-src/types/TShips.txt";

} // namespace

class TestBalanceTool : public QObject
{
    Q_OBJECT
private slots:
    void reportIsTheModels();
    void badInputFails();
};

void TestBalanceTool::reportIsTheModels()
{
    const QString id = "SS_SH_SAMPLE_LANCE_RAIDER";
    const ProgramRun run = Hwtool({"balance", kProfile, kTable, id});
    QCOMPARE(run.code, 0);
    const QJsonObject json = QJsonDocument::fromJson(run.out).object();
    const BalanceProfile profile = *LoadProfile(kProfile);
    QString line;
    for (const QString& record : ReadTypesFile(kTable).records)
        if (ShipLineId(record) == id)
            line = record;
    const BalanceReport report = ReportBalance(profile, line);

    QCOMPARE(json["Fits"].toBool(), true);
    QCOMPARE(json["Average"].toInt(), report.display.average);
    QCOMPARE(json["Properties"]["Speed"]["Line"].toInteger(), 66000);
    QCOMPARE(json["Properties"]["Speed"]["Max"].toInteger(), profile.SpeedMax);
    for (const BalanceModeResult& mode : report.modes) {
        const QJsonObject result = json["AutoBalance"][BalanceModeName(mode.mode)].toObject();
        QCOMPARE(result["Line"].toString(), mode.line);
        QCOMPARE(result["Steps"].toInt(), mode.run.steps);
        QCOMPARE(result["Stop"].toString(), QLatin1String(BalanceStopName(mode.run.stop)));
    }
    // Another class's ship is reported all the same, marked as not fitting.
    QCOMPARE(QJsonDocument::fromJson(Hwtool({"balance", kProfile, kTable, "SS_SH_SAMPLE_DART"}).out)["Fits"],
             false);

    const QString game = qEnvironmentVariable("HW_SAMPLE_GAME_DIR");
    if (!QFile::exists(game + "/01.cat"))
        QSKIP("the sample game is not built");
    QCOMPARE(Hwtool({"balance", kProfile, game + "/01.cat", id}).out, run.out);
}

void TestBalanceTool::badInputFails()
{
    QTemporaryDir dir;
    QVERIFY(WriteFile(dir.filePath("bad.xbp"), "Class: 2\nSpeed: 1;2\n"));
    QVERIFY(WriteFile(dir.filePath("empty.cat"), "") && WriteFile(dir.filePath("empty.dat"), ""));
    const QList<QPair<QStringList, QString>> cases = {
        {{"balance", dir.filePath("bad.xbp"), kTable, "SS_SH_SAMPLE_LANCE"}, "not a balance profile"},
        {{"balance", kProfile, kTable, "SS_SH_NONE"}, "no ship has the id"},
        {{"balance", kProfile, dir.filePath("missing.txt"), "SS_SH_SAMPLE_LANCE"}, "cannot open"},
        {{"balance", kProfile, dir.filePath("empty.cat"), "SS_SH_SAMPLE_LANCE"}, "holds no"},
    };
    for (const auto& [arguments, reason] : cases) {
        const ProgramRun run = Hwtool(arguments);
        QCOMPARE(run.code, 1);
        QVERIFY2(run.err.contains(reason.toUtf8()) && run.out.isEmpty(), run.err.constData());
    }
    QCOMPARE(Hwtool({"balance", kProfile, kTable}).code, 2);
}

QTEST_GUILESS_MAIN(TestBalanceTool)
#include "tst_balancetool.moc"
