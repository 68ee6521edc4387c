// The commands on ship packages (xsp-*): a package's record as JSON, and a
// package written from a JSON manifest through the same writer and file
// preparation as the main window, for scripted builds of a mod.
//
// Manifest keys (all optional but Name, Author and Data):
//   Name, Author, Version, ID, Data, Web, Mirror1, Mirror2, Comment (line
//   breaks allowed), ScreenShot (a path on disk), LanguageText, ExistingShip,
//   OriginalDesc, Shipyards (eight booleans: Argon, Boron, Paranid, Split,
//   Teladi, Pirates, Friendly, Xenon), Texts [{Language, Title, Description}],
//   Dummies [{Section, Data}], Components [{Section, Id, Data}], Cockpits
//   [line], SceneFile and CockpitFile ({Path, Name} or null), Models, Files
//   and Scripts [{Path, Name}]. A file's Time is its modification time unless
//   the object gives one. Relative paths are taken from the manifest's directory.
#include "Commands.h"

#include "deploy/ModelCompiler.h"
#include "package/PackageReader.h"
#include "package/PackageWriter.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cstdio>
#include <optional>

namespace {

const QStringList ManifestKeys = {"Name",         "Author",       "Version",      "ID",        "Data",
                                  "Web",          "Mirror1",      "Mirror2",      "Comment",   "ScreenShot",
                                  "LanguageText", "ExistingShip", "OriginalDesc", "Shipyards", "Texts",
                                  "Dummies",      "Components",   "Cockpits",     "SceneFile", "CockpitFile",
                                  "Models",       "Files",        "Scripts"};

QString Sha256Of(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(&file);
    return QString::fromLatin1(hash.result().toHex());
}

QJsonObject FileObject(const FileEntry& entry, const QString& directory)
{
    return QJsonObject{{"Name", entry.LocalPath},
                       {"Size", qint64(entry.Size)},
                       {"Time", qint64(entry.Time)},
                       {"Sha256", Sha256Of(directory + "/" + entry.LocalPath)}};
}

QJsonArray FileArray(const QList<FileEntry>& entries, const QString& directory)
{
    QJsonArray array;
    for (const FileEntry& entry : entries)
        array.append(FileObject(entry, directory));
    return array;
}

QJsonObject RecordToJson(const ShipPackage& record, const QString& directory)
{
    QJsonArray yards;
    for (bool yard : record.Shipyards)
        yards.append(yard);
    QJsonArray texts;
    for (const TextEntry& text : record.Texts)
        texts.append(QJsonObject{
            {"Language", text.Language}, {"Title", text.Title}, {"Description", text.Description}});
    QJsonArray dummies;
    for (const DummyEntry& dummy : record.Dummies)
        dummies.append(QJsonObject{{"Section", dummy.Section}, {"Data", dummy.Data}});
    QJsonArray components;
    for (const ComponentEntry& component : record.Components)
        components.append(
            QJsonObject{{"Section", component.Section}, {"Id", component.Id}, {"Data", component.Data}});

    const QString files = directory;
    const QJsonValue scene =
        record.SceneFile ? QJsonValue(FileObject(*record.SceneFile, files)) : QJsonValue();
    const QJsonValue cockpit =
        record.CockpitFile ? QJsonValue(FileObject(*record.CockpitFile, files)) : QJsonValue();
    return QJsonObject{{"Name", record.Name},
                       {"Author", record.Author},
                       {"Version", record.Version},
                       {"ID", record.ID},
                       {"Data", record.Data},
                       {"Web", record.Web},
                       {"Mirror1", record.Mirror1},
                       {"Mirror2", record.Mirror2},
                       {"Comment", CommentFromRecord(record.Comment)},
                       {"ScreenShot", record.ScreenShot},
                       {"LanguageText", record.LanguageText},
                       {"ExistingShip", record.ExistingShip},
                       {"OriginalDesc", record.OriginalDesc},
                       {"Shipyards", yards},
                       {"Texts", texts},
                       {"Dummies", dummies},
                       {"Components", components},
                       {"Cockpits", QJsonArray::fromStringList(record.Cockpits)},
                       {"SceneFile", scene},
                       {"CockpitFile", cockpit},
                       {"Models", FileArray(record.Models, files)},
                       {"Files", FileArray(record.Files, files)},
                       {"Scripts", FileArray(record.Scripts, directory + "/Scripts")}};
}

int XspDump(const Invocation& call)
{
    const QString& path = call.arguments[0];
    QTemporaryDir unpacked;
    if (!unpacked.isValid())
        return Fail(call, QStringLiteral("cannot make a temporary directory"));
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return Fail(call, QStringLiteral("%1: cannot open the file").arg(path));
    ShipPackage record;
    const PackageReadResult read = ReadPackage(file, unpacked.path(), record, "Scripts", false);
    if (!read.ok)
        return Fail(call, QStringLiteral("%1: %2").arg(path, PackageReadFailureText(read)));
    const QByteArray json =
        QJsonDocument(RecordToJson(record, unpacked.path())).toJson(QJsonDocument::Indented);
    std::fwrite(json.constData(), 1, size_t(json.size()), stdout);
    return ExitSuccess;
}

// Reads a manifest into a record; an error names the offending key.
class ManifestReader
{
public:
    explicit ManifestReader(const QString& manifestPath) : m_base(QFileInfo(manifestPath).absolutePath()) {}

    const QString& error() const { return m_error; }

    std::optional<ShipPackage> read(const QJsonObject& manifest)
    {
        for (auto it = manifest.begin(); it != manifest.end(); ++it)
            if (!ManifestKeys.contains(it.key()))
                return failed(QStringLiteral("unknown key '%1'").arg(it.key()));

        ShipPackage record;
        record.Name = text(manifest, "Name");
        record.Author = text(manifest, "Author");
        record.Version = text(manifest, "Version");
        record.ID = text(manifest, "ID");
        record.Data = text(manifest, "Data");
        record.Web = text(manifest, "Web");
        record.Mirror1 = text(manifest, "Mirror1");
        record.Mirror2 = text(manifest, "Mirror2");
        record.Comment = CommentToRecord(text(manifest, "Comment"));
        record.LanguageText = manifest.value("LanguageText").toBool();
        record.ExistingShip = manifest.value("ExistingShip").toBool();
        record.OriginalDesc = manifest.value("OriginalDesc").toInt();
        if (record.Name.isEmpty() || record.Author.isEmpty())
            return failed(QStringLiteral("Name and Author must not be empty"));
        if (manifest.contains("ScreenShot") && !text(manifest, "ScreenShot").isEmpty()) {
            record.ScreenShot = onDisk(text(manifest, "ScreenShot"));
            if (!QFileInfo(record.ScreenShot).isFile())
                return failed(QStringLiteral("ScreenShot: %1 does not exist").arg(record.ScreenShot));
        }

        const QJsonArray yards = manifest.value("Shipyards").toArray();
        if (yards.size() > ShipyardCount)
            return failed(QStringLiteral("Shipyards has more than eight flags"));
        for (int i = 0; i < yards.size(); ++i)
            record.Shipyards[i] = yards[i].toBool();

        for (const QJsonValue& value : manifest.value("Texts").toArray()) {
            const QJsonObject text = value.toObject();
            QString title = text.value("Title").toString();
            title.remove(':');
            record.Texts.append(
                TextEntry{text.value("Language").toInt(), title, text.value("Description").toString()});
        }
        for (const QJsonValue& value : manifest.value("Dummies").toArray()) {
            const QJsonObject dummy = value.toObject();
            record.Dummies.append(
                DummyEntry{dummy.value("Section").toString(), dummy.value("Data").toString()});
        }
        for (const QJsonValue& value : manifest.value("Components").toArray()) {
            const QJsonObject component = value.toObject();
            record.Components.append(ComponentEntry{component.value("Section").toString(),
                                                    component.value("Id").toString(),
                                                    component.value("Data").toString()});
        }
        for (const QJsonValue& value : manifest.value("Cockpits").toArray())
            record.Cockpits.append(value.toString());

        for (const char* key : {"SceneFile", "CockpitFile"}) {
            const QJsonValue value = manifest.value(key);
            if (value.isNull() || value.isUndefined())
                continue;
            std::optional<FileEntry> entry = fileEntry(key, value);
            if (!entry)
                return std::nullopt;
            (QLatin1String(key) == QLatin1String("SceneFile") ? record.SceneFile : record.CockpitFile) =
                entry;
        }
        if (!fileList("Models", manifest, record.Models) || !fileList("Files", manifest, record.Files) ||
            !fileList("Scripts", manifest, record.Scripts))
            return std::nullopt;
        return record;
    }

private:
    static QString text(const QJsonObject& object, const char* key) { return object.value(key).toString(); }

    QString onDisk(const QString& path) const { return QDir(m_base).absoluteFilePath(path); }

    std::nullopt_t failed(const QString& error)
    {
        m_error = error;
        return std::nullopt;
    }

    std::optional<FileEntry> fileEntry(const QString& key, const QJsonValue& value)
    {
        const QJsonObject object = value.toObject();
        const QString path = onDisk(object.value("Path").toString());
        const QFileInfo info(path);
        if (object.value("Path").toString().isEmpty() || !info.isFile())
            return failed(QStringLiteral("%1: no file at '%2'").arg(key, path));
        FileEntry entry;
        entry.LocalPath = path;
        entry.Name = object.value("Name").toString(info.fileName());
        if (!SafeRelativeName(entry.Name))
            return failed(
                QStringLiteral("%1: the name '%2' is absolute or leaves the package").arg(key, entry.Name));
        entry.Size = uint32_t(info.size());
        entry.Time = object.contains("Time")
                         ? uint32_t(object.value("Time").toInteger())
                         : uint32_t(std::max<qint64>(info.lastModified().toSecsSinceEpoch(), 0));
        return entry;
    }

    bool fileList(const char* key, const QJsonObject& manifest, QList<FileEntry>& list)
    {
        for (const QJsonValue& value : manifest.value(key).toArray()) {
            std::optional<FileEntry> entry = fileEntry(key, value);
            if (!entry)
                return false;
            list.append(*entry);
        }
        return true;
    }

    QString m_base;
    QString m_error;
};

int XspBuild(const Invocation& call)
{
    const QString& manifestPath = call.arguments[0];
    const QString& target = call.arguments[1];
    QFile manifestFile(manifestPath);
    if (!manifestFile.open(QIODevice::ReadOnly))
        return Fail(call, QStringLiteral("%1: cannot open the manifest").arg(manifestPath));
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(manifestFile.readAll(), &parseError);
    if (!document.isObject())
        return Fail(call,
                    QStringLiteral("%1: not a JSON object: %2").arg(manifestPath, parseError.errorString()));

    ManifestReader reader(manifestPath);
    const std::optional<ShipPackage> record = reader.read(document.object());
    if (!record)
        return Fail(call, QStringLiteral("%1: %2").arg(manifestPath, reader.error()));

    // Packed copies of models and the stream lie in a work directory of
    // their own, which goes away with the command.
    QTemporaryDir work;
    if (!work.isValid() || !QDir(work.path()).mkpath("temp"))
        return Fail(call, QStringLiteral("cannot make a temporary directory"));
    QFile stream(work.filePath("package.tMp"));
    if (!stream.open(QIODevice::WriteOnly))
        return Fail(call, QStringLiteral("cannot write the temporary stream %1").arg(stream.fileName()));

    PackageWriteHooks hooks;
    const QString programDir = work.path();
    hooks.prepare = [&](FileEntry& entry, bool compile) {
        return PrepareFile(entry, compile, programDir, QString());
    };
    switch (SavePackageFile(*record, stream, target, hooks)) {
    case PackageSaveResult::Saved:
        return ExitSuccess;
    case PackageSaveResult::StreamFailed:
        return Fail(call, QStringLiteral("writing the package stream failed"));
    case PackageSaveResult::CompressFailed:
        break;
    }
    return Fail(
        call,
        QStringLiteral("%1: cannot write the package; a file that stood there is unchanged").arg(target));
}

const SubCommand kPackageCommands[] = {
    {"xsp-dump",
     "PKG",
     "print a ship package's record as JSON, with the size, time and SHA-256 of each file",
     1,
     {},
     XspDump},
    {"xsp-build",
     "MANIFEST.json OUT.xsp",
     "write a ship package from a JSON manifest (the keys of xsp-dump; files as {Path, Name})",
     2,
     {},
     XspBuild},
};

} // namespace

std::span<const SubCommand> PackageCommands()
{
    return kPackageCommands;
}
