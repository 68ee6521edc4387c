// The lists of rows a ship brings for the game's tables: the dummy list
// (section, data), the component tree (a top row of section and id, a child
// row for each data line) and the cockpit list (id, source, whole TCockpits
// line; the source is a row number of the game's table, or "<PACKAGE>" for a
// custom cockpit of the package).
//
// Each list has a menu on its right click, built anew at each click; what
// changes a list through a menu or an import calls the context's `modified`.
// Rows are picked by the selection, which the click that opens the menu sets.
#pragma once

#include "app/ContentListSupport.h"
#include "app/DImportDummy.h"
#include "gamedata/ShipLine.h"
#include "package/ShipPackage.h"

#include <QObject>
#include <QPoint>

#include <functional>
#include <memory>
#include <optional>

class QMenu;
class QTreeWidget;
class QTreeWidgetItem;

// Runs the import of rows out of a table the user picks (DImportDummy);
// nothing when no table was shown. Tests give one that answers by itself.
using TableImporter = std::function<std::optional<ImportedRows>(ImportKind kind)>;

class DummyListController : public QObject
{
    Q_OBJECT
public:
    // Without an importer the import dialog is shown.
    DummyListController(QTreeWidget* list, WindowContext context, TableImporter importer = {});

    void Show(const QList<DummyEntry>& dummies);
    QList<DummyEntry> Rows() const;
    bool Matches(const QList<DummyEntry>& saved) const;
    void Clear();
    // The data of every SDTYPE_GUN row (the section's case aside): the gun
    // bodies the ship's configuration offers.
    QStringList GunBodies() const;

    // The menu a right click on `item` (null: no row) gets.
    std::unique_ptr<QMenu> BuildMenu(QTreeWidgetItem* item);

public slots:
    void ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos);
    // Rows ticked in a Dummies table the user picks, added behind the others.
    void Import();
    // Asks for a section and a text, and adds the row even when the text is
    // cancelled.
    void Add();
    void Remove();
    void ChangeSection();
    void ChangeData();
    void ClearList();

private:
    std::optional<QString> AskSection();
    void AddRow(const QString& section, const QString& data);
    const QString& Text(int index) const { return m_context.uiText[index]; }

    QTreeWidget* m_list;
    WindowContext m_context;
    TableImporter m_import;
};

class ComponentListController : public QObject
{
    Q_OBJECT
public:
    ComponentListController(QTreeWidget* list, WindowContext context, TableImporter importer = {});

    // Components of one section and id share one top row.
    void Show(const QList<ComponentEntry>& components);
    QList<ComponentEntry> Rows() const;
    void Clear();

    std::unique_ptr<QMenu> BuildMenu(QTreeWidgetItem* item);

public slots:
    void ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos);
    // Groups ticked in a Components table, each as a top row of its own.
    void Import();
    // Removes the selected group whole, whichever of its rows is selected.
    void Remove();
    void ClearList();

private:
    const QString& Text(int index) const { return m_context.uiText[index]; }

    QTreeWidget* m_list;
    WindowContext m_context;
    TableImporter m_import;
};

class CockpitListController : public QObject
{
    Q_OBJECT
public:
    CockpitListController(QTreeWidget* list, WindowContext context);

    // The package's own cockpits, each a custom one.
    void Show(const QStringList& cockpitLines);
    QList<CockpitListRow> Rows() const;
    bool Matches(const QStringList& savedLines) const;
    void Clear();
    // Adds a row for each of the given cockpits.
    void Add(const QList<CockpitListRow>& rows);

    std::unique_ptr<QMenu> BuildMenu(QTreeWidgetItem* item);

public slots:
    void ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos);
    void Remove();
    void ClearList();

private:
    const QString& Text(int index) const { return m_context.uiText[index]; }

    QTreeWidget* m_list;
    WindowContext m_context;
};
