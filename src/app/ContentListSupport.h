// What the content lists of the main window share: small helpers over list
// views, paths and menus.
#pragma once

#include "app/WindowContext.h"
#include "package/ShipPackage.h"

#include <QIcon>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <initializer_list>
#include <optional>

class QMenu;
class QTreeWidget;
class QTreeWidgetItem;
class QWidget;

// An icon of the Icons folder beside the program, read at each use.
QIcon ProgramIcon(const char* relative);

// The file name without its directory; either kind of slash separates.
QString BareName(const QString& path);
// The lower-cased text behind the last dot of the bare name; empty without one.
QString FileExtension(const QString& path);
// Everything before the last slash; empty without one.
QString DirectoryPart(const QString& path);

// A drop's text as lines: carriage returns removed, empty lines dropped.
QStringList DroppedLines(QString text);
// The paths whose extension is one of `extensions`; all of them when it is empty.
QStringList WithExtensions(const QStringList& paths, const QStringList& extensions);
QStringList ExistingFiles(const QStringList& paths);

// Keeps the shown order, by which the package is written, up to date at once
// rather than at the toolkit's next pass through the event loop.
void KeepSorted(QTreeWidget* list);
// The selected rows in their shown order.
QList<QTreeWidgetItem*> SelectedRows(const QTreeWidget* list);
QTreeWidgetItem* FirstSelectedRow(const QTreeWidget* list);
// Deletes every selected row; true when there was one.
bool RemoveSelectedRows(QTreeWidget* list);
// Every row's text in `column`, top to bottom.
QStringList ColumnTexts(const QTreeWidget* list, int column);

// A list's path cells against the saved entries: as many of them, and each
// cell either still a file of the package or, as directory, "/" and file name
// with forward slashes, the local path of a saved entry.
bool PathsMatchSaved(const QStringList& cells, const QList<FileEntry>& saved);

// A label as the window shows it: bold, with a colon.
QString BoldLabel(const QString& text);

// A menu entry with its icon from the program directory.
void AddMenuEntry(QMenu& menu, const QString& text, const char* icon, std::function<void()> action);

// Asks for a target directory in the game: caption "Qt: " + UiText[93], the
// given label, a start text. No value when cancelled; slashes forward.
std::optional<QString> AskTargetDir(const WindowContext& context, int labelIndex, const QString& start);
