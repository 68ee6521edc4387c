// The named nodes of a ship's scene file.
//
// A scene is text, plain (.bod) or packed (.pbd, any case). Of its lines only
// those of a part and its body count:
//
//     P <part>; B <body>; ...
//
// that is: a line that begins with "P ", whose first ";"-field has the part
// number as its second blank-separated word and whose second field, trimmed,
// begins with "B " and holds the body behind that blank. A part whose body is
// a name (text that is no number) is a node "body:part", the part written as a
// decimal number (leading zeros dropped). Comment lines ("/" as the first
// character that is no blank) and blank lines are skipped, like every line of
// another form. Nodes keep the order of the file.
//
// The reader never takes more than SceneByteLimit bytes from the disk nor
// unpacks to more than that, and a file that holds a NUL byte is taken for a
// binary model and gives no nodes.
#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

inline constexpr qint64 SceneByteLimit = 16 * 1024 * 1024;

enum class SceneRead
{
    Read,      // the file was read; it may still hold no nodes
    NoPath,    // no file was named
    Missing,   // it does not exist or cannot be opened
    TooLarge,  // it, or what it unpacks to, is larger than SceneByteLimit
    NotPacked, // a .pbd that does not unpack
    Binary     // it holds a NUL byte: no scene text
};

struct SceneFileNodes
{
    SceneRead status = SceneRead::NoPath;
    QStringList nodes;
};

// The nodes of scene text as it lies on disk (8-bit, any line ends).
QStringList ParseSceneNodes(QByteArrayView text);

// Reads the scene at `path` with the limits above. A name that ends in ".pbd"
// (any case) is unpacked in memory.
SceneFileNodes ReadSceneNodes(const QString& path);
