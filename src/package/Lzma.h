// The LZMA layer of ship packages: a .xsp file is one LZMA stream in the
// classic "LZMA-alone" layout and nothing else:
//
//     offset 0   1 byte   properties: (pb * 5 + lp) * 9 + lc, here 0x5D
//     offset 1   4 bytes  dictionary size, little-endian, here 2,097,152
//     offset 5   8 bytes  uncompressed size, little-endian (all ones: unknown)
//     offset 13  ...      LZMA data; a package has no end marker
//
// The encoder always writes that layout with lc 3, lp 0, pb 2, 128 fast
// bytes, the BT4 match finder and the normal mode. The decoder reads any valid
// stream of this layout, with or without an end marker.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

class QIODevice;

// Progress of a long job: bytes done so far of the total.
using ByteProgress = std::function<void(uint64_t done, uint64_t total)>;

inline constexpr int LzmaHeaderSize = 13;
inline constexpr uint8_t PackageLzmaProperties = 0x5D;
inline constexpr uint32_t PackageDictionarySize = 1u << 21;
inline constexpr uint64_t LzmaUnknownSize = UINT64_MAX;
// No package holds more than this; a header that declares more is damaged.
inline constexpr uint64_t MaxPackageStreamSize = uint64_t(16) << 30;

struct LzmaHeader
{
    uint8_t properties = 0;
    uint32_t dictionarySize = 0;
    uint64_t uncompressedSize = 0; // LzmaUnknownSize when the stream ends in a marker

    bool sizeKnown() const { return uncompressedSize != LzmaUnknownSize; }
};

// The 13 header bytes of a package stream of `uncompressedSize` bytes.
QByteArray PackageLzmaHeader(uint64_t uncompressedSize);

// Reads the first 13 bytes of `bytes`; false when there are fewer or the
// properties byte names no valid lc/lp/pb triple.
bool ParseLzmaHeader(const QByteArray& bytes, LzmaHeader& header);

enum class LzmaStatus
{
    Ok,
    NotLzma,     // no valid header, or data that no LZMA stream can start with
    TooLarge,    // the declared size is above the cap or the free space
    Truncated,   // the data ended before the declared size
    Corrupt,     // the decoder refused the data
    OutOfMemory, // the coder could not get its memory
    ReadFailed,  // the source could not be opened or read to its end
    WriteFailed  // the target could not be written
};

// Compresses the whole file `sourcePath` into `targetPath` as a package
// stream. The target is written to a temporary file beside it and renamed
// over it only when everything succeeded, so a failure leaves a file that
// stood there untouched. `progress` gets the bytes read of the source size.
// A source that changes its size while it is read fails.
bool CompressFile(const QString& sourcePath, const QString& targetPath, const ByteProgress& progress = {});

// Decodes the LZMA-alone file `sourcePath` into `targetPath`, replacing the
// target only on success. Fails on a source shorter than its header, on a
// header the decoder refuses, on a declared size above the cap or the free
// space of the target's directory, and on damaged or truncated data.
bool DecompressFile(const QString& sourcePath, const QString& targetPath, const ByteProgress& progress = {},
                    LzmaStatus* status = nullptr);

// Decodes an LZMA-alone stream from an open device piece by piece, so that a
// caller can parse the content without keeping it or writing it out first.
class LzmaDecoder
{
public:
    explicit LzmaDecoder(QIODevice& source);
    ~LzmaDecoder();
    LzmaDecoder(const LzmaDecoder&) = delete;
    LzmaDecoder& operator=(const LzmaDecoder&) = delete;

    // Reads and checks the header and the first data byte. A declared size
    // above `sizeLimit` gives TooLarge.
    LzmaStatus open(uint64_t sizeLimit = MaxPackageStreamSize);
    const LzmaHeader& header() const { return m_header; }

    // Decodes up to `size` bytes into `data`. Returns the count, which is
    // short only at the end of the stream or on an error; -1 when nothing
    // could be decoded because of an error (see status()).
    int64_t read(char* data, int64_t size);
    bool atEnd() const { return m_ended; }
    LzmaStatus status() const { return m_status; }
    uint64_t decodedBytes() const { return m_decoded; }
    // Bytes of the source consumed so far, the header included.
    uint64_t consumedBytes() const;

private:
    struct Coder;
    bool fillInput();

    QIODevice& m_source;
    std::unique_ptr<Coder> m_coder;
    LzmaHeader m_header;
    LzmaStatus m_status = LzmaStatus::Ok;
    bool m_ended = false;
    bool m_inputEnded = false;
    uint64_t m_decoded = 0;
};
