// Timing of the start-up text load against unpacking and parsing the same
// language pages directly, measured in the same run.
//
//     bench_gettext [--dir DIR] [--reps N]
//
// A game of 13 catalogs with 40,000 entries in all is generated below DIR
// (default /tmp): 30 MB of English language pages (page 17, overlapping ids
// across catalogs, as patches do), a German page file in each catalog that is
// skipped, and small filler entries. "ours" is DCreateShip::GetText on that
// game; the reference unpacks each English page from memory (descramble and
// inflate) and runs a QXmlStreamReader over it with no handler work. Each time
// is the best of N runs. The target is a ratio of at most 2.
#include "BenchCatalog.h"
#include "BenchTiming.h"
#include "app/DCreateShip.h"
#include "catfs/CatDriver.h"
#include "catfs/transfer/GameFile.h"
#include "gamedata/TypesFile.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

namespace {

constexpr int kCatalogs = 13;
constexpr int kEntries = 40000;
constexpr qint64 kPageBytes = 30 * 1000 * 1000;
constexpr int kPagesPerCatalog = 2;
constexpr double kTarget = 2.0;

// A language page of page 17 of about `size` bytes: ship names and
// descriptions, with ids from `firstId` on, wrapping in a range of 60,000 so
// that later catalogs replace texts of earlier ones.
QByteArray MakePage(qint64 size, int firstId, quint32 seed)
{
    static const char* const words[] = {"fighter", "Argon", "hull",  "shield", "cargo",  "turret", "fast",
                                        "heavy",   "scout", "Boron", "Teladi", "engine", "&amp;",  "laser"};
    QRandomGenerator random(seed);
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<language id=\"44\">\n<page id=\"17\" "
                     "title=\"Ships\" descr=\"generated\">\n";
    int id = firstId;
    while (xml.size() < size) {
        xml += " <t id=\"" + QByteArray::number(10000 + id % 60000) + "\">";
        const int count = 3 + random.bounded(12);
        for (int w = 0; w < count; ++w) {
            xml += words[random.bounded(int(std::size(words)))];
            xml += ' ';
        }
        xml += QByteArray::number(id) + "</t>\n";
        ++id;
    }
    return xml + "</page>\n</language>\n";
}

// Packs `plain` through the transfer layer and returns the packed bytes, as the
// game stores a .pck.
QByteArray Packed(const QString& scratch, const QByteArray& plain)
{
    QFile source(scratch + "/page.xml");
    if (!source.open(QIODevice::WriteOnly) || source.write(plain) != plain.size())
        return {};
    source.close();
    QFile::remove(scratch + "/page.pck");
    if (!GameFileCopyIn(source, scratch + "/page.xml", true))
        return {};
    QFile packed(scratch + "/page.pck");
    return packed.open(QIODevice::ReadOnly) ? packed.readAll() : QByteArray();
}

// Builds the game in `gameDir`; the packed English pages are kept in `pages`.
bool MakeGame(const QString& gameDir, QList<QByteArray>& pages)
{
    QDir().mkpath(gameDir);
    QFile exe(gameDir + "/x3.exe");
    if (!exe.open(QIODevice::WriteOnly))
        return false;
    const QString scratch = gameDir + "/../scratch";
    QDir().mkpath(scratch);

    const int pageCount = kCatalogs * kPagesPerCatalog;
    const qint64 pageSize = kPageBytes / pageCount;
    int firstId = 0;
    for (int c = 1; c <= kCatalogs; ++c) {
        // Each catalog holds its share of the entries: fillers, its English
        // pages and one German page.
        const int share = kEntries / kCatalogs + (c <= kEntries % kCatalogs ? 1 : 0);
        const int fillers = share - kPagesPerCatalog - 1;
        CatalogWriter catalog;
        for (int i = 0; i < fillers; ++i) {
            const QByteArray filler = "filler " + QByteArray::number(c * 100000 + i) + "\n";
            catalog.add(QString("objects\\gen\\c%1\\part%2.txt").arg(c).arg(i), filler);
        }
        for (int p = 1; p <= kPagesPerCatalog; ++p) {
            const QByteArray packed = Packed(scratch, MakePage(pageSize, firstId, quint32(c * 10 + p)));
            if (packed.isEmpty())
                return false;
            catalog.add(QString("t\\44%1.pck").arg(p, 4, 10, QChar('0')), packed);
            pages.append(packed);
            firstId += int(pageSize / 120);
        }
        const QByteArray german = Packed(scratch, MakePage(200000, 0, quint32(c)));
        if (german.isEmpty())
            return false;
        catalog.add("t\\490001.pck", german);
        if (!catalog.write(gameDir + "/" + CatalogName(c)))
            return false;
    }
    return true;
}

// Unpacks and parses every page with no handler work; false on any failure.
bool ParseDirectly(const QList<QByteArray>& pages, qint64* texts, qint64* bytes)
{
    *texts = 0;
    *bytes = 0;
    for (const QByteArray& page : pages) {
        QByteArray buffer = page; // PckUnpack works in place
        uint8_t* data = nullptr;
        uint32_t size = 0;
        uint32_t time = 0;
        const uint32_t code = PckUnpack(reinterpret_cast<uint8_t*>(buffer.data()), uint32_t(buffer.size()),
                                        &data, &size, &time);
        if (code != 0 && code != CatErrGzipReservedFlags)
            return false;
        // Through a device, read in pieces, as the program reads its work file.
        QByteArray plain = QByteArray::fromRawData(reinterpret_cast<const char*>(data), qsizetype(size));
        QBuffer device(&plain);
        device.open(QIODevice::ReadOnly);
        QXmlStreamReader reader(&device);
        while (!reader.atEnd()) {
            if (reader.readNext() == QXmlStreamReader::StartElement)
                ++*texts;
        }
        *bytes += size;
        const bool ok = !reader.hasError();
        PckFreeData(data);
        if (!ok)
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QString base = QDir::tempPath();
    int reps = 3;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (std::strcmp(argv[i], "--dir") == 0)
            base = QString::fromLocal8Bit(argv[i + 1]);
        else if (std::strcmp(argv[i], "--reps") == 0)
            reps = std::max(1, std::atoi(argv[i + 1]));
    }
    QTemporaryDir dir(base + "/bench_gettext-XXXXXX");
    if (!dir.isValid()) {
        std::fprintf(stderr, "bench_gettext: cannot make a directory below %s\n", qPrintable(base));
        return 1;
    }
    // The window's program directory: settings that name the generated game.
    const QString home = dir.filePath("home");
    const QString game = dir.filePath("game");
    QDir().mkpath(home);
    qputenv("HULLWRIGHT_HOME", QFile::encodeName(home));
    QFile config(home + "/config.dat");
    if (!config.open(QIODevice::WriteOnly) ||
        config.write("<common>\nDir: " + game.toUtf8() +
                     "\n</common>\n<hullwright>\nBaseLang: 44\n</hullwright>\n") < 0)
        return 1;
    config.close();

    QApplication app(argc, argv);
    QElapsedTimer made;
    made.start();
    QList<QByteArray> pages;
    int entries = 0;
    if (!MakeGame(game, pages)) {
        std::fprintf(stderr, "bench_gettext: generating the game failed\n");
        return 1;
    }
    for (int c = 1; c <= kCatalogs; ++c)
        entries += GameFileList(game + "/" + CatalogName(c)).size();
    std::printf("generated %d catalogs, %d entries, %d English pages in %.1f s\n", kCatalogs, entries,
                int(pages.size()), made.nsecsElapsed() / 1e9);

    qint64 elements = 0;
    qint64 plainBytes = 0;
    const double direct = BestSeconds(reps, [&] { return ParseDirectly(pages, &elements, &plainBytes); });
    std::printf("English pages: %.1f MB plain\n", plainBytes / 1e6);
    // A new window for each run, built outside the timing: only GetText counts.
    qsizetype texts = 0;
    double ours = 1e30;
    for (int i = 0; i < reps && ours > 0; ++i) {
        DCreateShip window;
        QElapsedTimer timer;
        timer.start();
        window.GetText();
        const double seconds = timer.nsecsElapsed() / 1e9;
        texts = window.gameTexts().Texts().size();
        ours = window.gameTexts().Loaded() && texts > 0 ? std::min(ours, seconds) : -1;
    }
    if (direct <= 0 || ours <= 0) {
        std::fprintf(stderr, "bench_gettext: a run failed\n");
        return 1;
    }
    const double ratio = ours / direct;
    std::printf("GetText: %.3f s (%lld texts)   direct inflate + parse: %.3f s (%lld elements)   ratio %.2f "
                "(target <= %.1f)\n",
                ours, static_cast<long long>(texts), direct, static_cast<long long>(elements), ratio,
                kTarget);
    std::fflush(stdout);
    return ratio <= kTarget ? 0 : 1;
}
