// Fuzz harness of the package reader: an input is a .xsp file (the plain
// stream, or LZMA data). It is read as the main window opens a package, into a
// fresh directory. The reader must write nothing outside that directory, and
// every file the record names must lie there with the size the record gives.
#include "FuzzSupport.h"
#include "package/PackageReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <filesystem>
#include <string>

namespace {

constexpr const char* kHarness = "fuzz_package";
namespace fs = std::filesystem;

void Require(bool condition, const char* what, const QString& detail = {})
{
    fuzz::Require(condition, kHarness, what, detail.left(200).toStdString());
}

const fs::path& Scratch()
{
    static const fuzz::ScratchDirectory directory("hw-fuzz-package");
    return directory.path();
}

QString Q(const fs::path& path)
{
    return QString::fromStdString(path.string());
}

// The files the record names, by their cleaned path; a path named twice has
// no size to check (-1).
void Collect(QHash<QString, qint64>& files, const QString& directory, const FileEntry& entry)
{
    const QString path = QDir::cleanPath(directory + "/" + entry.LocalPath);
    Require(SafeRelativeName(entry.LocalPath) == entry.LocalPath,
            "an unsafe name was kept:", entry.LocalPath);
    files[path] = files.contains(path) ? -1 : qint64(entry.Size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const fs::path input = Scratch() / "input.xsp";
    const fs::path base = Scratch() / "base";
    std::error_code ignored;
    fs::remove_all(base, ignored);
    fs::create_directory(base);
    fuzz::WriteBytes(input, bytes, size);

    ShipPackage record;
    QFile file(Q(input));
    const PackageReadResult result = ReadPackage(file, Q(base), record, "ShipInstall/Scripts", true);

    // Nothing beside the package or the directory it was read into.
    for (const auto& item : fs::directory_iterator(Scratch()))
        Require(item.path() == input || item.path() == base,
                "a file was written outside the target:", Q(item.path()));
    for (const auto& item : fs::directory_iterator(base))
        Require(item.path().filename() == "ShipInstall",
                "a file was written outside the target:", Q(item.path()));

    if (result.ok)
        Require(result.failure == ReadFailure::None && result.check == PackageCheck::Passed &&
                    !record.Name.isEmpty() && !record.Author.isEmpty(),
                "a usable record without its identity");
    const QString target = QFileInfo(Q(base / "ShipInstall")).canonicalFilePath();
    QHash<QString, qint64> files;
    for (const std::optional<FileEntry>& entry : {record.SceneFile, record.CockpitFile})
        if (entry)
            Collect(files, target, *entry);
    for (const FileEntry& entry : record.Models + record.Files)
        Collect(files, target, entry);
    for (const FileEntry& entry : record.Scripts)
        Collect(files, target + "/Scripts", entry);
    for (auto it = files.cbegin(); it != files.cend(); ++it) {
        const QFileInfo info(it.key());
        Require(info.isFile() && info.canonicalFilePath().startsWith(target + "/"),
                "a file of the record is not in the target:", it.key());
        Require(it.value() < 0 || info.size() == it.value(),
                "a file has another size than its entry:", it.key());
    }
    if (!record.ScreenShot.isEmpty())
        Require(QFileInfo(target + "/ShipPics/" + record.ScreenShot).isFile(),
                "the picture is missing:", record.ScreenShot);
    return 0;
}
