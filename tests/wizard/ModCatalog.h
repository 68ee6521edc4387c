// Small mod catalogs for the wizard's tests, built through the transfer layer.
#pragma once

#include "TestSupport.h"
#include "catfs/CatDriver.h"
#include "catfs/transfer/GameFile.h"
#include "gamedata/ShipLine.h"

#include <QFile>
#include <QStringList>

namespace wizardtest {

// One entry: tables (.txt), pages (.xml) and models (.bod, .bob) are stored
// packed under the game's names (.pck, .pbd, .pbb) unless `plain` is set.
struct ModFile
{
    QString Entry;
    QByteArray Content;
    bool Plain = false;
};

inline bool BuildModCatalog(const QString& catalog, const QList<ModFile>& files, const QString& scratch)
{
    CatArchiveHandle* archive = CatOpenArchive(QFile::encodeName(catalog).constData(), 1);
    if (!archive || !CatCloseArchive(archive))
        return false;
    const QString source = scratch + "/source.bin";
    for (const ModFile& file : files) {
        QFile input(source);
        if (!WriteFile(source, file.Content) ||
            !GameFileCopyIn(input, catalog + "::" + file.Entry, !file.Plain))
            return false;
    }
    return true;
}

// Appends an entry to a catalog as it lies on disk, past the transfer
// layer's checks: for names that the layer would refuse to write.
inline bool AppendRawEntry(const QString& catalog, const QString& name, const QByteArray& bytes)
{
    auto scramble = [](QByteArray text) {
        for (qsizetype i = 0; i < text.size(); ++i)
            text[i] =
                static_cast<char>(static_cast<uint8_t>(text[i]) ^ static_cast<uint8_t>(CatCatalogKey + i));
        return text;
    };
    const QString data = catalog.left(catalog.size() - 3) + "dat";
    QByteArray text = scramble(ReadFile(catalog));
    if (!text.endsWith('\n'))
        text += '\n';
    text += QString(name).replace(u'\\', u'/').toUtf8() + ' ' + QByteArray::number(bytes.size()) + '\n';
    QByteArray stored = bytes;
    for (char& byte : stored)
        byte = static_cast<char>(static_cast<uint8_t>(byte) ^ CatDataKey);
    return WriteFile(catalog, scramble(text)) && WriteFile(data, ReadFile(data) + stored);
}

// A scene placing `bodies`, one P line each.
inline QByteArray Scene(const QStringList& bodies)
{
    QByteArray text = "// a scene\nVER: 6;\n\n";
    int part = 0;
    for (const QString& body : bodies)
        text += "P " + QByteArray::number(part++) + "; B " + body.toUtf8() +
                "; N Bp; b\n{ 0x2002; 0; 0; 0; } // 0\n";
    return text;
}

// A ship line with the given scenes, turret cockpits and one gun entry of
// `gunBody`, whose id is `id`.
inline QString ShipLine(const QString& id, const QString& scene, const QString& cockpitScene,
                        const QList<int>& turrets = {}, const QString& gunBody = {})
{
    QStringList fields(75, QStringLiteral("0"));
    fields[ShipLineField::NameId] = QStringLiteral("9001");
    fields[ShipLineField::ShipScene] = scene;
    fields[ShipLineField::CockpitScene] = cockpitScene;
    for (int slot = 0; slot < turrets.size(); ++slot)
        fields[TurretCockpitField(slot)] = QString::number(turrets[slot]);
    // No cockpit blocks; one gun group (fields 54 to 58) of one entry (59 to 64).
    fields[ShipLineField::CockpitCount] = QStringLiteral("0");
    fields[54] = QStringLiteral("1");
    fields[58] = QStringLiteral("1");
    fields[61] = gunBody;
    fields[74] = id; // the tail starts at 65; its ninth field is the id
    return fields.join(u';') + u';';
}

inline QByteArray Table(const QStringList& lines)
{
    return ("48;" + QString::number(lines.size()) + ";\n" + lines.join(u'\n') + u'\n').toUtf8();
}

} // namespace wizardtest
