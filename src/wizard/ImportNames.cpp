#include "wizard/ImportNames.h"

#include "gamedata/ShipLine.h"

namespace {

QString WithBackslashes(QString name)
{
    return name.replace(u'/', u'\\');
}

QString WithSlashes(QString name)
{
    return name.replace(u'\\', u'/');
}

qsizetype LastSlash(const QString& name)
{
    return std::max(name.lastIndexOf(u'/'), name.lastIndexOf(u'\\'));
}

// The position of the dot that starts the extension of the file name, or -1.
qsizetype ExtensionDot(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return dot > LastSlash(name) ? dot : -1;
}

QString FirstDirectory(const QString& entry)
{
    const QString name = WithSlashes(entry);
    const qsizetype slash = name.indexOf(u'/');
    return slash < 0 ? QString() : name.left(slash);
}

} // namespace

QString UnpackedName(const QString& name)
{
    const qsizetype dot = ExtensionDot(name);
    if (dot < 0)
        return name;
    const QString extension = name.mid(dot + 1).toLower();
    if (extension == QLatin1String("pbb"))
        return name.left(dot) + QStringLiteral(".bob");
    if (extension == QLatin1String("pbd"))
        return name.left(dot) + QStringLiteral(".bod");
    return name;
}

QString SceneLookupName(const QString& field)
{
    if (field.isEmpty())
        return {};
    QString name = WithSlashes(field);
    name = (name.contains(u'/') ? QStringLiteral("objects/") : QStringLiteral("objects/cut/")) + name;
    const qsizetype dot = ExtensionDot(name);
    if (dot >= 0 && name.size() - dot - 1 <= 3)
        name.truncate(dot);
    return name;
}

QString SceneComparisonName(const QString& entry)
{
    QString name = WithSlashes(entry);
    const qsizetype dot = ExtensionDot(name);
    if (dot >= 0)
        name.truncate(dot);
    return name.toLower();
}

QString ModelShortName(const QString& entry)
{
    QString name = WithBackslashes(entry).toLower();
    const qsizetype slash = name.lastIndexOf(u'\\');
    const qsizetype dot = name.indexOf(u'.', slash + 1);
    if (dot >= 0)
        name.truncate(dot);
    if (name.startsWith(QLatin1String("objects\\")))
        name.remove(0, 8);
    return name;
}

QString BodyModelName(const QString& body)
{
    QString name = body;
    if (ReadInt(name) != 0) {
        while (name.size() < 5)
            name.prepend(u'0');
    }
    if (LastSlash(name) < 0)
        name.prepend(QStringLiteral("v\\"));
    return name;
}

bool PartMatchesKey(const QString& key, const QString& partName)
{
    if (partName.isEmpty())
        return false;
    if (key.compare(partName, Qt::CaseInsensitive) == 0)
        return true;
    const QString shorter = partName.chopped(1);
    return key == shorter && ReadInt(shorter) != 0;
}

bool IsTextureEntry(const QString& entry)
{
    const QString first = FirstDirectory(entry).toLower();
    return first == QLatin1String("dds") || first == QLatin1String("tex") ||
           first == QLatin1String("textures");
}

bool IsObjectEntry(const QString& entry)
{
    return entry.left(7).toLower() == QLatin1String("objects");
}

bool IsLanguageEntry(const QString& entry)
{
    return WithBackslashes(entry.left(2)).toLower() == QLatin1String("t\\");
}

bool IsContainedEntryName(const QString& entry)
{
    const QString name = WithSlashes(entry);
    if (name.isEmpty() || name.startsWith(u'/') || name.contains(u':'))
        return false;
    for (const QString& part : name.split(u'/')) {
        if (part == QLatin1String(".") || part == QLatin1String(".."))
            return false;
    }
    return true;
}

QString EntryDirectory(const QString& entry)
{
    const QString name = WithSlashes(entry);
    const qsizetype slash = name.lastIndexOf(u'/');
    return slash < 0 ? QString() : name.left(slash);
}

QString EntryFileName(const QString& entry)
{
    return entry.mid(LastSlash(entry) + 1);
}

QStringList GunBodyNames(const QString& shipLine)
{
    // Each gun entry holds six fields: index, count, primary body, primary
    // part, secondary body, secondary part.
    constexpr int PrimaryBody = 2;
    constexpr int SecondaryBody = 4;
    QStringList names;
    const QStringList fields = shipLine.split(u';');
    for (const GunGroupPlace& group : LayoutOf(shipLine).groups) {
        for (int entry = 0; entry < group.entries; ++entry) {
            const int first = group.FirstEntry() + 6 * entry;
            for (int offset : {PrimaryBody, SecondaryBody}) {
                // An entry without a body holds 0 or nothing there.
                const QString name = fields.value(first + offset).trimmed();
                if (!name.isEmpty() && name != QLatin1String("0") && !names.contains(name))
                    names.append(name);
            }
        }
    }
    return names;
}
