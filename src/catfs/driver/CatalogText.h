// Decoding of a .cat file's text (its layout is described in Catalog.cpp).
// Internal to the driver.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace catfs {

struct CatEntry
{
    uint32_t nameOffset; // into the catalog's name store
    uint32_t nameLength;
    uint32_t offset; // start in the .dat: the sum of the sizes before it
    uint32_t size;   // length in the .dat (for a packed entry the packed length)
};

// Storage without zero-filling: a catalog's text is read straight into it,
// and its entries are written into it as they are parsed.
template <typename T> struct DefaultInitAllocator : std::allocator<T>
{
    template <typename U> struct rebind
    {
        using other = DefaultInitAllocator<U>;
    };
    template <typename U> void construct(U* at) noexcept { ::new (static_cast<void*>(at)) U; }
    template <typename U, typename... Args> void construct(U* at, Args&&... args)
    {
        ::new (static_cast<void*>(at)) U(std::forward<Args>(args)...);
    }
};
using CatEntryList = std::vector<CatEntry, DefaultInitAllocator<CatEntry>>;
using NameStore = std::vector<char, DefaultInitAllocator<char>>;

// Bytes that must be readable and writable behind the text handed to
// DecodeCatalogText: the decoder works in whole 64-byte blocks.
constexpr size_t kCatalogTextSlack = 64;

// Unscrambles the `length` bytes of a .cat file read from its start in place,
// turns '/' into '\\' and CR or zero bytes into LF, and splits the text into
// line 1 (`dataName`) and the entries, whose names stay in `text` in the form
// of CanonicaliseEntryName. Both passes run over one small piece of the text
// at a time, while it is still in the processor's cache. Fails with 9 for an entry line without a blank
// and with 15 for a size that is negative or does not fit in 32 bits, or
// sizes whose sum passes 4 GiB. The text must have kCatalogTextSlack bytes
// of room behind it; their content afterwards is undefined.
//
// `decoder` picks the vector width: the best the processor has, or the
// portable one (tests compare both).
enum class CatalogDecoder
{
    Best,
    Portable
};
uint32_t DecodeCatalogText(char* text, size_t length, std::string& dataName, CatEntryList& entries,
                           CatalogDecoder decoder = CatalogDecoder::Best);

// Rewrites an entry name in place into the one form by which a path reaches
// it, and gives its new length (never longer): components separated by single
// backslashes, no empty and no "." component, and ".." takes the component
// before it away but never leaves the catalog's root. Both '/' and '\\'
// separate components. So "a\", ".\a" and "b\..\a" all become "a", and
// "." becomes the empty name. Catalog names and the entry part of every path
// go through it, so that a listed name always opens its own entry.
size_t CanonicaliseEntryName(char* name, size_t length);

// Parses a size as atoi does (leading blanks, a sign, digits, anything behind
// ignored; no digits read as 0). False when the value is negative or does not
// fit in 32 bits.
bool ParseSize(const char* begin, const char* end, uint32_t& value);

} // namespace catfs
