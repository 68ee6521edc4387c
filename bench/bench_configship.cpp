// Opening the ship configuration dialog (Customize Ship) on the largest ship
// of the sample game and of the corpus's TShips table, against loading the
// same table and ship through `hwtool ship` in the same run.
//
//     bench_configship [--reps N]
//
// "open" runs CustomiseShip on the sample game as the main window does (the
// game's tables, language page, cockpits, gun bodies and the ship's scene are
// read anew each time) up to the dialog being shown and painted once; the
// reference is one `hwtool ship TABLE ID` process. Each time is the best of N
// runs. The target is an open of at most 150 ms; the ratio says what the
// dialog costs beyond reading the table at all.
#include "BenchTiming.h"
#include "gamedata/ShipLineEdit.h"
#include "gamedata/TypesFile.h"
#include "language/UiTexts.h"
#include "shipconfig/CustomiseShip.h"
#include "shipconfig/DConfigShip.h"
#include "shipconfig/ShipFormulas.h"

#include <QApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QWindow>

#include <cstdio>
#include <cstring>

namespace {

constexpr double kTargetMs = 150.0;

struct Ship
{
    QString label;
    QString table; // for hwtool: a file or a catalog entry
    QString line;
    QString scene;
};

// The longest line of a table: the most blocks, groups and entries.
QString LongestLine(const QStringList& lines)
{
    QString longest;
    for (const QString& line : lines)
        if (line.size() > longest.size())
            longest = line;
    return longest;
}

// One open, up to the first paint; -1 when the dialog did not show.
double OpenSeconds(const Ship& ship, const QStringList& texts, const QList<IdName>& none)
{
    QElapsedTimer timer;
    timer.start();
    double shown = -1;
    CustomiseRequest request;
    request.uiText = &texts;
    request.shipLine = ship.line;
    request.sceneFile = ship.scene;
    request.baseLanguage = "44";
    request.gameDirs = {HW_SAMPLE_GAME_DIR};
    request.classes = &none;
    request.variants = &none;
    request.run = [&](DConfigShip& dialog) {
        dialog.show();
        QElapsedTimer wait;
        wait.start();
        while ((!dialog.windowHandle() || !dialog.windowHandle()->isExposed()) && wait.elapsed() < 5000)
            QApplication::processEvents();
        dialog.repaint();
        if (dialog.windowHandle() && dialog.windowHandle()->isExposed())
            shown = timer.nsecsElapsed() / 1e9;
        return int(QDialog::Rejected);
    };
    CustomiseShip(request);
    return shown;
}

bool RunTool(const Ship& ship)
{
    QProcess tool;
    tool.start(QString(HW_BIN_DIR) + "/hwtool", {"ship", ship.table, ShipLineId(ship.line)});
    return tool.waitForFinished(60000) && tool.exitStatus() == QProcess::NormalExit && tool.exitCode() == 0 &&
           !tool.readAllStandardOutput().isEmpty();
}

} // namespace

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    int reps = 5;
    for (int i = 1; i + 1 < argc; ++i)
        if (std::strcmp(argv[i], "--reps") == 0)
            reps = std::max(1, std::atoi(argv[i + 1]));

    // A private program directory for the work files.
    QTemporaryDir home;
    qputenv("HULLWRIGHT_HOME", home.path().toLocal8Bit());
    const QString game = HW_SAMPLE_GAME_DIR;
    if (!QFile::exists(game + "/01.cat")) {
        std::printf("bench_configship: the sample game is not built at %s\n", qPrintable(game));
        return 1;
    }

    QList<Ship> ships;
    const QString sampleTable = QString(HW_SOURCE_DIR) + "/samples/game-src/types/TShips.txt";
    const QString sampleLine = LongestLine(ReadTypesFile(sampleTable).records);
    const QString sceneBase = ShipFormulas::SceneBaseOf(ShipField(sampleLine, ShipLineField::ShipScene));
    ships.append({"sample game, " + ShipLineId(sampleLine), game + "/01.cat::types\\TShips.pck", sampleLine,
                  QString(HW_SOURCE_DIR) + "/samples/game-src/objects/ships/sample/" + sceneBase + ".bod"});
    const QString corpusTable = QString(HW_CORPUS_DIR) + "/x3tc/types/TShips.txt";
    if (QFile::exists(corpusTable)) {
        const QString corpusLine = LongestLine(ReadTypesFile(corpusTable).records);
        ships.append({"corpus, " + ShipLineId(corpusLine), corpusTable, corpusLine,
                      QString(HW_CORPUS_DIR) + "/x3tc/objects/cut/00749.bod"});
    } else {
        std::printf("corpus not found at %s: the sample game's ship only\n", qPrintable(corpusTable));
    }

    const QStringList texts = PlaceholderUiTexts(UiTextCount);
    const QList<IdName> none;
    int status = 0;
    for (const Ship& ship : ships) {
        double best = 1e30;
        for (int i = 0; i < reps && best >= 0; ++i)
            best = std::min(best, OpenSeconds(ship, texts, none));
        const double tool = BestSeconds(reps, [&] { return RunTool(ship); });
        if (tool < 0 || best < 0) {
            std::printf("%s: a run failed\n", qPrintable(ship.label));
            status = 1;
            continue;
        }
        std::printf("%s (%lld fields, %d turrets, %d gun groups):\n", qPrintable(ship.label),
                    ship.line.count(';') + 1LL, int(TurretsOf(ship.line).size()),
                    int(LayoutOf(ship.line).groups.size()));
        std::printf("  dialog shown      %8.1f ms   (target %.0f ms)\n", best * 1e3, kTargetMs);
        std::printf("  hwtool ship       %8.1f ms\n", tool * 1e3);
        std::printf("  ratio open/tool   %8.2f   %s\n", best / tool,
                    best * 1e3 <= kTargetMs ? "ok" : "OVER TARGET");
        if (best * 1e3 > kTargetMs)
            status = 1;
    }
    return status;
}
