// One open catalog: the .cat/.dat pair, its entry list and the operations
// that read, add, replace and remove entries. Internal to the driver.
#pragma once

#include "catfs/driver/Bytes.h"
#include "catfs/driver/CatalogText.h"
#include "catfs/driver/Platform.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace catfs {

class CatArchive
{
public:
    // Loads the catalog `canonicalPath` (a normalised path). With `create`, a
    // catalog that does not exist is created with an empty .dat. On failure
    // the result is null and `code` holds the driver code; nothing on disk
    // was changed.
    static std::unique_ptr<CatArchive> Open(const std::string& canonicalPath, bool create, uint32_t& code);

    ~CatArchive();
    CatArchive(const CatArchive&) = delete;
    CatArchive& operator=(const CatArchive&) = delete;

    const std::string& path() const { return m_path; }
    const std::string& osCatalogPath() const { return m_osCatalogPath; }
    const std::string& osDataPath() const { return m_osDataPath; }
    const std::string& dataName() const { return m_dataName; }
    const CatEntryList& entries() const { return m_entries; }
    std::string_view name(const CatEntry& entry) const
    {
        return std::string_view(m_names.data() + entry.nameOffset, entry.nameLength);
    }
    bool dirty() const { return m_dirty; }

    // After a change that failed half-way (its journal stays) the .dat no
    // longer holds what the list describes: nothing may be read from it or
    // written to it until this completes the change from the journal.
    // CatErrNone when the catalog is whole (again), else
    // CatErrArchiveUnfinished. Commits and removals call it first.
    uint32_t recover();
    // End of the name store: the bytes behind a name up to here may be read.
    const char* nameStoreEnd() const { return m_names.data() + m_names.size(); }

    // Position of the entry in the list (first match without regard to case),
    // or -1.
    int64_t find(std::string_view name);

    // Reads the entry's stored bytes, still scrambled with the .dat key.
    // Entries of size 0 give an empty buffer. Fails with 15 when the .dat is
    // shorter than the entry claims, before anything is allocated.
    uint32_t readStored(const CatEntry& entry, ByteBuffer& bytes);
    // Fails with 15 when the .dat is shorter than the entry claims.
    uint32_t checkStored(const CatEntry& entry) const;
    // Reads `count` stored bytes of the entry from `position` on, still
    // scrambled, straight into `out`.
    uint32_t readStoredAt(const CatEntry& entry, uint32_t position, uint8_t* out, uint32_t count) const;

    // Appends an empty entry (size 0 at the end). Code 17 for a name that a
    // catalog line cannot hold.
    uint32_t addEntry(std::string_view name);

    // Replaces the content of entry `name` with `bytes` (stored form, not yet
    // scrambled with the .dat key; the buffer is scrambled in place). An
    // entry of changed size moves to the end of list and .dat.
    uint32_t commitEntry(std::string_view name, uint8_t* bytes, uint32_t size);

    // Removes the entry and closes the gap it leaves in the .dat.
    uint32_t removeEntry(std::string_view name);

    // Writes the catalog text when it changed, and cuts the .dat to the sum of
    // all sizes.
    uint32_t writeIfDirty();

    // Reference count of the driver's tables.
    int32_t references = 1;
    bool inTable = false;

private:
    CatArchive() = default;
    uint32_t load(bool create);
    uint32_t createPair();
    uint32_t openDataFile();
    uint32_t recoverPendingMove();
    void buildIndex();
    void indexInsert(uint32_t position);
    uint64_t dataLength() const;
    std::vector<uint8_t> catalogText(const CatEntryList& entries) const;
    uint32_t installCatalog(const std::vector<uint8_t>& text);
    // The crash-safe rearrangement of the .dat; see Catalog.cpp.
    struct Rearrangement
    {
        uint64_t destination = 0;
        uint64_t source = 0;
        uint64_t length = 0;
        uint64_t newDataLength = 0;
    };
    uint32_t applyRearrangement(const Rearrangement& move, const std::vector<uint8_t>& text);
    // The entry list without the entry at `position`, its followers moved down.
    CatEntryList entriesWithout(size_t position) const;
    // Applies the move and, when it took effect, adopts `entries` as the list.
    uint32_t rearrange(const Rearrangement& move, CatEntryList entries);
    std::string journalPath() const { return m_osCatalogPath + ".journal"; }

    std::string m_path;          // canonical path, the table's key
    std::string m_osCatalogPath; // as found on disk
    std::string m_osDataPath;
    std::string m_dataName; // line 1 of the catalog
    NameStore m_names;      // name store: the catalog text, then names added since
    CatEntryList m_entries;
    std::vector<uint32_t> m_index; // open-addressing hash of positions + 1
    bool m_indexValid = false;
    size_t m_indexed = 0;
    UniqueFd m_catalogFd;
    UniqueFd m_dataFd;
    bool m_dirty = false;
    bool m_broken = false; // a rearrangement failed halfway: see recover()
};

} // namespace catfs
