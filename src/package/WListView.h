#pragma once

#include <QTreeWidget>

// The list view of the main window's file lists (models, other files, scripts).
// Like every list view of the program it shows its rows sorted by column 0,
// and the package order follows that shown order.
class WListView : public QTreeWidget
{
    Q_OBJECT
public:
    explicit WListView(QWidget* parent = nullptr, const char* name = nullptr);

signals:
    // A file was dropped on the list; the text as dropped, with its escapes undone.
    void DroppedFile(QString file);
};
