// Small widget helpers of the ship configuration dialog's lists and boxes.
#pragma once

#include <QString>
#include <QStringList>
#include <QTreeWidgetItem>

class QComboBox;
class QTreeWidget;

// A list row numbered in column 0. The lists sort by column 0; these rows
// compare it as a number, so that row 10 follows row 9.
class NumberedItem : public QTreeWidgetItem
{
public:
    NumberedItem(QTreeWidget* list, const QStringList& columns);
    bool operator<(const QTreeWidgetItem& other) const override;
};

// The number in column 0 of a row; 0 for no row.
int RowNumber(const QTreeWidgetItem* item);

// The row numbered `number`, or null.
QTreeWidgetItem* RowNumbered(const QTreeWidget* list, int number);

// The selected row (the list allows one), or null.
QTreeWidgetItem* SelectedRow(const QTreeWidget* list);

// Makes `row` current and selected.
void SelectRow(QTreeWidget* list, QTreeWidgetItem* row);

// Shows `text` in a box that is not editable: the item of that text becomes
// current; when there is none, the text is added as an item and made current,
// so that a value the box does not offer stays shown and the offered ones
// stay to be chosen.
void ShowComboText(QComboBox* box, const QString& text);

// The items of a check list whose box is ticked, as the sum of the numbers in
// their column 1 (32-bit, so the 32nd bit gives a negative sum).
int CheckedSum(const QTreeWidget* list);
