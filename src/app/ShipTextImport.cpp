#include "app/ShipTextImport.h"

#include "app/ContentListSupport.h"
#include "catfs/transfer/GameFile.h"
#include "core/ProgramDir.h"
#include "language/GameText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

bool IsLanguageEntry(const QString& entry)
{
    return entry.left(2).toLower() == QLatin1String("t\\");
}

// A plain page's texts of the ship, the language taken from `sourceName`.
std::optional<ShipText> ReadPlainShipText(const QString& path, const QString& sourceName, int nameId)
{
    GameTextHandler handler(nullptr, nullptr, nullptr, nameId, nullptr, nullptr);
    ParseGameTextFile(path, handler);
    if (handler.Name().isEmpty())
        return std::nullopt;
    return ShipText{BareName(sourceName).left(2), handler.Name(), handler.Description()};
}

// The page file of a language file: the last four characters of its name
// without extension, when they are digits and not all zero; empty otherwise.
QString PageFileOf(const QString& fileName)
{
    const QString base = QFileInfo(fileName).completeBaseName();
    if (base.size() < 4)
        return {};
    const QString page = base.right(4);
    const bool digits = std::all_of(page.begin(), page.end(), [](QChar c) { return c.isDigit(); });
    return digits && page.toInt() != 0 ? page : QString();
}

// The names of the .xml files, then the .pck files, of `dir` that match
// `stem` + extension. The match ignores case, since a game copied from
// Windows may spell its files in any case.
QStringList LanguageFiles(const QDir& dir, const QString& stem)
{
    return dir.entryList({stem + ".xml"}, QDir::Files, QDir::Name) +
           dir.entryList({stem + ".pck"}, QDir::Files, QDir::Name);
}

} // namespace

QString CatalogWorkFile()
{
    return ProgramDir() + "/textfile.txt";
}

QString UnpackWorkFile()
{
    return ProgramDir() + "/text.xml";
}

std::optional<ShipText> ReadShipText(const QString& path, int nameId)
{
    if (QFileInfo(path).suffix().compare(QLatin1String("pck"), Qt::CaseInsensitive) != 0)
        return ReadPlainShipText(path, path, nameId);
    const QString unpacked = UnpackWorkFile();
    PckFileToPlain(path, unpacked);
    std::optional<ShipText> text = ReadPlainShipText(unpacked, path, nameId);
    QFile::remove(unpacked);
    return text;
}

QList<ShipText> ReadShipTextsFromCatalog(const QString& catalog, int nameId)
{
    QList<ShipText> texts;
    const QString workFile = CatalogWorkFile();
    for (const GameFileListEntry& entry : GameFileList(catalog)) {
        if (!IsLanguageEntry(entry.name))
            continue;
        if (GameFileExtract(catalog + "::" + entry.name, workFile, false, false))
            if (std::optional<ShipText> text = ReadPlainShipText(workFile, entry.name, nameId))
                texts.append(*text);
        QFile::remove(workFile);
    }
    return texts;
}

QStringList TextPagesIn(const QString& dir)
{
    QStringList pages;
    for (const QString& name : LanguageFiles(QDir(dir), "*")) {
        const QString page = PageFileOf(name);
        if (!page.isEmpty() && !pages.contains(page))
            pages.append(page);
    }
    return pages;
}

QStringList PageFilesIn(const QString& dir, const QString& page)
{
    const QDir directory(dir);
    QStringList paths;
    for (const QString& name : LanguageFiles(directory, "*" + page))
        paths.append(directory.filePath(name));
    return paths;
}
