#include "app/SelectShip.h"

#include "app/WindowTexts.h"
#include "catfs/transfer/GameFile.h"
#include "core/ProgramDir.h"
#include "core/Services.h"
#include "forms/Prompter.h"
#include "gamedata/ShipLine.h"
#include "gamedata/TypesFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QHeaderView>
#include <QIcon>
#include <QTreeWidgetItem>

#include <cstdio>

namespace {

constexpr int kRowNumberColumn = 2;

bool IsCatalogPath(const QString& path)
{
    return path.contains(QStringLiteral("::"));
}

QString Extension(const QString& path)
{
    return QFileInfo(path).suffix().toLower();
}

// Unpacks a .pck into the .txt beside it, which stays there. The .txt is
// replaced only by a complete unpacked table: a .pck that cannot be read
// leaves an existing .txt as it was. Empty when there is no table to read.
QString UnpackBeside(const QString& pck)
{
    const QString txt = pck.left(pck.size() - 4) + ".txt";
    const QString part = txt + ".part";
    PckFileToPlain(pck, part);
    if (QFileInfo(part).size() <= 0) {
        QFile::remove(part);
        return {};
    }
    if (std::rename(QFile::encodeName(part).constData(), QFile::encodeName(txt).constData()) != 0) {
        QFile::remove(part);
        return {};
    }
    return txt;
}

QString LookUp(const QList<GameText>& texts, const GameTextIndex& index, int id, bool* found)
{
    const auto it = index.constFind(id);
    *found = it != index.constEnd() && it.value() < texts.size();
    return *found ? texts[it.value()].Text : QString();
}

} // namespace

DSelectShip::DSelectShip(Prompter& prompter, const QStringList& uiText, const QString& gameDir,
                         const QString& baseLang, const QList<GameText>* gameTexts,
                         const QList<IdName>* variants, const QStringList* variantNames, QWidget* parent)
    : SelectShip(parent, nullptr, true), m_prompter(prompter), m_uiText(uiText), m_gameDir(gameDir),
      m_baseLang(baseLang), m_gameTexts(gameTexts), m_variants(variants), m_windowVariantNames(variantNames)
{
    if (m_gameTexts)
        BuildGameTextIndex(*m_gameTexts, m_gameTextIndex);
    ResetVariantNames();
    SetUpColumns();
    ButSelect->setText(m_uiText.value(Txt::ButtonSelect));
    ButClose->setText(m_uiText.value(Txt::ButtonClose));
}

void DSelectShip::ResetVariantNames()
{
    m_variantNames = m_windowVariantNames ? *m_windowVariantNames : QStringList();
    // The handler writes one name for each entry of the variant list.
    if (m_variants && m_windowVariantNames)
        m_variantNames.resize(m_variants->size());
}

void DSelectShip::Setup(const QString& filter, const QString& caption, const QString& defaultEntry,
                        const QString& startDir)
{
    m_filter = filter;
    m_caption = caption;
    m_defaultEntry = defaultEntry;
    m_startDir = startDir;
}

void DSelectShip::SetUpColumns()
{
    if (!HasGameDir())
        return;
    ListShips->setHeaderLabels(
        {m_uiText.value(Txt::LabelShipId), m_uiText.value(Txt::LabelShipName), QStringLiteral("#")});
    ListShips->setColumnHidden(kRowNumberColumn, true);
}

QString DSelectShip::RowNumber(int row)
{
    // Four digits keep the text order equal to the numeric order up to 9999.
    return QString::asprintf("%04d", row);
}

void DSelectShip::Slot_OpenFile()
{
    const QString chosen = m_prompter.openFile(this, m_caption, m_startDir, m_filter);
    if (!chosen.isEmpty())
        OpenTable(chosen);
}

// Takes the table out of the catalog path `source` ("<catalog>::<entry>") into
// the work file below ShipInstall named after the default entry.
QString DSelectShip::ExtractWorkFile(const QString& source)
{
    const QString entry = QString(m_defaultEntry).replace(u'\\', u'/');
    MakeDirPath(QDir(ProgramDir()), "ShipInstall/" + QFileInfo(entry).path());
    const QString target = ProgramPath("/ShipInstall/" + entry);
    return GameFileExtract(source, target, false, false) ? target : QString();
}

void DSelectShip::OpenTable(const QString& chosen)
{
    const QString extension = Extension(chosen);
    QString shown = chosen;
    QString table;
    bool temporary = false;
    if (extension == "cat") {
        if (m_defaultEntry.isEmpty())
            return;
        table = ExtractWorkFile(chosen + "::" + m_defaultEntry);
        if (table.isEmpty()) {
            m_prompter.warning(this, m_uiText.value(Txt::TableExtractFailed),
                               m_uiText.value(Txt::TableExtractFailedText) + "\n" + m_defaultEntry,
                               {m_uiText.value(Txt::Ok)});
            return;
        }
        temporary = true;
        if (HasGameDir())
            ReadCatalogTexts(chosen);
        shown = chosen + "::" + m_defaultEntry;
    } else {
        // A table outside a catalog has no pages of its own.
        ForgetCatalogTexts();
        table = extension == "pck" ? UnpackBeside(chosen) : chosen;
    }

    setWindowTitle("Qt: " + m_uiText.value(Txt::ShipSelectionCaption) + " - " + shown);
    ListShips->clear();
    LineFile->clear();
    table.replace(u'\\', u'/');
    QFile file(table);
    if (!table.isEmpty() && file.open(QIODevice::ReadOnly)) {
        file.close();
        LineFile->setText(shown);
        FillList(ReadTypesFile(table).records);
    }
    if (temporary)
        QFile::remove(table);
}

void DSelectShip::ForgetCatalogTexts()
{
    m_catalogTexts.clear();
    m_catalogTextIndex.clear();
    ResetVariantNames();
}

void DSelectShip::ReadCatalogTexts(const QString& catalog)
{
    ForgetCatalogTexts();
    const bool withVariants = m_variants && m_windowVariantNames;

    const QString work = ProgramPath("/textfile.txt");
    for (const GameFileListEntry& entry : GameFileList(catalog)) {
        if (!entry.name.left(2).toLower().startsWith(QStringLiteral("t\\")))
            continue;
        if (GameTextLanguage(entry.name) != m_baseLang)
            continue;
        if (!GameFileExtract(catalog + "::" + entry.name, work, false, false))
            continue;
        GameTextHandler handler(&m_catalogTexts, withVariants ? m_variants : nullptr,
                                withVariants ? &m_variantNames : nullptr, -1, nullptr, nullptr,
                                &m_catalogTextIndex);
        ParseGameTextFile(work, handler);
        QFile::remove(work);
        if (withVariants)
            ResolveVariantReferences(*m_variants, m_variantNames);
    }
}

// The catalog's own pages first, then the game's texts.
QString DSelectShip::LookUpName(int textId) const
{
    bool found = false;
    QString name = LookUp(m_catalogTexts, m_catalogTextIndex, textId, &found);
    if (!found && m_gameTexts)
        name = LookUp(*m_gameTexts, m_gameTextIndex, textId, &found);
    return name;
}

QString DSelectShip::DisplayName(const QString& line) const
{
    QString name = LookUpName(ShipFieldInt(line, ShipLineField::NameId));
    if (name.isEmpty() || !m_windowVariantNames)
        return name;
    const int variation = ShipFieldInt(line, ShipLineField::Variation);
    if (variation > 0 && variation <= m_variantNames.size() && !m_variantNames[variation - 1].isEmpty())
        name += " " + m_variantNames[variation - 1];
    return name;
}

void DSelectShip::FillList(const QStringList& records)
{
    const bool named = HasGameDir();
    const QIcon icon(ProgramPath("/Icons/ship.png"));
    // Items are appended unsorted and the list sorted once at the end.
    ListShips->setSortingEnabled(false);
    int row = 0;
    for (const QString& line : records) {
        ++row;
        auto* item = new QTreeWidgetItem(ListShips); // owned by the list
        item->setText(0, ShipLineId(line));
        item->setIcon(0, icon);
        if (named) {
            item->setText(1, DisplayName(line));
            item->setText(kRowNumberColumn, RowNumber(row));
        }
    }
    ListShips->header()->setSortIndicator(named ? kRowNumberColumn : 0, Qt::AscendingOrder);
    ListShips->setSortingEnabled(true);
}

void DSelectShip::Slot_Selected()
{
    if (ListShips->topLevelItemCount() == 0 || !ListShips->currentItem()) {
        reject();
        return;
    }
    const QString shown = LineFile->text();
    QString table;
    bool temporary = false;
    if (IsCatalogPath(shown)) {
        table = ExtractWorkFile(shown);
        temporary = true;
    } else if (Extension(shown) == "pck") {
        table = UnpackBeside(shown);
    } else {
        table = shown;
    }
    table.replace(u'\\', u'/');
    const QStringList records = table.isEmpty() ? QStringList() : ReadTypesFile(table).records;
    if (temporary && !table.isEmpty())
        QFile::remove(table);

    // Each id stands for the first item of that id in list order.
    QHash<QString, QTreeWidgetItem*> firstItem;
    for (int i = 0; i < ListShips->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = ListShips->topLevelItem(i);
        if (!firstItem.contains(item->text(0)))
            firstItem.insert(item->text(0), item);
    }
    m_selected.clear();
    m_cursor = 0;
    for (int index = 0; index < records.size(); ++index) {
        const QString id = ShipLineId(records[index]);
        QTreeWidgetItem* item = firstItem.value(id);
        if (item && item->isSelected())
            m_selected.append({id, records[index], index});
    }
    accept();
}

const SelectedLine* DSelectShip::FirstSelected()
{
    m_cursor = 0;
    return NextSelected();
}

const SelectedLine* DSelectShip::NextSelected()
{
    if (m_cursor >= m_selected.size())
        return nullptr;
    return &m_selected[m_cursor++];
}
