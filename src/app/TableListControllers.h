// The lists of rows a ship brings for the game's tables: the dummy list
// (section, data), the component tree (a top row of section and id, a child
// row for each data line) and the cockpit list (id, source, whole TCockpits
// line; the source is a row number of the game's table, or "<PACKAGE>" for a
// custom cockpit of the package).
#pragma once

#include "app/ContentListSupport.h"
#include "gamedata/ShipLine.h"
#include "package/ShipPackage.h"

#include <QObject>

class QTreeWidget;

class DummyListController : public QObject
{
    Q_OBJECT
public:
    DummyListController(QTreeWidget* list, WindowContext context);

    void Show(const QList<DummyEntry>& dummies);
    QList<DummyEntry> Rows() const;
    bool Matches(const QList<DummyEntry>& saved) const;
    void Clear();

private:
    QTreeWidget* m_list;
    WindowContext m_context;
};

class ComponentListController : public QObject
{
    Q_OBJECT
public:
    ComponentListController(QTreeWidget* list, WindowContext context);

    // Components of one section and id share one top row.
    void Show(const QList<ComponentEntry>& components);
    QList<ComponentEntry> Rows() const;
    void Clear();

private:
    QTreeWidget* m_list;
    WindowContext m_context;
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

private:
    QTreeWidget* m_list;
    WindowContext m_context;
};
