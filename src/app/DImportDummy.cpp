#include "app/DImportDummy.h"

#include "core/ProgramDir.h"
#include "catfs/transfer/GameFile.h"
#include "forms/Prompter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTreeWidgetItem>

namespace {

// Columns of the tree: a section's name on a top row, the text of a row or
// group on a check item, a component line below its group.
constexpr int kSectionColumn = 0;
constexpr int kRowColumn = 1;
constexpr int kLineColumn = 2;

std::optional<QString> ReadText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    return QTextStream(&file).readAll();
}

// Tree items are owned by their parent item or by the tree.
QTreeWidgetItem* AddSection(QTreeWidget* tree, const QString& name)
{
    auto* item = new QTreeWidgetItem(tree);
    item->setText(kSectionColumn, name);
    item->setExpanded(true);
    return item;
}

QTreeWidgetItem* AddCheckItem(QTreeWidgetItem* section, const QString& text)
{
    auto* item = new QTreeWidgetItem(section);
    item->setText(kRowColumn, text);
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(kSectionColumn, Qt::Unchecked);
    return item;
}

bool IsChecked(const QTreeWidgetItem* item)
{
    return item->checkState(kSectionColumn) == Qt::Checked;
}

} // namespace

DImportDummy::DImportDummy(Prompter& prompter, const QStringList& uiText, ImportKind kind, QWidget* parent)
    : ImportDummy(parent, nullptr, true), m_prompter(prompter), m_uiText(uiText), m_kind(kind)
{
    using namespace ImportDummyText;
    ButDone->setText(m_uiText.value(ImportButton));
    ButCancel->setText(m_uiText.value(Cancel));
    QStringList headers{m_uiText.value(SectionColumn), m_uiText.value(DataColumn)};
    if (m_kind == ImportKind::Components)
        headers.append(
            QString()); // the lines of a group: no label, and no width until the user drags it open
    ListDummy->setHeaderLabels(headers);
    if (m_kind == ImportKind::Components)
        ListDummy->setColumnWidth(kLineColumn, 0);
}

int DImportDummy::ExecDialog()
{
    return exec();
}

QString DImportDummy::FileFilter() const
{
    using namespace ImportDummyText;
    const QString catalogs = ";;" + m_uiText.value(CatalogFilter) + " (*.cat)";
    if (m_kind == ImportKind::Dummies)
        return m_uiText.value(DummyFilter) + " (Dummies.txt Dummies.pck *.cat)" + catalogs;
    return m_uiText.value(ComponentFilter) + " (Components.txt Components.pck *.cat)" + catalogs;
}

QString DImportDummy::CatalogEntry() const
{
    return m_kind == ImportKind::Dummies ? QStringLiteral("types\\Dummies.pck")
                                         : QStringLiteral("types\\Components.pck");
}

std::optional<QString> DImportDummy::ReadTable(const QString& chosen, const QString& workDir, QString& shown)
{
    using namespace ImportDummyText;
    const QString extension = QFileInfo(chosen).suffix().toLower();
    shown = chosen;
    if (extension == "cat") {
        // The work copy is named like the entry, in a directory of its own, so
        // that nothing of the open package's files is touched.
        const QString entry = CatalogEntry();
        const QString copy = workDir + "/" + QString(entry).replace('\\', '/').section('/', -1);
        if (!GameFileExtract(chosen + "::" + entry, copy, false, false)) {
            m_prompter.warning(this, m_uiText.value(TableMissingCaption),
                               m_uiText.value(TableMissingText) + "\n" + entry, {m_uiText.value(Ok)});
            return std::nullopt;
        }
        shown = chosen + "::" + entry;
        return ReadText(copy);
    }
    if (extension == "pck") {
        // Unpacked into the work directory, not beside the .pck, where a
        // table of the user's own may stand.
        const QString plain = workDir + "/" + QFileInfo(chosen).completeBaseName() + ".txt";
        PckFileToPlain(chosen, plain);
        return ReadText(plain);
    }
    return ReadText(chosen);
}

std::optional<ImportedRows> DImportDummy::Run(const QString& startDir)
{
    using namespace ImportDummyText;
    const QString caption =
        m_uiText.value(m_kind == ImportKind::Dummies ? DummyFileCaption : ComponentFileCaption);
    const QString chosen = m_prompter.openFile(this, caption, startDir, FileFilter());
    if (chosen.isEmpty())
        return std::nullopt;

    QDir().mkpath(ProgramPath("/temp"));
    const QTemporaryDir work(ProgramPath("/temp/import-XXXXXX")); // removed with its copies
    if (!work.isValid())
        return std::nullopt;
    QString shown;
    const std::optional<QString> text = ReadTable(chosen, work.path(), shown);
    if (!text)
        return std::nullopt;

    Fill(*text, shown);
    if (ExecDialog() != QDialog::Accepted)
        return ImportedRows{};
    return CheckedRows();
}

void DImportDummy::Fill(const QString& text, const QString& shownPath)
{
    using namespace ImportDummyText;
    setWindowTitle("Qt: " + m_uiText.value(m_kind == ImportKind::Dummies ? DummyCaption : ComponentCaption) +
                   " - " + shownPath);
    ListDummy->clear();
    if (m_kind == ImportKind::Dummies) {
        for (const DummySection& section : ParseDummies(text)) {
            QTreeWidgetItem* top = AddSection(ListDummy, section.Name);
            for (const QString& line : section.Lines)
                AddCheckItem(top, line);
        }
        return;
    }
    for (const ComponentSection& section : ParseComponents(text)) {
        QTreeWidgetItem* top = AddSection(ListDummy, section.Name);
        for (const ComponentGroup& group : section.Groups) {
            QTreeWidgetItem* item = AddCheckItem(top, group.Id);
            for (const QString& line : group.Lines)
                (new QTreeWidgetItem(item))->setText(kLineColumn, line);
            item->setExpanded(!group.Lines.isEmpty());
        }
    }
}

ImportedRows DImportDummy::CheckedRows() const
{
    ImportedRows rows;
    for (int i = 0; i < ListDummy->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* top = ListDummy->topLevelItem(i);
        DummySection dummies{top->text(kSectionColumn), {}};
        ComponentSection components{top->text(kSectionColumn), {}};
        for (int j = 0; j < top->childCount(); ++j) {
            const QTreeWidgetItem* item = top->child(j);
            if (!IsChecked(item))
                continue;
            if (m_kind == ImportKind::Dummies) {
                dummies.Lines.append(item->text(kRowColumn));
                continue;
            }
            ComponentGroup group{item->text(kRowColumn), {}};
            for (int k = 0; k < item->childCount(); ++k)
                group.Lines.append(item->child(k)->text(kLineColumn));
            components.Groups.append(group);
        }
        if (!dummies.Lines.isEmpty())
            rows.dummies.append(dummies);
        if (!components.Groups.isEmpty())
            rows.components.append(components);
    }
    return rows;
}
