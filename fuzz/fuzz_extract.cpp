// Fuzz harness of the extraction: arbitrary bytes as a package file,
// extracted into a target inside a scratch directory. Whatever the bytes,
// nothing may appear outside the target or in it beyond what is reported,
// and a package that was not read whole leaves the target empty.
#include "deploy/Extraction.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

void Require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "fuzz_extract: %s\n", what);
        std::abort();
    }
}

QStringList EntriesBelow(const QString& root)
{
    QStringList entries;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        entries.append(QDir(root).relativeFilePath(it.next()));
    return entries;
}

// Whether a component of `path` is longer than a file name may be (255 bytes
// in the file system's encoding).
bool HasOverlongComponent(const QString& path)
{
    const QStringList components = path.split('/');
    return std::any_of(components.begin(), components.end(),
                       [](const QString& component) { return QFile::encodeName(component).size() > 255; });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    QTemporaryDir scratch;
    Require(scratch.isValid(), "no scratch directory");
    QFile package(scratch.filePath("input.xsp"));
    Require(package.open(QIODevice::WriteOnly) &&
                package.write(reinterpret_cast<const char*>(bytes), qint64(size)) == qint64(size),
            "cannot write the input");
    package.close();
    const QString target = scratch.filePath("target");
    Require(QDir().mkpath(target), "cannot make the target");

    const ExtractionResult result = ExtractPackage(package.fileName(), target, false);
    // A fresh target takes every file, save one whose name the file system
    // cannot hold: that must come back as a write failure naming it.
    Require(result.status == ExtractionStatus::Extracted || result.status == ExtractionStatus::ReadFailed ||
                (result.status == ExtractionStatus::WriteFailed && HasOverlongComponent(result.entry)),
            "a fresh target refused a write");
    if (result.status == ExtractionStatus::WriteFailed)
        Require(EntriesBelow(target).isEmpty(), "a refused file left the target changed");
    Require(EntriesBelow(scratch.path()).filter(QRegularExpression("^(?!target(/|$))")) ==
                QStringList{"input.xsp"},
            "something was written outside the target");
    // Every entry of the target is a file the extraction reports, or a
    // directory on the way to one: no work directory stays behind.
    const QStringList inTarget = EntriesBelow(target);
    for (const QString& entry : inTarget) {
        const bool reported = result.written.contains(entry) ||
                              std::any_of(result.written.begin(), result.written.end(),
                                          [&](const QString& file) { return file.startsWith(entry + "/"); });
        Require(reported, "the target holds an entry the extraction did not report");
    }
    if (result.status == ExtractionStatus::ReadFailed)
        Require(inTarget.isEmpty(), "a package that failed left files in the target");
    else if (result.status == ExtractionStatus::Extracted)
        Require(QFile::exists(target + "/types/TShips.txt"), "an extraction wrote no ship table");
    return 0;
}
