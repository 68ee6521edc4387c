#include "deploy/InstallJournal.h"

#include "catfs/CatDriver.h"
#include "catfs/transfer/GameFile.h"
#include "package/InstalledShips.h"
#include "package/PackageReader.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>

#include <algorithm>
#include <optional>

namespace {

const QString JournalName = QStringLiteral("journal.json");
const QString StagedRegistry = QStringLiteral("ships.dat");
const QString JournalFormat = QStringLiteral("hullwright-install");
constexpr int JournalVersion = 1;
constexpr qint64 CopyPiece = 1 << 20;

struct KindName
{
    InstallStep::Kind kind;
    const char* name;
};
const KindName KindNames[] = {{InstallStep::Kind::PutEntry, "put-entry"},
                              {InstallStep::Kind::PutFile, "put-file"},
                              {InstallStep::Kind::Registry, "registry"},
                              {InstallStep::Kind::RemoveEntry, "remove-entry"},
                              {InstallStep::Kind::RemoveFile, "remove-file"}};

QString PendingDir(const QString& gameDir)
{
    return QDir(gameDir).filePath(QLatin1String(PendingInstallDir));
}

// Copies `source` to `target` as a whole: written beside, forced to disk and
// renamed into place. The number of bytes copied, or nothing on failure.
std::optional<qint64> CopyWhole(const QString& source, const QString& target)
{
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly))
        return std::nullopt;
    if (!QDir().mkpath(QFileInfo(target).absolutePath()))
        return std::nullopt;
    QSaveFile out(target);
    if (!out.open(QIODevice::WriteOnly))
        return std::nullopt;
    qint64 copied = 0;
    QByteArray piece;
    while (!(piece = in.read(CopyPiece)).isEmpty()) {
        if (out.write(piece) != piece.size())
            return std::nullopt; // the unfinished QSaveFile leaves the target as it was
        copied += piece.size();
    }
    if (in.error() != QFileDevice::NoError || !out.commit())
        return std::nullopt;
    return copied;
}

bool WriteWhole(const QString& target, const QByteArray& bytes)
{
    QSaveFile out(target);
    return out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size() && out.commit();
}

QJsonObject StepToJson(const InstallStep& step)
{
    QJsonObject object;
    for (const KindName& entry : KindNames)
        if (entry.kind == step.kind)
            object.insert("do", QLatin1String(entry.name));
    if (!step.staged.isEmpty())
        object.insert("staged", step.staged);
    if (!step.target.isEmpty())
        object.insert("target", step.target);
    if (step.kind == InstallStep::Kind::PutEntry)
        object.insert("packed", step.packed);
    return object;
}

// A step read back from a journal, checked: a staged name must be one of this
// code's own, and a target must stay inside the game directory or catalog.
std::optional<InstallStep> StepFromJson(const QJsonObject& object)
{
    static const QRegularExpression stagedName(QStringLiteral("^(file-[0-9]+|ships\\.dat)$"));
    InstallStep step;
    const QString kind = object.value("do").toString();
    const auto found = std::find_if(std::begin(KindNames), std::end(KindNames),
                                    [&](const KindName& entry) { return kind == QLatin1String(entry.name); });
    if (found == std::end(KindNames))
        return std::nullopt;
    step.kind = found->kind;
    step.staged = object.value("staged").toString();
    step.target = object.value("target").toString();
    step.packed = object.value("packed").toBool();
    const bool staging = step.kind == InstallStep::Kind::PutEntry ||
                         step.kind == InstallStep::Kind::PutFile || step.kind == InstallStep::Kind::Registry;
    if (staging && !stagedName.match(step.staged).hasMatch())
        return std::nullopt;
    if (step.kind != InstallStep::Kind::Registry && !SafeRelativeName(step.target))
        return std::nullopt;
    return step;
}

QByteArray JournalBytes(const QList<InstallStep>& steps)
{
    QJsonArray array;
    for (const InstallStep& step : steps)
        array.append(StepToJson(step));
    const QJsonObject journal{{"format", JournalFormat}, {"version", JournalVersion}, {"steps", array}};
    return QJsonDocument(journal).toJson(QJsonDocument::Indented);
}

std::optional<QList<InstallStep>> ReadJournal(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QJsonObject journal = QJsonDocument::fromJson(file.readAll()).object();
    if (journal.value("format").toString() != JournalFormat ||
        journal.value("version").toInt() != JournalVersion)
        return std::nullopt;
    QList<InstallStep> steps;
    for (const QJsonValue& value : journal.value("steps").toArray()) {
        const std::optional<InstallStep> step = StepFromJson(value.toObject());
        if (!step)
            return std::nullopt;
        steps.append(*step);
    }
    return steps;
}

// The catalog path of an entry of the mod catalog.
QString EntryPath(const QString& gameDir, const QString& name)
{
    return ModCatalogPath(gameDir) + "::" + name;
}

// The transfer layer adds entries, not catalogs: the mod catalog is made here
// when a ship's file first goes into it. True when it exists and can be held.
bool OpenModCatalog(const QString& gameDir, bool create)
{
    if (create && !QDir(gameDir).mkpath(QStringLiteral("mods")))
        return false;
    const QByteArray path = QString(ModCatalogPath(gameDir)).replace('/', '\\').toLocal8Bit();
    CatArchiveHandle* archive = CatOpenArchive(path.constData(), create ? 1 : 0);
    return archive && CatCloseArchive(archive);
}

bool ApplyStep(const QString& gameDir, const QString& dir, const InstallStep& step, QString& error)
{
    const QString staged = QDir(dir).filePath(step.staged);
    switch (step.kind) {
    case InstallStep::Kind::PutEntry: {
        QFile source(staged);
        if (!OpenModCatalog(gameDir, true) ||
            !GameFileCopyIn(source, EntryPath(gameDir, step.target), step.packed)) {
            error = QStringLiteral("cannot write %1 into %2").arg(step.target, ModCatalogPath(gameDir));
            return false;
        }
        return true;
    }
    case InstallStep::Kind::PutFile:
    case InstallStep::Kind::Registry: {
        const QString target = QDir(gameDir).filePath(
            step.kind == InstallStep::Kind::Registry ? QLatin1String(InstalledShipsPath) : step.target);
        if (!CopyWhole(staged, target)) {
            error = QStringLiteral("cannot write %1").arg(target);
            return false;
        }
        return true;
    }
    case InstallStep::Kind::RemoveEntry:
        // An entry that is not there any more is what this step wants.
        if (QFile::exists(ModCatalogPath(gameDir)))
            GameFileRemove(EntryPath(gameDir, step.target));
        return true;
    case InstallStep::Kind::RemoveFile: {
        QFile file(QDir(gameDir).filePath(step.target));
        if (file.exists() && !file.remove()) {
            error = QStringLiteral("cannot remove %1").arg(file.fileName());
            return false;
        }
        return true;
    }
    }
    return false;
}

// Applies every step, then drops the journal and the staging directory.
bool ApplyAll(const QString& gameDir, const QList<InstallStep>& steps, QString& error)
{
    const QString dir = PendingDir(gameDir);
    for (const InstallStep& step : steps)
        if (!ApplyStep(gameDir, dir, step, error))
            return false;
    // Without its journal the directory holds only leftovers, which the next
    // start would discard; so the journal goes first.
    if (!QFile::remove(QDir(dir).filePath(JournalName))) {
        error = QStringLiteral("cannot remove %1").arg(QDir(dir).filePath(JournalName));
        return false;
    }
    QDir(dir).removeRecursively();
    return true;
}

// Puts before the registry, the registry before removals; each group in the
// order it was given.
int Phase(InstallStep::Kind kind)
{
    switch (kind) {
    case InstallStep::Kind::PutEntry:
    case InstallStep::Kind::PutFile:
        return 0;
    case InstallStep::Kind::Registry:
        return 1;
    case InstallStep::Kind::RemoveEntry:
    case InstallStep::Kind::RemoveFile:
        return 2;
    }
    return 2;
}

} // namespace

QString ModCatalogPath(const QString& gameDir)
{
    return QDir(gameDir).filePath(QStringLiteral("mods/Hullwright.cat"));
}

InstallTransaction::InstallTransaction(const QString& gameDir)
    : m_gameDir(gameDir), m_dir(PendingDir(gameDir))
{
}

InstallTransaction::~InstallTransaction()
{
    if (m_begun && !m_decided)
        QDir(m_dir).removeRecursively();
}

bool InstallTransaction::fail(const QString& error)
{
    m_broken = true;
    m_error = error;
    return false;
}

bool InstallTransaction::begin()
{
    if (m_begun)
        return !m_broken;
    m_begun = true;
    // A change that an earlier run left is finished or dropped first, so that
    // its staged copies never mix with these.
    QString error;
    if (FinishPendingInstall(m_gameDir, &error) == InstallOutcome::Unfinished)
        return fail(QStringLiteral("an earlier save could not be completed: %1").arg(error));
    if (!QDir().mkpath(m_dir))
        return fail(QStringLiteral("cannot make %1").arg(m_dir));
    return true;
}

bool InstallTransaction::stage(const QString& source, const QString& name, qint64* bytes)
{
    if (!begin())
        return false;
    const std::optional<qint64> copied = CopyWhole(source, QDir(m_dir).filePath(name));
    if (!copied)
        return fail(QStringLiteral("cannot copy %1 into %2").arg(source, m_dir));
    if (bytes)
        *bytes = *copied;
    return true;
}

bool InstallTransaction::putEntry(const QString& source, const QString& entryName, bool packed, qint64* bytes)
{
    const QString name = QStringLiteral("file-%1").arg(m_staged++);
    if (!stage(source, name, bytes))
        return false;
    m_steps.append({InstallStep::Kind::PutEntry, name, entryName, packed});
    return true;
}

bool InstallTransaction::putFile(const QString& source, const QString& relativePath, qint64* bytes)
{
    const QString name = QStringLiteral("file-%1").arg(m_staged++);
    if (!stage(source, name, bytes))
        return false;
    m_steps.append({InstallStep::Kind::PutFile, name, relativePath, false});
    return true;
}

bool InstallTransaction::putRegistry(const QByteArray& registry)
{
    if (!begin())
        return false;
    if (!WriteWhole(QDir(m_dir).filePath(StagedRegistry), registry))
        return fail(QStringLiteral("cannot write %1").arg(QDir(m_dir).filePath(StagedRegistry)));
    m_steps.append({InstallStep::Kind::Registry, StagedRegistry, QString(), false});
    return true;
}

void InstallTransaction::removeEntry(const QString& entryName)
{
    m_steps.append({InstallStep::Kind::RemoveEntry, QString(), entryName, false});
}

void InstallTransaction::removeFile(const QString& relativePath)
{
    m_steps.append({InstallStep::Kind::RemoveFile, QString(), relativePath, false});
}

InstallOutcome InstallTransaction::commit()
{
    if (!begin() || m_broken)
        return InstallOutcome::NotStarted;
    std::stable_sort(m_steps.begin(), m_steps.end(), [](const InstallStep& a, const InstallStep& b) {
        return Phase(a.kind) < Phase(b.kind);
    });
    // A catalog that another program holds would stop the change half-way:
    // find that out while nothing is decided.
    const bool touchesCatalog = std::any_of(m_steps.begin(), m_steps.end(), [](const InstallStep& step) {
        return step.kind == InstallStep::Kind::PutEntry || step.kind == InstallStep::Kind::RemoveEntry;
    });
    if (touchesCatalog && QFile::exists(ModCatalogPath(m_gameDir)) && !OpenModCatalog(m_gameDir, false)) {
        m_error = QStringLiteral("cannot open %1: %2")
                      .arg(ModCatalogPath(m_gameDir), QString::fromLatin1(CatErrorText(CatLastError())));
        return InstallOutcome::NotStarted;
    }
    if (!WriteWhole(QDir(m_dir).filePath(JournalName), JournalBytes(m_steps))) {
        m_error = QStringLiteral("cannot write %1").arg(QDir(m_dir).filePath(JournalName));
        return InstallOutcome::NotStarted;
    }
    m_decided = true;
    return ApplyAll(m_gameDir, m_steps, m_error) ? InstallOutcome::Done : InstallOutcome::Unfinished;
}

InstallOutcome FinishPendingInstall(const QString& gameDir, QString* error)
{
    const QString dir = PendingDir(gameDir);
    if (!QFileInfo(dir).isDir())
        return InstallOutcome::NothingPending;
    const std::optional<QList<InstallStep>> steps = ReadJournal(QDir(dir).filePath(JournalName));
    if (!steps) {
        // No journal (or none this code wrote): the change was never decided.
        QDir(dir).removeRecursively();
        return InstallOutcome::Discarded;
    }
    QString reason;
    if (ApplyAll(gameDir, *steps, reason))
        return InstallOutcome::Done;
    if (error)
        *error = reason;
    return InstallOutcome::Unfinished;
}
