#include "shipconfig/GunBodies.h"

#include "gamedata/GroupedTables.h"
#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"

#include <QFile>

void GunBodyList::Add(const QString& dummyLine)
{
    const QStringList fields = dummyLine.split(u';');
    auto field = [&fields](qint64 index) {
        return index >= 0 && index < fields.size() ? fields[index] : QString();
    };
    const QString body = field(0);
    for (const GunBody& known : m_bodies)
        if (known.Body == body)
            return;
    GunBody record{body, {}};
    const qint64 pairs = ReadInt(field(2));
    const qint64 nodes = ReadInt(field(2 * pairs + 3));
    for (qint64 j = 0; j < nodes && 2 * pairs + 4 + 2 * j < fields.size(); ++j) {
        const QString node = field(2 * pairs + 4 + 2 * j);
        if (!node.isEmpty())
            record.Nodes.append(node + ":" + QString::number(j + 1));
    }
    if (!record.Nodes.isEmpty())
        m_bodies.append(record);
}

QStringList GunBodyList::NodesOf(const QString& body) const
{
    const QString wanted = body.toLower();
    for (const GunBody& known : m_bodies)
        if (known.Body.toLower() == wanted)
            return known.Nodes;
    return {};
}

QStringList GameGunLines(const QString& gameDir, const QString& workFile)
{
    QStringList lines;
    if (!gameDir.isEmpty() && FetchTypesFile(gameDir, "Dummies", workFile))
        lines = GunDummyLines(ReadDummiesFile(workFile));
    QFile::remove(workFile);
    return lines;
}
