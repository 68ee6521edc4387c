#include "catfs/driver/CatalogText.h"

#include "catfs/CatDriver.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#endif

namespace catfs {

bool ParseSize(const char* begin, const char* end, uint32_t& value)
{
    while (begin < end && (*begin == ' ' || *begin == '\t' || *begin == '\v' || *begin == '\f'))
        ++begin;
    bool negative = false;
    if (begin < end && (*begin == '+' || *begin == '-')) {
        negative = *begin == '-';
        ++begin;
    }
    uint64_t result = 0;
    for (; begin < end && *begin >= '0' && *begin <= '9'; ++begin) {
        result = result * 10 + uint64_t(*begin - '0');
        if (result > UINT32_MAX)
            return false;
    }
    if (negative && result != 0)
        return false;
    value = uint32_t(result);
    return true;
}

size_t CanonicaliseEntryName(char* name, size_t length)
{
    // Components are copied down to `out`; the output never overtakes the
    // input, since every component written was followed by a separator read.
    size_t out = 0;
    size_t at = 0;
    while (at < length) {
        while (at < length && (name[at] == '\\' || name[at] == '/'))
            ++at;
        const size_t start = at;
        while (at < length && name[at] != '\\' && name[at] != '/')
            ++at;
        const size_t size = at - start;
        if (size == 0 || (size == 1 && name[start] == '.'))
            continue;
        if (size == 2 && name[start] == '.' && name[start + 1] == '.') {
            while (out > 0 && name[out - 1] != '\\')
                --out;
            if (out > 0)
                --out; // the separator before the dropped component
            continue;
        }
        if (out > 0)
            name[out++] = '\\';
        std::memmove(name + out, name + start, size);
        out += size;
    }
    return out;
}

namespace {

void CanonicaliseNames(char* text, CatEntryList& entries)
{
    for (CatEntry& entry : entries)
        entry.nameLength = uint32_t(CanonicaliseEntryName(text + entry.nameOffset, entry.nameLength));
}

// The text is decoded in pieces of this size: a multiple of the key's period
// (256) and of the mask blocks (64), small enough to stay in the first-level
// cache between unscrambling and splitting.
constexpr size_t kPiece = 4096;
constexpr size_t kBlocksPerPiece = kPiece / 64;

// Per 64-byte block, one bit per byte: where the line ends, the blanks, the
// separators and the dots are.
struct BlockMasks
{
    uint64_t lineEnds[kBlocksPerPiece];
    uint64_t blanks[kBlocksPerPiece + 1]; // [0]: the block before the piece
    uint64_t separators[kBlocksPerPiece];
    uint64_t dots[kBlocksPerPiece];
};

// Whether an entry name of the piece may not be in canonical form: one that
// starts with '\' or '.', ends with '\', or holds "\\" or "\." (a name
// starts behind a line end and ends before a blank). Some names that are
// canonical pass too (".hidden"); they are only looked at once more.
// `carry` takes the state of the last byte over to the next piece.
struct OddNameCarry
{
    uint64_t opens = 0;     // the last byte was a line end or a separator
    uint64_t separator = 0; // the last byte was a separator
};

inline bool MayHoldOddNames(const BlockMasks& masks, size_t blocks, OddNameCarry& carry)
{
    uint64_t odd = 0;
    for (size_t b = 0; b < blocks; ++b) {
        const uint64_t separators = masks.separators[b];
        const uint64_t opens = separators | masks.lineEnds[b];
        const uint64_t closes = separators | masks.dots[b];
        const uint64_t blanks = masks.blanks[b + 1];
        odd |= (opens & (closes >> 1)) | (separators & (blanks >> 1));
        odd |= (carry.opens & closes & 1) | (carry.separator & blanks & 1);
        carry.opens = opens >> 63;
        carry.separator = separators >> 63;
    }
    return odd != 0;
}

// Unscrambles `blocks` blocks of 64 bytes at `text` (file position
// `position`, a multiple of 64) with the key stream `period`, rewrites
// separators and line ends, and records the masks of LF, blank, backslash
// and dot.
void DecodePiecePortable(char* text, size_t position, size_t blocks, const uint8_t* period, BlockMasks& masks)
{
    for (size_t b = 0; b < blocks; ++b) {
        char* block = text + 64 * b;
        const size_t at = position + 64 * b;
#if defined(__SSE2__)
        const __m128i slash = _mm_set1_epi8('/');
        const __m128i slashToBackslash = _mm_set1_epi8('/' ^ '\\');
        const __m128i cr = _mm_set1_epi8('\r');
        const __m128i zero = _mm_setzero_si128();
        const __m128i lf = _mm_set1_epi8('\n');
        const __m128i blank = _mm_set1_epi8(' ');
        const __m128i backslash = _mm_set1_epi8('\\');
        const __m128i dot = _mm_set1_epi8('.');
        uint64_t ends = 0;
        uint64_t spaces = 0;
        uint64_t separators = 0;
        uint64_t dots = 0;
        for (int i = 0; i < 4; ++i) {
            __m128i* chunk = reinterpret_cast<__m128i*>(block + 16 * i);
            const __m128i key =
                _mm_loadu_si128(reinterpret_cast<const __m128i*>(period + ((at + 16 * i) & 255)));
            __m128i v = _mm_xor_si128(_mm_loadu_si128(chunk), key);
            v = _mm_xor_si128(v, _mm_and_si128(_mm_cmpeq_epi8(v, slash), slashToBackslash));
            const __m128i other = _mm_or_si128(_mm_cmpeq_epi8(v, cr), _mm_cmpeq_epi8(v, zero));
            v = _mm_or_si128(_mm_andnot_si128(other, v), _mm_and_si128(other, lf));
            _mm_storeu_si128(chunk, v);
            ends |= uint64_t(uint32_t(_mm_movemask_epi8(_mm_cmpeq_epi8(v, lf)))) << (16 * i);
            spaces |= uint64_t(uint32_t(_mm_movemask_epi8(_mm_cmpeq_epi8(v, blank)))) << (16 * i);
            separators |= uint64_t(uint32_t(_mm_movemask_epi8(_mm_cmpeq_epi8(v, backslash)))) << (16 * i);
            dots |= uint64_t(uint32_t(_mm_movemask_epi8(_mm_cmpeq_epi8(v, dot)))) << (16 * i);
        }
#else
        uint64_t ends = 0;
        uint64_t spaces = 0;
        uint64_t separators = 0;
        uint64_t dots = 0;
        for (size_t i = 0; i < 64; ++i) {
            uint8_t c = uint8_t(block[i]) ^ period[(at + i) & 255];
            if (c == '/')
                c = '\\';
            else if (c == '\r' || c == 0)
                c = '\n';
            block[i] = char(c);
            ends |= uint64_t(c == '\n') << i;
            spaces |= uint64_t(c == ' ') << i;
            separators |= uint64_t(c == '\\') << i;
            dots |= uint64_t(c == '.') << i;
        }
#endif
        masks.lineEnds[b] = ends;
        masks.blanks[b + 1] = spaces;
        masks.separators[b] = separators;
        masks.dots[b] = dots;
    }
}

#if defined(__x86_64__) && defined(__GNUC__)
#define HW_CATALOG_WIDE_DECODER 1
#if !defined(__clang__)
// GCC 12's vector intrinsics fill unused lanes from a deliberately
// uninitialised value, which its own flow analysis then reports.
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
// 64-byte vectors with byte masks, and the bit-counting instructions.
#define HW_WIDE_TARGET "avx512f,avx512bw,avx512cd,avx512dq,avx512vl,avx512vbmi2,bmi,bmi2,lzcnt,popcnt"
// The same with 64-byte vectors, whose comparisons give the masks directly.
__attribute__((target(HW_WIDE_TARGET))) void DecodePieceWide(char* text, size_t position, size_t blocks,
                                                             const uint8_t* period, BlockMasks& masks)
{
    const __m512i slash = _mm512_set1_epi8('/');
    const __m512i backslash = _mm512_set1_epi8('\\');
    const __m512i cr = _mm512_set1_epi8('\r');
    const __m512i lf = _mm512_set1_epi8('\n');
    const __m512i blank = _mm512_set1_epi8(' ');
    const __m512i dot = _mm512_set1_epi8('.');
    for (size_t b = 0; b < blocks; ++b) {
        char* block = text + 64 * b;
        const __m512i key = _mm512_loadu_si512(period + ((position + 64 * b) & 255));
        __m512i v = _mm512_xor_si512(_mm512_loadu_si512(block), key);
        v = _mm512_mask_mov_epi8(v, _mm512_cmpeq_epi8_mask(v, slash), backslash);
        v = _mm512_mask_mov_epi8(v, _mm512_cmpeq_epi8_mask(v, cr) | _mm512_testn_epi8_mask(v, v), lf);
        _mm512_storeu_si512(block, v);
        masks.lineEnds[b] = _mm512_cmpeq_epi8_mask(v, lf);
        masks.blanks[b + 1] = _mm512_cmpeq_epi8_mask(v, blank);
        masks.separators[b] = _mm512_cmpeq_epi8_mask(v, backslash);
        masks.dots[b] = _mm512_cmpeq_epi8_mask(v, dot);
    }
}

// Every processor with these vector extensions also counts leading zeros
// (LZCNT), which not every compiler lets a program ask about.
bool WideDecoderAvailable()
{
    static const bool available = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                                  __builtin_cpu_supports("avx512cd") && __builtin_cpu_supports("avx512dq") &&
                                  __builtin_cpu_supports("avx512vl") &&
                                  __builtin_cpu_supports("avx512vbmi2") && __builtin_cpu_supports("bmi") &&
                                  __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("popcnt");
    return available;
}
#endif

uint64_t Load64(const char* p)
{
    uint64_t value;
    std::memcpy(&value, p, 8);
    return value;
}

// The `count` (1..8) bytes before `end` as one word of digit values, one a
// byte with the first one lowest and zeros in front; false when one of them
// is not a decimal digit. Reads the 8 bytes before `end`.
inline bool DigitsBefore(const char* end, size_t count, uint64_t& digits)
{
    const uint64_t keep = ~uint64_t(0) << (8 * (8 - count));
    const uint64_t bytes = Load64(end - 8) & keep;
    const uint64_t zeros = 0x3030303030303030ull & keep;
    digits = bytes - zeros;
    return ((bytes & 0xF0F0F0F0F0F0F0F0ull) == zeros) &
           (((bytes + 0x0606060606060606ull) & 0xF0F0F0F0F0F0F0F0ull) == zeros);
}

// The number that a word of DigitsBefore stands for: all eight digits are
// combined at once, in pairs, fours and the whole.
inline uint64_t DigitsValue(uint64_t digits)
{
    digits = digits * 10 + (digits >> 8);
    return (((digits & 0x000000FF000000FFull) * (100 + (1000000ull << 32))) +
            (((digits >> 16) & 0x000000FF000000FFull) * (1 + (10000ull << 32)))) >>
           32;
}

bool ParseDigitsBefore(const char* end, size_t count, uint32_t& value)
{
    uint64_t digits = 0;
    if (!DigitsBefore(end, count, digits))
        return false;
    value = uint32_t(DigitsValue(digits));
    return true;
}

// Lists the line ends of a piece's blocks in order, as positions from the
// piece's start, and returns how many there are. `out` needs room for 64
// more than that.
using LineEndGather = size_t (*)(const BlockMasks& masks, size_t blocks, int32_t* out);

size_t GatherEndsPortable(const BlockMasks& masks, size_t blocks, int32_t* out)
{
    size_t count = 0;
    for (size_t b = 0; b < blocks; ++b) {
        uint64_t ends = masks.lineEnds[b];
        const uint32_t base = uint32_t(64 * b);
        // Four at a time without a branch (a slot behind the last is
        // overwritten later); only blocks of short lines hold more.
        for (int i = 0; i < 4; ++i) {
            out[count] = int32_t(base + uint32_t(std::countr_zero(ends)));
            count += ends != 0;
            ends &= ends - 1;
        }
        for (; ends; ends &= ends - 1)
            out[count++] = int32_t(base + uint32_t(std::countr_zero(ends)));
    }
    return count;
}

#if HW_CATALOG_WIDE_DECODER
// The same by compressing the byte positions 0..63 of a block with its mask:
// the first sixteen line ends of the block in one step.
__attribute__((target(HW_WIDE_TARGET))) size_t GatherEndsWide(const BlockMasks& masks, size_t blocks,
                                                              int32_t* out)
{
    alignas(64) static constexpr uint8_t kPositions[64] = {
        0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21,
        22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42, 43,
        44, 45, 46, 47, 48, 49, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 62, 63};
    const __m512i positions = _mm512_load_si512(kPositions);
    size_t count = 0;
    for (size_t b = 0; b < blocks; ++b) {
        const uint64_t ends = masks.lineEnds[b];
        const __m512i packed = _mm512_maskz_compress_epi8(ends, positions);
        const __m512i base = _mm512_set1_epi32(int32_t(64 * b));
        _mm512_storeu_si512(out + count,
                            _mm512_add_epi32(_mm512_cvtepu8_epi32(_mm512_castsi512_si128(packed)), base));
        const size_t lines = size_t(std::popcount(ends));
        if (lines > 16) [[unlikely]] { // a block of very short lines
            const __m128i parts[3] = {_mm512_extracti32x4_epi32(packed, 1),
                                      _mm512_extracti32x4_epi32(packed, 2),
                                      _mm512_extracti32x4_epi32(packed, 3)};
            for (size_t part = 0; 16 * (part + 1) < lines; ++part)
                _mm512_storeu_si512(out + count + 16 * (part + 1),
                                    _mm512_add_epi32(_mm512_cvtepu8_epi32(parts[part]), base));
        }
        count += lines;
    }
    return count;
}
#endif

// The nearest blank before the line end at `local` of the piece in this
// block or the one before it; false when there is none in either.
__attribute__((always_inline)) inline bool NearestBlank(size_t pieceStart, size_t local,
                                                        const BlockMasks& masks, int64_t& blank)
{
    const size_t block = local / 64;
    const uint64_t here = masks.blanks[block + 1] & ((uint64_t(1) << (local % 64)) - 1);
    const uint64_t before = masks.blanks[block];
    const int64_t blockStart = int64_t(pieceStart + 64 * block);
    blank = here ? blockStart + 63 - std::countl_zero(here) : blockStart - 1 - std::countl_zero(before);
    return (here | before) != 0;
}

// The lines of one piece, positions counted from the piece's start.
struct PlainLines
{
    int32_t ends[kPiece + 80];   // [0]: the line end before the piece; [1 + i]: the end of line i
    int32_t blanks[kPiece + 16]; // the blank of line i
    uint64_t sizes[kPiece + 16]; // its size
};

// Finds the blank and reads the size of every line of a piece, without a
// branch a line, so that the processor works on many lines at once. True
// when every line is plain: a blank in its last two blocks, after the line's
// start, followed by 1 to 8 digits. `count` lines; the text holds at least
// 8 bytes before the piece.
using PlainAnalysis = bool (*)(const char* text, size_t pieceStart, size_t count, const BlockMasks& masks,
                               PlainLines& lines);

bool AnalysePortable(const char* text, size_t pieceStart, size_t count, const BlockMasks& masks,
                     PlainLines& lines)
{
    bool plain = true;
    for (size_t i = 0; i < count; ++i) {
        int64_t blank = 0;
        plain &= NearestBlank(pieceStart, size_t(lines.ends[1 + i]), masks, blank);
        lines.blanks[i] = int32_t(blank - int64_t(pieceStart));
    }
    for (size_t i = 0; i < count; ++i) {
        const int64_t start = int64_t(pieceStart) + lines.ends[i] + 1;
        const int64_t end = int64_t(pieceStart) + lines.ends[1 + i];
        const int64_t blank = int64_t(pieceStart) + lines.blanks[i];
        const uint64_t digits = uint64_t(end - blank - 1);
        const bool fits = digits - 1 < 8;
        uint64_t value = 0;
        const bool numeric = DigitsBefore(text + end, fits ? digits : 1, value);
        plain &= (blank >= start) & (start != end) & fits & numeric;
        lines.sizes[i] = DigitsValue(value);
    }
    return plain;
}

#if HW_CATALOG_WIDE_DECODER
// The same, eight lines at a time in 64-bit lanes.
__attribute__((target(HW_WIDE_TARGET))) bool AnalyseWide(const char* text, size_t pieceStart, size_t count,
                                                         const BlockMasks& masks, PlainLines& lines)
{
    const __m512i base = _mm512_set1_epi64(int64_t(pieceStart));
    const __m512i one = _mm512_set1_epi64(1);
    const __m512i eight = _mm512_set1_epi64(8);
    const __m512i high = _mm512_set1_epi64(int64_t(0xF0F0F0F0F0F0F0F0ull));
    const __m512i zeroDigits = _mm512_set1_epi64(0x3030303030303030ll);
    const __m512i six = _mm512_set1_epi64(0x0606060606060606ll);
    const __m512i pairMask = _mm512_set1_epi64(0x000000FF000000FFll);
    const __m512i multiplier1 = _mm512_set1_epi64(int64_t(100 + (1000000ull << 32)));
    const __m512i multiplier2 = _mm512_set1_epi64(int64_t(1 + (10000ull << 32)));
    const long long* const blanksBefore = reinterpret_cast<const long long*>(masks.blanks);
    const long long* const blanksHere = reinterpret_cast<const long long*>(masks.blanks + 1);
    bool plain = true;
    for (size_t i = 0; i < count; i += 8) {
        const __mmask8 active = count - i >= 8 ? __mmask8(0xFF) : __mmask8((1u << (count - i)) - 1);
        const __m512i local =
            _mm512_cvtepi32_epi64(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(lines.ends + 1 + i)));
        const __m512i previous =
            _mm512_cvtepi32_epi64(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(lines.ends + i)));
        const __m512i end = _mm512_add_epi64(base, local);
        const __m512i start = _mm512_add_epi64(_mm512_add_epi64(base, previous), one);
        // The nearest blank.
        const __m512i block = _mm512_srli_epi64(local, 6);
        const __m512i below =
            _mm512_sub_epi64(_mm512_sllv_epi64(one, _mm512_and_si512(local, _mm512_set1_epi64(63))), one);
        const __m512i here = _mm512_and_si512(
            _mm512_mask_i64gather_epi64(_mm512_setzero_si512(), active, block, blanksHere, 8), below);
        const __m512i before =
            _mm512_mask_i64gather_epi64(_mm512_setzero_si512(), active, block, blanksBefore, 8);
        const __m512i blockStart = _mm512_add_epi64(base, _mm512_slli_epi64(block, 6));
        const __m512i blankHere =
            _mm512_sub_epi64(_mm512_add_epi64(blockStart, _mm512_set1_epi64(63)), _mm512_lzcnt_epi64(here));
        const __m512i blankBefore =
            _mm512_sub_epi64(_mm512_sub_epi64(blockStart, one), _mm512_lzcnt_epi64(before));
        const __mmask8 inHere = _mm512_test_epi64_mask(here, here);
        const __mmask8 found = inHere | _mm512_test_epi64_mask(before, before);
        const __m512i blank = _mm512_mask_blend_epi64(inHere, blankBefore, blankHere);
        // The digits behind it.
        const __m512i digits = _mm512_sub_epi64(_mm512_sub_epi64(end, blank), one);
        const __mmask8 fits = _mm512_cmplt_epu64_mask(_mm512_sub_epi64(digits, one), eight);
        const __m512i counted = _mm512_mask_blend_epi64(fits, one, digits);
        const __m512i keep =
            _mm512_sllv_epi64(_mm512_set1_epi64(-1), _mm512_slli_epi64(_mm512_sub_epi64(eight, counted), 3));
        const __m512i bytes =
            _mm512_and_si512(_mm512_mask_i64gather_epi64(_mm512_setzero_si512(), active,
                                                         _mm512_sub_epi64(end, eight), text, 1),
                             keep);
        const __m512i zeros = _mm512_and_si512(zeroDigits, keep);
        const __mmask8 numeric =
            _mm512_cmpeq_epi64_mask(_mm512_and_si512(bytes, high), zeros) &
            _mm512_cmpeq_epi64_mask(_mm512_and_si512(_mm512_add_epi64(bytes, six), high), zeros);
        __m512i value = _mm512_sub_epi64(bytes, zeros);
        value =
            _mm512_add_epi64(_mm512_mullo_epi64(value, _mm512_set1_epi64(10)), _mm512_srli_epi64(value, 8));
        value = _mm512_srli_epi64(
            _mm512_add_epi64(
                _mm512_mullo_epi64(_mm512_and_si512(value, pairMask), multiplier1),
                _mm512_mullo_epi64(_mm512_and_si512(_mm512_srli_epi64(value, 16), pairMask), multiplier2)),
            32);
        const __mmask8 ok = found & _mm512_cmpge_epi64_mask(blank, start) &
                            _mm512_cmpneq_epi64_mask(start, end) & fits & numeric;
        plain &= (ok & active) == active;
        _mm256_mask_storeu_epi32(lines.blanks + i, active,
                                 _mm512_cvtepi64_epi32(_mm512_sub_epi64(blank, base)));
        _mm512_mask_storeu_epi64(lines.sizes + i, active, value);
    }
    return plain;
}
#endif

// Splits decoded text into line 1 and the entries, one piece at a time.
class LineSplitter
{
public:
    LineSplitter(char* text, std::string& dataName, CatEntryList& entries)
        : m_text(text), m_dataName(dataName), m_entries(entries)
    {
    }

    // The lines that end in the piece at `pieceStart` whose masks are
    // `masks`. The line ends are first gathered into a list, so that the
    // loop over the lines does not branch on how they fall into blocks.
    template <PlainAnalysis Analyse, LineEndGather Gather>
    __attribute__((always_inline)) uint32_t piece(size_t pieceStart, size_t blocks, const BlockMasks& masks)
    {
        int32_t* const lineEnds = m_plain->ends + 1; // [0] is for the line end before the piece
        const size_t count = Gather(masks, blocks, lineEnds);
        if (m_entries.size() < m_cursor.count + count)
            m_entries.resize(std::max(m_entries.size() * 2, m_cursor.count + count));
        if (!m_cursor.first && plainPiece<Analyse>(pieceStart, count, masks))
            return CatErrNone;
        // The cursor is a local copy, so that it stays in registers.
        Cursor cursor = m_cursor;
        CatEntry* const out = m_entries.data();
        uint32_t code = CatErrNone;
        for (size_t i = 0; i < count && code == CatErrNone; ++i) {
            const size_t local = size_t(lineEnds[i]);
            int64_t blank = 0;
            const bool found = NearestBlank(pieceStart, local, masks, blank);
            code = line(cursor, out, pieceStart + local, found, blank);
        }
        m_cursor = cursor;
        return code;
    }

    // The last line when the text does not end with a line end.
    uint32_t last(size_t length)
    {
        uint32_t code = CatErrNone;
        if (m_cursor.lineStart < length) {
            m_entries.resize(m_cursor.count + 1);
            code = line(m_cursor, m_entries.data(), length, false, 0);
        }
        m_entries.resize(m_cursor.count);
        return code;
    }

private:
    // The common piece: every line has its blank near its end and 1 to 8
    // digits behind it, no line is empty, the sizes stay within 32 bits.
    // Its lines are analysed all at once (see AnalysePlainLines), then
    // written out; false (and nothing taken over) when any line is not like
    // that, and the piece goes the general way. Not for the piece of line 1.
    template <PlainAnalysis Analyse>
    __attribute__((always_inline)) bool plainPiece(size_t pieceStart, size_t count, const BlockMasks& masks)
    {
        PlainLines& lines = *m_plain;
        lines.ends[0] = int32_t(int64_t(m_cursor.lineStart) - 1 - int64_t(pieceStart));
        if (!Analyse(m_text, pieceStart, count, masks, lines))
            return false;
        CatEntry* const out = m_entries.data() + m_cursor.count;
        uint64_t offset = m_cursor.offset;
        for (size_t i = 0; i < count; ++i) {
            const uint32_t start = uint32_t(int64_t(pieceStart) + lines.ends[i] + 1);
            const uint32_t size = uint32_t(lines.sizes[i]);
            out[i] = CatEntry{start, uint32_t(int64_t(pieceStart) + lines.blanks[i] - start),
                              uint32_t(offset), size};
            offset += size;
        }
        if (offset > UINT32_MAX)
            return false;
        m_cursor.lineStart = size_t(int64_t(pieceStart) + lines.ends[count] + 1);
        m_cursor.offset = offset;
        m_cursor.count += count;
        return true;
    }

    struct Cursor
    {
        size_t lineStart = 0;
        uint64_t offset = 0; // in the .dat, of the next entry
        size_t count = 0;    // entries written
        bool first = true;   // line 1 is still to come
    };

    // The line from the cursor's line start to `end`. `blank` is the nearest
    // blank before `end` when `found`; otherwise it is looked for here.
    __attribute__((always_inline)) uint32_t line(Cursor& cursor, CatEntry* out, size_t end, bool found,
                                                 int64_t blank)
    {
        const size_t start = cursor.lineStart;
        cursor.lineStart = end + 1;
        if (cursor.first || start == end) [[unlikely]] {
            if (cursor.first)
                m_dataName.assign(m_text + start, end - start);
            cursor.first = false;
            return CatErrNone; // empty lines are skipped
        }
        if (!found || blank < int64_t(start)) [[unlikely]] {
            if (found)
                return CatErrBadData; // the nearest blank lies in an earlier line
            const void* at = ::memrchr(m_text + start, ' ', end - start);
            if (!at)
                return CatErrBadData;
            blank = static_cast<const char*>(at) - m_text;
        }
        const char* lineEnd = m_text + end;
        const size_t digits = end - size_t(blank) - 1;
        uint32_t size = 0;
        if (digits - 1 >= 8 || end < 8 || !ParseDigitsBefore(lineEnd, digits, size)) [[unlikely]] {
            uint32_t parsed = 0;
            if (!ParseSize(m_text + blank + 1, lineEnd, parsed))
                return CatErrInvalidSize;
            size = parsed;
        }
        if (cursor.offset + size > UINT32_MAX) [[unlikely]]
            return CatErrInvalidSize;
        out[cursor.count++] =
            CatEntry{uint32_t(start), uint32_t(size_t(blank) - start), uint32_t(cursor.offset), size};
        cursor.offset += size;
        return CatErrNone;
    }

    char* m_text;
    std::string& m_dataName;
    CatEntryList& m_entries;
    Cursor m_cursor;
    std::unique_ptr<PlainLines> m_plain = std::make_unique<PlainLines>();
};

} // namespace

namespace {

// The whole decoding, inlined into each variant so that every step is
// compiled for that variant's instruction set.
template <void (*DecodePiece)(char*, size_t, size_t, const uint8_t*, BlockMasks&), LineEndGather Gather,
          PlainAnalysis Analyse>
__attribute__((always_inline)) inline uint32_t DecodeWith(char* text, size_t length, std::string& dataName,
                                                          CatEntryList& entries)
{
    uint8_t period[256];
    for (size_t i = 0; i < sizeof(period); ++i)
        period[i] = uint8_t(CatCatalogKey + i);

    entries.clear();
    entries.resize(length / 24 + 1); // grown when the lines are shorter
    dataName.clear();
    auto splitter = std::make_unique<LineSplitter>(text, dataName, entries);
    BlockMasks masks;
    masks.blanks[0] = 0; // the block before the first
    OddNameCarry carry;
    bool oddNames = false;
    for (size_t piece = 0; piece < length; piece += kPiece) {
        const size_t blocks = std::min(kPiece, length - piece + 63) / 64;
        DecodePiece(text + piece, piece, blocks, period, masks);
        // Bytes behind the text belong to no line.
        const size_t tail = length - piece - 64 * (blocks - 1);
        if (tail < 64) {
            const uint64_t inside = (uint64_t(1) << tail) - 1;
            masks.lineEnds[blocks - 1] &= inside;
            masks.blanks[blocks] &= inside;
            masks.separators[blocks - 1] &= inside;
            masks.dots[blocks - 1] &= inside;
        }
        oddNames |= MayHoldOddNames(masks, blocks, carry);
        const uint32_t code = splitter->template piece<Analyse, Gather>(piece, blocks, masks);
        if (code != CatErrNone)
            return code;
        masks.blanks[0] = masks.blanks[blocks];
    }
    const uint32_t code = splitter->last(length);
    // A name is listed in the form by which it is opened: "a\" would be
    // listed with its own size but open the entry "a".
    if (code == CatErrNone && oddNames)
        CanonicaliseNames(text, entries);
    return code;
}

uint32_t DecodePortable(char* text, size_t length, std::string& dataName, CatEntryList& entries)
{
    return DecodeWith<DecodePiecePortable, GatherEndsPortable, AnalysePortable>(text, length, dataName,
                                                                                entries);
}

#if HW_CATALOG_WIDE_DECODER
__attribute__((target(HW_WIDE_TARGET))) uint32_t DecodeWide(char* text, size_t length, std::string& dataName,
                                                            CatEntryList& entries)
{
    return DecodeWith<DecodePieceWide, GatherEndsWide, AnalyseWide>(text, length, dataName, entries);
}
#endif

} // namespace

uint32_t DecodeCatalogText(char* text, size_t length, std::string& dataName, CatEntryList& entries,
                           CatalogDecoder decoder)
{
#if HW_CATALOG_WIDE_DECODER
    if (decoder != CatalogDecoder::Portable && WideDecoderAvailable())
        return DecodeWide(text, length, dataName, entries);
#else
    (void)decoder;
#endif
    return DecodePortable(text, length, dataName, entries);
}

} // namespace catfs
