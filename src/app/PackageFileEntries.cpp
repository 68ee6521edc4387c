#include "app/PackageFileEntries.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace {

QString LowerSuffix(const QString& name)
{
    return QFileInfo(name).suffix().toLower();
}

} // namespace

FileEntry EntryForFile(const QString& path, const QString& name)
{
    const QFileInfo info(path);
    FileEntry entry;
    entry.Time = uint32_t(std::max<qint64>(info.lastModified().toSecsSinceEpoch(), 0));
    entry.Size = uint32_t(info.size());
    entry.LocalPath = path;
    entry.Name = name;
    return entry;
}

QString ListEntryName(const QString& targetDir, const QString& path)
{
    QString name = targetDir + "/" + QFileInfo(path).fileName();
    while (name.contains("//"))
        name.replace("//", "/");
    while (name.startsWith('/'))
        name.remove(0, 1);
    return name;
}

QString SceneEntryName(const QString& sceneName, const QString& filePath)
{
    const QString scene = QString(sceneName).replace('\\', '/');
    const QString directory = QFileInfo(scene).path();
    QString name = (directory.isEmpty() || directory == ".") ? "objects/cut/" + scene : "objects/" + scene;
    const QString lower = name.toLower();
    if (!lower.endsWith(".pbd") && !lower.endsWith(".bod") && !lower.endsWith(".bob"))
        name += "." + QFileInfo(filePath).suffix();
    return name;
}

std::optional<FileEntry> SceneEntry(const QString& sceneName, const QString& fileField,
                                    const QString& workDir)
{
    if (sceneName.isEmpty() || fileField.isEmpty())
        return std::nullopt;
    // A scene file field may hold a dropped path with its backslashes escaped.
    const QString path = ResolvePackagePath(fileField, workDir).replace("%5c", "/");
    if (!IsReadableFile(path))
        return std::nullopt;
    return EntryForFile(path, SceneEntryName(sceneName, path));
}

QString EntryStem(const QString& name)
{
    const QFileInfo info(name);
    return info.path() + "/" + info.completeBaseName();
}

void AddModelOnce(QList<FileEntry>& models, const FileEntry& model)
{
    const QString stem = EntryStem(model.Name);
    for (FileEntry& present : models) {
        if (EntryStem(present.Name) != stem)
            continue;
        if (LowerSuffix(present.Name) == "bod" && LowerSuffix(model.Name) == "bob")
            present = model;
        return;
    }
    models.append(model);
}

bool IsReadableFile(const QString& path)
{
    QFile file(path);
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly);
}
