// Each writer of a file the program replaces, run while the disk "fills up":
// the process may not grow a file beyond a few kilobytes (RLIMIT_FSIZE, with
// SIGXFSZ ignored so that a write fails with EFBIG instead of killing the
// test). The writer must report the failure, the file that stood before must
// be there with its old bytes, and no half-written file may be left beside it.
#include "CatalogFiles.h"
#include "TestSupport.h"
#include "balance/BalanceProfile.h"
#include "catfs/transfer/GameFile.h"
#include "core/AppSettings.h"
#include "deploy/Extraction.h"
#include "gamedata/CockpitTable.h"
#include "package/InstalledShips.h"
#include "package/PackageWriter.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <functional>
#include <sys/resource.h>

namespace {

constexpr rlim_t kLimit = 4096;          // the largest file the full disk still takes
constexpr qsizetype kTooBig = 64 * 1024; // what each writer is asked to write
const QByteArray kOld = "the previous file\n";

// While alive, files of this process cannot grow beyond kLimit bytes.
class FullDisk
{
public:
    FullDisk()
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_saved);
        rlimit limited = m_saved;
        limited.rlim_cur = kLimit;
        m_active = setrlimit(RLIMIT_FSIZE, &limited) == 0;
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_saved);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

    bool active() const { return m_active; }

private:
    rlimit m_saved{};
    void (*m_handler)(int) = nullptr;
    bool m_active = false;
};

QStringList FilesIn(const QString& dir)
{
    return QDir(dir).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

QString Big(char c)
{
    return QString(kTooBig, QChar::fromLatin1(c));
}

// A package in `dir` whose one file, objects/big.txt, is larger than the full
// disk takes.
bool WritePackage(const QString& dir)
{
    ShipPackage record;
    record.Name = "Ship";
    record.Author = "Ann";
    record.Data = "1;SS_SH_BIG";
    const QString file = dir + "/big.txt";
    record.Files.append(FileEntry{1700000000, 0, file, "objects/big.txt", false});
    QFile stream(dir + "/stream.tMp");
    return WriteFile(file, RandomBytes(kTooBig, 7)) && stream.open(QIODevice::WriteOnly) &&
           SavePackageFile(record, stream, dir + "/ship.xsp", {}) == PackageSaveResult::Saved;
}

} // namespace

class TestDiskFull : public QObject
{
    Q_OBJECT
private slots:
    void writersKeepThePreviousFile_data();
    void writersKeepThePreviousFile();
    void catalogKeepsItsEntries();
};

void TestDiskFull::writersKeepThePreviousFile_data()
{
    // Each row: the file's name in the test directory and the writer, which
    // is given the directory and reports success.
    QTest::addColumn<QString>("name");
    QTest::addColumn<std::function<bool(const QString&)>>("write");

    QTest::newRow("config.dat") << "config.dat"
                                << std::function<bool(const QString&)>([](const QString& dir) {
                                       AppSettings settings;
                                       settings.DefAuthor = Big('a');
                                       return WriteSettingsFile(settings, dir + "/config.dat");
                                   });
    QTest::newRow("profile") << "m3.xbp" << std::function<bool(const QString&)>([](const QString& dir) {
        BalanceProfile profile;
        profile.Profile = Big('p');
        profile.FileName = "m3";
        return SaveProfile(profile, dir);
    });
    QTest::newRow("ships.dat") << "ShipInstall/ships.dat"
                               << std::function<bool(const QString&)>([](const QString& dir) {
                                      InstalledShips registry;
                                      registry.ModName = Big('m');
                                      return WriteInstalledShips(dir, registry);
                                  });
    QTest::newRow("table file") << "TCockpits.txt"
                                << std::function<bool(const QString&)>([](const QString& dir) {
                                       return WriteTableFile(dir + "/TCockpits.txt", Big('t'));
                                   });
    QTest::newRow("update note") << "Ship.dat" << std::function<bool(const QString&)>([](const QString& dir) {
        ShipPackage record;
        record.Name = "Ship";
        record.Version = Big('v');
        return WriteUpdateNote(record, dir + "/ship.xsp");
    });
    QTest::newRow("package") << "ship.xsp" << std::function<bool(const QString&)>([](const QString& dir) {
        ShipPackage record;
        record.Name = "Ship";
        record.Author = "Ann";
        record.Data = Big('d');
        QFile stream(dir + "/work/stream.tMp");
        return QDir(dir).mkpath("work") && stream.open(QIODevice::WriteOnly) &&
               SavePackageFile(record, stream, dir + "/ship.xsp", {}) == PackageSaveResult::Saved;
    });
    QTest::newRow("extracted file")
        << "objects/big.txt" << std::function<bool(const QString&)>([](const QString& dir) {
               return ExtractPackage(dir + "/source/ship.xsp", dir, false).status ==
                      ExtractionStatus::Extracted;
           });
    QTest::newRow("file from a catalog")
        << "Dummies.txt" << std::function<bool(const QString&)>([](const QString& dir) {
               // The source is written before the disk fills.
               return GameFileExtract(dir + "/source/Dummies.txt", dir + "/Dummies.txt", false, false);
           });
}

void TestDiskFull::writersKeepThePreviousFile()
{
    QFETCH(QString, name);
    QFETCH(std::function<bool(const QString&)>, write);
    QTemporaryDir dir;
    const QString path = dir.filePath(name);
    QVERIFY(WriteFile(path, kOld));
    // Sources that some writers read, written before the disk fills.
    QVERIFY(WriteFile(dir.filePath("source/Dummies.txt"), Big('s').toLatin1()));
    QVERIFY(WritePackage(dir.filePath("source")));
    QVERIFY(QDir().mkpath(dir.filePath("source/roomy")));
    QCOMPARE(ExtractPackage(dir.filePath("source/ship.xsp"), dir.filePath("source/roomy"), false).status,
             ExtractionStatus::Extracted); // it is the full disk that stops it below

    const QStringList before = FilesIn(QFileInfo(path).path());

    bool written = true;
    {
        FullDisk full;
        QVERIFY(full.active());
        written = write(dir.path());
    }
    QVERIFY(!written);
    QCOMPARE(ReadFile(path), kOld);
    QCOMPARE(FilesIn(QFileInfo(path).path()), before);
}

void TestDiskFull::catalogKeepsItsEntries()
{
    using namespace catalogfiles;
    QTemporaryDir dir;
    const QString cat = dir.filePath("01.cat");
    QVERIFY(
        WritePair(dir.filePath("01"), {{"types/TShips.txt", "old ships"}, {"t/440001.xml", "old texts"}}));
    const QByteArray catBefore = ReadFile(cat);
    const QByteArray datBefore = ReadFile(DataPathOf(cat));
    QVERIFY(WriteFile(dir.filePath("big.txt"), Big('b').toLatin1()));

    // A new entry and a replaced one, each larger than the disk still takes.
    for (const QString& entry : {QStringLiteral("types\\Dummies.txt"), QStringLiteral("types\\TShips.txt")}) {
        QFile source(dir.filePath("big.txt"));
        bool added = true;
        {
            FullDisk full;
            QVERIFY(full.active());
            added = GameFileCopyIn(source, cat + "::" + entry, false);
        }
        QVERIFY(!added);
        // The catalog lists and reads as before. Bytes the failed write left
        // behind the last entry are no part of any entry.
        QCOMPARE(ReadFile(cat), catBefore);
        QVERIFY(ReadFile(DataPathOf(cat)).startsWith(datBefore));
        QCOMPARE(StoredBytes(cat, "types\\TShips.txt"), std::optional<QByteArray>("old ships"));
    }
    // The next change that succeeds leaves a .dat that holds exactly its entries.
    QFile small(dir.filePath("small.txt"));
    QVERIFY(WriteFile(small.fileName(), "new dummies"));
    QVERIFY(GameFileCopyIn(small, cat + "::types\\Dummies.txt", false));
    QVERIFY(DataLengthMatches(cat));
    QCOMPARE(StoredBytes(cat, "t\\440001.xml"), std::optional<QByteArray>("old texts"));
}

QTEST_GUILESS_MAIN(TestDiskFull)
#include "tst_diskfull.moc"
