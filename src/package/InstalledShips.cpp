#include "package/InstalledShips.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>

#include <limits>
#include <optional>
#include <tuple>

namespace {

const QString ShipOpen = QStringLiteral("<ship>");
const QString ShipClose = QStringLiteral("</ship>");

// The yard words in the order of the record's flags.
const char* const YardWords[ShipyardCount] = {"Argon",  "Boron",   "Paranid",  "Split",
                                              "Teladi", "Pirates", "Friendly", "Xenon"};

// Keys of a block that may stand only once in it.
const QStringList SingleKeys = {
    "Name:",    "Author:",     "Version:", "ID:",           "Data:",       "Web:",       "Mirror1:",
    "Mirror2:", "ScreenShot:", "Comment:", "OriginalDesc:", "FileSystem:", "SceneFile:", "CockpitFile:"};

auto RecordFields(const ShipPackage& r)
{
    return std::tie(r.Name, r.Author, r.Version, r.ID, r.Data, r.Web, r.Mirror1, r.Mirror2, r.Texts,
                    r.SceneFile, r.CockpitFile, r.Models, r.Files, r.Dummies, r.Components, r.Scripts,
                    r.Cockpits, r.Comment, r.ScreenShot, r.LanguageText, r.Enabled, r.GlobalEnabled,
                    r.Shipyards, r.NotChecked, r.SaveWeb, r.ExistingShip, r.Deleted, r.OriginalDesc,
                    r.FileSystem);
}

std::optional<int32_t> ToInt32(const QString& text)
{
    bool ok = false;
    const int value = text.toInt(&ok);
    return ok ? std::optional<int32_t>(value) : std::nullopt;
}

std::optional<uint32_t> ToUInt32(const QString& text)
{
    bool ok = false;
    const uint value = text.toUInt(&ok);
    return ok ? std::optional<uint32_t>(value) : std::nullopt;
}

// "size time path": the path is all behind the second blank.
std::optional<FileEntry> ParseFileLine(const QString& value)
{
    const qsizetype first = value.indexOf(' ');
    const qsizetype second = first < 0 ? -1 : value.indexOf(' ', first + 1);
    if (second < 0)
        return std::nullopt;
    const std::optional<uint32_t> size = ToUInt32(value.left(first));
    const std::optional<uint32_t> time = ToUInt32(value.mid(first + 1, second - first - 1));
    FileEntry entry;
    entry.LocalPath = value.mid(second + 1);
    if (!size || !time || entry.LocalPath.isEmpty())
        return std::nullopt;
    entry.Size = *size;
    entry.Time = *time;
    return entry;
}

ShipLineRead ReadFileLine(const QString& key, const QString& value, ShipPackage& record)
{
    const std::optional<FileEntry> entry = ParseFileLine(value);
    if (!entry)
        return ShipLineRead::Malformed;
    if (key == QLatin1String("SceneFile:"))
        record.SceneFile = entry;
    else if (key == QLatin1String("CockpitFile:"))
        record.CockpitFile = entry;
    else if (key == QLatin1String("Model:"))
        record.Models.append(*entry);
    else if (key == QLatin1String("Files:"))
        record.Files.append(*entry);
    else
        record.Scripts.append(*entry);
    return ShipLineRead::Taken;
}

ShipLineRead SetFlag(bool& flag, bool value, const QString& rest)
{
    flag = value;
    return rest.isEmpty() ? ShipLineRead::Taken : ShipLineRead::Malformed;
}

QString* TextField(ShipPackage& record, const QString& key)
{
    static const QHash<QString, QString ShipPackage::*> fields = {{"Name:", &ShipPackage::Name},
                                                                  {"Author:", &ShipPackage::Author},
                                                                  {"Version:", &ShipPackage::Version},
                                                                  {"ID:", &ShipPackage::ID},
                                                                  {"Data:", &ShipPackage::Data},
                                                                  {"Web:", &ShipPackage::Web},
                                                                  {"Mirror1:", &ShipPackage::Mirror1},
                                                                  {"Mirror2:", &ShipPackage::Mirror2},
                                                                  {"ScreenShot:", &ShipPackage::ScreenShot}};
    const auto it = fields.constFind(key);
    return it == fields.constEnd() ? nullptr : &(record.*(it.value()));
}

// Reads the lines of a registry. There is a current block, none at the start;
// each line is handled by the first rule that fits (see the header).
class RegistryParser
{
public:
    InstalledShipsRead run(const QByteArray& bytes)
    {
        m_result.Exists = true;
        m_result.Digest = InstalledShipsDigest(bytes);
        if (bytes.size() > InstalledShipsLargestFile) {
            problem(0, QStringLiteral("the file is larger than %1 MiB").arg(InstalledShipsLargestFile >> 20));
            return m_result;
        }
        qsizetype start = 0;
        while (start < bytes.size()) {
            qsizetype end = bytes.indexOf('\n', start);
            if (end < 0)
                end = bytes.size();
            QByteArray line = bytes.mid(start, end - start);
            if (line.endsWith('\r'))
                line.chop(1);
            ++m_line;
            takeLine(line);
            start = end + 1;
        }
        if (m_current)
            problem(m_blockLine, QStringLiteral("the block begun here has no %1").arg(ShipClose));
        return m_result;
    }

private:
    void problem(int line, const QString& what) { m_result.Problems.append({line, what}); }

    void takeLine(const QByteArray& bytes)
    {
        if (bytes.contains('\0')) {
            problem(m_line, QStringLiteral("holds a zero byte"));
            return;
        }
        if (bytes.endsWith('\r')) { // the writer's line end would lose it
            problem(m_line, QStringLiteral("ends in a carriage return"));
            return;
        }
        const QString line = QString::fromLocal8Bit(bytes);
        if (line.toLocal8Bit() != bytes) {
            problem(m_line, QStringLiteral("is not text in the system's encoding"));
            return;
        }
        const qsizetype blank = line.indexOf(' ');
        const QString key = blank < 0 ? line : line.left(blank);
        const QString value = blank < 0 ? QString() : line.mid(blank + 1);
        InstalledShips& registry = m_result.Registry;

        if (key == ShipOpen) {
            if (m_current)
                problem(m_blockLine, QStringLiteral("the block begun here has no %1").arg(ShipClose));
            m_current = InstalledShip{};
            m_current->Record.Enabled = true;
            m_current->Record.GlobalEnabled = true;
            m_blockLine = m_line;
            m_seen.clear();
        } else if (key == QLatin1String("Mod:")) {
            headText(key, value, registry.ModName);
        } else if (key == QLatin1String("BaseFakePatch:")) {
            headNumber(key, value, registry.FakePatch);
        } else if (key == QLatin1String("Buffer:")) {
            headNumber(key, value, registry.Buffer);
        } else if (key == QLatin1String("UpdateTime:")) {
            headNumber(key, value, registry.UpdateTime);
        } else if (key == QLatin1String("Deleted:")) {
            const std::optional<int32_t> deleted = ToInt32(value);
            if (!deleted || *deleted == 0) {
                problem(m_line, QStringLiteral("Deleted: needs a number other than 0"));
                return;
            }
            InstalledShip tombstone;
            tombstone.Record.Deleted = *deleted;
            registry.Ships.append(tombstone);
        } else if (!m_current) {
            if (key == ShipClose)
                problem(m_line, QStringLiteral("%1 without a block").arg(ShipClose));
            else if (!line.isEmpty())
                registry.OtherLines.append(line);
        } else if (key == ShipClose) {
            registry.Ships.append(*m_current);
            m_current.reset();
        } else {
            takeBlockLine(line, key, value);
        }
    }

    void takeBlockLine(const QString& line, const QString& key, const QString& value)
    {
        if (SingleKeys.contains(key)) {
            if (m_seen.contains(key)) {
                problem(
                    m_line,
                    QStringLiteral("a second %1 in the block begun at line %2").arg(key).arg(m_blockLine));
                return;
            }
            m_seen.append(key);
        }
        switch (ReadShipLine(m_current->Record, key, value)) {
        case ShipLineRead::Taken:
            break;
        case ShipLineRead::Unknown:
            if (!line.isEmpty())
                m_current->OtherLines.append(line);
            break;
        case ShipLineRead::Malformed:
            problem(m_line, QStringLiteral("cannot read the value of %1").arg(key));
            break;
        }
    }

    bool firstHeadKey(const QString& key)
    {
        if (m_headSeen.contains(key)) {
            problem(m_line, QStringLiteral("a second %1").arg(key));
            return false;
        }
        m_headSeen.append(key);
        return true;
    }

    void headText(const QString& key, const QString& value, QString& field)
    {
        if (firstHeadKey(key))
            field = value;
    }

    template <typename Number> void headNumber(const QString& key, const QString& value, Number& field)
    {
        if (!firstHeadKey(key))
            return;
        bool ok = false;
        const qlonglong number = value.toLongLong(&ok);
        if (!ok || number < std::numeric_limits<Number>::min() ||
            number > std::numeric_limits<Number>::max()) {
            problem(m_line, QStringLiteral("cannot read the value of %1").arg(key));
            return;
        }
        field = Number(number);
    }

    InstalledShipsRead m_result;
    std::optional<InstalledShip> m_current;
    QStringList m_seen;     // single keys of the current block
    QStringList m_headSeen; // head keys of the file
    int m_line = 0;
    int m_blockLine = 0;
};

void AppendLine(QByteArray& out, const QString& line)
{
    out += line.toLocal8Bit();
    out += '\n';
}

QString FileLine(const char* key, const FileEntry& entry)
{
    return QLatin1String(key) + ' ' + QString::number(entry.Size) + ' ' + QString::number(entry.Time) + ' ' +
           entry.LocalPath;
}

void AppendBlock(QByteArray& out, const InstalledShip& ship)
{
    const ShipPackage& r = ship.Record;
    AppendLine(out, ShipOpen);
    AppendLine(out, "Name: " + r.Name);
    AppendLine(out, "Version: " + r.Version);
    AppendLine(out, "Author: " + r.Author);
    AppendLine(out, "ID: " + r.ID);
    AppendLine(out, "Data: " + r.Data);
    if (r.OriginalDesc != 0)
        AppendLine(out, "OriginalDesc: " + QString::number(r.OriginalDesc));
    if (!r.Comment.isEmpty())
        AppendLine(out, "Comment: " + QString(r.Comment).replace('\n', QLatin1String("<newline>")));
    if (!r.ScreenShot.isEmpty())
        AppendLine(out, "ScreenShot: " + r.ScreenShot);
    for (int yard = 0; yard < ShipyardCount; ++yard)
        if (r.Shipyards[yard])
            AppendLine(out, QLatin1String(YardWords[yard]));
    const std::pair<bool, const char*> flags[] = {{!r.Enabled, "Disabled"},
                                                  {!r.GlobalEnabled, "GlobalDisabled"},
                                                  {r.LanguageText, "LanguageText"},
                                                  {r.ExistingShip, "ExistingShip"},
                                                  {r.NotChecked, "NotChecked"}};
    for (const auto& [set, word] : flags)
        if (set)
            AppendLine(out, QLatin1String(word));
    const std::pair<const char*, const QString*> addresses[] = {
        {"Web: ", &r.Web}, {"Mirror1: ", &r.Mirror1}, {"Mirror2: ", &r.Mirror2}};
    for (const auto& [key, value] : addresses)
        if (!value->isEmpty())
            AppendLine(out, QLatin1String(key) + *value);
    for (const TextEntry& text : r.Texts)
        AppendLine(out,
                   "Text: " + QString::number(text.Language) + ':' + text.Title + ':' + text.Description);
    if (r.SceneFile)
        AppendLine(out, FileLine("SceneFile:", *r.SceneFile));
    if (r.CockpitFile)
        AppendLine(out, FileLine("CockpitFile:", *r.CockpitFile));
    for (const FileEntry& entry : r.Models)
        AppendLine(out, FileLine("Model:", entry));
    for (const FileEntry& entry : r.Files)
        AppendLine(out, FileLine("Files:", entry));
    for (const FileEntry& entry : r.Scripts)
        AppendLine(out, FileLine("Script:", entry));
    for (const DummyEntry& dummy : r.Dummies)
        AppendLine(out, "Dummy: " + dummy.Section + ":" + dummy.Data);
    for (const ComponentEntry& component : r.Components)
        AppendLine(out, "Component: " + component.Section + ";" + component.Id + ";" + component.Data);
    for (const QString& cockpit : r.Cockpits)
        AppendLine(out, "Cockpit: " + cockpit);
    AppendLine(out, "FileSystem: " + QString::number(r.FileSystem));
    for (const QString& line : ship.OtherLines)
        AppendLine(out, line);
    AppendLine(out, ShipClose);
}

} // namespace

bool InstalledShip::operator==(const InstalledShip& other) const
{
    return RecordFields(Record) == RecordFields(other.Record) && OtherLines == other.OtherLines;
}

QString InstalledShipsRead::ProblemText(int limit) const
{
    QStringList lines;
    for (const RegistryProblem& problem : Problems.mid(0, limit))
        lines.append(problem.Line > 0 ? QStringLiteral("line %1: %2").arg(problem.Line).arg(problem.What)
                                      : problem.What);
    if (Problems.size() > limit)
        lines.append(QStringLiteral("... and %1 more").arg(Problems.size() - limit));
    return lines.join('\n');
}

ShipLineRead ReadShipLine(ShipPackage& record, const QString& key, const QString& value)
{
    if (QString* field = TextField(record, key)) {
        *field = value;
        return ShipLineRead::Taken;
    }
    for (int yard = 0; yard < ShipyardCount; ++yard)
        if (key == QLatin1String(YardWords[yard]))
            return SetFlag(record.Shipyards[yard], true, value);
    if (key == QLatin1String("LanguageText"))
        return SetFlag(record.LanguageText, true, value);
    if (key == QLatin1String("ExistingShip"))
        return SetFlag(record.ExistingShip, true, value);
    if (key == QLatin1String("NotChecked"))
        return SetFlag(record.NotChecked, true, value);
    if (key == QLatin1String("Disabled"))
        return SetFlag(record.Enabled, false, value);
    if (key == QLatin1String("GlobalDisabled"))
        return SetFlag(record.GlobalEnabled, false, value);
    if (key == QLatin1String("FileSystem:") || key == QLatin1String("OriginalDesc:")) {
        const std::optional<int32_t> number = ToInt32(value);
        (key == QLatin1String("FileSystem:") ? record.FileSystem : record.OriginalDesc) = number.value_or(0);
        return number ? ShipLineRead::Taken : ShipLineRead::Malformed;
    }
    if (key == QLatin1String("Comment:")) {
        record.Comment = CommentFromRecord(value);
        return ShipLineRead::Taken;
    }
    if (key == QLatin1String("Text:")) {
        const std::optional<int32_t> language = ToInt32(value.section(':', 0, 0));
        record.Texts.append(TextEntry{language.value_or(0), value.section(':', 1, 1), value.section(':', 2)});
        return language ? ShipLineRead::Taken : ShipLineRead::Malformed;
    }
    if (key == QLatin1String("SceneFile:") || key == QLatin1String("CockpitFile:") ||
        key == QLatin1String("Model:") || key == QLatin1String("Files:") || key == QLatin1String("Script:"))
        return ReadFileLine(key, value, record);
    if (key == QLatin1String("Dummy:")) {
        record.Dummies.append(DummyEntry{value.section(':', 0, 0), value.section(':', 1)});
        return ShipLineRead::Taken;
    }
    if (key == QLatin1String("Component:")) {
        record.Components.append(
            ComponentEntry{value.section(';', 0, 0), value.section(';', 1, 1), value.section(';', 2)});
        return ShipLineRead::Taken;
    }
    if (key == QLatin1String("Cockpit:")) {
        record.Cockpits.append(value);
        return ShipLineRead::Taken;
    }
    return ShipLineRead::Unknown;
}

QByteArray InstalledShipsDigest(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

InstalledShipsRead ParseInstalledShips(const QByteArray& bytes)
{
    return RegistryParser().run(bytes);
}

InstalledShipsRead ReadInstalledShips(const QString& gameDir)
{
    QFile file(QDir(gameDir).filePath(QLatin1String(InstalledShipsPath)));
    if (!file.open(QIODevice::ReadOnly)) {
        InstalledShipsRead missing; // an empty registry, as the missing file's empty bytes give
        missing.Digest = InstalledShipsDigest(QByteArray());
        if (file.exists()) { // there, but not to be read: never to be replaced either
            missing.Exists = true;
            missing.Problems.append(
                {0, QStringLiteral("the file cannot be opened: %1").arg(file.errorString())});
        }
        return missing;
    }
    if (file.size() > InstalledShipsLargestFile) {
        InstalledShipsRead result;
        result.Exists = true;
        result.Problems.append(
            {0, QStringLiteral("the file is larger than %1 MiB").arg(InstalledShipsLargestFile >> 20)});
        return result;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        InstalledShipsRead result;
        result.Exists = true;
        result.Problems.append({0, QStringLiteral("the file could not be read: %1").arg(file.errorString())});
        return result;
    }
    return ParseInstalledShips(bytes);
}

QByteArray FormatInstalledShips(const InstalledShips& registry)
{
    QByteArray out;
    AppendLine(out, "Mod: " + registry.ModName);
    AppendLine(out, QStringLiteral("UpdateTime: %1").arg(registry.UpdateTime));
    AppendLine(out, QStringLiteral("BaseFakePatch: %1").arg(registry.FakePatch));
    if (registry.Buffer != 0 && registry.Buffer < 10000)
        AppendLine(out, QStringLiteral("Buffer: %1").arg(registry.Buffer));
    for (const QString& line : registry.OtherLines)
        AppendLine(out, line);
    for (const InstalledShip& ship : registry.Ships) {
        if (ship.Record.IsTombstone())
            AppendLine(out, QStringLiteral("Deleted: %1").arg(ship.Record.Deleted));
        else
            AppendBlock(out, ship);
    }
    return out;
}

bool WriteInstalledShips(const QString& gameDir, const InstalledShips& registry)
{
    if (gameDir.isEmpty() || !QDir(gameDir).mkpath(QStringLiteral("ShipInstall")))
        return false;
    QSaveFile file(QDir(gameDir).filePath(QLatin1String(InstalledShipsPath)));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray bytes = FormatInstalledShips(registry);
    if (file.write(bytes) != bytes.size())
        return false; // an unfinished QSaveFile leaves the old file as it was
    return file.commit();
}

QString ShipKeyFromEditTarget(const QString& editTarget)
{
    const qsizetype separator = std::max(editTarget.lastIndexOf('/'), editTarget.lastIndexOf('\\'));
    QString key = editTarget.mid(separator + 1);
    key.replace(QLatin1String("<bslash>"), QLatin1String("\\"));
    key.replace(QLatin1String("<fslash>"), QLatin1String("/"));
    return key;
}

QString GameDirFromEditTarget(const QString& editTarget)
{
    const qsizetype separator = std::max(editTarget.lastIndexOf('/'), editTarget.lastIndexOf('\\'));
    if (separator < 0)
        return QStringLiteral(".");
    if (separator == 0)
        return QStringLiteral("/");
    QString dir = editTarget.left(separator);
    dir.replace('\\', '/');
    return dir;
}

ShipKey SplitShipKey(const QString& key)
{
    const qsizetype tilde = key.indexOf('~');
    if (tilde < 0)
        return {key, QString()};
    return {key.left(tilde), key.mid(tilde + 1)};
}

qsizetype FindInstalledShip(const QList<InstalledShip>& ships, const ShipKey& key)
{
    for (qsizetype i = ships.size() - 1; i >= 0; --i) {
        const ShipPackage& record = ships[i].Record;
        if (!record.IsTombstone() && record.Author == key.Author && record.Name == key.Name)
            return i;
    }
    return -1;
}
