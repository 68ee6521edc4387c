// Fuzz harness of config.dat: an input is read as the settings file, written
// back over itself (which keeps the lines of other programs) and read again.
// The second reading must give the same settings, and writing those once
// more must give the same bytes: a save never changes what the user set.
#include "FuzzSupport.h"
#include "core/AppSettings.h"

#include <QFile>
#include <QString>

namespace {

constexpr const char* kHarness = "fuzz_config";

bool AnyDirHoldsGame(const QString&)
{
    return true;
}

QByteArray ReadAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const fuzz::ScratchDirectory directory("hw-fuzz-config");
    const std::filesystem::path file = directory.path() / "config.dat";
    const QString path = QString::fromStdString(file.string());
    fuzz::WriteBytes(file, data, size);

    const AppSettings first = ReadSettingsFile(path, AnyDirHoldsGame);
    fuzz::Require(!first.Language.isEmpty(), kHarness, "the language is empty");
    fuzz::Require(WriteSettingsFile(first, path), kHarness, "the settings could not be written");
    const QByteArray written = ReadAll(path);
    const AppSettings second = ReadSettingsFile(path, AnyDirHoldsGame);
    fuzz::Require(second == first, kHarness, "a written file reads back different settings");
    fuzz::Require(WriteSettingsFile(second, path), kHarness, "the settings could not be written again");
    fuzz::Require(ReadAll(path) == written, kHarness, "writing the same settings twice gives different bytes");
    return 0;
}
