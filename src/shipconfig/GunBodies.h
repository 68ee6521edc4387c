// Gun bodies: the secondary nodes (barrels) that a gun's primary body offers,
// taken from SDTYPE_GUN lines of the Dummies table. Such a line reads
//
//     <body>;<flag>;<n>;<n pairs of two fields>;<m>;<m pairs: node body;flag>;
//
// so field 2 is n, field 2n + 3 is m, and node j (from 0) is field 2n + 4 + 2j;
// it is offered as "<node body>:<j + 1>". Empty node bodies are left out.
// Free of widgets.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

struct GunBody
{
    QString Body;
    QStringList Nodes;
};

// The gun bodies in the order they were added; the first line for a body wins.
class GunBodyList
{
public:
    // Adds the body of a SDTYPE_GUN line unless the list has it already or the
    // line names no node. Never reads past the line's fields.
    void Add(const QString& dummyLine);

    // The nodes of `body`, compared without regard to case; none when unknown.
    QStringList NodesOf(const QString& body) const;

    const QList<GunBody>& Bodies() const { return m_bodies; }

private:
    QList<GunBody> m_bodies;
};

// The SDTYPE_GUN lines of the Dummies table of the newest catalog of
// `gameDir` that holds one, through the work file `workFile`, which is
// deleted afterwards. None when no catalog has the table.
QStringList GameGunLines(const QString& gameDir, const QString& workFile);
