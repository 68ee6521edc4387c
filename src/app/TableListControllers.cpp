#include "app/TableListControllers.h"

#include "app/WindowTexts.h"
#include "core/AppSettings.h"
#include "forms/Prompter.h"
#include "gamedata/GroupedTables.h"

#include <QMenu>
#include <QTreeWidget>

namespace {

const char* const CockpitIcon = "/Icons/cockpit.png";
constexpr int SectionColumn = 0;
constexpr int DataColumn = 1;
constexpr int ComponentLineColumn = 2;

// The lists are plain list views of the form: their right click comes as a
// request in viewport coordinates.
template <typename Controller> void ConnectMenu(QTreeWidget* list, Controller* controller)
{
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    QObject::connect(list, &QWidget::customContextMenuRequested, controller,
                     [list, controller](const QPoint& pos) {
                         controller->ShowMenu(list->itemAt(pos), list->viewport()->mapToGlobal(pos));
                     });
}

// The menu acts on the row that was clicked.
void SelectClicked(QTreeWidget* list, QTreeWidgetItem* item)
{
    if (item)
        list->setCurrentItem(item);
}

QTreeWidgetItem* SelectedItem(const QTreeWidget* list)
{
    return list->selectedItems().value(0);
}

// Deletes the selected row with its parent, if it has one, and all the
// parent's children; false without a selected row.
bool RemoveSelectedGroup(QTreeWidget* list)
{
    QTreeWidgetItem* row = SelectedItem(list);
    if (!row)
        return false;
    delete (row->parent() ? row->parent() : row); // the tree lets go of a deleted item
    return true;
}

TableImporter DialogImporter(const WindowContext& context)
{
    return [&prompter = context.prompter, texts = context.uiText, parent = context.parent,
            &settings = context.settings](ImportKind kind) {
        DImportDummy dialog(prompter, texts, kind, parent);
        return dialog.Run(settings.TypeDir);
    };
}

} // namespace

// --- Dummies

DummyListController::DummyListController(QTreeWidget* list, WindowContext context, TableImporter importer)
    : m_list(list), m_context(std::move(context)),
      m_import(importer ? std::move(importer) : DialogImporter(m_context))
{
    ConnectMenu(m_list, this);
}

void DummyListController::AddRow(const QString& section, const QString& data)
{
    new QTreeWidgetItem(m_list, {section, data}); // owned by the list
}

void DummyListController::Show(const QList<DummyEntry>& dummies)
{
    for (const DummyEntry& dummy : dummies)
        AddRow(dummy.Section, dummy.Data);
}

QList<DummyEntry> DummyListController::Rows() const
{
    QList<DummyEntry> dummies;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i)
        dummies.append(
            {m_list->topLevelItem(i)->text(SectionColumn), m_list->topLevelItem(i)->text(DataColumn)});
    return dummies;
}

bool DummyListController::Matches(const QList<DummyEntry>& saved) const
{
    const QList<DummyEntry> rows = Rows();
    return rows.size() == saved.size() &&
           std::all_of(rows.begin(), rows.end(), [&](const DummyEntry& row) { return saved.contains(row); });
}

void DummyListController::Clear()
{
    m_list->clear();
}

QStringList DummyListController::GunBodies() const
{
    QStringList bodies;
    for (const DummyEntry& row : Rows())
        if (row.Section.toUpper() == QLatin1String(GunDummySection))
            bodies.append(row.Data);
    return bodies;
}

std::unique_ptr<QMenu> DummyListController::BuildMenu(QTreeWidgetItem* item)
{
    SelectClicked(m_list, item);
    auto menu = std::make_unique<QMenu>();
    AddMenuEntry(*menu, Text(Txt::MenuAddDummy), "/Icons/add.png", [this] { Add(); });
    if (item) {
        AddMenuEntry(*menu, Text(Txt::MenuRemoveDummy), "/Icons/remove.png", [this] { Remove(); });
        menu->addSeparator();
        AddMenuEntry(*menu, Text(Txt::MenuChangeSection), "/Icons/edit.png", [this] { ChangeSection(); });
        AddMenuEntry(*menu, Text(Txt::MenuChangeData), "/Icons/edit.png", [this] { ChangeData(); });
    }
    menu->addSeparator();
    AddMenuEntry(*menu, Text(Txt::MenuClearList), "/Icons/trash.png", [this] { ClearList(); });
    return menu;
}

void DummyListController::ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos)
{
    BuildMenu(item)->exec(globalPos);
}

void DummyListController::Import()
{
    const std::optional<ImportedRows> rows = m_import(ImportKind::Dummies);
    if (!rows)
        return;
    for (const DummySection& section : rows->dummies)
        for (const QString& line : section.Lines)
            AddRow(section.Name, line);
    KeepSorted(m_list);
    m_context.modified(); // even when nothing was ticked: the dialog was there
}

std::optional<QString> DummyListController::AskSection()
{
    return m_context.prompter.item(m_context.parent, "Qt: " + Text(Txt::DummySectionCaption),
                                   Text(Txt::DummySectionLabel), DummySectionNames(), 0, false);
}

void DummyListController::Add()
{
    const std::optional<QString> section = AskSection();
    if (!section)
        return;
    const std::optional<QString> data =
        m_context.prompter.text(m_context.parent, "Qt: " + Text(Txt::DummyDataCaption),
                                Text(Txt::DummyDataLabel) + " '" + *section + "'", QString());
    AddRow(*section, data.value_or(QString()));
    KeepSorted(m_list);
    m_context.modified();
}

void DummyListController::Remove()
{
    if (RemoveSelectedRows(m_list))
        m_context.modified();
}

void DummyListController::ChangeSection()
{
    QTreeWidgetItem* row = FirstSelectedRow(m_list);
    if (!row)
        return;
    const std::optional<QString> section = AskSection();
    if (!section)
        return;
    row->setText(SectionColumn, *section);
    KeepSorted(m_list);
    m_context.modified();
}

void DummyListController::ChangeData()
{
    QTreeWidgetItem* row = FirstSelectedRow(m_list);
    if (!row)
        return;
    const std::optional<QString> data = m_context.prompter.text(
        m_context.parent, "Qt: " + Text(Txt::DummyDataCaption),
        Text(Txt::DummyDataLabel) + " '" + row->text(SectionColumn) + "'", row->text(DataColumn));
    if (!data || data->isEmpty())
        return;
    row->setText(DataColumn, *data);
    m_context.modified();
}

void DummyListController::ClearList()
{
    m_list->clear();
    m_context.modified();
}

// --- Components

ComponentListController::ComponentListController(QTreeWidget* list, WindowContext context,
                                                 TableImporter importer)
    : m_list(list), m_context(std::move(context)),
      m_import(importer ? std::move(importer) : DialogImporter(m_context))
{
    ConnectMenu(m_list, this);
}

void ComponentListController::Show(const QList<ComponentEntry>& components)
{
    for (const ComponentEntry& component : components) {
        QTreeWidgetItem* top = nullptr;
        for (int i = 0; !top && i < m_list->topLevelItemCount(); ++i) {
            QTreeWidgetItem* candidate = m_list->topLevelItem(i);
            if (candidate->text(SectionColumn) == component.Section &&
                candidate->text(DataColumn) == component.Id)
                top = candidate;
        }
        if (!top)
            top = new QTreeWidgetItem(m_list, {component.Section, component.Id}); // owned by the list
        new QTreeWidgetItem(top, {QString(), QString(), component.Data});         // owned by its top row
    }
}

QList<ComponentEntry> ComponentListController::Rows() const
{
    QList<ComponentEntry> components;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* top = m_list->topLevelItem(i);
        for (int c = 0; c < top->childCount(); ++c)
            components.append(
                {top->text(SectionColumn), top->text(DataColumn), top->child(c)->text(ComponentLineColumn)});
    }
    return components;
}

void ComponentListController::Clear()
{
    m_list->clear();
}

std::unique_ptr<QMenu> ComponentListController::BuildMenu(QTreeWidgetItem* item)
{
    SelectClicked(m_list, item);
    auto menu = std::make_unique<QMenu>();
    if (item) {
        AddMenuEntry(*menu, Text(Txt::MenuRemoveComponent), "/Icons/remove.png", [this] { Remove(); });
        menu->addSeparator();
    }
    AddMenuEntry(*menu, Text(Txt::MenuClearList), "/Icons/trash.png", [this] { ClearList(); });
    return menu;
}

void ComponentListController::ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos)
{
    BuildMenu(item)->exec(globalPos);
}

void ComponentListController::Import()
{
    const std::optional<ImportedRows> rows = m_import(ImportKind::Components);
    if (!rows)
        return;
    for (const ComponentSection& section : rows->components) {
        for (const ComponentGroup& group : section.Groups) {
            auto* top = new QTreeWidgetItem(m_list, {section.Name, group.Id}); // owned by the list
            for (const QString& line : group.Lines)
                new QTreeWidgetItem(top, {QString(), QString(), line}); // owned by its top row
            top->setExpanded(true);
        }
    }
    KeepSorted(m_list);
    m_context.modified();
}

void ComponentListController::Remove()
{
    if (RemoveSelectedGroup(m_list))
        m_context.modified();
}

void ComponentListController::ClearList()
{
    m_list->clear();
    m_context.modified();
}

// --- Cockpits

CockpitListController::CockpitListController(QTreeWidget* list, WindowContext context)
    : m_list(list), m_context(std::move(context))
{
    ConnectMenu(m_list, this);
}

void CockpitListController::Show(const QStringList& cockpitLines)
{
    QList<CockpitListRow> rows;
    for (const QString& line : cockpitLines)
        rows.append({ShipLineId(line), PackageCockpitSource, line});
    Add(rows);
}

void CockpitListController::Add(const QList<CockpitListRow>& rows)
{
    for (const CockpitListRow& cockpit : rows) {
        auto* row =
            new QTreeWidgetItem(m_list, {cockpit.Id, cockpit.Source, cockpit.Line}); // owned by the list
        row->setIcon(0, ProgramIcon(CockpitIcon));
    }
}

QList<CockpitListRow> CockpitListController::Rows() const
{
    QList<CockpitListRow> rows;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = m_list->topLevelItem(i);
        rows.append({row->text(0), row->text(1), row->text(2)});
    }
    return rows;
}

bool CockpitListController::Matches(const QStringList& savedLines) const
{
    const QStringList lines = ColumnTexts(m_list, 2);
    return lines.size() == savedLines.size() &&
           std::all_of(lines.begin(), lines.end(),
                       [&](const QString& line) { return savedLines.contains(line); });
}

void CockpitListController::Clear()
{
    m_list->clear();
}

std::unique_ptr<QMenu> CockpitListController::BuildMenu(QTreeWidgetItem* item)
{
    SelectClicked(m_list, item);
    auto menu = std::make_unique<QMenu>();
    if (item) {
        AddMenuEntry(*menu, Text(Txt::MenuRemoveCockpit), "/Icons/remove.png", [this] { Remove(); });
        menu->addSeparator();
    }
    AddMenuEntry(*menu, Text(Txt::MenuClearList), "/Icons/trash.png", [this] { ClearList(); });
    return menu;
}

void CockpitListController::ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos)
{
    BuildMenu(item)->exec(globalPos);
}

void CockpitListController::Remove()
{
    if (RemoveSelectedGroup(m_list))
        m_context.modified();
}

void CockpitListController::ClearList()
{
    m_list->clear();
    m_context.modified();
}
