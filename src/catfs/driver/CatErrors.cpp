#include "catfs/CatDriver.h"

namespace {

const char* const kMessages[] = {
    "No error.",
    "Invalid handle.",
    "Cannot seek to specified position.",
    "Bad seek mode.",
    "Unknown error while opening file.",
    "Cannot open file - access denied or file locked.",
    "File already exist.",
    "File does not exist.",
    "Bad file mode.",
    "Bad data in file.",
    "File is empty.",
    "File is locked",
    "CAT archive is not open.",
    "No entry in CAT file.",
    "Cannot find DAT file.",
    "Invalid size in CAT entry.",
    "Files in CAT are locked.",
    "File name syntax is incorrect.",
    "Internal error.",
    "Cannot allocate memory.",
    "Bad flags specified.",
    "GZIP - reserved flag bits are set.",
    "GZIP - no GZIP header found.",
    "GZIP - input stream too small.",
    "GZIP - data CRC does not match.",
    "GZIP - header CRC does not match",
    "GZIP - unsupported compression.",
    "GZIP - deflate/inflate failed.",
    "CAT archive has an unfinished change.",
};

} // namespace

const char* CatErrorText(uint32_t code)
{
    if (code < sizeof(kMessages) / sizeof(kMessages[0]))
        return kMessages[code];
    return "Unknown error.";
}
