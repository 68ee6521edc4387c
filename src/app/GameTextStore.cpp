#include "app/GameTextStore.h"

#include "app/ShipTextImport.h"
#include "catfs/transfer/GameFile.h"
#include "core/Services.h"
#include "gamedata/TypesFile.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QTextStream>

namespace {

bool IsLanguageEntry(const QString& entry)
{
    return entry.left(2).toLower() == QLatin1String("t\\");
}

// The actual name of each file of `dir`, keyed by its name in lower case.
QHash<QString, QString> FilesByLowerName(const QString& dir)
{
    QHash<QString, QString> names;
    for (const QString& name : QDir(dir).entryList(QDir::Files))
        names.insert(name.toLower(), name);
    return names;
}

} // namespace

QList<IdName> ReadIdNameFile(const QString& path, bool isVariantFile)
{
    QList<IdName> result;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return result;
    QTextStream stream(&file);
    while (!stream.atEnd()) {
        const QString line = stream.readLine();
        if (line.startsWith("//"))
            continue;
        const qsizetype colon = line.indexOf(':');
        const QString idText = colon < 0 ? line : line.left(colon);
        const QString name = colon < 0 ? QString() : line.mid(colon + 1);
        bool isNumber = false;
        const int id = idText.trimmed().toInt(&isNumber);
        const int value = isNumber ? id : 0;
        // A class needs a real id; a variant of id 0 is valid when it has a name.
        if (value == 0 && (!isVariantFile || name.isEmpty()))
            continue;
        result.append({value, name});
    }
    return result;
}

void GameTextStore::LoadClassesAndVariants(const QString& programDir)
{
    m_classes = ReadIdNameFile(programDir + "/data/classes", false);
    m_variants = ReadIdNameFile(programDir + "/data/variant", true);
    m_classNames = QStringList(m_classes.size(), QString());
    m_variantNames = QStringList(m_variants.size(), QString());
}

void GameTextStore::Load(const QString& gameDir, const QString& baseLang, bool readTextDir)
{
    WriteDebugLog("GetText() Dir = " + gameDir);
    BuildGameTextIndex(m_texts, m_index);
    ReadCatalogs(gameDir, baseLang);
    if (readTextDir && !gameDir.isEmpty())
        ReadTextDirectory(gameDir, baseLang);
    m_index.clear();
    m_loaded = true;
}

// Catalogs from the first up: a later catalog's text replaces an earlier
// one's. The first missing number ends the search.
void GameTextStore::ReadCatalogs(const QString& gameDir, const QString& baseLang)
{
    const QString workFile = CatalogWorkFile();
    const QHash<QString, QString> gameFiles =
        gameDir.isEmpty() ? QHash<QString, QString>() : FilesByLowerName(gameDir);
    for (int number = 1;; ++number) {
        const QString name = CatalogName(number);
        WriteDebugLog("GetText() FileName = " + name);
        const auto found = gameFiles.constFind(name);
        if (found == gameFiles.constEnd())
            break;
        const QString catalog = gameDir + "/" + *found;
        const QList<GameFileListEntry> entries = GameFileList(catalog);
        WriteDebugLog("GetText() Checking Catfile: " + catalog +
                      ", Files = " + QString::number(entries.size()));
        for (const GameFileListEntry& entry : entries) {
            if (!IsLanguageEntry(entry.name) || GameTextLanguage(entry.name) != baseLang)
                continue;
            WriteDebugLog("GetText() Extracting file: " + entry.name + ", Save To: " + workFile);
            if (GameFileExtract(catalog + "::" + entry.name, workFile, false, false)) {
                WriteDebugLog("GetText() Getting Text from file");
                ParseFile(workFile);
            }
            QFile::remove(workFile);
        }
    }
}

// Loose pages in the game's t directory come last and so win over every catalog.
void GameTextStore::ReadTextDirectory(const QString& gameDir, const QString& baseLang)
{
    const QDir textDir(gameDir + "/t");
    for (const QString& name : textDir.entryList({"*.xml"}, QDir::Files, QDir::Name))
        if (GameTextLanguage(name) == baseLang)
            ParseFile(textDir.filePath(name));
    const QString unpacked = UnpackWorkFile();
    for (const QString& name : textDir.entryList({"*.pck"}, QDir::Files, QDir::Name)) {
        if (GameTextLanguage(name) != baseLang)
            continue;
        PckFileToPlain(textDir.filePath(name), unpacked);
        ParseFile(unpacked);
        QFile::remove(unpacked);
    }
}

void GameTextStore::ParseFile(const QString& path)
{
    GameTextHandler handler(&m_texts, &m_variants, m_variantNames.isEmpty() ? nullptr : &m_variantNames, -1,
                            &m_classes, m_classNames.isEmpty() ? nullptr : &m_classNames, &m_index);
    ParseGameTextFile(path, handler);
    // After every file, so that a reference is resolved as soon as both texts are known.
    ResolveVariantReferences(m_variants, m_variantNames);
}
