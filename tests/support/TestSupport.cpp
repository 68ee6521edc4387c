#include "TestSupport.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>

TempHome::TempHome(bool withData)
{
    m_hadPrevious = qEnvironmentVariableIsSet("HULLWRIGHT_HOME");
    m_previous = qgetenv("HULLWRIGHT_HOME");
    qputenv("HULLWRIGHT_HOME", m_dir.path().toLocal8Bit());
    if (withData) {
        const QString data = qEnvironmentVariable("HW_DATA_DIR");
        if (!data.isEmpty())
            CopyTree(data, m_dir.path());
    }
}

TempHome::~TempHome()
{
    if (m_hadPrevious)
        qputenv("HULLWRIGHT_HOME", m_previous);
    else
        qunsetenv("HULLWRIGHT_HOME");
}

bool TempHome::writeFile(const QString& relative, const QByteArray& content) const
{
    const QString full = m_dir.filePath(relative);
    QDir().mkpath(QFileInfo(full).path());
    QFile file(full);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    return file.write(content) == content.size();
}

QByteArray TempHome::readFile(const QString& relative) const
{
    QFile file(m_dir.filePath(relative));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

bool CopyTree(const QString& from, const QString& to)
{
    bool ok = true;
    QDir source(from);
    QDirIterator it(from, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString file = it.next();
        const QString target = to + "/" + source.relativeFilePath(file);
        QDir().mkpath(QFileInfo(target).path());
        QFile::remove(target);
        ok = QFile::copy(file, target) && ok;
    }
    return ok;
}

bool WriteFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray RandomBytes(qsizetype size, quint32 seed)
{
    QRandomGenerator generator(seed);
    QByteArray bytes(size, '\0');
    generator.fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
    return bytes;
}

ProgramRun RunProgram(const QString& program, const QStringList& arguments, const QString& workingDir,
                      int timeoutMs)
{
    QProcess process;
    if (!workingDir.isEmpty())
        process.setWorkingDirectory(workingDir);
    process.start(program, arguments);
    ProgramRun run;
    if (!process.waitForFinished(timeoutMs))
        return run;
    run.exited = process.exitStatus() == QProcess::NormalExit;
    run.code = run.exited ? process.exitCode() : -1;
    run.out = process.readAllStandardOutput();
    run.err = process.readAllStandardError();
    return run;
}

ScopedEnv::ScopedEnv(const char* name, const QByteArray& value)
    : m_name(name), m_old(qgetenv(name)), m_wasSet(qEnvironmentVariableIsSet(name))
{
    if (value.isNull())
        qunsetenv(name);
    else
        qputenv(name, value);
}

ScopedEnv::~ScopedEnv()
{
    if (m_wasSet)
        qputenv(m_name, m_old);
    else
        qunsetenv(m_name);
}

namespace {

template <typename T> T TakeOr(QQueue<T>& queue, T fallback)
{
    return queue.isEmpty() ? fallback : queue.dequeue();
}

QString KindName(MessageKind kind)
{
    switch (kind) {
    case MessageKind::Question:
        return "question";
    case MessageKind::Warning:
        return "warning";
    case MessageKind::Critical:
        return "critical";
    case MessageKind::Information:
        return "information";
    }
    return {};
}

} // namespace

QString ScriptedPrompter::openFile(QWidget*, const QString& caption, const QString& dir,
                                   const QString& filter)
{
    shown.append({"openFile", caption, dir, {filter}});
    return TakeOr(fileAnswers, QString());
}

QStringList ScriptedPrompter::openFiles(QWidget*, const QString& caption, const QString& dir,
                                        const QString& filter)
{
    shown.append({"openFiles", caption, dir, {filter}});
    return TakeOr(filesAnswers, QStringList());
}

QString ScriptedPrompter::saveFile(QWidget*, const QString& caption, const QString& dir,
                                   const QString& filter)
{
    shown.append({"saveFile", caption, dir, {filter}});
    return TakeOr(fileAnswers, QString());
}

QString ScriptedPrompter::directory(QWidget*, const QString& caption, const QString& dir)
{
    shown.append({"directory", caption, dir, {}});
    return TakeOr(fileAnswers, QString());
}

std::optional<QString> ScriptedPrompter::text(QWidget*, const QString& caption, const QString& label,
                                              const QString& value)
{
    shown.append({"text", caption, label, {value}});
    return TakeOr(inputAnswers, std::optional<QString>());
}

std::optional<QString> ScriptedPrompter::item(QWidget*, const QString& caption, const QString& label,
                                              const QStringList& items, int, bool)
{
    shown.append({"item", caption, label, items});
    return TakeOr(inputAnswers, std::optional<QString>());
}

int ScriptedPrompter::message(MessageKind kind, QWidget*, const QString& caption, const QString& text,
                              const QStringList& buttons)
{
    shown.append({KindName(kind), caption, text, buttons});
    return TakeOr(messageAnswers, 0);
}

QList<ScriptedPrompter::Shown> ScriptedPrompter::messages(const QString& kind) const
{
    QList<Shown> result;
    for (const Shown& entry : shown)
        if (entry.kind == kind)
            result.append(entry);
    return result;
}
