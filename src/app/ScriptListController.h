// The script list of the main window. A row is a script: column 0 its path,
// column 1 its size for the user, column 2 (hidden) its file time in seconds
// since 1970. The game knows scripts by their bare name, so a drop takes a
// name once; the menu's add does not look.
#pragma once

#include "app/ContentListSupport.h"
#include "package/ShipPackage.h"

#include <QObject>
#include <QPoint>

#include <memory>

class QMenu;
class QTreeWidgetItem;
class WListView;

// A file size for the user: four blanks, the value and its unit text. The
// unit changes at 1000, not 1024, so that no value below the largest unit
// shows four digits before the point. `uiText` holds the four unit texts.
QString FormatSize(qint64 size, const QStringList& uiText);

class ScriptListController : public QObject
{
    Q_OBJECT
public:
    ScriptListController(WListView* list, WindowContext context);

    WListView* List() const { return m_list; }

    // The document's side. Rows() gives each script's path and time.
    void Show(const QList<FileEntry>& scripts);
    QList<FileEntry> Rows() const;
    bool Matches(const QList<FileEntry>& saved) const;
    void Clear();

    std::unique_ptr<QMenu> BuildMenu(QTreeWidgetItem* item);

public slots:
    void Dropped(const QString& text);
    void ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos);
    void Add();
    void Remove();
    void ClearList();

private:
    void AddRow(const QString& path, qint64 size, qint64 time);
    void AddFileRow(const QString& path);
    bool HasRowNamed(const QString& bareName) const;

    WListView* m_list;
    WindowContext m_context;
};
