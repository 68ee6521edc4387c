// Timings of saving and opening ship packages against the reference tools,
// measured in the same run, and the peak memory of an open.
//
//     bench_package [--dir DIR] [--reps N] [--only save|open|text|memory] [--corpus DIR]
//
//  save:   a package of a 50 MB payload written and compressed, against
//          "lzma_alone e" of the same stream with the package settings: time
//          and size as ratios. The payload is what the writer puts into a real
//          package: models packed by the game's deflate (incompressible to
//          LZMA; random bytes stand for them) and game text files. The text
//          files are the real ones of the corpus beside the repository when
//          it is there (--corpus DIR), generated model and script text
//          otherwise; which ones were used is printed.
//  open:   that package read and unpacked, against "xz --format=lzma -dc" of
//          it into a file: time as a ratio.
//  text:   each game text file of the corpus compressed alone, against
//          "lzma_alone e" with the package settings: size as a ratio (the
//          encoder searches deeper than the reference does by default).
//  memory: the peak resident memory of a child process that opens a 200 MB
//          package (the package's own stream is never held whole).
//
// Each time is the best of N runs on both sides. The files are made in a
// temporary directory below DIR (default /tmp) and removed at the end.
#include "BenchTiming.h"
#include "package/Lzma.h"
#include "package/PackageReader.h"
#include "package/PackageWriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>

namespace {

constexpr qint64 kMiB = 1 << 20;
constexpr double kSaveTimeTarget = 1.0;
constexpr double kSaveSizeTarget = 1.0;
constexpr double kOpenTimeTarget = 1.1;
constexpr double kMemoryTargetMiB = 64.0;

int g_failures = 0;

void Check(bool ok, const char* what)
{
    if (!ok) {
        std::fprintf(stderr, "bench_package: %s failed\n", what);
        ++g_failures;
    }
}

// Text that looks like the lines of a model: compressible, but not trivially.
QByteArray ModelText(qint64 size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray text;
    text.reserve(size + 128);
    while (text.size() < size) {
        text += QByteArray::number(random.bounded(-30000, 30000)) + "; " +
                QByteArray::number(random.bounded(-30000, 30000)) + "; " +
                QByteArray::number(random.bounded(-30000, 30000)) + "; " +
                QByteArray::number(random.bounded(64)) + "; // part " +
                QByteArray::number(random.bounded(400)) + "\n";
    }
    text.truncate(size);
    return text;
}

QByteArray Incompressible(qint64 size, quint32 seed)
{
    QRandomGenerator random(seed);
    QByteArray bytes(size, '\0');
    random.fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
    return bytes;
}

bool WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Script text as the game's script editor writes it.
QByteArray ScriptText(qint64 size, quint32 seed)
{
    static const char* const words[] = {"ship",   "sector", "station", "laser",
                                        "shield", "dock",   "trade",   "jump"};
    QRandomGenerator random(seed);
    QByteArray text = "<?xml version=\"1.0\" standalone=\"yes\"?>\n<script>\n<codearray>\n";
    while (text.size() < size) {
        switch (random.bounded(3)) {
        case 0:
            text +=
                "<sval type=\"int\" val=\"" + QByteArray::number(random.bounded(-100000, 100000)) + "\"/>\n";
            break;
        case 1:
            text += QByteArray("<sval type=\"string\" val=\"") + words[random.bounded(8)] + "." +
                    words[random.bounded(8)] + "\"/>\n";
            break;
        default:
            text += "<sval type=\"array\" size=\"" + QByteArray::number(random.bounded(1, 9)) +
                    "\"><sval type=\"int\" val=\"" + QByteArray::number(random.bounded(1000)) +
                    "\"/></sval>\n";
            break;
        }
    }
    text.truncate(size);
    return text;
}

// The game text files of the payload: the corpus's language file, ship table
// and scene when `corpus` holds them, generated text of about the same size
// otherwise. Returns the total size.
qint64 AddGameText(ShipPackage& record, const QString& dir, const QString& corpus)
{
    const QStringList corpusFiles{"x3tc/t/0001-L044.xml", "x3tc/types/TShips.txt",
                                  "x3tc/objects/cut/00749.bod"};
    QList<QPair<QString, QByteArray>> files;
    for (const QString& name : corpusFiles) {
        const QByteArray bytes = corpus.isEmpty() ? QByteArray() : ReadFile(corpus + "/" + name);
        if (bytes.isEmpty()) {
            files.clear();
            break;
        }
        files.append({name.section('/', 1), bytes});
    }
    if (files.isEmpty()) {
        files.append({"t/440001.xml", ScriptText(3600000, 11)});
        files.append({"types/TShips.txt", ModelText(340000, 12)});
        files.append({"objects/cut/00749.bod", ModelText(150000, 13)});
        std::printf("text         generated (no corpus found)\n");
    } else {
        std::printf("text         the corpus files in %s\n", qPrintable(corpus));
    }
    qint64 total = 0;
    for (const auto& [name, bytes] : files) {
        const QString path = dir + "/" + QFileInfo(name).fileName();
        WriteFile(path, bytes);
        record.Files.append(FileEntry{1700000000, 0, path, name, false});
        total += bytes.size();
    }
    return total;
}

// A record of `payloadBytes` of files: with `corpus` set the game text files
// (see AddGameText), the rest packed models.
ShipPackage MakeShip(const QString& dir, qint64 payloadBytes, const QString* corpus)
{
    ShipPackage record;
    record.Name = "Bench Ship";
    record.Author = "Bench";
    record.ID = "SS_SH_BENCH";
    record.Data = QString("1;").repeated(70) + "SS_SH_BENCH";
    const qint64 textBytes = corpus ? AddGameText(record, dir, *corpus) : 0;
    const qint64 piece = 5 * kMiB;
    int index = 0;
    for (qint64 done = textBytes; done < payloadBytes; done += piece, ++index) {
        const QString path = dir + QString("/model%1.pbb").arg(index);
        const qint64 size = std::min(piece, payloadBytes - done);
        WriteFile(path, Incompressible(size, quint32(index)));
        record.Models.append(
            FileEntry{1700000000, 0, path, QString("objects/ships/model%1.pbb").arg(index), false});
    }
    return record;
}

bool RunTool(const QString& program, const QStringList& arguments, const QString& outputFile = {})
{
    QProcess process;
    if (!outputFile.isEmpty())
        process.setStandardOutputFile(outputFile);
    process.start(program, arguments);
    return process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

void PrintRatio(const char* what, double ours, double theirs, const char* unit, double target)
{
    const double ratio = ours / theirs;
    std::printf("%-12s ours %10.3f %-3s reference %10.3f %-3s ratio %.5f (target <= %.2f) %s\n", what, ours,
                unit, theirs, unit, ratio, target, ratio <= target ? "ok" : "ABOVE TARGET");
}

bool SaveShip(const ShipPackage& record, const QString& work, const QString& target)
{
    QFile stream(work + "/stream.tMp");
    if (!stream.open(QIODevice::WriteOnly))
        return false;
    return SavePackageFile(record, stream, target, {}) == PackageSaveResult::Saved;
}

bool OpenShip(const QString& package, const QString& target)
{
    QDir(target).removeRecursively();
    QFile file(package);
    ShipPackage record;
    return ReadPackage(file, target, record, "Scripts", false).ok;
}

void BenchSave(const QString& dir, int reps, const QString& corpus)
{
    const QString lzmaAlone = QStandardPaths::findExecutable("lzma_alone");
    const ShipPackage record = MakeShip(dir, 50 * kMiB, &corpus);
    const double ours = BestSeconds(reps, [&] { return SaveShip(record, dir, dir + "/ours.xsp"); });
    Check(ours > 0, "save");

    QFile stream(dir + "/stream.plain");
    Check(stream.open(QIODevice::WriteOnly) && WritePackageStream(record, stream, {}), "stream");
    stream.close();
    std::printf("payload      %.1f MB stream\n", double(stream.size()) / 1e6);
    if (lzmaAlone.isEmpty()) {
        std::printf("save         lzma_alone is not installed: no reference\n");
        return;
    }
    const QStringList arguments{
        "e", dir + "/stream.plain", dir + "/theirs.xsp", "-d21", "-fb128", "-mfbt4", "-lc3", "-lp0", "-pb2"};
    const double theirs = BestSeconds(reps, [&] { return RunTool(lzmaAlone, arguments); });
    Check(theirs > 0, "lzma_alone e");
    PrintRatio("save time", ours, theirs, "s", kSaveTimeTarget);
    const qint64 ourSize = QFileInfo(dir + "/ours.xsp").size();
    const qint64 theirSize = QFileInfo(dir + "/theirs.xsp").size();
    PrintRatio("save size", double(ourSize) / 1e6, double(theirSize) / 1e6, "MB", kSaveSizeTarget);
    std::printf("save size    ours %lld bytes, reference %lld bytes, difference %+lld bytes\n", ourSize,
                theirSize, ourSize - theirSize);
}

void BenchOpen(const QString& dir, int reps, const QString& corpus)
{
    const QString xz = QStandardPaths::findExecutable("xz");
    if (!QFileInfo::exists(dir + "/ours.xsp")) {
        const ShipPackage record = MakeShip(dir, 50 * kMiB, &corpus);
        Check(SaveShip(record, dir, dir + "/ours.xsp"), "save for open");
    }
    const double ours = BestSeconds(reps, [&] { return OpenShip(dir + "/ours.xsp", dir + "/opened"); });
    Check(ours > 0, "open");
    if (xz.isEmpty()) {
        std::printf("open         xz is not installed: no reference\n");
        return;
    }
    const double theirs = BestSeconds(reps, [&] {
        return RunTool(xz, {"--format=lzma", "-dc", dir + "/ours.xsp"}, dir + "/xz.out");
    });
    Check(theirs > 0, "xz -dc");
    PrintRatio("open time", ours, theirs, "s", kOpenTimeTarget);
}

void BenchTextSize(const QString& dir, const QString& corpus)
{
    const QString lzmaAlone = QStandardPaths::findExecutable("lzma_alone");
    if (lzmaAlone.isEmpty() || corpus.isEmpty() || !QFileInfo::exists(corpus)) {
        std::printf("text size    needs lzma_alone and the corpus: no figure\n");
        return;
    }
    for (const QString& name : {QString("x3tc/t/0001-L044.xml"), QString("x3tc/objects/cut/00749.bod")}) {
        const QString source = corpus + "/" + name;
        Check(CompressFile(source, dir + "/text-ours"), "compressing a text file");
        Check(RunTool(lzmaAlone, {"e", source, dir + "/text-theirs", "-d21", "-fb128", "-mfbt4", "-lc3",
                                  "-lp0", "-pb2"}),
              "lzma_alone e of a text file");
        std::printf("%s\n", qPrintable(name));
        PrintRatio("text size", double(QFileInfo(dir + "/text-ours").size()) / 1e3,
                   double(QFileInfo(dir + "/text-theirs").size()) / 1e3, "kB", kSaveSizeTarget);
    }
}

void BenchMemory(const QString& dir)
{
    // Packed, incompressible files: the package is as large as its payload.
    const ShipPackage record = MakeShip(dir, 200 * kMiB, nullptr);
    Check(SaveShip(record, dir, dir + "/big.xsp"), "save of the 200 MB package");
    for (const FileEntry& file : record.Models)
        QFile::remove(file.LocalPath);

    // A fresh process of this program does the open, so that nothing of the
    // making of the package counts.
    const QByteArray self = QCoreApplication::applicationFilePath().toLocal8Bit();
    const QByteArray package = (dir + "/big.xsp").toLocal8Bit();
    const QByteArray target = (dir + "/big-opened").toLocal8Bit();
    const pid_t child = fork();
    if (child == 0) {
        execl(self.constData(), self.constData(), "--open-child", package.constData(), target.constData(),
              static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    Check(child > 0 && wait4(child, &status, 0, &usage) == child, "wait");
    Check(WIFEXITED(status) && WEXITSTATUS(status) == 0, "open of the 200 MB package");
    const double peakMiB = double(usage.ru_maxrss) / 1024.0; // kilobytes on Linux
    std::printf(
        "memory       peak resident %.1f MiB while opening a %.0f MB package (target <= %.0f MiB) %s\n",
        peakMiB, double(QFileInfo(dir + "/big.xsp").size()) / 1e6, kMemoryTargetMiB,
        peakMiB <= kMemoryTargetMiB ? "ok" : "ABOVE TARGET");
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc == 4 && std::strcmp(argv[1], "--open-child") == 0)
        return OpenShip(QString::fromLocal8Bit(argv[2]), QString::fromLocal8Bit(argv[3])) ? 0 : 1;
    QCoreApplication app(argc, argv);
    QString base = QDir::tempPath();
    int reps = 1;
    QString only;
    QString corpus = HW_CORPUS_DIR;
    const QStringList args = app.arguments();
    for (int i = 1; i + 1 < args.size(); i += 2) {
        if (args[i] == "--dir")
            base = args[i + 1];
        else if (args[i] == "--reps")
            reps = std::max(1, args[i + 1].toInt());
        else if (args[i] == "--only")
            only = args[i + 1];
        else if (args[i] == "--corpus")
            corpus = args[i + 1];
    }
    QTemporaryDir dir(base + "/bench_package-XXXXXX");
    if (!dir.isValid()) {
        std::fprintf(stderr, "bench_package: cannot make a directory below %s\n", qPrintable(base));
        return 1;
    }
    if (only.isEmpty() || only == "save")
        BenchSave(dir.path(), reps, corpus);
    if (only.isEmpty() || only == "open")
        BenchOpen(dir.path(), reps, corpus);
    if (only.isEmpty() || only == "text")
        BenchTextSize(dir.path(), corpus);
    if (only.isEmpty() || only == "memory")
        BenchMemory(dir.path());
    std::fflush(stdout);
    return g_failures == 0 ? 0 : 1;
}
