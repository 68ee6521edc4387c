// Timings of the catalog file system against plain references measured in the
// same run. Each figure is the best of several repetitions on both sides (four
// times as many for the millisecond-scale listing and extraction), and is
// printed as a ratio: our time divided by the reference's time.
//
//     bench_catfs [--dir DIR] [--reps N] [--only pack|unpack|list|extract|replace]
//
// The big files (a 1 GiB .dat among them) are made in a temporary directory
// below DIR (default /tmp) and removed at the end.
#include "catfs/CatDriver.h"

#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;
namespace fs = std::filesystem;

constexpr size_t kTextBytes = 20u << 20; // text for packing
constexpr int kCatalogEntries = 100000;  // entries of the listed catalog
constexpr size_t kBigEntry = 16u << 20;  // entries of the big .dat
constexpr int kBigEntries = 64;          // 64 x 16 MiB = 1 GiB
constexpr size_t kMoveBuffer = 20480000; // the reference copies the tail through one large buffer

int g_failures = 0;

void Check(bool ok, const char* what)
{
    if (!ok) {
        std::fprintf(stderr, "bench_catfs: %s failed (driver: %s)\n", what, CatErrorText(CatLastError()));
        ++g_failures;
    }
}

// A small deterministic generator, so every run packs the same text.
struct Lcg
{
    uint64_t state;
    uint32_t next(uint32_t bound)
    {
        state = state * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<uint32_t>(state >> 33) % bound;
    }
};

// Ship-table rows and language pages with varied numbers, as the game has them.
Bytes GameText(size_t size)
{
    std::string text;
    text.reserve(size + 4096);
    Lcg random{42};
    int row = 0;
    while (text.size() < size) {
        if (row % 400 == 0) {
            text += "<?xml version=\"1.0\" encoding=\"UTF-8\" ?>\n<language id=\"44\">\n<page id=\"" +
                    std::to_string(17 + random.next(3000)) + "\" title=\"Boardcomp. objects\" descr=\"\">\n";
            for (int t = 0; t < 120; ++t)
                text += "<t id=\"" + std::to_string(random.next(100000)) + "\">" +
                        (t % 3 ? "Argon Nova Raider" : "Split Mamba Vanguard") + " Mk" +
                        std::to_string(random.next(9)) + "</t>\n";
            text += "</page>\n</language>\n";
        }
        text += "ships\\argon\\argon_m3_" + std::to_string(row) + ";0;" + std::to_string(random.next(2000)) +
                ";" + std::to_string(random.next(200)) + "." + std::to_string(random.next(99)) + ";" +
                std::to_string(random.next(90)) + ";" + std::to_string(random.next(10000)) + ";" +
                std::to_string(1 + random.next(9)) + ";" + std::to_string(random.next(2000000)) +
                ";0;0;1;SS_SH_" + std::to_string(row % 12) + ";" + std::to_string(random.next(65536)) + ";\n";
        ++row;
    }
    text.resize(size);
    return Bytes(text.begin(), text.end());
}

double Seconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Runs both sides `reps` times, alternating, and prints the best of each.
// `prepare` runs before each timed call of our side and is not timed.
void Compare(const char* name, int reps, double target, const std::function<void()>& prepare,
             const std::function<void()>& ours, const std::function<void()>& reference)
{
    double bestOurs = 1e300;
    double bestReference = 1e300;
    for (int i = 0; i < reps; ++i) {
        if (prepare)
            prepare();
        // Written-back pages of earlier steps must not land on either side.
        ::sync();
        bestOurs = std::min(bestOurs, Seconds(ours));
        ::sync();
        bestReference = std::min(bestReference, Seconds(reference));
    }
    const double ratio = bestOurs / bestReference;
    std::printf("%-36s ours %9.4f s   reference %9.4f s   ratio %5.2fx (target <= %.1fx) %s\n", name,
                bestOurs, bestReference, ratio, target, ratio <= target ? "ok" : "MISSED");
    std::fflush(stdout);
}

// ---- pack and unpack against raw deflate / inflate

Bytes RawDeflate(const Bytes& input)
{
    z_stream stream{};
    // The settings of the packed format: level 9, raw stream, memory level 9.
    deflateInit2(&stream, 9, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY);
    Bytes output(deflateBound(&stream, input.size()));
    stream.next_in = const_cast<uint8_t*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = output.data();
    stream.avail_out = static_cast<uInt>(output.size());
    Check(deflate(&stream, Z_FINISH) == Z_STREAM_END, "reference deflate");
    output.resize(stream.total_out);
    deflateEnd(&stream);
    return output;
}

Bytes RawInflate(const Bytes& input, size_t size)
{
    z_stream stream{};
    inflateInit2(&stream, -15);
    Bytes output(size);
    stream.next_in = const_cast<uint8_t*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = output.data();
    stream.avail_out = static_cast<uInt>(output.size());
    Check(inflate(&stream, Z_FINISH) == Z_STREAM_END, "reference inflate");
    inflateEnd(&stream);
    return output;
}

void BenchPackAndUnpack(int reps, bool pack, bool unpack)
{
    const Bytes text = GameText(kTextBytes);
    Bytes packed;
    {
        GzipWriter writer;
        uint8_t lead = 0;
        Check(PckPack(text.data(), static_cast<uint32_t>(text.size()), &writer, 0, &lead) == CatErrNone,
              "PckPack");
        packed.push_back(lead);
        packed.insert(packed.end(), writer.output.begin(), writer.output.end());
    }
    const Bytes deflated = RawDeflate(text);
    std::printf("text %zu bytes, packed %zu bytes, raw deflate %zu bytes\n", text.size(), packed.size(),
                deflated.size());

    if (pack)
        Compare(
            "pack 20 MB vs raw deflate 9", reps, 1.1, nullptr,
            [&] {
                GzipWriter writer;
                uint8_t lead = 0;
                Check(PckPack(text.data(), static_cast<uint32_t>(text.size()), &writer, 0, &lead) ==
                          CatErrNone,
                      "PckPack");
            },
            [&] { RawDeflate(text); });

    if (unpack) {
        Bytes scratch;
        Compare(
            "unpack 20 MB vs raw inflate", reps, 1.2, [&] { scratch = packed; },
            [&] {
                uint8_t* data = nullptr;
                uint32_t size = 0;
                uint32_t time = 0;
                Check(PckUnpack(scratch.data(), static_cast<uint32_t>(scratch.size()), &data, &size, &time) ==
                              CatErrNone &&
                          size == text.size(),
                      "PckUnpack");
                PckFreeData(data);
            },
            [&] { RawInflate(deflated, text.size()); });
    }
}

// ---- catalogs written directly in the game's format

// The references XOR eight bytes at a time, as a careful plain implementation
// would (the catalog key repeats every 256 bytes); the byte-loop variants are
// printed too, as the plainest possible reference.
void XorCatalogBytewise(uint8_t* bytes, size_t size)
{
    for (size_t i = 0; i < size; ++i)
        bytes[i] ^= static_cast<uint8_t>(CatCatalogKey + i);
}

void XorDataBytewise(uint8_t* bytes, size_t size)
{
    for (size_t i = 0; i < size; ++i)
        bytes[i] ^= CatDataKey;
}

void XorCatalog(uint8_t* bytes, size_t size)
{
    uint8_t period[256 + 8];
    for (size_t i = 0; i < sizeof period; ++i)
        period[i] = static_cast<uint8_t>(CatCatalogKey + i);
    size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        uint64_t word;
        uint64_t key;
        std::memcpy(&word, bytes + i, 8);
        std::memcpy(&key, period + (i & 255), 8);
        word ^= key;
        std::memcpy(bytes + i, &word, 8);
    }
    for (; i < size; ++i)
        bytes[i] ^= static_cast<uint8_t>(CatCatalogKey + i);
}

void XorData(uint8_t* bytes, size_t size)
{
    const uint64_t key = 0x0101010101010101ull * CatDataKey;
    size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        uint64_t word;
        std::memcpy(&word, bytes + i, 8);
        word ^= key;
        std::memcpy(bytes + i, &word, 8);
    }
    for (; i < size; ++i)
        bytes[i] ^= CatDataKey;
}

bool WriteFile(const fs::path& path, const void* data, size_t size)
{
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        return false;
    const bool ok = std::fwrite(data, 1, size, file) == size;
    return std::fclose(file) == 0 && ok;
}

bool WriteCatalog(const fs::path& catPath, const std::vector<std::pair<std::string, size_t>>& entries)
{
    std::string text = "bench.dat\n";
    for (const auto& [name, size] : entries)
        text += name + " " + std::to_string(size) + "\n";
    XorCatalog(reinterpret_cast<uint8_t*>(text.data()), text.size());
    return WriteFile(catPath, text.data(), text.size());
}

// Writes `total` bytes of .dat made of a pattern that is not a packed file.
bool WriteData(const fs::path& datPath, size_t total)
{
    Bytes chunk(4u << 20);
    for (size_t i = 0; i < chunk.size(); ++i)
        chunk[i] = static_cast<uint8_t>(('a' + i % 23) ^ CatDataKey);
    FILE* file = std::fopen(datPath.c_str(), "wb");
    if (!file)
        return false;
    bool ok = true;
    for (size_t done = 0; done < total && ok; done += chunk.size())
        ok = std::fwrite(chunk.data(), 1, std::min(chunk.size(), total - done), file) ==
             std::min(chunk.size(), total - done);
    return std::fclose(file) == 0 && ok;
}

// Driver paths use backslashes.
std::string DriverPath(const fs::path& path)
{
    std::string text = path.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

void BenchListing(const fs::path& dir, int reps)
{
    const fs::path cat = dir / "list.cat";
    std::vector<std::pair<std::string, size_t>> entries;
    Lcg random{7};
    size_t total = 0;
    for (int i = 0; i < kCatalogEntries; ++i) {
        const size_t size = 1 + random.next(64);
        entries.emplace_back("objects/ships/argon/ship_" + std::to_string(i) + (i % 2 ? ".pbb" : ".pbd"),
                             size);
        total += size;
    }
    Check(WriteCatalog(cat, entries) && WriteData(dir / "list.dat", total),
          "writing the 100,000-entry catalog");
    const std::string path = DriverPath(cat);

    const auto list = [&] {
        CatArchiveHandle* archive = CatOpenArchive(path.c_str(), 0);
        Check(archive != nullptr, "CatOpenArchive");
        if (!archive)
            return;
        CatFindData data{};
        int count = 0;
        if (CatFind* find = CatFindFirst(archive, "*", &data)) {
            do
                ++count;
            while (CatFindNext(find, &data));
            CatFindClose(find);
        }
        CatCloseArchive(archive);
        Check(count == kCatalogEntries, "listing all entries");
    };
    const auto readAndXor = [&](void (*xorPass)(uint8_t*, size_t)) {
        const int fd = ::open(cat.c_str(), O_RDONLY);
        Bytes bytes(static_cast<size_t>(::lseek(fd, 0, SEEK_END)));
        ::lseek(fd, 0, SEEK_SET);
        Check(::read(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "reference read");
        ::close(fd);
        xorPass(bytes.data(), bytes.size());
    };
    Compare("load+list 100,000 entries vs read+XOR", reps * 4, 3.0, nullptr, list,
            [&] { readAndXor(XorCatalog); });
    Compare("  the same vs read+byte-loop XOR", reps * 4, 3.0, nullptr, list,
            [&] { readAndXor(XorCatalogBytewise); });
}

// Moves `length` bytes of a file from `from` down to `to` through one buffer.
void MoveDown(int fd, off_t from, off_t to, size_t length, Bytes& buffer)
{
    while (length > 0) {
        const size_t step = std::min(length, buffer.size());
        ::lseek(fd, from, SEEK_SET);
        const ssize_t got = ::read(fd, buffer.data(), step);
        ::lseek(fd, to, SEEK_SET);
        Check(got == static_cast<ssize_t>(step) && ::write(fd, buffer.data(), step) == got, "reference move");
        from += static_cast<off_t>(step);
        to += static_cast<off_t>(step);
        length -= step;
    }
}

void BenchBigData(const fs::path& dir, int reps, bool extract, bool replace)
{
    const fs::path cat = dir / "big.cat";
    const fs::path dat = dir / "big.dat";
    std::vector<std::pair<std::string, size_t>> entries;
    for (int i = 0; i < kBigEntries; ++i)
        entries.emplace_back("objects/big_" + std::to_string(i) + ".bob", kBigEntry);
    std::printf("writing a %zu MiB .dat ...\n", kBigEntries * kBigEntry >> 20);
    std::fflush(stdout);
    Check(WriteCatalog(cat, entries) && WriteData(dat, kBigEntries * kBigEntry), "writing the big catalog");

    if (extract) {
        const int index = kBigEntries - 2;
        const std::string entry = DriverPath(cat) + "::objects\\big_" + std::to_string(index) + ".bob";
        Bytes buffer(kBigEntry);
        const auto extractEntry = [&] {
            CatFile* file = CatOpen(entry.c_str(), CatModeRead, 0, CatKindAuto);
            Check(file != nullptr, "CatOpen of an entry");
            if (!file)
                return;
            const int32_t size = CatSize(file);
            Check(size == static_cast<int32_t>(kBigEntry) && CatRead(file, buffer.data(), size) == size,
                  "CatRead");
            CatClose(file);
        };
        const auto readAndXor = [&](void (*xorPass)(uint8_t*, size_t)) {
            const int fd = ::open(dat.c_str(), O_RDONLY);
            ::lseek(fd, static_cast<off_t>(index * kBigEntry), SEEK_SET);
            Check(::read(fd, buffer.data(), kBigEntry) == static_cast<ssize_t>(kBigEntry), "reference read");
            ::close(fd);
            xorPass(buffer.data(), buffer.size());
        };
        Compare("extract 16 MiB near end of 1 GiB", reps * 4, 1.2, nullptr, extractEntry,
                [&] { readAndXor(XorData); });
        Compare("  the same vs read+byte-loop XOR", reps * 4, 1.2, nullptr, extractEntry,
                [&] { readAndXor(XorDataBytewise); });
    }

    if (replace) {
        // Each round replaces the second entry of the moment with a body of
        // another length, so the whole tail behind it moves down.
        const fs::path reference = dir / "reference.dat";
        Check(WriteData(reference, kBigEntries * kBigEntry), "writing the reference file");
        Bytes moveBuffer(kMoveBuffer);
        int round = 0;
        std::string entry;
        Bytes body;
        Compare(
            "replace near start of 1 GiB (tail move)", reps, 1.2,
            [&] {
                ++round;
                CatArchiveHandle* archive = CatOpenArchive(DriverPath(cat).c_str(), 0);
                CatFindData data{};
                CatFind* find = archive ? CatFindFirst(archive, "*", &data) : nullptr;
                Check(find && CatFindNext(find, &data), "finding the second entry");
                entry = DriverPath(cat) + "::" + data.name;
                if (find)
                    CatFindClose(find);
                if (archive)
                    CatCloseArchive(archive);
                body.assign(kBigEntry - 4096 * round, static_cast<uint8_t>('A' + round));
            },
            [&] {
                CatFile* file = CatOpen(entry.c_str(), CatModeWrite, 0, CatKindPlain);
                Check(file != nullptr, "CatOpen for writing");
                if (!file)
                    return;
                Check(CatSeek(file, 0, CatSeekBegin) &&
                          CatWrite(file, body.data(), static_cast<uint32_t>(body.size())) ==
                              static_cast<int32_t>(body.size()) &&
                          CatTruncate(file),
                      "CatWrite");
                Check(CatClose(file), "CatClose (commit)");
            },
            [&] {
                const int fd = ::open(reference.c_str(), O_RDWR);
                MoveDown(fd, static_cast<off_t>(2 * kBigEntry), static_cast<off_t>(kBigEntry),
                         (kBigEntries - 2) * kBigEntry, moveBuffer);
                ::close(fd);
            });
    }
}

} // namespace

int main(int argc, char* argv[])
{
    fs::path base = "/tmp";
    int reps = 3;
    std::string only;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--dir" && i + 1 < argc)
            base = argv[++i];
        else if (arg == "--reps" && i + 1 < argc)
            reps = std::max(1, std::atoi(argv[++i]));
        else if (arg == "--only" && i + 1 < argc)
            only = argv[++i];
        else {
            std::fprintf(
                stderr,
                "usage: bench_catfs [--dir DIR] [--reps N] [--only pack|unpack|list|extract|replace]\n");
            return 2;
        }
    }
    const auto wanted = [&](const char* name) { return only.empty() || only == name; };

    std::string pattern = (base / "hw-bench-XXXXXX").string();
    if (!::mkdtemp(pattern.data())) {
        std::perror("bench_catfs: cannot make a temporary directory");
        return 1;
    }
    const fs::path dir = pattern;
    std::printf("best of %d repetitions; working in %s\n", reps, dir.c_str());

    if (wanted("pack") || wanted("unpack"))
        BenchPackAndUnpack(reps, wanted("pack"), wanted("unpack"));
    if (wanted("list"))
        BenchListing(dir, reps);
    if (wanted("extract") || wanted("replace"))
        BenchBigData(dir, reps, wanted("extract"), wanted("replace"));

    std::error_code ignored;
    fs::remove_all(dir, ignored);
    return g_failures == 0 ? 0 : 1;
}
