#pragma once

#include <QPoint>
#include <QString>
#include <QTreeWidget>

class QMimeData;

// The list view of the main window's file lists (models, other files, scripts).
// Like every list view of the program it shows its rows sorted by column 0,
// and the package order follows that shown order.
//
// It takes drops of text: plain text as well as the URL lists that file
// managers send. The dropped text goes out through DroppedFile; the list adds
// no rows by itself. A right click goes out through RightButtonClicked, so
// that the window can build the list's context menu.
class WListView : public QTreeWidget
{
    Q_OBJECT
public:
    explicit WListView(QWidget* parent = nullptr, const char* name = nullptr);

    // True when a drag carries something this list takes: text, or a URL list.
    static bool CanDecode(const QMimeData* mime);
    // The text of a drop as DroppedFile carries it: file:// URLs turned into
    // local paths, one a line, and then "%5b", "%5d", "%20" and "%5c" undone
    // (in this order) into "[", "]", a blank and "/". Empty when the drag
    // cannot be decoded.
    static QString DroppedText(const QMimeData* mime);

signals:
    // A file was dropped on the list; the text as dropped, with its escapes undone.
    void DroppedFile(QString file);
    // The context menu was asked for: the row under the mouse (null when the
    // click hit no row), the global position and the column (-1 without a row).
    void RightButtonClicked(QTreeWidgetItem* item, const QPoint& globalPos, int column);

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
};
