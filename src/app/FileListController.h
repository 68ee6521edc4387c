// The model list and the other-files list of the main window: one controller
// class, two kinds. A row is a file: column 0 its path (on disk, or
// "<PACKAGE>/" and its name in the open package), column 1 its target
// directory below the game's root, with forward slashes.
//
// Operations that change the list through a dialog or a menu call the
// context's `modified`; a drop does not, so the caption shows a drop only at
// the next change that reaches it.
#pragma once

#include "app/ContentListSupport.h"
#include "package/ShipPackage.h"

#include <QObject>
#include <QPoint>

#include <memory>

class QLineEdit;
class QMenu;
class WListView;

// What tells the two lists apart.
struct FileListKind
{
    const char* icon;           // column 0 of a row
    QStringList dropExtensions; // what a drop keeps; empty: everything
    QString targetStart;        // start text of the target directory box
    int addTargetLabel;         // label of that box when files are added through the menu
    int changeTargetLabel;      // label of that box when the directory of rows changes
    int addCaption;             // the file dialogs' caption
    QString addFilter;          // filter of the add dialog, behind the filter name
    int filterName;             // the filter's name
    QString changeFilter;       // filter of the change dialog, behind the filter name
    bool changeStartsAtRow;     // the change dialog starts at the row's path, else at ModelDir
    int menuAdd;                // menu texts
    int menuRemove;
    bool offersSceneSwitch; // the model list exchanges rows with the scene file fields

    static FileListKind Models();
    static FileListKind OtherFiles();
};

// One row as BuildPackage reads it.
struct FileRow
{
    QString path;
    QString targetDir;
};

class FileListController : public QObject
{
    Q_OBJECT
public:
    // `list` belongs to the window; `shipScene` and `cockpitScene` are the
    // scene file fields a model row can be exchanged with (unused for the
    // other-files list).
    FileListController(WListView* list, FileListKind kind, WindowContext context,
                       QLineEdit* shipScene = nullptr, QLineEdit* cockpitScene = nullptr);

    WListView* List() const { return m_list; }

    // The document's side.
    void Show(const QList<FileEntry>& entries);
    QList<FileRow> Rows() const;
    // Every row is still from the package, or stands in `saved` by its path.
    bool Matches(const QList<FileEntry>& saved) const;
    void Clear();

    // The menu a right click on `item` (null: no row) gets, built anew each time.
    std::unique_ptr<QMenu> BuildMenu(QTreeWidgetItem* item);

public slots:
    void Dropped(const QString& text);
    void ShowMenu(QTreeWidgetItem* item, const QPoint& globalPos);
    void Add();
    void Change();
    void ChangeDir();
    void Remove();
    void ClearList();
    void SwitchWithShipScene();
    void SwitchWithCockpitScene();

private:
    void AddRows(const QStringList& paths, const QString& targetDir);
    void SwitchWithScene(QLineEdit* scene);
    const QString& Text(int index) const { return m_context.uiText[index]; }

    WListView* m_list;
    FileListKind m_kind;
    WindowContext m_context;
    QLineEdit* m_shipScene;
    QLineEdit* m_cockpitScene;
};
