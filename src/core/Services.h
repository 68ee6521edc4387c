// Small stateless services that several parts of the program call.
#pragma once

#include <QString>

class QDir;

// Appends "[dd:MM:yy - hh:mm:ss] message\r\n" to log/hullwright_debug.txt in
// the program directory, making log/ when missing. The file is opened and
// closed for each line; a line that cannot be written is lost silently.
void WriteDebugLog(const QString& message);

// Replaces every "%1" by `first`, then every "%2" of the result by `second`,
// then every "%3" by `third`. A missing argument removes its placeholder.
QString FormatMessage(const QString& text, const QString& first = QString(),
                      const QString& second = QString(), const QString& third = QString());

// Makes the directories of the relative `path` below `base`, one level after
// the other. Empty parts (double or trailing slashes) make no level.
void MakeDirPath(const QDir& base, const QString& path);

// Removes the empty directories of the tree at `path`, from the leaves up;
// with `removeFiles` the files too, and then the whole tree. A directory that
// keeps a file keeps its whole chain up to `path`. Reports nothing.
void RemoveTree(const QString& path, bool removeFiles);
