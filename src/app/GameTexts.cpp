// The game's language pages in the main window: the names of ships, variants
// and classes read at start, and a ship's name and description imported in
// every language that the chosen files hold.
//
// Pages are always parsed as plain files. An entry of a catalog is extracted
// to the work file textfile.txt, a packed loose page is unpacked to text.xml,
// both in the program directory, and each work file is deleted by the
// operation that wrote it.
#include "app/DCreateShip.h"

#include "app/core/ProgramDir.h"
#include "app/core/Services.h"
#include "catfs/transfer/GameFile.h"
#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QIcon>
#include <QStatusBar>
#include <QTreeWidgetItem>

namespace {

constexpr int NameIdField = 6;

QString CatalogWorkFile()
{
    return ProgramDir() + "/textfile.txt";
}

QString UnpackWorkFile()
{
    return ProgramDir() + "/text.xml";
}

// The file name behind the last slash or backslash.
QString FileNameOf(const QString& path)
{
    const qsizetype slash = std::max(path.lastIndexOf('/'), path.lastIndexOf('\\'));
    return path.mid(slash + 1);
}

bool IsLanguageEntry(const QString& entry)
{
    return entry.left(2).toLower() == QLatin1String("t\\");
}

bool HasSuffix(const QString& path, const char* suffix)
{
    return QFileInfo(path).suffix().compare(QLatin1String(suffix), Qt::CaseInsensitive) == 0;
}

// The files of `dir` that match `pattern`, by name. The match ignores case,
// since a game copied from Windows may spell its files in any case.
QStringList FilesMatching(const QDir& dir, const QString& pattern)
{
    return dir.entryList({pattern}, QDir::Files, QDir::Name);
}

// The page file of a language file: the last four characters of its name
// without extension, when they are digits and not all zero ("0001" of
// "440001.xml"); empty otherwise.
QString PageFileOf(const QString& fileName)
{
    const QString base = QFileInfo(fileName).completeBaseName();
    if (base.size() < 4)
        return {};
    const QString page = base.right(4);
    for (QChar c : page) {
        if (!c.isDigit())
            return {};
    }
    return page.toInt() != 0 ? page : QString();
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

void DCreateShip::GetText()
{
    DetectGameDirs();
    const QString gameDir = GameDirs.value(0);
    WriteDebugLog("GetText() Dir = " + gameDir);
    BuildGameTextIndex(GameTextList, m_gameTextIndex);

    const QString workFile = CatalogWorkFile();
    const QHash<QString, QString> gameFiles =
        gameDir.isEmpty() ? QHash<QString, QString>() : FilesByLowerName(gameDir);
    // Catalogs from the first up: a later catalog's text replaces an earlier
    // one's. The first missing number ends the search.
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
            if (!IsLanguageEntry(entry.name) || GameTextLanguage(entry.name) != BaseLang)
                continue;
            WriteDebugLog("GetText() Extracting file: " + entry.name + ", Save To: " + workFile);
            if (GameFileExtract(catalog + "::" + entry.name, workFile, false, false)) {
                WriteDebugLog("GetText() Getting Text from file");
                ParseGameText(workFile);
            }
            QFile::remove(workFile);
        }
    }

    // Loose pages in the game's t directory come last and so win over every catalog.
    if (ReadTextTableAtStart && !gameDir.isEmpty()) {
        const QDir textDir(gameDir + "/t");
        const QString unpacked = UnpackWorkFile();
        for (const QString& name : FilesMatching(textDir, "*.xml")) {
            if (GameTextLanguage(name) == BaseLang)
                ParseGameText(textDir.filePath(name));
        }
        for (const QString& name : FilesMatching(textDir, "*.pck")) {
            if (GameTextLanguage(name) != BaseLang)
                continue;
            PckFileToPlain(textDir.filePath(name), unpacked);
            ParseGameText(unpacked);
            QFile::remove(unpacked);
        }
    }
    m_gameTextIndex.clear();

    TextLoaded = true;
    setEnabled(true);
    repaint();
    QMainWindow::statusBar()->clearMessage();
}

void DCreateShip::ParseGameText(const QString& path)
{
    GameTextHandler handler(&GameTextList, &ShipVariants, VariantNames.isEmpty() ? nullptr : &VariantNames,
                            -1, &ShipClasses, ClassNames.isEmpty() ? nullptr : &ClassNames, &m_gameTextIndex);
    ParseGameTextFile(path, handler);
    // After every file, so that a reference is resolved as soon as both texts are known.
    ResolveVariantReferences(ShipVariants, VariantNames);
}

bool DCreateShip::ImportTextFile(const QString& path, const QString& sourceName)
{
    const int nameId = ShipField(TextRaw->toPlainText(), NameIdField).toInt();
    GameTextHandler handler(nullptr, nullptr, nullptr, nameId, nullptr, nullptr);
    ParseGameTextFile(path, handler);
    if (handler.Name().isEmpty())
        return false;
    auto* row = new QTreeWidgetItem(ListText,
                                    {FileNameOf(sourceName).left(2), handler.Name(), handler.Description()});
    row->setIcon(0, QIcon(ProgramPath("/Icons/text.png")));
    return true;
}

bool DCreateShip::ImportLanguageFile(const QString& path)
{
    if (!HasSuffix(path, "pck"))
        return ImportTextFile(path, path);
    // Unpacked into the program directory rather than beside the user's file,
    // so that nothing of the user's is written or replaced.
    const QString unpacked = UnpackWorkFile();
    PckFileToPlain(path, unpacked);
    const bool added = ImportTextFile(unpacked, path);
    QFile::remove(unpacked);
    return added;
}

void DCreateShip::Slot_ImportText()
{
    const QStringList files =
        prompter().openFiles(this, UiText[84], TextDir, UiText[83] + " (*.pck *.xml *.cat)");
    bool added = false;
    for (const QString& file : files) {
        if (!HasSuffix(file, "cat")) {
            added |= ImportLanguageFile(file);
            continue;
        }
        // Every language of the catalog comes in.
        const QString workFile = CatalogWorkFile();
        for (const GameFileListEntry& entry : GameFileList(file)) {
            if (!IsLanguageEntry(entry.name))
                continue;
            if (GameFileExtract(file + "::" + entry.name, workFile, false, false))
                added |= ImportTextFile(workFile, entry.name);
            QFile::remove(workFile);
        }
    }
    if (added)
        Slot_Modified();
}

void DCreateShip::Slot_ImportTextDir()
{
    QString directory = prompter().directory(this, UiText[162], TextDir);
    if (directory.isEmpty())
        return;
    directory.replace('\\', '/');
    const QDir dir(directory);
    const QStringList files = FilesMatching(dir, "*.xml") + FilesMatching(dir, "*.pck");

    // The page files present, in order of first appearance.
    QStringList pages;
    for (const QString& name : files) {
        const QString page = PageFileOf(name);
        if (!page.isEmpty() && !pages.contains(page))
            pages.append(page);
    }
    if (pages.isEmpty())
        return;
    const std::optional<QString> choice =
        prompter().item(this, "Qt: " + UiText[226], UiText[227], pages, 0, false);
    if (!choice || choice->isEmpty())
        return;

    bool added = false;
    const QStringList chosen =
        FilesMatching(dir, "*" + *choice + ".xml") + FilesMatching(dir, "*" + *choice + ".pck");
    for (const QString& name : chosen)
        added |= ImportLanguageFile(dir.filePath(name));
    if (added)
        Slot_Modified();
}
