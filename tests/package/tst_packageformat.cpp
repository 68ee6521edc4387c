// The .xsp format: the stream the writer produces, the reader taking lines
// and blocks from one position, the LZMA layer and its interop with the
// LZMA SDK's reference tool, and packages that are damaged or hostile.
#include "package/Lzma.h"
#include "package/PackageReader.h"
#include "package/PackageWriter.h"

#include <QBuffer>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include "TestSupport.h"

Q_DECLARE_METATYPE(PackageCheck)

namespace {

// Every file below `root`, relative to it, sorted.
QStringList FilesBelow(const QString& root)
{
    QStringList files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(QDir(root).relativeFilePath(it.next()));
    files.sort();
    return files;
}

QByteArray StreamOf(const ShipPackage& record, const PackageWriteHooks& hooks = {})
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (!WritePackageStream(record, buffer, hooks))
        return {};
    return buffer.data();
}

struct Read
{
    ShipPackage record;
    PackageReadResult result;
};

Read ReadPackageFile(const QString& path, const QString& base, const QString& scriptDir = "Scripts")
{
    Read read;
    QFile file(path);
    read.result = ReadPackage(file, base, read.record, scriptDir, false);
    return read;
}

QString Tool(const char* name)
{
    return QStandardPaths::findExecutable(QString::fromLatin1(name));
}

bool RunTool(const QString& program, const QStringList& arguments)
{
    return RunProgram(program, arguments).code == 0;
}

} // namespace

class TestPackageFormat : public QObject
{
    Q_OBJECT
private slots:
    void commentTravelsOnOneLine();
    void smallestPackageHasSevenLines();
    void blocksAreTakenByCount();
    void linesKeepBlanksColonsAndSemicolons();
    void packagerVersion_data();
    void packagerVersion();
    void missingNameOrAuthorIsReported();
    void refusesNamesOutsideTheTarget_data();
    void refusesNamesOutsideTheTarget();
    void damagedPackagesFailCleanly();
    void notAPackage();
    void lzmaLayoutAndRoundTrip();
    void interopWithTheReferenceTool();
    void failedCompressionKeepsTheTarget();
    void blocksAreCopiedInPieces();
};

void TestPackageFormat::commentTravelsOnOneLine()
{
    QCOMPARE(CommentToRecord("one\r\ntwo\nthree"), QString("one <newline>two<newline>three"));
    QCOMPARE(CommentFromRecord("one<newline>two"), QString("one\ntwo"));
    QCOMPARE(CommentFromRecord(CommentToRecord("a\nb\n")), QString("a\nb\n"));
}

void TestPackageFormat::smallestPackageHasSevenLines()
{
    ShipPackage record;
    record.Name = "Falcon";
    record.Author = "Someone";
    record.ID = "SS_SH_F";
    record.Data = "1;2;SS_SH_F";
    record.Shipyards[ShipyardSplit] = true;
    QCOMPARE(StreamOf(record), QByteArray("Packager: 1\nName: Falcon\nAuthor: Someone\nID: SS_SH_F\n"
                                          "Data: 1;2;SS_SH_F\nShipyard: 0;0;0;1;0;0;0;0\nVersion: 0\n"));

    // Optional lines appear in their place once set.
    record.Web = "http://w";
    record.LanguageText = true;
    record.OriginalDesc = 17;
    record.Version = "2.1";
    record.Comment = CommentToRecord("two\nlines");
    record.Texts.append(TextEntry{49, "Falke", "Ein Schiff"});
    record.Dummies.append(DummyEntry{"SDTYPE_GUN", "1;2;"});
    record.Components.append(ComponentEntry{"SCTYPE_LASER", "12", "a;b;"});
    record.Cockpits.append("c;line;COCK");
    QCOMPARE(StreamOf(record),
             QByteArray("Packager: 1\nName: Falcon\nAuthor: Someone\nID: SS_SH_F\nData: 1;2;SS_SH_F\n"
                        "Web: http://w\nShipyard: 0;0;0;1;0;0;0;0\nLanguageText\nOriginalDesc: 17\n"
                        "Version: 2.1\nComment: two<newline>lines\nText: 49:Falke:Ein Schiff\n"
                        "Dummy: SDTYPE_GUN;1;2;\nComponent: SCTYPE_LASER;12;a;b;\nCockpit: c;line;COCK\n"));
}

void TestPackageFormat::blocksAreTakenByCount()
{
    QTemporaryDir dir;
    // A scene without a final line feed, and model bytes that look like lines of a package.
    const QByteArray scene = "VER: 1;\nno line feed at the end";
    const QByteArray trap = "\nPackager: 9\nName: Evil\nModel: 1 5 ../../evil\n\n";
    const QByteArray binary = RandomBytes(300000, 7) + trap; // longer than one piece of a block
    WriteFile(dir.filePath("src/scene.bod"), scene);
    WriteFile(dir.filePath("src/trap.pbd"), trap);
    WriteFile(dir.filePath("src/big.pbb"), binary);
    WriteFile(dir.filePath("src/run.xml"), "<script/>");

    ShipPackage record;
    record.Name = "Falcon";
    record.Author = "Someone";
    record.SceneFile =
        FileEntry(FileEntry{100, 0, dir.filePath("src/scene.bod"), "objects/ships/falcon.bod", false});
    record.CockpitFile =
        FileEntry(FileEntry{101, 0, dir.filePath("src/trap.pbd"), "objects/cockpits/c.pbd", false});
    record.Models.append(FileEntry{102, 0, dir.filePath("src/big.pbb"), "objects/ships/big.pbb", false});
    record.Models.append(FileEntry{103, 0, dir.filePath("src/missing.pbb"), "objects/ships/gone.pbb", false});
    record.Scripts.append(FileEntry{104, 0, dir.filePath("src/run.xml"), QString(), false});

    const QByteArray stream = StreamOf(record);
    // The scene's block ends without a line feed, and the next line follows directly.
    QVERIFY(stream.contains("SceneFile: 100 " + QByteArray::number(scene.size()) +
                            " objects/ships/falcon.bod\n" + scene + "CockpitFile: 101 " +
                            QByteArray::number(trap.size()) + " objects/cockpits/c.pbd\n" + trap +
                            "Model: 102 "));
    QVERIFY(stream.contains(binary + "\nScript: 104 9 run.xml\n<script/>\n"));
    QVERIFY(!stream.contains("gone.pbb")); // a file that cannot be read is left out

    // Plain and compressed streams read back the same.
    WriteFile(dir.filePath("plain.xsp"), stream);
    QVERIFY(CompressFile(dir.filePath("plain.xsp"), dir.filePath("packed.xsp")));
    for (const QString name : {"plain.xsp", "packed.xsp"}) {
        const QString base = dir.filePath("out-" + name);
        const Read read = ReadPackageFile(dir.filePath(name), base);
        QVERIFY2(read.result.ok, qPrintable(name));
        QCOMPARE(read.record.Name, QString("Falcon"));
        QVERIFY(read.record.SceneFile && read.record.CockpitFile);
        QCOMPARE(read.record.SceneFile->LocalPath, QString("objects/ships/falcon.bod"));
        QCOMPARE(read.record.SceneFile->Time, 100u);
        QVERIFY(read.record.SceneFile->Name.isEmpty());
        QCOMPARE(ReadFile(base + "/objects/ships/falcon.bod"), scene);
        QCOMPARE(ReadFile(base + "/objects/cockpits/c.pbd"), trap);
        QCOMPARE(ReadFile(base + "/objects/ships/big.pbb"), binary);
        QCOMPARE(ReadFile(base + "/Scripts/run.xml"), QByteArray("<script/>"));
        QCOMPARE(read.record.Models.size(), 1);
        QCOMPARE(read.record.Scripts.size(), 1);
        QCOMPARE(QFileInfo(base + "/objects/ships/big.pbb").lastModified().toSecsSinceEpoch(), 102);
        QVERIFY(!QFileInfo::exists(dir.filePath("evil")));
    }
}

void TestPackageFormat::linesKeepBlanksColonsAndSemicolons()
{
    QTemporaryDir dir;
    const QByteArray stream = "Packager: 1\n"
                              "Name: The  Long Ship \n"
                              "Author: A. Someone\n"
                              "Data: 1;2;;ID\n"
                              "Shipyard: 1;0;0;0;0;0;0;1\n"
                              "Text: 44:Title:Desc: with: colons\n"
                              "Dummy: SDTYPE_GUN;1;2\n"
                              "Dummy: SDTYPE_DOCK;3;\n"
                              "Component: SC;7;x;y;\n"
                              "Comment: one<newline>two\n"
                              "Unknown: is ignored\n"
                              "\n"
                              "Model: 5 3 objects/my ships/a b.pbd\nabc\n"
                              "ScreenShot: 4 png\npict\n";
    WriteFile(dir.filePath("p.xsp"), stream);
    const Read read = ReadPackageFile(dir.filePath("p.xsp"), dir.filePath("out"));
    QVERIFY(read.result.ok);
    const ShipPackage& record = read.record;
    QCOMPARE(record.Name, QString("The  Long Ship "));
    QCOMPARE(record.Data, QString("1;2;;ID"));
    QVERIFY(record.Shipyards[ShipyardArgon] && record.Shipyards[ShipyardXenon]);
    QVERIFY(!record.Shipyards[ShipyardBoron] && !record.Shipyards[ShipyardFriendly]);
    QCOMPARE(record.Texts, (QList<TextEntry>{{44, "Title", "Desc: with: colons"}}));
    QCOMPARE(record.Dummies,
             (QList<DummyEntry>{{"SDTYPE_GUN", "1;2;"}, {"SDTYPE_DOCK", "3;"}})); // the closing ";" is added
    QCOMPARE(record.Components, (QList<ComponentEntry>{{"SC", "7", "x;y;"}}));
    QCOMPARE(CommentFromRecord(record.Comment), QString("one\ntwo"));
    QCOMPARE(record.Models.size(), 1);
    QCOMPARE(record.Models[0].LocalPath, QString("objects/my ships/a b.pbd"));
    QCOMPARE(ReadFile(dir.filePath("out/objects/my ships/a b.pbd")), QByteArray("abc"));
    // The picture is named after the ship, without blanks.
    QCOMPARE(record.ScreenShot, QString("TheLongShip-A.Someone.png"));
    QCOMPARE(ReadFile(dir.filePath("out/ShipPics/TheLongShip-A.Someone.png")), QByteArray("pict"));

    // Written again, the record gives the lines it came from.
    const QByteArray again = StreamOf(record);
    QVERIFY(again.contains("Name: The  Long Ship \n"));
    QVERIFY(again.contains("Text: 44:Title:Desc: with: colons\n"));
    QVERIFY(again.contains("Dummy: SDTYPE_GUN;1;2;\n"));
}

void TestPackageFormat::packagerVersion_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<bool>("ok");
    QTest::addColumn<PackageCheck>("check");
    QTest::newRow("1") << QByteArray("Packager: 1") << true << PackageCheck::Passed;
    QTest::newRow("0") << QByteArray("Packager: 0") << true << PackageCheck::Passed;
    QTest::newRow("1.5") << QByteArray("Packager: 1.5") << false << PackageCheck::NewerFormat;
    QTest::newRow("stray character") << QByteArray("\xefPackager: 2") << false << PackageCheck::NewerFormat;
}

void TestPackageFormat::packagerVersion()
{
    QFETCH(QByteArray, first);
    QFETCH(bool, ok);
    QFETCH(PackageCheck, check);
    QTemporaryDir dir;
    // The version line stands inside a compressed package, where it is read as a line.
    WriteFile(dir.filePath("plain"),
              "Packager: 1\nName: N\nAuthor: A\n" + first + "\nModel: 1 1 late.pbd\nx\n");
    QVERIFY(CompressFile(dir.filePath("plain"), dir.filePath("p.xsp")));
    const Read read = ReadPackageFile(dir.filePath("p.xsp"), dir.filePath("out"));
    QCOMPARE(read.result.ok, ok);
    QCOMPARE(read.result.check, check);
    // A newer format stops the read at its line.
    QCOMPARE(QFileInfo::exists(dir.filePath("out/late.pbd")), ok);
}

void TestPackageFormat::missingNameOrAuthorIsReported()
{
    QTemporaryDir dir;
    WriteFile(dir.filePath("a.xsp"), "Packager: 1\nName: N\nAuthor: \nData: 1\n");
    Read read = ReadPackageFile(dir.filePath("a.xsp"), dir.filePath("out"));
    QVERIFY(!read.result.ok);
    QCOMPARE(read.result.check, PackageCheck::MissingIdentity);
    WriteFile(dir.filePath("b.xsp"), "Packager: 1\nAuthor: A\n");
    read = ReadPackageFile(dir.filePath("b.xsp"), dir.filePath("out"));
    QCOMPARE(read.result.check, PackageCheck::MissingIdentity);
}

void TestPackageFormat::refusesNamesOutsideTheTarget_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("entry");
    QTest::newRow("climbing model") << QByteArray("Model: 1 4 ../evil.pbd") << "../evil.pbd";
    QTest::newRow("climbing inside") << QByteArray("Files: 1 4 objects/../../evil.txt")
                                     << "objects/../../evil.txt";
    QTest::newRow("backslashes") << QByteArray("SceneFile: 1 4 ..\\evil.bod") << "..\\evil.bod";
    QTest::newRow("absolute") << QByteArray("CockpitFile: 1 4 /tmp/evil.bod") << "/tmp/evil.bod";
    QTest::newRow("drive") << QByteArray("Model: 1 4 C:/evil.pbd") << "C:/evil.pbd";
    QTest::newRow("script") << QByteArray("Script: 1 4 ../../evil.xml") << "../../evil.xml";
    QTest::newRow("picture") << QByteArray("ScreenShot: 4 /../../evil") << "N-A./../../evil";
}

void TestPackageFormat::refusesNamesOutsideTheTarget()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, entry);
    QTemporaryDir dir;
    WriteFile(dir.filePath("p.xsp"), "Packager: 1\nName: N\nAuthor: A\n" + line + "\nevil\nData: after\n");
    const QString base = dir.filePath("deep/target");
    const Read read = ReadPackageFile(dir.filePath("p.xsp"), base);
    QVERIFY(!read.result.ok);
    QCOMPARE(read.result.failure, ReadFailure::UnsafeName);
    QCOMPARE(read.result.entry, entry);
    QVERIFY(read.record.Data.isEmpty()); // the read stopped at the entry
    // Nothing was written anywhere but the empty target directories.
    QCOMPARE(FilesBelow(dir.path()), QStringList{"p.xsp"});
}

void TestPackageFormat::damagedPackagesFailCleanly()
{
    QTemporaryDir dir;
    const QString out = dir.filePath("out");

    // A block longer than what is left of a plain stream: no file is made for it.
    WriteFile(dir.filePath("short.xsp"),
              "Packager: 1\nName: N\nAuthor: A\nModel: 1 100 objects/a.pbd\nonly this\n");
    Read read = ReadPackageFile(dir.filePath("short.xsp"), out);
    QVERIFY(!read.result.ok);
    QCOMPARE(read.result.failure, ReadFailure::Damaged);
    QCOMPARE(read.result.entry, QString("objects/a.pbd"));
    QVERIFY(FilesBelow(out).isEmpty());

    // A compressed package cut short, at several places: a block that was
    // started is never left as a half file.
    const QByteArray payload = RandomBytes(200000, 3);
    WriteFile(dir.filePath("stream"), "Packager: 1\nName: N\nAuthor: A\nModel: 1 6 "
                                      "objects/first.pbd\nfirst!\nModel: 1 200000 objects/big.pbb\n" +
                                          payload + "\n");
    QVERIFY(CompressFile(dir.filePath("stream"), dir.filePath("whole.xsp")));
    const QByteArray whole = ReadFile(dir.filePath("whole.xsp"));
    for (const qsizetype cut : {qsizetype(20), whole.size() / 2, whole.size() - 200}) {
        const QString base = dir.filePath(QString("cut%1").arg(cut));
        WriteFile(dir.filePath("cut.xsp"), whole.left(cut));
        read = ReadPackageFile(dir.filePath("cut.xsp"), base);
        QVERIFY(!read.result.ok);
        QCOMPARE(read.result.failure, ReadFailure::Damaged);
        QVERIFY(!FilesBelow(base).contains("objects/big.pbb"));
        for (const QString& file : FilesBelow(base))
            QCOMPARE(file, QString("objects/first.pbd"));
    }

    // A header that declares an absurd size fails before anything is decoded.
    QByteArray absurd = whole;
    absurd.replace(5, 8, QByteArray::fromHex("0000000000001000")); // 2^60 bytes
    WriteFile(dir.filePath("absurd.xsp"), absurd);
    read = ReadPackageFile(dir.filePath("absurd.xsp"), dir.filePath("absurd"));
    QCOMPARE(read.result.failure, ReadFailure::TooLarge);
    QVERIFY(FilesBelow(dir.filePath("absurd")).isEmpty());

    // Data that the decoder refuses part-way.
    QByteArray corrupt = whole;
    for (qsizetype i = 40; i < corrupt.size(); i += 97)
        corrupt[i] = char(~corrupt[i]);
    WriteFile(dir.filePath("corrupt.xsp"), corrupt);
    read = ReadPackageFile(dir.filePath("corrupt.xsp"), dir.filePath("corrupt"));
    QVERIFY(!read.result.ok);
    QVERIFY(read.result.failure != ReadFailure::None);
    QVERIFY(!FilesBelow(dir.filePath("corrupt")).contains("objects/big.pbb"));

    // DecompressFile leaves no target behind either.
    LzmaStatus status = LzmaStatus::Ok;
    WriteFile(dir.filePath("cut.xsp"), whole.left(whole.size() / 2));
    QVERIFY(!DecompressFile(dir.filePath("cut.xsp"), dir.filePath("cut.out"), {}, &status));
    QCOMPARE(status, LzmaStatus::Truncated);
    QVERIFY(!DecompressFile(dir.filePath("absurd.xsp"), dir.filePath("absurd.out"), {}, &status));
    QCOMPARE(status, LzmaStatus::TooLarge);
    QVERIFY(!QFileInfo::exists(dir.filePath("cut.out")) && !QFileInfo::exists(dir.filePath("absurd.out")));
}

void TestPackageFormat::notAPackage()
{
    QTemporaryDir dir;
    for (const QByteArray& content : {QByteArray("just some text\nwith lines\n"), QByteArray("abc"),
                                      QByteArray(), RandomBytes(4000, 5)}) {
        WriteFile(dir.filePath("x.xsp"), content);
        const Read read = ReadPackageFile(dir.filePath("x.xsp"), dir.filePath("out"));
        QVERIFY(!read.result.ok);
        QCOMPARE(read.result.check, PackageCheck::Passed);
        QCOMPARE(read.result.failure, ReadFailure::NotAPackage);
    }
    QVERIFY(FilesBelow(dir.filePath("out")).isEmpty());
    LzmaStatus status = LzmaStatus::Ok;
    QVERIFY(!DecompressFile(dir.filePath("x.xsp"), dir.filePath("x.out"), {}, &status));
    QCOMPARE(status, LzmaStatus::NotLzma);
}

void TestPackageFormat::lzmaLayoutAndRoundTrip()
{
    QTemporaryDir dir;
    const QByteArray text = QByteArray("Model: 1 2 a\n").repeated(20000) + RandomBytes(70000, 11);
    WriteFile(dir.filePath("in"), text);
    QList<uint64_t> seen;
    QVERIFY(CompressFile(dir.filePath("in"), dir.filePath("out.xsp"), [&](uint64_t done, uint64_t total) {
        QCOMPARE(total, uint64_t(text.size()));
        seen.append(done);
    }));
    QVERIFY(!seen.isEmpty() && seen.last() == uint64_t(text.size()));
    const QByteArray packed = ReadFile(dir.filePath("out.xsp"));
    // Properties 0x5D, a 2 MiB dictionary and the size (330,000 = 0x050910), all little-endian.
    QCOMPARE(text.size(), 330000);
    QCOMPARE(packed.left(13).toHex(), QByteArray("5d000020001009050000000000"));
    QVERIFY(packed.size() < text.size() / 2);
    QVERIFY(DecompressFile(dir.filePath("out.xsp"), dir.filePath("back")));
    QCOMPARE(ReadFile(dir.filePath("back")), text);

    // An empty source is a valid stream of size 0.
    WriteFile(dir.filePath("empty"), {});
    QVERIFY(CompressFile(dir.filePath("empty"), dir.filePath("empty.xsp")));
    QVERIFY(DecompressFile(dir.filePath("empty.xsp"), dir.filePath("empty.back")));
    QCOMPARE(ReadFile(dir.filePath("empty.back")), QByteArray());
}

void TestPackageFormat::interopWithTheReferenceTool()
{
    const QString lzmaAlone = Tool("lzma_alone");
    if (lzmaAlone.isEmpty())
        QSKIP("lzma_alone (Debian package lzma-alone) is not installed");
    QTemporaryDir dir;
    WriteFile(dir.filePath("src/model.pbb"), RandomBytes(90000, 1));
    ShipPackage record;
    record.Name = "Interop";
    record.Author = "Tester";
    record.Data = QString("1;").repeated(60) + "ID";
    record.Models.append(FileEntry{9, 0, dir.filePath("src/model.pbb"), "objects/m.pbb", false});
    const QByteArray stream = StreamOf(record);
    WriteFile(dir.filePath("stream"), stream);
    QVERIFY(CompressFile(dir.filePath("stream"), dir.filePath("ours.xsp")));

    // The reference decodes our package to exactly the stream the writer produced.
    QVERIFY(RunTool(lzmaAlone, {"d", dir.filePath("ours.xsp"), dir.filePath("theirs.stream")}));
    QCOMPARE(ReadFile(dir.filePath("theirs.stream")), stream);

    // A stream encoded by the reference with the package settings opens.
    QVERIFY(RunTool(lzmaAlone, {"e", dir.filePath("stream"), dir.filePath("theirs.xsp"), "-d21", "-fb128",
                                "-mfbt4", "-lc3", "-lp0", "-pb2"}));
    QCOMPARE(ReadFile(dir.filePath("theirs.xsp")).left(13), PackageLzmaHeader(uint64_t(stream.size())));
    Read read = ReadPackageFile(dir.filePath("theirs.xsp"), dir.filePath("out1"));
    QVERIFY(read.result.ok);
    QCOMPARE(read.record.Data, record.Data);
    QCOMPARE(ReadFile(dir.filePath("out1/objects/m.pbb")), ReadFile(dir.filePath("src/model.pbb")));

    // A stream with an end marker and no size in its header opens too.
    const QString xz = Tool("xz");
    if (xz.isEmpty())
        return;
    QVERIFY(RunTool(xz, {"--format=lzma", "-k", dir.filePath("stream")}));
    QVERIFY(ReadFile(dir.filePath("stream.lzma")).mid(5, 8) == QByteArray(8, '\xff'));
    read = ReadPackageFile(dir.filePath("stream.lzma"), dir.filePath("out2"));
    QVERIFY(read.result.ok);
    QCOMPARE(ReadFile(dir.filePath("out2/objects/m.pbb")), ReadFile(dir.filePath("src/model.pbb")));
}

void TestPackageFormat::failedCompressionKeepsTheTarget()
{
    QTemporaryDir dir;
    const QString source = dir.filePath("work/stream");
    WriteFile(source, RandomBytes(3 << 20, 9));
    QDir().mkpath(dir.filePath("packages"));
    const QString target = dir.filePath("packages/ship.xsp");
    WriteFile(target, "the package saved before");

    // The source shrinks while it is compressed: the header would lie.
    bool truncated = false;
    const bool ok = CompressFile(source, target, [&](uint64_t, uint64_t) {
        if (!truncated)
            truncated = QFile::resize(source, 1000);
    });
    QVERIFY(truncated);
    QVERIFY(!ok);
    QCOMPARE(ReadFile(target), QByteArray("the package saved before"));
    QCOMPARE(FilesBelow(dir.filePath("packages")), QStringList{"ship.xsp"});

    // A source that cannot be read leaves the target alone as well.
    QVERIFY(!CompressFile(dir.filePath("work/none"), target));
    QCOMPARE(ReadFile(target), QByteArray("the package saved before"));
}

void TestPackageFormat::blocksAreCopiedInPieces()
{
    const QByteArray bytes = RandomBytes(120001, 4);
    QBuffer source;
    source.setData(bytes);
    source.open(QIODevice::ReadOnly);
    QBuffer target;
    target.open(QIODevice::WriteOnly);
    QList<int64_t> steps;
    QVERIFY(CopyBlocks(source, target, PackageCopyBlockSize, [&](int64_t done, int64_t total) {
        QCOMPARE(total, int64_t(bytes.size()));
        steps.append(done);
    }));
    QCOMPARE(steps, (QList<int64_t>{50000, 100000, 120001}));
    QCOMPARE(target.data(), bytes);

    // Through a package stream, a block is taken in pieces from the line buffer and the source.
    QByteArray stream = "line one\n" + bytes + "after\n";
    QBuffer input;
    input.setData(stream);
    input.open(QIODevice::ReadOnly);
    PackageStream reader([&](char* data, int64_t size) { return int64_t(input.read(data, size)); },
                         uint64_t(stream.size()));
    QByteArray line;
    QVERIFY(reader.readLine(line) && line == "line one");
    QBuffer block;
    block.open(QIODevice::WriteOnly);
    QVERIFY(reader.readBlock(uint64_t(bytes.size()), &block));
    QCOMPARE(block.data(), bytes);
    QVERIFY(reader.readLine(line) && line == "after");
    QCOMPARE(reader.remaining().value_or(99), uint64_t(0));
    QVERIFY(!reader.readLine(line) && !reader.failed());
}

QTEST_GUILESS_MAIN(TestPackageFormat)
#include "tst_packageformat.moc"
