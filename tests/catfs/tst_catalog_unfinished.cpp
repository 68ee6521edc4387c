// A removal whose move of the .dat fails half-way leaves the catalog
// unfinished: while the cause lasts, readers fail with their own code and
// never get bytes of the half-moved .dat; once it has gone, the next use
// completes the change and every entry reads right.

#include "driver_testutil.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace drivertest;

namespace {

constexpr int kMiB = 1024 * 1024;

QByteArray P(const QString& path)
{
    return QDir::toNativeSeparators(path).toUtf8();
}

// Reads the rest of an open handle; `code` is the error of a failed read.
QByteArray ReadRest(CatFile* file, int32_t size, uint32_t* code)
{
    QByteArray bytes(size, Qt::Uninitialized);
    const int32_t got = CatRead(file, bytes.data(), uint32_t(size));
    *code = got < 0 ? CatLastError() : CatErrNone;
    return got < 0 ? QByteArray() : bytes.left(got);
}

} // namespace

class TestCatalogUnfinished : public QObject
{
    Q_OBJECT

private slots:
    void readersWaitForTheChangeToFinish();
};

void TestCatalogUnfinished::readersWaitForTheChangeToFinish()
{
    QTemporaryDir dir;
    const QByteArray big = SampleBytes(3 * kMiB, 1);
    const QByteArray after = SampleBytes(5000, 2);
    WritePair(dir.filePath("01"), {{"small", SampleBytes(100, 3)}, {"big", big}, {"after", after}});
    const QByteArray cat = P(dir.filePath("01.cat"));
    const QString dat = dir.filePath("01.dat");

    // An archive handle keeps the catalog open across the failure; "after"
    // is a plain entry, read straight from the .dat.
    CatArchiveHandle* archive = CatOpenArchive(cat.constData(), 0);
    QVERIFY(archive);
    CatFile* reader = CatOpen((cat + "::after").constData(), CatModeRead, 0, CatKindPlain);
    QVERIFY(reader);

    // The .dat loses its end (as if a read of it failed): removing "small"
    // moves the first MiB of the tail, then cannot read on.
    const QByteArray original = ReadFile(dat);
    const qint64 cut = 100 + 3 * kMiB / 2;
    QVERIFY(QFile::resize(dat, cut));
    QVERIFY(!CatDelete((cat + "::small").constData()));
    QVERIFY(QFile::exists(dir.filePath("01.cat.journal")));

    uint32_t code = CatErrNone;
    QCOMPARE(ReadRest(reader, after.size(), &code), QByteArray());
    QCOMPARE(code, uint32_t(CatErrArchiveUnfinished));
    QVERIFY(!CatOpen((cat + "::big").constData(), CatModeRead, 0, CatKindAuto));
    QCOMPARE(CatLastError(), uint32_t(CatErrArchiveUnfinished));
    CatFindData found{};
    QVERIFY(!CatFindFirst(archive, "*", &found));
    QCOMPARE(CatLastError(), uint32_t(CatErrArchiveUnfinished));
    QVERIFY(!DriverWrite(cat + "::new", "x", CatKindPlain));
    QCOMPARE(CatLastError(), uint32_t(CatErrArchiveUnfinished));

    // The cause goes: the .dat has its end again. The next read completes
    // the move and reads the entry at its new place.
    {
        QFile file(dat);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.seek(cut));
        QCOMPARE(file.write(original.mid(cut)), original.size() - cut);
    }
    QCOMPARE(ReadRest(reader, after.size(), &code), after);
    QCOMPARE(code, uint32_t(CatErrNone));
    QVERIFY(!QFile::exists(dir.filePath("01.cat.journal")));
    QCOMPARE(DriverRead(cat + "::big"), big);
    QVERIFY(CatClose(reader));
    QVERIFY(CatCloseArchive(archive));

    const QList<Line> lines = ReadCatalog(dir.filePath("01.cat"));
    QCOMPARE(lines.size(), 2);
    QCOMPARE(lines[0].name, QByteArray("big"));
    QCOMPARE(QFileInfo(dat).size(), qint64(big.size() + after.size()));
    QCOMPARE(DriverRead(cat + "::after"), after);
}

QTEST_GUILESS_MAIN(TestCatalogUnfinished)
#include "tst_catalog_unfinished.moc"
