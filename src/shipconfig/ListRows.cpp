#include "shipconfig/ListRows.h"

#include "gamedata/ShipLine.h"

#include <QComboBox>
#include <QTreeWidget>

NumberedItem::NumberedItem(QTreeWidget* list, const QStringList& columns) : QTreeWidgetItem(list, columns) {}

bool NumberedItem::operator<(const QTreeWidgetItem& other) const
{
    const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
    if (column != 0)
        return QTreeWidgetItem::operator<(other);
    return RowNumber(this) < RowNumber(&other);
}

int RowNumber(const QTreeWidgetItem* item)
{
    return item ? ReadInt(item->text(0)) : 0;
}

QTreeWidgetItem* RowNumbered(const QTreeWidget* list, int number)
{
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        if (RowNumber(list->topLevelItem(i)) == number)
            return list->topLevelItem(i);
    return nullptr;
}

QTreeWidgetItem* SelectedRow(const QTreeWidget* list)
{
    const QList<QTreeWidgetItem*> selected = list->selectedItems();
    return selected.isEmpty() ? nullptr : selected.first();
}

void SelectRow(QTreeWidget* list, QTreeWidgetItem* row)
{
    list->setCurrentItem(row);
    if (row)
        row->setSelected(true);
}

void ShowComboText(QComboBox* box, const QString& text)
{
    const int found = box->findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (found >= 0) {
        box->setCurrentIndex(found);
    } else {
        box->addItem(text);
        box->setCurrentIndex(box->count() - 1);
    }
}

int CheckedSum(const QTreeWidget* list)
{
    quint32 sum = 0;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = list->topLevelItem(i);
        if (item->checkState(0) == Qt::Checked)
            sum += quint32(ReadInt(item->text(1)));
    }
    return int(sum);
}
