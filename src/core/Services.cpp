#include "core/Services.h"

#include "core/ProgramDir.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

void WriteDebugLog(const QString& message)
{
    const QString line =
        "[" + QDateTime::currentDateTime().toString("dd:MM:yy - hh:mm:ss") + "] " + message + "\r\n";
    QDir program(ProgramDir());
    if (!program.exists("log"))
        program.mkdir("log");
    QFile file(ProgramPath("/log/hullwright_debug.txt"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    QTextStream stream(&file);
    stream << line;
}

QString FormatMessage(const QString& text, const QString& first, const QString& second, const QString& third)
{
    QString result = text;
    result.replace("%1", first);
    result.replace("%2", second);
    result.replace("%3", third);
    return result;
}

void MakeDirPath(const QDir& base, const QString& path)
{
    if (base.exists(path))
        return;
    QDir walker(base);
    const QStringList parts = path.split('/', Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        if (!walker.exists(part))
            walker.mkdir(part);
        if (!walker.cd(part))
            return;
    }
}

namespace {

// One pass over a directory tree; true when `path` itself was removed.
bool RemoveWalk(const QString& path, bool removeFiles)
{
    QDir dir(path);
    if (!dir.exists())
        return false;
    bool allRemoved = true;
    const QStringList subdirs =
        dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    for (const QString& sub : subdirs) {
        if (!RemoveWalk(dir.filePath(sub), removeFiles))
            allRemoved = false;
    }
    if (!allRemoved)
        return false;

    const QStringList files = dir.entryList(QDir::Files | QDir::Hidden | QDir::System);
    if (!files.isEmpty()) {
        if (!removeFiles)
            return false;
        for (const QString& file : files)
            dir.remove(file);
    }
    const QString name = QFileInfo(path).fileName();
    QDir parent(path);
    parent.cdUp();
    return parent.rmdir(name.isEmpty() ? path : name);
}

} // namespace

void RemoveTree(const QString& path, bool removeFiles)
{
    RemoveWalk(path, removeFiles);
    if (removeFiles)
        RemoveWalk(path, removeFiles);
}
