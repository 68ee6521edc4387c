#include "app/GameDirSearch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

// The folder Steam gives the game below a library's steamapps/common.
const QString SteamGameFolder = QStringLiteral("steamapps/common/x3 - reunion");

// Steam keeps its main folder in one of these two places below the home
// directory (the first is usually a link to the second).
const QString SteamRoots[] = {QStringLiteral(".steam/steam"), QStringLiteral(".local/share/Steam")};

// Where the installers put the game inside a Wine prefix: Deep Silver's
// retail installer (whose folder has been seen with and without the blank)
// and Steam for Windows.
const QString WineInstallFolders[] = {
    QStringLiteral("Program Files/Deep Silver/X3 Reunion"),
    QStringLiteral("Program Files (x86)/Deep Silver/X3 Reunion"),
    QStringLiteral("Program Files/DeepSilver/X3 Reunion"),
    QStringLiteral("Program Files (x86)/DeepSilver/X3 Reunion"),
    QStringLiteral("Program Files (x86)/Steam/steamapps/common/x3 - reunion"),
    QStringLiteral("Program Files/Steam/steamapps/common/x3 - reunion"),
};

QString CleanDir(QString dir)
{
    dir.replace('\\', '/');
    dir = QDir::cleanPath(dir);
    return dir;
}

// Quoted strings and braces of a VDF text; anything else is skipped.
struct VdfToken
{
    enum Kind
    {
        String,
        Open,
        Close
    } kind;
    QString text;
};

QList<VdfToken> TokenizeVdf(const QByteArray& vdf)
{
    QList<VdfToken> tokens;
    const QString text = QString::fromUtf8(vdf);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == '{') {
            tokens.append(VdfToken{VdfToken::Open, {}});
        } else if (c == '}') {
            tokens.append(VdfToken{VdfToken::Close, {}});
        } else if (c == '/' && i + 1 < text.size() && text[i + 1] == '/') {
            while (i < text.size() && text[i] != '\n')
                ++i;
        } else if (c == '"') {
            QString value;
            for (++i; i < text.size() && text[i] != '"'; ++i) {
                if (text[i] == '\\' && i + 1 < text.size())
                    ++i;
                value += text[i];
            }
            tokens.append(VdfToken{VdfToken::String, value});
        }
    }
    return tokens;
}

bool IsNumber(const QString& text)
{
    bool ok = false;
    text.toULongLong(&ok);
    return ok;
}

// The key used to tell two spellings of one folder apart: the real path when
// it resolves, so that a link and its target count once.
QString IdentityOf(const QString& path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? path : canonical;
}

class CandidateList
{
public:
    void add(const QString& dir)
    {
        if (dir.isEmpty() || !QFileInfo(dir).isDir())
            return;
        const QString identity = IdentityOf(dir);
        if (m_seen.contains(identity))
            return;
        m_seen.append(identity);
        m_dirs.append(dir);
    }
    const QStringList& dirs() const { return m_dirs; }

private:
    QStringList m_dirs;
    QStringList m_seen;
};

QByteArray ReadSmallFile(const QString& path)
{
    // A library list is a few kilobytes; anything far larger is not one.
    constexpr qint64 kLimit = 4 * 1024 * 1024;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kLimit)
        return {};
    return file.readAll();
}

void AddSteamLibraries(const QString& home, CandidateList& candidates)
{
    for (const QString& rootName : SteamRoots) {
        const QString root = ResolveWithoutCase(home, rootName);
        if (root.isEmpty())
            continue;
        const QString vdf = ResolveWithoutCase(root, "steamapps/libraryfolders.vdf");
        if (vdf.isEmpty())
            continue;
        QStringList libraries = ParseSteamLibraryFolders(ReadSmallFile(vdf));
        libraries.append(root); // the main folder is a library of its own
        for (const QString& library : libraries)
            candidates.add(ResolveWithoutCase(CleanDir(library), SteamGameFolder));
    }
}

void AddWineFolders(const QString& home, CandidateList& candidates)
{
    const QString driveC = ResolveWithoutCase(home, ".wine/drive_c");
    if (driveC.isEmpty())
        return;
    for (const QString& folder : WineInstallFolders)
        candidates.add(ResolveWithoutCase(driveC, folder));
}

} // namespace

QString ResolveWithoutCase(const QString& base, const QString& relative)
{
    QString current = base;
    if (current.isEmpty() || !QFileInfo::exists(current))
        return {};
    const QStringList parts = relative.split('/', Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        const QString exact = current + '/' + part;
        if (QFileInfo::exists(exact)) {
            current = exact;
            continue;
        }
        const QStringList entries =
            QDir(current).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        auto match = std::find_if(entries.begin(), entries.end(), [&part](const QString& entry) {
            return entry.compare(part, Qt::CaseInsensitive) == 0;
        });
        if (match == entries.end())
            return {};
        current += '/' + *match;
    }
    return current;
}

bool HoldsGameExecutable(const QString& dir)
{
    if (dir.isEmpty() || !QFileInfo(dir).isDir())
        return false;
    const QString exe = ResolveWithoutCase(dir, GameDirProofFile);
    return !exe.isEmpty() && QFileInfo(exe).isFile();
}

QStringList ParseSteamLibraryFolders(const QByteArray& vdf)
{
    QStringList folders;
    const QList<VdfToken> tokens = TokenizeVdf(vdf);
    for (qsizetype i = 0; i + 1 < tokens.size(); ++i) {
        const VdfToken& key = tokens[i];
        const VdfToken& value = tokens[i + 1];
        if (key.kind != VdfToken::String || value.kind != VdfToken::String)
            continue;
        // A key followed by a string is a pair; step over its value.
        ++i;
        const bool isPathKey = key.text.compare("path", Qt::CaseInsensitive) == 0;
        const bool isOldLayoutEntry = IsNumber(key.text) && value.text.startsWith('/');
        if ((isPathKey || isOldLayoutEntry) && !value.text.isEmpty())
            folders.append(value.text);
    }
    return folders;
}

QStringList GameDirCandidates(const QString& home, const QString& envValue)
{
    CandidateList candidates;
    if (!envValue.trimmed().isEmpty())
        candidates.add(QFileInfo(CleanDir(envValue.trimmed())).absoluteFilePath());
    if (!home.isEmpty()) {
        AddSteamLibraries(home, candidates);
        AddWineFolders(home, candidates);
    }
    return candidates.dirs();
}

QString FindGameDirWithoutRegistry(const QString& home, const QString& envValue)
{
    const QStringList candidates = GameDirCandidates(home, envValue);
    for (const QString& dir : candidates)
        if (HoldsGameExecutable(dir))
            return dir;
    return {};
}
