// The flat interface of the driver: handles over plain files, packed files and
// catalog entries, the open-file and open-catalog tables, and the last-error
// cell. Everything here runs on one thread; the tables are module globals.

#include "catfs/CatDriver.h"
#include "catfs/driver/Bytes.h"
#include "catfs/driver/Catalog.h"
#include "catfs/driver/Gzip.h"
#include "catfs/driver/Platform.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <list>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_set>

namespace catfs {

// The shared state of one open file; every handle on it points here.
struct CatFileObject
{
    int32_t references = 0; // handles bound to it; at 0 it is destroyed
    int32_t writers = 0;
    int32_t handles = 0;
    CatArchive* archive = nullptr; // holds one reference when set
    std::string entryName;
    ByteBuffer image;
    uint32_t capacity = 0;
    uint32_t size = 0;
    uint32_t storedSize = 0;
    // The image still carries the .dat scrambling: an entry read for reading
    // only is unscrambled while it is copied out, in the same pass.
    bool scrambled = false;
    // A plain entry opened for reading has no image at all: reads go straight
    // from the .dat into the caller's buffer and are unscrambled there. Its
    // bytes cannot change under it (a commit needs the only handle, and other
    // entries' moves are followed by looking its place up again).
    bool streamed = false;
    bool dirty = false;
    int64_t time = 0;
    uint32_t error = 0;
    UniqueFd fd;
    std::string path;   // canonical; key of the open-file table
    std::string osPath; // files on disk: the path as found there
    uint32_t flags = 0;
    bool inTable = false;

    bool direct() const { return flags == (CatFlagOnDisk | CatFlagPlain); }
};

} // namespace catfs

using catfs::CatArchive;
using catfs::CatFileObject;

struct CatFile
{
    CatFileObject* object = nullptr;
    int32_t mode = CatModeRead;
    uint32_t error = 0;
    uint32_t position = 0;
};

struct CatArchiveHandle
{
    CatArchive* archive = nullptr;
};

struct CatFind
{
    CatArchive* archive = nullptr;
    size_t next = 0;
    struct Token
    {
        int kind; // 0 literal, 1 '?', 2 '*'
        std::string text;
    };
    std::vector<Token> tokens;
    bool all = false;                  // the pattern is "*": every entry matches
    uint64_t checkedAt = ~uint64_t(0); // g_archiveRemovals when the handle was last found valid
};

namespace {

using namespace catfs;

// Every live object in order of creation; the tables are those with inTable
// set, so that look-ups run in order of insertion.
std::list<std::unique_ptr<CatArchive>> g_archives;
// Counts archives taken out of the table: a search that was checked since
// the last removal still has its archive.
uint64_t g_archiveRemovals = 0;
std::list<std::unique_ptr<CatFileObject>> g_objects;
std::unordered_set<const CatFile*> g_files;
std::unordered_set<const CatArchiveHandle*> g_archiveHandles;
std::unordered_set<const CatFind*> g_finds;
uint32_t g_lastError = 0;
const CatFind* g_lastFind = nullptr; // spares the set look-up in a listing loop

constexpr uint32_t kGrowStep = 5120;
constexpr size_t kNameField = 260;

void ClearError()
{
    g_lastError = CatErrNone;
}

uint32_t Fail(uint32_t code)
{
    g_lastError = code;
    return code;
}

int64_t Now()
{
    return int64_t(std::time(nullptr));
}

void CopyName(char* field, std::string_view name)
{
    const size_t count = std::min(name.size(), kNameField - 1);
    std::memcpy(field, name.data(), count);
    field[count] = '\0';
}

bool SplitEntryPath(const std::string& path, std::string& catalog, std::string& entry)
{
    const size_t separator = path.find("::");
    if (separator == std::string::npos)
        return false;
    catalog = path.substr(0, separator);
    entry = path.substr(separator + 2);
    return true;
}

bool ArchiveAlive(const CatArchive* archive)
{
    for (const auto& held : g_archives) {
        if (held.get() == archive)
            return true;
    }
    return false;
}

// --- Open-catalog table

CatArchive* AcquireArchive(const std::string& path, bool create, uint32_t& code)
{
    code = CatErrNone;
    for (const auto& held : g_archives) {
        if (held->inTable && EqualNoCase(held->path(), path)) {
            // A catalog whose change failed half-way is finished before it
            // serves anyone; while it can't be, it serves nobody.
            code = held->recover();
            if (code != CatErrNone)
                return nullptr;
            ++held->references;
            return held.get();
        }
    }
    std::unique_ptr<CatArchive> archive = CatArchive::Open(path, create, code);
    if (!archive)
        return nullptr;
    archive->inTable = true;
    g_archives.push_back(std::move(archive));
    return g_archives.back().get();
}

void LeaveArchiveTable(CatArchive* archive)
{
    archive->inTable = false;
}

// Drops one reference; the last one writes a changed catalog and destroys it.
uint32_t ReleaseArchive(CatArchive* archive)
{
    if (--archive->references > 0)
        return CatErrNone;
    const uint32_t code = archive->writeIfDirty();
    g_archives.remove_if([archive](const auto& held) { return held.get() == archive; });
    ++g_archiveRemovals;
    return code;
}

// --- Open-file table

CatFileObject* FindObject(const std::string& path)
{
    for (const auto& object : g_objects) {
        if (object->inTable && EqualNoCase(object->path, path))
            return object.get();
    }
    return nullptr;
}

CatFileObject* AddObject(std::unique_ptr<CatFileObject> object)
{
    object->inTable = true;
    g_objects.push_back(std::move(object));
    return g_objects.back().get();
}

// Destroys an object that lost its last reference; the catalog loses the
// object's reference (which may write and destroy the catalog).
uint32_t DestroyObject(CatFileObject* object)
{
    CatArchive* archive = object->archive;
    g_objects.remove_if([object](const auto& held) { return held.get() == object; });
    return archive ? ReleaseArchive(archive) : CatErrNone;
}

CatFile* Bind(CatFileObject* object, int32_t mode)
{
    auto file = std::make_unique<CatFile>();
    file->object = object;
    file->mode = mode;
    ++object->references;
    ++object->handles;
    if (mode == CatModeWrite)
        ++object->writers;
    g_files.insert(file.get());
    return file.release(); // owned by the caller until CatClose
}

// The sharing rule: a file is open once for writing or any number of times
// for reading.
bool SharingAllows(const CatFileObject* object, int32_t mode)
{
    return mode == CatModeRead && object->writers == 0;
}

// --- Images

bool Unscramble(CatFileObject* object)
{
    if (object->scrambled) {
        XorInPlace(object->image.get(), object->size, CatDataKey);
        object->scrambled = false;
    }
    return true;
}

// Makes the image of an entry from its stored bytes, by kind. Plain entries
// opened for reading are streamed instead.
uint32_t LoadEntryImage(CatFileObject* object, const CatEntry& entry, int32_t kind, int32_t mode)
{
    object->storedSize = entry.size;
    if (entry.size == 0) {
        object->flags = kind == CatKindPacked ? CatFlagPacked : CatFlagPlain;
        object->time = -1;
        return CatErrNone;
    }
    uint32_t code = object->archive->checkStored(entry);
    if (code != CatErrNone)
        return code;
    if (kind == CatKindAuto) {
        uint8_t lead[3];
        const uint32_t count = std::min<uint32_t>(3, entry.size);
        code = object->archive->readStoredAt(entry, 0, lead, count);
        if (code != CatErrNone)
            return code;
        XorInPlace(lead, count, CatDataKey);
        kind = PckIsPacked(lead, count) ? CatKindPacked : CatKindPlain;
    }
    if (kind == CatKindPlain && mode == CatModeRead) {
        object->streamed = true;
        object->size = entry.size;
        object->time = -1;
        object->flags = CatFlagPlain;
        return CatErrNone;
    }
    ByteBuffer stored;
    code = object->archive->readStored(entry, stored);
    if (code != CatErrNone)
        return code;
    if (kind == CatKindPlain) {
        object->image = std::move(stored);
        object->scrambled = true;
        object->size = object->capacity = entry.size;
        object->time = -1;
        object->flags = CatFlagPlain;
        return CatErrNone;
    }
    XorInPlace(stored.get(), entry.size, CatDataKey);
    GzipReadResult unpacked;
    code = UnpackBuffer(stored.get(), entry.size, unpacked);
    if (code != CatErrNone && code != CatErrGzipReservedFlags)
        return code;
    object->image = std::move(unpacked.data);
    object->size = object->capacity = unpacked.size;
    object->time = unpacked.mtime;
    object->flags = CatFlagPacked;
    return code;
}

// Reads from a streamed entry at the handle's position.
uint32_t ReadStreamed(CatFileObject* object, uint32_t position, uint8_t* out, uint32_t count)
{
    if (const uint32_t code = object->archive->recover(); code != CatErrNone)
        return code;
    const int64_t index = object->archive->find(object->entryName);
    if (index < 0)
        return CatErrNoEntry;
    const uint32_t code =
        object->archive->readStoredAt(object->archive->entries()[size_t(index)], position, out, count);
    if (code == CatErrNone)
        XorInPlace(out, count, CatDataKey);
    return code;
}

// --- Opening

CatFile* OpenEntry(const std::string& path, int32_t mode, int32_t create, int32_t kind)
{
    if (CatFileObject* found = FindObject(path)) {
        if (!SharingAllows(found, mode)) {
            Fail(CatErrBadMode);
            return nullptr;
        }
        return Bind(found, mode);
    }
    std::string catalogPath, entryName;
    SplitEntryPath(path, catalogPath, entryName);
    uint32_t code = CatErrNone;
    CatArchive* archive = AcquireArchive(catalogPath, false, code);
    if (!archive) {
        Fail(code);
        return nullptr;
    }
    auto object = std::make_unique<CatFileObject>();
    object->path = path;
    object->entryName = entryName;
    object->archive = archive;
    ++archive->references; // the object's own reference

    const int64_t position = archive->find(entryName);
    if (position >= 0) {
        code = LoadEntryImage(object.get(), archive->entries()[size_t(position)], kind, mode);
    } else if (create == 1) {
        const int32_t newKind = kind == CatKindAuto ? CatKindPacked : kind;
        code = archive->addEntry(entryName);
        if (code == CatErrNone) {
            object->flags = newKind == CatKindPacked ? CatFlagPacked : CatFlagPlain;
            object->dirty = true;
            object->time = Now();
        }
    } else {
        code = CatErrNoEntry;
    }
    if (code != CatErrNone && code != CatErrGzipReservedFlags) {
        Fail(code);
        ReleaseArchive(archive); // the object's reference
        if (archive->references == 1)
            LeaveArchiveTable(archive);
        ReleaseArchive(archive); // this operation's
        return nullptr;
    }
    Fail(code); // 0, or the warning 21 that the open succeeds with
    CatFileObject* added = AddObject(std::move(object));
    ReleaseArchive(archive); // this operation's; the object keeps its own
    return Bind(added, mode);
}

int32_t DetectKind(const std::string& osPath)
{
    UniqueFd fd(::open(osPath.c_str(), O_RDONLY | O_CLOEXEC));
    uint8_t lead[3];
    if (!fd.valid() || !ReadAllAt(fd.get(), lead, 3, 0))
        return CatKindPlain;
    return PckIsPacked(lead, 3) ? CatKindPacked : CatKindPlain;
}

uint32_t LoadPackedFile(CatFileObject* object, const struct stat& st)
{
    if (st.st_size == 0) {
        object->dirty = true;
        return CatErrNone;
    }
    if (uint64_t(st.st_size) > UINT32_MAX)
        return CatErrNoMemory;
    const uint32_t length = uint32_t(st.st_size);
    ByteBuffer stored = AllocateBytes(length);
    if (!stored)
        return CatErrNoMemory;
    if (!ReadAllAt(object->fd.get(), stored.get(), length, 0))
        return ErrnoToCode(errno);
    GzipReadResult unpacked;
    const uint32_t code = UnpackBuffer(stored.get(), length, unpacked);
    if (code != CatErrNone && code != CatErrGzipReservedFlags)
        return code;
    object->image = std::move(unpacked.data);
    object->size = object->capacity = unpacked.size;
    object->time = unpacked.mtime;
    return code;
}

CatFile* OpenDiskFile(const std::string& path, int32_t mode, int32_t create, int32_t kind)
{
    const std::string osPath = ResolveOnDisk(path);
    if (kind == CatKindAuto)
        kind = DetectKind(osPath);
    if (CatFileObject* found = FindObject(path)) {
        if (!SharingAllows(found, mode)) {
            Fail(CatErrBadMode);
            return nullptr;
        }
        if (kind == CatKindPacked && (found->flags & CatFlagPacked))
            return Bind(found, mode);
        // Plain files: every handle has its own descriptor and object.
    }

    auto object = std::make_unique<CatFileObject>();
    object->path = path;
    object->osPath = osPath;
    int flags = mode == CatModeWrite ? O_RDWR : O_RDONLY;
    if (create == 1)
        flags |= O_CREAT;
    uint32_t code = CatErrNone;
    object->fd = OpenLocked(osPath, flags, mode == CatModeWrite ? Sharing::Exclusive : Sharing::Shared, code);
    if (!object->fd.valid()) {
        Fail(code);
        return nullptr;
    }
    struct stat st;
    if (::fstat(object->fd.get(), &st) != 0) {
        Fail(ErrnoToCode(errno));
        return nullptr;
    }
    object->time = int64_t(st.st_mtime);
    object->storedSize = uint32_t(std::min<uint64_t>(uint64_t(st.st_size), UINT32_MAX));
    if (kind == CatKindPlain) {
        object->flags = CatFlagOnDisk | CatFlagPlain;
        object->size = object->storedSize;
    } else {
        object->flags = CatFlagOnDisk | CatFlagPacked;
        code = LoadPackedFile(object.get(), st);
        if (code != CatErrNone && code != CatErrGzipReservedFlags) {
            Fail(code);
            return nullptr;
        }
        Fail(code);
        if (mode == CatModeRead)
            object->fd.reset();
    }
    return Bind(AddObject(std::move(object)), mode);
}

// --- Writing back

uint32_t WriteBackEntry(CatFileObject* object)
{
    if (object->handles > 1)
        return CatErrFileLocked;
    Unscramble(object);
    ByteBuffer packed;
    uint32_t size = object->size;
    uint8_t* bytes = object->image.get();
    if (object->flags & CatFlagPacked) {
        const uint8_t empty = 0;
        const uint32_t code =
            PackToBuffer(bytes ? bytes : &empty, object->size, uint32_t(object->time), packed, size);
        if (code != CatErrNone)
            return code;
        bytes = packed.get();
    }
    ByteBuffer none;
    if (!bytes) {
        none = AllocateBytes(0);
        if (!none)
            return CatErrNoMemory;
        bytes = none.get();
    }
    const uint32_t code = object->archive->commitEntry(object->entryName, bytes, size);
    if (code == CatErrNone)
        object->dirty = false;
    return code;
}

uint32_t WriteBackDiskFile(CatFileObject* object)
{
    if (object->flags & CatFlagPacked) {
        // The packed form replaces the file as a whole: a failure on the way
        // leaves the old file standing.
        ByteBuffer packed;
        uint32_t size = 0;
        const uint8_t empty = 0;
        uint32_t code = PackToBuffer(object->image ? object->image.get() : &empty, object->size,
                                     uint32_t(object->time), packed, size);
        if (code != CatErrNone)
            return code;
        struct stat st;
        const mode_t fileMode = ::fstat(object->fd.get(), &st) == 0 ? st.st_mode : 0600;
        UniqueFd replacement;
        code = ReplaceFile(object->osPath, packed.get(), size, fileMode, &replacement);
        if (code != CatErrNone)
            return code;
        object->fd = std::move(replacement);
    } else if (::fsync(object->fd.get()) != 0 && errno != EINVAL) {
        return ErrnoToCode(errno);
    }
    SetFileTime(object->fd.get(), object->time);
    object->dirty = false;
    return CatErrNone;
}

template <typename Fn> auto Guarded(Fn&& fn, decltype(fn()) failure) -> decltype(fn())
{
    try {
        return fn();
    } catch (const std::bad_alloc&) {
        Fail(CatErrNoMemory);
        return failure;
    }
}

bool ValidFile(const CatFile* file)
{
    return file && g_files.count(file) != 0;
}

bool MatchPattern(const std::vector<CatFind::Token>& tokens, size_t t, std::string_view name)
{
    for (; t < tokens.size(); ++t) {
        const CatFind::Token& token = tokens[t];
        if (token.kind == 2) {
            for (size_t skip = 0; skip <= name.size(); ++skip) {
                if (MatchPattern(tokens, t + 1, name.substr(skip)))
                    return true;
            }
            return false;
        }
        if (token.kind == 1) {
            if (name.empty())
                return false;
            name.remove_prefix(1);
            continue;
        }
        if (name.size() < token.text.size() || !EqualNoCase(name.substr(0, token.text.size()), token.text))
            return false;
        name.remove_prefix(token.text.size());
    }
    return name.empty();
}

__attribute__((always_inline)) inline void CopyFound(const CatArchive& archive, const CatEntry& entry,
                                                     CatFindData* data)
{
    const std::string_view name = archive.name(entry);
    // Short names are copied as one fixed block, which the compiler turns
    // into a few vector moves instead of a string copy.
    if (name.size() < 64 && name.data() + 64 <= archive.nameStoreEnd()) [[likely]] {
        std::memcpy(data->name, name.data(), 64);
        data->name[name.size()] = '\0';
    } else {
        CopyName(data->name, name);
    }
    data->size = entry.size;
}

__attribute__((noinline)) bool FindMatching(CatFind* find, CatFindData* data)
{
    const auto& entries = find->archive->entries();
    for (; find->next < entries.size(); ++find->next) {
        const CatEntry& entry = entries[find->next];
        if (MatchPattern(find->tokens, 0, find->archive->name(entry))) {
            CopyFound(*find->archive, entry, data);
            ++find->next;
            return true;
        }
    }
    return false;
}

// The pattern "*" takes the next entry without a loop: the common listing.
inline bool FindFrom(CatFind* find, CatFindData* data)
{
    if (!find->all)
        return FindMatching(find, data);
    const auto& entries = find->archive->entries();
    if (find->next >= entries.size())
        return false;
    CopyFound(*find->archive, entries[find->next++], data);
    return true;
}

} // namespace

// --- The flat interface

CatFile* CatOpen(const char* path, int32_t mode, int32_t create, int32_t kind)
{
    ClearError();
    if ((mode != CatModeRead && mode != CatModeWrite) || (create != 0 && create != 1) || kind < CatKindAuto ||
        kind > CatKindPacked) {
        Fail(CatErrBadFlags);
        return nullptr;
    }
    return Guarded(
        [&]() -> CatFile* {
            std::string canonical;
            if (!NormalisePath(path, canonical)) {
                Fail(CatErrInternal);
                return nullptr;
            }
            if (canonical.find("::") != std::string::npos)
                return OpenEntry(canonical, mode, create, kind);
            return OpenDiskFile(canonical, mode, create, kind);
        },
        nullptr);
}

bool CatClose(CatFile* file)
{
    ClearError();
    if (!ValidFile(file))
        return file ? (Fail(CatErrInvalidHandle), false) : false;
    std::unique_ptr<CatFile> owned(file);
    g_files.erase(file);
    CatFileObject* object = file->object;
    return Guarded(
        [&]() -> bool {
            if (object->archive && object->archive->references == 1)
                LeaveArchiveTable(object->archive);
            bool ok = true;
            if (object->references == 1) {
                object->inTable = false;
                if (object->dirty) {
                    if (file->mode == CatModeWrite) {
                        const uint32_t code =
                            object->archive ? WriteBackEntry(object) : WriteBackDiskFile(object);
                        file->error = object->error = code;
                        if (code != CatErrNone) {
                            Fail(code);
                            ok = false;
                        }
                    } else {
                        file->error = Fail(CatErrBadMode);
                        ok = false;
                    }
                }
            }
            if (file->mode == CatModeWrite)
                --object->writers;
            --object->handles;
            if (--object->references == 0) {
                const uint32_t code = DestroyObject(object);
                if (code != CatErrNone && ok) {
                    Fail(code);
                    ok = false;
                }
            }
            return ok;
        },
        false);
}

int32_t CatRead(CatFile* file, void* buffer, uint32_t count)
{
    ClearError();
    if (!ValidFile(file)) {
        Fail(CatErrInvalidHandle);
        return -1;
    }
    if (!buffer && count > 0) {
        file->error = Fail(CatErrBadFlags);
        return -1;
    }
    count = std::min<uint32_t>(count, INT32_MAX);
    CatFileObject* object = file->object;
    if (object->direct()) {
        ssize_t got;
        do {
            got = ::read(object->fd.get(), buffer, count);
        } while (got < 0 && errno == EINTR);
        if (got < 0) {
            file->error = Fail(ErrnoToCode(errno));
            return -1;
        }
        return int32_t(got);
    }
    if (file->position >= object->size)
        return 0;
    const uint32_t n = std::min(count, object->size - file->position);
    if (object->streamed) {
        const uint32_t code = ReadStreamed(object, file->position, static_cast<uint8_t*>(buffer), n);
        if (code != CatErrNone) {
            file->error = Fail(code);
            return -1;
        }
    } else if (object->scrambled)
        XorCopy(static_cast<uint8_t*>(buffer), object->image.get() + file->position, n, CatDataKey);
    else
        std::memcpy(buffer, object->image.get() + file->position, n);
    file->position += n;
    return int32_t(n);
}

int32_t CatWrite(CatFile* file, const void* data, uint32_t count)
{
    ClearError();
    if (!ValidFile(file)) {
        Fail(CatErrInvalidHandle);
        return -1;
    }
    if (file->mode != CatModeWrite) {
        file->error = Fail(CatErrBadMode);
        return -1;
    }
    if (!data && count > 0) {
        file->error = Fail(CatErrBadFlags);
        return -1;
    }
    count = std::min<uint32_t>(count, INT32_MAX);
    CatFileObject* object = file->object;
    if (count == 0)
        return 0;
    if (object->direct()) {
        const uint8_t* bytes = static_cast<const uint8_t*>(data);
        uint32_t written = 0;
        while (written < count) {
            const ssize_t n = ::write(object->fd.get(), bytes + written, count - written);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0) {
                if (written > 0)
                    break;
                file->error = Fail(ErrnoToCode(n < 0 ? errno : ENOSPC));
                return -1;
            }
            written += uint32_t(n);
        }
        object->time = Now();
        object->dirty = true;
        return int32_t(written);
    }
    Unscramble(object);
    const uint32_t position = file->position;
    if (uint64_t(position) + count > UINT32_MAX) {
        file->error = Fail(CatErrNoMemory);
        return -1;
    }
    if (count > object->capacity - position) {
        const uint64_t missing = uint64_t(count) - (object->capacity - position);
        const uint64_t grown = uint64_t(object->capacity) + (missing + kGrowStep - 1) / kGrowStep * kGrowStep;
        if (grown > UINT32_MAX) {
            file->error = Fail(CatErrNoMemory);
            return -1;
        }
        ByteBuffer image = AllocateBytes(size_t(grown));
        if (!image) {
            file->error = Fail(CatErrNoMemory);
            return -1;
        }
        if (object->size)
            std::memcpy(image.get(), object->image.get(), object->size);
        object->image = std::move(image);
        object->capacity = uint32_t(grown);
    }
    std::memcpy(object->image.get() + position, data, count);
    file->position = position + count;
    object->size = std::max(object->size, file->position);
    object->time = Now();
    object->dirty = true;
    return int32_t(count);
}

bool CatSeek(CatFile* file, int32_t offset, int32_t origin)
{
    ClearError();
    if (!ValidFile(file)) {
        Fail(CatErrInvalidHandle);
        return false;
    }
    if (origin != CatSeekBegin && origin != CatSeekEnd && origin != CatSeekCurrent) {
        file->error = Fail(CatErrSeekMode);
        return false;
    }
    CatFileObject* object = file->object;
    if (object->direct()) {
        const int whence = origin == CatSeekBegin ? SEEK_SET : origin == CatSeekEnd ? SEEK_END : SEEK_CUR;
        if (::lseek(object->fd.get(), off_t(offset), whence) < 0) {
            file->error = Fail(CatErrSeek);
            return false;
        }
        return true;
    }
    const uint32_t base = origin == CatSeekBegin ? 0 : origin == CatSeekEnd ? object->size : file->position;
    const uint32_t target = base + uint32_t(offset);
    if (target > object->size) {
        file->error = Fail(CatErrSeek);
        return false;
    }
    file->position = target;
    return true;
}

int32_t CatSize(CatFile* file)
{
    ClearError();
    if (!ValidFile(file)) {
        Fail(CatErrInvalidHandle);
        return -1;
    }
    CatFileObject* object = file->object;
    if (object->direct()) {
        struct stat st;
        if (::fstat(object->fd.get(), &st) != 0) {
            file->error = Fail(ErrnoToCode(errno));
            return -1;
        }
        return int32_t(std::min<uint64_t>(uint64_t(st.st_size), INT32_MAX));
    }
    return int32_t(std::min<uint32_t>(object->size, INT32_MAX));
}

bool CatEof(CatFile* file)
{
    ClearError();
    if (!ValidFile(file)) {
        Fail(CatErrInvalidHandle);
        return false;
    }
    CatFileObject* object = file->object;
    if (object->direct()) {
        struct stat st;
        const off_t position = ::lseek(object->fd.get(), 0, SEEK_CUR);
        return ::fstat(object->fd.get(), &st) == 0 && position >= st.st_size;
    }
    return file->position == object->size;
}

bool CatTruncate(CatFile* file)
{
    if (!ValidFile(file)) {
        Fail(CatErrInvalidHandle);
        return false;
    }
    if (file->mode != CatModeWrite) {
        file->error = Fail(CatErrBadMode);
        return false;
    }
    CatFileObject* object = file->object;
    if (object->direct()) {
        const off_t position = ::lseek(object->fd.get(), 0, SEEK_CUR);
        if (position < 0 || ::ftruncate(object->fd.get(), position) != 0) {
            file->error = Fail(ErrnoToCode(errno));
            return false;
        }
        return true;
    }
    object->size = file->position;
    return true;
}

bool CatStat(CatFile* file, CatFileInfo* info)
{
    if (!ValidFile(file)) {
        Fail(CatErrInvalidHandle);
        return false;
    }
    if (!info) {
        file->error = Fail(CatErrBadFlags);
        return false;
    }
    const CatFileObject* object = file->object;
    CopyName(info->name, object->path);
    info->time = int32_t(object->time);
    info->size = object->size;
    if (object->direct()) {
        struct stat st;
        if (::fstat(object->fd.get(), &st) == 0)
            info->size = uint32_t(std::min<uint64_t>(uint64_t(st.st_size), UINT32_MAX));
    }
    info->storedSize = object->storedSize;
    info->flags = object->flags;
    return true;
}

bool CatDelete(const char* path)
{
    ClearError();
    return Guarded(
        [&]() -> bool {
            std::string canonical;
            if (!NormalisePath(path, canonical))
                return Fail(CatErrInternal), false;
            if (FindObject(canonical))
                return Fail(CatErrFileLocked), false;
            std::string catalogPath, entryName;
            if (SplitEntryPath(canonical, catalogPath, entryName)) {
                uint32_t code = CatErrNone;
                CatArchive* archive = AcquireArchive(catalogPath, false, code);
                if (!archive)
                    return Fail(code), false;
                code = archive->removeEntry(entryName);
                if (archive->references == 1)
                    LeaveArchiveTable(archive);
                const uint32_t released = ReleaseArchive(archive);
                if (code == CatErrNone)
                    code = released;
                if (code != CatErrNone)
                    return Fail(code), false;
                return true;
            }
            const std::string osPath = ResolveOnDisk(canonical);
            // A catalog or data file in use here or held by another process
            // stays, as a system with sharing modes would refuse to delete it.
            for (const auto& archive : g_archives) {
                if (osPath == archive->osCatalogPath() || osPath == archive->osDataPath())
                    return Fail(CatErrAccessDenied), false;
            }
            if (IsLockedByOther(osPath))
                return Fail(CatErrAccessDenied), false;
            if (::unlink(osPath.c_str()) != 0)
                return Fail(ErrnoToCode(errno)), false;
            return true;
        },
        false);
}

CatArchiveHandle* CatOpenArchive(const char* path, int32_t create)
{
    ClearError();
    if (create != 0 && create != 1) {
        Fail(CatErrBadFlags);
        return nullptr;
    }
    return Guarded(
        [&]() -> CatArchiveHandle* {
            std::string canonical;
            if (!NormalisePath(path, canonical)) {
                Fail(CatErrInternal);
                return nullptr;
            }
            uint32_t code = CatErrNone;
            CatArchive* archive = AcquireArchive(canonical, create == 1, code);
            if (!archive) {
                Fail(code);
                return nullptr;
            }
            auto handle = std::make_unique<CatArchiveHandle>();
            handle->archive = archive;
            g_archiveHandles.insert(handle.get());
            return handle.release(); // owned by the caller until CatCloseArchive
        },
        nullptr);
}

bool CatCloseArchive(CatArchiveHandle* handle)
{
    ClearError();
    if (!handle || !g_archiveHandles.count(handle)) {
        Fail(CatErrInvalidHandle);
        return false;
    }
    std::unique_ptr<CatArchiveHandle> owned(handle);
    g_archiveHandles.erase(handle);
    return Guarded(
        [&]() -> bool {
            CatArchive* archive = handle->archive;
            if (archive->references == 1)
                LeaveArchiveTable(archive);
            const uint32_t code = ReleaseArchive(archive);
            if (code != CatErrNone)
                return Fail(code), false;
            return true;
        },
        false);
}

CatFind* CatFindFirst(CatArchiveHandle* handle, const char* pattern, CatFindData* data)
{
    ClearError();
    if (!handle || !g_archiveHandles.count(handle)) {
        Fail(CatErrInvalidHandle);
        return nullptr;
    }
    if (!data) {
        Fail(CatErrBadFlags);
        return nullptr;
    }
    return Guarded(
        [&]() -> CatFind* {
            if (const uint32_t code = handle->archive->recover(); code != CatErrNone) {
                Fail(code);
                return nullptr;
            }
            auto find = std::make_unique<CatFind>();
            find->archive = handle->archive;
            // Literal runs between '*' and '?', compared without regard to case.
            std::string literal;
            for (const char* p = pattern ? pattern : "*"; *p; ++p) {
                if (*p == '*' || *p == '?') {
                    if (!literal.empty())
                        find->tokens.push_back({0, std::move(literal)});
                    literal.clear();
                    find->tokens.push_back({*p == '*' ? 2 : 1, {}});
                } else {
                    literal += FoldCase(*p);
                }
            }
            if (!literal.empty())
                find->tokens.push_back({0, std::move(literal)});
            find->all = find->tokens.size() == 1 && find->tokens[0].kind == 2;
            if (!FindFrom(find.get(), data))
                return nullptr;
            g_finds.insert(find.get());
            return find.release(); // owned by the caller until CatFindClose
        },
        nullptr);
}

namespace {

// CatFindNext for a handle that is not the previous call's, or a pattern
// other than "*": the handle is checked against the tables.
__attribute__((noinline)) bool FindNextChecked(CatFind* find, CatFindData* data)
{
    if (!find || find != g_lastFind || find->checkedAt != g_archiveRemovals) {
        if (!find || !g_finds.count(find) || !ArchiveAlive(find->archive)) {
            Fail(CatErrInvalidHandle);
            return false;
        }
        find->checkedAt = g_archiveRemovals;
        g_lastFind = find;
    }
    if (!data) {
        Fail(CatErrBadFlags);
        return false;
    }
    return FindFrom(find, data);
}

} // namespace

bool CatFindNext(CatFind* find, CatFindData* data)
{
    ClearError();
    // A listing calls this once an entry with the pattern "*": the handle of
    // the previous call, with no archive gone since, needs no look-up in the
    // tables, and the next entry is simply the one behind.
    if (find && find == g_lastFind && find->checkedAt == g_archiveRemovals && data && find->all) [[likely]] {
        const auto& entries = find->archive->entries();
        if (find->next >= entries.size())
            return false;
        CopyFound(*find->archive, entries[find->next++], data);
        return true;
    }
    return FindNextChecked(find, data);
}

bool CatFindClose(CatFind* find)
{
    ClearError();
    if (!find || !g_finds.count(find)) {
        Fail(CatErrInvalidHandle);
        return false;
    }
    std::unique_ptr<CatFind> owned(find); // handed out by CatFindFirst
    if (g_lastFind == find)
        g_lastFind = nullptr;
    g_finds.erase(find);
    return true;
}

uint32_t CatLastError()
{
    return g_lastError;
}
