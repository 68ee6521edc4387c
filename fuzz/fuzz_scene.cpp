// Fuzz harness of the scene reader: the named nodes of arbitrary bytes, as
// text and as the file a ship's scene box names, plain (.bod) and packed
// (.pbd). Every node must be "<body>:<part>" with a body that is no number
// and a part in plain decimal, and there can be no more nodes than lines.
#include "gamedata/SceneFile.h"

#include <QByteArray>
#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>

namespace {

void Require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "fuzz_scene: %s\n", what);
        std::abort();
    }
}

void CheckNodes(const QStringList& nodes, QByteArrayView text)
{
    Require(nodes.size() <= text.count('\n') + 1, "more nodes than lines");
    for (const QString& node : nodes) {
        const qsizetype colon = node.lastIndexOf(u':');
        Require(colon > 0, "a node without a body");
        bool bodyIsNumber = false;
        node.left(colon).trimmed().toInt(&bodyIsNumber);
        Require(!bodyIsNumber, "a numbered body gave a node");
        bool partIsNumber = false;
        const int part = node.mid(colon + 1).toInt(&partIsNumber);
        Require(partIsNumber && QString::number(part) == node.mid(colon + 1),
                "a part that is not plain decimal");
    }
}

// The same bytes as a file under both names.
void CheckFile(const QByteArray& bytes, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        return;
    file.close();
    const SceneFileNodes read = ReadSceneNodes(path);
    Require(read.status != SceneRead::Missing && read.status != SceneRead::NoPath,
            "a written file was not read");
    Require(read.status == SceneRead::Read || read.nodes.isEmpty(), "a refused file gave nodes");
    if (!path.endsWith(QLatin1String(".pbd")) && read.status == SceneRead::Read)
        Require(read.nodes == ParseSceneNodes(bytes), "the file and its text differ");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    CheckNodes(ParseSceneNodes(bytes), bytes);
    static const QTemporaryDir dir; // removed when the process ends
    CheckFile(bytes, dir.filePath("scene.bod"));
    CheckFile(bytes, dir.filePath("scene.pbd"));
    return 0;
}
