// Child process of the crash test: applies one change to a catalog and exits.
//   driver_commit_helper <catalog> replace <entry> <seed> <size>
//   driver_commit_helper <catalog> remove <entry>
//   driver_commit_helper <catalog> hold        (holds the catalog until stdin closes)
// The test kills it at random moments with SIGKILL.

#include "catfs/CatDriver.h"
#include "driver_crash_content.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

int main(int argc, char** argv)
{
    if (argc < 3)
        return 2;
    const std::string catalog = argv[1];
    const std::string op = argv[2];
    if (op == "hold") {
        CatArchiveHandle* archive = CatOpenArchive(catalog.c_str(), 0);
        std::printf("%s\n", archive ? "holding" : "failed");
        std::fflush(stdout);
        while (std::getchar() != EOF) {
        }
        return archive && CatCloseArchive(archive) ? 0 : 1;
    }
    if (argc < 4)
        return 2;
    const std::string path = catalog + "::" + argv[3];
    if (op == "remove")
        return CatDelete(path.c_str()) ? 0 : 1;
    if (op != "replace" || argc < 6)
        return 2;
    const std::string content = drivertest::CrashContent(
        argv[3], uint32_t(std::strtoul(argv[4], nullptr, 10)), uint32_t(std::strtoul(argv[5], nullptr, 10)));
    CatFile* file = CatOpen(path.c_str(), CatModeWrite, 1, CatKindPlain);
    if (!file)
        return 1;
    const bool written =
        CatSeek(file, 0, CatSeekBegin) &&
        CatWrite(file, content.data(), uint32_t(content.size())) == int32_t(content.size()) &&
        CatTruncate(file);
    return CatClose(file) && written ? 0 : 1;
}
