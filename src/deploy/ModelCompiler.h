// Bringing a package file into the form in which the package stores it, and
// driving the external model converter x2bc.
//
// Models come in four forms: text .bod, binary .bob, and their packed forms
// .pbd and .pbb. A package always stores a model packed. A text model can be
// compiled to .bob first; x2bc does that, as a child process whose success is
// read from the words it prints, not from its exit code.
//
// Running x2bc:
//  - The tool's own path is the program; its directory is the working
//    directory of the child. Every file argument is an absolute path.
//  - On a system other than Windows, a tool whose path ends in ".exe" runs
//    through wine when wine is on the PATH: wine is the program and the tool
//    path its first argument, and the file arguments are given as paths of
//    Wine's drive Z:, which maps the root of the file system. Without wine
//    such a tool counts as missing.
//  - The caller blocks until the child ends. A child that has not ended after
//    the time-out (two minutes unless the caller gives another) is killed and
//    its run counts as failed. A compile makes up to two runs, so a hanging
//    tool holds the caller for at most twice the time-out.
//  - Standard input is closed and standard error is not read.
#pragma once

#include <QString>
#include <QStringList>

struct FileEntry;

inline constexpr int X2bcDefaultTimeoutMs = 120 * 1000;

// What the tool prints, as the last two words of an output line, on success.
inline constexpr const char* X2bcCompiledWords = "compiled successfully";
inline constexpr const char* X2bcDecompiledWords = "decompiled successfully";

// How to start the tool on this system.
struct X2bcLaunch
{
    bool usable = false;          // false: the tool is missing or cannot run here
    QString program;              // the program to start
    QStringList leadingArguments; // placed before the tool's own arguments
    QString workingDirectory;     // the directory that holds the tool
    bool windowsPaths = false;    // file arguments go as Z:\... paths
};

// Works out how to start the tool at `toolPath`, which must name an existing
// file. Looks for wine on the PATH when it is needed.
X2bcLaunch ResolveX2bcLaunch(const QString& toolPath);

// True when a line of `output` ends in `words` as its last two blank-separated
// words. Line ends may be "\n" or "\r\n".
bool OutputHasSuccessWords(const QByteArray& output, const QString& words);

// Runs the tool with `arguments` (file arguments as absolute paths; they are
// converted for wine as needed) and waits for it; true when it printed
// `successWords`. False when the tool is missing, would not start, or ran
// out of time.
bool RunX2bc(const QString& toolPath, const QStringList& options, const QStringList& fileArguments,
             const QString& successWords, int timeoutMs = X2bcDefaultTimeoutMs);

// True when the text model at `path` is a scene: the first line that is
// neither blank nor begins with "/" has "VER:" as its first word. A file that
// cannot be read, or has no such line, is not a scene.
bool IsSceneFile(const QString& path);

// `path` with its extension (all after the last dot of the file name)
// replaced: its directory ("." for a bare name), "/", the complete base name,
// "." and `extension`.
QString WithExtension(const QString& path, const QString& extension);

// Turns a text model into a binary one: "-c --cut", and when that fails
// "-c --bob". On success `target` exists; on failure no file stands at
// `target`.
bool CompileModel(const QString& toolPath, const QString& source, const QString& target,
                  int timeoutMs = X2bcDefaultTimeoutMs);

// Turns a binary model back into text with "-d".
bool DecompileModel(const QString& toolPath, const QString& source, const QString& target,
                    int timeoutMs = X2bcDefaultTimeoutMs);

// Brings one package entry into its stored form and returns the path of the
// file whose bytes the package is to hold; `file` is updated in place.
//
//  1. "<PACKAGE>/" in LocalPath becomes <programDir>/ShipInstall/.
//  2. With `compile` set, an existing tool at `toolPath` and a source whose
//     extension is bod (in any case) that is not a scene, the source is
//     compiled to a .bob beside it; on success LocalPath names the .bob, Name
//     gets the extension .bob and DeleteAfterWrite is set.
//  3. A file whose Name ends in .bob or .bod (in any case) is copied packed to
//     <programDir>/temp/ as .pbb or .pbd; LocalPath names that copy and Name
//     gets the matching extension. Size is the size of the file returned.
//
// Never fails loudly: a model that does not compile goes on as text, and a
// source that cannot be read leaves no file at the returned path, so that the
// writer leaves the entry out.
QString PrepareFile(FileEntry& file, bool compile, const QString& programDir, const QString& toolPath,
                    int timeoutMs = X2bcDefaultTimeoutMs);
