#include "app/TableListControllers.h"

#include <QTreeWidget>

namespace {

const char* const CockpitIcon = "/Icons/cockpit.png";

} // namespace

DummyListController::DummyListController(QTreeWidget* list, WindowContext context)
    : m_list(list), m_context(std::move(context))
{
}

void DummyListController::Show(const QList<DummyEntry>& dummies)
{
    for (const DummyEntry& dummy : dummies)
        new QTreeWidgetItem(m_list, {dummy.Section, dummy.Data}); // owned by the list
}

QList<DummyEntry> DummyListController::Rows() const
{
    QList<DummyEntry> dummies;
    for (int i = 0; i < m_list->topLevelItemCount(); ++i)
        dummies.append({m_list->topLevelItem(i)->text(0), m_list->topLevelItem(i)->text(1)});
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

ComponentListController::ComponentListController(QTreeWidget* list, WindowContext context)
    : m_list(list), m_context(std::move(context))
{
}

void ComponentListController::Show(const QList<ComponentEntry>& components)
{
    for (const ComponentEntry& component : components) {
        QTreeWidgetItem* top = nullptr;
        for (int i = 0; !top && i < m_list->topLevelItemCount(); ++i) {
            QTreeWidgetItem* candidate = m_list->topLevelItem(i);
            if (candidate->text(0) == component.Section && candidate->text(1) == component.Id)
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
            components.append({top->text(0), top->text(1), top->child(c)->text(2)});
    }
    return components;
}

void ComponentListController::Clear()
{
    m_list->clear();
}

CockpitListController::CockpitListController(QTreeWidget* list, WindowContext context)
    : m_list(list), m_context(std::move(context))
{
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
