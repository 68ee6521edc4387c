// A save of an installed ship killed at any moment: afterwards the registry,
// the mod catalog and the picture are all old or all new, or a pending change
// is there that the next start completes to the new state.
#include "TestSupport.h"
#include "catfs/CatDriver.h"
#include "catfs/transfer/GameFile.h"
#include "deploy/InstallJournal.h"
#include "package/InstalledShips.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

struct GameState
{
    QByteArray registry;
    QMap<QString, QByteArray> catalog; // entries, unpacked
    QByteArray picture;

    bool operator==(const GameState&) const = default;
};

GameState ReadState(const QString& gameDir)
{
    GameState state;
    state.registry = ReadFile(QDir(gameDir).filePath(InstalledShipsPath));
    state.picture = ReadFile(QDir(gameDir).filePath("ShipInstall/ShipPics/Test-Kill.bin"));
    QTemporaryDir out;
    for (const GameFileListEntry& entry : GameFileList(ModCatalogPath(gameDir))) {
        GameFileExtract(ModCatalogPath(gameDir) + "::" + entry.name, out.filePath("x"), false, false);
        state.catalog[entry.name] = ReadFile(out.filePath("x"));
    }
    return state;
}

pid_t SpawnSave(const QString& gameDir, const QString& chosen, int variant)
{
    QList<QByteArray> args = {INSTALLEDSHIP_SAVE_HELPER, gameDir.toLocal8Bit(), chosen.toLocal8Bit(),
                              QByteArray::number(variant)};
    std::vector<char*> argv;
    for (QByteArray& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    pid_t pid = -1;
    return posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ) == 0 ? pid : -1;
}

int Finish(pid_t pid)
{
    int status = 0;
    return waitpid(pid, &status, 0) == pid && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void WriteChosen(const QString& path, const QByteArray& bytes, qint64 time)
{
    WriteFile(path, bytes);
    QFile file(path);
    file.open(QIODevice::ReadWrite);
    file.setFileTime(QDateTime::fromSecsSinceEpoch(time), QFileDevice::FileModificationTime);
}

// A game directory with the ship Test by Kill, not yet with files, and the
// ship Big by Other, whose large model lies in the mod catalog.
bool MakeGame(const QString& gameDir)
{
    InstalledShips registry;
    registry.ModName = "Crash";
    InstalledShip kill, other;
    kill.Record.Name = "Test";
    kill.Record.Author = "Kill";
    kill.Record.Data = "0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;0;ships\\k\\scene;cockpits\\k\\cp_1;SS_K";
    other.Record.Name = "Big";
    other.Record.Author = "Other";
    for (InstalledShip* ship : {&kill, &other})
        ship->Record.Enabled = ship->Record.GlobalEnabled = true;
    other.Record.Models.append({1, 1000000, "objects/o/big.bod", {}, false});
    registry.Ships = {other, kill};

    const QString big = gameDir + "/big.bod";
    const QByteArray catalog = QString(ModCatalogPath(gameDir)).replace('/', '\\').toLocal8Bit();
    QFile source(big);
    const bool made = WriteFile(gameDir + "/x3.exe") && WriteFile(big, RandomBytes(1000000, 7)) &&
                      QDir(gameDir).mkpath("mods") &&
                      CatCloseArchive(CatOpenArchive(catalog.constData(), 1)) &&
                      GameFileCopyIn(source, ModCatalogPath(gameDir) + "::objects/o/big.bod", true) &&
                      WriteInstalledShips(gameDir, registry);
    QFile::remove(big);
    return made;
}

} // namespace

class TestInstalledShipCrash : public QObject
{
    Q_OBJECT
private slots:
    void killedSavesLeaveOldOrNewState();
};

void TestInstalledShipCrash::killedSavesLeaveOldOrNewState()
{
    QTemporaryDir dir;
    const QString game = dir.filePath("game");
    const QString chosen = dir.filePath("chosen");
    QVERIFY(MakeGame(game));
    // Two variants of the ship's files: the scene keeps its name, the cockpit
    // changes it, and the picture is replaced where it stands.
    for (int variant : {1, 2}) {
        const QString v = QString::number(variant);
        WriteChosen(chosen + "/scene" + v + ".bod", RandomBytes(200000 + 50000 * variant, variant),
                    100 * variant);
        WriteChosen(chosen + "/cockpit" + v + ".bod", RandomBytes(150000 - 40000 * variant, 10 + variant),
                    100 * variant);
        WriteChosen(chosen + "/picture" + v + ".bin", RandomBytes(20000 * variant, 20 + variant),
                    100 * variant);
    }

    // The two states, from complete saves, and how long the quickest save took.
    GameState states[3];
    qint64 saveMicros = std::numeric_limits<qint64>::max();
    for (int variant : {1, 2, 1, 2}) {
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(Finish(SpawnSave(game, chosen, variant)), 0);
        saveMicros = qMin(saveMicros, timer.nsecsElapsed() / 1000);
        states[variant] = ReadState(game);
    }
    saveMicros = qMax<qint64>(2000, saveMicros);
    QVERIFY(states[1].catalog.size() == 3 && states[2].catalog.size() == 3 && !(states[1] == states[2]));

    QRandomGenerator random(20261123);
    int current = 2, iterations = 0, undecided = 0, completed = 0, oldStates = 0, newStates = 0;
    QElapsedTimer total;
    total.start();
    for (; total.elapsed() < 12000 && iterations < 200; ++iterations) {
        const int target = 3 - current;
        const pid_t pid = SpawnSave(game, chosen, target);
        QVERIFY(pid > 0);
        usleep(useconds_t(random.bounded(quint32(saveMicros * 5 / 4))));
        kill(pid, SIGKILL);
        Finish(pid);

        // The registry is replaced as a whole at any moment.
        const QByteArray registry = ReadFile(QDir(game).filePath(InstalledShipsPath));
        QVERIFY(registry == states[current].registry || registry == states[target].registry);

        const bool decided = QFile::exists(QDir(game).filePath(PendingInstallDir) + "/journal.json");
        const bool pending = QFileInfo(QDir(game).filePath(PendingInstallDir)).isDir();
        const InstallOutcome finished = FinishPendingInstall(game);
        QCOMPARE(finished, decided ? InstallOutcome::Done
                                   : (pending ? InstallOutcome::Discarded : InstallOutcome::NothingPending));
        QVERIFY(!QFile::exists(QDir(game).filePath(PendingInstallDir)));
        const GameState now = ReadState(game);
        if (decided) {
            QVERIFY2(now == states[target],
                     qPrintable(QString("kill %1: a decided save was not completed").arg(iterations)));
            ++completed;
        } else {
            QVERIFY2(now == states[current] || now == states[target],
                     qPrintable(QString("kill %1 left a state neither old nor new").arg(iterations)));
        }
        undecided += pending && !decided;
        const bool becameNew = now == states[target];
        oldStates += !becameNew;
        newStates += becameNew;
        current = becameNew ? target : current;
    }
    qInfo("%d kills: %d left the old state, %d the new one; %d were completed at the next start, %d staged "
          "copies were discarded",
          iterations, oldStates, newStates, completed, undecided);
    QVERIFY(iterations >= 20);
    QVERIFY2(completed > 0, "no kill landed after a save was decided");
    QVERIFY(oldStates > 0 && newStates > completed);
}

QTEST_GUILESS_MAIN(TestInstalledShipCrash)
#include "tst_installedship_crash.moc"
