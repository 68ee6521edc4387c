#include "package/PackageWriter.h"

#include <QFile>
#include <QSaveFile>
#include <QFileInfo>

#include <vector>

namespace {

class StreamWriter
{
public:
    StreamWriter(QIODevice& out, const PackageWriteHooks& hooks) : m_out(out), m_hooks(hooks) {}

    bool ok() const { return m_ok; }

    void line(const QString& text)
    {
        const QByteArray bytes = text.toLocal8Bit() + '\n';
        if (m_ok && m_out.write(bytes) != bytes.size())
            m_ok = false;
    }

    void lineFeed()
    {
        if (m_ok && !m_out.putChar('\n'))
            m_ok = false;
    }

    void progress(int64_t done, int64_t total) const
    {
        if (m_hooks.progress)
            m_hooks.progress(done, total);
    }

    void adding(const QString& name) const
    {
        if (m_hooks.adding)
            m_hooks.adding(name);
    }

    // One file of the scene, model or other-files records: prepared as a
    // copy, left out when its bytes cannot be read.
    void fileRecord(const QString& key, const FileEntry& original, bool compile, bool lineFeedBehind)
    {
        if (!m_ok)
            return;
        progress(1, 100);
        FileEntry entry = original;
        const QString path = prepare(entry, compile);
        QFile source(path);
        if (source.open(QIODevice::ReadOnly)) {
            adding(entry.Name);
            const int64_t size = source.size();
            line(QStringLiteral("%1 %2 %3 %4").arg(key).arg(entry.Time).arg(size).arg(entry.Name));
            copy(source, true);
            if (lineFeedBehind)
                lineFeed();
            source.close();
        }
        if (entry.DeleteAfterWrite)
            QFile::remove(path);
    }

    void scriptRecord(const FileEntry& original)
    {
        if (!m_ok)
            return;
        FileEntry entry = original;
        const QString path = prepare(entry, false);
        QFile source(path);
        if (source.open(QIODevice::ReadOnly)) {
            const QString name = QFileInfo(path).fileName();
            line(QStringLiteral("Script: %1 %2 %3").arg(entry.Time).arg(source.size()).arg(name));
            copy(source, false);
            lineFeed();
        }
        if (entry.DeleteAfterWrite)
            QFile::remove(path);
    }

    void screenShot(const QString& picture)
    {
        if (!m_ok || picture.isEmpty())
            return;
        QFile source(ResolvePackagePath(picture, m_hooks.packageDir));
        if (!source.open(QIODevice::ReadOnly))
            return;
        const QFileInfo info(source.fileName());
        adding(info.fileName());
        line(QStringLiteral("ScreenShot: %1 %2").arg(source.size()).arg(info.suffix()));
        copy(source, true);
        lineFeed();
    }

private:
    QString prepare(FileEntry& entry, bool compile) const
    {
        if (m_hooks.prepare)
            return m_hooks.prepare(entry, compile);
        entry.LocalPath = ResolvePackagePath(entry.LocalPath, m_hooks.packageDir);
        return entry.LocalPath;
    }

    void copy(QIODevice& source, bool withProgress)
    {
        if (!m_ok)
            return;
        std::function<void(int64_t, int64_t)> report;
        if (withProgress)
            report = [this](int64_t done, int64_t total) { progress(done, total); };
        if (!CopyBlocks(source, m_out, PackageCopyBlockSize, report))
            m_ok = false;
    }

    QIODevice& m_out;
    const PackageWriteHooks& m_hooks;
    bool m_ok = true;
};

QString ShipyardDigits(const ShipPackage& record)
{
    QStringList digits;
    for (bool yard : record.Shipyards)
        digits.append(yard ? QStringLiteral("1") : QStringLiteral("0"));
    return digits.join(';');
}

} // namespace

bool CopyBlocks(QIODevice& source, QIODevice& target, int64_t blockSize,
                const std::function<void(int64_t done, int64_t total)>& progress)
{
    const int64_t size = source.size() - source.pos();
    std::vector<char> block(size_t(std::max<int64_t>(std::min(blockSize, size), 1)));
    int64_t remaining = size;
    while (remaining > 0) {
        const int64_t wanted = std::min<int64_t>(remaining, int64_t(block.size()));
        const int64_t got = source.read(block.data(), wanted);
        if (got != wanted)
            return false; // a short read would leave the block shorter than its line says
        if (target.write(block.data(), got) != got)
            return false;
        remaining -= got;
        if (progress)
            progress(size - remaining, size);
    }
    return true;
}

bool WritePackageStream(const ShipPackage& record, QIODevice& out, const PackageWriteHooks& hooks)
{
    StreamWriter writer(out, hooks);
    writer.line(QStringLiteral("Packager: 1"));
    writer.line("Name: " + record.Name);
    writer.line("Author: " + record.Author);
    writer.line("ID: " + record.ID);
    writer.line("Data: " + record.Data);
    if (!record.Web.isEmpty())
        writer.line("Web: " + record.Web);
    if (!record.Mirror1.isEmpty())
        writer.line("Mirror1: " + record.Mirror1);
    if (!record.Mirror2.isEmpty())
        writer.line("Mirror2: " + record.Mirror2);
    writer.line("Shipyard: " + ShipyardDigits(record));
    if (record.LanguageText)
        writer.line(QStringLiteral("LanguageText"));
    if (record.ExistingShip)
        writer.line(QStringLiteral("ExistingShip"));
    if (record.OriginalDesc != 0)
        writer.line(QStringLiteral("OriginalDesc: %1").arg(record.OriginalDesc));
    writer.line("Version: " + (record.Version.isEmpty() ? QStringLiteral("0") : record.Version));
    if (!record.Comment.isEmpty())
        writer.line("Comment: " + record.Comment);

    writer.screenShot(record.ScreenShot);
    writer.adding(QString());
    for (const TextEntry& text : record.Texts)
        writer.line(QStringLiteral("Text: %1:%2:%3").arg(text.Language).arg(text.Title, text.Description));

    if (record.SceneFile) {
        writer.fileRecord(QStringLiteral("SceneFile:"), *record.SceneFile, false, false);
        writer.adding(QString());
    }
    if (record.CockpitFile) {
        writer.fileRecord(QStringLiteral("CockpitFile:"), *record.CockpitFile, false, false);
        writer.adding(QString());
    }
    for (const FileEntry& model : record.Models)
        writer.fileRecord(QStringLiteral("Model:"), model, hooks.compileModels, true);
    writer.adding(QString());
    for (const FileEntry& file : record.Files)
        writer.fileRecord(QStringLiteral("Files:"), file, hooks.compileModels, true);
    writer.adding(QString());

    for (const DummyEntry& dummy : record.Dummies)
        writer.line("Dummy: " + dummy.Section + ";" + dummy.Data);
    for (const ComponentEntry& component : record.Components)
        writer.line("Component: " + component.Section + ";" + component.Id + ";" + component.Data);
    for (const QString& cockpit : record.Cockpits)
        writer.line("Cockpit: " + cockpit);
    for (const FileEntry& script : record.Scripts)
        writer.scriptRecord(script);
    writer.adding(QString());
    return writer.ok();
}

PackageSaveResult SavePackageFile(const ShipPackage& record, QFile& stream, const QString& targetPath,
                                  const PackageWriteHooks& hooks)
{
    const QString streamPath = stream.fileName();
    const bool written = WritePackageStream(record, stream, hooks) && stream.flush();
    stream.close();
    if (!written || stream.error() != QFileDevice::NoError) {
        QFile::remove(streamPath);
        return PackageSaveResult::StreamFailed;
    }
    if (hooks.compressing)
        hooks.compressing();
    ByteProgress progress;
    if (hooks.progress)
        progress = [&](uint64_t done, uint64_t total) { hooks.progress(int64_t(done), int64_t(total)); };
    const bool compressed = CompressFile(streamPath, targetPath, progress);
    QFile::remove(streamPath);
    return compressed ? PackageSaveResult::Saved : PackageSaveResult::CompressFailed;
}

bool WriteUpdateNote(const ShipPackage& record, const QString& packagePath)
{
    const QFileInfo package(packagePath);
    QString name = record.Name;
    name.remove(' ');
    QSaveFile note(package.absolutePath() + "/" + name + ".dat");
    if (!note.open(QIODevice::WriteOnly))
        return false;
    const QString text =
        "Script: " + record.Name + "\nVersion: " + record.Version + "\nFile: " + package.fileName() + "\n";
    const QByteArray bytes = text.toLocal8Bit();
    return note.write(bytes) == bytes.size() && note.commit();
}
