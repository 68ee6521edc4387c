// Shared helpers of the test suites: a private program directory for each
// test and a prompter that replays scripted answers.
#pragma once

#include "forms/Prompter.h"

#include <QList>
#include <QQueue>
#include <QString>
#include <QTemporaryDir>
#include <QVariant>

// A temporary program directory named by HULLWRIGHT_HOME while it lives.
// With `withData` the run-time data of the source tree (data/) is copied in.
class TempHome
{
public:
    explicit TempHome(bool withData = false);
    ~TempHome();
    TempHome(const TempHome&) = delete;
    TempHome& operator=(const TempHome&) = delete;

    QString path() const { return m_dir.path(); }
    QString filePath(const QString& relative) const { return m_dir.filePath(relative); }
    // Writes `content` to a file below the directory, making its directories.
    bool writeFile(const QString& relative, const QByteArray& content) const;
    QByteArray readFile(const QString& relative) const;

private:
    QTemporaryDir m_dir;
    QByteArray m_previous;
    bool m_hadPrevious = false;
};

// Copies a directory tree; true when every file was copied.
bool CopyTree(const QString& from, const QString& to);

// Writes a whole file, making its directories; true when all bytes were written.
bool WriteFile(const QString& path, const QByteArray& bytes = {});
// The whole file, or nothing when it cannot be read.
QByteArray ReadFile(const QString& path);
// Bytes that do not compress, the same for the same seed.
QByteArray RandomBytes(qsizetype size, quint32 seed);

// What a program run by RunProgram did. `exited` is false when it crashed,
// did not start or did not end in time; `code` is then -1.
struct ProgramRun
{
    bool exited = false;
    int code = -1;
    QByteArray out;
    QByteArray err;
};
ProgramRun RunProgram(const QString& program, const QStringList& arguments, const QString& workingDir = {},
                      int timeoutMs = 180000);

// Runs the built hwtool (HW_BIN_DIR) with `arguments`.
inline ProgramRun Hwtool(const QStringList& arguments)
{
    return RunProgram(qEnvironmentVariable("HW_BIN_DIR") + "/hwtool", arguments);
}

// Sets an environment variable (a null value unsets it) for the life of the
// object, and puts back what stood before.
class ScopedEnv
{
public:
    ScopedEnv(const char* name, const QByteArray& value);
    ~ScopedEnv();
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    const char* m_name;
    QByteArray m_old;
    bool m_wasSet;
};

// A prompter for tests: each call takes the next scripted answer of its kind
// (an empty answer when none is left) and records what was asked.
class ScriptedPrompter : public Prompter
{
public:
    struct Shown
    {
        QString kind; // "question", "warning", "critical", "information", "openFile", ...
        QString caption;
        QString text;        // message text, or the start directory of a file dialog
        QStringList buttons; // buttons, or the filter of a file dialog
    };

    // Answers, consumed in order. For messages the index of the button.
    QQueue<QString> fileAnswers;                 // openFile, saveFile, directory
    QQueue<QStringList> filesAnswers;            // openFiles
    QQueue<std::optional<QString>> inputAnswers; // text, item
    QQueue<int> messageAnswers;                  // message boxes; empty -> 0

    QList<Shown> shown;

    QString openFile(QWidget*, const QString& caption, const QString& dir, const QString& filter) override;
    QStringList openFiles(QWidget*, const QString& caption, const QString& dir,
                          const QString& filter) override;
    QString saveFile(QWidget*, const QString& caption, const QString& dir, const QString& filter) override;
    QString directory(QWidget*, const QString& caption, const QString& dir) override;
    std::optional<QString> text(QWidget*, const QString& caption, const QString& label,
                                const QString& value) override;
    std::optional<QString> item(QWidget*, const QString& caption, const QString& label,
                                const QStringList& items, int current, bool editable) override;
    int message(MessageKind kind, QWidget*, const QString& caption, const QString& text,
                const QStringList& buttons) override;

    // The shown messages (not file or input dialogs) of one kind.
    QList<Shown> messages(const QString& kind) const;
};
