#include "deploy/ModelCompiler.h"

#include "catfs/transfer/GameFile.h"
#include "package/ShipPackage.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTextStream>

namespace {


// How long a killed child is given to be reaped.
constexpr int kKillWaitMs = 5000;

bool RunsThroughWine(const QString& toolPath)
{
#ifdef Q_OS_WIN
    Q_UNUSED(toolPath);
    return false;
#else
    return toolPath.endsWith(".exe", Qt::CaseInsensitive);
#endif
}

// An absolute Unix path as Wine sees it on drive Z:.
QString WineDrivePath(const QString& path)
{
    return "Z:" + QString(path).replace('/', '\\');
}

QString AbsolutePath(const QString& path)
{
    return QFileInfo(path).absoluteFilePath();
}

void RemoveIfPresent(const QString& path)
{
    if (QFileInfo::exists(path))
        QFile::remove(path);
}

uint32_t FileSize(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() ? static_cast<uint32_t>(info.size()) : 0;
}

bool IsTool(const QString& toolPath)
{
    const QFileInfo info(toolPath);
    return !toolPath.isEmpty() && info.exists() && !info.isDir();
}

} // namespace

X2bcLaunch ResolveX2bcLaunch(const QString& toolPath)
{
    X2bcLaunch launch;
    if (!IsTool(toolPath))
        return launch;
    const QString tool = AbsolutePath(toolPath);
    launch.workingDirectory = QFileInfo(tool).absolutePath();
    if (RunsThroughWine(tool)) {
        const QString wine = QStandardPaths::findExecutable("wine");
        if (wine.isEmpty())
            return launch;
        launch.program = wine;
        launch.leadingArguments = {tool};
        launch.windowsPaths = true;
    } else {
        launch.program = tool;
    }
    launch.usable = true;
    return launch;
}

bool OutputHasSuccessWords(const QByteArray& output, const QString& words)
{
    const QStringList lines = QString::fromLocal8Bit(output).split('\n');
    for (QString line : lines) {
        if (line.endsWith('\r'))
            line.chop(1);
        if (line.section(' ', -2, -1) == words)
            return true;
    }
    return false;
}

bool RunX2bc(const QString& toolPath, const QStringList& options, const QStringList& fileArguments,
             const QString& successWords, int timeoutMs)
{
    const X2bcLaunch launch = ResolveX2bcLaunch(toolPath);
    if (!launch.usable)
        return false;

    QStringList arguments = launch.leadingArguments + options;
    for (const QString& file : fileArguments)
        arguments.append(launch.windowsPaths ? WineDrivePath(AbsolutePath(file)) : AbsolutePath(file));

    QProcess process;
    process.setProgram(launch.program);
    process.setArguments(arguments);
    process.setWorkingDirectory(launch.workingDirectory);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start();
    if (!process.waitForStarted(timeoutMs))
        return false;
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished(kKillWaitMs);
        return false;
    }
    return OutputHasSuccessWords(process.readAllStandardOutput(), successWords);
}

bool IsSceneFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    QTextStream stream(&file);
    while (!stream.atEnd()) {
        const QString line = stream.readLine();
        if (line.startsWith('/') || line.trimmed().isEmpty())
            continue;
        return line.section(' ', 0, 0, QString::SectionSkipEmpty) == "VER:";
    }
    return false;
}

QString WithExtension(const QString& path, const QString& extension)
{
    const QFileInfo info(path);
    return info.path() + '/' + info.completeBaseName() + '.' + extension;
}

bool CompileModel(const QString& toolPath, const QString& source, const QString& target, int timeoutMs)
{
    const QString words = X2bcCompiledWords;
    RemoveIfPresent(target);
    if (RunX2bc(toolPath, {"-c", "--cut"}, {source, target}, words, timeoutMs))
        return true;
    RemoveIfPresent(target);
    if (RunX2bc(toolPath, {"-c", "--bob"}, {source, target}, words, timeoutMs))
        return true;
    // A tool that wrote something and then failed leaves no half-made model.
    RemoveIfPresent(target);
    return false;
}

bool DecompileModel(const QString& toolPath, const QString& source, const QString& target, int timeoutMs)
{
    return RunX2bc(toolPath, {"-d"}, {source, target}, X2bcDecompiledWords, timeoutMs);
}

QString PrepareFile(FileEntry& file, bool compile, const QString& programDir, const QString& toolPath,
                    int timeoutMs)
{
    file.DeleteAfterWrite = false;
    file.LocalPath.replace(PackageToken, programDir + "/ShipInstall/");
    const QString source = file.LocalPath;

    const bool textModel = QFileInfo(source).suffix().toLower() == "bod";
    if (compile && textModel && ResolveX2bcLaunch(toolPath).usable && !IsSceneFile(source)) {
        const QString target = WithExtension(source, "bob");
        if (CompileModel(toolPath, source, target, timeoutMs)) {
            file.Size = FileSize(target);
            file.DeleteAfterWrite = true;
            file.Name = WithExtension(file.Name, "bob");
            file.LocalPath = target;
        }
    }

    const QString storedExtension = QFileInfo(file.Name).suffix().toLower();
    if (storedExtension != "bob" && storedExtension != "bod")
        return file.LocalPath;

    const QString tempDir = programDir + "/temp";
    QDir().mkpath(tempDir);
    const QString copyPath = tempDir + '/' + QFileInfo(file.LocalPath).fileName();
    const QString packedPath = GameFilePackedName(copyPath, true);
    // A packed copy left by an earlier save must not stand in for a source
    // that cannot be read now.
    if (AbsolutePath(packedPath) != AbsolutePath(file.LocalPath))
        RemoveIfPresent(packedPath);
    QFile input(file.LocalPath);
    GameFileCopyIn(input, copyPath, true);

    file.LocalPath = packedPath;
    file.Name = WithExtension(file.Name, storedExtension == "bob" ? "pbb" : "pbd");
    file.Size = FileSize(file.LocalPath);
    return file.LocalPath;
}
