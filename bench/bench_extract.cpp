// Timing of the extraction of a ship package into loose files against the
// reference of the same run: "xz --format=lzma -dc" of the package into
// /dev/null, plus writing the decompressed bytes to a file.
//
//     bench_extract [--dir DIR] [--reps N]
//
// The package holds 50 MB of files as a real one does: packed models (random
// bytes stand for them: the game's deflate leaves nothing for LZMA), model
// and script text, and the ship's cockpit, dummy and component rows, so that
// every table is written. Each time is the best of N runs; every run of ours
// extracts into a fresh target, and every reference write goes to a fresh
// file. Made below DIR (default /tmp), removed at the end.
#include "BenchTiming.h"
#include "deploy/Extraction.h"
#include "package/PackageWriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>

namespace {

constexpr qint64 kMiB = 1 << 20;
constexpr qint64 kPayload = 50 * kMiB;
constexpr double kTarget = 1.2;

QByteArray Incompressible(qint64 size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, '\0');
    random.fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
    return bytes;
}

// Text like the lines of a model: compressible, but not trivially.
QByteArray ModelText(qint64 size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray text;
    text.reserve(size + 128);
    while (text.size() < size)
        text += QByteArray::number(random.bounded(-30000, 30000)) + "; " +
                QByteArray::number(random.bounded(-30000, 30000)) + "; " +
                QByteArray::number(random.bounded(64)) + "; // part " +
                QByteArray::number(random.bounded(400)) + "\n";
    text.truncate(size);
    return text;
}

bool WriteBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

FileEntry Entry(const QString& path, const QString& name)
{
    return FileEntry{1700000000, 0, path, name, false};
}

bool MakePackage(const QString& dir, const QString& package)
{
    ShipPackage record;
    record.Name = "Bench Ship";
    record.Author = "Bench";
    record.ID = "SS_SH_BENCH";
    QStringList fields(70, "1");
    fields[31] = "SS_COCKPIT_BENCH";
    fields[69] = "SS_SH_BENCH";
    record.Data = fields.join(';');
    record.Cockpits = {"0;0;0;0;0;0;0;4512;0;0;0;0;0;0;0;-100000;0;0;SS_COCKPIT_BENCH;"};
    for (int i = 0; i < 200; ++i) {
        record.Dummies.append(
            {i % 2 ? "SDTYPE_GUN" : "SDTYPE_DOCK", QString("ships\\bench\\part%1;0;1;").arg(i)});
        record.Components.append(
            {"SCTYPE_LASER", QString("body%1").arg(i % 20), QString("gun%1;0;0;0;").arg(i)});
    }

    qint64 done = 0;
    for (int i = 0; i < 4; ++i) {
        const QString path = dir + QString("/scene%1.bod").arg(i);
        if (!WriteBytes(path, ModelText(kMiB / 2, quint32(100 + i))))
            return false;
        record.Files.append(Entry(path, QString("objects/ships/bench/scene%1.bod").arg(i)));
        done += kMiB / 2;
    }
    for (int i = 0; i < 3; ++i) {
        const QString path = dir + QString("/setup.bench%1.xml").arg(i);
        if (!WriteBytes(path, ModelText(200000, quint32(200 + i))))
            return false;
        record.Scripts.append(Entry(path, QString("setup.bench%1.xml").arg(i)));
        done += 200000;
    }
    for (int i = 0; done < kPayload; ++i) {
        const qint64 size = std::min(5 * kMiB, kPayload - done);
        const QString path = dir + QString("/model%1.pbb").arg(i);
        if (!WriteBytes(path, Incompressible(size, quint32(i))))
            return false;
        record.Models.append(Entry(path, QString("objects/ships/bench/model%1.pbb").arg(i)));
        done += size;
    }
    QFile stream(dir + "/stream.tMp");
    const bool saved = stream.open(QIODevice::WriteOnly) &&
                       SavePackageFile(record, stream, package, {}) == PackageSaveResult::Saved;
    for (const QList<FileEntry>* list : {&record.Files, &record.Scripts, &record.Models})
        for (const FileEntry& entry : *list)
            QFile::remove(entry.LocalPath);
    return saved;
}

bool RunTool(const QString& program, const QStringList& arguments, const QString& outputFile)
{
    QProcess process;
    process.setStandardOutputFile(outputFile);
    process.start(program, arguments);
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

// The best of `reps` runs of `run`, with `prepare` before each run untimed.
double Best(int reps, const std::function<void()>& prepare, const std::function<bool()>& run)
{
    double best = 1e30;
    for (int i = 0; i < reps; ++i) {
        prepare();
        const double seconds = BestSeconds(1, run);
        if (seconds < 0)
            return -1;
        best = std::min(best, seconds);
    }
    return best;
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QString base = QDir::tempPath();
    int reps = 3;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); i += 2) {
        if (args[i] == "--dir")
            base = args[i + 1];
        else if (args[i] == "--reps")
            reps = std::max(1, args[i + 1].toInt());
    }
    QTemporaryDir dir(base + "/bench_extract-XXXXXX");
    if (!dir.isValid()) {
        std::fprintf(stderr, "bench_extract: cannot make a directory below %s\n", qPrintable(base));
        return 1;
    }
    const QString package = dir.filePath("bench.xsp");
    if (!MakePackage(dir.path(), package)) {
        std::fprintf(stderr, "bench_extract: cannot write the package\n");
        return 1;
    }
    std::printf("package      %.1f MB, %.0f MB of files\n", double(QFileInfo(package).size()) / 1e6,
                double(kPayload) / 1e6);

    const QString target = dir.filePath("target");
    const double ours = Best(
        reps,
        [&] {
            QDir(target).removeRecursively();
            QDir().mkpath(target);
        },
        [&] { return ExtractPackage(package, target, true).status == ExtractionStatus::Extracted; });
    if (ours < 0) {
        std::fprintf(stderr, "bench_extract: the extraction failed\n");
        return 1;
    }

    const QString xz = QStandardPaths::findExecutable("xz");
    if (xz.isEmpty()) {
        std::printf("extract      ours %.3f s; xz is not installed: no reference\n", ours);
        return 0;
    }
    const QStringList decode{"--format=lzma", "-dc", package};
    const double decodeTime = Best(
        reps, [] {}, [&] { return RunTool(xz, decode, "/dev/null"); });
    const QString plain = dir.filePath("stream.plain");
    QByteArray bytes;
    if (decodeTime < 0 || !RunTool(xz, decode, plain)) {
        std::fprintf(stderr, "bench_extract: xz failed\n");
        return 1;
    }
    {
        QFile file(plain);
        bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    const QString written = dir.filePath("written.plain");
    const double writeTime = Best(
        reps, [&] { QFile::remove(written); }, [&] { return WriteBytes(written, bytes); });
    const double theirs = decodeTime + writeTime;
    const double ratio = ours / theirs;
    std::printf("reference    xz -dc %.3f s + writing %.1f MB %.3f s\n", decodeTime,
                double(bytes.size()) / 1e6, writeTime);
    std::printf("extract time ours %10.3f s   reference %10.3f s   ratio %.5f (target <= %.2f) %s\n", ours,
                theirs, ratio, kTarget, ratio <= kTarget ? "ok" : "ABOVE TARGET");
    return 0;
}
