// The flat interface: handles, sharing, positions, write-back, paths on disk.

#include "driver_testutil.h"

#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace drivertest;

namespace {

QByteArray P(const QString& path)
{
    return path.toLocal8Bit();
}

time_t MTime(const QString& path)
{
    struct stat st
    {
    };
    ::stat(P(path).constData(), &st);
    return st.st_mtime;
}

void SetMTime(const QString& path, time_t time)
{
    const struct timespec times[2] = {{time, 0}, {time, 0}};
    ::utimensat(AT_FDCWD, P(path).constData(), times, 0);
}

QByteArray ReadSome(CatFile* file, int count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    const int32_t got = CatRead(file, bytes.data(), uint32_t(count));
    bytes.resize(got < 0 ? 0 : got);
    return bytes;
}

} // namespace

class TestDriver : public QObject
{
    Q_OBJECT

private slots:
    void argumentsAndHandlesAreChecked();
    void sharingRuleRefusesSecondWriter();
    void readersShareImageWithOwnPositions();
    void seeksAtAndPastTheEnd();
    void emptyWritesChangeNothing();
    void truncateAloneDoesNotDirty();
    void entryWritesStartFromOldContent();
    void packedFilesOnDisk();
    void kindDetection();
    void pathsAreNormalised();
    void pathsResolveWithoutCase();
    void deleteRefusesOpenFiles();
    void statReportsObject();
    void plainFileLockedByOtherProcess();
};

void TestDriver::argumentsAndHandlesAreChecked()
{
    QTemporaryDir dir;
    const QByteArray path = P(dir.filePath("a.txt"));
    QVERIFY(FailedWith(CatOpen(path.constData(), 2, 0, CatKindAuto), CatErrBadFlags));
    QVERIFY(FailedWith(CatOpen(path.constData(), CatModeRead, 2, CatKindAuto), CatErrBadFlags));
    QVERIFY(FailedWith(CatOpen(path.constData(), CatModeRead, 0, 3), CatErrBadFlags));
    QVERIFY(FailedWith(CatOpen("", CatModeRead, 0, CatKindAuto), CatErrInternal));
    QVERIFY(FailedWith(CatOpen(path.constData(), CatModeRead, 0, CatKindAuto), CatErrFileNotFound));

    // A null handle closes to false and leaves the cell at 0.
    QVERIFY(FailedWith(CatClose(nullptr), CatErrNone));
    QVERIFY(FailedWith(CatSize(nullptr), CatErrInvalidHandle));
    char byte;
    QCOMPARE(CatRead(nullptr, &byte, 1), -1);
    QVERIFY(FailedWith(CatSeek(nullptr, 0, CatSeekBegin), CatErrInvalidHandle));

    // A closed handle is recognised as gone, not used.
    CatFile* file = CatOpen(path.constData(), CatModeWrite, 1, CatKindPlain);
    QVERIFY(file);
    QVERIFY(CatClose(file));
    QVERIFY(FailedWith(CatClose(file), CatErrInvalidHandle));

    file = CatOpen(path.constData(), CatModeRead, 0, CatKindPlain);
    QVERIFY(file);
    QVERIFY(FailedWith(CatWrite(file, "x", 1), CatErrBadMode));
    QVERIFY(FailedWith(CatTruncate(file), CatErrBadMode));
    QVERIFY(FailedWith(CatSeek(file, 0, 7), CatErrSeekMode));
    QVERIFY(CatClose(file));
}

void TestDriver::sharingRuleRefusesSecondWriter()
{
    QTemporaryDir dir;
    WritePair(dir.filePath("01"), {{"a.txt", "aaa"}});
    QVERIFY(WriteFile(dir.filePath("plain.txt"), "plain"));
    QVERIFY(WriteFile(dir.filePath("packed.pck"), QByteArray()));
    for (const QString& name : {QString("01.cat::a.txt"), QString("plain.txt")}) {
        const QByteArray path = P(dir.filePath(name));
        CatFile* writer = CatOpen(path.constData(), CatModeWrite, 0, CatKindAuto);
        QVERIFY(writer);
        QVERIFY(FailedWith(CatOpen(path.constData(), CatModeWrite, 0, CatKindAuto), CatErrBadMode));
        QVERIFY(FailedWith(CatOpen(path.constData(), CatModeRead, 0, CatKindAuto), CatErrBadMode));
        QVERIFY(CatClose(writer));

        CatFile* reader = CatOpen(path.constData(), CatModeRead, 0, CatKindAuto);
        QVERIFY(reader);
        QVERIFY(FailedWith(CatOpen(path.constData(), CatModeWrite, 0, CatKindAuto), CatErrBadMode));
        CatFile* second = CatOpen(path.constData(), CatModeRead, 0, CatKindAuto);
        QVERIFY(second);
        QVERIFY(CatClose(second));
        QVERIFY(CatClose(reader));
    }
}

void TestDriver::readersShareImageWithOwnPositions()
{
    QTemporaryDir dir;
    WritePair(dir.filePath("01"), {{"a.txt", "0123456789"}});
    QVERIFY(WriteFile(dir.filePath("plain.txt"), "0123456789"));
    QVERIFY(DriverWrite(P(dir.filePath("packed.pck")), "0123456789", CatKindPacked));
    for (const QString& name : {QString("01.cat::a.txt"), QString("plain.txt"), QString("packed.pck")}) {
        const QByteArray path = P(dir.filePath(name));
        CatFile* first = CatOpen(path.constData(), CatModeRead, 0, CatKindAuto);
        CatFile* second = CatOpen(path.constData(), CatModeRead, 0, CatKindAuto);
        QVERIFY(first && second);
        QCOMPARE(ReadSome(first, 4), QByteArray("0123"));
        QCOMPARE(ReadSome(second, 2), QByteArray("01"));
        QCOMPARE(ReadSome(first, 100), QByteArray("456789"));
        QVERIFY(CatEof(first));
        QVERIFY(!CatEof(second));
        QCOMPARE(ReadSome(first, 5), QByteArray());
        QCOMPARE(ReadSome(second, 3), QByteArray("234"));
        QVERIFY(CatClose(first));
        QCOMPARE(ReadSome(second, 100), QByteArray("56789"));
        QVERIFY(CatClose(second));
    }
}

void TestDriver::seeksAtAndPastTheEnd()
{
    QTemporaryDir dir;
    WritePair(dir.filePath("01"), {{"a.txt", "abcdef"}, {"zero.txt", ""}});
    CatFile* file = CatOpen(P(dir.filePath("01.cat::a.txt")).constData(), CatModeRead, 0, CatKindAuto);
    QVERIFY(file);
    QVERIFY(CatSeek(file, 0, CatSeekEnd));
    QVERIFY(CatEof(file));
    QVERIFY(FailedWith(CatSeek(file, 1, CatSeekEnd), CatErrSeek));
    QVERIFY(CatEof(file)); // the failed seek left the position alone
    QVERIFY(CatSeek(file, -2, CatSeekCurrent));
    QCOMPARE(ReadSome(file, 10), QByteArray("ef"));
    QVERIFY(!CatSeek(file, -7, CatSeekEnd));
    QVERIFY(CatSeek(file, 6, CatSeekBegin));
    QVERIFY(!CatSeek(file, 7, CatSeekBegin));
    QVERIFY(CatClose(file));

    file = CatOpen(P(dir.filePath("01.cat::zero.txt")).constData(), CatModeRead, 0, CatKindAuto);
    QVERIFY(file);
    QCOMPARE(CatSize(file), 0);
    QVERIFY(CatEof(file));
    QVERIFY(CatSeek(file, 0, CatSeekEnd));
    QVERIFY(!CatSeek(file, 1, CatSeekBegin));
    QCOMPARE(ReadSome(file, 4), QByteArray());
    QVERIFY(CatClose(file));
}

void TestDriver::emptyWritesChangeNothing()
{
    QTemporaryDir dir;
    const QString plain = dir.filePath("plain.txt");
    QVERIFY(WriteFile(plain, "content"));
    SetMTime(plain, 1000000000);
    WritePair(dir.filePath("01"), {{"a.txt", "aaa"}, {"b.txt", "bbb"}});
    SetMTime(dir.filePath("01.cat"), 1000000000);
    const QByteArray catBefore = ReadFile(dir.filePath("01.cat"));

    for (const QString& name : {plain, dir.filePath("01.cat::a.txt")}) {
        CatFile* file = CatOpen(P(name).constData(), CatModeWrite, 0, CatKindPlain);
        QVERIFY(file);
        QCOMPARE(CatWrite(file, "ignored", 0), 0);
        QVERIFY(CatClose(file));
    }
    QCOMPARE(MTime(plain), time_t(1000000000));
    QCOMPARE(MTime(dir.filePath("01.cat")), time_t(1000000000));
    QCOMPARE(ReadFile(dir.filePath("01.cat")), catBefore);

    // One byte is a change: the file gets the time of the write.
    const time_t before = time(nullptr);
    CatFile* file = CatOpen(P(plain).constData(), CatModeWrite, 0, CatKindPlain);
    QCOMPARE(CatWrite(file, "C", 1), 1);
    CatFileInfo info;
    QVERIFY(CatStat(file, &info));
    QVERIFY(CatClose(file));
    QVERIFY(info.time >= before);
    QCOMPARE(MTime(plain), time_t(info.time));
    QCOMPARE(ReadFile(plain), QByteArray("Content"));
}

void TestDriver::truncateAloneDoesNotDirty()
{
    QTemporaryDir dir;
    WritePair(dir.filePath("01"), {{"a.txt", "keep"}});
    // An empty stream written over an entry: nothing is written back.
    QVERIFY(DriverWrite(P(dir.filePath("01.cat::a.txt")), QByteArray(), CatKindPlain));
    QCOMPARE(DriverRead(P(dir.filePath("01.cat::a.txt"))), QByteArray("keep"));

    // A plain file on disk is cut at once.
    QVERIFY(WriteFile(dir.filePath("p.txt"), "0123456789"));
    CatFile* file = CatOpen(P(dir.filePath("p.txt")).constData(), CatModeWrite, 0, CatKindPlain);
    QVERIFY(CatSeek(file, 4, CatSeekBegin));
    QVERIFY(CatTruncate(file));
    QCOMPARE(CatSize(file), 4);
    QVERIFY(CatEof(file));
    QVERIFY(CatClose(file));
    QCOMPARE(ReadFile(dir.filePath("p.txt")), QByteArray("0123"));
}

void TestDriver::entryWritesStartFromOldContent()
{
    QTemporaryDir dir;
    WritePair(dir.filePath("01"), {{"a.txt", "0123456789"}});
    const QByteArray path = P(dir.filePath("01.cat::a.txt"));
    CatFile* file = CatOpen(path.constData(), CatModeWrite, 0, CatKindPlain);
    QVERIFY(file);
    QCOMPARE(ReadSome(file, 3), QByteArray("012")); // a writer can read
    QCOMPARE(CatWrite(file, "abc", 3), 3);
    QVERIFY(CatClose(file));
    QCOMPARE(DriverRead(path), QByteArray("012abc6789"));

    // Growing past the allocation keeps what was there.
    file = CatOpen(path.constData(), CatModeWrite, 0, CatKindPlain);
    QVERIFY(CatSeek(file, 0, CatSeekEnd));
    const QByteArray more = SampleBytes(12000, 4);
    QCOMPARE(CatWrite(file, more.constData(), uint32_t(more.size())), int32_t(more.size()));
    QCOMPARE(CatSize(file), int32_t(10 + more.size()));
    QVERIFY(CatClose(file));
    QCOMPARE(DriverRead(path), QByteArray("012abc6789") + more);
}

void TestDriver::packedFilesOnDisk()
{
    QTemporaryDir dir;
    const QString empty = dir.filePath("empty.pck");
    QVERIFY(WriteFile(empty, QByteArray()));

    // An empty file opened as packed is a dirty, empty image.
    CatFile* reader = CatOpen(P(empty).constData(), CatModeRead, 0, CatKindPacked);
    QVERIFY(reader);
    QCOMPARE(CatSize(reader), 0);
    QVERIFY(FailedWith(CatClose(reader), CatErrBadMode));
    QCOMPARE(ReadFile(empty).size(), 0);

    CatFile* writer = CatOpen(P(empty).constData(), CatModeWrite, 0, CatKindPacked);
    QVERIFY(writer);
    QVERIFY(CatClose(writer));
    QCOMPARE(ReadFile(empty).size(), 21);
    uint8_t* data = nullptr;
    uint32_t size = 9, time = 0;
    QCOMPARE(PckReadFile(P(empty).constData(), &data, &size, &time), uint32_t(CatErrNone));
    QCOMPARE(size, 0u);
    PckFreeData(data);

    // The time stamp travels in the gzip header and onto the file.
    const QString scene = dir.filePath("scene.pbd");
    QVERIFY(DriverWrite(P(scene), "P 0; B 1;", CatKindPacked));
    QCOMPARE(PckReadFile(P(scene).constData(), &data, &size, &time), uint32_t(CatErrNone));
    PckFreeData(data);
    QCOMPARE(time_t(time), MTime(scene));
    QVERIFY(!QFile::exists(scene + ".new"));
    CatFile* file = CatOpen(P(scene).constData(), CatModeRead, 0, CatKindAuto);
    CatFileInfo info;
    QVERIFY(CatStat(file, &info));
    QCOMPARE(info.flags, uint32_t(CatFlagOnDisk | CatFlagPacked));
    QCOMPARE(info.time, int32_t(time));
    QCOMPARE(info.size, 9u);
    QCOMPARE(qint64(info.storedSize), QFileInfo(scene).size());
    QVERIFY(CatClose(file));

    // Plain bytes forced open as packed fail with the gzip codes.
    QVERIFY(WriteFile(dir.filePath("text.pck"), "plain text, not packed"));
    QVERIFY(FailedWith(CatOpen(P(dir.filePath("text.pck")).constData(), CatModeRead, 0, CatKindPacked),
                       CatErrGzipNoHeader));
}

void TestDriver::kindDetection()
{
    QTemporaryDir dir;
    QVERIFY(WriteFile(dir.filePath("two.bin"), "\x6E\x1F"));
    QVERIFY(DriverWrite(P(dir.filePath("named.txt")), "packed under a plain name", CatKindPacked));
    CatFile* file = CatOpen(P(dir.filePath("two.bin")).constData(), CatModeRead, 0, CatKindAuto);
    CatFileInfo info;
    QVERIFY(file && CatStat(file, &info));
    QCOMPARE(info.flags, uint32_t(CatFlagOnDisk | CatFlagPlain));
    QVERIFY(CatClose(file));
    QCOMPARE(DriverRead(P(dir.filePath("named.txt"))), QByteArray("packed under a plain name"));
    QVERIFY(DriverRead(P(dir.filePath("named.txt")), nullptr, CatKindPlain).size() > 21);
}

void TestDriver::pathsAreNormalised()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath("game/types"));
    WritePair(dir.filePath("game/01"), {{"types/TShips.txt", "ships"}});
    QVERIFY(WriteFile(dir.filePath("game/types/TLaser.txt"), "lasers"));

    const QString previous = QDir::currentPath();
    QVERIFY(QDir::setCurrent(dir.filePath("game/types")));
    // Relative, with "." and "..", back and forward slashes mixed.
    QCOMPARE(DriverRead("..\\types/./TLaser.txt"), QByteArray("lasers"));
    QCOMPARE(DriverRead("TLaser.txt"), QByteArray("lasers"));
    QCOMPARE(DriverRead("..\\01.cat::types\\x\\..\\TShips.txt"), QByteArray("ships"));
    QCOMPARE(DriverRead(P(QString(dir.filePath("game")).replace('/', '\\') + "\\01.cat::types/TShips.txt")),
             QByteArray("ships"));
    // One object for all spellings: the sharing rule sees through them.
    CatFile* writer = CatOpen("../types/TLaser.txt", CatModeWrite, 0, CatKindPlain);
    QVERIFY(writer);
    QVERIFY(FailedWith(
        CatOpen(P(dir.filePath("GAME\\TYPES\\tlaser.TXT")).constData(), CatModeRead, 0, CatKindPlain),
        CatErrBadMode));
    QVERIFY(CatClose(writer));
    QVERIFY(QDir::setCurrent(previous));
}

void TestDriver::pathsResolveWithoutCase()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkpath("Game/Types"));
    QVERIFY(WriteFile(dir.filePath("Game/Types/tships.txt"), "lower-case file"));
    WritePair(dir.filePath("Game/01"), {{"a", "A"}});
    QVERIFY(QFile::rename(dir.filePath("Game/01.dat"), dir.filePath("Game/01.DAT")));

    QCOMPARE(DriverRead(P(dir.filePath("game\\types\\TShips.txt"))), QByteArray("lower-case file"));
    QCOMPARE(DriverRead(P(dir.filePath("GAME/01.CAT::A"))), QByteArray("A"));
    // A new file keeps the caller's name inside the directories found.
    QVERIFY(DriverWrite(P(dir.filePath("GAME\\TYPES\\NewTable.txt")), "new", CatKindPlain));
    QCOMPARE(ReadFile(dir.filePath("Game/Types/NewTable.txt")), QByteArray("new"));
    QVERIFY(DriverWrite(P(dir.filePath("game\\types\\TSHIPS.TXT")), "changed", CatKindPlain));
    QCOMPARE(ReadFile(dir.filePath("Game/Types/tships.txt")), QByteArray("changed"));
    QCOMPARE(QDir(dir.filePath("Game/Types")).entryList(QDir::Files).size(), 2);
    QVERIFY(CatDelete(P(dir.filePath("game/TYPES/newtable.TXT")).constData()));
    QVERIFY(!QFile::exists(dir.filePath("Game/Types/NewTable.txt")));
}

void TestDriver::deleteRefusesOpenFiles()
{
    QTemporaryDir dir;
    WritePair(dir.filePath("01"), {{"a.txt", "a"}, {"b.txt", "b"}});
    QVERIFY(WriteFile(dir.filePath("p.txt"), "p"));
    CatFile* entry = CatOpen(P(dir.filePath("01.cat::a.txt")).constData(), CatModeRead, 0, CatKindAuto);
    CatFile* plain = CatOpen(P(dir.filePath("p.txt")).constData(), CatModeRead, 0, CatKindAuto);
    QVERIFY(entry && plain);
    QVERIFY(FailedWith(CatDelete(P(dir.filePath("01.cat::A.TXT")).constData()), CatErrFileLocked));
    QVERIFY(FailedWith(CatDelete(P(dir.filePath("p.txt")).constData()), CatErrFileLocked));
    // The catalog in use by the open entry is no file to delete either.
    QVERIFY(FailedWith(CatDelete(P(dir.filePath("01.cat")).constData()), CatErrAccessDenied));
    // Another entry of the same catalog can go.
    QVERIFY(CatDelete(P(dir.filePath("01.cat::b.txt")).constData()));
    QCOMPARE(ReadSome(entry, 5), QByteArray("a"));
    QVERIFY(CatClose(entry));
    QVERIFY(CatClose(plain));
    QVERIFY(CatDelete(P(dir.filePath("p.txt")).constData()));
    QVERIFY(FailedWith(CatDelete(P(dir.filePath("p.txt")).constData()), CatErrFileNotFound));
    QCOMPARE(CatalogText(dir.filePath("01.cat")), QByteArray("01.dat\na.txt 1\n"));
}

void TestDriver::statReportsObject()
{
    QTemporaryDir dir;
    QString deep = dir.path();
    while (deep.size() < 300)
        deep += "/a_rather_long_directory_name";
    QVERIFY(QDir().mkpath(deep));
    QVERIFY(WriteFile(deep + "/f.txt", "12345"));
    CatFile* file = CatOpen(P(deep + "/f.txt").constData(), CatModeRead, 0, CatKindAuto);
    QVERIFY(file);
    CatFileInfo info;
    QVERIFY(CatStat(file, &info));
    QCOMPARE(qstrlen(info.name), size_t(259));
    QCOMPARE(QByteArray(info.name), P(deep).replace('/', '\\').left(259));
    QCOMPARE(info.size, 5u);
    QVERIFY(CatClose(file));

    WritePair(dir.filePath("01"), {{"e.txt", "entry"}});
    file = CatOpen(P(dir.filePath("01.cat::e.txt")).constData(), CatModeRead, 0, CatKindAuto);
    QVERIFY(CatStat(file, &info));
    QCOMPARE(info.time, -1);
    QCOMPARE(info.flags, uint32_t(CatFlagPlain));
    QVERIFY(QByteArray(info.name).endsWith("\\01.cat::e.txt"));
    QVERIFY(CatClose(file));
}

void TestDriver::plainFileLockedByOtherProcess()
{
    QTemporaryDir dir;
    const QByteArray path = P(dir.filePath("held.txt"));
    QVERIFY(WriteFile(dir.filePath("held.txt"), "held"));
    int ready[2], release[2];
    QVERIFY(pipe(ready) == 0 && pipe(release) == 0);
    const pid_t pid = fork();
    if (pid == 0) {
        CatFile* file = CatOpen(path.constData(), CatModeWrite, 0, CatKindPlain);
        const char ok = file ? '1' : '0';
        (void)!write(ready[1], &ok, 1);
        char c;
        (void)!read(release[0], &c, 1);
        _exit(file && CatClose(file) ? 0 : 1);
    }
    char ok = 0;
    QCOMPARE(read(ready[0], &ok, 1), ssize_t(1));
    QCOMPARE(ok, '1');
    QVERIFY(FailedWith(CatOpen(path.constData(), CatModeRead, 0, CatKindPlain), CatErrAccessDenied));
    QVERIFY(FailedWith(CatDelete(path.constData()), CatErrAccessDenied));
    (void)!write(release[1], "x", 1);
    int status = 0;
    QCOMPARE(waitpid(pid, &status, 0), pid);
    QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    QCOMPARE(DriverRead(path), QByteArray("held"));
    for (int fd : {ready[0], ready[1], release[0], release[1]})
        close(fd);
}

QTEST_GUILESS_MAIN(TestDriver)
#include "tst_driver.moc"
