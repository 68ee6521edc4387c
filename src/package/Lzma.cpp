#include "package/Lzma.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStorageInfo>

#include <lzma.h>

#include <vector>

namespace {

constexpr int64_t kChunkSize = 1 << 20;
constexpr int64_t kInputBufferSize = 64 * 1024;
// Enough for any dictionary a sane package names; a header that needs more is refused.
constexpr uint64_t kDecoderMemoryLimit = uint64_t(512) << 20;
constexpr int kLargestPropertiesByte = 9 * 5 * 5 - 1;

// The package settings: lc 3, lp 0, pb 2, 2 MiB dictionary, 128 fast bytes,
// BT4 and the normal mode, no end marker behind the data. Only the first
// three and the dictionary size are recorded in the stream.
bool PackageEncoderOptions(lzma_options_lzma& options)
{
    if (lzma_lzma_preset(&options, 6))
        return false;
    options.dict_size = PackageDictionarySize;
    options.lc = 3;
    options.lp = 0;
    options.pb = 2;
    options.nice_len = 128;
    options.mf = LZMA_MF_BT4;
    options.mode = LZMA_MODE_NORMAL;
    // Twice the match finder's usual cut value for these settings (80): the
    // deeper search finds longer matches in game text (language files,
    // scenes) and makes those packages smaller, at no measurable cost in
    // time; packed models and pictures compress the same either way.
    options.depth = 160;
    options.ext_flags = 0;
    options.ext_size_low = UINT32_MAX;
    options.ext_size_high = UINT32_MAX;
    return true;
}

struct StreamGuard
{
    lzma_stream stream = LZMA_STREAM_INIT;
    ~StreamGuard() { lzma_end(&stream); }
};

bool WriteAll(QIODevice& target, const uint8_t* data, size_t size)
{
    return size == 0 || target.write(reinterpret_cast<const char*>(data), int64_t(size)) == int64_t(size);
}

bool RunEncoder(lzma_stream& stream, QIODevice& source, uint64_t sourceSize, QIODevice& target,
                const ByteProgress& progress)
{
    std::vector<uint8_t> input(kChunkSize);
    std::vector<uint8_t> output(kChunkSize);
    uint64_t read = 0;
    lzma_action action = LZMA_RUN;
    stream.next_out = output.data();
    stream.avail_out = output.size();
    for (;;) {
        if (stream.avail_in == 0 && action == LZMA_RUN) {
            const int64_t wanted = int64_t(std::min<uint64_t>(kChunkSize, sourceSize - read));
            const int64_t got = wanted > 0 ? source.read(reinterpret_cast<char*>(input.data()), wanted) : 0;
            if (got < 0 || got != wanted)
                return false; // the source shrank or could not be read: the header would lie
            read += uint64_t(got);
            stream.next_in = input.data();
            stream.avail_in = size_t(got);
            if (read == sourceSize)
                action = LZMA_FINISH;
            if (progress && got > 0)
                progress(read, sourceSize);
        }
        const lzma_ret result = lzma_code(&stream, action);
        if (stream.avail_out == 0 || result == LZMA_STREAM_END) {
            if (!WriteAll(target, output.data(), output.size() - stream.avail_out))
                return false;
            stream.next_out = output.data();
            stream.avail_out = output.size();
        }
        if (result == LZMA_STREAM_END)
            return true;
        if (result != LZMA_OK)
            return false;
    }
}

uint64_t FreeSpaceFor(const QString& path)
{
    const QStorageInfo storage(QFileInfo(path).absolutePath());
    return storage.isValid() ? uint64_t(std::max<qint64>(storage.bytesAvailable(), 0)) : UINT64_MAX;
}

} // namespace

QByteArray PackageLzmaHeader(uint64_t uncompressedSize)
{
    QByteArray header(LzmaHeaderSize, '\0');
    header[0] = char(PackageLzmaProperties);
    for (int i = 0; i < 4; ++i)
        header[1 + i] = char((PackageDictionarySize >> (8 * i)) & 0xFF);
    for (int i = 0; i < 8; ++i)
        header[5 + i] = char((uncompressedSize >> (8 * i)) & 0xFF);
    return header;
}

bool ParseLzmaHeader(const QByteArray& bytes, LzmaHeader& header)
{
    if (bytes.size() < LzmaHeaderSize)
        return false;
    const auto byte = [&](int i) { return uint8_t(bytes[i]); };
    if (byte(0) > kLargestPropertiesByte)
        return false;
    header.properties = byte(0);
    header.dictionarySize = 0;
    for (int i = 0; i < 4; ++i)
        header.dictionarySize |= uint32_t(byte(1 + i)) << (8 * i);
    header.uncompressedSize = 0;
    for (int i = 0; i < 8; ++i)
        header.uncompressedSize |= uint64_t(byte(5 + i)) << (8 * i);
    return true;
}

bool CompressFile(const QString& sourcePath, const QString& targetPath, const ByteProgress& progress)
{
    QFile source(sourcePath);
    if (!source.open(QIODevice::ReadOnly))
        return false;
    QSaveFile target(targetPath);
    if (!target.open(QIODevice::WriteOnly))
        return false;

    lzma_options_lzma options;
    if (!PackageEncoderOptions(options))
        return false;
    const lzma_filter filters[] = {{LZMA_FILTER_LZMA1EXT, &options}, {LZMA_VLI_UNKNOWN, nullptr}};
    StreamGuard guard;
    if (lzma_raw_encoder(&guard.stream, filters) != LZMA_OK)
        return false;

    const uint64_t size = uint64_t(source.size());
    const QByteArray header = PackageLzmaHeader(size);
    if (target.write(header) != header.size())
        return false;
    if (!RunEncoder(guard.stream, source, size, target, progress))
        return false; // the QSaveFile is dropped uncommitted: the old target stays
    return target.commit();
}

bool DecompressFile(const QString& sourcePath, const QString& targetPath, const ByteProgress& progress,
                    LzmaStatus* status)
{
    LzmaStatus local = LzmaStatus::Ok;
    LzmaStatus& outcome = status ? *status : local;
    QFile source(sourcePath);
    if (!source.open(QIODevice::ReadOnly)) {
        outcome = LzmaStatus::ReadFailed;
        return false;
    }
    LzmaDecoder decoder(source);
    outcome = decoder.open(std::min(MaxPackageStreamSize, FreeSpaceFor(targetPath)));
    if (outcome != LzmaStatus::Ok)
        return false;

    QSaveFile target(targetPath);
    if (!target.open(QIODevice::WriteOnly)) {
        outcome = LzmaStatus::WriteFailed;
        return false;
    }
    std::vector<char> buffer(kChunkSize);
    const uint64_t total = decoder.header().uncompressedSize;
    while (!decoder.atEnd()) {
        const int64_t got = decoder.read(buffer.data(), int64_t(buffer.size()));
        if (got < 0 || decoder.status() != LzmaStatus::Ok) {
            outcome = decoder.status();
            return false;
        }
        if (got > 0 && target.write(buffer.data(), got) != got) {
            outcome = LzmaStatus::WriteFailed;
            return false;
        }
        if (progress && got > 0)
            progress(decoder.decodedBytes(), total);
    }
    if (!target.commit()) {
        outcome = LzmaStatus::WriteFailed;
        return false;
    }
    return true;
}

// --- LzmaDecoder

struct LzmaDecoder::Coder
{
    StreamGuard guard;
    std::vector<uint8_t> input = std::vector<uint8_t>(kInputBufferSize);
    uint64_t sourceRead = 0;
};

LzmaDecoder::LzmaDecoder(QIODevice& source) : m_source(source), m_coder(std::make_unique<Coder>()) {}

LzmaDecoder::~LzmaDecoder() = default;

uint64_t LzmaDecoder::consumedBytes() const
{
    return m_coder->sourceRead - m_coder->guard.stream.avail_in;
}

bool LzmaDecoder::fillInput()
{
    lzma_stream& stream = m_coder->guard.stream;
    if (stream.avail_in > 0 || m_inputEnded)
        return true;
    const int64_t got = m_source.read(reinterpret_cast<char*>(m_coder->input.data()), kInputBufferSize);
    if (got < 0)
        return false;
    if (got == 0)
        m_inputEnded = true;
    m_coder->sourceRead += uint64_t(got);
    stream.next_in = m_coder->input.data();
    stream.avail_in = size_t(got);
    return true;
}

LzmaStatus LzmaDecoder::open(uint64_t sizeLimit)
{
    // The header and the first data byte, which is 0 in every LZMA stream.
    const QByteArray head = m_source.read(LzmaHeaderSize + 1);
    if (!ParseLzmaHeader(head, m_header))
        return m_status = LzmaStatus::NotLzma;
    if (head.size() <= LzmaHeaderSize)
        return m_status = LzmaStatus::Truncated;
    if (head[LzmaHeaderSize] != '\0')
        return m_status = LzmaStatus::NotLzma;
    if (m_header.sizeKnown() && m_header.uncompressedSize > sizeLimit)
        return m_status = LzmaStatus::TooLarge;

    lzma_stream& stream = m_coder->guard.stream;
    const lzma_ret result = lzma_alone_decoder(&stream, kDecoderMemoryLimit);
    if (result != LZMA_OK)
        return m_status = result == LZMA_MEM_ERROR ? LzmaStatus::OutOfMemory : LzmaStatus::NotLzma;
    std::copy(head.begin(), head.end(), m_coder->input.begin());
    m_coder->sourceRead = uint64_t(head.size());
    stream.next_in = m_coder->input.data();
    stream.avail_in = size_t(head.size());
    return m_status = LzmaStatus::Ok;
}

int64_t LzmaDecoder::read(char* data, int64_t size)
{
    if (m_status != LzmaStatus::Ok)
        return -1;
    lzma_stream& stream = m_coder->guard.stream;
    stream.next_out = reinterpret_cast<uint8_t*>(data);
    stream.avail_out = size_t(size);
    while (stream.avail_out > 0 && !m_ended) {
        if (!fillInput()) {
            m_status = LzmaStatus::ReadFailed;
            break;
        }
        const lzma_ret result = lzma_code(&stream, m_inputEnded ? LZMA_FINISH : LZMA_RUN);
        if (result == LZMA_STREAM_END) {
            m_ended = true;
        } else if (result != LZMA_OK) {
            switch (result) {
            case LZMA_BUF_ERROR:
                m_status = LzmaStatus::Truncated;
                break;
            case LZMA_MEM_ERROR:
                m_status = LzmaStatus::OutOfMemory;
                break;
            case LZMA_MEMLIMIT_ERROR:
            case LZMA_FORMAT_ERROR:
            case LZMA_OPTIONS_ERROR:
                m_status = LzmaStatus::NotLzma;
                break;
            default:
                m_status = LzmaStatus::Corrupt;
                break;
            }
            break;
        }
    }
    const int64_t produced = size - int64_t(stream.avail_out);
    m_decoded += uint64_t(produced);
    if (produced == 0 && m_status != LzmaStatus::Ok)
        return -1;
    return produced;
}
