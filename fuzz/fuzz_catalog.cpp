// Fuzz harness of the catalog loader. An input is
//
//     2 bytes   little-endian length n of the catalog text
//     n bytes   the catalog text, unscrambled
//     the rest  the .dat content, unscrambled
//
// The harness scrambles both as the game does and writes them as a catalog
// pair to its own temporary directory, then opens the catalog, lists it and
// reads every entry, as packed-or-plain and as plain.
#include "catfs/CatDriver.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

void Require(bool condition, const char* what, const std::string& name = {})
{
    if (!condition) {
        std::fprintf(stderr, "fuzz_catalog: %s %s (last error %u)\n", what, name.c_str(), CatLastError());
        std::abort();
    }
}

// One directory for the whole run, removed when the process ends normally.
class WorkDirectory
{
public:
    WorkDirectory()
    {
        std::string pattern = (fs::temp_directory_path() / "hw-fuzz-catalog-XXXXXX").string();
        if (!mkdtemp(pattern.data()))
            std::abort();
        m_path = pattern;
    }
    ~WorkDirectory()
    {
        std::error_code ignored;
        fs::remove_all(m_path, ignored);
    }
    WorkDirectory(const WorkDirectory&) = delete;
    WorkDirectory& operator=(const WorkDirectory&) = delete;

    const fs::path& path() const { return m_path; }

private:
    fs::path m_path;
};

const fs::path& WorkDir()
{
    static const WorkDirectory directory;
    return directory.path();
}

bool WriteFile(const fs::path& path, const std::vector<uint8_t>& bytes)
{
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        return false;
    const bool ok = bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return std::fclose(file) == 0 && ok;
}

std::string DriverPath(const fs::path& path)
{
    std::string text = path.string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

// Opens one entry and reads it whole; gives its size or -1 when it can't be opened.
int64_t ReadEntry(const std::string& path, int32_t kind, const std::string& name)
{
    CatFile* file = CatOpen(path.c_str(), CatModeRead, 0, kind);
    if (!file)
        return -1;
    const int32_t size = CatSize(file);
    Require(size >= 0, "an open entry has no size:", name);
    std::vector<uint8_t> buffer(static_cast<size_t>(size) + 1);
    Require(CatRead(file, buffer.data(), static_cast<uint32_t>(size)) == size, "short read of", name);
    Require(CatRead(file, buffer.data(), 1) == 0 && CatEof(file), "read past the end of", name);
    Require(CatClose(file), "closing an unchanged entry failed:", name);
    return size;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const size_t textLength = size < 2 ? 0 : std::min<size_t>(bytes[0] | bytes[1] << 8, size - 2);
    const uint8_t* text = bytes + std::min<size_t>(size, 2);
    std::vector<uint8_t> catalog(text, text + textLength);
    std::vector<uint8_t> data(text + textLength, bytes + size);
    for (size_t i = 0; i < catalog.size(); ++i)
        catalog[i] ^= static_cast<uint8_t>(CatCatalogKey + i);
    for (uint8_t& byte : data)
        byte ^= CatDataKey;

    const fs::path catPath = WorkDir() / "fuzz.cat";
    if (!WriteFile(catPath, catalog) || !WriteFile(WorkDir() / "fuzz.dat", data))
        std::abort();

    const std::string cat = DriverPath(catPath);
    CatArchiveHandle* archive = CatOpenArchive(cat.c_str(), 0);
    if (!archive)
        return 0;
    std::vector<CatFindData> found;
    CatFindData entry{};
    if (CatFind* find = CatFindFirst(archive, "*", &entry)) {
        do {
            Require(std::memchr(entry.name, 0, sizeof entry.name) != nullptr, "an unterminated name");
            found.push_back(entry);
        } while (CatFindNext(find, &entry));
        CatFindClose(find);
    }

    for (const CatFindData& item : found) {
        const std::string name = item.name;
        const std::string path = cat + "::" + name;
        ReadEntry(path, CatKindAuto, name);
        const int64_t stored = ReadEntry(path, CatKindPlain, name);
        // Of several entries with one name (ignoring case) the first is read.
        const auto first = std::find_if(found.begin(), found.end(), [&](const CatFindData& other) {
            return strcasecmp(other.name, item.name) == 0;
        });
        Require(stored < 0 || stored == first->size, "a plain read differs from the listed size:", name);
    }
    Require(CatCloseArchive(archive), "closing the archive failed");
    return 0;
}
