// Packed files: the gzip container read and written around raw deflate, the
// scrambling, and streams of other writers.

#include "driver_testutil.h"

#include <QTemporaryDir>
#include <QtTest>

#include <unistd.h>

using namespace drivertest;

namespace {

struct UnpackResult
{
    uint32_t code = 0;
    QByteArray data;
    quint32 time = 0;
    bool nullData = true;
};

UnpackResult Unpack(QByteArray packed)
{
    UnpackResult result;
    uint8_t* data = nullptr;
    uint32_t size = 0, time = 0;
    result.code =
        PckUnpack(reinterpret_cast<uint8_t*>(packed.data()), uint32_t(packed.size()), &data, &size, &time);
    result.nullData = data == nullptr;
    if (data)
        result.data = QByteArray(reinterpret_cast<const char*>(data), size);
    result.time = time;
    PckFreeData(data);
    return result;
}

// A gzip stream built by hand: header with the given flags and fields, raw
// deflate data, trailer.
QByteArray HandGzip(const QByteArray& data, quint8 flags, const QByteArray& extra, const QByteArray& name,
                    const QByteArray& comment, quint32 mtime = 1234567)
{
    QByteArray header("\x1f\x8b\x08", 3);
    header += char(flags);
    header += Le32(mtime);
    header += char(2);
    header += char(3);
    if (flags & 4) {
        header += char(extra.size() & 0xFF);
        header += char(extra.size() >> 8);
        header += extra;
    }
    if (flags & 8)
        header += name + QByteArray(1, '\0');
    if (flags & 16)
        header += comment + QByteArray(1, '\0');
    if (flags & 2) {
        const quint32 crc = crc32(0, reinterpret_cast<const Bytef*>(header.constData()), uInt(header.size()));
        header += char(crc & 0xFF);
        header += char((crc >> 8) & 0xFF);
    }
    const quint32 crc = crc32(0, reinterpret_cast<const Bytef*>(data.constData()), uInt(data.size()));
    return header + RawDeflate(data) + Le32(crc) + Le32(quint32(data.size()));
}

} // namespace

class TestPck : public QObject
{
    Q_OBJECT

private slots:
    void roundTripKeepsDataAndTime_data();
    void roundTripKeepsDataAndTime();
    void emptyContentHasMinimalLayout();
    void keysVaryAndDoNotMatter();
    void detectionByContentOnly();
    void otherWritersStreamsAreRead();
    void gzipToolInterop();
    void reservedFlagsDeliverDataWithWarning();
    void damagedStreamsGiveGzipCodes();
    void oversizedTrailerIsRefusedBeforeAllocation();
    void writeFileReplacesDescriptorContent();
    void readFileFailuresLeaveNoOutput();
};

void TestPck::roundTripKeepsDataAndTime_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("one byte") << QByteArray("x");
    QTest::newRow("text") << QByteArray("// a game table\n1;2;3;\n").repeated(300);
    QTest::newRow("incompressible") << SampleBytes(200000, 7).toBase64().left(150000) +
                                           SampleBytes(100000, 9);
    QTest::newRow("zeros 3 MB") << QByteArray(3 * 1024 * 1024, '\0');
}

void TestPck::roundTripKeepsDataAndTime()
{
    QFETCH(QByteArray, data);
    const QByteArray packed = Packed(data, 0x5F3759DF);
    QVERIFY(PckIsPacked(reinterpret_cast<const uint8_t*>(packed.constData()), size_t(packed.size())));
    const UnpackResult back = Unpack(packed);
    QCOMPARE(back.code, uint32_t(CatErrNone));
    QCOMPARE(back.time, quint32(0x5F3759DF));
    QCOMPARE(back.data, data);
}

void TestPck::emptyContentHasMinimalLayout()
{
    const QByteArray packed = Packed(QByteArray(), 42);
    // Lead byte, 10-byte header, 2 bytes of deflate data, 8-byte trailer.
    QCOMPARE(packed.size(), 21);
    const UnpackResult back = Unpack(packed);
    QCOMPARE(back.code, uint32_t(CatErrNone));
    QVERIFY(!back.nullData);
    QCOMPARE(back.data.size(), 0);
    QCOMPARE(back.time, quint32(42));
}

void TestPck::keysVaryAndDoNotMatter()
{
    const QByteArray data = SampleBytes(5000, 3);
    QSet<char> leads;
    for (int i = 0; i < 8; ++i) {
        const QByteArray packed = Packed(data, 7);
        leads.insert(packed[0]);
        QCOMPARE(Unpack(packed).data, data);
    }
    QVERIFY2(leads.size() > 1, "every packed file got the same key");
}

void TestPck::detectionByContentOnly()
{
    for (int k = 0; k < 256; ++k) {
        const uint8_t good[3] = {uint8_t(k ^ 0x6E), uint8_t(0x1F ^ k), uint8_t(0x8B ^ k)};
        QVERIFY(PckIsPacked(good, 3));
        const uint8_t bad[3] = {uint8_t(k ^ 0x6E), uint8_t(0x1F ^ k), uint8_t(0x8A ^ k)};
        QVERIFY(!PckIsPacked(bad, 3));
        QVERIFY(!PckIsPacked(good, 2));
    }
    // Three bytes can look packed, but hold no stream.
    QByteArray three("\x6E\x1F\x8B", 3);
    QCOMPARE(Unpack(three).code, uint32_t(CatErrGzipTooSmall));
    QCOMPARE(Unpack(QByteArray()).code, uint32_t(CatErrFileEmpty));
}

void TestPck::otherWritersStreamsAreRead()
{
    const QByteArray data = QByteArray("<page id=\"17\">text</page>\n").repeated(50);
    struct Case
    {
        const char* what;
        quint8 flags;
    };
    const Case cases[] = {
        {"extra", 4}, {"name", 8}, {"comment", 16}, {"header crc", 2}, {"all", 4 | 8 | 16 | 2}};
    for (const Case& c : cases) {
        const QByteArray gzip = HandGzip(data, c.flags, QByteArray("AB\x04\x00wxyz", 8), "t.xml", "by hand");
        const UnpackResult back = Unpack(PackedFromGzip(gzip, 0x3C));
        QVERIFY2(back.code == CatErrNone, c.what);
        QVERIFY2(back.data == data, c.what);
        QCOMPARE(back.time, quint32(1234567));
    }
    // Bytes behind the trailer shift it: the stream no longer reads.
    const QByteArray gzip = HandGzip(data, 8, {}, "t.xml", {});
    const UnpackResult shifted = Unpack(PackedFromGzip(gzip + "junk", 0x11));
    QVERIFY(shifted.code != CatErrNone && shifted.code != CatErrGzipReservedFlags);
    QVERIFY(shifted.nullData);
    // Fields that run past the end of the stream.
    QCOMPARE(
        Unpack(PackedFromGzip(HandGzip(QByteArray(), 4, QByteArray(4000, 'e'), {}, {}).left(40), 1)).code,
        uint32_t(CatErrGzipTooSmall));
    QByteArray unterminated = QByteArray("\x1f\x8b\x08\x08", 4) + QByteArray(6, '\0') + QByteArray(30, 'n');
    QCOMPARE(Unpack(PackedFromGzip(unterminated, 1)).code, uint32_t(CatErrGzipTooSmall));
}

void TestPck::gzipToolInterop()
{
    // gzip reads our stream once the scrambling is taken off.
    QTemporaryDir dir;
    const QByteArray data = SampleBytes(300000, 11);
    const QByteArray packed = Packed(data, 1000000);
    const uint8_t key = uint8_t(packed[0]) ^ 0x6E;
    QVERIFY(WriteFile(dir.filePath("plain.gz"), XorBytes(packed.mid(1), key)));
    ProgramRun gzip = RunProgram("gzip", {"-dc", dir.filePath("plain.gz")});
    QCOMPARE(gzip.code, 0);
    QCOMPARE(gzip.out, data);

    // A stream of gzip that carries the file name reads as well.
    const QByteArray rows = QByteArray("1;SS_SH_A;Hull;\n").repeated(2000);
    QVERIFY(WriteFile(dir.filePath("TShips.txt"), rows));
    gzip = RunProgram("gzip", {"-N", "-9", "-c", dir.filePath("TShips.txt")});
    QVERIFY(gzip.out.size() > 18);
    QVERIFY2(gzip.out[3] & 8, "gzip -N wrote no file name");
    const UnpackResult back = Unpack(PackedFromGzip(gzip.out, 0xA5));
    QCOMPARE(back.code, uint32_t(CatErrNone));
    QCOMPARE(back.data, rows);
}

void TestPck::reservedFlagsDeliverDataWithWarning()
{
    QTemporaryDir dir;
    const QByteArray data("reserved bits are only a warning");
    const QByteArray packed = PackedFromGzip(HandGzip(data, 0x20 | 8, {}, "n", {}), 0x77);
    const UnpackResult back = Unpack(packed);
    QCOMPARE(back.code, uint32_t(CatErrGzipReservedFlags));
    QCOMPARE(back.data, data);

    // Through the driver the open succeeds and the cell holds the warning.
    QVERIFY(WriteFile(dir.filePath("r.pck"), packed));
    CatFile* file = CatOpen(dir.filePath("r.pck").toLocal8Bit().constData(), CatModeRead, 0, CatKindAuto);
    QVERIFY(file);
    QCOMPARE(CatLastError(), uint32_t(CatErrGzipReservedFlags));
    QCOMPARE(CatSize(file), int32_t(data.size()));
    QVERIFY(CatClose(file));
}

void TestPck::damagedStreamsGiveGzipCodes()
{
    const QByteArray data = SampleBytes(20000, 5);
    const QByteArray gzip = HandGzip(data, 0, {}, {}, {});

    QByteArray badCrc = gzip;
    badCrc[badCrc.size() - 8] = char(badCrc[badCrc.size() - 8] ^ 1);
    QCOMPARE(Unpack(PackedFromGzip(badCrc, 9)).code, uint32_t(CatErrGzipDataCrc));

    QByteArray badMethod = gzip;
    badMethod[2] = 9;
    QCOMPARE(Unpack(PackedFromGzip(badMethod, 9)).code, uint32_t(CatErrGzipMethod));

    QByteArray badMagic = gzip;
    badMagic[1] = char(0x8C);
    QCOMPARE(Unpack(PackedFromGzip(badMagic, 9)).code, uint32_t(CatErrGzipNoHeader));

    // Deflate data cut short, trailer kept.
    const QByteArray cut = gzip.left(gzip.size() / 2) + gzip.right(8);
    QCOMPARE(Unpack(PackedFromGzip(cut, 9)).code, uint32_t(CatErrGzipInflate));

    // A trailer that claims less than the data inflates to.
    QByteArray shortSize = gzip;
    shortSize.replace(shortSize.size() - 4, 4, Le32(quint32(data.size() - 1)));
    const UnpackResult small = Unpack(PackedFromGzip(shortSize, 9));
    QCOMPARE(small.code, uint32_t(CatErrGzipInflate));
    QVERIFY(small.nullData);
    QCOMPARE(small.time, quint32(0));
}

void TestPck::oversizedTrailerIsRefusedBeforeAllocation()
{
    const QByteArray gzip = HandGzip(QByteArray(100, 'z'), 0, {}, {}, {});
    const int deflateLength = gzip.size() - 18;
    // Claims that no deflate stream of this length can reach, the last one
    // would need 4 GiB: all refused at once.
    for (quint32 claim : {quint32(deflateLength) * 1032u + 1u, (1u << 30) + 1u, 0xFFFFFFFFu}) {
        QByteArray forged = gzip;
        forged.replace(forged.size() - 4, 4, Le32(claim));
        QCOMPARE(Unpack(PackedFromGzip(forged, 3)).code, uint32_t(CatErrGzipInflate));
    }
    // A genuinely high ratio inside the limit still reads.
    const QByteArray zeros(8 * 1024 * 1024, '\0');
    const UnpackResult back = Unpack(Packed(zeros, 1));
    QCOMPARE(back.code, uint32_t(CatErrNone));
    QCOMPARE(back.data.size(), zeros.size());
}

void TestPck::writeFileReplacesDescriptorContent()
{
    QTemporaryDir dir;
    const QString path = dir.filePath("scene.pbd");
    QVERIFY(WriteFile(path, QByteArray(100000, 'o'))); // longer than the packed form
    const QByteArray data("P 1; B 2; N 3;\n");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QCOMPARE(PckWriteFile(reinterpret_cast<const uint8_t*>(data.constData()), uint32_t(data.size()),
                          file.handle(), 777),
             uint32_t(CatErrNone));
    file.close();
    const QByteArray stored = ReadFile(path);
    QVERIFY(stored.size() < 100);
    const UnpackResult back = Unpack(stored);
    QCOMPARE(back.data, data);
    QCOMPARE(back.time, quint32(777));

    uint8_t* out = nullptr;
    uint32_t size = 0, time = 0;
    QCOMPARE(PckReadFile(path.toLocal8Bit().constData(), &out, &size, &time), uint32_t(CatErrNone));
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(out), size), data);
    QCOMPARE(time, 777u);
    PckFreeData(out);
}

void TestPck::readFileFailuresLeaveNoOutput()
{
    QTemporaryDir dir;
    uint8_t* out = reinterpret_cast<uint8_t*>(this);
    uint32_t size = 5, time = 5;
    QCOMPARE(PckReadFile(dir.filePath("missing.pck").toLocal8Bit().constData(), &out, &size, &time),
             uint32_t(CatErrFileNotFound));
    QVERIFY(!out);
    QCOMPARE(size, 0u);
    QCOMPARE(time, 0u);

    QVERIFY(WriteFile(dir.filePath("empty.pck"), {}));
    QCOMPARE(PckReadFile(dir.filePath("empty.pck").toLocal8Bit().constData(), &out, &size, &time),
             uint32_t(CatErrFileEmpty));
    QVERIFY(WriteFile(dir.filePath("plain.txt"), "just text, not packed"));
    QCOMPARE(PckReadFile(dir.filePath("plain.txt").toLocal8Bit().constData(), &out, &size, &time),
             uint32_t(CatErrGzipNoHeader));
    QVERIFY(!out);
}

QTEST_GUILESS_MAIN(TestPck)
#include "tst_pck.moc"
