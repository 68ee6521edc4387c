// Reading a scene file for the names of the bodies it places.
//
// A scene is text. After comment lines (starting with "/") and blank lines
// comes the version line, "VER: <n>;", then one "P" line for each part,
// followed by its frames:
//
//   VER: 6;
//   P 0; B ships\argon\hull; N Bpart00; b
//   { 0x2002; -4500; -1500; 12000; ... } // 0
//
// The body of a part is the second ";"-separated field of its P line when
// that field begins with " B ": here "ships\argon\hull". Bodies may be names
// with a directory, bare names, or numbers (entries of the game's body index).
// Nothing but P lines is read; other lines, however malformed, are passed over.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// Whether a text must open with the version line to count as a scene.
enum class SceneCheck
{
    AnyText,       // every P line of the text counts
    RequireVersion // the first line that is not blank and not a comment must begin with "VER:"
};

// The body names of the P lines of `text`, in order, each once. Empty when
// `check` asks for the version line and the text does not begin with it.
QStringList SceneBodyNames(const QString& text, SceneCheck check);

// The same for the scene file at `path`; a file that cannot be read, or is
// larger than `maxBytes`, names no bodies.
QStringList ReadSceneBodyNames(const QString& path, SceneCheck check, qint64 maxBytes = 64 * 1024 * 1024);
