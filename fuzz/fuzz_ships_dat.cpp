// Fuzz harness of the installed-ships registry reader (ShipInstall/ships.dat).
// Whatever it reads completely must write back to a file that reads again
// completely, into the same registry, and writes back to the same bytes.
#include "package/InstalledShips.h"

#include <QByteArray>

#include <cstdio>
#include <cstdlib>

namespace {

void Require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "fuzz_ships_dat: %s\n", what);
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(bytes), qsizetype(size));
    const InstalledShipsRead read = ParseInstalledShips(input);
    Require(read.Exists, "a parsed file does not exist");
    Require(read.FullyRead() || !read.ProblemText().isEmpty(), "problems without a text");
    if (!read.FullyRead())
        return 0;
    const QByteArray written = FormatInstalledShips(read.Registry);
    const InstalledShipsRead again = ParseInstalledShips(written);
    Require(again.FullyRead(), "a written registry does not read completely");
    Require(again.Registry == read.Registry, "a written registry reads back differently");
    Require(FormatInstalledShips(again.Registry) == written, "writing is not stable");
    return 0;
}
