// The catalog file driver: one flat, handle-based interface over plain files,
// packed (.pck/.pbd/.pbb) files and entries of the game's .cat/.dat archives.
//
// The driver knows nothing of Qt. Strings are zero-terminated 8-bit strings,
// results are numbers, pointers and truth values, nothing throws, and a failure
// leaves its code in one global cell (CatLastError). The only caller inside the
// program is the transfer layer (GameFile.h); hwtool and the tests use it too.
//
// Paths: "<file path>" names a file on disk, "<catalog path>::<entry name>" an
// entry of a catalog. Every path is normalised first: absolute, "." and ".."
// resolved, one canonical form with backslashes, compared without regard to case.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// File kinds for CatOpen.
enum : int32_t { CatKindAuto = 0, CatKindPlain = 1, CatKindPacked = 2 };
// Open modes.
enum : int32_t { CatModeRead = 0, CatModeWrite = 1 };
// Seek origins.
enum : int32_t { CatSeekBegin = 0, CatSeekEnd = 1, CatSeekCurrent = 2 };
// Flags of an open file object (CatFileInfo::flags).
enum : uint32_t { CatFlagOnDisk = 1, CatFlagPlain = 2, CatFlagPacked = 4 };

// Scrambling keys of the game's formats.
inline constexpr uint8_t CatPackKey = 0x6E;    // lead byte of a packed file
inline constexpr uint8_t CatCatalogKey = 0x5A; // .cat: byte i ^= (key + i)
inline constexpr uint8_t CatDataKey = 0xA7;    // .dat: every byte ^= key

// Error codes; CatErrorText gives their messages.
enum : uint32_t {
    CatErrNone = 0,
    CatErrInvalidHandle = 1,
    CatErrSeek = 2,
    CatErrSeekMode = 3,
    CatErrOpenUnknown = 4,
    CatErrAccessDenied = 5,
    CatErrFileExists = 6,
    CatErrFileNotFound = 7,
    CatErrBadMode = 8,
    CatErrBadData = 9,
    CatErrFileEmpty = 10,
    CatErrFileLocked = 11,
    CatErrArchiveNotOpen = 12,
    CatErrNoEntry = 13,
    CatErrNoDatFile = 14,
    CatErrInvalidSize = 15,
    CatErrArchiveLocked = 16,
    CatErrBadName = 17,
    CatErrInternal = 18,
    CatErrNoMemory = 19,
    CatErrBadFlags = 20,
    CatErrGzipReservedFlags = 21, // a warning: the data is delivered
    CatErrGzipNoHeader = 22,
    CatErrGzipTooSmall = 23,
    CatErrGzipDataCrc = 24,
    CatErrGzipHeaderCrc = 25,
    CatErrGzipMethod = 26,
    CatErrGzipInflate = 27,
    // A change of the catalog failed half-way: its .dat is part moved. Every
    // read that would go to the .dat fails with this code until the change
    // is completed from its journal, which each such read tries first (and
    // every open of the catalog does).
    CatErrArchiveUnfinished = 28,
};

struct CatFile;          // one handle for each successful CatOpen
struct CatArchiveHandle; // one for each successful CatOpenArchive
struct CatFind;          // a running listing

struct CatFileInfo
{
    char name[260];
    int32_t time;
    uint32_t size;       // logical size
    uint32_t storedSize; // size on disk or in the .dat when opened
    uint32_t flags;
};

struct CatFindData
{
    char name[260];
    uint32_t size; // size in the .dat
};

CatFile* CatOpen(const char* path, int32_t mode, int32_t create, int32_t kind);
bool CatClose(CatFile* file);
int32_t CatRead(CatFile* file, void* buffer, uint32_t count);
int32_t CatWrite(CatFile* file, const void* data, uint32_t count);
bool CatSeek(CatFile* file, int32_t offset, int32_t origin);
int32_t CatSize(CatFile* file);
bool CatEof(CatFile* file);
bool CatTruncate(CatFile* file);
bool CatStat(CatFile* file, CatFileInfo* info);
bool CatDelete(const char* path);

CatArchiveHandle* CatOpenArchive(const char* path, int32_t create);
bool CatCloseArchive(CatArchiveHandle* archive);
CatFind* CatFindFirst(CatArchiveHandle* archive, const char* pattern, CatFindData* data);
bool CatFindNext(CatFind* find, CatFindData* data);
bool CatFindClose(CatFind* find);

uint32_t CatLastError();
const char* CatErrorText(uint32_t code);

// --- Packed files: a gzip stream XORed with a one-byte key behind a lead byte.

// State of one gzip write. The output buffer receives the (scrambled, for
// PckPack) gzip stream without the lead byte.
struct GzipWriter
{
    std::string name;    // FNAME when not empty
    std::string comment; // FCOMMENT when not empty
    uint32_t mtime = 0;
    std::vector<uint8_t> output;
    int level = 9;
    int status = 0;
};

bool PckIsPacked(const uint8_t* bytes, size_t length);
// Unpacks a packed buffer (changed in place). On success *data is allocated
// by the driver and released by the caller with PckFreeData. Returns a code;
// 21 delivers data too.
uint32_t PckUnpack(uint8_t* buffer, uint32_t length, uint8_t** data, uint32_t* size, uint32_t* time);
uint32_t PckPack(const uint8_t* data, uint32_t size, GzipWriter* out, uint32_t time, uint8_t* leadByte);
uint32_t PckWriteFile(const uint8_t* data, uint32_t size, int descriptor, uint32_t time);
uint32_t PckReadFile(const char* path, uint8_t** data, uint32_t* size, uint32_t* time);
void PckFreeData(uint8_t* data);
