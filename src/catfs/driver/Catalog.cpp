#include "catfs/driver/Catalog.h"

#include "catfs/CatDriver.h"

#include <zlib.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace catfs {

// The .cat file, once unscrambled, is 8-bit text, one item a line:
//
//   line 1    the data file's name as the catalog's writer gave it ("01.dat").
//             It is kept and written back; the .dat actually used is the
//             .cat's own name with the extension .dat.
//   line 2..  "<name> <size>": the entry's path inside the archive, which may
//             hold blanks, then a blank, then its length in the .dat in
//             decimal. The size begins behind the last blank of the line.
//
// CR, LF (and a stray zero byte) all end a line; empty lines are skipped; a
// last line without a line end still counts. On disk the directory separator
// is '/', in memory '\'. The writer ends every line with a single LF.
//
// Scrambling: byte i of the .cat (i from 0) is XORed with (0x5A + i) mod 256.
//
// The .dat holds the entries' bytes back to back in catalog order, with no
// gaps and no table of its own: an entry's offset is the sum of the sizes of
// all lines before it. Every byte is XORed with 0xA7; a packed entry keeps its
// own scrambling beneath.
//
// Sizes are 32-bit. A size that does not fit, or sizes whose sum passes 4 GiB,
// make the load fail with "Invalid size in CAT entry" (15): no offset of such
// a catalog could be trusted. Whether the .dat really holds an entry's bytes is
// checked when the entry is read, before its buffer is allocated.
//
// Replacing and removing entries (the rearrangement of the .dat):
//
// After a commit an entry of changed size is the last line of the catalog and
// the last bytes of the .dat; the entries behind its old place move down by
// its old size, and the .dat has no holes. An entry of unchanged size keeps
// its place. The catalog text has no offsets, so a .cat can only describe a
// .dat without holes. To survive a crash at any point, the .dat is never
// changed in a place that the current .cat describes before a journal beside
// the catalog ("<name>.cat.journal") records how to finish the change:
//
//   1. The entry's new bytes are written behind the logical end of the .dat,
//      where the current catalog describes nothing.
//   2. The journal is written to a temporary file, forced to disk and renamed
//      into place; from now on the change is decided. It holds the region to
//      move (source, destination, length), the new length of the .dat, the
//      new catalog text and a progress word.
//   3. The region is moved down in pieces of up to 1 MiB, each read into one
//      buffer and written to its new place, and the progress word (in a shared
//      mapping of the journal) is advanced behind each piece. A piece that
//      small stays in the processor's cache between its read and its write,
//      which moves a large tail faster than bigger pieces do. A piece never
//      overwrites source bytes that a later piece still needs. When the move
//      distance is smaller than a piece, the piece would overwrite its own
//      source, so it is first copied into the journal's save area and the
//      progress word says so: a restart writes the saved piece again.
//   4. The new catalog is written to a temporary file, forced to disk and
//      renamed over the .cat; the .dat is cut to its new length; the journal
//      is removed.
//
// Opening a catalog that has a journal repeats steps 3 and 4 from the
// recorded progress before anything else. A change that fails half-way in a
// running process (a read or write error during step 3 or 4) leaves the
// catalog unfinished: the list already describes the outcome, the .dat does
// not yet. Until the journal is replayed, every read that would go to the
// .dat, every open, listing, commit and removal fails with "CAT archive has an
// unfinished change" (28); each of them tries the replay first, so the catalog
// serves again as soon as the cause has gone. Images already in memory were
// read whole before the failure and stay readable. A crash before step 2 leaves the old
// state (new bytes past the end are ignored and cut later), a crash after it
// the new one. A process crash is covered at every instruction; the journal
// and the catalog are forced to disk, but the moved bytes are not forced piece
// by piece, so a power failure in the middle of step 3 is not covered.
//
// The journal file, little-endian:
//
//    0  8  magic "HWCATJ1\0"
//    8  8  destination offset in the .dat
//   16  8  source offset
//   24  8  length of the region
//   32  8  new length of the .dat
//   40  4  piece size
//   44  4  length of the catalog text (0: the catalog is unchanged)
//   48  4  CRC-32 of bytes 0..47 followed by the catalog text
//   52  4  zero
//   56  8  progress word: bytes moved << 2, plus 2 when the piece at that
//          point is in the save area
//   64     the new catalog text, scrambled as it goes to disk
//   ..     padding to a multiple of 8, then the save area (one piece), present
//          when the move distance is smaller than a piece

namespace {

constexpr char kJournalMagic[8] = {'H', 'W', 'C', 'A', 'T', 'J', '1', '\0'};
constexpr size_t kJournalHeader = 64;
constexpr uint32_t kPieceSize = 1024 * 1024; // a journal records its own piece size
constexpr size_t kProgressOffset = 56;

uint64_t Load64(const uint8_t* p)
{
    uint64_t v;
    std::memcpy(&v, p, 8);
    return v;
}

uint32_t Load32(const uint8_t* p)
{
    uint32_t v;
    std::memcpy(&v, p, 4);
    return v;
}

void Store64(uint8_t* p, uint64_t v)
{
    std::memcpy(p, &v, 8);
}

void Store32(uint8_t* p, uint32_t v)
{
    std::memcpy(p, &v, 4);
}

size_t SaveAreaOffset(uint32_t textLength)
{
    return (kJournalHeader + textLength + 7) & ~size_t(7);
}

uint32_t JournalCrc(const uint8_t* header, const uint8_t* text, uint32_t textLength)
{
    uLong crc = crc32(0, nullptr, 0);
    crc = crc32(crc, header, 48);
    return uint32_t(crc32(crc, text, textLength));
}

uint64_t FileLength(int fd)
{
    struct stat st;
    if (::fstat(fd, &st) != 0)
        return 0;
    return uint64_t(st.st_size);
}

uint64_t HashName(std::string_view name)
{
    uint64_t hash = 1469598103934665603ull;
    for (char c : name) {
        hash ^= uint8_t(FoldCase(c));
        hash *= 1099511628211ull;
    }
    return hash;
}

// A shared read-write mapping that is unmapped when it goes.
class Mapping
{
public:
    Mapping(int fd, uint64_t offset, uint64_t length)
    {
        void* base = ::mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, fd, off_t(offset));
        if (base != MAP_FAILED) {
            m_base = static_cast<uint8_t*>(base);
            m_length = length;
        }
    }
    ~Mapping()
    {
        if (m_base)
            ::munmap(m_base, m_length);
    }
    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;
    uint8_t* data() const { return m_base; }
    bool valid() const { return m_base != nullptr; }

private:
    uint8_t* m_base = nullptr;
    uint64_t m_length = 0;
};

// Step 3 of the rearrangement: moves the region down from the progress that
// the journal records. `journal` is the mapped journal file.
uint32_t MoveRegion(int dataFd, uint8_t* journal, uint64_t destination, uint64_t source, uint64_t length,
                    uint32_t pieceSize, size_t saveOffset)
{
    // Plain reads and writes through one buffer: far cheaper than copying
    // through a shared mapping of a large .dat, which faults page by page.
    std::unique_ptr<uint8_t[]> buffer(new (std::nothrow) uint8_t[pieceSize]);
    if (!buffer)
        return CatErrNoMemory;
    uint8_t* save = journal + saveOffset;
    const bool useSave = source - destination < pieceSize;

    std::atomic_ref<uint64_t> progress(*reinterpret_cast<uint64_t*>(journal + kProgressOffset));
    uint64_t word = progress.load(std::memory_order_acquire);
    uint64_t done = word >> 2;
    if (word & 2) {
        // The piece in the save area may have overwritten its own source.
        const uint64_t count = std::min<uint64_t>(pieceSize, length - done);
        if (!WriteAllAt(dataFd, save, count, destination + done))
            return ErrnoToCode(errno);
        done += count;
        progress.store(done << 2, std::memory_order_release);
    }
    while (done < length) {
        const uint64_t count = std::min<uint64_t>(pieceSize, length - done);
        if (!ReadAllAt(dataFd, buffer.get(), count, source + done))
            return CatErrInvalidSize;
        if (useSave) {
            std::memcpy(save, buffer.get(), count);
            progress.store(done << 2 | 2, std::memory_order_release);
        }
        if (!WriteAllAt(dataFd, buffer.get(), count, destination + done))
            return ErrnoToCode(errno);
        done += count;
        progress.store(done << 2, std::memory_order_release);
    }
    return CatErrNone;
}

} // namespace

CatArchive::~CatArchive() = default;

std::unique_ptr<CatArchive> CatArchive::Open(const std::string& canonicalPath, bool create, uint32_t& code)
{
    std::unique_ptr<CatArchive> archive(new CatArchive());
    archive->m_path = canonicalPath;
    code = archive->load(create);
    if (code == CatErrFileNotFound && create) {
        archive.reset(new CatArchive());
        archive->m_path = canonicalPath;
        code = archive->createPair();
    }
    if (code != CatErrNone)
        return nullptr;
    return archive;
}

namespace {

// The .dat of a catalog: the catalog's own file name with its extension
// replaced by ".dat", in the same directory.
void DataPathOf(const std::string& canonicalCatalog, std::string& canonicalData, std::string& dataName)
{
    const size_t slash = canonicalCatalog.rfind('\\');
    const std::string directory = canonicalCatalog.substr(0, slash);
    std::string file = canonicalCatalog.substr(slash + 1);
    const size_t dot = file.rfind('.');
    if (dot != std::string::npos)
        file.resize(dot);
    dataName = file + ".dat";
    canonicalData = directory + "\\" + dataName;
}

} // namespace

uint32_t CatArchive::load(bool create)
{
    (void)create;
    m_osCatalogPath = ResolveOnDisk(m_path);
    uint32_t code = CatErrNone;
    m_catalogFd = OpenLocked(m_osCatalogPath, O_RDWR, Sharing::Exclusive, code);
    if (!m_catalogFd.valid())
        return code;

    std::string canonicalData, defaultName;
    DataPathOf(m_path, canonicalData, defaultName);
    m_osDataPath = ResolveOnDisk(canonicalData);

    if (::access(journalPath().c_str(), F_OK) == 0) {
        code = openDataFile();
        if (code == CatErrNone)
            code = recoverPendingMove();
        if (code != CatErrNone)
            return code;
    }

    const uint64_t length = FileLength(m_catalogFd.get());
    if (length == 0)
        return CatErrFileEmpty;
    if (length >= UINT32_MAX)
        return CatErrNoMemory;
    // The text becomes the name store; the decoder needs slack behind it,
    // which also lets names be copied out in whole blocks.
    NameStore text(size_t(length) + kCatalogTextSlack);
    if (!ReadAllAt(m_catalogFd.get(), reinterpret_cast<uint8_t*>(text.data()), size_t(length), 0))
        return ErrnoToCode(errno);
    m_names = std::move(text);
    m_indexValid = false;
    code = DecodeCatalogText(m_names.data(), size_t(length), m_dataName, m_entries);
    if (code != CatErrNone)
        return code;
    if (!m_dataFd.valid())
        return openDataFile();
    return CatErrNone;
}

uint32_t CatArchive::openDataFile()
{
    uint32_t code = CatErrNone;
    m_dataFd = OpenLocked(m_osDataPath, O_RDWR, Sharing::Exclusive, code);
    if (!m_dataFd.valid())
        return code == CatErrFileNotFound ? CatErrNoDatFile : code;
    return CatErrNone;
}

uint32_t CatArchive::createPair()
{
    std::string canonicalData;
    DataPathOf(m_path, canonicalData, m_dataName);
    m_osCatalogPath = ResolveOnDisk(m_path);
    m_osDataPath = ResolveOnDisk(canonicalData);
    uint32_t code = CatErrNone;
    m_catalogFd = OpenLocked(m_osCatalogPath, O_RDWR | O_CREAT | O_EXCL, Sharing::Exclusive, code);
    if (!m_catalogFd.valid())
        return code;
    m_dataFd = OpenLocked(m_osDataPath, O_RDWR | O_CREAT | O_EXCL, Sharing::Exclusive, code);
    if (!m_dataFd.valid()) {
        ::unlink(m_osCatalogPath.c_str());
        m_catalogFd.reset();
        return code;
    }
    const std::vector<uint8_t> text = catalogText(m_entries);
    if (!WriteAllAt(m_catalogFd.get(), text.data(), text.size(), 0) || ::fsync(m_catalogFd.get()) != 0) {
        code = ErrnoToCode(errno);
        ::unlink(m_osCatalogPath.c_str());
        ::unlink(m_osDataPath.c_str());
        m_catalogFd.reset();
        m_dataFd.reset();
        return code;
    }
    SyncDirectory(DirectoryOf(m_osCatalogPath));
    return CatErrNone;
}

void CatArchive::buildIndex()
{
    size_t slots = 16;
    while (slots < m_entries.size() * 2)
        slots *= 2;
    m_index.assign(slots, 0);
    m_indexed = 0;
    m_indexValid = true;
    for (uint32_t i = 0; i < m_entries.size(); ++i)
        indexInsert(i);
}

void CatArchive::indexInsert(uint32_t position)
{
    if ((m_indexed + 1) * 2 > m_index.size()) {
        buildIndex(); // grows the table and inserts every entry, this one too
        return;
    }
    const size_t mask = m_index.size() - 1;
    size_t slot = size_t(HashName(name(m_entries[position]))) & mask;
    while (m_index[slot] != 0)
        slot = (slot + 1) & mask;
    m_index[slot] = position + 1;
    ++m_indexed;
}

int64_t CatArchive::find(std::string_view wanted)
{
    if (!m_indexValid)
        buildIndex();
    const size_t mask = m_index.size() - 1;
    // Equal names probe the same sequence, and entries were inserted in list
    // order, so the first hit is the first match in list order.
    for (size_t slot = size_t(HashName(wanted)) & mask;; slot = (slot + 1) & mask) {
        const uint32_t held = m_index[slot];
        if (held == 0)
            return -1;
        if (EqualNoCase(name(m_entries[held - 1]), wanted))
            return int64_t(held - 1);
    }
}

uint64_t CatArchive::dataLength() const
{
    if (m_entries.empty())
        return 0;
    return uint64_t(m_entries.back().offset) + m_entries.back().size;
}

uint32_t CatArchive::readStored(const CatEntry& entry, ByteBuffer& bytes)
{
    if (entry.size == 0) {
        bytes = AllocateBytes(0);
        return bytes ? CatErrNone : CatErrNoMemory;
    }
    if (FileLength(m_dataFd.get()) < uint64_t(entry.offset) + entry.size)
        return CatErrInvalidSize;
    bytes = AllocateBytes(entry.size);
    if (!bytes)
        return CatErrNoMemory;
    if (!ReadAllAt(m_dataFd.get(), bytes.get(), entry.size, entry.offset)) {
        bytes.reset();
        return CatErrInvalidSize;
    }
    return CatErrNone;
}

uint32_t CatArchive::checkStored(const CatEntry& entry) const
{
    return FileLength(m_dataFd.get()) < uint64_t(entry.offset) + entry.size ? CatErrInvalidSize : CatErrNone;
}

uint32_t CatArchive::readStoredAt(const CatEntry& entry, uint32_t position, uint8_t* out,
                                  uint32_t count) const
{
    if (uint64_t(position) + count > entry.size)
        return CatErrInvalidSize;
    if (count > 0 && !ReadAllAt(m_dataFd.get(), out, count, uint64_t(entry.offset) + position))
        return CatErrInvalidSize;
    return CatErrNone;
}

uint32_t CatArchive::addEntry(std::string_view entryName)
{
    if (entryName.empty())
        return CatErrBadName;
    for (char c : entryName) {
        if (c == '/' || c == ':' || c == '*' || c == '<' || c == '>' || c == '|' || uint8_t(c) < 0x20)
            return CatErrBadName;
    }
    if (m_names.size() + entryName.size() > UINT32_MAX)
        return CatErrNoMemory;
    const uint32_t nameOffset = uint32_t(m_names.size());
    m_names.insert(m_names.end(), entryName.begin(), entryName.end());
    m_entries.push_back(CatEntry{nameOffset, uint32_t(entryName.size()), uint32_t(dataLength()), 0});
    if (m_indexValid)
        indexInsert(uint32_t(m_entries.size() - 1));
    m_dirty = true;
    return CatErrNone;
}

std::vector<uint8_t> CatArchive::catalogText(const CatEntryList& entries) const
{
    std::vector<uint8_t> text;
    size_t estimate = m_dataName.size() + 1;
    for (const CatEntry& entry : entries)
        estimate += entry.nameLength + 12;
    text.reserve(estimate);
    text.insert(text.end(), m_dataName.begin(), m_dataName.end());
    text.push_back('\n');
    char number[16];
    for (const CatEntry& entry : entries) {
        const std::string_view entryName = name(entry);
        text.insert(text.end(), entryName.begin(), entryName.end());
        text.push_back(' ');
        const auto result = std::to_chars(number, number + sizeof(number), entry.size);
        text.insert(text.end(), number, result.ptr);
        text.push_back('\n');
    }
    std::replace(text.begin(), text.end(), uint8_t('\\'), uint8_t('/'));
    XorCatalog(text.data(), text.size(), CatCatalogKey);
    return text;
}

uint32_t CatArchive::installCatalog(const std::vector<uint8_t>& text)
{
    struct stat st;
    const mode_t mode = ::fstat(m_catalogFd.get(), &st) == 0 ? st.st_mode : 0600;
    UniqueFd replacement;
    const uint32_t code = ReplaceFile(m_osCatalogPath, text.data(), text.size(), mode, &replacement);
    if (code == CatErrNone)
        m_catalogFd = std::move(replacement);
    return code;
}

uint32_t CatArchive::applyRearrangement(const Rearrangement& move, const std::vector<uint8_t>& text)
{
    const auto finish = [&]() -> uint32_t {
        if (!text.empty()) {
            const uint32_t code = installCatalog(text);
            if (code != CatErrNone)
                return code;
        }
        if (FileLength(m_dataFd.get()) > move.newDataLength &&
            ::ftruncate(m_dataFd.get(), off_t(move.newDataLength)) != 0)
            return ErrnoToCode(errno);
        return CatErrNone;
    };
    if (move.length == 0 || move.source == move.destination)
        return finish();

    // Step 2: the journal.
    const uint32_t textLength = uint32_t(text.size());
    const bool needsSave = move.source - move.destination < kPieceSize;
    const size_t saveOffset = SaveAreaOffset(textLength);
    // The save area, when a piece may overlap its own source, is left sparse.
    std::vector<uint8_t> journal(saveOffset, 0);
    const size_t journalLength = needsSave ? saveOffset + kPieceSize : saveOffset;
    std::memcpy(journal.data(), kJournalMagic, 8);
    Store64(journal.data() + 8, move.destination);
    Store64(journal.data() + 16, move.source);
    Store64(journal.data() + 24, move.length);
    Store64(journal.data() + 32, move.newDataLength);
    Store32(journal.data() + 40, kPieceSize);
    Store32(journal.data() + 44, textLength);
    if (textLength)
        std::memcpy(journal.data() + kJournalHeader, text.data(), textLength);
    Store32(journal.data() + 48, JournalCrc(journal.data(), text.data(), textLength));

    UniqueFd journalFd;
    uint32_t code =
        ReplaceFile(journalPath(), journal.data(), journal.size(), 0600, &journalFd, journalLength);
    if (code != CatErrNone)
        return code;

    Mapping journalMap(journalFd.get(), 0, journalLength);
    if (!journalMap.valid()) {
        ::unlink(journalPath().c_str());
        return CatErrNoMemory;
    }
    code = MoveRegion(m_dataFd.get(), journalMap.data(), move.destination, move.source, move.length,
                      kPieceSize, saveOffset);
    if (code != CatErrNone) {
        if (Load64(journalMap.data() + kProgressOffset) == 0) {
            // Nothing was moved yet: withdraw the journal, the old state stands.
            ::unlink(journalPath().c_str());
        } else {
            m_broken = true; // the journal stays; the next open completes the change
        }
        return code;
    }
    code = finish();
    if (code != CatErrNone) {
        m_broken = true; // the journal stays; the next open completes the change
        return code;
    }
    ::unlink(journalPath().c_str());
    SyncDirectory(DirectoryOf(m_osCatalogPath));
    return CatErrNone;
}

uint32_t CatArchive::recoverPendingMove()
{
    uint32_t code = CatErrNone;
    UniqueFd journalFd = OpenLocked(journalPath(), O_RDWR, Sharing::Exclusive, code);
    if (!journalFd.valid())
        return code;
    const uint64_t journalLength = FileLength(journalFd.get());
    if (journalLength < kJournalHeader || journalLength > (uint64_t(1) << 32))
        return CatErrBadData;
    Mapping journalMap(journalFd.get(), 0, journalLength);
    if (!journalMap.valid())
        return CatErrNoMemory;
    const uint8_t* header = journalMap.data();
    const uint64_t destination = Load64(header + 8);
    const uint64_t source = Load64(header + 16);
    const uint64_t length = Load64(header + 24);
    const uint64_t newDataLength = Load64(header + 32);
    const uint32_t pieceSize = Load32(header + 40);
    const uint32_t textLength = Load32(header + 44);
    const uint64_t progress = Load64(header + kProgressOffset);
    const size_t saveOffset = SaveAreaOffset(textLength);
    const bool needsSave = source > destination && source - destination < pieceSize;
    // A journal that is not exactly what step 2 wrote is left alone: the pair
    // is refused rather than changed on a guess.
    if (std::memcmp(header, kJournalMagic, 8) != 0 || kJournalHeader + uint64_t(textLength) > journalLength ||
        Load32(header + 48) != JournalCrc(header, header + kJournalHeader, textLength) ||
        source <= destination || pieceSize == 0 || pieceSize > (1u << 24) ||
        (needsSave && saveOffset + pieceSize > journalLength) || (progress >> 2) > length ||
        newDataLength > UINT32_MAX)
        return CatErrBadData;
    if ((progress >> 2) < length && FileLength(m_dataFd.get()) < source + length)
        return CatErrInvalidSize;

    if ((progress >> 2) < length) {
        code =
            MoveRegion(m_dataFd.get(), journalMap.data(), destination, source, length, pieceSize, saveOffset);
        if (code != CatErrNone)
            return code;
    }
    if (textLength) {
        const std::vector<uint8_t> text(header + kJournalHeader, header + kJournalHeader + textLength);
        code = installCatalog(text);
        if (code != CatErrNone)
            return code;
    }
    if (FileLength(m_dataFd.get()) > newDataLength && ::ftruncate(m_dataFd.get(), off_t(newDataLength)) != 0)
        return ErrnoToCode(errno);
    ::unlink(journalPath().c_str());
    SyncDirectory(DirectoryOf(m_osCatalogPath));
    return CatErrNone;
}

uint32_t CatArchive::recover()
{
    if (!m_broken)
        return CatErrNone;
    if (recoverPendingMove() != CatErrNone)
        return CatErrArchiveUnfinished;
    m_broken = false;
    return CatErrNone;
}

uint32_t CatArchive::commitEntry(std::string_view entryName, uint8_t* bytes, uint32_t size)
{
    if (const uint32_t code = recover(); code != CatErrNone)
        return code;
    const int64_t position = find(entryName);
    if (position < 0)
        return CatErrNoEntry;
    const CatEntry entry = m_entries[size_t(position)];
    const uint64_t end = dataLength();
    const uint64_t tail = end - entry.offset - entry.size;

    if (size == entry.size && size == 0)
        return CatErrNone;
    if (size != entry.size && end - entry.size + size > UINT32_MAX)
        return CatErrInvalidSize;

    // Step 1: the new bytes go behind the logical end.
    XorInPlace(bytes, size, CatDataKey);
    if (!WriteAllAt(m_dataFd.get(), bytes, size, end))
        return ErrnoToCode(errno);

    Rearrangement move;
    if (size == entry.size) {
        move.destination = entry.offset;
        move.source = end;
        move.length = size;
        move.newDataLength = end;
        const uint32_t code = applyRearrangement(move, {});
        // The catalog is written again when its last reference goes, as after
        // any commit: that is also when a foreign catalog text takes our form.
        if (code == CatErrNone)
            m_dirty = true;
        return code;
    }
    CatEntryList entries = entriesWithout(size_t(position));
    CatEntry moved = entry;
    moved.offset = uint32_t(end - entry.size);
    moved.size = size;
    entries.push_back(moved);

    move.destination = entry.offset;
    move.source = uint64_t(entry.offset) + entry.size;
    move.length = tail + size;
    move.newDataLength = end - entry.size + size;
    return rearrange(move, std::move(entries));
}

CatEntryList CatArchive::entriesWithout(size_t position) const
{
    const uint32_t gap = m_entries[position].size;
    CatEntryList entries;
    entries.reserve(m_entries.size());
    entries.insert(entries.end(), m_entries.begin(), m_entries.begin() + ptrdiff_t(position));
    for (size_t i = position + 1; i < m_entries.size(); ++i) {
        CatEntry follower = m_entries[i];
        follower.offset -= gap;
        entries.push_back(follower);
    }
    return entries;
}

uint32_t CatArchive::rearrange(const Rearrangement& move, CatEntryList entries)
{
    const uint32_t code = applyRearrangement(move, catalogText(entries));
    // A move that failed half-way is completed at the next open: the list
    // already describes that outcome.
    if (code == CatErrNone || m_broken) {
        m_entries = std::move(entries);
        m_indexValid = false;
        if (code == CatErrNone)
            m_dirty = false;
    }
    return code;
}

uint32_t CatArchive::removeEntry(std::string_view entryName)
{
    if (const uint32_t code = recover(); code != CatErrNone)
        return code;
    const int64_t position = find(entryName);
    if (position < 0)
        return CatErrNoEntry;
    const CatEntry entry = m_entries[size_t(position)];
    const uint64_t end = dataLength();

    CatEntryList entries = entriesWithout(size_t(position));
    Rearrangement move;
    move.destination = entry.offset;
    move.source = uint64_t(entry.offset) + entry.size;
    move.length = end - move.source;
    move.newDataLength = end - entry.size;
    return rearrange(move, std::move(entries));
}

uint32_t CatArchive::writeIfDirty()
{
    if (!m_dirty || m_broken)
        return CatErrNone;
    const uint32_t code = installCatalog(catalogText(m_entries));
    if (code != CatErrNone)
        return code;
    m_dirty = false;
    const uint64_t length = dataLength();
    if (FileLength(m_dataFd.get()) > length && ::ftruncate(m_dataFd.get(), off_t(length)) != 0)
        return ErrnoToCode(errno);
    return CatErrNone;
}

} // namespace catfs
