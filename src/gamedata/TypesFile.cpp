#include "gamedata/TypesFile.h"

#include "catfs/transfer/GameFile.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTextStream>

bool IsSkippedTypesLine(const QString& line)
{
    for (const QChar c : line) {
        if (c == u' ')
            continue;
        return c == u'/';
    }
    return true; // nothing but blanks
}

TypesTable ParseTypesText(const QString& text)
{
    TypesTable table;
    bool haveHeader = false;
    const QStringList lines = text.split(u'\n');
    for (QString line : lines) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        if (IsSkippedTypesLine(line))
            continue;
        if (!haveHeader) {
            table.header = line;
            haveHeader = true;
        } else {
            table.records.append(line);
        }
    }
    return table;
}

TypesTable ReadTypesFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QTextStream stream(&file);
    return ParseTypesText(stream.readAll());
}

QString CatalogName(int number)
{
    return QString::asprintf(number < 10 ? "0%d.cat" : "%d.cat", number);
}

int HighestCatalog(const QString& gameDir)
{
    // A game copied from Windows may spell its catalogs in any case.
    QSet<QString> names;
    for (const QString& name : QDir(gameDir).entryList(QDir::Files))
        names.insert(name.toLower());
    int highest = 0;
    for (int i = 1; i <= 99 && names.contains(CatalogName(i)); ++i)
        highest = i;
    return highest;
}

bool FetchTypesFile(const QString& gameDir, const QString& table, const QString& target)
{
    for (int i = HighestCatalog(gameDir); i >= 1; --i) {
        const QString source = gameDir + "/" + CatalogName(i) + "::types\\" + table + ".pck";
        if (GameFileExtract(source, target, false, false))
            return true;
    }
    return false;
}

TypesTable LoadGameTable(const QString& gameDir, const QString& table, const QString& workFile)
{
    TypesTable result;
    if (FetchTypesFile(gameDir, table, workFile))
        result = ReadTypesFile(workFile);
    QFile::remove(workFile);
    return result;
}
