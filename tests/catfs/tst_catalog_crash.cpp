// A commit killed at any moment leaves a catalog that opens and in which every
// entry reads back as its old or its new content.

#include "driver_crash_content.h"
#include "driver_testutil.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <cstring>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

using namespace drivertest;

namespace {

pid_t Spawn(const QList<QByteArray>& args)
{
    QList<QByteArray> all = {QByteArray(DRIVER_COMMIT_HELPER)};
    all += args;
    std::vector<char*> argv;
    for (QByteArray& arg : all)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    pid_t pid = -1;
    if (posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ) != 0)
        return -1;
    return pid;
}

QByteArray Content(const QByteArray& name, quint32 seed, quint32 size)
{
    const std::string bytes = CrashContent(name.toStdString(), seed, size);
    return QByteArray(bytes.data(), qsizetype(bytes.size()));
}

// What the catalog holds, read through the driver (which completes a pending
// change first).
bool ReadAll(const QByteArray& cat, QMap<QByteArray, QByteArray>& entries)
{
    entries.clear();
    CatArchiveHandle* archive = CatOpenArchive(cat.constData(), 0);
    if (!archive)
        return false;
    QList<QByteArray> names;
    CatFindData data;
    if (CatFind* find = CatFindFirst(archive, "*", &data)) {
        do
            names.append(QByteArray(data.name));
        while (CatFindNext(find, &data));
        CatFindClose(find);
    }
    bool ok = true;
    for (const QByteArray& name : names) {
        bool read = false;
        entries[name] = DriverRead(cat + "::" + name, &read, CatKindPlain);
        ok = ok && read;
    }
    return CatCloseArchive(archive) && ok;
}

} // namespace

class TestCatalogCrash : public QObject
{
    Q_OBJECT

private slots:
    void killedCommitsLeaveOldOrNewState();
    void catalogHeldByAnotherProcessIsRefused();
};

void TestCatalogCrash::killedCommitsLeaveOldOrNewState()
{
    QTemporaryDir dir;
    const QByteArray cat = dir.filePath("crash.cat").toLocal8Bit();
    QRandomGenerator random(20261122);

    // Small entries in front (moves shorter than a piece), large ones behind
    // them, so that most changes move a long tail.
    QMap<QByteArray, QByteArray> state;
    QList<Entry> entries;
    QList<QByteArray> names;
    for (int i = 0; i < 12; ++i) {
        const QByteArray name = "e\\" + QByteArray::number(i) + ".bin";
        const quint32 size = i < 6 ? 500 + 3000 * i : 7000000 + 100000 * i;
        const QByteArray bytes = Content(name, 1, size);
        entries.append({QByteArray(name).replace('\\', '/'), bytes});
        state[name] = bytes;
        names.append(name);
    }
    WritePair(dir.filePath("crash"), entries, "crash.dat");

    // How long one change takes, to spread the kills over it.
    QElapsedTimer timer;
    timer.start();
    pid_t pid = Spawn({cat, "replace", names[0], "2", "777"});
    int status = 0;
    QVERIFY(pid > 0);
    QCOMPARE(waitpid(pid, &status, 0), pid);
    QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    const qint64 commitMicros = qMax<qint64>(2000, timer.nsecsElapsed() / 1000);
    state[names[0]] = Content(names[0], 2, 777);

    // Kills go on until every phase of a commit was hit a few times: before
    // it (old state), after it (new state) and inside the move of a tail. The
    // bound is a count of tries, so a slow machine takes longer but does not fail.
    int journalsFound = 0, movesInterrupted = 0, oldStates = 0, newStates = 0, iterations = 0;
    const auto covered = [&] {
        return iterations >= 20 && movesInterrupted >= 2 && oldStates >= 3 && newStates >= 3;
    };
    for (quint32 seed = 3; iterations < 600 && !covered(); ++seed, ++iterations) {
        // Half of the changes go to an entry shorter than a move piece: then
        // the move distance is short and pieces overlap their own source.
        QList<QByteArray> small;
        for (auto it = state.begin(); it != state.end(); ++it) {
            if (it.value().size() < 65536)
                small.append(it.key());
        }
        const QByteArray name = !small.isEmpty() && random.bounded(2)
                                    ? small[int(random.bounded(small.size()))]
                                    : names[int(random.bounded(names.size()))];
        const bool remove = random.bounded(6) == 0;
        const quint32 size = random.bounded(2) ? random.bounded(60000) : 3000000 + random.bounded(3000000);
        const QByteArray fresh = Content(name, seed, size);
        pid = remove ? Spawn({cat, "remove", name})
                     : Spawn({cat, "replace", name, QByteArray::number(seed), QByteArray::number(size)});
        QVERIFY(pid > 0);
        usleep(useconds_t(random.bounded(quint32(commitMicros * 3 / 2))));
        kill(pid, SIGKILL);
        QCOMPARE(waitpid(pid, &status, 0), pid);
        // A journal whose progress is short of the region's length: the kill
        // landed inside the move itself.
        const QByteArray journal = ReadFile(QString::fromLocal8Bit(cat + ".journal"));
        if (journal.size() >= 64) {
            quint64 length = 0, progress = 0;
            memcpy(&length, journal.constData() + 24, 8);
            memcpy(&progress, journal.constData() + 56, 8);
            ++journalsFound;
            movesInterrupted += (progress >> 2) < length;
        }

        QMap<QByteArray, QByteArray> now;
        QVERIFY2(ReadAll(cat, now), qPrintable(QString("catalog unreadable after kill %1").arg(iterations)));
        QVERIFY(!QFile::exists(cat + ".journal"));
        for (auto it = state.begin(); it != state.end(); ++it) {
            if (it.key().compare(name, Qt::CaseInsensitive) == 0)
                continue;
            QVERIFY2(now.value(it.key()) == it.value(), it.key().constData());
        }
        const bool wasThere = state.contains(name);
        const bool isThere = now.contains(name);
        const bool isOld = wasThere == isThere && (!isThere || now.value(name) == state.value(name));
        const bool isNew = remove ? !isThere : (isThere && now.value(name) == fresh);
        QVERIFY2(isOld || isNew, qPrintable(QString("entry %1 is neither old nor new after kill %2")
                                                .arg(QString::fromLatin1(name))
                                                .arg(iterations)));
        QCOMPARE(now.size(), state.size() + (isThere && !wasThere ? 1 : 0) - (wasThere && !isThere ? 1 : 0));
        oldStates += isOld && !isNew;
        newStates += isNew && !isOld;
        state = now;
        // The .dat holds every byte that the catalog describes.
        qint64 sum = 0;
        for (const QByteArray& bytes : std::as_const(state))
            sum += bytes.size();
        QVERIFY(QFileInfo(dir.filePath("crash.dat")).size() >= sum);
    }
    qInfo("%d kills: %d left the old state, %d the new one, %d a journal, %d in the middle of a move",
          iterations, oldStates, newStates, journalsFound, movesInterrupted);
    QVERIFY2(covered(), "the kills did not reach every phase of a commit");
}

void TestCatalogCrash::catalogHeldByAnotherProcessIsRefused()
{
    QTemporaryDir dir;
    WritePair(dir.filePath("held"), {{"a.txt", "aaa"}});
    QByteArray cat = dir.filePath("held.cat").toLocal8Bit();

    int toChild[2], fromChild[2];
    QVERIFY(pipe(toChild) == 0 && pipe(fromChild) == 0);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, toChild[0], 0);
    posix_spawn_file_actions_adddup2(&actions, fromChild[1], 1);
    posix_spawn_file_actions_addclose(&actions, toChild[1]);
    posix_spawn_file_actions_addclose(&actions, fromChild[0]);
    QByteArray helper(DRIVER_COMMIT_HELPER), catArg(cat), op("hold");
    char* argv[] = {helper.data(), catArg.data(), op.data(), nullptr};
    pid_t pid = -1;
    QCOMPARE(posix_spawn(&pid, argv[0], &actions, nullptr, argv, environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    close(toChild[0]);
    close(fromChild[1]);
    char answer[16] = {};
    QVERIFY(read(fromChild[0], answer, sizeof(answer) - 1) > 0);
    QCOMPARE(QByteArray(answer).trimmed(), QByteArray("holding"));

    QVERIFY(FailedWith(CatOpenArchive(cat.constData(), 0), CatErrAccessDenied));
    QVERIFY(
        FailedWith(CatOpen((cat + "::a.txt").constData(), CatModeRead, 0, CatKindAuto), CatErrAccessDenied));
    QVERIFY(FailedWith(CatDelete(cat.constData()), CatErrAccessDenied));
    QVERIFY(QFile::exists(QString::fromLocal8Bit(cat)));

    close(toChild[1]); // the child lets go
    int status = 0;
    QCOMPARE(waitpid(pid, &status, 0), pid);
    QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    close(fromChild[0]);
    QCOMPARE(DriverRead(cat + "::a.txt"), QByteArray("aaa"));
}

QTEST_GUILESS_MAIN(TestCatalogCrash)
#include "tst_catalog_crash.moc"
