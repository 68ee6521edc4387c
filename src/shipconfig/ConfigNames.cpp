#include "shipconfig/ConfigNames.h"

#include "catfs/transfer/GameFile.h"
#include "gamedata/TypesFile.h"

#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace {

constexpr int PlayerRaceIndex = 9; // race 10
constexpr const char* LanguageFileEnd = "0001";

// The entry's file name up to its first dot, or an empty string when the
// entry does not lie in the folder t.
QString LanguageBaseName(const QString& entry)
{
    if (!entry.startsWith(QLatin1String("t\\"), Qt::CaseInsensitive))
        return {};
    const QString name = entry.section(u'\\', -1);
    return name.left(name.indexOf(u'.'));
}

template <typename Row> QList<NamedTextId> NamedIds(const QList<Row>& rows)
{
    QList<NamedTextId> named;
    for (const Row& row : rows)
        named.append({row.Name, row.TextId});
    return named;
}

template <typename Row> void TakeNames(const QList<NamedTextId>& named, QList<Row>& rows)
{
    for (qsizetype i = 0; i < rows.size() && i < named.size(); ++i)
        rows[i].Name = named[i].Name;
}

QString Item(const QString& name, qsizetype number)
{
    return name + " (" + QString::number(number) + ")";
}

// Items of names from 0 up to the first empty one.
QStringList ItemsToFirstGap(const QStringList& names, int firstNumber)
{
    QStringList items;
    for (qsizetype i = 0; i < names.size() && !names[i].isEmpty(); ++i)
        items.append(Item(names[i], i + firstNumber));
    return items;
}

} // namespace

QList<LanguageFile> ListLanguageFiles(const QString& gameDir)
{
    QList<LanguageFile> files;
    QSet<QString> known;
    for (int catalog = HighestCatalog(gameDir); catalog >= 1; --catalog) {
        const QString catalogPath = gameDir + "/" + CatalogName(catalog);
        for (const GameFileListEntry& entry : GameFileList(catalogPath)) {
            const QString base = LanguageBaseName(entry.name);
            if (!base.endsWith(QLatin1String(LanguageFileEnd)) || known.contains(base))
                continue;
            known.insert(base);
            files.append({base.chopped(4), catalogPath + "::" + entry.name});
        }
    }
    return files;
}

ConfigNames ReadConfigNames(const QString& path, const QList<IdName>& variants, const QList<IdName>& classes,
                            QList<ShieldRow>& shields, QList<WeaponRow>& lasers, QList<WeaponRow>& missiles)
{
    ConfigNames names;
    if (!QFileInfo(path).isFile())
        return names;
    names.Races = QStringList(RaceNameCount);
    names.Ranks = QStringList(RankNameCount);
    names.Cargo = QStringList(CargoNameCount);
    names.Variants = QStringList(variants.size());
    names.Classes = QStringList(classes.size());
    QList<NamedTextId> shieldNames = NamedIds(shields);
    QList<NamedTextId> laserNames = NamedIds(lasers);
    QList<NamedTextId> missileNames = NamedIds(missiles);

    ConfigTextTargets targets;
    targets.RaceNames = &names.Races;
    targets.RankNames = &names.Ranks;
    targets.CargoNames = &names.Cargo;
    targets.Variants = &variants;
    targets.VariantNames = &names.Variants;
    targets.Classes = &classes;
    targets.ClassNames = &names.Classes;
    targets.Shields = &shieldNames;
    targets.Lasers = &laserNames;
    targets.Missiles = &missileNames;
    ConfigTextHandler handler(targets);
    ParseGameTextFile(path, handler); // what a damaged file held up to the damage counts
    names.Read = true;

    TakeNames(shieldNames, shields);
    TakeNames(laserNames, lasers);
    TakeNames(missileNames, missiles);
    return names;
}

QStringList RaceItems(const QStringList& races, const QString& playerName)
{
    qsizetype last = PlayerRaceIndex;
    for (qsizetype i = 0; i < races.size(); ++i)
        if (!races[i].isEmpty())
            last = std::max(last, i);
    QStringList items;
    for (qsizetype i = 0; i <= last; ++i) {
        if (i == PlayerRaceIndex)
            items.append(Item(playerName, i + 1));
        else if (i < races.size() && !races[i].isEmpty())
            items.append(Item(races[i], i + 1));
        else
            items.append("(" + QString::number(i + 1) + ")");
    }
    return items;
}

QStringList CargoItems(const QStringList& cargo)
{
    return ItemsToFirstGap(cargo, 0);
}

QStringList ClassItems(const QStringList& classNames)
{
    return ItemsToFirstGap(classNames, 0);
}

QStringList VariationItems(const QStringList& variantNames, const QList<IdName>& variants,
                           const QString& noneName)
{
    QStringList names;
    for (qsizetype i = 0; i < variants.size(); ++i) {
        QString name = i < variantNames.size() ? variantNames[i] : QString();
        name.remove(u'\n').remove(u'\r');
        names.append(name.isEmpty() ? variants[i].Name : name);
    }
    ResolveVariantReferences(variants, names);

    QStringList items{Item(noneName, 0)};
    for (qsizetype i = 0; i < names.size(); ++i)
        items.append(Item(names[i], i + 1));
    return items;
}

QStringList ShieldItems(const QList<ShieldRow>& shields)
{
    QStringList items;
    for (qsizetype i = 0; i < shields.size(); ++i)
        items.append(Item(shields[i].Name, i));
    return items;
}
